#include "filter/six/six_integrated.h"

#include <algorithm>

namespace six_integrated {

uint64_t run(CandidateTable& table, const std::vector<Range>& ticked, Choice choice,
             const six_params::Context& ctx) {
    const uint64_t rows = table.rowCount();
    // Gpslt: true on every row, false on the live ones.
    BitVector& deadBefore = table.groupMark();
    deadBefore = table.filteredOut();
    // 保留 with 逻辑和 and 排除 with 逻辑或 tally the misses or the hits as they stand; the mixed
    // choices tally the other way round and flip at the end.
    const bool tallyMisses = choice.keep == choice.logicAnd ? choice.keep : !choice.keep;
    std::vector<uint8_t> tally(rows, 0);
    table.previousFilteredOut() = table.filteredOut();
    // Parameters run in the window's order, whatever order the ticks came in.
    std::vector<Range> order = ticked;
    std::stable_sort(order.begin(), order.end(),
                     [](const Range& a, const Range& b) { return a.id < b.id; });
    for (const Range& p : order) {
        const six_params::Bounds range = six_params::bounds(p.lo, p.hi);
        six_params::computeValues(table, p.id, ctx);
        for (uint64_t r = 0; r < rows; ++r)
            if (range.contains(six_params::filterValue(table, p.id, r)) != tallyMisses) ++tally[r];
    }
    BitVector& out = table.filteredOut();
    for (uint64_t r = 0; r < rows; ++r)
        if (tally[r] > 0) out.set(r);
    if (choice.keep != choice.logicAnd)
        for (uint64_t r = 0; r < rows; ++r)
            if (!deadBefore.test(r)) out.set(r, !out.test(r));
    uint64_t died = 0;
    for (uint64_t r = 0; r < rows; ++r) died += out.test(r) && !deadBefore.test(r);
    return died;
}

}  // namespace six_integrated
