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
    std::vector<double> values;
    for (const QString& word : box[3].split(QLatin1Char(' '), Qt::SkipEmptyParts))
        values.push_back(param_catalogue::leadingNumber(word));
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

Rate ofIntegrated(const DrawHistory& h, const ParamWindowState& state, int span, int frontSize, int backSize) {
    Rate r;
    const int64_t from = std::max<int64_t>(range_query::start(h.drawCount(), span) + 1, 1);
    // The winning ticket alone, filtered afresh for each draw.
    CandidateTable ticket(CandidateTable::Kind::Combinations, 1);
    for (int64_t d = from; d <= h.drawCount(); ++d) {
        const std::array<uint8_t, 7> numbers = backtest::winningTicket(h.numbers[static_cast<size_t>(d)]);
        for (int k = 1; k <= 7; ++k) ticket.numberColumn(k)[0] = numbers[static_cast<size_t>(k - 1)];
        backtest::startAfresh(ticket);
        const DrawHistoryView before(h, static_cast<int>(d - 1));
        param_filter::runIntegrated(ticket, state, ParamContext::fromHistory(before, frontSize, backSize));
        ++r.draws;
        r.passed += ticket.filteredOut().test(0) ? 0 : 1;
    }
    return r;
}

}  // namespace pass_rate
