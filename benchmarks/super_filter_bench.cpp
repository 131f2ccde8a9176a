// The history filters on all of 35/12 (21,425,712 tickets) against every draw of the bundled
// history, each button and scope timed, beside the window's statements (three per draw) run in
// SQLite on the first N tickets, scaled up to the whole table, with the ratio. The other super
// filters are timed once each.
//
//   super_filter_bench [--sql-rows N | --no-sql] [--draws N] [--history FILE] [--history-only]
#include "bench_tables.h"
#include "bench_timing.h"
#include "filter/candidate_actions.h"
#include "filter/super/history_kernel.h"
#include "filter/super/super_filter.h"
#include "filter/super/super_kernels.h"
#include "generation/expansion.h"
#include "history/history_text.h"
#include "super_reference.h"
#include "workspace/sqlite_db.h"

#include <QCoreApplication>
#include <QFile>

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>

namespace {

using bench::seconds;

using bench::cpuSeconds;

DrawHistory readHistory(const QString& path) {
    DrawHistory h;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return h;
    int32_t issue = 0;
    while (!f.atEnd()) {
        const QByteArray line = f.readLine().trimmed();
        if (history_text::isBlank(line)) continue;
        const auto parsed = history_text::parseLine(line, issue);
        if (parsed.status != history_text::ParsedLine::Status::Ok) continue;
        issue = parsed.draw[0];
        h.numbers.push_back(parsed.draw);
    }
    h.front.resize(h.numbers.size());
    h.back.resize(h.numbers.size());
    h.both.resize(h.numbers.size());
    return h;
}

using bench::head;

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    uint64_t sqlRows = 2000;
    int64_t draws = -1;
    QString historyPath = QStringLiteral(SHUANGQU_DATA "/dlt_history.txt");
    if (args.contains(QStringLiteral("--no-sql"))) sqlRows = 0;
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--sql-rows")) sqlRows = args[i + 1].toULongLong();
        if (args[i] == QLatin1String("--draws")) draws = args[i + 1].toLongLong();
        if (args[i] == QLatin1String("--history")) historyPath = args[i + 1];
    }
    const DrawHistory history = readHistory(historyPath);
    if (draws < 0) draws = history.drawCount();

    ExpansionInput in;
    for (int n = 1; n <= 35; ++n) in.front.push_back(static_cast<int16_t>(n));
    for (int n = 1; n <= 12; ++n) in.back.push_back(static_cast<int16_t>(n));
    ExpansionResult r = expand(in);
    CandidateTable& t = *r.table;
    const double rows = static_cast<double>(t.rowCount());
    const double scale = sqlRows ? rows / static_cast<double>(sqlRows) : 0;
    const unsigned threads = std::max(1u, std::thread::hardware_concurrency());
    std::printf(
        "35/12: %llu tickets; %d draws in the history, %lld searched; SQL on the first %llu tickets, scaled "
        "x%.0f; "
        "%u threads\n",
        static_cast<unsigned long long>(t.rowCount()), history.drawCount(), static_cast<long long>(draws),
        static_cast<unsigned long long>(sqlRows), scale, threads);
    std::printf("%-10s %-6s %9s %9s %10s %12s %9s\n", "button", "scope", "wall ms", "cpu ms", "killed", "SQL ms", "ratio");

    // A first filter allocates the scratch columns (canshu, SKnum, JSqihao): done once ahead, as
    // any earlier filter of the window has done it.
    {
        history_kernel::HistoryRun warm{ZoneScope::Front, 5, QStringLiteral("历史同5号滤"),
                                        QStringLiteral("1"), 1};
        history_kernel::history(t, warm, history);
    }
    CandidateTable small = head(t, sqlRows);
    SqliteDb db;
    db.open(QStringLiteral(":memory:"), true);
    const struct {
        SuperButton button;
        ZoneScope scope;
    } runs[] = {{SuperButton::HistoryLow, ZoneScope::Front},
                {SuperButton::HistoryMiddle, ZoneScope::Front},
                {SuperButton::HistoryHigh, ZoneScope::Front},
                {SuperButton::HistoryLow, ZoneScope::Back},
                {SuperButton::HistoryLow, ZoneScope::Both}};
    for (const auto& run : runs) {
        candidate_actions::resetAll(t);
        history_kernel::HistoryRun h;
        h.scope = run.scope;
        h.threshold = super_filter::threshold(run.button, run.scope);
        h.caption = super_filter::caption(run.button, run.scope);
        h.nText = QString::number(draws);
        h.passes = draws;
        uint64_t killed = 0;
        const double c0 = cpuSeconds();
        const double wall = seconds([&] { killed = history_kernel::history(t, h, history); });
        const double cpu = cpuSeconds() - c0;
        double sql = 0;
        if (sqlRows) {
            candidate_actions::resetAll(small);
            small.setNumberTextMode(t.numberTextMode());
            super_reference::load(db, small);
            sql = seconds([&] { super_reference::history(db, h.scope, h.threshold, h.caption, h.nText, draws, history); }) * scale;
        }
        std::printf("%-10s %-6d %9.1f %9.1f %10llu %12.0f %9.0f\n", super_filter::objectName(run.button).toUtf8().constData(),
                    static_cast<int>(run.scope), wall * 1000, cpu * 1000, static_cast<unsigned long long>(killed), sql * 1000,
                    sql > 0 ? sql / wall : 0.0);
        std::fflush(stdout);
    }

    // The other super filters once each, on the whole table.
    if (args.contains(QStringLiteral("--history-only"))) return 0;
    const std::vector<int16_t> nums{3, 12, 25};
    const auto once = [&](const char* name, const std::function<uint64_t()>& fn) {
        candidate_actions::resetAll(t);
        uint64_t killed = 0;
        const double wall = seconds([&] { killed = fn(); });
        std::printf("%-28s %9.1f ms %10llu killed\n", name, wall * 1000, static_cast<unsigned long long>(killed));
    };
    once("relation 相克 03 12 25", [&] {
        return super_kernels::relation(t, super_kernels::Relation::Conflicting, nums,
                                       QStringLiteral("相克号过滤"));
    });
    once("relation 相生 03 12 25", [&] {
        return super_kernels::relation(t, super_kernels::Relation::Supporting, nums,
                                       QStringLiteral("相生号过滤"));
    });
    super_kernels::InclusionRun inc{ZoneScope::Both, {3, 12, 25, 7, 9}, 2, {7}, QStringLiteral("相克号包含过滤")};
    once("inclusion kill 5 numbers", [&] { return super_kernels::inclusionKill(t, inc); });
    once("inclusion keep 5 numbers", [&] { return super_kernels::inclusionKeep(t, inc); });
    std::unordered_set<uint64_t> keys;
    for (uint64_t row = 0; row < t.rowCount(); row += 97) keys.insert(super_kernels::rowKey(t, row));
    once("same as template (1/97)", [&] { return super_kernels::sameAsTemplate(t, keys); });
    return 0;
}
