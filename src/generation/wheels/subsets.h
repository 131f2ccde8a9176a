#pragma once

// Subsets of the positions 0..n-1 as bit masks, ranked in colexicographic order: the rank of
// {a1 < a2 < ... < ar} is C(a1,1) + C(a2,2) + ... + C(ar,r), dense in 0..C(n,r)-1.

#include <array>
#include <bit>
#include <cstdint>

namespace wheels {

class Binomials {
public:
    static constexpr int kSize = 33;
    constexpr Binomials() {
        for (int n = 0; n < kSize; ++n) {
            m_c[n][0] = 1;
            for (int r = 1; r <= n; ++r) m_c[n][r] = m_c[n - 1][r - 1] + (r < n ? m_c[n - 1][r] : 0);
        }
    }
    constexpr uint64_t operator()(int n, int r) const { return r < 0 || r > n ? 0 : m_c[n][r]; }

private:
    std::array<std::array<uint64_t, kSize>, kSize> m_c{};
};

inline constexpr Binomials kBinomials;

inline uint32_t colexRank(uint32_t mask) {
    uint64_t rank = 0;
    for (int r = 1; mask; ++r) {
        const int a = std::countr_zero(mask);
        rank += kBinomials(a, r);
        mask &= mask - 1;
    }
    return static_cast<uint32_t>(rank);
}

// The next larger mask of as many bits (Gosper), for a mask that is not the largest of its size.
inline uint32_t nextSubset(uint32_t mask) {
    const uint32_t lowest = mask & (~mask + 1);
    const uint32_t ripple = mask + lowest;
    return ripple | (((mask ^ ripple) >> 2) / lowest);
}

// Calls f(mask) for every r-subset of 0..n-1, in colex order (so the i-th call has rank i).
template <typename F>
void forEachSubset(int n, int r, F&& f) {
    const auto low = static_cast<uint32_t>((uint64_t{1} << r) - 1);
    const auto last = static_cast<uint32_t>((uint64_t{low}) << (n - r));
    if (r == 0) {
        f(uint32_t{0});
        return;
    }
    for (uint32_t m = low;; m = nextSubset(m)) {
        f(m);
        if (m == last) break;
    }
}

}  // namespace wheels
