// backtest and passrate run as processes on a small typed history.
#include "cli/cli_fixture.h"

#include <gtest/gtest.h>

namespace {

// Six draws; the fronts sum to 15, 100, 130, 75, 61 and 119.
const QList<QStringList> kDraws{{"1", "2", "3", "4", "5", "1", "2"},     {"10", "15", "20", "25", "30", "3", "4"},
                                {"20", "22", "25", "30", "33", "1", "5"}, {"5", "10", "15", "20", "25", "3", "4"},
                                {"5", "10", "12", "15", "19", "2", "6"},  {"15", "20", "25", "29", "30", "1", "2"}};

class CliBacktest : public CliTest {
protected:
    QStringList lines(const QStringList& args) { return one(args).split(QLatin1Char('\n')); }
    void SetUp() override {
        ASSERT_EQ(one({"workspace", "create", "w"}), QStringLiteral("1"));
        for (const QStringList& d : kDraws) one(QStringList{"history", "add"} + d);
        // Holds the winning tickets of draws 2, 4 and 6 (fronts and backs), not those of 3 and 5.
        ASSERT_EQ(one({"expand", "--front", "5,10,15,20,25,29,30", "--back", "1,2,3,4"}), QStringLiteral("126"));
        one({"moban", "add", "integrated", "--params", "Znum", "--range", "Znum", "60", "120"});
    }
};

}  // namespace

TEST_F(CliBacktest, PicksSpacePrintsARowPerDrawAndTheSummary) {
    const QString keptInRange = one({"filter", "param", "Znum", "--keep", "--range", "60", "120"});
    one({"filter", "reset-all"});
    const QStringList out = lines({"backtest", "--template", "--space", "picks", "--last", "5"});
    ASSERT_EQ(out.size(), 9) << out.join('\n').toStdString();
    EXPECT_EQ(out[0], QStringLiteral("issue\tsurvived\tkilling step\tkept\tcost\twinnings"));
    // Draws 2..6: in the table and in range for draws 2, 4 and 6; draw 3 out of range and not in
    // the table; draw 5 in range but not in the table.
    const QStringList survived{"1", "0", "1", "0", "1"};
    for (int i = 0; i < 5; ++i) {
        const QStringList cells = out[i + 1].split('\t');
        ASSERT_EQ(cells.size(), 6);
        EXPECT_EQ(cells[1], survived[i]) << out[i + 1].toStdString();
        // The sum step kills none of the winning tickets the table holds.
        EXPECT_EQ(cells[2], QStringLiteral("none"));
        EXPECT_EQ(cells[3], keptInRange);
        EXPECT_EQ(cells[4].toLongLong(), 2 * keptInRange.toLongLong());
        if (survived[i] == "1") {
            EXPECT_GE(cells[5].toLongLong(), 5000000);
        }
    }
    EXPECT_TRUE(out[6].isEmpty());
    EXPECT_EQ(out[7], QStringLiteral("draws\tsurvived\tsurvival\tmedian kept\tmin kept\tmax kept\tcost\twinnings\tnet"));
    EXPECT_TRUE(out[8].startsWith(QStringLiteral("5\t3\t0.6000\t") + keptInRange)) << out[8].toStdString();
    // The stored table is read, never changed; one thread gives the same rows.
    EXPECT_EQ(one({"candidates", "count"}), QStringLiteral("126"));
    EXPECT_EQ(lines({"backtest", "--template", "--space", "picks", "--last", "5", "--threads", "1"}), out);
}

TEST_F(CliBacktest, FullSpaceKillingStepAndSavedSetting) {
    // The whole 35/12 set: the fronts whose sum lies in 60..120, with each of the 66 back pairs.
    int fronts = 0;
    for (int a = 1; a <= 31; ++a)
        for (int b = a + 1; b <= 32; ++b)
            for (int c = b + 1; c <= 33; ++c)
                for (int d = c + 1; d <= 34; ++d)
                    for (int e = d + 1; e <= 35; ++e) fronts += a + b + c + d + e >= 60 && a + b + c + d + e <= 120;
    const QStringList out = lines({"backtest", "--template", "--last", "2"});
    ASSERT_EQ(out.size(), 6) << out.join('\n').toStdString();
    EXPECT_TRUE(out[1].startsWith(QStringLiteral("5\t1\tnone\t%1\t").arg(fronts * 66))) << out[1].toStdString();
    EXPECT_TRUE(out[2].startsWith(QStringLiteral("6\t1\tnone\t"))) << out[2].toStdString();
    one({"moban", "clear"});
    one({"moban", "add", "integrated", "--params", "Znum", "--range", "Znum", "70", "80"});
    const QStringList narrow = lines({"backtest", "--template", "--space", "picks", "--last", "5"});
    EXPECT_TRUE(narrow[1].startsWith(QStringLiteral("2\t0\t1\t"))) << narrow[1].toStdString();
    EXPECT_TRUE(narrow[3].startsWith(QStringLiteral("4\t1\tnone\t"))) << narrow[3].toStdString();
    one({"setting", "save", "s7080", "--params", "Znum", "--range", "Znum", "70", "80"});
    const QStringList bySetting = lines({"backtest", "--setting", "s7080", "--space", "picks", "--last", "5"});
    EXPECT_EQ(bySetting, narrow);
    const CliRun missing = cli.run({"backtest", "--setting", "none", "--space", "picks"});
    EXPECT_EQ(missing.exitCode, 1);
}

TEST_F(CliBacktest, PassRatesOfAColumnAndOfASetting) {
    EXPECT_EQ(one({"passrate", "--column", "Znum", "--range", "60", "120", "--last", "5"}),
              QStringLiteral("draws\tpassed\tshare\n5\t4\t0.8000"));
    EXPECT_EQ(one({"passrate", "--column", "Znum", "--range", "60", "120", "--last", "0"}),
              QStringLiteral("draws\tpassed\tshare\n6\t4\t0.6667"));
    EXPECT_EQ(one({"passrate", "--column", "fig1", "--list", "5 10", "--last", "3"}),
              QStringLiteral("draws\tpassed\tshare\n3\t2\t0.6667"));
    EXPECT_EQ(one({"passrate", "--column", "fig2", "--range", "1", "2", "--scope", "back", "--last", "6"}),
              QStringLiteral("draws\tpassed\tshare\n6\t2\t0.3333"));
    one({"setting", "save", "s", "--params", "Znum", "--range", "Znum", "60", "120"});
    EXPECT_EQ(one({"passrate", "--setting", "s", "--last", "5"}), QStringLiteral("draws\tpassed\tshare\n5\t4\t0.8000"));
    EXPECT_EQ(cli.run({"passrate", "--column", "Nothing", "--range", "1", "2"}).exitCode, 1);
    EXPECT_EQ(cli.run({"passrate", "--setting", "none"}).exitCode, 1);
}

TEST_F(CliBacktest, UsageErrors) {
    const QList<QStringList> wrong{{"backtest"},
                                   {"backtest", "--template", "--setting", "s"},
                                   {"backtest", "--template", "--space", "some"},
                                   {"backtest", "--template", "--last", "-3"},
                                   {"backtest", "--template", "--threads", "0"},
                                   {"passrate", "--column", "Znum"},
                                   {"passrate", "--column", "Znum", "--range", "1"},
                                   {"passrate", "--column", "Znum", "--range", "1", "2", "--list", "3"},
                                   {"passrate", "--setting", "s", "--range", "1", "2"},
                                   {"passrate", "--range", "1", "2"}};
    for (const QStringList& args : wrong) EXPECT_EQ(cli.run(args).exitCode, 2) << args.join(' ').toStdString();
    const QString help = one({"help"});
    EXPECT_TRUE(help.contains(QStringLiteral("  backtest (--template | --setting NAME)")));
    EXPECT_TRUE(help.contains(QStringLiteral("  passrate (--column NAME")));
}
