#pragma once

// Which numbers come out together and which follow which: counts over the draw history in one
// 36 x 36 matrix of 16-bit counters indexed by two numbers. A scope's numbers are those of its
// positions: front 1..5, back 6..7, both zones all seven, a front and a back number paired by
// their plain values.

#include "history/history_views.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

class NumberMatrix {
public:
    int16_t at(int a, int b) const { return m_cells[index(a, b)]; }
    void add(int a, int b) { ++m_cells[index(a, b)]; }

private:
    static size_t index(int a, int b) { return static_cast<size_t>(a) * kNumberSlots + static_cast<size_t>(b); }
    std::array<int16_t, kNumberSlots * kNumberSlots> m_cells{};
};

namespace number_relations {

// The numbers a scope's grids run over: the front size, or the back size in the back scope.
int gridSize(HistoryView scope, int frontSize, int backSize);

// Every pair of positions j < k of the scope in every draw adds 1 to (N(j), N(k)); the lower
// number comes first within a zone.
NumberMatrix pairs(const DrawHistory& history, HistoryView scope);

// As pairs(), over the draws that hold `x` at a position of the scope, with the positions
// holding x left out.
NumberMatrix pairsWith(const DrawHistory& history, HistoryView scope, int x);

// How often number b of draw i followed number a of draw i - gap, over every position pair of
// the scope: (a, b) counts for each draw i from gap + 1 to R.
NumberMatrix transitions(const DrawHistory& history, HistoryView scope, int gap);

// The follow rows: for each number a of draw R - gap + 1 (the draw `gap` before the next one),
// its row of the transition matrix, and in `total` their sum per column.
struct FollowRows {
    std::vector<int> numbers;            // the numbers of that draw, in position order
    std::vector<std::vector<int>> rows;  // rows[i][b], b = 1..size (index 0 unused)
    std::vector<int> total;              // total[b]
};
FollowRows followRows(const DrawHistory& history, HistoryView scope, int gap, const NumberMatrix& m, int size);

}  // namespace number_relations
