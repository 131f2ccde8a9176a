#include "workspace/ui/main_window.h"

#include "picking/ui/spin_panel.h"
#include "picking/ui/zone_board_widget.h"
#include "workspace/prompter.h"
#include "workspace/session.h"
#include "workspace/ui/history_grid_model.h"
#include "workspace/ui/main_menu.h"

#include <QAction>
#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QVBoxLayout>

namespace {
// The buttons beside the history grid repeat menu items.
struct HistoryButton {
    const char* name;
    const char* caption;
    const char* menuItem;
};
const HistoryButton kHistoryButtons[] = {
    {"Command44", "删除最后一期历史(&D)", "mnuDelast"}, {"cmdRead", "读取所有历史文件(&A)", "mnuRed"},
    {"Command4", "读取历史最新文件(&N)", "mnuRead"},    {"Command3", "历史号码文件下载(&L)", "mnuNew"},
    {"Command5", "历史号码网上更新(&W)", "mnuNewol"},   {"Command48", "前后历史分析窗口(&Y)", "mnuSy"},
    {"Command9", "前区历史分析窗口(&Y)", "mnuSyQian"},  {"Command10", "后区历史分析窗口(&Y)", "mnuSyHou"},
};
}  // namespace

MainWindow::MainWindow(Session& session, WorkspaceList& workspaces, Prompter& prompter, QWidget* parent)
    : QMainWindow(parent), m_session(session), m_workspaces(workspaces), m_prompter(prompter) {
    setObjectName(QStringLiteral("Form1"));
    setWindowTitle(kTitle);
    m_menu = std::make_unique<MainMenu>(menuBar());

    auto* central = new QWidget(this);
    auto* layout = new QHBoxLayout(central);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(6);
    layout->addWidget(makeHistoryArea(), 0);
    layout->addWidget(makeBoardArea(), 0);
    m_bars = new ProbabilityBars(central);
    layout->addWidget(m_bars, 1);
    setCentralWidget(central);
    makeStatusBar();
    connectMenus();
    loadFromSession();
}

MainWindow::~MainWindow() = default;

QAction* MainWindow::action(const QString& name) const { return m_menu->action(name); }

QWidget* MainWindow::makeHistoryArea() {
    auto* area = new QWidget(this);
    auto* v = new QVBoxLayout(area);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(4);

    m_gridModel = new HistoryGridModel(m_session.history(), this);
    m_grid = new QTableView(area);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_grid->setModel(m_gridModel);
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
    v->addWidget(m_grid, 1);

    // The entry row: Label12 and the seven masked fields.
    auto* entry = new QHBoxLayout;
    entry->setSpacing(2);
    m_label12 = new QLabel(area);
    m_label12->setObjectName(QStringLiteral("Label12"));
    m_label12->setStyleSheet(QStringLiteral("color: rgb(0,0,160);"));
    entry->addWidget(m_label12);
    for (int i = 1; i <= 7; ++i) {
        auto* box = new QLineEdit(area);
        box->setObjectName(QStringLiteral("MaskEdBox1(%1)").arg(i));
        box->setInputMask(QStringLiteral("99"));
        box->setFixedWidth(28);
        box->setAlignment(Qt::AlignCenter);
        if (i >= 6) box->setStyleSheet(QStringLiteral("color: rgb(0,0,200);"));
        entry->addWidget(box);
        m_maskEdBox << box;
    }
    entry->addStretch();
    v->addLayout(entry);

    auto* buttons = new QGridLayout;
    buttons->setSpacing(3);
    int i = 0;
    for (const HistoryButton& b : kHistoryButtons) {
        auto* button = new QPushButton(QString::fromUtf8(b.caption), area);
        button->setObjectName(QString::fromLatin1(b.name));
        QAction* item = action(QString::fromLatin1(b.menuItem));
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
    m_front = new ZoneBoardWidget(ZoneBoardWidget::Zone::Front, area);
    m_back = new ZoneBoardWidget(ZoneBoardWidget::Zone::Back, area);
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

void MainWindow::connectMenus() {
    connect(action(QStringLiteral("meuExt")), &QAction::triggered, this, &QWidget::close);
    for (const rules::StabilityItem& it : rules::stabilityItems()) {
        const int index = it.index;
        connect(action(QStringLiteral("meuSpd%1").arg(index)), &QAction::triggered, this,
                [this, index] { chooseStability(index); });
    }
    for (int n = rules::kFrontMin; n <= rules::kFrontMax; ++n)
        connect(action(QStringLiteral("meuS(%1)").arg(n)), &QAction::triggered, this, [this, n] { chooseFrontSize(n); });
    for (int n = rules::kBackMin; n <= rules::kBackMax; ++n)
        connect(action(QStringLiteral("meuSHou(%1)").arg(n)), &QAction::triggered, this,
                [this, n] { chooseBackSize(n); });
    connect(action(QStringLiteral("mnuName")), &QAction::triggered, this, &MainWindow::renameWorkspace);
    connect(action(QStringLiteral("mnuPtset")), &QAction::triggered, this, &MainWindow::askPrintSetting);
    connect(action(QStringLiteral("meuAbt")), &QAction::triggered, this, [this] {
        m_prompter.inform(QStringLiteral("关于软件"),
                          kTitle + QStringLiteral("\n双区乐透的选号、组号、缩水过滤与兑奖助理。"));
    });
}

void MainWindow::loadFromSession() {
    m_statusPanels[0]->setText(m_session.curuser());
    m_statusPanels[1]->setText(QStringLiteral("%1选5 + %2选2").arg(m_session.bitnum()).arg(m_session.bitnumHou()));

    // The stability item of the stored Wd; 8000 itself checks none.
    const int wd = m_session.settings().readInt(keys::WdAtLoad, m_session.curuser());
    for (const rules::StabilityItem& it : rules::stabilityItems())
        action(QStringLiteral("meuSpd%1").arg(it.index))->setChecked(false);
    if (const int item = rules::stabilityItemCheckedAtLoad(wd))
        action(QStringLiteral("meuSpd%1").arg(item))->setChecked(true);

    checkOnly(QStringLiteral("meuS"), rules::kFrontMin, rules::kFrontMax, m_session.bitnum());
    checkOnly(QStringLiteral("meuSHou"), rules::kBackMin, rules::kBackMax, m_session.bitnumHou());
    m_session.yaoqian = rules::kFrontPicks;
    m_session.yaohou = rules::kBackPicks;
    applyZoneSizes();
    action(QStringLiteral("meuAgarr"))->setEnabled(false);
    checkOnly(QStringLiteral("meuDanxuan"), 5, 16, 5);
    checkOnly(QStringLiteral("meuDanxuanHou"), 2, 8, 2);
    refreshHistory();
}

void MainWindow::refreshHistory() {
    m_gridModel->refresh();
    const int drawnum = m_session.drawnum();
    m_label12->setText(QStringLiteral("在右输入") + QString::number(m_session.history().lastIssue() + 1) +
                       QStringLiteral(" 期历史号码:"));
    // The newest draw at the top of the view.
    if (drawnum > 0) m_grid->scrollTo(m_gridModel->index(drawnum - 1, 0), QAbstractItemView::PositionAtTop);
    updateHistoryCommands();
}

void MainWindow::updateHistoryCommands() {
    // The delete and analysis commands need a history; their windows come later.
    const bool any = m_session.drawnum() > 0;
    for (const char* name : {"mnuDelast", "mnuSy"})
        action(QString::fromLatin1(name))->setEnabled(any && MainMenu::isBuilt(QString::fromLatin1(name)));
}

void MainWindow::checkOnly(const QString& family, int from, int to, int checked) {
    for (int i = from; i <= to; ++i)
        if (QAction* a = action(QStringLiteral("%1(%2)").arg(family).arg(i))) a->setChecked(i == checked);
}

void MainWindow::applyZoneSizes() {
    m_front->setZoneSize(m_session.bitnum());
    m_back->setZoneSize(m_session.bitnumHou());
    m_bars->setZoneSizes(m_session.bitnum(), m_session.bitnumHou());
    m_statusPanels[1]->setText(QStringLiteral("%1选5 + %2选2").arg(m_session.bitnum()).arg(m_session.bitnumHou()));
}

void MainWindow::chooseStability(int itemIndex) {
    for (const rules::StabilityItem& it : rules::stabilityItems()) {
        action(QStringLiteral("meuSpd%1").arg(it.index))->setChecked(it.index == itemIndex);
        if (it.index == itemIndex) m_session.settings().write(keys::WdAtLoad, it.value, m_session.curuser());
    }
}

void MainWindow::chooseFrontSize(int size) {
    checkOnly(QStringLiteral("meuS"), rules::kFrontMin, rules::kFrontMax, size);
    m_session.setBitnum(size);
    m_session.board().front = ZoneBoardState{};
    m_front->render(m_session.board().front);
    applyZoneSizes();
}

void MainWindow::chooseBackSize(int size) {
    checkOnly(QStringLiteral("meuSHou"), rules::kBackMin, rules::kBackMax, size);
    m_session.setBitnumHou(size);
    m_session.board().back = ZoneBoardState{};
    m_back->render(m_session.board().back);
    applyZoneSizes();
}

void MainWindow::renameWorkspace() {
    m_workspaces.load();
    m_workspaces.askRename(m_session.userIndex(), m_session.curuser(), m_prompter);
}

void MainWindow::askPrintSetting() {
    const QString answer = m_prompter.askText(QStringLiteral("打印设置"), QStringLiteral("请输入打印的时候每一行的注数"),
                                              QString::number(m_session.printrow()));
    bool ok = false;
    const int n = answer.trimmed().toInt(&ok);
    // Anything but a count is ignored.
    if (ok && n > 0 && n <= 32767) m_session.setPrintrow(n);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    m_session.saveSpinValues();
    event->accept();
}
