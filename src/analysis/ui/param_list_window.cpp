#include "analysis/ui/param_list_window.h"

#include "analysis/param_lists.h"
#include "analysis/ui/grid_export.h"
#include "workspace/session.h"

#include <QHeaderView>
#include <QMenuBar>
#include <QStandardItemModel>
#include <QTableView>

namespace {

const char* objectNameOf(HistoryView v) {
    return v == HistoryView::Front ? "FrmJcsarr" : v == HistoryView::Back ? "FrmJcsarrHou" : "FrmJcsarrQuan";
}

// A stored value as the list shows it: whole numbers as they are, reals to four places at most.
QString shown(const QVariant& v) {
    if (v.typeId() == QMetaType::Double) return QString::number(v.toDouble(), 'g', 6);
    return v.toString();
}

}  // namespace

ParamListWindow::ParamListWindow(const AnalysisContext& context)
    : QMainWindow(context.parent), m_context(context), m_scope(context.view()) {
    setObjectName(QString::fromLatin1(objectNameOf(m_scope)));
    setWindowTitle(QStringLiteral("参数查询"));
    m_model = new QStandardItemModel(this);
    m_view = new QTableView(this);
    m_view->setObjectName(QStringLiteral("DataGrid1"));
    m_view->setModel(m_model);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->verticalHeader()->setDefaultSectionSize(20);
    m_view->verticalHeader()->hide();
    m_view->horizontalHeader()->setSectionsClickable(true);
    connect(m_view->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int column) { show(column); });
    setCentralWidget(m_view);
    QAction* print = menuBar()->addAction(QStringLiteral("打印图形窗体(&P)"));
    print->setObjectName(QStringLiteral("mnuPrint"));
    connect(print, &QAction::triggered, this, [this] {
        grid_export::exportModel(*m_model, true, m_context.session, m_context.prompter, windowTitle());
    });
    show(std::nullopt);
    resize(1200, 640);
}

void ParamListWindow::show(std::optional<int> sortColumn) {
    const std::vector<ListColumn>& columns = param_lists::columns(m_scope);
    const QList<QVariantList> rows = param_lists::rows(m_context.session.historyDb(), m_scope, sortColumn);
    m_model->clear();
    QStringList heads;
    for (const ListColumn& c : columns) heads << c.head;
    m_model->setHorizontalHeaderLabels(heads);
    for (const QVariantList& row : rows) {
        QList<QStandardItem*> items;
        for (const QVariant& v : row) {
            auto* item = new QStandardItem(shown(v));
            item->setTextAlignment(Qt::AlignCenter);
            items << item;
        }
        m_model->appendRow(items);
    }
    m_view->resizeColumnsToContents();
}
