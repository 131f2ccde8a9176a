#pragma once

// The rows of a back-test as a grid: one draw a row, the survivors' cells green and the
// killed ones' red, and the same cells as a spreadsheet grid for the export.

#include "filter/backtest/backtest_runner.h"
#include "tools/table_export.h"

#include <QAbstractTableModel>

#include <vector>

class BacktestRowsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    void clear();
    void append(const backtest::DrawRow& row);
    const std::vector<backtest::DrawRow>& rows() const { return m_rows; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // The headings, the rows, and the summary under them.
    table_export::Grid grid(const backtest::Summary& summary) const;

private:
    QString text(const backtest::DrawRow& r, int column) const;

    std::vector<backtest::DrawRow> m_rows;
};
