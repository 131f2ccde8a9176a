#include "filter/candidate_actions.h"

#include "filter/candidate_kernels.h"

#include <algorithm>

namespace candidate_actions {

using Word = BitVector::Word;

void resetAll(CandidateTable& table) {
    table.unslt().fill(false);
    auto fl = table.fliter();
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        std::fill(fl.begin() + static_cast<ptrdiff_t>(begin), fl.begin() + static_cast<ptrdiff_t>(end),
                  ReasonTable::kEmpty);
    });
}

void resetLast(CandidateTable& table) {
    auto un = table.unslt().words();
    const auto pre = table.preunslt().words();
    auto fl = table.fliter();
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
    kernels::beginFilter(table);
    table.unslt().complement();
    kernels::prefixReasons(table, kInvertAllPrefix);
}

void invertLast(CandidateTable& table) {
    std::ranges::copy(table.preunslt().words(), table.tmpunslt().words().begin());
    kernels::beginFilter(table);
    // The rows live before the last filter flip.
    BitVector swapped = table.tmpunslt();
    swapped.complement();
    auto un = table.unslt().words();
    const auto sw = swapped.words();
    for (size_t w = 0; w < un.size(); ++w) un[w] ^= sw[w];
    kernels::prefixReasons(table, kInvertLastPrefix, &swapped);
}

}  // namespace candidate_actions
