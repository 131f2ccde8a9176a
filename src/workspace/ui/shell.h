#pragma once

#include <QList>
#include <QString>

class QAction;
class QLineEdit;
class QMainWindow;
class QTableView;
class Session;
struct MenuActions;

// What a subsystem's window code asks of the program's main window, without knowing it: the
// main window implements this and hands itself over, so no window includes the main window.
class Shell {
public:
    // The main window itself: the parent of dialogs and of the objects that live as long as it.
    virtual QMainWindow* mainWindow() = 0;
    virtual Session& session() = 0;
    // The menus and items of the main window.
    virtual const MenuActions& menuActions() const = 0;
    // The history grid and the entry row beneath it.
    virtual QTableView* historyGrid() const = 0;
    virtual const QList<QLineEdit*>& entryBoxes() const = 0;
    // Rebuilds the history grid after the draws changed.
    virtual void refreshHistory() = 0;

protected:
    ~Shell() = default;
};
