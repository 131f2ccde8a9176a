// The spin simulator on the main window: its buttons, menu entries and timers, the rows and
// bars it fills, the stability entries, the ticket count and the question at the end.
#include "app/ui/main_window.h"
#include "filter/ui/filter_window.h"
#include "history/history_import.h"
#include "picking/ui/spin_controller.h"
#include "support/main_window_fixture.h"
#include "support/window_shot.h"
#include "workspace/ui/probability_bar.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {
using Fixture = MainWindowFixture;

QPushButton* button(MainWindow* w, const QString& name) {
    auto* b = w->findChild<QPushButton*>(name);
    Q_ASSERT(b);
    return b;
}
QAction* item(MainWindow* w, const QString& name) {
    auto* a = w->findChild<QAction*>(name);
    Q_ASSERT(a);
    return a;
}
QString label(MainWindow* w, const QString& name) { return w->findChild<QLabel*>(name)->text(); }

// Six front picks and three back picks, seeded draws; with the bundled history when asked, so
// that the pictures show the window as a player has it.
MainWindow* openWithPicks(Fixture& f, bool withHistory = false) {
    MainWindow* w = f.open([&f, withHistory](Session& s) {
        if (withHistory) HistoryImport(s, f.prompter).importFile(HistoryImport::Mode::Whole, f.bundledHistory());
    });
    w->resize(1366, 740);
    w->show();
    for (int n : {3, 8, 14, 19, 25, 31}) QTest::mouseClick(button(w, QStringLiteral("Command1(%1)").arg(n)), Qt::LeftButton);
    for (int n : {2, 6, 11}) QTest::mouseClick(button(w, QStringLiteral("Command2(%1)").arg(n)), Qt::LeftButton);
    w->spin().setRandom(std::make_unique<SeededSpinRandom>(11));
    return w;
}

int askedCount(const ScriptedPrompter& p, const QString& kind) {
    int n = 0;
    for (const ScriptedPrompter::Asked& a : p.asked()) n += a.kind == kind;
    return n;
}
}  // namespace

class SpinWindowTest : public QObject {
    Q_OBJECT
private slots:
    void spinRunsToTheQuestionAndHandsThePredictionOn();
    void pauseContinueAndResetDriveTimersAndControls();
    void boardResetStopsTheTimers();
    void stabilityEntriesAreExclusiveAndSaved();
    void ticketCountKeepsThatManyTicketsBeforeAsking();
    void bankerMenuReadsItsOwnDefaultAndStartsNoSpinWithoutBackPicks();
};

void SpinWindowTest::spinRunsToTheQuestionAndHandsThePredictionOn() {
    Fixture f;
    MainWindow* w = openWithPicks(f, true);
    item(w, QStringLiteral("meuSpd1"))->trigger();  // 50
    QVERIFY(button(w, QStringLiteral("ComSta"))->isEnabled());
    QTest::mouseClick(button(w, QStringLiteral("ComSta")), Qt::LeftButton);
    auto* timer1 = w->spin().findChild<QTimer*>(QStringLiteral("Timer1"));
    auto* timer2 = w->spin().findChild<QTimer*>(QStringLiteral("Timer2"));
    QCOMPARE(timer2->interval(), 10);
    QVERIFY(timer2->isActive());
    QVERIFY(!button(w, QStringLiteral("ComSta"))->isEnabled());
    QVERIFY(!item(w, QStringLiteral("meuSta"))->isEnabled());
    QVERIFY(button(w, QStringLiteral("ComSpd"))->isEnabled() && button(w, QStringLiteral("ComRst"))->isEnabled());
    QVERIFY(!item(w, QStringLiteral("meuAgarr"))->isEnabled());
    // The back tick starts the front timer.
    QTRY_VERIFY(timer1->isActive());
    QTRY_VERIFY(w->spin().simulator().spinRound() > 20);
    saveShot(w, QStringLiteral("spin-running"));

    QTRY_VERIFY_WITH_TIMEOUT(askedCount(f.prompter, QStringLiteral("okCancel")) == 1, 120000);
    const ScriptedPrompter::Asked& asked = f.prompter.asked().last();
    QCOMPARE(asked.title, QStringLiteral("通告"));
    QCOMPARE(asked.text,
             QStringLiteral("预测结果已经得出！是否现在就将结果排列组合出来，以便再观察参数和缩水过滤？"));
    QVERIFY(!timer1->isActive() && !timer2->isActive());
    QCOMPARE(button(w, QStringLiteral("ComSta"))->text(), QStringLiteral("继续(&G)"));
    QCOMPARE(item(w, QStringLiteral("meuSta"))->text(), QStringLiteral("继续(&G)"));
    QVERIFY(!button(w, QStringLiteral("ComSpd"))->isEnabled());
    QVERIFY(item(w, QStringLiteral("meuAgarr"))->isEnabled());

    // The rows and bars show the last ticks.
    const SpinZone& front = w->spin().simulator().zone(Zone::Front);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(label(w, QStringLiteral("Label2(%1)").arg(i)), QString::number(front.predicted(i)));
    QCOMPARE(label(w, QStringLiteral("Label6(14)")), QString::number(front.hitPercent(14), 'g', 15));
    QCOMPARE(w->findChild<ProbabilityBar*>(QStringLiteral("Picture2(14)"))->barWidth(),
             3 - 100.0 / 6 * 3 + front.hitPercent(14) * 3);
    const SpinZone& back = w->spin().simulator().zone(Zone::Back);
    QCOMPARE(label(w, QStringLiteral("Label6(41)")), QString::number(back.hitPercent(6), 'g', 15));
    QCOMPARE(label(w, QStringLiteral("lblHou2(1)")), QString::number(back.predicted(1)));
    saveShot(w, QStringLiteral("spin-ended"));

    // OK: the prediction goes to the expansion, one ticket of the predicted numbers.
    QTRY_COMPARE(w->filterWindows().size(), 1);
    QVERIFY(f.session->board().fromSpin);
    FilterWindow* filter = w->filterWindows().first();
    QTRY_VERIFY(filter->windowTitle().contains(QStringLiteral("合计：1注")));
}

void SpinWindowTest::pauseContinueAndResetDriveTimersAndControls() {
    Fixture f;
    MainWindow* w = openWithPicks(f);
    QTest::mouseClick(button(w, QStringLiteral("ComSta")), Qt::LeftButton);
    QTRY_VERIFY(w->spin().simulator().spinRound() > 10);
    QTest::mouseClick(button(w, QStringLiteral("ComSpd")), Qt::LeftButton);
    auto* timer1 = w->spin().findChild<QTimer*>(QStringLiteral("Timer1"));
    auto* timer2 = w->spin().findChild<QTimer*>(QStringLiteral("Timer2"));
    QVERIFY(!timer1->isActive() && !timer2->isActive());
    QCOMPARE(button(w, QStringLiteral("ComSta"))->text(), QStringLiteral("继续(&G)"));
    QVERIFY(button(w, QStringLiteral("ComSta"))->isEnabled() && item(w, QStringLiteral("meuSta"))->isEnabled());
    QVERIFY(!button(w, QStringLiteral("ComSpd"))->isEnabled() && !item(w, QStringLiteral("meuSup"))->isEnabled());
    QVERIFY(item(w, QStringLiteral("meuAgarr"))->isEnabled());
    const int32_t round = w->spin().simulator().spinRound();
    QTest::qWait(60);
    QCOMPARE(w->spin().simulator().spinRound(), round);

    // meuSta starts both timers at once and goes on from the counts.
    const int32_t total = w->spin().simulator().zone(Zone::Front).hitTotal();
    item(w, QStringLiteral("meuSta"))->trigger();
    QVERIFY(timer1->isActive() && timer2->isActive());
    QTRY_VERIFY(w->spin().simulator().zone(Zone::Front).hitTotal() > total);

    // ComRst starts the front counts again; the back ones go on.
    const int32_t backTotal = w->spin().simulator().zone(Zone::Back).hitTotal();
    QTest::mouseClick(button(w, QStringLiteral("ComRst")), Qt::LeftButton);
    QVERIFY(w->spin().simulator().zone(Zone::Front).hitTotal() < total);
    QVERIFY(w->spin().simulator().zone(Zone::Back).hitTotal() >= backTotal);
    QVERIFY(!button(w, QStringLiteral("ComSta"))->isEnabled() && !item(w, QStringLiteral("meuAgarr"))->isEnabled());
    QVERIFY(timer1->isActive() && timer2->isActive());
    item(w, QStringLiteral("meuSup"))->trigger();
    QVERIFY(!timer1->isActive() && !timer2->isActive());
}

void SpinWindowTest::boardResetStopsTheTimers() {
    Fixture f;
    MainWindow* w = openWithPicks(f);
    QTest::mouseClick(button(w, QStringLiteral("ComSta")), Qt::LeftButton);
    QTRY_VERIFY(w->spin().simulator().spinRound() > 4);
    QTest::mouseClick(button(w, QStringLiteral("Command45")), Qt::LeftButton);  // 重选 of the front
    QVERIFY(!w->spin().frontTimer()->isActive() && !w->spin().backTimer()->isActive());
    const int32_t round = w->spin().simulator().spinRound();
    QTest::qWait(60);
    QCOMPARE(w->spin().simulator().spinRound(), round);
    QVERIFY(!button(w, QStringLiteral("ComSta"))->isEnabled());
}

void SpinWindowTest::stabilityEntriesAreExclusiveAndSaved() {
    Fixture f;
    MainWindow* w = f.open();
    QCOMPARE(w->spin().simulator().threshold(), 30000);  // no Wd yet: 30000, 无穷大 checked
    QVERIFY(item(w, QStringLiteral("meuSpd8"))->isChecked());
    item(w, QStringLiteral("meuSpd3"))->trigger();
    QCOMPARE(w->spin().simulator().threshold(), 200);
    QCOMPARE(f.home.settings.readInt(setting_keys::StabilityAtLoad, QStringLiteral("测试")), 200);
    for (int i = 1; i <= 12; ++i)
        QCOMPARE(item(w, QStringLiteral("meuSpd%1").arg(i))->isChecked(), i == 3);
    item(w, QStringLiteral("meuSpd8"))->trigger();
    QCOMPARE(w->spin().simulator().threshold(), 30000);
    // Saved as 8000, which loads again as a threshold of 8000 with no entry checked.
    w = f.open();
    QCOMPARE(w->spin().simulator().threshold(), 8000);
    for (int i = 1; i <= 12; ++i) QVERIFY(!item(w, QStringLiteral("meuSpd%1").arg(i))->isChecked());
}

void SpinWindowTest::ticketCountKeepsThatManyTicketsBeforeAsking() {
    Fixture f;
    MainWindow* w = openWithPicks(f);
    f.prompter.answer(QStringLiteral("三"));
    item(w, QStringLiteral("mnuMilt"))->trigger();
    QCOMPARE(f.prompter.messages(), QStringList{QStringLiteral("请输入整数数字")});
    QVERIFY(!f.session->board().multiMode);
    f.prompter.answer(QStringLiteral("3"));
    item(w, QStringLiteral("mnuMilt"))->trigger();
    QCOMPARE(f.session->board().multiCount, 3);
    item(w, QStringLiteral("meuSpd1"))->trigger();
    f.prompter.answer(false);  // Cancel: nothing is handed on
    QTest::mouseClick(button(w, QStringLiteral("ComSta")), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(askedCount(f.prompter, QStringLiteral("okCancel")) == 1, 180000);
    QCOMPARE(w->spin().simulator().keptCount(), 3);
    const auto& table = f.session->board().multiTable;
    QCOMPARE(table.size(), size_t{3});
    for (const auto& row : table) QVERIFY(row[5] == row[0] && row[6] == row[1]);
    QTest::qWait(50);
    QVERIFY(w->filterWindows().isEmpty());
}

void SpinWindowTest::bankerMenuReadsItsOwnDefaultAndStartsNoSpinWithoutBackPicks() {
    Fixture f;
    MainWindow* w = f.open();
    w->show();
    QCOMPARE(w->spin().simulator().threshold(), 30000);
    for (int n : {3, 8, 14, 19, 25, 31}) QTest::mouseClick(button(w, QStringLiteral("Command1(%1)").arg(n)), Qt::LeftButton);
    // With a banker, the next pick brings the play modes in line: they read the coefficient
    // again, with their default of 8000.
    QTest::mouseClick(button(w, QStringLiteral("Command1(9)")), Qt::RightButton);
    item(w, QStringLiteral("mnuDan"))->trigger();
    QCOMPARE(w->spin().simulator().threshold(), 30000);
    QTest::mouseClick(button(w, QStringLiteral("Command1(33)")), Qt::LeftButton);
    QCOMPARE(w->spin().simulator().threshold(), 8000);
    for (int i = 1; i <= 12; ++i) QVERIFY(!item(w, QStringLiteral("meuSpd%1").arg(i))->isChecked());
    // The banker menu enabled the start although the back zone is empty: no spin starts from it.
    QVERIFY(button(w, QStringLiteral("ComSta"))->isEnabled());
    QTest::mouseClick(button(w, QStringLiteral("ComSta")), Qt::LeftButton);
    QVERIFY(!w->spin().frontTimer()->isActive() && !w->spin().backTimer()->isActive());
    QVERIFY(!button(w, QStringLiteral("ComSta"))->isEnabled());
}

QTEST_MAIN(SpinWindowTest)
#include "test_spin_window.moc"
