#pragma once

#include "analysis/draw_tallies.h"
#include "analysis/ui/analysis_views.h"

#include <QMainWindow>

class QMenu;
class QTableView;
class TallyModel;

// A tally table of the history in a grid, opened on the newest draws.
class TallyWindow : public QMainWindow {
    Q_OBJECT
public:
    TallyWindow(const AnalysisContext& context, TallyKind kind);

    QTableView* grid() const { return m_view; }
    TallyModel* model() const { return m_model; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makePopup();

    AnalysisContext m_context;
    QMenu* m_popup = nullptr;
    TallyModel* m_model;
    QTableView* m_view;
};
