#pragma once

#include "history/history_result.h"

#include <QObject>

#include <functional>

class Prompter;
class Shell;
class QLineEdit;
class QModelIndex;
class QTableView;
struct HistoryProgress;

// The history commands of the main window: the imports, the history text, emptying the list,
// deleting the last draw, the downloads, typing a draw into MaskEdBox1(1..7) and editing a
// cell of MSFlexGrid1 through Text1.
class HistoryCommands : public QObject {
    Q_OBJECT
public:
    // `chooseGame` stands for frmLstUrl (tests give their own).
    HistoryCommands(Shell& shell, Prompter& prompter, std::function<QString()> chooseGame = {});

    void wholeImport();     // mnuRed, cmdRead
    void appendImport();    // mnuRead, Command4
    void editText();        // mnuEdit
    void clearList();       // meuCln
    void deleteLast();      // mnuDelast, Command44
    void downloadText();    // mnuNew, Command3
    void downloadDatabase();  // mnuNewol, Command5
    void focusEntry();      // mnuLsApp
    void discardEntry();    // 放弃输入

    // Text1 over the grid: opens on a digit key or Enter over an editable cell.
    QLineEdit* cellEditor() const { return m_cellEditor; }
    void showCellEditor(const QModelIndex& cell, const QString& firstKey = {});

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void apply(const HistoryActionResult& result);
    HistoryActionResult withProgress(const QString& label,
                                     const std::function<HistoryActionResult(const HistoryProgress*)>& work);
    void submitEntry();  // EntryRow: box 7 changed
    void commitCellEdit(int key);

    Shell& m_shell;
    Prompter& m_prompter;
    std::function<QString()> m_chooseGame;
    QList<QLineEdit*> m_boxes;
    QTableView* m_grid;
    QLineEdit* m_cellEditor;
    int m_editRow = 0;
    int m_editColumn = 0;
    bool m_resettingEntry = false;
};
