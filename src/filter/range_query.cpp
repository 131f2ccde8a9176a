#include "filter/range_query.h"

#include "workspace/draw_params_columns.h"
#include "workspace/schema.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace range_query {

namespace {

using P = ParamId;

constexpr ComboRow kRows[] = {
    {0, P::Option23, "Znum"},      {1, P::Option3, "Sumgwnum"},  {2, P::Option2, "Lxnum"},     {3, P::Option4, "Onum"},
    {4, P::Option5, "Mornum"},     {5, P::Option8, "Bignum"},    {6, P::Option9, "Qnum0"},     {7, P::Option10, "Qnum1"},
    {8, P::Option11, "Qnum2"},     {9, P::Option12, "intyljz"},  {10, P::Option13, "fig1"},    {11, P::Option14, "fig2"},
    {12, P::Option15, "fig3"},     {13, P::Option16, "fig4"},    {14, P::Option17, "fig5"},    {15, P::Option39, "XZnum"},
    {16, P::Option40, "DZnum"},    {17, P::Option6, "Mxzounum"}, {18, P::Option7, "Apzounum"}, {19, P::Option20, "Cnum"},
    {21, P::Option24, "Fcodp"},    {22, P::Option35, "Zynum"},   {23, P::Option34, "Zgnum"},   {24, P::Option33, "Zonum"},
    {25, P::Option32, "Zjnum"},    {26, P::Option41, "Modenum"},
};

const TableDef& tableDef(ZoneScope scope) {
    static const TableDef front = schema::fig(), back = schema::fighou(), both = schema::figquan();
    switch (scope) {
        case ZoneScope::Back: return back;
        case ZoneScope::Both: return both;
        case ZoneScope::Front: break;
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

int64_t start(int drawnum, int spanData) { return spanData == 0 ? 0 : int64_t{drawnum} - spanData; }

std::optional<std::vector<double>> columnValues(const DrawHistory& h, ZoneScope scope, const QString& column,
                                                int64_t start) {
    if (!hasColumn(scope, column)) return std::nullopt;
    const int slot = figSlot(scope, column);
    const std::vector<DrawParams>& params = scope == ZoneScope::Back ? h.back : scope == ZoneScope::Both ? h.both : h.front;
    std::vector<double> out;
    for (int64_t idx = std::max<int64_t>(start + 1, 1); idx <= h.drawnum(); ++idx) {
        const auto i = static_cast<size_t>(idx);
        if (slot > 0) {
            out.push_back(h.figarr[i][static_cast<size_t>(slot)]);
            continue;
        }
        if (i >= params.size()) break;
        const auto v = draw_columns::value(params[i], column);
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

bool paramRange(ParamWindowState& s, ParamId id, bool average, const QString& combo2, const DrawHistory& h,
                ZoneScope scope, const QString& column, int64_t start) {
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
    const double share = param_catalogue::leadingNumber(combo2);
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
    const auto n = count >= 1 ? static_cast<size_t>(std::min<double>(std::floor(count), static_cast<double>(table.size()))) : 0;
    for (size_t i = 0; i < n; ++i) list += QString::number(table[i].first) + QLatin1Char(' ');
    return true;
}

namespace {

bool fillRow(ParamWindowState& s, const ComboRow& r, int64_t from, Mode mode, const QString& combo2, const DrawHistory& h,
             ZoneScope scope) {
    const QString column = QString::fromLatin1(r.column);
    if (mode == Mode::Top)
        return paramTop(s, r.param, param_catalogue::leadingNumber(s.box(r.param)[2]), h, scope, column, from);
    return paramRange(s, r.param, mode == Mode::Average, combo2, h, scope, column, from);
}

}  // namespace

std::vector<ParamId> onCombo1(ParamWindowState& s, int combo, int spanData, Mode mode, const QString& combo2,
                              const DrawHistory& h, ZoneScope scope) {
    std::vector<ParamId> written;
    const int64_t from = start(h.drawnum(), spanData);
    if (combo == kAllRows) {
        for (const ComboRow& r : kRows)
            if (fillRow(s, r, from, mode, combo2, h, scope)) written.push_back(r.param);
        return written;
    }
    const auto r = row(combo);
    if (r && fillRow(s, *r, from, mode, combo2, h, scope)) written.push_back(r->param);
    return written;
}

std::vector<ParamId> presetAll(ParamWindowState& s, bool option21, const QString& combo2, const DrawHistory& h,
                               ZoneScope scope) {
    std::vector<ParamId> written;
    for (const ComboRow& r : kRows)
        if (fillRow(s, r, 0, option21 ? Mode::Average : Mode::Plain, combo2, h, scope)) written.push_back(r.param);
    return written;
}

}  // namespace range_query
