#pragma once

#include "analysis/ui/analysis_views.h"

#include <QMainWindow>

class ParamListModel;
class QTableView;

// The per-draw parameters of the scope as a list, one row per draw; a click on a column's head
// sorts by that column's stored value, the issue second.
class ParamListWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit ParamListWindow(const AnalysisContext& context);

    QTableView* grid() const { return m_view; }
    // Reads the list again, sorted by the column of that index (none: in draw order).
    void show(std::optional<int> sortColumn);

private:
    AnalysisContext m_context;
    HistoryView m_scope;
    ParamListModel* m_model;
    QTableView* m_view;
};
