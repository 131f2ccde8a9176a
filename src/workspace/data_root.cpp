#include "workspace/data_root.h"

#include "workspace/schema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

DataRoot::DataRoot(QString root, QString settingsDir)
    : m_root(QDir::cleanPath(std::move(root))),
      m_settingsDir(settingsDir.isEmpty() ? QDir(m_root).filePath(QStringLiteral("settings")) : settingsDir) {}

DataRoot DataRoot::fromEnvironment(const QString& overrideRoot) {
    QString home = overrideRoot.isEmpty() ? qEnvironmentVariable("SHUANGQU_HOME") : overrideRoot;
    if (!home.isEmpty()) return DataRoot(QDir(home).absolutePath());
    QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/shuangqu");
    QString config =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/shuangqu");
    return DataRoot(data, config);
}

QString DataRoot::path(const QString& relative) const { return QDir(m_root).filePath(relative); }

QString DataRoot::childFolder(const QString& name) const {
    const QString root = QDir(m_root).canonicalPath();
    if (root.isEmpty() || name.isEmpty()) return {};
    const QFileInfo info(QDir(root).filePath(name));
    const QString resolved =
        info.exists() ? info.canonicalFilePath() : QDir::cleanPath(info.absoluteFilePath());
    if (resolved == root || QFileInfo(resolved).path() != root) return {};
    return resolved;
}

QString DataRoot::makeChildFolder(const QString& name) const {
    const QString folder = childFolder(name);
    if (folder.isEmpty()) return {};
    if (!QFileInfo(folder).isDir() && !QDir(QFileInfo(folder).path()).mkdir(QFileInfo(folder).fileName()))
        return {};
    // Checked again once made: what now stands there is what the files go into.
    const QString made = childFolder(name);
    return QFileInfo(made).isDir() ? made : QString();
}

bool DataRoot::isProgramFolder(const QString& folder) const {
    const auto same = [&folder](const QString& other) {
        const QFileInfo info(other);
        const QString resolved =
            info.exists() ? info.canonicalFilePath() : QDir::cleanPath(info.absoluteFilePath());
        return resolved == folder;
    };
    return same(m_settingsDir) || same(historyTextFolder()) || same(otherHistoryTextFolder()) ||
           same(reportFolder());
}

static bool ensureTemplate(const QString& file, TemplateKind kind) {
    // A program started at the same moment may make it between the look and the making.
    return QFile::exists(file) || createTemplate(file, kind) || QFile::exists(file);
}

bool DataRoot::ensureFirstStart() const {
    QDir dir;
    if (!dir.mkpath(m_root) || !dir.mkpath(m_settingsDir)) return false;
    dir.mkpath(historyTextFolder());
    dir.mkpath(otherHistoryTextFolder());
    dir.mkpath(reportFolder());
    bool ok = ensureTemplate(historyTemplate(), TemplateKind::History) &&
              ensureTemplate(filterTemplate(), TemplateKind::FilterDb) &&
              ensureTemplate(filnumRTemplate(), TemplateKind::Empty) &&
              ensureTemplate(savedPicksTemplate(), TemplateKind::SavedPicks) &&
              ensureTemplate(gailvTemplate(), TemplateKind::Empty);
    // The real draw history, where the history file dialog opens.
    QString bundled = QDir(historyTextFolder()).filePath(QStringLiteral("大乐透历史开奖号码.txt"));
    if (!QFile::exists(bundled) && QFile::copy(QStringLiteral(":/data/dlt_history.txt"), bundled))
        QFile(bundled).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    return ok;
}

WorkspacePaths::WorkspacePaths(const DataRoot& root, const QString& name)
    : m_folder(root.path(name)), m_name(name) {}

QString WorkspacePaths::historyDb() const { return QDir(m_folder).filePath(m_name + QStringLiteral(".db")); }
QString WorkspacePaths::filterDb() const { return QDir(m_folder).filePath(QStringLiteral("filnum.db")); }
QString WorkspacePaths::filnumRDb() const { return QDir(m_folder).filePath(QStringLiteral("filnumR.db")); }
QString WorkspacePaths::savedPicksDb() const { return QDir(m_folder).filePath(QStringLiteral("numsave.db")); }
QString WorkspacePaths::gailvDb() const { return QDir(m_folder).filePath(QStringLiteral("Gailv.db")); }
