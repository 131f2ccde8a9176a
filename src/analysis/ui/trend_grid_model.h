#pragma once

#include <QAbstractTableModel>

class TrendGrid;

// The model of an analysis window's trend grid: presents a TrendGrid. The header is the
// grid's head row ("历史期号" and the numbers); model row r - 1 is draw row r, and the three
// summary rows follow the draws: omissions, appearance counts and the board's marks. On request
// three rows of run statistics follow them.
class TrendGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int kSummaryRows = 3;
    static constexpr int kRunRows = 3;

    TrendGridModel(const TrendGrid& grid, QString appearanceHead, QObject* parent = nullptr);

    int omissionRow() const;
    int appearanceRow() const { return omissionRow() + 1; }
    int marksRow() const { return omissionRow() + 2; }
    // The first row of run statistics, when shown.
    int runsRow() const { return omissionRow() + kSummaryRows; }
    bool runsShown() const { return m_runsShown; }
    void showRuns(bool shown);

    // The summary rows changed in the grid.
    void omissionsChanged() { rowChanged(omissionRow()); }
    void appearancesChanged() { rowChanged(appearanceRow()); }
    void marksChanged() { rowChanged(marksRow()); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void rowChanged(int row);
    QVariant displayOf(int row, int column) const;
    QVariant runsDisplay(int row, int column) const;

    const TrendGrid& m_grid;
    QString m_appearanceHead;
    bool m_runsShown = false;
};
