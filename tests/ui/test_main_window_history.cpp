// The history commands of the main window: the whole import of the real history, typing a
// draw into the entry row, editing a grid cell through Text1, deleting the last draw.
#include "app/ui/main_window.h"
#include "history/ui/history_commands.h"
#include "support/main_window_fixture.h"
#include "support/window_shot.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <memory>

namespace {
struct Fixture : MainWindowFixture {
    Fixture() : MainWindowFixture(QStringLiteral("张先生")) { open(); }
    QTableView* grid() const { return window->findChild<QTableView*>(QStringLiteral("MSFlexGrid1")); }
    QString nextIssueLabel() const { return window->findChild<QLabel*>(QStringLiteral("Label12"))->text(); }
    void type(int box, const QString& text) {
        auto* edit = window->findChild<QLineEdit*>(QStringLiteral("MaskEdBox1(%1)").arg(box));
        edit->setFocus();
        edit->setCursorPosition(0);
        QTest::keyClicks(edit, text);
    }
};
}  // namespace

class MainWindowHistoryTest : public QObject {
    Q_OBJECT
private slots:
    void wholeImportOfTheRealHistory();
    void typedDrawIsCheckedThenAppended();
    void cellEditThroughText1();
    void deletingTheOnlyDrawDisablesTheDeleteCommands();
};

void MainWindowHistoryTest::wholeImportOfTheRealHistory() {
    Fixture f;
    f.window->resize(1366, 740);
    f.window->show();
    QVERIFY(QTest::qWaitForWindowExposed(f.window.get()));
    QAbstractItemModelTester tester(f.grid()->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    f.prompter.answer(true).answer(f.bundledHistory());
    f.window->findChild<QPushButton*>(QStringLiteral("cmdRead"))->click();
    QCOMPARE(f.prompter.asked().first().title, QStringLiteral("读入历史"));
    QCOMPARE(f.prompter.asked().at(1).kind, QStringLiteral("openFile"));
    QCOMPARE(f.prompter.asked().at(1).text, f.home.root.historyTextFolder());
    QCOMPARE(f.session->drawCount(), 2933);
    QCOMPARE(f.grid()->model()->rowCount(), 2933);
    QCOMPARE(f.grid()->model()->index(2932, 1).data().toInt(), 2026115);
    QCOMPARE(f.nextIssueLabel(), QStringLiteral("在右输入2026116 期历史号码:"));
    QVERIFY(f.window->findChild<QPushButton*>(QStringLiteral("Command44"))->isEnabled());
    // The newest draw is in view.
    QTRY_VERIFY(f.grid()->viewport()->rect().intersects(f.grid()->visualRect(f.grid()->model()->index(2932, 0))));
    saveShot(f.window.get(), QStringLiteral("main_window_history"));
}

void MainWindowHistoryTest::typedDrawIsCheckedThenAppended() {
    Fixture f;
    f.window->show();
    // A one-digit number leaves a "_": the first message, nothing stored.
    for (int box = 1; box <= 6; ++box) f.type(box, QStringLiteral("%1").arg(box * 3, 2, 10, QLatin1Char('0')));
    f.type(7, QStringLiteral("4"));
    QTest::keyClick(f.window->findChild<QLineEdit*>(QStringLiteral("MaskEdBox1(7)")), Qt::Key_Return);
    QCOMPARE(f.session->drawCount(), 0);
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("输入错误!!!"));
    // 放弃输入 clears the row; a good draw, typed unsorted, is sorted and appended.
    f.window->findChild<QPushButton*>(QStringLiteral("discardEntry"))->click();
    const QStringList draw{"30", "03", "12", "21", "09", "11", "02"};
    for (int box = 1; box <= 7; ++box) f.type(box, draw[box - 1]);
    QCOMPARE(f.session->drawCount(), 1);
    QCOMPARE(f.grid()->model()->rowCount(), 1);
    QCOMPARE(f.grid()->model()->index(0, 2).data().toString(), QStringLiteral("03"));
    QCOMPARE(f.grid()->model()->index(0, 6).data().toString(), QStringLiteral("30"));
    QCOMPARE(f.grid()->model()->index(0, 7).data().toString(), QStringLiteral("02"));
    QCOMPARE(f.nextIssueLabel(), QStringLiteral("在右输入2 期历史号码:"));
    // The entry row is empty again.
    QCOMPARE(f.window->findChild<QLineEdit*>(QStringLiteral("MaskEdBox1(7)"))->text(), QString());
}

void MainWindowHistoryTest::cellEditThroughText1() {
    Fixture f;
    f.window->show();
    f.prompter.answer(true).answer(f.bundledHistory());
    f.window->findChild<QAction*>(QStringLiteral("mnuRed"))->trigger();
    QCOMPARE(f.session->drawCount(), 2933);
    // The first draw is 22 24 29 31 35 + 04 11: put 23 in place of 22's neighbour 24.
    QTableView* grid = f.grid();
    grid->setFocus();
    grid->setCurrentIndex(grid->model()->index(0, 3));
    QTest::keyClick(grid, Qt::Key_Return);
    auto* cellEditor = grid->findChild<QLineEdit*>(QStringLiteral("Text1"));
    QVERIFY(cellEditor && cellEditor->isVisible());
    QCOMPARE(cellEditor->text(), QStringLiteral("24"));
    cellEditor->setText(QStringLiteral("23"));
    QTest::keyClick(cellEditor, Qt::Key_Return);
    QVERIFY(!cellEditor->isVisible());
    QCOMPARE(f.session->history().numbers[1][2], 23);
    QCOMPARE(grid->model()->index(0, 3).data().toString(), QStringLiteral("23"));
    // A neighbour's value is refused and changes nothing; Esc leaves without a change.
    grid->setCurrentIndex(grid->model()->index(0, 3));
    QTest::keyClick(grid, Qt::Key_2);
    QCOMPARE(cellEditor->text(), QStringLiteral("2"));
    cellEditor->setText(QStringLiteral("29"));
    const int asked = static_cast<int>(f.prompter.asked().size());
    QTest::keyClick(cellEditor, Qt::Key_Return);
    QVERIFY(f.prompter.asked().size() > asked);
    QCOMPARE(f.session->history().numbers[1][2], 23);
    QTest::keyClick(grid, Qt::Key_5);
    QTest::keyClick(cellEditor, Qt::Key_Escape);
    QVERIFY(!cellEditor->isVisible());
    QCOMPARE(f.session->history().numbers[1][2], 23);
}

void MainWindowHistoryTest::deletingTheOnlyDrawDisablesTheDeleteCommands() {
    Fixture f;
    f.window->show();
    const QStringList draw{"01", "02", "03", "04", "05", "01", "02"};
    for (int box = 1; box <= 7; ++box) f.type(box, draw[box - 1]);
    QCOMPARE(f.session->drawCount(), 1);
    auto* deleteLastButton = f.window->findChild<QPushButton*>(QStringLiteral("Command44"));
    QVERIFY(deleteLastButton->isEnabled());
    deleteLastButton->click();
    QCOMPARE(f.session->drawCount(), 0);
    QCOMPARE(f.grid()->model()->rowCount(), 0);
    QVERIFY(!deleteLastButton->isEnabled());
    QVERIFY(!f.window->findChild<QAction*>(QStringLiteral("mnuDelast"))->isEnabled());
}

QTEST_MAIN(MainWindowHistoryTest)
#include "test_main_window_history.moc"
