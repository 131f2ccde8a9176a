#pragma once

#include <QString>

// The program folder <app>: templates, workspace folders, history text folders. It is
// $SHUANGQU_HOME when set, else the per-user data folder. The settings store lives in
// <app>/settings when $SHUANGQU_HOME is set, else in the per-user config folder.
class DataRoot {
public:
    explicit DataRoot(QString root, QString settingsDir = {});
    // The root from the environment, or `overrideRoot` when not empty (the CLI's --home).
    static DataRoot fromEnvironment(const QString& overrideRoot = {});

    QString root() const { return m_root; }
    QString settingsDir() const { return m_settingsDir; }
    QString path(const QString& relative) const;

    // The folder <root>/<name> when it is a direct child of the root with both resolved
    // (symbolic links, "." and ".." followed), else empty. The folder need not exist; when it
    // does, its resolved path is the one checked and returned.
    QString childFolder(const QString& name) const;
    // Makes the folder <root>/<name> (one level, never its parents) and returns its resolved
    // path; empty when it cannot be made or is no direct child of the root.
    QString makeChildFolder(const QString& name) const;
    // The folders of the program itself that lie in the root (the settings when kept there,
    // the history text folders, the reports): no workspace may take one of them.
    bool isProgramFolder(const QString& folder) const;

    // Template files of the workspace databases.
    QString historyTemplate() const { return path(QStringLiteral("Lishihaoma.db")); }
    QString filterTemplate() const { return path(QStringLiteral("filnum.db")); }
    QString filnumRTemplate() const { return path(QStringLiteral("filnumR.db")); }
    QString savedPicksTemplate() const { return path(QStringLiteral("numsave.db")); }
    QString gailvTemplate() const { return path(QStringLiteral("Gailv.db")); }

    QString historyTextFolder() const { return path(QStringLiteral("大乐透历史号码")); }
    QString otherHistoryTextFolder() const { return path(QStringLiteral("五星历史号码")); }
    QString reportFolder() const { return path(QStringLiteral("duijiang")); }

    // Makes the folders and templates that a first start needs; leaves present ones alone.
    // Returns false when the root cannot be written.
    bool ensureFirstStart() const;

private:
    QString m_root;
    QString m_settingsDir;
};

// The files of one workspace <app>/<name>/.
class WorkspacePaths {
public:
    WorkspacePaths(const DataRoot& root, const QString& name);
    QString folder() const { return m_folder; }
    QString historyDb() const;  // <name>.db: Lsdb
    QString filterDb() const;   // Fildb
    QString filnumRDb() const;
    QString savedPicksDb() const;
    QString gailvDb() const;

private:
    QString m_folder;
    QString m_name;
};
