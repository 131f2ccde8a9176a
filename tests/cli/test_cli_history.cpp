// The history and stats commands of shuangqu-cli, run as a process.
#include "support/cli_runner.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

QString writeText(const QString& dir, const QString& name, const QByteArray& text) {
    QDir().mkpath(dir);
    const QString path = QDir(dir).filePath(name);
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(text);
    return path;
}

QStringList lines(const QString& out) { return out.split(QLatin1Char('\n'), Qt::SkipEmptyParts); }

}  // namespace

TEST(CliHistory, BundledHistoryImportShowAndStats) {
    CliRunner cli;
    ASSERT_EQ(cli.run({"workspace", "create", "王"}).exitCode, 0);
    const QString bundled =
        QDir(cli.home()).filePath(QStringLiteral("大乐透历史号码/大乐透历史开奖号码.txt"));
    const CliRun imported = cli.run({"history", "import", bundled});
    ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    EXPECT_EQ(imported.out, QStringLiteral("2933\n"));

    const QStringList frontRows = lines(cli.run({"history", "show"}).out);
    ASSERT_EQ(frontRows.size(), 2934);
    EXPECT_TRUE(
        frontRows[0].startsWith(QStringLiteral("Idx\tfig0\tfig1\tfig2\tfig3\tfig4\tfig5\tZnum\tXZnum")));
    EXPECT_TRUE(frontRows[0].endsWith(QStringLiteral("Lcz5\tintYljz")));
    EXPECT_TRUE(frontRows.last().startsWith(QStringLiteral("2933\t2026115\t12\t20\t32\t33\t35\t132\t")));
    // R and a print as the 32-bit floats they are.
    EXPECT_TRUE(frontRows[1].contains(QStringLiteral("\t0.8895926\t8.714286\t")));
    const QStringList hou = lines(cli.run({"history", "show", "--table", "fighou"}).out);
    ASSERT_EQ(hou.size(), 2934);
    EXPECT_TRUE(hou.last().startsWith(QStringLiteral("2933\t2026115\t6\t7\t")));
    EXPECT_EQ(lines(cli.run({"history", "show", "--table", "figquan"}).out).size(), 2934);
    EXPECT_NE(cli.run({"history", "show", "--table", "zuhe"}).exitCode, 0);

    const QStringList front = lines(cli.run({"stats", "show"}).out);
    ASSERT_EQ(front.size(), 36);
    EXPECT_EQ(front[0], QStringLiteral("Number\tYlqs\tGlnum\tgailv"));
    // 35 came in the last draw.
    EXPECT_TRUE(front[35].startsWith(QStringLiteral("35\t0\t")));
    EXPECT_EQ(lines(cli.run({"stats", "show", "--view", "back"}).out).size(), 13);
    EXPECT_EQ(lines(cli.run({"stats", "show", "--view", "both"}).out).size(), 36);
    EXPECT_NE(cli.run({"stats", "show", "--view", "middle"}).exitCode, 0);

    // Importing the same file again moves the old copy aside and starts again by itself.
    const CliRun again = cli.run({"history", "import", bundled});
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(again.out, QStringLiteral("2933\n"));
}

TEST(CliHistory, EntryEditDeleteClear) {
    CliRunner cli;
    ASSERT_EQ(cli.run({"workspace", "create", "李"}).exitCode, 0);
    EXPECT_NE(cli.run({"history", "delete-last"}).exitCode, 0);
    EXPECT_EQ(cli.run({"history", "add", "33", "3", "24", "19", "11", "9", "2"}).out, QStringLiteral("1\n"));
    EXPECT_EQ(cli.run({"history", "add", "1", "2", "3", "4", "5", "1", "2"}).out, QStringLiteral("2\n"));
    const QStringList frontRows = lines(cli.run({"history", "show"}).out);
    ASSERT_EQ(frontRows.size(), 3);
    EXPECT_TRUE(frontRows[1].startsWith(QStringLiteral("1\t1\t3\t11\t19\t24\t33\t")));

    const CliRun masked = cli.run({"history", "add", "_4", "11", "19", "24", "33", "02", "09"});
    EXPECT_NE(masked.exitCode, 0);
    EXPECT_TRUE(masked.err.contains(QStringLiteral("请点'放弃输入'按钮重新进行输入!")));
    const CliRun repeated = cli.run({"history", "add", "04", "11", "19", "11", "33", "02", "09"});
    EXPECT_NE(repeated.exitCode, 0);
    EXPECT_TRUE(repeated.err.contains(QStringLiteral("输入历史号务必不能重复")));

    // fig5 of row 2 from 5 to 30: the row is recomputed.
    EXPECT_EQ(cli.run({"history", "edit", "2", "fig5", "30"}).exitCode, 0);
    EXPECT_TRUE(
        lines(cli.run({"history", "show"}).out)[2].startsWith(QStringLiteral("2\t2\t1\t2\t3\t4\t30\t40\t")));
    const QStringList hou = lines(cli.run({"history", "show", "--table", "fighou"}).out);
    // fighou.Znum is the front sum plus y2 after an edit.
    EXPECT_TRUE(hou[2].contains(QStringLiteral("\t42\t")));
    const CliRun between = cli.run({"history", "edit", "2", "fig2", "3"});
    EXPECT_NE(between.exitCode, 0);
    EXPECT_TRUE(between.err.contains(QStringLiteral("并且按照由小到大的顺序排列")));
    EXPECT_NE(cli.run({"history", "edit", "9", "fig2", "3"}).exitCode, 0);

    EXPECT_EQ(cli.run({"history", "delete-last"}).out, QStringLiteral("1\n"));
    EXPECT_EQ(lines(cli.run({"history", "show"}).out).size(), 2);
    EXPECT_EQ(cli.run({"history", "clear"}).out, QStringLiteral("0\n"));
    EXPECT_EQ(lines(cli.run({"history", "show"}).out).size(), 1);
    // fighou is left as it was by clearing the list.
    EXPECT_EQ(lines(cli.run({"history", "show", "--table", "fighou"}).out).size(), 2);
}

TEST(CliHistory, BadFilesChangeNothing) {
    CliRunner cli;
    ASSERT_EQ(cli.run({"workspace", "create", "赵"}).exitCode, 0);
    const QString dir = QDir(cli.home()).filePath(QStringLiteral("files"));
    const QString good =
        writeText(dir + "/a", "h.txt", "2007001 22 24 29 31 35 04 11\n2007002 15 22 31 34 35 05 12\n");
    ASSERT_EQ(cli.run({"history", "import", good}).out, QStringLiteral("2\n"));
    const QString before = cli.run({"history", "show", "--table", "figquan"}).out;

    const CliRun six =
        cli.run({"history", "import", writeText(dir + "/b", "h.txt", "2007003 01 02 03 04 05 06\n")});
    EXPECT_NE(six.exitCode, 0);
    EXPECT_TRUE(six.err.contains(QStringLiteral("请检查您的历史号码文本都是由7个号码组成，中间由空格分开")));
    const CliRun nothing = cli.run({"history", "import", good, "--append"});
    EXPECT_NE(nothing.exitCode, 0);
    EXPECT_TRUE(nothing.err.contains(QStringLiteral("共计5个数")));
    const CliRun beyond =
        cli.run({"history", "import", writeText(dir + "/c", "h.txt", "2007003 01 02 03 04 05 06 25\n")});
    EXPECT_NE(beyond.exitCode, 0);
    EXPECT_TRUE(beyond.err.contains(QStringLiteral("文件不存在,名字有冲突或格式不正确")));
    EXPECT_EQ(cli.run({"history", "show", "--table", "figquan"}).out, before);

    const CliRun appended = cli.run(
        {"history", "import",
         writeText(dir + "/d", "h.txt", "2007002 15 22 31 34 35 05 12\n2007003 03 04 18 23 32 01 06\n"),
         "--append"});
    EXPECT_EQ(appended.out, QStringLiteral("3\n"));
    EXPECT_EQ(lines(cli.run({"history", "show"}).out).size(), 4);
    EXPECT_EQ(cli.run({"history", "show", "--table", "figquan"}).out, before);
}
