#include "prize/prize_report.h"

#include "prize/prize_view.h"
#include "workspace/saved_file.h"

#include <QDir>
#include <QSaveFile>

namespace prize_report {

namespace {
constexpr int kTicketsPerLine = 2;
const QString kTicketLead = QStringLiteral("    ");
const QString kTicketTail = QStringLiteral("     ");

QString ticketText(const CandidateTable& t, uint64_t row) {
    QString s;
    for (int k = 1; k <= 7; ++k) {
        if (k > 1) s += QLatin1Char(' ');
        s += QStringLiteral("%1").arg(t.numberColumn(k)[row], 2, 10, QLatin1Char('0'));
    }
    return s;
}

// "开奖结果1 2 3 4 5 6  +  7": six numbers each with one blank after it, then " + " and a
// blank before the seventh, so the back zone's first number stands among the front ones.
QString drawLine(const CheckDraw& d) {
    QString s = QStringLiteral("开奖结果");
    for (size_t i = 0; i < 6; ++i) s += QString::number(d.numbers[i]) + QLatin1Char(' ');
    return s + QStringLiteral(" +  ") + QString::number(d.numbers[6]);
}
}  // namespace

QString fileName(const QDateTime& when) { return when.toString(QStringLiteral("yy-M-d日H.m.s秒")) + kSuffix; }

QString sourceLine(schema::CandidateKind kind) {
    using K = schema::CandidateKind;
    switch (kind) {
        case K::Combinations:
            return QStringLiteral("组号方式:复选/胆拖组合缩水");
        case K::Wheel:
            return QStringLiteral("组号方式:旋转矩阵组合缩水");
        case K::Imported:
            return QStringLiteral("组号方式:调用文本组合缩水");
        case K::Template:
            return QStringLiteral("组号方式:组号模版组合缩水");
        case K::SixNumbers:
            return {};
    }
    return {};
}

namespace {
template <typename Emit>
struct LineSink {
    Emit& put;
    LineSink& operator<<(const QString& line) {
        put(line);
        return *this;
    }
};

// Hands every line to `put` in order; the ticket lines are made as they are written, so a
// report of millions of tickets is never held whole.
template <typename Emit>
void emitLines(const PrizeView& view, const QDateTime& when, Emit&& put) {
    LineSink<Emit> out{put};
    out << QStringLiteral("兑奖日期:") + when.toString(kDateForm);
    out << QStringLiteral("兑奖时间:") + when.toString(kTimeForm);
    out << sourceLine(view.kind());
    out << QStringLiteral("开奖期数:") + QString::number(view.draw().issue);
    out << drawLine(view.draw());
    // The counts are stored by running row number and read here by slot number: past the first
    // merged slot the figures slide.
    const PrizeRules& rules = view.rules();
    for (int n = 1; n <= prize_rules::kSlots; ++n) {
        if (!rules.formsLevelRow(n)) continue;
        out << QStringLiteral("中出%1%2注")
                   .arg(rules.slot(n).rank)
                   .arg(view.hitCounts()[static_cast<size_t>(n)]);
    }
    const int32_t cost = view.required();
    out << QStringLiteral("购买%1注").arg(cost / prize_rules::kTicketCost);
    out << QStringLiteral("支出%1圆").arg(cost);
    out << QStringLiteral("收入%1圆").arg(view.income());
    out << QStringLiteral("盈亏%1圆").arg(view.income() - cost);
    out << QStringLiteral("个人购买情况如下:");

    const TicketList& tickets = view.lastOpened();
    if (!view.table()) return;
    QString buffer;
    uint64_t counted = 0;
    for (uint64_t k = 0; k < tickets.size(); ++k) {
        buffer += kTicketLead + ticketText(*view.table(), tickets.row(k)) + kTicketTail;
        if (++counted % kTicketsPerLine == 0) {
            out << buffer;
            buffer.clear();
        }
    }
    if (!buffer.isEmpty()) out << buffer;
}
}  // namespace

QStringList lines(const PrizeView& view, const QDateTime& when) {
    QStringList out;
    emitLines(view, when, [&](const QString& line) { out << line; });
    return out;
}

WriteResult write(const QString& workspaceFolder, const PrizeView& view, const QDateTime& when) {
    WriteResult r;
    const QDir folder(workspaceFolder);
    if (!folder.mkpath(kFolder)) {
        r.error = QStringLiteral("cannot make %1").arg(folder.filePath(kFolder));
        return r;
    }
    r.path = QDir(folder.filePath(kFolder)).filePath(fileName(when));
    QSaveFile file(r.path);
    if (!file.open(QIODevice::WriteOnly)) {
        r.error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(r.path), file.errorString());
        return r;
    }
    emitLines(view, when, [&](const QString& line) {
        file.write(line.toUtf8());
        file.write("\n");
    });
    r.ok = saved_file::commit(file);
    if (!r.ok) r.error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(r.path), file.errorString());
    return r;
}

}  // namespace prize_report
