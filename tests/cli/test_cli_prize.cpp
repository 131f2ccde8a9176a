// prize and report run as processes on a workspace with a draw, an expansion and a filter.
#include "support/cli_runner.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {
// A workspace whose newest draw is 03 07 12 20 28 + 04 09 and whose zuhe holds the 18 tickets
// of six front and three back numbers around it.
struct PrizeCli {
    CliRunner cli;
    PrizeCli() {
        EXPECT_EQ(cli.run({"workspace", "create", "w"}).exitCode, 0);
        EXPECT_EQ(cli.run({"history", "add", "3", "7", "12", "20", "28", "4", "9"}).exitCode, 0);
        EXPECT_EQ(cli.run({"expand", "--front", "3,7,12,20,28,30", "--back", "4,9,10"}).out,
                  QStringLiteral("18\n"));
    }
    QString out(const QStringList& args) {
        const CliRun r = cli.run(args);
        EXPECT_EQ(r.exitCode, 0) << args.join(' ').toStdString() << ": " << r.err.toStdString();
        return r.out;
    }
};
}  // namespace

TEST(CliPrize, RulesShowAndSet) {
    PrizeCli p;
    QStringList rows = p.out({"prize", "rules", "show"}).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(rows.size(), 13);
    EXPECT_EQ(rows[0], QStringLiteral("slot\tfront\tback\tMoney\tPrizerank"));
    EXPECT_EQ(rows[1], QStringLiteral("1\t5\t2\t5000000\t1等奖"));
    EXPECT_EQ(rows[10], QStringLiteral("10\t3\t0\t5\t8等奖"));
    EXPECT_EQ(p.cli
                  .run({"prize", "rules", "set", "9", "--front", "5", "--back", "0", "--money", "77",
                        "--rank", "九等"})
                  .exitCode,
              0);
    rows = p.out({"prize", "rules", "show"}).split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(rows[9], QStringLiteral("9\t5\t0\t77\t九等"));
    EXPECT_NE(p.cli.run({"prize", "rules", "set", "13", "--money", "1"}).exitCode, 0);
    EXPECT_NE(p.cli.run({"prize", "rules", "set", "1", "--front", "6"}).exitCode, 0);
    EXPECT_NE(p.cli.run({"prize", "rules", "set", "1", "--money", "abc"}).exitCode, 0);
    EXPECT_NE(p.cli.run({"prize", "rules", "set", "1"}).exitCode, 0);
}

TEST(CliPrize, CheckListAndReportBeforeAndAfterAFilter) {
    PrizeCli p;
    EXPECT_EQ(p.out({"prize", "check"}),
              QStringLiteral(
                  "level\tkept\tfiltered\n1等奖\t1\t0\n2等奖\t2\t0\n3等奖\t0\t0\n4等奖\t5\t0\n5等奖\t10\t0\n"
                  "6等奖\t0\t0\n7等奖\t0\t0\n8等奖\t0\t0\nrequired\t36\nincome\t5120000\nresult\t5119964\n"));
    QStringList sorted = p.out({"prize", "list", "--sorted"}).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(sorted.size(), 19);
    EXPECT_EQ(sorted[0],
              QStringLiteral("idx\tfig1\tfig2\tfig3\tfig4\tfig5\tfig6\tfig7\tjiben\ttebie\tjiang\tjing"));
    EXPECT_EQ(sorted[1], QStringLiteral("1\t3\t7\t12\t20\t28\t4\t9\t5\t2\t1等奖\t5000000"));
    EXPECT_TRUE(sorted[18].endsWith(QStringLiteral("\t4\t1\t5等奖\t500")));

    // Everything thrown out: the winners move under the filtered column with their reason.
    EXPECT_EQ(p.out({"filter", "invert-all"}), QStringLiteral("0\n"));
    const QStringList check = p.out({"prize", "check"}).split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(check[1], QStringLiteral("1等奖\t0\t1"));
    EXPECT_EQ(check.mid(9), (QStringList{"required\t0", "income\t0", "result\t0"}));
    const QStringList thrown = p.out({"prize", "list", "--filtered"}).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(thrown.size(), 19);
    EXPECT_TRUE(thrown[0].endsWith(QStringLiteral("\tjing\tfliter")));
    EXPECT_EQ(thrown[1], QStringLiteral("1\t3\t7\t12\t20\t28\t4\t9\t5\t2\t1等奖\t5000000\t全部反选-"));
    EXPECT_EQ(p.out({"prize", "list", "--kept"}).split('\n', Qt::SkipEmptyParts).size(), 1);

    const QString path = p.out({"report", "write"}).trimmed();
    ASSERT_TRUE(QFile::exists(path)) << path.toStdString();
    EXPECT_EQ(QFileInfo(path).dir().dirName(), QStringLiteral("duijiang"));
    const QString name = QFileInfo(path).fileName();
    EXPECT_TRUE(name.endsWith(QStringLiteral("秒兑奖.txt")));
    const QStringList listed = p.out({"report", "list"}).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(listed.size(), 2);
    EXPECT_TRUE(listed[1].startsWith(name + QStringLiteral("\t兑奖日期:")));
    const QStringList shown = p.out({"report", "show", name}).split('\n');
    EXPECT_EQ(shown[2], QStringLiteral("组号方式:复选/胆拖组合缩水"));
    EXPECT_EQ(shown[3], QStringLiteral("开奖期数:1"));
    EXPECT_EQ(shown[4], QStringLiteral("开奖结果3 7 12 20 28 4  +  9"));
    EXPECT_TRUE(shown.contains(QStringLiteral("购买0注")));
    EXPECT_EQ(shown[shown.size() - 2], QStringLiteral("个人购买情况如下:"));
    EXPECT_NE(p.cli.run({"report", "show", "nothing兑奖.txt"}).exitCode, 0);
}

TEST(CliPrize, OtherTables) {
    PrizeCli p;
    // A table that was never made checks as empty.
    const QStringList rote = p.out({"prize", "check", "--table", "zuheRote"}).split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(rote.mid(9), (QStringList{"required\t0", "income\t0", "result\t0"}));
    EXPECT_EQ(p.out({"expand", "--front", "3,7,12,20,28,30,31", "--back", "1,2", "--six"}),
              QStringLiteral("7\n"));
    EXPECT_EQ(p.out({"prize", "check", "--table", "zuhef"}), QStringLiteral("kept\t7\nrequired\t84\n"));
    const QStringList six =
        p.out({"prize", "list", "--table", "zuhef", "--sorted"}).split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(six[0], QStringLiteral("idx\tfig1\tfig2\tfig3\tfig4\tfig5\tfig6\tjiben"));
    EXPECT_TRUE(six[1].endsWith(QStringLiteral("\t5")));
    EXPECT_TRUE(six[7].endsWith(QStringLiteral("\t4")));
    EXPECT_NE(p.cli.run({"report", "write", "--table", "zuhef"}).exitCode, 0);
    EXPECT_NE(p.cli.run({"prize", "check", "--table", "fig"}).exitCode, 0);
}
