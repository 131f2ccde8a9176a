#pragma once

#include "analysis/draw_tallies.h"

#include <QAbstractTableModel>

// A tally table as a grid: the group heads (when there are several groups) and the column heads
// as the first rows, one row per draw with its marked cells, then the foot rows. Column 0 holds
// the issues and the heads of the foot rows.
class TallyModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit TallyModel(TallyTable table, QObject* parent = nullptr);

    const TallyTable& table() const { return m_table; }
    int headRows() const { return draw_tallies::headRows(m_table); }
    int firstFootRow() const { return headRows() + static_cast<int>(m_table.cells.size()); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    bool startsGroup(int column) const;

    TallyTable m_table;
    TextGrid m_text;
};
