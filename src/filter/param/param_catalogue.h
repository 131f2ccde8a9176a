#pragma once

#include <QString>

#include <array>
#include <optional>
#include <span>

// The 27 parameters of the filter window: each a button, a box array, an entry of the
// integrated list Check1, the draw column of the history that holds the same parameter, and
// the short name of its columns in the saved settings.
enum class ParamId : int {
    NumberSum,           // 各位数和
    SumLastDigit,        // 各位和个位
    ConsecutiveCount,    // 连号个数
    EvenCount,           // 偶数个数
    BigCount,            // 大数个数
    BigLastDigitCount,   // 个位大数
    Range1To10,          // 1~10区间
    Range11To20,         // 11~20区间
    Range21Up,           // 21以上
    Position1,           // 第1位
    Position2,           // 第2位
    Position3,           // 第3位
    Position4,           // 第4位
    Position5,           // 第5位
    LargestGap,          // 最大差值
    LastMinusFirst,      // 首尾差值
    RepeatsOfPrevious,   // 重上期个数
    AcComplexity,        // 复杂度(AC值)
    OddSum,              // 奇数之和
    EvenSum,             // 偶数之和
    LastDigitSum,        // 个位数和
    OmissionSum,         // 遗漏数和
    OmissionSpread,      // 遗漏极差
    SmallSum,            // 小数之和
    BigSum,              // 大数之和
    SameLastDigitCount,  // 同尾个数
    CustomRange,         // 自定区间
};

inline constexpr int kParamCount = 27;
// Entries of the integrated list Check1(0)..Check1(26).
inline constexpr int kIntegratedBoxCount = 27;

// The zone scope of the window, intQianHou.
enum class ZoneScope : int { Front = 1, Back = 2, Both = 3 };

struct ParamInfo {
    ParamId id;
    const char* button;      // "Option23"
    QString caption;         // button caption (front and back tabs)
    const char* boxes;       // "Text2"
    const char* drawColumn;  // "Znum"; empty for 自定区间
    int integratedBox;       // its own entry of Check1 (19 and 20 are captions that no run reads)
    QString upperDefault;    // box (1)
    QString countDefault;    // box (2)
    const char* snapshot;    // short name of its columns in moban/Canshu ("sh" -> sh_1, sh_2)
    const char* listColumn;  // list column in moban/Canshu ("sh")
    int position;            // 1..5 for 第1位..第5位, else 0
};

namespace param_catalogue {

const ParamInfo& info(ParamId id);
std::span<const ParamInfo> all();
// By button ("Option23") or by draw column ("Znum", "fig1"), case-insensitive.
std::optional<ParamId> byButton(const QString& name);
std::optional<ParamId> byDrawColumn(const QString& name);

// The caption a run writes into its reasons and the grid heading: in the both-zones scope
// 首尾差值 is "前后区同号"; 自定区间 reads "指定号码" in list mode.
QString caption(ParamId id, ZoneScope scope, bool listMode);

// Captions of Check1(0)..Check1(26); entry 15 follows the scope like the button.
QString integratedBoxCaption(int box, ZoneScope scope);
// Title of the parameter's column in the export (the AC value is "数字复杂度").
QString exportTitle(ParamId id, bool listMode);

// Whether the tab of `scope` leaves the button enabled.
bool enabledIn(ParamId id, ZoneScope scope);

// The integrated run: which parameter each ticked Check1 box drives, in the order of the run.
// Box 15 also drives 小数之和 and box 16 大数之和; boxes 19 and 20 drive nothing.
struct RunStep {
    int box;
    ParamId param;
};
std::span<const RunStep> integratedOrder();
// The Check1 box whose tick runs the parameter: its own entry, but 15 for 小数之和 and 16 for
// 大数之和.
int runBox(ParamId id);
// The export's order: the run without the five positions.
std::span<const RunStep> exportOrder();

// Box defaults: index 0 "0", (1) and (2) as the catalogue says, (3) empty. 自定区间's boxes
// are Text66(0) "0", (1) "9", (2) "9", (3) "0".
std::array<QString, 4> boxDefaults(ParamId id);

// The key filter of the parameter boxes: digits, "." and a blank pass, anything else beeps.
bool boxAcceptsKey(QChar c);
// Text1 of the grid takes digits only.
bool pageBoxAcceptsKey(QChar c);

// The leading-number rule of the boxes: the longest numeric prefix (blanks before it
// skipped, one sign, digits with at most one "."); "" and text give 0.
double leadingNumber(const QString& text);
// Whole numbers print without a decimal point.
QString formatNumber(double value);

}  // namespace param_catalogue
