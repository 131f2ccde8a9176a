#pragma once

// The small kernel API over a CandidateTable. A filter is written as a loop over row chunks that
// reads the byte columns and produces a selection (a BitVector), never a copy of the rows;
// then beginFilter() and killSelected() apply it with the flags and the reason that the
// stored statements would write.

#include "filter/candidate_table.h"
#include "filter/engine_progress.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace kernels {

// Rows per chunk: a multiple of 64 so that chunks start on whole words of the bit vectors.
inline constexpr uint64_t kChunkRows = uint64_t{1} << 16;
// Below this many rows a kernel runs on the calling thread alone.
inline constexpr uint64_t kParallelThreshold = uint64_t{1} << 20;

// Calls fn(begin, end) for each chunk in order; polls `progress` between chunks and returns
// false when it was cancelled.
template <typename Fn>
bool forEachChunk(uint64_t rows, Fn&& fn, EngineProgress* progress = nullptr) {
    for (uint64_t begin = 0; begin < rows; begin += kChunkRows) {
        if (progress && progress->cancelled()) return false;
        const uint64_t end = std::min(rows, begin + kChunkRows);
        fn(begin, end);
        if (progress) progress->progress(end, rows);
    }
    return true;
}

// Calls fn(begin, end) on contiguous, word-aligned slices of the rows, one per hardware thread.
// fn must only write rows (and words) inside its slice.
template <typename Fn>
void parallelSlices(uint64_t rows, Fn&& fn) {
    const unsigned threads = std::max(1u, std::thread::hardware_concurrency());
    if (rows < kParallelThreshold || threads == 1) {
        fn(uint64_t{0}, rows);
        return;
    }
    const uint64_t words = BitVector::wordsFor(rows);
    const uint64_t perSlice = (words + threads - 1) / threads * BitVector::kWordBits;
    std::vector<std::thread> pool;
    for (unsigned t = 1; t < threads; ++t) {
        const uint64_t begin = std::min(rows, perSlice * t);
        const uint64_t end = std::min(rows, begin + perSlice);
        if (begin < end) pool.emplace_back([&fn, begin, end] { fn(begin, end); });
    }
    fn(uint64_t{0}, std::min(rows, perSlice));
    for (std::thread& th : pool) th.join();
}

// A selection of the rows for which pred(row) holds.
template <typename Pred>
BitVector select(const CandidateTable& table, Pred&& pred) {
    BitVector sel(table.rowCount());
    auto words = sel.words();
    parallelSlices(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w) {
            BitVector::Word bits = 0;
            const uint64_t base = w * BitVector::kWordBits;
            const uint64_t stop = std::min(end, base + BitVector::kWordBits);
            for (uint64_t r = base; r < stop; ++r) bits |= BitVector::Word{pred(r) ? 1u : 0u} << (r - base);
            words[w] = bits;
        }
    });
    return sel;
}

// The start of every filter: preunslt = unslt.
void beginFilter(CandidateTable& table);

// Marks the live rows of `selection` dead with the reason `reason`; returns how many died.
uint64_t killSelected(CandidateTable& table, const BitVector& selection, ReasonTable::Id reason);

// Marks the live rows of `selection` dead, each with reasonFor(row).
template <typename ReasonFn>
uint64_t killSelectedWith(CandidateTable& table, const BitVector& selection, ReasonFn&& reasonFor) {
    auto un = table.unslt().words();
    const auto sel = selection.words();
    auto fl = table.fliter();
    uint64_t killed = 0;
    for (size_t w = 0; w < un.size(); ++w) {
        const BitVector::Word newly = sel[w] & ~un[w];
        if (!newly) continue;
        un[w] |= newly;
        killed += static_cast<uint64_t>(std::popcount(newly));
        forEachSetBit(newly, w * BitVector::kWordBits, [&](size_t r) { fl[r] = reasonFor(r); });
    }
    return killed;
}

// Puts `prefix` in front of the reason of every row of `rows` (all rows when null).
void prefixReasons(CandidateTable& table, const QString& prefix, const BitVector* rows = nullptr);

}  // namespace kernels
