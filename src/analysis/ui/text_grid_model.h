#pragma once

#include "analysis/statistics_grids.h"

#include <QAbstractTableModel>

// A grid of text whose first row and first column are heads, drawn as fixed cells.
class TextGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    void setGrid(TextGrid grid);
    const TextGrid& grid() const { return m_grid; }
    void setText(int row, int column, const QString& text);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    TextGrid m_grid;
};
