#pragma once

#include "generation/wheels/wheel.h"

namespace wheels {

struct CheckResult {
    bool holds = false;
    uint64_t unsatisfied = 0;  // drawn sets that no ticket meets in t positions
    Block example = 0;         // the first of them, 0 when it holds
    QString error;             // a ticket of the wrong size or outside 1..n
};

// Checks the promise by its definition: every p-subset of 1..n, against every ticket until
// one meets it in t positions. Shares nothing with the search's counters, so that the two can
// check each other.
CheckResult check(const Wheel& wheel);

}  // namespace wheels
