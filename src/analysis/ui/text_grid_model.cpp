#include "analysis/ui/text_grid_model.h"

#include <QColor>

void TextGridModel::setGrid(TextGrid grid) {
    beginResetModel();
    m_grid = std::move(grid);
    endResetModel();
}

void TextGridModel::setText(int row, int column, const QString& text) {
    m_grid.rows[static_cast<size_t>(row)][column] = text;
    emit dataChanged(index(row, column), index(row, column));
}

int TextGridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_grid.rowCount(); }

int TextGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_grid.columnCount();
}

QVariant TextGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const bool head = index.row() == 0 || index.column() == 0;
    switch (role) {
        case Qt::DisplayRole:
            return m_grid.rows[static_cast<size_t>(index.row())].value(index.column());
        case Qt::TextAlignmentRole:
            return int(Qt::AlignCenter);
        case Qt::BackgroundRole:
            return head ? QVariant(QColor(212, 208, 200)) : QVariant();
        default:
            return {};
    }
}
