#include "history/ui/frm_lst_url.h"

#include "history/history_download.h"

#include <QListWidget>
#include <QVBoxLayout>

FrmLstUrl::FrmLstUrl(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmLstUrl"));
    setWindowTitle(QStringLiteral("历史号码系统文件列表(双击选中)"));
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("List1"));
    m_list->addItems(HistoryDownload::lstUrlGames());
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    resize(300, 420);
    connect(m_list, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        m_chosen = item->text();
        accept();
    });
}

QString FrmLstUrl::choose(QWidget* parent) {
    FrmLstUrl dlg(parent);
    dlg.exec();
    return dlg.chosen();
}
