#pragma once

#include "engine/candidate_table.h"
#include "filter/filter_source.h"
#include "filter/param/param_filter.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <optional>
#include <unordered_set>
#include <vector>

// What the grid MSFlexGrid1 shows: a query over the candidate table, as a row filter, an
// order and a list of columns with their headings.
struct GridView {
    enum class Column : uint8_t {
        Idx,
        Number1,
        Number2,
        Number3,
        Number4,
        Number5,
        Number6,
        Number7,
        ParamValue,
        Reason
    };

    bool liveOnly = true;                                  // WHERE [unslt] = false
    std::optional<std::pair<int64_t, int64_t>> idxRange;   // AND [idx] >= a AND [idx] <= b
    bool ordered = false;                                  // ORDER BY idx,fig1,fig2,fig3,fig4,fig5
    std::vector<Column> columns;
    QStringList headings;

    static constexpr int kPageSize = 10000;

    bool operator==(const GridView& other) const = default;

    // The first view of an instance when it opens.
    static GridView firstView(FirstView kind);
    // The refresh after an action: idx, fig1..fig7 of the live rows.
    static GridView live();
    // The refresh after a parameter button, with column 8 headed by the caption.
    static GridView afterParameter(param_filter::ViewColumns columns, const QString& heading);
    // Command111: ids n * 10000 + 1 .. (n + 1) * 10000 of the live rows, idx and fig1..fig6.
    static GridView page(int64_t n);
    // optZzuhe(1): every row with canshu "参数" and the reason "过滤缘故".
    static GridView allRows();
};

// The grid's model: read-only and lazy. Binding takes a snapshot of which rows the query
// selects (a bit per row and a rank index over it); data() decodes only the rows a view paints.
// A view is handed the first kFetchRows selected rows and more as it scrolls to the end
// (canFetchMore/fetchMore), so that the view's own bookkeeping, which is per row, stays in
// proportion to the rows it has been shown, not to the table. Binding the same selection again
// keeps the rows and only tells the view that the cells changed.
// A row deleted or restored by hand stays in the bound view, painted grey while deleted, until
// the next binding.
class ResultGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // True for a row painted grey by a manual delete; a window paints it RGB(178, 178, 178).
    static constexpr int PaintedRole = Qt::UserRole + 1;
    static constexpr uint32_t kGreyRgb = 0xB2B2B2;
    // Rows handed to a view at a time.
    static constexpr int kFetchRows = 100000;

    explicit ResultGridModel(QObject* parent = nullptr);

    // Opens `view` on `table` (which must outlive the binding or be unbound first).
    void bind(const CandidateTable* table, GridView view);
    void unbind();
    const GridView& view() const { return m_view; }

    // Rows fetched so far: at most kFetchRows after a binding, then more as the view asks.
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    // Every row the query selects, fetched or not.
    uint64_t selectedCount() const { return m_count; }

    // The table row (0-based) behind a grid row, and its idx (the first cell).
    uint64_t tableRow(int viewRow) const;
    int32_t idxAt(int viewRow) const;
    // The grid row that shows table row `row`, or -1; a selected row past the rows fetched so
    // far is fetched with the rows before it.
    int viewRowOf(uint64_t row);

    void setPainted(int viewRow, bool grey);
    bool isPainted(int viewRow) const { return m_painted.count(tableRow(viewRow)) != 0; }

private:
    // The rows `view` selects on `table`, into `selected`.
    static void select(const CandidateTable& table, const GridView& view, BitVector& selected);
    void countSelected();
    void fetchTo(uint64_t rows);

    const CandidateTable* m_table = nullptr;
    GridView m_view;
    // Selected rows in table order, with the count of selected rows before every block.
    BitVector m_selected;
    std::vector<uint32_t> m_rank;
    uint64_t m_count = 0;
    int m_fetched = 0;
    bool m_resetting = false;  // telling the views of a reset or of fetched rows
    // The order of an ordered view (table rows); empty otherwise.
    std::vector<uint32_t> m_order;
    std::unordered_set<uint64_t> m_painted;
};
