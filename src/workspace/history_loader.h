#pragma once

#include "workspace/shared_state.h"

#include <QString>

class SqliteDb;

// Reads the draw history of a workspace's <name>.db into the arrays, checking what it reads:
// each table's Idx runs 1, 2, 3, ... without a gap or a repeat, and every draw number lies in
// the largest zone the game has (front 1..36, back 1..24), so that nothing later indexes past
// the per-number arrays.
namespace history_loader {

// True for the history database: fig, fighou and figquan are there, or the file has no table
// yet (a new file that the templates fill).
bool isHistoryDatabase(SqliteDb& db);

// Reads fig, fighou and figquan in one read transaction. False with a message naming the file
// and the first fault; `history` is empty then.
bool load(SqliteDb& db, DrawHistory& history, QString* error);

QString faultText(const QString& file, const QString& detail);

}  // namespace history_loader
