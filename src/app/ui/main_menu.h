#pragma once

#include "workspace/ui/menu_actions.h"

#include <QList>
#include <QSet>
#include <QString>

#include <functional>
#include <initializer_list>

class QAction;
class QMenu;
class QMenuBar;

// The menu bar of the main window, built from the menu table: every menu and item carries its
// given name as objectName (indexed families as "meuDanxuan(5)", "meuS(35)", ...) and is
// reached by what it does through actions().
class MainMenu {
public:
    explicit MainMenu(QMenuBar* bar);

    const MenuActions& actions() const { return m_actions; }

    // Whether the window an item opens exists; an item that is not built stays disabled.
    bool isBuilt(const QAction* item) const { return m_built.contains(item); }
    // Enables an item when `on` and it is built.
    void enable(QAction* item, bool on) const;
    // Enables a submenu's entry in its parent menu.
    static void enable(QMenu* menu, bool on);

    // The menu table's names as built: English name, given name, caption; one row per menu,
    // item or family (a family's given name shows its index as "(i)" or "i").
    struct Name {
        QString english;
        QString given;
        QString caption;
    };
    const QList<Name>& names() const { return m_names; }

private:
    struct ItemRow;
    struct FamilyRow;
    QMenu* addMenu(QMenuBar* bar, QMenu* MenuActions::*member, const char* english, const char* given,
                   const char* caption);
    QMenu* addSubmenu(QMenu* parent, QMenu* MenuActions::*member, const char* english, const char* given,
                      const char* caption);
    void addPickingMenu(QMenuBar* bar);
    void addSpinMenu(QMenuBar* bar);
    void addHistoryMenu(QMenuBar* bar);
    void addWindowsMenu(QMenuBar* bar);
    void addPlayModesMenu(QMenuBar* bar);
    void addWheelMenus(QMenu* playModes);
    void addSettingsMenu(QMenuBar* bar);
    void addToolsAndHelpMenus(QMenuBar* bar);
    QMenu* named(QMenu* m, QMenu* MenuActions::*member, const char* english, const char* given);
    void addItems(QMenu* menu, std::initializer_list<ItemRow> rows);
    QAction* addItem(QMenu* menu, const QString& name, const QString& caption, bool built);
    void addFamily(QMenu* menu, const FamilyRow& row);

    MenuActions m_actions;
    QSet<const QAction*> m_built;
    QList<Name> m_names;
};
