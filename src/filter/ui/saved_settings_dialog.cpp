#include "filter/ui/saved_settings_dialog.h"

#include "filter/templates/saved_setting_store.h"

#include <QDateTime>
#include <QListWidget>
#include <QMenu>
#include <QVBoxLayout>

SavedSettingsDialog::SavedSettingsDialog(SqliteDb& filterDb, Prompter& prompter, QWidget* parent)
    : QDialog(parent),
      m_finder(std::make_unique<saved_setting_store::Finder>(filterDb)),
      m_prompter(prompter) {
    setObjectName(QStringLiteral("frmFind"));
    setWindowTitle(saved_setting_store::kFinderCaption);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("List1"));
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    resize(340, 400);
    connect(m_list, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        m_chosen = item->text();
        accept();
    });
    connect(m_list, &QListWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        if (!m_list->currentItem()) return;
        QMenu menu(this);
        menu.addAction(saved_setting_store::kDeleteItem, this, &SavedSettingsDialog::removeCurrent);
        menu.addAction(saved_setting_store::kRenameItem, this, &SavedSettingsDialog::renameCurrent);
        menu.exec(m_list->viewport()->mapToGlobal(pos));
    });
    fill();
}

SavedSettingsDialog::~SavedSettingsDialog() = default;

void SavedSettingsDialog::fill() {
    m_list->clear();
    m_list->addItems(m_finder->names());
}

void SavedSettingsDialog::removeCurrent() {
    if (!m_list->currentItem()) return;
    m_finder->remove(m_list->currentItem()->text());
    fill();
}

void SavedSettingsDialog::renameCurrent() {
    if (!m_list->currentItem()) return;
    m_finder->rename(m_list->currentItem()->text(), m_prompter, QDateTime::currentDateTime());
    fill();
}
