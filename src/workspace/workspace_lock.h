#pragma once

#include <QString>

#include <memory>

class DataRoot;
class QLockFile;

// One writer at a time: a lock file in the workspace's folder (or beside the workspace list)
// that the window holds while a player is logged in and every changing command holds until its
// change is committed. A second writer waits briefly and is then refused with a message naming
// what is in use. A lock left by a process that died is taken over (the owner's process id is
// in the file), as is an old lock file that names no owner; a lock held for hours by a live
// window is never taken for a stale one.
class WorkspaceLock {
public:
    // How long a second writer waits before it is refused.
    static constexpr int kWaitMs = 1500;
    static inline const QString kLockFileName = QStringLiteral(".shuangqu.lock");
    static inline const QString kListLockFileName = QStringLiteral("workspace-list.lock");

    static inline const QString kTitle = QStringLiteral("用户正在使用");
    // The refusal for a workspace that another program is changing.
    static QString busyText(const QString& workspace);
    static inline const QString kListBusy = QStringLiteral("用户名列表正在被另一个程序修改，请稍后再试。");
    // The title of the box that says a list or workspace is busy, and whether a message says so.
    static inline const QString kBusyTitle = QStringLiteral("数据正在使用");
    static bool isBusyText(const QString& text);
    static QString cannotLockText(const QString& file);

    ~WorkspaceLock();
    WorkspaceLock(const WorkspaceLock&) = delete;
    WorkspaceLock& operator=(const WorkspaceLock&) = delete;

    // The lock of the workspace `name`: its folder is made when missing (as entering it would).
    // Null with `error` set when another process holds it past `waitMs` or the folder cannot
    // take the file.
    static std::unique_ptr<WorkspaceLock> forWorkspace(const DataRoot& root, const QString& name,
                                                       QString* error, int waitMs = kWaitMs);
    // The lock of the workspace list (create, rename, delete).
    static std::unique_ptr<WorkspaceLock> forList(const DataRoot& root, QString* error, int waitMs = kWaitMs);

    QString fileName() const { return m_fileName; }

private:
    WorkspaceLock(std::unique_ptr<QLockFile> file, QString fileName);
    static std::unique_ptr<WorkspaceLock> acquire(const QString& file, const QString& busy, QString* error,
                                                  int waitMs);

    std::unique_ptr<QLockFile> m_file;
    QString m_fileName;
};
