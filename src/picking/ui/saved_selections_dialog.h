#pragma once

#include <QDialog>

class Prompter;
class QMenu;
class QTableWidget;
class SavedSelections;

// frmnmFind: the saved selections (the front picks of each) in a grid that fills the window.
// A double click chooses a row and closes; the right button offers 删除 and 改名 for the row.
// The choice is the row's number from 1, not its Idx (see SavedSelections).
class SavedSelectionsDialog : public QDialog {
    Q_OBJECT
public:
    static inline const QString kTitle = QStringLiteral("历史选号设置保存（双击指定调用该期）");

    SavedSelectionsDialog(SavedSelections& saved, Prompter& prompter, QWidget* parent = nullptr);

    // CallIdx: the chosen row from 1, 0 when none was chosen.
    int chosenRow() const { return m_chosen; }
    QTableWidget* grid() const { return m_grid; }
    QMenu* popup() const { return m_popup; }

    // Fills the grid from the table again.
    void reload();
    // mnuDel and mnuName on the current row.
    void deleteCurrent();
    void renameCurrent();

private:
    QString currentName() const;

    SavedSelections& m_saved;
    Prompter& m_prompter;
    QTableWidget* m_grid = nullptr;
    QMenu* m_popup = nullptr;
    int m_chosen = 0;
};
