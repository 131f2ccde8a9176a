#pragma once

#include <QDialog>

#include <functional>
#include <memory>

class PickingCommands;
class QListWidget;
class QTableWidget;

// frmSltnum: the selection template. The list of the nine step kinds, the grid of the steps,
// and the buttons that add the chosen kind (asking its value), delete the current step and
// run the template on the board.
class SelectionTemplateWindow : public QDialog {
    Q_OBJECT
public:
    static inline const QString kTitle = QStringLiteral("选号模板");

    // Opens the template table first (restoring an older file from the program's copy). When
    // even that fails: the message, then `endProgram`, and no window.
    static std::unique_ptr<SelectionTemplateWindow> open(PickingCommands& commands, QWidget* parent,
                                                         const std::function<void()>& endProgram);
    static std::unique_ptr<SelectionTemplateWindow> open(PickingCommands& commands, QWidget* parent);

    QListWidget* stepKinds() const { return m_kinds; }
    QTableWidget* grid() const { return m_grid; }

    void addStep();     // Command1
    void deleteStep();  // Command2
    void runSteps();    // Command3

private:
    SelectionTemplateWindow(PickingCommands& commands, QWidget* parent);
    void reload();

    PickingCommands& m_commands;
    QListWidget* m_kinds = nullptr;
    QTableWidget* m_grid = nullptr;
};
