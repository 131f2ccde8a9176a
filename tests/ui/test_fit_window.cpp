// The fitted-line window and the 3D view opened from the trend windows' menus and driven
// through their named controls.
#include "analysis/ui/fit_plot.h"
#include "analysis/ui/fit_window.h"
#include "analysis/ui/trend_window.h"
#include "analysis/ui/view_3d_window.h"
#include "history/draw_entry.h"
#include "history/history_import.h"
#include "support/main_window_fixture.h"
#include "support/window_shot.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Eight draws, the newest on a line through the origin.
const QStringList kDraws{
    QStringLiteral("2025101 01 07 14 22 30 03 11"), QStringLiteral("2025102 05 07 19 26 33 03 09"),
    QStringLiteral("2025103 07 08 09 10 11 01 12"), QStringLiteral("2025104 10 13 18 27 35 06 12"),
    QStringLiteral("2025105 07 21 28 31 34 02 08"), QStringLiteral("2025106 03 09 12 20 25 04 05"),
    QStringLiteral("2025107 06 11 17 23 29 07 10"), QStringLiteral("2025108 02 04 06 08 10 01 02")};

struct Fixture : MainWindowFixture {
    QTemporaryDir files;
    explicit Fixture(const QStringList& draws = kDraws) {
        const QString path = files.filePath(QStringLiteral("h.txt"));
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(draws.join(QLatin1Char('\n')).toUtf8());
        f.close();
        open([this, path](Session& s) { HistoryImport(s, prompter).importFile(HistoryImport::Mode::Whole, path); });
    }

    // Opens a trend window by its button in the main window, then a view by its menu entry.
    template <typename View>
    View* openView(const char* button, const char* entry) {
        window->findChild<QPushButton*>(QString::fromLatin1(button))->click();
        if (window->trendWindows().isEmpty()) return nullptr;
        TrendWindow* trend = window->trendWindows().last();
        auto* action = trend->menuBar()->findChild<QAction*>(QString::fromLatin1(entry));
        if (!action || !action->isEnabled()) return nullptr;
        action->trigger();
        View* view = trend->findChild<View*>();
        if (!view || !QTest::qWaitForWindowExposed(view)) return nullptr;
        return view;
    }
};

QString textOf(const FitPlot* plot, const char* label) {
    return plot->findChild<QLabel*>(QString::fromLatin1(label))->text();
}

QLineEdit* digitField(FitWindow* w, int i) {
    return w->findChild<QLineEdit*>(QStringLiteral("MaskEdBox1(%1)").arg(i));
}

// A click on the window, then a running number typed into the four digit fields, each digit
// where the focus went.
void typeDraw(FitWindow* w, const QString& digits) {
    QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(w->width() - 5, 5));
    for (const QChar c : digits) QTest::keyClick(w->focusWidget(), c.toLatin1());
}

}  // namespace

class FitWindowTest : public QObject {
    Q_OBJECT
private slots:
    void theFrontMenuOpensTheEightNewestFits();
    void typedDigitsMoveOnAndTheFourthFitsTheNinthPlot();
    void fewerThanEightDrawsLeaveTheEightPlotsEmpty();
    void theCloseButtonAndAClickOnTheWindow();
    void the3dViewOffersTwelveTypesAndSaysWhenItCannotDraw();
    void the3dViewIsKeptWhenClosedAndShowsDrawsAddedMeanwhile();
};

void FitWindowTest::theFrontMenuOpensTheEightNewestFits() {
    Fixture f;
    auto* w = f.openView<FitWindow>("Command9", "mnuNihe");
    QVERIFY(w);
    QCOMPARE(w->objectName(), QStringLiteral("frmNh"));
    QCOMPARE(w->windowTitle(), QStringLiteral("拟合直线参考"));
    QVERIFY(w->isWindow() && w->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("heading"))->text(),
             QStringLiteral("本图为各位数平均值拟和直线以及参数与前八期拟和直线的对比."));
    QVERIFY(w->findChild<QLabel*>(QStringLiteral("note"))->text().startsWith(QStringLiteral("说明:直线拟合表示")));
    for (int k = 0; k < 8; ++k) QCOMPARE(textOf(w->plot(k), "heading"), QStringLiteral("第%1期").arg(8 - k));
    QCOMPARE(textOf(w->plot(0), "labelA"), QStringLiteral("A=0"));
    QCOMPARE(textOf(w->plot(0), "labelB"), QStringLiteral("B=2"));
    QCOMPARE(textOf(w->plot(0), "labelR"), QStringLiteral("R=1"));
    // Plot 6 holds draw 3, the straight run 7..11 that the origin bends.
    QCOMPARE(w->plot(5)->geometry()->samples[1], QPointF(1, 7));
    QCOMPARE(textOf(w->plot(5), "labelB"), QStringLiteral("B=1.85714"));
    QVERIFY(!w->plot(8)->geometry());
    QCOMPARE(textOf(w->plot(8), "heading"), QString());
    saveShot(w, QStringLiteral("frmNh"));
}

void FitWindowTest::typedDigitsMoveOnAndTheFourthFitsTheNinthPlot() {
    Fixture f;
    auto* w = f.openView<FitWindow>("Command9", "mnuNihe");
    QVERIFY(w);
    typeDraw(w, QStringLiteral("0"));
    QCOMPARE(w->focusWidget(), digitField(w, 1));
    for (const char c : {'0', '0'}) QTest::keyClick(w->focusWidget(), c);
    QCOMPARE(w->focusWidget(), digitField(w, 3));
    QVERIFY(!w->plot(8)->geometry());
    QTest::keyClick(w->focusWidget(), '3');
    QCOMPARE(textOf(w->plot(8), "heading"), QStringLiteral("第3期"));
    QCOMPARE(textOf(w->plot(8), "labelA"), QStringLiteral("A=2.85714"));

    // Above the newest draw: nothing changes.
    typeDraw(w, QStringLiteral("0009"));
    QCOMPARE(textOf(w->plot(8), "heading"), QStringLiteral("第3期"));

    // 0000 is the row before the first draw: no straightness.
    typeDraw(w, QStringLiteral("0000"));
    QCOMPARE(textOf(w->plot(8), "heading"), QStringLiteral("第0期"));
    QCOMPARE(textOf(w->plot(8), "labelA"), QStringLiteral("A=0"));
    QCOMPARE(textOf(w->plot(8), "labelB"), QStringLiteral("B=0"));
    QCOMPARE(textOf(w->plot(8), "labelR"), QStringLiteral("R="));
    // The eight newest stay as they were.
    QCOMPARE(textOf(w->plot(0), "heading"), QStringLiteral("第8期"));
}

void FitWindowTest::fewerThanEightDrawsLeaveTheEightPlotsEmpty() {
    Fixture f(kDraws.mid(0, 7));
    auto* w = f.openView<FitWindow>("Command9", "mnuNihe");
    QVERIFY(w);
    for (int k = 0; k < 8; ++k) {
        QVERIFY(!w->plot(k)->geometry());
        QCOMPARE(textOf(w->plot(k), "heading"), QString());
        QCOMPARE(textOf(w->plot(k), "labelA"), QString());
    }
    typeDraw(w, QStringLiteral("0007"));
    QCOMPARE(textOf(w->plot(8), "heading"), QStringLiteral("第7期"));
    QVERIFY(w->plot(8)->geometry());
}

void FitWindowTest::theCloseButtonAndAClickOnTheWindow() {
    Fixture f;
    QPointer<FitWindow> w = f.openView<FitWindow>("Command9", "mnuNihe");
    QVERIFY(w);
    auto* close = w->findChild<QPushButton*>(QStringLiteral("Command2"));
    QCOMPARE(close->text(), QStringLiteral("关闭(&C)"));
    digitField(w, 2)->setFocus();
    QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(w->width() - 5, 5));
    QCOMPARE(w->focusWidget(), digitField(w, 0));
    close->click();
    QTRY_VERIFY(w.isNull());
}

void FitWindowTest::the3dViewOffersTwelveTypesAndSaysWhenItCannotDraw() {
    QStringList draws;
    for (int d = 1; d <= 120; ++d) draws << QStringLiteral("2025%1 01 02 03 04 05 01 02").arg(d, 3, 10, QLatin1Char('0'));
    Fixture f(draws);
    auto* w = f.openView<View3dWindow>("Command48", "mnu3D");
    QVERIFY(w);
    QCOMPARE(w->objectName(), QStringLiteral("frm3D"));
    QCOMPARE(w->windowTitle(), QStringLiteral("历史号码走势3D跟踪显示"));
    const auto option = [w](int i) { return w->findChild<QRadioButton*>(QStringLiteral("Option1(%1)").arg(i)); };
    QCOMPARE(option(0)->text(), QStringLiteral("3D条形(时变)"));
    QCOMPARE(option(7)->text(), QStringLiteral("3D梯形(位变)"));
    QCOMPARE(option(11)->text(), QStringLiteral("2D折线(位变)"));
    QVERIFY(option(0)->isChecked());

    // The newest hundred draws along the axis, the seven positions as series.
    auto* shown = w->findChild<QSpinBox*>(QStringLiteral("drawsShown"));
    QCOMPARE(shown->value(), 100);
    QCOMPARE(w->table().rows(), 7);
    QCOMPARE(w->table().columns(), 100);
    QCOMPARE(w->table().columnLabels.back(), QStringLiteral("2025120"));
    option(5)->click();
    QCOMPARE(w->chartType().caption, QStringLiteral("3D面积(位变)"));
    QCOMPARE(w->table().rows(), 100);
    QCOMPARE(w->table().columns(), 7);
    w->findChild<QPushButton*>(QStringLiteral("showAll"))->click();
    QCOMPARE(w->table().rows(), 120);

    // Headless there is no OpenGL: a message stands in for the graph.
    auto* message = w->findChild<QLabel*>(QStringLiteral("noGraphics"));
    QCOMPARE(message->isVisible(), !w->hasGraphics());
    if (!w->hasGraphics()) QVERIFY(!w->bars() && !w->surface());
    saveShot(w, QStringLiteral("frm3D"));
}

// Making a graph is costly: closing frm3D hides it, and the entry shows the same window again,
// with a draw entered meanwhile at the end of its table.
void FitWindowTest::the3dViewIsKeptWhenClosedAndShowsDrawsAddedMeanwhile() {
    Fixture f;
    QPointer<View3dWindow> w = f.openView<View3dWindow>("Command48", "mnu3D");
    QVERIFY(w);
    w->findChild<QRadioButton*>(QStringLiteral("Option1(5)"))->click();  // draws as rows
    QCOMPARE(w->table().rows(), 8);
    QVERIFY(w->close());
    QVERIFY(w && !w->isVisible());

    DrawEntry::Boxes boxes{QStringLiteral("03"), QStringLiteral("11"), QStringLiteral("19"), QStringLiteral("24"),
                           QStringLiteral("33"), QStringLiteral("02"), QStringLiteral("09")};
    QVERIFY(DrawEntry(*f.session, f.prompter).submit(boxes).done());

    TrendWindow* trend = f.window->trendWindows().last();
    trend->menuBar()->findChild<QAction*>(QStringLiteral("mnu3D"))->trigger();
    QCOMPARE(trend->findChildren<View3dWindow*>().size(), 1);
    QVERIFY(w && w->isVisible());
    QCOMPARE(w->table().rows(), 9);
    QCOMPARE(w->table().values.back(), (std::vector<int>{3, 11, 19, 24, 33, 2, 9}));
    QCOMPARE(w->findChild<QRadioButton*>(QStringLiteral("Option1(5)"))->isChecked(), true);
}

QTEST_MAIN(FitWindowTest)
#include "test_fit_window.moc"
