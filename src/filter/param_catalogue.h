#pragma once

#include <QString>

#include <array>
#include <optional>
#include <span>

// The 27 parameters of the filter window: each a button, a box array, an entry of the
// integrated list Check1, the draw column of the history that holds the same parameter, and
// the short name of its columns in the saved settings.
enum class ParamId : int {
    Option23,  // 各位数和
    Option3,   // 各位和个位
    Option2,   // 连号个数
    Option4,   // 偶数个数
    Option5,   // 大数个数
    Option8,   // 个位大数
    Option9,   // 1~10区间
    Option10,  // 11~20区间
    Option11,  // 21以上
    Option13,  // 第1位
    Option14,  // 第2位
    Option15,  // 第3位
    Option16,  // 第4位
    Option17,  // 第5位
    Option6,   // 最大差值
    Option7,   // 首尾差值
    Option20,  // 重上期个数
    Option24,  // 复杂度(AC值)
    Option32,  // 奇数之和
    Option33,  // 偶数之和
    Option34,  // 个位数和
    Option35,  // 遗漏数和
    Option12,  // 遗漏极差
    Option39,  // 小数之和
    Option40,  // 大数之和
    Option41,  // 同尾个数
    Option66,  // 自定区间
};

inline constexpr int kParamCount = 27;
// Entries of the integrated list Check1(0)..Check1(26).
inline constexpr int kCheck1Count = 27;

// The zone scope of the window, intQianHou.
enum class ZoneScope : int { Front = 1, Back = 2, Both = 3 };

struct ParamInfo {
    ParamId id;
    const char* button;      // "Option23"
    QString caption;         // button caption (front and back tabs)
    const char* boxes;       // "Text2"
    const char* drawColumn;  // "Znum"; empty for 自定区间
    int check1;              // its own entry of Check1 (19 and 20 are captions that no run reads)
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
QString check1Caption(int box, ZoneScope scope);
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
