#include "generation/wheels/cyclic_search.h"

#include "generation/wheels/cover_state.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <set>

namespace wheels {

Block turned(Block b, int shift, int period, int n) {
    shift %= period;
    if (shift < 0) shift += period;
    const uint64_t cycle = (uint64_t{1} << period) - 1;
    uint64_t out = 0;
    int start = 0;
    for (; start + period <= n; start += period) {
        const uint64_t part = (uint64_t{b} >> start & cycle) << shift;
        out |= ((part | (part >> period)) & cycle) << start;
    }
    return static_cast<Block>(out | (uint64_t{b} >> start << start));
}

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kGreedyCandidates = 24;
constexpr uint64_t kCheckClockEvery = 256;

// The state holds orbit j's turns at indices j * p .. j * p + p - 1, turn r at j * p + r (p the
// period).
class CyclicSearcher {
public:
    CyclicSearcher(const Guarantee& g, const CyclicOptions& o)
        : m_g(g), m_o(o), m_period(o.period > 0 && o.period <= g.n ? o.period : g.n), m_state(g), m_random(o.seed) {}
    std::vector<Block> run();

private:
    size_t below(size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(m_random); }
    int randomBit(Block b) {
        for (size_t skip = below(static_cast<size_t>(size(b))); skip; --skip) b &= b - 1;
        return std::countr_zero(b);
    }
    bool stopped() const { return m_o.cancel && m_o.cancel->load(std::memory_order_relaxed); }
    void addOrbit(Block base);
    void dropLastOrbit();
    void rebuild();
    void moveOrbit(size_t j, int x, int y);
    void greedy();
    void dropRandomOrbit();
    void step();

    // A base position's place in turn r.
    int turn(int x, int r) const {
        const int cycle = x / m_period;
        return (cycle + 1) * m_period <= m_g.n ? cycle * m_period + (x % m_period + r) % m_period : x;
    }

    const Guarantee& m_g;
    const CyclicOptions& m_o;
    int m_period;  // turns of an orbit
    CoverState m_state;
    std::mt19937_64 m_random;
    std::vector<Block> m_base;
    std::vector<uint64_t> m_tabuUntil;  // by orbit and base position
    size_t m_fewestUnsat = 0;
    uint64_t m_steps = 0;
};

void CyclicSearcher::addOrbit(Block base) {
    for (int r = 0; r < m_period; ++r) m_state.addBlock(turned(base, r, m_period, m_g.n));
    m_base.push_back(base);
}

void CyclicSearcher::dropLastOrbit() {
    for (int r = 0; r < m_period; ++r) m_state.removeBlock(m_state.blocks().size() - 1);
    m_base.pop_back();
}

void CyclicSearcher::rebuild() {
    m_state = CoverState(m_g);
    const std::vector<Block> base = std::exchange(m_base, {});
    for (Block b : base) addOrbit(b);
    m_tabuUntil.assign(m_base.size() * kMostPositions, 0);
    m_fewestUnsat = m_state.unsatisfied();
}

void CyclicSearcher::moveOrbit(size_t j, int x, int y) {
    for (int r = 0; r < m_period; ++r)
        m_state.move(j * static_cast<size_t>(m_period) + static_cast<size_t>(r), turn(x, r), turn(y, r));
    m_base[j] = (m_base[j] & ~(Block{1} << x)) | (Block{1} << y);
}

// Orbits through an unmet drawn set, the best of a few each time, until every drawn set is met.
void CyclicSearcher::greedy() {
    const Block all = static_cast<Block>((uint64_t{1} << m_g.n) - 1);
    while (m_state.unsatisfied() > 0 && !stopped()) {
        const Block target = m_state.unsatisfiedTarget(below(m_state.unsatisfied()));
        Block best = 0;
        size_t fewest = m_state.unsatisfied();
        for (int c = 0; c < kGreedyCandidates; ++c) {
            Block b = 0;
            while (size(b) < m_g.t) b |= Block{1} << randomBit(target & ~b);
            while (size(b) < m_g.k) b |= Block{1} << randomBit(all & ~b);
            addOrbit(b);
            if (m_state.unsatisfied() < fewest) {
                fewest = m_state.unsatisfied();
                best = b;
            }
            dropLastOrbit();
        }
        if (best) addOrbit(best);
    }
}

void CyclicSearcher::dropRandomOrbit() {
    m_base.erase(m_base.begin() + static_cast<std::ptrdiff_t>(below(m_base.size())));
    rebuild();
    m_state.resetWeights();
}

// For an unmet drawn set P, every turn of a base ticket that holds t - 1 of P's positions may
// take one more of them for one of its others; that move made on the base ticket moves all its
// turns. The best move that is not tabu is made.
void CyclicSearcher::step() {
    const int n = m_period;
    const Block target = m_state.unsatisfiedTarget(below(m_state.unsatisfied()));
    std::vector<uint32_t> moves;  // orbit * 1024 + x * 32 + y, on the base ticket
    const std::vector<Block>& blocks = m_state.blocks();
    for (size_t i = 0; i < blocks.size(); ++i) {
        const Block b = blocks[i];
        if (size(b & target) != m_g.t - 1) continue;
        const size_t j = i / static_cast<size_t>(n);
        const int r = static_cast<int>(i % static_cast<size_t>(n));
        for (Block out = b & ~target; out; out &= out - 1)
            for (Block in = target & ~b; in; in &= in - 1) {
                const int x = turn(std::countr_zero(out), n - r);
                const int y = turn(std::countr_zero(in), n - r);
                moves.push_back(static_cast<uint32_t>(j * 1024 + static_cast<size_t>(x * 32 + y)));
            }
    }
    std::sort(moves.begin(), moves.end());
    moves.erase(std::unique(moves.begin(), moves.end()), moves.end());
    const int64_t before = static_cast<int64_t>(m_state.weightedCost());
    int64_t bestDelta = INT64_MAX;
    uint32_t best = 0;
    int ties = 0;
    for (uint32_t m : moves) {
        const size_t j = m / 1024;
        const int x = static_cast<int>(m / 32 % 32), y = static_cast<int>(m % 32);
        moveOrbit(j, x, y);
        const int64_t delta = static_cast<int64_t>(m_state.weightedCost()) - before;
        const bool aspired = m_state.unsatisfied() < m_fewestUnsat;
        moveOrbit(j, y, x);
        if (m_tabuUntil[j * kMostPositions + static_cast<size_t>(y)] > m_steps && !aspired) continue;
        if (delta < bestDelta || (delta == bestDelta && below(static_cast<size_t>(++ties)) == 0)) {
            if (delta < bestDelta) ties = 1;
            bestDelta = delta;
            best = m;
        }
    }
    if (bestDelta == INT64_MAX) {
        if (moves.empty()) return;
        best = moves[below(moves.size())];
        bestDelta = 0;
    }
    const size_t j = best / 1024;
    const int x = static_cast<int>(best / 32 % 32), y = static_cast<int>(best % 32);
    moveOrbit(j, x, y);
    m_tabuUntil[j * kMostPositions + static_cast<size_t>(x)] = m_steps + 3 + below(m_base.size() / 2 + 1);
    if (bestDelta > 0) m_state.raiseUnsatisfiedWeights();
    m_fewestUnsat = std::min(m_fewestUnsat, m_state.unsatisfied());
}

std::vector<Block> CyclicSearcher::run() {
    const Clock::time_point deadline =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(m_o.seconds));
    greedy();
    rebuild();
    std::vector<Block> best;
    while (!stopped()) {
        if (m_state.unsatisfied() == 0) {
            best = m_base;
            if (m_base.size() <= std::max<size_t>(m_o.fewestOrbits, 1)) break;
            dropRandomOrbit();
            continue;
        }
        step();
        if (++m_steps % kCheckClockEvery == 0 && Clock::now() >= deadline) break;
    }
    std::set<Block> distinct;
    for (Block b : best)
        for (int r = 0; r < m_period; ++r) distinct.insert(turned(b, r, m_period, m_g.n));
    return {distinct.begin(), distinct.end()};
}

}  // namespace

std::vector<Block> searchCyclic(const Guarantee& g, const CyclicOptions& options) {
    if (!g.valid()) return {};
    CyclicSearcher searcher(g, options);
    return searcher.run();
}

}  // namespace wheels
