// Workspace names that would leave the data root, and settings that cannot be saved, through
// the command line: refused with the program's message and exit 1, nothing touched outside.
#include "support/cli_runner.h"
#include "workspace/unwritable_settings.h"
#include "workspace/workspace_list.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {
// Every path under a folder, to compare before and after.
QStringList listing(const QString& dir) {
    QStringList paths;
    QDirIterator it(dir, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) paths << it.next();
    paths.sort();
    return paths;
}

// A data root inside a folder of the test's, with a canary file and a folder beside it.
class CliNamesTest : public ::testing::Test {
protected:
    QTemporaryDir outer;
    QString root = outer.filePath(QStringLiteral("root"));
    CliRunner cli{root};

    void SetUp() override {
        ASSERT_TRUE(outer.isValid());
        QFile canary(outer.filePath(QStringLiteral("canary.txt")));
        ASSERT_TRUE(canary.open(QIODevice::WriteOnly));
        canary.write("still here\n");
        canary.close();
        ASSERT_TRUE(QDir(outer.path()).mkpath(QStringLiteral("x/keep")));
        ASSERT_EQ(cli.run({QStringLiteral("workspace"), QStringLiteral("list")}).exitCode, 0);
    }
    // What lies beside the data root, not in it.
    QStringList besideRoot() const {
        QStringList all = listing(outer.path());
        all.removeIf([this](const QString& p) { return p == root || p.startsWith(root + QLatin1Char('/')); });
        return all;
    }
};
}  // namespace

TEST_F(CliNamesTest, NamesThatWouldLeaveTheDataRootAreRefused) {
    const QStringList before = besideRoot();
    const QStringList bad = {QStringLiteral("a/b"), QStringLiteral("../x"), QStringLiteral(".."),
                             QStringLiteral("."), outer.filePath(QStringLiteral("abs")),
                             QStringLiteral("第一\n第二"), QString(300, QLatin1Char('n'))};
    for (const QString& name : bad) {
        const CliRun r = cli.run({QStringLiteral("workspace"), QStringLiteral("create"), name});
        EXPECT_EQ(r.exitCode, 1) << name.toStdString();
        EXPECT_TRUE(r.err.contains(QStringLiteral("请换用"))) << r.err.toStdString();
    }
    EXPECT_EQ(cli.run({QStringLiteral("workspace"), QStringLiteral("list")}).out.count(QLatin1Char('\n')), 1);

    // A good workspace cannot be renamed to them either.
    ASSERT_EQ(cli.run({QStringLiteral("workspace"), QStringLiteral("create"), QStringLiteral("张先生")}).exitCode, 0);
    for (const QString& name : bad) {
        const CliRun r =
            cli.run({QStringLiteral("workspace"), QStringLiteral("rename"), QStringLiteral("张先生"), name});
        EXPECT_EQ(r.exitCode, 1) << name.toStdString();
    }
    EXPECT_EQ(besideRoot(), before);
}

TEST_F(CliNamesTest, DeletingAnEntryNamedDotDotLeavesTheParentAlone) {
    // An older version could store such a name; its entry goes, no file outside the root does.
    {
        Settings settings(QDir(root).filePath(QStringLiteral("settings")));
        ASSERT_TRUE(settings.write(setting_keys::WorkspaceCount, 2));
        ASSERT_TRUE(settings.write(setting_keys::UserName, QStringLiteral(".."), {}, 1));
        ASSERT_TRUE(settings.write(setting_keys::UserName, QStringLiteral("../x"), {}, 2));
    }
    const QStringList before = besideRoot();
    EXPECT_EQ(cli.run({QStringLiteral("workspace"), QStringLiteral("delete"), QStringLiteral("..")}).exitCode, 0);
    EXPECT_EQ(cli.run({QStringLiteral("workspace"), QStringLiteral("delete"), QStringLiteral("../x")}).exitCode, 0);
    EXPECT_EQ(besideRoot(), before);
    EXPECT_TRUE(QFile::exists(outer.filePath(QStringLiteral("canary.txt"))));
    EXPECT_TRUE(QDir(outer.filePath(QStringLiteral("x/keep"))).exists());
    EXPECT_EQ(cli.run({QStringLiteral("workspace"), QStringLiteral("list")}).out.count(QLatin1Char('\n')), 1);
}

TEST_F(CliNamesTest, SettingsThatCannotBeSavedAreReported) {
    ASSERT_EQ(cli.run({QStringLiteral("workspace"), QStringLiteral("create"), QStringLiteral("张先生")}).exitCode, 0);
    Settings settings(QDir(root).filePath(QStringLiteral("settings")));
    {
        UnwritableSettings locked(settings, Settings::appName(SettingApp::Workspace, QStringLiteral("张先生")));
        ASSERT_TRUE(locked.ok());
        const CliRun rules = cli.run({QStringLiteral("rules"), QStringLiteral("set"), QStringLiteral("--front"),
                                      QStringLiteral("33")});
        EXPECT_EQ(rules.exitCode, 1);
        EXPECT_TRUE(rules.err.contains(locked.file())) << rules.err.toStdString();
        const CliRun prize = cli.run({QStringLiteral("prize"), QStringLiteral("rules"), QStringLiteral("set"),
                                      QStringLiteral("1"), QStringLiteral("--money"), QStringLiteral("100")});
        EXPECT_EQ(prize.exitCode, 1) << prize.err.toStdString();
    }
    // Once the store is writable again, the same calls go through.
    EXPECT_EQ(cli.run({QStringLiteral("rules"), QStringLiteral("set"), QStringLiteral("--front"),
                       QStringLiteral("33")})
                  .exitCode,
              0);
    EXPECT_EQ(cli.run({QStringLiteral("rules"), QStringLiteral("show")}).out,
              QStringLiteral("Bitnum\tBitnumHou\n33\t12\n"));
    {
        UnwritableSettings locked(settings, Settings::appName(SettingApp::Registry, {}));
        ASSERT_TRUE(locked.ok());
        const CliRun create =
            cli.run({QStringLiteral("workspace"), QStringLiteral("create"), QStringLiteral("李先生")});
        EXPECT_EQ(create.exitCode, 1);
        EXPECT_FALSE(create.err.isEmpty());
    }
}
