#pragma once

// Random inputs of the kernels' checks: distinct numbers, a draw history and the context of
// the parameter computations.

#include "filter/param/param_kernels.h"
#include "workspace/shared_state.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

// `count` distinct numbers of 1..max, ascending.
inline std::vector<int> distinctSorted(std::mt19937& rng, int count, int max) {
    std::vector<int> all(static_cast<size_t>(max));
    std::iota(all.begin(), all.end(), 1);
    std::shuffle(all.begin(), all.end(), rng);
    all.resize(static_cast<size_t>(count));
    std::sort(all.begin(), all.end());
    return all;
}

// Draws 2026001 .. 2026000 + draws of zones frontMax / backMax.
inline DrawHistory randomHistory(std::mt19937& rng, int draws, int frontMax, int backMax) {
    DrawHistory h;
    for (int i = 1; i <= draws; ++i) {
        const auto front = distinctSorted(rng, 5, frontMax), back = distinctSorted(rng, 2, backMax);
        h.numbers.push_back(
            {2026000 + i, front[0], front[1], front[2], front[3], front[4], back[0], back[1]});
    }
    h.front.resize(h.numbers.size());
    h.back.resize(h.numbers.size());
    h.both.resize(h.numbers.size());
    return h;
}

// Five numbers of the latest draw and omissions of 0..omissionMax.
inline ParamContext randomContext(std::mt19937& rng, int omissionMax) {
    ParamContext c;
    std::uniform_int_distribution<int> front(1, 35), om(0, omissionMax);
    for (int i = 0; i < 5; ++i) c.lastDrawFront[static_cast<size_t>(front(rng))] = true;
    for (int n = 1; n < kNumberSlots; ++n) {
        c.omissionFront[static_cast<size_t>(n)] = static_cast<int16_t>(om(rng));
        c.omissionBack[static_cast<size_t>(n)] = static_cast<int16_t>(om(rng));
    }
    return c;
}
