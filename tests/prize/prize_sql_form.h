#pragma once

#include "prize/prize_check.h"

#include <QString>

class SqliteDb;

// The check written as statements on the stored candidate table: the scratch columns dropped
// and added, the search texts rewritten, seven LIKE scans for the hits and twelve updates for
// the slots from 12 down to 1. The program runs the check in memory (PrizeCheck); this form is
// the reference that the tests compare it with and that the benchmark times. The table gains
// the columns jiben, tebie, jiang and jing. Level names and amounts are bound, never pasted.
namespace prize_sql_form {

struct Outcome {
    bool ok = false;
    QString error;
};

Outcome run(SqliteDb& db, schema::CandidateKind kind, const CheckDraw& draw, const PrizeRules& rules);

}  // namespace prize_sql_form
