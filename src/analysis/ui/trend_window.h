#pragma once

#include "analysis/trend_grid.h"
#include "analysis/ui/analysis_views.h"
#include "analysis/ui/trend_menus.h"

#include <QMainWindow>

#include <memory>
#include <vector>

class NumberBoard;
class Prompter;
class QMenu;
class QSplitter;
class QTableView;
class Session;
class TrendBars;
class TrendGridModel;

// The history analysis window: a trend grid per zone with the zone's probability bars beside
// it. One class for its three members; each asymmetry between them is an option. Picks made
// here go through the main window's number board; boardChanged() tells the main window to draw
// it, and showPicks() redraws the marks here after a change made there.
class TrendWindow : public QMainWindow {
    Q_OBJECT
public:
    struct Options {
        const char* objectName;  // frmpic, frmpicQian, frmpicHou
        QString caption;
        bool front;
        bool back;
        // The front-only window heads its appearance row in its own words.
        QString frontAppearanceHead;
        static const Options& of(TrendMember member);
    };

    TrendWindow(TrendMember member, Session& session, NumberBoard& board, Prompter& prompter,
                QWidget* parent = nullptr);
    ~TrendWindow() override;

    const Options& options() const { return m_options; }
    TrendMember member() const { return m_member; }
    // The grid of a zone; null when this member does not show the zone.
    QTableView* gridView(Zone zone) const;
    TrendBars* bars(Zone zone) const;
    const TrendGrid* grid(Zone zone) const;

    // A number picked as a left click on the number board picks it (a banker becomes a pick);
    // the banker pop-up for a number, as a right click opens it. For the views opened from here.
    void pick(Zone zone, int number);
    void openBankerPopup(Zone zone, int number, const QPoint& globalPos);

public slots:
    // The marks row, the value labels' colours and the bars from the board.
    void showPicks();

signals:
    void boardChanged();
    // The board's marks were drawn again: views showing marks follow.
    void picksShown();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    struct ZoneView {
        Zone zone;
        std::unique_ptr<TrendGrid> grid;
        TrendGridModel* model = nullptr;
        QTableView* view = nullptr;  // MSFlexGrid1 / MSFlexGrid2
        TrendBars* bars = nullptr;
        QMenu* popup = nullptr;  // mnuDt / mnuDtHou
    };
    QWidget* makeZone(ZoneView& z, const QString& appearanceHead, int barColumns);
    QTableView* makeView(ZoneView& z);
    void makePopup(ZoneView& z);
    ZoneView* viewOf(Zone zone);
    const ZoneView* viewOf(Zone zone) const;
    void searchAppearances(ZoneView& z);
    void searchOmissions(ZoneView& z);
    void connectViews();
    // Beyond the analysis menus: the rows of run statistics under the summary rows, off at first.
    void addRunsItem();
    void openView(const AnalysisView& view);

    TrendMember m_member;
    const Options& m_options;
    Session& m_session;
    NumberBoard& m_board;
    Prompter& m_prompter;
    std::vector<std::unique_ptr<ZoneView>> m_zones;
    bool m_followNewest = true;
    QSplitter* m_splitter = nullptr;  // sized to the grids when first shown
};
