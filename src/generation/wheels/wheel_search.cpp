#include "generation/wheels/wheel_search.h"

#include "generation/wheels/cover_state.h"

#include <bit>
#include <chrono>
#include <memory>
#include <mutex>
#include <random>
#include <thread>

namespace wheels {

namespace {

constexpr uint64_t kReportEvery = 1 << 13;
constexpr int kGreedyCandidates = 24;
constexpr uint64_t kTabuBase = 10;
constexpr size_t kTabuRow = kMostPositions;  // a ticket's entries in the tabu list

using Clock = std::chrono::steady_clock;

// One search over its own counters and random stream.
class Searcher {
public:
    Searcher(const Guarantee& g, const SearchOptions& o, int thread, const std::atomic<bool>& stop)
        : m_g(g),
          m_o(o),
          m_thread(thread),
          m_stop(stop),
          m_state(g),
          m_random(o.seed + static_cast<uint64_t>(thread)) {}

    void run(const std::vector<Block>& start, Clock::time_point deadline, bool timed);
    const std::vector<Block>& best() const { return m_best; }
    uint64_t moves() const { return m_moves; }
    bool reachedTarget() const { return !m_best.empty() && m_best.size() <= m_o.targetTickets; }

private:
    size_t below(size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(m_random); }
    int randomBit(Block b) {
        for (size_t skip = below(static_cast<size_t>(size(b))); skip; --skip) b &= b - 1;
        return std::countr_zero(b);
    }
    void greedy();
    void dropRedundant();
    void dropCheapest();
    void step();
    void resetTabu();

    const Guarantee& m_g;
    const SearchOptions& m_o;
    int m_thread;
    const std::atomic<bool>& m_stop;
    CoverState m_state;
    std::mt19937_64 m_random;
    std::vector<Block> m_best;
    std::vector<uint64_t> m_tabuUntil;  // by ticket and position: no move back in before then
    size_t m_fewestUnsat = 0;           // at the present size, for the aspiration
    uint64_t m_moves = 0;
};

// Adds, until every drawn set is met, the best of a few tickets through an unmet drawn set.
void Searcher::greedy() {
    const Block all = m_g.n == kMostPositions ? ~Block{0} : (Block{1} << m_g.n) - 1;
    while (m_state.unsatisfied() > 0 && !m_stop.load(std::memory_order_relaxed)) {
        const Block target = m_state.unsatisfiedTarget(below(m_state.unsatisfied()));
        Block best = 0;
        int64_t bestGain = 1;
        for (int c = 0; c < kGreedyCandidates; ++c) {
            Block b = 0;
            while (size(b) < m_g.t) b |= Block{1} << randomBit(target & ~b);
            while (size(b) < m_g.k) b |= Block{1} << randomBit(all & ~b);
            const int64_t gain = m_state.tryAdd(b).unsatisfied;
            if (gain < bestGain) {
                bestGain = gain;
                best = b;
            }
        }
        if (best) m_state.addBlock(best);
    }
}

// Drops, in a random order, the tickets without which every drawn set stays met.
void Searcher::dropRedundant() {
    for (size_t i = m_state.blocks().size(); i-- > 0;) {
        const size_t at = below(i + 1);
        if (m_state.tryRemove(at).unsatisfied == 0) m_state.removeBlock(at);
    }
}

// Drops the ticket whose loss leaves the fewest drawn sets unmet.
void Searcher::dropCheapest() {
    size_t chosen = 0;
    int64_t fewest = INT64_MAX;
    int ties = 0;
    for (size_t i = 0; i < m_state.blocks().size(); ++i) {
        const int64_t lost = m_state.tryRemove(i).unsatisfied;
        if (lost < fewest) {
            fewest = lost;
            chosen = i;
            ties = 1;
        } else if (lost == fewest && below(static_cast<size_t>(++ties)) == 0) {
            chosen = i;
        }
    }
    m_state.removeBlock(chosen);
    m_state.resetWeights();
    resetTabu();
    m_fewestUnsat = m_state.unsatisfied();
}

void Searcher::resetTabu() { m_tabuUntil.assign(m_state.blocks().size() * kTabuRow, 0); }

// One move: for an unmet drawn set P, every ticket that holds t - 1 of its positions may take
// one more of them for one of its others; the best such move that is not tabu is made.
void Searcher::step() {
    const Block target = m_state.unsatisfiedTarget(below(m_state.unsatisfied()));
    const std::vector<Block>& blocks = m_state.blocks();
    int64_t bestDelta = INT64_MAX;
    size_t bestTicket = 0;
    int bestOut = -1, bestIn = -1, ties = 0;
    for (size_t i = 0; i < blocks.size(); ++i) {
        const Block b = blocks[i];
        if (size(b & target) != m_g.t - 1) continue;
        for (Block out = b & ~target; out; out &= out - 1) {
            const int x = std::countr_zero(out);
            for (Block in = target & ~b; in; in &= in - 1) {
                const int y = std::countr_zero(in);
                const CoverState::Delta d = m_state.tryMove(i, x, y);
                const bool aspired = static_cast<int64_t>(m_state.unsatisfied()) + d.unsatisfied <
                                     static_cast<int64_t>(m_fewestUnsat);
                if (m_tabuUntil[i * kTabuRow + static_cast<size_t>(y)] > m_moves && !aspired) continue;
                if (d.weighted < bestDelta) {
                    bestDelta = d.weighted;
                    bestTicket = i;
                    bestOut = x;
                    bestIn = y;
                    ties = 1;
                } else if (d.weighted == bestDelta && below(static_cast<size_t>(++ties)) == 0) {
                    bestTicket = i;
                    bestOut = x;
                    bestIn = y;
                }
            }
        }
    }
    if (bestOut < 0) {
        // Every move is tabu, or no ticket is one position short: bring a position of P into a
        // random ticket.
        bestTicket = below(blocks.size());
        const Block b = blocks[bestTicket];
        if ((target & ~b) == 0 || (b & ~target) == 0) return;
        bestOut = randomBit(b & ~target);
        bestIn = randomBit(target & ~b);
        bestDelta = 0;
    }
    m_state.move(bestTicket, bestOut, bestIn);
    const uint64_t tenure = kTabuBase + below(blocks.size() / 4 + 1);
    m_tabuUntil[bestTicket * kTabuRow + static_cast<size_t>(bestOut)] = m_moves + tenure;
    if (bestDelta > 0) m_state.raiseUnsatisfiedWeights();
    m_fewestUnsat = std::min(m_fewestUnsat, m_state.unsatisfied());
}

void Searcher::run(const std::vector<Block>& start, Clock::time_point deadline, bool timed) {
    for (Block b : start) m_state.addBlock(b);
    greedy();
    dropRedundant();
    resetTabu();
    m_fewestUnsat = m_state.unsatisfied();
    while (!m_stop.load(std::memory_order_relaxed) && m_moves < m_o.movesPerThread) {
        if (m_state.unsatisfied() == 0) {
            m_best = m_state.blocks();
            if (m_best.size() <= m_o.targetTickets || m_best.size() <= 1) break;
            dropCheapest();
            continue;
        }
        step();
        if (++m_moves % kReportEvery == 0) {
            if (timed && Clock::now() >= deadline) break;
            if (m_o.progress)
                m_o.progress(
                    {m_thread, m_state.blocks().size(), m_state.unsatisfied(), m_best.size(), m_moves});
        }
    }
    if (m_best.empty() && m_state.unsatisfied() == 0) m_best = m_state.blocks();
}

}  // namespace

SearchResult search(const Guarantee& g, const SearchOptions& options, const std::vector<Block>& start) {
    SearchResult result;
    if (!g.valid()) return result;
    const int threads = std::max(1, options.threads);
    std::atomic<bool> stop{false};
    std::mutex reporting;
    SearchOptions o = options;
    if (options.progress)
        o.progress = [&](const SearchProgress& p) {
            const std::lock_guard lock(reporting);
            options.progress(p);
        };
    const Clock::time_point deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                          std::chrono::duration<double>(options.seconds));

    std::vector<std::unique_ptr<Searcher>> searchers;
    for (int i = 0; i < threads; ++i) searchers.push_back(std::make_unique<Searcher>(g, o, i, stop));
    // A cancel, or one search at its target, stops them all.
    std::atomic<int> running{threads};
    std::thread watcher([&] {
        while (running.load() > 0) {
            if (options.cancel && options.cancel->load()) stop = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    });
    std::vector<std::thread> workers;
    for (int i = 0; i < threads; ++i)
        workers.emplace_back([&, i] {
            searchers[static_cast<size_t>(i)]->run(start, deadline, options.seconds > 0);
            if (searchers[static_cast<size_t>(i)]->reachedTarget()) stop = true;
            --running;
        });
    for (std::thread& w : workers) w.join();
    watcher.join();

    for (const auto& s : searchers) {
        result.moves += s->moves();
        if (!s->best().empty() && (result.blocks.empty() || s->best().size() < result.blocks.size()))
            result.blocks = s->best();
    }
    result.cancelled = options.cancel && options.cancel->load();
    return result;
}

}  // namespace wheels
