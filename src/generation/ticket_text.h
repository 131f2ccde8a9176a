#pragma once

// Tickets read from a text file for zuheRead: a list from a friend, a forum or another program.
// One ticket a line, seven two-digit numbers with anything that is no digit between them. Each
// line is read from a start column (1 = the first character), so that a leading serial number
// can be skipped; a longer run of digits gives only its last two. A line that gives exactly
// seven numbers is a ticket; any other line is passed over.

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"

#include <QString>
#include <QStringView>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace ticket_text {

using Ticket = std::array<uint8_t, 7>;

// The seven numbers of `line` read from the 1-based column `start`, in their order in the line.
std::optional<Ticket> parseLine(QStringView line, int start);

// The text of a file's bytes: UTF-8 when they are, otherwise the Chinese national encoding
// (GB18030, a superset of GBK), otherwise Latin-1.
QString decode(const QByteArray& bytes);

struct ReadResult {
    std::vector<Ticket> tickets;
    qint64 lines = 0;
    qint64 outOfRange = 0;  // seven numbers, but one outside what a ticket of the game can hold
    bool cancelled = false;
    QString error;  // the file cannot be read or is no text; nothing else is then set
};

// The largest number each place may hold; 0 stays as it stands, like any order of the numbers.
struct Limits {
    int front = 36;
    int back = 24;
};

// Reads every ticket of the file at `path`. A file with NUL bytes is binary and gives an error.
ReadResult readFile(const QString& path, int start, Limits limits, EngineProgress* progress = nullptr);
// The same for text already in memory (the file's content).
ReadResult readText(const QString& text, int start, Limits limits, EngineProgress* progress = nullptr);

// zuheRead of the tickets, idx 1, 2, ... in their order in the file.
std::unique_ptr<CandidateTable> toTable(const std::vector<Ticket>& tickets);

}  // namespace ticket_text

class SqliteDb;

namespace ticket_text {

struct ImportResult {
    ReadResult read;
    bool replaced = false;  // zuheRead now holds the file's tickets
    QString error;          // the file, or the record, could not be read or written
};

// mnuRdtxt: reads the file and, when it gives at least one ticket, makes zuheRead of its
// tickets anew in `filterDb`. Otherwise (no ticket, no text, cancelled) zuheRead stays as it was.
ImportResult importFile(SqliteDb& filterDb, const QString& path, int start, Limits limits,
                        EngineProgress* progress = nullptr);

}  // namespace ticket_text
