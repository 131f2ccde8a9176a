#include "filter/param_filter.h"

#include "filter/candidate_kernels.h"
#include "filter/kernel_executor.h"
#include "filter/param_reason_builder.h"

#include <QStringList>

#include <algorithm>
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
    in.ticks = chkBt;
    in.listMode = listMode;
    in.zdqjLower = box(ParamId::Option66)[3];
    in.zdqjUpper = box(ParamId::Option66)[2];
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
        case ParamId::Option2: case ParamId::Option12: case ParamId::Option13: case ParamId::Option14:
        case ParamId::Option15: case ParamId::Option16: case ParamId::Option17: case ParamId::Option20:
        case ParamId::Option23: case ParamId::Option24:
            return true;
        default: return false;
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

// Parity: [canshu] <> odd AND [canshu] = even.
std::vector<uint8_t> parityHits(int odd, int even) {
    std::vector<uint8_t> hit(kValueSlots, 0);
    for (int v : {0, 1}) hit[static_cast<size_t>(v + kValueOffset)] = v != odd && v == even;
    return hit;
}

// The label in front of "大小:".
QString label(ParamId id, const ParamWindowState& state) {
    const QString cap = param_catalogue::caption(id, state.scope, state.listMode);
    if (id != ParamId::Option66) return cap;
    const auto& b = state.box(id);
    if (state.listMode) return cap + QLatin1Char(' ') + state.txtZdqj;
    return cap + b[3] + QLatin1Char('~') + b[2];
}

}  // namespace

std::vector<FilterStep> buildSteps(ParamId id, const ParamWindowState& state, const ParamContext& ctx, bool keepSense,
                                   bool tally) {
    std::vector<FilterStep> steps;
    const ParamInfo& info = param_catalogue::info(id);
    CompiledCompute compute = param_kernels::compile(id, state.computeInputs(), ctx);
    const bool positionParam = info.position > 0;
    // The position buttons do nothing in a scope where they have no column.
    if (positionParam && !compute.readsFigure()) return steps;

    const bool liveOnly = !tally || tallyLiveOnly(id);
    const auto& b = state.box(id);
    // 自定区间 has no list test: it always uses the range statements, on Text66(0) and (1).
    const bool listTest = state.listMode && id != ParamId::Option66;
    const double lo = leadingNumber(b[0]), hi = leadingNumber(b[1]);

    if (positionParam && !listTest) {
        const int col = compute.figureColumn;
        // The parity pair of the position's boxes; Option14 in both zones uses position 2's.
        const int pos = info.position;
        const int odd = state.check2[static_cast<size_t>(2 + 2 * pos)] ? 1 : 0;
        const int even = state.check2[static_cast<size_t>(3 + 2 * pos)] ? 1 : 0;
        FilterStep parity;
        parity.compute = param_kernels::figureParity(col);
        parity.liveOnly = true;
        parity.hit = parityHits(odd, even);
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

// The values of a step's killed rows in the order a slice first meets them, so that their
// reasons are interned in row order whatever the number of threads.
class FirstValues {
public:
    FirstValues() : m_seen(kValueSlots, 0) {}
    void note(int16_t v) {
        if (v == m_last && !m_order.empty()) return;  // runs of equal values are common
        m_last = v;
        uint8_t& seen = m_seen[slotOf(v)];
        if (seen) return;
        seen = 1;
        m_order.push_back(v);
    }
    const std::vector<int16_t>& order() const { return m_order; }
    static size_t slotOf(int16_t v) { return static_cast<size_t>(int32_t{v} + kValueOffset); }

private:
    std::vector<uint8_t> m_seen;
    std::vector<int16_t> m_order;
    int16_t m_last = 0;
};

// Where a slice puts the reasons of the rows it kills: the id itself when the step has one text
// (known before the run: the text's id, or the next id), else the slot of the row's value in
// place of the id and the value in `values`, until the reasons are interned.
struct ReasonSink {
    std::optional<ReasonTable::Id> fixedId;
    FirstValues* values = nullptr;

    ReasonTable::Id operator()(int16_t v) const {
        if (fixedId) return *fixedId;
        values->note(v);
        return static_cast<ReasonTable::Id>(FirstValues::slotOf(v));
    }
};

// The step on the rows [begin, end): computes, tests, and marks the live rows it catches dead
// in unslt and in `caught`, with what `sink` gives as their reason. Returns how many died.
uint64_t catchSlice(CandidateTable& table, const FilterStep& step, BitVector& caught, const ReasonSink& sink,
                    uint64_t begin, uint64_t end) {
    using Word = BitVector::Word;
    constexpr uint64_t kBlockRows = KernelExecutor::kBlockRows;
    const CandidateTable& ct = table;
    std::span<int16_t> canshu = table.canshu();
    auto un = table.unslt().words();
    auto out = caught.words();
    auto fl = table.fliter();
    std::array<uint8_t, kBlockRows> hit;
    std::array<int16_t, kBlockRows> value;
    uint64_t killed = 0;
    for (uint64_t b = begin; b < end; b += kBlockRows) {
        const uint64_t n = std::min(end, b + kBlockRows) - b;
        param_kernels::computeRows(step.compute, ct, canshu, b, b + n);
        if (step.valueColumn < 0) {
            std::copy_n(canshu.data() + b, n, value.data());
        } else {
            const uint8_t* f = ct.fig(step.valueColumn + 1).data() + b;
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
            forEachSetBit(bits, 0, [&](size_t i) { fl[b + off + i] = sink(value[off + i]); });
        }
    }
    return killed;
}

// One statement over every row: the step's computation, then the live rows it catches die
// with the reason of their value. The rows are caught on all cores; the reasons of the new
// values are then interned in row order and put in place of the caught rows' value slots.
uint64_t runStep(CandidateTable& table, const FilterStep& step) {
    KernelExecutor& executor = KernelExecutor::shared();
    const KernelExecutor::Slices slices = executor.slicesFor(table.rowCount());
    BitVector caught(table.rowCount());
    std::vector<FirstValues> values(step.constantText ? 0 : slices.count);
    std::vector<uint64_t> killed(slices.count, 0);
    std::optional<ReasonTable::Id> fixedId;
    if (step.constantText) fixedId = table.reasons().find(step.prefix).value_or(table.reasons().nextId());
    table.canshu();  // allocated before the threads write it
    executor.forEachIndexedSlice(slices, [&](size_t slice, uint64_t begin, uint64_t end) {
        const ReasonSink sink{fixedId, fixedId ? nullptr : &values[slice]};
        killed[slice] = catchSlice(table, step, caught, sink, begin, end);
    });
    const uint64_t total = std::accumulate(killed.begin(), killed.end(), uint64_t{0});
    if (fixedId) {
        // The text takes the id the rows already hold, when some row died.
        if (total > 0) table.reasons().intern(step.prefix);
        return total;
    }

    std::vector<ReasonTable::Id> idOf(kValueSlots, PrefixMap::kUnset);
    for (const FirstValues& v : values)
        for (int16_t value : v.order()) {
            ReasonTable::Id& id = idOf[FirstValues::slotOf(value)];
            if (id == PrefixMap::kUnset) id = table.reasons().intern(step.reason(value));
        }
    auto fl = table.fliter();
    const auto caughtWords = caught.words();
    executor.forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w)
            forEachSetBit(caughtWords[w], w * BitVector::kWordBits, [&](size_t r) { fl[r] = idOf[fl[r]]; });
    });
    return total;
}

ViewColumns viewOf(ParamId id) {
    if (param_catalogue::info(id).position) return ViewColumns::Figures;
    if (id == ParamId::Option3 || id == ParamId::Option35) return ViewColumns::FrontCanshu;
    return ViewColumns::WithCanshu;
}

}  // namespace

SingleResult runSingle(CandidateTable& table, ParamId id, const ParamWindowState& state, const ParamContext& ctx) {
    SingleResult result;
    const std::vector<FilterStep> steps = buildSteps(id, state, ctx, state.keep, false);
    if (steps.empty()) return result;
    result.ran = true;
    result.view = viewOf(id);
    result.heading = param_catalogue::caption(id, state.scope, state.listMode);
    // preunslt first (the computation does not read it), then each statement in order.
    kernels::beginFilter(table);
    for (const FilterStep& step : steps) result.killed += runStep(table, step);
    return result;
}

int allowedCount(const QString& txtRc0) {
    const double v = std::clamp(leadingNumber(txtRc0), -1e9, 1e9);
    return static_cast<int>(std::nearbyint(v));  // the default rounding: a half to the even one
}

IntegratedResult runIntegrated(CandidateTable& table, const ParamWindowState& state, const ParamContext& ctx) {
    IntegratedResult result;
    const bool a = state.keep, b = state.logicAnd;
    result.baoliuMode = a == b ? a : !a;
    result.flipped = a != b;

    std::vector<FilterStep> steps;
    for (const param_catalogue::RunStep& rs : param_catalogue::integratedOrder()) {
        if (!state.check1[static_cast<size_t>(rs.box)]) continue;
        for (FilterStep& s : buildSteps(rs.param, state, ctx, result.baoliuMode, true)) steps.push_back(std::move(s));
    }
    result.steps = static_cast<int>(steps.size());

    std::span<int16_t> errnum = table.errnum();
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        std::fill(errnum.begin() + static_cast<ptrdiff_t>(begin), errnum.begin() + static_cast<ptrdiff_t>(end), int16_t{0});
    });
    kernels::beginFilter(table);
    param_reasons::tally(table, steps);

    result.allowed = state.check3 ? allowedCount(state.txtRc0) : 0;
    auto un = table.unslt().words();
    const auto gp = table.gpslt().words();
    const int allowed = result.allowed;
    const bool flip = result.flipped;
    const BitVector& unslt = table.unslt();
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        using Word = BitVector::Word;
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w) {
            const uint64_t base = w * BitVector::kWordBits;
            const uint64_t stop = std::min(end, base + BitVector::kWordBits);
            Word over = 0;
            for (uint64_t r = base; r < stop; ++r) over |= Word{errnum[r] > allowed} << (r - base);
            un[w] |= over;
            if (flip) un[w] ^= ~gp[w] & unslt.validMask(w);
        }
    });
    return result;
}

QString Tolerance::onCheck1Click(const ParamWindowState& state) {
    keptCount = static_cast<int>(std::count(state.check1.begin(), state.check1.end(), true));
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
