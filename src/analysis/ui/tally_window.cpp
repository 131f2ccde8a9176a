#include "analysis/ui/tally_window.h"

#include "analysis/number_relations.h"
#include "analysis/ui/grid_export.h"
#include "analysis/ui/tally_model.h"
#include "workspace/session.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QTableView>
#include <QTimer>

namespace {
constexpr int kIssueWidth = 64;
constexpr int kCellWidth = 34;
}  // namespace

TallyWindow::TallyWindow(const AnalysisContext& context, TallyKind kind)
    : QMainWindow(context.parent), m_context(context) {
    const auto& kinds = draw_tallies::kinds();
    const auto info = std::find_if(kinds.begin(), kinds.end(), [kind](const auto& k) { return k.kind == kind; });
    setObjectName(QString::fromLatin1(info->window));
    const int size = number_relations::gridSize(context.view(), context.session.frontSize(), context.session.backSize());
    m_model = new TallyModel(draw_tallies::build(context.session.history(), context.view(), size, kind), this);
    setWindowTitle(m_model->table().caption);
    m_view = new QTableView(this);
    m_view->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_view->setModel(m_model);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(20);
    m_view->horizontalHeader()->setMinimumSectionSize(16);
    m_view->horizontalHeader()->setDefaultSectionSize(kCellWidth);
    // The issue column as wide as the longest foot row's head.
    int issueWidth = kIssueWidth;
    for (const TallyTable::Foot& f : m_model->table().foot)
        issueWidth = std::max(issueWidth, m_view->fontMetrics().horizontalAdvance(f.head) + 12);
    m_view->setColumnWidth(0, issueWidth);
    // A column as wide as the longest line of its head ("01~05" over a band's first count).
    const QFontMetrics heads = m_view->horizontalHeader()->fontMetrics();
    for (int c = 1; c < m_model->columnCount(); ++c) {
        int width = kCellWidth;
        for (const QString& line : m_model->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString().split(QLatin1Char('\n')))
            width = std::max(width, heads.horizontalAdvance(line) + 10);
        m_view->setColumnWidth(c, width);
    }
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setSelectionMode(QAbstractItemView::NoSelection);
    setCentralWidget(m_view);
    makePopup();
    const int width = kIssueWidth + (m_model->columnCount() - 1) * kCellWidth + 24;
    resize(std::clamp(width, 360, 1300), 640);
    // Opened on the newest draws and the foot rows, once laid out.
    QTimer::singleShot(0, m_view, &QTableView::scrollToBottom);
}

void TallyWindow::makePopup() {
    m_popup = new QMenu(QStringLiteral("操作(&M)"), this);
    m_popup->setObjectName(QStringLiteral("mnuMlp"));
    QAction* print = m_popup->addAction(QStringLiteral("打印预览(&P)"));
    print->setObjectName(QStringLiteral("mnuPrint"));
    connect(print, &QAction::triggered, this, [this] {
        grid_export::exportModel(*m_model, true, m_context.session, m_context.prompter, windowTitle());
    });
    m_view->viewport()->installEventFilter(this);
}

bool TallyWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_view->viewport() && event->type() == QEvent::ContextMenu) {
        m_popup->popup(static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}
