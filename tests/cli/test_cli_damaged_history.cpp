// A damaged <name>.db through shuangqu-cli: every command that opens the workspace refuses with
// a message naming the file, nothing crashes, and the file stays as it was.
#include "support/cli_runner.h"
#include "workspace/sqlite_db.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <functional>

namespace {

const QString kWorkspace = QStringLiteral("残");

class CliDamagedHistory : public ::testing::Test {
protected:
    CliRunner cli;
    QString file;

    void SetUp() override {
        ASSERT_EQ(cli.run({"workspace", "create", kWorkspace}).exitCode, 0);
        for (const QStringList& draw :
             {QStringList{"1", "2", "3", "4", "5", "1", "2"}, QStringList{"6", "7", "8", "9", "10", "3", "4"},
              QStringList{"11", "12", "13", "14", "15", "5", "6"}})
            ASSERT_EQ(cli.run(QStringList{"history", "add"} + draw).exitCode, 0);
        file = QDir(cli.home()).filePath(kWorkspace + '/' + kWorkspace + ".db");
    }

    void change(const QString& sql) {
        SqliteDb db;
        ASSERT_TRUE(db.open(file));
        ASSERT_TRUE(db.exec(sql)) << qPrintable(db.lastError());
    }

    void replaceFile(const std::function<void(const QString&)>& write) {
        ASSERT_TRUE(QFile::remove(file));
        write(file);
    }

    QByteArray digest() const {
        QFile f(file);
        if (!f.open(QIODevice::ReadOnly)) return {};
        return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256);
    }

    // Each command that reads or changes the history refuses, names the file and what is wrong,
    // and leaves the file and its folder as they were.
    void expectRefused(const QString& fault) {
        const QByteArray before = digest();
        const QStringList folder = QDir(QFileInfo(file).path()).entryList(QDir::Files);
        for (const QStringList& args :
             {QStringList{"history", "show"}, QStringList{"history", "edit", "1", "fig1", "02"},
              QStringList{"history", "add", "20", "21", "22", "23", "24", "7", "8"},
              QStringList{"stats", "show"}}) {
            SCOPED_TRACE(qPrintable(args.join(' ')));
            const CliRun r = cli.run(args);
            EXPECT_EQ(r.exitCode, 1);
            EXPECT_TRUE(r.out.isEmpty()) << qPrintable(r.out);
            EXPECT_TRUE(r.err.contains(file)) << qPrintable(r.err);
            EXPECT_TRUE(r.err.contains(fault)) << qPrintable(r.err);
        }
        EXPECT_EQ(digest(), before);
        EXPECT_EQ(QDir(QFileInfo(file).path()).entryList(QDir::Files), folder);
    }
};

}  // namespace

TEST_F(CliDamagedHistory, NumbersOutsideTheZones) {
    change(QStringLiteral("UPDATE fig SET fig3=40 WHERE Idx=2"));
    expectRefused(QStringLiteral("fig3 是 40"));
    change(QStringLiteral("UPDATE fig SET fig3=8 WHERE Idx=2"));
    EXPECT_EQ(cli.run({"history", "edit", "2", "fig1", "05"}).exitCode, 0);

    change(QStringLiteral("UPDATE fig SET fig1=-7 WHERE Idx=1"));
    expectRefused(QStringLiteral("fig1 是 -7"));
    change(QStringLiteral("UPDATE fig SET fig1=1 WHERE Idx=1"));

    change(QStringLiteral("UPDATE fighou SET fig2=25 WHERE Idx=3"));
    expectRefused(QStringLiteral("fighou 的第 3 期 fig2 是 25"));
}

TEST_F(CliDamagedHistory, RepeatedAndMissingIdx) {
    change(QStringLiteral("UPDATE figquan SET Idx=1 WHERE Idx=2"));
    expectRefused(QStringLiteral("figquan 的 Idx 1 重复"));
    change(
        QStringLiteral("UPDATE figquan SET Idx=2 WHERE rowid=(SELECT max(rowid) FROM figquan WHERE Idx=1)"));
    ASSERT_EQ(cli.run({"history", "show"}).exitCode, 0);

    change(QStringLiteral("DELETE FROM fig WHERE Idx=2"));
    expectRefused(QStringLiteral("fig 缺少 Idx 2"));
}

TEST_F(CliDamagedHistory, AFileThatIsNoDatabase) {
    replaceFile([](const QString& path) {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(4096, 'x'));
    });
    expectRefused(QStringLiteral("数据库文件无法读取"));
}

TEST_F(CliDamagedHistory, ADatabaseOfOtherTables) {
    replaceFile([](const QString& path) {
        SqliteDb db;
        ASSERT_TRUE(db.open(path, true));
        ASSERT_TRUE(db.exec(
            QStringLiteral("CREATE TABLE notes(id INTEGER, text TEXT); INSERT INTO notes VALUES (1,'x')")));
    });
    expectRefused(QStringLiteral("此文件不是历史号码数据库"));
}

TEST_F(CliDamagedHistory, AHistoryTableWithoutItsColumns) {
    change(QStringLiteral("DROP TABLE fighou; CREATE TABLE fighou(Idx INTEGER, other TEXT)"));
    expectRefused(QStringLiteral("表 fighou"));
}
