#pragma once

// Plain re-computations of what the engine computes over candidate tickets, written the
// obvious way (nested loops, sets), for tests to compare the engine's counts and values with.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <set>
#include <vector>

namespace ticket_reference {

// Five front numbers (ascending) and two back numbers (ascending).
using Ticket = std::array<int, 7>;

// Every ticket of the picks in the order of the expansion's nested counters: the front
// combinations in lexicographic order, for each of them the back pairs in lexicographic order.
// The ticket at position k has idx k + 1.
inline std::vector<Ticket> expand(std::vector<int> front, std::vector<int> back) {
    std::sort(front.begin(), front.end());
    std::sort(back.begin(), back.end());
    std::vector<Ticket> out;
    const size_t nf = front.size(), nb = back.size();
    for (size_t a = 0; a < nf; ++a)
        for (size_t b = a + 1; b < nf; ++b)
            for (size_t c = b + 1; c < nf; ++c)
                for (size_t d = c + 1; d < nf; ++d)
                    for (size_t e = d + 1; e < nf; ++e)
                        for (size_t f = 0; f < nb; ++f)
                            for (size_t g = f + 1; g < nb; ++g)
                                out.push_back({front[a], front[b], front[c], front[d], front[e], back[f], back[g]});
    return out;
}

inline int evens(const Ticket& t) {
    int n = 0;
    for (size_t k = 0; k < 5; ++k) n += t[k] % 2 == 0;
    return n;
}

inline int frontSum(const Ticket& t) { return t[0] + t[1] + t[2] + t[3] + t[4]; }

// The AC value of the front five: distinct differences between two numbers, less 4.
inline int acValue(const Ticket& t) {
    std::set<int> diffs;
    for (size_t i = 0; i < 5; ++i)
        for (size_t j = i + 1; j < 5; ++j) diffs.insert(std::abs(t[j] - t[i]));
    return static_cast<int>(diffs.size()) - 4;
}

// Largest front number less the smallest.
inline int endsDifference(const Ticket& t) {
    return *std::max_element(t.begin(), t.begin() + 5) - *std::min_element(t.begin(), t.begin() + 5);
}

// The sum of the front numbers in the lower half of 1..frontMax.
inline int smallSum(const Ticket& t, int frontMax = 35) {
    int s = 0;
    for (size_t k = 0; k < 5; ++k)
        if (2 * t[k] <= frontMax) s += t[k];
    return s;
}

inline int count(const std::vector<Ticket>& tickets, const std::function<bool(const Ticket&)>& pred) {
    return static_cast<int>(std::count_if(tickets.begin(), tickets.end(), pred));
}

}  // namespace ticket_reference
