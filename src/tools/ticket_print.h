#pragma once

// The printed list of kept tickets: a heading with the time of printing and the draw the
// tickets are for (the newest issue plus 1), then the tickets a given number to the line, each
// as "<n>" and its numbers "00" apart by one blank, four blanks after each ticket. The print
// preview, the PDF and the text file all show this list; the text file puts the time last.

#include "engine/candidate_table.h"

#include <QDateTime>
#include <QStringList>

#include <vector>

namespace ticket_print {

inline constexpr int kDefaultPerLine = 4;

struct Document {
    QString printedAt;  // "打印时间:" date " " time
    QString forIssue;   // "购买期数:" and the issue
    QStringList lines;  // the tickets, `perLine` to a line
};

// The numbers printed of a table's tickets: the six front numbers of a six-number table, else
// the first five.
int printedNumbers(const CandidateTable& table);
// The printed numbers of the live tickets, in the table's order.
std::vector<std::vector<int>> liveTickets(const CandidateTable& table);

// "<n>01 02 03 04 05": the running number from 1 and the numbers.
QString ticketText(int running, const std::vector<int>& numbers);
// The document of `tickets`; `perLine` below 1 counts as 1.
Document build(const std::vector<std::vector<int>>& tickets, int perLine, qint64 forIssue, const QDateTime& at);

// The document's text in its printed order: the time, the issue, the tickets.
QString printedText(const Document& d);
// The text file's order: the issue, the tickets, the time.
QString fileText(const Document& d);
// Writes fileText(d) to `path` in UTF-8, replacing the file whole; false with the reason.
bool writeTextFile(const QString& path, const Document& d, QString* error);

}  // namespace ticket_print
