#pragma once

// The computations of the 27 parameters over a candidate table: each writes the value of its
// parameter into `canshu` for every row (or leaves it, where the window's statement would not
// run or would fail), over the positions whose ChkBt box is ticked in the zone scope.
//
// A parameter is compiled once per run into a CompiledCompute: lookup tables per position with
// the weight folded in, the list of ticked positions, and the operation. The row kernels then
// read only the byte columns and those tables.

#include "filter/candidate_table.h"
#include "filter/param_catalogue.h"
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

struct CompiledCompute {
    enum class Op : uint8_t {
        Unchanged,      // no statement runs (or it fails): canshu keeps its value
        Sum,            // sum of the per-position tables
        SumMod10,       // (sum) mod 10
        Consecutive,    // pairs of neighbours one apart
        MaxGap,         // largest difference between consecutive ticked positions
        Difference,     // fig[last] - fig[first]
        SameNumber,     // back numbers equal to a front number
        OmissionRange,  // greatest minus least table value, from 0 and 99
        SameTail,       // constant minus the number of distinct last digits
        Ac,             // AC value with its array of ten
        LiveListCount,  // sum of the tables on live rows, 0 on dead ones
        Position,       // no canshu: the filter reads a figure column
        FigMod2,        // the parity step of a position: fig mod 2 of one column
    };
    Op op = Op::Unchanged;
    // Figure columns (0-based, fig1 = 0) in the order the computation visits them.
    std::vector<int> positions;
    // Neighbour pairs of Consecutive (0-based columns).
    std::vector<std::pair<int, int>> pairs;
    // Per position a table by number (byte value) with the weight folded in.
    std::array<std::array<int16_t, 256>, 7> table{};
    // The term of a Sum as arithmetic on the number, where it has one: the kernels then run on
    // vector lanes instead of looking up the tables (which always hold the same values).
    enum class Term : uint8_t {
        Table, Value, Even, Big, TailBig, UpTo10, From11To20, Above20, OddValue, EvenValue, Tail, SmallValue,
        BigValue, Interval,
    };
    Term term = Term::Table;
    int termLo = 0, termHi = 0;  // Interval: lo < F <= hi
    // SameTail's constant; the column of Position and FigMod2.
    int constant = 0;
    // Big, SmallValue, BigValue: the zone maximum of each column (F is big when 2F > max).
    std::array<int, 7> zoneMax{};
    // The sum may leave the range of the column (omission sums of a long history): rows whose
    // value does not fit keep their canshu, as an overflowing row update fails alone.
    bool checkOverflow = false;

    bool writesCanshu() const { return op != Op::Unchanged && op != Op::Position; }
};

namespace param_kernels {

// The computation of `id` in the window's scope. `frontOnly` gives the export's companion
// form, computed as in the front scope whatever the tab.
CompiledCompute compile(ParamId id, const ComputeInputs& in, const ParamContext& ctx, bool frontOnly = false);

// Runs the computation on rows [begin, end), writing `canshu` (a span over all rows).
void computeRows(const CompiledCompute& c, const CandidateTable& t, std::span<int16_t> canshu, uint64_t begin,
                 uint64_t end);

// Runs it on every row, on all cores.
void computeAll(const CompiledCompute& c, CandidateTable& t);

// The AC value of n numbers with the array of ten (exposed for the tests).
int acValue(const int* numbers, int n);

}  // namespace param_kernels
