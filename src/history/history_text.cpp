#include "history/history_text.h"

#include "workspace/saved_file.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace history_text {

namespace {

constexpr qint64 kIssueWithPrefix = 1000000;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// A numeric text as the classic IsNumeric reads it, restricted to what can stand between two
// digits: digits, at most one decimal point, an exponent with an optional sign.
std::optional<double> numericValue(QByteArrayView s) {
    bool point = false, exponent = false;
    for (qsizetype i = 0; i < s.size(); ++i) {
        const char c = s[i];
        if (isDigit(c)) continue;
        if (c == '.' && !point && !exponent) {
            point = true;
            continue;
        }
        if ((c == 'e' || c == 'E' || c == 'd' || c == 'D') && !exponent) {
            exponent = true;
            if (i + 1 < s.size() && (s[i + 1] == '+' || s[i + 1] == '-')) ++i;
            continue;
        }
        return std::nullopt;
    }
    std::string text(s.data(), static_cast<size_t>(s.size()));
    for (char& c : text)
        if (c == 'd' || c == 'D') c = 'e';
    const double v = std::strtod(text.c_str(), nullptr);
    if (!std::isfinite(v)) return std::nullopt;
    return v;
}

}  // namespace

bool isBlank(QByteArrayView line) {
    for (char c : line)
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') return false;
    return true;
}

ParsedLine parseLine(QByteArrayView line, int32_t previousIssue) {
    ParsedLine out;
    // A line without an issue of its own continues the previous one, when that can go on.
    const qint64 nextIssue = static_cast<qint64>(previousIssue) + 1;
    bool issueRead = false;
    out.draw[0] = static_cast<int32_t>(std::min<qint64>(nextIssue, std::numeric_limits<int32_t>::max()));
    const qsizetype length = line.size();
    auto at = [&](qsizetype pos) { return pos < length ? line[pos] : '\0'; };
    // pos is 0-based here; the scan stops before the last character, so a single digit
    // standing at the very end of the line is never read.
    qsizetype pos = 0;
    while (pos < length - 1) {
        const QByteArrayView seven = line.sliced(pos, std::min<qsizetype>(kIssueDigits, length - pos));
        if (seven.size() == kIssueDigits && isDigit(at(pos)) && isDigit(at(pos + kIssueDigits - 1))) {
            if (const std::optional<double> v = numericValue(seven)) {
                const double rounded = std::nearbyint(*v);
                if (rounded > std::numeric_limits<int32_t>::max()) {
                    out.status = ParsedLine::Status::BadIssue;
                    return out;
                }
                out.draw[0] = static_cast<int32_t>(rounded);
                issueRead = true;
                pos += kIssueDigits + 1;
                continue;
            }
        }
        if (isDigit(at(pos)) && isDigit(at(pos + 1))) {
            if (out.count == kNumbersPerLine) {
                out.status = ParsedLine::Status::TooMany;
                return out;
            }
            out.draw[static_cast<size_t>(++out.count)] = (at(pos) - '0') * 10 + (at(pos + 1) - '0');
            pos += 2;
            continue;
        }
        ++pos;
    }
    if (!issueRead && nextIssue > std::numeric_limits<int32_t>::max()) {
        out.status = ParsedLine::Status::BadIssue;
        return out;
    }
    if (out.count < kNumbersPerLine) out.status = ParsedLine::Status::TooFew;
    return out;
}

std::optional<qint64> leadingValue(QByteArrayView line) {
    const QByteArray head =
        line.first(std::min<qsizetype>(kIssueDigits, line.size())).toByteArray().trimmed();
    if (head.isEmpty()) return std::nullopt;
    bool ok = false;
    const qint64 v = head.toLongLong(&ok);
    if (!ok) return std::nullopt;
    return v;
}

QString formatLine(const DrawNumbers& draw) {
    QString line;
    if (draw[0] > kIssueWithPrefix)
        line = QStringLiteral("%1 ").arg(draw[0], kIssueDigits, 10, QLatin1Char('0'));
    for (int i = 1; i <= kNumbersPerLine; ++i) {
        if (i > 1) line += QLatin1Char(' ');
        line += QStringLiteral("%1").arg(draw[static_cast<size_t>(i)], 2, 10, QLatin1Char('0'));
    }
    return line;
}

bool issueReadsBack(qint64 issue, int32_t previousIssue) {
    if (issue < std::numeric_limits<int32_t>::min() || issue > std::numeric_limits<int32_t>::max())
        return false;
    // The numbers of the line do not matter; any seven valid ones will do.
    DrawNumbers draw{static_cast<int32_t>(issue), 1, 2, 3, 4, 5, 1, 2};
    const ParsedLine read = parseLine(formatLine(draw).toLatin1(), previousIssue);
    return read.status == ParsedLine::Status::Ok && read.draw[0] == issue;
}

bool writeFile(const QString& path, const DrawHistory& history) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    QByteArray text;
    text.reserve(history.drawCount() * 30);
    for (int r = 1; r <= history.drawCount(); ++r) {
        text += formatLine(history.numbers[static_cast<size_t>(r)]).toLatin1();
        text += "\r\n";
    }
    file.write(text);
    return saved_file::commit(file);
}

}  // namespace history_text
