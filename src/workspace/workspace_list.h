#pragma once

#include "workspace/data_root.h"
#include "workspace/settings.h"

#include <QList>
#include <QString>

#include <optional>

#include <QMetaType>

class Prompter;

// What entering a workspace hands to the main window.
struct EnteredWorkspace {
    int index = 0;  // 1-based index in the list (Ftopt)
    QString name;   // Curuser
    int bitnum = 35;
    int bitnumHou = 12;
};

// The workspace list of the start window, Usernames/Userpass, kept in the settings under
// LUMENQYSQ. Rows are 0-based list positions; workspace indices are row + 1.
class WorkspaceList {
public:
    static constexpr int kMaxWorkspaces = 1023;

    WorkspaceList(Settings& settings, DataRoot root);

    // Reads Usernum and every name and password; empty stored names read as "新用户" + i.
    void load();
    int count() const { return static_cast<int>(m_names.size()); }
    QString name(int row) const { return m_names.value(row); }
    QString password(int row) const { return m_passwords.value(row); }
    const QStringList& names() const { return m_names; }
    // Ftopt clamped down to Usernum.
    int ftopt() const;
    // The row whose name is that of workspace Ftopt, or -1.
    int preselectedRow() const;

    // The prompt chain of 新用户. Returns the new row, or -1 when the list is full.
    int askNew(Prompter& prompter);
    // 进入系统 on a row (-1: no selection). Empty when refused.
    std::optional<EnteredWorkspace> enter(int row, Prompter& prompter);
    // 删除用户 on a row (-1: no selection). True when deleted.
    bool remove(int row, Prompter& prompter);
    // 用户名设置 of the main window for the workspace at 1-based `index`: a fresh workspace
    // under the new name; the old files stay. Returns the new name, or empty when cancelled.
    std::optional<QString> askRename(int index, const QString& current, Prompter& prompter);

    // The same without prompts (the command line).
    int create(const QString& name, const QString& password);
    void removeAt(int row);
    void renameAt(int index, const QString& newName, const QString& password);
    bool nameTaken(const QString& name, int exceptIndex = 0) const;

    // Makes <app>/<name>/ and copies the templates in; copyFilnumR only at creation.
    bool makeWorkspaceFiles(const QString& name, bool copyFilnumR) const;

private:
    void saveEntry(int index);
    std::optional<QString> askPasswordTwice(Prompter& prompter) const;

    Settings& m_settings;
    DataRoot m_root;
    QStringList m_names;      // Usernames[1..Usernum] at rows 0..
    QStringList m_passwords;  // Userpass
};

Q_DECLARE_METATYPE(EnteredWorkspace)
