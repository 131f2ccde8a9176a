#pragma once

// Searches a small wheel for a guarantee: local search over a fixed number of tickets, moves
// focused on an unmet drawn set, a tabu list against undoing a move at once, and weights on
// the drawn sets that stay unmet. Each time every drawn set is met the wheel is kept and one
// ticket dropped, so the search walks down in size until its target, its budget or a cancel.

#include "generation/wheels/wheel.h"

#include <atomic>
#include <cstdint>
#include <functional>

namespace wheels {

struct SearchProgress {
    int thread = 0;
    size_t tickets = 0;      // in the wheel being searched
    size_t unsatisfied = 0;  // its unmet drawn sets
    size_t bestTickets = 0;  // the smallest valid wheel so far, 0 if none
    uint64_t moves = 0;
};

struct SearchOptions {
    uint64_t seed = 1;
    int threads = 1;           // independent searches, seeds seed, seed + 1, ...
    size_t targetTickets = 0;  // stop at this size (0: go on until the budget)
    uint64_t movesPerThread = 2'000'000;
    double seconds = 0;  // a wall-clock budget besides the moves (0: none)
    const std::atomic<bool>* cancel = nullptr;
    // Called from the search threads, one at a time, every few thousand moves.
    std::function<void(const SearchProgress&)> progress;
};

struct SearchResult {
    std::vector<Block> blocks;  // the smallest valid wheel found; empty if none
    uint64_t moves = 0;         // over all threads
    bool cancelled = false;
};

// `start`, when given, is a valid wheel to improve (a shipped table); otherwise each search
// starts from a greedy wheel. With one thread and no time budget the result depends on the
// seed alone.
SearchResult search(const Guarantee& g, const SearchOptions& options, const std::vector<Block>& start = {});

}  // namespace wheels
