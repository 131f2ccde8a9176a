// The six-number window driven through its named controls from the main window's entries: the
// expansion of seven picks, a parameter with its boxes, the money of the live rows, the history
// filter's input check, the table reopened by mnuCallfd6, and what the window does not have;
// then the relation filter, the integrated filter's senses and a saved setting read back.
#include "filter/result_grid_model.h"
#include "filter/ui/saved_settings_dialog.h"
#include "filter/ui/six_filter_window.h"
#include "history/history_import.h"
#include "support/main_window_fixture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QTimer>
#include <QLabel>
#include <QMenu>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>

class SixFilterWindowTest : public QObject {
    Q_OBJECT
private slots:
    void filtersSevenPicksAndReopensThem();
    void relationIntegratedAndSavedSettings();
    void spanCombosFillTheBoxesFromTheDraws();
};

namespace {

// Seven picks expanded into the six-number window.
SixFilterWindow* openSevenPicks(MainWindowFixture& f) {
    f.window->show();
    for (int n : {2, 5, 9, 14, 20, 27, 33})
        f.window->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->click();
    for (int n : {3, 8}) f.window->findChild<QPushButton*>(QStringLiteral("Command2(%1)").arg(n))->click();
    emit f.window->menuActions().playModesMenu->aboutToShow();
    f.window->findChild<QAction*>(QStringLiteral("mnu8Lst"))->trigger();
    const QList<SixFilterWindow*> all = f.window->findChildren<SixFilterWindow*>();
    return all.isEmpty() ? nullptr : all.last();
}

SixFilterWindow* lastSixWindow(MainWindow& w) {
    const QList<SixFilterWindow*> all = w.findChildren<SixFilterWindow*>();
    return all.isEmpty() ? nullptr : all.last();
}

}  // namespace

void SixFilterWindowTest::filtersSevenPicksAndReopensThem() {
    MainWindowFixture f;
    QVERIFY(f.open());
    SixFilterWindow* w = openSevenPicks(f);
    QVERIFY(w);
    QCOMPARE(w->objectName(), QStringLiteral("GAganf"));
    QCOMPARE(w->workspace().table().rowCount(), uint64_t(7));
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("Label所需金额"))->text(), QStringLiteral("所需金额:84元"));

    // 各位数和 of the seven rows is 110 less the pick each leaves out: 108 105 101 96 90 83 77;
    // 80..100 keeps three.
    w->findChild<QLineEdit*>(QStringLiteral("Text2(0)"))->setText(QStringLiteral("80"));
    w->findChild<QLineEdit*>(QStringLiteral("Text2(1)"))->setText(QStringLiteral("100"));
    w->findChild<QPushButton*>(QStringLiteral("Option23"))->click();
    QCOMPARE(w->workspace().table().liveCount(), uint64_t(3));
    QCOMPARE(w->gridModel().rowCount(), 3);
    QCOMPARE(w->gridModel().headerData(7, Qt::Horizontal).toString(), QStringLiteral("各位数和"));
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("Label所需金额"))->text(), QStringLiteral("所需金额:36元"));

    // 排除 the same range: of the three live rows none stays.
    w->findChild<QRadioButton*>(QStringLiteral("Option1(1)"))->setChecked(true);
    w->findChild<QPushButton*>(QStringLiteral("Option23"))->click();
    QCOMPARE(w->workspace().table().liveCount(), uint64_t(0));
    w->findChild<QPushButton*>(QStringLiteral("cmdRetn"))->click();
    QCOMPARE(w->workspace().table().liveCount(), uint64_t(3));

    f.prompter.answer(QStringLiteral("abc"));
    w->findChild<QPushButton*>(QStringLiteral("Option26"))->click();
    QCOMPARE(f.prompter.asked().last().text, QStringLiteral("请输入数字"));
    QCOMPARE(w->workspace().table().liveCount(), uint64_t(3));

    // Not in this window: the template, the zone tabs, the back zone.
    QVERIFY(!w->findChild<QPushButton*>(QStringLiteral("cmdAdmb")));
    QVERIFY(!w->findChild<QWidget*>(QStringLiteral("TabStrip1")));
    QCOMPARE(w->gridModel().columnCount(), 7);  // idx and six numbers: no fig7

    w->findChild<QPushButton*>(QStringLiteral("cmdQut"))->click();
    QTRY_VERIFY(!lastSixWindow(*f.window) || lastSixWindow(*f.window) != w);
    f.window->findChild<QAction*>(QStringLiteral("mnuCallfd6"))->trigger();
    SixFilterWindow* again = lastSixWindow(*f.window);
    QVERIFY(again);
    QCOMPARE(again->objectName(), QStringLiteral("GAganfMb"));
    QCOMPARE(again->workspace().table().rowCount(), uint64_t(7));
    QCOMPARE(again->workspace().table().liveCount(), uint64_t(3));
}

void SixFilterWindowTest::relationIntegratedAndSavedSettings() {
    MainWindowFixture f;
    QVERIFY(f.open());
    SixFilterWindow* w = openSevenPicks(f);
    QVERIFY(w);
    const auto click = [w](const char* name) { w->findChild<QPushButton*>(QString::fromLatin1(name))->click(); };

    // 保留号过滤 with 02 and 05: the rows that hold both stay, the two that leave one out die.
    QCOMPARE(w->findChild<QPushButton*>(QStringLiteral("Option25(2)"))->text(), QStringLiteral("保留号过滤"));
    f.prompter.answer(QStringLiteral("2")).answer(QStringLiteral("2")).answer(QStringLiteral("5"));
    click("Option25(2)");
    QCOMPARE(w->workspace().table().liveCount(), uint64_t(5));

    // The sums of the five are 101 96 90 83 77. 保留 and 逻辑和 over 80..100 keep three.
    w->findChild<QCheckBox*>(QStringLiteral("CheckOption23"))->setChecked(true);
    w->findChild<QLineEdit*>(QStringLiteral("Text2(0)"))->setText(QStringLiteral("80"));
    w->findChild<QLineEdit*>(QStringLiteral("Text2(1)"))->setText(QStringLiteral("100"));
    click("Option29");
    QCOMPARE(w->workspace().table().liveCount(), uint64_t(3));
    // 保留 and 逻辑或 over 90..100: 96 and 90 fall in and live, 83 dies; the rows dead before
    // stay dead, as Gpslt marked them.
    w->findChild<QRadioButton*>(QStringLiteral("Option37(1)"))->setChecked(true);
    w->findChild<QLineEdit*>(QStringLiteral("Text2(0)"))->setText(QStringLiteral("90"));
    click("Option29");
    QCOMPARE(w->workspace().table().liveCount(), uint64_t(2));

    // A double click deletes the row by hand and paints it grey; a second one brings it back.
    auto* grid = w->findChild<QTableView*>(QStringLiteral("MSFlexGrid1"));
    emit grid->doubleClicked(w->gridModel().index(0, 0));
    QCOMPARE(w->workspace().table().liveCount(), uint64_t(1));
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("Label所需金额"))->text(), QStringLiteral("所需金额:12元"));
    QCOMPARE(w->gridModel().rowCount(), 2);  // still in view, grey
    emit grid->doubleClicked(w->gridModel().index(0, 0));
    QCOMPARE(w->workspace().table().liveCount(), uint64_t(2));

    // Command7 stores the bounds, the sixth position's too; Command6 reads them back.
    w->findChild<QLineEdit*>(QStringLiteral("Text17(0)"))->setText(QStringLiteral("30"));
    f.prompter.answer(QStringLiteral("六码设置"));
    click("Command7");
    w->findChild<QLineEdit*>(QStringLiteral("Text2(0)"))->setText(QStringLiteral("1"));
    w->findChild<QLineEdit*>(QStringLiteral("Text17(0)"))->setText(QStringLiteral("2"));
    QTimer::singleShot(0, [] {
        auto* finder = qobject_cast<SavedSettingsDialog*>(QApplication::activeModalWidget());
        if (!finder) return;
        const QList<QListWidgetItem*> named = finder->list()->findItems(QStringLiteral("六码设置"), Qt::MatchExactly);
        if (named.isEmpty())
            finder->reject();
        else
            emit finder->list()->itemDoubleClicked(named.first());
    });
    click("Command6");
    QCOMPARE(w->findChild<QLineEdit*>(QStringLiteral("Text2(0)"))->text(), QStringLiteral("90"));
    QCOMPARE(w->findChild<QLineEdit*>(QStringLiteral("Text17(0)"))->text(), QStringLiteral("30"));
    w->close();
}

// Combo1 of a row: the least and the most of the row's parameter over the draws of the span,
// counted here from the draw numbers themselves.
void SixFilterWindowTest::spanCombosFillTheBoxesFromTheDraws() {
    MainWindowFixture f;
    QVERIFY(f.open([&f](Session& s) {
        HistoryImport(s, f.prompter).importFile(HistoryImport::Mode::Whole, f.bundledHistory());
    }));
    const DrawHistory& h = f.session->history();
    QVERIFY(h.drawCount() > 10);
    SixFilterWindow* w = openSevenPicks(f);
    QVERIFY(w);
    const auto choose = [w](int combo, int span) {
        auto* c = w->findChild<QComboBox*>(QStringLiteral("Combo1(%1)").arg(combo));
        c->setCurrentIndex(c->findData(span));
        emit c->activated(c->currentIndex());
    };
    const auto box = [w](const char* name) { return w->findChild<QLineEdit*>(QString::fromLatin1(name))->text().toInt(); };
    int lo = 999, hi = 0, first = 99, firstHigh = 0;
    for (int d = 1; d <= h.drawCount(); ++d) {
        const DrawNumbers& n = h.numbers[static_cast<size_t>(d)];
        first = std::min(first, n[1]);
        firstHigh = std::max(firstHigh, n[1]);
        if (d <= h.drawCount() - 10) continue;
        const int sum = n[1] + n[2] + n[3] + n[4] + n[5];
        lo = std::min(lo, sum);
        hi = std::max(hi, sum);
    }
    choose(0, 10);  // 各位数和, the last ten draws
    QCOMPARE(box("Text2(0)"), lo);
    QCOMPARE(box("Text2(1)"), hi);
    choose(9, 0);  // 第1位, every draw
    QCOMPARE(box("Text12(0)"), first);
    QCOMPARE(box("Text12(1)"), firstHigh);
    QVERIFY(!w->findChild<QComboBox*>(QStringLiteral("Combo1(14)")));  // 第6位: no column in the draws
    w->close();
}

QTEST_MAIN(SixFilterWindowTest)
#include "test_six_filter_window.moc"
