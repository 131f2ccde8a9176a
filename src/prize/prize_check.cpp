#include "prize/prize_check.h"

#include "engine/candidate_kernels.h"
#include "engine/kernel_executor.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <mutex>
#include <utility>

CheckDraw CheckDraw::newest(const DrawHistory& history) {
    CheckDraw d;
    if (history.drawCount() < 1) return d;
    const DrawNumbers& last = history.numbers.back();
    d.issue = last[0];
    for (size_t i = 0; i < d.numbers.size(); ++i) d.numbers[i] = last[i + 1];
    return d;
}

namespace {

// Rows handled together: the hit counters of a block stay in the first-level cache.
constexpr uint64_t kBlockRows = KernelExecutor::kBlockRows;

using CodeCounts = std::array<std::array<uint64_t, PrizeCheck::kCodes>, 2>;

using KernelInput = PrizeCheck::Source;

// Sixteen ticket rows of one column as one vector of bytes (the compiler's generic vectors:
// SSE2 on x86-64, NEON on ARM).
using Bytes16 = uint8_t __attribute__((vector_size(16)));
constexpr uint64_t kLanes = sizeof(Bytes16);

inline Bytes16 load16(const uint8_t* p) {
    Bytes16 v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

// How many of the draw's numbers equal each lane: a lane compares equal as all ones (-1), so
// subtracting the comparison counts it.
template <size_t... D>
inline Bytes16 matchesOf(Bytes16 x, const Bytes16* draw, std::index_sequence<D...>) {
    return (Bytes16{} - ... - reinterpret_cast<Bytes16>(x == draw[D]));
}

template <size_t kDraw>
inline Bytes16 matches(Bytes16 x, const std::array<Bytes16, kDraw>& draw) {
    return matchesOf(x, draw.data(), std::make_index_sequence<kDraw>{});
}

template <size_t kDraw>
inline uint8_t matches(uint8_t x, const std::array<uint8_t, kDraw>& draw) {
    uint8_t m = 0;
    for (size_t d = 0; d < kDraw; ++d) m = static_cast<uint8_t>(m + (x == draw[d]));
    return m;
}

inline uint8_t codeOf(unsigned front, unsigned back) {
    return static_cast<uint8_t>(std::min(front, unsigned{prize_rules::kFrontMax}) *
                                    PrizeCheck::kBackHitsSpan +
                                std::min(back, unsigned{prize_rules::kBackMax}));
}

// Writes the hit codes of rows [b, b + n) to out.
template <int kFrontFigs, bool kBack>
void codeBlock(const KernelInput& in, uint64_t b, uint64_t n, uint8_t* out) {
    std::array<Bytes16, prize_rules::kFrontMax> fd;
    std::array<Bytes16, prize_rules::kBackMax> bd;
    for (size_t d = 0; d < fd.size(); ++d) fd[d] = Bytes16{} + in.frontDraw[d];
    for (size_t d = 0; d < bd.size(); ++d) bd[d] = Bytes16{} + in.backDraw[d];
    const Bytes16 frontMax = Bytes16{} + static_cast<uint8_t>(prize_rules::kFrontMax);
    const Bytes16 backMax = Bytes16{} + static_cast<uint8_t>(prize_rules::kBackMax);
    uint64_t i = 0;
    for (; i + kLanes <= n; i += kLanes) {
        const uint64_t r = b + i;
        Bytes16 j{};
        for (int k = 0; k < kFrontFigs; ++k) j += matches(load16(in.front[static_cast<size_t>(k)] + r), fd);
        j = j < frontMax ? j : frontMax;
        Bytes16 code = j + j + j;
        if constexpr (kBack) {
            Bytes16 t = matches(load16(in.back[0] + r), bd) + matches(load16(in.back[1] + r), bd);
            code += t < backMax ? t : backMax;
        }
        std::memcpy(out + i, &code, sizeof code);
    }
    for (; i < n; ++i) {
        const uint64_t r = b + i;
        unsigned j = 0, t = 0;
        for (int k = 0; k < kFrontFigs; ++k) j += matches(in.front[static_cast<size_t>(k)][r], in.frontDraw);
        if constexpr (kBack) t = matches(in.back[0][r], in.backDraw) + matches(in.back[1][r], in.backDraw);
        out[i] = codeOf(j, t);
    }
}

// The tally of a block by code, kept and thrown apart: each row's code with 18 added for a
// thrown row, made sixteen rows at a time from the flag bits, then counted.
using Tally = std::array<std::array<uint32_t, 2 * PrizeCheck::kCodes>, 4>;

// For each byte of flag bits, eight bytes holding 18 where the bit is set: the offset of a
// thrown row's tally entry. Byte k of the word is the row of bit k on a little-endian machine.
static_assert(std::endian::native == std::endian::little);
constexpr std::array<uint64_t, 256> kThrownOffsets = [] {
    std::array<uint64_t, 256> t{};
    for (unsigned bits = 0; bits < 256; ++bits)
        for (unsigned lane = 0; lane < 8; ++lane)
            if (bits & (1u << lane)) t[bits] |= uint64_t{PrizeCheck::kCodes} << (8 * lane);
    return t;
}();

void tallyBlock(const KernelInput& in, uint64_t b, uint64_t n, const uint8_t* codes, Tally& tally) {
    alignas(16) std::array<uint8_t, kBlockRows> slot;
    uint64_t i = 0;
    for (; i + kLanes <= n; i += kLanes) {
        const uint64_t r = b + i;
        const auto bits =
            static_cast<uint16_t>(in.filteredOut[r / BitVector::kWordBits] >> (r % BitVector::kWordBits));
        const std::array<uint64_t, 2> offsets{kThrownOffsets[bits & 0xFF], kThrownOffsets[bits >> 8]};
        Bytes16 thrown;
        std::memcpy(&thrown, offsets.data(), sizeof thrown);
        const Bytes16 v = load16(codes + i) + thrown;
        std::memcpy(slot.data() + i, &v, sizeof v);
    }
    for (; i < n; ++i) {
        const uint64_t r = b + i;
        const bool thrown = (in.filteredOut[r / BitVector::kWordBits] >> (r % BitVector::kWordBits)) & 1u;
        slot[i] = static_cast<uint8_t>(codes[i] + (thrown ? PrizeCheck::kCodes : 0));
    }
    i = 0;
    for (; i + 4 <= n; i += 4) {
        ++tally[0][slot[i]];
        ++tally[1][slot[i + 1]];
        ++tally[2][slot[i + 2]];
        ++tally[3][slot[i + 3]];
    }
    for (; i < n; ++i) ++tally[0][slot[i]];
}

template <int kFrontFigs, bool kBack>
void checkSlice(const KernelInput& in, uint64_t begin, uint64_t end, CodeCounts& counts) {
    // Four interleaved tallies, so that neighbouring rows of one code do not wait on each other.
    Tally tally{};
    const auto flush = [&] {
        for (auto& part : tally) {
            for (size_t s = 0; s < part.size(); ++s)
                counts[s / PrizeCheck::kCodes][s % PrizeCheck::kCodes] += part[s];
            part.fill(0);
        }
    };
    constexpr uint64_t kBlocksPerFlush = 1024;  // a tally takes at most a quarter of these rows
    uint64_t blocks = 0;
    for (uint64_t b = begin; b < end; b += kBlockRows) {
        const uint64_t n = std::min(kBlockRows, end - b);
        alignas(16) std::array<uint8_t, kBlockRows> codes;
        codeBlock<kFrontFigs, kBack>(in, b, n, codes.data());
        tallyBlock(in, b, n, codes.data(), tally);
        if (++blocks % kBlocksPerFlush == 0) flush();
    }
    flush();
}

}  // namespace

PrizeCheck PrizeCheck::run(const CandidateTable& table, const CheckDraw& draw, const PrizeRules& rules,
                           EngineProgress* progress) {
    PrizeCheck c;
    c.m_zones = table.kind() == CandidateTable::Kind::SixNumbers ? Zones::FrontOnly : Zones::FrontAndBack;
    c.m_rules = rules;
    c.m_rows = table.rowCount();
    const bool backToo = c.m_zones == Zones::FrontAndBack;
    // Slots applied from 12 down to 1: the lowest slot with a pattern is the one that stays.
    // The six-number view assigns no levels.
    for (int code = 0; code < kCodes; ++code)
        c.m_slotOfCode[static_cast<size_t>(code)] =
            backToo ? static_cast<uint8_t>(rules.slotFor(code / kBackHitsSpan, code % kBackHitsSpan)) : 0;

    KernelInput& in = c.m_source;
    // A draw number outside a byte matches no ticket number; 0 stands for it, which no ticket holds.
    const auto drawByte = [&](size_t i) {
        const int v = draw.numbers[i];
        return static_cast<uint8_t>(v > 0 && v < 256 ? v : 0);
    };
    for (size_t i = 0; i < in.frontDraw.size(); ++i) in.frontDraw[i] = drawByte(i);
    for (size_t i = 0; i < in.backDraw.size(); ++i) in.backDraw[i] = drawByte(prize_rules::kFrontMax + i);
    for (int k = 1; k <= (backToo ? prize_rules::kFrontMax : table.numberCount()); ++k)
        in.front[static_cast<size_t>(k - 1)] = table.numberColumn(k).data();
    if (backToo) {
        in.back[0] = table.numberColumn(6).data();
        in.back[1] = table.numberColumn(7).data();
    }
    in.filteredOut = table.filteredOut().words();

    std::mutex merge;
    // A cancel leaves the counts of the chunks done.
    KernelExecutor::shared().forEachChunk(c.m_rows, progress, [&](uint64_t begin, uint64_t end) {
        CodeCounts counts{};
        if (backToo)
            checkSlice<prize_rules::kFrontMax, true>(in, begin, end, counts);
        else
            checkSlice<6, false>(in, begin, end, counts);
        std::lock_guard lock(merge);
        for (size_t d = 0; d < 2; ++d)
            for (size_t code = 0; code < kCodes; ++code) c.m_codeCount[d][code] += counts[d][code];
    });
    if (progress) progress->progress(c.m_rows, c.m_rows);

    for (size_t d = 0; d < 2; ++d)
        for (size_t code = 0; code < kCodes; ++code)
            c.m_slotCount[d][c.m_slotOfCode[code]] += c.m_codeCount[d][code];
    for (size_t code = 0; code < kCodes; ++code) c.m_kept += c.m_codeCount[0][code];
    return c;
}

uint8_t PrizeCheck::code(uint64_t row) const {
    uint8_t c = 0;
    codes(row, 1, &c);
    return c;
}

void PrizeCheck::codes(uint64_t begin, uint64_t n, uint8_t* out) const {
    if (m_zones == Zones::FrontAndBack)
        codeBlock<prize_rules::kFrontMax, true>(m_source, begin, n, out);
    else
        codeBlock<6, false>(m_source, begin, n, out);
}

std::optional<QString> PrizeCheck::prizeLevel(uint64_t row) const {
    const int s = slot(row);
    if (s == 0) return std::nullopt;
    return m_rules.slot(s).rank;
}

std::optional<int32_t> PrizeCheck::prizeAmount(uint64_t row) const {
    const int s = slot(row);
    if (s == 0) return std::nullopt;
    return m_rules.slot(s).money;
}

uint64_t PrizeCheck::countOfLevel(bool thrown, const QString& name) const {
    uint64_t n = 0;
    for (int s = 1; s <= prize_rules::kSlots; ++s)
        if (m_rules.slot(s).rank == name) n += countInSlot(thrown, s);
    return n;
}

std::optional<int64_t> PrizeCheck::keptPrizeSum() const {
    bool any = false;
    int64_t sum = 0;
    for (int s = 1; s <= prize_rules::kSlots; ++s) {
        const uint64_t n = countInSlot(false, s);
        if (n == 0) continue;
        any = true;
        sum += static_cast<int64_t>(n) * m_rules.slot(s).money;
    }
    if (!any) return std::nullopt;
    return sum;
}
