#pragma once

#include "analysis/ui/analysis_views.h"
#include "picking/number_board.h"

#include <QMainWindow>

class QMenu;
class TrendWindow;
class QTableView;
class TextGridModel;

// The statistics windows over the history: the pair counts (2 or 3 numbers, switched from a
// pop-up menu), the transitions to the next draw or the one after, and the moments of the
// positions. One class; what differs is the kind.
class StatisticsWindow : public QMainWindow {
    Q_OBJECT
public:
    enum class Kind { Correlation, Following, Skipping, Moments };

    StatisticsWindow(Kind kind, const AnalysisContext& context);

    QTableView* grid() const { return m_view; }
    // The pair counts of every draw; of the draws holding a number the player names.
    void showPairs();
    void showPairsWithANumber();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makePairsMenu();
    // The transitions' heads pick numbers as the trend grid's marks row does, and show the marks.
    void connectPicking();
    void showMarks();
    int numberAt(const QModelIndex& index) const;
    Zone zone() const;
    void showTransitions(int gap);
    void showMoments();
    void sizeColumns(int width);
    int gridSize() const;

    Kind m_kind;
    AnalysisContext m_context;
    TextGridModel* m_model;
    QTableView* m_view;
    QMenu* m_pairsMenu = nullptr;
    TrendWindow* m_trend = nullptr;  // the window picks go through, for the transitions
};
