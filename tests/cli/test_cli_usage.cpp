// How shuangqu-cli reads its command line: usage errors (exit 2) before anything is touched,
// refusals of the system (exit 1), the help of every command and the version.
#include "support/cli_runner.h"

#include <QDir>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

constexpr int kRefused = 1;
constexpr int kUsage = 2;

// A usage error: exit 2, the reason and the command's usage line on standard error, nothing on
// standard output.
void expectUsageError(const CliRun& r, const QString& reason, const QString& usage) {
    EXPECT_EQ(r.exitCode, kUsage) << qPrintable(r.err);
    EXPECT_TRUE(r.err.contains(reason)) << qPrintable(r.err);
    EXPECT_TRUE(r.err.contains(QStringLiteral("\nusage: shuangqu-cli ") + usage)) << qPrintable(r.err);
    EXPECT_TRUE(r.out.isEmpty()) << qPrintable(r.out);
}

// The command names that `help` lists: the lowercase words that open each entry.
QStringList listedCommands(const QString& help) {
    static const QRegularExpression entry(QStringLiteral("^  ([a-z][a-z-]*(?: [a-z][a-z-]*)*)(?: |$)"),
                                          QRegularExpression::MultilineOption);
    QStringList names;
    for (auto it = entry.globalMatch(help); it.hasNext();) names << it.next().captured(1);
    return names;
}

TEST(CliUsage, MalformedCommandLinesAreUsageErrorsAndTouchNothing) {
    CliRunner cli;
    expectUsageError(cli.run({"workspace", "create"}), QStringLiteral("missing NAME"),
                     QStringLiteral("workspace create NAME"));
    // A usage error is found before the data root is made.
    EXPECT_TRUE(QDir(cli.home()).isEmpty()) << "a usage error wrote to the data root";
    expectUsageError(cli.run({"workspace", "create", "a", "b"}), QStringLiteral("unexpected argument \"b\""),
                     QStringLiteral("workspace create NAME"));
    expectUsageError(cli.run({"workspace", "create", "a", "--frob"}), QStringLiteral("Unknown option 'frob'"),
                     QStringLiteral("workspace create NAME"));
    expectUsageError(cli.run({"workspace", "create", "a", "--password"}),
                     QStringLiteral("Missing value after '--password'"),
                     QStringLiteral("workspace create NAME"));
    expectUsageError(cli.run({"rules", "set", "--front", "x"}), QStringLiteral("\"x\" is not a whole number"),
                     QStringLiteral("rules set"));
    EXPECT_TRUE(QDir(cli.home()).isEmpty());

    // Numbers where numbers belong.
    expectUsageError(cli.run({"filter", "param", "Onum", "--keep", "--range", "a", "b"}),
                     QStringLiteral("--range LO: \"a\" is not a number"),
                     QStringLiteral("filter param NAME"));
    expectUsageError(cli.run({"filter", "param", "Onum", "--keep", "--range", "2"}),
                     QStringLiteral("--range takes LO HI"), QStringLiteral("filter param NAME"));
    expectUsageError(cli.run({"filter", "integrated", "--params", "Znum", "--keep", "--tolerance", "x"}),
                     QStringLiteral("--tolerance N: \"x\" is not a number"),
                     QStringLiteral("filter integrated"));
    expectUsageError(cli.run({"filter", "integrated", "--params", "Znum", "--keep", "--range", "Znum", "15"}),
                     QStringLiteral("--range takes NAME LO HI"), QStringLiteral("filter integrated"));
    expectUsageError(cli.run({"expand", "--front", "x", "--back", "1,2"}),
                     QStringLiteral("--front LIST: \"x\" is not a list of whole numbers"),
                     QStringLiteral("expand"));
    expectUsageError(cli.run({"filter", "relation", "kill", "3", "x"}),
                     QStringLiteral("N...: \"x\" is not a whole number"),
                     QStringLiteral("filter relation kill|pair|keep"));

    // Values outside a fixed set, and options that must come together or alone.
    expectUsageError(cli.run({"stats", "show", "--view", "middle"}),
                     QStringLiteral("\"middle\" is not one of front, back, both"),
                     QStringLiteral("stats show"));
    expectUsageError(cli.run({"filter", "param", "Nonsense", "--keep", "--range", "1", "2"}),
                     QStringLiteral("unknown parameter Nonsense"), QStringLiteral("filter param NAME"));
    expectUsageError(cli.run({"filter", "param", "Onum", "--range", "1", "2"}),
                     QStringLiteral("give one of --keep and --exclude"), QStringLiteral("filter param NAME"));
    expectUsageError(
        cli.run({"filter", "param", "Onum", "--keep", "--range", "1", "2", "--interval", "0", "9"}),
        QStringLiteral("--interval belongs to Zdqj"), QStringLiteral("filter param NAME"));
    expectUsageError(cli.run({"filter", "inclusion", "kill", "--group", "2"}),
                     QStringLiteral("missing --numbers LIST"), QStringLiteral("filter inclusion"));
    expectUsageError(cli.run({"range", "--column", "Znum", "--minmax", "--top", "2"}),
                     QStringLiteral("give one of --minmax"), QStringLiteral("range --column COL"));
    EXPECT_TRUE(QDir(cli.home()).isEmpty());

    // Commands that do not exist.
    CliRun r = cli.run({"frobnicate"});
    EXPECT_EQ(r.exitCode, kUsage);
    EXPECT_TRUE(r.err.contains(QStringLiteral("unknown command \"frobnicate\"")));
    r = cli.run({"workspace", "frob"});
    EXPECT_EQ(r.exitCode, kUsage);
    EXPECT_TRUE(r.err.contains(QStringLiteral("unknown subcommand \"frob\"")));
    EXPECT_TRUE(r.err.contains(QStringLiteral("  workspace rename NAME NEWNAME")))
        << "the group's commands are listed";
    EXPECT_EQ(cli.run({"moban", "add"}).exitCode, kUsage);
    r = cli.run({"--frob", "workspace", "list"});
    EXPECT_EQ(r.exitCode, kUsage);
    EXPECT_TRUE(r.err.contains(QStringLiteral("Unknown option 'frob'")));
}

TEST(CliUsage, RefusalsOfTheSystemExitWithOne) {
    CliRunner cli;
    CliRun r = cli.run({"rules", "show"});
    EXPECT_EQ(r.exitCode, kRefused);
    EXPECT_TRUE(r.err.contains(QStringLiteral("no workspace")));
    ASSERT_EQ(cli.run({"workspace", "create", "甲"}).exitCode, 0);
    r = cli.run({"workspace", "create", "甲"});
    EXPECT_EQ(r.exitCode, kRefused);
    EXPECT_EQ(r.err, QStringLiteral("此用户名已经被注册，请换用其他的名字\n"));
    // Five front numbers are too few for 复选组合排列.
    r = cli.run({"expand", "--front", "1,2,3,4,5", "--back", "1,2"});
    EXPECT_EQ(r.exitCode, kRefused);
    EXPECT_TRUE(r.err.contains(QStringLiteral("mnuLst"))) << qPrintable(r.err);
    EXPECT_FALSE(r.err.contains(QStringLiteral("usage:")));
    EXPECT_EQ(cli.run({"rules", "set", "--front", "27"}).exitCode, kRefused);
    EXPECT_EQ(cli.run({"candidates", "show", "--page", "0"}).exitCode, kRefused);
    // An inclusion group larger than the numbers is refused with the prompt's message.
    r = cli.run({"filter", "inclusion", "kill", "--numbers", "1,2", "--group", "3"});
    EXPECT_EQ(r.exitCode, kRefused);
    EXPECT_TRUE(r.err.contains(QStringLiteral("请输入1~2之间的数字")));
}

TEST(CliUsage, EveryListedCommandHasItsHelp) {
    CliRunner cli;
    const CliRun help = cli.run({"help"});
    ASSERT_EQ(help.exitCode, 0);
    const QStringList names = listedCommands(help.out);
    for (const char* expected :
         {"workspace create", "history import", "expand", "filter param", "filter history",
          "moban add integrated", "prize rules set", "report show", "range"})
        EXPECT_TRUE(names.contains(QString::fromUtf8(expected))) << expected;
    EXPECT_GE(names.size(), 50);
    for (const QString& name : names) {
        if (name == QLatin1String("help")) continue;
        const CliRun r = cli.run(name.split(' ') + QStringList{"--help"});
        EXPECT_EQ(r.exitCode, 0) << qPrintable(name);
        EXPECT_TRUE(r.out.startsWith(QStringLiteral("usage: shuangqu-cli ") + name)) << qPrintable(r.out);
        EXPECT_TRUE(r.out.contains(QStringLiteral("  -h, --help"))) << qPrintable(name);
        EXPECT_EQ(cli.run(QStringList{"help"} + name.split(' ')).out, r.out) << qPrintable(name);
    }
    // Options with their value names.
    const QString history = cli.run({"filter", "history", "--help"}).out;
    for (const char* option : {"--same <N>", "--last <D>", "--scope <ZONE>", "--table <T>"})
        EXPECT_TRUE(history.contains(QString::fromUtf8(option))) << option << "\n" << qPrintable(history);
    EXPECT_TRUE(
        cli.run({"filter", "integrated", "--help"}).out.contains(QStringLiteral("--interval <LO HI>")));
    EXPECT_TRUE(cli.run({"filter", "--help"}).out.contains(QStringLiteral("  filter invert-last")));
}

TEST(CliUsage, Version) {
    CliRunner cli;
    const CliRun r = cli.run({"--version"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, QStringLiteral("shuangqu-cli " SHUANGQU_VERSION "\n"));
}

TEST(CliUsage, OldParameterNamesStillWorkWithANote) {
    CliRunner cli;
    ASSERT_EQ(cli.run({"workspace", "create", "w"}).exitCode, 0);
    ASSERT_EQ(cli.run({"expand", "--front", "1,2,3,4,5,6,7,8", "--back", "1,2,3"}).out,
              QStringLiteral("168\n"));
    const CliRun byColumn = cli.run({"filter", "param", "Onum", "--keep", "--range", "2", "3"});
    ASSERT_EQ(byColumn.exitCode, 0);
    EXPECT_TRUE(byColumn.err.isEmpty()) << qPrintable(byColumn.err);
    const QString table = cli.run({"candidates", "show", "--all"}).out;
    ASSERT_EQ(cli.run({"filter", "reset-all"}).out, QStringLiteral("168\n"));
    // The button's name, and the two values joined by a comma.
    const CliRun byButton = cli.run({"filter", "param", "Option4", "--keep", "--range", "2,3"});
    EXPECT_EQ(byButton.out, byColumn.out);
    EXPECT_EQ(byButton.err, QStringLiteral("note: the parameter name Option4 is deprecated; use Onum\n"));
    EXPECT_EQ(cli.run({"candidates", "show", "--all"}).out, table);
}

}  // namespace
