// Several shuangqu-cli processes on one workspace at once: writers run one after another or are
// refused with the workspace's message, and readers see one stored state, never half of one.
#include "support/cli_runner.h"
#include "workspace/workspace_lock.h"

#include <QDateTime>
#include <QDir>
#include <QLockFile>
#include <QSet>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

const QString kWorkspace = QStringLiteral("并发");
const QStringList kFirstExpansion{"expand", "--front", "1,2,3,4,5,6,7,8,9", "--back",
                                  "1,2,3,4,5,6,7,8,9,10,11,12"};
const QStringList kSecondExpansion{"expand", "--front", "2,3,4,5,6,7,8,9,10", "--back",
                                   "1,2,3,4,5,6,7,8,9,10,11,12"};
const QStringList kEvenFilter{"filter", "param", "Onum", "--keep", "--range", "2", "3"};
const QStringList kSumFilter{"filter", "param", "Znum", "--keep", "--range", "15", "30"};
const QStringList kDump{"candidates", "show", "--all"};

// Processes started together and collected together.
class Batch {
public:
    explicit Batch(const CliRunner& cli) : m_home(cli.home()) {}

    void start(const QStringList& args) {
        auto p = std::make_unique<QProcess>();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("SHUANGQU_HOME"));
        p->setProcessEnvironment(env);
        p->start(QStringLiteral(SHUANGQU_CLI), QStringList{QStringLiteral("--home"), m_home} + args);
        m_running.push_back(std::move(p));
    }

    std::vector<CliRun> finish() {
        std::vector<CliRun> runs;
        for (auto& p : m_running) {
            p->waitForFinished(120000);
            runs.push_back({p->exitStatus() == QProcess::NormalExit ? p->exitCode() : -1,
                            QString::fromUtf8(p->readAllStandardOutput()),
                            QString::fromUtf8(p->readAllStandardError())});
        }
        m_running.clear();
        return runs;
    }

private:
    QString m_home;
    std::vector<std::unique_ptr<QProcess>> m_running;
};

// A writer either completed or was refused with the message that names the workspace.
bool completed(const CliRun& r, const QString& workspace = kWorkspace) {
    if (r.exitCode == 0) return true;
    EXPECT_EQ(r.exitCode, 1) << qPrintable(r.err);
    EXPECT_TRUE(r.err.contains(WorkspaceLock::busyText(workspace))) << qPrintable(r.err);
    return false;
}

QString dump(const CliRunner& cli) {
    const CliRun r = cli.run(kDump);
    EXPECT_EQ(r.exitCode, 0) << qPrintable(r.err);
    return r.out;
}

// The table after a sequence of calls made one after another, from the first expansion on.
QString stateAfter(const CliRunner& reference, const std::vector<QStringList>& calls) {
    EXPECT_EQ(reference.run(kFirstExpansion).exitCode, 0);
    for (const QStringList& c : calls) EXPECT_EQ(reference.run(c).exitCode, 0) << qPrintable(c.join(' '));
    return dump(reference);
}

class CliConcurrency : public ::testing::Test {
protected:
    CliRunner cli;
    CliRunner reference;

    void SetUp() override {
        for (const CliRunner* r : {&cli, &reference})
            ASSERT_EQ(r->run({"workspace", "create", kWorkspace}).exitCode, 0);
    }
};

}  // namespace

TEST_F(CliConcurrency, TwoWritersAndAReaderNeverLoseOrMixAnUpdate) {
    // Every state the stored table may pass through, made one call after another.
    const QString start = stateAfter(reference, {});
    const QString even = stateAfter(reference, {kEvenFilter});
    const QString sum = stateAfter(reference, {kSumFilter});
    const QString evenThenSum = stateAfter(reference, {kEvenFilter, kSumFilter});
    const QString sumThenEven = stateAfter(reference, {kSumFilter, kEvenFilter});
    const QString second = stateAfter(reference, {kSecondExpansion});
    const QString evenThenSecond = stateAfter(reference, {kEvenFilter, kSecondExpansion});
    const QString secondThenEven = stateAfter(reference, {kSecondExpansion, kEvenFilter});
    ASSERT_EQ(QSet<QString>({start, even, sum, evenThenSum, second, secondThenEven}).size(), 6);

    constexpr int kRounds = 12;
    int refusals = 0;
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE(round);
        ASSERT_EQ(cli.run(kFirstExpansion).exitCode, 0);
        // Odd rounds put an expansion beside the filter, even ones a second filter.
        const bool withExpansion = round % 2 == 1;
        Batch batch(cli);
        batch.start(kEvenFilter);
        batch.start(withExpansion ? kSecondExpansion : kSumFilter);
        batch.start(kDump);
        batch.start(kDump);
        const std::vector<CliRun> runs = batch.finish();
        const bool filtered = completed(runs[0]);
        const bool other = completed(runs[1]);
        refusals += !filtered + !other;
        for (size_t reader : {2u, 3u}) ASSERT_EQ(runs[reader].exitCode, 0) << qPrintable(runs[reader].err);

        const QString now = dump(cli);
        QSet<QString> allowed;
        QSet<QString> seen{start};
        if (withExpansion) {
            seen += {even, second, secondThenEven};
            if (filtered && other) allowed = {secondThenEven, evenThenSecond};
            if (filtered && !other) allowed = {even};
            if (!filtered && other) allowed = {second};
        } else {
            seen += {even, sum, evenThenSum, sumThenEven};
            if (filtered && other) allowed = {evenThenSum, sumThenEven};
            if (filtered && !other) allowed = {even};
            if (!filtered && other) allowed = {sum};
        }
        if (!filtered && !other) allowed = {start};
        EXPECT_TRUE(allowed.contains(now)) << "filter " << filtered << ", other " << other;
        // Each reader saw one of the states the table passed through, whole.
        for (size_t reader : {2u, 3u})
            EXPECT_TRUE(seen.contains(runs[reader].out)) << qPrintable(runs[reader].out.left(400));
    }
    // Writers that wait for each other mostly both complete; a refusal is the exception.
    EXPECT_LT(refusals, kRounds);
}

TEST_F(CliConcurrency, HistoryAddsAtOnceGiveDistinctIdx) {
    constexpr int kRounds = 4;
    int stored = 0;
    for (int round = 0; round < kRounds; ++round) {
        Batch batch(cli);
        batch.start({"history", "add", "1", "2", "3", "4", "5", "1", "2"});
        batch.start({"history", "add", "6", "7", "8", "9", "10", "3", "4"});
        for (const CliRun& r : batch.finish()) stored += completed(r);
    }
    const CliRun shown = cli.run({"history", "show"});
    ASSERT_EQ(shown.exitCode, 0) << qPrintable(shown.err);
    QStringList rows = shown.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    rows.removeFirst();
    ASSERT_EQ(rows.size(), stored);
    for (int i = 0; i < rows.size(); ++i) EXPECT_EQ(rows[i].section(QLatin1Char('\t'), 0, 0).toInt(), i + 1);
}

TEST(CliConcurrencyList, WorkspaceCreatesAtOnceLoseNone) {
    for (int round = 0; round < 4; ++round) {
        CliRunner cli;
        Batch batch(cli);
        const QStringList names{QStringLiteral("甲"), QStringLiteral("乙"), QStringLiteral("丙")};
        for (const QString& n : names) batch.start({"workspace", "create", n});
        QStringList made;
        const std::vector<CliRun> runs = batch.finish();
        for (size_t i = 0; i < runs.size(); ++i) {
            if (runs[i].exitCode == 0) {
                made << names[static_cast<qsizetype>(i)];
                continue;
            }
            EXPECT_EQ(runs[i].exitCode, 1);
            EXPECT_TRUE(runs[i].err.contains(WorkspaceLock::kListBusy)) << qPrintable(runs[i].err);
        }
        const CliRun list = cli.run({"workspace", "list"});
        QStringList listed;
        for (const QString& row : list.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts).mid(1))
            listed << row.section(QLatin1Char('\t'), 1, 1);
        listed.sort();
        made.sort();
        EXPECT_EQ(listed, made);
        for (const QString& n : made)
            EXPECT_TRUE(QFile::exists(QDir(cli.home()).filePath(n + '/' + n + ".db")));
    }
}

TEST_F(CliConcurrency, AHeldLockRefusesWritersOnlyAndADeadOwnersLockIsTakenOver) {
    ASSERT_EQ(cli.run(kFirstExpansion).exitCode, 0);
    const QString lockPath = QDir(cli.home()).filePath(kWorkspace + '/' + WorkspaceLock::kLockFileName);
    {
        // As the window holds it while a player is logged in.
        QLockFile held(lockPath);
        held.setStaleLockTime(0);
        ASSERT_TRUE(held.tryLock());
        const QString before = dump(cli);
        const CliRun refused = cli.run(kEvenFilter);
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_TRUE(refused.err.contains(WorkspaceLock::busyText(kWorkspace))) << qPrintable(refused.err);
        EXPECT_EQ(cli.run({"candidates", "count"}).out, QStringLiteral("8316\n"));
        EXPECT_EQ(dump(cli), before);
        EXPECT_EQ(cli.run({"workspace", "delete", kWorkspace}).exitCode, 1);
    }
    // A lock left by a process that was killed: its process id names no running process.
    QProcess gone;
    gone.start(QStringLiteral("sleep"), {QStringLiteral("0.1")});
    ASSERT_TRUE(gone.waitForStarted());
    const qint64 pid = gone.processId();
    ASSERT_TRUE(gone.waitForFinished());
    QFile stale(lockPath);
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write(QByteArray::number(pid) + "\nshuangqu-cli\n" + QSysInfo::machineHostName().toUtf8() + "\n");
    stale.close();
    const CliRun taken = cli.run(kEvenFilter);
    EXPECT_EQ(taken.exitCode, 0) << qPrintable(taken.err);

    // An empty lock file, from a program killed while it made it, once it is old.
    QFile empty(lockPath);
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_TRUE(
        empty.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime));
    empty.close();
    const CliRun afterEmpty = cli.run(kSumFilter);
    EXPECT_EQ(afterEmpty.exitCode, 0) << qPrintable(afterEmpty.err);
    EXPECT_FALSE(QFile::exists(lockPath));
}
