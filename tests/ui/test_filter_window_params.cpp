// The parameter side of the filter window on a real history: buttons with their boxes, the
// integrated filter, paging, the all-rows view, a manual delete, and the template button.
#include "app/ui/main_menu.h"
#include "app/ui/main_window.h"
#include "filter/result_grid_model.h"
#include "filter/ui/filter_window.h"
#include "history/history_import.h"
#include "support/main_window_fixture.h"
#include "support/ticket_reference.h"
#include "support/window_shot.h"
#include "workspace/schema.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

namespace {
const QString kHead = QStringLiteral("复选组合情况排列总表（每页至多显示10000注，双击任意注可删除）   合计：");

using ticket_reference::Ticket;
using ticket_reference::evens;
using ticket_reference::frontSum;

// The picks of the fixture below.
const std::vector<int> kFront{2, 5, 8, 11, 13, 17, 20, 24, 27, 30, 32, 35};
const std::vector<int> kBack{3, 6, 9, 12};

uint64_t expectedCount(const std::function<bool(const Ticket&)>& live) {
    static const std::vector<Ticket> all = ticket_reference::expand(kFront, kBack);
    return static_cast<uint64_t>(ticket_reference::count(all, live));
}

struct Fixture : MainWindowFixture {
    FilterWindow* filter = nullptr;

    // The real history, then 12 front and 4 back numbers expanded: 792 x 6 = 4752 tickets.
    Fixture() {
        open([this](Session& s) { HistoryImport(s, prompter).importFile(HistoryImport::Mode::Whole, bundledHistory()); });
        window->show();
        for (int n : kFront) window->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->click();
        for (int n : kBack) window->findChild<QPushButton*>(QStringLiteral("Command2(%1)").arg(n))->click();
        emit window->menuActions().playModesMenu->aboutToShow();
        window->findChild<QAction*>(QStringLiteral("mnuLst"))->trigger();
        if (!window->filterWindows().isEmpty()) filter = window->filterWindows().last();
    }
    QPushButton* button(const char* name) const { return filter->findChild<QPushButton*>(QString::fromLatin1(name)); }
    QLineEdit* box(const QString& name) const { return filter->findChild<QLineEdit*>(name); }
    QTableView* grid() const { return filter->findChild<QTableView*>(QStringLiteral("MSFlexGrid1")); }
    uint64_t live() const { return filter->workspace().table().liveCount(); }
};
}  // namespace

class FilterWindowParamsTest : public QObject {
    Q_OBJECT
private slots:
    void parameterButtonsFilterWithTheirBoxes();
    void pagingAllRowsAndManualDelete();
    void rangeBoxesComeFromTheHistory();
};

void FilterWindowParamsTest::parameterButtonsFilterWithTheirBoxes() {
    Fixture f;
    QVERIFY(f.filter);
    QCOMPARE(f.filter->windowTitle(), kHead + QStringLiteral("4752注"));
    QCOMPARE(expectedCount([](const Ticket&) { return true; }), uint64_t{4752});
    // 偶数个数 kept between 2 and 3.
    const auto twoOrThree = [](const Ticket& t) { return evens(t) >= 2 && evens(t) <= 3; };
    f.box(QStringLiteral("Text5(0)"))->setText(QStringLiteral("2"));
    f.box(QStringLiteral("Text5(1)"))->setText(QStringLiteral("3"));
    f.button("Option4")->click();
    const uint64_t afterEven = f.live();
    QCOMPARE(afterEven, expectedCount(twoOrThree));
    QCOMPARE(f.filter->windowTitle(), kHead + QString::number(afterEven) + QStringLiteral("注"));
    QVERIFY(f.button("Option4")->styleSheet().contains(QStringLiteral("blue")));
    // The ninth column shows the parameter under its caption.
    QCOMPARE(f.grid()->model()->headerData(8, Qt::Horizontal).toString(), QStringLiteral("偶数个数"));
    const int even = f.grid()->model()->index(0, 8).data().toInt();
    QVERIFY(even >= 2 && even <= 3);
    // 各位数和 excluded from 0 to 80: the sums of the rest are above 80.
    f.filter->findChild<QRadioButton*>(QStringLiteral("Option1(1)"))->setChecked(true);
    f.box(QStringLiteral("Text2(1)"))->setText(QStringLiteral("80"));
    f.button("Option23")->click();
    const uint64_t afterSum = f.live();
    QCOMPARE(afterSum, expectedCount([&](const Ticket& t) { return twoOrThree(t) && frontSum(t) > 80; }));
    QCOMPARE(static_cast<uint64_t>(f.grid()->model()->rowCount()), afterSum);
    for (int r = 0; r < f.grid()->model()->rowCount() && r < 50; ++r)
        QVERIFY(f.grid()->model()->index(r, 8).data().toInt() > 80);
    // 过滤复位 returns the rows of the last filter only.
    f.button("cmdRetn")->click();
    QCOMPARE(f.live(), afterEven);

    // The integrated filter with two boxes ticked and the tolerance count following the ticks.
    f.filter->findChild<QRadioButton*>(QStringLiteral("Option1(0)"))->setChecked(true);
    f.filter->findChild<QCheckBox*>(QStringLiteral("Check1(0)"))->click();
    f.filter->findChild<QCheckBox*>(QStringLiteral("Check1(3)"))->click();
    auto* txtRc1 = f.box(QStringLiteral("TxtRc(1)"));
    txtRc1->setText(QStringLiteral("50"));
    f.filter->findChild<QCheckBox*>(QStringLiteral("Check1(3)"))->click();
    f.filter->findChild<QCheckBox*>(QStringLiteral("Check1(3)"))->click();
    QCOMPARE(f.box(QStringLiteral("TxtRc(0)"))->text(), QStringLiteral("1"));  // 2 x 50% = 1
    f.box(QStringLiteral("Text2(0)"))->setText(QStringLiteral("60"));
    f.box(QStringLiteral("Text2(1)"))->setText(QStringLiteral("120"));
    // Without 整合过滤容错比 no failure is allowed: both ranges must hold.
    const auto failures = [](const Ticket& t, int evenHi) {
        return int{frontSum(t) < 60 || frontSum(t) > 120} + int{evens(t) < 2 || evens(t) > evenHi};
    };
    f.button("Option29")->click();
    QCOMPARE(f.live(), expectedCount([&](const Ticket& t) { return twoOrThree(t) && failures(t, 3) == 0; }));
    QVERIFY(f.live() < afterEven);
    QVERIFY(f.button("Option29")->styleSheet().contains(QStringLiteral("blue")));
    f.button("cmdRetn")->click();
    QCOMPARE(f.live(), afterEven);
    // With the tolerance ticked one failure of the two passes: 偶数个数 narrowed to 2 fails the
    // tickets with three evens, which die only when their sum is out of range as well.
    f.box(QStringLiteral("Text5(1)"))->setText(QStringLiteral("2"));
    f.filter->findChild<QCheckBox*>(QStringLiteral("Check3"))->click();
    f.button("Option29")->click();
    const uint64_t tolerated = expectedCount([&](const Ticket& t) { return twoOrThree(t) && failures(t, 2) <= 1; });
    QCOMPARE(f.live(), tolerated);
    QVERIFY(tolerated < afterEven);
    QVERIFY(tolerated > expectedCount([&](const Ticket& t) { return twoOrThree(t) && failures(t, 2) == 0; }));

    f.filter->resize(1366, 740);
    QVERIFY(QTest::qWaitForWindowExposed(f.filter));
    saveShot(f.filter, QStringLiteral("filter_window_after_filters"));
    f.filter->close();
}

void FilterWindowParamsTest::pagingAllRowsAndManualDelete() {
    Fixture f;
    QVERIFY(f.filter);
    auto* model = qobject_cast<ResultGridModel*>(f.grid()->model());
    QVERIFY(model);
    QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    // A page is a stretch of ids: page 0 holds the first 4752, page 1 (the default) none.
    f.button("Command111")->click();
    QCOMPARE(model->rowCount(), 0);
    f.box(QStringLiteral("Text1"))->setText(QStringLiteral("0"));
    f.button("Command111")->click();
    QCOMPARE(model->rowCount(), 4752);
    QCOMPARE(model->columnCount(), 7);  // idx and fig1..fig6: the paged view lacks fig7

    // Double click on a live row deletes it by hand, a second one restores it.
    emit f.grid()->doubleClicked(model->index(3, 0));
    QCOMPARE(f.filter->windowTitle(), kHead + QStringLiteral("4751注"));
    QVERIFY(model->isPainted(3));
    QCOMPARE(f.filter->workspace().table().reasonText(model->tableRow(3)), QStringLiteral("手工删除"));
    emit f.grid()->doubleClicked(model->index(3, 0));
    QCOMPARE(f.filter->windowTitle(), kHead + QStringLiteral("4752注"));
    emit f.grid()->doubleClicked(model->index(7, 0));
    f.button("cmdRetn")->click();  // the hand delete counts as a filter for the undo
    QCOMPARE(f.live(), uint64_t{4752});

    // 所有组合(含被过滤)显示: every row with its reason; the choice returns to 过滤剩余.
    f.button("Command2")->click();
    f.filter->findChild<QRadioButton*>(QStringLiteral("optZzuhe(1)"))->click();
    QCOMPARE(model->rowCount(), 4752);
    QCOMPARE(model->headerData(9, Qt::Horizontal).toString(), QStringLiteral("过滤缘故"));
    QCOMPARE(model->index(0, 9).data().toString(), QStringLiteral("全部反选-"));
    QVERIFY(f.filter->findChild<QRadioButton*>(QStringLiteral("optZzuhe(0)"))->isChecked());

    // 添加到组号模板 asks, then adds the live tickets; while the template's table has not been
    // made it stays empty.
    f.button("Command1")->click();
    f.prompter.answer(true);
    f.button("cmdAdmb")->click();
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("添加组号模板"));
    QVERIFY(!f.session->filterDb().tableExists(QStringLiteral("zuheMoban")));
    QVERIFY(f.session->filterDb().exec(schema::candidate(schema::CandidateKind::Template).createStatement()));
    f.prompter.answer(true);
    f.button("cmdAdmb")->click();
    QCOMPARE(f.session->filterDb().scalar(QStringLiteral("SELECT count(*) FROM zuheMoban")).toInt(), 4752);
    // Adding the same tickets again leaves no duplicate.
    f.prompter.answer(true);
    f.button("cmdAdmb")->click();
    QCOMPARE(f.session->filterDb().scalar(QStringLiteral("SELECT count(*) FROM zuheMoban")).toInt(), 4752);
    f.filter->close();
}

void FilterWindowParamsTest::rangeBoxesComeFromTheHistory() {
    Fixture f;
    QVERIFY(f.filter);
    const DrawHistory& h = f.session->history();
    // At load the boxes hold average -/+ half the spread of the whole history (偶数个数: Onum).
    double sum = 0, lo = 99, hi = 0;
    for (int i = 1; i <= h.drawCount(); ++i) {
        sum += h.front[i].evenCount;
        lo = std::min<double>(lo, h.front[i].evenCount);
        hi = std::max<double>(hi, h.front[i].evenCount);
    }
    const double avg = sum / h.drawCount();
    const float margin = static_cast<float>((hi - lo) / 200.0 * 100);
    QCOMPARE(f.box(QStringLiteral("Text5(0)"))->text().toInt(), static_cast<int>(std::floor(avg - margin)));
    QCOMPARE(f.box(QStringLiteral("Text5(1)"))->text().toInt(), static_cast<int>(std::floor(avg + margin)));

    // 范围查询 over the last 10 draws: min and max of 各位数和 (Znum), three digits wide.
    f.filter->findChild<QRadioButton*>(QStringLiteral("Option22"))->setChecked(true);
    auto* combo = f.filter->findChild<QComboBox*>(QStringLiteral("Combo1(0)"));
    QVERIFY(combo);
    combo->setCurrentIndex(1);
    emit combo->activated(1);
    int zlo = 999, zhi = 0;
    for (int i = h.drawCount() - 9; i <= h.drawCount(); ++i) {
        zlo = std::min<int>(zlo, h.front[i].sum);
        zhi = std::max<int>(zhi, h.front[i].sum);
    }
    QCOMPARE(f.box(QStringLiteral("Text2(0)"))->text(), QStringLiteral("%1").arg(zlo, 3, 10, QLatin1Char('0')));
    QCOMPARE(f.box(QStringLiteral("Text2(1)"))->text(), QStringLiteral("%1").arg(zhi, 3, 10, QLatin1Char('0')));

    // 最值查询 shows the list boxes and fills the list with the most frequent values.
    QVERIFY(f.box(QStringLiteral("Text5(3)"))->isHidden());
    f.filter->findChild<QRadioButton*>(QStringLiteral("Option36"))->setChecked(true);
    QVERIFY(!f.box(QStringLiteral("Text5(3)"))->isHidden());
    QCOMPARE(f.button("Option66")->text(), QStringLiteral("指定号码"));
    auto* evenCombo = f.filter->findChild<QComboBox*>(QStringLiteral("Combo1(3)"));
    emit evenCombo->activated(0);
    QCOMPARE(f.box(QStringLiteral("Text5(3)"))->text().split(QLatin1Char(' '), Qt::SkipEmptyParts).size(), 2);
    f.filter->close();
}

QTEST_MAIN(FilterWindowParamsTest)
#include "test_filter_window_params.moc"
