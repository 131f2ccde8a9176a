#pragma once

// Candidate tables for the benchmarks' SQL comparisons.

#include "engine/candidate_table.h"

#include <algorithm>

namespace bench {

// The first `rows` tickets of `t` as a table of their own.
inline CandidateTable head(const CandidateTable& t, uint64_t rows) {
    CandidateTable h(t.kind(), rows);
    for (int k = 1; k <= 7; ++k) std::copy_n(t.numberColumn(k).begin(), rows, h.numberColumn(k).begin());
    return h;
}

}  // namespace bench
