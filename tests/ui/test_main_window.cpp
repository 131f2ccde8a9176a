// The main window shell: start-up from the session, the menu map, the rule and stability
// menus, the print setting, and exit.
#include "app/ui/main_window.h"
#include "picking/ui/zone_board_widget.h"
#include "support/main_window_fixture.h"
#include "support/window_shot.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTest>

#include <memory>

namespace {
using Fixture = MainWindowFixture;

QStringList checkedStabilityItems(MainWindow& w) {
    QStringList out;
    for (int i = 1; i <= 12; ++i)
        if (w.findChild<QAction*>(QStringLiteral("meuSpd%1").arg(i))->isChecked())
            out << QStringLiteral("meuSpd%1").arg(i);
    return out;
}
}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT
private slots:
    void emptyWorkspaceOpensWithDefaults();
    void infiniteStabilityChecksNothingAfterRestart();
    void menuMapHasEveryItem();
    void frontSizeChangeShowsButtonsAndIsSaved();
    void historyFillsTheGridWithTheNewestInView();
    void printSettingKeepsOnlyCounts();
    void aboutBoxShowsTheVersion();
    void closingSavesTheSpinValues();
    void boardClicksReachTheLogicAndTheStatusBar();
};

void MainWindowTest::emptyWorkspaceOpensWithDefaults() {
    Fixture f;
    MainWindow* w = f.open();
    QVERIFY(w);
    QCOMPARE(w->windowTitle(), QStringLiteral("鹤鸣轩.明算双区大乐透彩票助理"));
    QCOMPARE(f.session->frontSize(), 35);
    QCOMPARE(f.session->backSize(), 12);
    QCOMPARE(checkedStabilityItems(*w), QStringList{QStringLiteral("meuSpd8")});
    QVERIFY(w->findChild<QAction*>(QStringLiteral("meuS(35)"))->isChecked());
    QVERIFY(w->findChild<QAction*>(QStringLiteral("meuSHou(12)"))->isChecked());
    QVERIFY(w->findChild<QAction*>(QStringLiteral("meuDanxuan(5)"))->isChecked());
    QVERIFY(!w->findChild<QAction*>(QStringLiteral("meuAgarr"))->isEnabled());
    // An empty history: the grid has only its header and the delete commands are off.
    auto* grid = w->findChild<QTableView*>(QStringLiteral("MSFlexGrid1"));
    QVERIFY(grid);
    QCOMPARE(grid->model()->rowCount(), 0);
    QCOMPARE(grid->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("序数"));
    QCOMPARE(grid->model()->headerData(8, Qt::Horizontal).toString(), QStringLiteral("后2位"));
    QVERIFY(!w->findChild<QPushButton*>(QStringLiteral("Command44"))->isEnabled());
    QVERIFY(!w->findChild<QAction*>(QStringLiteral("mnuDelast"))->isEnabled());
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("Label12"))->text(), QStringLiteral("在右输入1 期历史号码:"));
    // 36 front buttons exist and those above 35 are hidden; the back shows 12 of 24.
    QVERIFY(w->findChild<QPushButton*>(QStringLiteral("Command1(35)"))->isVisibleTo(w));
    QVERIFY(!w->findChild<QPushButton*>(QStringLiteral("Command1(36)"))->isVisibleTo(w));
    QVERIFY(w->findChild<QPushButton*>(QStringLiteral("Command2(12)"))->isVisibleTo(w));
    QVERIFY(!w->findChild<QPushButton*>(QStringLiteral("Command2(13)"))->isVisibleTo(w));
    QCOMPARE(f.session->positionCentres()[1], 3.5);
    QCOMPARE(f.session->positionCentres()[5], 31.5);
    QCOMPARE(f.session->positionCentres()[6], 3.0);
    QCOMPARE(f.session->positionCentres()[7], 9.0);
}

void MainWindowTest::infiniteStabilityChecksNothingAfterRestart() {
    Fixture f;
    {
        MainWindow* w = f.open();
        w->findChild<QAction*>(QStringLiteral("meuSpd8"))->trigger();
        QCOMPARE(f.home.settings.readInt(setting_keys::StabilityAtLoad, QStringLiteral("测试")), 8000);
        QCOMPARE(checkedStabilityItems(*w), QStringList{QStringLiteral("meuSpd8")});
    }
    MainWindow* w = f.open();
    QVERIFY(checkedStabilityItems(*w).isEmpty());
    // Another value checks its own item after a restart.
    w->findChild<QAction*>(QStringLiteral("meuSpd3"))->trigger();
    w = f.open();
    QCOMPARE(checkedStabilityItems(*w), QStringList{QStringLiteral("meuSpd3")});
}

void MainWindowTest::menuMapHasEveryItem() {
    Fixture f;
    MainWindow* w = f.open();
    const QList<std::pair<const char*, const char*>> items = {
        {"mnuCall", "调用历史选号号码(&C)"},   {"mnuYLowHou", "选择遗漏低次号码(&W)"},
        {"meuExt", "退出软件(&Q)"},            {"mnuNewol", "历史号码网上在线更新(&L)"},
        {"meuCln", "清空历史号码列表(&C)"},    {"mnufsInq", "前区复式中奖查询(&Q)"},
        {"mnuCallRote", "调用上次旋转矩阵      组合排列"},
        {"meuDanxuan(5)", "5数单选(&V)"},      {"meuDanxuan(16)", "16数复选(&I)"},
        {"mnuDtuo(16)", "16拖(&Q)"},           {"meuDanxuanHou(8)", "8数复选(&E)"},
        {"mnuDtuoHou(8)", "8拖(&I)"},          {"meuRt(9)", " 9数选4中3(&P)"},
        {"meuRt(22)", "22数选4中3(&H)"},       {"mnuRt54", "中5保4(&F)"},
        {"mnuZb(5)", "中5保5(&V)"},            {"F6RT76", "中7保6(&S)"},
        {"mnuDt8lst", "前区胆拖6复式排列(&X)"}, {"mnuName", "用户名设置(&N)"},
        {"meuS(28)", "28选5"},                 {"meuSHou(24)", "24选2"},
        {"meuPlc", "中奖规则(&P)"},            {"mnuPtset", "打印设置(&R)"},
        {"mnuYsfx", "运势分析(&S)"},           {"meuAbt", "关于软件(&B)"},
        {"meuSpd12", "6000(&X)"},              {"meuSpd8", "无穷大(&I)"}};
    for (const auto& [name, caption] : items) {
        QAction* a = w->findChild<QAction*>(QString::fromLatin1(name));
        QVERIFY2(a, name);
        QCOMPARE(a->text(), QString::fromUtf8(caption));
    }
    // Menus in their order.
    QStringList tops;
    for (QAction* a : w->menuBar()->actions()) tops << a->text();
    QCOMPARE(tops, QStringList({"选号管理(&T)", "摇奖控制(&O)", "历史管理(&H)", "功能窗口(&D)", "组号方式(&M)",
                                "用户设置(&S)", "附赠工具(&B)", "帮助(&H)"}));
    // Windows of later work are present but disabled.
    QVERIFY(!w->findChild<QAction*>(QStringLiteral("mnuLst"))->isEnabled());
    QVERIFY(w->findChild<QAction*>(QStringLiteral("mnuName"))->isEnabled());
}

void MainWindowTest::frontSizeChangeShowsButtonsAndIsSaved() {
    Fixture f;
    MainWindow* w = f.open();
    w->findChild<QAction*>(QStringLiteral("meuS(36)"))->trigger();
    QVERIFY(w->findChild<QAction*>(QStringLiteral("meuS(36)"))->isChecked());
    QVERIFY(!w->findChild<QAction*>(QStringLiteral("meuS(35)"))->isChecked());
    QCOMPARE(f.home.settings.readInt(setting_keys::FrontSize, QStringLiteral("测试")), 36);
    QCOMPARE(f.session->positionCentres()[1], 3.6);
    for (int n = 1; n <= 36; ++n)
        QVERIFY(w->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->isVisibleTo(w));
    w->findChild<QAction*>(QStringLiteral("meuSHou(24)"))->trigger();
    QCOMPARE(f.session->positionCentres()[7], 18.0);
    // A restart reads the sizes back: all 36 buttons show.
    w = f.open();
    QCOMPARE(f.session->frontSize(), 36);
    QVERIFY(w->findChild<QPushButton*>(QStringLiteral("Command1(36)"))->isVisibleTo(w));
    QVERIFY(w->findChild<QPushButton*>(QStringLiteral("Command2(24)"))->isVisibleTo(w));
}

void MainWindowTest::historyFillsTheGridWithTheNewestInView() {
    Fixture f;
    QVERIFY(f.open());
    SqliteDb& db = f.session->historyDb();
    for (int i = 1; i <= 60; ++i) {
        QVERIFY(db.exec(QStringLiteral("INSERT INTO fig(Idx,fig0,fig1,fig2,fig3,fig4,fig5) VALUES (?1,?2,1,2,3,4,5)"),
                        {i, 2026000 + i}));
        QVERIFY(db.exec(QStringLiteral("INSERT INTO fighou(Idx,fig0,fig1,fig2) VALUES (?1,?2,6,7)"), {i, 2026000 + i}));
    }
    MainWindow* w = f.open();
    w->resize(1366, 740);
    w->show();
    QVERIFY(QTest::qWaitForWindowExposed(w));
    auto* grid = w->findChild<QTableView*>(QStringLiteral("MSFlexGrid1"));
    QCOMPARE(grid->model()->rowCount(), 60);
    QCOMPARE(grid->model()->index(59, 1).data().toInt(), 2026060);
    QCOMPARE(grid->model()->index(59, 8).data().toString(), QStringLiteral("07"));
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("Label12"))->text(), QStringLiteral("在右输入2026061 期历史号码:"));
    // The newest draw is in view.
    QTRY_VERIFY(grid->rowAt(grid->viewport()->height() - 1) == 59 || grid->rowAt(0) == 59 ||
                grid->visualRect(grid->model()->index(59, 0)).isValid());
    QVERIFY(grid->viewport()->rect().intersects(grid->visualRect(grid->model()->index(59, 0))));
    saveShot(w, QStringLiteral("main_window"));
}

void MainWindowTest::printSettingKeepsOnlyCounts() {
    Fixture f;
    MainWindow* w = f.open();
    f.prompter.answer(QStringLiteral("6"));
    w->findChild<QAction*>(QStringLiteral("mnuPtset"))->trigger();
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("打印设置"));
    QCOMPARE(f.prompter.asked().last().text, QStringLiteral("请输入打印的时候每一行的注数"));
    QCOMPARE(f.home.settings.readInt(setting_keys::TicketsPerLine, QStringLiteral("测试")), 6);
    f.prompter.answer(QStringLiteral("abc"));
    w->findChild<QAction*>(QStringLiteral("mnuPtset"))->trigger();
    QCOMPARE(f.session->ticketsPerLine(), 6);
}

void MainWindowTest::aboutBoxShowsTheVersion() {
    Fixture f;
    MainWindow* w = f.open();
    QCoreApplication::setApplicationVersion(QStringLiteral("7.3.1"));
    w->findChild<QAction*>(QStringLiteral("meuAbt"))->trigger();
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("关于软件"));
    QVERIFY(f.prompter.asked().last().text.contains(QStringLiteral("版本 7.3.1")));
}

void MainWindowTest::closingSavesTheSpinValues() {
    Fixture f;
    MainWindow* w = f.open();
    f.session->spinValues = {1, 2, 3, 4, 5, 6.5};
    w->show();
    w->close();
    QCOMPARE(f.home.settings.read(setting_keys::SpinValue, QStringLiteral("测试"), 6), QStringLiteral("6.5"));
    QCOMPARE(f.home.settings.read(setting_keys::SpinValue, QStringLiteral("测试"), 1), QStringLiteral("1"));
}

void MainWindowTest::boardClicksReachTheLogicAndTheStatusBar() {
    Fixture f;
    MainWindow* w = f.open();
    w->show();
    auto click = [&w](const QString& name, Qt::MouseButton button = Qt::LeftButton) {
        auto* b = w->findChild<QPushButton*>(name);
        QVERIFY2(b, qPrintable(name));
        QTest::mouseClick(b, button);
    };
    for (int n = 1; n <= 6; ++n) click(QStringLiteral("Command1(%1)").arg(n));
    click(QStringLiteral("Command2(3)"));
    click(QStringLiteral("Command2(9)"));
    auto* panel3 = w->findChild<QLabel*>(QStringLiteral("StatusBar1.Panel3"));
    QCOMPARE(panel3->text(), QStringLiteral("前区：6码 后区：2码 共计：6注"));
    QVERIFY(w->findChild<QPushButton*>(QStringLiteral("Command1(4)"))->isChecked());
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("Label5"))->text(), QStringLiteral("6"));
    QCOMPARE(f.session->board().front.pickCount, 6);

    // Right click makes the number the popup's target; 胆-选择/取消 turns it into a banker.
    click(QStringLiteral("Command1(7)"), Qt::RightButton);
    auto* dan = w->findChild<QAction*>(QStringLiteral("mnuDan"));
    QVERIFY(dan);
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    dan->trigger();
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("Label19"))->text(), QStringLiteral("1"));
    QVERIFY(f.session->board().front.bankerFlag[7]);

    // 重选 of the front zone clears it.
    click(QStringLiteral("Command45"));
    QCOMPARE(f.session->board().front.pickCount, 0);
    QCOMPARE(f.session->board().front.bankerCount, 0);
    QVERIFY(!w->findChild<QPushButton*>(QStringLiteral("Command1(4)"))->isChecked());
    QCOMPARE(f.session->board().back.pickCount, 2);
}

QTEST_MAIN(MainWindowTest)
#include "test_main_window.moc"
