// The clicks of the filter window on a table above the size at which the engine goes parallel
// and above the rows a grid is handed at once: a click that comes while a long action reports
// its progress runs after it, a cancelled history filter leaves every column as it was, and the
// grid shows the live rows, fetching more as it is asked.
#include "app/ui/main_menu.h"
#include "app/ui/main_window.h"
#include "filter/result_grid_model.h"
#include "filter/ui/filter_window.h"
#include "history/history_import.h"
#include "support/main_window_fixture.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <vector>

namespace {

// 16 front and all 12 back numbers: 4368 x 66 = 288288 tickets.
constexpr int kFrontPicks = 16;
constexpr uint64_t kTickets = 288288;

struct Fixture : MainWindowFixture {
    FilterWindow* filter = nullptr;

    Fixture() {
        open([this](Session& s) {
            HistoryImport(s, prompter).importFile(HistoryImport::Mode::Whole, bundledHistory());
        });
        window->show();
        for (int n = 1; n <= kFrontPicks; ++n)
            window->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->click();
        window->findChild<QPushButton*>(QStringLiteral("Command7"))->click();  // every back number
        emit window->menuActions().playModesMenu->aboutToShow();
        window->menuActions().multiExpansion->trigger();
        if (!window->filterWindows().isEmpty()) filter = window->filterWindows().last();
    }
    QPushButton* button(const char* name) const {
        return filter->findChild<QPushButton*>(QString::fromLatin1(name));
    }
    void setBoxes(const QString& boxes, const char* low, const char* high) const {
        filter->findChild<QLineEdit*>(boxes + QStringLiteral("(0)"))->setText(QString::fromLatin1(low));
        filter->findChild<QLineEdit*>(boxes + QStringLiteral("(1)"))->setText(QString::fromLatin1(high));
    }
    ResultGridModel* model() const {
        return qobject_cast<ResultGridModel*>(
            filter->findChild<QTableView*>(QStringLiteral("MSFlexGrid1"))->model());
    }
    const CandidateTable& table() const { return filter->workspace().table(); }
};

// Every column an action may change, row by row, read through the table's own accessors.
struct Columns {
    std::vector<bool> dead, previous;
    std::vector<QString> reasons;
    std::vector<int32_t> values;

    explicit Columns(const CandidateTable& t) {
        for (uint64_t r = 0; r < t.rowCount(); ++r) {
            dead.push_back(t.filteredOut().test(r));
            previous.push_back(t.previousFilteredOut().test(r));
            reasons.push_back(t.reasonText(r));
            for (int32_t v : {int32_t{t.paramValueAt(r)}, int32_t{t.superCountAt(r)},
                              int32_t{t.failCountAt(r)}, t.matchIssueAt(r)})
                values.push_back(v);
        }
    }
    bool operator==(const Columns&) const = default;
};

std::vector<uint64_t> liveRows(const CandidateTable& t) {
    std::vector<uint64_t> rows;
    for (uint64_t r = 0; r < t.rowCount(); ++r)
        if (!t.filteredOut().test(r)) rows.push_back(r);
    return rows;
}

// Cancels the work progress dialog as soon as it exists.
void cancelProgressWhenShown() {
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, timer, [timer] {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* d = qobject_cast<QProgressDialog*>(w);
                d && d->objectName() == QLatin1String("workProgress")) {
                d->cancel();
                timer->deleteLater();
            }
    });
    timer->start(0);
}

}  // namespace

class FilterWindowClicksTest : public QObject {
    Q_OBJECT
private slots:
    void aClickDuringAnActionRunsAfterIt();
    void aClickOnTheWindowWhileItsProgressShowsIsTaken();
    void aTabChangedWhileAnActionRunsCountsForTheClicksAfterIt();
    void aCancelledHistoryFilterLeavesTheTable();
    void theGridShowsTheLiveRowsAndFetchesMore();
};

void FilterWindowClicksTest::aClickDuringAnActionRunsAfterIt() {
    // The same two clicks one after the other, then the second while the first reports progress.
    Fixture one;
    QVERIFY(one.filter);
    QCOMPARE(one.table().rowCount(), kTickets);
    one.setBoxes(QStringLiteral("Text5"), "2", "3");
    one.button("Option28")->click();  // 历史同4号滤 over every draw (the proposed span)
    const uint64_t afterHistory = one.table().liveCount();
    QVERIFY(afterHistory < kTickets && afterHistory > 0);
    one.button("Option4")->click();  // 偶数个数 kept to 2..3
    QVERIFY(one.table().liveCount() < afterHistory);

    Fixture two;
    QVERIFY(two.filter);
    two.setBoxes(QStringLiteral("Text5"), "2", "3");
    bool clickedWhileActing = false;
    QTimer::singleShot(0, two.filter, [&] {
        clickedWhileActing = two.filter->acting();
        two.button("Option4")->click();
    });
    two.button("Option28")->click();
    QVERIFY(clickedWhileActing);
    QVERIFY(!two.filter->acting());
    QVERIFY(Columns(two.table()) == Columns(one.table()));
    QCOMPARE(two.filter->windowTitle(), one.filter->windowTitle());
    QCOMPARE(two.model()->headerData(8, Qt::Horizontal).toString(), QStringLiteral("偶数个数"));
    QVERIFY(two.button("Option4")->styleSheet().contains(QStringLiteral("blue")));

    // A close that comes while an action runs closes the window once the action is done.
    bool openWhileActing = false;
    QTimer::singleShot(0, two.filter, [&] {
        two.filter->close();
        openWhileActing = two.filter->acting() && two.filter->isVisible();
    });
    two.button("Option26")->click();
    QVERIFY(openWhileActing);
    QTRY_VERIFY(two.window->filterWindows().isEmpty());
}

// The work progress dialog, once the work has reported.
QProgressDialog* workProgress() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* d = qobject_cast<QProgressDialog*>(w);
            d && d->objectName() == QLatin1String("workProgress"))
            return d;
    return nullptr;
}

void FilterWindowClicksTest::aClickOnTheWindowWhileItsProgressShowsIsTaken() {
    Fixture f;
    QVERIFY(f.filter);
    // The history filter's progress shows, as it does on a larger table once the work has run a
    // moment; then the player sets the boxes of 偶数个数, clicks it with the mouse (through the
    // window system, which holds back clicks on a window a modal dialog blocks) and changes the
    // boxes again: the click runs after the filter, with the boxes as they were at the click.
    QString noteAfterClick;
    bool clicked = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        QProgressDialog* progress = workProgress();
        if (!progress) return;
        timer.stop();
        progress->show();
        QVERIFY(QTest::qWaitForWindowExposed(progress));
        f.setBoxes(QStringLiteral("Text5"), "2", "3");
        QPushButton* even = f.button("Option4");
        QTest::mouseClick(f.filter->windowHandle(), Qt::LeftButton, {},
                          even->mapTo(f.filter, even->rect().center()));
        f.setBoxes(QStringLiteral("Text5"), "0", "0");
        noteAfterClick = progress->labelText();
        clicked = true;
    });
    timer.start(0);
    f.button("Option28")->click();  // 历史同4号滤
    QVERIFY(clicked);
    QVERIFY2(noteAfterClick.contains(QStringLiteral("1 个操作等待")), qPrintable(noteAfterClick));
    QVERIFY(!f.filter->acting());
    QCOMPARE(f.model()->headerData(8, Qt::Horizontal).toString(), QStringLiteral("偶数个数"));
    QVERIFY(f.button("Option4")->styleSheet().contains(QStringLiteral("blue")));
    const std::vector<uint64_t> live = liveRows(f.table());
    QVERIFY(!live.empty());
    for (uint64_t r : live) {
        int even = 0;
        for (int c = 1; c <= 5; ++c) even += f.table().numberColumn(c)[r] % 2 == 0;
        QVERIFY2(even >= 2 && even <= 3, qPrintable(QString::number(r)));
    }
    QCOMPARE(f.filter->windowTitle(), f.filter->workspace().caption());
}

void FilterWindowClicksTest::aTabChangedWhileAnActionRunsCountsForTheClicksAfterIt() {
    // The player switches to 全区, sets the boxes of 偶数个数 and clicks it, once after the history
    // filter and once while it runs: both times the click runs in the zone the window showed.
    const auto clicksInBothZones = [](Fixture& f) {
        f.filter->findChild<QTabBar*>(QStringLiteral("TabStrip1"))->setCurrentIndex(2);
        f.setBoxes(QStringLiteral("Text5"), "3", "4");
        f.button("Option4")->click();
    };
    Fixture one;
    QVERIFY(one.filter);
    one.button("Option28")->click();
    clicksInBothZones(one);
    QCOMPARE(one.filter->workspace().zoneScope, int16_t{3});

    Fixture two;
    QVERIFY(two.filter);
    bool clickedWhileActing = false;
    QTimer::singleShot(0, two.filter, [&] {
        clickedWhileActing = two.filter->acting();
        clicksInBothZones(two);
    });
    two.button("Option28")->click();
    QVERIFY(clickedWhileActing);
    QVERIFY(!two.filter->acting());
    QCOMPARE(two.filter->workspace().zoneScope, int16_t{3});
    QVERIFY(Columns(two.table()) == Columns(one.table()));
    QCOMPARE(two.filter->windowTitle(), one.filter->windowTitle());
}

void FilterWindowClicksTest::aCancelledHistoryFilterLeavesTheTable() {
    Fixture f;
    QVERIFY(f.filter);
    // An earlier filter gives the columns something to keep: flags, reasons, canshu.
    f.setBoxes(QStringLiteral("Text2"), "60", "120");
    f.button("Option23")->click();
    const Columns before(f.table());
    const QString caption = f.filter->windowTitle();

    cancelProgressWhenShown();
    f.button("Option27")->click();  // 历史同5号滤
    QVERIFY(Columns(f.table()) == before);
    QCOMPARE(f.filter->windowTitle(), caption);
    QCOMPARE(static_cast<uint64_t>(f.model()->selectedCount()), f.table().liveCount());

    // Not cancelled, the same filter changes the table.
    f.button("Option26")->click();
    QVERIFY(!(Columns(f.table()) == before));
    QVERIFY(f.filter->windowTitle() != caption);
}

void FilterWindowClicksTest::theGridShowsTheLiveRowsAndFetchesMore() {
    Fixture f;
    QVERIFY(f.filter);
    ResultGridModel* m = f.model();
    f.setBoxes(QStringLiteral("Text5"), "2", "3");
    f.button("Option4")->click();
    const std::vector<uint64_t> live = liveRows(f.table());
    QVERIFY(live.size() > static_cast<size_t>(ResultGridModel::kFetchRows));
    QCOMPARE(m->selectedCount(), live.size());
    QCOMPARE(m->rowCount(), ResultGridModel::kFetchRows);
    QVERIFY(m->canFetchMore({}));
    const auto rowShows = [&](int viewRow) {
        const uint64_t r = live[static_cast<size_t>(viewRow)];
        if (m->tableRow(viewRow) != r) return false;
        if (m->index(viewRow, 0).data().toInt() != f.table().idxAt(r)) return false;
        for (int k = 1; k <= 7; ++k)
            if (m->index(viewRow, k).data().toInt() != f.table().numberColumn(k)[r]) return false;
        const int even = m->index(viewRow, 8).data().toInt();
        return even >= 2 && even <= 3;
    };
    for (int row : {0, 1, 4095, 4096, ResultGridModel::kFetchRows - 1})
        QVERIFY2(rowShows(row), qPrintable(QString::number(row)));
    while (m->canFetchMore({})) m->fetchMore({});
    QCOMPARE(static_cast<size_t>(m->rowCount()), live.size());
    for (int row : {ResultGridModel::kFetchRows, m->rowCount() - 1})
        QVERIFY2(rowShows(row), qPrintable(QString::number(row)));
    QCOMPARE(m->viewRowOf(live.back()), m->rowCount() - 1);

    // A filter that throws nothing out keeps the binding: no reset, the cells repaint.
    QSignalSpy resets(m, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy changed(m, &QAbstractItemModel::dataChanged);
    f.setBoxes(QStringLiteral("Text5"), "0", "5");
    f.button("Option4")->click();
    QCOMPARE(resets.count(), 0);
    QVERIFY(changed.count() > 0);
    QCOMPARE(m->selectedCount(), live.size());

    // Reset all shows every ticket again, from a first batch; invert all none.
    f.button("Command1")->click();
    QCOMPARE(resets.count(), 1);
    QCOMPARE(m->selectedCount(), kTickets);
    QCOMPARE(m->rowCount(), ResultGridModel::kFetchRows);
    QCOMPARE(m->tableRow(ResultGridModel::kFetchRows - 1), uint64_t{ResultGridModel::kFetchRows - 1});
    f.button("Command2")->click();
    QCOMPARE(m->rowCount(), 0);
    QVERIFY(!m->canFetchMore({}));
    // A page of ids after inverting back: ids 20001..30000.
    f.button("Command2")->click();
    f.filter->findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(QStringLiteral("2"));
    f.button("Command111")->click();
    QCOMPARE(m->rowCount(), 10000);
    QCOMPARE(m->index(0, 0).data().toInt(), 20001);
    QCOMPARE(m->index(9999, 0).data().toInt(), 30000);
}

QTEST_MAIN(FilterWindowClicksTest)
#include "test_filter_window_clicks.moc"
