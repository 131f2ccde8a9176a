#pragma once

// The computations of the 27 parameters over a candidate table: each writes the value of its
// parameter into `canshu` for every row (or leaves it, where the window's statement would not
// run or would fail), over the positions whose ChkBt box is ticked in the zone scope.
//
// A parameter is compiled once per run into a CompiledCompute: lookup tables per position with
// the weight folded in, the list of ticked positions, and the row kernel of its operation. The
// row kernels then read only the byte columns and those tables.

#include "engine/candidate_table.h"
#include "filter/param/param_catalogue.h"
#include "workspace/shared_state.h"

#include <array>
#include <cstdint>
#include <vector>

class Session;

// What a computation reads besides the ticket columns: the zone sizes, the latest draw and the
// current omission of each number.
struct ParamContext {
    int maxQian = 35;  // Bitnum
    int maxHou = 12;   // BitnumHou
    // The front numbers of the latest draw (the text " n n n n n " of 重上期个数).
    std::array<bool, kNumberSlots> lastDrawFront{};
    std::array<int16_t, kNumberSlots> omissionFront{};  // Ylarr
    std::array<int16_t, kNumberSlots> omissionBack{};   // YlarrHou

    static ParamContext fromSession(Session& session);
    // The same as it stood after the draws of `history` (a back-test's draws before the tested
    // one): the last of them, and each number's omission counted from the draws themselves, the
    // draws since it last came (all of them for a number that never came).
    static ParamContext fromHistory(DrawHistoryView history, int frontSize, int backSize);
    // The context after one more draw: a walk through the history from an empty context.
    void advance(const DrawNumbers& draw);
};

// The inputs of the window that a computation reads.
struct ComputeInputs {
    ZoneScope scope = ZoneScope::Front;
    std::array<bool, 7> ticks{true, true, true, true, true, true, true};  // ChkBt(1)..ChkBt(7)
    bool listMode = false;  // Option36: 自定区间 counts the numbers of TxtZdqj
    QString zdqjLower;      // Text66(3)
    QString zdqjUpper;      // Text66(2)
    QString zdqjList;       // TxtZdqj
};

// A parameter compiled for one run. compile() picks the parameter's operation from the
// catalogue of operations; the operation fills the tables and lists below and names the row
// kernel that computes the value of a row from them.
struct CompiledCompute {
    using RowKernel = void (*)(const CompiledCompute& c, const CandidateTable& t, int16_t* out,
                               uint64_t begin, uint64_t end);
    // Writes canshu of rows [begin, end); null where no statement runs (or it fails) and canshu
    // keeps its value.
    RowKernel kernel = nullptr;
    // The figure column (0-based) that a position's filter reads in place of canshu, or -1.
    int figureColumn = -1;
    // Figure columns (0-based, fig1 = 0) in the order the computation visits them.
    std::vector<int> positions;
    // Neighbour pairs of the consecutive count (0-based columns).
    std::vector<std::pair<int, int>> pairs;
    // Per position a table by number (byte value) with the weight folded in.
    std::array<std::array<int16_t, 256>, 7> table{};
    int termLo = 0, termHi = 0;  // 自定区间: lo < F <= hi
    // The same-tail count's constant; the column of the parity step.
    int constant = 0;
    // The zone maximum of each column (F is big when 2F > max).
    std::array<int, 7> zoneMax{};
    // The sum may leave the range of the column (omission sums of a long history): rows whose
    // value does not fit keep their canshu, as an overflowing row update fails alone.
    bool checkOverflow = false;
    // The kernel is arithmetic on vector lanes: cheaper per row than finding the runs of equal
    // rows that a computation by table look-ups is spared.
    bool onLanes = false;
    // Computes the rows of a block that come in runs of equal front numbers (run j is rows
    // b + starts[j] up to b + starts[j + 1]): the front columns' part of the value once per run,
    // the back columns row by row. Null where the value is no fold of a term per column.
    using FrontRunKernel = void (*)(const CompiledCompute& c, const CandidateTable& t, int16_t* out,
                                    uint64_t b, const uint16_t* starts, uint32_t runs);
    FrontRunKernel byFrontRuns = nullptr;

    bool writesCanshu() const { return kernel != nullptr; }
    bool readsFigure() const { return figureColumn >= 0; }
};

namespace param_kernels {

// The computation of `id` in the window's scope. `frontOnly` gives the export's companion
// form, computed as in the front scope whatever the tab.
CompiledCompute compile(ParamId id, const ComputeInputs& in, const ParamContext& ctx, bool frontOnly = false);

// Runs the computation on rows [begin, end), writing `canshu` (a span over all rows).
void computeRows(const CompiledCompute& c, const CandidateTable& t, std::span<int16_t> paramValues,
                 uint64_t begin, uint64_t end);

// The number columns the computation reads: bit k for column k (fig1 = 1).
uint32_t columnsRead(const CompiledCompute& c);

// Runs it on every row, on all cores.
void computeAll(const CompiledCompute& c, CandidateTable& t);

// The parity step of a position's filter: canshu = fig mod 2 of the 0-based column `col`.
CompiledCompute figureParity(int col);

// The AC value of n numbers with the array of ten (exposed for the tests).
int acValue(const int* numbers, int n);

}  // namespace param_kernels
