#include "filter/candidate_actions.h"

#include "engine/candidate_kernels.h"

#include <algorithm>

namespace candidate_actions {

using Word = BitVector::Word;

void resetAll(CandidateTable& table) {
    table.filteredOut().fill(false);
    auto fl = table.rowReasons();
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        std::fill(fl.begin() + static_cast<ptrdiff_t>(begin), fl.begin() + static_cast<ptrdiff_t>(end),
                  ReasonTable::kEmpty);
    });
}

void resetLast(CandidateTable& table) {
    auto un = table.filteredOut().words();
    const auto pre = table.previousFilteredOut().words();
    auto fl = table.rowReasons();
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        const uint64_t firstWord = begin / BitVector::kWordBits;
        const uint64_t lastWord = BitVector::wordsFor(end);
        for (uint64_t w = firstWord; w < lastWord; ++w) {
            const Word back = ~pre[w] & un[w];
            if (!back) continue;
            un[w] &= ~back;
            forEachSetBit(back, w * BitVector::kWordBits, [&](size_t r) { fl[r] = ReasonTable::kEmpty; });
        }
    });
}

void invertAll(CandidateTable& table) {
    candidate_kernels::beginFilter(table);
    table.filteredOut().complement();
    candidate_kernels::prefixReasons(table, kInvertAllPrefix);
}

void invertLast(CandidateTable& table) {
    std::ranges::copy(table.previousFilteredOut().words(), table.scratchFilteredOut().words().begin());
    candidate_kernels::beginFilter(table);
    // The rows live before the last filter flip.
    BitVector swapped = table.scratchFilteredOut();
    swapped.complement();
    auto un = table.filteredOut().words();
    const auto sw = swapped.words();
    for (size_t w = 0; w < un.size(); ++w) un[w] ^= sw[w];
    candidate_kernels::prefixReasons(table, kInvertLastPrefix, &swapped);
}

}  // namespace candidate_actions
