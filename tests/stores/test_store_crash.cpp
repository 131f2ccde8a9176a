// Every kind of write through shuangqu-cli, killed (SIGKILL) at random moments: each time every
// SQLite file passes its integrity check and the whole data root holds exactly the state before
// the write or the state after it, and the next command runs.
#include "stores/store_state.h"
#include "support/cli_runner.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

// Kills per kind of write (96 in all); the whole test stays under a minute on two shared cores.
constexpr int kKillsPerKind = 8;

QProcess* startCli(const QString& home, const QStringList& args) {
    auto* p = new QProcess;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("SHUANGQU_HOME"));
    p->setProcessEnvironment(env);
    p->start(QStringLiteral(SHUANGQU_CLI), QStringList{QStringLiteral("--home"), home} + args);
    return p;
}

// One kind of write: its command line; `work` is a folder outside the data root for input files.
struct WriteKind {
    const char* name;
    std::function<QStringList(const QString& work)> args;
};

class StoreCrash : public store_state::BaseRootSuite {
protected:
    static QString bundledHistory() {
        return QDir(base()).filePath(QStringLiteral("大乐透历史号码/大乐透历史开奖号码.txt"));
    }

    // A fresh copy of the base root in `run`, with the kind's input files in run/work.
    static QString prepare(const QString& run) {
        QDir(run).removeRecursively();
        EXPECT_TRUE(store_state::copyTree(base(), run + QStringLiteral("/home")));
        QDir().mkpath(run + QStringLiteral("/work"));
        QFile::copy(bundledHistory(), run + QStringLiteral("/work/history.txt"));
        return run + QStringLiteral("/home");
    }
};

const WriteKind kKinds[] = {
    {"history import",
     [](const QString& w) {
         return QStringList{"history", "import", w + "/history.txt"};
     }},
    {"history add",
     [](const QString&) { return QStringList{"history", "add", "3", "9", "16", "24", "31", "2", "7"}; }},
    {"history edit",
     [](const QString&) {
         return QStringList{"history", "edit", "3", "fig5", "30"};
     }},
    {"history delete-last",
     [](const QString&) {
         return QStringList{"history", "delete-last"};
     }},
    {"moban add",
     [](const QString&) { return QStringList{"moban", "add", "history", "--same", "3", "--last", "2"}; }},
    {"moban replay",
     [](const QString&) {
         return QStringList{"moban", "replay"};
     }},
    {"prize rules set",
     [](const QString&) {
         return QStringList{"prize",  "rules", "set",     "9",  "--front", "5",
                            "--back", "0",     "--money", "77", "--rank",  "九等"};
     }},
    {"report write",
     [](const QString&) {
         return QStringList{"report", "write"};
     }},
    {"rules set",
     [](const QString&) { return QStringList{"rules", "set", "--front", "33", "--back", "14"}; }},
    {"workspace create",
     [](const QString&) {
         return QStringList{"workspace", "create", "丙"};
     }},
    {"workspace rename",
     [](const QString&) {
         return QStringList{"workspace", "rename", "乙", "丁"};
     }},
    {"workspace delete",
     [](const QString&) {
         return QStringList{"workspace", "delete", "乙"};
     }},
};

}  // namespace

TEST_F(StoreCrash, AKillAtAnyMomentLeavesTheStateBeforeOrAfter) {
    QRandomGenerator random(20261124);
    const store_state::Snapshot before = store_state::take(base());
    ASSERT_TRUE(before.damaged.isEmpty());
    int kills = 0, bad = 0, afterTotal = 0, beforeTotal = 0;
    for (const WriteKind& kind : kKinds) {
        SCOPED_TRACE(kind.name);
        const QString run = s_dir->filePath(QStringLiteral("run"));
        // The write left to finish: its state after, and how long it takes.
        QString home = prepare(run);
        QElapsedTimer timer;
        timer.start();
        const CliRun done = CliRunner(home).run(kind.args(run + QStringLiteral("/work")));
        const qint64 durationUs = timer.nsecsElapsed() / 1000;
        ASSERT_EQ(done.exitCode, 0) << qPrintable(done.err);
        const store_state::Snapshot after = store_state::take(home);
        ASSERT_FALSE(store_state::difference(before, after).isEmpty()) << "the write changes nothing";
        int a = 0, b = 0;
        for (int k = 0; k < kKillsPerKind; ++k) {
            home = prepare(run);
            std::unique_ptr<QProcess> p(startCli(home, kind.args(run + QStringLiteral("/work"))));
            ASSERT_TRUE(p->waitForStarted());
            QThread::usleep(random.bounded(static_cast<quint64>(durationUs)));
            p->kill();
            p->waitForFinished();
            ++kills;
            const store_state::Snapshot now = store_state::take(home);
            const bool isBefore = store_state::difference(before, now).isEmpty();
            const bool isAfter = store_state::difference(after, now).isEmpty();
            // The history text copy: the one before or the one after, whole, and never newer
            // than the database.
            const bool exportBefore = store_state::difference(before, now, true).isEmpty();
            const bool exportAfter = store_state::difference(after, now, true).isEmpty();
            if (!now.damaged.isEmpty() || (!isBefore && !isAfter) || (!exportBefore && !exportAfter) ||
                (isBefore && !exportBefore)) {
                ++bad;
                ADD_FAILURE() << "kill " << k << ": damaged " << qPrintable(now.damaged.join(' '))
                              << ", differs from before in "
                              << qPrintable(store_state::difference(before, now)) << " and from after in "
                              << qPrintable(store_state::difference(after, now))
                              << "; history text copy before " << exportBefore << ", after " << exportAfter;
                continue;
            }
            isAfter ? ++a : ++b;
            // The next command works on what the kill left.
            EXPECT_EQ(CliRunner(home).run({"workspace", "list"}).exitCode, 0);
        }
        std::printf("%-20s %3d kills: %2d before, %2d after (write %lld ms)\n", kind.name, kKillsPerKind, b,
                    a, static_cast<long long>(durationUs / 1000));
        afterTotal += a;
        beforeTotal += b;
    }
    std::printf("%d kills, %d bad states\n", kills, bad);
    EXPECT_EQ(bad, 0);
    // Both outcomes happen, or the kills come too early or too late to tell anything.
    EXPECT_GT(afterTotal, 0);
    EXPECT_GT(beforeTotal, 0);
}
