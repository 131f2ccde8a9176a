#include "app/ui/backtest_rows_model.h"

#include <QColor>

namespace {

const QStringList kHeadings{QStringLiteral("期号"),     QStringLiteral("中奖号存活"), QStringLiteral("淘汰步骤"),
                            QStringLiteral("剩余注数"), QStringLiteral("花费(元)"),   QStringLiteral("奖金(元)"),
                            QStringLiteral("盈亏(元)")};
constexpr unsigned kSurvivedRgb = 0xC8F0C8;
constexpr unsigned kKilledRgb = 0xF5C8C8;

}  // namespace

void BacktestRowsModel::clear() {
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

void BacktestRowsModel::append(const backtest::DrawRow& row) {
    const int at = static_cast<int>(m_rows.size());
    beginInsertRows({}, at, at);
    m_rows.push_back(row);
    endInsertRows();
}

int BacktestRowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int BacktestRowsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(kHeadings.size());
}

QString BacktestRowsModel::text(const backtest::DrawRow& r, int column) const {
    switch (column) {
        case 0: return QString::number(r.issue);
        // A winning ticket outside the table (a picks table without it) had nothing to survive.
        case 1: return !r.inTable ? QStringLiteral("不在表中") : r.survived ? QStringLiteral("存活") : QStringLiteral("淘汰");
        case 2: return r.killingStep > 0 ? QStringLiteral("第%1步").arg(r.killingStep) : QString();
        case 3: return QString::number(r.kept);
        case 4: return QString::number(r.cost);
        case 5: return QString::number(r.winnings);
        case 6: return QString::number(r.winnings - r.cost);
    }
    return {};
}

QVariant BacktestRowsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const backtest::DrawRow& r = m_rows[static_cast<size_t>(index.row())];
    if (role == Qt::DisplayRole) return text(r, index.column());
    if (role == Qt::TextAlignmentRole) return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::BackgroundRole && index.column() == 1 && r.inTable)
        return QColor::fromRgb(r.survived ? kSurvivedRgb : kKilledRgb);
    return {};
}

QVariant BacktestRowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return kHeadings.value(section);
}

table_export::Grid BacktestRowsModel::grid(const backtest::Summary& summary) const {
    table_export::Grid g;
    QList<table_export::Cell> head;
    for (const QString& h : kHeadings) head.append({h, std::nullopt});
    g.append(head);
    for (const backtest::DrawRow& r : m_rows) {
        QList<table_export::Cell> line;
        for (int c = 0; c < columnCount(); ++c) {
            std::optional<unsigned> fill;
            if (c == 1 && r.inTable) fill = r.survived ? kSurvivedRgb : kKilledRgb;
            line.append({text(r, c), fill});
        }
        g.append(line);
    }
    g.append(QList<table_export::Cell>{});
    g.append({{QStringLiteral("期数"), {}}, {QString::number(summary.draws), {}},
              {QStringLiteral("存活"), {}}, {QString::number(summary.survived), {}},
              {QStringLiteral("存活率"), {}}, {QString::number(summary.survivalRate * 100, 'f', 1) + '%', {}}});
    g.append({{QStringLiteral("剩余注数中位"), {}}, {QString::number(summary.medianKept), {}},
              {QStringLiteral("最少"), {}}, {QString::number(summary.minKept), {}},
              {QStringLiteral("最多"), {}}, {QString::number(summary.maxKept), {}}});
    g.append({{QStringLiteral("总花费(元)"), {}}, {QString::number(summary.totalCost), {}},
              {QStringLiteral("总奖金(元)"), {}}, {QString::number(summary.totalWinnings), {}},
              {QStringLiteral("盈亏(元)"), {}}, {QString::number(summary.net), {}}});
    return g;
}
