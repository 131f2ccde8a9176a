// shuangqu-wheelgen: searches a small wheel for a guarantee and writes it as text, a ticket of
// positions a line. Started from a shipped table (--start) it tries to improve it; Ctrl+C stops
// the search and keeps the best wheel found so far. With --family it works on the tables of
// the wheel menus kept in the data folder: each is made when missing and replaced only by a
// smaller wheel that passes the check.
#include "generation/wheels/cyclic_search.h"
#include "generation/wheels/wheel_catalogue.h"
#include "generation/wheels/wheel_check.h"
#include "generation/wheels/wheel_search.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>

#include <csignal>
#include <cstdio>
#include <optional>

namespace {

std::atomic<bool> g_cancel{false};

void onInterrupt(int) { g_cancel = true; }

int fail(const QString& message) {
    std::fprintf(stderr, "shuangqu-wheelgen: %s\n", qPrintable(message));
    return 2;
}

std::optional<wheels::Family> familyOf(const QString& word) {
    for (wheels::Family f :
         {wheels::Family::Basic, wheels::Family::Super, wheels::Family::Banker, wheels::Family::Six})
        if (wheels::familyWord(f) == word) return f;
    return std::nullopt;
}

// The table's line of the wheel list in docs/: its size against the best known.
void reportTable(const wheels::WheelTable& table, const QString& dataDir) {
    const QString file = QDir(dataDir).filePath(wheels::familyWord(table.family) + QLatin1Char('/') +
                                                table.name + QStringLiteral(".txt"));
    const wheels::Guarantee& g = table.design;
    size_t tickets = 0;
    if (table.single() || table.full())
        tickets = wheels::builtDesign(table).size();
    else if (QFile::exists(file))
        tickets = wheels::readFile(file, g).blocks.size();
    const QString ratio = table.bestKnown && tickets
                              ? QString::number(double(tickets) / table.bestKnown, 'f', 3)
                              : QStringLiteral("-");
    std::printf("| %s | %s | %d | %d | 中%d保%d | %s | %zu | %s | %s |\n",
                qPrintable(wheels::familyWord(table.family)), qPrintable(table.name), table.picks,
                table.bankers, table.drawn, table.held,
                qPrintable(table.single() ? QStringLiteral("one ticket")
                           : table.full() ? QStringLiteral("every ticket")
                                          : g.name()),
                tickets, table.bestKnown ? qPrintable(QString::number(table.bestKnown)) : "-",
                qPrintable(ratio));
}

// The cycles a turning-invariant wheel is searched over: all positions, all but one, and two
// halves (with one position staying when n is odd), unless --periods names others.
std::vector<int> g_periods;

std::vector<int> cyclePeriods(int n) {
    std::vector<int> periods;
    for (int p : g_periods)
        if (p >= 2 && p <= n) periods.push_back(p);
    return periods.empty() ? std::vector<int>{n, n - 1, n / 2} : periods;
}

// The smallest of the turning-invariant wheels over each choice of cycles, each searched for its
// share of `seconds`, when it is smaller than `start`: the start of the free search.
std::vector<wheels::Block> cyclicStart(const wheels::Guarantee& g, const wheels::SearchOptions& options,
                                       double seconds, std::vector<wheels::Block> start) {
    if (seconds <= 0) return start;
    const std::vector<int> periods = cyclePeriods(g.n);
    for (int period : periods) {
        const std::vector<wheels::Block> turned = wheels::searchCyclic(
            g, {options.seed, seconds / static_cast<double>(periods.size()), 1, options.cancel, period});
        if (turned.empty() || !wheels::check({g, turned}).holds) continue;
        std::fprintf(stderr, "%s: a wheel of %zu tickets turning in cycles of %d\n", qPrintable(g.name()),
                     turned.size(), period);
        if (start.empty() || turned.size() < start.size()) start = turned;
    }
    return start;
}

// Makes or improves one table's file; 0 when the file holds a valid wheel afterwards.
int improveTable(const wheels::WheelTable& table, const QString& dataDir, wheels::SearchOptions options,
                 double cyclicSeconds) {
    const QString folder = QDir(dataDir).filePath(wheels::familyWord(table.family));
    QDir().mkpath(folder);
    const QString file = QDir(folder).filePath(table.name + QStringLiteral(".txt"));
    const wheels::Guarantee& g = table.design;
    std::vector<wheels::Block> kept;
    if (QFile::exists(file)) {
        const wheels::ReadResult read = wheels::readFile(file, {g.n, g.k, g.p, std::max(g.t, 1)});
        if (!read.error.isEmpty()) return fail(read.error);
        kept = read.blocks;
    }
    std::vector<wheels::Block> found;
    if (table.single() || table.full()) {
        found = wheels::builtDesign(table);
    } else if (kept.empty() || kept.size() > static_cast<size_t>(table.bestKnown)) {
        if (!kept.empty() && !wheels::check({g, kept}).holds)
            return fail(file + QStringLiteral(" does not keep its promise"));
        options.targetTickets = static_cast<size_t>(table.bestKnown);
        found = wheels::search(g, options, cyclicStart(g, options, cyclicSeconds, kept)).blocks;
        if (!found.empty() && !wheels::check({g, found}).holds)
            return fail(QStringLiteral("the search gave a wheel that fails"));
    }
    const bool better = !found.empty() && (kept.empty() || found.size() < kept.size());
    if (better) {
        const QString error = wheels::writeFile(file, found);
        if (!error.isEmpty()) return fail(error);
        kept = found;
    }
    if (kept.empty())
        return fail(QStringLiteral("no wheel for %1 %2").arg(wheels::familyWord(table.family), table.name));
    std::printf("%-7s %-7s %-16s %5zu tickets, best known %5d, ratio %.3f%s\n",
                qPrintable(wheels::familyWord(table.family)), qPrintable(table.name), qPrintable(g.name()),
                kept.size(), table.bestKnown, table.bestKnown ? double(kept.size()) / table.bestKnown : 0.0,
                better ? "  (new)" : "");
    std::fflush(stdout);
    return 0;
}

// The tool's command line.
struct ToolLine {
    QCommandLineParser parser;
    QCommandLineOption seed{QStringLiteral("seed"), QStringLiteral("First random seed (default 1)."),
                            QStringLiteral("S"), QStringLiteral("1")};
    QCommandLineOption threads{QStringLiteral("threads"), QStringLiteral("Independent searches (default 2)."),
                               QStringLiteral("T"), QStringLiteral("2")};
    QCommandLineOption target{QStringLiteral("target"), QStringLiteral("Stop at this many tickets."),
                              QStringLiteral("SIZE"), QStringLiteral("0")};
    QCommandLineOption moves{QStringLiteral("moves"), QStringLiteral("Moves per search (default 2000000)."),
                             QStringLiteral("M"), QStringLiteral("2000000")};
    QCommandLineOption seconds{QStringLiteral("seconds"), QStringLiteral("Stop after this long."),
                               QStringLiteral("S"), QStringLiteral("0")};
    QCommandLineOption start{QStringLiteral("start"), QStringLiteral("A valid wheel to improve."),
                             QStringLiteral("FILE")};
    QCommandLineOption out{QStringLiteral("out"),
                           QStringLiteral("Write the wheel here (default: standard output)."),
                           QStringLiteral("FILE")};
    QCommandLineOption cyclic{
        QStringLiteral("cyclic"),
        QStringLiteral("First search this long for a wheel that turning the positions round keeps, and start "
                       "from it when it is smaller."),
        QStringLiteral("S"), QStringLiteral("0")};
    QCommandLineOption periods{
        QStringLiteral("periods"),
        QStringLiteral("With --cyclic: the lengths of the cycles to try, as 7,5 (default n, n - 1, n / 2)."),
        QStringLiteral("LIST")};
    QCommandLineOption quiet{QStringLiteral("quiet"), QStringLiteral("No progress lines.")};
    QCommandLineOption family{
        QStringLiteral("family"),
        QStringLiteral("Work on the menus' tables of a family: basic, super, banker, six or all."),
        QStringLiteral("F")};
    QCommandLineOption table{QStringLiteral("table"),
                             QStringLiteral("The one table of the family (default: all)."),
                             QStringLiteral("NAME")};
    QCommandLineOption data{QStringLiteral("data"),
                            QStringLiteral("The tables' folder (default data/wheels)."),
                            QStringLiteral("DIR"), QStringLiteral("data/wheels")};
    QCommandLineOption report{
        QStringLiteral("report"),
        QStringLiteral("With --family: list the tables as a Markdown table, searching nothing.")};

    ToolLine() {
        parser.setApplicationDescription(QStringLiteral(
            "Searches a wheel of K-position tickets over positions 1..N such that whichever P positions "
            "are drawn, some ticket holds at least T of them (P = T: every T positions lie in a ticket)."));
        parser.addHelpOption();
        parser.addPositionalArgument(QStringLiteral("N K P T"),
                                     QStringLiteral("The positions, the ticket size, the guarantee."));
        parser.addOptions(
            {seed, threads, target, moves, seconds, cyclic, periods, start, out, quiet, family, table, data, report});
    }

    // The search's budget and seeds; nothing when one is not a number of 0 or more.
    std::optional<wheels::SearchOptions> searchOptions() const {
        bool ok = true;
        const auto number = [&](const QCommandLineOption& o) {
            bool good = false;
            const double v = parser.value(o).toDouble(&good);
            if (!good || v < 0) ok = false;
            return v;
        };
        wheels::SearchOptions options;
        options.seed = static_cast<uint64_t>(number(seed));
        options.threads = static_cast<int>(number(threads));
        options.targetTickets = static_cast<size_t>(number(target));
        options.movesPerThread = static_cast<uint64_t>(number(moves));
        options.seconds = number(seconds);
        options.cancel = &g_cancel;
        return ok ? std::optional(options) : std::nullopt;
    }
};

// --family: makes, improves or lists the menus' tables.
int runCatalogue(const ToolLine& line, wheels::SearchOptions options) {
    const QString word = line.parser.value(line.family);
    const std::optional<wheels::Family> only = familyOf(word);
    if (!only && word != QLatin1String("all")) return fail(QStringLiteral("no family \"%1\"").arg(word));
    const bool listing = line.parser.isSet(line.report);
    const QString dataDir = line.parser.value(line.data);
    int status = 0, matched = 0;
    if (listing)
        std::printf(
            "| family | table | picks | bankers | promise | design | tickets | best known | ratio |\n"
            "|---|---|---|---|---|---|---|---|---|\n");
    for (const wheels::WheelTable& t : wheels::catalogue()) {
        if (g_cancel) break;
        if ((only && t.family != *only) ||
            (line.parser.isSet(line.table) && t.name != line.parser.value(line.table)))
            continue;
        ++matched;
        if (listing)
            reportTable(t, dataDir);
        else
            status = std::max(status, improveTable(t, dataDir, options, line.parser.value(line.cyclic).toDouble()));
    }
    if (matched == 0)
        return fail(QStringLiteral("no table \"%1\" in that family").arg(line.parser.value(line.table)));
    return status;
}

// N K P T: one wheel, from scratch or from --start, to --out or standard output.
int runDesign(const ToolLine& line, wheels::SearchOptions options) {
    const QStringList args = line.parser.positionalArguments();
    if (args.size() != 4) return fail(QStringLiteral("give N K P T, e.g. 12 5 4 3"));
    const wheels::Guarantee g{args[0].toInt(), args[1].toInt(), args[2].toInt(), args[3].toInt()};
    if (!g.valid()) return fail(QStringLiteral("no such guarantee: %1").arg(args.join(QLatin1Char(' '))));

    std::vector<wheels::Block> begin;
    if (line.parser.isSet(line.start)) {
        const QString file = line.parser.value(line.start);
        const wheels::ReadResult read = wheels::readFile(file, g);
        if (!read.error.isEmpty()) return fail(read.error);
        if (!wheels::check({g, read.blocks}).holds)
            return fail(QStringLiteral("%1 does not keep %2").arg(file, g.name()));
        begin = read.blocks;
    }

    QElapsedTimer clock;
    clock.start();
    qint64 lastReport = -1000;
    if (!line.parser.isSet(line.quiet))
        options.progress = [&](const wheels::SearchProgress& p) {
            if (clock.elapsed() - lastReport < 1000) return;
            lastReport = clock.elapsed();
            std::fprintf(stderr, "%6.1f s  search %d: %zu tickets, %zu unmet, best %zu, %llu moves\n",
                         clock.elapsed() / 1000.0, p.thread, p.tickets, p.unsatisfied, p.bestTickets,
                         static_cast<unsigned long long>(p.moves));
        };
    begin = cyclicStart(g, options, line.parser.value(line.cyclic).toDouble(), begin);
    const wheels::SearchResult r = wheels::search(g, options, begin);
    if (r.blocks.empty() || !wheels::check({g, r.blocks}).holds)
        return fail(QStringLiteral("no valid wheel found for %1").arg(g.name()));
    std::fprintf(stderr, "%s: %zu tickets after %llu moves in %.1f s%s\n", qPrintable(g.name()),
                 r.blocks.size(), static_cast<unsigned long long>(r.moves), clock.elapsed() / 1000.0,
                 r.cancelled ? " (stopped)" : "");
    if (!line.parser.isSet(line.out)) {
        std::fputs(wheels::toText(r.blocks).toUtf8().constData(), stdout);
        return 0;
    }
    const QString error = wheels::writeFile(line.parser.value(line.out), r.blocks);
    return error.isEmpty() ? 0 : fail(error);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ToolLine line;
    line.parser.process(app);
    const std::optional<wheels::SearchOptions> options = line.searchOptions();
    if (!options)
        return fail(
            QStringLiteral("--seed, --threads, --target, --moves and --seconds take numbers of 0 or more"));
    for (const QString& p : line.parser.value(line.periods).split(QLatin1Char(','), Qt::SkipEmptyParts))
        g_periods.push_back(p.trimmed().toInt());
    std::signal(SIGINT, onInterrupt);
    return line.parser.isSet(line.family) ? runCatalogue(line, *options) : runDesign(line, *options);
}
