#include "generation/wheels/cover_state.h"

#include "generation/wheels/subsets.h"

#include <bit>

namespace wheels {

namespace {

// The r-subsets of a block's positions, each as a mask over 0..n-1.
template <typename F>
void forEachSubsetOf(Block b, int r, F&& f) {
    int points[kMostPositions];
    int count = 0;
    for (Block rest = b; rest; rest &= rest - 1) points[count++] = std::countr_zero(rest);
    forEachSubset(count, r, [&](uint32_t local) {
        Block chosen = 0;
        for (; local; local &= local - 1) chosen |= Block{1} << points[std::countr_zero(local)];
        f(chosen);
    });
}

}  // namespace

CoverState::CoverState(const Guarantee& g) : m_g(g) {
    const auto tsets = static_cast<size_t>(kBinomials(g.n, g.t));
    const auto targets = static_cast<size_t>(kBinomials(g.n, g.p));
    m_tsetCount.assign(tsets, 0);
    m_metBy.assign(targets, 0);
    m_weight.assign(targets, 1);
    m_seen.assign(targets, 0);
    m_change.assign(targets, 0);
    m_supersetCount = static_cast<uint32_t>(kBinomials(g.n - g.t, g.p - g.t));
    m_supersets.reserve(tsets * m_supersetCount);
    const Block all = g.n == kMostPositions ? ~Block{0} : (Block{1} << g.n) - 1;
    forEachSubset(g.n, g.t, [&](uint32_t tset) {
        forEachSubsetOf(all & ~tset, g.p - g.t,
                        [&](Block more) { m_supersets.push_back(colexRank(tset | more)); });
    });
    m_targetMask.reserve(targets);
    forEachSubset(g.n, g.p, [&](uint32_t target) { m_targetMask.push_back(target); });
    m_unsat.resize(targets);
    m_unsatIndex.resize(targets);
    for (size_t i = 0; i < targets; ++i) {
        m_unsat[i] = static_cast<uint32_t>(i);
        m_unsatIndex[i] = static_cast<int32_t>(i);
    }
    m_weighted = targets;
}

template <typename F>
void CoverState::forEachTSet(Block rest, int through, F&& f) const {
    const Block bit = Block{1} << through;
    forEachSubsetOf(rest, m_g.t - 1, [&](Block s) { f(s | bit); });
}

void CoverState::meet(uint32_t target) {
    const int32_t at = m_unsatIndex[target];
    const uint32_t last = m_unsat.back();
    m_unsat[static_cast<size_t>(at)] = last;
    m_unsatIndex[last] = at;
    m_unsat.pop_back();
    m_unsatIndex[target] = -1;
    m_weighted -= m_weight[target];
}

void CoverState::unmeet(uint32_t target) {
    m_unsatIndex[target] = static_cast<int32_t>(m_unsat.size());
    m_unsat.push_back(target);
    m_weighted += m_weight[target];
}

void CoverState::addTSet(Block tset) {
    const uint32_t rank = colexRank(tset);
    if (m_tsetCount[rank]++ != 0) return;
    const uint32_t* above = m_supersets.data() + size_t{rank} * m_supersetCount;
    for (uint32_t i = 0; i < m_supersetCount; ++i)
        if (m_metBy[above[i]]++ == 0) meet(above[i]);
}

void CoverState::dropTSet(Block tset) {
    const uint32_t rank = colexRank(tset);
    if (--m_tsetCount[rank] != 0) return;
    const uint32_t* above = m_supersets.data() + size_t{rank} * m_supersetCount;
    for (uint32_t i = 0; i < m_supersetCount; ++i)
        if (--m_metBy[above[i]] == 0) unmeet(above[i]);
}

void CoverState::addBlock(Block b) {
    forEachSubsetOf(b, m_g.t, [&](Block tset) { addTSet(tset); });
    m_blocks.push_back(b);
}

void CoverState::removeBlock(size_t i) {
    forEachSubsetOf(m_blocks[i], m_g.t, [&](Block tset) { dropTSet(tset); });
    m_blocks[i] = m_blocks.back();
    m_blocks.pop_back();
}

void CoverState::move(size_t i, int x, int y) {
    const Block rest = m_blocks[i] & ~(Block{1} << x);
    // Gains first: a drawn set met through both the old and the new position never goes unmet.
    forEachTSet(rest, y, [&](Block tset) { addTSet(tset); });
    forEachTSet(rest, x, [&](Block tset) { dropTSet(tset); });
    m_blocks[i] = rest | (Block{1} << y);
}

// Without changing anything: each drawn set above a t-set that the move takes from its last
// ticket loses one, each above a t-set that it gives to a first ticket gains one; a drawn set
// changes state when its count crosses 0 on the balance.
CoverState::Delta CoverState::tryMove(size_t i, int x, int y) {
    if (m_g.p == m_g.t) return tryCoveringMove(i, x, y);
    if (++m_stamp == 0) {
        std::fill(m_seen.begin(), m_seen.end(), 0u);
        m_stamp = 1;
    }
    m_touched.clear();
    const auto change = [&](uint32_t rank, int16_t by) {
        const uint32_t* above = m_supersets.data() + size_t{rank} * m_supersetCount;
        for (uint32_t k = 0; k < m_supersetCount; ++k) {
            const uint32_t target = above[k];
            if (m_seen[target] != m_stamp) {
                m_seen[target] = m_stamp;
                m_change[target] = 0;
                m_touched.push_back(target);
            }
            m_change[target] = static_cast<int16_t>(m_change[target] + by);
        }
    };
    const Block rest = m_blocks[i] & ~(Block{1} << x);
    forEachTSet(rest, x, [&](Block tset) {
        const uint32_t rank = colexRank(tset);
        if (m_tsetCount[rank] == 1) change(rank, -1);
    });
    forEachTSet(rest, y, [&](Block tset) {
        const uint32_t rank = colexRank(tset);
        if (m_tsetCount[rank] == 0) change(rank, +1);
    });
    Delta d{0, 0};
    for (uint32_t target : m_touched) {
        const int before = m_metBy[target];
        const int after = before + m_change[target];
        if (before == 0 && after > 0) {
            d.weighted -= m_weight[target];
            --d.unsatisfied;
        } else if (before > 0 && after == 0) {
            d.weighted += m_weight[target];
            ++d.unsatisfied;
        }
    }
    return d;
}

// A covering design's drawn sets are its t-sets: the t-sets through x that only this ticket
// holds go unmet, those through y that no ticket holds are met, and none is both.
CoverState::Delta CoverState::tryCoveringMove(size_t i, int x, int y) const {
    Delta d{0, 0};
    const Block rest = m_blocks[i] & ~(Block{1} << x);
    forEachTSet(rest, x, [&](Block tset) {
        const uint32_t rank = colexRank(tset);
        if (m_tsetCount[rank] == 1) {
            d.weighted += m_weight[rank];
            ++d.unsatisfied;
        }
    });
    forEachTSet(rest, y, [&](Block tset) {
        const uint32_t rank = colexRank(tset);
        if (m_tsetCount[rank] == 0) {
            d.weighted -= m_weight[rank];
            --d.unsatisfied;
        }
    });
    return d;
}

CoverState::Delta CoverState::tryAdd(Block b) {
    const uint64_t weighted = m_weighted;
    const size_t unsat = m_unsat.size();
    addBlock(b);
    const Delta d{static_cast<int64_t>(m_weighted) - static_cast<int64_t>(weighted),
                  static_cast<int64_t>(m_unsat.size()) - static_cast<int64_t>(unsat)};
    removeBlock(m_blocks.size() - 1);
    return d;
}

CoverState::Delta CoverState::tryRemove(size_t i) {
    const uint64_t weighted = m_weighted;
    const size_t unsat = m_unsat.size();
    const Block b = m_blocks[i];
    forEachSubsetOf(b, m_g.t, [&](Block tset) { dropTSet(tset); });
    const Delta d{static_cast<int64_t>(m_weighted) - static_cast<int64_t>(weighted),
                  static_cast<int64_t>(m_unsat.size()) - static_cast<int64_t>(unsat)};
    forEachSubsetOf(b, m_g.t, [&](Block tset) { addTSet(tset); });
    return d;
}

void CoverState::raiseUnsatisfiedWeights() {
    for (uint32_t target : m_unsat) ++m_weight[target];
    m_weighted += m_unsat.size();
}

void CoverState::resetWeights() {
    std::fill(m_weight.begin(), m_weight.end(), 1u);
    m_weighted = m_unsat.size();
}

}  // namespace wheels
