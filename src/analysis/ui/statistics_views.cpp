#include "analysis/ui/analysis_views.h"
#include "analysis/ui/distribution_window.h"
#include "analysis/ui/param_list_window.h"
#include "analysis/ui/param_strips_window.h"
#include "analysis/ui/statistics_window.h"
#include "analysis/ui/tally_window.h"

namespace analysis_views {

namespace {

// The distribution chart's menu entries and the column each counts.
const std::vector<std::pair<const char*, const char*>>& distributionEntries() {
    static const std::vector<std::pair<const char*, const char*>> entries{
        {"mnuTjwei(0)", "fig1"},        {"mnuTjwei(1)", "fig2"},       {"mnuTjwei(2)", "fig3"},
        {"mnuTjwei(3)", "fig4"},        {"mnuTjwei(4)", "fig5"},       {"mnuTjwei(5)", "fig6"},
        {"mnuTjwei(6)", "fig7"},        {"mnuTjheshu", "Znum"},        {"mnuTjqujian", "Qnum"},
        {"mnuTjchonghao", "Cnum"},      {"mnuTjoushu", "Onum"},        {"mnuTjdashu", "Bignum"},
        {"mnuTjshunhao", "Lnum"},       {"mnuTjgaolian", "Lxnum"},     {"mnuTjchuizhou", "Apzounum"},
        {"mnuTjac", "Fcodp"},           {"mnuTjgetong", "Modenum"},    {"mnuzsgwh", "Zgnum"},
        {"mnuzsjsh", "Zjnum"},          {"mnuzsosh", "Zonum"},         {"mnuzsxsh", "Xznum"},
        {"mnuzsdsh", "DZnum"},          {"mnuzsylh", "Zynum"},         {"mnuYlZfT", "intYljz"},
        {"mnuTjzuizhou", "Mxzounum"}};
    return entries;
}

// The parameter strips' menu entries and the column each draws.
const std::vector<std::pair<const char*, const char*>>& stripEntries() {
    static const std::vector<std::pair<const char*, const char*>> entries{
        {"mnugwhs", "Zgnum"}, {"mnujshs", "Zjnum"}, {"mnuoshs", "Zonum"},  {"mnuxshs", "Xznum"},
        {"mnudshs", "DZnum"}, {"mnuylhs", "Zynum"}, {"mnuYlZf", "intYljz"}};
    return entries;
}

// The tally tables' menu entries.
const std::vector<std::pair<const char*, TallyKind>>& tallyEntries() {
    static const std::vector<std::pair<const char*, TallyKind>> entries{
        {"mnu5qu", TallyKind::Intervals},      {"mnuWeiBz", TallyKind::Tails},
        {"mnuJodx(0)", TallyKind::Odd},        {"mnuJodx(1)", TallyKind::Even},
        {"mnuJodx(2)", TallyKind::Big},        {"mnuJodx(3)", TallyKind::Small},
        {"mnuBianBz", TallyKind::Edges},       {"mnuChongBz", TallyKind::Repeats},
        {"mnuLianBz", TallyKind::Runs},        {"mnuJoLianBz", TallyKind::ParityRuns},
        {"mnuYlbg", TallyKind::Omissions},     {"mnu10Bg", TallyKind::RecentAppearances}};
    return entries;
}

}  // namespace

QList<AnalysisView> statisticsViews() {
    const auto opens = [](StatisticsWindow::Kind kind) {
        return [kind](const AnalysisContext& c) -> QWidget* { return new StatisticsWindow(kind, c); };
    };
    QList<AnalysisView> views{{QStringLiteral("mnuXg"), opens(StatisticsWindow::Kind::Correlation)},
            {QStringLiteral("mnuFljp(0)"), opens(StatisticsWindow::Kind::Following)},
            {QStringLiteral("mnuFljp(1)"), opens(StatisticsWindow::Kind::Skipping)},
            {QStringLiteral("mnuGl"), opens(StatisticsWindow::Kind::Moments)},
            {QStringLiteral("mnuCcha"), [](const AnalysisContext& c) -> QWidget* { return new ParamListWindow(c); }}};
    for (const auto& [entry, column] : distributionEntries()) {
        const QString counted = QString::fromLatin1(column);
        views.append({QString::fromLatin1(entry),
                      [counted](const AnalysisContext& c) -> QWidget* { return new DistributionWindow(c, counted); }});
    }
    for (const auto& [entry, column] : stripEntries()) {
        const QString drawn = QString::fromLatin1(column);
        views.append({QString::fromLatin1(entry),
                      [drawn](const AnalysisContext& c) -> QWidget* { return new ParamStripsWindow(c, drawn); }});
    }
    for (const auto& [entry, kind] : tallyEntries())
        views.append({QString::fromLatin1(entry),
                      [kind = kind](const AnalysisContext& c) -> QWidget* { return new TallyWindow(c, kind); }});
    return views;
}

}  // namespace analysis_views
