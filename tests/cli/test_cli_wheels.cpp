#include "cli/cli_fixture.h"

#include <QFile>

#include <QTemporaryDir>
#include <algorithm>

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
    EXPECT_EQ(
        one({"wheel", "show", "--family", "six", "--table", "56744"}).split('\n').first().split(' ').size(),
        6);

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

class CliWheelExpand : public CliTest {
protected:
    void SetUp() override { ASSERT_EQ(one({"workspace", "create", "w1"}), QStringLiteral("1")); }
    QStringList shownRows() { return one({"candidates", "show", "--table", "zuheRote"}).split('\n').mid(1); }
    int tableRows(const char* family, const char* table) {
        return static_cast<int>(
            one({"wheel", "show", "--family", family, "--table", table}).split('\n').size());
    }
};

// Twelve front and three back picks through the super wheel 中4保3: each wheel row with the
// three back pairs, the pair changing fastest, the row's numbers the picks at its positions.
TEST_F(CliWheelExpand, SuperWheelRowsTakeEveryBackPair) {
    const int rows = tableRows("super", "1243");
    const QString count = one({"wheel", "expand", "--family", "super", "--guarantee", "43", "--front",
                               "3,6,9,12,15,18,21,24,27,30,33,35", "--back", "2,5,9"});
    EXPECT_EQ(count.toInt(), rows * 3);
    const QStringList shown = shownRows();
    ASSERT_GE(shown.size(), 6);
    const QStringList first =
        one({"wheel", "show", "--family", "super", "--table", "1243"}).split('\n')[0].split(' ');
    QStringList numbers;
    const int picks[] = {3, 6, 9, 12, 15, 18, 21, 24, 27, 30, 33, 35};
    for (const QString& p : first) numbers << QString::number(picks[p.toInt() - 1]);
    for (int r = 0; r < 3; ++r) {
        const QStringList f = shown[r].split('\t');
        EXPECT_EQ(f[0].toInt(), r + 1);
        EXPECT_EQ(f.mid(1, 5), numbers) << shown[r].toStdString();
    }
    EXPECT_EQ(shown[0].split('\t').mid(6, 2), (QStringList{"2", "5"}));
    EXPECT_EQ(shown[1].split('\t').mid(6, 2), (QStringList{"2", "9"}));
    EXPECT_EQ(shown[2].split('\t').mid(6, 2), (QStringList{"5", "9"}));
}

TEST_F(CliWheelExpand, BankerWheelsHoldTheBankersAndSixNumberWheelsAreListed) {
    EXPECT_EQ(one({"wheel", "expand", "--family", "banker", "--guarantee", "55", "--bankers", "20,4",
                   "--front", "1,3,5,7,9,11,13,15", "--back", "1,2"}),
              QStringLiteral("56"));
    for (const QString& row : shownRows()) {
        const QStringList f = row.split('\t').mid(1, 5);
        EXPECT_TRUE(f.contains(QStringLiteral("4")) && f.contains(QStringLiteral("20"))) << row.toStdString();
        QList<int> n;
        for (const QString& v : f) n << v.toInt();
        EXPECT_TRUE(std::is_sorted(n.begin(), n.end())) << row.toStdString();
    }

    const QStringList six = one({"wheel", "expand", "--family", "six", "--guarantee", "44", "--front",
                                 "2,4,6,8,10,12,14,16,18,20", "--back", "1,2"})
                                .split('\n');
    const int rows = tableRows("six", "561044");
    ASSERT_EQ(six.size(), rows + 1);
    EXPECT_EQ(six.back(), QStringLiteral("单注旋转所需总金额:%1圆").arg(rows * 12));
    for (int i = 0; i < rows; ++i) EXPECT_EQ(six[i].split(' ').size(), 6);
}

TEST_F(CliWheelExpand, RefusesWhatTheMenusWouldNotOffer) {
    // Eight picks: below the basic wheels.
    const CliRun eight =
        cli.run({"wheel", "expand", "--family", "basic", "--front", "1,2,3,4,5,6,7,8", "--back", "1,2"});
    EXPECT_EQ(eight.exitCode, 1);
    EXPECT_TRUE(eight.err.contains(QStringLiteral("no basic wheel \"8\""))) << eight.err.toStdString();
    EXPECT_EQ(cli.run({"wheel", "expand", "--family", "basic", "--guarantee", "44", "--front",
                       "1,2,3,4,5,6,7,8,9", "--back", "1,2"})
                  .exitCode,
              1);
    EXPECT_EQ(
        cli.run({"wheel", "expand", "--family", "banker", "--front", "1,2,3,4,5,6,7,8,9", "--back", "1,2"})
            .exitCode,
        2);
    EXPECT_EQ(
        cli.run({"wheel", "expand", "--family", "super", "--bankers", "1", "--front", "2,3", "--back", "1,2"})
            .exitCode,
        2);
    EXPECT_EQ(
        cli.run({"wheel", "expand", "--family", "basic", "--front", "1,2,3,4,5,6,7,8,40", "--back", "1,2"})
            .exitCode,
        1);
}
