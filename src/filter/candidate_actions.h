#pragma once

#include "engine/candidate_table.h"

#include <QString>

#include <optional>
#include <vector>

// The four actions of the filter window over its candidate table, each giving the flags and
// reasons of the stored statements:
//   reset all      UPDATE t SET unslt=false, Fliter=""
//   reset last     UPDATE t SET unslt=false, Fliter="" WHERE preunslt=false AND unslt=true
//   invert all     preunslt=unslt; unslt=not unslt, Fliter="全部反选-" & Fliter
//   invert last    tmpunslt=preunslt; preunslt=unslt;
//                  unslt=not unslt, Fliter="上次反选-" & Fliter WHERE tmpunslt=false
namespace candidate_actions {

inline const QString kInvertAllPrefix = QStringLiteral("全部反选-");
inline const QString kInvertLastPrefix = QStringLiteral("上次反选-");

inline const QString kManualDelete = QStringLiteral("手工删除");

// A double click on a grid row: preunslt = unslt, then the tickets of that idx die by hand (手工删除)
// when the first of them is live, or come back with no reason when it is dead. Returns whether
// they are dead now; none when no ticket has that idx.
std::optional<bool> toggleByHand(CandidateTable& table, int32_t idx);

void resetAll(CandidateTable& table);
void resetLast(CandidateTable& table);
void invertAll(CandidateTable& table);
void invertLast(CandidateTable& table);

// The columns of a table that actions change (flags, reasons with their texts, the scratch
// values), taken before a long action so that cancelling it puts the table back as it was.
struct Snapshot {
    BitVector filteredOut, previousFilteredOut, scratchFilteredOut, groupMark;
    std::vector<ReasonTable::Id> rowReasons;
    ReasonTable reasons;
    // Empty while the column is not allocated (it reads as 0).
    std::vector<int16_t> paramValues, superCount, failCount;
    std::vector<int32_t> matchIssue;
    CandidateTable::NumberTextMode numberTextMode = CandidateTable::NumberTextMode::Null;
    bool backNumberTextFilled = false;
};
Snapshot snapshot(CandidateTable& table);
void restore(CandidateTable& table, Snapshot&& snapshot);

}  // namespace candidate_actions
