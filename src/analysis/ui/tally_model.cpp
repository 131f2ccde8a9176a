#include "analysis/ui/tally_model.h"

#include <QColor>

#include <algorithm>

namespace {
const QColor kMarked(0, 255, 0);
const QColor kGroupStart(0, 0, 255);
const QColor kFoot(255, 250, 215);
}  // namespace

TallyModel::TallyModel(TallyTable table, QObject* parent)
    : QAbstractTableModel(parent), m_table(std::move(table)), m_text(draw_tallies::asText(m_table)) {}

namespace {
int headRows(const TallyTable& t) { return draw_tallies::headRows(t); }
}  // namespace

int TallyModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : firstFootRow() + static_cast<int>(m_table.foot.size());
}

int TallyModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_table.heads.size()) + 1;
}

bool TallyModel::startsGroup(int column) const {
    const auto& starts = m_table.groupStarts;
    return headRows(m_table) == 2 && std::find(starts.begin(), starts.end(), column - 1) != starts.end();
}

QVariant TallyModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int row = index.row(), column = index.column();
    switch (role) {
        case Qt::DisplayRole: {
            const QString& text = m_text.rows[static_cast<size_t>(row + headRows(m_table))][column];
            return text.isEmpty() ? QVariant() : QVariant(text);
        }
        case Qt::TextAlignmentRole:
            return int(Qt::AlignCenter);
        case Qt::BackgroundRole:
            if (row >= firstFootRow()) return kFoot;
            if (column > 0 && m_table.cells[static_cast<size_t>(row)][static_cast<size_t>(column - 1)]) return kMarked;
            return {};
        default:
            return {};
    }
}

QVariant TallyModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return QAbstractTableModel::headerData(section, orientation, role);
    switch (role) {
        case Qt::DisplayRole: {
            QStringList lines;
            for (int r = 0; r < headRows(m_table); ++r) lines << m_text.rows[static_cast<size_t>(r)][section];
            return lines.join(QLatin1Char('\n'));
        }
        case Qt::BackgroundRole:
            return startsGroup(section) ? QVariant(kGroupStart) : QVariant();
        case Qt::ForegroundRole:
            return startsGroup(section) ? QVariant(QColor(Qt::white)) : QVariant();
        default:
            return QAbstractTableModel::headerData(section, orientation, role);
    }
}
