#include "filter/result_grid_model.h"

#include "engine/candidate_kernels.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <numeric>

namespace {

using Column = GridView::Column;
constexpr size_t kRankWords = 8;  // one rank entry per 512 rows

const std::vector<Column> kSevenNumberColumns{Column::Idx,     Column::Number1, Column::Number2,
                                              Column::Number3, Column::Number4, Column::Number5,
                                              Column::Number6, Column::Number7};

QString fieldName(Column c) {
    switch (c) {
        case Column::Idx: return QStringLiteral("idx");
        case Column::ParamValue:
            return QStringLiteral("canshu");
        case Column::Reason:
            return QStringLiteral("fliter");
        default: return QStringLiteral("fig%1").arg(static_cast<int>(c));
    }
}

GridView withColumns(std::vector<Column> cols) {
    GridView v;
    v.columns = std::move(cols);
    for (Column c : v.columns) v.headings << fieldName(c);
    return v;
}

// Sets the heading of grid column `col` when the view has that column, as setting a heading
// of a column the query lacks does nothing.
void setHeading(GridView& v, int col, const QString& text) {
    if (col < v.headings.size()) v.headings[col] = text;
}

}  // namespace

GridView GridView::firstView(FirstView kind) {
    GridView v = withColumns(kSevenNumberColumns);
    switch (kind) {
        case FirstView::IdxRange:
            v.liveOnly = false;
            v.idxRange = {1, kPageSize};
            break;
        case FirstView::Ordered:
            v.liveOnly = false;
            v.ordered = true;
            break;
        case FirstView::Live: break;
    }
    return v;
}

GridView GridView::live() { return withColumns(kSevenNumberColumns); }

GridView GridView::afterParameter(param_filter::ViewColumns columns, const QString& heading) {
    using VC = param_filter::ViewColumns;
    if (columns == VC::Figures) return live();
    GridView v =
        columns == VC::FrontWithParamValue
            ? withColumns({Column::Idx, Column::Number1, Column::Number2, Column::Number3, Column::Number4,
                           Column::Number5, Column::ParamValue})
            : withColumns({Column::Idx, Column::Number1, Column::Number2, Column::Number3, Column::Number4,
                           Column::Number5, Column::Number6, Column::Number7, Column::ParamValue});
    setHeading(v, 8, heading);
    return v;
}

GridView GridView::page(int64_t n) {
    GridView v = withColumns({Column::Idx, Column::Number1, Column::Number2, Column::Number3, Column::Number4,
                              Column::Number5, Column::Number6});
    v.idxRange = {n * kPageSize + 1, (n + 1) * kPageSize};
    return v;
}

GridView GridView::allRows() {
    std::vector<Column> cols = kSevenNumberColumns;
    cols.push_back(Column::ParamValue);
    cols.push_back(Column::Reason);
    GridView v = withColumns(std::move(cols));
    v.liveOnly = false;
    setHeading(v, 8, QStringLiteral("参数"));
    setHeading(v, 9, QStringLiteral("过滤缘故"));
    return v;
}

ResultGridModel::ResultGridModel(QObject* parent) : QAbstractTableModel(parent) {}

void ResultGridModel::select(const CandidateTable& table, const GridView& view, BitVector& selected) {
    using Word = BitVector::Word;
    const uint64_t rows = table.rowCount();
    if (selected.size() != rows) selected = BitVector(rows);
    const auto un = table.filteredOut().words();
    auto sel = selected.words();
    const auto range = view.idxRange;
    // Without an idx column the idx of row r is r + 1, so a range of ids is a range of rows.
    uint64_t firstRow = 0, endRow = rows;
    if (range && !table.hasExplicitIdx()) {
        firstRow =
            static_cast<uint64_t>(std::clamp<int64_t>(range->first - 1, 0, static_cast<int64_t>(rows)));
        endRow = static_cast<uint64_t>(std::clamp<int64_t>(range->second, 0, static_cast<int64_t>(rows)));
    }
    const bool perRow = range && table.hasExplicitIdx();
    const auto word = [&](uint64_t w) {
        const uint64_t base = w * BitVector::kWordBits;
        Word bits = view.liveOnly ? ~un[w] & selected.validMask(w) : selected.validMask(w);
        if (base < firstRow)
            bits &= firstRow - base >= BitVector::kWordBits ? 0 : ~Word{0} << (firstRow - base);
        if (base + BitVector::kWordBits > endRow)
            bits &= endRow <= base ? 0 : (Word{1} << (endRow - base)) - 1;
        if (perRow)
            for (Word b = bits; b; b &= b - 1) {
                const int bit = std::countr_zero(b);
                const int64_t idx = table.idxAt(base + static_cast<uint64_t>(bit));
                if (idx < range->first || idx > range->second) bits &= ~(Word{1} << bit);
            }
        sel[w] = bits;
    };
    if (perRow) {
        // Every selected row reads its idx: worth the threads.
        KernelExecutor::shared().forEachSlice(rows, [&](uint64_t begin, uint64_t end) {
            for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w) word(w);
        });
    } else {
        // A word operation per 64 rows: less than waking the threads would cost.
        for (uint64_t w = 0; w < sel.size(); ++w) word(w);
    }
}

void ResultGridModel::bind(const CandidateTable* table, GridView view) {
    BitVector selected;
    if (table) select(*table, view, selected);
    // The same rows of the same table: the view keeps its rows and scroll position and repaints
    // the cells, whose values (canshu, the reasons) may have changed.
    if (table && table == m_table && m_painted.empty() && m_order.empty() && !view.ordered &&
        view.columns.size() == m_view.columns.size() && selected == m_selected) {
        const bool headings = view.headings != m_view.headings;
        m_view = std::move(view);
        if (headings) emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
        if (m_fetched > 0) emit dataChanged(index(0, 0), index(m_fetched - 1, columnCount() - 1));
        return;
    }
    beginResetModel();
    m_table = table;
    m_view = std::move(view);
    m_painted.clear();
    m_order.clear();
    m_selected = std::move(selected);
    countSelected();
    m_fetched = static_cast<int>(std::min<uint64_t>(m_count, kFetchRows));
    // A view asks for more rows from its reset (and insert) handler, before its rows are laid
    // out, so that the last one seems in sight: it gets them when it scrolls there.
    m_resetting = true;
    endResetModel();
    m_resetting = false;
}

void ResultGridModel::countSelected() {
    m_rank.clear();
    m_count = 0;
    if (!m_table) return;
    const auto sel = m_selected.words();
    m_rank.reserve(sel.size() / kRankWords + 1);
    uint64_t before = 0;
    for (size_t w = 0; w < sel.size(); ++w) {
        if (w % kRankWords == 0) m_rank.push_back(static_cast<uint32_t>(before));
        before += static_cast<uint64_t>(std::popcount(sel[w]));
    }
    m_count = before;
    // A table without an idx column is in idx order already, each idx once.
    if (!m_view.ordered || !m_table->hasExplicitIdx()) return;
    const CandidateTable* table = m_table;
    m_order.reserve(m_count);
    for (size_t w = 0; w < sel.size(); ++w)
        forEachSetBit(sel[w], w * BitVector::kWordBits,
                      [&](size_t r) { m_order.push_back(static_cast<uint32_t>(r)); });
    const auto key = [table](uint32_t r) {
        return std::tuple(table->idxAt(r), table->numberColumn(1)[r], table->numberColumn(2)[r],
                          table->numberColumn(3)[r], table->numberColumn(4)[r], table->numberColumn(5)[r]);
    };
    std::stable_sort(m_order.begin(), m_order.end(), [&](uint32_t a, uint32_t b) { return key(a) < key(b); });
}

void ResultGridModel::unbind() { bind(nullptr, GridView::live()); }

int ResultGridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_fetched; }

int ResultGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_view.columns.size());
}

bool ResultGridModel::canFetchMore(const QModelIndex& parent) const {
    return !parent.isValid() && static_cast<uint64_t>(m_fetched) < m_count;
}

void ResultGridModel::fetchMore(const QModelIndex& parent) {
    if (parent.isValid() || m_resetting) return;
    fetchTo(static_cast<uint64_t>(m_fetched) + kFetchRows);
}

void ResultGridModel::fetchTo(uint64_t rows) {
    // A grid row is an int.
    const auto to = static_cast<int>(std::min<uint64_t>({rows, m_count, uint64_t{INT_MAX}}));
    if (to <= m_fetched) return;
    beginInsertRows(QModelIndex(), m_fetched, to - 1);
    m_fetched = to;
    m_resetting = true;  // the same early asking as after a reset
    endInsertRows();
    m_resetting = false;
}

uint64_t ResultGridModel::tableRow(int viewRow) const {
    const auto k = static_cast<uint64_t>(viewRow);
    if (!m_order.empty()) return m_order[k];
    // The block whose rank is the last not above k, then the word, then the bit.
    const auto it = std::upper_bound(m_rank.begin(), m_rank.end(), static_cast<uint32_t>(k));
    size_t w = static_cast<size_t>(it - m_rank.begin() - 1) * kRankWords;
    uint64_t left = k - m_rank[w / kRankWords];
    const auto sel = m_selected.words();
    while (true) {
        const auto c = static_cast<uint64_t>(std::popcount(sel[w]));
        if (left < c) break;
        left -= c;
        ++w;
    }
    BitVector::Word word = sel[w];
    for (uint64_t i = 0; i < left; ++i) word &= word - 1;
    return w * BitVector::kWordBits + static_cast<uint64_t>(std::countr_zero(word));
}

int ResultGridModel::viewRowOf(uint64_t row) {
    if (!m_table || row >= m_selected.size() || !m_selected.test(row)) return -1;
    uint64_t before = 0;
    if (!m_order.empty()) {
        before = static_cast<uint64_t>(std::find(m_order.begin(), m_order.end(), static_cast<uint32_t>(row)) -
                                       m_order.begin());
    } else {
        const size_t w = row / BitVector::kWordBits;
        before = m_rank[w / kRankWords];
        const auto sel = m_selected.words();
        for (size_t i = w - w % kRankWords; i < w; ++i)
            before += static_cast<uint64_t>(std::popcount(sel[i]));
        const BitVector::Word below = (BitVector::Word{1} << (row % BitVector::kWordBits)) - 1;
        before += static_cast<uint64_t>(std::popcount(sel[w] & below));
    }
    fetchTo(before + 1);
    return before < static_cast<uint64_t>(m_fetched) ? static_cast<int>(before) : -1;
}

int32_t ResultGridModel::idxAt(int viewRow) const { return m_table->idxAt(tableRow(viewRow)); }

QVariant ResultGridModel::data(const QModelIndex& index, int role) const {
    if (!m_table || !index.isValid() || index.row() >= rowCount() || index.column() >= columnCount()) return {};
    const uint64_t r = tableRow(index.row());
    if (role == PaintedRole) return m_painted.count(r) != 0;
    if (role != Qt::DisplayRole) return {};
    const Column c = m_view.columns[static_cast<size_t>(index.column())];
    switch (c) {
        case Column::Idx: return m_table->idxAt(r);
        case Column::ParamValue:
            return m_table->paramValueAt(r);
        case Column::Reason: {
            // An id past the texts is a kernel's placeholder, seen when a cell is painted while
            // a long action reports its progress.
            const ReasonTable::Id id = m_table->rowReasons()[r];
            if (m_table->reasons().isNull(id) || id >= m_table->reasons().size()) return {};
            return m_table->reasonText(r);
        }
        default:
            return int{m_table->numberColumn(static_cast<int>(c))[r]};
    }
}

QVariant ResultGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return QAbstractTableModel::headerData(section, orientation, role);
    return m_view.headings.value(section);
}

void ResultGridModel::setPainted(int viewRow, bool grey) {
    if (viewRow < 0 || viewRow >= rowCount()) return;
    const uint64_t r = tableRow(viewRow);
    if (grey) {
        m_painted.insert(r);
    } else {
        m_painted.erase(r);
    }
    emit dataChanged(index(viewRow, 0), index(viewRow, columnCount() - 1), {PaintedRole});
}
