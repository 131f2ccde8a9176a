// The pass rates beside the filter window's boxes on the real history: each label against a
// count over the draws' own numbers, as boxes are typed into, spans chosen, the list mode and
// the zone switched, and the integrated filter's label as its boxes are ticked.
#include "app/ui/main_menu.h"
#include "app/ui/main_window.h"
#include "filter/ui/filter_window.h"
#include "history/history_import.h"
#include "support/main_window_fixture.h"
#include "workspace/session.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

#include <functional>

namespace {

struct Fixture : MainWindowFixture {
    FilterWindow* filter = nullptr;

    // The real history, then 7 front and 3 back numbers expanded: a small table.
    Fixture() {
        open([this](Session& s) {
            HistoryImport(s, prompter).importFile(HistoryImport::Mode::Whole, bundledHistory());
        });
        window->show();
        for (int n : {3, 9, 14, 22, 27, 31, 35})
            window->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->click();
        for (int n : {2, 7, 11})
            window->findChild<QPushButton*>(QStringLiteral("Command2(%1)").arg(n))->click();
        emit window->menuActions().playModesMenu->aboutToShow();
        window->findChild<QAction*>(QStringLiteral("mnuLst"))->trigger();
        if (!window->filterWindows().isEmpty()) filter = window->filterWindows().last();
    }
    template <typename W>
    W* find(const QString& name) const {
        return filter->findChild<W*>(name);
    }
    // The player's typing: the box emptied, then the keys.
    void type(const QString& box, const QString& text) const {
        QLineEdit* e = find<QLineEdit>(box);
        e->selectAll();
        QTest::keyClick(e, Qt::Key_Delete);
        QTest::keyClicks(e, text);
    }
    // The player's choice of the item of a span combo with data n.
    void chooseSpan(const QString& combo, int n) const {
        QComboBox* c = find<QComboBox>(combo);
        const int item = c->findData(n);
        c->setCurrentIndex(item);
        emit c->activated(item);
    }
    // The tooltip a label should show: of the last `span` draws (0 all), those that `passes`.
    QString expected(int span, const std::function<bool(const DrawNumbers&)>& passes) const {
        const DrawHistory& h = session->history();
        const int from = span == 0 ? 1 : std::max(1, h.drawCount() - span + 1);
        int draws = 0, passed = 0;
        for (int d = from; d <= h.drawCount(); ++d, ++draws)
            passed += passes(h.numbers[static_cast<size_t>(d)]);
        return QStringLiteral("历史符合率：近%1期中%2期符合").arg(draws).arg(passed);
    }
    double boxValue(const QString& box) const { return find<QLineEdit>(box)->text().toDouble(); }
};

int frontSum(const DrawNumbers& n) { return n[1] + n[2] + n[3] + n[4] + n[5]; }
int frontEvens(const DrawNumbers& n) {
    int e = 0;
    for (size_t k = 1; k <= 5; ++k) e += n[k] % 2 == 0;
    return e;
}

}  // namespace

class FilterWindowPassRatesTest : public QObject {
    Q_OBJECT
private slots:
    void labelsFollowBoxesSpansListModeAndZone();
};

void FilterWindowPassRatesTest::labelsFollowBoxesSpansListModeAndZone() {
    Fixture f;
    QVERIFY(f.filter);
    QVERIFY(f.session->history().drawCount() > 2000);
    auto* sumRate = f.find<QLabel>(QStringLiteral("LabelPassRate(0)"));     // 各位数和 beside Text2
    auto* evenRate = f.find<QLabel>(QStringLiteral("LabelPassRate(3)"));    // 偶数个数 beside Text5
    auto* firstRate = f.find<QLabel>(QStringLiteral("LabelPassRate(10)"));  // 第1位 beside Text12
    auto* integrated = f.find<QLabel>(QStringLiteral("LabelPassRateZh"));
    QVERIFY(sumRate && evenRate && firstRate && integrated);
    QVERIFY(!f.find<QLabel>(QStringLiteral("LabelPassRate(20)")));  // 所有参数检索 has no boxes

    // Typed boxes over every draw (the combo's first item), then over the last 30 draws.
    f.type(QStringLiteral("Text2(0)"), QStringLiteral("80"));
    f.type(QStringLiteral("Text2(1)"), QStringLiteral("110"));
    const auto sumIn = [](int lo, int hi) {
        return [=](const DrawNumbers& n) { return frontSum(n) >= lo && frontSum(n) <= hi; };
    };
    QTRY_COMPARE(sumRate->toolTip(), f.expected(0, sumIn(80, 110)));
    const QString allText = sumRate->text();
    QVERIFY(allText.endsWith(QLatin1Char('%')));
    f.find<QComboBox>(QStringLiteral("Combo1(0)"))->setCurrentIndex(3);  // 前30期, the boxes as they are
    QTRY_COMPARE(sumRate->toolTip(), f.expected(30, sumIn(80, 110)));
    // A chosen span also fills the boxes from those draws: the rate of the new range.
    f.chooseSpan(QStringLiteral("Combo1(0)"), 50);
    const int lo = static_cast<int>(f.boxValue(QStringLiteral("Text2(0)")));
    const int hi = static_cast<int>(f.boxValue(QStringLiteral("Text2(1)")));
    QTRY_COMPARE(sumRate->toolTip(), f.expected(50, sumIn(lo, hi)));

    // The list mode reads the list box as the filter does: whole-number words, and for a
    // position any value whose digits the list holds.
    f.find<QRadioButton>(QStringLiteral("Option36"))->click();
    f.type(QStringLiteral("Text5(3)"), QStringLiteral(" 2 03 "));
    QTRY_COMPARE(evenRate->toolTip(), f.expected(0, [](const DrawNumbers& n) { return frontEvens(n) == 2; }));
    f.chooseSpan(QStringLiteral("Combo1(10)"), 100);  // refills Text12(3) with the most frequent
    f.find<QLineEdit>(QStringLiteral("Text12(3)"))->setText(QStringLiteral(" 13 "));
    const auto firstIn = [](std::initializer_list<int> values) {
        return [=](const DrawNumbers& n) { return std::ranges::find(values, n[1]) != values.end(); };
    };
    QTRY_COMPARE(firstRate->toolTip(), f.expected(100, firstIn({1, 3, 13})));
    f.find<QRadioButton>(QStringLiteral("Option22"))->click();  // back to ranges

    // The back zone: 第1位 is the first back number.
    f.find<QTabBar>(QStringLiteral("TabStrip1"))->setCurrentIndex(1);
    f.type(QStringLiteral("Text12(0)"), QStringLiteral("1"));
    f.type(QStringLiteral("Text12(1)"), QStringLiteral("6"));
    QTRY_COMPARE(firstRate->toolTip(),
                 f.expected(100, [](const DrawNumbers& n) { return n[6] >= 1 && n[6] <= 6; }));
    f.find<QTabBar>(QStringLiteral("TabStrip1"))->setCurrentIndex(0);

    // The integrated filter over the span of 所有参数检索: nothing ticked keeps every draw; 偶数个数
    // ticked keeps the draws with 2 or 3 evens, and its tolerance of one lets them all through.
    f.type(QStringLiteral("Text5(0)"), QStringLiteral("2"));
    f.type(QStringLiteral("Text5(1)"), QStringLiteral("3"));
    f.find<QComboBox>(QStringLiteral("Combo1(20)"))->setCurrentIndex(10);  // 前100期
    QTRY_COMPARE(integrated->toolTip(), f.expected(100, [](const DrawNumbers&) { return true; }));
    QCOMPARE(integrated->text(), QStringLiteral("100%"));
    f.find<QCheckBox>(QStringLiteral("Check1(3)"))->click();
    QTRY_COMPARE(integrated->toolTip(), f.expected(100, [](const DrawNumbers& n) {
        return frontEvens(n) >= 2 && frontEvens(n) <= 3;
    }));
    QVERIFY(integrated->text() != QStringLiteral("100%"));
    f.find<QCheckBox>(QStringLiteral("Check3"))->click();
    QTRY_COMPARE(integrated->text(), QStringLiteral("100%"));
    f.filter->close();
}

QTEST_MAIN(FilterWindowPassRatesTest)
#include "test_filter_window_pass_rates.moc"
