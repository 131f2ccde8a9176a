#pragma once

#include "analysis/ui/trend_menus.h"
#include "history/history_views.h"

#include <QList>
#include <QString>

#include <functional>

class Prompter;
class QWidget;
class Session;

// What a view opened from a trend window's menus gets: the workspace's state, the analysis
// scope of the window it was opened from, and that window as parent.
struct AnalysisContext {
    Session& session;
    Prompter& prompter;
    TrendMember scope;
    QWidget* parent;

    // The scope as the view of the history it reads: fig, fighou or figquan.
    HistoryView view() const {
        return scope == TrendMember::FrontZone  ? HistoryView::Front
               : scope == TrendMember::BackZone ? HistoryView::Back
                                                : HistoryView::Both;
    }
};

// A menu entry of the trend windows that opens a view. The view is built by `open` as a
// non-modal top-level window (a child of the context's parent, deleted when closed) and shown
// by the caller. Entries are matched by the action's given name ("mnuTjwei(2)" for a family).
// A kept view is built once per trend window: closing hides it and the entry shows it again,
// for views whose making is costly (a graphics context and its shaders).
struct AnalysisView {
    QString given;
    std::function<QWidget*(const AnalysisContext&)> open;
    bool kept = false;
};

namespace analysis_views {
// The line charts, their pie chart and their printing.
QList<AnalysisView> chartViews();
// The fitted-line window and the 3D view.
QList<AnalysisView> fitAnd3dViews();
// The parameter lists, the distribution charts, the pair counts, the transitions and the moments.
QList<AnalysisView> statisticsViews();
}  // namespace analysis_views
