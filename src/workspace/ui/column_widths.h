#pragma once

#include <QObject>
#include <QPointer>

#include <vector>

class QModelIndex;
class QTableView;

// Keeps the columns of a grid as wide as what they show: the header's text and the texts of
// the rows in view. The grids' models are lazy and may hold millions of rows, so only painted
// rows are measured: when other rows come into view (scrolling, a taller window, new rows)
// the columns widen to them and never narrow. A new query (a model reset) starts again from
// the widths the grid had when it was fitted, which stay the least width of each column.
class ColumnWidths : public QObject {
    Q_OBJECT
public:
    // Fits `grid`, whose model is set, for as long as it lives. Called again on the same grid,
    // its widths as they stand become the least widths.
    static ColumnWidths* fit(QTableView* grid);

    // The width column `column` needs for its header and the rows in view now.
    int neededWidth(int column) const;
    // Widens every column that is narrower than it needs to be.
    void widen();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit ColumnWidths(QTableView* grid);
    void restart();
    void takeBaseWidths();
    int baseWidth(int column) const;
    int cellWidth(const QModelIndex& index) const;
    // The first and last rows (logical) that the viewport shows; first > last when none.
    std::pair<int, int> rowsInView() const;

    QPointer<QTableView> m_grid;
    std::vector<int> m_baseWidths;
};
