#include "workspace/ui/column_widths.h"

#include <QAbstractItemDelegate>
#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyleOptionViewItem>
#include <QTableView>

#include <algorithm>

ColumnWidths* ColumnWidths::fit(QTableView* grid) {
    Q_ASSERT(grid && grid->model());  // the model decides the columns; set it first
    auto* fitted = grid->findChild<ColumnWidths*>(QString(), Qt::FindDirectChildrenOnly);
    if (!fitted) return new ColumnWidths(grid);
    fitted->takeBaseWidths();
    fitted->widen();
    return fitted;
}

ColumnWidths::ColumnWidths(QTableView* grid) : QObject(grid), m_grid(grid) {
    takeBaseWidths();
    // The view's own handlers of these signals run first (they were connected with the model),
    // so the headers already know the new rows and offsets when the widths are measured.
    const QAbstractItemModel* model = grid->model();
    connect(model, &QAbstractItemModel::modelReset, this, &ColumnWidths::restart);
    connect(model, &QAbstractItemModel::layoutChanged, this, &ColumnWidths::widen);
    connect(model, &QAbstractItemModel::rowsInserted, this, &ColumnWidths::widen);
    connect(model, &QAbstractItemModel::columnsInserted, this, &ColumnWidths::widen);
    connect(model, &QAbstractItemModel::dataChanged, this, &ColumnWidths::widen);
    connect(model, &QAbstractItemModel::headerDataChanged, this, &ColumnWidths::widen);
    connect(grid->verticalScrollBar(), &QScrollBar::valueChanged, this, &ColumnWidths::widen);
    grid->installEventFilter(this);
    grid->viewport()->installEventFilter(this);
    widen();
}

bool ColumnWidths::eventFilter(QObject* watched, QEvent* event) {
    // Shown or resized, the grid may show other rows than before.
    if (event->type() == QEvent::Show || event->type() == QEvent::Resize) widen();
    return QObject::eventFilter(watched, event);
}

void ColumnWidths::takeBaseWidths() {
    const QHeaderView* header = m_grid->horizontalHeader();
    m_baseWidths.clear();
    for (int c = 0; c < header->count(); ++c) m_baseWidths.push_back(header->sectionSize(c));
}

int ColumnWidths::baseWidth(int column) const {
    if (column < static_cast<int>(m_baseWidths.size())) return m_baseWidths[static_cast<size_t>(column)];
    return m_grid->horizontalHeader()->defaultSectionSize();
}

std::pair<int, int> ColumnWidths::rowsInView() const {
    const QHeaderView* rows = m_grid->verticalHeader();
    const int count = rows->count();
    if (count == 0) return {0, -1};
    const int first = std::max(0, rows->visualIndexAt(0));
    // Below the last row visualIndexAt gives -1; the cap keeps a grid that has no height yet
    // from walking its whole model.
    const int height = m_grid->viewport()->height();
    const int screenful = height / std::max(1, rows->minimumSectionSize()) + 1;
    int last = rows->visualIndexAt(height - 1);
    if (last < 0) last = count - 1;
    return {first, std::min(last, first + screenful)};
}

int ColumnWidths::cellWidth(const QModelIndex& index) const {
    QStyleOptionViewItem option;
    option.initFrom(m_grid);
    option.widget = m_grid;
    option.font = m_grid->font();
    option.fontMetrics = m_grid->fontMetrics();
    option.textElideMode = m_grid->textElideMode();
    option.displayAlignment = Qt::AlignLeft | Qt::AlignVCenter;
    const int width = m_grid->itemDelegateForIndex(index)->sizeHint(option, index).width();
    // The grid line takes one pixel of the section.
    return m_grid->showGrid() ? width + 1 : width;
}

int ColumnWidths::neededWidth(int column) const {
    const QHeaderView* rows = m_grid->verticalHeader();
    const QAbstractItemModel* model = m_grid->model();
    int width = m_grid->horizontalHeader()->sectionSizeHint(column);
    const auto [first, last] = rowsInView();
    for (int visual = first; visual <= last; ++visual) {
        const int row = rows->logicalIndex(visual);
        if (m_grid->isRowHidden(row)) continue;
        width = std::max(width, cellWidth(model->index(row, column)));
    }
    return width;
}

void ColumnWidths::widen() {
    if (!m_grid) return;
    QHeaderView* header = m_grid->horizontalHeader();
    for (int c = 0; c < header->count(); ++c) {
        if (header->isSectionHidden(c)) continue;
        const int needed = neededWidth(c);
        if (needed > header->sectionSize(c)) header->resizeSection(c, needed);
    }
}

void ColumnWidths::restart() {
    if (!m_grid) return;
    // Another query: its columns may hold other things, so they start from their least widths.
    QHeaderView* header = m_grid->horizontalHeader();
    for (int c = 0; c < header->count(); ++c)
        if (!header->isSectionHidden(c)) header->resizeSection(c, std::max(baseWidth(c), neededWidth(c)));
}
