// The statistics windows opened from the trend windows' menus: the pair counts with the
// three-number question, the transitions to the next draw and the one after, the moments.
#include "analysis/ui/distribution_window.h"
#include "analysis/ui/chart_plot.h"
#include "analysis/ui/param_list_window.h"
#include "analysis/ui/param_strips_window.h"
#include "analysis/ui/statistics_window.h"
#include "analysis/ui/tally_model.h"
#include "analysis/ui/tally_window.h"
#include "support/trend_fixture.h"
#include "support/xlsx_reader.h"

#include <QBarSeries>
#include <QColor>
#include <QContextMenuEvent>
#include <QDir>
#include <QBarSet>
#include <QHeaderView>
#include <QMenu>
#include <QTableView>

namespace {

QString cell(StatisticsWindow* w, int row, int column) {
    return w->grid()->model()->index(row, column).data().toString();
}

}  // namespace

class StatisticsWindowTest : public QObject {
    Q_OBJECT
private slots:
    void pairCountsAndTheThreeNumberQuestion();
    void transitionsOfTheNextDrawAndTheOneAfter();
    void momentsOfTheFrontPositions();
    void parameterListsSortByTheClickedColumn();
    void distributionChartsOfTheScopesColumns();
    void tallyTablesMarkTheDrawsValues();
    void tablesExportEveryRowWithItsColours();
    void parameterStripsOfTheLatestDraws();
};

void StatisticsWindowTest::pairCountsAndTheThreeNumberQuestion() {
    TrendFixture f;
    TrendWindow* front = f.openBy("Command9");
    QVERIFY(front);
    auto* xg = TrendFixture::openView<StatisticsWindow>(front, QStringLiteral("mnuXg"), QStringLiteral("FrmXg"));
    QVERIFY(xg);
    QCOMPARE(xg->windowTitle(), QStringLiteral("列表排序(鼠标右键可以切换2/3个码的历史相关)"));
    QCOMPARE(xg->grid()->model()->rowCount(), 36);
    QCOMPARE(cell(xg, 0, 0), QStringLiteral("相关参数"));
    // 07 with 21 (draw 5) below the diagonal; the cell above it stays empty.
    QCOMPARE(cell(xg, 21, 7), QStringLiteral("1"));
    QCOMPARE(cell(xg, 7, 21), QString());
    QCOMPARE(cell(xg, 14, 1), QStringLiteral("1"));

    // Three numbers: a word and a number outside the zone are told, then 7 is taken.
    f.prompter.clear();
    f.prompter.answer(QStringLiteral("七")).answer(QStringLiteral("36")).answer(QStringLiteral("7"));
    xg->findChild<QAction*>(QStringLiteral("mnuXiangguan(3)"))->trigger();
    QCOMPARE(f.prompter.messages(), (QStringList{QStringLiteral("请输入数字"), QStringLiteral("请输入1~35之间的数字")}));
    QCOMPARE(f.prompter.asked().first().title, QStringLiteral("相关数输入"));
    QCOMPARE(cell(xg, 14, 1), QStringLiteral("1"));  // 01 and 14 came with 07
    QCOMPARE(cell(xg, 15, 2), QStringLiteral("0"));  // 02 and 15 came without it
    QCOMPARE(cell(xg, 21, 7), QStringLiteral("0"));  // 07 itself is left out
    // Cancelled, the grid stays; two numbers again from the same menu.
    f.prompter.cancel();
    xg->findChild<QAction*>(QStringLiteral("mnuXiangguan(3)"))->trigger();
    QCOMPARE(cell(xg, 15, 2), QStringLiteral("0"));
    xg->findChild<QAction*>(QStringLiteral("mnuXiangguan(2)"))->trigger();
    QCOMPARE(cell(xg, 15, 2), QStringLiteral("1"));

    // The back window counts the back zone's pairs.
    TrendWindow* back = f.openBy("Command10");
    auto* backXg = TrendFixture::openView<StatisticsWindow>(back, QStringLiteral("mnuXg"), QStringLiteral("FrmXg"));
    QVERIFY(backXg && backXg != xg);
    QCOMPARE(backXg->grid()->model()->rowCount(), 13);
    QCOMPARE(cell(backXg, 12, 1), QStringLiteral("1"));
}

void StatisticsWindowTest::transitionsOfTheNextDrawAndTheOneAfter() {
    TrendFixture f;
    TrendWindow* front = f.openBy("Command9");
    auto* next = TrendFixture::openView<StatisticsWindow>(front, QStringLiteral("mnuFljp(0)"), QStringLiteral("FrmGs"));
    QVERIFY(next);
    QCOMPARE(next->windowTitle(), QStringLiteral("历史变换统计"));
    QCOMPARE(next->grid()->model()->rowCount(), 35 + 10);
    QCOMPARE(cell(next, 0, 0), QStringLiteral("前期\\下期"));
    QCOMPARE(cell(next, 7, 7), QStringLiteral("1"));  // 07 in draws 1 and 2
    QCOMPARE(cell(next, 37, 0), QStringLiteral("上1期跟随"));
    QCOMPARE(cell(next, 38, 0), QStringLiteral("07"));  // the newest draw's numbers
    QCOMPARE(cell(next, 43, 0), QStringLiteral("上1期总跟随"));

    // The heads pick as the trend grid does: a click makes 07 a pick on the board and in the
    // trend window, a right click opens the banker pop-up of the trend window for 09.
    QTableView* grid = next->grid();
    grid->scrollTo(grid->model()->index(0, 7));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(grid->model()->index(0, 7)).center());
    QVERIFY(f.session->board().front.pickFlag[7]);
    QCOMPARE(cell(next, 0, 7), QStringLiteral("07√"));
    QCOMPARE(cell(next, 7, 0), QStringLiteral("07√"));
    auto* popup = front->findChild<QMenu*>(QStringLiteral("mnuDt"));
    const QPoint at9 = grid->visualRect(grid->model()->index(9, 0)).center();
    QContextMenuEvent rightClick(QContextMenuEvent::Mouse, at9, grid->viewport()->mapToGlobal(at9));
    QCoreApplication::sendEvent(grid->viewport(), &rightClick);
    QTRY_VERIFY(popup->isVisible());
    front->findChild<QAction*>(QStringLiteral("munDan"))->trigger();
    popup->close();
    QVERIFY(f.session->board().front.bankerFlag[9]);
    QCOMPARE(cell(next, 0, 9), QStringLiteral("09◎"));
    next->close();

    auto* skip = TrendFixture::openView<StatisticsWindow>(front, QStringLiteral("mnuFljp(1)"), QStringLiteral("FrmGs"));
    QVERIFY(skip);
    QCOMPARE(cell(skip, 37, 0), QStringLiteral("上2期跟随"));
    QCOMPARE(cell(skip, 38, 0), QStringLiteral("10"));  // the draw before the newest
    // 02 of draw 3, then 07 of draw 5; 07 of draws 1 and 2 has no 07 two draws on.
    QCOMPARE(cell(skip, 2, 7), QStringLiteral("1"));
    QCOMPARE(cell(skip, 7, 7), QStringLiteral("0"));
}

void StatisticsWindowTest::momentsOfTheFrontPositions() {
    TrendFixture f;
    TrendWindow* both = f.openBy("Command48");
    auto* gl = TrendFixture::openView<StatisticsWindow>(both, QStringLiteral("mnuGl"), QStringLiteral("frmGl"));
    QVERIFY(gl);
    QCOMPARE(gl->windowTitle(), QStringLiteral("高级概率参数"));
    QCOMPARE(gl->grid()->model()->rowCount(), 10);
    QCOMPARE(cell(gl, 0, 1), QStringLiteral("第1位"));
    QCOMPARE(cell(gl, 1, 0), QStringLiteral("理想均值"));
    QCOMPARE(cell(gl, 1, 5), QStringLiteral("31.5"));
    QCOMPARE(cell(gl, 2, 1), QStringLiteral("5"));  // (1 + 5 + 2 + 10 + 7) / 5

    // One draw: the rows over R - 1 stay empty.
    TrendFixture one({QStringLiteral("2025101 01 07 14 22 30 03 11")});
    auto* single = TrendFixture::openView<StatisticsWindow>(one.openBy("Command48"), QStringLiteral("mnuGl"),
                                                            QStringLiteral("frmGl"));
    QVERIFY(single && single != gl);
    QCOMPARE(cell(single, 3, 1), QString());
    QCOMPARE(cell(single, 5, 1), QStringLiteral("0"));
}

void StatisticsWindowTest::parameterListsSortByTheClickedColumn() {
    TrendFixture f;
    auto* list = TrendFixture::openView<ParamListWindow>(f.openBy("Command9"), QStringLiteral("mnuCcha"),
                                                         QStringLiteral("FrmJcsarr"));
    QVERIFY(list);
    QAbstractItemModel* m = list->grid()->model();
    QCOMPARE(m->rowCount(), 5);
    QCOMPARE(m->columnCount(), 6 + 27 + 5);
    QCOMPARE(m->headerData(9, Qt::Horizontal).toString(), QStringLiteral("各位数字和"));
    QCOMPARE(m->index(0, 0).data().toString(), QStringLiteral("2025101"));
    // Sums 74, 90, 77, 103, 121: a click on the sum's head puts draw 1, 3, 2, 4, 5 in order.
    list->grid()->horizontalHeader()->sectionClicked(9);
    QStringList issues;
    for (int r = 0; r < 5; ++r) issues << m->index(r, 0).data().toString();
    QCOMPARE(issues, (QStringList{"2025101", "2025103", "2025102", "2025104", "2025105"}));
    QCOMPARE(m->index(0, 9).data().toString(), QStringLiteral("74"));

    auto* back = TrendFixture::openView<ParamListWindow>(f.openBy("Command10"), QStringLiteral("mnuCcha"),
                                                         QStringLiteral("FrmJcsarrHou"));
    QVERIFY(back);
    QCOMPARE(back->grid()->model()->headerData(back->grid()->model()->columnCount() - 1, Qt::Horizontal).toString(),
             QStringLiteral("后2位标准差"));
}

void StatisticsWindowTest::distributionChartsOfTheScopesColumns() {
    TrendFixture f;
    TrendWindow* front = f.openBy("Command9");
    auto* decades = TrendFixture::openView<DistributionWindow>(front, QStringLiteral("mnuTjqujian"),
                                                               QStringLiteral("frm3Dtj"));
    QVERIFY(decades);
    QCOMPARE(decades->windowTitle(), QStringLiteral("参数分布统计分析条形图"));
    QCOMPARE(decades->series()->count(), 3);
    QCOMPARE(decades->series()->barSets().first()->count(), 6);
    // The front table has no sixth number: an empty chart, no message.
    f.prompter.clear();
    auto* sixth = TrendFixture::openView<DistributionWindow>(front, QStringLiteral("mnuTjwei(5)"),
                                                             QStringLiteral("frm3Dtj"));
    QVERIFY(sixth && sixth != decades);
    QCOMPARE(sixth->series()->count(), 0);
    QVERIFY(f.prompter.messages().isEmpty());
    // In both zones it counts the first back number: 03 twice, 01, 06 and 02 once each.
    auto* both = TrendFixture::openView<DistributionWindow>(f.openBy("Command48"), QStringLiteral("mnuTjwei(5)"),
                                                            QStringLiteral("frm3Dtj"));
    QVERIFY(both);
    QCOMPARE(both->groups().size(), size_t{1});
    QCOMPARE(both->groups()[0].counts.front(), (std::pair<qint64, int>{1, 1}));
    QCOMPARE(both->groups()[0].counts[2], (std::pair<qint64, int>{3, 2}));
}

void StatisticsWindowTest::tallyTablesMarkTheDrawsValues() {
    TrendFixture f;
    TrendWindow* front = f.openBy("Command9");
    auto* repeats = TrendFixture::openView<TallyWindow>(front, QStringLiteral("mnuChongBz"), QStringLiteral("frmPicChonghao"));
    QVERIFY(repeats);
    QCOMPARE(repeats->windowTitle(), QStringLiteral("重上期号参数"));
    const QAbstractItemModel* m = repeats->grid()->model();
    QCOMPARE(m->rowCount(), 5 + 1);
    QCOMPARE(m->headerData(1, Qt::Horizontal).toString(), QStringLiteral("0个"));
    // 07 repeats in the second draw: its row marks the column of one repeat, green.
    QCOMPARE(m->index(1, 0).data().toString(), QStringLiteral("2025102"));
    QCOMPARE(m->index(1, 2).data().toString(), QStringLiteral("1"));
    QCOMPARE(m->index(1, 2).data(Qt::BackgroundRole).value<QColor>(), QColor(0, 255, 0));
    QVERIFY(!m->index(1, 1).data().isValid());
    QCOMPARE(m->index(5, 0).data().toString(), QStringLiteral("期数"));
    QCOMPARE(m->index(5, 1).data().toString(), QStringLiteral("4"));  // every draw but the second repeats nothing

    // The bands have a row of group heads over the count columns; the back window its own zone.
    auto* bands = TrendFixture::openView<TallyWindow>(f.openBy("Command10"), QStringLiteral("mnu5qu"), QStringLiteral("frmPicQj5"));
    QVERIFY(bands);
    // The group's head over its first column's, in the header that stays in view.
    QCOMPARE(bands->grid()->model()->headerData(11, Qt::Horizontal).toString(), QStringLiteral("11~12\n1"));
    QCOMPARE(bands->grid()->model()->headerData(11, Qt::Horizontal, Qt::BackgroundRole).value<QColor>(),
             QColor(0, 0, 255));
    QCOMPARE(bands->grid()->model()->headerData(12, Qt::Horizontal).toString(), QStringLiteral("\n2"));
    // Odd, even, big and small share one window name, each with its caption.
    auto* big = TrendFixture::openView<TallyWindow>(front, QStringLiteral("mnuJodx(2)"), QStringLiteral("frmPicJODS"));
    QVERIFY(big);
    QCOMPARE(big->windowTitle(), QStringLiteral("参数列表 - 大数个数"));
}

void StatisticsWindowTest::tablesExportEveryRowWithItsColours() {
    if (!xlsx_reader::available()) QSKIP("unzip is not installed");
    TrendFixture f;
    TrendWindow* front = f.openBy("Command9");
    auto* omissions = TrendFixture::openView<TallyWindow>(front, QStringLiteral("mnuYlbg"), QStringLiteral("frmPicYL"));
    QVERIFY(omissions);
    QCOMPARE(omissions->findChild<QMenu*>(QStringLiteral("mnuMlp"))->title(), QStringLiteral("操作(&M)"));
    f.prompter.clear();
    omissions->findChild<QAction*>(QStringLiteral("mnuPrint"))->trigger();
    const QString path = QDir(f.home.root.path(QString())).filePath(QStringLiteral("Print.xlsx"));
    QCOMPARE(f.prompter.messages(), QStringList{path});
    // Every row whatever the scroll: the heads, five draws and the foot, with their colours.
    XlsxSheet sheet = xlsx_reader::read(path);
    QVERIFY2(sheet.error.isEmpty(), qPrintable(sheet.error));
    QCOMPARE(sheet.rows.size(), 1 + 5 + 1);
    QCOMPARE(sheet.rows[0].value(5), QStringLiteral("4次以上"));
    QCOMPARE(sheet.rows[0].value(0), QStringLiteral("期号"));
    QCOMPARE(sheet.rows[1].value(1), QStringLiteral("5"));  // nothing came before the first draw
    QCOMPARE(sheet.backgrounds[1].value(1), QStringLiteral("00FF00"));
    QCOMPARE(sheet.backgrounds[1].value(2), QString());
    QCOMPARE(sheet.rows[6].value(0), QStringLiteral("遗漏总计"));

    // The parameter list exports its heads and rows.
    auto* list = TrendFixture::openView<ParamListWindow>(front, QStringLiteral("mnuCcha"), QStringLiteral("FrmJcsarr"));
    list->findChild<QAction*>(QStringLiteral("mnuPrint"))->trigger();
    sheet = xlsx_reader::read(path);
    QCOMPARE(sheet.rows.size(), 1 + 5);
    QCOMPARE(sheet.rows[0].value(0), QStringLiteral("开奖期号"));
    QCOMPARE(sheet.rows[5].value(0), QStringLiteral("2025105"));
}

void StatisticsWindowTest::parameterStripsOfTheLatestDraws() {
    TrendFixture f;
    TrendWindow* front = f.openBy("Command9");
    auto* strips = TrendFixture::openView<ParamStripsWindow>(front, QStringLiteral("mnuylhs"), QStringLiteral("frm3Dtec"));
    QVERIFY(strips);
    QCOMPARE(strips->windowTitle(), QStringLiteral("参数走势"));
    // Five draws: the first strip holds them all, with their issues; the others stay empty.
    QCOMPARE(strips->strip(0)->chart().lines.size(), 1);
    QCOMPARE(strips->strip(0)->chart().lines[0].values.size(), size_t{5});
    QCOMPARE(strips->strip(0)->chart().pointLabels.first(), QStringLiteral("2025101"));
    QVERIFY(strips->strip(5)->chart().lines.isEmpty());
    QVERIFY(strips->findChild<QAction*>(QStringLiteral("mnuPrint")));
}

QTEST_MAIN(StatisticsWindowTest)
#include "test_statistics_windows.moc"
