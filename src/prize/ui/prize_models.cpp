#include "prize/ui/prize_models.h"

#include <QFont>

#include <algorithm>
#include <limits>

PrizeListModel::PrizeListModel(const PrizeView& view, Side side, QObject* parent)
    : QAbstractTableModel(parent), m_view(view), m_side(side) {
    m_columns = side == Side::Kept ? view.keptColumns() : view.thrownColumns();
    m_fetched = std::min(list().size(), kBatchRows);
}

void PrizeListModel::reset() {
    beginResetModel();
    m_columns = m_side == Side::Kept ? m_view.keptColumns() : m_view.thrownColumns();
    m_fetched = std::min(list().size(), kBatchRows);
    m_announcingReset = true;
    endResetModel();
    m_announcingReset = false;
}

const TicketList& PrizeListModel::list() const {
    return m_side == Side::Kept ? m_view.kept() : m_view.thrown();
}

int PrizeListModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    // A view holds at most 104,049,792 tickets, within int.
    return static_cast<int>(std::min<uint64_t>(m_fetched, std::numeric_limits<int>::max()));
}

bool PrizeListModel::canFetchMore(const QModelIndex& parent) const {
    return !parent.isValid() && m_fetched < list().size();
}

void PrizeListModel::fetchMore(const QModelIndex& parent) {
    if (!canFetchMore(parent)) return;
    // A view that asks while the reset is still being announced gets its rows right after, so
    // that no insertion falls inside the reset for the other listeners.
    if (m_announcingReset) {
        QMetaObject::invokeMethod(
            this, [this] { fetchMore({}); }, Qt::QueuedConnection);
        return;
    }
    const uint64_t to = std::min(list().size(), m_fetched + kBatchRows);
    beginInsertRows({}, static_cast<int>(m_fetched), static_cast<int>(to - 1));
    m_fetched = to;
    endInsertRows();
}

int PrizeListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant PrizeListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || role != Qt::DisplayRole || !m_view.table()) return {};
    const uint64_t row = list().row(static_cast<uint64_t>(index.row()));
    const PrizeListColumn& c = m_columns[index.column()];
    const CandidateTable& t = *m_view.table();
    switch (c.what) {
        case PrizeColumn::Idx:
            return t.idxAt(row);
        case PrizeColumn::Number:
            return QStringLiteral("%1").arg(t.numberColumn(c.numberColumn)[row], 2, 10, QLatin1Char('0'));
        case PrizeColumn::FrontHits:
            return m_view.check().frontHits(row);
        case PrizeColumn::BackHits:
            return m_view.check().backHits(row);
        case PrizeColumn::PrizeLevel: {
            // A Null level shows as an empty cell.
            const std::optional<QString> j = m_view.check().prizeLevel(row);
            return j ? QVariant(*j) : QVariant();
        }
        case PrizeColumn::PrizeAmount: {
            const std::optional<int32_t> m = m_view.check().prizeAmount(row);
            return m ? QVariant(*m) : QVariant();
        }
        case PrizeColumn::Reason:
            return t.reasonText(row);
    }
    return {};
}

QVariant PrizeListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Horizontal)
        return section >= 0 && section < m_columns.size() ? QVariant(m_columns[section].header) : QVariant();
    return section + 1;
}

LevelSummaryModel::LevelSummaryModel(const PrizeView& view, QObject* parent)
    : QAbstractTableModel(parent), m_view(view) {}

int LevelSummaryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : PrizeView::kSummaryRows;
}

int LevelSummaryModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : 2; }

QVariant LevelSummaryModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const bool head = index.row() == 0 || index.row() == PrizeView::kSummaryThrownHead;
    if (role == Qt::FontRole && head) {
        QFont f;
        f.setBold(true);
        return f;
    }
    if (role != Qt::DisplayRole) return {};
    const QString text = m_view.summaryCell(index.row(), index.column());
    return text.isEmpty() ? QVariant() : QVariant(text);
}
