// The candidate engine on all of 35/12 (21,425,712 tickets): expansion in memory, the four
// actions of the filter window, persistence into filnum.db and reopening, each timed, with the
// peak memory; beside them the same actions as SQL UPDATE statements on the stored table.
//
//   candidate_engine_bench [--dir DIR] [--sql-rows N]
// --sql-rows N runs the SQL comparison on the first N rows only and scales the time up.
#include "bench_timing.h"
#include "engine/candidate_kernels.h"
#include "engine/candidate_store.h"
#include "engine/candidate_writer.h"
#include "filter/candidate_actions.h"
#include "generation/expansion.h"
#include "workspace/sqlite_db.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>

namespace {

using bench::seconds;

using bench::peakMiB;

struct SqlAction {
    const char* name;
    QStringList statements;
    std::function<void(CandidateTable&)> kernel;
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    QTemporaryDir tmp;
    QString dir = tmp.path();
    qint64 sqlRows = 0;
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--dir")) dir = args[i + 1];
        if (args[i] == QLatin1String("--sql-rows")) sqlRows = args[i + 1].toLongLong();
    }
    const QString dbPath = QDir(dir).filePath(QStringLiteral("filnum.db"));
    QFile::remove(dbPath);
    std::printf("peak memory at start: %.0f MiB\n", peakMiB());

    ExpansionInput in;
    for (int n = 1; n <= 35; ++n) in.front.push_back(static_cast<int16_t>(n));
    for (int n = 1; n <= 12; ++n) in.back.push_back(static_cast<int16_t>(n));
    ExpansionResult r;
    const double tExpand = seconds([&] { r = expand(in); });
    CandidateTable& t = *r.table;
    const double rows = static_cast<double>(t.rowCount());
    std::printf("expand 35/12: %llu tickets in %.3f s (target 0.3 s)\n", static_cast<unsigned long long>(t.rowCount()), tExpand);
    std::printf("columns: %.1f bytes/ticket; peak memory %.0f MiB = %.1f bytes/ticket (target 40)\n",
                static_cast<double>(t.memoryBytes()) / rows, peakMiB(), peakMiB() * 1048576.0 / rows);

    // A filter first, so that the actions meet live and dead rows with reasons.
    const double tFilter = seconds([&] {
        const BitVector sel = candidate_kernels::select(t, [&](uint64_t row) {
            return t.numberColumn(1)[row] + t.numberColumn(2)[row] + t.numberColumn(3)[row] +
                       t.numberColumn(4)[row] + t.numberColumn(5)[row] >
                   100;
        });
        candidate_kernels::beginFilter(t);
        candidate_kernels::killSelected(t, sel,
                                        t.reasons().intern(QStringLiteral("各位数和大小:0 保留0~100")));
    });
    std::printf("sum filter (select + kill): %.3f s, %llu live\n", tFilter, static_cast<unsigned long long>(t.liveCount()));

    const std::vector<SqlAction> actions = {
        {"invert all", {"UPDATE [zuhe] SET [preunslt]=[unslt]", "UPDATE [zuhe] SET [unslt]=NOT [unslt], [Fliter]='全部反选-' || ifnull([Fliter],'')"},
         candidate_actions::invertAll},
        {"reset last", {"UPDATE [zuhe] SET [unslt]=0, [Fliter]='' WHERE [preunslt]=0 AND [unslt]=1"}, candidate_actions::resetLast},
        {"invert last",
         {"UPDATE [zuhe] SET [tmpunslt]=[preunslt]", "UPDATE [zuhe] SET [preunslt]=[unslt]",
          "UPDATE [zuhe] SET [unslt]=NOT [unslt], [Fliter]='上次反选-' || ifnull([Fliter],'') WHERE [tmpunslt]=0"},
         candidate_actions::invertLast},
        {"reset all", {"UPDATE [zuhe] SET [unslt]=0, [Fliter]=''"}, candidate_actions::resetAll},
    };
    std::vector<double> kernelTimes;
    for (const SqlAction& a : actions) {
        const double s = seconds([&] { a.kernel(t); });
        kernelTimes.push_back(s);
        std::printf("%-12s in memory: %.1f ms (target 30 ms), %llu live\n", a.name, s * 1000,
                    static_cast<unsigned long long>(t.liveCount()));
    }

    SqliteDb db;
    db.open(dbPath, true);
    const double tSave = seconds([&] { candidate_store::save(db, t); });
    std::printf("persist (one transaction, rows + column image): %.1f s (target 20 s); peak memory %.0f MiB\n", tSave, peakMiB());
    candidate_actions::invertAll(t);
    const double tSave2 = seconds([&] { candidate_store::save(db, t); });
    std::printf("persist again after an action (the file reuses the pages freed by the last write): %.1f s\n", tSave2);

    // The same write behind the window: how long the window's thread is held.
    {
        CandidateWriter writer(dbPath);
        candidate_actions::invertAll(t);
        const double tStart = seconds([&] { writer.start(t); });
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        const double tCancel = seconds([&] { writer.cancelAndJoin(); });
        std::printf("background write: start returns in %.2f ms; a click cancels it in %.1f ms\n", tStart * 1000, tCancel * 1000);
        candidate_actions::invertAll(t);
    }
    const uint64_t liveBefore = t.liveCount();
    r.table.reset();

    std::unique_ptr<CandidateTable> loaded;
    const double tLoad =
        seconds([&] { loaded = candidate_store::load(db, schema::CandidateKind::Combinations).table; });
    std::printf("reopen (column image): %.2f s (target 5 s), %llu live (%s)\n", tLoad,
                static_cast<unsigned long long>(loaded->liveCount()), loaded->liveCount() == liveBefore ? "same" : "DIFFERENT");
    loaded.reset();
    const double tLoadRows = seconds([&] {
        loaded = candidate_store::load(db, schema::CandidateKind::Combinations, nullptr, false).table;
    });
    std::printf("reopen (rows, when other code changed the table): %.2f s\n", tLoadRows);
    std::printf("peak memory: %.0f MiB\n", peakMiB());

    // The same actions as SQL over the stored rows.
    const qint64 total = static_cast<qint64>(rows);
    QString table = QStringLiteral("zuhe");
    if (sqlRows > 0 && sqlRows < total) {
        db.exec(QStringLiteral("DROP TABLE IF EXISTS zuhe_sample"));
        db.exec(QStringLiteral("CREATE TABLE zuhe_sample AS SELECT * FROM zuhe WHERE rowid <= %1").arg(sqlRows));
        table = QStringLiteral("zuhe_sample");
    }
    const double scale = table == QLatin1String("zuhe") ? 1.0 : static_cast<double>(total) / static_cast<double>(sqlRows);
    for (size_t i = 0; i < actions.size(); ++i) {
        const double s = seconds([&] {
            db.begin();
            for (QString sql : actions[i].statements) db.exec(sql.replace(QLatin1String("[zuhe]"), QStringLiteral("[%1]").arg(table)));
            db.commit();
        }) * scale;
        std::printf("%-12s as SQL UPDATE: %.1f s%s; in memory %.1f ms; ratio %.0f : 1\n", actions[i].name, s,
                    scale > 1 ? " (scaled)" : "", kernelTimes[i] * 1000, s / kernelTimes[i]);
    }
    return 0;
}
