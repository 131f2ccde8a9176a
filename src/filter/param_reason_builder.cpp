#include "filter/param_reason_builder.h"

#include "filter/candidate_kernels.h"

#include <bit>
#include <cstring>
#include <map>
#include <mutex>

// The row kernels count bits; every x86-64 processor this runs on has the instruction. Their
// loops are written to run on vector lanes, which the optimiser does at its highest level.
#if defined(__x86_64__) && !defined(__POPCNT__)
#pragma GCC target("popcnt")
#endif
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC optimize("O3")
#endif

namespace param_reasons {

namespace {

constexpr uint64_t kBlock = 4096;

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
            if (s.hash == h && s.len == len && std::equal(key, key + len, m_arena.data() + s.offset)) return s.id;
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

}  // namespace

void tally(CandidateTable& table, const std::vector<FilterStep>& steps) {
    const uint64_t rows = table.rowCount();
    if (steps.empty() || rows == 0) return;
    Q_ASSERT(steps.size() <= kMaxSteps);
    const size_t nSteps = steps.size();
    std::span<int16_t> canshu = table.canshu();
    std::span<int16_t> errnum = table.errnum();
    auto fl = table.fliter();
    const CandidateTable& ct = table;
    const BitVector& unslt = table.unslt();
    BitVector changed(rows);

    std::mutex mapsMutex;
    std::map<uint64_t, KeyMap> maps;  // by the first row of a slice

    const auto slice = [&](uint64_t begin, uint64_t end) {
        KeyMap map;
        std::vector<int16_t> vals(nSteps * kBlock);
        std::array<uint32_t, kBlock> mask;
        std::array<uint8_t, kBlock> live, hit, all;
        all.fill(1);
        std::array<uint16_t, 4 + kMaxSteps> key{}, lastKey{};
        uint32_t lastLen = 0, lastId = 0;
        for (uint64_t b = begin; b < end; b += kBlock) {
            const uint64_t e = std::min(end, b + kBlock);
            const uint64_t n = e - b;
            std::fill(mask.begin(), mask.begin() + static_cast<ptrdiff_t>(n), 0u);
            // The live flags of the block as bytes, eight at a time from the words of unslt.
            const auto unWords = unslt.words();
            for (uint64_t off = 0; off < n; off += 8) {
                const uint64_t w = unWords[(b + off) / BitVector::kWordBits];
                const auto byte = static_cast<uint8_t>(~(w >> ((b + off) % BitVector::kWordBits)));
                std::memcpy(live.data() + off, &kByteFlags[byte], 8);
            }
            for (size_t t = 0; t < nSteps; ++t) {
                const FilterStep& s = steps[t];
                param_kernels::computeRows(s.compute, ct, canshu, b, e);
                int16_t* v = vals.data() + t * kBlock;
                if (s.valueColumn < 0) std::copy(canshu.begin() + static_cast<ptrdiff_t>(b), canshu.begin() + static_cast<ptrdiff_t>(e), v);
                else {
                    const uint8_t* f = ct.fig(s.valueColumn + 1).data() + b;
                    for (uint64_t i = 0; i < n; ++i) v[i] = f[i];
                }
                // One pass: the condition, the leading [unslt]=false where the statement has it,
                // and the step's bit in the row's mask.
                const uint8_t* alive = s.liveOnly ? live.data() : all.data();
                if (s.test == FilterStep::Test::Range) {
                    const int32_t lo = s.lo, hi = s.hi;
                    const uint32_t outside = s.keep ? 1u : 0u;
                    for (uint64_t i = 0; i < n; ++i)
                        mask[i] |= (((static_cast<uint32_t>(v[i] >= lo) & static_cast<uint32_t>(v[i] <= hi)) ^ outside) &
                                    alive[i]) << t;
                } else {
                    s.hitBlock(v, n, hit.data());
                    for (uint64_t i = 0; i < n; ++i) mask[i] |= uint32_t{static_cast<uint8_t>(hit[i] & alive[i])} << t;
                }
            }
            for (uint64_t i = 0; i < n; ++i) {
                const uint32_t m = mask[i];
                const uint64_t r = b + i;
                errnum[r] = static_cast<int16_t>(std::popcount(m));
                if (!m) continue;
                const uint32_t old = fl[r];
                uint32_t len = 0;
                key[len++] = static_cast<uint16_t>(old);
                key[len++] = static_cast<uint16_t>(old >> 16);
                key[len++] = static_cast<uint16_t>(m);
                key[len++] = static_cast<uint16_t>(m >> 16);
                for (uint32_t bits = m; bits; bits &= bits - 1) {
                    const int t = std::countr_zero(bits);
                    if (!steps[static_cast<size_t>(t)].constantText)
                        key[len++] = static_cast<uint16_t>(vals[static_cast<size_t>(t) * kBlock + i]);
                }
                // Neighbouring rows often differ only where no step looks (the back numbers of a
                // front-scope run): the last key is kept and compared first.
                bool same = len == lastLen;
                for (uint32_t k = 0; same && k < len; ++k) same = key[k] == lastKey[k];
                if (!same) {
                    lastId = map.idOf(key.data(), len);
                    lastLen = len;
                    std::copy_n(key.begin(), len, lastKey.begin());
                }
                fl[r] = lastId;
                changed.set(r);
            }
        }
        std::lock_guard lock(mapsMutex);
        maps.emplace(begin, std::move(map));
    };
    kernels::parallelSlices(rows, slice);

    // The texts of the distinct keys, made on all cores, then interned in the table of reasons.
    std::map<uint64_t, std::vector<ReasonTable::Id>> global;
    for (auto& [begin, map] : maps) {
        std::vector<QString> texts(map.size());
        const ReasonTable& reasons = table.reasons();
        kernels::parallelSlices(map.size(), [&](uint64_t from, uint64_t to) {
            for (uint64_t id = from; id < to; ++id) {
                const uint16_t* k = map.key(static_cast<uint32_t>(id));
                const ReasonTable::Id old = uint32_t{k[0]} | (uint32_t{k[1]} << 16);
                const uint32_t m = uint32_t{k[2]} | (uint32_t{k[3]} << 16);
                QString text = reasons.text(old);
                const uint16_t* v = k + 4;
                for (uint32_t bits = m; bits; bits &= bits - 1) {
                    const FilterStep& s = steps[static_cast<size_t>(std::countr_zero(bits))];
                    text += s.constantText ? s.prefix : s.reason(static_cast<int16_t>(*v++));
                }
                texts[id] = std::move(text);
            }
        });
        std::vector<ReasonTable::Id>& ids = global[begin];
        ids.resize(map.size());
        for (uint32_t id = 0; id < map.size(); ++id) ids[id] = table.reasons().intern(texts[id]);
    }

    const auto changedWords = changed.words();
    kernels::parallelSlices(rows, [&](uint64_t begin, uint64_t end) {
        const std::vector<ReasonTable::Id>& ids = global.at(begin);
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w)
            forEachSetBit(changedWords[w], w * BitVector::kWordBits, [&](size_t r) { fl[r] = ids[fl[r]]; });
    });
}

}  // namespace param_reasons
