// A settings store that cannot be written reports it, and nothing is taken as stored.
#include "support/temp_home.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/unwritable_settings.h"
#include "workspace/workspace_list.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

TEST(SettingsFailure, AWriteThatIsNotSavedReturnsFalseAndReadsKeepTheOldValue) {
    TempHome home;
    ASSERT_TRUE(home.settings.write(setting_keys::TicketsPerLine, 6, QStringLiteral("甲")));
    UnwritableSettings blocked(home.settings, Settings::appName(SettingApp::Workspace, QStringLiteral("甲")));
    ASSERT_TRUE(blocked.ok());
    EXPECT_FALSE(home.settings.write(setting_keys::TicketsPerLine, 9, QStringLiteral("甲")));
    EXPECT_FALSE(home.settings.writeRaw(QStringLiteral("甲QY"), QStringLiteral("setup"), QStringLiteral("x"),
                                        QStringLiteral("1")));
    // The same process reads what the file holds, not the value that was refused.
    EXPECT_NE(home.settings.readInt(setting_keys::TicketsPerLine, QStringLiteral("甲")), 9);
    EXPECT_EQ(home.settings.readRaw(QStringLiteral("甲QY"), QStringLiteral("setup"), QStringLiteral("x"), {}),
              QString());
    EXPECT_TRUE(Settings::saveFailedText(blocked.file()).endsWith(QDir::toNativeSeparators(blocked.file())));
}

TEST(SettingsFailure, CreatingAWorkspaceReportsItAndStoresNothing) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    ASSERT_EQ(list.create(QStringLiteral("甲"), {}), 0);
    UnwritableSettings blocked(home.settings, Settings::appName(SettingApp::Registry, {}));
    ASSERT_TRUE(blocked.ok());
    const QString message = Settings::saveFailedText(home.settings.fileFor(setting_keys::WorkspaceCount));

    QString error;
    EXPECT_EQ(list.create(QStringLiteral("乙"), {}, &error), -1);
    EXPECT_EQ(error, message);
    EXPECT_EQ(list.count(), 1);

    ScriptedPrompter p;
    p.answer(QStringLiteral("丙")).answer(QString()).answer(QString());
    EXPECT_EQ(list.askNew(p), -1);
    ASSERT_EQ(p.messages(), QStringList{message});
    EXPECT_EQ(p.asked().last().title, Settings::kSaveFailedTitle);
    EXPECT_EQ(list.count(), 1);

    // Rename and delete report it the same way and leave the entry as it was.
    error.clear();
    EXPECT_FALSE(list.renameAt(1, QStringLiteral("丁"), {}, &error));
    EXPECT_EQ(error, message);
    EXPECT_EQ(list.name(0), QStringLiteral("甲"));
    ScriptedPrompter del;
    EXPECT_FALSE(list.remove(0, del));
    EXPECT_EQ(del.messages(), QStringList{message});
    EXPECT_EQ(list.names(), QStringList{QStringLiteral("甲")});
    EXPECT_TRUE(QFile::exists(WorkspacePaths(home.root, QStringLiteral("甲")).historyDb()));
}

TEST(SettingsFailure, ZoneSizesThatCannotBeSavedChangeNothing) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    ASSERT_EQ(list.create(QStringLiteral("甲"), {}), 0);
    Session session(home.root, home.settings);
    ScriptedPrompter p;
    const auto entered = list.enter(0, p);
    ASSERT_TRUE(entered);
    ASSERT_TRUE(session.open(*entered));
    ASSERT_TRUE(session.setFrontSize(36));

    UnwritableSettings blocked(home.settings, Settings::appName(SettingApp::Workspace, QStringLiteral("甲")));
    ASSERT_TRUE(blocked.ok());
    const QString message =
        Settings::saveFailedText(home.settings.fileFor(setting_keys::FrontSize, QStringLiteral("甲")));
    QString error;
    EXPECT_FALSE(session.setFrontSize(30, &error));
    EXPECT_EQ(error, message);
    EXPECT_EQ(session.frontSize(), 36);
    error.clear();
    EXPECT_FALSE(session.setBackSize(20, &error));
    EXPECT_EQ(error, message);
    EXPECT_EQ(session.backSize(), 12);
    EXPECT_EQ(session.positionCentres(), game_rules::positionCentres(36, 12));
    EXPECT_FALSE(session.setTicketsPerLine(7));
    EXPECT_EQ(session.ticketsPerLine(), 4);
    // Out of range is refused without a write.
    EXPECT_FALSE(session.setFrontSize(40));
}
