#include "workspace/workspace_list.h"

#include "workspace/password_hash.h"
#include "workspace/prompter.h"
#include "workspace/workspace_lock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {
const QString kPasswordTitle = QStringLiteral("用户密码设置");
const QString kNewPrompt = QStringLiteral("请输入用户名和彩票标示(比如:张先生[北京体彩36选7])：");
const QString kRenamePrompt = QStringLiteral("请输入用户名和彩票标示(比如:张先生[全国联网体彩大乐透])：");

QString defaultName(int i) { return QStringLiteral("新用户%1").arg(i); }

bool isControl(QChar c) { return c.category() == QChar::Other_Control; }
}  // namespace

WorkspaceList::WorkspaceList(Settings& settings, DataRoot root) : m_settings(settings), m_root(std::move(root)) {}

void WorkspaceList::load() {
    m_names.clear();
    m_passwords.clear();
    const int n = qBound(0, m_settings.readInt(setting_keys::WorkspaceCount), kMaxWorkspaces);
    for (int i = 1; i <= n; ++i) {
        QString name = m_settings.read(setting_keys::UserName, {}, i);
        if (name.isEmpty()) name = defaultName(i);
        m_names << name;
        m_passwords << m_settings.read(setting_keys::UserPassword, {}, i);
    }
}

int WorkspaceList::lastWorkspace() const {
    return qMin(m_settings.readInt(setting_keys::LastWorkspace), count());
}

int WorkspaceList::preselectedRow() const {
    const int k = lastWorkspace();
    return k >= 1 ? static_cast<int>(m_names.indexOf(m_names[k - 1])) : -1;
}

bool WorkspaceList::nameTaken(const QString& name, int exceptIndex) const {
    for (int i = 1; i <= count(); ++i)
        if (i != exceptIndex && m_names[i - 1] == name) return true;
    return false;
}

std::optional<QString> WorkspaceList::nameError(const QString& name) const {
    if (name.isEmpty()) return std::nullopt;
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) || QDir::isAbsolutePath(name))
        return kNameHasSeparator;
    if (name == QLatin1String(".") || name == QLatin1String("..")) return kNameIsDots;
    if (std::any_of(name.begin(), name.end(), isControl) || !name.isValidUtf16()) return kNameHasControl;
    // A blank at either end makes two names that the list shows alike.
    if (name.front().isSpace() || name.back().isSpace()) return kNameHasOuterBlank;
    if (name.toUtf8().size() > kMaxNameBytes) return kNameTooLong;
    const QString folder = m_root.childFolder(name);
    // No place for the folder: a path that leads elsewhere, or a file standing there.
    if (folder.isEmpty() || (QFileInfo::exists(folder) && !QFileInfo(folder).isDir())) return kNoFolder;
    if (m_root.isProgramFolder(folder)) return kNameIsProgramFolder;
    return std::nullopt;
}

std::optional<QString> WorkspaceList::folderError(const QString& name) const {
    if (name.isEmpty()) return std::nullopt;
    if (m_root.makeChildFolder(name).isEmpty()) return kNoFolder;
    return std::nullopt;
}

bool WorkspaceList::saveFailed(const SettingKey& key, QString* error) const {
    if (error) *error = Settings::saveFailedText(m_settings.fileFor(key));
    return false;
}

QList<Settings::KeyValue> WorkspaceList::entryValues(int index) const {
    return {{&setting_keys::UserName, m_names[index - 1], index},
            {&setting_keys::UserPassword, m_passwords[index - 1], index}};
}

bool WorkspaceList::saveEntry(int index, QString* error) {
    if (!m_settings.writeAll(entryValues(index))) return saveFailed(setting_keys::UserName, error);
    return true;
}

bool WorkspaceList::saveEntriesAndCount(int from, QString* error, const QList<Settings::KeyValue>& more) {
    // One file, one save: a process stopped meanwhile leaves the whole list before or after.
    QList<Settings::KeyValue> values;
    for (int i = from; i <= count(); ++i) values += entryValues(i);
    values.append({&setting_keys::WorkspaceCount, QString::number(count())});
    values += more;
    if (!m_settings.writeAll(values)) return saveFailed(setting_keys::WorkspaceCount, error);
    return true;
}

bool WorkspaceList::checkPassword(int row, const QString& typed) {
    if (row < 0 || row >= count()) return false;
    const QString stored = m_passwords[row];
    if (stored.isEmpty()) return true;
    if (!password_hash::verify(stored, typed)) return false;
    if (!password_hash::isHash(stored)) {
        // A plain password of an earlier version: kept as a hash from now on. When that
        // cannot be saved, the plain entry stays and is tried again on the next use.
        m_passwords[row] = password_hash::hash(typed);
        if (!m_settings.write(setting_keys::UserPassword, m_passwords[row], {}, row + 1))
            m_passwords[row] = stored;
    }
    return true;
}

bool WorkspaceList::makeWorkspaceFiles(const QString& name, bool copyFilnumR) const {
    // A nameless entry (a cancelled input box) gets no folder: <app>/ itself is not a workspace.
    if (name.isEmpty() || nameError(name)) return false;
    if (m_root.makeChildFolder(name).isEmpty()) return false;
    const WorkspacePaths ws(m_root, name);
    // A database already there belongs to a workspace of this name (a rename to the name in
    // use, or back to an earlier one) and is kept: a template never replaces data.
    auto copy = [](const QString& from, const QString& to) {
        return QFileInfo::exists(to) || QFile::copy(from, to);
    };
    bool ok = copy(m_root.historyTemplate(), ws.historyDb());
    ok = copy(m_root.filterTemplate(), ws.filterDb()) && ok;
    if (copyFilnumR) ok = copy(m_root.filnumRTemplate(), ws.filnumRDb()) && ok;
    ok = copy(m_root.savedPicksTemplate(), ws.savedPicksDb()) && ok;
    ok = copy(m_root.gailvTemplate(), ws.gailvDb()) && ok;
    return ok;
}

bool WorkspaceList::lockAndReload(std::unique_ptr<WorkspaceLock>& lock, QString* error) {
    QString lockError;
    lock = WorkspaceLock::forList(m_root, &lockError);
    // A store whose folder takes no lock file takes no change either: the save says so.
    if (!lock && lockError == WorkspaceLock::kListBusy) {
        if (error) *error = lockError;
        return false;
    }
    // Another program may have changed the list since it was shown: changes start from the
    // stored list, when it can be read.
    const QFileInfo stored(m_settings.fileFor(setting_keys::WorkspaceCount));
    if (!stored.exists() || (stored.isFile() && stored.isReadable())) load();
    return true;
}

int WorkspaceList::create(const QString& name, const QString& password, QString* error, bool makeLast) {
    const auto fail = [error](const QString& text) {
        if (error) *error = text;
        return -1;
    };
    std::unique_ptr<WorkspaceLock> lock;
    if (!lockAndReload(lock, error)) return -1;
    if (count() >= kMaxWorkspaces) return fail(kListFull);
    if (!name.isEmpty() && nameTaken(name)) return fail(kNameTaken);
    if (const auto refusal = nameError(name)) return fail(*refusal);
    if (const auto refusal = folderError(name)) return fail(*refusal);
    m_names << name;
    m_passwords << password_hash::hash(password);
    const int index = count();
    // The files before the entry: a process stopped between leaves a folder that no entry
    // names, never an entry without its files. A failing copy is repaired on entering.
    makeWorkspaceFiles(name, true);
    QList<Settings::KeyValue> last;
    if (makeLast) last.append({&setting_keys::LastWorkspace, QString::number(index)});
    if (!saveEntriesAndCount(index, error, last)) {
        m_names.removeLast();
        m_passwords.removeLast();
        return -1;
    }
    return index - 1;
}

std::optional<QString> WorkspaceList::askPasswordTwice(Prompter& prompter) const {
    while (true) {
        auto first = prompter.askTextOrCancel(kPasswordTitle, QStringLiteral("请输入用户密码(如果不需要密码则不输入)："));
        auto second =
            prompter.askTextOrCancel(kPasswordTitle, QStringLiteral("请再次输入用户密码(如果不需要密码则不输入)："));
        const QString a = first.value_or(QString()), b = second.value_or(QString());
        if (a == b) return a;
        prompter.inform(kPasswordTitle, QStringLiteral("您两次设置的密码不同，请确认后再次输入"));
    }
}

std::optional<QString> WorkspaceList::askName(Prompter& prompter, const QString& prompt,
                                              const QString& proposal, int exceptIndex, bool emptyEnds) {
    while (true) {
        const QString name = prompter.askText(kNameTitle, prompt, proposal);
        if (emptyEnds && name.isEmpty()) return std::nullopt;
        std::optional<QString> refusal = nameError(name);
        if (!refusal && nameTaken(name, exceptIndex)) refusal = kNameTaken;
        if (!refusal) refusal = folderError(name);
        if (!refusal) return name;
        prompter.inform(kNameTitle, *refusal);
    }
}

namespace {
// A change of the list that failed: another program holding the list, or a store that would
// not save.
void tellFailure(Prompter& prompter, const QString& error) {
    prompter.inform(WorkspaceLock::isBusyText(error) ? WorkspaceLock::kBusyTitle : Settings::kSaveFailedTitle,
                    error, Prompter::Icon::Warning);
}
}  // namespace

int WorkspaceList::askNew(Prompter& prompter) {
    if (count() >= kMaxWorkspaces) {
        prompter.inform(kNameTitle, kListFull);
        return -1;
    }
    const QString name =
        askName(prompter, kNewPrompt, defaultName(count() + 1), 0, false).value_or(QString());
    const QString password = askPasswordTwice(prompter).value_or(QString());
    QString error;
    const int row = create(name, password, &error);
    if (row < 0) tellFailure(prompter, error);
    return row;
}

std::optional<EnteredWorkspace> WorkspaceList::enter(int row, Prompter& prompter) {
    if (row < 0 || row >= count()) {
        prompter.inform(kNameErrorTitle, QStringLiteral("请建立或选择一个用户名然后再进入。"));
        return std::nullopt;
    }
    const int k = row + 1;
    // A nameless entry (a cancelled input box) enters under the name a reload would show.
    const QString name = m_names[row].isEmpty() ? defaultName(k) : m_names[row];
    // A name stored by an earlier version may lead outside the program folder.
    if (m_root.childFolder(name).isEmpty()) {
        prompter.inform(kNameErrorTitle, kUnsafeStoredName, Prompter::Icon::Critical);
        return std::nullopt;
    }
    if (hasPassword(row) &&
        !prompter.login([this, row](const QString& typed) { return checkPassword(row, typed); }))
        return std::nullopt;
    m_settings.write(setting_keys::LastWorkspace, k);
    EnteredWorkspace w;
    w.index = k;
    w.name = name;
    w.frontSize = m_settings.readInt(setting_keys::FrontSize, w.name);
    w.backSize = m_settings.readInt(setting_keys::BackSize, w.name);
    return w;
}

void WorkspaceList::deleteFiles(const QString& name) const {
    // Only the files of a folder that is a direct child of the data root and no folder of the
    // program itself; the folder stays.
    const QString folder = name.isEmpty() ? QString() : m_root.childFolder(name);
    if (folder.isEmpty() || m_root.isProgramFolder(folder) || !QFileInfo(folder).isDir()) return;
    QDir dir(folder);
    // The lock file goes with the lock, when the deleting program lets it go.
    for (const QString& f : dir.entryList(QDir::Files | QDir::Hidden | QDir::System))
        if (f != WorkspaceLock::kLockFileName) dir.remove(f);
}

bool WorkspaceList::removeAt(int row, QString* error) {
    if (row < 0 || row >= count()) return false;
    const QString name = m_names[row];
    std::unique_ptr<WorkspaceLock> listLock;
    if (!lockAndReload(listLock, error)) return false;
    // The entry may have moved or gone meanwhile: the one of that name is deleted, never another.
    row = static_cast<int>(m_names.indexOf(name));
    if (row < 0) {
        if (error) *error = kListChanged;
        return false;
    }
    // Nobody may be writing into the files that go.
    std::unique_ptr<WorkspaceLock> workspaceLock;
    if (const QString folder = m_root.childFolder(name); !folder.isEmpty() && QFileInfo(folder).isDir()) {
        workspaceLock = WorkspaceLock::forWorkspace(m_root, name, error);
        if (!workspaceLock) return false;
    }
    const QString password = m_passwords[row];
    m_names.removeAt(row);
    m_passwords.removeAt(row);
    if (!saveEntriesAndCount(row + 1, error)) {
        m_names.insert(row, name);
        m_passwords.insert(row, password);
        return false;
    }
    deleteFiles(name);
    return true;
}

bool WorkspaceList::remove(int row, Prompter& prompter) {
    if (row < 0 || row >= count()) {
        prompter.inform(kNameErrorTitle, QStringLiteral("请选择一个用户名然后再删除。"));
        return false;
    }
    if (!prompter.okCancel(QStringLiteral("读入历史"), QStringLiteral("确实要删除该用户吗？删除之后将不可恢复其数据！")))
        return false;
    if (hasPassword(row) &&
        !prompter.login([this, row](const QString& typed) { return checkPassword(row, typed); })) {
        prompter.inform(QStringLiteral("登录"), QStringLiteral("密码有误，没有权限删除该用户"));
        return false;
    }
    QString error;
    if (removeAt(row, &error)) return true;
    tellFailure(prompter, error);
    return false;
}

bool WorkspaceList::renameAt(int index, const QString& newName, const QString& password, QString* error) {
    const auto fail = [error](const QString& text) {
        if (error) *error = text;
        return false;
    };
    if (index < 1 || index > count()) return false;
    if (const auto refusal = nameError(newName)) return fail(*refusal);
    const QString current = m_names[index - 1];
    std::unique_ptr<WorkspaceLock> lock;
    if (!lockAndReload(lock, error)) return false;
    index = static_cast<int>(m_names.indexOf(current)) + 1;
    if (index < 1) return fail(kListChanged);
    if (nameTaken(newName, index)) return fail(kNameTaken);
    if (const auto refusal = folderError(newName)) return fail(*refusal);
    const QString oldName = m_names[index - 1];
    const QString oldPassword = m_passwords[index - 1];
    // As at creation, the files first; a failing copy is repaired when the workspace is entered.
    makeWorkspaceFiles(newName, false);
    m_names[index - 1] = newName;
    m_passwords[index - 1] = password_hash::hash(password);
    if (!saveEntry(index, error)) {
        m_names[index - 1] = oldName;
        m_passwords[index - 1] = oldPassword;
        return false;
    }
    return true;
}

std::optional<QString> WorkspaceList::askRename(int index, const QString& current, Prompter& prompter) {
    if (index < 1 || index > count()) return std::nullopt;
    const std::optional<QString> name = askName(prompter, kRenamePrompt, current, index, true);
    if (!name) return std::nullopt;
    const QString password = askPasswordTwice(prompter).value_or(QString());
    QString error;
    if (renameAt(index, *name, password, &error)) return name;
    tellFailure(prompter, error);
    return std::nullopt;
}
