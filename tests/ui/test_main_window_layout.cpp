// The main window keeps its layout on a 1366 x 768 screen whatever the board does: the spin
// rows show up to 16 front and 9 back cells within the width the number board gives them.
#include "app/ui/main_menu.h"
#include "app/ui/main_window.h"
#include "filter/ui/filter_window.h"
#include "support/main_window_fixture.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTest>

namespace {
struct Fixture : MainWindowFixture {
    Fixture() {
        open();
        window->show();
    }
    void click(const QString& name) const { window->findChild<QPushButton*>(name)->click(); }
    void chooseMode(const QString& item) const {
        emit window->menuActions().playModesMenu->aboutToShow();
        QVERIFY(window->findChild<QAction*>(item)->isEnabled());
        window->findChild<QAction*>(item)->trigger();
    }
    QLabel* cell(const QString& name) const { return window->findChild<QLabel*>(name); }
    // The cell lies wholly inside the spin panel, wide enough for its two digits.
    bool fitsInPanel(const QString& name) const {
        QLabel* c = cell(name);
        auto* panel = window->findChild<QWidget*>(QStringLiteral("SpinRows"));
        const QRect r(c->mapTo(panel, QPoint(0, 0)), c->size());
        const int digits = c->fontMetrics().horizontalAdvance(QStringLiteral("35"));
        return c->isVisible() && panel->rect().contains(r) && c->contentsRect().width() >= digits;
    }
};
}  // namespace

class MainWindowLayoutTest : public QObject {
    Q_OBJECT
private slots:
    void spinRowsNeverWidenTheWindow();
};

void MainWindowLayoutTest::spinRowsNeverWidenTheWindow() {
    Fixture f;
    QVERIFY(QTest::qWaitForWindowExposed(f.window.get()));
    const QSize hint = f.window->sizeHint();
    const QSize least = f.window->minimumSizeHint();
    const int width = f.window->width();
    QVERIFY(width <= 1366);
    QVERIFY(f.cell(QStringLiteral("Label1(4)"))->isVisible());
    QVERIFY(!f.cell(QStringLiteral("Label1(5)"))->isVisible());

    // 17 front and 9 back picks, then the largest spin of each zone.
    for (int n = 1; n <= 17; ++n) f.click(QStringLiteral("Command1(%1)").arg(n));
    for (int n = 1; n <= 9; ++n) f.click(QStringLiteral("Command2(%1)").arg(n));
    f.chooseMode(QStringLiteral("meuDanxuan(16)"));
    f.chooseMode(QStringLiteral("meuDanxuanHou(8)"));
    QVERIFY(f.fitsInPanel(QStringLiteral("Label2(15)")));
    QVERIFY(f.fitsInPanel(QStringLiteral("lblHou2(7)")));
    QVERIFY(!f.cell(QStringLiteral("lblHou2(8)"))->isVisible());
    QCOMPARE(f.window->sizeHint(), hint);
    QCOMPARE(f.window->minimumSizeHint(), least);

    // 复选组合排列 spins every pick: all 16 front and 9 back cells show.
    f.click(QStringLiteral("Command1(17)"));
    f.chooseMode(QStringLiteral("mnuLst"));
    QVERIFY(!f.window->filterWindows().isEmpty());
    f.window->filterWindows().last()->close();
    QVERIFY(f.fitsInPanel(QStringLiteral("Label1(15)")));
    QVERIFY(f.fitsInPanel(QStringLiteral("lblHou1(8)")));
    QCOMPARE(f.window->sizeHint(), hint);
    QCOMPARE(f.window->minimumSizeHint(), least);
    QCOMPARE(f.window->width(), width);
}

QTEST_MAIN(MainWindowLayoutTest)
#include "test_main_window_layout.moc"
