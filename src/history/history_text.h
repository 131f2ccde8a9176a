#pragma once

// The history text format: one draw per line, optionally a 7-digit issue number, then seven
// two-digit numbers (five front, two back). The parser scans rather than splits, so the
// separators are not checked.

#include "workspace/shared_state.h"

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace history_text {

inline constexpr int kNumbersPerLine = 7;
inline constexpr int kIssueDigits = 7;

struct ParsedLine {
    enum class Status {
        Ok,        // seven numbers
        TooFew,    // fewer than seven: the "7个号码" message
        TooMany,   // an eighth number: beyond the draw array, the error trap
        BadIssue,  // an issue number beyond a 32-bit integer, read or counted on from the
                   // previous line: the error trap
    };
    Status status = Status::Ok;
    DrawNumbers draw{};  // slot 0 the issue, 1..7 the numbers in file order
    int count = 0;       // numbers read
};

// Parses one non-empty line. The issue starts as `previousIssue` + 1 and is replaced by any
// seven consecutive numeric characters found on the line.
ParsedLine parseLine(QByteArrayView line, int32_t previousIssue);

// True for a line that holds nothing but blanks: such lines are skipped.
bool isBlank(QByteArrayView line);

// The append import's test of a line: the value of its first seven characters, or empty when
// they are not a number.
std::optional<qint64> leadingValue(QByteArrayView line);

// One line of the history text the program keeps (Writetext): the issue formatted "0000000"
// and a blank when it exceeds 1000000, then the seven numbers formatted "00", one blank apart.
QString formatLine(const DrawNumbers& draw);

// True when the line formatLine writes for a draw with this issue, read by parseLine after a
// draw with `previousIssue`, gives this issue back. An issue of up to 1000000 is not written
// and reads back as `previousIssue` + 1; of a longer one only seven digits are read.
bool issueReadsBack(qint64 issue, int32_t previousIssue);

// Writes every draw of the history, one line each, replacing the file.
bool writeFile(const QString& path, const DrawHistory& history);

}  // namespace history_text
