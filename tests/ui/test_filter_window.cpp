// The filter window opened from the board: caption, first view, the four actions, the right
// button's popup, the zone tabs, and reopening the stored table with mnuCallfd.
#include "app/ui/main_menu.h"
#include "app/ui/main_window.h"
#include "filter/ui/filter_window.h"
#include "support/main_window_fixture.h"
#include "support/window_shot.h"
#include "tools/ui/ticket_preview.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>
#include <QTableView>
#include <QTest>

#include <memory>

namespace {
const QString kHead = QStringLiteral("复选组合情况排列总表（每页至多显示10000注，双击任意注可删除）   合计：");

struct Fixture : MainWindowFixture {
    Fixture() {
        open();
        window->show();
    }
    void pick(const QString& button, const QList<int>& numbers) {
        for (int n : numbers) window->findChild<QPushButton*>(QStringLiteral("%1(%2)").arg(button).arg(n))->click();
    }
    FilterWindow* openGAgan() {
        // Opening 组号方式 brings its entries in line with the picks.
        emit window->menuActions().playModesMenu->aboutToShow();
        if (!window->findChild<QAction*>(QStringLiteral("mnuLst"))->isEnabled()) return nullptr;
        window->findChild<QAction*>(QStringLiteral("mnuLst"))->trigger();
        return window->filterWindows().isEmpty() ? nullptr : window->filterWindows().last().data();
    }
};

QPushButton* find(QWidget* w, const char* name) { return w->findChild<QPushButton*>(QString::fromLatin1(name)); }
}  // namespace

class FilterWindowTest : public QObject {
    Q_OBJECT
private slots:
    void opensOnTheBoardsPicks();
    void zoneTabsAdaptTheWindow();
    void rightButtonOfInvertOpensThePopup();
    void cmdPrintPreviewsTheLiveTickets();
};

void FilterWindowTest::opensOnTheBoardsPicks() {
    Fixture f;
    // No table yet: the prize check of zuhe is not offered.
    emit f.window->menuActions().windowsMenu->aboutToShow();
    QVERIFY(!f.window->findChild<QAction*>(QStringLiteral("mnuzhInq"))->isEnabled());
    f.pick(QStringLiteral("Command1"), {3, 9, 14, 22, 27, 31, 35});
    f.pick(QStringLiteral("Command2"), {2, 7, 11});
    FilterWindow* w = f.openGAgan();
    QVERIFY(w);
    QCOMPARE(w->objectName(), QStringLiteral("GAgan"));
    QCOMPARE(w->windowTitle(), kHead + QStringLiteral("63注"));  // C(7,5) * C(3,2)
    auto* grid = w->findChild<QTableView*>(QStringLiteral("MSFlexGrid1"));
    QCOMPARE(grid->model()->rowCount(), 63);
    QCOMPARE(grid->model()->index(0, 0).data().toInt(), 1);
    w->resize(1366, 740);
    QVERIFY(QTest::qWaitForWindowExposed(w));
    saveShot(w, QStringLiteral("filter_window"));

    find(w, "Command2")->click();  // invert all: every row dies
    QCOMPARE(w->windowTitle(), kHead + QStringLiteral("0注"));
    QCOMPARE(grid->model()->rowCount(), 0);
    find(w, "cmdRetn")->click();  // the rows the inversion killed come back
    QCOMPARE(w->windowTitle(), kHead + QStringLiteral("63注"));
    find(w, "Command3")->click();
    find(w, "Command3")->click();
    QCOMPARE(w->windowTitle(), kHead + QStringLiteral("63注"));
    find(w, "Command2")->click();
    QCOMPARE(w->windowTitle(), kHead + QStringLiteral("0注"));

    // Closing writes the record; mnuCallfd finds the same flags again.
    w->close();
    QTRY_VERIFY(f.window->filterWindows().isEmpty());
    f.window->findChild<QAction*>(QStringLiteral("mnuCallfd"))->trigger();
    QCOMPARE(f.window->filterWindows().size(), 1);
    FilterWindow* again = f.window->filterWindows().last();
    QCOMPARE(again->objectName(), QStringLiteral("GAganMb"));
    // The first view counts the table's first stretch of ids, dead rows included.
    QCOMPARE(again->windowTitle(), kHead + QStringLiteral("63注"));
    QCOMPARE(again->workspace().table().liveCount(), uint64_t{0});
    // Every action wrote its prefix in front of the last: 全部反选, then 上次反选 twice.
    QCOMPARE(again->workspace().table().reasonText(5), QStringLiteral("全部反选-上次反选-上次反选-"));
    find(again, "Command1")->click();
    QCOMPARE(again->windowTitle(), kHead + QStringLiteral("63注"));
    again->close();
    emit f.window->menuActions().windowsMenu->aboutToShow();
    QVERIFY(f.window->findChild<QAction*>(QStringLiteral("mnuzhInq"))->isEnabled());
    QVERIFY(!f.window->findChild<QAction*>(QStringLiteral("mnufsInq"))->isEnabled());
}

void FilterWindowTest::zoneTabsAdaptTheWindow() {
    Fixture f;
    f.pick(QStringLiteral("Command1"), {1, 2, 3, 4, 5, 6});
    f.pick(QStringLiteral("Command2"), {1, 2});
    FilterWindow* w = f.openGAgan();
    QVERIFY(w);
    auto* tabs = w->findChild<QTabBar*>(QStringLiteral("TabStrip1"));
    QVERIFY(tabs);
    tabs->setCurrentIndex(1);
    QCOMPARE(w->workspace().zoneScope, int16_t{2});
    QCOMPARE(find(w, "Option28")->text(), QStringLiteral("历史同2号滤"));
    QCOMPARE(find(w, "Option26")->text(), QStringLiteral("历史同1号滤"));
    QVERIFY(w->findChild<QCheckBox*>(QStringLiteral("ChkBt(2)"))->isEnabled());
    QVERIFY(!w->findChild<QCheckBox*>(QStringLiteral("ChkBt(3)"))->isEnabled());
    QVERIFY(!find(w, "Option9")->isEnabled());
    QVERIFY(find(w, "Option23")->isEnabled());
    tabs->setCurrentIndex(2);
    QCOMPARE(find(w, "Option27")->text(), QStringLiteral("历史同6号滤"));
    QCOMPARE(find(w, "Option7")->text(), QStringLiteral("前后区同号"));
    QVERIFY(!w->findChild<QCheckBox*>(QStringLiteral("ChkBt(1)"))->isEnabled());
    QVERIFY(w->findChild<QCheckBox*>(QStringLiteral("ChkBt(1)"))->isChecked());
    QVERIFY(!find(w, "Option6")->isEnabled());
    QVERIFY(find(w, "Option13")->isHidden());
    tabs->setCurrentIndex(0);
    QCOMPARE(find(w, "Option7")->text(), QStringLiteral("首尾差值"));
    QVERIFY(!find(w, "Option13")->isHidden());
    w->close();
}

void FilterWindowTest::rightButtonOfInvertOpensThePopup() {
    Fixture f;
    f.pick(QStringLiteral("Command1"), {1, 2, 3, 4, 5, 6});
    f.pick(QStringLiteral("Command2"), {1, 2});
    FilterWindow* w = f.openGAgan();
    QVERIFY(w);
    QPushButton* invertLastButton = find(w, "Command3");
    emit invertLastButton->customContextMenuRequested(QPoint(2, 2));
    QCOMPARE(w->workspace().stepCode(), int16_t{1});
    auto* popup = w->findChild<QMenu*>(QStringLiteral("mnuAdm"));
    QVERIFY(popup);
    QTRY_VERIFY(popup->isVisible());
    popup->close();
    // The right button ran no statement.
    QCOMPARE(w->windowTitle(), kHead + QStringLiteral("6注"));
    emit find(w, "Command2")->customContextMenuRequested(QPoint(2, 2));
    QCOMPARE(w->workspace().stepCode(), int16_t{2});
    if (QWidget* p = QApplication::activePopupWidget()) p->close();
    w->close();
}

QTEST_MAIN(FilterWindowTest)
#include "test_filter_window.moc"

// CmdPrint: the live tickets in the print preview, the workspace's tickets to the line, for the
// draw after the newest.
void FilterWindowTest::cmdPrintPreviewsTheLiveTickets() {
    Fixture f;
    f.pick(QStringLiteral("Command1"), {3, 9, 14, 22, 27, 31, 35});
    f.pick(QStringLiteral("Command2"), {2, 7, 11});
    FilterWindow* w = f.openGAgan();
    QVERIFY(w);
    w->workspace().edit().table().filteredOut().set(0);  // the first ticket is not kept
    find(w, "CmdPrint")->click();
    TicketPreview* preview = nullptr;
    QTRY_VERIFY((preview = w->findChild<TicketPreview*>()) != nullptr);
    const ticket_print::Document& d = preview->document();
    QCOMPARE(d.forIssue, QStringLiteral("购买期数:%1").arg(f.session->history().lastIssue() + 1));
    QCOMPARE(d.lines.size(), 16);  // 62 tickets, four to the line
    // Five numbers a ticket: the tickets of one front and three back pairs read alike.
    QVERIFY2(d.lines[0].startsWith(QStringLiteral("<1>03 09 14 22 27    <2>03 09 14 22 27    <3>03 09 14 22 31")),
             qPrintable(d.lines[0]));
    QVERIFY(d.lines[15].startsWith(QStringLiteral("<61>")));
    QVERIFY(preview->isVisible());
    preview->close();
}
