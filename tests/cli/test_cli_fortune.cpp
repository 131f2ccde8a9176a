#include "cli/cli_fixture.h"

using CliFortune = CliTest;

TEST_F(CliFortune, ReadsTheDayAndItsCurves) {
    EXPECT_EQ(one({"fortune", "--birth", "1970-01-01", "--date", "1970-01-01", "--type", "1"}),
              QStringLiteral("fortune\t200.000\npopularity\t200000\nword\t一般"));
    // A year ahead of the date, one row a day; the birthday's row has every curve at 50.
    const QStringList rows =
        one({"fortune", "--birth", "2000-02-29", "--date", "2000-02-29", "--curves"}).split('\n');
    ASSERT_EQ(rows.size(), 362);
    EXPECT_EQ(rows[0], QStringLiteral("day\tdate\tc23\tc28\tc33\ttotal"));
    EXPECT_EQ(rows[1], QStringLiteral("0\t2000-02-29\t50\t50\t50\t200"));
    EXPECT_TRUE(rows[361].startsWith(QStringLiteral("360\t2001-02-23\t"))) << rows[361].toStdString();
    EXPECT_TRUE(rows[8].startsWith(QStringLiteral("7\t2000-03-07\t"))) << rows[8].toStdString();
    EXPECT_EQ(rows[8].split('\t')[3], QStringLiteral("0")) << "the 28-day curve's high point";
}

TEST_F(CliFortune, RefusesWhatIsNoDateOrBeforeTheBirthday) {
    const CliRun before = cli.run({"fortune", "--birth", "1990-05-01", "--date", "1990-04-30"});
    EXPECT_EQ(before.exitCode, 1);
    EXPECT_TRUE(before.err.contains(QStringLiteral("输入时间必须比您的生日大,请重新输入")));
    for (const QStringList& args : {QStringList{"fortune"}, QStringList{"fortune", "--birth", "1990-02-30"},
                                    QStringList{"fortune", "--birth", "1990-01-01", "--date", "tomorrow"},
                                    QStringList{"fortune", "--birth", "1990-01-01", "--type", "5"}}) {
        const CliRun r = cli.run(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains(QStringLiteral("usage: shuangqu-cli fortune"))) << r.err.toStdString();
    }
}
