#include "filter/param/param_filter.h"

#include "engine/candidate_kernels.h"
#include "engine/kernel_executor.h"
#include "filter/param/block_runs.h"
#include "filter/param/param_reason_builder.h"
#include "filter/param/param_reason_formula.h"

#include <QStringList>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numeric>
#include <optional>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

using param_catalogue::formatNumber;
using param_catalogue::leadingNumber;

ParamWindowState ParamWindowState::defaults() {
    ParamWindowState s;
    for (const ParamInfo& p : param_catalogue::all()) s.box(p.id) = param_catalogue::boxDefaults(p.id);
    return s;
}

ComputeInputs ParamWindowState::computeInputs() const {
    ComputeInputs in;
    in.scope = scope;
    in.ticks = numberTicks;
    in.listMode = listMode;
    in.zdqjLower = box(ParamId::CustomRange)[3];
    in.zdqjUpper = box(ParamId::CustomRange)[2];
    in.zdqjList = txtZdqj;
    return in;
}

namespace param_filter {

namespace {

constexpr size_t kValueSlots = 65536;
constexpr int32_t kValueOffset = 32768;

// Parameters whose tally statement keeps the leading [unslt]=false AND.
bool tallyLiveOnly(ParamId id) {
    switch (id) {
        case ParamId::ConsecutiveCount:
        case ParamId::OmissionSpread:
        case ParamId::Position1:
        case ParamId::Position2:
        case ParamId::Position3:
        case ParamId::Position4:
        case ParamId::Position5:
        case ParamId::RepeatsOfPrevious:
        case ParamId::NumberSum:
        case ParamId::AcComplexity:
            return true;
        default:
            return false;
    }
}

// Range statements: keep catches V < lo OR V > hi, exclude catches lo <= V <= hi. The limits
// are real numbers; for whole values V >= lo is V >= ceil(lo) and V <= hi is V <= floor(hi).
void setRange(FilterStep& step, double lo, double hi, bool keep) {
    constexpr double kFar = 1e6;
    step.test = FilterStep::Test::Range;
    step.keep = keep;
    step.lo = static_cast<int32_t>(std::ceil(std::clamp(lo, -kFar, kFar)));
    step.hi = static_cast<int32_t>(std::floor(std::clamp(hi, -kFar, kFar)));
}

// List statements on canshu: " {list} " LIKE "* "&V&" *", so V's text must stand between
// two blanks of the list.
std::vector<uint8_t> tokenHits(const QString& list, bool keep) {
    std::vector<uint8_t> listed(kValueSlots, 0);
    for (const QString& tok : list.split(QLatin1Char(' '))) {
        bool ok = false;
        const int v = tok.toInt(&ok);
        if (ok && v >= -kValueOffset && v < kValueOffset && QString::number(v) == tok)
            listed[static_cast<size_t>(v + kValueOffset)] = 1;
    }
    if (keep)
        for (uint8_t& h : listed) h = !h;
    return listed;
}

// List statements of the positions: " {list} " LIKE "*"&V&"*", any occurrence of V's text.
std::vector<uint8_t> substringHits(const QString& list, bool keep) {
    const QString padded = QLatin1Char(' ') + list + QLatin1Char(' ');
    std::vector<uint8_t> hit(kValueSlots, keep ? 1 : 0);
    for (int v = 0; v < 256; ++v) {
        const bool found = padded.contains(QString::number(v));
        hit[static_cast<size_t>(v + kValueOffset)] = keep ? !found : found;
    }
    return hit;
}

// Parity: [canshu] <> odd AND [canshu] = even. A parity is 0 or 1, so the step catches the
// value `even` when the two ticks differ and nothing when they agree: a range of one value or
// none, which runs on vector lanes.
void setParity(FilterStep& step, int odd, int even) {
    step.test = FilterStep::Test::Range;
    step.keep = false;  // catches lo..hi
    step.lo = odd != even ? even : 1;
    step.hi = odd != even ? even : 0;
}

// The label in front of "大小:".
QString label(ParamId id, const ParamWindowState& state) {
    const QString cap = param_catalogue::caption(id, state.scope, state.listMode);
    if (id != ParamId::CustomRange) return cap;
    const auto& b = state.box(id);
    if (state.listMode) return cap + QLatin1Char(' ') + state.txtZdqj;
    return cap + b[3] + QLatin1Char('~') + b[2];
}

}  // namespace

std::vector<FilterStep> buildSteps(ParamId id, const ParamWindowState& state, const ParamContext& ctx,
                                   bool keepSense, bool tally) {
    std::vector<FilterStep> steps;
    const ParamInfo& info = param_catalogue::info(id);
    CompiledCompute compute = param_kernels::compile(id, state.computeInputs(), ctx);
    const bool positionParam = info.position > 0;
    // The position buttons do nothing in a scope where they have no column.
    if (positionParam && !compute.readsFigure()) return steps;

    const bool liveOnly = !tally || tallyLiveOnly(id);
    const auto& b = state.box(id);
    // 自定区间 has no list test: it always uses the range statements, on Text66(0) and (1).
    const bool listTest = state.listMode && id != ParamId::CustomRange;
    const double lo = leadingNumber(b[0]), hi = leadingNumber(b[1]);

    if (positionParam && !listTest) {
        const int col = compute.figureColumn;
        // The parity pair of the position's boxes; Option14 in both zones uses position 2's.
        const int pos = info.position;
        const int odd = state.parityTicks[static_cast<size_t>(2 + 2 * pos)] ? 1 : 0;
        const int even = state.parityTicks[static_cast<size_t>(3 + 2 * pos)] ? 1 : 0;
        FilterStep parity;
        parity.compute = param_kernels::figureParity(col);
        parity.liveOnly = true;
        setParity(parity, odd, even);
        parity.prefix = QString::number(col + 1) + QStringLiteral("位奇偶性");
        parity.constantText = true;
        steps.push_back(std::move(parity));
    }

    FilterStep main;
    main.valueColumn = compute.figureColumn;
    main.compute = std::move(compute);
    main.liveOnly = liveOnly;
    main.prefix = label(id, state) + QStringLiteral("大小:");
    const QString sense = keepSense ? QStringLiteral(" 保留") : QStringLiteral(" 排除");
    if (listTest) {
        main.hit = positionParam ? substringHits(b[3], keepSense) : tokenHits(b[3], keepSense);
        main.suffix = sense + b[3];
    } else {
        setRange(main, lo, hi, keepSense);
        main.suffix = sense + formatNumber(lo) + QLatin1Char('~') + formatNumber(hi);
    }
    steps.push_back(std::move(main));
    return steps;
}

namespace {

// Packs 64 hit bytes (0 or 1) into a word, bit i for byte i.
inline BitVector::Word packBits(const uint8_t* h, size_t n) {
    BitVector::Word bits = 0;
#if defined(__SSE2__)
    if (n == BitVector::kWordBits) {
        for (int q = 0; q < 4; ++q) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(h + 16 * q));
            const auto m = static_cast<uint32_t>(_mm_movemask_epi8(_mm_slli_epi16(v, 7)));
            bits |= BitVector::Word{m} << (16 * q);
        }
        return bits;
    }
#endif
    for (size_t i = 0; i < n; ++i) bits |= BitVector::Word{h[i]} << i;
    return bits;
}

size_t slotOf(int16_t v) { return static_cast<size_t>(int32_t{v} + kValueOffset); }

// The reason ids of one step's values, shared by the slices of a run. New texts take their ids in
// the order of the rows, however many threads run: the first slice interns the text of a value
// as it meets it; the other slices take the ids made so far and give the rows of other values a
// pending id (the value's slot with kPending set), noting those values in the order they meet
// them; after the run those values are interned slice by slice and the pending ids replaced.
class StepReasons {
public:
    static constexpr ReasonTable::Id kPending = ReasonTable::Id{1} << 31;
    static constexpr ReasonTable::Id kUnknown = UINT32_MAX;

    StepReasons(ReasonTable& reasons, const FilterStep& step)
        : m_reasons(reasons), m_step(step), m_ids(kValueSlots) {
        for (auto& id : m_ids) id.store(kUnknown, std::memory_order_relaxed);
    }
    ReasonTable::Id known(int16_t v) const { return m_ids[slotOf(v)].load(std::memory_order_acquire); }
    // Only the first slice while the run goes, and the run itself after it.
    ReasonTable::Id intern(int16_t v) {
        ReasonTable::Id id = known(v);
        if (id != kUnknown) return id;
        id = m_reasons.intern(m_step.reason(v));
        m_ids[slotOf(v)].store(id, std::memory_order_release);
        return id;
    }

private:
    ReasonTable& m_reasons;
    const FilterStep& m_step;
    std::vector<std::atomic<ReasonTable::Id>> m_ids;
};

// The reasons one slice gives the rows it kills, with the ids it has met kept at hand.
class SliceReasons {
public:
    SliceReasons(StepReasons& shared, bool first)
        : m_shared(shared), m_first(first), m_ids(kValueSlots, StepReasons::kUnknown) {}

    // The ids met so far by value (kUnknown for the others).
    const ReasonTable::Id* idsByValue() const { return m_ids.data() + kValueOffset; }
    // The id of a value not met before.
    ReasonTable::Id meet(int16_t v) {
        ReasonTable::Id id = m_first ? m_shared.intern(v) : m_shared.known(v);
        if (id == StepReasons::kUnknown) {
            m_pending.push_back(v);
            id = StepReasons::kPending | static_cast<ReasonTable::Id>(slotOf(v));
        }
        m_ids[slotOf(v)] = id;
        return id;
    }
    // Rows before `end` may hold pending ids.
    void pendingUpTo(uint64_t end) { m_pendingEnd = end; }
    const std::vector<int16_t>& pendingValues() const { return m_pending; }
    // The end of the rows that may hold a pending id (0: none).
    uint64_t pendingEnd() const { return m_pendingEnd; }

private:
    StepReasons& m_shared;
    bool m_first;
    std::vector<ReasonTable::Id> m_ids;
    std::vector<int16_t> m_pending;
    uint64_t m_pendingEnd = 0;
};

// Writes the reasons of the rows of `bits` (a word whose first row is `base`), whose values are
// value[r - b].
inline void writeReasons(BitVector::Word bits, uint64_t base, uint64_t b, const int16_t* value,
                         SliceReasons& reasons, std::span<ReasonTable::Id> fl) {
    const ReasonTable::Id* ids = reasons.idsByValue();
    ReasonTable::Id all = 0;
    forEachSetBit(bits, base, [&](size_t r) {
        const int16_t v = value[r - b];
        ReasonTable::Id id = ids[v];
        if (id == StepReasons::kUnknown) [[unlikely]]
            id = reasons.meet(v);
        all |= id;
        fl[r] = id;
    });
    if (all & StepReasons::kPending) reasons.pendingUpTo(base + BitVector::kWordBits);
}

// canshu of a step's computation block by block. Where the rows come in runs that agree in the
// numbers the computation reads and in their live flags, it runs on the first row of each run
// and the run's rows take its value. Arithmetic on vector lanes is cheaper than finding the
// runs, and a computation that keeps the old canshu of some rows (a sum that leaves the column)
// must see every row: those run row by row.
class StepValues {
public:
    StepValues(const CandidateTable& table, const CompiledCompute& compute, std::span<int16_t> paramValues)
        : m_table(table),
          m_compute(compute),
          m_paramValues(paramValues),
          m_byRuns(compute.writesCanshu() && !compute.checkOverflow && !compute.onLanes),
          m_runs(table, param_kernels::columnsRead(compute)),
          m_heads(table.kind(), m_byRuns ? KernelExecutor::kBlockRows : 0) {}

    void compute(uint64_t b, uint64_t n, uint64_t blockIndex) {
        if (m_byRuns && m_runs.worthLooking(blockIndex)) {
            m_runs.liveBytes(b, n, m_live.data());
            for (uint64_t i = 1; i < n; ++i) m_marks[i] = m_live[i] ^ m_live[i - 1];
            const uint32_t m = m_runs.find(b, n, m_marks.data());
            m_runs.note(m, n);
            if (m * 2 <= n) return computeRuns(b, m);
        }
        param_kernels::computeRows(m_compute, m_table, m_paramValues, b, b + n);
    }

private:
    void computeRuns(uint64_t b, uint32_t m) {
        const uint16_t* start = m_runs.starts();
        m_runs.gatherNumbers(b, m, m_heads);
        auto dead = m_heads.filteredOut().words();
        std::fill(dead.begin(), dead.end(), BitVector::Word{0});
        for (uint32_t j = 0; j < m; ++j)
            dead[j / BitVector::kWordBits] |= BitVector::Word{m_live[start[j]] ^ 1u} << (j % BitVector::kWordBits);
        param_kernels::computeRows(m_compute, m_heads, m_values, 0, m);
        for (uint32_t j = 0; j < m; ++j)
            std::fill(m_paramValues.begin() + static_cast<ptrdiff_t>(b + start[j]),
                      m_paramValues.begin() + static_cast<ptrdiff_t>(b + start[j + 1]), m_values[j]);
    }

    const CandidateTable& m_table;
    const CompiledCompute& m_compute;
    std::span<int16_t> m_paramValues;
    const bool m_byRuns;
    BlockRuns m_runs;
    CandidateTable m_heads;  // the first row of each run
    std::array<uint8_t, KernelExecutor::kBlockRows> m_live{}, m_marks{};
    std::array<int16_t, KernelExecutor::kBlockRows> m_values{};
};

// The step on the rows [begin, end): computes, tests, and marks the live rows it catches dead
// in unslt and in `caught`, with the reason `reasons` gives (a step with one text: `fixedId`).
// Returns how many died.
uint64_t catchSlice(CandidateTable& table, const FilterStep& step, BitVector& caught, SliceReasons& reasons,
                    std::optional<ReasonTable::Id> fixedId, uint64_t begin, uint64_t end) {
    using Word = BitVector::Word;
    constexpr uint64_t kBlockRows = KernelExecutor::kBlockRows;
    const CandidateTable& ct = table;
    std::span<int16_t> paramValues = table.paramValues();
    auto un = table.filteredOut().words();
    auto out = caught.words();
    auto fl = table.rowReasons();
    std::array<uint8_t, kBlockRows> hit;
    std::array<int16_t, kBlockRows> value;
    uint64_t killed = 0;
    StepValues values(ct, step.compute, paramValues);
    for (uint64_t b = begin, blockIndex = 0; b < end; b += kBlockRows, ++blockIndex) {
        const uint64_t n = std::min(end, b + kBlockRows) - b;
        values.compute(b, n, blockIndex);
        if (step.valueColumn < 0) {
            std::copy_n(paramValues.data() + b, n, value.data());
        } else {
            const uint8_t* f = ct.numberColumn(step.valueColumn + 1).data() + b;
            std::copy_n(f, n, value.data());
        }
        step.hitBlock(value.data(), n, hit.data());
        for (uint64_t off = 0; off < n; off += BitVector::kWordBits) {
            const size_t w = (b + off) / BitVector::kWordBits;
            const Word bits =
                packBits(hit.data() + off, std::min<uint64_t>(BitVector::kWordBits, n - off)) & ~un[w];
            out[w] = bits;
            if (!bits) continue;
            un[w] |= bits;
            killed += static_cast<uint64_t>(std::popcount(bits));
            if (fixedId)
                forEachSetBit(bits, b + off, [&](size_t r) { fl[r] = *fixedId; });
            else
                writeReasons(bits, b + off, b, value.data(), reasons, fl);
        }
    }
    return killed;
}

// Interns the values that slices left pending, slice by slice, and puts their ids in place of
// the pending ids, up to the last pending row of each slice.
void resolvePending(CandidateTable& table, StepReasons& reasons, const std::vector<SliceReasons>& slices,
                    const KernelExecutor::Slices& cut, const BitVector& caught) {
    std::vector<ReasonTable::Id> idOfSlot(kValueSlots, 0);
    for (const SliceReasons& slice : slices)
        for (int16_t v : slice.pendingValues()) idOfSlot[slotOf(v)] = reasons.intern(v);
    auto fl = table.rowReasons();
    const auto caughtWords = caught.words();
    KernelExecutor::shared().forEachIndexedSlice(cut, [&](size_t slice, uint64_t begin, uint64_t) {
        const uint64_t end = slices[slice].pendingEnd();
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w)
            forEachSetBit(caughtWords[w], w * BitVector::kWordBits, [&](size_t r) {
                if (fl[r] & StepReasons::kPending) fl[r] = idOfSlot[fl[r] & ~StepReasons::kPending];
            });
    });
}

// One statement over every row: the step's computation, then the live rows it catches die
// with the reason of their value, on all cores. A step with one text, or whose texts `formula`
// makes, knows its id before the run: the text's id, or the next one.
uint64_t runStep(CandidateTable& table, const FilterStep& step, const std::shared_ptr<const RowFormula>& formula) {
    KernelExecutor& executor = KernelExecutor::shared();
    const KernelExecutor::Slices cut = executor.slicesFor(table.rowCount());
    BitVector caught(table.rowCount());
    StepReasons reasons(table.reasons(), step);
    std::vector<SliceReasons> slices;
    for (size_t i = 0; i < cut.count; ++i) slices.emplace_back(reasons, i == 0);
    std::vector<uint64_t> killed(cut.count, 0);
    std::optional<ReasonTable::Id> fixedId;
    if (step.constantText)
        fixedId = table.reasons().find(step.prefix).value_or(table.reasons().nextId());
    else if (formula)
        fixedId = table.reasons().nextId();
    table.paramValues();  // allocated before the threads write it
    executor.forEachIndexedSlice(cut, [&](size_t slice, uint64_t begin, uint64_t end) {
        killed[slice] = catchSlice(table, step, caught, slices[slice], fixedId, begin, end);
    });
    const uint64_t total = std::accumulate(killed.begin(), killed.end(), uint64_t{0});
    // The text or the formula takes the id the rows hold.
    if (fixedId && total > 0 && step.constantText) table.reasons().intern(step.prefix);
    if (fixedId && total > 0 && !step.constantText) table.reasons().formula(formula, true);
    if (!fixedId) resolvePending(table, reasons, slices, cut, caught);
    return total;
}

ViewColumns viewOf(ParamId id) {
    if (param_catalogue::info(id).position) return ViewColumns::Figures;
    if (id == ParamId::SumLastDigit || id == ParamId::OmissionSum) return ViewColumns::FrontWithParamValue;
    return ViewColumns::WithParamValue;
}

}  // namespace

SingleResult runSingle(CandidateTable& table, ParamId id, const ParamWindowState& state,
                       const ParamContext& ctx) {
    SingleResult result;
    const std::vector<FilterStep> steps = buildSteps(id, state, ctx, state.keep, false);
    if (steps.empty()) return result;
    result.ran = true;
    result.view = viewOf(id);
    result.heading = param_catalogue::caption(id, state.scope, state.listMode);
    // preunslt first (the computation does not read it), then each statement in order.
    candidate_kernels::beginFilter(table);
    for (size_t i = 0; i < steps.size(); ++i) {
        // The rows a step kills share one formula's entry in place of an entry per value.
        std::shared_ptr<const RowFormula> formula;
        if (!steps[i].constantText && steps[i].valueFromNumbers())
            formula = ParamReasonFormula::singleStep(table.kind(), state, ctx, id, state.keep, static_cast<int>(i));
        result.killed += runStep(table, steps[i], formula);
    }
    return result;
}

std::vector<FilterStep> integratedSteps(const ParamWindowState& state, const ParamContext& ctx, bool keepSense) {
    std::vector<FilterStep> steps;
    for (const param_catalogue::RunStep& rs : param_catalogue::integratedOrder()) {
        if (!state.integratedBox[static_cast<size_t>(rs.box)]) continue;
        for (FilterStep& s : buildSteps(rs.param, state, ctx, keepSense, true)) steps.push_back(std::move(s));
    }
    return steps;
}

int allowedCount(const QString& txtRc0) {
    const double v = std::clamp(leadingNumber(txtRc0), -1e9, 1e9);
    return static_cast<int>(std::nearbyint(v));  // the default rounding: a half to the even one
}

IntegratedResult runIntegrated(CandidateTable& table, const ParamWindowState& state, const ParamContext& ctx,
                               EngineProgress* progress) {
    IntegratedResult result;
    const bool a = state.keep, b = state.logicAnd;
    result.keepSense = a == b ? a : !a;
    result.flipped = a != b;

    const auto formula = ParamReasonFormula::integrated(table.kind(), state, ctx, result.keepSense);
    result.steps = static_cast<int>(formula->steps().size());

    // The tally reads no preunslt: it is set once the run can no longer be cancelled.
    if (!param_reason_builder::tally(table, formula->steps(), progress, formula)) {
        result.cancelled = true;
        return result;
    }
    candidate_kernels::beginFilter(table);
    const std::span<const int16_t> failCount = std::as_const(table).failCount();

    result.allowed = state.useTolerance ? allowedCount(state.txtRc0) : 0;
    auto un = table.filteredOut().words();
    const auto gp = table.groupMark().words();
    const int allowed = result.allowed;
    const bool flip = result.flipped;
    const BitVector& filteredOut = table.filteredOut();
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w) {
            const uint64_t base = w * BitVector::kWordBits;
            const uint64_t stop = std::min(end, base + BitVector::kWordBits);
            // The rows over the tolerance as bytes on vector lanes, then as the bits of a word.
            std::array<uint8_t, BitVector::kWordBits> over{};
            const int16_t* fc = failCount.data() + base;
            if (stop - base == BitVector::kWordBits)
                for (uint64_t i = 0; i < BitVector::kWordBits; ++i)
                    over[i] = static_cast<uint8_t>(int32_t{fc[i]} > allowed);
            else
                for (uint64_t i = 0; i < stop - base; ++i)
                    over[i] = static_cast<uint8_t>(int32_t{fc[i]} > allowed);
            un[w] |= packBits(over.data(), stop - base);
            if (flip) un[w] ^= ~gp[w] & filteredOut.validMask(w);
        }
    });
    return result;
}

IntegratedResult runIntegrated(CandidateTable& table, const ParamWindowState& state,
                               const ParamContext& ctx) {
    return runIntegrated(table, state, ctx, nullptr);
}

QString Tolerance::onIntegratedBoxClick(const ParamWindowState& state) {
    keptCount = static_cast<int>(std::count(state.integratedBox.begin(), state.integratedBox.end(), true));
    const double percent = leadingNumber(state.txtRc1);
    const double r = std::floor(keptCount * percent / 100 + 0.5);
    return r > 0 ? formatNumber(r) : state.txtRc0;
}

QString Tolerance::onCountEdited(const ParamWindowState& state) const {
    if (keptCount == 0) return state.txtRc1;
    return formatNumber(std::floor(leadingNumber(state.txtRc0) / keptCount * 100));
}

QString Tolerance::onPercentEdited(const ParamWindowState& state) const {
    return formatNumber(std::floor(leadingNumber(state.txtRc1) / 100 * keptCount));
}

}  // namespace param_filter
