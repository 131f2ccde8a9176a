#pragma once

// Searches a wheel that turning the positions round (i -> i + 1 mod n) maps onto itself: a few
// base tickets, each standing for its turns. More generally the positions fall into cycles of
// `period` positions each (1..p, p+1..2p, ...), every cycle turning by the same step, and the
// positions past the last whole cycle stay: n - 1 with one position staying, n / 2 with two
// cycles and so on give wheels of other sizes. The search space is n times smaller than that of
// a free wheel, which is where large wheels find their good starting points; the free search
// (wheel_search) then shrinks the result ticket by ticket.

#include "generation/wheels/wheel.h"

#include <atomic>
#include <cstdint>

namespace wheels {

struct CyclicOptions {
    uint64_t seed = 1;
    double seconds = 10;     // the search's budget
    size_t fewestOrbits = 1;  // stop once a wheel of this many base tickets is found
    const std::atomic<bool>* cancel = nullptr;
    int period = 0;  // the positions of a cycle, 0 for n
};

// The smallest turning-invariant wheel found, its tickets distinct; empty if none.
std::vector<Block> searchCyclic(const Guarantee& g, const CyclicOptions& options);

// The block of positions 0..n-1 turned by `shift` within each cycle of `period` positions; the
// positions past the last whole cycle stay.
Block turned(Block b, int shift, int period, int n);

}  // namespace wheels
