#pragma once

// The nineteen parameters of the six-number filter window over zuhef (six front numbers a row,
// fig1..fig6 ascending). Each is an option button, a check box and a pair of boxes lo, hi; a
// click computes the value of every row into canshu (the positions are read from their figure
// column instead) and then removes the live rows outside [lo, hi] (保留) or inside (排除),
// keeping the former flags for 过滤复位. No reason is written.

#include "engine/candidate_table.h"
#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <optional>
#include <span>

enum class SixParam : int {
    Sum,                // 各位数和
    SumLastDigit,       // 各位和个位
    ConsecutiveCount,   // 连号个数
    EvenCount,          // 偶数个数
    BigCount,           // 大数个数
    BigLastDigitCount,  // 个位大数
    Range1To10,         // 1~10区间
    Range11To20,        // 11~20区间
    Range21Up,          // 21以上
    Position1,          // 第1位 .. 第6位
    Position2,
    Position3,
    Position4,
    Position5,
    Position6,
    LargestGap,         // 最大差值
    LastMinusFirst,     // 首尾差值
    RepeatsOfPrevious,  // 重上期个数
    Complexity,         // 数字复杂度
};

inline constexpr int kSixParamCount = 19;

struct SixParamInfo {
    SixParam id;
    const char* option;   // "Option23"
    QString caption;      // "各位数和："
    const char* boxes;    // "Text2": boxes Text2(0) lo and Text2(1) hi
    int lo, hi;           // the boxes' defaults
    const char* english;  // the command line's name
    const char* key;      // the saved setting's columns, key_1 and key_2
    int position;         // 1..6 for 第1位..第6位, else 0
    const char* drawColumn;  // the column of the draws' table the range query reads; "" for none
};

namespace six_params {

std::span<const SixParamInfo> all();
const SixParamInfo& info(SixParam id);
std::optional<SixParam> byEnglish(const QString& name);

// What the computations read besides the row: the front zone's size (Bitnum) and the front
// numbers of the latest draw.
struct Context {
    int frontSize = 35;
    std::array<bool, kNumberSlots> lastDrawFront{};
};

// The range query of a parameter row: Min and Max of its draw column over the draws after
// range_query::start (the span of Combo1); none for 第6位, which the draws lack, or no draws.
std::optional<std::pair<int, int>> historyRange(SixParam id, const DrawHistory& h, int spanData);

// The parameter's value for one row's six numbers.
int value(SixParam id, const std::array<uint8_t, 6>& row, const Context& ctx);

// The boxes' texts read as the statement reads them: the leading numbers, as whole bounds.
struct Bounds {
    int low = 0, high = 0;
    bool contains(int v) const { return v >= low && v <= high; }
};
Bounds bounds(const QString& lo, const QString& hi);

// Writes every row's value into canshu (the positions need none: their filter reads the figure).
void computeValues(CandidateTable& table, SixParam id, const Context& ctx);
// The value the filter compares: canshu, or the figure of a position.
int filterValue(const CandidateTable& table, SixParam id, uint64_t row);

struct Result {
    uint64_t killed = 0;
    QString heading;  // the grid's column after 第六位: the parameter's name
};

// A click on the parameter's button with the boxes' texts (read as the leading number, as
// the statement reads them) and the mode 保留 (`keep`) or 排除.
Result run(CandidateTable& table, SixParam id, const QString& lo, const QString& hi, bool keep,
           const Context& ctx);

}  // namespace six_params
