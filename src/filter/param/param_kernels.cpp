#include "filter/param/param_kernels.h"

#include "engine/kernel_executor.h"
#include "filter/param/param_operations.h"
#include "workspace/session.h"

namespace {

void markLastDraw(ParamContext& c, const DrawNumbers& last) {
    for (int k = 1; k <= 5; ++k)
        if (last[static_cast<size_t>(k)] > 0 && last[static_cast<size_t>(k)] < kNumberSlots)
            c.lastDrawFront[static_cast<size_t>(last[static_cast<size_t>(k)])] = true;
}

}  // namespace

ParamContext ParamContext::fromSession(Session& session) {
    ParamContext c;
    c.maxQian = session.frontSize();
    c.maxHou = session.backSize();
    markLastDraw(c, session.history().numbers.back());
    c.omissionFront = session.stats().front.omission;
    c.omissionBack = session.stats().back.omission;
    return c;
}

ParamContext ParamContext::fromHistory(DrawHistoryView history, int frontSize, int backSize) {
    ParamContext c;
    c.maxQian = frontSize;
    c.maxHou = backSize;
    for (int idx = 1; idx <= history.drawCount(); ++idx) c.advance(history.numbers(idx));
    return c;
}

void ParamContext::advance(const DrawNumbers& draw) {
    lastDrawFront = {};
    markLastDraw(*this, draw);
    for (int n = 1; n < kNumberSlots; ++n) {
        const auto i = static_cast<size_t>(n);
        if (n <= maxQian) ++omissionFront[i];
        if (n <= maxHou) ++omissionBack[i];
    }
    for (int k = 1; k <= 7; ++k) {
        const int32_t n = draw[static_cast<size_t>(k)];
        if (n <= 0 || n >= kNumberSlots) continue;
        (k <= 5 ? omissionFront : omissionBack)[static_cast<size_t>(n)] = 0;
    }
}

namespace param_kernels {

namespace {

constexpr int kAcSlots = 10;  // the array of differences holds ten

}  // namespace

int acValue(const int* numbers, int n) {
    std::array<int, kAcSlots> diffs{};
    int stored = 0;
    const int pairs = n * (n - 1) / 2;
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j)
            if (stored < kAcSlots) diffs[static_cast<size_t>(stored++)] = numbers[j] - numbers[i];
    int ac = pairs - n + 1;
    for (int i = 0; i < stored; ++i)
        for (int j = i + 1; j < stored; ++j)
            if (diffs[static_cast<size_t>(i)] == diffs[static_cast<size_t>(j)]) {
                --ac;
                break;
            }
    return ac;
}

CompiledCompute compile(ParamId id, const ComputeInputs& in, const ParamContext& ctx, bool frontOnly) {
    const param_operations::CompileArgs args{id, frontOnly ? ZoneScope::Front : in.scope, in, ctx};
    return param_operations::compilerOf(id)(args);
}

CompiledCompute figureParity(int col) {
    CompiledCompute c = param_operations::figureParity(col);
    c.positions = {col};  // the column it reads, for those who ask
    return c;
}

void computeRows(const CompiledCompute& c, const CandidateTable& t, std::span<int16_t> paramValues,
                 uint64_t begin, uint64_t end) {
    if (!c.writesCanshu() || begin >= end) return;
    c.kernel(c, t, paramValues.data(), begin, end);
}

uint32_t columnsRead(const CompiledCompute& c) {
    uint32_t columns = 0;
    for (int col : c.positions) columns |= 1u << (col + 1);
    for (const auto& [x, y] : c.pairs) columns |= 1u << (x + 1) | 1u << (y + 1);
    if (c.figureColumn >= 0) columns |= 1u << (c.figureColumn + 1);
    return columns;
}

void computeAll(const CompiledCompute& c, CandidateTable& t) {
    if (!c.writesCanshu()) return;
    std::span<int16_t> paramValues = t.paramValues();
    const CandidateTable& ct = t;
    KernelExecutor::shared().forEachSlice(
        t.rowCount(), [&](uint64_t begin, uint64_t end) { computeRows(c, ct, paramValues, begin, end); });
}

}  // namespace param_kernels
