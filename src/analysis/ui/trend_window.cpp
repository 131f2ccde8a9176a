#include "analysis/ui/trend_window.h"

#include "analysis/trend_search.h"
#include "analysis/ui/trend_bars.h"
#include "analysis/ui/trend_grid_model.h"
#include "picking/number_board.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QAction>
#include <QMouseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QShowEvent>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace {
// Column 0 holds the issues and the heads of the summary rows; a number column two digits or a
// count of a few hundred. The summary rows take two lines, so that their heads wrap.
constexpr int kIssueColumnWidth = 76;
constexpr double kGridPointSize = 8.0;
constexpr int kNumberColumnWidth = 24;
constexpr int kRowHeight = 18;
constexpr int kSummaryRowHeight = 42;

// The width that shows every column of a zone's grid with its scroll bar.
int gridWidth(int numbers) { return kIssueColumnWidth + numbers * kNumberColumnWidth + 24; }
}  // namespace

const TrendWindow::Options& TrendWindow::Options::of(TrendMember member) {
    static const Options both{"frmpic", QStringLiteral("历史分析(号码走势图及概率分布图)"), true, true,
                              TrendGrid::kAppearanceHead};
    static const Options front{"frmpicQian", QStringLiteral("前区历史分析(号码走势图及概率分布图)"), true,
                               false, QStringLiteral("出现次数(双击指定检索期数)")};
    static const Options back{"frmpicHou", QStringLiteral("后区历史分析(号码走势图及概率分布图)"), false,
                              true, TrendGrid::kAppearanceHead};
    switch (member) {
        case TrendMember::BothZones:
            return both;
        case TrendMember::FrontZone:
            return front;
        case TrendMember::BackZone:
            return back;
    }
    return both;
}

TrendWindow::TrendWindow(TrendMember member, Session& session, NumberBoard& board, Prompter& prompter,
                         QWidget* parent)
    : QMainWindow(parent),
      m_member(member),
      m_options(Options::of(member)),
      m_session(session),
      m_board(board),
      m_prompter(prompter) {
    setObjectName(QString::fromLatin1(m_options.objectName));
    setWindowTitle(m_options.caption);
    trend_menus::build(menuBar(), member);
    connectViews();
    addRunsItem();

    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setChildrenCollapsible(false);
    const bool both = m_options.front && m_options.back;
    if (m_options.front) {
        m_zones.push_back(std::make_unique<ZoneView>(ZoneView{Zone::Front, {}}));
        splitter->addWidget(makeZone(*m_zones.back(), m_options.frontAppearanceHead, 6));
    }
    if (m_options.back) {
        m_zones.push_back(std::make_unique<ZoneView>(ZoneView{Zone::Back, {}}));
        splitter->addWidget(makeZone(*m_zones.back(), TrendGrid::kAppearanceHead, 4));
    }
    // Each grid as wide as its columns, the front taking what a resize adds.
    if (both) {
        splitter->setStretchFactor(0, 1);
        splitter->setStretchFactor(1, 0);
        m_splitter = splitter;
    }
    setCentralWidget(splitter);
    showPicks();
    const int width = both ? gridWidth(m_session.frontSize()) + gridWidth(m_session.backSize())
                           : gridWidth(m_options.front ? m_session.frontSize() : m_session.backSize());
    // As wide as the grids, within the screen.
    const QRect screen = this->screen()->availableGeometry();
    resize(std::clamp(width + 16, 440, screen.width()), std::min(700, screen.height() - 40));
}

TrendWindow::~TrendWindow() = default;

void TrendWindow::addRunsItem() {
    auto* menu = menuBar()->findChild<QMenu*>(QStringLiteral("mnuSyl"));
    menu->addSeparator();
    QAction* item = menu->addAction(QStringLiteral("显示遗漏统计"));
    item->setObjectName(QStringLiteral("mnuYlTongji"));
    item->setCheckable(true);
    connect(item, &QAction::toggled, this, [this](bool shown) {
        for (const auto& z : m_zones) z->model->showRuns(shown);
    });
}

void TrendWindow::connectViews() {
    QList<AnalysisView> views = analysis_views::chartViews();
    views += analysis_views::fitAnd3dViews();
    views += analysis_views::statisticsViews();
    for (const AnalysisView& view : views) {
        auto* action = menuBar()->findChild<QAction*>(view.given);
        if (!action) continue;  // not an entry of this member's menus
        action->setEnabled(true);
        connect(action, &QAction::triggered, this, [this, view] { openView(view); });
    }
}

void TrendWindow::openView(const AnalysisView& view) {
    QWidget* w = view.open(AnalysisContext{m_session, m_prompter, m_member, this});
    if (!w) return;
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->setWindowFlag(Qt::Window);
    w->show();
    w->raise();
    w->activateWindow();
}

QWidget* TrendWindow::makeZone(ZoneView& z, const QString& appearanceHead, int barColumns) {
    // The grid is filled whole before the view sees its model.
    z.grid = std::make_unique<TrendGrid>(m_session, z.zone);
    z.grid->load();
    z.model = new TrendGridModel(*z.grid, appearanceHead, this);
    auto* area = new QWidget(this);
    auto* v = new QVBoxLayout(area);
    v->setContentsMargins(2, 2, 2, 2);
    v->setSpacing(4);
    v->addWidget(makeView(z), 1);
    z.bars = new TrendBars(z.zone, barColumns, area);
    v->addWidget(z.bars);
    connect(z.bars, &TrendBars::numberClicked, this, [this, zone = z.zone](int n) { pick(zone, n); });
    connect(z.bars, &TrendBars::numberRightClicked, this,
            [this, zone = z.zone](int n) { openBankerPopup(zone, n, QCursor::pos()); });
    makePopup(z);
    return area;
}

QTableView* TrendWindow::makeView(ZoneView& z) {
    auto* view = new QTableView(this);
    z.view = view;
    view->setObjectName(z.zone == Zone::Front ? QStringLiteral("MSFlexGrid1")
                                              : QStringLiteral("MSFlexGrid2"));
    view->setModel(z.model);
    QFont font = view->font();
    font.setPointSizeF(kGridPointSize);
    view->setFont(font);
    view->horizontalHeader()->setFont(font);
    view->verticalHeader()->hide();
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->verticalHeader()->setDefaultSectionSize(kRowHeight);
    for (int row = z.model->omissionRow(); row < z.model->rowCount(); ++row)
        view->verticalHeader()->resizeSection(row, kSummaryRowHeight);
    // The least width first: the style's least width would otherwise hold the columns wider.
    view->horizontalHeader()->setMinimumSectionSize(kNumberColumnWidth);
    view->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->horizontalHeader()->setDefaultSectionSize(kNumberColumnWidth);
    // The heads of the summary rows take two lines at most.
    const int headWidth =
        view->fontMetrics().horizontalAdvance(z.model->index(z.model->appearanceRow(), 0).data().toString());
    view->setColumnWidth(0, std::max(kIssueColumnWidth, headWidth / 2 + 16));
    view->setSelectionMode(QAbstractItemView::NoSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setWordWrap(true);
    // A count of three digits fills its narrow cell to the border rather than turning into "…".
    view->setTextElideMode(Qt::ElideNone);
    view->setMinimumWidth(kIssueColumnWidth + 6 * kNumberColumnWidth);
    view->viewport()->installEventFilter(this);
    const Zone zone = z.zone;
    connect(view, &QTableView::clicked, this, [this, zone](const QModelIndex& index) {
        const ZoneView* zv = viewOf(zone);
        if (index.row() == zv->model->marksRow() && index.column() > 0) pick(zone, index.column());
    });
    connect(view, &QTableView::doubleClicked, this, [this, zone](const QModelIndex& index) {
        ZoneView& zv = *viewOf(zone);
        if (index.row() == zv.model->omissionRow())
            searchOmissions(zv);
        else if (index.row() < zv.model->runsRow())
            searchAppearances(zv);
    });
    // The head row is the header; a double click there searches the appearances too.
    connect(view->horizontalHeader(), &QHeaderView::sectionDoubleClicked, this,
            [this, zone](int) { searchAppearances(*viewOf(zone)); });
    // Opened on the newest draws and the summary rows: the view lays its rows out once shown, so
    // the scroll follows the range until the player scrolls himself.
    connect(view->verticalScrollBar(), &QScrollBar::rangeChanged, this, [this, view](int, int max) {
        if (m_followNewest) view->verticalScrollBar()->setValue(max);
    });
    connect(view->verticalScrollBar(), &QScrollBar::actionTriggered, this,
            [this] { m_followNewest = false; });
    view->scrollToBottom();
    return view;
}

void TrendWindow::makePopup(ZoneView& z) {
    const bool front = z.zone == Zone::Front;
    z.popup = new QMenu(QStringLiteral("胆拖模式"), this);
    z.popup->setObjectName(front ? QStringLiteral("mnuDt") : QStringLiteral("mnuDtHou"));
    QAction* item = z.popup->addAction(QStringLiteral("胆-选择/取消"));
    item->setObjectName(front ? QStringLiteral("munDan") : QStringLiteral("munDanHou"));
    connect(item, &QAction::triggered, this, [this, zone = z.zone] {
        m_board.toggleBanker(zone);
        showPicks();
        emit boardChanged();
    });
}

TrendWindow::ZoneView* TrendWindow::viewOf(Zone zone) {
    for (auto& z : m_zones)
        if (z->zone == zone) return z.get();
    return nullptr;
}

const TrendWindow::ZoneView* TrendWindow::viewOf(Zone zone) const {
    for (const auto& z : m_zones)
        if (z->zone == zone) return z.get();
    return nullptr;
}

QTableView* TrendWindow::gridView(Zone zone) const {
    const ZoneView* z = viewOf(zone);
    return z ? z->view : nullptr;
}

TrendBars* TrendWindow::bars(Zone zone) const {
    const ZoneView* z = viewOf(zone);
    return z ? z->bars : nullptr;
}

const TrendGrid* TrendWindow::grid(Zone zone) const {
    const ZoneView* z = viewOf(zone);
    return z ? z->grid.get() : nullptr;
}

void TrendWindow::showPicks() {
    for (const auto& z : m_zones) {
        z->model->marksChanged();
        z->bars->render(*z->grid);
    }
    emit picksShown();
}

void TrendWindow::pick(Zone zone, int number) {
    // The same change as a left click on the number board: a banker becomes a pick.
    m_board.leftClick(zone, number);
    showPicks();
    emit boardChanged();
}

void TrendWindow::openBankerPopup(Zone zone, int number, const QPoint& globalPos) {
    if (!m_board.rightClick(zone, number)) return;
    viewOf(zone)->popup->popup(globalPos);
}

void TrendWindow::searchAppearances(ZoneView& z) {
    const std::optional<int> after = trend_search::askCountStart(m_prompter, z.grid->drawCount());
    if (!after) return;
    z.grid->countAppearances(*after);
    z.model->appearancesChanged();
}

void TrendWindow::searchOmissions(ZoneView& z) {
    const auto issue = trend_search::askIssue(m_prompter, z.grid->drawCount(),
                                              [&z](int32_t i) { return z.grid->showOmissionsOf(i); });
    if (issue) z.model->omissionsChanged();
}

void TrendWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    // Once the window has its size, each grid gets the width of its columns; the front grid
    // takes the rest.
    if (m_splitter && !event->spontaneous()) {
        const int back = gridWidth(m_session.backSize());
        m_splitter->setSizes({std::max(m_splitter->width() - back, gridWidth(8)), back});
        m_splitter = nullptr;
    }
}

bool TrendWindow::eventFilter(QObject* watched, QEvent* event) {
    // A right click on the marks row opens the banker pop-up of that number.
    if (event->type() == QEvent::MouseButtonPress) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        for (const auto& z : m_zones) {
            if (watched != z->view->viewport() || mouse->button() != Qt::RightButton) continue;
            const QModelIndex index = z->view->indexAt(mouse->position().toPoint());
            if (index.row() == z->model->marksRow() && index.column() > 0) {
                openBankerPopup(z->zone, index.column(), mouse->globalPosition().toPoint());
                return true;
            }
        }
    }
    return QMainWindow::eventFilter(watched, event);
}
