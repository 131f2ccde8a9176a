#include "history/ui/history_grid_model.h"

#include <QColor>

HistoryGridModel::HistoryGridModel(const DrawHistory& history, QObject* parent)
    : QAbstractTableModel(parent), m_history(history) {}

const QStringList& HistoryGridModel::headers() {
    static const QStringList h{QStringLiteral("序数"),  QStringLiteral("期号"),  QStringLiteral("前1位"),
                               QStringLiteral("前2位"), QStringLiteral("前3位"), QStringLiteral("前4位"),
                               QStringLiteral("前5位"), QStringLiteral("后1位"), QStringLiteral("后2位")};
    return h;
}

void HistoryGridModel::refresh() {
    beginResetModel();
    endResetModel();
}

int HistoryGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_history.drawCount();
}

int HistoryGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(headers().size());
}

QVariant HistoryGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_history.drawCount()) return {};
    const DrawNumbers& d = m_history.numbers[index.row() + 1];
    const int c = index.column();
    if (role == Qt::DisplayRole) {
        if (c == 0) return index.row() + 1;
        if (c == 1) return d[0];
        return QStringLiteral("%1").arg(d[c - 1], 2, 10, QLatin1Char('0'));
    }
    if (role == Qt::TextAlignmentRole) return Qt::AlignCenter;
    if (role == Qt::ForegroundRole && c >= 2) return c >= 7 ? QColor(0, 0, 200) : QColor(200, 0, 0);
    return {};
}

QVariant HistoryGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) return headers().value(section);
    return {};
}
