// The candidate engine on all of 35/12 (21,425,712 tickets): expansion in memory, the actions of
// the filter window, the record in filnum.db (the column image after each action, closing and
// reopening, the derived relational table), each timed, with the file's size and the peak
// memory; beside them the same actions as SQL UPDATE statements on the stored table.
//
//   candidate_engine_bench [--dir DIR] [--part record|sql|all] [--sql-rows N]
// --part record (the default) times the record only; --part sql derives the relational table
// and times the SQL statements, which takes minutes. --sql-rows N runs the SQL comparison on the
// first N rows only and scales the time up.
#include "bench_timing.h"
#include "engine/candidate_kernels.h"
#include "engine/candidate_store.h"
#include "engine/candidate_writer.h"
#include "filter/candidate_actions.h"
#include "filter/param/param_filter.h"
#include "generation/expansion.h"
#include "workspace/sqlite_db.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <functional>

namespace {

using bench::peakMiB;
using bench::seconds;

struct SqlAction {
    const char* name;
    QStringList statements;
    std::function<void(CandidateTable&)> kernel;
};

const std::vector<SqlAction>& actions() {
    static const std::vector<SqlAction> list = {
        {"invert all",
         {"UPDATE [zuhe] SET [preunslt]=[unslt]",
          "UPDATE [zuhe] SET [unslt]=NOT [unslt], [Fliter]='全部反选-' || ifnull([Fliter],'')"},
         candidate_actions::invertAll},
        {"reset last",
         {"UPDATE [zuhe] SET [unslt]=0, [Fliter]='' WHERE [preunslt]=0 AND [unslt]=1"},
         candidate_actions::resetLast},
        {"invert last",
         {"UPDATE [zuhe] SET [tmpunslt]=[preunslt]", "UPDATE [zuhe] SET [preunslt]=[unslt]",
          "UPDATE [zuhe] SET [unslt]=NOT [unslt], [Fliter]='上次反选-' || ifnull([Fliter],'') WHERE "
          "[tmpunslt]=0"},
         candidate_actions::invertLast},
        {"reset all", {"UPDATE [zuhe] SET [unslt]=0, [Fliter]=''"}, candidate_actions::resetAll},
    };
    return list;
}

double fileMiB(const QString& path) { return static_cast<double>(QFileInfo(path).size()) / 1048576.0; }

void sumFilter(CandidateTable& t, int limit, const QString& reason) {
    const BitVector sel = candidate_kernels::select(t, [&](uint64_t row) {
        return t.numberColumn(1)[row] + t.numberColumn(2)[row] + t.numberColumn(3)[row] +
                   t.numberColumn(4)[row] + t.numberColumn(5)[row] >
               limit;
    });
    candidate_kernels::beginFilter(t);
    candidate_kernels::killSelected(t, sel, t.reasons().intern(reason));
    for (uint64_t r = 0; r < t.rowCount(); ++r)
        t.paramValues()[r] = static_cast<int16_t>(t.numberColumn(1)[r] + t.numberColumn(5)[r]);
}

// The record after each action: the image write (the background work), a window closed right
// after an action, the reopening, and the relational table derived when idle.
void timeRecord(CandidateTable& t, SqliteDb& db, const QString& dbPath) {
    const double rows = static_cast<double>(t.rowCount());
    const double tFirst = seconds([&] { candidate_store::saveImage(db, t); });
    std::printf("record at expansion (every column): %.2f s; filnum.db %.0f MiB\n", tFirst, fileMiB(dbPath));
    sumFilter(t, 100, QStringLiteral("各位数和大小:0 保留0~100"));
    const double tFilter = seconds([&] { candidate_store::saveImage(db, t); });
    std::printf("record after a parameter filter (flags, reasons, canshu): %.2f s (target 1 s)\n", tFilter);
    {
        // Nearly every row fails with texts of its own: the rows hold one formula's reasons.
        ParamWindowState state = ParamWindowState::defaults();
        state.scope = ZoneScope::Both;
        state.integratedBox.fill(true);
        param_filter::runIntegrated(t, state, ParamContext{});
        const double tIntegrated = seconds([&] { candidate_store::saveImage(db, t); });
        std::printf("record after the integrated filter in both zones, every box: %.2f s (target 1 s); %zu reasons; "
                    "filnum.db %.0f MiB\n",
                    tIntegrated, t.reasons().size(), fileMiB(dbPath));
    }
    for (const SqlAction& a : actions()) {
        a.kernel(t);
        const double cpu0 = bench::cpuSeconds();
        const double s = seconds([&] { candidate_store::saveImage(db, t); });
        const double cpu = bench::cpuSeconds() - cpu0;
        std::printf("record after %-12s: %.2f s, %.2f s of CPU (target 1 s), %llu live\n", a.name, s, cpu,
                    static_cast<unsigned long long>(t.liveCount()));
    }
    {
        CandidateWriter writer(dbPath);
        candidate_actions::invertAll(t);
        writer.start(t);
        const double tClose = seconds([&] { writer.wait(); });
        std::printf("closing a window right after an action (waits for the image): %.2f s (target 1 s)\n",
                    tClose);
    }
    std::printf(
        "filnum.db with the image only: %.0f MiB (target 400 MiB); peak memory %.0f MiB = %.1f "
        "bytes/ticket\n",
        fileMiB(dbPath), peakMiB(), peakMiB() * 1048576.0 / rows);
    const uint64_t liveBefore = t.liveCount();
    for (int i = 0; i < 3; ++i) {
        std::unique_ptr<CandidateTable> loaded;
        const double cpu0 = bench::cpuSeconds();
        const double tLoad =
            seconds([&] { loaded = candidate_store::load(db, schema::CandidateKind::Combinations).table; });
        std::printf("reopen (column image): %.2f s, %.2f s of CPU (target 1 s), %llu live (%s)\n", tLoad,
                    bench::cpuSeconds() - cpu0, static_cast<unsigned long long>(loaded->liveCount()),
                    loaded->liveCount() == liveBefore ? "same" : "DIFFERENT");
    }
    std::printf("peak memory after reopening: %.0f MiB = %.1f bytes/ticket (target 30)\n", peakMiB(),
                peakMiB() * 1048576.0 / rows);
}

void timeSql(CandidateTable& t, SqliteDb& db, const QString& dbPath, qint64 sqlRows) {
    const double tDerive = seconds([&] { candidate_store::ensureRelational(db, t.kind(), nullptr, &t); });
    std::printf("relational table derived (in the background when idle): %.1f s; filnum.db %.0f MiB\n",
                tDerive, fileMiB(dbPath));
    std::unique_ptr<CandidateTable> loaded;
    const double tRows = seconds([&] {
        loaded = candidate_store::load(db, schema::CandidateKind::Combinations, nullptr, false).table;
    });
    std::printf("reading the relational rows (a table other code changed): %.1f s\n", tRows);
    loaded.reset();
    const qint64 total = static_cast<qint64>(t.rowCount());
    QString table = QStringLiteral("zuhe");
    if (sqlRows > 0 && sqlRows < total) {
        db.exec(QStringLiteral("DROP TABLE IF EXISTS zuhe_sample"));
        db.exec(QStringLiteral("CREATE TABLE zuhe_sample AS SELECT * FROM zuhe WHERE rowid <= %1").arg(sqlRows));
        table = QStringLiteral("zuhe_sample");
    }
    const double scale = table == QLatin1String("zuhe") ? 1.0 : static_cast<double>(total) / static_cast<double>(sqlRows);
    for (const SqlAction& a : actions()) {
        const double kernel = seconds([&] { a.kernel(t); });
        const double s =
            seconds([&] {
                db.begin();
                for (QString sql : a.statements)
                    db.exec(sql.replace(QLatin1String("[zuhe]"), QStringLiteral("[%1]").arg(table)));
                db.commit();
            }) *
            scale;
        std::printf("%-12s as SQL UPDATE: %.1f s%s; in memory %.1f ms; ratio %.0f : 1\n", a.name, s,
                    scale > 1 ? " (scaled)" : "", kernel * 1000, s / kernel);
    }
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    QTemporaryDir tmp;
    QString dir = tmp.path();
    QString part = QStringLiteral("record");
    qint64 sqlRows = 0;
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--dir")) dir = args[i + 1];
        if (args[i] == QLatin1String("--part")) part = args[i + 1];
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
    std::printf("expand 35/12: %llu tickets in %.3f s\n", static_cast<unsigned long long>(t.rowCount()),
                tExpand);
    for (const SqlAction& a : actions()) {
        const double s = seconds([&] { a.kernel(t); });
        std::printf("%-12s in memory: %.1f ms\n", a.name, s * 1000);
    }
    SqliteDb db;
    db.open(dbPath, true);
    if (part != QLatin1String("sql")) timeRecord(t, db, dbPath);
    if (part != QLatin1String("record")) {
        if (part == QLatin1String("sql")) candidate_store::saveImage(db, t);
        timeSql(t, db, dbPath, sqlRows);
    }
    return 0;
}
