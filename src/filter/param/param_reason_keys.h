#pragma once

#include "engine/reason_table.h"
#include "filter/param/param_filter.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

// The key form of the integrated filter's reasons, for steps whose values are not a function of
// the row's numbers alone: every distinct key (the old reason, the steps that caught the row and
// their values) gets one entry of the reason table.
namespace param_reason_keys {

constexpr int kMaxSteps = 32;

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


}  // namespace param_reason_keys
