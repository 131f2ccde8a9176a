#include "filter/backtest/pass_rate.h"

#include "filter/backtest/backtest_runner.h"
#include "filter/param/range_query.h"

#include <algorithm>

namespace pass_rate {

Accepted Accepted::ofBoxes(const ParamWindowState& state, ParamId id) {
    const auto& box = state.box(id);
    if (!state.listMode) {
        return range(param_catalogue::leadingNumber(box[0]), param_catalogue::leadingNumber(box[1]));
    }
    // The values the parameter's list test keeps: a position keeps a value whose digits occur
    // anywhere in the list (" 13 " keeps 1, 3 and 13); the others keep the words written as
    // whole numbers (" 05 " keeps nothing).
    std::vector<double> values;
    if (param_catalogue::info(id).position > 0) {
        const QString padded = QLatin1Char(' ') + box[3] + QLatin1Char(' ');
        for (int v = 0; v < 256; ++v)
            if (padded.contains(QString::number(v))) values.push_back(v);
        return list(std::move(values));
    }
    for (const QString& word : box[3].split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        bool ok = false;
        const int v = word.toInt(&ok);
        if (ok && QString::number(v) == word) values.push_back(v);
    }
    return list(std::move(values));
}

bool Accepted::accepts(double v) const {
    if (isList) return std::ranges::find(values, v) != values.end();
    return v >= lo && v <= hi;
}

std::optional<Rate> ofColumn(const DrawHistory& h, ZoneScope scope, const QString& column, int span,
                             const Accepted& accepted) {
    const auto values = range_query::columnValues(h, scope, column, range_query::start(h.drawCount(), span));
    if (!values) return std::nullopt;
    Rate r;
    r.draws = static_cast<int>(values->size());
    r.passed = static_cast<int>(std::ranges::count_if(*values, [&](double v) { return accepted.accepts(v); }));
    return r;
}

std::optional<QString> columnOf(ParamId id) {
    for (const range_query::ComboRow& row : range_query::rows())
        if (row.param == id) return QString::fromLatin1(row.column);
    return std::nullopt;
}

std::optional<Rate> ofParam(const DrawHistory& h, const ParamWindowState& state, ParamId id, int span) {
    const auto column = columnOf(id);
    if (!column) return std::nullopt;
    return ofColumn(h, state.scope, *column, span, Accepted::ofBoxes(state, id));
}

namespace {

// The tally (Errnum) of each draw's winning ticket for the ticked boxes of `state`, each draw with
// the context before it. Tallies of separate boxes add up: a run counts each box's misses apart.
void addTallies(const DrawHistory& h, int64_t from, const ParamWindowState& state, int frontSize, int backSize,
                std::vector<int>& fails) {
    const auto n = static_cast<uint64_t>(fails.size());
    if (n == 0 || std::ranges::none_of(state.integratedBox, [](bool b) { return b; })) return;
    const bool perDraw = backtest::readsHistory(state);
    // Without history the tickets of all draws go through one run; else each alone, in turn.
    CandidateTable table(CandidateTable::Kind::Combinations, perDraw ? 1 : n);
    ParamContext before = ParamContext::fromHistory(DrawHistoryView(h, static_cast<int>(from - 1)), frontSize, backSize);
    for (uint64_t i = 0; i < n; ++i) {
        const DrawNumbers& draw = h.numbers[static_cast<size_t>(from) + i];
        const std::array<uint8_t, 7> numbers = backtest::winningTicket(draw);
        for (int k = 1; k <= 7; ++k) table.numberColumn(k)[perDraw ? 0 : i] = numbers[static_cast<size_t>(k - 1)];
        if (!perDraw) continue;
        backtest::startAfresh(table);
        param_filter::runIntegrated(table, state, before);
        fails[i] += table.failCountAt(0);
        before.advance(draw);
    }
    if (perDraw) return;
    param_filter::runIntegrated(table, state, before);
    for (uint64_t i = 0; i < n; ++i) fails[i] += table.failCountAt(i);
}

}  // namespace

Rate ofIntegrated(const DrawHistory& h, const ParamWindowState& state, int span, int frontSize, int backSize) {
    const int64_t from = std::max<int64_t>(range_query::start(h.drawCount(), span) + 1, 1);
    std::vector<int> fails(static_cast<size_t>(std::max<int64_t>(h.drawCount() - from + 1, 0)), 0);
    // The boxes over the last draw or the omissions draw by draw, the others all at once.
    ParamWindowState fixed = state, byDraw = state;
    byDraw.integratedBox.fill(false);
    for (int box : backtest::historyBoxes()) {
        fixed.integratedBox[static_cast<size_t>(box)] = false;
        byDraw.integratedBox[static_cast<size_t>(box)] = state.integratedBox[static_cast<size_t>(box)];
    }
    addTallies(h, from, fixed, frontSize, backSize, fails);
    addTallies(h, from, byDraw, frontSize, backSize, fails);
    // As the run kills by the tolerance and then flips every row for the mixed senses.
    const int allowed = state.useTolerance ? param_filter::allowedCount(state.txtRc0) : 0;
    const bool flip = state.keep != state.logicAnd;
    Rate r;
    r.draws = static_cast<int>(fails.size());
    r.passed = static_cast<int>(std::ranges::count_if(fails, [&](int f) { return (f > allowed) == flip; }));
    return r;
}

}  // namespace pass_rate
