// Every family of kernels run on several threads gives, row by row, what its single-thread run
// gives: the flags, the scratch values, the reason ids and the texts behind them, the counts
// and the expansion's columns. The table has a few hundred thousand rows, runs of equal front
// numbers (which the history filter shares a result over) and random earlier state, so the
// slices cut runs, words and reasons everywhere.
#include "engine/kernel_executor.h"
#include "filter/candidate_actions.h"
#include "filter/param/param_filter.h"
#include "filter/result_grid_model.h"
#include "filter/super/history_kernel.h"
#include "filter/super/super_filter.h"
#include "filter/super/super_kernels.h"
#include "generation/expansion.h"
#include "prize/prize_check.h"
#include "random_inputs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>

namespace {

constexpr uint64_t kRows = 300'000;
constexpr unsigned kThreads = 4;  // more slices than the cores of a small machine have
using Mode = CandidateTable::NumberTextMode;

// Front numbers in runs of 1..70 rows, as an expansion writes them, with a few rows in any order
// as a text file may give them.
void fillTickets(CandidateTable& t, std::mt19937& rng) {
    std::uniform_int_distribution<int> runLength(1, 70), pct(0, 99), front(1, 35), back(1, 12);
    for (uint64_t r = 0; r < t.rowCount();) {
        const std::vector<int> f = distinctSorted(rng, 5, 35);
        const uint64_t end = std::min(t.rowCount(), r + static_cast<uint64_t>(runLength(rng)));
        for (; r < end; ++r) {
            const bool odd = pct(rng) < 2;
            for (int k = 0; k < 5; ++k)
                t.numberColumn(k + 1)[r] = static_cast<uint8_t>(odd ? front(rng) : f[static_cast<size_t>(k)]);
            const std::vector<int> b = distinctSorted(rng, 2, 12);
            t.numberColumn(6)[r] = static_cast<uint8_t>(odd ? back(rng) : b[0]);
            t.numberColumn(7)[r] = static_cast<uint8_t>(odd ? back(rng) : b[1]);
        }
    }
}

// Flags, scratch values and reasons as earlier filters leave them.
void fillEarlierState(CandidateTable& t, std::mt19937& rng) {
    std::uniform_int_distribution<int> pct(0, 99), small(-3, 60);
    const ReasonTable::Id earlier[] = {ReasonTable::kNull, ReasonTable::kEmpty,
                                       t.reasons().intern(QStringLiteral("各位数和大小:99 保留0~90")),
                                       t.reasons().intern(QStringLiteral("手工删除"))};
    for (uint64_t r = 0; r < t.rowCount(); ++r) {
        t.filteredOut().set(r, pct(rng) < 30);
        t.previousFilteredOut().set(r, pct(rng) < 40);
        t.scratchFilteredOut().set(r, pct(rng) < 50);
        t.groupMark().set(r, pct(rng) < 50);
        t.paramValues()[r] = static_cast<int16_t>(small(rng));
        t.superCount()[r] = static_cast<int16_t>(small(rng));
        t.failCount()[r] = static_cast<int16_t>(pct(rng) % 5);
        t.matchIssue()[r] = 2026000 + pct(rng);
        t.rowReasons()[r] = earlier[pct(rng) % 4];
    }
    const Mode modes[] = {Mode::Null, Mode::Front, Mode::Whole, Mode::Back, Mode::Marked};
    t.setNumberTextMode(modes[pct(rng) % 5]);
    t.setBackNumberTextFilled(pct(rng) < 50);
}

CandidateTable randomTable(std::mt19937& rng) {
    CandidateTable t(schema::CandidateKind::Combinations, kRows);
    fillTickets(t, rng);
    fillEarlierState(t, rng);
    return t;
}

template <typename Column>
testing::AssertionResult sameColumn(const char* name, const Column& a, const Column& b) {
    const auto [x, y] = std::ranges::mismatch(a, b);
    if (x == a.end() && y == b.end()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << name << " differs at row " << (x - a.begin());
}

testing::AssertionResult sameReasons(const CandidateTable& a, const CandidateTable& b) {
    if (a.reasons().size() != b.reasons().size())
        return testing::AssertionFailure() << a.reasons().size() << " reasons beside " << b.reasons().size();
    for (ReasonTable::Id id = 0; id < a.reasons().size(); ++id)
        if (a.reasons().text(id) != b.reasons().text(id) || a.reasons().isNull(id) != b.reasons().isNull(id))
            return testing::AssertionFailure()
                   << "reason " << id << " is '" << a.reasons().text(id).toStdString() << "' beside '"
                   << b.reasons().text(id).toStdString() << "'";
    return sameColumn("Fliter", a.rowReasons(), b.rowReasons());
}

testing::AssertionResult sameState(const CandidateTable& a, const CandidateTable& b) {
    for (const auto& [name, x, y] :
         {std::tuple("unslt", &a.filteredOut(), &b.filteredOut()),
          std::tuple("preunslt", &a.previousFilteredOut(), &b.previousFilteredOut()),
          std::tuple("tmpunslt", &a.scratchFilteredOut(), &b.scratchFilteredOut()),
          std::tuple("Gpslt", &a.groupMark(), &b.groupMark())})
        if (const auto r = sameColumn(name, x->words(), y->words()); !r) return r;
    for (const auto& [name, x, y] :
         {std::tuple("canshu", &CandidateTable::paramValueAt, &CandidateTable::paramValueAt),
          std::tuple("SKnum", &CandidateTable::superCountAt, &CandidateTable::superCountAt),
          std::tuple("Errnum", &CandidateTable::failCountAt, &CandidateTable::failCountAt)})
        for (uint64_t r = 0; r < a.rowCount(); ++r)
            if ((a.*x)(r) != (b.*y)(r)) return testing::AssertionFailure() << name << " differs at row " << r;
    for (uint64_t r = 0; r < a.rowCount(); ++r)
        if (a.matchIssueAt(r) != b.matchIssueAt(r))
            return testing::AssertionFailure() << "JSqihao differs at row " << r;
    if (a.numberTextMode() != b.numberTextMode() || a.backNumberTextFilled() != b.backNumberTextFilled())
        return testing::AssertionFailure() << "Numstring forms differ";
    return sameReasons(a, b);
}

// Runs `run` on two copies of `start`, on one thread and on kThreads, and compares the tables and
// what the runs returned.
template <typename Result>
void expectThreadsAgree(const CandidateTable& start, const std::function<Result(CandidateTable&)>& run,
                        const std::string& what) {
    CandidateTable single = start, parallel = start;
    Result a{}, b{};
    {
        const KernelExecutor::ScopedThreadCount one(1);
        a = run(single);
    }
    {
        const KernelExecutor::ScopedThreadCount many(kThreads);
        ASSERT_GT(KernelExecutor::shared().slicesFor(kRows).count, kThreads) << "the run is cut into slices";
        b = run(parallel);
    }
    EXPECT_EQ(a, b) << what;
    EXPECT_TRUE(sameState(single, parallel)) << what;
}

class ParallelRuns : public ::testing::Test {
protected:
    std::mt19937 rng{20260707};
    CandidateTable start = randomTable(rng);
};

using Killed = uint64_t;

TEST_F(ParallelRuns, CandidateActions) {
    const std::pair<const char*, void (*)(CandidateTable&)> actions[] = {
        {"reset all", candidate_actions::resetAll},
        {"reset last", candidate_actions::resetLast},
        {"invert all", candidate_actions::invertAll},
        {"invert last", candidate_actions::invertLast}};
    for (const auto& [name, action] : actions)
        expectThreadsAgree<Killed>(
            start,
            [run = action](CandidateTable& t) {
                run(t);
                return t.liveCount();
            },
            name);
}

// Boxes that catch some rows of every parameter: a range around a middle value, or a list.
ParamWindowState randomState(std::mt19937& rng, ZoneScope scope) {
    ParamWindowState s = ParamWindowState::defaults();
    std::uniform_int_distribution<int> pct(0, 99);
    s.scope = scope;
    for (bool& b : s.numberTicks) b = pct(rng) < 80;
    for (size_t i = 4; i < s.parityTicks.size(); ++i) s.parityTicks[i] = pct(rng) < 40;
    s.keep = pct(rng) < 50;
    s.listMode = pct(rng) < 25;
    s.logicAnd = pct(rng) < 50;
    for (const ParamInfo& p : param_catalogue::all()) {
        auto& b = s.box(p.id);
        const int lo = pct(rng) % 40;
        b[0] = QString::number(lo);
        b[1] = QString::number(lo + pct(rng) % 60);
        b[3] = QStringLiteral("%1 %2 %3").arg(pct(rng) % 12).arg(pct(rng) % 35).arg(pct(rng) % 120);
    }
    auto& z = s.box(ParamId::CustomRange);
    z[3] = QString::number(pct(rng) % 20);
    z[2] = QString::number(20 + pct(rng) % 16);
    s.txtZdqj = QStringLiteral("3 7 12 18 25 33");
    return s;
}

TEST_F(ParallelRuns, EveryParameterInEveryScope) {
    const ParamContext ctx = randomContext(rng, 40);
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Back, ZoneScope::Both}) {
        for (const ParamInfo& p : param_catalogue::all()) {
            const ParamWindowState s = randomState(rng, scope);
            const std::string what =
                std::string(p.button) + " scope " + std::to_string(static_cast<int>(scope));
            expectThreadsAgree<Killed>(
                start, [&](CandidateTable& t) { return param_filter::runSingle(t, p.id, s, ctx).killed; },
                what);
            // The export's front-only companion.
            expectThreadsAgree<Killed>(
                start,
                [&](CandidateTable& t) {
                    param_kernels::computeAll(param_kernels::compile(p.id, s.computeInputs(), ctx, true), t);
                    return Killed{0};
                },
                what + " front only");
            if (HasFailure()) return;
        }
    }
}

TEST_F(ParallelRuns, IntegratedFilter) {
    const ParamContext ctx = randomContext(rng, 40);
    std::uniform_int_distribution<int> pct(0, 99);
    for (int trial = 0; trial < 6; ++trial) {
        ParamWindowState s = randomState(rng, static_cast<ZoneScope>(1 + trial % 3));
        for (bool& b : s.integratedBox) b = pct(rng) < 70;
        s.useTolerance = trial % 2 == 0;
        s.txtRc0 = QString::number(trial % 4);
        expectThreadsAgree<int>(
            start, [&](CandidateTable& t) { return param_filter::runIntegrated(t, s, ctx).steps; },
            "integrated trial " + std::to_string(trial));
    }
}

// Every box ticked with limits that nearly every row fails (reasons joined from many pieces),
// then inverted and run again over those joined reasons.
TEST_F(ParallelRuns, IntegratedFilterOverJoinedReasons) {
    const ParamContext ctx = randomContext(rng, 40);
    for (ZoneScope scope : {ZoneScope::Both, ZoneScope::Front}) {
        ParamWindowState s = randomState(rng, scope);
        s.listMode = false;
        for (bool& b : s.integratedBox) b = true;
        for (const ParamInfo& p : param_catalogue::all())
            s.box(p.id)[0] = s.box(p.id)[1] = QStringLiteral("1");
        s.useTolerance = true;
        s.txtRc0 = QStringLiteral("2");
        expectThreadsAgree<int>(
            start,
            [&](CandidateTable& t) {
                const int steps = param_filter::runIntegrated(t, s, ctx).steps;
                candidate_actions::invertAll(t);
                candidate_actions::invertLast(t);
                return steps + param_filter::runIntegrated(t, s, ctx).steps;
            },
            "every box, scope " + std::to_string(static_cast<int>(scope)));
    }
}

std::vector<QString> rowTexts(const CandidateTable& t) {
    std::vector<QString> out;
    for (uint64_t r = 0; r < t.rowCount(); ++r) out.push_back(t.reasonText(r));
    return out;
}

// Cancels the run at the n-th question.
class CancelAt : public EngineProgress {
public:
    explicit CancelAt(int n) : m_left(n) {}
    void progress(uint64_t done, uint64_t total) override { EXPECT_LE(done, total); }
    bool cancelled() const override { return ++m_asked >= m_left; }
    int asked() const { return m_asked; }

private:
    int m_left;
    mutable int m_asked = 0;
};

// A cancel at any block, in the first pass or while the reasons are made, leaves the columns as
// they were; the reasons made before it may stay, and a full run afterwards reads as one on the
// untouched table.
TEST_F(ParallelRuns, CancelledIntegratedFilterLeavesTheTable) {
    const ParamContext ctx = randomContext(rng, 40);
    std::uniform_int_distribution<int> pct(0, 99);
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Both}) {
        ParamWindowState s = randomState(rng, scope);
        for (bool& b : s.integratedBox) b = pct(rng) < 80;
        const KernelExecutor::ScopedThreadCount threads(pct(rng) % 2 ? 1 : kThreads);
        CandidateTable counted = start;
        CancelAt never(INT32_MAX);
        param_filter::runIntegrated(counted, s, ctx, &never);
        // The calling thread asks after its blocks and once the pass is over; how many blocks
        // fall to it depends on how busy the machine is.
        ASSERT_GE(never.asked(), 1) << "the run asks";
        for (int trial = 0; trial < 4; ++trial) {
            CandidateTable t = start;
            // On two threads the number of questions varies a little from run to run: a cancel
            // that comes after the last one finds the run complete.
            const int at = 1 + pct(rng) * never.asked() / 100;
            CancelAt cancel(at);
            if (!param_filter::runIntegrated(t, s, ctx, &cancel).cancelled) {
                EXPECT_LT(cancel.asked(), at) << "a cancel that came was not ignored";
                EXPECT_TRUE(rowTexts(t) == rowTexts(counted));
                continue;
            }
            CandidateTable same = t;
            same.reasons() = start.reasons();  // entries the cancelled run added may stay
            EXPECT_TRUE(sameState(start, same)) << "cancelled at question " << cancel.asked();
            param_filter::runIntegrated(t, s, ctx);
            EXPECT_TRUE(rowTexts(t) == rowTexts(counted)) << "a full run after the cancel";
            EXPECT_TRUE(sameColumn("unslt", t.filteredOut().words(), counted.filteredOut().words()));
        }
    }
}

TEST_F(ParallelRuns, HistoryFilters) {
    const DrawHistory h = randomHistory(rng, 60, 35, 12);
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Back, ZoneScope::Both}) {
        for (SuperButton b :
             {SuperButton::HistoryLow, SuperButton::HistoryMiddle, SuperButton::HistoryHigh}) {
            history_kernel::HistoryRun run;
            run.scope = scope;
            run.threshold = super_filter::threshold(b, scope);
            run.caption = super_filter::caption(b, scope);
            run.passes = 40;
            run.nText = QStringLiteral("40");
            expectThreadsAgree<Killed>(
                start, [&](CandidateTable& t) { return history_kernel::history(t, run, h); },
                "history " + super_filter::objectName(b).toStdString() + " scope " +
                    std::to_string(static_cast<int>(scope)));
        }
    }
}

TEST_F(ParallelRuns, RelationInclusionAndTemplateFilters) {
    const std::vector<int16_t> numbers{3, 12, 25};
    for (int kind = 0; kind < 3; ++kind)
        expectThreadsAgree<Killed>(
            start,
            [&](CandidateTable& t) {
                return super_kernels::relation(t, static_cast<super_kernels::Relation>(kind), numbers,
                                               QStringLiteral("相克"));
            },
            "relation " + std::to_string(kind));
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Back, ZoneScope::Both}) {
        super_kernels::InclusionRun run{scope, {3, 7, 12, 18, 25}, 2, {7}, QStringLiteral("包含")};
        expectThreadsAgree<Killed>(
            start, [&](CandidateTable& t) { return super_kernels::inclusionKill(t, run); }, "inclusion kill");
        expectThreadsAgree<Killed>(
            start, [&](CandidateTable& t) { return super_kernels::inclusionKeep(t, run); }, "inclusion keep");
    }
    std::unordered_set<uint64_t> keys;
    for (uint64_t r = 0; r < kRows; r += 97) keys.insert(super_kernels::rowKey(start, r));
    expectThreadsAgree<Killed>(
        start, [&](CandidateTable& t) { return super_kernels::sameAsTemplate(t, keys); }, "same as template");
}

TEST_F(ParallelRuns, GridSelection) {
    const auto rowsOf = [&](GridView view) {
        ResultGridModel model;
        model.bind(&start, std::move(view));
        std::vector<uint64_t> rows;
        for (int i = 0; i < model.rowCount(); ++i) rows.push_back(model.tableRow(i));
        return rows;
    };
    for (const GridView& view : {GridView::live(), GridView::page(3), GridView::allRows()}) {
        std::vector<uint64_t> single, parallel;
        {
            const KernelExecutor::ScopedThreadCount one(1);
            single = rowsOf(view);
        }
        {
            const KernelExecutor::ScopedThreadCount many(kThreads);
            parallel = rowsOf(view);
        }
        EXPECT_EQ(single, parallel);
    }
}

TEST_F(ParallelRuns, PrizeCheckCounts) {
    const CheckDraw draw{2026100, {3, 12, 18, 25, 33, 4, 9}};
    const auto counts = [&] {
        const PrizeCheck c = PrizeCheck::run(start, draw, PrizeRules::defaults());
        std::vector<uint64_t> out{c.keptCount()};
        for (bool thrown : {false, true})
            for (int code = 0; code < PrizeCheck::kCodes; ++code) out.push_back(c.countOfCode(thrown, code));
        return out;
    };
    std::vector<uint64_t> single, parallel;
    {
        const KernelExecutor::ScopedThreadCount one(1);
        single = counts();
    }
    {
        const KernelExecutor::ScopedThreadCount many(kThreads);
        parallel = counts();
    }
    EXPECT_EQ(single, parallel);
    EXPECT_EQ(std::accumulate(single.begin() + 1, single.end(), uint64_t{0}), kRows);
}

TEST(ParallelExpansion, ColumnsMatchTheSingleThreadRun) {
    ExpansionInput in;
    for (int16_t n = 1; n <= 17; ++n) in.front.push_back(n);  // C(17,5) * C(12,2) = 408,408 rows
    for (int16_t n = 1; n <= 12; ++n) in.back.push_back(n);
    ExpansionResult single, parallel;
    {
        const KernelExecutor::ScopedThreadCount one(1);
        single = expand(in);
    }
    {
        const KernelExecutor::ScopedThreadCount many(kThreads);
        parallel = expand(in);
    }
    ASSERT_TRUE(single.table && parallel.table);
    ASSERT_EQ(single.table->rowCount(), 408'408u);
    for (int k = 1; k <= 7; ++k)
        EXPECT_TRUE(sameColumn("fig", single.table->numberColumn(k), parallel.table->numberColumn(k))) << k;
    EXPECT_TRUE(sameState(*single.table, *parallel.table));
    // The last row is the last combination with the last back pair.
    const uint64_t last = single.table->rowCount() - 1;
    EXPECT_EQ(super_kernels::rowKey(*parallel.table, last), super_kernels::rowKey(*single.table, last));
    EXPECT_EQ(parallel.table->numberColumn(1)[last], 13);
    EXPECT_EQ(parallel.table->numberColumn(7)[last], 12);
}

}  // namespace
