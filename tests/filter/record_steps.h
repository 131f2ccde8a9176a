#pragma once

// The steps of the interrupted-write test: step 0 and every fifth step save a new table in
// place of the stored one (an expansion), the others are actions on the stored table. Both the
// helper that is killed and the test that checks its file compute the same states from here.

#include "engine/candidate_kernels.h"
#include "filter/candidate_actions.h"
#include "filter/candidate_fixture.h"

#include <QString>

namespace record_steps {

constexpr uint64_t kRows = 1000000;

inline bool isSave(int step) { return step % 5 == 0; }

inline CandidateTable savedTable(int step) {
    CandidateTable t = smallTable(kRows);
    const ReasonTable::Id id = t.reasons().intern(QStringLiteral("开始%1").arg(step));
    for (uint64_t r = 0; r < kRows; r += static_cast<uint64_t>(step % 7 + 3)) {
        t.filteredOut().set(r);
        t.rowReasons()[r] = id;
    }
    return t;
}

inline void act(CandidateTable& t, int step) {
    switch (step % 3) {
        case 1: {
            const BitVector sel = candidate_kernels::select(
                t, [&](uint64_t r) { return (t.numberColumn(1)[r] + static_cast<uint64_t>(step)) % 7 == 0; });
            candidate_kernels::beginFilter(t);
            candidate_kernels::killSelected(t, sel,
                                            t.reasons().intern(QStringLiteral("和值 步骤%1").arg(step)));
            for (uint64_t r = 0; r < kRows; r += 3) t.paramValues()[r] = static_cast<int16_t>(step);
            break;
        }
        case 2:
            candidate_actions::invertLast(t);
            break;
        default:
            candidate_actions::invertAll(t);
            break;
    }
}

}  // namespace record_steps
