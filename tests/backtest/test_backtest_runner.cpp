// The back-test runner: survival against an independent count over the draws, no look-ahead in
// the history filters and the last-draw parameters, kill-all and revive steps, cancel, saved
// settings, and the summary.
#include "backtest_fixture.h"

#include "filter/backtest/backtest_runner.h"
#include "filter/templates/filter_snapshot.h"
#include "filter/templates/saved_setting_store.h"
#include "filter/templates/template_store.h"
#include "workspace/sqlite_db.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace {

// The integrated filter's step that keeps 各位数和 lo..hi alone.
QVariantMap keepSum(int lo, int hi) {
    ParamWindowState s = ParamWindowState::defaults();
    s.integratedBox[0] = true;
    s.box(ParamId::NumberSum)[0] = QString::number(lo);
    s.box(ParamId::NumberSum)[1] = QString::number(hi);
    return filter_snapshot::snapshotValues(s);
}

int frontSum(const Ticket& t) { return t[0] + t[1] + t[2] + t[3] + t[4]; }

// A draw history of given tickets, issues 2026001 on.
DrawHistory historyOf(const std::vector<Ticket>& draws) {
    DrawHistory h;
    for (size_t i = 0; i < draws.size(); ++i) {
        DrawNumbers d{static_cast<int32_t>(2026001 + i)};
        for (size_t k = 0; k < 7; ++k) d[k + 1] = draws[i][k];
        h.numbers.push_back(d);
    }
    h.front.resize(h.numbers.size());
    h.back.resize(h.numbers.size());
    h.both.resize(h.numbers.size());
    return h;
}

// A filnum.db of its own for a synthetic history.
struct FilterDb {
    QTemporaryDir dir;
    SqliteDb db;
    FilterDb() {
        EXPECT_TRUE(db.open(dir.filePath(QStringLiteral("filnum.db")), true));
        EXPECT_TRUE(createTemplateTables(db, TemplateKind::FilterDb));
    }
};

class StopAfter : public backtest::Listener {
public:
    explicit StopAfter(int n) : m_n(n) {}
    void drawDone(const backtest::DrawRow&, int done, int) override { m_done = done; }
    bool cancelled() const override { return m_done >= m_n; }

private:
    int m_n;
    int m_done = 0;
};

// The last 100 winning tickets of the bundled history and 300 others, and the moban of the
// workspace emptied.
struct BundledRun {
    BundledWorkspace& w = BundledWorkspace::shared();
    std::vector<Ticket> tickets;
    BundledRun() {
        const DrawHistory& h = w.session->history();
        for (int d = h.drawCount() - 99; d <= h.drawCount(); ++d)
            tickets.push_back(ticketOf(h.numbers[static_cast<size_t>(d)]));
        std::mt19937 rng(20);
        while (tickets.size() < 400) {
            std::vector<int> f{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18,
                               19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35};
            std::shuffle(f.begin(), f.end(), rng);
            Ticket t{f[0], f[1], f[2], f[3], f[4], 1 + static_cast<int>(rng() % 6), 7 + static_cast<int>(rng() % 6)};
            tickets.push_back(ticketOf({0, t[0], t[1], t[2], t[3], t[4], t[5], t[6]}));
        }
        TemplateStore(w.session->filterDb()).clear();
    }
    backtest::Runner runner() {
        Session& s = *w.session;
        return backtest::Runner({s.filterDb(), s.history(), s.frontSize(), s.backSize()}, ticketTable(tickets));
    }
};

}  // namespace

TEST(BacktestRunner, SumStepSurvivesExactlyWhereTheDrawsSumLiesInRange) {
    ASSERT_NE(BundledWorkspace::shared().session, nullptr);
    BundledRun b;
    TemplateStore(b.w.session->filterDb()).addStep(0, 1, keepSum(60, 120));
    const backtest::Result r = b.runner().run(backtest::Strategy::filterTemplate(), {});
    const DrawHistory& h = b.w.session->history();
    ASSERT_EQ(r.rows.size(), 100u);
    int inRange = 0;
    uint64_t keptTickets = 0;
    for (const Ticket& t : b.tickets) keptTickets += frontSum(t) >= 60 && frontSum(t) <= 120;
    for (const backtest::DrawRow& row : r.rows) {
        const DrawNumbers& d = h.numbers[static_cast<size_t>(row.draw)];
        const int sum = d[1] + d[2] + d[3] + d[4] + d[5];
        const bool expected = sum >= 60 && sum <= 120;
        inRange += expected;
        EXPECT_EQ(row.issue, d[0]);
        EXPECT_TRUE(row.inTable);
        EXPECT_EQ(row.survived, expected) << row.issue << " sum " << sum;
        EXPECT_EQ(row.killingStep, expected ? 0 : 1);
        EXPECT_EQ(row.kept, keptTickets);
        EXPECT_EQ(row.cost, 2 * static_cast<int64_t>(keptTickets));
    }
    EXPECT_EQ(r.rows.front().draw, h.drawCount() - 99);
    EXPECT_EQ(r.summary.survived, inRange);
    EXPECT_GT(inRange, 0);
    EXPECT_LT(inRange, 100);
    // A surviving winning ticket wins at least the first prize of the default rules.
    for (const backtest::DrawRow& row : r.rows)
        if (row.survived) {
            EXPECT_GE(row.winnings, 5000000);
        }
}

TEST(BacktestRunner, SavedSettingRunsAsTheIntegratedFilterAndAnUnknownOneIsRefused) {
    BundledRun b;
    SqliteDb& db = b.w.session->filterDb();
    TemplateStore(db).addStep(0, 1, keepSum(60, 120));
    const backtest::Result byTemplate = b.runner().run(backtest::Strategy::filterTemplate(), {30});
    ParamWindowState s = ParamWindowState::defaults();
    filter_snapshot::applySnapshot(keepSum(60, 120), s);
    ScriptedPrompter prompter;
    prompter.answer(QStringLiteral("sum60"));
    ASSERT_TRUE(saved_setting_store::save(db, s, prompter, QDateTime::currentDateTime()));
    const backtest::Result bySetting = b.runner().run(backtest::Strategy::setting(QStringLiteral("sum60")), {30});
    ASSERT_EQ(bySetting.rows.size(), 30u);
    for (size_t i = 0; i < 30; ++i) {
        EXPECT_EQ(bySetting.rows[i].survived, byTemplate.rows[i].survived);
        EXPECT_EQ(bySetting.rows[i].kept, byTemplate.rows[i].kept);
        EXPECT_EQ(bySetting.rows[i].winnings, byTemplate.rows[i].winnings);
    }
    const backtest::Result none = b.runner().run(backtest::Strategy::setting(QStringLiteral("nothing")), {30});
    EXPECT_TRUE(none.rows.empty());
    EXPECT_FALSE(none.error.isEmpty());
}

TEST(BacktestRunner, HistoryStepSeesOnlyTheDrawsBeforeTheTestedOne) {
    // Draw 6 repeats draw 3; draw 4 comes again as draw 9, after it; the others differ.
    std::vector<Ticket> draws;
    for (int i = 0; i < 10; ++i) draws.push_back({1 + i, 12 + i, 23, 30, 35, 1, 2 + i});
    draws[5] = draws[2];
    draws[8] = {draws[3][0], draws[3][1], draws[3][2], draws[3][3], draws[3][4], 9, 10};
    const DrawHistory h = historyOf(draws);
    FilterDb f;
    SuperInputs in;
    in.superCount = QStringLiteral("100");
    TemplateStore(f.db).addStep(4, 1, filter_snapshot::superValues(4, in));  // 历史同5号滤 over all draws
    backtest::Runner runner({f.db, h, 35, 12}, ticketTable(draws));
    const backtest::Result r = runner.run(backtest::Strategy::filterTemplate(), {0});
    ASSERT_EQ(r.rows.size(), 9u);  // draws 2..10
    for (const backtest::DrawRow& row : r.rows) {
        const bool repeatsEarlier = row.draw == 6 || row.draw == 9;
        EXPECT_EQ(row.survived, !repeatsEarlier) << "draw " << row.draw;
        EXPECT_EQ(row.killingStep, repeatsEarlier ? 1 : 0);
        // The table's tickets whose five fronts came in a draw before the tested one die.
        std::set<std::vector<int>> seen;
        for (int e = 0; e < row.draw - 1; ++e) seen.insert({draws[e].begin(), draws[e].begin() + 5});
        uint64_t kept = 0;
        for (const Ticket& t : draws) kept += !seen.contains({t.begin(), t.begin() + 5});
        EXPECT_EQ(row.kept, kept) << "draw " << row.draw;
    }
}

TEST(BacktestRunner, LastDrawParametersComeFromTheDrawBeforeTheTestedOne) {
    // 重上期个数 kept at 0: a ticket dies when it shares a front number with the draw before.
    std::vector<Ticket> draws{{1, 2, 3, 4, 5, 1, 2},     {6, 7, 8, 9, 10, 1, 2},  {1, 7, 20, 21, 22, 1, 2},
                              {11, 12, 13, 14, 15, 1, 2}, {16, 17, 18, 19, 20, 1, 2}, {16, 25, 26, 27, 28, 1, 2}};
    const DrawHistory h = historyOf(draws);
    FilterDb f;
    ParamWindowState s = ParamWindowState::defaults();
    s.integratedBox[16] = true;
    s.box(ParamId::RepeatsOfPrevious)[0] = QStringLiteral("0");
    s.box(ParamId::RepeatsOfPrevious)[1] = QStringLiteral("0");
    TemplateStore(f.db).addStep(0, 1, filter_snapshot::snapshotValues(s));
    backtest::Runner runner({f.db, h, 35, 12}, ticketTable(draws));
    const backtest::Result r = runner.run(backtest::Strategy::filterTemplate(), {0});
    ASSERT_EQ(r.rows.size(), 5u);
    const std::vector<bool> survives{true, false, true, true, false};  // draws 2..6
    for (size_t i = 0; i < 5; ++i) EXPECT_EQ(r.rows[i].survived, survives[i]) << "draw " << r.rows[i].draw;
}

TEST(BacktestRunner, KillingEverythingCostsNothingAndAReviveMovesTheKillingStep) {
    BundledRun b;
    TemplateStore store(b.w.session->filterDb());
    store.addStep(0, 1, keepSum(0, 0));
    backtest::Result r = b.runner().run(backtest::Strategy::filterTemplate(), {20});
    ASSERT_EQ(r.rows.size(), 20u);
    for (const backtest::DrawRow& row : r.rows) {
        EXPECT_FALSE(row.survived);
        EXPECT_EQ(row.killingStep, 1);
        EXPECT_EQ(row.kept, 0u);
        EXPECT_EQ(row.cost, 0);
        EXPECT_EQ(row.winnings, 0);
    }
    EXPECT_EQ(r.summary.survivalRate, 0.0);
    EXPECT_EQ(r.summary.totalCost, 0);
    EXPECT_EQ(r.summary.maxKept, 0u);
    // Invert all twice: every ticket lives after step 2 and dies again at step 3.
    store.addStep(2, 1);
    store.addStep(2, 1);
    r = b.runner().run(backtest::Strategy::filterTemplate(), {5});
    for (const backtest::DrawRow& row : r.rows) EXPECT_EQ(row.killingStep, 3);
}

TEST(BacktestRunner, LeadingStepsRunOnceGiveTheRowsOfAFullReplayOnEachDraw) {
    BundledRun b;
    TemplateStore store(b.w.session->filterDb());
    SuperInputs kill;
    kill.superCount = QStringLiteral("2");
    kill.superNumbers = {1, 2};
    ParamWindowState repeats = ParamWindowState::defaults();
    repeats.integratedBox[16] = true;
    repeats.box(ParamId::RepeatsOfPrevious)[1] = QStringLiteral("1");
    repeats.box(ParamId::BigSum)[1] = QStringLiteral("999");
    SuperInputs same;
    same.superCount = QStringLiteral("50");
    // Three steps without history (one an invert-last), then history steps and inversions.
    store.addStep(0, 1, keepSum(60, 140));
    store.addStep(10, 1, filter_snapshot::superValues(10, kill));
    store.addStep(1, 1);
    store.addStep(5, 1, filter_snapshot::superValues(5, same));  // 历史同4号滤 over the last 50
    store.addStep(0, 1, filter_snapshot::snapshotValues(repeats));
    store.addStep(2, 1);
    store.addStep(0, 1, keepSum(50, 150));
    backtest::Options reuse{25};
    backtest::Options each{25};
    each.reuseLeadingSteps = false;
    backtest::Runner once = b.runner();
    backtest::Runner every = b.runner();
    const backtest::Result a = once.run(backtest::Strategy::filterTemplate(), reuse);
    const backtest::Result c = every.run(backtest::Strategy::filterTemplate(), each);
    ASSERT_EQ(a.rows.size(), 25u);
    ASSERT_EQ(c.rows.size(), 25u);
    std::set<int> killingSteps;
    for (size_t i = 0; i < 25; ++i) {
        EXPECT_EQ(a.rows[i].survived, c.rows[i].survived) << i;
        EXPECT_EQ(a.rows[i].killingStep, c.rows[i].killingStep) << i;
        EXPECT_EQ(a.rows[i].kept, c.rows[i].kept) << i;
        EXPECT_EQ(a.rows[i].winnings, c.rows[i].winnings) << i;
        killingSteps.insert(a.rows[i].killingStep);
    }
    EXPECT_GT(killingSteps.size(), 1u);
    // The last draw leaves the same flags and reasons either way.
    EXPECT_EQ(once.table().filteredOut(), every.table().filteredOut());
    EXPECT_EQ(once.table().previousFilteredOut(), every.table().previousFilteredOut());
    for (uint64_t r = 0; r < once.table().rowCount(); r += 7) EXPECT_EQ(once.table().reasonText(r), every.table().reasonText(r));
}

TEST(BacktestRunner, CancelKeepsTheRowsDoneSoFar) {
    BundledRun b;
    TemplateStore(b.w.session->filterDb()).addStep(0, 1, keepSum(60, 120));
    const backtest::Result whole = b.runner().run(backtest::Strategy::filterTemplate(), {10});
    StopAfter stop(4);
    const backtest::Result part = b.runner().run(backtest::Strategy::filterTemplate(), {10}, &stop);
    EXPECT_TRUE(part.cancelled);
    EXPECT_FALSE(whole.cancelled);
    ASSERT_EQ(part.rows.size(), 4u);
    EXPECT_EQ(part.summary.draws, 4);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(part.rows[i].draw, whole.rows[i].draw);
        EXPECT_EQ(part.rows[i].survived, whole.rows[i].survived);
    }
    StopAfter before(0);
    EXPECT_TRUE(b.runner().run(backtest::Strategy::filterTemplate(), {10}, &before).rows.empty());
}

TEST(BacktestRunner, SummaryAndSpan) {
    std::vector<backtest::DrawRow> rows(4);
    const uint64_t kept[] = {40, 10, 30, 20};
    for (size_t i = 0; i < 4; ++i) {
        rows[i].kept = kept[i];
        rows[i].cost = 2 * static_cast<int64_t>(kept[i]);
        rows[i].survived = i % 2 == 0;
        rows[i].winnings = i == 2 ? 500 : 0;
    }
    const backtest::Summary s = backtest::summarize(rows);
    EXPECT_EQ(s.draws, 4);
    EXPECT_EQ(s.survived, 2);
    EXPECT_DOUBLE_EQ(s.survivalRate, 0.5);
    EXPECT_EQ(s.medianKept, 20u);  // the lower middle of 10 20 30 40
    EXPECT_EQ(s.minKept, 10u);
    EXPECT_EQ(s.maxKept, 40u);
    EXPECT_EQ(s.totalCost, 200);
    EXPECT_EQ(s.net, 300);
    EXPECT_EQ(backtest::summarize({}).draws, 0);
    EXPECT_EQ(backtest::spanOf(50, 10).first, 41);
    EXPECT_EQ(backtest::spanOf(50, 10).count(), 10);
    EXPECT_EQ(backtest::spanOf(5, 100).first, 2);  // the first draw has no history before it
    EXPECT_EQ(backtest::spanOf(5, 0).count(), 4);
    EXPECT_EQ(backtest::spanOf(0, 10).count(), 0);
}

TEST(BacktestRunner, ContextOfTheWholeHistoryMatchesTheStoredOmissions) {
    Session& s = *BundledWorkspace::shared().session;
    const ParamContext stored = ParamContext::fromSession(s);
    const ParamContext counted = ParamContext::fromHistory(s.history(), s.frontSize(), s.backSize());
    EXPECT_EQ(counted.lastDrawFront, stored.lastDrawFront);
    for (int n = 1; n <= s.frontSize(); ++n)
        EXPECT_EQ(counted.omissionFront[static_cast<size_t>(n)], stored.omissionFront[static_cast<size_t>(n)]) << n;
    for (int n = 1; n <= s.backSize(); ++n)
        EXPECT_EQ(counted.omissionBack[static_cast<size_t>(n)], stored.omissionBack[static_cast<size_t>(n)]) << n;
    // Cut before the last draw: the last draw's numbers have the omission they had then.
    const int last = s.drawCount();
    const ParamContext before = ParamContext::fromHistory(DrawHistoryView(s.history(), last - 1), 35, 12);
    const DrawNumbers& d = s.history().numbers[static_cast<size_t>(last - 1)];
    for (int k = 1; k <= 5; ++k) {
        EXPECT_TRUE(before.lastDrawFront[static_cast<size_t>(d[static_cast<size_t>(k)])]);
        EXPECT_EQ(before.omissionFront[static_cast<size_t>(d[static_cast<size_t>(k)])], 0);
    }
}
