#include "engine/candidate_kernels.h"

namespace candidate_kernels {

void beginFilter(CandidateTable& table) {
    std::ranges::copy(table.filteredOut().words(), table.previousFilteredOut().words().begin());
}

uint64_t killSelected(CandidateTable& table, const BitVector& selection, ReasonTable::Id reason) {
    return killSelectedWith(table, selection, [reason](size_t) { return reason; });
}

void prefixReasons(CandidateTable& table, const QString& prefix, const BitVector* rows) {
    PrefixMap map(table.reasons(), prefix);
    auto fl = table.rowReasons();
    if (!rows) {
        // Runs of equal ids are common (a whole table live, a block killed by one filter), so
        // the last mapping is kept at hand.
        ReasonTable::Id lastFrom = PrefixMap::kUnset, lastTo = 0;
        for (ReasonTable::Id& id : fl) {
            if (id != lastFrom) {
                lastFrom = id;
                lastTo = map(id);
            }
            id = lastTo;
        }
        return;
    }
    const auto sel = rows->words();
    for (size_t w = 0; w < sel.size(); ++w) {
        BitVector::Word bits = sel[w];
        if (!bits) continue;
        forEachSetBit(bits, w * BitVector::kWordBits, [&](size_t r) { fl[r] = map(fl[r]); });
    }
}

}  // namespace candidate_kernels
