#pragma once

#include "engine/candidate_table.h"
#include "engine/kernel_executor.h"

#include <array>
#include <cstdint>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Runs of rows in a block that agree in the number columns a computation reads, and in whatever
// else the caller marks: the computation runs on the first row of each run and the run's rows
// share its value. The rows of a table expanded from the picks come in the order of their
// numbers, so that in the front tab a run holds every back pair of one front (66 rows when all
// twelve back numbers are picked); where the rows seldom repeat (every number is read), a caller
// asks now and then and otherwise computes row by row.
class BlockRuns {
public:
    static constexpr uint64_t kBlock = KernelExecutor::kBlockRows;
    // Blocks between two looks at the runs while they are short.
    static constexpr uint64_t kCheckEvery = 32;

    // `columns`: bit k for number column k.
    BlockRuns(const CandidateTable& table, uint32_t columns);

    // The live flags of rows [b, b + n) as bytes 0 or 1; `out` holds n rounded up to 8.
    void liveBytes(uint64_t b, uint64_t n, uint8_t* out) const;
    // Cuts rows [b, b + n) into runs. `marks[i]` not 0 where row i differs from row i - 1 in
    // something besides the columns (may be null). Returns the count of runs m; starts()[j] is
    // the first row of run j (block-relative), starts()[m] is n.
    uint32_t find(uint64_t b, uint64_t n, const uint8_t* marks);
    const uint16_t* starts() const { return m_start.data(); }
    // Every row of [b, b + n) a run of its own; returns n.
    uint32_t everyRow(uint64_t n);
    // The numbers of the first row of each run into rows 0..m-1 of `heads`.
    void gatherNumbers(uint64_t b, uint32_t m, CandidateTable& heads) const;
    // Whether runs pay in this block: false while the last look found them short, but for one
    // block in kCheckEvery. `note` records what a look found.
    bool worthLooking(uint64_t blockIndex) const { return !m_short || blockIndex % kCheckEvery == 0; }
    void note(uint32_t runs, uint64_t rows) { m_short = runs * 2 > rows; }

private:
    const CandidateTable& m_table;
    std::vector<int> m_columns;
    std::array<uint8_t, kBlock> m_differs{};
    std::array<uint16_t, kBlock + 1> m_start{};
    bool m_short = false;
};

// Bit i of the word tells whether byte i of the 64 at p is not 0.
inline BitVector::Word nonZeroBits(const uint8_t* p) {
    BitVector::Word bits = 0;
#if defined(__SSE2__)
    for (int q = 0; q < 4; ++q) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * q));
        const auto zero = static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_setzero_si128())));
        bits |= BitVector::Word{~zero & 0xFFFFu} << (16 * q);
    }
#else
    for (size_t i = 0; i < BitVector::kWordBits; ++i) bits |= BitVector::Word{p[i] != 0} << i;
#endif
    return bits;
}
