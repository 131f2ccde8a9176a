#include "filter/super/history_kernel.h"

#include "engine/candidate_kernels.h"
#include "filter/super/super_text.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <climits>
#include <map>
#include <mutex>

// The history filter: a ticket dies when it shares N numbers with one of the last D draws. The
// kernel walks the draws once, keeps the subsets of each draw's numbers in a table, and tests
// each ticket's subsets against it.
namespace history_kernel {

namespace {

using super_text::LiteralClasses;
using super_text::Pieces;
using Mode = CandidateTable::NumberTextMode;
using Word = BitVector::Word;

constexpr int32_t kNoDraw = INT32_MAX;
constexpr int kMaxSubset = 5;  // the front numbers of a draw

bool bit(uint64_t mask, int c) { return c >= 0 && ((mask >> c) & 1u); }

// The reason keys that one slice of rows needs, in the order its rows first met them. The
// slices' orders, taken slice by slice, intern the texts in row order whatever the number of
// threads.
class ReasonOrder {
public:
    explicit ReasonOrder(size_t keys) : m_seen(keys, 0) {}
    void note(size_t key) {
        if (m_seen[key]) return;
        m_seen[key] = 1;
        m_order.push_back(static_cast<uint32_t>(key));
    }
    const std::vector<uint32_t>& order() const { return m_order; }

private:
    std::vector<uint8_t> m_seen;
    std::vector<uint32_t> m_order;
};

}  // namespace

QString historyReason(const HistoryRun& run, int32_t issue, int matches) {
    return run.caption + QStringLiteral(" 检索前 ") + run.nText + QStringLiteral(" 期") +
           QString::number(issue) + QStringLiteral("期 有") + QString::number(matches) +
           QStringLiteral("码相同");
}

namespace {

// One pass of the loop that reads a history row: the classes of the literals its statement
// tests, per term.
struct Pass {
    int32_t issue = 0;
    DrawNumbers draw{};
    std::array<int, 5> front{};  // scope 1: the five front numbers
    int backTerm = -1;           // scopes 2, 3: fig6 of the draw, tested on NumstringHou
    int numTerm = -1;            // fig7 of the draw, tested on Numstring
    uint64_t frontMask = 0;
    bool regular = false;  // five distinct classes
};

// Best match over the passes and the newest pass that reached it.
struct Best {
    int matches = 0;
    int32_t pass = kNoDraw;
    void offer(int m, int32_t i) {
        if (m > matches || (m == matches && m > 0 && i < pass)) {
            matches = m;
            pass = i;
        }
    }
};

uint64_t binomial(int n, int k) {
    if (k < 0 || k > n) return 0;
    uint64_t r = 1;
    for (int i = 1; i <= k; ++i) r = r * static_cast<uint64_t>(n - k + i) / static_cast<uint64_t>(i);
    return r;
}

// For every subset of at most five classes, the newest regular pass whose front numbers hold
// it: the lookup that replaces a statement per draw. A set is ranked among the sets of its size
// with its largest class least significant, so tickets in the order of their numbers (the last
// number changing fastest) read neighbouring entries; the classes are numbered by value.
class SubsetTable {
public:
    explicit SubsetTable(int classes) : m_classes(classes) {
        for (int n = 0; n <= LiteralClasses::kMaxClasses; ++n)
            for (int k = 0; k <= kMaxSubset; ++k)
                m_binom[static_cast<size_t>(n)][static_cast<size_t>(k)] = binomial(n, k);
        for (int k = 1; k <= kMaxSubset; ++k)
            m_newest[static_cast<size_t>(k)].assign(
                m_binom[static_cast<size_t>(classes)][static_cast<size_t>(k)], kNoDraw);
        // The patterns over t positions, the larger subsets first.
        for (unsigned t = 1; t <= kMaxSubset; ++t)
            for (int k = static_cast<int>(t); k >= 1; --k)
                for (unsigned p = 1; p < (1u << t); ++p)
                    if (bitCount(p) == k) m_patterns[t].push_back(static_cast<uint8_t>(p));
    }
    // `cls` ascending and distinct; passes come newest first.
    void add(const std::array<int, kMaxSubset>& cls, int32_t pass) {
        for (uint8_t p : m_patterns[kMaxSubset]) {
            int32_t& slot = m_newest[static_cast<size_t>(bitCount(p))][rankOf(cls.data(), p)];
            if (slot == kNoDraw) slot = pass;
        }
    }
    // The best of a ticket with t <= 5 classes, ascending.
    Best best(const int* cls, unsigned t) const {
        Best b;
        for (uint8_t p : m_patterns[t]) {
            const int k = bitCount(p);
            if (k < b.matches) break;  // the larger subsets came first
            const int32_t pass = m_newest[static_cast<size_t>(k)][rankOf(cls, p)];
            if (pass != kNoDraw) b.offer(k, pass);
        }
        return b;
    }

private:
    static int bitCount(unsigned p) {
        int n = 0;
        for (; p; p &= p - 1) ++n;
        return n;
    }
    size_t rankOf(const int* cls, unsigned pattern) const {
        const int k = bitCount(pattern);
        uint64_t rank = 0;
        int i = 0;
        for (unsigned pos = 0; pattern; ++pos, pattern >>= 1) {
            if (!(pattern & 1u)) continue;
            rank += m_binom[static_cast<size_t>(m_classes - 1 - cls[pos])][static_cast<size_t>(k - i)];
            ++i;
        }
        return static_cast<size_t>(rank);
    }
    int m_classes;
    std::array<std::array<uint64_t, kMaxSubset + 1>, LiteralClasses::kMaxClasses + 1> m_binom{};
    std::array<std::vector<int32_t>, kMaxSubset + 1> m_newest;
    std::array<std::vector<uint8_t>, kMaxSubset + 1> m_patterns;
};

// The class mask of a row's pieces with the column pointers and the table held at hand.
class RowMasks {
public:
    RowMasks(const CandidateTable& t, const LiteralClasses& cls, const Pieces& p)
        : m_count(p.null ? 0 : p.count) {
        for (int i = 0; i < m_count; ++i)
            m_cols[static_cast<size_t>(i)] = t.numberColumn(p.cols[static_cast<size_t>(i)] + 1).data();
        for (int v = 0; v < 256; ++v)
            m_table[static_cast<size_t>(v)] = cls.maskOf(static_cast<uint8_t>(v), p.padded);
    }
    uint64_t operator()(uint64_t r) const {
        if (m_count == 5) {
            return m_table[m_cols[0][r]] | m_table[m_cols[1][r]] | m_table[m_cols[2][r]] |
                   m_table[m_cols[3][r]] | m_table[m_cols[4][r]];
        }
        uint64_t m = 0;
        for (int i = 0; i < m_count; ++i) m |= m_table[m_cols[static_cast<size_t>(i)][r]];
        return m;
    }

private:
    int m_count;
    std::array<const uint8_t*, 7> m_cols{};
    std::array<uint64_t, 256> m_table{};
};

class HistoryKernel {
public:
    HistoryKernel(CandidateTable& t, const HistoryRun& run, DrawHistoryView draws) : m_t(t), m_run(run) {
        const int drawCount = draws.drawCount();
        const int64_t reachable = std::min<int64_t>(run.passes, int64_t{drawCount} + 1);
        m_lastSkipped = run.passes > reachable;
        m_front = run.scope == ZoneScope::Front;
        // Classes numbered by value (two-digit texts sort as their numbers).
        std::vector<QString> literals;
        for (int64_t i = 0; i < reachable; ++i) {
            const DrawNumbers& d = draws.numbers(static_cast<int>(drawCount - i));
            if (m_front) {
                for (int j = 1; j <= 5; ++j)
                    literals.push_back(super_text::twoDigits(d[static_cast<size_t>(j)]));
            } else {
                literals.push_back(super_text::twoDigits(d[6]));
                literals.push_back(super_text::twoDigits(d[7]));
            }
        }
        std::ranges::sort(literals);
        for (const QString& l : literals) m_cls.add(l);
        for (int64_t i = 0; i < reachable; ++i) {
            const DrawNumbers& d = draws.numbers(static_cast<int>(drawCount - i));
            Pass p;
            p.issue = d[0];
            p.draw = d;
            if (m_front) {
                for (int j = 0; j < 5; ++j)
                    p.front[static_cast<size_t>(j)] =
                        m_cls.add(super_text::twoDigits(d[static_cast<size_t>(j + 1)]));
            } else {
                p.backTerm = m_cls.add(super_text::twoDigits(d[6]));
                p.numTerm = m_cls.add(super_text::twoDigits(d[7]));
            }
            m_passes.push_back(p);
        }
        m_cls.build();
        if (m_front && !m_cls.overflow()) {
            m_subsets.emplace(m_cls.size());
            for (size_t i = 0; i < m_passes.size(); ++i) {
                Pass& p = m_passes[i];
                for (int c : p.front) p.frontMask |= uint64_t{1} << c;
                p.regular = std::popcount(p.frontMask) == 5;
                if (p.regular) {
                    std::array<int, kMaxSubset> cls = p.front;
                    std::ranges::sort(cls);
                    m_subsets->add(cls, static_cast<int32_t>(i));
                } else
                    m_irregular.push_back(static_cast<int32_t>(i));
            }
        }
        if (!m_front && !m_cls.overflow()) {
            const size_t n = static_cast<size_t>(m_cls.size());
            m_newestBack.assign(n, kNoDraw);
            m_newestNum.assign(n, kNoDraw);
            m_newestBoth.assign(n * n, kNoDraw);
            for (size_t i = 0; i < m_passes.size(); ++i) {
                const Pass& p = m_passes[i];
                const auto pass = static_cast<int32_t>(i);
                auto& h = m_newestBack[static_cast<size_t>(p.backTerm)];
                auto& g = m_newestNum[static_cast<size_t>(p.numTerm)];
                auto& b = m_newestBoth[static_cast<size_t>(p.backTerm) * n + static_cast<size_t>(p.numTerm)];
                h = std::min(h, pass);
                g = std::min(g, pass);
                b = std::min(b, pass);
            }
        }
        m_reasonKeys = m_passes.size() * 8 + 1;
    }

    uint64_t run(EngineProgress* progress) {
        const uint64_t rows = m_t.rowCount();
        candidate_kernels::beginFilter(m_t);
        if (m_run.scope == ZoneScope::Front) {
            m_t.setNumberTextMode(Mode::Front);
        } else {
            if (m_run.scope == ZoneScope::Both) m_t.setNumberTextMode(Mode::Front);
            m_t.setBackNumberTextFilled(true);
        }
        m_num = super_text::piecesOf(m_t.numberTextMode(), m_t.numberCount());
        m_backPieces = super_text::backPieces();
        // canshu = 0 on every row; the loop's first statement SKnum = 0 on every row.
        const bool loops = m_run.passes > 0;
        if (!loops || m_passes.empty() || (!m_front && m_num.null)) {
            std::ranges::fill(m_t.paramValues(), int16_t{0});
            // Without a pass SKnum stays as it was; over a null Numstring the count is null,
            // which the column holds as 0.
            if (loops) std::ranges::fill(m_t.superCount(), int16_t{0});
            return 0;
        }
        // The main pass writes canshu and SKnum of every row, dead rows 0; a killed row holds
        // its reason key until the texts are interned.
        m_t.paramValues();
        m_t.superCount();
        m_t.matchIssue();
        std::atomic<uint64_t> killed{0};
        std::mutex ordersMutex;
        std::map<uint64_t, std::vector<uint32_t>> orders;  // by the first row of a slice
        KernelExecutor::shared().forEachChunk(rows, progress, [&](uint64_t begin, uint64_t end) {
            ReasonOrder order(m_reasonKeys);
            killed += m_front ? slice<true>(begin, end, order) : slice<false>(begin, end, order);
            std::lock_guard lock(ordersMutex);
            orders.emplace(begin, order.order());
        });
        writeReasons(orders);
        return killed;
    }

    // Interns the texts of the reason keys in row order and puts their ids in place of the keys
    // of the rows this run killed.
    void writeReasons(const std::map<uint64_t, std::vector<uint32_t>>& orders) {
        std::vector<ReasonTable::Id> ids(m_reasonKeys, 0);
        std::vector<uint8_t> interned(m_reasonKeys, 0);
        for (const auto& [begin, order] : orders)
            for (uint32_t key : order) {
                if (interned[key]) continue;
                interned[key] = 1;
                const Pass& p = m_passes[key / 8];
                ids[key] = m_t.reasons().intern(historyReason(m_run, p.issue, static_cast<int>(key % 8)));
            }
        const auto un = m_t.filteredOut().words();
        const auto pre = m_t.previousFilteredOut().words();
        auto fl = m_t.rowReasons();
        KernelExecutor::shared().forEachSlice(m_t.rowCount(), [&](uint64_t begin, uint64_t end) {
            for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w)
                forEachSetBit(un[w] & ~pre[w], w * BitVector::kWordBits,
                              [&](size_t r) { fl[r] = ids[fl[r]]; });
        });
    }

private:
    // What a live row receives.
    struct RowResult {
        int16_t paramValues = 0;
        int16_t superCount = 0;
        int32_t issue = 0;  // JSqihao when canshu > 0
        bool kill = false;
        ReasonTable::Id reason = 0;
    };

    RowResult resultOf(const Best& best, int lastCount, ReasonOrder& order) {
        RowResult res;
        res.superCount = static_cast<int16_t>(lastCount);
        res.paramValues = static_cast<int16_t>(best.matches);
        if (best.matches == 0) return res;
        const Pass& p = m_passes[static_cast<size_t>(best.pass)];
        res.issue = p.issue;
        res.kill = best.matches >= m_run.threshold;
        if (res.kill) {
            const size_t key = static_cast<size_t>(best.pass) * 8 + static_cast<size_t>(best.matches);
            order.note(key);
            res.reason = static_cast<ReasonTable::Id>(key);
        }
        return res;
    }

    // Pair scopes over a Numstring of front numbers only: the best pass for each back class
    // given the row's front numbers, kept while the front numbers stay.
    struct FrontPairs {
        uint64_t num = 0;
        bool valid = false;
        std::array<int32_t, LiteralClasses::kMaxClasses> both{};
        int32_t one = kNoDraw;
    };

    Best pairBestCached(uint64_t back, uint64_t num, FrontPairs& cache) const {
        const size_t n = static_cast<size_t>(m_cls.size());
        if (!cache.valid || cache.num != num) {
            cache.valid = true;
            cache.num = num;
            cache.one = kNoDraw;
            for (uint64_t g = num; g; g &= g - 1)
                cache.one = std::min(cache.one, m_newestNum[static_cast<size_t>(std::countr_zero(g))]);
            for (size_t a = 0; a < n; ++a) {
                int32_t v = kNoDraw;
                for (uint64_t g = num; g; g &= g - 1)
                    v = std::min(v, m_newestBoth[a * n + static_cast<size_t>(std::countr_zero(g))]);
                cache.both[a] = v;
            }
        }
        int32_t both = kNoDraw, one = cache.one;
        for (uint64_t h = back; h; h &= h - 1) {
            const auto a = static_cast<size_t>(std::countr_zero(h));
            both = std::min(both, cache.both[a]);
            one = std::min(one, m_newestBack[a]);
        }
        Best b;
        if (both != kNoDraw)
            b.offer(2, both);
        else if (one != kNoDraw)
            b.offer(1, one);
        return b;
    }

    // Scope 1 over rows [begin, end), word-aligned: runs of rows with equal front numbers share
    // one result, written to the run's live rows at once.
    uint64_t frontRuns(uint64_t begin, uint64_t end, ReasonOrder& order) {
        std::array<const uint8_t*, 5> c{};
        for (int k = 0; k < 5; ++k) c[static_cast<size_t>(k)] = m_t.numberColumn(k + 1).data();
        const RowMasks numMask(m_t, m_cls, m_num);
        const Pass& last = m_passes.back();
        uint64_t killed = 0;
        uint64_t lastKey = 0;
        bool haveKey = false;
        RowResult res;
        for (uint64_t r = begin; r < end;) {
            const uint8_t a0 = c[0][r], a1 = c[1][r], a2 = c[2][r], a3 = c[3][r], a4 = c[4][r];
            uint64_t e = r + 1;
            while (e < end && c[4][e] == a4 && c[3][e] == a3 && c[2][e] == a2 && c[1][e] == a1 &&
                   c[0][e] == a0)
                ++e;
            const uint64_t key = numMask(r);
            if (!haveKey || key != lastKey) {
                haveKey = true;
                lastKey = key;
                res = resultOf(frontBest(key), m_lastSkipped ? 0 : frontCount(key, last), order);
            }
            killed += applyRun(r, e, res);
            r = e;
        }
        return killed;
    }

    // Writes a result to the live rows of [r, e) and 0, 0 to canshu and SKnum of the dead ones.
    uint64_t applyRun(uint64_t r, uint64_t e, const RowResult& res) {
        auto un = m_t.filteredOut().words();
        int16_t* paramValues = m_t.paramValues().data();
        int16_t* superCount = m_t.superCount().data();
        int32_t* jsq = m_t.matchIssue().data();
        ReasonTable::Id* fl = m_t.rowReasons().data();
        uint64_t killed = 0;
        for (uint64_t lo = r; lo < e;) {
            const size_t w = lo / BitVector::kWordBits;
            const uint64_t base = w * BitVector::kWordBits;
            const uint64_t hi = std::min(e, base + BitVector::kWordBits);
            const unsigned from = static_cast<unsigned>(lo - base), count = static_cast<unsigned>(hi - lo);
            const Word seg = (count == BitVector::kWordBits ? ~Word{0} : ((Word{1} << count) - 1)) << from;
            const Word dead = un[w] & seg;
            if (!dead) {
                std::fill(paramValues + lo, paramValues + hi, res.paramValues);
                std::fill(superCount + lo, superCount + hi, res.superCount);
                if (res.paramValues != 0) std::fill(jsq + lo, jsq + hi, res.issue);
                if (res.kill) {
                    std::fill(fl + lo, fl + hi, res.reason);
                    un[w] |= seg;
                    killed += count;
                }
            } else {
                for (uint64_t x = lo; x < hi; ++x) {
                    const Word m = Word{1} << (x - base);
                    const bool isDead = (dead & m) != 0;
                    paramValues[x] = isDead ? int16_t{0} : res.paramValues;
                    superCount[x] = isDead ? int16_t{0} : res.superCount;
                    if (isDead || res.paramValues == 0) continue;
                    jsq[x] = res.issue;
                    if (!res.kill) continue;
                    fl[x] = res.reason;
                    un[w] |= m;
                    ++killed;
                }
            }
            lo = hi;
        }
        return killed;
    }

    // The rows [begin, end), word-aligned: scope 1 by runs, the pair scopes row by row, and any
    // scope row by row over the texts when the literals overflow a mask.
    template <bool Front>
    uint64_t slice(uint64_t begin, uint64_t end, ReasonOrder& order) {
        if constexpr (Front) {
            if (!m_cls.overflow()) return frontRuns(begin, end, order);
        }
        auto un = m_t.filteredOut().words();
        int16_t* paramValues = m_t.paramValues().data();
        int16_t* superCount = m_t.superCount().data();
        int32_t* jsq = m_t.matchIssue().data();
        ReasonTable::Id* fl = m_t.rowReasons().data();
        const bool overflow = m_cls.overflow();
        const bool frontNum =
            !m_num.null && m_num.padded &&
            std::all_of(m_num.cols.begin(), m_num.cols.begin() + m_num.count, [](int c) { return c < 5; });
        const Pass& last = m_passes.back();
        // The pieces' columns and the class table, read directly in the row loop.
        const RowMasks numMask(m_t, m_cls, m_num), backMask(m_t, m_cls, m_backPieces);
        uint64_t killed = 0;
        RowResult res;
        FrontPairs pairs;
        for (uint64_t base = begin; base < end; base += BitVector::kWordBits) {
            const size_t w = base / BitVector::kWordBits;
            const Word dead = un[w];
            Word kills = 0;
            const uint64_t stop = std::min(end, base + BitVector::kWordBits);
            for (uint64_t r = base; r < stop; ++r) {
                const Word m = Word{1} << (r - base);
                if (dead & m) {
                    paramValues[r] = 0;
                    superCount[r] = 0;
                    continue;
                }
                if (overflow) {
                    Best best;
                    int lastCount = 0;
                    slowRow(r, best, lastCount);
                    res = resultOf(best, lastCount, order);
                } else {
                    const uint64_t back = backMask(r), num = numMask(r);
                    const Best best = frontNum ? pairBestCached(back, num, pairs) : pairBest(back, num);
                    res = resultOf(
                        best, m_lastSkipped ? 0 : int{bit(back, last.backTerm)} + int{bit(num, last.numTerm)},
                        order);
                }
                paramValues[r] = res.paramValues;
                superCount[r] = res.superCount;
                if (res.paramValues == 0) continue;
                jsq[r] = res.issue;
                if (!res.kill) continue;
                kills |= m;
                fl[r] = res.reason;
            }
            un[w] = dead | kills;
            killed += static_cast<uint64_t>(std::popcount(kills));
        }
        return killed;
    }

    int frontCount(uint64_t ticket, const Pass& p) const {
        int n = 0;
        for (int c : p.front) n += bit(ticket, c);
        return n;
    }

    Best frontBest(uint64_t ticket) const {
        Best b;
        if (std::popcount(ticket) <= kMaxSubset) {
            std::array<int, kMaxSubset> cls{};
            unsigned t = 0;
            for (uint64_t m = ticket; m; m &= m - 1) cls[t++] = std::countr_zero(m);
            if (t > 0) b = m_subsets->best(cls.data(), t);
        } else {
            for (size_t i = 0; i < m_passes.size(); ++i)
                if (m_passes[i].regular)
                    b.offer(std::popcount(ticket & m_passes[i].frontMask), static_cast<int32_t>(i));
        }
        for (int32_t i : m_irregular) b.offer(frontCount(ticket, m_passes[static_cast<size_t>(i)]), i);
        return b;
    }

    Best pairBest(uint64_t back, uint64_t num) const {
        Best b;
        const size_t n = static_cast<size_t>(m_cls.size());
        int32_t both = kNoDraw, one = kNoDraw;
        for (uint64_t h = back; h; h &= h - 1) {
            const auto a = static_cast<size_t>(std::countr_zero(h));
            one = std::min(one, m_newestBack[a]);
            for (uint64_t g = num; g; g &= g - 1)
                both = std::min(both, m_newestBoth[a * n + static_cast<size_t>(std::countr_zero(g))]);
        }
        for (uint64_t g = num; g; g &= g - 1)
            one = std::min(one, m_newestNum[static_cast<size_t>(std::countr_zero(g))]);
        if (both != kNoDraw)
            b.offer(2, both);
        else if (one != kNoDraw)
            b.offer(1, one);
        return b;
    }

    // More distinct literals than a mask holds: the row's texts are tested against each pass.
    void slowRow(uint64_t r, Best& best, int& lastCount) const {
        const auto texts = [&](const Pieces& p) {
            std::vector<QString> out;
            for (int i = 0; i < p.count; ++i)
                out.push_back(
                    super_text::pieceText(m_t.numberColumn(p.cols[static_cast<size_t>(i)] + 1)[r], p.padded));
            return out;
        };
        const std::vector<QString> num = texts(m_num), back = texts(m_backPieces);
        const auto holds = [](const std::vector<QString>& pieces, int32_t n) {
            const QString lit = super_text::twoDigits(n);
            return std::ranges::any_of(pieces, [&](const QString& p) { return p.contains(lit); });
        };
        const auto count = [&](const Pass& p) {
            if (m_front) {
                int n = 0;
                for (int j = 1; j <= 5; ++j) n += holds(num, p.draw[static_cast<size_t>(j)]);
                return n;
            }
            return int{holds(back, p.draw[6])} + int{holds(num, p.draw[7])};
        };
        best = Best{};
        for (size_t i = 0; i < m_passes.size(); ++i) best.offer(count(m_passes[i]), static_cast<int32_t>(i));
        lastCount = m_lastSkipped ? 0 : count(m_passes.back());
    }

    CandidateTable& m_t;
    const HistoryRun& m_run;
    LiteralClasses m_cls;
    std::vector<Pass> m_passes;
    std::vector<int32_t> m_irregular;
    std::optional<SubsetTable> m_subsets;
    std::vector<int32_t> m_newestBack, m_newestNum, m_newestBoth;
    bool m_front = true;
    bool m_lastSkipped = false;
    Pieces m_num, m_backPieces;
    size_t m_reasonKeys = 0;
};

}  // namespace

uint64_t history(CandidateTable& t, const HistoryRun& run, DrawHistoryView draws,
                 EngineProgress* progress) {
    if (run.threshold <= 0) return 0;
    HistoryKernel kernel(t, run, draws);
    return kernel.run(progress);
}

}  // namespace history_kernel
