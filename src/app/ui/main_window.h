#pragma once

#include "analysis/ui/trend_menus.h"
#include "generation/wheels/wheel_catalogue.h"
#include "picking/number_board.h"

#include "filter/filter_source.h"

#include "workspace/ui/menu_actions.h"
#include "workspace/ui/shell.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>

class FilterWindow;
class HistoryCommands;
class HistoryGridModel;
class MainMenu;
class PickingCommands;
struct WheelChoice;
class PickingDialogs;
class Prompter;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class Session;
class ProbabilityBars;
class SpinController;
class SpinRows;
class TrendWindow;
class WorkspaceList;
class ZoneBoardWidget;

// Form1, the hub: history grid, entry row, number board, spin rows and probability bars, and
// the menus that open everything else. Its state is the Session it is handed.
class SixFilterWindow;

class MainWindow : public QMainWindow, public Shell, private BoardEvents {
    Q_OBJECT
public:
    static inline const QString kTitle = QStringLiteral("鹤鸣轩.明算双区大乐透彩票助理");

    MainWindow(Session& session, WorkspaceList& workspaces, Prompter& prompter, QWidget* parent = nullptr);
    ~MainWindow() override;

    const MainMenu& menu() const { return *m_menu; }
    QMainWindow* mainWindow() override { return this; }
    const MenuActions& menuActions() const override;
    Session& session() override { return m_session; }
    NumberBoard& board() { return *m_board; }
    SpinController& spin() { return *m_spinControl; }
    // Opens a filter window (an expansion of the board, the board through a wheel, or the stored
    // table); null when refused.
    FilterWindow* openFilter(FilterSource instance, const WheelChoice* wheel = nullptr);
    const QList<QPointer<FilterWindow>>& filterWindows() const { return m_filterWindows; }
    // Opens a history analysis window, non-modal, kept in step with the number board.
    TrendWindow* openTrend(TrendMember member);
    PickingCommands& picking() { return *m_picking; }
    // The analysis windows open now, in the order they were opened.
    QList<TrendWindow*> trendWindows() const;
    // Draws the board's logic: buttons, counts, the mode menus, the spin commands, the status.
    void renderBoard();

    // The load step: texts, checks, visibility and the grid from the session.
    void loadFromSession();
    // Rebuilds the grid with the last row in view and Label12 asking for the next issue.
    void refreshHistory() override;
    QTableView* historyGrid() const override { return m_grid; }
    HistoryCommands& historyCommands() { return *m_history; }
    const QList<QLineEdit*>& entryBoxes() const override { return m_entryFields; }

signals:
    // The board was drawn after a change: open analysis windows redraw their marks.
    void boardRendered();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeHistoryArea();
    QWidget* makeBoardArea();
    void makeStatusBar();
    void connectMenus();
    void connectPlayModeMenus();

    // Shows the settings store's message when a setting was not saved; returns `saved`.
    bool settingSaved(bool saved, const QString& error);
    void checkStoredStability();
    void chooseStability(int itemIndex);  // meuSpd1..12
    void chooseFrontSize(int size);       // meuS
    void chooseBackSize(int size);        // meuSHou
    // Checks the item `checked` of a family and unchecks the others.
    static void checkOnly(const MenuActions::Family& family, int checked);
    void applyZoneSizes();
    void renameWorkspace();  // mnuName
    void askPrintSetting();  // mnuPtset
    void updateHistoryCommands();
    // The prize check entries of 功能窗口 and their tables; enabled when the table exists.
    static const std::vector<std::pair<QAction * MenuActions::*, schema::CandidateKind>>& prizeCheckItems();
    void updatePrizeChecks();
    void connectBoard(ZoneBoardWidget* widget);
    // 选号管理: the picking commands on the board; the board is kept after each.
    void connectPickingMenu();
    void keepBoard();
    void connectTrendPicking(TrendWindow* w);
    static void renderIndexedMenu(const MenuActions::Family& family, const IndexedMenu& menu);

    // What the board asks of the spin and the windows.
    void showBackSpinLabels(int k) override;
    void stopSpinTimers() override;
    void clearSpinState() override;
    void reloadSpinThreshold(Zone zone, bool withBankers) override;
    void openFilterFromPrediction() override;
    // The spin's buttons and menu entries; meuAgarr hands the prediction to the expansion.
    void connectSpin();
    // 组号方式's wheels: the menus labelled when they open, and what their entries open.
    void connectWheelMenus();
    void openWheel(wheels::Family family, const QString& table);
    void openSixNumberWheel(const QString& table);
    void arrangePrediction();
    // 功能窗口's template and text entries: mnuCallZhmb, mnuRdtxt, mnuCatxt.
    void connectSourceMenus();
    void readTicketText();
    SixFilterWindow* openSixFilter(FilterSource instance);

    Session& m_session;
    WorkspaceList& m_workspaces;
    Prompter& m_prompter;
    std::unique_ptr<MainMenu> m_menu;
    std::unique_ptr<NumberBoard> m_board;
    std::unique_ptr<PickingDialogs> m_pickingDialogs;
    std::unique_ptr<PickingCommands> m_picking;
    HistoryGridModel* m_gridModel = nullptr;
    HistoryCommands* m_history = nullptr;
    QTableView* m_grid = nullptr;
    bool m_scrollToNewest = false;  // the history grid follows its newest row until scrolled by hand
    QLabel* m_nextIssueLabel = nullptr;
    QList<QLineEdit*> m_entryFields;
    ZoneBoardWidget* m_front = nullptr;
    ZoneBoardWidget* m_back = nullptr;
    SpinRows* m_spin = nullptr;
    SpinController* m_spinControl = nullptr;
    ProbabilityBars* m_bars = nullptr;
    QList<QLabel*> m_statusPanels;
    QHash<QString, QPushButton*> m_historyButtons;
    QList<QPointer<FilterWindow>> m_filterWindows;
    QList<QPointer<TrendWindow>> m_trendWindows;
};
