#include "analysis/trend_charts.h"
#include "analysis/ui/analysis_views.h"
#include "analysis/ui/chart_panel_window.h"
#include "analysis/ui/chart_zoom_window.h"
#include "analysis/ui/pie_window.h"
#include "workspace/session.h"

namespace analysis_views {
namespace {

using namespace trend_charts;

// A window opened from a chart window, as the trend windows open theirs.
void showChild(QWidget* w) {
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->setWindowFlag(Qt::Window);
    w->show();
}

QWidget* positionWindow(const AnalysisContext& ctx) {
    QStringList captions;
    for (int state = 0; state <= kPositions; ++state) captions << positionButtonCaption(state);
    Session& s = ctx.session;
    return new ChartZoomWindow(
        {QStringLiteral("FrmBigb"),
         QStringLiteral("历史号码各位走势观察放大图(单独位观察时,黄线为理想均值,红线为样本均值,"
                        "绿线为加权平均K线走势):"),
         QStringLiteral("Command1"), captions,
         [&s](int state) { return positionChart(s.history(), state, s.frontSize(), s.backSize()); }},
        ctx.prompter, ctx.parent);
}

QWidget* offsetWindow(const AnalysisContext& ctx) {
    QStringList captions;
    for (int p = 1; p <= kPositions; ++p) captions << offsetButtonCaption(p);
    Session& s = ctx.session;
    // Button i shows position i + 1.
    return new ChartZoomWindow({QStringLiteral("FrmBigg"), QStringLiteral("历史号理想标准差走势(绿线为加权平均K线走势)"),
                                QStringLiteral("cmdbzc"), captions,
                                [&s](int state) { return offsetChart(s.history(), state + 1); }},
                               ctx.prompter, ctx.parent);
}

QWidget* sumWindow(Session& s, Prompter& prompter, HistoryView set, QWidget* parent) {
    return new ChartZoomWindow(
        {QStringLiteral("frmBigt"),
         QStringLiteral("历史总和图放大分析(横坐标表示开奖轮次,纵坐标表示和数的大小,绿线表示加权平均K线走势)"),
         {},
         {},
         [&s, set](int) { return sumChart(s.history(), set, s.frontSize()); }},
        prompter, parent);
}

QWidget* panelWindow(const AnalysisContext& ctx, HundredWindow which) {
    Session& s = ctx.session;
    Prompter& prompter = ctx.prompter;
    const HistoryView set = ctx.view();
    ChartPanelWindow::Options options{hundredWindowPlan(which, s.frontSize()), set, {}, {}};
    if (which == HundredWindow::Standard) {
        // The sums plot opens its enlarged chart with a scale.
        options.tips.insert(QStringLiteral("Picture1"), QStringLiteral("单击左键将会得到本图带坐标的放大效果"));
        options.clicked = [&s, &prompter, set](ChartPanelWindow* w, const QString& plot, Qt::MouseButton button) {
            if (plot == QLatin1String("Picture1") && button == Qt::LeftButton)
                showChild(sumWindow(s, prompter, set, w));
        };
    } else if (which == HundredWindow::Ranges) {
        // Any plot opens the pie of the four ranges.
        options.clicked = [&s, &prompter](ChartPanelWindow* w, const QString&, Qt::MouseButton) {
            showChild(new PieWindow(rangeSlices(s.stats().front, s.frontSize()), prompter, w));
        };
    }
    return new ChartPanelWindow(s.history(), std::move(options), prompter, ctx.parent);
}

AnalysisView panel(const char* given, HundredWindow which) {
    return {QString::fromLatin1(given), [which](const AnalysisContext& ctx) { return panelWindow(ctx, which); }};
}

}  // namespace

QList<AnalysisView> chartViews() {
    return {
        {QStringLiteral("mnuZshi"), positionWindow},
        {QStringLiteral("mnuBzhun"), offsetWindow},
        {QStringLiteral("mnuLsheshu"),
         [](const AnalysisContext& ctx) { return sumWindow(ctx.session, ctx.prompter, ctx.view(), ctx.parent); }},
        panel("mnuCsheshu", HundredWindow::Sums),
        panel("mnuFenbu", HundredWindow::Ranges),
        panel("mnuZou", HundredWindow::Gaps),
        panel("mnuBcan", HundredWindow::Standard),
        panel("mnuGcan", HundredWindow::Advanced),
        {QStringLiteral("mnuBt"),
         [](const AnalysisContext& ctx) -> QWidget* {
             return new PieWindow(numberSlices(ctx.session.stats().front, ctx.session.frontSize()), ctx.prompter,
                                  ctx.parent);
         }},
    };
}

}  // namespace analysis_views
