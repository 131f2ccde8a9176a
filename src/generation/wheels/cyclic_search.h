#pragma once

// Searches a wheel that turning the positions round (i -> i + 1 mod n) maps onto itself: a few
// base tickets, each standing for its n turns. With a fixed point the last position stays and
// the others turn (mod n - 1), which gives wheels of other sizes. The search space is n times smaller than that of
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
    bool fixedPoint = false;  // position n stays, 1..n-1 turn
};

// The smallest turning-invariant wheel found, its tickets distinct; empty if none.
std::vector<Block> searchCyclic(const Guarantee& g, const CyclicOptions& options);

// The block turned by `shift` positions: positions 0..period-1 turn, those above stay.
Block turned(Block b, int shift, int period);

}  // namespace wheels
