#include "analysis/ui/param_list_window.h"

#include "analysis/param_lists.h"
#include "analysis/ui/grid_export.h"
#include "workspace/session.h"

#include <QHeaderView>
#include <QMenuBar>
#include <QAbstractTableModel>
#include <QTableView>

namespace {

const char* objectNameOf(HistoryView v) {
    return v == HistoryView::Front ? "FrmJcsarr" : v == HistoryView::Back ? "FrmJcsarrHou" : "FrmJcsarrQuan";
}

// A stored value as the list shows it: whole numbers as they are, reals to six digits at most.
QString shown(const QVariant& v) {
    if (v.typeId() == QMetaType::Double) return QString::number(v.toDouble(), 'g', 6);
    return v.toString();
}

}  // namespace

// The rows as read, formatted only when painted: a list of every draw opens at once.
class ParamListModel : public QAbstractTableModel {
public:
    ParamListModel(QStringList heads, QObject* parent) : QAbstractTableModel(parent), m_heads(std::move(heads)) {}

    void setRows(QList<QVariantList> rows) {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
    }
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : static_cast<int>(m_rows.size()); }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : static_cast<int>(m_heads.size()); }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) return {};
        if (role == Qt::DisplayRole) return shown(m_rows[index.row()].value(index.column()));
        if (role == Qt::TextAlignmentRole) return int(Qt::AlignCenter);
        return {};
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole) return m_heads.value(section);
        return QAbstractTableModel::headerData(section, orientation, role);
    }

private:
    QStringList m_heads;
    QList<QVariantList> m_rows;
};

ParamListWindow::ParamListWindow(const AnalysisContext& context)
    : QMainWindow(context.parent), m_context(context), m_scope(context.view()) {
    setObjectName(QString::fromLatin1(objectNameOf(m_scope)));
    setWindowTitle(QStringLiteral("参数查询"));
    QStringList heads;
    for (const ListColumn& c : param_lists::columns(m_scope)) heads << c.head;
    m_model = new ParamListModel(heads, this);
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
    // Each column as wide as its head, and at least as its widest figure of the first rows.
    const QFontMetrics metrics = m_view->horizontalHeader()->fontMetrics();
    for (int c = 0; c < m_model->columnCount(); ++c) {
        int width = metrics.horizontalAdvance(heads[c]);
        for (int r = 0; r < std::min(m_model->rowCount(), 50); ++r)
            width = std::max(width, metrics.horizontalAdvance(m_model->index(r, c).data().toString()));
        m_view->setColumnWidth(c, width + 12);
    }
    resize(1200, 640);
}

void ParamListWindow::show(std::optional<int> sortColumn) {
    m_model->setRows(param_lists::rows(m_context.session.historyDb(), m_scope, sortColumn));
}
