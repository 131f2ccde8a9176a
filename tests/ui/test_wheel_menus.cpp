// The wheel menus of 组号方式 driven through their named entries: the labels counted from the
// wheel tables when a menu opens, GAganRote on the chosen wheel, the six-number list, and the
// last wheel's table reopened.
#include "filter/filter_workspace.h"
#include "filter/ui/filter_window.h"
#include "generation/ui/six_wheel_list_window.h"
#include "generation/wheels/wheel_store.h"
#include "support/main_window_fixture.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

namespace {

struct Fixture : MainWindowFixture {
    Fixture() {
        wheel_store::ensureDatabases(home.root.root());
        open();
        window->show();
    }
    void pick(const QString& button, const QList<int>& numbers) {
        for (int n : numbers)
            window->findChild<QPushButton*>(QStringLiteral("%1(%2)").arg(button).arg(n))->click();
    }
    QAction* entry(const QString& given) { return window->findChild<QAction*>(given); }
    int rows(wheels::Family family, const QString& table) {
        return *wheel_store::rowCount(wheel_store::databasePath(home.root.root(), family), table);
    }
};

}  // namespace

class WheelMenusTest : public QObject {
    Q_OBJECT
private slots:
    void basicWheelsOfferOnlyTheNumberOfPicks();
    void superWheelCountsTicketsAndOpensGAganRote();
    void sixNumberWheelIsAListWithItsMoney();
};

void WheelMenusTest::basicWheelsOfferOnlyTheNumberOfPicks() {
    Fixture f;
    f.pick(QStringLiteral("Command1"), {1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23});
    f.pick(QStringLiteral("Command2"), {2, 4});
    emit f.window->menuActions().basicWheelMenu->aboutToShow();
    for (int k = 9; k <= 22; ++k) QCOMPARE(f.entry(QStringLiteral("meuRt(%1)").arg(k))->isEnabled(), k == 12);
    f.entry(QStringLiteral("meuRt(12)"))->trigger();
    QCOMPARE(f.window->filterWindows().size(), 1);
    FilterWindow* w = f.window->filterWindows().last();
    QCOMPARE(w->objectName(), QStringLiteral("GAganRote"));
    QCOMPARE(w->workspace().table().rowCount(),
             uint64_t(f.rows(wheels::Family::Basic, QStringLiteral("12"))));

    // Eight picks: no basic wheel.
    f.window->findChild<QPushButton*>(QStringLiteral("Command45"))->click();
    f.pick(QStringLiteral("Command1"), {1, 2, 3, 4, 5, 6, 7, 8});
    emit f.window->menuActions().basicWheelMenu->aboutToShow();
    for (int k = 9; k <= 22; ++k) QVERIFY(!f.entry(QStringLiteral("meuRt(%1)").arg(k))->isEnabled());
}

// Twelve front and three back picks: 中4保3 counts the wheel's rows times the three back
// pairs, and GAganRote holds as many tickets, the back pair changing fastest.
void WheelMenusTest::superWheelCountsTicketsAndOpensGAganRote() {
    Fixture f;
    f.pick(QStringLiteral("Command1"), {35, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22});
    f.pick(QStringLiteral("Command2"), {9, 1, 5});
    emit f.window->menuActions().superWheelMenu->aboutToShow();
    const int rows = f.rows(wheels::Family::Super, QStringLiteral("1243"));
    QAction* e43 = f.entry(QStringLiteral("mnuRt43"));
    QVERIFY(e43->isEnabled());
    QCOMPARE(e43->text(), QStringLiteral("12选 中4保3共计%1注(&R)").arg(rows * 3));
    e43->trigger();
    FilterWindow* w = f.window->filterWindows().last();
    const CandidateTable& t = w->workspace().table();
    QCOMPARE(t.rowCount(), uint64_t(rows * 3));
    const int backs[3][2] = {{1, 5}, {1, 9}, {5, 9}};  // the back picks sorted
    for (int r = 0; r < 3; ++r) {
        QCOMPARE(int(t.numberColumn(6)[r]), backs[r][0]);
        QCOMPARE(int(t.numberColumn(7)[r]), backs[r][1]);
        QCOMPARE(t.numberColumn(1)[r], t.numberColumn(1)[0]);
    }
    for (uint64_t r = 0; r < t.rowCount(); ++r)
        for (int k = 1; k < 5; ++k) QVERIFY(t.numberColumn(k)[r] < t.numberColumn(k + 1)[r]);

    // Closed and reopened from the stored table: the same tickets.
    w->workspace().waitForWrite();
    w->close();
    QTRY_VERIFY(f.window->filterWindows().isEmpty());
    f.window->menuActions().recallWheel->trigger();
    QCOMPARE(f.window->filterWindows().size(), 1);
    QCOMPARE(f.window->filterWindows().last()->objectName(), QStringLiteral("GAganRoteMb"));
    QCOMPARE(f.window->filterWindows().last()->workspace().table().rowCount(), uint64_t(rows * 3));
}

void WheelMenusTest::sixNumberWheelIsAListWithItsMoney() {
    Fixture f;
    f.pick(QStringLiteral("Command1"), {3, 6, 9, 12, 15, 18, 21, 24, 27, 30});
    f.pick(QStringLiteral("Command2"), {1, 2});
    emit f.window->menuActions().sixFrontWheelMenu->aboutToShow();
    const int rows = f.rows(wheels::Family::Six, QStringLiteral("561044"));
    QAction* e44 = f.entry(QStringLiteral("F6RT44"));
    QCOMPARE(e44->text(), QStringLiteral("10选复6 中4保4共计%1注,合计 %2 元 (&U)").arg(rows).arg(rows * 12));
    e44->trigger();
    auto* list = f.window->findChild<SixWheelListWindow*>();
    QVERIFY(list);
    QCOMPARE(list->objectName(), QStringLiteral("aganFRote"));
    QCOMPARE(int(list->tickets().size()), rows);
    QCOMPARE(list->findChild<QLabel*>(QStringLiteral("Label6"))->text(),
             QStringLiteral("%1圆").arg(rows * 12));
    QCOMPARE(list->grid()->rowCount(), (rows + 4) / 5);
    QCOMPARE(list->grid()->item(0, 0)->text(), QStringLiteral("1"));
    for (const std::vector<int>& ticket : list->tickets())
        for (int n : ticket) QVERIFY(n % 3 == 0 && n >= 3 && n <= 30);
    QVERIFY(list->grid()->item(0, 1)->text().startsWith(QLatin1Char(' ')));
}

QTEST_MAIN(WheelMenusTest)
#include "test_wheel_menus.moc"
