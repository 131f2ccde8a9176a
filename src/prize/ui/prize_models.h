#pragma once

#include "prize/prize_view.h"

#include <QAbstractTableModel>

// A ticket list of a check window (MSFlexGrid1, MSFlexGrid3): read-only, one row per ticket of
// the list, cells decoded when painted. Rows are handed to the grid a batch at a time as it
// scrolls down, so a list of millions opens at once. reset() follows the view after a reopening.
class PrizeListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum class Side { Kept, Thrown };
    PrizeListModel(const PrizeView& view, Side side, QObject* parent = nullptr);

    // The list was reopened (sorting, a page): rows and headers anew.
    void reset();
    const QList<PrizeListColumn>& columns() const { return m_columns; }

    // Rows given to the grid on opening and with each further batch: as many as the six-number
    // view prices as visited.
    static constexpr uint64_t kBatchRows = PrizeView::kSixVisitedRows;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

private:
    const TicketList& list() const;
    uint64_t m_fetched = 0;
    bool m_announcingReset = false;

    const PrizeView& m_view;
    Side m_side;
    QList<PrizeListColumn> m_columns;
};

// The level summary MSFlexGrid2: two columns, the head in row 0, "被滤" in row 14.
class LevelSummaryModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit LevelSummaryModel(const PrizeView& view, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    const PrizeView& m_view;
};

// Twips of the layout to pixels: 15 twips a pixel at 96 dpi, widened for the larger default
// font of this toolkit, so that "8等奖" fits a column of 500 twips.
inline int twipsToPixels(int twips) {
    constexpr int kTwipsPerPixel = 15;
    constexpr double kFontWidening = 1.4;
    return static_cast<int>(twips * kFontWidening / kTwipsPerPixel);
}
