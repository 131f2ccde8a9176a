// The super filters and the filter templates through the filter window: a relation filter
// with its prompts, recording it by the right button and mnuAdf, replaying it, browsing it,
// and a saved setting through frmFind.
#include "app/ui/main_menu.h"
#include "filter/ui/filter_window.h"
#include "filter/ui/saved_settings_dialog.h"
#include "support/main_window_fixture.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

namespace {
const QString kHead = QStringLiteral("复选组合情况排列总表（每页至多显示10000注，双击任意注可删除）   合计：");

struct Fixture : MainWindowFixture {
    FilterWindow* filter = nullptr;
    // 7 front and 3 back numbers: 63 tickets, 30 of them hold both 03 and 09.
    Fixture() {
        open();
        window->show();
        for (int n : {3, 9, 14, 22, 27, 31, 35})
            window->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->click();
        for (int n : {2, 7, 11}) window->findChild<QPushButton*>(QStringLiteral("Command2(%1)").arg(n))->click();
        emit window->menuActions().playModesMenu->aboutToShow();
        window->findChild<QAction*>(QStringLiteral("mnuLst"))->trigger();
        if (!window->filterWindows().isEmpty()) filter = window->filterWindows().last();
    }
    QPushButton* button(const QString& name) const { return filter->findChild<QPushButton*>(name); }
    QString count(int n) const { return kHead + QString::number(n) + QStringLiteral("注"); }
    // The relation numbers 03 and 09, as typed into the prompts.
    void answerPair() { prompter.answer(QStringLiteral("2")).answer(QStringLiteral("3")).answer(QStringLiteral("9")); }
};
}  // namespace

class FilterWindowSuperTest : public QObject {
    Q_OBJECT
private slots:
    void relationFilterRecordedAndReplayed();
    void savedSettingRoundTrip();
};

void FilterWindowSuperTest::relationFilterRecordedAndReplayed() {
    Fixture f;
    QVERIFY(f.filter);
    f.answerPair();
    f.button(QStringLiteral("Option25(0)"))->click();
    QCOMPARE(f.prompter.asked().at(0).title, QStringLiteral("相生/相克个数"));
    QCOMPARE(f.filter->windowTitle(), f.count(33));
    QVERIFY(f.button(QStringLiteral("Option25(0)"))->styleSheet().contains(QStringLiteral("blue")));

    // The right button asks the same, runs nothing, and the popup's item records the step.
    f.answerPair();
    emit f.button(QStringLiteral("Option25(0)"))->customContextMenuRequested(QPoint(1, 1));
    QCOMPARE(f.filter->workspace().stepCode(), int16_t{10});
    auto* popup = f.filter->findChild<QMenu*>(QStringLiteral("mnuAdm"));
    QTRY_VERIFY(popup->isVisible());
    f.filter->findChild<QAction*>(QStringLiteral("mnuAdf"))->trigger();
    popup->close();
    auto* scroll = f.filter->findChild<QScrollBar*>(QStringLiteral("HScroll1"));
    QTRY_COMPARE(f.session->filterDb().scalar(QStringLiteral("SELECT count(*) FROM moban")).toInt(), 1);
    QCOMPARE(scroll->maximum(), 1);
    QCOMPARE(f.filter->windowTitle(), f.count(33));

    // Reset, then replay the template: the same tickets die again.
    f.button(QStringLiteral("Command1"))->click();
    QCOMPARE(f.filter->windowTitle(), f.count(63));
    f.button(QStringLiteral("Command9"))->click();
    QCOMPARE(f.filter->windowTitle(), f.count(33));

    // Browsing shows the step in Label3.
    QCOMPARE(scroll->value(), 1);
    emit scroll->valueChanged(1);
    QVERIFY(!f.filter->findChild<QLabel*>(QStringLiteral("Label3"))->text().isEmpty());

    // Command5 deletes the last step.
    f.button(QStringLiteral("Command5"))->click();
    QCOMPARE(f.session->filterDb().scalar(QStringLiteral("SELECT count(*) FROM moban")).toInt(), 0);
    f.filter->close();
}

void FilterWindowSuperTest::savedSettingRoundTrip() {
    Fixture f;
    QVERIFY(f.filter);
    auto* high = f.filter->findChild<QLineEdit*>(QStringLiteral("Text2(1)"));
    high->setText(QStringLiteral("123"));
    f.prompter.answer(QStringLiteral("我的设置"));
    f.button(QStringLiteral("Command7"))->click();
    high->setText(QStringLiteral("5"));

    // Command6 opens frmFind; a double click on the name loads it.
    QTimer::singleShot(0, [] {
        auto* finder = qobject_cast<SavedSettingsDialog*>(QApplication::activeModalWidget());
        if (!finder) return;
        QListWidget* list = finder->list();
        if (list->count() > 0)
            emit list->itemDoubleClicked(list->item(0));
        else
            finder->reject();
    });
    f.button(QStringLiteral("Command6"))->click();
    QCOMPARE(high->text(), QStringLiteral("123"));
    f.filter->close();
}

QTEST_MAIN(FilterWindowSuperTest)
#include "test_filter_window_super.moc"
