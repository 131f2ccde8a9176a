#pragma once

#include "engine/candidate_table.h"

#include <QString>

#include <vector>

// A small zuhe with every row's figs distinct, and helpers to read its state.
inline CandidateTable smallTable(uint64_t rows,
                                 schema::CandidateKind kind = schema::CandidateKind::Combinations) {
    CandidateTable t(kind, rows);
    for (uint64_t r = 0; r < rows; ++r)
        for (int k = 1; k <= t.numberCount(); ++k) {
            // Front numbers in 1..35; the back numbers of seven-number tables in 1..12.
            const bool back = k > 5 && kind != schema::CandidateKind::SixNumbers;
            const uint64_t step =
                back ? r * 5 + static_cast<uint64_t>(k) : r * 7 + static_cast<uint64_t>(k) * 5;
            t.numberColumn(k)[r] = static_cast<uint8_t>(step % (back ? 12 : 35) + 1);
        }
    return t;
}

inline std::vector<bool> bits(const BitVector& v) {
    std::vector<bool> out;
    for (size_t i = 0; i < v.size(); ++i) out.push_back(v.test(i));
    return out;
}

inline std::vector<QString> reasons(const CandidateTable& t) {
    std::vector<QString> out;
    for (uint64_t r = 0; r < t.rowCount(); ++r) out.push_back(t.reasonText(r));
    return out;
}
