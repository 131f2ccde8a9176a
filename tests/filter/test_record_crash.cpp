#include "engine/candidate_store.h"
#include "workspace/sqlite_db.h"

#include "filter/record_fixture.h"
#include "filter/record_steps.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace {

bool sameTable(const CandidateTable& a, const CandidateTable& b) {
    if (a.rowCount() != b.rowCount() || a.filteredOut() != b.filteredOut() ||
        a.previousFilteredOut() != b.previousFilteredOut() ||
        a.scratchFilteredOut() != b.scratchFilteredOut())
        return false;
    for (uint64_t r = 0; r < a.rowCount(); ++r)
        if (a.reasonText(r) != b.reasonText(r) ||
            a.reasons().isNull(a.rowReasons()[r]) != b.reasons().isNull(b.rowReasons()[r]) ||
            a.paramValueAt(r) != b.paramValueAt(r))
            return false;
    for (int k = 1; k <= a.numberCount(); ++k)
        if (!std::ranges::equal(a.numberColumn(k), b.numberColumn(k))) return false;
    return true;
}

// Runs `step` in a process killed after `killAfterMs` (or left to finish).
void runKilled(const QString& path, int step, int killAfterMs) {
    QProcess p;
    p.start(QStringLiteral(RECORD_CRASH_HELPER), {path, QString::number(step)});
    ASSERT_TRUE(p.waitForStarted());
    if (!p.waitForFinished(killAfterMs)) {
        p.kill();  // SIGKILL: nothing of the process runs after it
        p.waitForFinished();
    }
}

// A process that writes the record is killed at random moments, in the image write and in the
// derivation of the rows; each time the file is whole and holds the state before the step or
// the state after it.
TEST(RecordCrash, AKillAtAnyMomentLeavesTheStateBeforeOrAfter) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("filnum.db"));
    {
        SqliteDb create;
        ASSERT_TRUE(create.open(path, true));
    }
    runKilled(path, 0, 60000);
    CandidateTable current = record_steps::savedTable(0);
    QRandomGenerator random(20240611);
    int after = 0, before = 0;
    for (int step = 1; step <= 30; ++step) {
        SCOPED_TRACE(step);
        CandidateTable next = record_steps::isSave(step) ? record_steps::savedTable(step) : current;
        if (!record_steps::isSave(step)) record_steps::act(next, step);
        runKilled(path, step, static_cast<int>(random.bounded(1000)));

        SqliteDb db;
        ASSERT_TRUE(db.open(path));
        EXPECT_EQ(db.scalar(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
        const candidate_store::LoadResult r = candidate_store::load(db, schema::CandidateKind::Combinations);
        ASSERT_TRUE(r.table) << r.error.toStdString();
        if (sameTable(*r.table, next)) {
            current = std::move(next);
            ++after;
        } else {
            ASSERT_TRUE(sameTable(*r.table, current)) << "neither the state before nor the one after";
            ++before;
        }
    }
    // Both outcomes happen, or the test kills too early or too late to tell anything.
    EXPECT_GT(after, 0);
    EXPECT_GT(before, 0);
}

}  // namespace
