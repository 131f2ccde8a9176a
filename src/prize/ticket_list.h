#pragma once

#include "engine/candidate_table.h"

#include <cstdint>
#include <memory>
#include <vector>

class PrizeCheck;

// A row set of a candidate table as the check's recordsets give it: the kept rows
// (WHERE [unslt] = false) or the thrown rows (WHERE [unslt] = true), whole, as a page of idx
// values, or ordered by hits. It holds row numbers of the table, never copies of rows; a whole
// set is a selection over the flag bits with a running count per word, so that the k-th row is
// found without listing them all.
class TicketList {
public:
    TicketList() = default;

    // Every row whose unslt equals `thrown`, in table order.
    static TicketList whole(const CandidateTable& table, bool thrown);
    // The same restricted to idxFrom <= idx <= idxTo.
    static TicketList idxRange(const CandidateTable& table, bool thrown, int64_t idxFrom, int64_t idxTo);
    // ORDER BY [jiben] DESC,[tebie] DESC (and by table order within equal hits).
    static TicketList byHits(const CandidateTable& table, const PrizeCheck& check, bool thrown);

    bool thrown() const { return m_thrown; }
    uint64_t size() const { return m_listed ? m_rows.size() : m_size; }
    bool empty() const { return size() == 0; }
    // The table row of the k-th ticket of the set.
    uint64_t row(uint64_t k) const;

private:
    const CandidateTable* m_table = nullptr;
    bool m_thrown = false;
    bool m_listed = false;  // m_rows holds the rows (pages, orderings)
    std::vector<uint32_t> m_rows;
    // Whole sets: tickets before each word of the flags.
    std::shared_ptr<std::vector<uint64_t>> m_before;
    uint64_t m_size = 0;
};
