#include "generation/ticket_text.h"

#include "engine/candidate_store.h"

#include <QFile>
#include <QStringDecoder>

namespace ticket_text {

namespace {

constexpr qint64 kReportEveryLines = 1 << 16;

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

bool fits(const Ticket& t, Limits limits) {
    for (size_t k = 0; k < t.size(); ++k)
        if (t[k] > (k < 5 ? limits.front : limits.back)) return false;
    return true;
}

}  // namespace

std::optional<Ticket> parseLine(QStringView line, int start) {
    const qsizetype length = line.size();
    if (start < 1 || length < start) return std::nullopt;
    Ticket t{};
    size_t found = 0;
    // Two digits followed by no digit are a number: a longer run gives only its last two.
    for (qsizetype i = start - 1; i + 1 < length; ++i) {
        if (!isDigit(line[i]) || !isDigit(line[i + 1]) || (i + 2 < length && isDigit(line[i + 2]))) continue;
        if (found == t.size()) return std::nullopt;  // an eighth number: no ticket
        t[found++] = static_cast<uint8_t>((line[i].unicode() - u'0') * 10 + (line[i + 1].unicode() - u'0'));
    }
    if (found != t.size()) return std::nullopt;
    return t;
}

QString decode(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8(bytes);
    if (!utf8.hasError()) return text;
    QStringDecoder national("GB18030");
    if (national.isValid()) {
        text = national(bytes);
        if (!national.hasError()) return text;
    }
    return QString::fromLatin1(bytes);
}

ReadResult readText(const QString& text, int start, Limits limits, EngineProgress* progress) {
    ReadResult r;
    const qint64 total = text.size();
    for (QStringView line : QStringView(text).tokenize(u'\n')) {
        ++r.lines;
        if (line.endsWith(u'\r')) line.chop(1);
        if (const std::optional<Ticket> t = parseLine(line, start)) {
            if (fits(*t, limits))
                r.tickets.push_back(*t);
            else
                ++r.outOfRange;
        }
        if (progress && r.lines % kReportEveryLines == 0) {
            progress->progress(static_cast<uint64_t>(line.data() - text.data()), static_cast<uint64_t>(total));
            if (progress->cancelled()) {
                r.cancelled = true;
                r.tickets.clear();
                return r;
            }
        }
    }
    return r;
}

ReadResult readFile(const QString& path, int start, Limits limits, EngineProgress* progress) {
    ReadResult r;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        r.error = QStringLiteral("无法读取文件 %1：%2").arg(path, file.errorString());
        return r;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        r.error = QStringLiteral("无法读取文件 %1：%2").arg(path, file.errorString());
        return r;
    }
    if (bytes.contains('\0')) {
        r.error = QStringLiteral("%1 不是文本文件").arg(path);
        return r;
    }
    return readText(decode(bytes), start, limits, progress);
}

std::unique_ptr<CandidateTable> toTable(const std::vector<Ticket>& tickets) {
    auto table = std::make_unique<CandidateTable>(schema::CandidateKind::Imported, tickets.size());
    for (int k = 1; k <= 7; ++k) {
        const std::span<uint8_t> column = table->numberColumn(k);
        for (size_t r = 0; r < tickets.size(); ++r) column[r] = tickets[r][static_cast<size_t>(k - 1)];
    }
    return table;
}

}  // namespace ticket_text

namespace ticket_text {

ImportResult importFile(SqliteDb& filterDb, const QString& path, int start, Limits limits,
                        EngineProgress* progress) {
    ImportResult r;
    r.read = readFile(path, start, limits, progress);
    r.error = r.read.error;
    if (!r.error.isEmpty() || r.read.cancelled || r.read.tickets.empty()) return r;
    const std::unique_ptr<CandidateTable> table = toTable(r.read.tickets);
    const candidate_store::SaveResult saved = candidate_store::saveImage(filterDb, *table);
    if (saved.outcome != candidate_store::Outcome::Done) {
        r.error = saved.error;
        return r;
    }
    r.replaced = true;
    return r;
}

}  // namespace ticket_text
