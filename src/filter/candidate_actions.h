#pragma once

#include "engine/candidate_table.h"

#include <QString>

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

void resetAll(CandidateTable& table);
void resetLast(CandidateTable& table);
void invertAll(CandidateTable& table);
void invertLast(CandidateTable& table);

}  // namespace candidate_actions
