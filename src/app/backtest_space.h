#pragma once

// The tables a back-test runs on: every ticket of the zone sizes, or the player's current
// expansion as it is stored. Both the command line and the back-test window make them here.

#include "engine/candidate_table.h"

#include <QString>

#include <memory>

class SqliteDb;

namespace backtest_space {

// Every ticket of the zone sizes, as the expansion of all numbers makes it; null with `error`
// set when the expansion is refused.
std::unique_ptr<CandidateTable> fullSet(int frontSize, int backSize, QString* error = nullptr);

// The stored expansion zuhe; null with `error` set when there is none or it cannot be read.
std::unique_ptr<CandidateTable> picks(SqliteDb& filterDb, int frontSize, int backSize, QString* error);

}  // namespace backtest_space
