#include "picking/ui/saved_selections_dialog.h"

#include "picking/saved_selections.h"
#include "workspace/prompter.h"

#include <QAction>
#include <algorithm>
#include <QDateTime>
#include <QHeaderView>
#include <QMenu>
#include <QTableWidget>
#include <QVBoxLayout>

SavedSelectionsDialog::SavedSelectionsDialog(SavedSelections& saved, Prompter& prompter, QWidget* parent)
    : QDialog(parent), m_saved(saved), m_prompter(prompter) {
    setObjectName(QStringLiteral("frmnmFind"));
    setWindowTitle(kTitle);
    m_grid = new QTableWidget(this);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->verticalHeader()->setDefaultSectionSize(20);
    m_grid->setContextMenuPolicy(Qt::CustomContextMenu);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_grid);

    m_popup = new QMenu(this);
    m_popup->setObjectName(QStringLiteral("Mnu"));
    QAction* del = m_popup->addAction(QStringLiteral("删除(&D)"));
    del->setObjectName(QStringLiteral("mnuDel"));
    QAction* rename = m_popup->addAction(QStringLiteral("改名(&N)"));
    rename->setObjectName(QStringLiteral("mnuName"));
    connect(del, &QAction::triggered, this, &SavedSelectionsDialog::deleteCurrent);
    connect(rename, &QAction::triggered, this, &SavedSelectionsDialog::renameCurrent);
    connect(m_grid, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        const int row = m_grid->rowAt(at.y());
        if (row >= 0) m_grid->setCurrentCell(row, 0);
        m_popup->popup(m_grid->viewport()->mapToGlobal(at));
    });
    connect(m_grid, &QTableWidget::cellDoubleClicked, this, [this](int row, int) {
        m_chosen = row + 1;
        accept();
    });
    resize(640, 360);
    reload();
}

void SavedSelectionsDialog::reload() {
    const QList<SavedSelectionRow> rows = m_saved.list();
    int widest = 1;
    for (const SavedSelectionRow& r : rows) widest = std::max(widest, static_cast<int>(r.numbers.size()));
    QStringList heads{QStringLiteral("选号保存名"), QStringLiteral("选号个(不含胆)")};
    for (int k = 1; k <= widest; ++k) heads << QStringLiteral("选%1码").arg(k);
    m_grid->clear();
    m_grid->setColumnCount(static_cast<int>(heads.size()));
    m_grid->setHorizontalHeaderLabels(heads);
    m_grid->setRowCount(static_cast<int>(rows.size()));
    for (int i = 0; i < rows.size(); ++i) {
        const SavedSelectionRow& r = rows[i];
        m_grid->setItem(i, 0, new QTableWidgetItem(r.name));
        m_grid->setItem(i, 1, new QTableWidgetItem(QString::number(r.count)));
        for (size_t k = 0; k < r.numbers.size(); ++k)
            m_grid->setItem(i, static_cast<int>(k) + 2,
                            new QTableWidgetItem(QStringLiteral("%1").arg(r.numbers[k], 2, 10, QLatin1Char('0'))));
    }
    m_grid->resizeColumnsToContents();
    for (int c = 2; c < m_grid->columnCount(); ++c) m_grid->setColumnWidth(c, std::max(m_grid->columnWidth(c), 44));
}

QString SavedSelectionsDialog::currentName() const {
    const QTableWidgetItem* item = m_grid->item(m_grid->currentRow(), 0);
    return item ? item->text() : QString();
}

void SavedSelectionsDialog::deleteCurrent() {
    if (m_grid->currentRow() < 0) return;
    m_saved.remove(currentName());
    reload();
}

void SavedSelectionsDialog::renameCurrent() {
    if (m_grid->currentRow() < 0) return;
    const std::optional<QString> name =
        m_prompter.askTextOrCancel(QStringLiteral("选号名字修改"), QStringLiteral("请输入本次修改的选号名字："),
                                   SavedSelections::renameProposal(QDateTime::currentDateTime()));
    if (!name) return;
    m_saved.rename(currentName(), *name);
    reload();
}
