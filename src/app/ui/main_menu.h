#pragma once

#include <QHash>
#include <QString>

class QAction;
class QMenu;
class QMenuBar;

// The menu map of the main window. Every menu and item carries its given name as objectName;
// indexed families are named "meuDanxuan(5)", "meuS(35)" and so on.
class MainMenu {
public:
    explicit MainMenu(QMenuBar* bar);

    QAction* action(const QString& name) const { return m_actions.value(name); }
    QMenu* menu(const QString& name) const { return m_menus.value(name); }
    const QHash<QString, QAction*>& actions() const { return m_actions; }

    // Names of the items whose windows exist; every other item stays disabled.
    static bool isBuilt(const QString& name);

private:
    void addPickingMenu(QMenuBar* bar);
    void addSpinMenu(QMenuBar* bar);
    void addHistoryMenu(QMenuBar* bar);
    void addWindowsMenu(QMenuBar* bar);
    void addPlayModesMenu(QMenuBar* bar);
    void addSettingsMenu(QMenuBar* bar);
    void addToolsAndHelpMenus(QMenuBar* bar);
    QMenu* addMenu(QMenuBar* bar, const char* name, const QString& caption);
    QMenu* addSubmenu(QMenu* parent, const char* name, const QString& caption);
    QAction* addItem(QMenu* menu, const QString& name, const QString& caption);
    void addFamily(QMenu* menu, const char* name, int from, int to, const QHash<int, QString>& captions,
                   const QString& pattern);

    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_menus;
};
