#pragma once

// Single-parameter filtering and the integrated multi-parameter filter over a candidate table.
//
// A parameter button runs as a short list of steps: compute the value (into canshu, or read a
// figure column), then test it against the range or the list of its boxes. A single filter
// kills the live rows that fail with a reason; the integrated filter runs the steps of every
// ticked parameter in its fixed order, tallying each row's failures into Errnum and appending
// the reasons, then kills by the tolerance and flips the result for the mixed senses.

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"
#include "filter/param/param_catalogue.h"
#include "filter/param/param_kernels.h"

#include <QString>

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

// The boxes and choices of the filter window that the parameter filters read: a plain copy of
// what the window shows, so a window and the command line share one implementation.
struct ParamWindowState {
    ZoneScope scope = ZoneScope::Front;                                         // intQianHou (TabStrip1)
    std::array<bool, 7> numberTicks{true, true, true, true, true, true, true};  // ChkBt(1)..ChkBt(7)
    // Per parameter its box array, indices 0..3 (自定区间: Text66(0)..Text66(3)).
    std::array<std::array<QString, 4>, kParamCount> boxes;
    std::array<bool, 14> parityTicks{};  // Check2(4)..Check2(13) at their own indices
    bool keep = true;                    // Option1(0) "保留"
    bool listMode = false;               // Option36
    bool logicAnd = true;                // Option37(0) "逻辑和"
    std::array<bool, kIntegratedBoxCount> integratedBox{};
    bool useTolerance = false;              // 整合过滤容错比
    QString txtRc0 = QStringLiteral("1");   // allowed count
    QString txtRc1 = QStringLiteral("10");  // percent
    QString txtZdqj;                        // 自定区间's list

    // Every box with its default text.
    static ParamWindowState defaults();

    std::array<QString, 4>& box(ParamId id) { return boxes[static_cast<size_t>(id)]; }
    const std::array<QString, 4>& box(ParamId id) const { return boxes[static_cast<size_t>(id)]; }
    ComputeInputs computeInputs() const;
};

// One compute-and-test step of a parameter.
struct FilterStep {
    CompiledCompute compute;
    int valueColumn = -1;  // -1 reads canshu, else a figure column (0-based)
    bool liveOnly = true;  // the statement keeps its leading [unslt]=false AND
    // A range statement is a test of whole-number bounds (the real limits rounded inwards);
    // a list statement or the parity a table: hit[V + 32768] tells whether value V is caught.
    enum class Test : uint8_t { Range, Table };
    Test test = Test::Table;
    bool keep = true;  // Range: keep catches the values outside, exclude those inside
    int32_t lo = 0, hi = -1;
    std::vector<uint8_t> hit;
    // The reason text: prefix + V + suffix, or `prefix` alone when `constantText`.
    QString prefix;
    QString suffix;
    bool constantText = false;

    bool hits(int16_t v) const {
        if (test == Test::Range) return keep != (v >= lo && v <= hi);
        return hit[static_cast<size_t>(int32_t{v} + 32768)] != 0;
    }
    // hits() of n values into out[0..n) as 0 or 1.
    template <typename T>
    void hitBlock(const T* v, size_t n, uint8_t* out) const {
        if (test == Test::Range) {
            // Without branches, and on lanes as wide as the values: bounds past the values'
            // type are brought in, and a range that no value reaches is made empty.
            using Limits = std::numeric_limits<T>;
            constexpr int32_t kLow = Limits::min(), kHigh = Limits::max();
            const bool empty = lo > kHigh || hi < kLow || lo > hi;
            const auto l = static_cast<T>(empty ? 1 : std::max(lo, kLow));
            const auto h = static_cast<T>(empty ? 0 : std::min(hi, kHigh));
            const uint8_t outside = keep ? 1 : 0;
            for (size_t i = 0; i < n; ++i) {
                const T x = v[i];
                out[i] = static_cast<uint8_t>((static_cast<uint8_t>(x >= l) & static_cast<uint8_t>(x <= h)) ^ outside);
            }
            return;
        }
        const uint8_t* h = hit.data() + 32768;
        for (size_t i = 0; i < n; ++i) out[i] = h[v[i]];
    }
    QString reason(int16_t v) const { return constantText ? prefix : prefix + QString::number(v) + suffix; }
    // Whether the value is a function of the row's numbers (and its live flag), which a formula
    // can compute again: not where canshu keeps the old value of some rows.
    bool valueFromNumbers() const {
        return valueColumn >= 0 || (compute.writesCanshu() && !compute.checkOverflow);
    }
};

namespace param_filter {

// What a run leaves for the grid to show.
enum class ViewColumns {
    WithParamValue,       // idx, fig1..fig7, canshu (heading: the caption)
    FrontWithParamValue,  // idx, fig1..fig5, canshu (Option3, Option35)
    Figures,              // idx, fig1..fig7 (the positions, the integrated filter)
};

struct SingleResult {
    bool ran = false;  // false: the button only took its colour
    uint64_t killed = 0;
    ViewColumns view = ViewColumns::Figures;
    QString heading;  // grid column 8's heading when the view has it
};

struct IntegratedResult {
    bool keepSense = true;  // the sense the run took; the window keeps it
    bool flipped = false;
    int allowed = 0;  // the tolerance applied (0 without Check3)
    int steps = 0;    // statements tallied
    bool cancelled = false;  // the table is as it was
};

// The steps of one button. `keepSense` is the window's keep choice for a single run, the
// computed baoliuMode for a tally.
std::vector<FilterStep> buildSteps(ParamId id, const ParamWindowState& state, const ParamContext& ctx,
                                   bool keepSense, bool tally);

// The steps of the integrated filter: those of every ticked box, in the order of the run.
std::vector<FilterStep> integratedSteps(const ParamWindowState& state, const ParamContext& ctx, bool keepSense);

// A click on a parameter button.
SingleResult runSingle(CandidateTable& table, ParamId id, const ParamWindowState& state,
                       const ParamContext& ctx);

// Option29 with the left button. `progress` hears how far the run got between blocks and may
// cancel it, leaving the table as it was.
IntegratedResult runIntegrated(CandidateTable& table, const ParamWindowState& state, const ParamContext& ctx,
                               EngineProgress* progress);
IntegratedResult runIntegrated(CandidateTable& table, const ParamWindowState& state, const ParamContext& ctx);

// TxtRc(0) as the allowed count: rounded to the nearest whole number, a half to the even one.
int allowedCount(const QString& txtRc0);

// The two-way update of the tolerance boxes. `keptCount` is the count of ticked Check1 boxes
// that a click in the list keeps.
struct Tolerance {
    int keptCount = 0;
    // A click in Check1: count the ticks; TxtRc(0) takes round-half-up(count * percent / 100)
    // when that is above 0. Returns the new TxtRc(0) text.
    QString onIntegratedBoxClick(const ParamWindowState& state);
    // TxtRc(0) edited: the new TxtRc(1) text (unchanged while no box was counted).
    QString onCountEdited(const ParamWindowState& state) const;
    // TxtRc(1) edited: the new TxtRc(0) text, truncated.
    QString onPercentEdited(const ParamWindowState& state) const;
};

}  // namespace param_filter
