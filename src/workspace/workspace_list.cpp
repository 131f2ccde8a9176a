#include "workspace/workspace_list.h"

#include "workspace/prompter.h"

#include <QDir>
#include <QFile>

namespace {
const QString kNameTitle = QStringLiteral("用户名输入");
const QString kNameTaken = QStringLiteral("此用户名已经被注册，请换用其他的名字");
const QString kPasswordTitle = QStringLiteral("用户密码设置");
const QString kNameError = QStringLiteral("用户名错误");

QString defaultName(int i) { return QStringLiteral("新用户%1").arg(i); }
}  // namespace

WorkspaceList::WorkspaceList(Settings& settings, DataRoot root) : m_settings(settings), m_root(std::move(root)) {}

void WorkspaceList::load() {
    m_names.clear();
    m_passwords.clear();
    const int n = qBound(0, m_settings.readInt(keys::Usernum), kMaxWorkspaces);
    for (int i = 1; i <= n; ++i) {
        QString name = m_settings.read(keys::UserName, {}, i);
        if (name.isEmpty()) name = defaultName(i);
        m_names << name;
        m_passwords << m_settings.read(keys::UserPassword, {}, i);
    }
}

int WorkspaceList::ftopt() const { return qMin(m_settings.readInt(keys::Ftopt), count()); }

int WorkspaceList::preselectedRow() const {
    const int k = ftopt();
    return k >= 1 ? static_cast<int>(m_names.indexOf(m_names[k - 1])) : -1;
}

bool WorkspaceList::nameTaken(const QString& name, int exceptIndex) const {
    for (int i = 1; i <= count(); ++i)
        if (i != exceptIndex && m_names[i - 1] == name) return true;
    return false;
}

void WorkspaceList::saveEntry(int index) {
    m_settings.write(keys::UserName, m_names[index - 1], {}, index);
    m_settings.write(keys::UserPassword, m_passwords[index - 1], {}, index);
}

bool WorkspaceList::makeWorkspaceFiles(const QString& name, bool copyFilnumR) const {
    // A nameless entry (a cancelled input box) gets no folder: <app>/ itself is not a workspace.
    if (name.isEmpty()) return false;
    const WorkspacePaths ws(m_root, name);
    if (!QDir().mkpath(ws.folder())) return false;
    auto copy = [](const QString& from, const QString& to) {
        QFile::remove(to);
        return QFile::copy(from, to);
    };
    bool ok = copy(m_root.historyTemplate(), ws.historyDb());
    ok = copy(m_root.filnumTemplate(), ws.filnumDb()) && ok;
    if (copyFilnumR) ok = copy(m_root.filnumRTemplate(), ws.filnumRDb()) && ok;
    ok = copy(m_root.numsaveTemplate(), ws.numsaveDb()) && ok;
    ok = copy(m_root.gailvTemplate(), ws.gailvDb()) && ok;
    return ok;
}

int WorkspaceList::create(const QString& name, const QString& password) {
    if (count() >= kMaxWorkspaces) return -1;
    m_names << name;
    m_passwords << password;
    const int index = count();
    m_settings.write(keys::Usernum, index);
    saveEntry(index);
    makeWorkspaceFiles(name, true);
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

int WorkspaceList::askNew(Prompter& prompter) {
    QString name;
    while (true) {
        name = prompter.askText(kNameTitle, QStringLiteral("请输入用户名和彩票标示(比如:张先生[北京体彩36选7])："),
                                defaultName(count() + 1));
        if (!nameTaken(name)) break;
        prompter.inform(kNameTitle, kNameTaken);
    }
    const QString password = askPasswordTwice(prompter).value_or(QString());
    return create(name, password);
}

std::optional<EnteredWorkspace> WorkspaceList::enter(int row, Prompter& prompter) {
    if (row < 0 || row >= count()) {
        prompter.inform(kNameError, QStringLiteral("请建立或选择一个用户名然后再进入。"));
        return std::nullopt;
    }
    const int k = row + 1;
    if (!m_passwords[row].isEmpty() && !prompter.login(m_passwords[row])) return std::nullopt;
    m_settings.write(keys::Ftopt, k);
    EnteredWorkspace w;
    w.index = k;
    // A nameless entry (a cancelled input box) enters under the name a reload would show.
    w.name = m_names[row].isEmpty() ? defaultName(k) : m_names[row];
    w.bitnum = m_settings.readInt(keys::Bitnum, w.name);
    w.bitnumHou = m_settings.readInt(keys::BitnumHou, w.name);
    return w;
}

void WorkspaceList::removeAt(int row) {
    const QString name = m_names[row];
    // The files go, the folder and the settings tree of the workspace stay.
    if (!name.isEmpty()) {
        QFile::remove(m_root.path(name + QStringLiteral(".db")));
        QDir folder(WorkspacePaths(m_root, name).folder());
        if (folder.exists() && folder != QDir(m_root.root())) {
            for (const QString& f : folder.entryList(QDir::Files | QDir::Hidden)) folder.remove(f);
        }
    }
    m_names.removeAt(row);
    m_passwords.removeAt(row);
    for (int i = row + 1; i <= count(); ++i) saveEntry(i);
    m_settings.write(keys::Usernum, count());
}

bool WorkspaceList::remove(int row, Prompter& prompter) {
    if (row < 0 || row >= count()) {
        prompter.inform(kNameError, QStringLiteral("请选择一个用户名然后再删除。"));
        return false;
    }
    if (!prompter.okCancel(QStringLiteral("读入历史"), QStringLiteral("确实要删除该用户吗？删除之后将不可恢复其数据！")))
        return false;
    if (!m_passwords[row].isEmpty() && !prompter.login(m_passwords[row])) {
        prompter.inform(QStringLiteral("登录"), QStringLiteral("密码有误，没有权限删除该用户"));
        return false;
    }
    removeAt(row);
    return true;
}

void WorkspaceList::renameAt(int index, const QString& newName, const QString& password) {
    makeWorkspaceFiles(newName, false);
    m_names[index - 1] = newName;
    m_passwords[index - 1] = password;
    saveEntry(index);
}

std::optional<QString> WorkspaceList::askRename(int index, const QString& current, Prompter& prompter) {
    if (index < 1 || index > count()) return std::nullopt;
    QString name;
    while (true) {
        name = prompter.askText(kNameTitle,
                                QStringLiteral("请输入用户名和彩票标示(比如:张先生[全国联网体彩大乐透])："), current);
        if (name.isEmpty()) return std::nullopt;
        if (!nameTaken(name, index)) break;
        prompter.inform(kNameTitle, kNameTaken);
    }
    const QString password = askPasswordTwice(prompter).value_or(QString());
    renameAt(index, name, password);
    return name;
}
