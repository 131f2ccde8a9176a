#include "filter/param/block_runs.h"

#include <algorithm>
#include <cstring>

namespace {

// The eight bits of a byte as eight bytes 0 or 1, lowest bit first.
constexpr std::array<uint64_t, 256> kByteFlags = [] {
    std::array<uint64_t, 256> t{};
    for (unsigned v = 0; v < 256; ++v)
        for (unsigned bit = 0; bit < 8; ++bit) t[v] |= uint64_t{(v >> bit) & 1u} << (8 * bit);
    return t;
}();

}  // namespace

BlockRuns::BlockRuns(const CandidateTable& table, uint32_t columns) : m_table(table) {
    for (int k = 1; k <= table.numberCount(); ++k)
        if (columns & (1u << k)) m_columns.push_back(k);
}

// Eight at a time from the words of unslt (the last eight may pass n).
void BlockRuns::liveBytes(uint64_t b, uint64_t n, uint8_t* out) const {
    const auto unWords = m_table.filteredOut().words();
    for (uint64_t off = 0; off < n; off += 8) {
        const uint64_t w = unWords[(b + off) / BitVector::kWordBits];
        const auto byte = static_cast<uint8_t>(~(w >> ((b + off) % BitVector::kWordBits)));
        std::memcpy(out + off, &kByteFlags[byte], 8);
    }
}

// Per row whether it differs from the row before, column by column on vector lanes.
uint32_t BlockRuns::find(uint64_t b, uint64_t n, const uint8_t* marks) {
    if (marks)
        std::copy_n(marks, n, m_differs.begin());
    else
        std::fill_n(m_differs.begin(), n, uint8_t{0});
    m_differs[0] = 1;
    for (int k : m_columns) {
        const uint8_t* c = m_table.numberColumn(k).data() + b;
        for (uint64_t i = 1; i < n; ++i) m_differs[i] |= static_cast<uint8_t>(c[i] ^ c[i - 1]);
    }
    std::fill(m_differs.begin() + static_cast<ptrdiff_t>(n), m_differs.end(), uint8_t{0});
    uint32_t runs = 0;
    for (uint64_t off = 0; off < n; off += BitVector::kWordBits)
        forEachSetBit(nonZeroBits(m_differs.data() + off), off,
                      [&](size_t i) { m_start[runs++] = static_cast<uint16_t>(i); });
    m_start[runs] = static_cast<uint16_t>(n);
    return runs;
}

uint32_t BlockRuns::everyRow(uint64_t n) {
    for (uint32_t i = 0; i <= n; ++i) m_start[i] = static_cast<uint16_t>(i);
    return static_cast<uint32_t>(n);
}

void BlockRuns::gatherNumbers(uint64_t b, uint32_t m, CandidateTable& heads) const {
    for (int k : m_columns) {
        const uint8_t* from = m_table.numberColumn(k).data() + b;
        uint8_t* to = heads.numberColumn(k).data();
        for (uint32_t j = 0; j < m; ++j) to[j] = from[m_start[j]];
    }
}
