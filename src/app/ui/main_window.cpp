#include "app/ui/main_window.h"

#include "app/ui/filter_windows.h"
#include "analysis/ui/trend_window.h"
#include "app/ui/main_menu.h"
#include "app/ui/backtest_window.h"
#include "filter/ui/filter_window.h"
#include "history/history_actions.h"
#include "history/ui/history_commands.h"
#include "history/ui/history_grid_model.h"
#include "picking/board_store.h"
#include "picking/ui/picking_commands.h"
#include "picking/ui/picking_dialogs.h"
#include "picking/ui/spin_controller.h"
#include "picking/ui/spin_panel.h"
#include "picking/ui/zone_board_widget.h"
#include "prize/ui/prize_windows.h"
#include "tools/ui/fortune_window.h"
#include "workspace/prompter.h"
#include "workspace/session.h"
#include "workspace/ui/column_widths.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QCursor>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>
#include <QVBoxLayout>

namespace {
// The buttons beside the history grid repeat menu items.
struct HistoryButton {
    const char* name;
    const char* caption;
    QAction* MenuActions::*menuItem;
};
const HistoryButton kHistoryButtons[] = {
    {"Command44", "删除最后一期历史(&D)", &MenuActions::deleteLastDraw},
    {"cmdRead", "读取所有历史文件(&A)", &MenuActions::importWholeHistory},
    {"Command4", "读取历史最新文件(&N)", &MenuActions::importNewDraws},
    {"Command3", "历史号码文件下载(&L)", &MenuActions::downloadHistoryText},
    {"Command5", "历史号码网上更新(&W)", &MenuActions::updateHistoryOnline},
    {"Command48", "前后历史分析窗口(&Y)", &MenuActions::analyseBothZones},
    {"Command9", "前区历史分析窗口(&Y)", &MenuActions::analyseFrontZone},
    {"Command10", "后区历史分析窗口(&Y)", &MenuActions::analyseBackZone},
};
}  // namespace

MainWindow::MainWindow(Session& session, WorkspaceList& workspaces, Prompter& prompter, QWidget* parent)
    : QMainWindow(parent), m_session(session), m_workspaces(workspaces), m_prompter(prompter) {
    setObjectName(QStringLiteral("Form1"));
    setWindowTitle(kTitle);
    m_menu = std::make_unique<MainMenu>(menuBar());
    m_board = std::make_unique<NumberBoard>(session.board(), static_cast<int16_t>(session.frontSize()),
                                            static_cast<int16_t>(session.backSize()),
                                            static_cast<BoardEvents*>(this));

    auto* central = new QWidget(this);
    auto* layout = new QHBoxLayout(central);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(6);
    layout->addWidget(makeHistoryArea(), 0);
    layout->addWidget(makeBoardArea(), 0);
    m_bars = new ProbabilityBars(central);
    layout->addWidget(m_bars, 1);
    m_spinControl = new SpinController(*m_board, *m_spin, *m_bars, m_prompter, this);
    setCentralWidget(central);
    makeStatusBar();
    connectMenus();
    m_history = new HistoryCommands(*this, m_prompter);
    loadFromSession();
    board_store::load(m_session.settings(), m_session.workspaceName(), *m_board);
    renderBoard();
    connectPickingMenu();
}

const MenuActions& MainWindow::menuActions() const { return m_menu->actions(); }

QWidget* MainWindow::makeHistoryArea() {
    auto* area = new QWidget(this);
    auto* v = new QVBoxLayout(area);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(4);

    m_gridModel = new HistoryGridModel(m_session.history(), this);
    m_grid = new QTableView(area);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_grid->setModel(m_gridModel);
    connect(m_grid->verticalScrollBar(), &QScrollBar::rangeChanged, this, [this](int, int max) {
        if (m_scrollToNewest) m_grid->verticalScrollBar()->setValue(max);
    });
    // Once the player scrolls himself, new layouts leave his position alone.
    connect(m_grid->verticalScrollBar(), &QScrollBar::actionTriggered, this,
            [this] { m_scrollToNewest = false; });
    m_grid->verticalHeader()->hide();
    m_grid->verticalHeader()->setDefaultSectionSize(20);
    m_grid->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_grid->horizontalHeader()->setDefaultSectionSize(44);
    m_grid->setColumnWidth(0, 46);
    m_grid->setColumnWidth(1, 64);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setFixedWidth(46 + 64 + 7 * 44 + 22);
    ColumnWidths::fit(m_grid);
    v->addWidget(m_grid, 1);

    // The entry row: Label12 and the seven masked fields.
    auto* entry = new QHBoxLayout;
    entry->setSpacing(2);
    m_nextIssueLabel = new QLabel(area);
    m_nextIssueLabel->setObjectName(QStringLiteral("Label12"));
    m_nextIssueLabel->setStyleSheet(QStringLiteral("color: rgb(0,0,160);"));
    v->addWidget(m_nextIssueLabel);
    for (int i = 1; i <= 7; ++i) {
        auto* box = new QLineEdit(area);
        box->setObjectName(QStringLiteral("MaskEdBox1(%1)").arg(i));
        box->setInputMask(QStringLiteral("99"));
        box->setFixedWidth(28);
        box->setAlignment(Qt::AlignCenter);
        if (i >= 6) box->setStyleSheet(QStringLiteral("color: rgb(0,0,200);"));
        entry->addWidget(box);
        m_entryFields << box;
    }
    auto* discard = new QPushButton(QStringLiteral("放弃输入"), area);
    discard->setObjectName(QStringLiteral("discardEntry"));
    entry->addWidget(discard);
    entry->addStretch();
    v->addLayout(entry);

    auto* buttons = new QGridLayout;
    buttons->setSpacing(3);
    int i = 0;
    for (const HistoryButton& b : kHistoryButtons) {
        auto* button = new QPushButton(QString::fromUtf8(b.caption), area);
        button->setObjectName(QString::fromLatin1(b.name));
        QAction* item = menuActions().*b.menuItem;
        connect(button, &QPushButton::clicked, item, &QAction::trigger);
        // A button is usable exactly when its menu item is.
        connect(item, &QAction::changed, button, [button, item] { button->setEnabled(item->isEnabled()); });
        button->setEnabled(item->isEnabled());
        buttons->addWidget(button, i / 2, i % 2);
        m_historyButtons.insert(button->objectName(), button);
        ++i;
    }
    v->addLayout(buttons);
    return area;
}

QWidget* MainWindow::makeBoardArea() {
    auto* area = new QWidget(this);
    auto* v = new QVBoxLayout(area);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(4);
    m_front = new ZoneBoardWidget(Zone::Front, area);
    m_back = new ZoneBoardWidget(Zone::Back, area);
    connectBoard(m_front);
    connectBoard(m_back);
    m_spin = new SpinRows(area);
    v->addWidget(m_front);
    v->addWidget(m_back);
    v->addWidget(m_spin);
    v->addStretch(1);
    return area;
}

void MainWindow::makeStatusBar() {
    QStatusBar* bar = statusBar();
    bar->setObjectName(QStringLiteral("StatusBar1"));
    for (int i = 1; i <= 3; ++i) {
        auto* panel = new QLabel(bar);
        panel->setObjectName(QStringLiteral("StatusBar1.Panel%1").arg(i));
        panel->setMinimumWidth(i == 3 ? 360 : 160);
        bar->addWidget(panel, i == 3 ? 1 : 0);
        m_statusPanels << panel;
    }
}

void MainWindow::connectBoard(ZoneBoardWidget* widget) {
    const Zone z = widget->zone();
    // Every change of the picks is kept at once: a program that ends unexpectedly loses none.
    auto then = [this](auto&& f) {
        return [this, f] {
            f();
            renderBoard();
            keepBoard();
        };
    };
    connect(widget, &ZoneBoardWidget::numberClicked, this, [this, z](int n) {
        m_board->leftClick(z, n);
        renderBoard();
        keepBoard();
    });
    connect(widget, &ZoneBoardWidget::numberRightClicked, this, [this, z, widget](int n) {
        const bool popup = m_board->rightClick(z, n);
        renderBoard();
        if (popup) widget->bankerPopup()->popup(QCursor::pos());
    });
    connect(widget, &ZoneBoardWidget::bankerToggled, this, then([this, z] { m_board->toggleBanker(z); }));
    connect(widget, &ZoneBoardWidget::selectAllClicked, this, then([this, z] { m_board->selectAll(z); }));
    connect(widget, &ZoneBoardWidget::invertClicked, this, then([this, z] { m_board->invert(z); }));
    connect(widget, &ZoneBoardWidget::resetClicked, this, then([this, z] { m_board->reselect(z); }));
}

// The play modes under 组号方式: the multiple and banker entries of both zones, and the
// enabling when the menu opens.
void MainWindow::connectPlayModeMenus() {
    const MenuActions& menu = menuActions();
    connect(menu.playModesMenu, &QMenu::aboutToShow, this, [this] {
        m_board->openModeMenu();
        renderBoard();
    });
    const struct {
        const MenuActions::Family& family;
        Zone zone;
        bool bankerMenu;
    } modes[] = {{menu.frontMulti, Zone::Front, false},
                 {menu.backMulti, Zone::Back, false},
                 {menu.frontBanker, Zone::Front, true},
                 {menu.backBanker, Zone::Back, true}};
    for (const auto& m : modes) {
        for (const auto& [k, item] : m.family) {
            const Zone z = m.zone;
            const bool bankerMenu = m.bankerMenu;
            connect(item, &QAction::triggered, this, [this, z, k = k, bankerMenu] {
                if (bankerMenu)
                    m_board->chooseBankerEntry(z, k);
                else
                    m_board->chooseMultiEntry(z, k);
                renderBoard();
            });
        }
    }
}

void MainWindow::connectMenus() {
    connectPlayModeMenus();
    connectSpin();
    connectWheelMenus();
    connectSourceMenus();
    const MenuActions& menu = menuActions();
    connect(menu.quit, &QAction::triggered, this, &QWidget::close);
    // The filter windows: expansions of the board, and the table of the last expansion.
    const struct {
        QAction* item;
        ListCommand list;
        FilterSource instance;
    } lists[] = {{menu.multiExpansion, ListCommand::MultiExpansion, FilterSource::Expansion},
                 {menu.bankerExpansion, ListCommand::BankerExpansion, FilterSource::BankerExpansion}};
    for (const auto& l : lists) {
        const ListCommand list = l.list;
        const FilterSource instance = l.instance;
        connect(l.item, &QAction::triggered, this, [this, list, instance] {
            m_board->prepareList(list);
            renderBoard();
            openFilter(instance);
        });
    }
    connect(menu.recallExpansion, &QAction::triggered, this,
            [this] { openFilter(FilterSource::StoredExpansion); });
    const std::pair<QAction*, TrendMember> analyses[] = {{menu.analyseBothZones, TrendMember::BothZones},
                                                         {menu.analyseFrontZone, TrendMember::FrontZone},
                                                         {menu.analyseBackZone, TrendMember::BackZone}};
    for (const auto& [item, member] : analyses) {
        const TrendMember m = member;
        connect(item, &QAction::triggered, this, [this, m] { openTrend(m); });
    }

    // Prize rules, checks and reports.
    connect(menu.prizeRules, &QAction::triggered, this,
            [this] { openPrizeRules(m_session, m_prompter, this); });
    connect(menu.profitLossReport, &QAction::triggered, this,
            [this] { openReports(m_session, m_prompter, this); });
    connect(menu.backtest, &QAction::triggered, this, [this] { (new BacktestWindow(m_session, m_prompter, this))->show(); });
    for (const auto& [item, kind] : prizeCheckItems()) {
        const schema::CandidateKind k = kind;
        connect(menu.*item, &QAction::triggered, this, [this, k] {
            hide();
            openPrizeCheck(m_session, m_prompter, k, this, [this] { show(); });
            show();
        });
    }
    // A check is offered when its table exists.
    connect(menu.windowsMenu, &QMenu::aboutToShow, this, &MainWindow::updatePrizeChecks);
    for (const auto& [index, item] : menu.stability) {
        const int i = index;
        connect(item, &QAction::triggered, this, [this, i] { chooseStability(i); });
    }
    for (const auto& [size, item] : menu.frontRule) {
        const int n = size;
        connect(item, &QAction::triggered, this, [this, n] { chooseFrontSize(n); });
    }
    for (const auto& [size, item] : menu.backRule) {
        const int n = size;
        connect(item, &QAction::triggered, this, [this, n] { chooseBackSize(n); });
    }
    connect(menu.fortune, &QAction::triggered, this, [this] { openFortune(m_session.settings(), m_prompter, this); });
    connect(menu.renameWorkspace, &QAction::triggered, this, &MainWindow::renameWorkspace);
    connect(menu.printSetting, &QAction::triggered, this, &MainWindow::askPrintSetting);
    connect(menu.about, &QAction::triggered, this, [this] {
        m_prompter.inform(QStringLiteral("关于软件"),
                          kTitle + QStringLiteral("\n版本 %1\n双区乐透的选号、组号、缩水过滤与兑奖助理。")
                                       .arg(QCoreApplication::applicationVersion()));
    });
}

void MainWindow::loadFromSession() {
    m_statusPanels[0]->setText(m_session.workspaceName());
    m_statusPanels[1]->setText(
        QStringLiteral("%1选5 + %2选2").arg(m_session.frontSize()).arg(m_session.backSize()));

    checkStoredStability();
    checkOnly(menuActions().frontRule, m_session.frontSize());
    checkOnly(menuActions().backRule, m_session.backSize());
    m_session.frontLeftToSpin = game_rules::kFrontPicks;
    m_session.backLeftToSpin = game_rules::kBackPicks;
    applyZoneSizes();
    m_board->predictionExpansion = false;
    renderBoard();
    updatePrizeChecks();
    refreshHistory();
}

void MainWindow::refreshHistory() {
    m_gridModel->refresh();
    const int drawCount = m_session.drawCount();
    m_nextIssueLabel->setText(history_actions::nextIssueText(m_session));
    // The newest draw in view. The view lays out the new rows later (and the first time only
    // once it is shown), so the scroll follows the scroll bar's new range.
    m_scrollToNewest = drawCount > 0;
    if (m_scrollToNewest) m_grid->scrollToBottom();
    updateHistoryCommands();
}

void MainWindow::renderIndexedMenu(const MenuActions::Family& family, const IndexedMenu& menu) {
    for (const auto& [k, item] : family) {
        item->setEnabled(menu.enabled[static_cast<size_t>(k)]);
        item->setChecked(menu.checked[static_cast<size_t>(k)]);
    }
}

void MainWindow::renderBoard() {
    const NumberBoard& b = *m_board;
    m_front->render(b.zone(Zone::Front));
    m_back->render(b.zone(Zone::Back));
    const MenuActions& menu = menuActions();
    renderIndexedMenu(menu.frontMulti, b.zone(Zone::Front).multiMenu);
    renderIndexedMenu(menu.backMulti, b.zone(Zone::Back).multiMenu);
    renderIndexedMenu(menu.frontBanker, b.zone(Zone::Front).bankerMenu);
    renderIndexedMenu(menu.backBanker, b.zone(Zone::Back).bankerMenu);
    m_statusPanels[2]->setText(b.statusText);
    m_spin->startButton()->setEnabled(b.startEnabled);
    m_spin->resetButton()->setEnabled(b.resetEnabled);
    m_spin->pauseButton()->setEnabled(b.pauseEnabled);
    m_spin->setSpinCounts(b.zone(Zone::Front).state().spinCount, b.zone(Zone::Back).state().spinCount);
    m_spin->startButton()->setText(m_spinControl->simulator().startCaption());
    menu.spinStart->setText(m_spinControl->simulator().startCaption());
    // Commands whose windows are not built yet stay off whatever the rules say.
    m_menu->enable(menu.spinStart, b.startItemEnabled);
    m_menu->enable(menu.spinReset, b.resetItemEnabled);
    m_menu->enable(menu.spinPause, b.pauseItemEnabled);
    m_menu->enable(menu.spinArrangement, b.predictionExpansion);
    for (const auto& [k, item] : menu.basicWheel) m_menu->enable(item, b.wheelEntries);
    MainMenu::enable(menu.frontBankerMenu, b.modeMenu.frontBankerSpin);
    MainMenu::enable(menu.bankerWheelMenu, b.modeMenu.bankerWheel);
    MainMenu::enable(menu.backBankerMenu, b.modeMenu.backBankerSpin);
    MainMenu::enable(menu.frontMultiMenu, b.modeMenu.frontMultiSpin);
    MainMenu::enable(menu.backMultiMenu, b.modeMenu.backMultiSpin);
    m_menu->enable(menu.multiExpansion, b.modeMenu.multiExpansion);
    m_menu->enable(menu.bankerExpansion, b.modeMenu.bankerExpansion);
    m_menu->enable(menu.sixFrontMultiExpansion, b.modeMenu.sixFrontMultiExpansion);
    m_menu->enable(menu.sixFrontBankerExpansion, b.modeMenu.sixFrontBankerExpansion);
    emit boardRendered();
}

void MainWindow::updateHistoryCommands() {
    // The delete and analysis commands need a history.
    const bool any = m_session.drawCount() > 0;
    menuActions().deleteLastDraw->setEnabled(any);
    for (QAction* item : {menuActions().analyseBothZones, menuActions().analyseFrontZone,
                          menuActions().analyseBackZone})
        m_menu->enable(item, any);
}

void MainWindow::checkOnly(const MenuActions::Family& family, int checked) {
    for (const auto& [i, item] : family) item->setChecked(i == checked);
}

void MainWindow::applyZoneSizes() {
    m_bars->setZoneSizes(m_session.frontSize(), m_session.backSize());
    m_statusPanels[1]->setText(
        QStringLiteral("%1选5 + %2选2").arg(m_session.frontSize()).arg(m_session.backSize()));
}

bool MainWindow::settingSaved(bool saved, const QString& error) {
    if (!saved) m_prompter.inform(Settings::kSaveFailedTitle, error, Prompter::Icon::Warning);
    return saved;
}

void MainWindow::chooseFrontSize(int size) {
    QString error;
    if (!settingSaved(m_session.setFrontSize(size, &error), error)) size = m_session.frontSize();
    checkOnly(menuActions().frontRule, size);
    m_board->setSizes(static_cast<int16_t>(size), static_cast<int16_t>(m_session.backSize()));
    m_board->reselect(Zone::Front);
    applyZoneSizes();
    renderBoard();
}

void MainWindow::chooseBackSize(int size) {
    QString error;
    if (!settingSaved(m_session.setBackSize(size, &error), error)) size = m_session.backSize();
    checkOnly(menuActions().backRule, size);
    m_board->setSizes(static_cast<int16_t>(m_session.frontSize()), static_cast<int16_t>(size));
    m_board->reselect(Zone::Back);
    applyZoneSizes();
    renderBoard();
}

void MainWindow::renameWorkspace() {
    m_workspaces.load();
    m_workspaces.askRename(m_session.userIndex(), m_session.workspaceName(), m_prompter);
}

void MainWindow::askPrintSetting() {
    const QString answer =
        m_prompter.askText(QStringLiteral("打印设置"), QStringLiteral("请输入打印的时候每一行的注数"),
                           QString::number(m_session.ticketsPerLine()));
    bool ok = false;
    const int n = answer.trimmed().toInt(&ok);
    // Anything but a count is ignored.
    QString error;
    if (ok && n > 0 && n <= 32767) settingSaved(m_session.setTicketsPerLine(n, &error), error);
}

const std::vector<std::pair<QAction * MenuActions::*, schema::CandidateKind>>& MainWindow::prizeCheckItems() {
    static const std::vector<std::pair<QAction * MenuActions::*, schema::CandidateKind>> items{
        {&MenuActions::checkCombinations, schema::CandidateKind::Combinations},
        {&MenuActions::checkWheel, schema::CandidateKind::Wheel},
        {&MenuActions::checkTextTickets, schema::CandidateKind::Imported},
        {&MenuActions::checkTemplateTickets, schema::CandidateKind::Template},
        {&MenuActions::checkSixFrontTickets, schema::CandidateKind::SixNumbers}};
    return items;
}

void MainWindow::updatePrizeChecks() {
    for (const auto& [item, kind] : prizeCheckItems())
        (menuActions().*item)->setEnabled(prizeCheckEnabled(m_session, kind));
}

FilterWindow* MainWindow::openFilter(FilterSource instance, const WheelChoice* wheel) {
    FilterWindow* w = openFilterWindow(instance, m_session, m_prompter, this, wheel);
    if (!w) return nullptr;
    m_filterWindows.append(w);
    connect(w, &FilterWindow::closed, this, [this, w] {
        m_filterWindows.removeAll(w);
        w->deleteLater();
    });
    return w;
}

QList<TrendWindow*> MainWindow::trendWindows() const {
    QList<TrendWindow*> open;
    for (const QPointer<TrendWindow>& w : m_trendWindows)
        if (!w.isNull()) open.append(w.data());
    return open;
}

TrendWindow* MainWindow::openTrend(TrendMember member) {
    auto* w = new TrendWindow(member, m_session, *m_board, m_prompter, this);
    w->setWindowFlag(Qt::Window);
    w->setAttribute(Qt::WA_DeleteOnClose);
    // Picks made there show on the board at once, and picks made here show there.
    connect(w, &TrendWindow::boardChanged, this, &MainWindow::renderBoard);
    connect(this, &MainWindow::boardRendered, w, &TrendWindow::showPicks);
    connectTrendPicking(w);
    // A closed window leaves a null pointer behind, dropped here: while a window is being
    // destroyed it is no longer a TrendWindow, and nothing may look at it as one.
    m_trendWindows.removeIf([](const QPointer<TrendWindow>& p) { return p.isNull(); });
    m_trendWindows.append(w);
    w->show();
    return w;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    // Each filter window brings its table's record up to date before it goes.
    for (const QPointer<FilterWindow>& w : QList<QPointer<FilterWindow>>(m_filterWindows))
        if (w) w->close();
    m_spinControl->stopTimers();
    m_session.saveSpinValues();
    keepBoard();
    event->accept();
}
