// The trend grid's model as text and colours, from a small history.
#include "analysis/trend_grid.h"
#include "analysis/ui/trend_grid_model.h"
#include "history/history_fixture.h"
#include "support/model_dump.h"

#include <QAbstractItemModelTester>
#include <QColor>

namespace {

class TrendGridModelTest : public HistoryFixture {};

TEST_F(TrendGridModelTest, BackGridShowsDrawsSummaryRowsAndColours) {
    ASSERT_TRUE(importLines({QStringLiteral("2025101 01 09 14 22 30 03 11"),
                             QStringLiteral("2025102 05 11 19 26 33 04 03"),
                             QStringLiteral("2025103 02 08 15 23 29 04 12")})
                    .done());
    session->board().back.pickFlag[4] = true;
    session->board().back.bankerFlag[12] = true;
    TrendGrid grid(*session, Zone::Back);
    grid.load();
    TrendGridModel model(grid, TrendGrid::kAppearanceHead);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
    // The omission rows hold the omissions after each draw, so the figure before a hit is the
    // hit's own row: 0.
    EXPECT_EQ(modelTsv(model), QStringLiteral("历史期号\t01\t02\t03\t04\t05\t06\t07\t08\t09\t10\t11\t12\n"
                                              "2025101\t\t\t0\t0\t\t\t\t\t\t\t11\t\n"
                                              "2025102\t\t\t03\t0\t\t\t\t\t\t\t\t0\n"
                                              "2025103\t\t\t\t04\t\t\t\t\t\t\t\t12\n"
                                              "遗漏期数\t3\t3\t1\t0\t3\t3\t3\t3\t3\t3\t2\t0\n"
                                              "出现次(双击检索期数)\t0\t0\t2\t2\t0\t0\t0\t0\t0\t0\t1\t1\n"
                                              "拖'√'胆'◎'\t\t\t\t√\t\t\t\t\t\t\t\t◎\n"));
    const auto colour = [&model](int row, int column, Qt::ItemDataRole role) {
        return model.index(row, column).data(role).value<QColor>();
    };
    EXPECT_EQ(colour(0, 3, Qt::BackgroundRole), QColor(0, 255, 0));      // 03 drawn in the first draw
    EXPECT_EQ(colour(0, 3, Qt::ForegroundRole), QColor(196, 196, 196));  // and the figure of the next
    EXPECT_EQ(colour(0, 4, Qt::ForegroundRole), QColor(196, 196, 196));
    EXPECT_FALSE(model.index(0, 4).data(Qt::BackgroundRole).isValid());
    EXPECT_FALSE(model.index(2, 4).data(Qt::ForegroundRole).isValid());
    EXPECT_EQ(model.marksRow(), 5);

    // A board change shows after marksChanged().
    session->board().back.pickFlag[1] = true;
    model.marksChanged();
    EXPECT_EQ(model.index(5, 1).data().toString(), QStringLiteral("√"));

    // The run statistics come under the summary rows on request, and go again.
    model.showRuns(true);
    const QString others6 = QStringLiteral("\t3.0").repeated(6), threes6 = QStringLiteral("\t3").repeated(6),
                  zeros6 = QStringLiteral("\t0").repeated(6);
    EXPECT_TRUE(modelTsv(model).endsWith(
        QStringLiteral("平均遗漏\t3.0\t3.0\t0.3\t0.3%1\t1.0\t1.0\n"
                       "最大遗漏\t3\t3\t1\t1%2\t2\t2\n"
                       "最大连出\t0\t0\t2\t2%3\t1\t1\n")
            .arg(others6, threes6, zeros6)))
        << modelTsv(model).toStdString();
    model.showRuns(false);
    EXPECT_EQ(model.rowCount(), 6);
}

TEST_F(TrendGridModelTest, NoDrawsLeaveTheHeadAndTheThreeSummaryRows) {
    TrendGrid grid(*session, Zone::Front);
    grid.load();
    const QString frontHead = QStringLiteral("出现次数(双击指定检索期数)");
    TrendGridModel model(grid, frontHead);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
    ASSERT_EQ(model.rowCount(), 3);
    ASSERT_EQ(model.columnCount(), 36);
    EXPECT_EQ(model.index(0, 0).data().toString(), QStringLiteral("遗漏期数"));
    EXPECT_EQ(model.index(1, 0).data().toString(), frontHead);
    EXPECT_EQ(model.index(2, 0).data().toString(), QStringLiteral("拖'√'胆'◎'"));
    EXPECT_EQ(model.index(0, 1).data().toString(), QString());
    EXPECT_EQ(model.index(1, 35).data().toString(), QStringLiteral("0"));
}

}  // namespace
