#include "analysis/ui/statistics_window.h"

#include "analysis/number_relations.h"
#include "analysis/position_moments.h"
#include "analysis/trend_grid.h"
#include "analysis/ui/text_grid_model.h"
#include "analysis/ui/trend_window.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QTableView>

namespace {

const char* objectNameOf(StatisticsWindow::Kind k) {
    switch (k) {
        case StatisticsWindow::Kind::Correlation:
            return "FrmXg";
        case StatisticsWindow::Kind::Following:
        case StatisticsWindow::Kind::Skipping:
            return "FrmGs";
        case StatisticsWindow::Kind::Moments:
            return "frmGl";
    }
    return "";
}

QString captionOf(StatisticsWindow::Kind k) {
    switch (k) {
        case StatisticsWindow::Kind::Correlation:
            return QStringLiteral("列表排序(鼠标右键可以切换2/3个码的历史相关)");
        case StatisticsWindow::Kind::Following:
        case StatisticsWindow::Kind::Skipping:
            return QStringLiteral("历史变换统计");
        case StatisticsWindow::Kind::Moments:
            return QStringLiteral("高级概率参数");
    }
    return {};
}

// Column widths in pixels for the number grids: 450 and 400 twips at 15 twips a pixel.
constexpr int kCorrelationWidth = 30;
constexpr int kTransitionWidth = 27;
constexpr int kHeadWidth = 84;

}  // namespace

StatisticsWindow::StatisticsWindow(Kind kind, const AnalysisContext& context)
    : QMainWindow(context.parent), m_kind(kind), m_context(context) {
    setObjectName(QString::fromLatin1(objectNameOf(kind)));
    setWindowTitle(captionOf(kind));
    m_model = new TextGridModel(this);
    m_view = new QTableView(this);
    m_view->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_view->setModel(m_model);
    m_view->horizontalHeader()->hide();
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(20);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->viewport()->installEventFilter(this);
    setCentralWidget(m_view);
    switch (kind) {
        case Kind::Correlation:
            makePairsMenu();
            showPairs();
            break;
        case Kind::Following:
            showTransitions(1);
            connectPicking();
            break;
        case Kind::Skipping:
            showTransitions(2);
            connectPicking();
            break;
        case Kind::Moments:
            showMoments();
            break;
    }
    int width = 24;
    for (int c = 0; c < m_model->columnCount(); ++c) width += m_view->columnWidth(c);
    const int height = kind == Kind::Moments ? m_model->rowCount() * 20 + 28 : 680;
    resize(std::min(width, 1300), height);
}

int StatisticsWindow::gridSize() const {
    return number_relations::gridSize(m_context.view(), m_context.session.frontSize(),
                                      m_context.session.backSize());
}

void StatisticsWindow::sizeColumns(int width) {
    // The style's least width would otherwise hold the narrow number columns wider.
    m_view->horizontalHeader()->setMinimumSectionSize(16);
    m_view->horizontalHeader()->setDefaultSectionSize(width);
    m_view->setColumnWidth(0, kHeadWidth);
}

void StatisticsWindow::showPairs() {
    const auto m = number_relations::pairs(m_context.session.history(), m_context.view());
    m_model->setGrid(statistics_grids::correlation(m, gridSize()));
    sizeColumns(kCorrelationWidth);
}

void StatisticsWindow::showPairsWithANumber() {
    const int size = gridSize();
    while (true) {
        const std::optional<QString> answer = m_context.prompter.askTextOrCancel(
            QStringLiteral("相关数输入"), QStringLiteral("请输入其中的1个相关数,然后与剩余2个组成相关列表"));
        if (!answer) return;  // the player gave up: the grid stays as it was
        bool numeric = false;
        const double x = answer->trimmed().toDouble(&numeric);
        if (!numeric) {
            m_context.prompter.inform(QStringLiteral("输入错误"), QStringLiteral("请输入数字"));
            continue;
        }
        if (x < 1 || x > size || x != static_cast<int>(x)) {
            m_context.prompter.inform(QStringLiteral("输入错误"), QStringLiteral("请输入1~%1之间的数字").arg(size));
            continue;
        }
        const auto m = number_relations::pairsWith(m_context.session.history(), m_context.view(),
                                                   static_cast<int>(x));
        m_model->setGrid(statistics_grids::correlation(m, size));
        return;
    }
}

void StatisticsWindow::showTransitions(int gap) {
    const int size = gridSize();
    const HistoryView scope = m_context.view();
    const DrawHistory& h = m_context.session.history();
    const NumberMatrix m = number_relations::transitions(h, scope, gap);
    m_model->setGrid(
        statistics_grids::transitions(m, number_relations::followRows(h, scope, gap, m, size), size, gap));
    sizeColumns(kTransitionWidth);
}

void StatisticsWindow::showMoments() {
    m_model->setGrid(statistics_grids::moments(position_moments::compute(
        m_context.session.history(), m_context.session.frontSize(), m_context.session.backSize())));
    // Ten rows of up to twelve digits: each column as wide as its figures.
    m_view->resizeColumnsToContents();
}

Zone StatisticsWindow::zone() const { return m_context.scope == TrendMember::BackZone ? Zone::Back : Zone::Front; }

void StatisticsWindow::connectPicking() {
    m_trend = qobject_cast<TrendWindow*>(m_context.parent);
    if (!m_trend) return;
    m_view->setToolTip(QStringLiteral("可以用鼠标选号，鼠标反键选胆"));
    connect(m_view, &QTableView::clicked, this, [this](const QModelIndex& index) {
        if (const int n = numberAt(index)) m_trend->pick(zone(), n);
    });
    connect(m_trend, &TrendWindow::picksShown, this, &StatisticsWindow::showMarks);
    showMarks();
}

int StatisticsWindow::numberAt(const QModelIndex& index) const {
    const int size = gridSize();
    if (index.row() == 0 && index.column() >= 1 && index.column() <= size) return index.column();
    if (index.column() == 0 && index.row() >= 1 && index.row() <= size) return index.row();
    return 0;
}

void StatisticsWindow::showMarks() {
    const ZoneBoardState& board = zone() == Zone::Back ? m_context.session.board().back : m_context.session.board().front;
    for (int n = 1; n <= gridSize(); ++n) {
        const QString mark = board.bankerFlag[static_cast<size_t>(n)] ? TrendGrid::kBankerMark
                             : board.pickFlag[static_cast<size_t>(n)] ? TrendGrid::kPickMark
                                                                       : QString();
        const QString head = QStringLiteral("%1%2").arg(n, 2, 10, QLatin1Char('0')).arg(mark);
        m_model->setText(0, n, head);
        m_model->setText(n, 0, head);
    }
}

void StatisticsWindow::makePairsMenu() {
    m_pairsMenu = new QMenu(this);
    m_pairsMenu->setObjectName(QStringLiteral("mnuXiangguanMenu"));
    QAction* two = m_pairsMenu->addAction(QStringLiteral("2项相关"));
    two->setObjectName(QStringLiteral("mnuXiangguan(2)"));
    connect(two, &QAction::triggered, this, &StatisticsWindow::showPairs);
    QAction* three = m_pairsMenu->addAction(QStringLiteral("3项相关"));
    three->setObjectName(QStringLiteral("mnuXiangguan(3)"));
    connect(three, &QAction::triggered, this, &StatisticsWindow::showPairsWithANumber);
}

bool StatisticsWindow::eventFilter(QObject* watched, QEvent* event) {
    // The pair counts switch between two and three numbers from the grid's pop-up menu.
    if (watched == m_view->viewport() && event->type() == QEvent::ContextMenu) {
        const auto* menuEvent = static_cast<QContextMenuEvent*>(event);
        if (m_pairsMenu) {
            m_pairsMenu->popup(menuEvent->globalPos());
            return true;
        }
        if (m_trend) {
            if (const int n = numberAt(m_view->indexAt(menuEvent->pos()))) m_trend->openBankerPopup(zone(), n, menuEvent->globalPos());
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}
