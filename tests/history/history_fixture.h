#pragma once

#include "history/history_import.h"
#include "support/temp_home.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

#include <memory>

// A fresh data root with one workspace "张三" entered, and helpers to write history files and
// to read the tables back.
class HistoryFixture : public ::testing::Test {
protected:
    static inline const QString kUser = QStringLiteral("张三");

    void SetUp() override {
        WorkspaceList list(home.settings, home.root);
        list.load();
        ASSERT_EQ(list.create(kUser, {}), 0);
        reopen();
    }

    // Opens the workspace again, as a restart of the program does.
    void reopen(int frontSize = 35, int backSize = 12) {
        session.reset();
        session = std::make_unique<Session>(home.root, home.settings);
        EnteredWorkspace w;
        w.index = 1;
        w.name = kUser;
        w.frontSize = frontSize;
        w.backSize = backSize;
        ASSERT_TRUE(session->open(w));
    }

    // Writes a history text file into a folder of its own and returns its path.
    QString writeFile(const QString& name, const QStringList& lines) {
        QDir().mkpath(files.path());
        const QString path = QDir(files.path()).filePath(name);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(lines.join(QStringLiteral("\r\n")).toUtf8());
        return path;
    }

    // Imports without the question and the dialog; each import gets a folder of its own so that
    // the workspace's copy of an earlier file does not stand in the way.
    HistoryActionResult importLines(const QStringList& lines,
                                    HistoryImport::Mode mode = HistoryImport::Mode::Whole,
                                    const HistoryProgress* progress = nullptr) {
        QTemporaryDir dir;
        const QString path = QDir(dir.path()).filePath(QStringLiteral("h.txt"));
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(lines.join(QStringLiteral("\n")).toUtf8());
        f.close();
        return HistoryImport(*session, prompter).importFile(mode, path, progress);
    }

    int count(const QString& table) {
        return session->historyDb().scalar(QStringLiteral("SELECT count(*) FROM [%1]").arg(table)).toInt();
    }
    QVariant cell(const QString& table, const QString& column, int idx) {
        return session->historyDb().scalar(
            QStringLiteral("SELECT [%1] FROM [%2] WHERE [Idx]=?1").arg(column, table), {idx});
    }
    // Every row of every history table as text: equal dumps mean unchanged tables.
    QStringList dump() {
        QStringList out;
        for (const char* t :
             {"fig", "fighou", "figquan", "Ylqs", "YlqsHou", "YlqsQuan", "Gailv", "GailvHou", "GailvQuan"}) {
            for (const QVariantList& row : session->historyDb().rows(
                     QStringLiteral("SELECT * FROM [%1] ORDER BY rowid").arg(QLatin1String(t)))) {
                QStringList cells;
                for (const QVariant& v : row) cells << v.toString();
                out << QLatin1String(t) + QLatin1Char(':') + cells.join(QLatin1Char(' '));
            }
        }
        return out;
    }

    TempHome home;
    QTemporaryDir files;
    ScriptedPrompter prompter;
    std::unique_ptr<Session> session;
};

// Equality of the statistics arrays, for "nothing changed" checks.
inline bool sameStats(const NumberStats& a, const NumberStats& b) {
    return a.omission == b.omission && a.frequency == b.frequency && a.percent == b.percent &&
           a.total == b.total;
}
inline bool sameViews(const StatsViews& a, const StatsViews& b) {
    return sameStats(a.front, b.front) && sameStats(a.back, b.back) && sameStats(a.both, b.both);
}
