#include "filter/candidate_actions.h"

#include "filter/candidate_kernels.h"

#include <algorithm>

namespace candidate_actions {

using Word = BitVector::Word;

void resetAll(CandidateTable& table) {
    table.unslt().fill(false);
    auto fl = table.fliter();
    kernels::parallelSlices(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        std::fill(fl.begin() + static_cast<ptrdiff_t>(begin), fl.begin() + static_cast<ptrdiff_t>(end),
                  ReasonTable::kEmpty);
    });
}

void resetLast(CandidateTable& table) {
    auto un = table.unslt().words();
    const auto pre = table.preunslt().words();
    auto fl = table.fliter();
    kernels::parallelSlices(table.rowCount(), [&](uint64_t begin, uint64_t end) {
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
    auto un = table.unslt().words();
    for (Word& w : un) w = ~w;
    table.unslt().clearTail();
    kernels::prefixReasons(table, kInvertAllPrefix);
}

void invertLast(CandidateTable& table) {
    std::ranges::copy(table.preunslt().words(), table.tmpunslt().words().begin());
    kernels::beginFilter(table);
    BitVector swapped(table.rowCount());
    auto sw = swapped.words();
    auto un = table.unslt().words();
    const auto tmp = table.tmpunslt().words();
    for (size_t w = 0; w < un.size(); ++w) {
        sw[w] = ~tmp[w] & table.unslt().validMask(w);
        un[w] ^= sw[w];
    }
    kernels::prefixReasons(table, kInvertLastPrefix, &swapped);
}

}  // namespace candidate_actions
