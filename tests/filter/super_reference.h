#pragma once

// The super filters' statements themselves, in SQLite's dialect, over a copy of a candidate
// table: the reference the kernels are checked against. Jet's LIKE with "*" is GLOB here (the
// patterns hold digits and asterisks only, so case does not matter); true is -1, so a test
// counted by -(x LIKE p) is written -(-(x GLOB p)); format(n,"00") is printf('%02d', n); & is ||
// with a null read as "". Each worker runs its statements one by one, as the window does.

#include "engine/candidate_table.h"
#include "filter/param/param_catalogue.h"
#include "workspace/shared_state.h"
#include "workspace/sqlite_db.h"

#include <QString>

#include <array>
#include <vector>

namespace super_reference {

// Copies the table into SQLite table [zuhe]: flags -1/0, reasons and texts null where the
// table holds none, Numstring in its current form.
void load(SqliteDb& db, const CandidateTable& t);
// The combination template [zuheMoban] with these tickets.
void loadTemplate(SqliteDb& db, const std::vector<std::array<int, 7>>& tickets);

void relation(SqliteDb& db, int index, const std::vector<int>& numbers, const QString& caption);
// `passes` runs of the loop over the draws, newest first; a pass before the history runs only
// its first statement.
void history(SqliteDb& db, ZoneScope scope, int threshold, const QString& caption, const QString& nText, int64_t passes,
             const DrawHistory& h);
void inclusionKill(SqliteDb& db, ZoneScope scope, const std::vector<int>& numbers, int groupSize,
                   const std::vector<int>& bankers, const QString& caption);
void inclusionKeep(SqliteDb& db, ZoneScope scope, const std::vector<int>& numbers, int groupSize,
                   const std::vector<int>& bankers, const QString& caption);
void sameAsTemplate(SqliteDb& db);

struct Row {
    bool filteredOut = false, previousFilteredOut = false;
    bool fliterNull = true;
    QString rowReasons;
    int paramValues = 0;
    bool sknumNull = false;
    int superCount = 0;
    int matchIssue = 0;
    bool numstringNull = true;
    QString numberText;
    bool numstringHouNull = true;
    QString backNumberText;
};
std::vector<Row> rows(SqliteDb& db);

}  // namespace super_reference
