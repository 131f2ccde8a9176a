#pragma once

// Pass rates: how often the history agreed with a filter. For one parameter, the share of the
// recent draws whose value of that parameter lies in the range (or the list) of its boxes, read
// from the draw arrays of fig, fighou or figquan; for the integrated filter, the share of the
// recent draws whose winning ticket its ticked boxes and tolerance would have kept, each draw
// judged with only the draws before it. Nothing of a candidate table is touched.

#include "filter/param/param_catalogue.h"
#include "filter/param/param_filter.h"
#include "workspace/shared_state.h"

#include <QString>

#include <optional>
#include <vector>

namespace pass_rate {

// The values a filter keeps: lo..hi, limits included, or the values of a list.
struct Accepted {
    bool isList = false;
    double lo = 0;
    double hi = -1;
    std::vector<double> values;

    static Accepted range(double lo, double hi) { return {false, lo, hi, {}}; }
    static Accepted list(std::vector<double> values) { return {true, 0, -1, std::move(values)}; }
    // The boxes of a parameter as its filter reads them: in list mode the values that the list
    // box (index 3) keeps by the filter's list test, else the low and high boxes by the
    // leading-number rule.
    static Accepted ofBoxes(const ParamWindowState& state, ParamId id);
    bool accepts(double v) const;
};

struct Rate {
    int draws = 0;
    int passed = 0;
    double share() const { return draws > 0 ? static_cast<double>(passed) / draws : 0.0; }
};

// The span of Combo1: the last `span` draws, 0 for every draw.
// Over a column of the zone's table (Znum, fig1, ...); none when the table lacks it.
std::optional<Rate> ofColumn(const DrawHistory& h, ZoneScope scope, const QString& column, int span,
                             const Accepted& accepted);

// Over the column that a parameter's range query reads; none for 自定区间, which has none.
std::optional<QString> columnOf(ParamId id);
std::optional<Rate> ofParam(const DrawHistory& h, const ParamWindowState& state, ParamId id, int span);

// The integrated filter of `state` (its ticked boxes, tolerance, sense and zone) on each draw's
// winning ticket, with the last draw and the omissions as they stood before that draw.
Rate ofIntegrated(const DrawHistory& h, const ParamWindowState& state, int span, int frontSize, int backSize);

}  // namespace pass_rate
