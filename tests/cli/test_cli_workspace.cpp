#include "support/cli_runner.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

TEST(CliWorkspace, CreateListRenameDelete) {
    CliRunner cli;
    EXPECT_EQ(cli.run({"workspace", "create", "甲"}).exitCode, 0);
    EXPECT_EQ(cli.run({"workspace", "create", "乙", "--password", "pw"}).out, QStringLiteral("2\n"));
    CliRun taken = cli.run({"workspace", "create", "甲"});
    EXPECT_NE(taken.exitCode, 0);
    EXPECT_TRUE(taken.err.contains(QStringLiteral("此用户名已经被注册，请换用其他的名字")));

    CliRun list = cli.run({"workspace", "list"});
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_EQ(list.out, QStringLiteral("index\tName\tpassword\tcurrent\n1\t甲\tno\t\n2\t乙\tyes\t*\n"));

    EXPECT_EQ(cli.run({"workspace", "rename", "甲", "丙"}).exitCode, 0);
    EXPECT_TRUE(QFile::exists(QDir(cli.home()).filePath(QStringLiteral("丙/丙.db"))));
    // The old files stay where they were.
    EXPECT_TRUE(QFile::exists(QDir(cli.home()).filePath(QStringLiteral("甲/甲.db"))));

    CliRun wrong = cli.run({"workspace", "delete", "乙", "--password", "nope"});
    EXPECT_NE(wrong.exitCode, 0);
    EXPECT_TRUE(wrong.err.contains(QStringLiteral("密码有误，没有权限删除该用户")));
    EXPECT_EQ(cli.run({"workspace", "delete", "乙", "--password", "pw"}).exitCode, 0);
    EXPECT_EQ(cli.run({"workspace", "list"}).out, QStringLiteral("index\tName\tpassword\tcurrent\n1\t丙\tno\t*\n"));
    EXPECT_NE(cli.run({"workspace", "delete", "无此人"}).exitCode, 0);
}

TEST(CliRules, ShowAndSetWithinTheAllowedSizes) {
    CliRunner cli;
    EXPECT_NE(cli.run({"rules", "show"}).exitCode, 0);  // no workspace yet
    cli.run({"workspace", "create", "w"});
    EXPECT_EQ(cli.run({"rules", "show"}).out, QStringLiteral("Bitnum\tBitnumHou\n35\t12\n"));
    EXPECT_EQ(cli.run({"rules", "set", "--front", "36", "--back", "24"}).exitCode, 0);
    EXPECT_EQ(cli.run({"--workspace", "w", "rules", "show"}).out, QStringLiteral("Bitnum\tBitnumHou\n36\t24\n"));
    CliRun bad = cli.run({"rules", "set", "--front", "27"});
    EXPECT_NE(bad.exitCode, 0);
    EXPECT_NE(cli.run({"rules", "set", "--back", "25"}).exitCode, 0);
    EXPECT_EQ(cli.run({"rules", "show"}).out, QStringLiteral("Bitnum\tBitnumHou\n36\t24\n"));
}

TEST(CliHelp, ListsTheCommands) {
    CliRunner cli;
    CliRun help = cli.run({"help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains(QStringLiteral("workspace create NAME")));
    EXPECT_TRUE(help.out.contains(QStringLiteral("rules set")));
    EXPECT_NE(cli.run({"frobnicate"}).exitCode, 0);
}
