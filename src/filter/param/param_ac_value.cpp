#include "filter/param/param_ac_value.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace param_ac_value {

namespace {

inline int popcount64(uint64_t x) { return std::popcount(x); }

// The AC value row by row. With at most five positions every difference is stored, and for
// numbers that rise along the positions the value is the count of distinct differences less
// n - 1, which a mask of the differences gives at once; other rows take the loop itself.
template <int N>
constexpr int kAcStored = std::min(N*(N - 1) / 2, 10);

// The pairs (earlier, later) whose differences the array of ten holds, in the loop's order.
template <int N>
constexpr std::array<std::pair<int, int>, 10> kAcPairs = [] {
    std::array<std::pair<int, int>, 10> a{};
    int n = 0;
    for (int i = 0; i < N; ++i)
        for (int j = i + 1; j < N; ++j)
            if (n < 10) a[static_cast<size_t>(n++)] = {i, j};
    return a;
}();

template <int N>
void acRowsScalar(const std::array<const uint8_t*, 7>& cols, int16_t* out, uint64_t begin, uint64_t end) {
    for (uint64_t r = begin; r < end; ++r) {
        std::array<int, 7> v{};
        bool rising = N <= 5;
        uint64_t set = 0;
#pragma GCC unroll 8
        for (int k = 0; k < N; ++k) {
            v[static_cast<size_t>(k)] = cols[static_cast<size_t>(k)][r];
            if (k) rising &= v[static_cast<size_t>(k)] > v[static_cast<size_t>(k - 1)];
            set |= uint64_t{1} << (v[static_cast<size_t>(k)] & 63);
        }
        int top = 0;
#pragma GCC unroll 8
        for (int k = 0; k < N; ++k) top |= v[static_cast<size_t>(k)];
        if (top >= 64) [[unlikely]] {
            out[r] = static_cast<int16_t>(param_kernels::acValue(v.data(), N));
            continue;
        }
        if (N > 0 && rising) {
            uint64_t diffs = 0;
#pragma GCC unroll 8
            for (int k = 0; k < N; ++k) diffs |= set >> v[static_cast<size_t>(k)];
            out[r] = static_cast<int16_t>(popcount64(diffs & ~uint64_t{1}) - (N - 1));
            continue;
        }
        // Any order and up to seven numbers: the stored differences (the first ten pairs) as
        // a mask over -63..63; an entry that has an equal one after it takes one off, so the
        // value is pairs - n + 1 - stored + the count of distinct stored differences.
        uint64_t low = 0, high = 0;
#pragma GCC unroll 10
        for (int p = 0; p < kAcStored<N>; ++p) {
            const int d = v[static_cast<size_t>(kAcPairs<N>[static_cast<size_t>(p)].second)] -
                          v[static_cast<size_t>(kAcPairs<N>[static_cast<size_t>(p)].first)] + 64;
            const uint64_t bit = uint64_t{1} << (d & 63);
            low |= d < 64 ? bit : 0;
            high |= d < 64 ? 0 : bit;
        }
        constexpr int kPairs = N * (N - 1) / 2;
        out[r] = static_cast<int16_t>(kPairs - N + 1 - kAcStored<N> + popcount64(low) + popcount64(high));
    }
}

// Numbers all below 128 on byte lanes: a difference taken modulo 256 stays apart from the
// others, so the value is pairs - n + 1 less the stored differences that have an equal one after
// them (with up to five numbers every difference is stored), sixteen and more rows at a time.
template <int N>
void acRowsBytes(const std::array<const uint8_t*, 7>& cols, int16_t* out, uint64_t begin, uint64_t end) {
    constexpr int kPairs = N * (N - 1) / 2;
    constexpr int kStored = kAcStored<N>;
    std::array<const uint8_t*, 7> in = cols;
    for (int k = 0; k < N; ++k) in[static_cast<size_t>(k)] += begin;
    int16_t* o = out + begin;
    const uint64_t n = end - begin;
    for (uint64_t i = 0; i < n; ++i) {
        std::array<uint8_t, 10> d{};
#pragma GCC unroll 10
        for (int p = 0; p < kStored; ++p)
            d[static_cast<size_t>(p)] =
                static_cast<uint8_t>(in[static_cast<size_t>(kAcPairs<N>[static_cast<size_t>(p)].second)][i] -
                                     in[static_cast<size_t>(kAcPairs<N>[static_cast<size_t>(p)].first)][i]);
        uint8_t repeats = 0;
#pragma GCC unroll 10
        for (int p = 0; p < kStored; ++p) {
            uint8_t repeated = 0;
#pragma GCC unroll 10
            for (int q = p + 1; q < kStored; ++q)
                repeated |= static_cast<uint8_t>(d[static_cast<size_t>(p)] == d[static_cast<size_t>(q)]);
            repeats = static_cast<uint8_t>(repeats + repeated);
        }
        o[i] = static_cast<int16_t>(kPairs - N + 1 - repeats);
    }
}

// Whether every number of the rows is below 128.
template <int N>
bool below128(const std::array<const uint8_t*, 7>& cols, uint64_t begin, uint64_t end) {
    uint8_t top = 0;
#pragma GCC unroll 8
    for (int k = 0; k < N; ++k) {
        const uint8_t* col = cols[static_cast<size_t>(k)];
        for (uint64_t r = begin; r < end; ++r) top |= col[r];
    }
    return top < 128;
}

template <int N>
void acRowsN(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin, uint64_t end) {
    std::array<const uint8_t*, 7> cols{};
#pragma GCC unroll 8
    for (int k = 0; k < N; ++k)
        cols[static_cast<size_t>(k)] = t.numberColumn(c.positions[static_cast<size_t>(k)] + 1).data();
    if constexpr (N >= 2) {
        constexpr uint64_t kRun = 4096;
        for (uint64_t b = begin; b < end; b += kRun) {
            const uint64_t e = std::min(end, b + kRun);
            if (below128<N>(cols, b, e))
                acRowsBytes<N>(cols, out, b, e);
            else
                acRowsScalar<N>(cols, out, b, e);
        }
    } else {
        acRowsScalar<N>(cols, out, begin, end);
    }
}

void acRows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin, uint64_t end) {
    switch (c.positions.size()) {
        case 0:
            acRowsN<0>(c, t, out, begin, end);
            return;
        case 1:
            acRowsN<1>(c, t, out, begin, end);
            return;
        case 2:
            acRowsN<2>(c, t, out, begin, end);
            return;
        case 3:
            acRowsN<3>(c, t, out, begin, end);
            return;
        case 4:
            acRowsN<4>(c, t, out, begin, end);
            return;
        case 5:
            acRowsN<5>(c, t, out, begin, end);
            return;
        case 6:
            acRowsN<6>(c, t, out, begin, end);
            return;
        default:
            acRowsN<7>(c, t, out, begin, end);
            return;
    }
}

}  // namespace

CompiledCompute compile(const param_operations::CompileArgs& a) {
    if (a.scope == ZoneScope::Back) return {};
    CompiledCompute c;
    c.positions = param_operations::tickedColumns(a.scope, a.in.ticks);
    c.kernel = &acRows;
    return c;
}

}  // namespace param_ac_value
