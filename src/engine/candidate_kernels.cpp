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
    // Runs of equal ids are common (a whole table live, a block killed by one filter), so the
    // last mapping is kept at hand.
    ReasonTable::Id lastFrom = PrefixMap::kUnset, lastTo = 0;
    const auto mapRow = [&](ReasonTable::Id& id) {
        if (id != lastFrom) {
            lastFrom = id;
            lastTo = map(id);
        }
        id = lastTo;
    };
    if (!rows) {
        for (ReasonTable::Id& id : fl) mapRow(id);
        return;
    }
    const auto sel = rows->words();
    for (size_t w = 0; w < sel.size(); ++w) {
        const BitVector::Word bits = sel[w];
        if (!bits) continue;
        const size_t first = w * BitVector::kWordBits;
        // A word of selected rows (most of them, when a filter took few) runs straight through.
        if (bits == ~BitVector::Word{0} && first + BitVector::kWordBits <= fl.size()) {
            for (size_t r = first; r < first + BitVector::kWordBits; ++r) mapRow(fl[r]);
            continue;
        }
        forEachSetBit(bits, first, [&](size_t r) { mapRow(fl[r]); });
    }
}

}  // namespace candidate_kernels
