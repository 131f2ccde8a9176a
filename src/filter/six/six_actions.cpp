#include "filter/six/six_actions.h"

namespace six_actions {

void resetAll(CandidateTable& t) { t.filteredOut().fill(false); }

void resetLast(CandidateTable& t) { t.filteredOut() = t.previousFilteredOut(); }

void invertAll(CandidateTable& t) {
    t.previousFilteredOut() = t.filteredOut();
    t.filteredOut().complement();
}

void invertLast(CandidateTable& t) {
    t.scratchFilteredOut() = t.previousFilteredOut();
    BitVector& out = t.filteredOut();
    const BitVector& before = t.scratchFilteredOut();
    for (uint64_t r = 0; r < t.rowCount(); ++r)
        if (!before.test(r)) out.set(r, !out.test(r));
}

}  // namespace six_actions
