#include "prize/prize_check.h"

#include "filter/candidate_kernels.h"

#include <algorithm>
#include <mutex>

CheckDraw CheckDraw::newest(const DrawHistory& history) {
    CheckDraw d;
    if (history.drawnum() < 1) return d;
    const DrawNumbers& last = history.figarr.back();
    d.issue = last[0];
    for (size_t i = 0; i < d.numbers.size(); ++i) d.numbers[i] = last[i + 1];
    return d;
}

namespace {

// How often each byte value occurs among a zone's draw numbers.
using Weights = std::array<uint8_t, 256>;

Weights weightsOf(const CheckDraw& draw, int first, int count) {
    Weights w{};
    for (int i = first; i < first + count; ++i) {
        const int v = draw.numbers[static_cast<size_t>(i)];
        if (v >= 0 && v < 256) ++w[static_cast<size_t>(v)];
    }
    return w;
}

}  // namespace

PrizeCheck PrizeCheck::run(const CandidateTable& table, const CheckDraw& draw, const PrizeRules& rules,
                           EngineProgress* progress) {
    PrizeCheck c;
    c.m_zones = table.kind() == CandidateTable::Kind::Zuhef ? Zones::FrontOnly : Zones::FrontAndBack;
    c.m_rules = rules;
    c.m_rows = table.rowCount();
    c.m_code.assign(c.m_rows, 0);
    const bool backToo = c.m_zones == Zones::FrontAndBack;
    // Slots applied from 12 down to 1: the lowest slot with a pattern is the one that stays.
    // The six-number view assigns no levels.
    for (int code = 0; code < kCodes; ++code)
        c.m_slotOfCode[static_cast<size_t>(code)] =
            backToo ? static_cast<uint8_t>(rules.slotFor(code / kBackHitsSpan, code % kBackHitsSpan)) : 0;

    const Weights front = weightsOf(draw, 0, prize::kFrontMax);
    const Weights back = weightsOf(draw, prize::kFrontMax, prize::kBackMax);
    const int frontFigs = table.figCount() == 6 ? 6 : prize::kFrontMax;
    const uint8_t* f[6] = {};
    for (int k = 0; k < frontFigs; ++k) f[k] = table.fig(k + 1).data();
    const uint8_t* b6 = backToo ? table.fig(6).data() : nullptr;
    const uint8_t* b7 = backToo ? table.fig(7).data() : nullptr;
    const auto unslt = table.unslt().words();
    uint8_t* out = c.m_code.data();

    std::mutex merge;
    kernels::parallelSlices(c.m_rows, [&](uint64_t begin, uint64_t end) {
        std::array<std::array<uint64_t, kCodes>, 2> counts{};
        for (uint64_t chunk = begin; chunk < end; chunk += kernels::kChunkRows) {
            if (progress && progress->cancelled()) break;
            const uint64_t stop = std::min(end, chunk + kernels::kChunkRows);
            for (uint64_t r = chunk; r < stop; ++r) {
                unsigned j = 0;
                for (int k = 0; k < frontFigs; ++k) j += front[f[k][r]];
                unsigned t = backToo ? unsigned{back[b6[r]]} + back[b7[r]] : 0u;
                j = std::min<unsigned>(j, prize::kFrontMax);
                t = std::min<unsigned>(t, prize::kBackMax);
                const uint8_t code = static_cast<uint8_t>(j * kBackHitsSpan + t);
                out[r] = code;
                const unsigned dead = (unslt[r / BitVector::kWordBits] >> (r % BitVector::kWordBits)) & 1u;
                ++counts[dead][code];
            }
        }
        std::lock_guard lock(merge);
        for (size_t d = 0; d < 2; ++d)
            for (size_t code = 0; code < kCodes; ++code) c.m_codeCount[d][code] += counts[d][code];
    });
    if (progress) progress->progress(c.m_rows, c.m_rows);

    for (size_t d = 0; d < 2; ++d)
        for (size_t code = 0; code < kCodes; ++code) c.m_slotCount[d][c.m_slotOfCode[code]] += c.m_codeCount[d][code];
    for (size_t code = 0; code < kCodes; ++code) c.m_kept += c.m_codeCount[0][code];
    return c;
}

std::optional<QString> PrizeCheck::jiang(uint64_t row) const {
    const int s = slot(row);
    if (s == 0) return std::nullopt;
    return m_rules.slot(s).rank;
}

std::optional<int32_t> PrizeCheck::jing(uint64_t row) const {
    const int s = slot(row);
    if (s == 0) return std::nullopt;
    return m_rules.slot(s).money;
}

uint64_t PrizeCheck::countOfLevel(bool thrown, const QString& name) const {
    uint64_t n = 0;
    for (int s = 1; s <= prize::kSlots; ++s)
        if (m_rules.slot(s).rank == name) n += countInSlot(thrown, s);
    return n;
}

std::optional<int64_t> PrizeCheck::keptPrizeSum() const {
    bool any = false;
    int64_t sum = 0;
    for (int s = 1; s <= prize::kSlots; ++s) {
        const uint64_t n = countInSlot(false, s);
        if (n == 0) continue;
        any = true;
        sum += static_cast<int64_t>(n) * m_rules.slot(s).money;
    }
    if (!any) return std::nullopt;
    return sum;
}
