#pragma once

#include "engine/candidate_table.h"
#include "prize/prize_check.h"

#include <initializer_list>
#include <memory>
#include <vector>

// Small candidate tables and draws for the prize tests.
namespace prize_fixtures {

using Ticket = std::array<int, 7>;

inline std::unique_ptr<CandidateTable> table(
    const std::vector<Ticket>& rows, schema::CandidateKind kind = schema::CandidateKind::Combinations) {
    auto t = std::make_unique<CandidateTable>(kind, rows.size());
    for (size_t r = 0; r < rows.size(); ++r)
        for (int k = 1; k <= t->numberCount(); ++k)
            t->numberColumn(k)[r] = static_cast<uint8_t>(rows[r][static_cast<size_t>(k - 1)]);
    return t;
}

// Marks `row` thrown out with `reason`, as a filter does.
inline void throwOut(CandidateTable& t, uint64_t row, const QString& reason) {
    t.filteredOut().set(row);
    t.rowReasons()[row] = t.reasons().intern(reason);
}

inline CheckDraw draw(int32_t issue, Ticket numbers) {
    CheckDraw d;
    d.issue = issue;
    d.numbers = numbers;
    return d;
}

}  // namespace prize_fixtures
