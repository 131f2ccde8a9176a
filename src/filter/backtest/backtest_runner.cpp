#include "filter/backtest/backtest_runner.h"

#include "engine/kernel_executor.h"
#include "filter/filter_workspace.h"
#include "filter/param/param_filter.h"
#include "filter/super/super_filter.h"
#include "filter/templates/saved_setting_store.h"
#include "filter/templates/template_recorder.h"
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

template <typename T>
void zeroed(std::span<T> column) {
    KernelExecutor::shared().forEachSlice(column.size(), [&](uint64_t begin, uint64_t end) {
        std::fill(column.begin() + static_cast<ptrdiff_t>(begin), column.begin() + static_cast<ptrdiff_t>(end), T{});
    });
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
    zeroed(t.rowReasons());
    t.reasons().clear();
    if (t.hasParamValues()) zeroed(t.paramValues());
    if (t.hasSuperCount()) zeroed(t.superCount());
    if (t.hasFailCount()) zeroed(t.failCount());
    if (t.hasMatchIssue()) zeroed(t.matchIssue());
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

// The filter window's logic over the runner's table: the workspace without a record, its super
// filters with a history that each draw cuts, and the template's replay.
struct Runner::Parts {
    FilterWorkspace workspace{FilterSource::Expansion, QString()};
    std::unique_ptr<SuperFilter> super;
    std::unique_ptr<TemplateRecorder> recorder;

    // Runs the strategy on fresh flags with the history before the draw; returns the step after
    // which the winning ticket went dead for good (0 while it lives or is not in the table).
    int runStrategy(const Setup& setup, DrawHistoryView before, const std::optional<ParamWindowState>& setting,
                    const std::vector<uint64_t>& winner, EngineProgress& cancel);
    DrawRow rowOf(const Setup& setup, int d, const std::vector<uint64_t>& winner, int killedAt) const;
};

int Runner::Parts::runStrategy(const Setup& setup, DrawHistoryView before,
                               const std::optional<ParamWindowState>& setting,
                               const std::vector<uint64_t>& winner, EngineProgress& cancel) {
    const ParamContext context = ParamContext::fromHistory(before, setup.frontSize, setup.backSize);
    startAfresh(workspace.edit().table());
    workspace.setStepCode(0);
    workspace.keepSense = true;
    int killedAt = 0;
    const auto afterStep = [&](int step) {
        if (winner.empty()) return;
        const bool live = anyLive(workspace.table(), winner);
        if (!live && killedAt == 0) killedAt = step;
        if (live) killedAt = 0;
    };
    if (setting) {
        workspace.zoneScope = static_cast<int16_t>(setting->scope);
        const param_filter::IntegratedResult r =
            param_filter::runIntegrated(workspace.edit().table(), *setting, context, &cancel);
        if (!r.cancelled) afterStep(1);
        return killedAt;
    }
    workspace.zoneScope = 1;
    super->setHistory(before);
    recorder->setContext(context);
    ParamWindowState state = ParamWindowState::defaults();
    SuperInputs in;
    recorder->replay(state, in, ZoneScope::Front, &cancel, afterStep);
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
    for (int d = span.first; d <= span.last && !cancel.cancelled(); ++d) {
        const std::vector<uint64_t>& winner = winners[static_cast<size_t>(d - span.first)];
        const int killedAt =
            m_parts->runStrategy(m_setup, DrawHistoryView(m_setup.history, d - 1), setting, winner, cancel);
        // A draw cut short by the cancel is left out.
        if (cancel.cancelled()) break;
        result.rows.push_back(m_parts->rowOf(m_setup, d, winner, killedAt));
        if (listener) listener->drawDone(result.rows.back(), static_cast<int>(result.rows.size()), span.count());
    }
    result.cancelled = cancel.cancelled();
    result.summary = summarize(result.rows);
    return result;
}

}  // namespace backtest
