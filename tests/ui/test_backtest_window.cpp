// The back-test window driven from the main window's entry: a saved setting tested on the
// stored expansion of the picks, each row's kept count against a plain count over the table,
// the survival against the draw's own sum, a cancel that keeps the rows done, and the export.
#include "engine/candidate_store.h"
#include "filter/templates/saved_setting_store.h"
#include "app/ui/backtest_rows_model.h"
#include "app/ui/backtest_window.h"
#include "filter/ui/filter_window.h"
#include "history/history_import.h"
#include "support/main_window_fixture.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

#include <set>

class BacktestWindowTest : public QObject {
    Q_OBJECT
private slots:
    void testsASettingOnThePicks();
};

namespace {

// Twelve front picks and two back ones expanded into zuhe: 792 tickets.
void expandPicks(MainWindowFixture& f) {
    f.window->show();
    for (int n : {1, 3, 5, 8, 11, 14, 17, 20, 23, 27, 31, 35})
        f.window->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->click();
    for (int n : {4, 9}) f.window->findChild<QPushButton*>(QStringLiteral("Command2(%1)").arg(n))->click();
    emit f.window->menuActions().playModesMenu->aboutToShow();
    f.window->findChild<QAction*>(QStringLiteral("mnuLst"))->trigger();
    for (FilterWindow* w : f.window->findChildren<FilterWindow*>()) {
        // The template frame's button opens the back-test too.
        w->findChild<QPushButton*>(QStringLiteral("CmdBacktest"))->click();
        QVERIFY(w->findChild<BacktestWindow*>());
        w->findChild<BacktestWindow*>()->close();
        // Closing the window waits for its record: zuhe is stored.
        w->close();
    }
}

}  // namespace

void BacktestWindowTest::testsASettingOnThePicks() {
    MainWindowFixture f;
    QVERIFY(f.open([&f](Session& s) {
        HistoryImport(s, f.prompter).importFile(HistoryImport::Mode::Whole, f.bundledHistory());
    }));
    const DrawHistory& h = f.session->history();
    QVERIFY(h.drawCount() > 30);
    expandPicks(f);
    // A setting that keeps 各位数和 60..120 in the front zone.
    ParamWindowState state = ParamWindowState::defaults();
    state.box(ParamId::NumberSum)[0] = QStringLiteral("60");
    state.box(ParamId::NumberSum)[1] = QStringLiteral("120");
    state.integratedBox[static_cast<size_t>(param_catalogue::runBox(ParamId::NumberSum))] = true;
    f.prompter.answer(QStringLiteral("和值60到120"));
    QVERIFY(saved_setting_store::save(f.session->filterDb(), state, f.prompter, QDateTime::currentDateTime()));

    f.window->findChild<QAction*>(QStringLiteral("mnuBacktest"))->trigger();
    auto* w = f.window->findChild<BacktestWindow*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(w);
    auto* strategy = w->findChild<QComboBox*>(QStringLiteral("ComboStrategy"));
    const int item = strategy->findData(QStringLiteral("和值60到120"));
    QVERIFY(item > 0);
    strategy->setCurrentIndex(item);
    w->findChild<QComboBox*>(QStringLiteral("ComboSpace"))->setCurrentIndex(1);
    w->findChild<QSpinBox*>(QStringLiteral("SpinSpan"))->setValue(12);
    QSignalSpy ended(w, &BacktestWindow::runEnded);
    w->findChild<QPushButton*>(QStringLiteral("CmdStart"))->click();
    QVERIFY(ended.wait(60000));

    // Kept: the picks' tickets whose front sum lies in 60..120, whatever the draw.
    candidate_store::LoadResult zuhe =
        candidate_store::load(f.session->filterDb(), schema::CandidateKind::Combinations);
    QVERIFY(zuhe.table);
    uint64_t inRange = 0;
    std::set<std::array<int, 7>> tickets;
    for (uint64_t r = 0; r < zuhe.table->rowCount(); ++r) {
        int sum = 0;
        std::array<int, 7> t{};
        for (int k = 1; k <= 7; ++k) t[static_cast<size_t>(k - 1)] = zuhe.table->numberColumn(k)[r];
        for (int k = 0; k < 5; ++k) sum += t[static_cast<size_t>(k)];
        inRange += sum >= 60 && sum <= 120;
        tickets.insert(t);
    }
    const std::vector<backtest::DrawRow>& rows = w->rowsModel().rows();
    QCOMPARE(rows.size(), size_t(12));
    for (size_t i = 0; i < rows.size(); ++i) {
        const DrawNumbers& d = h.numbers[static_cast<size_t>(h.drawCount() - 11 + static_cast<int>(i))];
        QCOMPARE(rows[i].issue, d[0]);
        QCOMPARE(rows[i].kept, inRange);
        QCOMPARE(rows[i].cost, static_cast<int64_t>(inRange) * 2);
        const std::array<int, 7> winning{d[1], d[2], d[3], d[4], d[5], d[6], d[7]};
        const int sum = d[1] + d[2] + d[3] + d[4] + d[5];
        QCOMPARE(rows[i].inTable, tickets.count(winning) > 0);
        QCOMPARE(rows[i].survived, rows[i].inTable && sum >= 60 && sum <= 120);
    }
    QVERIFY(w->findChild<QLabel*>(QStringLiteral("LabelSummary"))->text().startsWith(QStringLiteral("共12期")));

    // The export writes the rows under their headings and the summary after them.
    const QString file = QDir(f.home.dir.path()).filePath(QStringLiteral("回测.xlsx"));
    f.prompter.answer(file);
    w->findChild<QPushButton*>(QStringLiteral("CmdExport"))->click();
    QVERIFY(QFileInfo(file).size() > 0);

    // A cancel after the first row keeps the rows done, and the summary counts them. (The worker
    // may still win the race on a fast machine: then every row is there and nothing says 已取消.)
    w->findChild<QSpinBox*>(QStringLiteral("SpinSpan"))->setValue(h.drawCount() - 1);
    QSignalSpy inserted(&w->rowsModel(), &QAbstractItemModel::rowsInserted);
    w->findChild<QPushButton*>(QStringLiteral("CmdStart"))->click();
    QVERIFY(inserted.wait(60000));
    w->findChild<QPushButton*>(QStringLiteral("CmdCancel"))->click();
    QVERIFY(ended.wait(60000));
    const size_t done = w->rowsModel().rows().size();
    QVERIFY(done >= 1);
    const QString summary = w->findChild<QLabel*>(QStringLiteral("LabelSummary"))->text();
    QVERIFY2(summary.startsWith(QStringLiteral("共%1期").arg(done)), qPrintable(summary));
    QCOMPARE(summary.contains(QStringLiteral("已取消")), done < size_t(h.drawCount() - 1));
    w->close();
}

QTEST_MAIN(BacktestWindowTest)
#include "test_backtest_window.moc"
