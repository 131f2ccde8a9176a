#include "workspace/workspace_lock.h"

#include "workspace/data_root.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>

WorkspaceLock::WorkspaceLock(std::unique_ptr<QLockFile> file, QString fileName)
    : m_file(std::move(file)), m_fileName(std::move(fileName)) {}

WorkspaceLock::~WorkspaceLock() = default;

QString WorkspaceLock::busyText(const QString& workspace) {
    return QStringLiteral("用户“%1”的数据正在被另一个程序修改，请稍后再试。").arg(workspace);
}

bool WorkspaceLock::isBusyText(const QString& text) {
    static const QString tail = QStringLiteral("正在被另一个程序修改，请稍后再试。");
    return text == kListBusy || (text.startsWith(QStringLiteral("用户“")) && text.endsWith(tail));
}

QString WorkspaceLock::cannotLockText(const QString& file) {
    return QStringLiteral("无法建立锁文件，请检查该文件夹是否可写：") + QDir::toNativeSeparators(file);
}

namespace {

// A lock file without an owner's process id (a program killed while it wrote the file) never
// looks stale to QLockFile. Once it is older than any write of it takes, it is removed, which
// the file lock of a live owner still prevents.
constexpr qint64 kGarbledAgeMs = 2000;

bool takeOverGarbled(QLockFile& lock, const QString& file) {
    qint64 pid = 0;
    QString host, app;
    if (lock.error() != QLockFile::LockFailedError || lock.getLockInfo(&pid, &host, &app)) return false;
    const QDateTime written = QFileInfo(file).lastModified();
    if (!written.isValid() || written.msecsTo(QDateTime::currentDateTime()) < kGarbledAgeMs) return false;
    return lock.removeStaleLockFile() && lock.tryLock(0);
}

}  // namespace

std::unique_ptr<WorkspaceLock> WorkspaceLock::acquire(const QString& file, const QString& busy,
                                                      QString* error, int waitMs) {
    auto lock = std::make_unique<QLockFile>(file);
    // Age never makes a lock stale: a window keeps its lock as long as the player stays. A
    // lock whose process is gone is stale at once.
    lock->setStaleLockTime(0);
    if (lock->tryLock(waitMs) || takeOverGarbled(*lock, file))
        return std::unique_ptr<WorkspaceLock>(new WorkspaceLock(std::move(lock), file));
    if (error) *error = lock->error() == QLockFile::LockFailedError ? busy : cannotLockText(file);
    return nullptr;
}

std::unique_ptr<WorkspaceLock> WorkspaceLock::forWorkspace(const DataRoot& root, const QString& name,
                                                           QString* error, int waitMs) {
    const QString folder = name.isEmpty() ? QString() : root.makeChildFolder(name);
    if (folder.isEmpty()) {
        if (error) *error = cannotLockText(root.path(name));
        return nullptr;
    }
    return acquire(QDir(folder).filePath(kLockFileName), busyText(name), error, waitMs);
}

std::unique_ptr<WorkspaceLock> WorkspaceLock::forList(const DataRoot& root, QString* error, int waitMs) {
    if (!QDir().mkpath(root.settingsDir())) {
        if (error) *error = cannotLockText(root.settingsDir());
        return nullptr;
    }
    return acquire(QDir(root.settingsDir()).filePath(kListLockFileName), kListBusy, error, waitMs);
}
