#include "filter/param/range_query.h"

#include "workspace/draw_params_columns.h"
#include "workspace/schema.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace range_query {

namespace {

using P = ParamId;

constexpr ComboRow kRows[] = {
    {0, P::NumberSum, "Znum"},
    {1, P::SumLastDigit, "Sumgwnum"},
    {2, P::ConsecutiveCount, "Lxnum"},
    {3, P::EvenCount, "Onum"},
    {4, P::BigCount, "Mornum"},
    {5, P::BigLastDigitCount, "Bignum"},
    {6, P::Range1To10, "Qnum0"},
    {7, P::Range11To20, "Qnum1"},
    {8, P::Range21Up, "Qnum2"},
    {9, P::OmissionSpread, "intyljz"},
    {10, P::Position1, "fig1"},
    {11, P::Position2, "fig2"},
    {12, P::Position3, "fig3"},
    {13, P::Position4, "fig4"},
    {14, P::Position5, "fig5"},
    {15, P::SmallSum, "XZnum"},
    {16, P::BigSum, "DZnum"},
    {17, P::LargestGap, "Mxzounum"},
    {18, P::LastMinusFirst, "Apzounum"},
    {19, P::RepeatsOfPrevious, "Cnum"},
    {21, P::AcComplexity, "Fcodp"},
    {22, P::OmissionSum, "Zynum"},
    {23, P::LastDigitSum, "Zgnum"},
    {24, P::EvenSum, "Zonum"},
    {25, P::OddSum, "Zjnum"},
    {26, P::SameLastDigitCount, "Modenum"},
};

const TableDef& tableDef(ZoneScope scope) {
    static const TableDef front = schema::frontDrawTable(), back = schema::backDrawTable(),
                          both = schema::wholeDrawTable();
    switch (scope) {
        case ZoneScope::Back:
            return back;
        case ZoneScope::Both:
            return both;
        case ZoneScope::Front:
            break;
    }
    return front;
}

bool hasColumn(ZoneScope scope, const QString& column) {
    for (const QString& c : tableDef(scope).columnNames())
        if (c.compare(column, Qt::CaseInsensitive) == 0) return true;
    return false;
}

// The number column fig<k> of a view: the draw's position k in fig and figquan, and 5 + k in
// fighou.
int figSlot(ZoneScope scope, const QString& column) {
    if (!column.startsWith(QLatin1String("fig"), Qt::CaseInsensitive) || column.size() != 4) return -1;
    const int k = column.right(1).toInt();
    if (k < 1) return -1;
    return scope == ZoneScope::Back ? 5 + k : k;
}

QString padded(double value, int width) {
    const auto v = static_cast<qint64>(value);
    if (v < 0) return QLatin1Char('-') + padded(static_cast<double>(-v), width);
    return QStringLiteral("%1").arg(v, width, 10, QLatin1Char('0'));
}

}  // namespace

std::span<const ComboRow> rows() { return kRows; }

std::optional<ComboRow> row(int combo) {
    for (const ComboRow& r : kRows)
        if (r.combo == combo) return r;
    return std::nullopt;
}

std::vector<SpanItem> spanItems() {
    std::vector<SpanItem> items{{kAllSpans, 0}};
    for (int j = 1; j <= 20; ++j) items.push_back({QStringLiteral("前%1期").arg(10 * j), 10 * j});
    return items;
}

QString tableFor(ZoneScope scope) { return tableDef(scope).name; }

int64_t start(int drawCount, int spanData) { return spanData == 0 ? 0 : int64_t{drawCount} - spanData; }

std::optional<std::vector<double>> columnValues(const DrawHistory& h, ZoneScope scope, const QString& column,
                                                int64_t start) {
    if (!hasColumn(scope, column)) return std::nullopt;
    const int slot = figSlot(scope, column);
    const std::vector<DrawParams>& params = scope == ZoneScope::Back   ? h.back
                                            : scope == ZoneScope::Both ? h.both
                                                                       : h.front;
    std::vector<double> out;
    for (int64_t idx = std::max<int64_t>(start + 1, 1); idx <= h.drawCount(); ++idx) {
        const auto i = static_cast<size_t>(idx);
        if (slot > 0) {
            out.push_back(h.numbers[i][static_cast<size_t>(slot)]);
            continue;
        }
        if (i >= params.size()) break;
        const auto v = draw_params_columns::value(params[i], column);
        if (!v) return std::nullopt;
        out.push_back(*v);
    }
    return out;
}

QString formatForBox(ParamId id, double value) {
    const int width = static_cast<int>(param_catalogue::info(id).upperDefault.size());
    if (width == 3 || width == 2) return padded(value, width);
    return param_catalogue::formatNumber(value);
}

bool paramRange(ParamWindowState& s, ParamId id, bool average, const QString& spreadShare,
                const DrawHistory& h, ZoneScope scope, const QString& column, int64_t start) {
    const auto values = columnValues(h, scope, column, start);
    if (!values || values->empty()) return false;  // Min and Max are null: the boxes keep their text
    const auto [lo, hi] = std::ranges::minmax(*values);
    auto& box = s.box(id);
    if (!average) {
        box[0] = formatForBox(id, lo);
        box[1] = formatForBox(id, hi);
        return true;
    }
    double sum = 0;
    for (double v : *values) sum += v;
    const double avg = sum / static_cast<double>(values->size());
    const double share = param_catalogue::leadingNumber(spreadShare);
    const auto margin = static_cast<float>((hi - lo) / 200.0 * share);
    box[0] = formatForBox(id, std::floor(avg - double{margin}));
    box[1] = formatForBox(id, std::floor(avg + double{margin}));
    return true;
}

bool paramTop(ParamWindowState& s, ParamId id, double count, const DrawHistory& h, ZoneScope scope,
              const QString& column, int64_t start) {
    const auto values = columnValues(h, scope, column, start);
    if (!values) return false;
    auto& list = s.box(id)[3];
    list = QStringLiteral(" ");
    if (values->empty()) return true;
    const auto [lo, hi] = std::ranges::minmax(*values);
    std::map<qint64, int> counts;
    for (auto v = static_cast<qint64>(lo); v <= static_cast<qint64>(hi); ++v) counts[v] = 0;
    for (double v : *values) ++counts[static_cast<qint64>(v)];
    std::vector<std::pair<qint64, int>> table(counts.begin(), counts.end());
    std::ranges::stable_sort(table, [](const auto& a, const auto& b) { return a.second > b.second; });
    const auto n =
        count >= 1
            ? static_cast<size_t>(std::min<double>(std::floor(count), static_cast<double>(table.size())))
            : 0;
    for (size_t i = 0; i < n; ++i) list += QString::number(table[i].first) + QLatin1Char(' ');
    return true;
}

namespace {

bool fillRow(ParamWindowState& s, const ComboRow& r, int64_t from, Mode mode, const QString& spreadShare,
             const DrawHistory& h, ZoneScope scope) {
    const QString column = QString::fromLatin1(r.column);
    if (mode == Mode::Top)
        return paramTop(s, r.param, param_catalogue::leadingNumber(s.box(r.param)[2]), h, scope, column,
                        from);
    return paramRange(s, r.param, mode == Mode::Average, spreadShare, h, scope, column, from);
}

}  // namespace

std::vector<ParamId> onSpanChosen(ParamWindowState& s, int combo, int spanData, Mode mode,
                                  const QString& spreadShare, const DrawHistory& h, ZoneScope scope) {
    std::vector<ParamId> written;
    const int64_t from = start(h.drawCount(), spanData);
    if (combo == kAllRows) {
        for (const ComboRow& r : kRows)
            if (fillRow(s, r, from, mode, spreadShare, h, scope)) written.push_back(r.param);
        return written;
    }
    const auto r = row(combo);
    if (r && fillRow(s, *r, from, mode, spreadShare, h, scope)) written.push_back(r->param);
    return written;
}

std::vector<ParamId> presetAll(ParamWindowState& s, bool average, const QString& spreadShare,
                               const DrawHistory& h, ZoneScope scope) {
    std::vector<ParamId> written;
    for (const ComboRow& r : kRows)
        if (fillRow(s, r, 0, average ? Mode::Average : Mode::Plain, spreadShare, h, scope))
            written.push_back(r.param);
    return written;
}

}  // namespace range_query
