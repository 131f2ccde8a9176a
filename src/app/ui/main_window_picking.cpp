// The main window's picking aids and spin simulator: the 选号管理 commands (also in the front
// trend window), the board kept between runs, and the spin's buttons, menus and stability.
#include "app/ui/main_window.h"

#include "analysis/ui/trend_window.h"
#include "app/ui/main_menu.h"
#include "picking/board_store.h"
#include "picking/ui/picking_commands.h"
#include "picking/ui/picking_dialogs.h"
#include "picking/ui/spin_controller.h"
#include "picking/ui/spin_panel.h"
#include "workspace/session.h"

#include <QAction>
#include <QMenuBar>
#include <QPushButton>

#include <functional>

// The front window's 选号管理 runs the same commands on the same board; the board drawn again
// redraws the marks there.
void MainWindow::connectTrendPicking(TrendWindow* w) {
    using frequency_picks::OmissionBound;
    using frequency_picks::Rank;
    PickingCommands* p = m_picking.get();
    const std::pair<const char*, std::function<void()>> items[] = {
        {"mnuHihg", [p] { p->pickByFrequency(Zone::Front, Rank::MostFrequent); }},
        {"mnuLow", [p] { p->pickByFrequency(Zone::Front, Rank::LeastFrequent); }},
        {"mnuYHigh", [p] { p->pickByOmission(Zone::Front, OmissionBound::AtLeast); }},
        {"mnuYLow", [p] { p->pickByOmission(Zone::Front, OmissionBound::AtMost); }}};
    for (const auto& [given, run] : items) {
        QAction* action = w->menuBar()->findChild<QAction*>(QString::fromLatin1(given));
        if (!action) continue;  // not the front member
        action->setEnabled(true);
        connect(action, &QAction::triggered, w, run);
    }
}

void MainWindow::keepBoard() {
    board_store::save(m_session.settings(), m_session.workspaceName(), m_session.board());
}

void MainWindow::connectPickingMenu() {
    using frequency_picks::OmissionBound;
    using frequency_picks::Rank;
    m_pickingDialogs = std::make_unique<QtPickingDialogs>(this);
    m_picking = std::make_unique<PickingCommands>(m_session, *m_board, m_prompter, *m_pickingDialogs, [this] {
        renderBoard();
        keepBoard();
    });
    const MenuActions& menu = menuActions();
    PickingCommands* p = m_picking.get();
    const struct {
        QAction* item;
        std::function<void()> run;
    } commands[] = {
        {menu.frontFrequentPicks, [p] { p->pickByFrequency(Zone::Front, Rank::MostFrequent); }},
        {menu.frontRarePicks, [p] { p->pickByFrequency(Zone::Front, Rank::LeastFrequent); }},
        {menu.frontLongOmissionPicks, [p] { p->pickByOmission(Zone::Front, OmissionBound::AtLeast); }},
        {menu.frontShortOmissionPicks, [p] { p->pickByOmission(Zone::Front, OmissionBound::AtMost); }},
        {menu.backFrequentPicks, [p] { p->pickByFrequency(Zone::Back, Rank::MostFrequent); }},
        {menu.backRarePicks, [p] { p->pickByFrequency(Zone::Back, Rank::LeastFrequent); }},
        {menu.backLongOmissionPicks, [p] { p->pickByOmission(Zone::Back, OmissionBound::AtLeast); }},
        {menu.backShortOmissionPicks, [p] { p->pickByOmission(Zone::Back, OmissionBound::AtMost); }},
        {menu.savePicks, [p] { p->savePicks(); }},
        {menu.recallPicks, [p] { p->recallPicks(); }},
        {menu.addRecalledPicks, [p] { p->recallPicks(); }},
        {menu.pickingTemplates, [p] { p->openTemplates(); }},
    };
    for (const auto& c : commands) connect(c.item, &QAction::triggered, this, c.run);
}

MainWindow::~MainWindow() {
    // The analysis windows use the board and their list here: they go while both still exist.
    for (const QPointer<TrendWindow>& w : QList<QPointer<TrendWindow>>(m_trendWindows)) delete w.data();
}

void MainWindow::connectSpin() {
    const MenuActions& menu = menuActions();
    SpinController* spin = m_spinControl;
    connect(m_spin->startButton(), &QPushButton::clicked, spin, &SpinController::start);
    connect(m_spin->pauseButton(), &QPushButton::clicked, spin, &SpinController::pause);
    connect(m_spin->resetButton(), &QPushButton::clicked, spin, &SpinController::reset);
    connect(menu.spinStart, &QAction::triggered, spin, &SpinController::startFromMenu);
    connect(menu.spinPause, &QAction::triggered, spin, &SpinController::pause);
    connect(menu.spinReset, &QAction::triggered, spin, &SpinController::resetFromMenu);
    connect(menu.multiSpinSettings, &QAction::triggered, spin, &SpinController::askTicketCount);
    connect(menu.spinArrangement, &QAction::triggered, this, &MainWindow::arrangePrediction);
    connect(spin, &SpinController::controlsChanged, this, &MainWindow::renderBoard);
    connect(spin, &SpinController::handOverAsked, this, &MainWindow::arrangePrediction);
}

void MainWindow::arrangePrediction() {
    m_board->prepareList(ListCommand::PredictionExpansion);
    renderBoard();
    openFilter(m_board->state().front.bankerMode ? FilterSource::BankerExpansion : FilterSource::Expansion);
}

void MainWindow::checkStoredStability() {
    // The stability item of the stored Wd; 8000 itself checks none.
    const int wd = m_session.settings().readInt(setting_keys::StabilityAtLoad, m_session.workspaceName());
    checkOnly(menuActions().stability, game_rules::stabilityItemCheckedAtLoad(wd));
    m_spinControl->simulator().setThreshold(SpinSimulator::thresholdForStored(wd));
}

void MainWindow::showBackSpinLabels(int k) {
    m_spin->setSpinCounts(m_board->zone(Zone::Front).state().spinCount, k);
}

void MainWindow::stopSpinTimers() { m_spinControl->stopTimers(); }
void MainWindow::clearSpinState() { m_spinControl->clear(); }
void MainWindow::openFilterFromPrediction() { openFilter(FilterSource::Expansion); }

void MainWindow::reloadSpinThreshold(Zone, bool withBankers) {
    // The play modes read the coefficient with their own default; with bankers the entry of the
    // stored value is checked too.
    const int wd =
        m_session.settings().readInt(setting_keys::StabilityForPlayModes, m_session.workspaceName());
    m_spinControl->simulator().setThreshold(SpinSimulator::thresholdForStored(wd));
    if (withBankers) checkOnly(menuActions().stability, game_rules::stabilityItemCheckedAtLoad(wd));
}

void MainWindow::chooseStability(int itemIndex) {
    for (const game_rules::StabilityItem& it : game_rules::stabilityItems()) {
        if (it.index != itemIndex) continue;
        const QString user = m_session.workspaceName();
        if (!settingSaved(m_session.settings().write(setting_keys::StabilityAtLoad, it.value, user),
                          Settings::saveFailedText(
                              m_session.settings().fileFor(setting_keys::StabilityAtLoad, user)))) {
            checkStoredStability();
            return;
        }
        m_spinControl->simulator().setThreshold(SpinSimulator::thresholdForItem(it));
    }
    checkOnly(menuActions().stability, itemIndex);
}
