#include "filter/param/param_reason_builder.h"

#include "engine/candidate_kernels.h"
#include "engine/kernel_executor.h"

#include <atomic>
#include <bit>
#include <cstring>
#include <thread>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace param_reason_builder {

namespace {

constexpr uint64_t kBlock = KernelExecutor::kBlockRows;

// The eight bits of a byte as eight bytes 0 or 1, lowest bit first.
constexpr std::array<uint64_t, 256> kByteFlags = [] {
    std::array<uint64_t, 256> t{};
    for (unsigned v = 0; v < 256; ++v)
        for (unsigned bit = 0; bit < 8; ++bit) t[v] |= uint64_t{(v >> bit) & 1u} << (8 * bit);
    return t;
}();
constexpr int kMaxSteps = 32;

// Bit i of the word tells whether byte i of the 64 at p is not 0.
inline BitVector::Word nonZeroBits(const uint8_t* p) {
    BitVector::Word bits = 0;
#if defined(__SSE2__)
    for (int q = 0; q < 4; ++q) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * q));
        const auto zero = static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_setzero_si128())));
        bits |= BitVector::Word{~zero & 0xFFFFu} << (16 * q);
    }
    return bits;
#endif
    for (size_t i = 0; i < BitVector::kWordBits; ++i) bits |= BitVector::Word{p[i] != 0} << i;
    return bits;
}

// Sets bits [from, to) of the words.
inline void setBits(BitVector::Word* words, uint32_t from, uint32_t to) {
    constexpr uint32_t kBits = BitVector::kWordBits;
    while (from < to) {
        const uint32_t w = from / kBits, lo = from % kBits;
        const uint32_t hi = std::min<uint32_t>(kBits, lo + (to - from));
        const BitVector::Word ones =
            hi - lo == kBits ? ~BitVector::Word{0} : ((BitVector::Word{1} << (hi - lo)) - 1);
        words[w] |= ones << lo;
        from += hi - lo;
    }
}  // 22 parameters and the five positions with their parity

// Distinct reason keys of one slice of rows: the old reason id, the mask of the steps that
// caught the row and the value of each of those steps whose text shows it, as 16-bit words.
class KeyMap {
public:
    KeyMap() { m_slots.assign(1024, Slot{}); }

    uint32_t idOf(const uint16_t* key, uint32_t len) {
        if ((m_count + 1) * 2 > m_slots.size()) grow();
        const uint64_t h = hash(key, len);
        size_t i = h & (m_slots.size() - 1);
        while (true) {
            Slot& s = m_slots[i];
            if (s.len == 0) {
                s = {h, static_cast<uint32_t>(m_arena.size()), len, m_count};
                m_arena.insert(m_arena.end(), key, key + len);
                m_keys.push_back(s.offset);
                ++m_count;
                return s.id;
            }
            if (s.hash == h && s.len == len && std::equal(key, key + len, m_arena.data() + s.offset))
                return s.id;
            i = (i + 1) & (m_slots.size() - 1);
        }
    }
    uint32_t size() const { return m_count; }
    const uint16_t* key(uint32_t id) const { return m_arena.data() + m_keys[id]; }

private:
    struct Slot {
        uint64_t hash = 0;
        uint32_t offset = 0;
        uint32_t len = 0;
        uint32_t id = 0;
    };
    static uint64_t hash(const uint16_t* key, uint32_t len) {
        uint64_t h = 0x9E3779B97F4A7C15ull ^ len;
        uint32_t i = 0;
        for (; i + 4 <= len; i += 4) {
            uint64_t w;
            std::memcpy(&w, key + i, sizeof w);
            h = (h ^ w) * 0xFF51AFD7ED558CCDull;
            h ^= h >> 29;
        }
        for (; i < len; ++i) {
            h = (h ^ key[i]) * 0xFF51AFD7ED558CCDull;
            h ^= h >> 29;
        }
        // The final mix, so that the low bits that pick the slot depend on every word.
        h ^= h >> 33;
        h *= 0xFF51AFD7ED558CCDull;
        h ^= h >> 33;
        h *= 0xC4CEB9FE1A85EC53ull;
        h ^= h >> 33;
        return h;
    }
    void grow() {
        std::vector<Slot> old = std::move(m_slots);
        m_slots.assign(old.size() * 2, Slot{});
        for (const Slot& s : old) {
            if (s.len == 0) continue;
            size_t i = s.hash & (m_slots.size() - 1);
            while (m_slots[i].len != 0) i = (i + 1) & (m_slots.size() - 1);
            m_slots[i] = s;
        }
    }

    std::vector<Slot> m_slots;
    std::vector<uint16_t> m_arena;
    std::vector<uint32_t> m_keys;
    uint32_t m_count = 0;
};

// Between blocks the slices learn whether the run was cancelled; the thread that started the run
// also reports how many rows are done and asks the player.
class RunControl {
public:
    RunControl(EngineProgress* progress, uint64_t rows) : m_progress(progress), m_rows(rows) {}

    // Counts `rows` as done; false once the run is cancelled.
    bool blockDone(uint64_t rows) {
        const uint64_t done = m_done.fetch_add(rows, std::memory_order_relaxed) + rows;
        if (m_progress && std::this_thread::get_id() == m_caller && done >= m_nextReport) {
            m_nextReport = done + m_rows / 64;
            m_progress->progress(done, m_rows);
            if (m_progress->cancelled()) m_stopped.store(true, std::memory_order_relaxed);
        }
        return !stopped();
    }
    // Asked on the calling thread alone.
    bool cancelledNow() {
        if (m_progress && m_progress->cancelled()) m_stopped.store(true, std::memory_order_relaxed);
        return stopped();
    }
    bool stopped() const { return m_stopped.load(std::memory_order_relaxed); }

private:
    EngineProgress* m_progress;
    uint64_t m_rows;
    std::thread::id m_caller = std::this_thread::get_id();
    uint64_t m_nextReport = 0;  // the calling thread's alone
    std::atomic<uint64_t> m_done{0};
    std::atomic<bool> m_stopped{false};
};

// What the steps read of a row: the number columns (bit k for column k) and whether every
// value is a function of those numbers and the row's live flag. It is not when a step reads
// canshu that no computation of the step wrote (a computation that does not run, or a sum that
// keeps the old value of the rows it overflows).
struct StepInputs {
    uint32_t columns = 0;
    bool numbersOnly = true;
    bool writesCanshu = false;

    explicit StepInputs(const std::vector<FilterStep>& steps) {
        for (const FilterStep& s : steps) {
            for (int c : s.compute.positions) columns |= 1u << (c + 1);
            for (const auto& [x, y] : s.compute.pairs) columns |= 1u << (x + 1) | 1u << (y + 1);
            if (s.compute.figureColumn >= 0) columns |= 1u << (s.compute.figureColumn + 1);
            if (s.valueColumn >= 0) columns |= 1u << (s.valueColumn + 1);
            if (s.valueColumn < 0 && (!s.compute.writesCanshu() || s.compute.checkOverflow))
                numbersOnly = false;
            if (s.compute.writesCanshu()) writesCanshu = true;
        }
    }
};

// The first pass of the tally over one slice of rows. Each block is cut into runs of rows that
// agree in everything the steps read and in their old reason (neighbouring rows often differ
// only in numbers no step looks at: the back numbers of a front-scope run); the steps run on the
// first row of each run, gathered into a small table, and the run's rows share its outcome. A
// caught row takes in place of its reason the id of its key in the slice's map, until the texts
// of the keys are made, and canshu the value of the last computation; Errnum is written after
// the pass (and canshu too where a run is a single row).
class TallySlice {
public:
    TallySlice(CandidateTable& table, const std::vector<FilterStep>& steps, const StepInputs& inputs,
               BitVector& changed, std::span<ReasonTable::Id> rowReasons, KeyMap& map)
        : m_table(table),
          m_paramValues(table.paramValues()),
          m_steps(steps),
          m_inputs(inputs),
          m_changed(changed),
          m_rowReasons(rowReasons),
          m_map(map),
          m_heads(table.kind(), kBlock),
          m_vals(steps.size() * kBlock) {
        m_all.fill(1);
        for (int k = 1; k <= table.numberCount(); ++k)
            if (inputs.columns & (1u << k)) m_columns.push_back(k);
    }

    // False when the run was cancelled.
    bool run(uint64_t begin, uint64_t end, RunControl& control) {
        for (uint64_t b = begin; b < end; b += kBlock) {
            const uint64_t n = std::min(end, b + kBlock) - b;
            liveBytes(b, n);
            const uint32_t m = findRuns(b, n);
            gather(b, n, m);
            std::fill_n(m_mask.begin(), m, 0u);
            for (size_t t = 0; t < m_steps.size(); ++t) applyStep(t, m);
            markRepeats(m);
            keyRuns(m);
            scatter(b, m);
            if (!control.blockDone(n)) return false;
        }
        return true;
    }

private:
    // The live flags of the block as bytes, eight at a time from the words of unslt.
    void liveBytes(uint64_t b, uint64_t n) {
        const auto unWords = m_table.filteredOut().words();
        for (uint64_t off = 0; off < n; off += 8) {
            const uint64_t w = unWords[(b + off) / BitVector::kWordBits];
            const auto byte = static_cast<uint8_t>(~(w >> ((b + off) % BitVector::kWordBits)));
            std::memcpy(m_live.data() + off, &kByteFlags[byte], 8);
        }
    }

    // The first row of each run (m_start, with n after the last); returns the count of runs.
    // Where a value may depend on more than the numbers, every row is a run of its own.
    uint32_t findRuns(uint64_t b, uint64_t n) {
        if (!m_inputs.numbersOnly) {
            for (uint32_t i = 0; i <= n; ++i) m_start[i] = static_cast<uint16_t>(i);
            return static_cast<uint32_t>(n);
        }
        // Per row whether it differs from the row before, column by column on vector lanes.
        const ReasonTable::Id* old = m_rowReasons.data() + b;
        m_differs8[0] = 1;
        for (uint64_t i = 1; i < n; ++i)
            m_differs8[i] = static_cast<uint8_t>((m_live[i] ^ m_live[i - 1]) | (old[i] != old[i - 1]));
        for (int k : m_columns) {
            const uint8_t* c = m_table.numberColumn(k).data() + b;
            for (uint64_t i = 1; i < n; ++i) m_differs8[i] |= static_cast<uint8_t>(c[i] ^ c[i - 1]);
        }
        std::fill(m_differs8.begin() + static_cast<ptrdiff_t>(n), m_differs8.end(), uint8_t{0});
        uint32_t runs = 0;
        for (uint64_t off = 0; off < n; off += BitVector::kWordBits)
            forEachSetBit(nonZeroBits(m_differs8.data() + off), off,
                          [&](size_t i) { m_start[runs++] = static_cast<uint16_t>(i); });
        m_start[runs] = static_cast<uint16_t>(n);
        return runs;
    }

    // The first rows of the runs into the small table: their numbers, live flags, old reasons,
    // and where a step may read it unwritten, their canshu.
    void gather(uint64_t b, uint64_t n, uint32_t m) {
        for (int k : m_columns) {
            const uint8_t* from = m_table.numberColumn(k).data() + b;
            uint8_t* to = m_heads.numberColumn(k).data();
            for (uint32_t j = 0; j < m; ++j) to[j] = from[m_start[j]];
        }
        auto un = m_heads.filteredOut().words();
        std::fill(un.begin(), un.end(), BitVector::Word{0});
        for (uint32_t j = 0; j < m; ++j) {
            m_headLive[j] = m_live[m_start[j]];
            un[j / BitVector::kWordBits] |= BitVector::Word{m_headLive[j] ^ 1u} << (j % BitVector::kWordBits);
        }
        for (uint32_t j = 0; j < m; ++j) m_old[j] = m_rowReasons[b + m_start[j]];
        if (!m_inputs.numbersOnly) std::copy_n(m_paramValues.data() + b, n, m_runValues.data());
    }

    // One pass of step t over the runs: the condition, the leading [unslt]=false where the
    // statement has it, and the step's bit in the run's mask.
    void applyStep(size_t t, uint32_t m) {
        const FilterStep& s = m_steps[t];
        const CandidateTable& heads = m_heads;
        param_kernels::computeRows(s.compute, heads, m_runValues, 0, m);
        int16_t* v = m_vals.data() + t * kBlock;
        if (s.valueColumn < 0)
            std::copy_n(m_runValues.data(), m, v);
        else
            std::copy_n(heads.numberColumn(s.valueColumn + 1).data(), m, v);
        const uint8_t* alive = s.liveOnly ? m_headLive.data() : m_all.data();
        if (s.test == FilterStep::Test::Range) {
            const int32_t lo = s.lo, hi = s.hi;
            const uint32_t outside = s.keep ? 1u : 0u;
            for (uint32_t i = 0; i < m; ++i)
                m_mask[i] |=
                    (((static_cast<uint32_t>(v[i] >= lo) & static_cast<uint32_t>(v[i] <= hi)) ^ outside) &
                     alive[i])
                    << t;
        } else {
            s.hitBlock(v, m, m_hit.data());
            for (uint32_t i = 0; i < m; ++i)
                m_mask[i] |= uint32_t{static_cast<uint8_t>(m_hit[i] & alive[i])} << t;
        }
    }

    // m_repeat[j]: run j has the key of the run before it (the same old reason, the same steps
    // caught it, with the same values where their texts show them), so it takes that run's
    // reason without a key being made.
    void markRepeats(uint32_t m) {
        std::fill_n(m_differs.begin(), m, 0u);
        for (size_t t = 0; t < m_steps.size(); ++t) {
            if (m_steps[t].constantText) continue;
            const int16_t* v = m_vals.data() + t * kBlock;
            for (uint32_t i = 1; i < m; ++i) m_differs[i] |= static_cast<uint32_t>(v[i] != v[i - 1]) << t;
        }
        m_repeat[0] = 0;
        for (uint32_t i = 1; i < m; ++i)
            m_repeat[i] = static_cast<uint8_t>(int{m_mask[i] == m_mask[i - 1]} & int{m_old[i] == m_old[i - 1]} &
                                               int{(m_differs[i] & m_mask[i]) == 0});
    }

    // The key id of each caught run: its old reason id, the mask of the steps that caught it and
    // the values that their texts show.
    void keyRuns(uint32_t m) {
        std::array<uint16_t, 4 + kMaxSteps> key{};
        for (uint32_t j = 0; j < m; ++j) {
            const uint32_t mask = m_mask[j];
            if (!mask) continue;
            // The run before was caught with this key: m_lastId is its id.
            if (m_repeat[j]) {
                m_keyOf[j] = m_lastId;
                continue;
            }
            const uint32_t old = m_old[j];
            uint32_t len = 0;
            key[len++] = static_cast<uint16_t>(old);
            key[len++] = static_cast<uint16_t>(old >> 16);
            key[len++] = static_cast<uint16_t>(mask);
            key[len++] = static_cast<uint16_t>(mask >> 16);
            for (uint32_t bits = mask; bits; bits &= bits - 1) {
                const int t = std::countr_zero(bits);
                if (!m_steps[static_cast<size_t>(t)].constantText)
                    key[len++] = static_cast<uint16_t>(m_vals[static_cast<size_t>(t) * kBlock + j]);
            }
            m_lastId = m_map.idOf(key.data(), len);
            m_keyOf[j] = m_lastId;
        }
    }

    // Every caught row of the block takes its run's key id, run by run.
    void scatter(uint64_t b, uint32_t m) {
        std::array<BitVector::Word, kBlock / BitVector::kWordBits> caught{};
        if (m_inputs.numbersOnly && m_inputs.writesCanshu)
            for (uint32_t j = 0; j < m; ++j)
                std::fill(m_paramValues.begin() + static_cast<ptrdiff_t>(b + m_start[j]),
                          m_paramValues.begin() + static_cast<ptrdiff_t>(b + m_start[j + 1]), m_runValues[j]);
        for (uint32_t j = 0; j < m; ++j) {
            if (!m_mask[j]) continue;
            const uint32_t from = m_start[j], to = m_start[j + 1];
            std::fill(m_rowReasons.begin() + static_cast<ptrdiff_t>(b + from),
                      m_rowReasons.begin() + static_cast<ptrdiff_t>(b + to), m_keyOf[j]);
            setBits(caught.data(), from, to);
        }
        // The block's words are the slice's own: a block starts on a whole word.
        const auto words = m_changed.words();
        const size_t first = b / BitVector::kWordBits;
        const size_t count = std::min(caught.size(), words.size() - first);
        std::copy_n(caught.begin(), count, words.begin() + static_cast<ptrdiff_t>(first));
    }

    const CandidateTable& m_table;
    std::span<int16_t> m_paramValues;
    const std::vector<FilterStep>& m_steps;
    const StepInputs& m_inputs;
    BitVector& m_changed;
    std::span<ReasonTable::Id> m_rowReasons;
    KeyMap& m_map;
    CandidateTable m_heads;  // the first row of each run of the block
    std::vector<int> m_columns;
    std::vector<int16_t> m_vals;
    std::array<int16_t, kBlock> m_runValues{};
    std::array<uint32_t, kBlock> m_mask, m_differs, m_keyOf, m_old;
    std::array<uint16_t, kBlock + 1> m_start;
    std::array<uint8_t, kBlock> m_live, m_headLive, m_hit, m_all, m_repeat, m_differs8;
    uint32_t m_lastId = 0;
};

// The reason of a key as entries of the reason table: the pieces of the catching steps (the
// texts of their values) joined in a tree of fixed shape over the step positions, then joined to
// the old reason. Keys that share the steps of a subtree and their values share its entry, so a
// key costs a few lookups among entries made before, and no text is made.
class KeyReasons {
public:
    KeyReasons(ReasonTable& reasons, const std::vector<FilterStep>& steps)
        : m_reasons(reasons), m_steps(steps), m_pieces(steps.size()) {
        m_width = 1;
        while (m_width < steps.size()) m_width *= 2;
    }

    ReasonTable::Id idOf(const uint16_t* key) {
        const ReasonTable::Id old = uint32_t{key[0]} | (uint32_t{key[1]} << 16);
        const uint32_t m = uint32_t{key[2]} | (uint32_t{key[3]} << 16);
        const uint16_t* v = key + 4;
        std::array<ReasonTable::Id, kMaxSteps> node{};
        for (size_t t = 0; t < m_width; ++t)
            node[t] = (m >> t) & 1u ? piece(t, m_steps[t].constantText ? 0 : static_cast<int16_t>(*v++))
                                    : ReasonTable::kNull;
        for (size_t n = m_width; n > 1; n /= 2)
            for (size_t i = 0; i < n / 2; ++i) node[i] = join(node[2 * i], node[2 * i + 1]);
        return join(old, node[0]);
    }

private:
    // The joinings of the low subtrees come back key after key; a small memo of recent ones
    // spares a lookup in the table's index, which is large and scattered.
    ReasonTable::Id join(ReasonTable::Id head, ReasonTable::Id tail) {
        if (head <= ReasonTable::kEmpty || tail <= ReasonTable::kEmpty) return m_reasons.join(head, tail);
        uint64_t h = (uint64_t{head} << 32 | tail) * 0x9E3779B97F4A7C15ull;
        Memo& m = m_memo[(h >> 40) & (kMemoSlots - 1)];
        if (m.head == head && m.tail == tail) return m.id;
        m = {head, tail, m_reasons.join(head, tail)};
        return m.id;
    }

    // The entry of step t's text for value v, interned when first met.
    ReasonTable::Id piece(size_t t, int16_t v) {
        std::vector<ReasonTable::Id>& ids = m_pieces[t];
        if (ids.empty()) ids.assign(m_steps[t].constantText ? 1 : 65536, kUnset);
        ReasonTable::Id& id = ids[m_steps[t].constantText ? 0 : static_cast<size_t>(int32_t{v} + 32768)];
        if (id == kUnset) id = m_reasons.intern(m_steps[t].reason(v));
        return id;
    }

    struct Memo {
        ReasonTable::Id head = 0, tail = 0, id = 0;
    };
    static constexpr size_t kMemoSlots = size_t{1} << 16;
    static constexpr ReasonTable::Id kUnset = UINT32_MAX;
    std::vector<Memo> m_memo = std::vector<Memo>(kMemoSlots);
    ReasonTable& m_reasons;
    const std::vector<FilterStep>& m_steps;
    std::vector<std::vector<ReasonTable::Id>> m_pieces;
    size_t m_width = 1;
};

}  // namespace

namespace {

// The slice of the first pass that holds each row: the slices of the first pass, in row order.
using SliceRanges = std::vector<std::pair<uint64_t, uint64_t>>;

// Calls fn(slice, begin, end) for every slice of the first pass, on all cores.
template <typename Fn>
void forEachRange(const SliceRanges& ranges, Fn&& fn) {
    const KernelExecutor::Slices one{ranges.size(), 1, ranges.size()};
    KernelExecutor::shared().forEachIndexedSlice(
        one, [&](size_t slice, uint64_t, uint64_t) { fn(slice, ranges[slice].first, ranges[slice].second); });
}

// A cancelled run: the caught rows take back the old reasons their keys hold.
void restoreReasons(CandidateTable& table, const SliceRanges& ranges, const std::vector<KeyMap>& maps,
                    const BitVector& changed) {
    auto rowReasons = table.rowReasons();
    const auto changedWords = changed.words();
    forEachRange(ranges, [&](size_t slice, uint64_t begin, uint64_t end) {
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w)
            forEachSetBit(changedWords[w], w * BitVector::kWordBits, [&](size_t r) {
                const uint16_t* key = maps[slice].key(rowReasons[r]);
                rowReasons[r] = uint32_t{key[0]} | (uint32_t{key[1]} << 16);
            });
    });
}

// canshu as the steps leave it: the computations from the last one that writes every row on,
// each on every row in turn, block by block.
void writeParamValues(CandidateTable& table, const std::vector<FilterStep>& steps) {
    size_t from = 0;
    for (size_t t = 0; t < steps.size(); ++t)
        if (steps[t].compute.writesCanshu() && !steps[t].compute.checkOverflow) from = t;
    std::span<int16_t> paramValues = table.paramValues();
    const CandidateTable& ct = table;
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        for (uint64_t b = begin; b < end; b += kBlock)
            for (size_t t = from; t < steps.size(); ++t)
                param_kernels::computeRows(steps[t].compute, ct, paramValues, b, std::min(end, b + kBlock));
    });
}

}  // namespace

bool tally(CandidateTable& table, const std::vector<FilterStep>& steps, EngineProgress* progress) {
    const uint64_t rows = table.rowCount();
    if (rows == 0) return true;
    // The columns the slices write, allocated before the threads start.
    table.paramValues();
    std::span<int16_t> failCount = table.failCount();
    if (steps.empty()) {
        std::fill(failCount.begin(), failCount.end(), int16_t{0});
        return true;
    }
    Q_ASSERT(steps.size() <= kMaxSteps);
    auto rowReasons = table.rowReasons();
    BitVector changed(rows);
    KernelExecutor& executor = KernelExecutor::shared();
    const KernelExecutor::Slices slices = executor.slicesFor(rows);
    SliceRanges ranges;
    for (size_t i = 0; i < slices.count; ++i) ranges.emplace_back(slices.begin(i), slices.end(i));
    std::vector<KeyMap> maps(slices.count);
    const StepInputs inputs(steps);
    RunControl control(progress, rows);
    // The first pass writes canshu where the runs give it: a run that may be cancelled keeps the
    // old values to put back.
    std::vector<int16_t> oldParamValues;
    if (progress && inputs.numbersOnly && inputs.writesCanshu)
        oldParamValues.assign(table.paramValues().begin(), table.paramValues().end());
    forEachRange(ranges, [&](size_t slice, uint64_t begin, uint64_t end) {
        if (!control.stopped())
            TallySlice(table, steps, inputs, changed, rowReasons, maps[slice]).run(begin, end, control);
    });

    // The reasons are made slice by slice, each slice's keys in the order its rows met them:
    // new entries take their ids in row order, however many slices there were.
    std::vector<std::vector<ReasonTable::Id>> ids(slices.count);
    std::vector<std::vector<uint8_t>> counts(slices.count);
    KeyReasons reasons(table.reasons(), steps);
    for (size_t slice = 0; slice < slices.count && !control.cancelledNow(); ++slice) {
        const KeyMap& map = maps[slice];
        ids[slice].reserve(map.size());
        counts[slice].reserve(map.size());
        for (uint32_t key = 0; key < map.size(); ++key) {
            if (key % 65536 == 65535 && control.cancelledNow()) break;
            ids[slice].push_back(reasons.idOf(map.key(key)));
            const uint16_t* k = map.key(key);
            counts[slice].push_back(
                static_cast<uint8_t>(std::popcount(uint32_t{k[2]} | (uint32_t{k[3]} << 16))));
        }
    }
    if (control.stopped()) {
        restoreReasons(table, ranges, maps, changed);
        if (!oldParamValues.empty()) std::ranges::copy(oldParamValues, table.paramValues().begin());
        return false;
    }

    const auto changedWords = changed.words();
    forEachRange(ranges, [&](size_t slice, uint64_t begin, uint64_t end) {
        const std::vector<ReasonTable::Id>& sliceIds = ids[slice];
        const std::vector<uint8_t>& sliceCounts = counts[slice];
        std::fill(failCount.begin() + static_cast<ptrdiff_t>(begin),
                  failCount.begin() + static_cast<ptrdiff_t>(end), int16_t{0});
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w)
            forEachSetBit(changedWords[w], w * BitVector::kWordBits, [&](size_t r) {
                failCount[r] = sliceCounts[rowReasons[r]];
                rowReasons[r] = sliceIds[rowReasons[r]];
            });
    });
    if (!inputs.numbersOnly) writeParamValues(table, steps);
    return true;
}

}  // namespace param_reason_builder
