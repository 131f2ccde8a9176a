#pragma once

// Row kernels over per-position tables: each visited column of a row gives a term, looked up in
// its table by the row's number, and the terms are folded into the row's value.

#include "engine/candidate_table.h"
#include "filter/param/param_kernels.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace param_table_folds {

constexpr int kFrontColumns = 5;

// Folds of the per-position table values of a row.
struct SumFold {
    using Acc = int32_t;
    static Acc init() { return 0; }
    static Acc add(Acc a, int16_t v) { return a + v; }
};
struct OrFold {
    using Acc = uint32_t;
    static Acc init() { return 0; }
    static Acc add(Acc a, int16_t v) { return a | static_cast<uint16_t>(v); }
};
struct RangeFold {
    struct Acc {
        int16_t greatest, least;
    };
    static Acc init() { return {0, 99}; }
    static Acc add(Acc a, int16_t v) { return {std::max(a.greatest, v), std::min(a.least, v)}; }
};
// Row by row over the tables of the visited positions, their count known at compile time so
// that the row's value stays in a register.
template <int N, typename Fold, typename Emit>
void tableRowsN(const CompiledCompute& c, const CandidateTable& t, uint64_t begin, uint64_t end,
                Emit&& write) {
    std::array<const uint8_t*, 7> f{};
    std::array<const int16_t*, 7> tab{};
#pragma GCC unroll 8
    for (int k = 0; k < N; ++k) {
        const int col = c.positions[static_cast<size_t>(k)];
        f[static_cast<size_t>(k)] = t.numberColumn(col + 1).data();
        tab[static_cast<size_t>(k)] = c.table[static_cast<size_t>(col)].data();
    }
    for (uint64_t r = begin; r < end; ++r) {
        typename Fold::Acc acc = Fold::init();
#pragma GCC unroll 8
        for (int k = 0; k < N; ++k)
            acc = Fold::add(acc, tab[static_cast<size_t>(k)][f[static_cast<size_t>(k)][r]]);
        write(r, acc);
    }
}

// The same for a block whose rows come in runs of equal front numbers: the front positions are
// folded once per run, from its first row, and each row of the run folds its back positions
// (NBack of them) onto that. The folds are indifferent to order, so the value is the same.
template <int NBack, typename Fold, typename Emit>
void tableRowsByFrontN(const CompiledCompute& c, const CandidateTable& t, uint64_t b, const uint16_t* starts,
                       uint32_t runs, Emit&& write) {
    std::array<const uint8_t*, 7> frontFig{}, backFig{};
    std::array<const int16_t*, 7> frontTab{}, backTab{};
    size_t fronts = 0, backs = 0;
    for (int col : c.positions) {
        const bool front = col < kFrontColumns;
        size_t& k = front ? fronts : backs;
        (front ? frontFig : backFig)[k] = t.numberColumn(col + 1).data();
        (front ? frontTab : backTab)[k] = c.table[static_cast<size_t>(col)].data();
        ++k;
    }
    for (uint32_t j = 0; j < runs; ++j) {
        const uint64_t first = b + starts[j], last = b + starts[j + 1];
        typename Fold::Acc front = Fold::init();
        for (size_t k = 0; k < fronts; ++k) front = Fold::add(front, frontTab[k][frontFig[k][first]]);
        for (uint64_t r = first; r < last; ++r) {
            typename Fold::Acc acc = front;
#pragma GCC unroll 2
            for (size_t k = 0; k < NBack; ++k) acc = Fold::add(acc, backTab[k][backFig[k][r]]);
            write(r, acc);
        }
    }
}

template <typename Fold, typename Emit>
void tableRowsByFront(const CompiledCompute& c, const CandidateTable& t, uint64_t b, const uint16_t* starts,
                      uint32_t runs, Emit&& write) {
    switch (std::ranges::count_if(c.positions, [](int col) { return col >= kFrontColumns; })) {
        case 0:
            tableRowsByFrontN<0, Fold>(c, t, b, starts, runs, write);
            return;
        case 1:
            tableRowsByFrontN<1, Fold>(c, t, b, starts, runs, write);
            return;
        default:
            tableRowsByFrontN<2, Fold>(c, t, b, starts, runs, write);
            return;
    }
}

template <typename Fold, typename Emit>
void tableRows(const CompiledCompute& c, const CandidateTable& t, uint64_t begin, uint64_t end,
               Emit&& write) {
    switch (c.positions.size()) {
        case 0:
            tableRowsN<0, Fold>(c, t, begin, end, write);
            return;
        case 1:
            tableRowsN<1, Fold>(c, t, begin, end, write);
            return;
        case 2:
            tableRowsN<2, Fold>(c, t, begin, end, write);
            return;
        case 3:
            tableRowsN<3, Fold>(c, t, begin, end, write);
            return;
        case 4:
            tableRowsN<4, Fold>(c, t, begin, end, write);
            return;
        case 5:
            tableRowsN<5, Fold>(c, t, begin, end, write);
            return;
        case 6:
            tableRowsN<6, Fold>(c, t, begin, end, write);
            return;
        default:
            tableRowsN<7, Fold>(c, t, begin, end, write);
            return;
    }
}

}  // namespace param_table_folds
