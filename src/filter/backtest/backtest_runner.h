#pragma once

// The back-test of a filter strategy over past draws: for each draw of a span, the strategy runs
// on a fresh copy of the flags of one candidate table with only the draws before that draw as
// its history (the last draw, the omissions and the history filters all as they stood then),
// and the row of that draw tells whether its winning ticket survived, which step killed it, how
// many tickets were kept, what they cost and what they would have won.
//
// The table is made once and kept: between draws only its flags, reasons and scratch columns
// go back to the state of a fresh expansion. The runner owns the table through a filter
// workspace that writes no record, so filnum.db is read (moban, Canshu, zuheMoban) and never
// changed.
//
//   backtest::Runner runner({filterDb, session.history(), 35, 12, rules}, std::move(table));
//   backtest::Result r = runner.run(backtest::Strategy::filterTemplate(), {100}, &listener);

#include "engine/candidate_table.h"
#include "filter/param/param_catalogue.h"
#include "filter/param/param_filter.h"
#include "prize/prize_rules.h"
#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class SqliteDb;

namespace backtest {

inline constexpr int kDefaultSpan = 100;

// The table tested on: every ticket of the zone sizes, or the current picks' expansion.
enum class Space { Full, Picks };

// What is tested: the filter template (moban) with every step in order, or a saved setting
// (Canshu) run as the integrated filter with its boxes, in the zone it is given.
struct Strategy {
    enum class Kind { Template, Setting };
    Kind kind = Kind::Template;
    QString settingName;
    ZoneScope settingScope = ZoneScope::Front;

    static Strategy filterTemplate() { return {}; }
    static Strategy setting(const QString& name, ZoneScope scope = ZoneScope::Front) {
        return {Kind::Setting, name, scope};
    }
};

// One tested draw.
struct DrawRow {
    int draw = 0;          // Idx of the draw
    int32_t issue = 0;     // its issue number
    bool inTable = false;  // its winning ticket is one of the table's tickets
    bool survived = false;
    int killingStep = 0;  // the step (from 1) after which the winning ticket stayed dead; 0 none
    uint64_t kept = 0;
    int64_t cost = 0;      // kept tickets at the ticket price
    int64_t winnings = 0;  // the kept tickets' prizes under the workspace's rules
};

struct Summary {
    int draws = 0;
    int survived = 0;
    double survivalRate = 0;  // survived / draws, 0 without draws
    uint64_t medianKept = 0;  // the lower middle for an even count
    uint64_t minKept = 0;
    uint64_t maxKept = 0;
    int64_t totalCost = 0;
    int64_t totalWinnings = 0;
    int64_t net = 0;  // winnings minus cost
};
Summary summarize(std::span<const DrawRow> rows);

// The draws a span of the last `span` draws tests: from the later of draw 2 (a draw needs one
// before it) and drawCount - span + 1, to the last; a span of 0 tests every draw from 2.
struct DrawSpan {
    int first = 0;
    int last = -1;
    int count() const { return last >= first ? last - first + 1 : 0; }
};
DrawSpan spanOf(int drawCount, int span);

// Hears each finished draw and may stop the run between draws (and between the steps and
// chunks of a draw, whose unfinished row is then left out).
class Listener {
public:
    virtual ~Listener() = default;
    virtual void drawDone(const DrawRow& row, int done, int total) = 0;
    virtual bool cancelled() const { return false; }
};

struct Options {
    int span = kDefaultSpan;
    unsigned threads = 0;  // threads of the kernels; 0 keeps the engine's count
    // The leading steps that read no history run once for all draws (off: on each draw, which
    // gives the same rows; for tests).
    bool reuseLeadingSteps = true;
};

struct Result {
    std::vector<DrawRow> rows;  // the draws done, oldest first
    Summary summary;            // of those rows
    bool cancelled = false;
    QString error;  // why nothing ran (an unknown saved setting)
};

class Runner {
public:
    struct Setup {
        SqliteDb& filterDb;
        const DrawHistory& history;
        int frontSize = 35;
        int backSize = 12;
        PrizeRules rules = PrizeRules::defaults();
    };

    Runner(Setup setup, std::unique_ptr<CandidateTable> table);
    ~Runner();
    Runner(const Runner&) = delete;
    Runner& operator=(const Runner&) = delete;

    Result run(const Strategy& strategy, const Options& options, Listener* listener = nullptr);

    // The table as the last tested draw left it.
    const CandidateTable& table() const;

private:
    struct Parts;
    Setup m_setup;
    std::unique_ptr<Parts> m_parts;
};

// The Check1 boxes whose parameters read the last draw or the omissions (重上期个数, 遗漏极差,
// 遗漏数和), and whether an integrated run with these ticks reads them.
std::array<int, 3> historyBoxes();
bool readsHistory(const ParamWindowState& state);

// The winning ticket of a draw as a table holds it: the fronts ascending, then the backs.
std::array<uint8_t, 7> winningTicket(const DrawNumbers& draw);

// Puts every column that the filters change back to the state of a fresh expansion: all rows
// live, no reasons, the scratch columns 0.
void startAfresh(CandidateTable& table);

}  // namespace backtest
