// The super filters, filter templates, saved settings and the range query run as processes.
#include "cli/cli_fixture.h"

#include <gtest/gtest.h>

namespace {

class CliSuper : public CliTest {
protected:
    QStringList lines(const QStringList& args) { return one(args).split(QLatin1Char('\n'), Qt::SkipEmptyParts); }
    // The live tickets as "f1 f2 f3 f4 f5 f6 f7".
    QStringList live() {
        QStringList out;
        for (const QString& l : lines({"candidates", "show"}).mid(1)) out << l.split('\t').mid(1, 7).join(' ');
        return out;
    }
    void SetUp() override {
        ASSERT_EQ(one({"workspace", "create", "w1"}), QStringLiteral("1"));
        one({"history", "add", "1", "2", "3", "4", "5", "6", "7"});
        one({"history", "add", "3", "8", "15", "22", "29", "4", "9"});
        // 21 fronts of seven numbers, three back pairs.
        ASSERT_EQ(one({"expand", "--front", "1,3,8,15,22,29,30", "--back", "4,9,11"}), QStringLiteral("63"));
    }
};

TEST_F(CliSuper, FiltersRunAsTheWindowRunsThemAndRefuseWhatItsPromptsRefuse) {
    // 相克: the 6 fronts holding 03, 08 and 15 die with their 3 back pairs.
    EXPECT_EQ(one({"filter", "relation", "kill", "3", "8", "15"}), QStringLiteral("45"));
    EXPECT_EQ(one({"filter", "reset-all"}), QStringLiteral("63"));
    EXPECT_EQ(one({"filter", "relation", "kill", "15", "8"}), QStringLiteral("63")) << "descending numbers kill nothing";
    // The newest draw 03 08 15 22 29: every front of these seven holds three of them.
    EXPECT_EQ(one({"filter", "history", "--same", "3", "--last", "1"}), QStringLiteral("0"));
    const QStringList all = lines({"candidates", "show", "--all"});
    EXPECT_TRUE(all[1].endsWith(QStringLiteral("\t1\t历史同3号滤 检索前 1 期2期 有4码相同"))) << all[1].toStdString();
    EXPECT_EQ(one({"filter", "reset-all"}), QStringLiteral("63"));
    // In the both-zones tab the history filters kill nothing.
    EXPECT_EQ(one({"filter", "history", "--same", "6", "--last", "2", "--scope", "both"}), QStringLiteral("63"));
    // Back tab: 历史同1号滤 over the newest draw (04 09): 04 among the back numbers, or 09 in
    // Numstring, which the both-zones run left with the front numbers only: the pair 09 11 lives.
    EXPECT_EQ(one({"filter", "history", "--same", "1", "--last", "1", "--scope", "back"}), QStringLiteral("21"));
    one({"filter", "reset-all"});
    // Inclusion: the 10 fronts with 01 and 30 together die; with the banker 03 every dead row
    // lacking it returns (4 fronts).
    EXPECT_EQ(one({"filter", "inclusion", "kill", "--numbers", "1,30", "--group", "2"}), QStringLiteral("33"));
    EXPECT_EQ(one({"filter", "inclusion", "kill", "--numbers", "1,30", "--group", "2", "--bankers", "3"}),
              QStringLiteral("45"));
    // Refusals: the prompts' messages on standard error, the table untouched.
    CliRun r = cli.run({"filter", "history", "--same", "3", "--last", "-1"});
    EXPECT_NE(r.exitCode, 0);
    EXPECT_TRUE(r.err.contains(QStringLiteral("请输入一个正数"))) << r.err.toStdString();
    r = cli.run({"filter", "relation", "pair", "3", "40"});
    EXPECT_NE(r.exitCode, 0);
    EXPECT_TRUE(r.err.contains(QStringLiteral("请输入1~35之间的数字"))) << r.err.toStdString();
    // The back tab offers 历史同1号滤 and 历史同2号滤 only (Option27 is disabled there).
    r = cli.run({"filter", "history", "--same", "5", "--last", "1", "--scope", "back"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains(QStringLiteral("--same 5 is not offered in the back tab; one of 1, 2")))
        << r.err.toStdString();
    r = cli.run({"filter", "history", "--button", "Option27", "--draws", "1", "--scope", "back"});
    EXPECT_EQ(r.exitCode, 1) << "the old spelling reaches the disabled button";
    EXPECT_EQ(one({"candidates", "count"}), QStringLiteral("45"));
}

TEST_F(CliSuper, HistoryFilterSpelledByItsCaptionOrByItsButton) {
    // Each button of each tab by the numbers in its caption, against the old spelling.
    const struct {
        const char* scope;
        const char* same;
        const char* button;
    } forms[] = {{"front", "3", "Option26"}, {"front", "4", "Option28"}, {"front", "5", "Option27"},
                 {"back", "1", "Option26"},  {"back", "2", "Option28"},  {"both", "4", "Option26"},
                 {"both", "5", "Option28"},  {"both", "6", "Option27"}};
    for (const auto& f : forms) {
        const CliRun now =
            cli.run({"filter", "history", "--same", f.same, "--last", "2", "--scope", f.scope});
        ASSERT_EQ(now.exitCode, 0) << now.err.toStdString();
        EXPECT_TRUE(now.err.isEmpty()) << now.err.toStdString();
        const QString table = one({"candidates", "show", "--all"});
        one({"filter", "reset-all"});
        const CliRun old =
            cli.run({"filter", "history", "--button", f.button, "--draws", "2", "--scope", f.scope});
        ASSERT_EQ(old.exitCode, 0) << old.err.toStdString();
        EXPECT_EQ(old.out, now.out) << f.scope << " " << f.same;
        EXPECT_EQ(old.err, QStringLiteral("note: --button is deprecated; use --same N\n"
                                          "note: --draws is deprecated; use --last D\n"));
        EXPECT_EQ(one({"candidates", "show", "--all"}), table) << f.scope << " " << f.same;
        one({"filter", "reset-all"});
    }
    // Without --last every draw is searched: here both of them.
    EXPECT_EQ(one({"filter", "history", "--same", "3"}), QStringLiteral("0"));
    const QString all = one({"candidates", "show", "--all"});
    one({"filter", "reset-all"});
    EXPECT_EQ(one({"filter", "history", "--same", "3", "--last", "2"}), QStringLiteral("0"));
    EXPECT_EQ(one({"candidates", "show", "--all"}), all);
    const CliRun six = cli.run({"filter", "history", "--same", "6"});
    EXPECT_EQ(six.exitCode, 2);
    EXPECT_TRUE(six.err.contains(QStringLiteral("one of 3, 4, 5"))) << six.err.toStdString();
    EXPECT_TRUE(six.err.contains(QStringLiteral("usage: shuangqu-cli filter history --same N")));
}

TEST_F(CliSuper, TemplatesRecordReplayAndDelete) {
    EXPECT_EQ(one({"moban", "add", "relation", "kill", "3", "8", "15"}), QStringLiteral("1"));
    EXPECT_EQ(one({"moban", "add", "invert-last"}), QStringLiteral("2"));
    EXPECT_EQ(one({"moban", "add", "history", "--same", "2", "--last", "5", "--scope", "back"}),
              QStringLiteral("3"));
    // A dismissed popup: no new step, the last one takes the input.
    EXPECT_EQ(one({"moban", "add", "history", "--same", "4", "--last", "7", "--dismiss"}),
              QStringLiteral("3"));
    const QStringList rows = lines({"moban", "list"});
    ASSERT_EQ(rows.size(), 4);
    EXPECT_TRUE(rows[1].startsWith(QStringLiteral("1\t10\t1\t3\t\t3\t8\t15\t0\t0\t")));
    EXPECT_TRUE(rows[1].endsWith(
        QStringLiteral("模板过滤第1步，使用“相克号过滤”单选按钮功能，总个数为：3，分别为：3，8，15。")));
    EXPECT_TRUE(rows[2].endsWith(QStringLiteral("模板过滤第2步，使用“上次过滤反选(&R)”按钮功能")));
    EXPECT_TRUE(rows[3].startsWith(QStringLiteral("3\t5\t2\t7\t")));
    // Replay: 相克 kills 18; inverting the last filter leaves those 18 alive; then 历史同2号滤
    // in the back scope over 7 draws kills the pair 04 09 of the newest draw (09 is found in
    // Numstring, which holds all seven numbers since the relation step).
    EXPECT_EQ(one({"moban", "replay"}), QStringLiteral("12"));
    for (const QString& t : live()) EXPECT_FALSE(t.endsWith(QStringLiteral("4 9"))) << t.toStdString();
    EXPECT_EQ(one({"moban", "delete-last"}), QStringLiteral("2"));
    EXPECT_EQ(one({"moban", "clear"}), QStringLiteral("0"));
    EXPECT_EQ(lines({"moban", "list"}).size(), 1);
}

TEST_F(CliSuper, SettingsAndRanges) {
    one({"setting", "save", "稳", "--params", "Onum,Znum", "--range", "Onum", "1", "3", "--list", "Znum", "60 70"});
    one({"setting", "save", "稳"});
    EXPECT_EQ(lines({"setting", "list"}), (QStringList{QStringLiteral("Name"), QStringLiteral("稳"), QStringLiteral("稳")}));
    const QStringList loaded = lines({"setting", "load", "稳"});
    EXPECT_TRUE(loaded.contains(QStringLiteral("Option23\t0\t999\t18\t60 70\t1"))) << loaded.join('|').toStdString();
    EXPECT_TRUE(loaded.contains(QStringLiteral("opt36\t1")));
    one({"setting", "rename", "稳", "新"});
    one({"setting", "delete", "新"});
    EXPECT_EQ(lines({"setting", "list"}).size(), 1);
    EXPECT_NE(cli.run({"setting", "load", "新"}).exitCode, 0);

    // Znum of the two draws: 15 and 77.
    EXPECT_EQ(one({"range", "--column", "Znum", "--minmax"}), QStringLiteral("015\t077"));
    EXPECT_EQ(one({"range", "--column", "Znum", "--average", "0"}), QStringLiteral("046\t046"));
    EXPECT_EQ(one({"range", "--column", "Znum", "--minmax", "--span", "1"}), QStringLiteral("077\t077"));
    EXPECT_EQ(one({"range", "--column", "fig2", "--top", "2", "--table", "figquan"}), QStringLiteral("2 8"));
    EXPECT_NE(cli.run({"range", "--column", "Lxnum", "--minmax", "--table", "fighou"}).exitCode, 0);
    EXPECT_NE(cli.run({"range", "--column", "Nope", "--minmax"}).exitCode, 0);
}

}  // namespace
