// The main window's other sources of the filter window: the combination template and tickets
// read from a text file, opened anew or as they were left.
#include "app/ui/filter_windows.h"
#include "app/ui/main_window.h"
#include "engine/candidate_store.h"
#include "filter/param/param_window.h"
#include "filter/ui/dialog_progress.h"
#include "filter/ui/six_filter_window.h"
#include "picking/number_board.h"
#include "generation/ticket_text.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QAction>
#include <QApplication>

namespace {

const QString kReadTitle = QStringLiteral("读取设置");
const QString kReadPrompt = QStringLiteral(
    "该功能每行读取一注，该文本文件每行从第几个字符开始读取。（如果每注前面有序号，应该避免将序号作为号码读入，"
    "如果没有序号可以从第一个字符也就是顶格读取）");

}  // namespace

void MainWindow::connectSourceMenus() {
    const MenuActions& menu = menuActions();
    connect(menu.recallCombinationTemplate, &QAction::triggered, this, [this] {
        // The template window makes the template the first time, so that adding to it works.
        if (!candidate_store::tableExists(m_session.filterDb(), schema::CandidateKind::Template))
            param_window::makeEmptyTemplate(m_session.filterDb());
        openFilter(FilterSource::CombinationTemplate);
    });
    connect(menu.readTicketText, &QAction::triggered, this, &MainWindow::readTicketText);
    connect(menu.recallTicketText, &QAction::triggered, this, [this] { openFilter(FilterSource::Imported); });

    // The six-number window: zuhef expanded from the board, or as it was left.
    const struct {
        QAction* item;
        ListCommand list;
        FilterSource instance;
    } sixLists[] = {{menu.sixFrontMultiExpansion, ListCommand::SixFrontMultiExpansion, FilterSource::SixExpansion},
                    {menu.sixFrontBankerExpansion, ListCommand::SixFrontBankerExpansion,
                     FilterSource::SixBankerExpansion}};
    for (const auto& l : sixLists) {
        const ListCommand list = l.list;
        const FilterSource instance = l.instance;
        connect(l.item, &QAction::triggered, this, [this, list, instance] {
            m_board->prepareList(list);
            renderBoard();
            openSixFilter(instance);
        });
    }
    connect(menu.recallSixFrontExpansion, &QAction::triggered, this,
            [this] { openSixFilter(FilterSource::StoredSixExpansion); });
}

SixFilterWindow* MainWindow::openSixFilter(FilterSource instance) {
    SixFilterWindow* w = openSixFilterWindow(instance, m_session, m_prompter, this);
    if (w) connect(w, &SixFilterWindow::closed, w, &QObject::deleteLater);
    return w;
}

void MainWindow::readTicketText() {
    const QString path = m_prompter.openFile(QStringLiteral("读取组号文本"), m_session.root().root(),
                                             QStringLiteral("Text(*.txt)"));
    if (path.isEmpty()) return;
    const QString answer = m_prompter.askText(kReadTitle, kReadPrompt, QStringLiteral("1"));
    if (answer.isEmpty()) return;
    bool ok = false;
    const int start = answer.trimmed().toInt(&ok);
    if (!ok || start < 1) {
        m_prompter.inform(QStringLiteral("输入错误"), QStringLiteral("请输入一个正数"), Prompter::Icon::Warning);
        return;
    }
    ticket_text::ImportResult r;
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        DialogProgress progress(QStringLiteral("正在读取组号文本..."), this);
        r = ticket_text::importFile(m_session.filterDb(), path, start,
                                    {m_session.frontSize(), m_session.backSize()}, &progress);
        QApplication::restoreOverrideCursor();
    }
    if (r.read.cancelled) return;
    if (!r.error.isEmpty()) {
        m_prompter.inform(kReadTitle, r.error, Prompter::Icon::Warning);
        return;
    }
    if (r.read.outOfRange > 0)
        m_prompter.inform(kReadTitle,
                          QStringLiteral("有%1行的号码超出前区1~%2、后区1~%3的范围，未读入。")
                              .arg(r.read.outOfRange)
                              .arg(m_session.frontSize())
                              .arg(m_session.backSize()),
                          Prompter::Icon::Warning);
    openFilter(FilterSource::Imported);
}
