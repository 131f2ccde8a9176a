// The distribution of a column and the parameter lists, read from the draw tables of a small
// imported history.
#include "analysis/param_distribution.h"
#include "analysis/param_lists.h"
#include "history/history_fixture.h"

namespace {

// Sums 15, 100, 15 and 33: Znum runs from 15 to 100 with gaps.
const QStringList kDraws{QStringLiteral("2025101 01 02 03 04 05 01 02"), QStringLiteral("2025102 10 15 20 25 30 03 09"),
                         QStringLiteral("2025103 01 02 03 04 05 11 12"), QStringLiteral("2025104 03 05 07 08 10 02 07")};

class ParamTablesTest : public HistoryFixture {};

std::vector<int> countsOf(const DistributionGroup& g) {
    std::vector<int> out;
    for (const auto& [value, count] : g.counts) out.push_back(count);
    return out;
}

}  // namespace

TEST_F(ParamTablesTest, DistributionRunsFromTheLeastToTheGreatestValue) {
    ASSERT_TRUE(importLines(kDraws).done());
    SqliteDb& db = session->historyDb();
    const auto sums = param_distribution::count(db, HistoryView::Front, QStringLiteral("znum"));
    ASSERT_EQ(sums.size(), 1u);
    EXPECT_EQ(sums[0].column, QStringLiteral("Znum"));
    ASSERT_EQ(sums[0].counts.size(), 100u - 15 + 1);
    EXPECT_EQ(sums[0].counts.front(), (std::pair<qint64, int>{15, 2}));
    EXPECT_EQ(sums[0].counts[33 - 15], (std::pair<qint64, int>{33, 1}));
    EXPECT_EQ(sums[0].counts[16 - 15].second, 0);
    EXPECT_EQ(sums[0].counts.back(), (std::pair<qint64, int>{100, 1}));

    // The decades: three groups of six values each, whether or not a value occurred.
    const auto decades = param_distribution::count(db, HistoryView::Front, QStringLiteral("Qnum"));
    ASSERT_EQ(decades.size(), 3u);
    EXPECT_EQ(countsOf(decades[0]), (std::vector<int>{0, 1, 0, 0, 0, 3}));  // 1-10: five, one, five, five
    EXPECT_EQ(countsOf(decades[2]), (std::vector<int>{3, 0, 1, 0, 0, 0}));  // 21 and up: only 25 and 30
    EXPECT_EQ(decades[2].counts.back().first, 5);

    // What a scope's table lacks shows nothing; a number column only where the table has it.
    EXPECT_TRUE(param_distribution::count(db, HistoryView::Back, QStringLiteral("DZnum")).empty());
    EXPECT_TRUE(param_distribution::count(db, HistoryView::Front, QStringLiteral("fig6")).empty());
    const auto sixth = param_distribution::count(db, HistoryView::Both, QStringLiteral("fig6"));
    ASSERT_EQ(sixth.size(), 1u);
    EXPECT_EQ(sixth[0].counts.front().first, 1);
}

TEST_F(ParamTablesTest, DistributionOfNoDrawsIsEmpty) {
    EXPECT_TRUE(param_distribution::count(session->historyDb(), HistoryView::Front, QStringLiteral("Znum")).empty());
    EXPECT_EQ(param_distribution::count(session->historyDb(), HistoryView::Front, QStringLiteral("Qnum")).size(), 3u);
}

TEST_F(ParamTablesTest, ListsHaveTheirScopesColumnsAndSortByStoredValue) {
    const auto heads = [](HistoryView v) {
        QStringList out;
        for (const ListColumn& c : param_lists::columns(v)) out << c.head;
        return out;
    };
    EXPECT_EQ(param_lists::columns(HistoryView::Front).size(), 6u + 27 + 5);
    EXPECT_EQ(heads(HistoryView::Front).last(), QStringLiteral("第5位标准差"));
    EXPECT_EQ(heads(HistoryView::Back).mid(0, 4), (QStringList{"开奖期号", "第1位", "第2位", "各位数字和"}));
    EXPECT_EQ(heads(HistoryView::Back).last(), QStringLiteral("后2位标准差"));
    EXPECT_FALSE(heads(HistoryView::Back).contains(QStringLiteral("大数之和")));
    EXPECT_EQ(heads(HistoryView::Both)[7], QStringLiteral("第7位"));
    EXPECT_FALSE(heads(HistoryView::Both).contains(QStringLiteral("连号个数")));
    EXPECT_EQ(heads(HistoryView::Both).last(), QStringLiteral("数和个位"));

    ASSERT_TRUE(importLines(kDraws).done());
    SqliteDb& db = session->historyDb();
    for (HistoryView v : kAllViews) {
        const QList<QVariantList> rows = param_lists::rows(db, v);
        ASSERT_EQ(rows.size(), 4);
        EXPECT_EQ(rows[0].size(), static_cast<qsizetype>(param_lists::columns(v).size()));
        EXPECT_EQ(rows[0][0].toLongLong(), 2025101);
    }
    // The first position's distance from its centre, -2.5 .. 6.5: by value, -2.5 before 6.5
    // although "6" sorts before "-" as text; equal values by issue.
    const std::vector<ListColumn>& front = param_lists::columns(HistoryView::Front);
    int lcz1 = 0;
    while (front[static_cast<size_t>(lcz1)].column != QLatin1String("Lcz1")) ++lcz1;
    const QList<QVariantList> sorted = param_lists::rows(db, HistoryView::Front, lcz1);
    QList<qint64> issues;
    for (const QVariantList& r : sorted) issues << r[0].toLongLong();
    EXPECT_EQ(issues, (QList<qint64>{2025101, 2025103, 2025104, 2025102}));
    EXPECT_DOUBLE_EQ(sorted.back()[lcz1].toDouble(), 6.5);
}
