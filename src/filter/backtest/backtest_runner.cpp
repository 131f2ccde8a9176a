#include "filter/backtest/backtest_runner.h"

#include "engine/kernel_executor.h"
#include "filter/candidate_actions.h"
#include "filter/filter_workspace.h"
#include "filter/param/param_filter.h"
#include "filter/super/super_filter.h"
#include "filter/templates/filter_snapshot.h"
#include "filter/templates/saved_setting_store.h"
#include "filter/templates/template_recorder.h"
#include "filter/templates/template_store.h"
#include "prize/prize_check.h"

#include <algorithm>
#include <optional>

namespace backtest {

namespace {

uint64_t ticketKey(const std::array<uint8_t, 7>& n) {
    uint64_t key = 0;
    for (uint8_t v : n) key = key << 8 | v;
    return key;
}

// The rows of the table that hold each tested draw's winning ticket, found in one pass.
std::vector<std::vector<uint64_t>> winnerRows(const CandidateTable& t, const DrawHistory& h, DrawSpan span) {
    std::vector<std::pair<uint64_t, int>> keys;  // key, draw - span.first
    for (int d = span.first; d <= span.last; ++d)
        keys.emplace_back(ticketKey(winningTicket(h.numbers[static_cast<size_t>(d)])), d - span.first);
    std::ranges::sort(keys);
    std::vector<std::vector<uint64_t>> rows(static_cast<size_t>(span.count()));
    if (t.numberCount() != 7 || keys.empty()) return rows;
    std::array<std::span<const uint8_t>, 7> cols;
    for (int k = 1; k <= 7; ++k) cols[static_cast<size_t>(k - 1)] = t.numberColumn(k);
    for (uint64_t r = 0; r < t.rowCount(); ++r) {
        uint64_t key = 0;
        for (const auto& c : cols) key = key << 8 | c[r];
        auto it = std::ranges::lower_bound(keys, std::pair<uint64_t, int>{key, -1});
        for (; it != keys.end() && it->first == key; ++it) rows[static_cast<size_t>(it->second)].push_back(r);
    }
    return rows;
}

bool anyLive(const CandidateTable& t, const std::vector<uint64_t>& rows) {
    return std::ranges::any_of(rows, [&](uint64_t r) { return !t.filteredOut().test(r); });
}

// The listener's cancel, for the kernels and the replay, which report rows and steps of their
// own that a back-test does not show.
class CancelOnly : public EngineProgress {
public:
    explicit CancelOnly(const Listener* listener) : m_listener(listener) {}
    void progress(uint64_t, uint64_t) override {}
    bool cancelled() const override { return m_listener && m_listener->cancelled(); }

private:
    const Listener* m_listener;
};

// A column filled with `saved` (0 where nothing was saved), spread over the threads.
template <typename T>
void refill(std::span<T> column, const std::vector<T>& saved = {}) {
    KernelExecutor::shared().forEachSlice(column.size(), [&](uint64_t begin, uint64_t end) {
        const auto to = column.begin() + static_cast<ptrdiff_t>(begin);
        if (saved.empty())
            std::fill(to, column.begin() + static_cast<ptrdiff_t>(end), T{});
        else
            std::copy(saved.begin() + static_cast<ptrdiff_t>(begin), saved.begin() + static_cast<ptrdiff_t>(end), to);
    });
}

// candidate_actions::restore of a snapshot kept for the next draw: written into the table's own
// columns, with no copy made on the way.
void restoreKept(CandidateTable& t, const candidate_actions::Snapshot& s) {
    t.filteredOut() = s.filteredOut;
    t.previousFilteredOut() = s.previousFilteredOut;
    t.scratchFilteredOut() = s.scratchFilteredOut;
    t.groupMark() = s.groupMark;
    refill(t.rowReasons(), s.rowReasons);
    t.reasons() = s.reasons;
    if (t.hasParamValues()) refill(t.paramValues(), s.paramValues);
    if (t.hasSuperCount()) refill(t.superCount(), s.superCount);
    if (t.hasFailCount()) refill(t.failCount(), s.failCount);
    if (t.hasMatchIssue()) refill(t.matchIssue(), s.matchIssue);
    t.setNumberTextMode(s.numberTextMode);
    t.setBackNumberTextFilled(s.backNumberTextFilled);
}

}  // namespace

std::array<uint8_t, 7> winningTicket(const DrawNumbers& draw) {
    std::array<uint8_t, 7> n{};
    for (size_t k = 0; k < 7; ++k) n[k] = static_cast<uint8_t>(draw[k + 1]);
    std::sort(n.begin(), n.begin() + 5);
    std::sort(n.begin() + 5, n.end());
    return n;
}

void startAfresh(CandidateTable& t) {
    t.filteredOut().fill(false);
    t.previousFilteredOut().fill(false);
    t.scratchFilteredOut().fill(false);
    t.groupMark().fill(false);
    refill(t.rowReasons());
    t.reasons().clear();
    if (t.hasParamValues()) refill(t.paramValues());
    if (t.hasSuperCount()) refill(t.superCount());
    if (t.hasFailCount()) refill(t.failCount());
    if (t.hasMatchIssue()) refill(t.matchIssue());
    t.setNumberTextMode(CandidateTable::NumberTextMode::Null);
    t.setBackNumberTextFilled(false);
}

Summary summarize(std::span<const DrawRow> rows) {
    Summary s;
    s.draws = static_cast<int>(rows.size());
    if (rows.empty()) return s;
    std::vector<uint64_t> kept;
    for (const DrawRow& r : rows) {
        s.survived += r.survived ? 1 : 0;
        s.totalCost += r.cost;
        s.totalWinnings += r.winnings;
        kept.push_back(r.kept);
    }
    std::ranges::sort(kept);
    s.survivalRate = static_cast<double>(s.survived) / s.draws;
    s.medianKept = kept[(kept.size() - 1) / 2];
    s.minKept = kept.front();
    s.maxKept = kept.back();
    s.net = s.totalWinnings - s.totalCost;
    return s;
}

DrawSpan spanOf(int drawCount, int span) {
    DrawSpan s;
    s.last = drawCount;
    s.first = span <= 0 ? 2 : std::max(2, drawCount - span + 1);
    return s;
}

std::array<int, 3> historyBoxes() {
    return {param_catalogue::runBox(ParamId::RepeatsOfPrevious), param_catalogue::runBox(ParamId::OmissionSpread),
            param_catalogue::runBox(ParamId::OmissionSum)};
}

bool readsHistory(const ParamWindowState& state) {
    return std::ranges::any_of(historyBoxes(),
                               [&](int box) { return state.integratedBox[static_cast<size_t>(box)]; });
}

namespace {

// The leading steps of a template that read nothing of the history: the history filters do, and
// an integrated step that ticks a parameter of the last draw or the omissions (with the boxes as
// the steps before it left them, as a null column keeps its control).
int leadingStepsWithoutHistory(const std::vector<QVariantMap>& rows) {
    ParamWindowState state = ParamWindowState::defaults();
    int steps = 0;
    for (const QVariantMap& row : rows) {
        const int code = filter_snapshot::column(row, QStringLiteral("intCmdnb")).toInt();
        if (code >= 4 && code <= 6) break;
        if (code == 0) {
            filter_snapshot::applySnapshot(row, state);
            if (readsHistory(state)) break;
        }
        ++steps;
    }
    return steps;
}

// The step after which a winning ticket went dead and stayed so: `killedAt` after `step`.
void track(int& killedAt, bool live, int step) {
    if (live)
        killedAt = 0;
    else if (killedAt == 0)
        killedAt = step;
}

// Stops a replay once its first `steps` steps have run, or when the player cancels.
class StopAfterSteps : public EngineProgress {
public:
    StopAfterSteps(int steps, const EngineProgress& cancel) : m_steps(steps), m_cancel(cancel) {}
    void progress(uint64_t, uint64_t) override {}
    bool cancelled() const override { return m_done >= m_steps || m_cancel.cancelled(); }
    void stepDone(int step) { m_done = step; }

private:
    int m_steps;
    int m_done = 0;
    const EngineProgress& m_cancel;
};

}  // namespace

// The filter window's logic over the runner's table: the workspace without a record, its super
// filters with a history that each draw cuts, and the template's replay. The leading steps that
// read no history give every draw the same table: they run once, and their result is put back
// before each draw in place of fresh flags.
struct Runner::Parts {
    FilterWorkspace workspace{FilterSource::Expansion, QString()};
    std::unique_ptr<SuperFilter> super;
    std::unique_ptr<TemplateRecorder> recorder;

    struct Prefix {
        int steps = 0;
        candidate_actions::Snapshot table;
        ParamWindowState state = ParamWindowState::defaults();
        SuperInputs in;
        int16_t stepCode = 0;
        int16_t zoneScope = 1;
        bool keepSense = true;
        std::vector<int> killedAt;  // per tested draw
    };
    Prefix prefix;

    // Runs the leading steps without history once on fresh flags (all steps of a setting that
    // reads none); false when the player cancelled meanwhile.
    bool runPrefix(const Setup& setup, const std::optional<ParamWindowState>& setting, bool reuse,
                   const std::vector<std::vector<uint64_t>>& winners, const EngineProgress& cancel);
    // Runs the rest of the strategy with the history before the draw (index `i` of the span);
    // returns the step after which the winning ticket went dead for good (0 while it lives or is
    // not in the table).
    int runStrategy(const Setup& setup, DrawHistoryView before, const std::optional<ParamWindowState>& setting,
                    const std::vector<uint64_t>& winner, size_t i, EngineProgress& cancel);
    DrawRow rowOf(const Setup& setup, int d, const std::vector<uint64_t>& winner, int killedAt) const;

private:
    // The table, the window's state and the boxes as a draw starts.
    void startDraw(ParamWindowState& state, SuperInputs& in);
};

bool Runner::Parts::runPrefix(const Setup& setup, const std::optional<ParamWindowState>& setting, bool reuse,
                              const std::vector<std::vector<uint64_t>>& winners, const EngineProgress& cancel) {
    prefix = Prefix{};
    const int steps = !reuse   ? 0
                      : setting ? (readsHistory(*setting) ? 0 : 1)
                                : leadingStepsWithoutHistory(TemplateStore(setup.filterDb).rows());
    startAfresh(workspace.edit().table());
    prefix.killedAt.assign(winners.size(), 0);
    if (steps == 0) {
        prefix.table = candidate_actions::snapshot(workspace.edit().table());
        return !cancel.cancelled();
    }
    workspace.setStepCode(0);
    workspace.keepSense = true;
    StopAfterSteps stop(steps, cancel);
    const auto afterStep = [&](int step) {
        for (size_t i = 0; i < winners.size(); ++i)
            if (!winners[i].empty()) track(prefix.killedAt[i], anyLive(workspace.table(), winners[i]), step);
        stop.stepDone(step);
    };
    if (setting) {
        workspace.zoneScope = static_cast<int16_t>(setting->scope);
        const ParamContext context = ParamContext::fromHistory(setup.history, setup.frontSize, setup.backSize);
        if (param_filter::runIntegrated(workspace.edit().table(), *setting, context, &stop).cancelled) return false;
        afterStep(1);
    } else {
        workspace.zoneScope = 1;
        recorder->replay(prefix.state, prefix.in, ZoneScope::Front, &stop, afterStep);
    }
    if (cancel.cancelled()) return false;
    prefix.steps = steps;
    prefix.table = candidate_actions::snapshot(workspace.edit().table());
    prefix.stepCode = workspace.stepCode();
    prefix.zoneScope = workspace.zoneScope;
    prefix.keepSense = workspace.keepSense;
    return true;
}

void Runner::Parts::startDraw(ParamWindowState& state, SuperInputs& in) {
    restoreKept(workspace.edit().table(), prefix.table);
    workspace.setStepCode(prefix.stepCode);
    workspace.zoneScope = prefix.zoneScope;
    workspace.keepSense = prefix.keepSense;
    state = prefix.state;
    in = prefix.in;
}

int Runner::Parts::runStrategy(const Setup& setup, DrawHistoryView before,
                               const std::optional<ParamWindowState>& setting,
                               const std::vector<uint64_t>& winner, size_t i, EngineProgress& cancel) {
    ParamWindowState state;
    SuperInputs in;
    startDraw(state, in);
    int killedAt = prefix.killedAt[i];
    const auto afterStep = [&](int step) {
        if (!winner.empty()) track(killedAt, anyLive(workspace.table(), winner), step);
    };
    const ParamContext context = ParamContext::fromHistory(before, setup.frontSize, setup.backSize);
    if (setting) {
        if (prefix.steps == 1) return killedAt;
        workspace.zoneScope = static_cast<int16_t>(setting->scope);
        if (!param_filter::runIntegrated(workspace.edit().table(), *setting, context, &cancel).cancelled)
            afterStep(1);
        return killedAt;
    }
    super->setHistory(before);
    recorder->setContext(context);
    recorder->replay(state, in, ZoneScope::Front, &cancel, afterStep, prefix.steps + 1);
    return killedAt;
}

DrawRow Runner::Parts::rowOf(const Setup& setup, int d, const std::vector<uint64_t>& winner, int killedAt) const {
    const CandidateTable& t = workspace.table();
    const DrawNumbers& numbers = setup.history.numbers[static_cast<size_t>(d)];
    DrawRow row;
    row.draw = d;
    row.issue = numbers[0];
    row.inTable = !winner.empty();
    row.survived = anyLive(t, winner);
    row.killingStep = row.survived ? 0 : killedAt;
    row.kept = t.liveCount();
    row.cost = static_cast<int64_t>(row.kept) * prize_rules::kTicketCost;
    CheckDraw draw;
    draw.issue = row.issue;
    for (size_t k = 0; k < draw.numbers.size(); ++k) draw.numbers[k] = numbers[k + 1];
    row.winnings = PrizeCheck::run(t, draw, setup.rules).keptPrizeSum().value_or(0);
    return row;
}

Runner::Runner(Setup setup, std::unique_ptr<CandidateTable> table)
    : m_setup(std::move(setup)), m_parts(std::make_unique<Parts>()) {
    m_parts->workspace.openUnrecorded(std::move(table));
    m_parts->super =
        std::make_unique<SuperFilter>(m_parts->workspace, m_setup.history, m_setup.frontSize, m_setup.filterDb);
    m_parts->recorder = std::make_unique<TemplateRecorder>(
        m_parts->workspace, *m_parts->super, m_setup.filterDb,
        ParamContext::fromHistory(m_setup.history, m_setup.frontSize, m_setup.backSize));
}

Runner::~Runner() = default;

const CandidateTable& Runner::table() const { return m_parts->workspace.table(); }

Result Runner::run(const Strategy& strategy, const Options& options, Listener* listener) {
    Result result;
    std::optional<ParamWindowState> setting;
    if (strategy.kind == Strategy::Kind::Setting) {
        setting = ParamWindowState::defaults();
        if (!saved_setting_store::load(m_setup.filterDb, strategy.settingName, *setting)) {
            result.error = QStringLiteral("no saved setting named %1").arg(strategy.settingName);
            return result;
        }
        setting->scope = strategy.settingScope;
    }
    std::optional<KernelExecutor::ScopedThreadCount> threads;
    if (options.threads > 0) threads.emplace(options.threads);

    const DrawSpan span = spanOf(m_setup.history.drawCount(), options.span);
    const auto winners = winnerRows(m_parts->workspace.table(), m_setup.history, span);
    CancelOnly cancel(listener);
    if (span.count() == 0) return result;
    if (!m_parts->runPrefix(m_setup, setting, options.reuseLeadingSteps, winners, cancel)) {
        result.cancelled = true;
        return result;
    }
    for (int d = span.first; d <= span.last && !cancel.cancelled(); ++d) {
        const auto i = static_cast<size_t>(d - span.first);
        const int killedAt =
            m_parts->runStrategy(m_setup, DrawHistoryView(m_setup.history, d - 1), setting, winners[i], i, cancel);
        // A draw cut short by the cancel is left out.
        if (cancel.cancelled()) break;
        result.rows.push_back(m_parts->rowOf(m_setup, d, winners[i], killedAt));
        if (listener) listener->drawDone(result.rows.back(), static_cast<int>(result.rows.size()), span.count());
    }
    result.cancelled = cancel.cancelled();
    result.summary = summarize(result.rows);
    return result;
}

}  // namespace backtest
