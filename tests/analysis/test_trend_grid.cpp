// The trend grid of each zone against an independent walk over a small history and its
// omission table, the summary rows, and the two searches with their wrong answers.
#include "analysis/trend_grid.h"
#include "analysis/trend_search.h"
#include "history/history_fixture.h"

#include <array>
#include <map>

namespace {

// Six draws; 07 and 12 come twice in a row, 33 lies above a front zone of 30.
const QStringList kDraws{
    QStringLiteral("2025101 01 07 14 22 30 03 11"), QStringLiteral("2025102 05 07 19 26 33 03 09"),
    QStringLiteral("2025103 02 08 15 23 29 01 12"), QStringLiteral("2025104 10 13 18 27 35 06 12"),
    QStringLiteral("2025105 07 21 28 31 34 02 08"), QStringLiteral("2025106 01 02 03 04 05 11 12")};

struct Draw {
    int issue;
    std::vector<int> front, back;
};

std::vector<Draw> parsed() {
    std::vector<Draw> out;
    for (const QString& line : kDraws) {
        const QStringList f = line.split(QLatin1Char(' '));
        Draw d{f[0].toInt(), {}, {}};
        for (int i = 1; i <= 5; ++i) d.front.push_back(f[i].toInt());
        for (int i = 6; i <= 7; ++i) d.back.push_back(f[i].toInt());
        out.push_back(d);
    }
    return out;
}

class TrendGridTest : public HistoryFixture {
protected:
    // Gives every omission row figures that tell the row and the number apart: row k holds
    // 100 * k + n for number n, so that a figure shows which row it was read from.
    void markOmissionRows(const QString& table, int numbers) {
        for (int n = 1; n <= numbers; ++n)
            ASSERT_TRUE(session->historyDb().exec(
                QStringLiteral("UPDATE [%1] SET [ylqs%2] = rowid * 100 + %2").arg(table).arg(n)));
    }
    static const std::vector<int>& numbersOf(const Draw& d, Zone zone) {
        return zone == Zone::Front ? d.front : d.back;
    }
};

TEST_F(TrendGridTest, DrawRowsHoldTheHitsAndTheFigureOfTheSameDrawsOmissionRowInTheCellBefore) {
    ASSERT_TRUE(importLines(kDraws).done());
    for (Zone zone : {Zone::Front, Zone::Back}) {
        markOmissionRows(zone == Zone::Front ? QStringLiteral("Ylqs") : QStringLiteral("YlqsHou"),
                         zone == Zone::Front ? 36 : 24);
        TrendGrid grid(*session, zone);
        grid.load();
        const int size = zone == Zone::Front ? 35 : 12;
        ASSERT_EQ(grid.size(), size);
        ASSERT_EQ(grid.drawCount(), 6);
        // What each cell must hold, walked independently: a hit in draw r writes its number in
        // row r and the omission figure of row r into row r - 1.
        std::map<std::pair<int, int>, std::pair<int, bool>> expected;  // (row, n) -> (figure, grey)
        std::map<std::pair<int, int>, bool> green;
        const std::vector<Draw> draws = parsed();
        for (int r = 1; r <= 6; ++r) {
            for (int v : numbersOf(draws[r - 1], zone)) {
                expected[{r, v}] = {v, false};
                green[{r, v}] = true;
                if (r > 1) {
                    expected[{r - 1, v}] = {100 * r + v, true};
                }
            }
        }
        for (int r = 0; r <= 6; ++r) {
            if (r > 0) {
                EXPECT_EQ(grid.issue(r), draws[r - 1].issue);
            }
            for (int n = 1; n <= size; ++n) {
                const TrendCell& c = grid.cell(r, n);
                const auto e = expected.find({r, n});
                SCOPED_TRACE(
                    QStringLiteral("zone %1 row %2 number %3").arg(int(zone)).arg(r).arg(n).toStdString());
                ASSERT_EQ(c.shown, e != expected.end());
                EXPECT_EQ(c.drawn, green.count({r, n}) == 1);
                if (!c.shown) continue;
                EXPECT_EQ(c.figure, e->second.first);
                EXPECT_EQ(c.omission, e->second.second);
            }
        }
        // The head row above the first draw gets nothing.
        for (int n = 1; n <= size; ++n) EXPECT_FALSE(grid.cell(0, n).shown);
        // A hit in two draws in a row keeps its green under the grey figure (07 front, 12 back).
        const int repeated = zone == Zone::Front ? 7 : 12;
        const int row = zone == Zone::Front ? 1 : 3;
        EXPECT_TRUE(grid.cell(row, repeated).drawn);
        EXPECT_TRUE(grid.cell(row, repeated).omission);
    }
}

TEST_F(TrendGridTest, OmissionRowComesFromTheTablesLastRowAndBecomesTheCurrentOmissions) {
    ASSERT_TRUE(importLines(kDraws).done());
    // The omissions after the last draw, counted independently.
    std::array<int, 37> omission{};
    for (const Draw& d : parsed()) {
        for (int& o : omission) ++o;
        for (int v : d.front) omission[static_cast<size_t>(v)] = 0;
    }
    session->stats().front.omission.fill(-1);
    TrendGrid grid(*session, Zone::Front);
    grid.load();
    for (int n = 1; n <= 35; ++n) {
        ASSERT_TRUE(grid.currentOmission(n).has_value());
        EXPECT_EQ(*grid.currentOmission(n), omission[static_cast<size_t>(n)]) << n;
        EXPECT_EQ(session->stats().front.omission[static_cast<size_t>(n)], omission[static_cast<size_t>(n)]);
    }
    // The issue search: the row of issue 2025103 replaces the row and the current omissions.
    markOmissionRows(QStringLiteral("Ylqs"), 36);
    ASSERT_TRUE(grid.showOmissionsOf(2025103));
    EXPECT_EQ(*grid.currentOmission(9), 309);
    EXPECT_EQ(session->stats().front.omission[9], 309);
    // An unknown issue changes nothing.
    EXPECT_FALSE(grid.showOmissionsOf(2025199));
    EXPECT_EQ(*grid.currentOmission(9), 309);
}

TEST_F(TrendGridTest, AppearancesCountAllDrawsOrTheLatestOnes) {
    ASSERT_TRUE(importLines(kDraws).done());
    const std::vector<Draw> draws = parsed();
    for (Zone zone : {Zone::Front, Zone::Back}) {
        TrendGrid grid(*session, zone);
        grid.load();
        for (int after : {0, 3, 5, 6}) {
            if (after > 0) grid.countAppearances(after);
            std::map<int, int> counted;
            for (int r = after + 1; r <= 6; ++r)
                for (int v : numbersOf(draws[r - 1], zone)) ++counted[v];
            for (int n = 1; n <= grid.size(); ++n)
                EXPECT_EQ(grid.appearances(n), counted[n]) << "after " << after << " number " << n;
        }
    }
}

TEST_F(TrendGridTest, NumbersAboveTheZoneHaveNoColumnAndAMissingOmissionTableLeavesTheFiguresOut) {
    reopen(30, 12);
    ASSERT_TRUE(importLines(kDraws).done());
    ASSERT_TRUE(session->historyDb().exec(QStringLiteral("DROP TABLE [Ylqs]")));
    TrendGrid grid(*session, Zone::Front);
    grid.load();
    ASSERT_EQ(grid.size(), 30);
    // 33 (draw 2), 31, 34 (draw 5) and 35 (draw 4) are neither shown nor counted.
    EXPECT_EQ(grid.appearances(30), 1);
    for (int r = 0; r <= 6; ++r)
        for (int n = 1; n <= 30; ++n) EXPECT_FALSE(grid.cell(r, n).omission);
    EXPECT_TRUE(grid.cell(2, 7).drawn);
    EXPECT_FALSE(grid.currentOmission(1).has_value());
    EXPECT_FALSE(grid.showOmissionsOf(2025101));
}

TEST_F(TrendGridTest, RunsCountTheGapsAroundEveryHitAndTheLongestRuns) {
    ASSERT_TRUE(importLines(kDraws).done());
    TrendGrid front(*session, Zone::Front);
    front.load();
    const auto expect = [](const NumberRuns& r, double mean, int omission, int streak, int number) {
        EXPECT_DOUBLE_EQ(r.meanOmission, mean) << number;
        EXPECT_EQ(r.longestOmission, omission) << number;
        EXPECT_EQ(r.longestStreak, streak) << number;
    };
    expect(front.runs(7), 3.0 / 4, 2, 2, 7);  // hit, hit, -, -, hit, -
    expect(front.runs(35), 5.0 / 2, 3, 1, 35);  // only in the fourth draw
    expect(front.runs(6), 6, 6, 0, 6);          // never drawn
    TrendGrid back(*session, Zone::Back);
    back.load();
    expect(back.runs(12), 3.0 / 4, 2, 2, 12);  // -, -, hit, hit, -, hit
}

TEST_F(TrendGridTest, AnEmptyHistoryHasNoDrawRowsAndNoOmissions) {
    TrendGrid grid(*session, Zone::Back);
    grid.load();
    EXPECT_EQ(grid.drawCount(), 0);
    for (int n = 1; n <= 12; ++n) {
        EXPECT_FALSE(grid.currentOmission(n).has_value());
        EXPECT_EQ(grid.appearances(n), 0);
        EXPECT_EQ(grid.runs(n).meanOmission, 0);
        EXPECT_EQ(grid.runs(n).longestOmission, 0);
    }
}

TEST_F(TrendGridTest, MarksFollowTheBoardWithTheBankerFirst) {
    TrendGrid grid(*session, Zone::Front);
    grid.load();
    session->board().front.pickFlag[3] = true;
    session->board().front.bankerFlag[4] = true;
    session->board().front.pickFlag[5] = session->board().front.bankerFlag[5] = true;
    EXPECT_EQ(grid.mark(3), TrendGrid::kPickMark);
    EXPECT_EQ(grid.mark(4), TrendGrid::kBankerMark);
    EXPECT_EQ(grid.mark(5), TrendGrid::kBankerMark);
    EXPECT_EQ(grid.mark(6), QString());
}

// ---- the searches ----

TEST(TrendSearch, CountAsksAgainAfterEachWrongAnswerAndCountsTheLatestDraws) {
    ScriptedPrompter p;
    p.answer(QStringLiteral("abc"))
        .answer(QStringLiteral("0"))
        .answer(QStringLiteral("-3"))
        .answer(QStringLiteral(" 4 "));
    EXPECT_EQ(trend_search::askCountStart(p, 10), 6);
    EXPECT_EQ(p.messages(), (QStringList{trend_search::kNotNumber, trend_search::kNotPositive,
                                         trend_search::kNotPositive}));
    for (const auto& a : p.asked()) {
        if (a.kind == QLatin1String("inform")) {
            EXPECT_EQ(a.title, trend_search::kErrorTitle);
        }
        if (a.kind == QLatin1String("askText")) {
            EXPECT_EQ(a.title, QStringLiteral("历史次数检索"));
            EXPECT_TRUE(a.text.startsWith(QStringLiteral("检索指定历史阶段各位上的各个号码出现的次数。")));
        }
    }
}

TEST(TrendSearch, CountAtOrOverAllButOneCountsAllDrawsAndAnEmptyAnswerEnds) {
    // 0 < m < R - 1 counts the latest m; R - 1 and above (and the proposed R) count all.
    const std::pair<const char*, int> cases[] = {{"1", 9}, {"8", 2}, {"9", 0}, {"10", 0}, {"500", 0}};
    for (const auto& [answer, after] : cases) {
        ScriptedPrompter p;
        p.answer(QString::fromLatin1(answer));
        EXPECT_EQ(trend_search::askCountStart(p, 10), after) << answer;
    }
    ScriptedPrompter proposal;  // the player takes the proposal
    EXPECT_EQ(trend_search::askCountStart(proposal, 10), 0);
    ScriptedPrompter empty;
    empty.answer(QString());
    EXPECT_FALSE(trend_search::askCountStart(empty, 10).has_value());
    ScriptedPrompter cancelled;
    cancelled.cancel();
    EXPECT_FALSE(trend_search::askCountStart(cancelled, 10).has_value());
}

TEST(TrendSearch, IssueAsksAgainUntilAKnownIssueAndEndsOnZero) {
    const auto known = [](int32_t issue) { return issue == 2025103; };
    ScriptedPrompter p;
    p.answer(QStringLiteral("x"))
        .answer(QStringLiteral("2025199"))
        .answer(QStringLiteral("-1"))
        .answer(QStringLiteral("2025103"));
    EXPECT_EQ(trend_search::askIssue(p, 6, known), 2025103);
    EXPECT_EQ(p.messages(), (QStringList{trend_search::kNotNumber, trend_search::kNotPositive,
                                         trend_search::kNotPositive}));
    EXPECT_EQ(p.asked().first().text, QStringLiteral("检索指定历史期号的遗漏期数。请输入过滤检索历史期号。"));
    for (const char* end : {"0", ""}) {
        ScriptedPrompter q;
        q.answer(QString::fromLatin1(end));
        EXPECT_FALSE(trend_search::askIssue(q, 6, known).has_value());
        EXPECT_TRUE(q.messages().isEmpty());
    }
}

}  // namespace
