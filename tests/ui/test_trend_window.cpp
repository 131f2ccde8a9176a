// The history analysis windows opened from the main window and driven through their named
// controls: captions, grids and bars per member, picks kept in step with the number board both
// ways, the banker pop-up, the two searches through the scripted prompter, the menus.
#include "analysis/ui/trend_bars.h"
#include "analysis/ui/trend_window.h"
#include "app/ui/main_window.h"
#include "history/history_import.h"
#include "support/trend_fixture.h"
#include "support/modal_answerer.h"
#include "workspace/ui/probability_bar.h"
#include "workspace/ui/qt_prompter.h"

#include <QAction>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QStringList& kDraws = kTrendDraws;
using Fixture = TrendFixture;

QModelIndex cellOf(QTableView* view, int row, int column) { return view->model()->index(row, column); }

void clickCell(QTableView* view, int row, int column, Qt::MouseButton button = Qt::LeftButton) {
    const QModelIndex i = cellOf(view, row, column);
    view->scrollTo(i);
    QTest::mouseClick(view->viewport(), button, {}, view->visualRect(i).center());
}

void doubleClickCell(QTableView* view, int row, int column) {
    const QModelIndex i = cellOf(view, row, column);
    view->scrollTo(i);
    // The view takes a double click on the cell it was pressed on: a click comes first.
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(i).center());
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(i).center());
}

}  // namespace

class TrendWindowTest : public QObject {
    Q_OBJECT
private slots:
    void membersOpenWithTheirCaptionsGridsAndBars();
    void openedOnTheNewestDrawsAndTheSummaryRows();
    void picksKeepInStepWithTheBoardBothWays();
    void bankerPopupAndALeftClickOnABanker();
    void searchesAskThroughThePrompterAndRewriteTheirRows();
    void anEmptyHistoryGivesTheSummaryRowsOnly();
    void realSearchBoxesComeOneAtATime();
};

void TrendWindowTest::membersOpenWithTheirCaptionsGridsAndBars() {
    Fixture f;
    QVERIFY(f.window->findChild<QAction*>(QStringLiteral("mnuSy"))->isEnabled());
    TrendWindow* both = f.openBy("Command48");
    QVERIFY(both);
    QCOMPARE(both->objectName(), QStringLiteral("frmpic"));
    QCOMPARE(both->windowTitle(), QStringLiteral("历史分析(号码走势图及概率分布图)"));
    QVERIFY(both->isVisible() && !both->isModal());
    auto* front = Fixture::child<QTableView>(both, QStringLiteral("MSFlexGrid1"));
    auto* back = Fixture::child<QTableView>(both, QStringLiteral("MSFlexGrid2"));
    QVERIFY(front && back);
    QCOMPARE(front->model()->rowCount(), 5 + 3);
    QCOMPARE(front->model()->columnCount(), 36);
    QCOMPARE(back->model()->columnCount(), 13);
    QCOMPARE(front->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("历史期号"));
    QCOMPARE(front->model()->index(6, 0).data().toString(), QStringLiteral("出现次(双击检索期数)"));
    // Bars: number 36 and back 13 lie above the zones; the value label's tip and text.
    QVERIFY(Fixture::child<QLabel>(both, QStringLiteral("Label6(34)"))->isVisibleTo(both));
    QVERIFY(!Fixture::child<QLabel>(both, QStringLiteral("Label6(35)"))->isVisibleTo(both));
    QVERIFY(!Fixture::child<QWidget>(both, QStringLiteral("Picture2(35)"))->isVisibleTo(both));
    QVERIFY(Fixture::child<QLabel>(both, QStringLiteral("Label6H(11)"))->isVisibleTo(both));
    QVERIFY(!Fixture::child<QLabel>(both, QStringLiteral("Label6H(12)"))->isVisibleTo(both));
    QVERIFY(!Fixture::child<QWidget>(both, QStringLiteral("Picture2H(12)"))->isVisibleTo(both));
    auto* value7 = Fixture::child<QLabel>(both, QStringLiteral("Label6(6)"));
    QCOMPARE(value7->toolTip(), QStringLiteral("可以用鼠标选号，鼠标反键选胆"));
    QCOMPARE(value7->text().toDouble(), f.session->stats().front.percent[7]);
    QCOMPARE(Fixture::child<QLabel>(both, QStringLiteral("Label4(6)"))->text(), QStringLiteral("07概率:"));
    auto* bar7 = Fixture::child<ProbabilityBar>(both, QStringLiteral("Picture2(6)"));
    QCOMPARE(bar7->barWidth(), 2 * f.session->stats().front.percent[7] - 2);
    auto* backBar3 = Fixture::child<ProbabilityBar>(both, QStringLiteral("Picture2H(2)"));
    QCOMPARE(backBar3->barWidth(), f.session->stats().back.percent[3] - 4);
    // The analysis menus are there, their entries off until their windows exist.
    auto* statistics = Fixture::child<QMenu>(both, QStringLiteral("mnuCxbt"));
    QVERIFY(statistics && statistics->menuAction()->isEnabled());
    QCOMPARE(Fixture::child<QAction>(both, QStringLiteral("mnuFljp(1)"))->text(),
             QStringLiteral("跳变统计(&J)"));
    QVERIFY(Fixture::child<QAction>(both, QStringLiteral("mnuCcha"))->isEnabled());
    QVERIFY(!Fixture::child<QAction>(both, QStringLiteral("mnuLianBz")));
    // The run statistics: off at first, three rows under the summary rows of both grids when on.
    auto* runs = Fixture::child<QAction>(both, QStringLiteral("mnuYlTongji"));
    QVERIFY(runs->isCheckable() && !runs->isChecked());
    auto* backGrid = Fixture::child<QTableView>(both, QStringLiteral("MSFlexGrid2"));
    const int backRows = backGrid->model()->rowCount();
    runs->trigger();
    QCOMPARE(backGrid->model()->rowCount(), backRows + 3);
    QCOMPARE(backGrid->model()->index(backRows + 2, 0).data().toString(), QStringLiteral("最大连出"));
    QCOMPARE(Fixture::child<QTableView>(both, QStringLiteral("MSFlexGrid1"))->model()->index(backRows, 0).data().toString(),
             QStringLiteral("平均遗漏"));
    runs->trigger();
    QCOMPARE(backGrid->model()->rowCount(), backRows);

    TrendWindow* frontOnly = f.openBy("Command9");
    QCOMPARE(frontOnly->windowTitle(), QStringLiteral("前区历史分析(号码走势图及概率分布图)"));
    QVERIFY(!Fixture::child<QTableView>(frontOnly, QStringLiteral("MSFlexGrid2")));
    auto* frontGrid = Fixture::child<QTableView>(frontOnly, QStringLiteral("MSFlexGrid1"));
    QCOMPARE(frontGrid->model()->index(6, 0).data().toString(), QStringLiteral("出现次数(双击指定检索期数)"));
    QVERIFY(Fixture::child<QAction>(frontOnly, QStringLiteral("mnuLianBz")));
    // The picking entries of the front window run the main window's commands.
    QVERIFY(Fixture::child<QAction>(frontOnly, QStringLiteral("mnuHihg"))->isEnabled());
    QVERIFY(Fixture::child<QMenu>(frontOnly, QStringLiteral("mnuGaiv")));

    TrendWindow* backOnly = f.openBy("Command10");
    QCOMPARE(backOnly->windowTitle(), QStringLiteral("后区历史分析(号码走势图及概率分布图)"));
    QVERIFY(!Fixture::child<QTableView>(backOnly, QStringLiteral("MSFlexGrid1")));
    QVERIFY(!Fixture::child<QLabel>(backOnly, QStringLiteral("Label6(0)")));
    QCOMPARE(Fixture::child<QTableView>(backOnly, QStringLiteral("MSFlexGrid2"))
                 ->model()
                 ->index(6, 0)
                 .data()
                 .toString(),
             QStringLiteral("出现次(双击检索期数)"));
    QCOMPARE(f.window->trendWindows().size(), 3);
    backOnly->close();
    QTRY_COMPARE(f.window->trendWindows().size(), 2);
}

void TrendWindowTest::openedOnTheNewestDrawsAndTheSummaryRows() {
    // Enough draws to scroll: 150, each its own issue.
    QStringList draws;
    for (int i = 0; i < 150; ++i)
        draws << QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8")
                     .arg(2020001 + i)
                     .arg(i % 7 + 1, 2, 10, QLatin1Char('0'))
                     .arg(i % 5 + 10)
                     .arg(i % 3 + 20)
                     .arg(i % 4 + 25)
                     .arg(i % 6 + 30)
                     .arg(i % 12 + 1, 2, 10, QLatin1Char('0'))
                     .arg(12 - i % 11, 2, 10, QLatin1Char('0'));
    Fixture f(draws);
    TrendWindow* w = f.openBy("Command48");
    QVERIFY(QTest::qWaitForWindowExposed(w));
    for (const char* name : {"MSFlexGrid1", "MSFlexGrid2"}) {
        auto* view = Fixture::child<QTableView>(w, QString::fromLatin1(name));
        QScrollBar* bar = view->verticalScrollBar();
        QVERIFY(bar->maximum() > 0);
        QTRY_COMPARE(bar->value(), bar->maximum());
        const int lastRow = view->model()->rowCount() - 1;
        QVERIFY(view->viewport()->rect().contains(view->visualRect(cellOf(view, lastRow, 1))));
        QVERIFY(view->viewport()->rect().intersects(view->visualRect(cellOf(view, 149, 1))));
    }
}

void TrendWindowTest::picksKeepInStepWithTheBoardBothWays() {
    Fixture f;
    TrendWindow* w = f.openBy("Command48");
    auto* front = Fixture::child<QTableView>(w, QStringLiteral("MSFlexGrid1"));
    auto* back = Fixture::child<QTableView>(w, QStringLiteral("MSFlexGrid2"));
    const int marks = 7;  // R + 3 in the grid, the third row after the draws here
    // A click on a value label picks on the main board at once.
    QTest::mouseClick(Fixture::child<QLabel>(w, QStringLiteral("Label6(2)")), Qt::LeftButton);
    QVERIFY(f.boardButton(QStringLiteral("Command1(3)"))->isChecked());
    QCOMPARE(f.window->findChild<QLabel*>(QStringLiteral("Label5"))->text(), QStringLiteral("1"));
    QCOMPARE(cellOf(front, marks, 3).data().toString(), QStringLiteral("√"));
    QVERIFY(Fixture::child<QLabel>(w, QStringLiteral("Label6(2)"))
                ->styleSheet()
                .contains(QStringLiteral("255,0,0")));
    // A click on the marks row picks too; clicking again takes the pick back.
    clickCell(back, marks, 4);
    QVERIFY(f.boardButton(QStringLiteral("Command2(4)"))->isChecked());
    QCOMPARE(cellOf(back, marks, 4).data().toString(), QStringLiteral("√"));
    clickCell(back, marks, 4);
    QVERIFY(!f.boardButton(QStringLiteral("Command2(4)"))->isChecked());
    QCOMPARE(cellOf(back, marks, 4).data().toString(), QString());
    // A pick on the main board shows in the open window.
    f.boardButton(QStringLiteral("Command1(9)"))->click();
    QCOMPARE(cellOf(front, marks, 9).data().toString(), QStringLiteral("√"));
    QVERIFY(Fixture::child<QLabel>(w, QStringLiteral("Label6(8)"))
                ->styleSheet()
                .contains(QStringLiteral("255,0,0")));
    // Six front and two back numbers picked here make the board's ticket count.
    for (int n : {11, 12, 13, 14})
        QTest::mouseClick(Fixture::child<QLabel>(w, QStringLiteral("Label6(%1)").arg(n - 1)), Qt::LeftButton);
    for (int n : {1, 2})
        QTest::mouseClick(Fixture::child<QLabel>(w, QStringLiteral("Label6H(%1)").arg(n - 1)),
                          Qt::LeftButton);
    QCOMPARE(f.window->statusBar()->findChild<QLabel*>(QStringLiteral("StatusBar1.Panel3"))->text(),
             QStringLiteral("前区：6码 后区：2码 共计：6注"));
}

void TrendWindowTest::bankerPopupAndALeftClickOnABanker() {
    Fixture f;
    TrendWindow* w = f.openBy("Command9");
    auto* grid = Fixture::child<QTableView>(w, QStringLiteral("MSFlexGrid1"));
    auto* popup = Fixture::child<QMenu>(w, QStringLiteral("mnuDt"));
    QVERIFY(popup);
    QCOMPARE(popup->title(), QStringLiteral("胆拖模式"));
    auto* item = Fixture::child<QAction>(w, QStringLiteral("munDan"));
    QCOMPARE(item->text(), QStringLiteral("胆-选择/取消"));
    // A right click on the value label opens the pop-up for that number.
    auto* value5 = Fixture::child<QLabel>(w, QStringLiteral("Label6(4)"));
    QTest::mouseClick(value5, Qt::RightButton);
    QTRY_VERIFY(popup->isVisible());
    item->trigger();
    popup->close();
    QCOMPARE(cellOf(grid, 7, 5).data().toString(), QStringLiteral("◎"));
    QVERIFY(value5->styleSheet().contains(QStringLiteral("0,255,0")));
    QVERIFY(f.boardButton(QStringLiteral("Command1(5)"))->styleSheet().contains(QStringLiteral("0,255,0")));
    QCOMPARE(f.window->findChild<QLabel*>(QStringLiteral("Label19"))->text(), QStringLiteral("1"));
    // A left click on the banker makes it a plain pick: the "◎" goes, the "√" comes.
    QTest::mouseClick(value5, Qt::LeftButton);
    QCOMPARE(cellOf(grid, 7, 5).data().toString(), QStringLiteral("√"));
    QCOMPARE(f.window->findChild<QLabel*>(QStringLiteral("Label19"))->text(), QStringLiteral("0"));
    QCOMPARE(f.window->findChild<QLabel*>(QStringLiteral("Label5"))->text(), QStringLiteral("1"));
    QVERIFY(value5->styleSheet().contains(QStringLiteral("255,0,0")));
    // A right click on the marks row of another number: that number becomes the banker.
    clickCell(grid, 7, 20, Qt::RightButton);
    QTRY_VERIFY(popup->isVisible());
    item->trigger();
    popup->close();
    QCOMPARE(cellOf(grid, 7, 20).data().toString(), QStringLiteral("◎"));
    QVERIFY(f.session->board().front.bankerFlag[20]);
}

void TrendWindowTest::searchesAskThroughThePrompterAndRewriteTheirRows() {
    Fixture f;
    TrendWindow* w = f.openBy("Command48");
    auto* front = Fixture::child<QTableView>(w, QStringLiteral("MSFlexGrid1"));
    const int omissions = 5, appearances = 6;
    QCOMPARE(cellOf(front, appearances, 7).data().toString(), QStringLiteral("3"));
    // Any row but the omission row: the count search. Wrong answers are told, then 2 draws.
    f.prompter.clear();
    f.prompter.answer(QStringLiteral("两期")).answer(QStringLiteral("0")).answer(QStringLiteral("2"));
    doubleClickCell(front, 1, 3);
    QCOMPARE(f.prompter.messages(),
             (QStringList{QStringLiteral("请输入数字"), QStringLiteral("请输入一个正数")}));
    QCOMPARE(f.prompter.asked().first().title, QStringLiteral("历史次数检索"));
    // The latest two draws: 2025104 and 2025105 hold 07 once and 10 once, 01 not at all.
    QCOMPARE(cellOf(front, appearances, 7).data().toString(), QStringLiteral("1"));
    QCOMPARE(cellOf(front, appearances, 10).data().toString(), QStringLiteral("1"));
    QCOMPARE(cellOf(front, appearances, 1).data().toString(), QStringLiteral("0"));
    // A count of R - 1 counts all draws again.
    f.prompter.answer(QStringLiteral("4"));
    doubleClickCell(front, appearances, 3);
    QCOMPARE(cellOf(front, appearances, 7).data().toString(), QStringLiteral("3"));

    // The omission row: the issue search. An unknown issue is told; 2025102's row is shown and
    // becomes the current omissions.
    QCOMPARE(cellOf(front, omissions, 1).data().toString(), QStringLiteral("4"));
    f.prompter.clear();
    f.prompter.answer(QStringLiteral("2025199")).answer(QStringLiteral("2025102"));
    doubleClickCell(front, omissions, 2);
    QCOMPARE(f.prompter.messages(), QStringList{QStringLiteral("请输入一个正数")});
    QCOMPARE(f.prompter.asked().first().text,
             QStringLiteral("检索指定历史期号的遗漏期数。请输入过滤检索历史期号。"));
    QCOMPARE(cellOf(front, omissions, 1).data().toString(), QStringLiteral("1"));
    QCOMPARE(cellOf(front, omissions, 7).data().toString(), QStringLiteral("0"));
    QCOMPARE(f.session->stats().front.omission[1], int16_t(1));
    // "0" ends without a change.
    f.prompter.answer(QStringLiteral("0"));
    doubleClickCell(front, omissions, 2);
    QCOMPARE(cellOf(front, omissions, 1).data().toString(), QStringLiteral("1"));
}

void TrendWindowTest::anEmptyHistoryGivesTheSummaryRowsOnly() {
    Fixture f(QStringList{});
    // No history: the commands are off; the window itself still shows its four rows.
    QVERIFY(!f.window->findChild<QPushButton*>(QStringLiteral("Command48"))->isEnabled());
    TrendWindow* w = f.window->openTrend(TrendMember::BackZone);
    auto* grid = Fixture::child<QTableView>(w, QStringLiteral("MSFlexGrid2"));
    QCOMPARE(grid->model()->rowCount(), 3);
    QCOMPARE(grid->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("历史期号"));
    QCOMPARE(grid->model()->index(0, 0).data().toString(), QStringLiteral("遗漏期数"));
}

void TrendWindowTest::realSearchBoxesComeOneAtATime() {
    QtPrompter qtPrompter;
    Fixture f(kDraws, &qtPrompter);
    qtPrompter.setParent(f.window.get());
    f.window->show();
    TrendWindow* w = f.openBy("Command9");
    auto* grid = Fixture::child<QTableView>(w, QStringLiteral("MSFlexGrid1"));
    // The input box, then its error alone, then the box again.
    ModalAnswerer answerer;
    answerer.expect(QStringLiteral("历史次数检索"), ModalAnswerer::type(QStringLiteral("三")))
        .expect(QStringLiteral("请输入数字"), ModalAnswerer::press(QMessageBox::Ok))
        .expect(QStringLiteral("历史次数检索"), ModalAnswerer::type(QStringLiteral("1")));
    doubleClickCell(grid, 2, 3);
    QVERIFY2(answerer.allAnswered() && answerer.failures().isEmpty(),
             qPrintable(answerer.failures().join(QLatin1Char('\n'))));
    // The latest draw alone: 07 once, 01 not at all.
    QCOMPARE(cellOf(grid, 6, 7).data().toString(), QStringLiteral("1"));
    QCOMPARE(cellOf(grid, 6, 1).data().toString(), QStringLiteral("0"));
}

QTEST_MAIN(TrendWindowTest)
#include "test_trend_window.moc"
