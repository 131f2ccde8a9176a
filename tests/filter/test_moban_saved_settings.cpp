// Saved settings in Canshu: Command7 with its default name, frmFind's names, delete and
// rename, and Command6 setting the controls, through the file.
#include "filter/templates/saved_setting_store.h"
#include "workspace/schema.h"
#include "workspace/scripted_prompter.h"
#include "workspace/sqlite_db.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class SavedSettings : public ::testing::Test {
protected:
    QTemporaryDir dir;
    SqliteDb db;
    ScriptedPrompter prompter;
    const QDateTime when{QDate(2026, 3, 5), QTime(14, 7, 9)};

    void SetUp() override { reopen(true); }
    void reopen(bool create = false) {
        db.close();
        ASSERT_TRUE(db.open(dir.filePath(QStringLiteral("filnum.db")), create));
        if (create) {
            ASSERT_TRUE(createTemplateTables(db, TemplateKind::FilterDb));
        }
    }
};

TEST_F(SavedSettings, SaveProposesADatedNameAndKeepsCancelledAndDuplicateNames) {
    EXPECT_EQ(saved_setting_store::stamp(when), QStringLiteral("26-3-5日14.7.9秒"));
    ParamWindowState s = ParamWindowState::defaults();
    // Enter on the proposal, a cancel, and the same name twice.
    EXPECT_EQ(saved_setting_store::save(db, s, prompter, when),
              QStringLiteral("过滤设置保存于26-3-5日14.7.9秒"));
    prompter.cancel();
    EXPECT_EQ(saved_setting_store::save(db, s, prompter, when), QString());
    prompter.answer(QStringLiteral("稳"));
    saved_setting_store::save(db, s, prompter, when);
    prompter.answer(QStringLiteral("稳"));
    saved_setting_store::save(db, s, prompter, when);
    EXPECT_EQ(prompter.asked().first().title, QStringLiteral("过滤设置保存"));
    EXPECT_EQ(prompter.asked().first().text, QStringLiteral("请输入本次的过滤设置名字："));
    reopen();
    saved_setting_store::Finder finder(db);
    EXPECT_EQ(finder.names(), (QStringList{QStringLiteral("过滤设置保存于26-3-5日14.7.9秒"), QString(), QStringLiteral("稳"),
                                           QStringLiteral("稳")}));
    // No step columns: a setting is no template step.
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT count(*) FROM Canshu WHERE intCmdnb <> 0 OR Idx <> 0")).toInt(), 0);
}

TEST_F(SavedSettings, LoadSetsTheControlsAndDeleteAndRenameActOnEveryRowOfTheName) {
    ParamWindowState s = ParamWindowState::defaults();
    s.box(ParamId::BigCount) = {QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("2"), QString()};
    s.box(ParamId::CustomRange) = {QStringLiteral("1"), QStringLiteral("4"), QStringLiteral("20"),
                                   QStringLiteral("10")};
    s.integratedBox[4] = true;
    s.integratedBox[21] = true;
    s.logicAnd = false;
    s.txtRc0 = QStringLiteral("3");
    prompter.answer(QStringLiteral("甲"));
    saved_setting_store::save(db, s, prompter, when);
    ParamWindowState list = s;
    list.listMode = true;
    list.box(ParamId::BigCount)[3] = QStringLiteral("1 2");
    prompter.answer(QStringLiteral("乙"));
    saved_setting_store::save(db, list, prompter, when);
    reopen();

    ParamWindowState got = ParamWindowState::defaults();
    const auto e = saved_setting_store::load(db, QStringLiteral("甲"), got);
    ASSERT_TRUE(e);
    EXPECT_TRUE(e->hideListFrame);
    EXPECT_EQ(got.box(ParamId::BigCount), s.box(ParamId::BigCount));
    EXPECT_EQ(got.box(ParamId::CustomRange), s.box(ParamId::CustomRange));
    EXPECT_EQ(got.integratedBox, s.integratedBox);
    EXPECT_FALSE(got.logicAnd);
    EXPECT_EQ(got.txtRc0, QStringLiteral("3"));
    got = ParamWindowState::defaults();
    ASSERT_TRUE(saved_setting_store::load(db, QStringLiteral("乙"), got));
    EXPECT_TRUE(got.listMode);
    EXPECT_EQ(got.box(ParamId::BigCount)[3], QStringLiteral("1 2"));
    EXPECT_EQ(got.box(ParamId::BigCount)[1], ParamWindowState::defaults().box(ParamId::BigCount)[1]);
    EXPECT_FALSE(saved_setting_store::load(db, QStringLiteral("丙"), got));

    saved_setting_store::Finder finder(db);
    prompter.answer(QStringLiteral("甲")).answer(QStringLiteral("乙2"));
    saved_setting_store::save(db, s, prompter, when);  // a second 甲
    finder.reload();
    EXPECT_EQ(finder.names().count(QStringLiteral("甲")), 2);
    EXPECT_TRUE(finder.rename(QStringLiteral("甲"), prompter, when));
    EXPECT_EQ(prompter.asked().last().title, QStringLiteral("选号名字修改"));
    EXPECT_EQ(finder.names(), (QStringList{QStringLiteral("乙2"), QStringLiteral("乙"), QStringLiteral("乙2")}));
    EXPECT_TRUE(finder.remove(QStringLiteral("乙2")));
    EXPECT_EQ(finder.names(), QStringList{QStringLiteral("乙")});
    // A name with quotes is a value like any other.
    EXPECT_TRUE(finder.rename(QStringLiteral("乙"), prompter.answer(QStringLiteral("a' OR '1'='1")), when));
    EXPECT_TRUE(finder.remove(QStringLiteral("x' OR '1'='1")));
    EXPECT_EQ(finder.names(), QStringList{QStringLiteral("a' OR '1'='1")});
    // Enter on the proposal of the rename.
    finder.rename(finder.names().first(), prompter, when);
    EXPECT_EQ(finder.names(), QStringList{QStringLiteral("选号名字修改于26-3-5日14.7.9秒")});
    EXPECT_EQ(saved_setting_store::kFinderCaption, QStringLiteral("过滤设置保存（双击指定调用该期）"));
}

}  // namespace
