// The grid, its paging and manual delete, the combination template and the export, driven
// through the window's logic as the filter window drives it.
#include "engine/candidate_kernels.h"
#include "filter/candidate_actions.h"
#include "filter/param/param_window.h"
#include "workspace/schema.h"
#include "workspace/scripted_prompter.h"
#include "workspace/sqlite_db.h"

#include "filter/candidate_fixture.h"
#include "support/qt_printers.h"
#include "support/ticket_reference.h"
#include "support/xlsx_reader.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <set>

namespace {

void killRows(CandidateTable& t, uint64_t from, uint64_t to) {
    BitVector sel(t.rowCount());
    for (uint64_t r = from; r < to; ++r) sel.set(r);
    candidate_kernels::beginFilter(t);
    candidate_kernels::killSelected(t, sel, t.reasons().intern(QStringLiteral("各位数和大小:1 保留0~0")));
}

struct Window {
    QTemporaryDir dir;
    FilterWorkspace workspace{FilterSource::Expansion,
                              QDir(dir.path()).filePath(QStringLiteral("filnum.db"))};
    ParamWindow window{workspace, ParamContext{}, dir.path()};
    ResultGridModel model;

    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};

    explicit Window(uint64_t rows) : Window(smallTable(rows)) {}
    explicit Window(CandidateTable table) {
        const uint64_t rows = table.rowCount();
        workspace.openMade(std::make_unique<CandidateTable>(std::move(table)), rows);
        window.showFirstView();
        model.bind(&workspace.table(), window.view());
    }
    ~Window() { workspace.waitForWrite(); }
};

TEST(ResultGrid, PagesAreStretchesOfIdsAndTheModelIsLazy) {
    CandidateTable t = smallTable(60000);
    killRows(t, 0, 10000);
    killRows(t, 19999, 20000);
    ResultGridModel model;
    model.bind(&t, GridView::page(0));
    EXPECT_EQ(model.rowCount(), 0);  // page 0 is empty while page 5 is not
    model.bind(&t, GridView::page(5));
    EXPECT_EQ(model.rowCount(), 10000);
    EXPECT_EQ(model.idxAt(0), 50001);
    EXPECT_EQ(model.columnCount(), 7);  // idx, fig1..fig6: a paged view has no fig7
    EXPECT_EQ(model.headerData(6, Qt::Horizontal).toString(), QStringLiteral("fig6"));
    // The default "1" is the second stretch; its last id died.
    model.bind(&t, GridView::page(1));
    EXPECT_EQ(model.rowCount(), 9999);
    EXPECT_EQ(model.idxAt(9998), 19999);

    // A big live view: rows found by rank agree with a plain walk.
    CandidateTable big = smallTable(3 * 1024 * 1024 + 17);
    std::mt19937 rng(3);
    BitVector sel(big.rowCount());
    for (uint64_t r = 0; r < big.rowCount(); ++r)
        if (rng() % 3 == 0) sel.set(r);
    candidate_kernels::beginFilter(big);
    candidate_kernels::killSelected(big, sel, ReasonTable::kEmpty);
    model.bind(&big, GridView::live());
    // A view is handed a first batch; the rest comes as it asks.
    ASSERT_EQ(model.selectedCount(), big.liveCount());
    ASSERT_EQ(model.rowCount(), ResultGridModel::kFetchRows);
    while (model.canFetchMore({})) model.fetchMore({});
    ASSERT_EQ(static_cast<uint64_t>(model.rowCount()), big.liveCount());
    std::vector<uint64_t> live;
    for (uint64_t r = 0; r < big.rowCount(); ++r)
        if (!big.filteredOut().test(r)) live.push_back(r);
    for (int k : {0, 1, 63, 64, 511, 512, 100000, model.rowCount() - 1}) {
        EXPECT_EQ(model.tableRow(k), live[static_cast<size_t>(k)]) << k;
        EXPECT_EQ(model.viewRowOf(live[static_cast<size_t>(k)]), k);
        EXPECT_EQ(model.data(model.index(k, 1)).toInt(), big.numberColumn(1)[live[static_cast<size_t>(k)]]);
    }
    for (uint64_t r = 0; r < 200; ++r) {
        if (sel.test(r)) {
            EXPECT_EQ(model.viewRowOf(r), -1) << r;
        }
    }
}

TEST(ResultGrid, ViewsAndHeadingsFollowTheButtons) {
    CandidateTable t = smallTable(50);
    ResultGridModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.bind(
        &t, GridView::afterParameter(param_filter::ViewColumns::WithParamValue, QStringLiteral("偶数个数")));
    EXPECT_EQ(model.columnCount(), 9);
    EXPECT_EQ(model.headerData(8, Qt::Horizontal).toString(), QStringLiteral("偶数个数"));
    // Option3's query lacks the back numbers: column 8 does not exist, canshu keeps its name.
    model.bind(&t, GridView::afterParameter(param_filter::ViewColumns::FrontWithParamValue,
                                            QStringLiteral("各位和个位")));
    EXPECT_EQ(model.columnCount(), 7);
    EXPECT_EQ(model.headerData(6, Qt::Horizontal).toString(), QStringLiteral("canshu"));
    model.bind(&t, GridView::allRows());
    EXPECT_EQ(model.columnCount(), 10);
    EXPECT_EQ(model.headerData(8, Qt::Horizontal).toString(), QStringLiteral("参数"));
    EXPECT_EQ(model.headerData(9, Qt::Horizontal).toString(), QStringLiteral("过滤缘故"));
    // First views: GAgan shows ids 1..10000 dead or alive.
    killRows(t, 0, 5);
    model.bind(&t, GridView::firstView(FirstView::IdxRange));
    EXPECT_EQ(model.rowCount(), 50);
    model.bind(&t, GridView::firstView(FirstView::Live));
    EXPECT_EQ(model.rowCount(), 45);
}

TEST(ParamWindowActions, DoubleClickTogglesAndCountsAsAFilter) {
    Window w(200);
    ScriptedPrompter prompter;
    EXPECT_EQ(w.model.rowCount(), 200);
    w.window.doubleClick(w.model, 4);
    EXPECT_EQ(w.workspace.shownCount(), 199u);
    EXPECT_TRUE(w.model.isPainted(4));
    EXPECT_TRUE(w.model.data(w.model.index(4, 0), ResultGridModel::PaintedRole).toBool());
    EXPECT_EQ(w.workspace.table().reasonText(4), QStringLiteral("手工删除"));
    EXPECT_EQ(w.model.rowCount(), 200);  // not rebound: the row stays, grey
    w.window.doubleClick(w.model, 4);
    EXPECT_EQ(w.workspace.shownCount(), 200u);
    EXPECT_FALSE(w.model.isPainted(4));
    EXPECT_EQ(w.workspace.table().reasonText(4), QString(""));

    // Reset of the last filter after a manual delete returns that one ticket.
    ParamWindowState s = ParamWindowState::defaults();
    s.box(ParamId::EvenCount) = {QStringLiteral("3"), QStringLiteral("3"), {}, {}};
    w.window.clickParameter(ParamId::EvenCount, s, prompter);
    EXPECT_TRUE(w.window.usedButtons().count(QStringLiteral("Option4")));
    const uint64_t afterFilter = w.workspace.shownCount();
    w.model.bind(&w.workspace.table(), w.window.view());
    EXPECT_EQ(w.model.headerData(8, Qt::Horizontal).toString(), QStringLiteral("偶数个数"));
    w.window.doubleClick(w.model, 0);
    EXPECT_EQ(w.workspace.shownCount(), afterFilter - 1);
    w.workspace.resetLast();
    EXPECT_EQ(w.workspace.shownCount(), afterFilter);

    // In the all-rows view a double click restores a dead ticket whatever killed it.
    w.window.showAllRows();
    w.model.bind(&w.workspace.table(), w.window.view());
    int dead = -1;
    for (int r = 0; r < w.model.rowCount() && dead < 0; ++r)
        if (w.workspace.table().filteredOut().test(w.model.tableRow(r))) dead = r;
    ASSERT_GE(dead, 0);
    EXPECT_TRUE(w.model.data(w.model.index(dead, 9)).toString().startsWith(QStringLiteral("偶数个数大小:")));
    w.window.doubleClick(w.model, dead);
    EXPECT_FALSE(w.workspace.table().filteredOut().test(w.model.tableRow(dead)));
    EXPECT_EQ(w.workspace.shownCount(), afterFilter + 1);

    // Paging with Text1's text.
    w.window.showPage(QStringLiteral("0"));
    EXPECT_EQ(w.window.view().idxRange->first, 1);
    EXPECT_EQ(w.window.view().idxRange->second, 10000);
}

TEST(ParamWindowActions, AddToTemplateKeepsDistinctTicketsInOrderAndRenumbers) {
    QTemporaryDir dir;
    SqliteDb db;
    ASSERT_TRUE(db.open(QDir(dir.path()).filePath(QStringLiteral("filnum.db")), true));
    // Without the template table nothing happens.
    EXPECT_FALSE(param_window::addTickets(db, {{1, 2, 3, 4, 5, 6, 7}}));
    EXPECT_FALSE(db.tableExists(QStringLiteral("zuheMoban")));

    ASSERT_TRUE(db.exec(schema::candidate(schema::CandidateKind::Template).createStatement()));
    ASSERT_TRUE(param_window::addTickets(db, {{9, 10, 11, 12, 13, 1, 2}, {1, 2, 3, 4, 5, 6, 7}}));
    ASSERT_TRUE(param_window::addTickets(db, {{1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 6, 1, 2}}));
    const auto rows = db.rows(QStringLiteral("SELECT idx, fig1, fig5, fig6 FROM zuheMoban ORDER BY rowid"));
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0], (QVariantList{1, 1, 5, 6}));
    EXPECT_EQ(rows[1], (QVariantList{2, 1, 6, 1}));
    EXPECT_EQ(rows[2], (QVariantList{3, 9, 13, 1}));
    const QStringList cols = db.columns(QStringLiteral("zuheMoban"));
    EXPECT_EQ(cols.first(), QStringLiteral("fig1"));
    EXPECT_EQ(cols.value(7), QStringLiteral("idx"));
    EXPECT_FALSE(cols.contains(QStringLiteral("fliter"), Qt::CaseInsensitive));
    // Adding nothing only renumbers.
    ASSERT_TRUE(param_window::addTickets(db, {}));
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT count(*) FROM zuheMoban")).toInt(), 3);

    // Through the button: Cancel leaves it; OK adds the live tickets of the window.
    Window w(30);
    ScriptedPrompter prompter;
    prompter.answer(false);
    EXPECT_FALSE(w.window.clickAddTemplate(db, prompter));
    ASSERT_EQ(prompter.asked().size(), 1);
    EXPECT_EQ(prompter.asked()[0].title, QStringLiteral("添加组号模板"));
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT count(*) FROM zuheMoban")).toInt(), 3);
    prompter.answer(true);
    EXPECT_TRUE(w.window.clickAddTemplate(db, prompter));
    std::set<std::array<int, 7>> distinct;
    for (uint64_t r = 0; r < w.workspace.table().rowCount(); ++r) {
        std::array<int, 7> k{};
        for (int c = 1; c <= 7; ++c) k[static_cast<size_t>(c - 1)] = w.workspace.table().numberColumn(c)[r];
        distinct.insert(k);
    }
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT count(*) FROM zuheMoban")).toInt(), 3 + static_cast<int>(distinct.size()));
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT max(idx) FROM zuheMoban")).toInt(), 3 + static_cast<int>(distinct.size()));
}

TEST(ParamWindowActions, ExportWritesTheSheetOrShowsTheMessage) {
    using ticket_reference::Ticket;
    // Real tickets (ascending fronts): 21 front combinations x 3 back pairs, the first ten
    // thrown out.
    const std::vector<Ticket> tickets = ticket_reference::expand({1, 4, 9, 16, 25, 30, 33}, {2, 5, 11});
    CandidateTable table(schema::CandidateKind::Combinations, tickets.size());
    for (size_t r = 0; r < tickets.size(); ++r)
        for (int k = 1; k <= 7; ++k)
            table.numberColumn(k)[r] = static_cast<uint8_t>(tickets[r][static_cast<size_t>(k - 1)]);
    Window w(std::move(table));
    killRows(w.workspace.edit().table(), 0, 10);
    ParamWindowState s = ParamWindowState::defaults();
    s.integratedBox[0] = s.integratedBox[17] = s.integratedBox[15] = s.integratedBox[9] =
        true;  // 9: a position, not exported
    ScriptedPrompter prompter;
    const param_export::Result r = w.window.clickExport(s, prompter);
    ASSERT_TRUE(r.written);
    EXPECT_EQ(r.rows, tickets.size() - 10);
    EXPECT_EQ(r.titles, (QStringList{QStringLiteral("各位数和"), QStringLiteral("首尾差值"), QStringLiteral("数字复杂度"),
                                     QStringLiteral("小数之和")}));
    EXPECT_TRUE(w.window.exportPath().endsWith(QStringLiteral("/Zuhe.xlsx")));
    EXPECT_EQ(w.workspace.table().liveCount(), tickets.size() - 10);
    EXPECT_TRUE(prompter.asked().isEmpty());

    // The sheet read back: the heading, then every live ticket in idx order with the values
    // computed here.
    const XlsxSheet sheet = xlsx_reader::read(w.window.exportPath());
    EXPECT_TRUE(sheet.error.isEmpty()) << qPrintable(sheet.error);
    QList<QStringList> expected{{"序号", "第1位", "第2位", "第3位", "第4位", "第5位", "各位数和", "首尾差值", "数字复杂度", "小数之和"}};
    for (size_t k = 10; k < tickets.size(); ++k) {
        const Ticket& t = tickets[k];
        QStringList row{QString::number(k + 1)};
        for (size_t p = 0; p < 5; ++p) row << QString::number(t[p]);
        row << QString::number(ticket_reference::frontSum(t)) << QString::number(ticket_reference::endsDifference(t))
            << QString::number(ticket_reference::acValue(t)) << QString::number(ticket_reference::smallSum(t));
        expected << row;
    }
    EXPECT_EQ(sheet.rows, expected);

    // A file that cannot be written: the message, nothing else.
    const param_export::Result bad = param_export::exportLive(
        w.workspace.edit().table(), s, {}, QStringLiteral("/nonexistent/dir/Zuhe.xlsx"), prompter);
    EXPECT_FALSE(bad.written);
    ASSERT_EQ(prompter.asked().size(), 1);
    EXPECT_EQ(prompter.asked()[0].title, QStringLiteral("列表显示错误"));
    EXPECT_EQ(prompter.asked()[0].text, QStringLiteral("您的电脑没有安装Microsoft Excel表格软件，多参数列表无法显示"));
}

// Cancels the export once it reports `after` units done or more, and keeps what it saw.
class CancelAt : public EngineProgress {
public:
    explicit CancelAt(uint64_t after) : m_after(after) {}
    void progress(uint64_t done, uint64_t total) override {
        m_reports.push_back(done);
        m_total = total;
        m_cancelled = m_cancelled || done >= m_after;
    }
    bool cancelled() const override { return m_cancelled; }
    const std::vector<uint64_t>& reports() const { return m_reports; }
    uint64_t total() const { return m_total; }

private:
    uint64_t m_after;
    bool m_cancelled = false;
    std::vector<uint64_t> m_reports;
    uint64_t m_total = 0;
};

QByteArray contentsOf(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

TEST(ParamWindowActions, ACancelledExportLeavesTheFileThatWasThere) {
    constexpr uint64_t kRows = 40000;  // a few reports' worth of rows
    Window w(kRows);
    ParamWindowState s = ParamWindowState::defaults();
    s.integratedBox[0] = s.integratedBox[17] = true;  // two columns
    const QString path = w.window.exportPath();
    {
        QFile old(path);
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write("the sheet of an earlier export");
    }
    const auto onlyTheTarget = [&] {
        return QDir(w.dir.path())
                   .entryList({QFileInfo(path).fileName() + QStringLiteral("*")}, QDir::Files) ==
               QStringList{QFileInfo(path).fileName()};
    };
    ScriptedPrompter prompter;
    // Cancelled while the columns are computed, then while the rows are written.
    for (const uint64_t after : {uint64_t{1}, 2 * kRows + 1}) {
        CancelAt cancel(after);
        const param_export::Result r = w.window.clickExport(s, prompter, &cancel);
        EXPECT_TRUE(r.cancelled) << after;
        EXPECT_FALSE(r.written);
        EXPECT_EQ(cancel.total(), 3 * kRows);
        EXPECT_EQ(contentsOf(path), QByteArray("the sheet of an earlier export"));
        EXPECT_TRUE(onlyTheTarget()) << qPrintable(QDir(w.dir.path()).entryList().join(u' '));
    }

    // Not cancelled, the new sheet takes the file's place; the reports rise to the total.
    CancelAt never(std::numeric_limits<uint64_t>::max());
    const param_export::Result r = w.window.clickExport(s, prompter, &never);
    ASSERT_TRUE(r.written);
    EXPECT_FALSE(r.cancelled);
    EXPECT_TRUE(std::is_sorted(never.reports().begin(), never.reports().end()));
    EXPECT_GE(never.reports().size(), 4u);
    EXPECT_EQ(never.reports().back(), 3 * kRows);
    EXPECT_TRUE(onlyTheTarget());
    const XlsxSheet sheet = xlsx_reader::read(path);
    EXPECT_TRUE(sheet.error.isEmpty()) << qPrintable(sheet.error);
    EXPECT_EQ(sheet.rows.size(), static_cast<qsizetype>(kRows + 1));
    EXPECT_TRUE(prompter.asked().isEmpty());
}

}  // namespace
