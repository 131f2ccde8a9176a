#include "cli/cli_fixture.h"

#include <QFile>
#include <QTemporaryDir>

using CliWheels = CliTest;

// The list reads the program's wheel databases, made at the first call; a banker table holds
// its bankers at positions 1 and 2 of every row.
TEST_F(CliWheels, ListsAndShowsTheTablesOfTheMenus) {
    const QStringList basic = one({"wheel", "list", "--family", "basic"}).split('\n');
    ASSERT_EQ(basic.size(), 15);  // the heading and n = 9..22
    EXPECT_EQ(basic[0], QStringLiteral("family\ttable\trows\tbest known\tratio"));
    EXPECT_EQ(basic[1], QStringLiteral("basic\t9\t5\t5\t1.000"));
    EXPECT_TRUE(basic[14].startsWith(QStringLiteral("basic\t22\t")));
    const QStringList all = one({"wheel", "list"}).split('\n');
    EXPECT_EQ(all.size(), 1 + 14 + 84 + 168 + 84);

    const QStringList rows = one({"wheel", "show", "--family", "banker", "--table", "2D1055"}).split('\n');
    ASSERT_EQ(rows.size(), 56);
    for (const QString& row : rows) EXPECT_TRUE(row.startsWith(QStringLiteral("1 2 "))) << row.toStdString();
    EXPECT_EQ(one({"wheel", "show", "--family", "six", "--table", "56744"}).split('\n').first().split(' ').size(), 6);

    const CliRun missing = cli.run({"wheel", "show", "--family", "basic", "--table", "8"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_TRUE(missing.err.contains(QStringLiteral("no table \"8\""))) << missing.err.toStdString();
    EXPECT_EQ(cli.run({"wheel", "show", "--family", "basic"}).exitCode, 2);
    EXPECT_EQ(cli.run({"wheel", "list", "--family", "huge"}).exitCode, 2);
}

TEST_F(CliWheels, ChecksAWheelInATextFile) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("w.txt"));
    const auto write = [&](const char* text) {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    };
    // Every pair of 1..6 in a ticket of 5: two tickets cannot, three can.
    write("1 2 3 4 5\n2 3 4 5 6\n");
    const CliRun fails = cli.run({"wheel", "check", "6", "5", "2", "2", path});
    EXPECT_EQ(fails.exitCode, 1);
    EXPECT_EQ(fails.out, QStringLiteral("2 tickets\nFAIL: 1 drawn sets unmet, e.g. 1 6\n"));
    write("1 2 3 4 5\n2 3 4 5 6\n1 3 4 5 6\n");
    EXPECT_EQ(one({"wheel", "check", "6", "5", "2", "2", path}), QStringLiteral("3 tickets\nPASS"));

    write("1 2 3 4 7\n");
    const CliRun outside = cli.run({"wheel", "check", "6", "5", "2", "2", path});
    EXPECT_EQ(outside.exitCode, 1);
    EXPECT_TRUE(outside.err.contains(QStringLiteral("no position of 1..6"))) << outside.err.toStdString();
    EXPECT_EQ(cli.run({"wheel", "check", "6", "5", "3", "4", path}).exitCode, 2);
    EXPECT_EQ(cli.run({"wheel", "check", "6", "5", "2", path}).exitCode, 2);
}
