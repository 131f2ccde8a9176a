#include "cli/cli_fixture.h"

using CliAnalysis = CliTest;

namespace {

QStringList draw(std::initializer_list<int> numbers) {
    QStringList words{"history", "add"};
    for (int n : numbers) words << QString::number(n);
    return words;
}

}  // namespace

// The fit of a draw: the origin is a point of the line, so 2 4 6 8 10 is straight and a run of
// five further from the origin is not; row 0 holds no draw and has no straightness.
TEST_F(CliAnalysis, FitGivesInterceptSlopeAndStraightness) {
    one({"workspace", "create", "w"});
    one(draw({2, 4, 6, 8, 10, 1, 2}));
    one(draw({7, 8, 9, 10, 11, 3, 4}));
    EXPECT_EQ(one({"analysis", "fit", "1"}), QStringLiteral("A\tB\tR\n0\t2\t1"));
    const QStringList run = one({"analysis", "fit", "2"}).split('\n').last().split('\t');
    ASSERT_EQ(run.size(), 3);
    EXPECT_NEAR(run[0].toDouble(), 300.0 / 105.0, 1e-12);
    EXPECT_LT(run[2].toDouble(), 0.99);
    EXPECT_EQ(cli.run({"analysis", "fit", "0"}).out, QStringLiteral("A\tB\tR\n0\t0\t\n"));
    const CliRun past = cli.run({"analysis", "fit", "3"});
    EXPECT_EQ(past.exitCode, 1);
    EXPECT_TRUE(past.err.contains(QStringLiteral("no draw 3"))) << past.err.toStdString();
}

// Eleven draws whose first number is 1..11 and last number always 2: the K line rises with
// weights 1..i over the first ten, then weighs the last ten 10..1 over 55.
TEST_F(CliAnalysis, KLineOfAPositionAndOfAColumnOfTheScope) {
    one({"workspace", "create", "w"});
    for (int i = 1; i <= 11; ++i) one(draw({i, i + 10, i + 15, i + 20, i + 24, 1, 2}));
    const QStringList rows = one({"analysis", "kline", "--column", "fig1"}).split('\n');
    ASSERT_EQ(rows.size(), 12);
    EXPECT_EQ(rows[0], QStringLiteral("Idx\tQihao\tfig1\tK"));
    EXPECT_TRUE(rows[10].startsWith(QStringLiteral("10\t"))) << rows[10].toStdString();
    EXPECT_TRUE(rows[10].endsWith(QStringLiteral("\t10\t7"))) << rows[10].toStdString();  // 385 / 55
    EXPECT_TRUE(rows[11].endsWith(QStringLiteral("\t11\t8"))) << rows[11].toStdString();  // 439 / 55 = 7.98
    // A constant series stays on its value, here shown for the last two draws only.
    const QStringList back = one({"analysis", "kline", "--column", "fig7", "--last", "2"}).split('\n');
    ASSERT_EQ(back.size(), 3);
    for (int i = 1; i <= 2; ++i) EXPECT_TRUE(back[i].endsWith(QStringLiteral("\t2\t2"))) << back[i].toStdString();
    // The sum of the back numbers in the back table, named in any case.
    EXPECT_TRUE(one({"analysis", "kline", "--column", "znum", "--scope", "back", "--last", "1"})
                    .endsWith(QStringLiteral("\t3\t3")));
    // A column the scope's table lacks, and a missing column.
    const CliRun lacking = cli.run({"analysis", "kline", "--column", "DZnum", "--scope", "back"});
    EXPECT_EQ(lacking.exitCode, 1);
    EXPECT_TRUE(lacking.err.contains(QStringLiteral("no column DZnum in fighou"))) << lacking.err.toStdString();
    EXPECT_EQ(cli.run({"analysis", "kline"}).exitCode, 2);
    EXPECT_EQ(cli.run({"analysis", "kline", "--column", "fig1", "--last", "0"}).exitCode, 2);
}

TEST_F(CliAnalysis, MeansFollowTheZoneSizes) {
    one({"workspace", "create", "w"});
    one({"rules", "set", "--front", "28"});
    one(draw({1, 2, 3, 4, 5, 1, 2}));
    one(draw({3, 6, 9, 12, 15, 3, 12}));
    EXPECT_EQ(one({"analysis", "means"}), QStringLiteral("Position\tIdeal\tSample\n"
                                                         "1\t2.8\t2\n"
                                                         "2\t8.4\t4\n"
                                                         "3\t14\t6\n"
                                                         "4\t19.6\t8\n"
                                                         "5\t25.2\t10\n"
                                                         "6\t3\t2\n"
                                                         "7\t9\t7"));
}

// The trend grid as text: the head, the last draw rows asked for, and the three summary rows
// counted over every draw.
TEST_F(CliAnalysis, TrendPrintsTheGridOfAZone) {
    one({"workspace", "create", "w"});
    one({"workspace", "create", "empty"});
    const QStringList empty = one({"--workspace", "empty", "analysis", "trend", "--zone", "back"}).split('\n');
    ASSERT_EQ(empty.size(), 4);
    EXPECT_TRUE(empty[1].startsWith(QStringLiteral("遗漏期数")));
    for (const QStringList& d : {draw({1, 2, 3, 4, 5, 1, 2}), draw({3, 6, 9, 12, 15, 3, 12}),
                                 draw({3, 7, 9, 22, 35, 1, 12})})
        one(QStringList{"--workspace", "w"} + d);
    const QStringList rows = one({"--workspace", "w", "analysis", "trend", "--zone", "back", "--last", "2"}).split('\n');
    ASSERT_EQ(rows.size(), 6);
    EXPECT_EQ(rows[0], QStringLiteral("历史期号\t01\t02\t03\t04\t05\t06\t07\t08\t09\t10\t11\t12"));
    // The two newest draws; the first of them holds 03 and 12.
    EXPECT_EQ(rows[1].split('\t')[3], QStringLiteral("03"));
    EXPECT_EQ(rows[2].split('\t')[12], QStringLiteral("12"));
    EXPECT_EQ(rows[4].split('\t').mid(0, 4),
              (QStringList{QStringLiteral("出现次(双击检索期数)"), "2", "1", "1"}));
    EXPECT_EQ(rows[4].split('\t')[12], QStringLiteral("2"));
    EXPECT_TRUE(rows[5].startsWith(QStringLiteral("拖'√'胆'◎'")));
    EXPECT_EQ(one({"--workspace", "w", "analysis", "trend"}).split('\n')[0].split('\t').size(), 36);
}

// Three draws whose pairs and followers can be counted by hand.
TEST_F(CliAnalysis, CorrelationTransitionsAndMoments) {
    one({"workspace", "create", "w"});
    one(draw({1, 2, 3, 4, 5, 1, 2}));
    one(draw({3, 9, 17, 28, 35, 3, 12}));
    one(draw({2, 3, 17, 30, 35, 1, 12}));
    // The back zone's pairs below the diagonal: (1, 2) once, (1, 12) once, (3, 12) once.
    const QStringList back = cli.run({"analysis", "correlation", "--scope", "back"}).out.split('\n');
    ASSERT_EQ(back.size(), 14);
    EXPECT_EQ(back[0], QStringLiteral("相关参数\t01\t02\t03\t04\t05\t06\t07\t08\t09\t10\t11\t12"));
    EXPECT_EQ(back[2], QStringLiteral("02\t1\t\t\t\t\t\t\t\t\t\t\t"));
    EXPECT_EQ(back[12], QStringLiteral("12\t1\t0\t1\t0\t0\t0\t0\t0\t0\t0\t0\t"));
    // With 3 in front: the draws holding 3, 17 with 35 twice.
    const QStringList with3 = one({"analysis", "correlation", "--with", "3"}).split('\n');
    EXPECT_EQ(with3[35].split('\t')[17], QStringLiteral("2"));
    EXPECT_EQ(with3[35].split('\t')[3], QStringLiteral("0"));
    const CliRun outside = cli.run({"analysis", "correlation", "--with", "13", "--scope", "back"});
    EXPECT_EQ(outside.exitCode, 1);
    EXPECT_TRUE(outside.err.contains(QStringLiteral("请输入1~12之间的数字"))) << outside.err.toStdString();

    // One draw skipped: the first draw to the third; the follow rows are the second draw's.
    // The grid: heads, 35 rows, an empty row, the follow rows' head and rows, their total at
    // row 43 (35 + 8), and an empty row.
    const QStringList skip = cli.run({"analysis", "transitions", "--gap", "2"}).out.split('\n');
    ASSERT_EQ(skip.size(), 35 + 10 + 1);
    EXPECT_EQ(skip[0].split('\t')[0], QStringLiteral("前期\\下期"));
    EXPECT_EQ(skip[5].split('\t')[30], QStringLiteral("1"));  // 5 then 30
    EXPECT_EQ(skip[36], QString(35, QLatin1Char('\t')));
    EXPECT_EQ(skip[37].split('\t')[0], QStringLiteral("上2期跟随"));
    EXPECT_TRUE(skip[38].startsWith(QStringLiteral("03\t"))) << skip[38].toStdString();
    EXPECT_EQ(skip[38].split('\t')[30], QStringLiteral("1"));
    EXPECT_EQ(skip[43].split('\t')[0], QStringLiteral("上2期总跟随"));
    // Of the second draw's numbers only 3 came in the first draw, and 35 in the third.
    EXPECT_EQ(skip[43].split('\t')[35], QStringLiteral("1"));
    // Both zones: seven follow rows push the total down to row 45.
    const QStringList both = cli.run({"analysis", "transitions", "--gap", "1", "--scope", "both"}).out.split('\n');
    EXPECT_EQ(both[45].split('\t')[0], QStringLiteral("上1期总跟随"));
    EXPECT_EQ(both[44].split('\t')[0], QStringLiteral("12"));
    EXPECT_EQ(cli.run({"analysis", "transitions", "--gap", "3"}).exitCode, 2);

    const QStringList moments = one({"analysis", "moments"}).split('\n');
    ASSERT_EQ(moments.size(), 10);
    EXPECT_EQ(moments[0], QStringLiteral("第1位\t第2位\t第3位\t第4位\t第5位"));  // trimmed of its leading tab
    EXPECT_EQ(moments[1], QStringLiteral("理想均值\t3.5\t10.5\t17.5\t24.5\t31.5"));
    EXPECT_EQ(moments[2].split('\t')[1], QStringLiteral("2"));  // (1 + 3 + 2) / 3
    EXPECT_EQ(moments[3].split('\t')[1], QStringLiteral("1"));  // ((1-2)^2 + 1 + 0) / 2
}

TEST_F(CliAnalysis, MomentsOfOneDrawLeaveTheRowsOverRMinusOneEmpty) {
    one({"workspace", "create", "w"});
    one(draw({1, 2, 3, 4, 5, 1, 2}));
    const CliRun r = cli.run({"analysis", "moments"});
    const QStringList rows = r.out.split('\n');
    EXPECT_EQ(rows[3], QStringLiteral("样本方差\t\t\t\t\t"));
    EXPECT_EQ(rows[7], QStringLiteral("理想方差\t\t\t\t\t"));
    EXPECT_EQ(rows[5], QStringLiteral("二阶中心矩\t0\t0\t0\t0\t0"));
}

TEST_F(CliAnalysis, DistributionAndTheParameterList) {
    one({"workspace", "create", "w"});
    one(draw({1, 2, 3, 4, 5, 1, 2}));
    one(draw({10, 15, 20, 25, 30, 3, 9}));
    one(draw({1, 2, 3, 4, 5, 11, 12}));
    // The back sums 3, 12 and 23: every value between, with the draws of each.
    const QStringList sums = one({"analysis", "distribution", "--column", "Znum", "--scope", "back"}).split('\n');
    ASSERT_EQ(sums.size(), 1 + 23 - 3 + 1);
    EXPECT_EQ(sums[1], QStringLiteral("Znum\t3\t1"));
    EXPECT_EQ(sums[2], QStringLiteral("Znum\t4\t0"));
    EXPECT_EQ(sums.last(), QStringLiteral("Znum\t23\t1"));
    EXPECT_EQ(one({"analysis", "distribution", "--column", "qnum"}).split('\n').size(), 1 + 18);
    const CliRun lacking = cli.run({"analysis", "distribution", "--column", "Fcodp", "--scope", "back"});
    EXPECT_EQ(lacking.exitCode, 1);
    EXPECT_TRUE(lacking.err.contains(QStringLiteral("no column Fcodp in fighou"))) << lacking.err.toStdString();

    // The front list sorted by the sum: 15, 15, 100, equal sums in the order of their issues.
    const QStringList list = one({"analysis", "table", "list", "--sort", "znum"}).split('\n');
    ASSERT_EQ(list.size(), 4);
    EXPECT_TRUE(list[0].startsWith(QStringLiteral("开奖期号\t第1位\t第2位\t第3位\t第4位\t第5位\t1~10区间")));
    EXPECT_TRUE(list[3].split('\t')[1] == QStringLiteral("10")) << list[3].toStdString();
    EXPECT_LT(list[1].split('\t')[0].toLongLong(), list[2].split('\t')[0].toLongLong());
    EXPECT_EQ(cli.run({"analysis", "table", "list", "--sort", "Lnum", "--scope", "both"}).exitCode, 1);

    // A tally table: the heads, a row per draw, the foot; the bands with their group row.
    const QStringList repeats = cli.run({"analysis", "table", "repeats", "--scope", "back"}).out.split('\n');
    ASSERT_EQ(repeats.size(), 1 + 3 + 1 + 1);
    EXPECT_EQ(repeats[0], QStringLiteral("期号\t0个\t1个\t2个"));
    EXPECT_TRUE(repeats[3].endsWith(QStringLiteral("\t0\t\t"))) << repeats[3].toStdString();  // 11 12 after 3 9
    EXPECT_EQ(repeats[4], QStringLiteral("期数\t3\t0\t0"));
    const QStringList bands = cli.run({"analysis", "table", "intervals"}).out.split('\n');
    EXPECT_TRUE(bands[0].startsWith(QStringLiteral("区间\t01~05\t\t\t\t\t06~10"))) << bands[0].toStdString();
    EXPECT_EQ(bands[bands.size() - 2].split('\t')[0], QStringLiteral("近十区间次"));
    EXPECT_EQ(cli.run({"analysis", "table", "nonsense"}).exitCode, 2);
}
