#include "prize/ticket_list.h"

#include "engine/kernel_executor.h"
#include "prize/prize_check.h"

#include <algorithm>
#include <bit>

namespace {

// The rows of word w in the set. Bits past the last row are never rows, whatever the
// stored image held there.
BitVector::Word wanted(const BitVector& filteredOut, size_t w, bool thrown) {
    const BitVector::Word word = filteredOut.words()[w];
    return (thrown ? word : ~word) & filteredOut.validMask(w);
}

// Calls f(row, code) for each row of the set in table order; a code out of range (never made
// by a check) is skipped.
template <typename F>
void forEachCode(const CandidateTable& table, const PrizeCheck& check, bool thrown, F&& f) {
    const BitVector& filteredOut = table.filteredOut();
    constexpr uint64_t kBlockRows = KernelExecutor::kBlockRows;
    static_assert(kBlockRows % BitVector::kWordBits == 0);
    std::array<uint8_t, kBlockRows> codes;
    const uint64_t rows = std::min<uint64_t>(table.rowCount(), check.rowCount());
    for (uint64_t b = 0; b < rows; b += kBlockRows) {
        const uint64_t n = std::min(kBlockRows, rows - b);
        check.codes(b, n, codes.data());
        for (uint64_t w = b / BitVector::kWordBits; w * BitVector::kWordBits < b + n; ++w) {
            forEachSetBit(wanted(filteredOut, w, thrown), w * BitVector::kWordBits, [&](size_t r) {
                if (r >= b + n || codes[r - b] >= PrizeCheck::kCodes) return;
                f(r, codes[r - b]);
            });
        }
    }
}

// Rows of each hit code in the set, counted from the table itself.
std::array<uint64_t, PrizeCheck::kCodes> countCodes(const CandidateTable& table, const PrizeCheck& check,
                                                    bool thrown) {
    std::array<uint64_t, PrizeCheck::kCodes> counts{};
    forEachCode(table, check, thrown, [&](size_t, uint8_t code) { ++counts[code]; });
    return counts;
}

// The position of the k-th set bit (from 0) of a word that has more than k set bits.
unsigned selectBit(BitVector::Word word, uint64_t k) {
    for (; k > 0; --k) word &= word - 1;
    return static_cast<unsigned>(std::countr_zero(word));
}

}  // namespace

TicketList TicketList::whole(const CandidateTable& table, bool thrown) {
    TicketList l;
    l.m_table = &table;
    l.m_thrown = thrown;
    const BitVector& filteredOut = table.filteredOut();
    auto before = std::make_shared<std::vector<uint64_t>>(filteredOut.wordCount());
    uint64_t n = 0;
    for (size_t w = 0; w < filteredOut.wordCount(); ++w) {
        (*before)[w] = n;
        n += static_cast<uint64_t>(std::popcount(wanted(filteredOut, w, thrown)));
    }
    l.m_before = std::move(before);
    l.m_size = n;
    return l;
}

TicketList TicketList::idxRange(const CandidateTable& table, bool thrown, int64_t idxFrom, int64_t idxTo) {
    TicketList l;
    l.m_table = &table;
    l.m_thrown = thrown;
    l.m_listed = true;
    if (idxFrom > idxTo) return l;
    const auto take = [&](uint64_t r) {
        if (table.filteredOut().test(r) == thrown) l.m_rows.push_back(static_cast<uint32_t>(r));
    };
    if (table.hasExplicitIdx()) {
        for (uint64_t r = 0; r < table.rowCount(); ++r) {
            const int64_t idx = table.idxAt(r);
            if (idx >= idxFrom && idx <= idxTo) take(r);
        }
        return l;
    }
    // Row r holds idx r + 1.
    const int64_t rows = static_cast<int64_t>(table.rowCount());
    const int64_t first = std::max<int64_t>(idxFrom, 1) - 1;
    const int64_t last = std::min<int64_t>(idxTo, rows) - 1;
    for (int64_t r = first; r <= last; ++r) take(static_cast<uint64_t>(r));
    return l;
}

TicketList TicketList::byHits(const CandidateTable& table, const PrizeCheck& check, bool thrown) {
    TicketList l;
    l.m_table = &table;
    l.m_thrown = thrown;
    l.m_listed = true;
    // The check's counts size the buckets when they are those of this table's set; otherwise
    // (a check of another table, a damaged image) the set is counted here.
    std::array<uint64_t, PrizeCheck::kCodes> counts{};
    uint64_t listed = 0;
    for (int code = 0; code < PrizeCheck::kCodes; ++code) {
        counts[static_cast<size_t>(code)] = check.countOfCode(thrown, code);
        listed += counts[static_cast<size_t>(code)];
    }
    if (listed != whole(table, thrown).size()) counts = countCodes(table, check, thrown);
    // A counting sort on the hit code: the code grows with jiben and then with tebie, so the
    // codes downward are the order asked for, and rows of equal code stay in table order.
    std::array<uint64_t, PrizeCheck::kCodes + 1> start{};
    for (int code = PrizeCheck::kCodes - 1, at = 0; code >= 0; --code, ++at)
        start[static_cast<size_t>(at) + 1] =
            start[static_cast<size_t>(at)] + counts[static_cast<size_t>(code)];
    const std::array<uint64_t, PrizeCheck::kCodes + 1> end = [&] {
        std::array<uint64_t, PrizeCheck::kCodes + 1> e{};
        std::copy(start.begin() + 1, start.end(), e.begin());
        return e;
    }();
    l.m_rows.resize(start[PrizeCheck::kCodes]);
    forEachCode(table, check, thrown, [&](size_t r, uint8_t code) {
        const size_t at = static_cast<size_t>(PrizeCheck::kCodes - 1 - code);
        Q_ASSERT(start[at] < end[at]);  // the counts were taken over the same rows
        if (start[at] < end[at]) l.m_rows[start[at]++] = static_cast<uint32_t>(r);
    });
    return l;
}

uint64_t TicketList::row(uint64_t k) const {
    if (m_listed) return m_rows[k];
    const std::vector<uint64_t>& before = *m_before;
    // The last word with fewer tickets before it than k + 1.
    const auto it = std::upper_bound(before.begin(), before.end(), k);
    const size_t w = static_cast<size_t>(it - before.begin()) - 1;
    return w * BitVector::kWordBits + selectBit(wanted(m_table->filteredOut(), w, m_thrown), k - before[w]);
}
