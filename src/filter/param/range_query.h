#pragma once

// The historical parameter range query of the filter window (frame "参数检索设置方式"): each
// parameter row's Combo1(i) chooses a span of recent draws, and the row's boxes are filled
// from what the history did there, over fig, fighou or figquan by the zone:
//
//   Option22 "范围查询"       plain: the low box takes Min, the high box Max
//   Option21 "均值差幅查询"   average: Int(Avg -/+ (Max - Min) / 200 * share), share = Combo2
//   Option36 "最值查询..."    top: the list box takes the most frequent values, as many as the
//                             count box says
//
// The draws come from the history held in memory (the same values as the tables' columns);
// a column the zone's table lacks is a failing statement, and leaves the boxes as they were.

#include "filter/param/param_catalogue.h"
#include "filter/param/param_filter.h"
#include "workspace/shared_state.h"

#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace range_query {

enum class Mode { Average, Top, Plain };  // Option21, Option36, Option22

inline const QString kAllSpans = QStringLiteral("前所有期");
inline constexpr int kAllRows = 20;  // Combo1(20) "所有参数检索"
inline constexpr int kComboCount = 27;
inline const QString kShareDefault = QStringLiteral("100");

// One row of Combo1: its parameter (the boxes) and the column read.
struct ComboRow {
    int combo;
    ParamId param;
    const char* column;
};
// The 26 parameter rows in Combo1 order (index 20 has none).
std::span<const ComboRow> rows();
std::optional<ComboRow> row(int combo);

// The items of every Combo1: "前所有期" (0), then "前10期" .. "前200期" (10 .. 200).
struct SpanItem {
    QString text;
    int data;
};
std::vector<SpanItem> spanItems();

// fig, fighou or figquan by the zone.
QString tableFor(ZoneScope scope);

// Start, the first excluded Idx: 0 for data 0, else Drawnum - n (negative: every draw counts).
int64_t start(int drawCount, int spanData);

// The values of a column over Idx > start; none when the table lacks the column.
std::optional<std::vector<double>> columnValues(const DrawHistory& h, ZoneScope scope, const QString& column,
                                                int64_t start);

// The text a box of this parameter shows for a value: "000" for a box three wide, "00" two
// wide, else plain; the width is that of the box's default upper limit ("999", "99", "9").
QString formatForBox(ParamId id, double value);

// Paramrange into the low and high boxes (index 0 and 1); false when nothing was written.
bool paramRange(ParamWindowState& s, ParamId id, bool average, const QString& spreadShare,
                const DrawHistory& h, ZoneScope scope, const QString& column, int64_t start);
// Paramtop into the list box (index 3): " " then each value and a blank, the most frequent
// first (ties by value), `count` of them, out of every value from Min to Max.
bool paramTop(ParamWindowState& s, ParamId id, double count, const DrawHistory& h, ZoneScope scope,
              const QString& column, int64_t start);

// A change of Combo1(combo) to the item with `spanData`: the row's boxes by the mode, or every
// row's for "所有参数检索". Returns the parameters whose boxes were written.
std::vector<ParamId> onSpanChosen(ParamWindowState& s, int combo, int spanData, Mode mode,
                                  const QString& spreadShare, const DrawHistory& h, ZoneScope scope);

// At load and on a tab change: Paramrange for every row over the whole history, averaged when
// Option21 is set, plain otherwise.
std::vector<ParamId> presetAll(ParamWindowState& s, bool average, const QString& spreadShare,
                               const DrawHistory& h, ZoneScope scope);

}  // namespace range_query
