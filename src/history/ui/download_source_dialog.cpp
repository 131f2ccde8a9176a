#include "history/ui/download_source_dialog.h"

#include "history/history_download.h"

#include <QListWidget>
#include <QVBoxLayout>

DownloadSourceDialog::DownloadSourceDialog(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmLstUrl"));
    setWindowTitle(QStringLiteral("历史号码系统文件列表(双击选中)"));
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("List1"));
    m_list->addItems(HistoryDownload::downloadableGames());
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    resize(300, 420);
    connect(m_list, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        m_chosen = item->text();
        accept();
    });
}

QString DownloadSourceDialog::choose(QWidget* parent) {
    DownloadSourceDialog dlg(parent);
    dlg.exec();
    return dlg.chosen();
}
