#pragma once

// The small kernel API over a CandidateTable. A filter is written as a loop over row slices (run
// by the KernelExecutor) that reads the byte columns and produces a selection (a BitVector), never a copy of
// the rows; then beginFilter() and killSelected() apply it with the flags and the reason that the stored
// statements would write.

#include "engine/candidate_table.h"
#include "engine/kernel_executor.h"

#include <algorithm>

namespace candidate_kernels {

// A selection of the rows for which pred(row) holds.
template <typename Pred>
BitVector select(const CandidateTable& table, Pred&& pred) {
    BitVector sel(table.rowCount());
    auto words = sel.words();
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
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

// select() over the rows of `within` only: the other rows stay out of the selection untested
// (a filter that can only kill live rows need not look at the dead ones).
template <typename Pred>
BitVector selectWithin(const CandidateTable& table, const BitVector& within, Pred&& pred) {
    BitVector sel(table.rowCount());
    auto words = sel.words();
    const auto in = within.words();
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w) {
            const uint64_t base = w * BitVector::kWordBits;
            BitVector::Word bits = 0;
            forEachSetBit(in[w], base, [&](size_t r) {
                if (r < end && pred(r)) bits |= BitVector::Word{1} << (r - base);
            });
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
    auto un = table.filteredOut().words();
    const auto sel = selection.words();
    auto fl = table.rowReasons();
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

}  // namespace candidate_kernels
