// Picks by frequency and omission: the counts over the three scopes against the counting
// statements run on the history database, the walk that adds c new numbers, and the omission
// bounds.
#include "picking/frequency_picks.h"
#include "picking_fixture.h"

#include <set>

using namespace frequency_picks;

namespace {

class FrequencyPicks : public ::testing::Test {
protected:
    static void SetUpTestSuite() { workspace = new PickingWorkspace(true); }
    static void TearDownTestSuite() {
        delete workspace;
        workspace = nullptr;
    }
    static Session& session() { return *workspace->session; }
    static const DrawHistory& history() { return session().history(); }

    // The count of each number as the counting statements of the scope give it.
    static std::vector<double> countedBySql(Zone zone, int size, const QString& condition, const QVariantList& bound) {
        const QString table = zone == Zone::Front ? QStringLiteral("fig") : QStringLiteral("fighou");
        const int positions = zone == Zone::Front ? 5 : 2;
        std::vector<double> counts(static_cast<size_t>(size) + 1, 0.0);
        for (int n = 1; n <= size; ++n)
            for (int p = 1; p <= positions; ++p) {
                QVariantList values{n};
                values += bound;
                counts[static_cast<size_t>(n)] +=
                    session()
                        .historyDb()
                        .scalar(QStringLiteral("SELECT COUNT(*) AS [COUNT] FROM [%1] WHERE [fig%2] = ?1 AND %3")
                                    .arg(table)
                                    .arg(p)
                                    .arg(condition),
                                values)
                        .toInt();
            }
        return counts;
    }

    BoardState state;
    NumberBoard board{state, 35, 12};

    static inline PickingWorkspace* workspace = nullptr;
};

std::set<int> picks(const ZoneBoardState& s) {
    std::set<int> out;
    for (int i = 1; i <= s.pickCount; ++i) out.insert(s.pickList[static_cast<size_t>(i)]);
    return out;
}

TEST_F(FrequencyPicks, CountsEqualTheCountingStatementsOfEachScope) {
    ASSERT_GT(history().drawCount(), 1000);
    const qint64 from = history().numbers[200][0], to = history().numbers[700][0];
    for (Zone zone : {Zone::Front, Zone::Back}) {
        const int size = zone == Zone::Front ? 35 : 12;
        EXPECT_EQ(countInScope(history(), zone, size, Scope::interval(from, to)),
                  countedBySql(zone, size, QStringLiteral("[fig0] >= ?2 AND [fig0] <= ?3"), {from, to}));
        EXPECT_EQ(countInScope(history(), zone, size, Scope::last(100)),
                  countedBySql(zone, size, QStringLiteral("[Idx] > ?2"), {history().drawCount() - 100}));
        // The whole history counts as the stored frequency table does.
        const std::vector<double> all = countInScope(history(), zone, size, Scope::allHistory());
        const QList<QVariantList> stored = session().historyDb().rows(
            QStringLiteral("SELECT [Number],[Glnum] FROM [%1] WHERE [Number] <= ?1 ORDER BY [Number]")
                .arg(zone == Zone::Front ? QStringLiteral("Gailv") : QStringLiteral("GailvHou")),
            {size});
        ASSERT_EQ(stored.size(), size);
        for (const QVariantList& r : stored) EXPECT_EQ(all[static_cast<size_t>(r[0].toInt())], r[1].toDouble());
    }
}

TEST_F(FrequencyPicks, LastDrawsBeyondTheHistoryCountAllDraws) {
    const Scope beyond = Scope::last(history().drawCount() + 500);
    EXPECT_EQ(countInScope(history(), Zone::Front, 35, beyond),
              countInScope(history(), Zone::Front, 35, Scope::allHistory()));
    // An interval outside the history counts nothing: every number ties at 0, lower first.
    const std::vector<double> none = countInScope(history(), Zone::Back, 12, Scope::interval(1, 2));
    EXPECT_EQ(ranked(none, Rank::MostFrequent), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST_F(FrequencyPicks, AllHistoryRanksByTheStoredShareWithLowerNumbersFirstOnTies) {
    const std::vector<int> order = ranked(frequencyFromStats(session().stats().front, 35), Rank::MostFrequent);
    ASSERT_EQ(order.size(), 35u);
    const QList<QVariantList> sql = session().historyDb().rows(
        QStringLiteral("SELECT [Number] FROM [Gailv] WHERE [Number] <= 35 ORDER BY [gailv] DESC, [Number]"));
    for (int i = 0; i < 35; ++i) EXPECT_EQ(order[static_cast<size_t>(i)], sql[i][0].toInt()) << i;
}

TEST_F(FrequencyPicks, AskingForMoreThanTheZoneHoldsMarksEveryNumberAndStops) {
    EXPECT_EQ(pickByFrequency(board, Zone::Back, history(), session().stats().back, Rank::LeastFrequent,
                              Scope::allHistory(), 40),
              12);
    EXPECT_EQ(state.back.pickCount, 12);
    // A smaller zone keeps the numbers above it out of both orders.
    board.setSizes(30, 12);
    board.reselect(Zone::Front);
    EXPECT_EQ(pickByFrequency(board, Zone::Front, history(), session().stats().front, Rank::LeastFrequent,
                              Scope::last(50), 99),
              30);
    EXPECT_EQ(*picks(state.front).rbegin(), 30);
}

TEST_F(FrequencyPicks, PickedNumbersAreSkippedAndBankersBecomePicks) {
    const Scope scope = Scope::last(30);
    const std::vector<int> order = ranked(countInScope(history(), Zone::Front, 35, scope), Rank::MostFrequent);
    // The first number is picked already, the second a banker.
    board.programClick(Zone::Front, order[0]);
    ASSERT_TRUE(board.rightClick(Zone::Front, order[1]));
    board.toggleBanker(Zone::Front);
    ASSERT_TRUE(state.front.bankerFlag[static_cast<size_t>(order[1])]);

    EXPECT_EQ(pickByFrequency(board, Zone::Front, history(), session().stats().front, Rank::MostFrequent, scope, 3),
              3);
    EXPECT_EQ(picks(state.front), (std::set<int>{order[0], order[1], order[2], order[3]}));
    EXPECT_FALSE(state.front.bankerFlag[static_cast<size_t>(order[1])]);
    EXPECT_EQ(state.front.bankerCount, 0);
}

TEST_F(FrequencyPicks, OmissionBoundsPickTheNumbersNotYetPicked) {
    const NumberStats& stats = session().stats().front;
    const int v = stats.omission[1];
    board.programClick(Zone::Front, 1);
    const int added = pickByOmission(board, Zone::Front, stats, OmissionBound::AtLeast, v);
    std::set<int> expected{1};
    for (int n = 1; n <= 35; ++n)
        if (stats.omission[n] >= v) expected.insert(n);
    EXPECT_EQ(picks(state.front), expected);
    EXPECT_EQ(added, static_cast<int>(expected.size()) - 1);

    board.reselect(Zone::Back);
    const NumberStats& back = session().stats().back;
    pickByOmission(board, Zone::Back, back, OmissionBound::AtMost, 2);
    for (int n = 1; n <= 12; ++n) EXPECT_EQ(state.back.pickFlag[static_cast<size_t>(n)], back.omission[n] <= 2) << n;
    // The current omission is the last row of the omission table.
    const QList<QVariantList> last =
        session().historyDb().rows(QStringLiteral("SELECT [ylqs3] FROM [YlqsHou] ORDER BY rowid DESC LIMIT 1"));
    ASSERT_EQ(last.size(), 1);
    EXPECT_EQ(back.omission[3], last[0][0].toInt());
}

TEST(FrequencyPickInput, ConvertsAsTheClassicIntegerConversion) {
    EXPECT_EQ(parseValue(QStringLiteral(" 7 ")), 7);
    EXPECT_EQ(parseValue(QStringLiteral("2.5")), 2);
    EXPECT_EQ(parseValue(QStringLiteral("3.5")), 4);
    EXPECT_EQ(parseValue(QStringLiteral("-3")), -3);
    EXPECT_FALSE(parseValue(QStringLiteral("")).has_value());
    EXPECT_FALSE(parseValue(QStringLiteral("十")).has_value());
    EXPECT_FALSE(parseValue(QStringLiteral("40000")).has_value());
}

}  // namespace
