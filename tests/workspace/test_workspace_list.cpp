#include "support/temp_home.h"
#include "workspace/password_hash.h"
#include "workspace/scripted_prompter.h"
#include "workspace/workspace_list.h"
#include "workspace/workspace_lock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

// Creates a workspace through the prompt chain: name, then the password twice.
int createByPrompts(WorkspaceList& list, const QString& name, const QString& password = {}) {
    ScriptedPrompter p;
    p.answer(name).answer(password).answer(password);
    return list.askNew(p);
}

}  // namespace

TEST(WorkspaceList, CreateMakesFilesAndSettings) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    EXPECT_EQ(createByPrompts(list, QStringLiteral("张先生[大乐透]"), QStringLiteral("pw")), 0);
    EXPECT_EQ(home.settings.readInt(setting_keys::WorkspaceCount), 1);
    EXPECT_EQ(home.settings.read(setting_keys::UserName, {}, 1), QStringLiteral("张先生[大乐透]"));
    EXPECT_TRUE(
        password_hash::verify(home.settings.read(setting_keys::UserPassword, {}, 1), QStringLiteral("pw")));
    const WorkspacePaths ws(home.root, QStringLiteral("张先生[大乐透]"));
    for (const QString& f : {ws.historyDb(), ws.filterDb(), ws.filnumRDb(), ws.savedPicksDb(), ws.gailvDb()})
        EXPECT_TRUE(QFile::exists(f)) << f.toStdString();
}

TEST(WorkspaceList, NewProposesNextNameAndRefusesTakenOnes) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    createByPrompts(list, QStringLiteral("甲"));
    ScriptedPrompter p;
    // The taken name is refused even when typed again after a password mismatch.
    p.answer(QStringLiteral("甲")).answer(QStringLiteral("乙")).answer(QStringLiteral("a")).answer(QStringLiteral("b"));
    p.answer(QStringLiteral("c")).answer(QStringLiteral("c"));
    EXPECT_EQ(list.askNew(p), 1);
    ASSERT_GE(p.asked().size(), 2);
    EXPECT_EQ(p.asked()[0].title, QStringLiteral("用户名输入"));
    EXPECT_EQ(p.messages(), QStringList({QStringLiteral("此用户名已经被注册，请换用其他的名字"),
                                         QStringLiteral("您两次设置的密码不同，请确认后再次输入")}));
    EXPECT_EQ(list.name(1), QStringLiteral("乙"));
    EXPECT_TRUE(list.checkPassword(1, QStringLiteral("c")));
    EXPECT_FALSE(list.checkPassword(1, QStringLiteral("a")));

    // The proposal is "新用户" + (Usernum + 1): a queue left empty takes it.
    ScriptedPrompter accept;
    EXPECT_EQ(list.askNew(accept), 2);
    EXPECT_EQ(list.name(2), QStringLiteral("新用户3"));
}

TEST(WorkspaceList, CancelledNameGivesAnEmptyEntryShownAsDefaultAfterReload) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    ScriptedPrompter p;
    p.cancel().answer(QString()).answer(QString());
    EXPECT_EQ(list.askNew(p), 0);
    EXPECT_EQ(list.name(0), QString());
    // No folder is made for a nameless entry: the data root is not a workspace.
    EXPECT_FALSE(QFile::exists(home.root.path(QStringLiteral(".db"))));
    WorkspaceList reloaded(home.settings, home.root);
    reloaded.load();
    EXPECT_EQ(reloaded.name(0), QStringLiteral("新用户1"));
}

TEST(WorkspaceList, EnterWithAndWithoutPassword) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    createByPrompts(list, QStringLiteral("open"));
    createByPrompts(list, QStringLiteral("locked"), QStringLiteral("secret"));

    ScriptedPrompter none;
    auto w = list.enter(-1, none);
    EXPECT_FALSE(w);
    EXPECT_EQ(none.messages(), QStringList{QStringLiteral("请建立或选择一个用户名然后再进入。")});
    EXPECT_EQ(none.asked()[0].title, QStringLiteral("用户名错误"));

    ScriptedPrompter p;
    w = list.enter(0, p);
    ASSERT_TRUE(w);
    EXPECT_EQ(w->name, QStringLiteral("open"));
    EXPECT_EQ(w->frontSize, 35);
    EXPECT_EQ(w->backSize, 12);
    EXPECT_EQ(home.settings.readInt(setting_keys::LastWorkspace), 1);
    EXPECT_TRUE(p.asked().isEmpty());

    // A wrong password keeps the box open with its message; cancel leaves the start window.
    ScriptedPrompter wrong;
    wrong.answer(QStringLiteral("guess")).cancel();
    EXPECT_FALSE(list.enter(1, wrong));
    EXPECT_EQ(wrong.messages(), QStringList{QStringLiteral("无效的密码，请重试!")});
    EXPECT_EQ(home.settings.readInt(setting_keys::LastWorkspace), 1);

    ScriptedPrompter right;
    right.answer(QStringLiteral("guess")).answer(QStringLiteral("secret"));
    w = list.enter(1, right);
    ASSERT_TRUE(w);
    EXPECT_EQ(w->index, 2);
    EXPECT_EQ(home.settings.readInt(setting_keys::LastWorkspace), 2);
}

TEST(WorkspaceList, DeleteKeepsOrderAndPasswordsOfTheOthers) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    createByPrompts(list, QStringLiteral("a"), QStringLiteral("1"));
    createByPrompts(list, QStringLiteral("b"));
    createByPrompts(list, QStringLiteral("c"), QStringLiteral("3"));
    createByPrompts(list, QStringLiteral("d"), QStringLiteral("4"));
    home.settings.write(setting_keys::LastWorkspace, 4);

    ScriptedPrompter p;  // OK to the question; b has no password
    EXPECT_TRUE(list.remove(1, p));
    EXPECT_EQ(p.asked()[0].title, QStringLiteral("读入历史"));
    EXPECT_EQ(p.asked()[0].text, QStringLiteral("确实要删除该用户吗？删除之后将不可恢复其数据！"));

    WorkspaceList reloaded(home.settings, home.root);
    reloaded.load();
    EXPECT_EQ(reloaded.names(), QStringList({"a", "c", "d"}));
    EXPECT_TRUE(reloaded.checkPassword(0, QStringLiteral("1")));
    EXPECT_TRUE(reloaded.checkPassword(1, QStringLiteral("3")));
    EXPECT_TRUE(reloaded.checkPassword(2, QStringLiteral("4")));
    EXPECT_FALSE(reloaded.checkPassword(1, QStringLiteral("4")));
    // Ftopt (4) is above Usernum (3): the last workspace is preselected.
    EXPECT_EQ(reloaded.lastWorkspace(), 3);
    EXPECT_EQ(reloaded.preselectedRow(), 2);
    // The files are gone, the folder stays.
    const WorkspacePaths b(home.root, QStringLiteral("b"));
    EXPECT_TRUE(QDir(b.folder()).exists());
    EXPECT_FALSE(QFile::exists(b.historyDb()));
}

TEST(WorkspaceList, DeleteNeedsSelectionConfirmationAndPassword) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    createByPrompts(list, QStringLiteral("a"), QStringLiteral("1"));

    ScriptedPrompter none;
    EXPECT_FALSE(list.remove(-1, none));
    EXPECT_EQ(none.messages(), QStringList{QStringLiteral("请选择一个用户名然后再删除。")});

    ScriptedPrompter cancelled;
    cancelled.answer(false);
    EXPECT_FALSE(list.remove(0, cancelled));

    ScriptedPrompter wrong;
    wrong.answer(true).cancel();
    EXPECT_FALSE(list.remove(0, wrong));
    EXPECT_EQ(wrong.messages(), QStringList{QStringLiteral("密码有误，没有权限删除该用户")});
    EXPECT_EQ(list.count(), 1);
    EXPECT_TRUE(QFile::exists(WorkspacePaths(home.root, QStringLiteral("a")).historyDb()));
}

TEST(WorkspaceList, RenameSetsUpAFreshWorkspaceAndLeavesTheOldFiles) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    createByPrompts(list, QStringLiteral("old"));
    createByPrompts(list, QStringLiteral("other"));
    const WorkspacePaths oldWs(home.root, QStringLiteral("old"));
    QFile marker(oldWs.folder() + QStringLiteral("/keep.txt"));
    ASSERT_TRUE(marker.open(QIODevice::WriteOnly));
    marker.close();

    ScriptedPrompter p;
    p.answer(QStringLiteral("other")).answer(QStringLiteral("new")).answer(QStringLiteral("x")).answer(QStringLiteral("x"));
    auto renamed = list.askRename(1, QStringLiteral("old"), p);
    ASSERT_TRUE(renamed);
    EXPECT_EQ(*renamed, QStringLiteral("new"));
    EXPECT_EQ(p.messages(), QStringList{QStringLiteral("此用户名已经被注册，请换用其他的名字")});
    EXPECT_EQ(p.asked()[0].text, QStringLiteral("请输入用户名和彩票标示(比如:张先生[全国联网体彩大乐透])："));

    WorkspaceList reloaded(home.settings, home.root);
    reloaded.load();
    EXPECT_EQ(reloaded.names(), QStringList({"new", "other"}));
    EXPECT_TRUE(reloaded.checkPassword(0, QStringLiteral("x")));
    EXPECT_FALSE(reloaded.checkPassword(0, {}));
    const WorkspacePaths newWs(home.root, QStringLiteral("new"));
    EXPECT_TRUE(QFile::exists(newWs.historyDb()));
    EXPECT_FALSE(QFile::exists(newWs.filnumRDb()));
    EXPECT_TRUE(QFile::exists(oldWs.historyDb()));
    EXPECT_TRUE(QFile::exists(marker.fileName()));

    // An empty answer ends the rename.
    ScriptedPrompter empty;
    empty.answer(QString());
    EXPECT_FALSE(list.askRename(1, QStringLiteral("new"), empty));

    // Taking the proposed name again, or going back to the old one, keeps the files there.
    for (const QString& db : {newWs.historyDb(), oldWs.historyDb()}) {
        QFile data(db);
        ASSERT_TRUE(data.open(QIODevice::WriteOnly | QIODevice::Append));
        data.write("draws");
    }
    const auto sizes = [&] {
        return QList<qint64>{QFileInfo(newWs.historyDb()).size(), QFileInfo(oldWs.historyDb()).size()};
    };
    const QList<qint64> before = sizes();
    ScriptedPrompter same;
    ASSERT_EQ(list.askRename(1, QStringLiteral("new"), same), QStringLiteral("new"));
    ScriptedPrompter back;
    back.answer(QStringLiteral("old"));
    ASSERT_EQ(list.askRename(1, QStringLiteral("new"), back), QStringLiteral("old"));
    EXPECT_EQ(sizes(), before);
}

TEST(WorkspaceList, ChangesStartFromTheStoredListNotAnOldView) {
    TempHome home;
    WorkspaceList shown(home.settings, home.root);
    WorkspaceList other(home.settings, home.root);
    shown.load();
    other.load();
    // Another program creates while this one still shows the empty list.
    ASSERT_EQ(other.create(QStringLiteral("甲"), {}), 0);
    EXPECT_EQ(shown.create(QStringLiteral("乙"), {}), 1);
    QString error;
    EXPECT_EQ(shown.create(QStringLiteral("甲"), {}, &error), -1);
    EXPECT_EQ(error, WorkspaceList::kNameTaken);
    ASSERT_EQ(other.create(QStringLiteral("丙"), {}), 2);

    // The other program deletes 甲: row 1 of the old view (乙) is still the one deleted here.
    other.load();
    ASSERT_TRUE(other.removeAt(0));
    EXPECT_TRUE(shown.removeAt(1));
    WorkspaceList stored(home.settings, home.root);
    stored.load();
    EXPECT_EQ(stored.names(), QStringList{QStringLiteral("丙")});
    // A rename of an entry that is gone changes nothing.
    EXPECT_FALSE(other.renameAt(1, QStringLiteral("丁"), {}, &error));
    EXPECT_EQ(error, WorkspaceList::kListChanged);
    stored.load();
    EXPECT_EQ(stored.names(), QStringList{QStringLiteral("丙")});
}

TEST(WorkspaceList, ABusyListOrWorkspaceRefusesWithItsMessage) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    ASSERT_EQ(list.create(QStringLiteral("甲"), {}), 0);
    QString error;
    {
        const auto held = WorkspaceLock::forList(home.root, &error);
        ASSERT_TRUE(held);
        EXPECT_EQ(list.create(QStringLiteral("乙"), {}, &error), -1);
        EXPECT_EQ(error, WorkspaceLock::kListBusy);
    }
    {
        const auto held = WorkspaceLock::forWorkspace(home.root, QStringLiteral("甲"), &error);
        ASSERT_TRUE(held);
        EXPECT_FALSE(list.removeAt(0, &error));
        EXPECT_EQ(error, WorkspaceLock::busyText(QStringLiteral("甲")));
        EXPECT_TRUE(QFile::exists(WorkspacePaths(home.root, QStringLiteral("甲")).historyDb()));
    }
    EXPECT_TRUE(list.removeAt(0, &error)) << qPrintable(error);
    EXPECT_EQ(list.count(), 0);
}

// The window's box says the list is busy, not that the settings could not be saved.
TEST(WorkspaceList, ABusyListIsToldUnderItsOwnTitle) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    QString error;
    const auto held = WorkspaceLock::forList(home.root, &error);
    ASSERT_TRUE(held);
    ScriptedPrompter prompter;
    prompter.answer(QStringLiteral("乙")).answer(QString()).answer(QString());
    EXPECT_EQ(list.askNew(prompter), -1);
    ASSERT_FALSE(prompter.asked().isEmpty());
    EXPECT_EQ(prompter.asked().last().title, WorkspaceLock::kBusyTitle);
    EXPECT_EQ(prompter.asked().last().text, WorkspaceLock::kListBusy);
    EXPECT_TRUE(WorkspaceLock::isBusyText(WorkspaceLock::busyText(QStringLiteral("甲"))));
    EXPECT_FALSE(WorkspaceLock::isBusyText(Settings::saveFailedText(QStringLiteral("/x/LUMENQYSQ.ini"))));
}
