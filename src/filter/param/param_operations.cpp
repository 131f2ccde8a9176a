#include "filter/param/param_operations.h"

#include "engine/kernel_executor.h"
#include "filter/param/param_ac_value.h"
#include "filter/param/param_table_folds.h"

#include <QStringList>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace param_operations {

namespace {

using namespace param_table_folds;
using P = ParamId;
constexpr int kFrontCols = 5;
constexpr uint64_t kBlock = KernelExecutor::kBlockRows;

inline int popcount32(uint32_t x) { return std::popcount(x); }

// ---- what the operations share ---------------------------------------------------------------

// The figure columns of a scope and the ChkBt box that weighs each.
struct ScopePosition {
    int col;
    int box;  // 0-based ChkBt index
};

std::vector<ScopePosition> scopePositions(ZoneScope scope) {
    switch (scope) {
        case ZoneScope::Front:
            return {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}};
        case ZoneScope::Back:
            return {{5, 0}, {6, 1}};
        case ZoneScope::Both:
            return {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 6}};
    }
    return {};
}

std::vector<int> tickedFront(const std::array<bool, 7>& ticks) {
    std::vector<int> cols;
    for (int k = 0; k < kFrontCols; ++k)
        if (ticks[static_cast<size_t>(k)]) cols.push_back(k);
    return cols;
}

// Numbers named in a list text: the tokens between single blanks that read as a number's text,
// which is what " {list} " LIKE "* "&[F]&" *" finds.
std::array<bool, 256> listedNumbers(const QString& list) {
    std::array<bool, 256> in{};
    for (const QString& tok : list.split(QLatin1Char(' '))) {
        for (int v = 0; v < 256; ++v)
            if (tok == QString::number(v)) in[static_cast<size_t>(v)] = true;
    }
    return in;
}

// A compute over the ticked columns of the scope, with the zone maximum of every column.
CompiledCompute overTicked(const CompileArgs& a, const std::array<bool, 7>& ticks) {
    CompiledCompute c;
    for (int col = 0; col < 7; ++col)
        c.zoneMax[static_cast<size_t>(col)] = col < kFrontCols ? a.ctx.maxQian : a.ctx.maxHou;
    c.positions = tickedColumns(a.scope, ticks);
    return c;
}

// Fills the table of every visited column with term(F, col). Unticked positions contribute
// nothing, as their weight 0 does.
template <typename Term>
void fillTables(CompiledCompute& c, Term&& term) {
    for (int col : c.positions)
        for (int f = 0; f < 256; ++f)
            c.table[static_cast<size_t>(col)][static_cast<size_t>(f)] = static_cast<int16_t>(term(f, col));
}

// The current omission of a number in the zone of the column.
int omissionOf(const ParamContext& ctx, int f, int col) {
    if (f >= kNumberSlots) return 0;
    return col < kFrontCols ? ctx.omissionFront[static_cast<size_t>(f)]
                            : ctx.omissionBack[static_cast<size_t>(f)];
}

// Calls fn(b, n) for the blocks of rows [begin, end).
template <typename Fn>
void forEachBlock(uint64_t begin, uint64_t end, Fn&& fn) {
    for (uint64_t b = begin; b < end; b += kBlock) fn(b, std::min(end, b + kBlock) - b);
}

// ---- sums over per-position tables ----------------------------------------------------------

// The sum of the tables of the visited columns.
struct TableSum {
    static void rows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                     uint64_t end) {
        tableRows<SumFold>(c, t, begin, end,
                           [out](uint64_t r, int32_t v) { out[r] = static_cast<int16_t>(v); });
    }
    static void byFrontRuns(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t b,
                            const uint16_t* starts, uint32_t runs) {
        tableRowsByFront<SumFold>(c, t, b, starts, runs,
                                  [out](uint64_t r, int32_t v) { out[r] = static_cast<int16_t>(v); });
    }
    // Rows whose sum leaves the column keep their canshu.
    static void checkedRows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                            uint64_t end) {
        constexpr int32_t kMax16 = std::numeric_limits<int16_t>::max();
        tableRows<SumFold>(c, t, begin, end, [out](uint64_t r, int32_t v) {
            if (v <= kMax16) out[r] = static_cast<int16_t>(v);
        });
    }
};

// 重上期个数: the numbers of the latest draw. In both zones the last two terms are both
// written with fig6 and ChkBt(6).
struct LastDrawCount {
    static CompiledCompute compile(const CompileArgs& a) {
        const auto member = [&](int f) {
            return f < kNumberSlots && a.ctx.lastDrawFront[static_cast<size_t>(f)];
        };
        if (a.scope != ZoneScope::Both) {
            CompiledCompute c = overTicked(a, a.in.ticks);
            fillTables(c, [&](int f, int) { return member(f); });
            c.kernel = &TableSum::rows;
            c.byFrontRuns = &TableSum::byFrontRuns;
            return c;
        }
        std::array<bool, 7> ticks = a.in.ticks;
        ticks[6] = false;
        CompiledCompute c = overTicked(a, ticks);
        fillTables(c, [&](int f, int col) { return col == 5 ? 2 * member(f) : member(f); });
        c.kernel = &TableSum::rows;
        c.byFrontRuns = &TableSum::byFrontRuns;
        return c;
    }
};

// 遗漏数和: the omissions of the numbers.
struct OmissionSum {
    static CompiledCompute compile(const CompileArgs& a) {
        CompiledCompute c = overTicked(a, a.in.ticks);
        fillTables(c, [&](int f, int col) { return omissionOf(a.ctx, f, col); });
        int most = 0;
        for (int col : c.positions) {
            const auto& tab = c.table[static_cast<size_t>(col)];
            most += *std::max_element(tab.begin(), tab.end());
        }
        c.checkOverflow = most > std::numeric_limits<int16_t>::max();
        c.kernel = c.checkOverflow ? &TableSum::checkedRows : &TableSum::rows;
        if (!c.checkOverflow) c.byFrontRuns = &TableSum::byFrontRuns;
        return c;
    }
};

// 同尾个数: the constant of the scope less the number of distinct last digits.
struct SameTail {
    // Writes the constant less the count of distinct last digits.
    static auto writeValue(const CompiledCompute& c, int16_t* out) {
        return [out, k = c.constant](uint64_t r, uint32_t flags) {
            out[r] = static_cast<int16_t>(k - popcount32(flags));
        };
    }
    static CompiledCompute compile(const CompileArgs& a) {
        CompiledCompute c = overTicked(a, a.in.ticks);
        c.constant = a.scope == ZoneScope::Front ? 5 : a.scope == ZoneScope::Back ? 2 : 7;
        fillTables(c, [](int f, int) { return 1 << (f % 10); });
        c.kernel = &rows;
        c.byFrontRuns = &byFrontRuns;
        return c;
    }
    static void rows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                     uint64_t end) {
        tableRows<OrFold>(c, t, begin, end, writeValue(c, out));
    }
    static void byFrontRuns(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t b,
                            const uint16_t* starts, uint32_t runs) {
        tableRowsByFront<OrFold>(c, t, b, starts, runs, writeValue(c, out));
    }
};

// 遗漏极差: the greatest less the least omission, from 0 and 99, column by column over blocks.
struct OmissionRange {
    static CompiledCompute compile(const CompileArgs& a) {
        CompiledCompute c = overTicked(a, a.in.ticks);
        fillTables(c, [&](int f, int col) { return omissionOf(a.ctx, f, col); });
        c.kernel = &rows;
        c.byFrontRuns = &byFrontRuns;
        return c;
    }
    static void byFrontRuns(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t b,
                            const uint16_t* starts, uint32_t runs) {
        tableRowsByFront<RangeFold>(c, t, b, starts, runs, [out](uint64_t r, RangeFold::Acc a) {
            out[r] = static_cast<int16_t>(a.greatest - a.least);
        });
    }
    // Column by column, on vector lanes: cheaper than the fold row by row.
    static void rows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                     uint64_t end) {
        alignas(64) std::array<int16_t, kBlock> greatest, least;
        forEachBlock(begin, end, [&](uint64_t b, uint64_t n) {
            std::fill_n(greatest.begin(), n, int16_t{0});
            std::fill_n(least.begin(), n, int16_t{99});
            for (int col : c.positions) {
                const uint8_t* f = t.numberColumn(col + 1).data() + b;
                const int16_t* tab = c.table[static_cast<size_t>(col)].data();
                for (uint64_t i = 0; i < n; ++i) {
                    const int16_t v = tab[f[i]];
                    greatest[i] = std::max(greatest[i], v);
                    least[i] = std::min(least[i], v);
                }
            }
            for (uint64_t i = 0; i < n; ++i) out[b + i] = static_cast<int16_t>(greatest[i] - least[i]);
        });
    }
};

// 指定号码 (自定区间 in list mode): how many numbers of the list a live row holds, 0 on dead rows.
struct LiveListCount {
    static CompiledCompute compile(const CompileArgs& a) {
        const std::array<bool, 256> listed = listedNumbers(a.in.zdqjList);
        CompiledCompute c = overTicked(a, a.in.ticks);
        fillTables(c, [&](int f, int) { return listed[static_cast<size_t>(f)] ? 1 : 0; });
        c.kernel = &rows;
        return c;
    }
    static void rows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                     uint64_t end) {
        const BitVector& un = t.filteredOut();
        tableRows<SumFold>(c, t, begin, end, [out, &un](uint64_t r, int32_t v) {
            out[r] = un.test(r) ? int16_t{0} : static_cast<int16_t>(v);
        });
    }
};

// ---- sums of arithmetic terms ----------------------------------------------------------------

// A term of a sum as arithmetic on the number x of one column, on 16-bit vector lanes: `max`
// is the zone maximum of the column (x is big when 2x > max), lo and hi 自定区间's interval.
struct TermArgs {
    int16_t max, lo, hi;
};
struct Value {
    static int16_t of(int16_t x, TermArgs) { return x; }
};
struct Even {
    static int16_t of(int16_t x, TermArgs) { return static_cast<int16_t>((x & 1) ^ 1); }
};
struct Big {
    static int16_t of(int16_t x, TermArgs a) { return static_cast<int16_t>(2 * x > a.max); }
};
struct TailBig {
    static int16_t of(int16_t x, TermArgs) { return static_cast<int16_t>(x % 10 > 4); }
};
struct UpTo10 {
    static int16_t of(int16_t x, TermArgs) { return static_cast<int16_t>(x <= 10); }
};
struct From11To20 {
    static int16_t of(int16_t x, TermArgs) { return static_cast<int16_t>((x > 10) & (x <= 20)); }
};
struct Above20 {
    static int16_t of(int16_t x, TermArgs) { return static_cast<int16_t>(x > 20); }
};
struct OddValue {
    static int16_t of(int16_t x, TermArgs) { return static_cast<int16_t>(x * (x & 1)); }
};
struct EvenValue {
    static int16_t of(int16_t x, TermArgs) { return static_cast<int16_t>(x * ((x & 1) ^ 1)); }
};
struct Tail {
    static int16_t of(int16_t x, TermArgs) { return static_cast<int16_t>(x % 10); }
};
struct SmallValue {
    static int16_t of(int16_t x, TermArgs a) { return static_cast<int16_t>(x * (2 * x <= a.max)); }
};
struct BigValue {
    static int16_t of(int16_t x, TermArgs a) { return static_cast<int16_t>(x * (2 * x > a.max)); }
};
struct Interval {
    static int16_t of(int16_t x, TermArgs a) { return static_cast<int16_t>((x > a.lo) & (x <= a.hi)); }
};

// Adds Term of the numbers f[0..n) to acc[0..n): a loop of its own over a local block (no alias
// of the columns), so that it runs on vector lanes.
template <typename Term>
void addColumn(int16_t* acc, const uint8_t* f, uint64_t n, TermArgs args) {
    for (uint64_t i = 0; i < n; ++i) acc[i] = static_cast<int16_t>(acc[i] + Term::of(int16_t{f[i]}, args));
}

// The sum of Term over the visited columns (mod 10 for 各位和个位), column by column over
// blocks of 16-bit lanes.
template <typename Term, bool Mod10 = false>
struct ArithmeticSum {
    static CompiledCompute compile(const CompileArgs& a) {
        CompiledCompute c = overTicked(a, a.in.ticks);
        c.kernel = &rows;
        c.onLanes = true;
        return c;
    }
    static void rows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                     uint64_t end) {
        alignas(64) std::array<int16_t, kBlock> acc;
        for (uint64_t b = begin; b < end; b += kBlock) {
            const uint64_t n = std::min(end, b + kBlock) - b;
            std::fill_n(acc.begin(), n, int16_t{0});
            for (int col : c.positions) {
                const TermArgs args{static_cast<int16_t>(c.zoneMax[static_cast<size_t>(col)]),
                                    static_cast<int16_t>(c.termLo), static_cast<int16_t>(c.termHi)};
                addColumn<Term>(acc.data(), t.numberColumn(col + 1).data() + b, n, args);
            }
            if constexpr (Mod10)
                for (uint64_t i = 0; i < n; ++i) out[b + i] = static_cast<int16_t>(acc[i] % 10);
            else
                std::copy_n(acc.begin(), n, out + b);
        }
    }
};

// An operation whose statement does not run in the back tab.
template <typename Operation>
struct NotInBack {
    static CompiledCompute compile(const CompileArgs& a) {
        if (a.scope == ZoneScope::Back) return {};
        return Operation::compile(a);
    }
};

// 自定区间: how many visited numbers lie in lo < F <= hi (Text66(3), Text66(2)); in list mode
// the count of the listed numbers on live rows.
struct IntervalCount {
    static CompiledCompute compile(const CompileArgs& a) {
        if (a.in.listMode) return LiveListCount::compile(a);
        const auto whole = [](const QString& s) {
            return static_cast<int>(std::nearbyint(std::clamp(param_catalogue::leadingNumber(s), -1e6, 1e6)));
        };
        CompiledCompute c = ArithmeticSum<Interval>::compile(a);
        c.termLo = std::clamp(whole(a.in.zdqjLower), -1, 256);
        c.termHi = std::clamp(whole(a.in.zdqjUpper), -1, 256);
        return c;
    }
};

// ---- differences between columns -------------------------------------------------------------

// How many of the column pairs (x, y) of c.pairs satisfy Match on a row, column pair by column
// pair over blocks; the counts fit 16 bits a lane.
template <typename Match>
void countPairs(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                uint64_t end) {
    alignas(64) std::array<int16_t, kBlock> acc;
    forEachBlock(begin, end, [&](uint64_t b, uint64_t n) {
        std::fill_n(acc.begin(), n, int16_t{0});
        for (const auto& [x, y] : c.pairs) {
            const uint8_t* fx = t.numberColumn(x + 1).data() + b;
            const uint8_t* fy = t.numberColumn(y + 1).data() + b;
            for (uint64_t i = 0; i < n; ++i) acc[i] = static_cast<int16_t>(acc[i] + Match::of(fx[i], fy[i]));
        }
        std::copy_n(acc.begin(), n, out + b);
    });
}

// 连号个数: pairs of ticked neighbours one apart.
struct Consecutive {
    static int16_t of(uint8_t x, uint8_t y) { return static_cast<int16_t>((int16_t{y} - int16_t{x}) == 1); }
    static CompiledCompute compile(const CompileArgs& a) {
        CompiledCompute c;
        const auto pos = scopePositions(a.scope);
        for (size_t i = 0; i + 1 < pos.size(); ++i)
            if (a.in.ticks[static_cast<size_t>(pos[i].box)] &&
                a.in.ticks[static_cast<size_t>(pos[i + 1].box)])
                c.pairs.emplace_back(pos[i].col, pos[i + 1].col);
        c.kernel = &countPairs<Consecutive>;
        return c;
    }
};

// 前后区同号: back numbers equal to a front number, each back number against each front one.
struct SameNumber {
    static int16_t of(uint8_t x, uint8_t y) { return static_cast<int16_t>(x == y); }
    static CompiledCompute compile(const CompileArgs&) {
        CompiledCompute c;
        for (int backCol : {5, 6})
            for (int frontCol = 0; frontCol < kFrontCols; ++frontCol) c.pairs.emplace_back(backCol, frontCol);
        c.kernel = &countPairs<SameNumber>;
        return c;
    }
};

// 最大差值: the largest difference between consecutive ticked front positions. The handler
// looks at ChkBt(1)..ChkBt(5) whatever the tab. With two positions its statement has an
// unmatched bracket and fails; with fewer nothing runs.
struct MaxGap {
    static CompiledCompute compile(const CompileArgs& a) {
        CompiledCompute c;
        c.positions = tickedFront(a.in.ticks);
        if (c.positions.size() < 3) return {};
        c.kernel = &rows;
        c.onLanes = true;
        return c;
    }
    static void rows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                     uint64_t end) {
        const auto& p = c.positions;
        alignas(64) std::array<int16_t, kBlock> acc;
        forEachBlock(begin, end, [&](uint64_t b, uint64_t n) {
            std::fill_n(acc.begin(), n, std::numeric_limits<int16_t>::min());
            for (size_t k = 0; k + 1 < p.size(); ++k) {
                const uint8_t* fx = t.numberColumn(p[k] + 1).data() + b;
                const uint8_t* fy = t.numberColumn(p[k + 1] + 1).data() + b;
                for (uint64_t i = 0; i < n; ++i)
                    acc[i] = std::max(acc[i], static_cast<int16_t>(int16_t{fy[i]} - int16_t{fx[i]}));
            }
            std::copy_n(acc.begin(), n, out + b);
        });
    }
};

// 首尾差值: fig[last] - fig[first] of the ticked front positions; in the back tab the fixed
// front statement fig2 - fig1. In both zones the button is 前后区同号 (SameNumber).
struct Difference {
    static CompiledCompute compile(const CompileArgs& a) {
        CompiledCompute c;
        if (a.scope == ZoneScope::Back) {
            c.positions = {0, 1};
        } else {
            const std::vector<int> t = tickedFront(a.in.ticks);
            if (t.empty()) return {};
            c.positions = {t.front(), t.back()};
        }
        c.kernel = &rows;
        c.onLanes = true;
        return c;
    }
    static void rows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                     uint64_t end) {
        const uint8_t* first = t.numberColumn(c.positions[0] + 1).data();
        const uint8_t* last = t.numberColumn(c.positions[1] + 1).data();
        for (uint64_t r = begin; r < end; ++r) out[r] = static_cast<int16_t>(int{last[r]} - int{first[r]});
    }
};

// The button of 首尾差值: 前后区同号 in both zones.
struct EndsDifference {
    static CompiledCompute compile(const CompileArgs& a) {
        return a.scope == ZoneScope::Both ? SameNumber::compile(a) : Difference::compile(a);
    }
};

// ---- the positions ---------------------------------------------------------------------------

// 第1位..第5位 write no canshu: their filter reads the figure column of the position, in the
// front tab; in both zones 第2位 reads fig7; elsewhere nothing runs.
struct Position {
    static CompiledCompute compile(const CompileArgs& a) {
        CompiledCompute c;
        const int position = param_catalogue::info(a.id).position;
        if (a.scope == ZoneScope::Front)
            c.figureColumn = position - 1;
        else if (a.scope == ZoneScope::Both && a.id == P::Position2)
            c.figureColumn = 6;
        return c;
    }
};

// The parity step of a position: fig mod 2 of one column.
struct FigMod2 {
    static void rows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin,
                     uint64_t end) {
        const uint8_t* f = t.numberColumn(c.constant + 1).data();
        for (uint64_t r = begin; r < end; ++r) out[r] = static_cast<int16_t>(f[r] % 2);
    }
};

// ---- the catalogue ---------------------------------------------------------------------------

struct Operation {
    ParamId id;
    Compile compile;
};

constexpr std::array<Operation, kParamCount> kOperations{{
    {P::NumberSum, &ArithmeticSum<Value>::compile},
    {P::SumLastDigit, &ArithmeticSum<Value, true>::compile},
    {P::ConsecutiveCount, &Consecutive::compile},
    {P::EvenCount, &ArithmeticSum<Even>::compile},
    {P::BigCount, &ArithmeticSum<Big>::compile},
    {P::BigLastDigitCount, &ArithmeticSum<TailBig>::compile},
    {P::Range1To10, &NotInBack<ArithmeticSum<UpTo10>>::compile},
    {P::Range11To20, &NotInBack<ArithmeticSum<From11To20>>::compile},
    {P::Range21Up, &NotInBack<ArithmeticSum<Above20>>::compile},
    {P::Position1, &Position::compile},
    {P::Position2, &Position::compile},
    {P::Position3, &Position::compile},
    {P::Position4, &Position::compile},
    {P::Position5, &Position::compile},
    {P::LargestGap, &MaxGap::compile},
    {P::LastMinusFirst, &EndsDifference::compile},
    {P::RepeatsOfPrevious, &LastDrawCount::compile},
    {P::AcComplexity, &param_ac_value::compile},
    {P::OddSum, &NotInBack<ArithmeticSum<OddValue>>::compile},
    {P::EvenSum, &NotInBack<ArithmeticSum<EvenValue>>::compile},
    {P::LastDigitSum, &ArithmeticSum<Tail>::compile},
    {P::OmissionSum, &OmissionSum::compile},
    {P::OmissionSpread, &OmissionRange::compile},
    {P::SmallSum, &ArithmeticSum<SmallValue>::compile},
    {P::BigSum, &ArithmeticSum<BigValue>::compile},
    {P::SameLastDigitCount, &SameTail::compile},
    {P::CustomRange, &NotInBack<IntervalCount>::compile},
}};

static_assert(
    [] {
        for (size_t i = 0; i < kOperations.size(); ++i)
            if (kOperations[i].id != static_cast<ParamId>(i)) return false;
        return true;
    }(),
    "the catalogue of operations follows the order of ParamId");

}  // namespace

// The visited columns of the scope: those whose box is ticked.
std::vector<int> tickedColumns(ZoneScope scope, const std::array<bool, 7>& ticks) {
    std::vector<int> cols;
    for (const ScopePosition& p : scopePositions(scope))
        if (ticks[static_cast<size_t>(p.box)]) cols.push_back(p.col);
    return cols;
}

Compile compilerOf(ParamId id) { return kOperations[static_cast<size_t>(id)].compile; }

CompiledCompute figureParity(int col) {
    CompiledCompute c;
    c.constant = col;
    c.kernel = &FigMod2::rows;
    c.onLanes = true;
    return c;
}

}  // namespace param_operations
