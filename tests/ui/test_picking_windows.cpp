// The picking commands of 选号管理 driven through the main window's menu and their windows'
// named controls: the scope dialog, the saved selections list with its pop-up menu, the
// selection template window, and the front trend window's entries on the same board.
#include "analysis/ui/trend_window.h"
#include "app/ui/main_window.h"
#include "history/history_import.h"
#include "picking/frequency_picks.h"
#include "picking/saved_selections.h"
#include "picking/selection_template.h"
#include "picking/ui/picking_commands.h"
#include "picking/ui/picking_dialogs.h"
#include "picking/ui/saved_selections_dialog.h"
#include "picking/ui/selection_template_window.h"
#include "support/main_window_fixture.h"
#include "support/window_shot.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <set>

namespace {

using namespace frequency_picks;

// Runs `answer` on the modal dialog named `name` once it is the active modal widget.
void whenModal(const QString& name, std::function<void(QWidget*)> answer, int* answered) {
    auto* timer = new QTimer;
    timer->setInterval(30);
    QObject::connect(timer, &QTimer::timeout, [timer, name, answer, answered] {
        QWidget* w = QApplication::activeModalWidget();
        if (!w || w->objectName() != name || !w->isVisible()) return;
        timer->stop();
        timer->deleteLater();
        saveShot(w, name);
        answer(w);
        ++*answered;
    });
    timer->start();
}

void doubleClickRow(QTableWidget* grid, int row) {
    const QRect cell = grid->visualRect(grid->model()->index(row, 0));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
}

std::set<int> picks(const ZoneBoardState& s) {
    std::set<int> out;
    for (int i = 1; i <= s.pickCount; ++i) out.insert(s.pickList[static_cast<size_t>(i)]);
    return out;
}

// The main window on a workspace with the bundled history.
struct Fixture : MainWindowFixture {
    Fixture() {
        open([this](Session& s) { HistoryImport(s, prompter).importFile(HistoryImport::Mode::Whole, bundledHistory()); });
        window->resize(1366, 740);
        window->show();
    }
    Session& s() { return *session; }
    void trigger(const char* given) {
        QAction* a = window->findChild<QAction*>(QString::fromLatin1(given));
        QVERIFY2(a && a->isEnabled(), given);
        a->trigger();
    }
    bool pressed(const QString& button) const {
        auto* b = window->findChild<QPushButton*>(button);
        return b && b->isChecked();
    }
};

// Scripted choices in place of the modal windows, for the template window's own test.
struct ScriptedDialogs : PickingDialogs {
    int row = 0;
    Scope askScope(const DrawHistory&) override { return Scope::allHistory(); }
    int chooseSavedSelection(SavedSelections&, Prompter&) override { return row; }
    void openTemplates(PickingCommands&) override {}
};

}  // namespace

class PickingWindowsTest : public QObject {
    Q_OBJECT
private slots:
    void frequencyPickAsksTheCountThenTheScope();
    void omissionPicksAndABadAnswerPickNothing();
    void savedSelectionsSaveRecallRenameAndDelete();
    void templateWindowAddsDeletesAndRuns();
    void templateTableThatCannotBeRestoredEndsTheProgram();
    void frontTrendWindowPicksOnTheMainBoard();
    void theBoardComesBackWithTheWorkspace();
};

void PickingWindowsTest::frequencyPickAsksTheCountThenTheScope() {
    Fixture f;
    f.prompter.answer(QStringLiteral("4"));
    int answered = 0;
    whenModal(QStringLiteral("frmXhfw"), [](QWidget* w) {
        QCOMPARE(w->findChild<QLineEdit*>(QStringLiteral("Text1(0)"))->text(), QStringLiteral("2007001"));
        QCOMPARE(w->findChild<QLineEdit*>(QStringLiteral("Text1(2)"))->text(), QStringLiteral("100"));
        w->findChild<QRadioButton*>(QStringLiteral("Option1(2)"))->click();
        w->findChild<QLineEdit*>(QStringLiteral("Text1(2)"))->setText(QStringLiteral("30"));
        w->findChild<QPushButton*>(QStringLiteral("Command1"))->click();
    }, &answered);
    f.trigger("mnuHihg");
    QCOMPARE(answered, 1);
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("高频选号"));
    const std::vector<int> order = ranked(countInScope(f.s().history(), Zone::Front, 35, Scope::last(30)),
                                          Rank::MostFrequent);
    QCOMPARE(picks(f.s().board().front), (std::set<int>{order[0], order[1], order[2], order[3]}));
    // The board on screen shows them.
    QVERIFY(f.pressed(QStringLiteral("Command1(%1)").arg(order[0])));
    QCOMPARE(f.window->findChild<QLabel*>(QStringLiteral("Label5"))->text(), QStringLiteral("4"));
    saveShot(f.window.get(), QStringLiteral("main_after_frequency"));

    // An answer that is no number still shows the scope and picks nothing.
    f.prompter.answer(QStringLiteral("many"));
    whenModal(QStringLiteral("frmXhfw"), [](QWidget* w) { static_cast<QDialog*>(w)->accept(); }, &answered);
    f.trigger("mnuLowHou");
    QCOMPARE(answered, 2);
    QCOMPARE(f.s().board().back.pickCount, int16_t(0));
}

void PickingWindowsTest::omissionPicksAndABadAnswerPickNothing() {
    Fixture f;
    f.prompter.answer(QStringLiteral("0"));
    f.trigger("mnuYLowHou");
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("低次遗漏选号"));
    std::set<int> expected;
    for (int n = 1; n <= 12; ++n)
        if (f.s().stats().back.omission[n] <= 0) expected.insert(n);
    QCOMPARE(picks(f.s().board().back), expected);
    QCOMPARE(expected.size(), size_t(2));

    f.prompter.cancel();
    f.trigger("mnuYHigh");
    QCOMPARE(f.s().board().front.pickCount, int16_t(0));
    QVERIFY(f.prompter.messages().isEmpty());
}

void PickingWindowsTest::savedSelectionsSaveRecallRenameAndDelete() {
    Fixture f;
    NumberBoard& board = f.window->board();
    for (int n : {3, 14, 25}) board.programClick(Zone::Front, n);
    board.programClick(Zone::Back, 7);
    f.prompter.answer(QStringLiteral("第一"));
    f.trigger("mnuSave");
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("选号结果保存"));
    board.reselect(Zone::Front);
    board.programClick(Zone::Front, 30);
    f.prompter.answer(QStringLiteral("第二"));
    f.trigger("mnuSave");
    f.prompter.answer(QVariant());  // cancelled: nothing saved
    f.trigger("mnuSave");
    QCOMPARE(SavedSelections(f.s().savedPicksDb()).list().size(), 2);

    // 调用: the list window, a double click on its first row.
    int answered = 0;
    whenModal(QStringLiteral("frmnmFind"), [](QWidget* w) {
        auto* grid = w->findChild<QTableWidget*>(QStringLiteral("MSFlexGrid1"));
        QCOMPARE(grid->horizontalHeaderItem(0)->text(), QStringLiteral("选号保存名"));
        QCOMPARE(grid->horizontalHeaderItem(1)->text(), QStringLiteral("选号个(不含胆)"));
        QCOMPARE(grid->horizontalHeaderItem(2)->text(), QStringLiteral("选1码"));
        QCOMPARE(grid->item(0, 2)->text(), QStringLiteral("03"));
        doubleClickRow(grid, 0);
    }, &answered);
    f.trigger("mnuCall");
    QCOMPARE(answered, 1);
    QCOMPARE(picks(f.s().board().front), (std::set<int>{3, 14, 25}));
    QCOMPARE(picks(f.s().board().back), (std::set<int>{7}));

    // The list's pop-up menu on a window of its own.
    SavedSelections saved(f.s().savedPicksDb());
    SavedSelectionsDialog list(saved, f.prompter);
    list.show();
    list.grid()->setCurrentCell(1, 0);
    f.prompter.answer(QStringLiteral("改\"名"));
    list.popup()->findChild<QAction*>(QStringLiteral("mnuName"))->trigger();
    QCOMPARE(list.grid()->item(1, 0)->text(), QStringLiteral("第二"));
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("选号名字修改"));
    list.grid()->setCurrentCell(1, 0);
    f.prompter.answer(QStringLiteral("其二"));
    list.popup()->findChild<QAction*>(QStringLiteral("mnuName"))->trigger();
    QCOMPARE(list.grid()->item(1, 0)->text(), QStringLiteral("其二"));
    list.grid()->setCurrentCell(0, 0);
    list.popup()->findChild<QAction*>(QStringLiteral("mnuDel"))->trigger();
    QCOMPARE(list.grid()->rowCount(), 1);
    QCOMPARE(list.grid()->item(0, 0)->text(), QStringLiteral("其二"));
    QVERIFY(f.prompter.messages().isEmpty());

    // 添加: the first row now shows 其二 (Idx 2) but loads Idx 1, whose front picks are gone.
    whenModal(QStringLiteral("frmnmFind"), [](QWidget* w) {
        doubleClickRow(w->findChild<QTableWidget*>(QStringLiteral("MSFlexGrid1")), 0);
    }, &answered);
    f.trigger("mnuCallAdd");
    QCOMPARE(f.s().board().front.pickCount, int16_t(0));
    QCOMPARE(picks(f.s().board().back), (std::set<int>{7}));
}

void PickingWindowsTest::templateWindowAddsDeletesAndRuns() {
    Fixture f;
    NumberBoard& board = f.window->board();
    board.programClick(Zone::Back, 11);
    SavedSelections(f.s().savedPicksDb()).save(QStringLiteral("存"), f.s().board());
    board.reselect(Zone::Back);

    ScriptedDialogs dialogs;
    int changes = 0;
    PickingCommands commands(f.s(), board, f.prompter, dialogs, [&] { ++changes; });
    std::unique_ptr<SelectionTemplateWindow> w = SelectionTemplateWindow::open(commands, nullptr, [] {});
    QVERIFY(w);
    w->resize(560, 320);
    w->show();
    auto* kinds = w->findChild<QListWidget*>(QStringLiteral("List1"));
    auto* grid = w->findChild<QTableWidget*>(QStringLiteral("MSFlexGrid1"));
    QCOMPARE(kinds->count(), 9);
    QCOMPARE(kinds->item(8)->text(), QStringLiteral("添加历史选号号码"));
    const auto add = [&](int kind) {
        kinds->setCurrentRow(kind);
        w->findChild<QPushButton*>(QStringLiteral("Command1"))->click();
    };
    f.prompter.answer(QStringLiteral("5"));
    add(0);
    f.prompter.answer(QStringLiteral("3"));
    add(6);
    dialogs.row = 1;
    add(8);
    QCOMPARE(grid->rowCount(), 3);
    QCOMPARE(grid->item(1, 1)->text(), QStringLiteral("后区选择遗漏高次号码"));
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("高次遗漏选号"));
    grid->setCurrentCell(1, 1);
    w->findChild<QPushButton*>(QStringLiteral("Command2"))->click();
    QCOMPARE(grid->rowCount(), 2);
    QCOMPARE(grid->item(1, 2)->text(), QStringLiteral("1"));
    saveShot(w.get(), QStringLiteral("frmSltnum"));

    w->findChild<QPushButton*>(QStringLiteral("Command3"))->click();
    QCOMPARE(changes, 1);
    QCOMPARE(f.s().board().front.pickCount, int16_t(5));
    QCOMPARE(picks(f.s().board().back), (std::set<int>{11}));

    // From the menu the window opens modally.
    int answered = 0;
    whenModal(QStringLiteral("frmSltnum"), [](QWidget* m) { m->close(); }, &answered);
    f.trigger("mnusltmoban");
    QCOMPARE(answered, 1);
}

void PickingWindowsTest::templateTableThatCannotBeRestoredEndsTheProgram() {
    Fixture f;
    QVERIFY(f.s().filterDb().exec(QStringLiteral("DROP TABLE [Xhmb]")));
    QVERIFY(QFile::remove(f.s().root().filterTemplate()));
    ScriptedDialogs dialogs;
    PickingCommands commands(f.s(), f.window->board(), f.prompter, dialogs, {});
    bool ended = false;
    QVERIFY(!SelectionTemplateWindow::open(commands, nullptr, [&] { ended = true; }));
    QVERIFY(ended);
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("数据库错误"));
    QCOMPARE(f.prompter.messages().last(), QStringLiteral("数据库读写错误,程序即将退出!"));
}

void PickingWindowsTest::frontTrendWindowPicksOnTheMainBoard() {
    Fixture f;
    f.window->findChild<QAction*>(QStringLiteral("mnuSyQian"))->trigger();
    TrendWindow* trend = f.window->trendWindows().isEmpty() ? nullptr : f.window->trendWindows().last();
    QVERIFY(trend);
    f.prompter.answer(QStringLiteral("20"));
    QAction* item = trend->findChild<QAction*>(QStringLiteral("mnuYHigh"));
    QVERIFY(item && item->isEnabled());
    item->trigger();
    std::set<int> expected;
    for (int n = 1; n <= 35; ++n)
        if (f.s().stats().front.omission[n] >= 20) expected.insert(n);
    QCOMPARE(picks(f.s().board().front), expected);
    QVERIFY(!expected.empty());
    const int first = *expected.begin();
    QVERIFY(f.pressed(QStringLiteral("Command1(%1)").arg(first)));
}

void PickingWindowsTest::theBoardComesBackWithTheWorkspace() {
    Fixture f;
    f.prompter.answer(QStringLiteral("3"));
    f.trigger("mnuYLow");
    const std::set<int> before = picks(f.s().board().front);
    QVERIFY(!before.empty());
    f.window->close();
    f.open();
    QCOMPARE(picks(f.session->board().front), before);
}

QTEST_MAIN(PickingWindowsTest)
#include "test_picking_windows.moc"
