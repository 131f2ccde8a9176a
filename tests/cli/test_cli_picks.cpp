// pick, selection and selection-template of shuangqu-cli, run as processes: the board kept
// between calls, saved selections with their Idx, and bad input refused.
#include "cli_fixture.h"

#include <QDir>

namespace {

QStringList lines(const QString& out) { return out.split(QLatin1Char('\n')); }

class CliPicks : public CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(cli.run({"workspace", "create", "选"}).exitCode, 0);
        const QString bundled = QDir(cli.home()).filePath(QStringLiteral("大乐透历史号码/大乐透历史开奖号码.txt"));
        ASSERT_EQ(cli.run({"history", "import", bundled}).exitCode, 0);
    }
};

TEST_F(CliPicks, TheBoardPersistsAcrossCallsAndAddsOnlyNewNumbers) {
    EXPECT_EQ(one({"pick", "frequency", "--zone", "front", "--high", "3", "--last", "20"}), QStringLiteral("3"));
    EXPECT_EQ(one({"pick", "frequency", "--zone", "back", "--low", "50"}), QStringLiteral("12"));
    const QStringList first = lines(cli.run({"pick", "show"}).out);
    ASSERT_EQ(first.size(), 5);
    EXPECT_EQ(first[0].split(' ').size(), 3);
    EXPECT_EQ(first[1].split(' ').size(), 12);
    // The same three are on the board already: three more come after them.
    EXPECT_EQ(one({"pick", "frequency", "--zone", "front", "--high", "3", "--last", "20"}), QStringLiteral("3"));
    const QStringList second = lines(cli.run({"pick", "show"}).out);
    EXPECT_TRUE(second[0].startsWith(first[0] + QLatin1Char(' ')));
    EXPECT_EQ(second[0].split(' ').size(), 6);

    ASSERT_EQ(cli.run({"pick", "clear"}).exitCode, 0);
    EXPECT_EQ(cli.run({"pick", "show"}).out, QStringLiteral("\n\n\n\n"));
    // An omission of 0 is that of the last draw's numbers: five fronts.
    EXPECT_EQ(one({"pick", "omission", "--zone", "front", "--at-most", "0"}), QStringLiteral("5"));
}

TEST_F(CliPicks, SelectionsSaveCallAndKeepTheirIdxAfterADeletion) {
    one({"pick", "omission", "--zone", "back", "--at-most", "0"});
    ASSERT_EQ(cli.run({"selection", "save", "甲"}).exitCode, 0);
    one({"pick", "clear"});
    one({"pick", "frequency", "--zone", "front", "--high", "2"});
    ASSERT_EQ(cli.run({"selection", "save", "乙"}).exitCode, 0);
    const QString second = cli.run({"pick", "show"}).out;

    EXPECT_EQ(lines(cli.run({"selection", "call", "1"}).out)[0], QString());  // 甲 had no front picks
    EXPECT_EQ(cli.run({"selection", "call", "2"}).out, second);
    EXPECT_EQ(cli.run({"pick", "show"}).out, second);

    ASSERT_EQ(cli.run({"selection", "delete", "甲"}).exitCode, 0);
    const QStringList listed = lines(one({"selection", "list"}));
    ASSERT_EQ(listed.size(), 2);
    EXPECT_TRUE(listed[1].startsWith(QStringLiteral("1\t2\t乙\t2\t")));
    // Row 1 now shows 乙, but IDX 1 loads what is left of 甲: its back picks.
    const QStringList called = lines(cli.run({"selection", "call", "1"}).out);
    EXPECT_EQ(called[0], QString());
    EXPECT_EQ(called[1].split(' ').size(), 2);

    const CliRun quoted = cli.run({"selection", "rename", "乙", "a\"b"});
    EXPECT_NE(quoted.exitCode, 0);
    EXPECT_FALSE(quoted.err.isEmpty());
    EXPECT_NE(cli.run({"selection", "delete", "丙"}).exitCode, 0);
    ASSERT_EQ(cli.run({"selection", "rename", "乙", "丙"}).exitCode, 0);
    EXPECT_TRUE(one({"selection", "list"}).contains(QStringLiteral("\t丙\t")));
}

TEST_F(CliPicks, TemplateStepsRunInOrder) {
    EXPECT_EQ(one({"selection-template", "add", "0", "4"}), QStringLiteral("1"));
    EXPECT_EQ(one({"selection-template", "add", "6", "1000"}), QStringLiteral("2"));
    EXPECT_EQ(one({"selection-template", "add", "5", "2"}), QStringLiteral("3"));
    ASSERT_EQ(cli.run({"selection-template", "delete", "2"}).exitCode, 0);
    const QStringList steps = lines(one({"selection-template", "list"}));
    ASSERT_EQ(steps.size(), 3);
    EXPECT_EQ(steps[2], QStringLiteral("3\t5\t2\t后区选择多个低频号码"));
    const QStringList board = lines(cli.run({"selection-template", "run"}).out);
    EXPECT_EQ(board[0].split(' ').size(), 4);
    EXPECT_EQ(board[1].split(' ').size(), 2);
    EXPECT_EQ(lines(cli.run({"pick", "show"}).out)[0], board[0]);
}

TEST_F(CliPicks, BadInputIsRefusedWithAMessage) {
    for (const QStringList& args :
         {QStringList{"pick", "frequency", "--zone", "front"}, {"pick", "frequency", "--zone", "mid", "--high", "2"},
          {"pick", "frequency", "--zone", "front", "--high", "x"},
          {"pick", "frequency", "--zone", "front", "--high", "2", "--low", "2"},
          {"pick", "frequency", "--zone", "front", "--high", "2", "--from", "2007001"},
          {"pick", "frequency", "--zone", "front", "--high", "2", "--all", "--last", "3"},
          {"pick", "omission", "--zone", "back"}, {"selection-template", "add", "9", "1"},
          {"selection-template", "delete", "7"}, {"selection", "call", "0"}}) {
        const CliRun r = cli.run(args);
        EXPECT_NE(r.exitCode, 0) << args.join(' ').toStdString();
        EXPECT_FALSE(r.err.trimmed().isEmpty()) << args.join(' ').toStdString();
    }
    EXPECT_EQ(cli.run({"pick", "show"}).out, QStringLiteral("\n\n\n\n"));
}

}  // namespace
