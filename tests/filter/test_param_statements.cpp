// The independent check of the parameter kernels: the window's own statements run in SQLite
// over a copy of small random candidate tables, and every row's canshu, unslt, preunslt,
// Errnum and Fliter must equal the engine's.
#include "param_reference.h"
#include "random_inputs.h"

#include "engine/kernel_executor.h"
#include "filter/candidate_actions.h"
#include "filter/param/param_filter.h"
#include "support/qt_printers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace {

constexpr uint64_t kRows = 240;

// A table of sorted tickets with some rows as a text file may give them (any order, repeats),
// random flags, stale canshu and Errnum, and reasons null, empty or set.
CandidateTable randomTable(std::mt19937& rng, uint64_t rows = kRows) {
    CandidateTable t(schema::CandidateKind::Combinations, rows);
    std::uniform_int_distribution<int> front(1, 35), back(1, 12), pct(0, 99), small(-3, 40);
    const QString earlier[] = {QString(), QStringLiteral(""), QStringLiteral("偶数个数大小:3 保留0~2"), QStringLiteral("手工删除")};
    for (uint64_t r = 0; r < rows; ++r) {
        std::array<int, 5> f{};
        std::array<int, 2> b{};
        if (pct(rng) < 85) {
            std::vector<int> pool(35);
            std::iota(pool.begin(), pool.end(), 1);
            std::shuffle(pool.begin(), pool.end(), rng);
            std::copy_n(pool.begin(), 5, f.begin());
            std::sort(f.begin(), f.end());
            do {
                b = {back(rng), back(rng)};
            } while (b[0] == b[1]);
            std::sort(b.begin(), b.end());
        } else {
            for (int& x : f) x = front(rng);
            for (int& x : b) x = back(rng);
        }
        for (int k = 0; k < 5; ++k)
            t.numberColumn(k + 1)[r] = static_cast<uint8_t>(f[static_cast<size_t>(k)]);
        t.numberColumn(6)[r] = static_cast<uint8_t>(b[0]);
        t.numberColumn(7)[r] = static_cast<uint8_t>(b[1]);
        t.filteredOut().set(r, pct(rng) < 30);
        t.previousFilteredOut().set(r, pct(rng) < 50);
        t.paramValues()[r] = static_cast<int16_t>(small(rng));
        t.failCount()[r] = static_cast<int16_t>(pct(rng) % 4);
        const QString& why = earlier[pct(rng) % 4];
        t.rowReasons()[r] = why.isNull() ? ReasonTable::kNull : t.reasons().intern(why);
    }
    return t;
}

// A scale of the values each parameter takes, for limits and lists that catch some rows.
int scaleOf(ParamId id) {
    switch (id) {
        case ParamId::NumberSum:
        case ParamId::OddSum:
        case ParamId::EvenSum:
        case ParamId::SmallSum:
        case ParamId::BigSum:
        case ParamId::OmissionSum:
            return 150;
        case ParamId::LastDigitSum:
            return 40;
        case ParamId::Position1:
        case ParamId::Position2:
        case ParamId::Position3:
        case ParamId::Position4:
        case ParamId::Position5:
        case ParamId::LargestGap:
        case ParamId::LastMinusFirst:
        case ParamId::OmissionSpread:
            return 35;
        case ParamId::AcComplexity:
            return 12;
        default: return 7;
    }
}

QString randomLimit(std::mt19937& rng, int scale) {
    std::uniform_int_distribution<int> v(0, scale), form(0, 9);
    const int n = v(rng);
    switch (form(rng)) {
        case 0: return QString::number(n) + QStringLiteral(".5");
        case 1: return QStringLiteral("");
        case 2: return QString::number(n) + QStringLiteral("x");  // the leading number counts
        default: return QString::number(n);
    }
}

QString randomList(std::mt19937& rng, int scale) {
    std::uniform_int_distribution<int> v(0, scale), count(0, 5), form(0, 9);
    QStringList parts;
    const int n = count(rng);
    for (int i = 0; i < n; ++i) {
        const int x = v(rng);
        const int f = form(rng);
        parts << (f == 0 ? QStringLiteral("0%1").arg(x) : f == 1 ? QStringLiteral("%1.0").arg(x) : QString::number(x));
        if (f == 2) parts << QString();  // a double blank
    }
    return parts.join(QLatin1Char(' '));
}

ParamWindowState randomState(std::mt19937& rng) {
    ParamWindowState s = ParamWindowState::defaults();
    std::uniform_int_distribution<int> pct(0, 99), scope(1, 3);
    s.scope = static_cast<ZoneScope>(scope(rng));
    for (bool& b : s.numberTicks) b = pct(rng) < 70;
    for (size_t i = 4; i < s.parityTicks.size(); ++i) s.parityTicks[i] = pct(rng) < 40;
    s.keep = pct(rng) < 50;
    s.listMode = pct(rng) < 35;
    s.logicAnd = pct(rng) < 50;
    for (const ParamInfo& p : param_catalogue::all()) {
        const int scale = scaleOf(p.id);
        auto& b = s.box(p.id);
        b[0] = randomLimit(rng, scale);
        b[1] = pct(rng) < 10 ? randomLimit(rng, scale / 3) : QString::number(param_catalogue::leadingNumber(b[0]) + (pct(rng) % (scale / 2 + 1)));
        b[3] = randomList(rng, scale);
    }
    // 自定区间: its interval (3)..(2) and the count limits (0), (1).
    auto& z = s.box(ParamId::CustomRange);
    z[3] = QString::number(pct(rng) % 20);
    z[2] = QString::number(param_catalogue::leadingNumber(z[3]) + pct(rng) % 20);
    z[0] = QString::number(pct(rng) % 3);
    z[1] = QString::number(param_catalogue::leadingNumber(z[0]) + pct(rng) % 4);
    s.txtZdqj = randomList(rng, 35);
    return s;
}

QString describe(const ParamWindowState& s) {
    QString d = QStringLiteral("scope %1 ticks ").arg(static_cast<int>(s.scope));
    for (bool b : s.numberTicks) d += b ? QLatin1Char('1') : QLatin1Char('0');
    d += QStringLiteral(" keep %1 list %2 and %3").arg(s.keep).arg(s.listMode).arg(s.logicAnd);
    return d;
}

void expectSame(const CandidateTable& t, SqliteDb& db, const QString& what) {
    const std::vector<param_reference::Row> ref = param_reference::rows(db);
    ASSERT_EQ(ref.size(), t.rowCount());
    for (uint64_t r = 0; r < t.rowCount(); ++r) {
        const param_reference::Row& e = ref[r];
        const bool engineNull = t.reasons().isNull(t.rowReasons()[r]);
        const bool same = e.paramValues == t.paramValueAt(r) && e.filteredOut == t.filteredOut().test(r) &&
                          e.previousFilteredOut == t.previousFilteredOut().test(r) &&
                          e.failCount == t.failCountAt(r) && e.fliterNull == engineNull &&
                          e.rowReasons == t.reasonText(r);
        ASSERT_TRUE(same) << qPrintable(what) << "\n row " << r << " figs " << int{t.numberColumn(1)[r]}
                          << ' ' << int{t.numberColumn(2)[r]} << ' ' << int{t.numberColumn(3)[r]} << ' '
                          << int{t.numberColumn(4)[r]} << ' ' << int{t.numberColumn(5)[r]} << " + "
                          << int{t.numberColumn(6)[r]} << ' ' << int{t.numberColumn(7)[r]}
                          << "\n statements: canshu " << e.paramValues << " unslt " << e.filteredOut
                          << " preunslt " << e.previousFilteredOut << " Errnum " << e.failCount << " Fliter "
                          << (e.fliterNull ? "NULL" : qPrintable(e.rowReasons)) << "\n engine:     canshu "
                          << t.paramValueAt(r) << " unslt " << t.filteredOut().test(r) << " preunslt "
                          << t.previousFilteredOut().test(r) << " Errnum " << t.failCountAt(r) << " Fliter "
                          << (engineNull ? "NULL" : qPrintable(t.reasonText(r)));
    }
}

class ParamStatements : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(db.open(QStringLiteral(":memory:"), true)); }
    SqliteDb db;
};

// Every button, in every scope, with random ticks, both modes, keep and exclude, range and
// list: one click on a fresh random table each time.
TEST_F(ParamStatements, EverySingleButtonMatchesItsStatements) {
    std::mt19937 rng(20240605);
    for (int trial = 0; trial < 12; ++trial) {
        for (const ParamInfo& p : param_catalogue::all()) {
            CandidateTable t = randomTable(rng);
            const ParamContext ctx = randomContext(rng, 30);
            const ParamWindowState s = randomState(rng);
            param_reference::load(db, t);
            param_reference::runSingle(db, p.id, s, ctx);
            param_filter::runSingle(t, p.id, s, ctx);
            expectSame(t, db, QStringLiteral("%1 trial %2: %3").arg(QLatin1String(p.button)).arg(trial).arg(describe(s)));
            if (HasFatalFailure()) return;
        }
    }
}

// Two buttons one after the other: the second sees the first's canshu (a computation that
// does not run keeps it) and its dead rows keep the first reason.
TEST_F(ParamStatements, ButtonsInSequenceMatch) {
    std::mt19937 rng(77);
    std::uniform_int_distribution<int> pick(0, kParamCount - 1);
    for (int trial = 0; trial < 60; ++trial) {
        CandidateTable t = randomTable(rng);
        const ParamContext ctx = randomContext(rng, 30);
        param_reference::load(db, t);
        QString what;
        for (int step = 0; step < 3; ++step) {
            const auto id = static_cast<ParamId>(pick(rng));
            const ParamWindowState s = randomState(rng);
            what += QLatin1String(param_catalogue::info(id).button) + QLatin1Char(' ') + describe(s) + QLatin1Char('\n');
            param_reference::runSingle(db, id, s, ctx);
            param_filter::runSingle(t, id, s, ctx);
        }
        expectSame(t, db, what);
        if (HasFatalFailure()) return;
    }
}

// Option29 with random boxes ticked, all four senses, with and without the tolerance.
TEST_F(ParamStatements, IntegratedRunsMatch) {
    std::mt19937 rng(4242);
    std::uniform_int_distribution<int> pct(0, 99);
    for (int trial = 0; trial < 120; ++trial) {
        CandidateTable t = randomTable(rng);
        const ParamContext ctx = randomContext(rng, 30);
        ParamWindowState s = randomState(rng);
        const int density = pct(rng);
        for (bool& b : s.integratedBox) b = pct(rng) < density;
        s.useTolerance = pct(rng) < 50;
        s.txtRc0 = QStringList{"0", "1", "2", "2.5", "3.5", "7", ""}[pct(rng) % 7];
        param_reference::load(db, t);
        param_reference::runIntegrated(db, s, ctx);
        param_filter::runIntegrated(t, s, ctx);
        QString boxes;
        for (int i = 0; i < kIntegratedBoxCount; ++i)
            if (s.integratedBox[static_cast<size_t>(i)]) boxes += QString::number(i) + QLatin1Char(' ');
        expectSame(t, db,
                   QStringLiteral("trial %1 %2 boxes %3 check3 %4 TxtRc0 %5")
                       .arg(trial)
                       .arg(describe(s), boxes)
                       .arg(s.useTolerance)
                       .arg(s.txtRc0));
        if (HasFatalFailure()) return;
    }
}

// The same checks on a table that the kernels cut into slices on three threads: each button once
// (the scopes taking turns), one after the other on the same rows, and the integrated filter.
TEST_F(ParamStatements, ATableCutIntoSlicesMatchesTheStatements) {
    const KernelExecutor::ScopedThreadCount threads(3);
    const uint64_t rows = 2 * KernelExecutor::kMinSliceRows + 777;
    ASSERT_GT(KernelExecutor::shared().slicesFor(rows).count, 1u);
    std::mt19937 rng(31337);
    std::uniform_int_distribution<int> pct(0, 99);
    CandidateTable t = randomTable(rng, rows);
    const ParamContext ctx = randomContext(rng, 30);
    param_reference::load(db, t);
    int turn = 0;
    for (const ParamInfo& p : param_catalogue::all()) {
        ParamWindowState s = randomState(rng);
        s.scope = static_cast<ZoneScope>(1 + turn++ % 3);
        param_reference::runSingle(db, p.id, s, ctx);
        param_filter::runSingle(t, p.id, s, ctx);
        expectSame(
            t, db,
            QStringLiteral("%1 on %2 rows: %3").arg(QLatin1String(p.button)).arg(rows).arg(describe(s)));
        if (HasFatalFailure()) return;
    }
    for (ZoneScope scope : {ZoneScope::Front, ZoneScope::Both}) {
        ParamWindowState s = randomState(rng);
        s.scope = scope;
        for (bool& b : s.integratedBox) b = pct(rng) < 60;
        s.useTolerance = true;
        s.txtRc0 = QStringLiteral("2");
        param_reference::runIntegrated(db, s, ctx);
        param_filter::runIntegrated(t, s, ctx);
        expectSame(t, db, QStringLiteral("integrated on %1 rows: %2").arg(rows).arg(describe(s)));
        if (HasFatalFailure()) return;
    }
}

// Every box ticked, on a table cut into slices, with limits that nearly every row fails in the
// both-zones scope: each row's reason joins many pieces. Inverting puts a prefix in front of those
// joined reasons, and a second run appends to them; each reads as the statements' text.
TEST_F(ParamStatements, EveryBoxOverJoinedReasonsMatchesTheStatements) {
    const KernelExecutor::ScopedThreadCount threads(3);
    const uint64_t rows = 2 * KernelExecutor::kMinSliceRows + 321;
    std::mt19937 rng(8080);
    CandidateTable t = randomTable(rng, rows);
    const ParamContext ctx = randomContext(rng, 30);
    for (ZoneScope scope : {ZoneScope::Both, ZoneScope::Front}) {
        ParamWindowState s = randomState(rng);
        s.scope = scope;
        s.listMode = false;
        s.keep = s.logicAnd = true;
        for (bool& b : s.integratedBox) b = true;
        // Keep 1..1: every value but 1 fails.
        for (const ParamInfo& p : param_catalogue::all())
            s.box(p.id)[0] = s.box(p.id)[1] = QStringLiteral("1");
        s.useTolerance = true;
        s.txtRc0 = QStringLiteral("3");
        for (int run = 0; run < 2; ++run) {
            param_reference::load(db, t);
            param_reference::runIntegrated(db, s, ctx);
            param_filter::runIntegrated(t, s, ctx);
            expectSame(t, db, QStringLiteral("every box, run %1: %2").arg(run).arg(describe(s)));
            if (HasFatalFailure()) return;
            const std::vector<param_reference::Row> before = param_reference::rows(db);
            candidate_actions::invertAll(t);
            for (uint64_t r = 0; r < rows; ++r)
                ASSERT_EQ(t.reasonText(r), candidate_actions::kInvertAllPrefix + before[r].rowReasons) << r;
            s.keep = false;  // the second run excludes
        }
    }
}

// Tickets in runs of rows that agree in what the steps read, which the tally computes once per
// run: runs across the edges of blocks and slices, two tickets taking turns row by row, runs
// whose rows differ only in the back numbers, the live flag or the old reason.
CandidateTable runsTable(std::mt19937& rng, uint64_t rows) {
    CandidateTable t = randomTable(rng, rows);
    std::uniform_int_distribution<int> pct(0, 99), back(1, 12);
    const uint64_t block = KernelExecutor::kBlockRows;
    const std::vector<uint64_t> edges{block - 3, 2 * block - 1, 3 * block - 2};
    uint64_t r = 0;
    while (r < rows) {
        const int form = pct(rng) % 4;
        uint64_t len = 1 + static_cast<uint64_t>(pct(rng)) % 70;
        for (uint64_t e : edges)
            if (r < e && e < r + len + 8) len = e + 3 - r;  // this run crosses the edge
        const uint64_t end = std::min(rows, r + len);
        for (uint64_t i = r + 1; i < end; ++i) {
            // Form 0 alternates the first two rows of the run; the others repeat the first.
            const uint64_t from = form == 0 ? r + (i - r) % 2 : r;
            for (int k = 1; k <= 7; ++k) t.numberColumn(k)[i] = t.numberColumn(k)[from];
            if (form == 1) t.numberColumn(6 + pct(rng) % 2)[i] = static_cast<uint8_t>(back(rng));
            if (form == 2) t.filteredOut().set(i, t.filteredOut().test(from));
            if (form == 3) t.rowReasons()[i] = t.rowReasons()[from];
        }
        r = end;
    }
    return t;
}

TEST_F(ParamStatements, IntegratedRunsOfEqualRowsMatchTheStatements) {
    std::mt19937 rng(777);
    std::uniform_int_distribution<int> pct(0, 99);
    const uint64_t rows = 3 * KernelExecutor::kBlockRows + 100;
    for (int trial = 0; trial < 6; ++trial) {
        const KernelExecutor::ScopedThreadCount threads(trial % 2 ? 3 : 1);
        CandidateTable t = runsTable(rng, rows);
        const ParamContext ctx = randomContext(rng, 30);
        ParamWindowState s = randomState(rng);
        s.scope = static_cast<ZoneScope>(1 + trial % 3);
        for (bool& b : s.integratedBox) b = pct(rng) < 80;
        s.useTolerance = true;
        s.txtRc0 = QString::number(trial % 3);
        param_reference::load(db, t);
        param_reference::runIntegrated(db, s, ctx);
        param_filter::runIntegrated(t, s, ctx);
        expectSame(t, db, QStringLiteral("runs, trial %1: %2").arg(trial).arg(describe(s)));
        if (HasFatalFailure()) return;
    }
}

// The export's front-only companions compute what the front scope's statements compute,
// whatever tab the window shows.
TEST_F(ParamStatements, FrontOnlyCompanionsMatchTheFrontStatements) {
    std::mt19937 rng(99);
    for (const param_catalogue::RunStep& step : param_catalogue::exportOrder()) {
        CandidateTable t = randomTable(rng);
        const ParamContext ctx = randomContext(rng, 30);
        ParamWindowState s = randomState(rng);
        ParamWindowState front = s;
        front.scope = ZoneScope::Front;
        param_reference::load(db, t);
        param_kernels::computeAll(param_kernels::compile(step.param, s.computeInputs(), ctx, true), t);
        // The front tab's button runs the same computation; only canshu is compared.
        param_reference::runSingle(db, step.param, [&] {
            ParamWindowState k = front;
            k.keep = true;
            k.listMode = s.listMode;
            k.box(step.param)[0] = QStringLiteral("-1000");
            k.box(step.param)[1] = QStringLiteral("1000");
            return k;
        }(), ctx);
        const std::vector<param_reference::Row> rows = param_reference::rows(db);
        for (uint64_t r = 0; r < t.rowCount(); ++r)
            ASSERT_EQ(rows[r].paramValues, t.paramValueAt(r))
                << param_catalogue::info(step.param).button << " row " << r;
    }
}

}  // namespace
