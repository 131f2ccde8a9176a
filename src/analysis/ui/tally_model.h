#pragma once

#include "analysis/draw_tallies.h"

#include <QAbstractTableModel>

// A tally table as a grid: one row per draw with its marked cells, then the foot rows; the
// heads (a group's head over its first column's, when there are several groups) are the
// horizontal header, so that they stay in view. Column 0 holds the issues and the foot rows'
// heads.
class TallyModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit TallyModel(TallyTable table, QObject* parent = nullptr);

    const TallyTable& table() const { return m_table; }
    int firstFootRow() const { return static_cast<int>(m_table.cells.size()); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    bool startsGroup(int column) const;

    TallyTable m_table;
    TextGrid m_text;
};
