#include "filter/param/param_reason_builder.h"

#include "engine/candidate_kernels.h"
#include "engine/kernel_executor.h"

#include <bit>
#include <cstring>

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
constexpr int kMaxSteps = 32;  // 22 parameters and the five positions with their parity

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

// The first pass of the tally over one slice of rows: every step on each block, each caught
// row's Errnum, and in place of its reason the id of its key in the slice's map, until the
// texts of the keys are made.
class TallySlice {
public:
    TallySlice(CandidateTable& table, const std::vector<FilterStep>& steps, BitVector& changed, KeyMap& map)
        : m_table(table), m_steps(steps), m_changed(changed), m_map(map), m_vals(steps.size() * kBlock) {
        m_all.fill(1);
    }

    void run(uint64_t begin, uint64_t end) {
        for (uint64_t b = begin; b < end; b += kBlock) {
            const uint64_t n = std::min(end, b + kBlock) - b;
            std::fill_n(m_mask.begin(), n, 0u);
            liveBytes(b, n);
            for (size_t t = 0; t < m_steps.size(); ++t) applyStep(t, b, n);
            markRepeats(b, n);
            keyRows(b, n);
        }
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

    // One pass of step t: the condition, the leading [unslt]=false where the statement has it,
    // and the step's bit in the row's mask.
    void applyStep(size_t t, uint64_t b, uint64_t n) {
        const FilterStep& s = m_steps[t];
        const CandidateTable& ct = m_table;
        std::span<int16_t> paramValues = m_table.paramValues();
        param_kernels::computeRows(s.compute, ct, paramValues, b, b + n);
        int16_t* v = m_vals.data() + t * kBlock;
        if (s.valueColumn < 0)
            std::copy_n(paramValues.data() + b, n, v);
        else
            std::copy_n(ct.numberColumn(s.valueColumn + 1).data() + b, n, v);
        const uint8_t* alive = s.liveOnly ? m_live.data() : m_all.data();
        if (s.test == FilterStep::Test::Range) {
            const int32_t lo = s.lo, hi = s.hi;
            const uint32_t outside = s.keep ? 1u : 0u;
            for (uint64_t i = 0; i < n; ++i)
                m_mask[i] |=
                    (((static_cast<uint32_t>(v[i] >= lo) & static_cast<uint32_t>(v[i] <= hi)) ^ outside) &
                     alive[i])
                    << t;
        } else {
            s.hitBlock(v, n, m_hit.data());
            for (uint64_t i = 0; i < n; ++i)
                m_mask[i] |= uint32_t{static_cast<uint8_t>(m_hit[i] & alive[i])} << t;
        }
    }

    // m_repeat[i]: row i of the block has the key of the row before it (the same old reason, the
    // same steps caught it, with the same values where their texts show them), so it takes that
    // row's reason without a key being made. Neighbouring rows often agree, as no step looks at
    // the numbers in which they differ (the back numbers of a front-scope run).
    void markRepeats(uint64_t b, uint64_t n) {
        // Per row the steps whose value differs from the row before's, then the rows whose
        // mask and old reason agree and whose differing steps did not catch them.
        std::fill_n(m_differs.begin(), n, 0u);
        for (size_t t = 0; t < m_steps.size(); ++t) {
            if (m_steps[t].constantText) continue;
            const int16_t* v = m_vals.data() + t * kBlock;
            for (uint64_t i = 1; i < n; ++i) m_differs[i] |= static_cast<uint32_t>(v[i] != v[i - 1]) << t;
        }
        const ReasonTable::Id* old = m_table.rowReasons().data() + b;
        m_repeat[0] = 0;
        for (uint64_t i = 1; i < n; ++i)
            m_repeat[i] = static_cast<uint8_t>(int{m_mask[i] == m_mask[i - 1]} & int{old[i] == old[i - 1]} &
                                               int{(m_differs[i] & m_mask[i]) == 0});
    }

    // Errnum of every row of the block, and the key of each caught one: its old reason id, the
    // mask of the steps that caught it and the values that their texts show.
    void keyRows(uint64_t b, uint64_t n) {
        std::span<int16_t> failCount = m_table.failCount();
        auto fl = m_table.rowReasons();
        std::array<uint16_t, 4 + kMaxSteps> key{};
        for (uint64_t i = 0; i < n; ++i) {
            const uint32_t m = m_mask[i];
            const uint64_t r = b + i;
            failCount[r] = static_cast<int16_t>(std::popcount(m));
            if (!m) continue;
            m_changed.set(r);
            // The row before was caught with this key: m_lastId is its id.
            if (m_repeat[i]) {
                fl[r] = m_lastId;
                continue;
            }
            const uint32_t old = fl[r];
            uint32_t len = 0;
            key[len++] = static_cast<uint16_t>(old);
            key[len++] = static_cast<uint16_t>(old >> 16);
            key[len++] = static_cast<uint16_t>(m);
            key[len++] = static_cast<uint16_t>(m >> 16);
            for (uint32_t bits = m; bits; bits &= bits - 1) {
                const int t = std::countr_zero(bits);
                if (!m_steps[static_cast<size_t>(t)].constantText)
                    key[len++] = static_cast<uint16_t>(m_vals[static_cast<size_t>(t) * kBlock + i]);
            }
            fl[r] = idOf(key.data(), len);
        }
    }

    // The id of a key that differs from the row before's (repeats are found by markRepeats).
    uint32_t idOf(const uint16_t* key, uint32_t len) {
        m_lastId = m_map.idOf(key, len);
        return m_lastId;
    }

    CandidateTable& m_table;
    const std::vector<FilterStep>& m_steps;
    BitVector& m_changed;
    KeyMap& m_map;
    std::vector<int16_t> m_vals;
    std::array<uint32_t, kBlock> m_mask, m_differs;
    std::array<uint8_t, kBlock> m_live, m_hit, m_all, m_repeat;
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

void tally(CandidateTable& table, const std::vector<FilterStep>& steps) {
    const uint64_t rows = table.rowCount();
    if (steps.empty() || rows == 0) return;
    Q_ASSERT(steps.size() <= kMaxSteps);
    // The columns the slices write, allocated before the threads start.
    table.paramValues();
    table.failCount();
    BitVector changed(rows);
    KernelExecutor& executor = KernelExecutor::shared();
    const KernelExecutor::Slices slices = executor.slicesFor(rows);
    std::vector<KeyMap> maps(slices.count);
    executor.forEachIndexedSlice(slices, [&](size_t slice, uint64_t begin, uint64_t end) {
        TallySlice(table, steps, changed, maps[slice]).run(begin, end);
    });

    // The reasons are made slice by slice, each slice's keys in the order its rows met them:
    // new entries take their ids in row order, however many slices there were.
    std::vector<std::vector<ReasonTable::Id>> ids(slices.count);
    KeyReasons reasons(table.reasons(), steps);
    for (size_t slice = 0; slice < slices.count; ++slice) {
        const KeyMap& map = maps[slice];
        ids[slice].reserve(map.size());
        for (uint32_t key = 0; key < map.size(); ++key) ids[slice].push_back(reasons.idOf(map.key(key)));
    }

    auto fl = table.rowReasons();
    const auto changedWords = changed.words();
    executor.forEachIndexedSlice(slices, [&](size_t slice, uint64_t begin, uint64_t end) {
        const std::vector<ReasonTable::Id>& sliceIds = ids[slice];
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w)
            forEachSetBit(changedWords[w], w * BitVector::kWordBits,
                          [&](size_t r) { fl[r] = sliceIds[fl[r]]; });
    });
}

}  // namespace param_reason_builder
