#pragma once

// The counters a wheel search moves on. For every t-set of positions, how many tickets hold
// it; for every drawn p-set, how many of its t-subsets some ticket holds: the p-set is met
// (some ticket holds t of its positions) exactly when that count is above 0. Moving one
// position of one ticket touches only the t-sets through that position, and only counts that
// cross 0 touch the p-sets above them, so a move costs a few hundred steps at most.

#include "generation/wheels/wheel.h"

#include <cstdint>
#include <vector>

namespace wheels {

class CoverState {
public:
    explicit CoverState(const Guarantee& g);

    const Guarantee& guarantee() const { return m_g; }
    const std::vector<Block>& blocks() const { return m_blocks; }
    // Drawn sets that no ticket meets in t positions, and their weights' total.
    size_t unsatisfied() const { return m_unsat.size(); }
    uint64_t weightedCost() const { return m_weighted; }
    // The i-th of the unsatisfied drawn sets.
    Block unsatisfiedTarget(size_t i) const { return m_targetMask[m_unsat[i]]; }

    void addBlock(Block b);
    // Removes ticket i; the last ticket takes its place.
    void removeBlock(size_t i);
    // Ticket i gives up position bit x for position bit y (x in it, y not).
    void move(size_t i, int x, int y);
    // What a move would change, the state left as it was.
    struct Delta {
        int64_t weighted;
        int64_t unsatisfied;
    };
    Delta tryMove(size_t i, int x, int y);
    Delta tryAdd(Block b);
    Delta tryRemove(size_t i);

    // Weights make the drawn sets that stay unmet costlier, to leave a plateau.
    void raiseUnsatisfiedWeights();
    void resetWeights();

private:
    Delta tryCoveringMove(size_t i, int x, int y) const;
    template <typename F>
    void forEachTSet(Block rest, int through, F&& f) const;
    void addTSet(Block tset);
    void dropTSet(Block tset);
    void meet(uint32_t target);
    void unmeet(uint32_t target);

    Guarantee m_g;
    std::vector<Block> m_blocks;
    std::vector<uint32_t> m_tsetCount;  // tickets holding each t-set, by colex rank
    std::vector<uint16_t> m_metBy;      // t-subsets held of each drawn set
    std::vector<uint32_t> m_supersets;  // the drawn sets above each t-set, m_supersetCount each
    uint32_t m_supersetCount = 0;
    std::vector<Block> m_targetMask;    // each drawn set by its rank
    std::vector<uint32_t> m_weight;     // each drawn set's weight
    std::vector<uint32_t> m_unsat;      // ranks of the unmet drawn sets
    std::vector<int32_t> m_unsatIndex;  // where each drawn set stands in m_unsat, or -1
    uint64_t m_weighted = 0;
    // Scratch of tryMove: the balance of each drawn set it touches, marked by a stamp.
    std::vector<uint32_t> m_seen;
    std::vector<int16_t> m_change;
    std::vector<uint32_t> m_touched;
    uint32_t m_stamp = 0;
};

}  // namespace wheels
