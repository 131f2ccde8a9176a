#pragma once

// The super filter frame "超级过滤" of the filter window: the relation filters Option25(0..2),
// the history filters Option26, Option28, Option27, the inclusion filters Option31 and
// Option30, and the same-as-template filter Option43. A click asks for its input through a
// chain of prompts; the left button then runs the worker, the right button sets intCmdnb and
// asks the window for the popup mnuAdm, whose closing records the step (template_recorder.h).
// Replay calls the workers directly with the stored input.

#include "engine/engine_progress.h"
#include "filter/filter_workspace.h"
#include "filter/param/param_catalogue.h"
#include "filter/super/super_kernels.h"
#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <optional>
#include <set>

class Prompter;
class SqliteDb;

// What the window keeps of the super filters' input between clicks: sknum (as typed, or as a
// template step stored it), skzu, sk(0..9), dannum, dan(0..9) and skPattern.
struct SuperInputs {
    QString superCount;
    int16_t groupSize = 0;
    std::array<int16_t, 10> superNumbers{};
    QString bankerCount;
    std::array<int16_t, 10> bankers{};
    QString patternText;
};

enum class SuperButton {
    RelationConflicting,
    RelationSupporting,
    RelationKeeping,
    HistoryHigh,
    HistoryMiddle,
    HistoryLow,
    InclusionKill,
    InclusionKeep,
    SameAsTemplate
};

namespace super_filter {

inline const QString kInputError = QStringLiteral("输入错误");
inline const QString kInOrder = QStringLiteral("请按照号码排列依次输入数字");
inline const QString kAskNumber = QStringLiteral("请输入数字");
// Consecutive wrong answers after which a prompt gives up as if cancelled.
inline constexpr int kMaxRetries = 100;

// "Option25(0)", "Option26", ...
QString objectName(SuperButton b);
std::optional<SuperButton> byObjectName(const QString& name);
// The caption the button shows in the tab `tab` (the history buttons change with it).
QString caption(SuperButton b, ZoneScope tab);
// Option27 is disabled in the back tab; Option43 is hidden where the window filters the
// combination template itself.
bool enabled(SuperButton b, ZoneScope tab, const FilterSourceTraits& traits);
// intCmdnb of a recorded step: 10..12, 4, 5, 6, 13, 14, 15.
int stepCode(SuperButton b);
std::optional<SuperButton> byStepCode(int code);
// The history threshold of a button in a scope; 0 where the button has none.
int threshold(SuperButton b, ZoneScope scope);
// The scope a stored intQianHou stands for (anything but 2 and 3 reads as the front zone).
ZoneScope scopeOf(int zoneScope);

// IsNumeric and the value: blanks around, a sign, digits with one ".", an exponent.
std::optional<double> numeric(const QString& text);
// Passes of a loop For i = 1 To x (or 0 To x - 1) over a variant text: floor(x) for x >= 1,
// else none; a text that is not a number runs none.
int64_t passes(const QString& text);
// A number into a 16-bit integer as the language assigns it (rounding half to even).
int16_t toInt16(double v);

}  // namespace super_filter

class SuperFilter {
public:
    struct Outcome {
        bool ran = false;              // a worker ran: refresh the grid (WHERE unslt = false) and caption
        bool popupRecordMenu = false;  // right button: pop up mnuAdm, then record the step
        uint64_t killed = 0;
        // Option43: the grid's columns and headings are set up again after its view.
        bool resetGridColumns = false;
    };

    // `fildb` is the workspace's filnum.db (Option43 reads and marks zuheMoban); `maxQian` the
    // front zone's size that checks the typed numbers.
    SuperFilter(FilterWorkspace& workspace, DrawHistoryView history, int maxQian, SqliteDb& filterDb);

    // The draws the history filters search (a back-test cuts them before the tested draw).
    void setHistory(DrawHistoryView history) { m_history = history; }

    // A click on a button with the left or right mouse button. `tab` is the zone tab shown;
    // the worker reads the scope from the workspace's intQianHou.
    Outcome click(SuperButton b, FilterWorkspace::Mouse mouse, SuperInputs& in, ZoneScope tab,
                  Prompter& prompter, EngineProgress* progress = nullptr);
    // The worker alone, with the input as it stands (replay).
    Outcome runWorker(SuperButton b, SuperInputs& in, ZoneScope tab, EngineProgress* progress = nullptr);
    // Option25up with any index (replay of an unknown code runs it with intCmdnb - 10).
    Outcome runRelation(int index, SuperInputs& in);

    // The prompt chains alone; false when the player ended the action.
    bool askRelation(SuperInputs& in, Prompter& p) const;
    bool askHistory(SuperInputs& in, Prompter& p) const;
    bool askInclusion(SuperInputs& in, Prompter& p) const;

    // Buttons whose text has turned blue.
    const std::set<QString>& usedButtons() const { return m_used; }

private:
    bool askNumber(Prompter& p, const QString& prompt, int16_t& slot) const;
    Outcome runHistory(SuperButton b, const SuperInputs& in, ZoneScope tab, EngineProgress* progress);
    Outcome runInclusion(SuperButton b, const SuperInputs& in);
    Outcome runTemplate();

    FilterWorkspace& m_ws;
    DrawHistoryView m_history;
    int m_maxQian;
    SqliteDb& m_filterDb;
    std::set<QString> m_used;
};
