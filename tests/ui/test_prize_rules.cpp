// frmPrize driven through its tabs, options, level lists, amount fields and cmdOK.
#include "prize/prize_session.h"
#include "prize/ui/prize_rules_dialog.h"
#include "prize/ui/prize_windows.h"
#include "prize_window_fixture.h"
#include "support/window_shot.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

namespace {
template <typename T>
T* named(QWidget* w, const QString& name) {
    return w->findChild<T*>(name);
}
QRadioButton* option(QWidget* w, const char* family, int tab) {
    return named<QRadioButton>(w, QStringLiteral("%1(%2)").arg(QLatin1String(family)).arg(tab));
}
AmountField* amount(QWidget* w, int tab) {
    return named<AmountField>(w, QStringLiteral("MaskEdBox1(%1)").arg(tab));
}
QWidget* panel(QWidget* w, int tab) { return named<QWidget>(w, QStringLiteral("Picture1(%1)").arg(tab)); }

// Clicks a field and types into it, as the player enters it.
void typeInto(PrizeRulesDialog& dialog, int tab, const QString& text) {
    dialog.selectTab(tab);
    AmountField* f = amount(&dialog, tab);
    QTest::mouseClick(f, Qt::LeftButton);
    QTRY_VERIFY(f->entered());
    f->setCursorPosition(0);
    QTest::keyClicks(f, text);
}
}  // namespace

class PrizeRulesTest : public QObject {
    Q_OBJECT
private slots:
    void opensOnTheDefaultsWithNothingChosen();
    void tabsMoveOnePanelIntoViewAndCtrlTabWraps();
    void optionsAndLevelsAreWrittenWhenClicked();
    void cmdOkStoresTheEnteredAmounts();
    void anIncompleteAmountStopsAtItsSlotWithTheMessage();
};

void PrizeRulesTest::opensOnTheDefaultsWithNothingChosen() {
    PrizeWorkspace w;
    PrizeRulesDialog dialog(prize_session::settingsOf(*w.session), w.prompter);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("中奖规则管理"));
    auto* tabs = named<QTabBar>(&dialog, QStringLiteral("tbsOptions"));
    QCOMPARE(tabs->count(), 12);
    QCOMPARE(tabs->tabText(9), QStringLiteral("3红0蓝"));
    QCOMPARE(tabs->tabToolTip(0), QStringLiteral("一等奖设置选项"));
    QCOMPARE(tabs->tabData(11).toString(), QStringLiteral("pz12"));
    QVERIFY(option(&dialog, "Option5", 0)->isChecked());
    QVERIFY(option(&dialog, "Option22", 0)->isChecked());
    QVERIFY(option(&dialog, "Option3", 9)->isChecked());
    // 5前0后 has no back option ticked.
    QVERIFY(!option(&dialog, "Option21", 2)->isChecked());
    QVERIFY(!option(&dialog, "Option22", 2)->isChecked());
    for (int tab = 0; tab < 12; ++tab) {
        auto* combo = named<QComboBox>(&dialog, QStringLiteral("Combo1(%1)").arg(tab));
        QCOMPARE(combo->count(), 12);
        QCOMPARE(combo->currentIndex(), -1);
    }
    QCOMPARE(named<QComboBox>(&dialog, QStringLiteral("Combo1(0)"))->itemText(11), QStringLiteral("    "));
    QCOMPARE(amount(&dialog, 0)->text(), QStringLiteral("5000000"));
    QCOMPARE(amount(&dialog, 11)->text(), QStringLiteral("5"));
    QCOMPARE(named<QPushButton>(&dialog, QStringLiteral("cmdOK"))->text(), QStringLiteral("确定(&O)"));
    saveShot(&dialog, QStringLiteral("frm_prize"));
}

void PrizeRulesTest::tabsMoveOnePanelIntoViewAndCtrlTabWraps() {
    PrizeWorkspace w;
    PrizeRulesDialog dialog(prize_session::settingsOf(*w.session), w.prompter);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(panel(&dialog, 0)->x(), PrizeRulesDialog::kInViewX);
    QVERIFY(panel(&dialog, 0)->isEnabled());
    QCOMPARE(panel(&dialog, 1)->x(), PrizeRulesDialog::kOutOfViewX);
    QVERIFY(!panel(&dialog, 1)->isEnabled());
    auto* tabs = named<QTabBar>(&dialog, QStringLiteral("tbsOptions"));
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(11).center());
    QCOMPARE(tabs->currentIndex(), 11);
    QCOMPARE(panel(&dialog, 11)->x(), PrizeRulesDialog::kInViewX);
    QVERIFY(!panel(&dialog, 0)->isEnabled());
    QTest::keyClick(&dialog, Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(tabs->currentIndex(), 0);
    QVERIFY(panel(&dialog, 0)->isEnabled());
    QTest::keyClick(&dialog, Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(tabs->currentIndex(), 1);
}

void PrizeRulesTest::optionsAndLevelsAreWrittenWhenClicked() {
    PrizeWorkspace w;
    {
        PrizeRulesDialog dialog(prize_session::settingsOf(*w.session), w.prompter);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        dialog.selectTab(3);
        QTest::mouseClick(option(&dialog, "Option2", 3), Qt::LeftButton);
        QTest::mouseClick(option(&dialog, "Option21", 3), Qt::LeftButton);
        QVERIFY(option(&dialog, "Option2", 3)->isChecked());
        QVERIFY(!option(&dialog, "Option4", 3)->isChecked());
        dialog.selectTab(4);
        auto* combo = named<QComboBox>(&dialog, QStringLiteral("Combo1(4)"));
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_Down);  // the first item, "特等"
        // Nothing else was stored: the dialog is closed without cmdOK.
        dialog.close();
    }
    const PrizeRules r = prize_session::settingsOf(*w.session).read().rules;
    QCOMPARE(r.slot(4).front, int16_t{2});
    QCOMPARE(r.slot(4).back, int16_t{1});
    QCOMPARE(r.slot(5).rank, QStringLiteral("特等"));
    QCOMPARE(r.slot(1).money, 5000000);
    // The check reads the same rules when it opens.
    QCOMPARE(prize_session::open(*w.session, schema::CandidateKind::Combinations).view->rules().slot(5).rank,
             QStringLiteral("特等"));
}

void PrizeRulesTest::cmdOkStoresTheEnteredAmounts() {
    PrizeWorkspace w;
    openPrizeRules(*w.session, w.prompter, nullptr);
    auto* dialog = qobject_cast<PrizeRulesDialog*>(QApplication::topLevelWidgets().value(0));
    for (QWidget* top : QApplication::topLevelWidgets())
        if (auto* d = qobject_cast<PrizeRulesDialog*>(top)) dialog = d;
    QVERIFY(dialog);
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    QPointer<PrizeRulesDialog> guard(dialog);
    typeInto(*dialog, 0, QStringLiteral("1234567"));
    typeInto(*dialog, 1, QStringLiteral("0001234"));
    QCOMPARE(amount(dialog, 1)->displayText(), QStringLiteral("0001234"));
    QTest::mouseClick(named<QPushButton>(dialog, QStringLiteral("cmdOK")), Qt::LeftButton);
    QTRY_VERIFY(guard.isNull());  // closed, and deleted on close
    QVERIFY(w.prompter.asked().isEmpty());
    const PrizeRules r = prize_session::settingsOf(*w.session).read().rules;
    QCOMPARE(r.slot(1).money, 1234567);
    QCOMPARE(r.slot(2).money, 1234);
    QCOMPARE(r.slot(3).money, 5000);
}

void PrizeRulesTest::anIncompleteAmountStopsAtItsSlotWithTheMessage() {
    PrizeWorkspace w;
    PrizeRulesDialog dialog(prize_session::settingsOf(*w.session), w.prompter);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    typeInto(dialog, 0, QStringLiteral("0000100"));
    typeInto(dialog, 2, QStringLiteral("12"));
    typeInto(dialog, 3, QStringLiteral("0000400"));
    QCOMPARE(amount(&dialog, 2)->displayText(), QStringLiteral("12_____"));
    QTest::mouseClick(named<QPushButton>(&dialog, QStringLiteral("cmdOK")), Qt::LeftButton);
    QTRY_VERIFY(!dialog.isVisible());
    QCOMPARE(w.prompter.asked().size(), 1);
    QCOMPARE(w.prompter.asked()[0].title, QStringLiteral("Error"));
    QVERIFY(w.prompter.asked()[0].text.startsWith(QStringLiteral("Error # ")));
    QVERIFY(w.prompter.asked()[0].text.contains(QStringLiteral("输入奖金额应为7位,不足应用'0'补齐7位!")));
    const PrizeRules r = prize_session::settingsOf(*w.session).read().rules;
    QCOMPARE(r.slot(1).money, 100);
    QCOMPARE(r.slot(2).money, 50000);
    QCOMPARE(r.slot(3).money, 5000);
    QCOMPARE(r.slot(4).money, 3000);
}

QTEST_MAIN(PrizeRulesTest)
#include "test_prize_rules.moc"
