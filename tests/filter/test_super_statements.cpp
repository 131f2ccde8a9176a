// Every super filter's kernel against its statements run in SQLite on random small tables, row
// by row: unslt, preunslt, Fliter, canshu, SKnum, JSqihao and the Numstring texts.
#include "engine/kernel_executor.h"
#include "filter/super/history_kernel.h"
#include "filter/super/super_filter.h"
#include "filter/super/super_kernels.h"
#include "random_inputs.h"
#include "super_reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

using Mode = CandidateTable::NumberTextMode;

constexpr int kFront = 12;  // small zones so that tickets and draws share many numbers
constexpr int kBack = 6;

// A table with random tickets, some rows dead with a reason, random scratch values and a
// Numstring left in `mode` by an earlier filter.
CandidateTable randomTable(std::mt19937& rng, uint64_t rows, Mode mode, bool houFilled) {
    CandidateTable t(schema::CandidateKind::Combinations, rows);
    const ReasonTable::Id earlier = t.reasons().intern(QStringLiteral("各位数和大小:99 保留0~90"));
    std::uniform_int_distribution<int> coin(0, 3), small(0, 6);
    for (uint64_t r = 0; r < rows; ++r) {
        const auto front = distinctSorted(rng, 5, kFront), back = distinctSorted(rng, 2, kBack);
        for (int k = 0; k < 5; ++k)
            t.numberColumn(k + 1)[r] = static_cast<uint8_t>(front[static_cast<size_t>(k)]);
        t.numberColumn(6)[r] = static_cast<uint8_t>(back[0]);
        t.numberColumn(7)[r] = static_cast<uint8_t>(back[1]);
        if (coin(rng) == 0) {
            t.filteredOut().set(r);
            t.rowReasons()[r] = earlier;
        } else if (coin(rng) == 0) {
            t.rowReasons()[r] = ReasonTable::kEmpty;
        }
        t.previousFilteredOut().set(r, coin(rng) == 0);
        t.paramValues()[r] = static_cast<int16_t>(small(rng));
        t.superCount()[r] = static_cast<int16_t>(small(rng));
        t.matchIssue()[r] = 2025000 + small(rng);
    }
    t.setNumberTextMode(mode);
    t.setBackNumberTextFilled(houFilled);
    return t;
}

void expectSame(SqliteDb& db, const CandidateTable& t, const std::string& what) {
    const auto ref = super_reference::rows(db);
    ASSERT_EQ(ref.size(), t.rowCount()) << what;
    int shown = 0;
    for (uint64_t r = 0; r < t.rowCount() && shown < 5; ++r) {
        const auto& e = ref[r];
        const bool numNull = t.numberTextMode() == Mode::Null;
        const bool same =
            e.filteredOut == t.filteredOut().test(r) &&
            e.previousFilteredOut == t.previousFilteredOut().test(r) &&
            e.fliterNull == t.reasons().isNull(t.rowReasons()[r]) && e.rowReasons == t.reasonText(r) &&
            e.paramValues == t.paramValueAt(r) && (e.sknumNull ? 0 : e.superCount) == t.superCountAt(r) &&
            e.matchIssue == t.matchIssueAt(r) && e.numstringNull == numNull &&
            (numNull || e.numberText == t.numberText(r)) && e.numstringHouNull == !t.backNumberTextFilled() &&
            (e.numstringHouNull || e.backNumberText == t.backNumberText(r));
        if (same) continue;
        ++shown;
        ADD_FAILURE() << what << " row " << r << ": statements unslt=" << e.filteredOut
                      << " pre=" << e.previousFilteredOut << " fliter='" << e.rowReasons.toStdString()
                      << "' canshu=" << e.paramValues << " sknum=" << e.superCount << " jsq=" << e.matchIssue
                      << " num='" << e.numberText.toStdString()
                      << "' | kernel unslt=" << t.filteredOut().test(r)
                      << " pre=" << t.previousFilteredOut().test(r) << " fliter='"
                      << t.reasonText(r).toStdString() << "' canshu=" << t.paramValueAt(r)
                      << " sknum=" << t.superCountAt(r) << " jsq=" << t.matchIssueAt(r) << " num='"
                      << (numNull ? std::string("<null>") : t.numberText(r).toStdString()) << "'";
    }
}

class SuperStatements : public ::testing::Test {
protected:
    SqliteDb db;
    std::mt19937 rng{20261122};
    void SetUp() override { ASSERT_TRUE(db.open(QStringLiteral(":memory:"), true)); }

    Mode anyMode() {
        const Mode modes[] = {Mode::Null, Mode::Front, Mode::Whole, Mode::Back, Mode::Marked};
        return modes[std::uniform_int_distribution<int>(0, 4)(rng)];
    }
    std::vector<int16_t> numbers(int count, int max) {
        std::vector<int16_t> out;
        for (int n : distinctSorted(rng, count, max)) out.push_back(static_cast<int16_t>(n));
        return out;
    }
};

TEST_F(SuperStatements, RelationFiltersMatchTheirStatements) {
    for (int round = 0; round < 24; ++round) {
        CandidateTable t = randomTable(rng, 300, anyMode(), round % 2 == 0);
        super_reference::load(db, t);
        const int index = round % 3;
        std::vector<int16_t> nums = numbers(1 + round % 4, kFront);
        // Some rounds give the numbers out of order, or a back number, or a repeated one.
        if (round % 5 == 1) std::reverse(nums.begin(), nums.end());
        if (round % 7 == 2) nums.push_back(static_cast<int16_t>(1 + round % kBack));
        if (round % 11 == 3) nums.push_back(nums.front());
        const std::vector<int> ref(nums.begin(), nums.end());
        const QString cap = super_filter::caption(static_cast<SuperButton>(index), ZoneScope::Front);
        super_kernels::relation(t, static_cast<super_kernels::Relation>(index), nums, cap);
        super_reference::relation(db, index, ref, cap);
        expectSame(db, t, "relation " + std::to_string(index) + " round " + std::to_string(round));
    }
}

TEST_F(SuperStatements, HistoryFiltersMatchTheirStatementsInEveryScope) {
    const DrawHistory h = randomHistory(rng, 25, kFront, kBack);
    const SuperButton buttons[] = {SuperButton::HistoryLow, SuperButton::HistoryMiddle,
                                   SuperButton::HistoryHigh};
    const int64_t spans[] = {1, 2, 7, 25, 26, 31};
    int round = 0;
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Back, ZoneScope::Both}) {
        for (SuperButton b : buttons) {
            for (int64_t n : spans) {
                CandidateTable t = randomTable(rng, 250, anyMode(), ++round % 2 == 0);
                super_reference::load(db, t);
                history_kernel::HistoryRun run;
                run.scope = scope;
                run.threshold = super_filter::threshold(b, scope);
                run.caption = super_filter::caption(b, scope);
                run.nText = QString::number(n);
                run.passes = n;
                history_kernel::history(t, run, h);
                super_reference::history(db, scope, run.threshold, run.caption, run.nText, n, h);
                expectSame(db, t,
                           "history " + super_filter::objectName(b).toStdString() + " scope " +
                               std::to_string(static_cast<int>(scope)) + " N " + std::to_string(n));
            }
        }
    }
}

TEST_F(SuperStatements, HistoryFilterOnDrawsWithRepeatedNumbers) {
    // Imported rows can repeat a number: each position of the draw counts on its own.
    DrawHistory h = randomHistory(rng, 12, kFront, kBack);
    h.numbers[5] = {2026005, 3, 3, 7, 7, 9, 2, 2};
    h.numbers[12] = {2026012, 1, 2, 2, 2, 4, 5, 5};
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Back}) {
        CandidateTable t = randomTable(rng, 300, Mode::Whole, false);
        super_reference::load(db, t);
        history_kernel::HistoryRun run{scope, scope == ZoneScope::Front ? 3 : 1,
                                       QStringLiteral("历史同3号滤"), QStringLiteral("12"), 12};
        history_kernel::history(t, run, h);
        super_reference::history(db, scope, run.threshold, run.caption, run.nText, 12, h);
        expectSame(db, t, "repeated numbers");
    }
}

TEST_F(SuperStatements, HistoryFilterWithMoreDistinctNumbersThanAMaskHolds) {
    // Imported draws with numbers up to 99: more literals than the classes of a mask, so the
    // rows are compared with each draw's texts.
    DrawHistory h = randomHistory(rng, 40, kFront, kBack);
    for (int i = 1; i <= 40; ++i) {
        const auto front = distinctSorted(rng, 5, 99);
        for (int k = 0; k < 5; ++k)
            h.numbers[static_cast<size_t>(i)][static_cast<size_t>(k + 1)] = front[static_cast<size_t>(k)];
        h.numbers[static_cast<size_t>(i)][6] = 50 + i;
        h.numbers[static_cast<size_t>(i)][7] = 10 + i;
    }
    h.numbers[40] = {2026040, 1, 2, 3, 4, 5, 6, 1};
    std::set<int> front, back;
    for (int i = 0; i <= 40; ++i) {
        for (int k = 1; k <= 5; ++k) front.insert(h.numbers[static_cast<size_t>(i)][static_cast<size_t>(k)]);
        back.insert(h.numbers[static_cast<size_t>(i)][6]);
        back.insert(h.numbers[static_cast<size_t>(i)][7]);
    }
    ASSERT_GT(front.size(), 64u);
    ASSERT_GT(back.size(), 64u);
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Back}) {
        CandidateTable t = randomTable(rng, 200, Mode::Whole, false);
        super_reference::load(db, t);
        history_kernel::HistoryRun run{scope, scope == ZoneScope::Front ? 2 : 1,
                                       QStringLiteral("历史同3号滤"), QStringLiteral("45"), 45};
        history_kernel::history(t, run, h);
        super_reference::history(db, scope, run.threshold, run.caption, run.nText, 45, h);
        expectSame(db, t, "many literals scope " + std::to_string(static_cast<int>(scope)));
        EXPECT_LT(t.liveCount(), t.rowCount()) << "some rows die";
    }
}

TEST_F(SuperStatements, InclusionFiltersMatchTheirStatements) {
    int round = 0;
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Back, ZoneScope::Both}) {
        for (int kind = 0; kind < 2; ++kind) {
            for (int rep = 0; rep < 4; ++rep, ++round) {
                CandidateTable t = randomTable(rng, 300, anyMode(), rep % 2 == 0);
                super_reference::load(db, t);
                super_kernels::InclusionRun run;
                run.scope = scope;
                run.numbers = numbers(2 + rep, kFront);
                run.groupSize = static_cast<int16_t>(1 + rep % 3);
                if (rep > 0) run.bankers = numbers(rep, kFront);
                run.caption = kind == 0 ? QStringLiteral("相克号包含过滤") : QStringLiteral("保留号包含过滤");
                const std::vector<int> nums(run.numbers.begin(), run.numbers.end()),
                    bankers(run.bankers.begin(), run.bankers.end());
                if (kind == 0) {
                    super_kernels::inclusionKill(t, run);
                    super_reference::inclusionKill(db, scope, nums, run.groupSize, bankers, run.caption);
                } else {
                    super_kernels::inclusionKeep(t, run);
                    super_reference::inclusionKeep(db, scope, nums, run.groupSize, bankers, run.caption);
                }
                expectSame(db, t, "inclusion " + std::to_string(kind) + " round " + std::to_string(round));
            }
        }
    }
}

TEST_F(SuperStatements, SameAsTemplateMatchesItsStatements) {
    for (int round = 0; round < 6; ++round) {
        CandidateTable t = randomTable(rng, 300, anyMode(), round % 2 == 0);
        // The template holds some of the table's tickets and some others.
        std::vector<std::array<int, 7>> tmpl;
        std::unordered_set<uint64_t> keys;
        for (int i = 0; i < 40; ++i) {
            std::array<int, 7> k{};
            const uint64_t r = std::uniform_int_distribution<uint64_t>(0, t.rowCount() - 1)(rng);
            for (int c = 0; c < 7; ++c) k[static_cast<size_t>(c)] = t.numberColumn(c + 1)[r];
            if (i % 3 == 0) k[6] = 13;  // a back number no row has
            tmpl.push_back(k);
            std::array<qint64, 7> wide{};
            std::copy(k.begin(), k.end(), wide.begin());
            keys.insert(*super_kernels::ticketKey(wide));
        }
        super_reference::load(db, t);
        super_reference::loadTemplate(db, tmpl);
        super_kernels::sameAsTemplate(t, keys);
        super_reference::sameAsTemplate(db);
        expectSame(db, t, "same as template round " + std::to_string(round));
    }
}

// The workers on a table that the kernels cut into slices on three threads, so that the threaded
// paths (runs of rows cut at a slice's edge, reasons interned from several slices) meet the
// statements too.
TEST_F(SuperStatements, ATableCutIntoSlicesMatchesTheStatements) {
    const KernelExecutor::ScopedThreadCount threads(3);
    const uint64_t rows = 2 * KernelExecutor::kMinSliceRows + 555;
    ASSERT_GT(KernelExecutor::shared().slicesFor(rows).count, 1u);
    const DrawHistory h = randomHistory(rng, 12, kFront, kBack);
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Back, ZoneScope::Both}) {
        CandidateTable t = randomTable(rng, rows, Mode::Whole, scope == ZoneScope::Both);
        // Runs of equal front numbers, as an expansion writes them.
        for (uint64_t r = 1; r < rows; ++r)
            if (r % 7 != 0)
                for (int k = 1; k <= 5; ++k) t.numberColumn(k)[r] = t.numberColumn(k)[r - 1];
        super_reference::load(db, t);
        const SuperButton b =
            scope == ZoneScope::Front ? SuperButton::HistoryLow : SuperButton::HistoryMiddle;
        history_kernel::HistoryRun run{scope, super_filter::threshold(b, scope),
                                       super_filter::caption(b, scope), QStringLiteral("6"), 6};
        history_kernel::history(t, run, h);
        super_reference::history(db, scope, run.threshold, run.caption, run.nText, 6, h);
        expectSame(db, t, "history on slices, scope " + std::to_string(static_cast<int>(scope)));

        const std::vector<int16_t> nums = numbers(3, kFront);
        super_kernels::relation(t, super_kernels::Relation::Supporting, nums, QStringLiteral("相生"));
        super_reference::relation(db, 1, std::vector<int>(nums.begin(), nums.end()), QStringLiteral("相生"));
        expectSame(db, t, "relation on slices");

        super_kernels::InclusionRun inc{scope, numbers(4, kFront), 2, numbers(1, kFront),
                                        QStringLiteral("保留号包含过滤")};
        super_kernels::inclusionKeep(t, inc);
        super_reference::inclusionKeep(db, scope, std::vector<int>(inc.numbers.begin(), inc.numbers.end()),
                                       inc.groupSize,
                                       std::vector<int>(inc.bankers.begin(), inc.bankers.end()), inc.caption);
        expectSame(db, t, "inclusion on slices");
    }
}

}  // namespace
