// The chart windows opened from the trend windows' menus and driven through their named
// controls: which entry opens which window, the position states and their K line, the scope's
// plots, the clicks that open the enlarged sums and the pie, an empty history, printing.
#include "analysis/ui/chart_panel_window.h"
#include "analysis/ui/chart_plot.h"
#include "analysis/ui/chart_zoom_window.h"
#include "analysis/ui/pie_window.h"
#include "analysis/ui/trend_window.h"
#include "app/ui/main_window.h"
#include "history/history_import.h"
#include "support/main_window_fixture.h"
#include "support/window_shot.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QPieSeries>
#include <QPrinter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace {

// Draw i: front numbers spread over the zone, a back pair; all different from draw to draw.
QStringList drawsOf(int count) {
    QStringList out;
    for (int i = 1; i <= count; ++i) {
        const int a = (i * 7) % 6 + 1;
        const QList<int> front{a, a + 6 + i % 3, a + 13, a + 20 + i % 4, a + 28};
        QStringList parts{QString::number(2025000 + i)};
        for (int n : front) parts << QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
        parts << QStringLiteral("%1").arg(i % 5 + 1, 2, 10, QLatin1Char('0'))
              << QStringLiteral("%1").arg(i % 5 + 7, 2, 10, QLatin1Char('0'));
        out << parts.join(QLatin1Char(' '));
    }
    return out;
}

struct Fixture : MainWindowFixture {
    QTemporaryDir files;
    explicit Fixture(const QStringList& draws) {
        const QString path = files.filePath(QStringLiteral("h.txt"));
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(draws.join(QLatin1Char('\n')).toUtf8());
        f.close();
        open([this, path, &draws](Session& s) {
            if (!draws.isEmpty()) HistoryImport(s, prompter).importFile(HistoryImport::Mode::Whole, path);
        });
    }

    // Command48 both zones, Command9 the front zone, Command10 the back zone.
    TrendWindow* trend(const char* button) {
        window->findChild<QPushButton*>(QString::fromLatin1(button))->click();
        return window->trendWindows().isEmpty() ? nullptr : window->trendWindows().last();
    }
    // Triggers the menu entry and returns the window it opened.
    template <typename W>
    W* openFrom(QWidget* from, const char* entry) {
        auto* action = from->findChild<QAction*>(QString::fromLatin1(entry));
        if (!action || !action->isEnabled()) return nullptr;
        const QList<W*> before = from->findChildren<W*>();
        action->trigger();
        for (W* w : from->findChildren<W*>())
            if (!before.contains(w)) return w;
        return nullptr;
    }
};

ChartPlot* plotOf(QWidget* w, const char* given) { return w->findChild<ChartPlot*>(QString::fromLatin1(given)); }

void click(QWidget* w, const QString& name) { w->findChild<QPushButton*>(name)->click(); }

// The K line as the rule states it, in plain arithmetic: rising weights up to ten draws, then
// ten down to one over the last ten, whole units (a half to even).
long expectedK(const QList<int>& v, int i) {
    const int count = std::min(i + 1, 10);
    double sum = 0;
    for (int j = 0; j < count; ++j) sum += (j + 1) * v[i + 1 - count + j];
    return std::lrint(sum / (count * (count + 1) / 2));
}

}  // namespace

class ChartWindowsTest : public QObject {
    Q_OBJECT
private slots:
    void menuEntriesOpenTheirWindows();
    void positionStatesKeepTheirStateAndTheirKLine();
    void offsetButtonsShowEachPosition();
    void scopesDecideWhatThePlotsDraw();
    void clicksOpenTheEnlargedSumsAndThePie();
    void noDrawsGiveGridsAndTitlesOnly();
    void printingToPdfAndAFailingPrinter();
};

void ChartWindowsTest::menuEntriesOpenTheirWindows() {
    Fixture f(drawsOf(60));
    TrendWindow* both = f.trend("Command48");
    QVERIFY(both);
    const struct {
        const char* entry;
        const char* window;
        QString caption;
    } entries[] = {
        {"mnuZshi", "FrmBigb",
         QStringLiteral("历史号码各位走势观察放大图(单独位观察时,黄线为理想均值,红线为样本均值,绿线为加权平均K线走势):")},
        {"mnuBzhun", "FrmBigg", QStringLiteral("历史号理想标准差走势(绿线为加权平均K线走势)")},
        {"mnuLsheshu", "frmBigt",
         QStringLiteral("历史总和图放大分析(横坐标表示开奖轮次,纵坐标表示和数的大小,绿线表示加权平均K线走势)")},
        {"mnuCsheshu", "frmTec5", QStringLiteral("和数分类参数")},
        {"mnuFenbu", "frmTec4", QStringLiteral("区间分布")},
        {"mnuZou", "frmTec3", QStringLiteral("轴距走势")},
        {"mnuBcan", "frmTec", QStringLiteral("参数参考分析")},
        {"mnuGcan", "frmTec2", QStringLiteral("高阶连号最大阶次及拟合直线参数走势")},
    };
    for (const auto& e : entries) {
        auto* w = f.openFrom<ChartWindow>(both, e.entry);
        QVERIFY2(w, e.entry);
        QCOMPARE(w->objectName(), QString::fromLatin1(e.window));
        QCOMPARE(w->windowTitle(), e.caption);
        QVERIFY(w->isVisible() && w->isWindow());
        QCOMPARE(w->findChild<QAction*>(QStringLiteral("mnuPrint"))->text(), QStringLiteral("打印图形窗体(&P)"));
        saveShot(w, QStringLiteral("both-") + w->objectName());
    }
    // The pie of the numbers comes from the front window's probability menu.
    TrendWindow* front = f.trend("Command9");
    auto* pie = f.openFrom<PieWindow>(front, "mnuBt");
    QVERIFY(pie);
    QCOMPARE(pie->objectName(), QStringLiteral("firCir"));
    QCOMPARE(pie->windowTitle(), QStringLiteral("历史号码概率饼形图"));
    QCOMPARE(pie->series()->count(), 35);
    QCOMPARE(pie->series()->slices().at(6)->value(), double(f.session->stats().front.frequency[7]));
    saveShot(pie, QStringLiteral("front-firCir"));
}

void ChartWindowsTest::positionStatesKeepTheirStateAndTheirKLine() {
    for (int draws : {10, 11}) {
        Fixture f(drawsOf(draws));
        auto* w = f.openFrom<ChartZoomWindow>(f.trend("Command48"), "mnuZshi");
        QVERIFY(w);
        ChartPlot* plot = plotOf(w, "Picture1");
        QCOMPARE(plot->toolTip(), QStringLiteral("单击鼠标绘制动态走势线"));
        QCOMPARE(plot->chart().lines.size(), 7);  // state 0: every position
        QCOMPARE(w->findChild<QPushButton*>(QStringLiteral("Command1(7)"))->text(), QStringLiteral("后2位"));

        click(w, QStringLiteral("Command1(4)"));
        const auto& chart = plot->chart();
        QCOMPARE(chart.lines.size(), 2);
        QList<int> fourth;
        for (int i = 1; i <= draws; ++i) fourth << f.session->history().numbers[static_cast<size_t>(i)][4];
        QCOMPARE(chart.lines[0].values.size(), size_t(draws));
        // Ten draws: the rising weights throughout; the eleventh on 10..1 over 55.
        for (int i = 0; i < draws; ++i) QCOMPARE(chart.lines[1].values[static_cast<size_t>(i)], double(expectedK(fourth, i)));
        if (draws == 11) {
            double weighted = 0;
            for (int j = 1; j <= 10; ++j) weighted += j * fourth[j];
            QCOMPARE(chart.lines[1].values[10], double(std::lrint(weighted / 55)));
        }
        QCOMPARE(chart.levels.size(), 2);
        QCOMPARE(chart.levels[1].value, 24.5);  // the ideal mean of the fourth position of 35

        // A click on the chart redraws the same position, point by point.
        QTest::mouseClick(plot, Qt::LeftButton);
        QCOMPARE(w->state(), 4);
        QVERIFY(plot->replaying());
        QTRY_VERIFY(!plot->replaying());
        QCOMPARE(plot->chart().headings.front().mid(4, 3), QStringLiteral("第四位"));
        click(w, QStringLiteral("Command1(0)"));
        QCOMPARE(plot->chart().lines.size(), 7);
    }
}

void ChartWindowsTest::offsetButtonsShowEachPosition() {
    Fixture f(drawsOf(50));
    auto* w = f.openFrom<ChartZoomWindow>(f.trend("Command9"), "mnuBzhun");
    QVERIFY(w);
    QCOMPARE(w->findChild<QPushButton*>(QStringLiteral("cmdbzc(0)"))->text(), QStringLiteral("第一位标准差(&O)"));
    click(w, QStringLiteral("cmdbzc(6)"));
    const auto& history = f.session->history();
    const auto& values = plotOf(w, "Picture1")->chart().lines[0].values;
    QCOMPARE(values.size(), size_t(40));
    QCOMPARE(values.back(), history.back.back().centreOffsets[1]);
    QCOMPARE(values.back(), history.numbers.back()[7] - f.session->positionCentres()[7]);
    click(w, QStringLiteral("cmdbzc(2)"));
    QCOMPARE(plotOf(w, "Picture1")->chart().lines[0].values.back(), history.front.back().centreOffsets[2]);
    QCOMPARE(plotOf(w, "Picture1")->chart().topLabel, QStringLiteral("+20"));
}

void ChartWindowsTest::scopesDecideWhatThePlotsDraw() {
    Fixture f(drawsOf(130));
    const auto lineCount = [](QWidget* w, const char* plot) {
        int n = 0;
        for (const auto& l : plotOf(w, plot)->chart().lines) n += l.values.empty() ? 0 : 1;
        return n;
    };
    // The whole ticket has no fitted line: only the complexity.
    auto* advanced = f.openFrom<ChartPanelWindow>(f.trend("Command48"), "mnuGcan");
    QCOMPARE(lineCount(advanced, "Picture4"), 1);
    QCOMPARE(lineCount(advanced, "Picture3"), 0);
    QCOMPARE(lineCount(advanced, "Picture2"), 0);
    auto* frontAdvanced = f.openFrom<ChartPanelWindow>(f.trend("Command9"), "mnuGcan");
    QCOMPARE(lineCount(frontAdvanced, "Picture2"), 1);
    QCOMPARE(plotOf(frontAdvanced, "Picture4")->chart().lines[0].values.size(), size_t(101));
    // The back zone draws no gaps.
    TrendWindow* back = f.trend("Command10");
    auto* backGaps = f.openFrom<ChartPanelWindow>(back, "mnuZou");
    QCOMPARE(lineCount(backGaps, "Picture1") + lineCount(backGaps, "Picture2"), 0);
    auto* backStandard = f.openFrom<ChartPanelWindow>(back, "mnuBcan");
    QCOMPARE(lineCount(backStandard, "Picture6"), 0);  // the back set has no run length
    QCOMPARE(lineCount(backStandard, "Picture5"), 1);
    saveShot(backStandard, QStringLiteral("back-frmTec"));
}

void ChartWindowsTest::clicksOpenTheEnlargedSumsAndThePie() {
    Fixture f(drawsOf(60));
    auto* standard = f.openFrom<ChartPanelWindow>(f.trend("Command9"), "mnuBcan");
    ChartPlot* sums = plotOf(standard, "Picture1");
    QCOMPARE(sums->toolTip(), QStringLiteral("单击左键将会得到本图带坐标的放大效果"));
    QTest::mouseClick(sums, Qt::RightButton);
    QVERIFY(!standard->findChild<ChartZoomWindow*>());
    QTest::mouseClick(sums, Qt::LeftButton);
    auto* enlarged = standard->findChild<ChartZoomWindow*>();
    QVERIFY(enlarged && enlarged->isVisible());
    QCOMPARE(enlarged->objectName(), QStringLiteral("frmBigt"));
    // The front scope's sums, the newest at the right.
    QCOMPARE(plotOf(enlarged, "Picture1")->chart().lines[0].values.back(),
             double(f.session->history().front.back().sum));

    auto* ranges = f.openFrom<ChartPanelWindow>(f.trend("Command48"), "mnuFenbu");
    QTest::mouseClick(plotOf(ranges, "Picture5"), Qt::LeftButton);
    auto* pie = ranges->findChild<PieWindow*>();
    QVERIFY(pie && pie->isVisible());
    QCOMPARE(pie->series()->count(), 4);
    saveShot(pie, QStringLiteral("both-firCir-ranges"));
    double total = 0;
    for (const QPieSlice* s : pie->series()->slices()) total += s->value();
    const auto& stats = f.session->stats().front;
    double expected = 0;
    for (int n = 1; n <= 35; ++n) expected += stats.frequency[static_cast<size_t>(n)];
    QCOMPARE(total, expected);
    double firstTen = 0;
    for (int n = 1; n <= 10; ++n) firstTen += stats.frequency[static_cast<size_t>(n)];
    QCOMPARE(pie->series()->slices().at(0)->value(), firstTen);
}

void ChartWindowsTest::noDrawsGiveGridsAndTitlesOnly() {
    Fixture f({});
    QCOMPARE(f.session->drawCount(), 0);
    // The commands are off without draws; the window opens all the same.
    TrendWindow* both = f.window->openTrend(TrendMember::BothZones);
    QVERIFY(both);
    f.prompter.clear();
    for (const char* entry : {"mnuZshi", "mnuBzhun", "mnuLsheshu", "mnuCsheshu", "mnuFenbu", "mnuZou", "mnuBcan", "mnuGcan"}) {
        auto* w = f.openFrom<ChartWindow>(both, entry);
        QVERIFY2(w, entry);
        QVERIFY(QTest::qWaitForWindowExposed(w));
        for (ChartPlot* plot : w->findChildren<ChartPlot*>())
            for (const auto& line : plot->chart().lines) QVERIFY2(line.values.empty(), entry);
        // A position picked and a redraw asked: still nothing to draw, and nothing said.
        if (auto* zoom = qobject_cast<ChartZoomWindow*>(w)) {
            for (const char* button : {"Command1(1)", "cmdbzc(1)"})
                if (auto* b = zoom->findChild<QPushButton*>(QString::fromLatin1(button))) b->click();
            QTest::mouseClick(zoom->plot(), Qt::LeftButton);
            for (const auto& line : zoom->plot()->chart().lines) QVERIFY2(line.values.empty(), entry);
        }
    }
    QVERIFY(plotOf(both->findChild<ChartWindow*>(QStringLiteral("FrmBigb")), "Picture1")->chart().headings.size() == 1);
    QCOMPARE(f.prompter.asked().size(), 0);
}

void ChartWindowsTest::printingToPdfAndAFailingPrinter() {
    Fixture f(drawsOf(60));
    auto* w = f.openFrom<ChartZoomWindow>(f.trend("Command48"), "mnuLsheshu");
    QVERIFY(w);
    QTemporaryDir dir;
    QString target = dir.filePath(QStringLiteral("chart.pdf"));
    int asked = 0;
    w->setPrinterChooser([&](QPrinter& printer, bool hasSelection, QWidget*) {
        ++asked;
        if (hasSelection) return false;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(target);
        return true;
    });
    f.prompter.clear();
    auto* print = w->findChild<QAction*>(QStringLiteral("mnuPrint"));
    print->trigger();
    QCOMPARE(asked, 1);
    QVERIFY(QFile(target).size() > 1000);
    QVERIFY(f.prompter.messages().isEmpty());

    // A printer that cannot start: a file in a folder that is not there.
    target = dir.filePath(QStringLiteral("missing/chart.pdf"));
    print->trigger();
    QCOMPARE(f.prompter.messages(), QStringList{QStringLiteral("抱歉！发生错误，图形不能打印！")});
    QVERIFY(!QFile::exists(target));
}

QTEST_MAIN(ChartWindowsTest)
#include "test_chart_windows.moc"
