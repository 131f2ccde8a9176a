// Every grid's columns show their header and the texts of the rows in view uncut: the history
// grid, the filter window's result grid through its views and scrolling, the prize check's
// grids; and a grid over millions of rows is fitted by reading only the rows it paints.
#include "app/ui/main_menu.h"
#include "app/ui/main_window.h"
#include "filter/param/param_filter.h"
#include "filter/ui/filter_window.h"
#include "generation/expansion.h"
#include "prize/prize_session.h"
#include "prize/ui/prize_check_window.h"
#include "prize_window_fixture.h"
#include "support/main_window_fixture.h"
#include "workspace/ui/column_widths.h"

#include <QAbstractTableModel>
#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QTableView>
#include <QTest>

namespace {

// The width a text needs in a cell and in a header section: its advance plus the margins
// that the style draws around it.
int cellTextWidth(const QTableView* grid, const QString& text) {
    const int margin = grid->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, grid) + 1;
    return grid->fontMetrics().horizontalAdvance(text) + 2 * margin;
}

int headerTextWidth(const QTableView* grid, const QString& text) {
    const QHeaderView* header = grid->horizontalHeader();
    const int margin = header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
    return header->fontMetrics().horizontalAdvance(text) + 2 * margin;
}

// The first cell or header that its column cuts, or an empty text when none.
QString cutText(const QTableView* grid) {
    const QAbstractItemModel* m = grid->model();
    const int first = std::max(0, grid->rowAt(0));
    int last = grid->rowAt(grid->viewport()->height() - 1);
    if (last < 0) last = m->rowCount() - 1;
    for (int c = 0; c < m->columnCount(); ++c) {
        const int width = grid->columnWidth(c);
        const QString heading = m->headerData(c, Qt::Horizontal).toString();
        if (width < headerTextWidth(grid, heading))
            return QStringLiteral("%1: header %2 in %3 px").arg(grid->objectName(), heading).arg(width);
        for (int r = first; r <= last; ++r) {
            const QString text = m->index(r, c).data().toString();
            if (width < cellTextWidth(grid, text))
                return QStringLiteral("%1: row %2 column %3 \"%4\" in %5 px")
                    .arg(grid->objectName())
                    .arg(r)
                    .arg(c)
                    .arg(text)
                    .arg(width);
        }
    }
    return {};
}

QList<int> widths(const QTableView* grid) {
    QList<int> out;
    for (int c = 0; c < grid->model()->columnCount(); ++c) out << grid->columnWidth(c);
    return out;
}

bool noneNarrower(const QList<int>& now, const QList<int>& before) {
    for (int c = 0; c < std::min(now.size(), before.size()); ++c)
        if (now[c] < before[c]) return false;
    return true;
}

// A model as big as the largest candidate table that counts the cells it is asked for.
class CountingModel : public QAbstractTableModel {
public:
    static constexpr int kRows = 21425712;
    mutable int reads = 0;
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : kRows; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        ++reads;
        return index.column() == 0 ? QVariant(index.row() + 1) : QVariant(QStringLiteral("相克号过滤"));
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
        return QStringList{"idx", "fig1", "过滤缘故"}.value(section);
    }
};

}  // namespace

class GridColumnWidthsTest : public QObject {
    Q_OBJECT
private slots:
    void historyGridAfterTheImport();
    void filterGridThroughItsViewsAndScrolling();
    void prizeCheckGrids();
    void aHugeModelIsReadOnlyWhereItIsPainted();
};

void GridColumnWidthsTest::historyGridAfterTheImport() {
    MainWindowFixture f;
    f.open();
    f.window->resize(1366, 740);
    f.window->show();
    QVERIFY(QTest::qWaitForWindowExposed(f.window.get()));
    f.prompter.answer(true).answer(f.bundledHistory());
    f.window->findChild<QAction*>(QStringLiteral("mnuRed"))->trigger();
    auto* grid = f.window->findChild<QTableView*>(QStringLiteral("MSFlexGrid1"));
    QCOMPARE(grid->model()->rowCount(), 2933);
    QTRY_VERIFY2(cutText(grid).isEmpty(), qPrintable(cutText(grid)));
    grid->scrollToTop();
    QVERIFY2(cutText(grid).isEmpty(), qPrintable(cutText(grid)));
}

void GridColumnWidthsTest::filterGridThroughItsViewsAndScrolling() {
    MainWindowFixture f;
    f.open();
    f.window->show();
    // 13 front and all 12 back numbers: 1287 x 66 = 84942 tickets, five-digit ids.
    for (int n = 1; n <= 13; ++n)
        f.window->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->click();
    f.window->findChild<QPushButton*>(QStringLiteral("Command7"))->click();
    emit f.window->menuActions().playModesMenu->aboutToShow();
    f.window->findChild<QAction*>(QStringLiteral("mnuLst"))->trigger();
    QVERIFY(!f.window->filterWindows().isEmpty());
    FilterWindow* w = f.window->filterWindows().last();
    w->resize(1366, 740);
    w->show();
    QVERIFY(QTest::qWaitForWindowExposed(w));
    auto* grid = w->findChild<QTableView*>(QStringLiteral("MSFlexGrid1"));
    QVERIFY2(cutText(grid).isEmpty(), qPrintable(cutText(grid)));

    // Every ticket inverted, then all rows with their reasons.
    w->findChild<QPushButton*>(QStringLiteral("Command2"))->click();
    w->findChild<QRadioButton*>(QStringLiteral("optZzuhe(1)"))->click();
    QCOMPARE(grid->model()->rowCount(), 84942);
    QCOMPARE(grid->model()->headerData(9, Qt::Horizontal).toString(), QStringLiteral("过滤缘故"));
    QVERIFY(!grid->model()->index(0, 9).data().toString().isEmpty());
    QVERIFY2(cutText(grid).isEmpty(), qPrintable(cutText(grid)));

    // Rows that come into view widen their columns; going back narrows nothing.
    const QList<int> atTop = widths(grid);
    grid->scrollToBottom();
    QVERIFY2(cutText(grid).isEmpty(), qPrintable(cutText(grid)));
    const QList<int> atBottom = widths(grid);
    QVERIFY(noneNarrower(atBottom, atTop));
    QVERIFY(atBottom[0] >= cellTextWidth(grid, QStringLiteral("84942")));
    grid->scrollToTop();
    QCOMPARE(widths(grid), atBottom);
    w->close();
}

void GridColumnWidthsTest::prizeCheckGrids() {
    PrizeWorkspace w;
    QVERIFY(w.importRealHistory() > 2900);
    ExpansionInput in;
    for (int n = 1; n <= 9; ++n) in.front.push_back(static_cast<int16_t>(n));
    for (int n = 1; n <= 4; ++n) in.back.push_back(static_cast<int16_t>(n));
    auto table = expand(in, nullptr, uint64_t{1} << 30).table;
    QVERIFY(table);
    // 各位数和 kept to 20..30 throws most tickets out with a reason.
    ParamWindowState state = ParamWindowState::defaults();
    state.box(ParamId::NumberSum)[0] = QStringLiteral("20");
    state.box(ParamId::NumberSum)[1] = QStringLiteral("30");
    QVERIFY(param_filter::runSingle(*table, ParamId::NumberSum, state, ParamContext::fromSession(*w.session))
                .killed > 0);
    QVERIFY(w.store(*table));
    prize_session::Opened opened = prize_session::open(*w.session, schema::CandidateKind::Combinations);
    PrizeCheckWindow win(std::move(opened.view), prize_session::workspaceFolder(*w.session), w.prompter);
    win.resize(1280, 760);
    win.show();
    QVERIFY(QTest::qWaitForWindowExposed(&win));
    for (const char* name : {"MSFlexGrid1", "MSFlexGrid3", "MSFlexGrid2"}) {
        auto* grid = win.findChild<QTableView*>(QString::fromLatin1(name));
        QVERIFY2(grid, name);
        QVERIFY(grid->model()->rowCount() > 0);
        QVERIFY2(cutText(grid).isEmpty(), qPrintable(cutText(grid)));
    }
}

void GridColumnWidthsTest::aHugeModelIsReadOnlyWhereItIsPainted() {
    CountingModel model;
    QTableView grid;
    grid.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grid.verticalHeader()->setDefaultSectionSize(20);
    grid.setModel(&model);
    // Fitted before it is shown, the grid has no height yet: a screenful at most is read.
    ColumnWidths::fit(&grid);
    QVERIFY(model.reads < 1000);
    grid.resize(600, 400);
    grid.show();
    QVERIFY(QTest::qWaitForWindowExposed(&grid));
    QVERIFY2(cutText(&grid).isEmpty(), qPrintable(cutText(&grid)));
    model.reads = 0;
    grid.scrollToBottom();
    QVERIFY(model.reads < 1000);
    QVERIFY2(cutText(&grid).isEmpty(), qPrintable(cutText(&grid)));
    QVERIFY(grid.columnWidth(0) >= cellTextWidth(&grid, QString::number(CountingModel::kRows)));
}

QTEST_MAIN(GridColumnWidthsTest)
#include "test_grid_column_widths.moc"
