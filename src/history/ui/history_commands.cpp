#include "history/ui/history_commands.h"

#include "history/cell_edit.h"
#include "history/draw_entry.h"
#include "history/history_actions.h"
#include "history/history_download.h"
#include "history/history_import.h"
#include "history/progress.h"
#include "history/ui/download_source_dialog.h"
#include "history/ui/entry_row.h"
#include "workspace/session.h"
#include "workspace/ui/menu_actions.h"
#include "workspace/ui/shell.h"
#include "workspace/ui/work_progress.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTableView>
#include <QUrl>

HistoryCommands::HistoryCommands(Shell& shell, Prompter& prompter, std::function<QString()> chooseGame)
    : QObject(shell.mainWindow()),
      m_shell(shell),
      m_prompter(prompter),
      m_chooseGame(chooseGame ? std::move(chooseGame)
                              : [&shell] { return DownloadSourceDialog::choose(shell.mainWindow()); }),
      m_boxes(shell.entryBoxes()),
      m_grid(shell.historyGrid()) {
    const MenuActions& menu = shell.menuActions();
    const struct {
        QAction* item;
        void (HistoryCommands::*run)();
    } commands[] = {{menu.importWholeHistory, &HistoryCommands::wholeImport},
                    {menu.importNewDraws, &HistoryCommands::appendImport},
                    {menu.editHistoryText, &HistoryCommands::editText},
                    {menu.clearHistory, &HistoryCommands::clearList},
                    {menu.deleteLastDraw, &HistoryCommands::deleteLast},
                    {menu.downloadHistoryText, &HistoryCommands::downloadText},
                    {menu.updateHistoryOnline, &HistoryCommands::downloadDatabase},
                    {menu.typeNewestDraw, &HistoryCommands::focusEntry}};
    for (const auto& c : commands) connect(c.item, &QAction::triggered, this, c.run);
    auto* discard = shell.mainWindow()->findChild<QPushButton*>(QStringLiteral("discardEntry"));
    connect(new EntryRow(m_boxes, discard, this), &EntryRow::checkRequested, this, &HistoryCommands::submitEntry);
    if (discard) connect(discard, &QPushButton::clicked, this, &HistoryCommands::discardEntry);

    m_cellEditor = new QLineEdit(m_grid->viewport());
    m_cellEditor->setObjectName(QStringLiteral("Text1"));
    m_cellEditor->hide();
    m_cellEditor->installEventFilter(this);
    m_grid->installEventFilter(this);
    connect(m_grid, &QTableView::doubleClicked, this,
            [this](const QModelIndex& cell) { showCellEditor(cell); });
}

void HistoryCommands::apply(const HistoryActionResult& result) {
    switch (result.grid) {
        case GridAction::None: break;
        case GridAction::AppendRow:
        case GridAction::Rebuild:
        case GridAction::Clear:
            m_shell.refreshHistory();
            break;
    }
}

HistoryActionResult HistoryCommands::withProgress(
    const QString& label, const std::function<HistoryActionResult(const HistoryProgress*)>& work) {
    WorkProgress dialog(label, m_shell.mainWindow());
    HistoryProgress progress;
    progress.report = [&dialog](int done, int total) {
        dialog.report(static_cast<uint64_t>(qMax(done, 0)), static_cast<uint64_t>(qMax(total, 1)));
    };
    progress.cancelled = [&dialog] { return dialog.cancelled(); };
    QApplication::setOverrideCursor(Qt::WaitCursor);
    HistoryActionResult result = work(&progress);
    QApplication::restoreOverrideCursor();
    return result;
}

void HistoryCommands::wholeImport() {
    HistoryImport import(m_shell.session(), m_prompter);
    apply(withProgress(QStringLiteral("正在读入历史号码..."), [&import](const HistoryProgress* p) {
        return import.run(HistoryImport::Mode::Whole, p);
    }));
}

void HistoryCommands::appendImport() {
    HistoryImport import(m_shell.session(), m_prompter);
    apply(withProgress(QStringLiteral("正在追加历史号码..."), [&import](const HistoryProgress* p) {
        return import.run(HistoryImport::Mode::Append, p);
    }));
}

void HistoryCommands::editText() {
    const HistoryActionResult r = history_actions::editText(m_shell.session(), m_prompter);
    if (r.done() && !r.path.isEmpty()) QDesktopServices::openUrl(QUrl::fromLocalFile(r.path));
    apply(r);
}

void HistoryCommands::clearList() { apply(history_actions::clearList(m_shell.session(), m_prompter)); }

void HistoryCommands::deleteLast() { apply(history_actions::deleteLast(m_shell.session(), m_prompter)); }

void HistoryCommands::downloadText() {
    HistoryDownload download(m_shell.session(), m_prompter);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    apply(download.downloadText(m_chooseGame));
    QApplication::restoreOverrideCursor();
}

void HistoryCommands::downloadDatabase() {
    HistoryDownload download(m_shell.session(), m_prompter);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    apply(download.downloadDatabase());
    QApplication::restoreOverrideCursor();
}

void HistoryCommands::focusEntry() {
    if (!m_boxes.isEmpty()) m_boxes.first()->setFocus();
}

void HistoryCommands::discardEntry() {
    m_resettingEntry = true;
    for (QLineEdit* box : m_boxes) box->clear();
    m_resettingEntry = false;
    focusEntry();
}

void HistoryCommands::submitEntry() {
    if (m_resettingEntry) return;
    DrawEntry::Boxes boxes;
    for (int i = 0; i < DrawEntry::kBoxes; ++i) boxes[static_cast<size_t>(i)] = m_boxes[i]->displayText();
    const HistoryActionResult r = DrawEntry(m_shell.session(), m_prompter).submit(boxes);
    if (!r.done()) return;
    apply(r);
    discardEntry();
}

void HistoryCommands::showCellEditor(const QModelIndex& cell, const QString& firstKey) {
    if (!cell.isValid()) return;
    const int row = cell.row() + 1;  // grid rows count the header row
    if (!CellEdit(m_shell.session(), m_prompter).isEditable(row, cell.column())) return;
    m_editRow = row;
    m_editColumn = cell.column();
    m_cellEditor->setGeometry(m_grid->visualRect(cell));
    m_cellEditor->setText(firstKey.isEmpty() ? cell.data().toString() : firstKey);
    m_cellEditor->show();
    m_cellEditor->setFocus();
    if (firstKey.isEmpty()) m_cellEditor->selectAll();
}

void HistoryCommands::commitCellEdit(int key) {
    const auto k = static_cast<CellEdit::Key>(key);
    const CellEdit::Commit c =
        CellEdit(m_shell.session(), m_prompter).commit(m_editRow, m_editColumn, m_cellEditor->text(), k);
    m_cellEditor->hide();
    m_grid->setFocus();
    apply(c.result);
    const QModelIndex next = m_grid->model()->index(c.nextRow - 1, c.nextColumn);
    if (next.isValid()) m_grid->setCurrentIndex(next);
}

bool HistoryCommands::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    if (watched == m_cellEditor) {
        switch (key->key()) {
            case Qt::Key_Escape:
                m_cellEditor->hide();
                m_grid->setFocus();
                return true;
            case Qt::Key_Return:
            case Qt::Key_Enter:
                commitCellEdit(static_cast<int>(CellEdit::Key::Enter));
                return true;
            case Qt::Key_Tab:
                commitCellEdit(static_cast<int>(CellEdit::Key::Tab));
                return true;
            case Qt::Key_Up:
                commitCellEdit(static_cast<int>(CellEdit::Key::Up));
                return true;
            case Qt::Key_Down:
                commitCellEdit(static_cast<int>(CellEdit::Key::Down));
                return true;
            default: return false;
        }
    }
    if (watched == m_grid) {
        const QString text = key->text();
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            showCellEditor(m_grid->currentIndex());
            return true;
        }
        if (text.size() == 1 && CellEdit::acceptsKey(text[0])) {
            showCellEditor(m_grid->currentIndex(), text);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
