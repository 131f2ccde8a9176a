// Workspace names that would leave the data root, or that the file system cannot hold, are
// refused by every path that makes a name; deleting never reaches outside the data root.
#include "support/qt_printers.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString kGoodName = QStringLiteral("张先生[北京体彩36选7]");

struct BadName {
    QString name;
    QString refusal;
};

// The data root <outer>/app with a canary file and a folder beside it, in its parent.
class WorkspaceNames : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(root.ensureFirstStart());
        QFile canary(outer.filePath(QStringLiteral("canary.txt")));
        ASSERT_TRUE(canary.open(QIODevice::WriteOnly));
        canary.write("keep me");
        canary.close();
        ASSERT_TRUE(QDir().mkpath(outer.filePath(QStringLiteral("outside"))));
        QFile inside(outer.filePath(QStringLiteral("outside/x.db")));
        ASSERT_TRUE(inside.open(QIODevice::WriteOnly));
        inside.close();
        before = outsideListing();
    }

    // Every path under the parent of the data root, the data root's own tree left out.
    QStringList outsideListing() const {
        QStringList out;
        QDirIterator it(outer.path(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            if (path != root.root() && !path.startsWith(root.root() + QLatin1Char('/'))) out << path;
        }
        out.sort();
        return out;
    }

    // Names with what each is refused with; the absolute one points into the parent folder,
    // where the listing would see it.
    std::vector<BadName> badNames() const {
        return {{QStringLiteral("a/b"), WorkspaceList::kNameHasSeparator},
                {QStringLiteral("../x"), WorkspaceList::kNameHasSeparator},
                {QStringLiteral("a\\b"), WorkspaceList::kNameHasSeparator},
                {QStringLiteral(".."), WorkspaceList::kNameIsDots},
                {QStringLiteral("."), WorkspaceList::kNameIsDots},
                {QStringLiteral("/tmp/x"), WorkspaceList::kNameHasSeparator},
                {outer.filePath(QStringLiteral("abs")), WorkspaceList::kNameHasSeparator},
                {QStringLiteral("张三\n李四"), WorkspaceList::kNameHasControl},
                {QStringLiteral("tab\there"), WorkspaceList::kNameHasControl},
                {QStringLiteral(" 张三"), WorkspaceList::kNameHasOuterBlank},
                {QStringLiteral("张三 "), WorkspaceList::kNameHasOuterBlank},
                {QString(300, QLatin1Char('a')), WorkspaceList::kNameTooLong},
                {QStringLiteral("settings"), WorkspaceList::kNameIsProgramFolder},
                {QStringLiteral("大乐透历史号码"), WorkspaceList::kNameIsProgramFolder},
                // A template file stands where the folder would be: the file system refuses.
                {QStringLiteral("Lishihaoma.db"), WorkspaceList::kNoFolder}};
    }

    void plantEntry(int index, const QString& name) {
        settings.write(setting_keys::UserName, name, {}, index);
        settings.write(setting_keys::WorkspaceCount, index);
    }

    QTemporaryDir outer;
    DataRoot root{outer.filePath(QStringLiteral("app"))};
    Settings settings{root.settingsDir()};
    QStringList before;
    const bool tmpXExisted = QFile::exists(QStringLiteral("/tmp/x"));
};

TEST_F(WorkspaceNames, PromptChainRefusesEachBadNameAndAsksAgain) {
    WorkspaceList list(settings, root);
    list.load();
    for (const BadName& bad : badNames()) {
        ScriptedPrompter p;
        const QString good = QStringLiteral("好%1").arg(list.count());
        p.answer(bad.name).answer(good).answer(QString()).answer(QString());
        const int row = list.askNew(p);
        ASSERT_GE(row, 0) << bad.name.toStdString();
        EXPECT_EQ(list.name(row), good);
        EXPECT_EQ(p.messages(), QStringList{bad.refusal}) << bad.name.toStdString();
        ASSERT_GE(p.asked().size(), 3);
        EXPECT_EQ(p.asked()[1].title, WorkspaceList::kNameTitle);
        // Asked again from the first step, as for a taken name.
        EXPECT_EQ(p.asked()[2].kind, QStringLiteral("askText"));
        EXPECT_EQ(p.asked()[2].title, WorkspaceList::kNameTitle);
    }
    EXPECT_EQ(outsideListing(), before);
    EXPECT_EQ(QFile::exists(QStringLiteral("/tmp/x")), tmpXExisted);

    WorkspaceList reloaded(settings, root);
    reloaded.load();
    EXPECT_EQ(reloaded.names(), list.names());
}

TEST_F(WorkspaceNames, RenamePromptsAndFunctionsWithoutPromptsRefuseThem) {
    WorkspaceList list(settings, root);
    list.load();
    ASSERT_EQ(list.create(QStringLiteral("old"), {}), 0);
    for (const BadName& bad : badNames()) {
        QString error;
        EXPECT_EQ(list.create(bad.name, QStringLiteral("pw"), &error), -1) << bad.name.toStdString();
        EXPECT_EQ(error, bad.refusal);
        error.clear();
        EXPECT_FALSE(list.renameAt(1, bad.name, {}, &error)) << bad.name.toStdString();
        EXPECT_EQ(error, bad.refusal);
        EXPECT_EQ(list.nameError(bad.name), bad.refusal);

        ScriptedPrompter p;
        p.answer(bad.name).answer(QString());  // the empty answer ends the rename
        EXPECT_FALSE(list.askRename(1, QStringLiteral("old"), p));
        EXPECT_EQ(p.messages(), QStringList{bad.refusal});
    }
    EXPECT_EQ(list.names(), QStringList{QStringLiteral("old")});
    EXPECT_EQ(settings.readInt(setting_keys::WorkspaceCount), 1);
    EXPECT_EQ(settings.read(setting_keys::UserName, {}, 1), QStringLiteral("old"));
    EXPECT_EQ(outsideListing(), before);
    EXPECT_EQ(QFile::exists(QStringLiteral("/tmp/x")), tmpXExisted);

    // A good name passes every path.
    EXPECT_EQ(list.nameError(kGoodName), std::nullopt);
    ScriptedPrompter p;
    p.answer(QStringLiteral("a/b")).answer(kGoodName).answer(QString()).answer(QString());
    EXPECT_EQ(list.askRename(1, QStringLiteral("old"), p), kGoodName);
    EXPECT_TRUE(QFile::exists(WorkspacePaths(root, kGoodName).historyDb()));
}

TEST_F(WorkspaceNames, LengthCountsTheBytesOfTheLongestFileName) {
    WorkspaceList list(settings, root);
    list.load();
    // Three bytes a character: 72 fit, 73 do not.
    const QString fits = QString(WorkspaceList::kMaxNameBytes / 3, QChar(0x5F20));
    const QString tooLong = fits + QChar(0x5F20);
    ASSERT_LE(fits.toUtf8().size(), WorkspaceList::kMaxNameBytes);
    ASSERT_GT(tooLong.toUtf8().size(), WorkspaceList::kMaxNameBytes);
    EXPECT_EQ(list.nameError(tooLong), WorkspaceList::kNameTooLong);
    const QString longest(WorkspaceList::kMaxNameBytes, QLatin1Char('a'));
    for (const QString& name : {fits, longest}) {
        QString error;
        const int row = list.create(name, {}, &error);
        ASSERT_GE(row, 0) << error.toStdString();
        const WorkspacePaths ws(root, name);
        EXPECT_TRUE(QFile::exists(ws.historyDb()));
        // The workspace's own settings file takes the name too.
        EXPECT_TRUE(settings.write(setting_keys::FrontSize, 36, name));
        EXPECT_EQ(settings.readInt(setting_keys::FrontSize, name), 36);
    }
    EXPECT_EQ(list.nameError(longest + QLatin1Char('a')), WorkspaceList::kNameTooLong);
}

TEST_F(WorkspaceNames, DeletingAStoredDotDotEntryTouchesNothingOnDisk) {
    plantEntry(1, QStringLiteral(".."));
    plantEntry(2, QStringLiteral("../outside"));
    WorkspaceList list(settings, root);
    list.load();
    ASSERT_EQ(list.count(), 2);

    ScriptedPrompter p;  // OK to the question; no password
    EXPECT_TRUE(list.remove(0, p));
    EXPECT_TRUE(list.removeAt(0));
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(settings.readInt(setting_keys::WorkspaceCount), 0);

    EXPECT_EQ(outsideListing(), before);
    QFile canary(outer.filePath(QStringLiteral("canary.txt")));
    ASSERT_TRUE(canary.open(QIODevice::ReadOnly));
    EXPECT_EQ(canary.readAll(), QByteArray("keep me"));
    // The data root keeps its templates and settings.
    EXPECT_TRUE(QFile::exists(root.historyTemplate()));
    EXPECT_TRUE(QFile::exists(settings.fileFor(setting_keys::WorkspaceCount)));
}

TEST_F(WorkspaceNames, DeletingRemovesTheFilesOfItsOwnFolderOnly) {
    WorkspaceList list(settings, root);
    list.load();
    ASSERT_EQ(list.create(QStringLiteral("filnum"), {}), 0);
    // A folder of the workspace that is a link to the parent folder is not followed.
    ASSERT_EQ(list.create(QStringLiteral("linked"), {}), 1);
    const QString linked = WorkspacePaths(root, QStringLiteral("linked")).folder();
    ASSERT_TRUE(QDir(linked).removeRecursively());
    ASSERT_TRUE(QFile::link(outer.path(), linked));

    EXPECT_TRUE(list.removeAt(1));
    EXPECT_TRUE(list.removeAt(0));
    // "filnum" lost its own files; the template filnum.db beside its folder stays.
    EXPECT_TRUE(QDir(WorkspacePaths(root, QStringLiteral("filnum")).folder()).isEmpty());
    EXPECT_TRUE(QFile::exists(root.filterTemplate()));
    EXPECT_EQ(outsideListing(), before);
}

TEST_F(WorkspaceNames, StoredBadNamesAreNotEnteredOrOpened) {
    plantEntry(1, QStringLiteral("../x"));
    WorkspaceList list(settings, root);
    list.load();
    ScriptedPrompter p;
    EXPECT_FALSE(list.enter(0, p));
    EXPECT_EQ(p.messages(), QStringList{WorkspaceList::kUnsafeStoredName});
    EXPECT_EQ(settings.readInt(setting_keys::LastWorkspace), 0);

    // The session refuses such a name too, before it makes any folder or file.
    Session session(root, settings);
    EnteredWorkspace w;
    w.index = 1;
    w.name = QStringLiteral("../x");
    QString error;
    EXPECT_FALSE(session.open(w, &error));
    EXPECT_EQ(error, Session::kFatalText);
    EXPECT_EQ(outsideListing(), before);
}

}  // namespace
