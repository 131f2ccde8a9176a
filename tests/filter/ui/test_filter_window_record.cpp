// The filter window and its record in filnum.db: a save that fails shows its reason when the
// window waits for the record (closing it), as a message of the window; a stored table is checked
// against the zone sizes of the workspace's game.
#include "app/ui/filter_windows.h"
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
    void aStoredTableIsCheckedAgainstTheGamesZones();
};

namespace {
// Stores an imported table of the tickets in filnum.db.
bool storeImported(Session& s, const std::vector<std::array<int, 7>>& tickets) {
    CandidateTable t(schema::CandidateKind::Imported, tickets.size());
    for (size_t r = 0; r < tickets.size(); ++r)
        for (int c = 1; c <= 7; ++c)
            t.numberColumn(c)[r] = static_cast<uint8_t>(tickets[r][static_cast<size_t>(c - 1)]);
    return candidate_store::save(s.filterDb(), t).outcome == candidate_store::Outcome::Done;
}
}  // namespace

void FilterWindowRecordTest::aStoredTableIsCheckedAgainstTheGamesZones() {
    MainWindowFixture f;
    QVERIFY(f.open([](Session& s) { QVERIFY(s.setFrontSize(30) && s.setBackSize(15)); }));
    QCOMPARE(f.session->frontSize(), 30);
    // The game's largest numbers open.
    QVERIFY(storeImported(*f.session, {{1, 2, 3, 4, 30, 1, 15}, {5, 11, 17, 23, 29, 14, 15}}));
    FilterWindow* w = openFilterWindow(FilterSource::Imported, *f.session, f.prompter, f.window.get());
    QVERIFY(w);
    QCOMPARE(w->workspace().table().rowCount(), uint64_t{2});
    QCOMPARE(w->workspace().table().numberColumn(5)[0], uint8_t{30});
    QVERIFY(f.prompter.messages().isEmpty());
    w->close();
    delete w;

    // 33 is a number of larger games, not of this one's front zone; 16 not of its back zone.
    for (const std::array<int, 7> wrong :
         {std::array<int, 7>{1, 2, 3, 4, 33, 1, 2}, {1, 2, 3, 4, 5, 1, 16}}) {
        QVERIFY(storeImported(*f.session, {{1, 2, 3, 4, 5, 1, 2}, wrong}));
        QVERIFY(!openFilterWindow(FilterSource::Imported, *f.session, f.prompter, f.window.get()));
        QVERIFY2(f.prompter.messages().last().contains(QStringLiteral("filnum")),
                 qPrintable(f.prompter.messages().last()));
    }
}

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
