#include "analysis/ui/trend_grid_model.h"

#include "analysis/trend_grid.h"

#include <QColor>

namespace {
const QColor kDrawn(0, 255, 0);
const QColor kOmission(196, 196, 196);
// The summary rows stand apart from the draws.
const QColor kSummary(255, 250, 215);

QString twoDigits(int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }
}  // namespace

TrendGridModel::TrendGridModel(const TrendGrid& grid, QString appearanceHead, QObject* parent)
    : QAbstractTableModel(parent), m_grid(grid), m_appearanceHead(std::move(appearanceHead)) {}

int TrendGridModel::omissionRow() const { return m_grid.drawCount(); }

int TrendGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_grid.drawCount() + kSummaryRows + (m_runsShown ? kRunRows : 0);
}

void TrendGridModel::showRuns(bool shown) {
    if (shown == m_runsShown) return;
    if (shown) {
        beginInsertRows({}, runsRow(), runsRow() + kRunRows - 1);
        m_runsShown = true;
        endInsertRows();
    } else {
        beginRemoveRows({}, runsRow(), runsRow() + kRunRows - 1);
        m_runsShown = false;
        endRemoveRows();
    }
}

QVariant TrendGridModel::runsDisplay(int row, int column) const {
    const int which = row - runsRow();
    if (column == 0) {
        const QString* heads[] = {&TrendGrid::kMeanOmissionHead, &TrendGrid::kLongestOmissionHead,
                                  &TrendGrid::kLongestStreakHead};
        return *heads[which];
    }
    const NumberRuns& runs = m_grid.runs(column);
    if (which == 0) return QString::number(runs.meanOmission, 'f', 1);
    return QString::number(which == 1 ? runs.longestOmission : runs.longestStreak);
}

int TrendGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_grid.size() + 1;
}

void TrendGridModel::rowChanged(int row) { emit dataChanged(index(row, 0), index(row, columnCount() - 1)); }

QVariant TrendGridModel::displayOf(int row, int column) const {
    if (row < omissionRow()) {
        if (column == 0) return QString::number(m_grid.issue(row + 1));
        const TrendCell& c = m_grid.cell(row + 1, column);
        if (!c.shown) return {};
        return c.omission ? QString::number(c.figure) : twoDigits(c.figure);
    }
    if (row == omissionRow()) {
        if (column == 0) return TrendGrid::kOmissionHead;
        const auto omission = m_grid.currentOmission(column);
        return omission ? QVariant(QString::number(*omission)) : QVariant();
    }
    if (row == appearanceRow())
        return column == 0 ? m_appearanceHead : QString::number(m_grid.appearances(column));
    if (row >= runsRow()) return runsDisplay(row, column);
    return column == 0 ? TrendGrid::kMarksHead : m_grid.mark(column);
}

QVariant TrendGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int row = index.row(), column = index.column();
    switch (role) {
        case Qt::DisplayRole:
            return displayOf(row, column);
        case Qt::TextAlignmentRole:
            return column == 0 && row >= omissionRow() ? int(Qt::AlignLeft | Qt::AlignVCenter)
                                                       : int(Qt::AlignCenter);
        case Qt::BackgroundRole:
            if (row >= omissionRow()) return kSummary;
            if (column > 0 && m_grid.cell(row + 1, column).drawn) return kDrawn;
            return {};
        case Qt::ForegroundRole:
            if (row < omissionRow() && column > 0 && m_grid.cell(row + 1, column).omission) return kOmission;
            if (row == marksRow() && column > 0)
                return m_grid.banker(column) ? QColor(0, 140, 0) : QColor(255, 0, 0);
            return {};
        case Qt::ToolTipRole:
            return column == 0 && row >= omissionRow() ? displayOf(row, column) : QVariant();
        default:
            return {};
    }
}

QVariant TrendGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::DisplayRole) return section == 0 ? TrendGrid::kIssueHead : twoDigits(section);
    if (role == Qt::TextAlignmentRole) return int(Qt::AlignCenter);
    return {};
}
