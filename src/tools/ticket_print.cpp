#include "tools/ticket_print.h"

#include "workspace/saved_file.h"

#include <QSaveFile>

namespace ticket_print {

namespace {
const QString kTicketGap = QStringLiteral("    ");
}  // namespace

int printedNumbers(const CandidateTable& table) {
    return table.kind() == schema::CandidateKind::SixNumbers ? 6 : std::min(5, table.numberCount());
}

std::vector<std::vector<int>> liveTickets(const CandidateTable& table) {
    const int n = printedNumbers(table);
    std::vector<std::vector<int>> out;
    out.reserve(table.liveCount());
    for (uint64_t r = 0; r < table.rowCount(); ++r) {
        if (table.filteredOut().test(r)) continue;
        std::vector<int> t;
        t.reserve(static_cast<size_t>(n));
        for (int k = 1; k <= n; ++k) t.push_back(table.numberColumn(k)[r]);
        out.push_back(std::move(t));
    }
    return out;
}

QString ticketText(int running, const std::vector<int>& numbers) {
    QStringList parts;
    for (int v : numbers) parts << QStringLiteral("%1").arg(v, 2, 10, QLatin1Char('0'));
    return QStringLiteral("<%1>").arg(running) + parts.join(QLatin1Char(' '));
}

Document build(const std::vector<std::vector<int>>& tickets, int perLine, qint64 forIssue, const QDateTime& at) {
    perLine = std::max(1, perLine);
    Document d;
    d.printedAt = QStringLiteral("打印时间:") + at.toString(QStringLiteral("yyyy-MM-dd")) + QLatin1Char(' ') +
                  at.toString(QStringLiteral("HH:mm:ss"));
    d.forIssue = QStringLiteral("购买期数:") + QString::number(forIssue);
    QString line;
    for (size_t i = 0; i < tickets.size(); ++i) {
        line += ticketText(static_cast<int>(i) + 1, tickets[i]) + kTicketGap;
        if ((i + 1) % static_cast<size_t>(perLine) == 0 || i + 1 == tickets.size()) {
            d.lines << line;
            line.clear();
        }
    }
    return d;
}

QString printedText(const Document& d) {
    return (QStringList{d.printedAt, d.forIssue} + d.lines).join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QString fileText(const Document& d) {
    return (QStringList{d.forIssue} + d.lines + QStringList{d.printedAt}).join(QLatin1Char('\n')) +
           QLatin1Char('\n');
}

bool writeTextFile(const QString& path, const Document& d, QString* error) {
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(fileText(d).toUtf8()) < 0 || !saved_file::commit(f)) {
        if (error) *error = f.errorString();
        return false;
    }
    return true;
}

}  // namespace ticket_print
