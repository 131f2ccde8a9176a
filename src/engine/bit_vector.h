#pragma once

#include "engine/zeroed_allocator.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// A fixed-size vector of bits in 64-bit words, the storage of the candidate flags and of the
// selections that filters produce. Bits past size() in the last word are always zero, so
// word-level kernels may count and combine whole words.
class BitVector {
public:
    using Word = uint64_t;
    static constexpr size_t kWordBits = 64;

    BitVector() = default;
    explicit BitVector(size_t bits, bool value = false) { resize(bits, value); }

    static constexpr size_t wordsFor(size_t bits) { return (bits + kWordBits - 1) / kWordBits; }

    void resize(size_t bits, bool value = false) {
        m_bits = bits;
        m_words.clear();
        m_words.resize(wordsFor(bits));
        if (value) fill(true);
    }
    size_t size() const { return m_bits; }
    size_t wordCount() const { return m_words.size(); }

    bool test(size_t i) const { return (m_words[i / kWordBits] >> (i % kWordBits)) & 1u; }
    void set(size_t i, bool value = true) {
        const Word mask = Word{1} << (i % kWordBits);
        Word& w = m_words[i / kWordBits];
        w = value ? (w | mask) : (w & ~mask);
    }

    std::span<Word> words() { return m_words; }
    std::span<const Word> words() const { return m_words; }

    void fill(bool value) {
        std::fill(m_words.begin(), m_words.end(), value ? ~Word{0} : Word{0});
        clearTail();
    }
    // Flips every bit in place; the bits past size() stay zero.
    void complement() {
        for (Word& w : m_words) w = ~w;
        clearTail();
    }
    size_t count() const {
        size_t n = 0;
        for (Word w : m_words) n += static_cast<size_t>(std::popcount(w));
        return n;
    }
    // The mask of valid bits of word `w` (all ones except in a partial last word).
    Word validMask(size_t w) const {
        const size_t rest = m_bits - w * kWordBits;
        return rest >= kWordBits ? ~Word{0} : ((Word{1} << rest) - 1);
    }
    void clearTail() {
        if (!m_words.empty()) m_words.back() &= validMask(m_words.size() - 1);
    }
    bool operator==(const BitVector& other) const = default;

private:
    size_t m_bits = 0;
    ZeroedVector<Word> m_words;
};

// Calls fn(row) for every set bit of `word`, whose first bit is row `base`.
template <typename Fn>
inline void forEachSetBit(BitVector::Word word, size_t base, Fn&& fn) {
    while (word) {
        const int bit = std::countr_zero(word);
        fn(base + static_cast<size_t>(bit));
        word &= word - 1;
    }
}
