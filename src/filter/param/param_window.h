#pragma once

#include "filter/filter_workspace.h"
#include "filter/param/param_export.h"
#include "filter/param/param_filter.h"
#include "filter/result_grid_model.h"

#include <QString>

#include <set>

class Prompter;
class SqliteDb;

// The parameter side of the filter window: every button of the parameter frame, the
// integrated filter and its export, the grid's paging, the all-rows view, the manual delete
// and the combination template. Each action takes the window's boxes as a ParamWindowState
// and talks to the player only through the Prompter, so the window and the command line run
// the same code. After an action, view() is the query the grid binds.
class ParamWindow {
public:
    static inline const QString kAddTemplateTitle = QStringLiteral("添加组号模板");
    static inline const QString kAddTemplateText = QStringLiteral(
        "是否把目前组合缩水后的号码加入组号模板里面，以后可以多次加入模板，并通过调用组号模板在模板基础上进行"
        "缩水过滤（加入到模板的组号如果有与模板相重复的会自动滤除）");

    ParamWindow(FilterWorkspace& workspace, ParamContext context, QString workspaceFolder);

    const ParamContext& context() const { return m_context; }
    void setContext(ParamContext context) { m_context = std::move(context); }

    // A parameter button (left or right mouse button alike).
    param_filter::SingleResult clickParameter(ParamId id, const ParamWindowState& state, Prompter& prompter);
    // Option29, left button. baoliuMode of the workspace takes the run's sense; a run that
    // `progress` cancels leaves the table and the sense as they were.
    param_filter::IntegratedResult clickIntegrated(const ParamWindowState& state, Prompter& prompter,
                                                   EngineProgress* progress = nullptr);
    // Option42: the export file in the workspace folder; a cancelled export keeps the old file.
    param_export::Result clickExport(const ParamWindowState& state, Prompter& prompter,
                                     EngineProgress* progress = nullptr);
    QString exportPath() const;

    // Buttons whose text has turned blue ("Option29" included once used).
    const std::set<QString>& usedButtons() const { return m_used; }

    // The query the grid binds after the last action.
    const GridView& view() const { return m_view; }
    // The view of an instance that has just opened.
    void showFirstView() { m_view = GridView::firstView(m_workspace.traits().firstView); }
    // Command111 with Text1's text: a page of ids; the caption is not changed.
    void showPage(const QString& pageText);
    // optZzuhe(1): every row with canshu and reasons.
    void showAllRows() { m_view = GridView::allRows(); }

    // Double click on a grid row: a toggle of that ticket that counts as a filter for the undo.
    // The model keeps its binding, with the row painted grey while deleted.
    void doubleClick(ResultGridModel& model, int viewRow);

    // cmdAdmb: adds the live tickets to zuheMoban (or clears it in GAganZhMb) after asking.
    // Returns true when the template changed.
    bool clickAddTemplate(SqliteDb& filterDb, Prompter& prompter);

private:
    void markUsed(const QString& button) { m_used.insert(button); }
    bool addLiveToTemplate(SqliteDb& filterDb);
    bool clearTemplate(SqliteDb& filterDb);

    FilterWorkspace& m_workspace;
    ParamContext m_context;
    QString m_folder;
    std::set<QString> m_used;
    GridView m_view;
};

namespace param_window {
// The statements of cmdAdmb over a list of tickets: the template gains the tickets, loses its
// duplicates, is ordered as the distinct selection returns it and renumbered from 1. Nothing
// happens while the template table does not exist. One transaction.
bool addTickets(SqliteDb& filterDb, const std::vector<std::array<int, 7>>& tickets);
// The clear of GAganZhMb: zuheMoban dropped and made anew, empty. One transaction.
bool makeEmptyTemplate(SqliteDb& filterDb);
}  // namespace param_window
