#include "analysis/ui/tally_model.h"

#include <QColor>

#include <algorithm>

namespace {
const QColor kMarked(0, 255, 0);
const QColor kGroupStart(0, 0, 255);
const QColor kHead(212, 208, 200);
const QColor kFoot(255, 250, 215);
}  // namespace

TallyModel::TallyModel(TallyTable table, QObject* parent)
    : QAbstractTableModel(parent), m_table(std::move(table)), m_groupRow(m_table.groupStarts.size() > 1) {}

int TallyModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : firstFootRow() + static_cast<int>(m_table.foot.size());
}

int TallyModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_table.heads.size()) + 1;
}

bool TallyModel::startsGroup(int column) const {
    const auto& starts = m_table.groupStarts;
    return m_groupRow && std::find(starts.begin(), starts.end(), column - 1) != starts.end();
}

QVariant TallyModel::display(int row, int column) const {
    if (m_groupRow && row == 0) {
        if (column == 0) return QStringLiteral("区间");
        const auto& starts = m_table.groupStarts;
        const auto it = std::find(starts.begin(), starts.end(), column - 1);
        return it == starts.end() ? QVariant() : QVariant(m_table.groupHeads[it - starts.begin()]);
    }
    if (row == headRows() - 1) return column == 0 ? QStringLiteral("期号") : m_table.heads[column - 1];
    if (row < firstFootRow()) {
        const size_t draw = static_cast<size_t>(row - headRows());
        if (column == 0) return QString::number(m_table.issues[draw]);
        const std::optional<int>& cell = m_table.cells[draw][static_cast<size_t>(column - 1)];
        return cell ? QVariant(QString::number(*cell)) : QVariant();
    }
    const TallyTable::Foot& foot = m_table.foot[static_cast<size_t>(row - firstFootRow())];
    return column == 0 ? foot.head : QString::number(foot.values[static_cast<size_t>(column - 1)]);
}

QVariant TallyModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int row = index.row(), column = index.column();
    const bool head = row < headRows();
    switch (role) {
        case Qt::DisplayRole:
            return display(row, column);
        case Qt::TextAlignmentRole:
            return int(Qt::AlignCenter);
        case Qt::BackgroundRole:
            if (head) return startsGroup(column) ? kGroupStart : kHead;
            if (row >= firstFootRow()) return kFoot;
            if (column > 0 && m_table.cells[static_cast<size_t>(row - headRows())][static_cast<size_t>(column - 1)])
                return kMarked;
            return {};
        case Qt::ForegroundRole:
            return head && startsGroup(column) ? QVariant(QColor(Qt::white)) : QVariant();
        default:
            return {};
    }
}
