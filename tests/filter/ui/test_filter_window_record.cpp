// The filter window and its record in filnum.db: a save that fails shows its reason when the
// window waits for the record (closing it), as a message of the window.
#include "app/ui/main_menu.h"
#include "app/ui/main_window.h"
#include "engine/candidate_store.h"
#include "filter/ui/filter_window.h"
#include "support/main_window_fixture.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QTest>

class FilterWindowRecordTest : public QObject {
    Q_OBJECT
private slots:
    void aFailedSaveShowsItsReason();
};

void FilterWindowRecordTest::aFailedSaveShowsItsReason() {
    MainWindowFixture f;
    QVERIFY(f.open());
    f.window->show();
    for (int n : {3, 9, 14, 22, 27, 31})
        f.window->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->click();
    for (int n : {2, 7}) f.window->findChild<QPushButton*>(QStringLiteral("Command2(%1)").arg(n))->click();
    emit f.window->menuActions().playModesMenu->aboutToShow();
    f.window->findChild<QAction*>(QStringLiteral("mnuLst"))->trigger();
    QCOMPARE(f.window->filterWindows().size(), 1);
    FilterWindow* w = f.window->filterWindows().last();
    QCOMPARE(w->workspace().waitForWrite().outcome, candidate_store::Outcome::Done);

    // From now on the file refuses the record's column image.
    QVERIFY(f.session->filterDb().exec(QStringLiteral("CREATE TRIGGER [refuse] BEFORE INSERT ON [%1] "
                                                      "BEGIN SELECT RAISE(ABORT, '磁盘已满'); END")
                                           .arg(candidate_store::kImageTable)));
    w->findChild<QPushButton*>(QStringLiteral("Command2"))->click();  // invert all: a new write
    QVERIFY(f.prompter.messages().isEmpty());
    w->close();
    QTRY_VERIFY(f.window->filterWindows().isEmpty());
    QCOMPARE(f.prompter.messages(), QStringList{QStringLiteral("组合保存失败：磁盘已满")});
    QCOMPARE(f.prompter.asked().last().icon, Prompter::Icon::Warning);
}

QTEST_MAIN(FilterWindowRecordTest)
#include "test_filter_window_record.moc"
