#include "filter/param_kernels.h"

#include "filter/candidate_kernels.h"
#include "workspace/session.h"

#include <QStringList>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

// The row kernels count bits; every x86-64 processor this runs on has the instruction. Their
// loops are written to run on vector lanes, which the optimiser does at its highest level.
#if defined(__x86_64__) && !defined(__POPCNT__)
#pragma GCC target("popcnt")
#endif
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC optimize("O3")
#endif

ParamContext ParamContext::fromSession(Session& session) {
    ParamContext c;
    c.maxQian = session.bitnum();
    c.maxHou = session.bitnumHou();
    const DrawNumbers& last = session.history().figarr.back();
    for (int k = 1; k <= 5; ++k)
        if (last[static_cast<size_t>(k)] > 0 && last[static_cast<size_t>(k)] < kNumberSlots)
            c.lastDrawFront[static_cast<size_t>(last[static_cast<size_t>(k)])] = true;
    c.omissionFront = session.stats().front.omission;
    c.omissionBack = session.stats().back.omission;
    return c;
}

namespace param_kernels {

namespace {

using Op = CompiledCompute::Op;
constexpr int kFrontCols = 5;
constexpr int kAcSlots = 10;  // the array of differences holds ten

// The figure columns of a scope and the ChkBt box that weighs each.
struct ScopePosition {
    int col;
    int box;  // 0-based ChkBt index
};

std::vector<ScopePosition> scopePositions(ZoneScope scope) {
    switch (scope) {
        case ZoneScope::Front: return {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}};
        case ZoneScope::Back: return {{5, 0}, {6, 1}};
        case ZoneScope::Both: return {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 6}};
    }
    return {};
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

// Fills the table of every ticked position of the scope with term(F, col) and adds it to the
// visited positions. Unticked positions contribute nothing, as their weight 0 does.
template <typename Term>
void fillSum(CompiledCompute& c, ZoneScope scope, const std::array<bool, 7>& ticks, Term&& term) {
    for (const ScopePosition& p : scopePositions(scope)) {
        if (!ticks[static_cast<size_t>(p.box)]) continue;
        c.positions.push_back(p.col);
        for (int f = 0; f < 256; ++f) c.table[static_cast<size_t>(p.col)][static_cast<size_t>(f)] = static_cast<int16_t>(term(f, p.col));
    }
}

std::vector<int> tickedFront(const std::array<bool, 7>& ticks) {
    std::vector<int> cols;
    for (int k = 0; k < kFrontCols; ++k)
        if (ticks[static_cast<size_t>(k)]) cols.push_back(k);
    return cols;
}

}  // namespace

int acValue(const int* numbers, int n) {
    std::array<int, kAcSlots> diffs{};
    int stored = 0;
    const int pairs = n * (n - 1) / 2;
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j)
            if (stored < kAcSlots) diffs[static_cast<size_t>(stored++)] = numbers[j] - numbers[i];
    int ac = pairs - n + 1;
    for (int i = 0; i < stored; ++i)
        for (int j = i + 1; j < stored; ++j)
            if (diffs[static_cast<size_t>(i)] == diffs[static_cast<size_t>(j)]) {
                --ac;
                break;
            }
    return ac;
}

CompiledCompute compile(ParamId id, const ComputeInputs& in, const ParamContext& ctx, bool frontOnly) {
    CompiledCompute c;
    const ZoneScope scope = frontOnly ? ZoneScope::Front : in.scope;
    const auto& ticks = in.ticks;
    const auto maxOf = [&](int col) { return col < kFrontCols ? ctx.maxQian : ctx.maxHou; };
    const auto big = [&](int f, int col) { return 2 * f > maxOf(col); };  // F > max / 2
    for (int col = 0; col < 7; ++col) c.zoneMax[static_cast<size_t>(col)] = maxOf(col);
    using Term = CompiledCompute::Term;
    const auto sum = [&](Op op, auto&& term, Term kind = Term::Table) {
        c.op = op;
        c.term = kind;
        fillSum(c, scope, ticks, term);
    };
    const bool back = scope == ZoneScope::Back;

    switch (id) {
        case ParamId::Option23: sum(Op::Sum, [](int f, int) { return f; }, Term::Value); break;
        case ParamId::Option3: sum(Op::SumMod10, [](int f, int) { return f; }, Term::Value); break;
        case ParamId::Option4: sum(Op::Sum, [](int f, int) { return f % 2 == 0; }, Term::Even); break;
        case ParamId::Option5: sum(Op::Sum, [&](int f, int col) { return big(f, col); }, Term::Big); break;
        case ParamId::Option8: sum(Op::Sum, [](int f, int) { return f % 10 > 4; }, Term::TailBig); break;
        case ParamId::Option34: sum(Op::Sum, [](int f, int) { return f % 10; }, Term::Tail); break;
        case ParamId::Option39: sum(Op::Sum, [&](int f, int col) { return big(f, col) ? 0 : f; }, Term::SmallValue); break;
        case ParamId::Option40: sum(Op::Sum, [&](int f, int col) { return big(f, col) ? f : 0; }, Term::BigValue); break;
        case ParamId::Option9:
            if (!back) sum(Op::Sum, [](int f, int) { return f <= 10; }, Term::UpTo10);
            break;
        case ParamId::Option10:
            if (!back) sum(Op::Sum, [](int f, int) { return f > 10 && f <= 20; }, Term::From11To20);
            break;
        case ParamId::Option11:
            if (!back) sum(Op::Sum, [](int f, int) { return f > 20; }, Term::Above20);
            break;
        case ParamId::Option32:
            if (!back) sum(Op::Sum, [](int f, int) { return f % 2 == 1 ? f : 0; }, Term::OddValue);
            break;
        case ParamId::Option33:
            if (!back) sum(Op::Sum, [](int f, int) { return f % 2 == 0 ? f : 0; }, Term::EvenValue);
            break;
        case ParamId::Option20: {
            const auto member = [&](int f) { return f < kNumberSlots && ctx.lastDrawFront[static_cast<size_t>(f)]; };
            if (scope != ZoneScope::Both) {
                sum(Op::Sum, [&](int f, int) { return member(f); });
                break;
            }
            // Both zones: the last two terms are both written with fig6 and ChkBt(6).
            std::array<bool, 7> t = ticks;
            t[6] = false;
            c.op = Op::Sum;
            fillSum(c, scope, t, [&](int f, int col) { return col == 5 ? 2 * member(f) : member(f); });
            break;
        }
        case ParamId::Option35: {
            sum(Op::Sum, [&](int f, int col) {
                if (f >= kNumberSlots) return 0;
                return static_cast<int>(col < kFrontCols ? ctx.omissionFront[static_cast<size_t>(f)]
                                                         : ctx.omissionBack[static_cast<size_t>(f)]);
            });
            int most = 0;
            for (int col : c.positions) most += *std::max_element(c.table[static_cast<size_t>(col)].begin(), c.table[static_cast<size_t>(col)].end());
            c.checkOverflow = most > std::numeric_limits<int16_t>::max();
            break;
        }
        case ParamId::Option12:
            c.op = Op::OmissionRange;
            fillSum(c, scope, ticks, [&](int f, int col) {
                if (f >= kNumberSlots) return 0;
                return static_cast<int>(col < kFrontCols ? ctx.omissionFront[static_cast<size_t>(f)]
                                                         : ctx.omissionBack[static_cast<size_t>(f)]);
            });
            break;
        case ParamId::Option41:
            c.op = Op::SameTail;
            c.constant = scope == ZoneScope::Front ? 5 : scope == ZoneScope::Back ? 2 : 7;
            fillSum(c, scope, ticks, [](int f, int) { return 1 << (f % 10); });
            break;
        case ParamId::Option2: {
            c.op = Op::Consecutive;
            const auto pos = scopePositions(scope);
            for (size_t i = 0; i + 1 < pos.size(); ++i)
                if (ticks[static_cast<size_t>(pos[i].box)] && ticks[static_cast<size_t>(pos[i + 1].box)])
                    c.pairs.emplace_back(pos[i].col, pos[i + 1].col);
            break;
        }
        case ParamId::Option6: {
            // The handler looks at ChkBt(1)..ChkBt(5) whatever the tab. With two positions its
            // statement has an unmatched bracket and fails; with fewer nothing runs.
            c.positions = tickedFront(ticks);
            if (c.positions.size() >= 3) c.op = Op::MaxGap;
            else c.positions.clear();
            break;
        }
        case ParamId::Option7:
            if (scope == ZoneScope::Both) {
                c.op = Op::SameNumber;
            } else if (scope == ZoneScope::Back) {
                c.op = Op::Difference;  // the fixed front statement fig2 - fig1
                c.positions = {0, 1};
            } else {
                const std::vector<int> t = tickedFront(ticks);
                if (!t.empty()) {
                    c.op = Op::Difference;
                    c.positions = {t.front(), t.back()};
                }
            }
            break;
        case ParamId::Option24:
            if (scope == ZoneScope::Back) break;
            c.op = Op::Ac;
            for (const ScopePosition& p : scopePositions(scope))
                if (ticks[static_cast<size_t>(p.box)]) c.positions.push_back(p.col);
            break;
        case ParamId::Option66: {
            if (back) break;
            if (in.listMode) {
                const std::array<bool, 256> listed = listedNumbers(in.zdqjList);
                c.op = Op::LiveListCount;
                fillSum(c, scope, ticks, [&](int f, int) { return listed[static_cast<size_t>(f)] ? 1 : 0; });
                break;
            }
            const auto whole = [](const QString& s) {
                return static_cast<int>(std::nearbyint(std::clamp(param_catalogue::leadingNumber(s), -1e6, 1e6)));
            };
            const int lo = std::clamp(whole(in.zdqjLower), -1, 256), hi = std::clamp(whole(in.zdqjUpper), -1, 256);
            sum(Op::Sum, [&](int f, int) { return f > lo && f <= hi; }, Term::Interval);
            c.termLo = lo;
            c.termHi = hi;
            break;
        }
        case ParamId::Option13:
        case ParamId::Option14:
        case ParamId::Option15:
        case ParamId::Option16:
        case ParamId::Option17: {
            const int position = param_catalogue::info(id).position;
            if (scope == ZoneScope::Front) {
                c.op = Op::Position;
                c.constant = position - 1;
            } else if (scope == ZoneScope::Both && id == ParamId::Option14) {
                c.op = Op::Position;
                c.constant = 6;  // fig7
            }
            break;
        }
    }
    return c;
}

namespace {

template <typename Fn>
void rows(uint64_t begin, uint64_t end, Fn&& fn) {
    for (uint64_t r = begin; r < end; ++r) fn(r);
}

inline int popcount32(uint32_t x) { return __builtin_popcount(x); }
inline int popcount64(uint64_t x) { return __builtin_popcountll(x); }

// Folds of the per-position table values of a row.
struct SumFold {
    using Acc = int32_t;
    static Acc init() { return 0; }
    static Acc add(Acc a, int16_t v) { return a + v; }
};
struct OrFold {
    using Acc = uint32_t;
    static Acc init() { return 0; }
    static Acc add(Acc a, int16_t v) { return a | static_cast<uint16_t>(v); }
};
// Row by row over the tables of the visited positions, their count known at compile time so
// that the row's value stays in a register.
template <int N, typename Fold, typename Emit>
void tableRowsN(const CompiledCompute& c, const CandidateTable& t, uint64_t begin, uint64_t end, Emit&& write) {
    std::array<const uint8_t*, 7> f{};
    std::array<const int16_t*, 7> tab{};
#pragma GCC unroll 8
    for (int k = 0; k < N; ++k) {
        const int col = c.positions[static_cast<size_t>(k)];
        f[static_cast<size_t>(k)] = t.fig(col + 1).data();
        tab[static_cast<size_t>(k)] = c.table[static_cast<size_t>(col)].data();
    }
    for (uint64_t r = begin; r < end; ++r) {
        typename Fold::Acc acc = Fold::init();
#pragma GCC unroll 8
        for (int k = 0; k < N; ++k) acc = Fold::add(acc, tab[static_cast<size_t>(k)][f[static_cast<size_t>(k)][r]]);
        write(r, acc);
    }
}

template <typename Fold, typename Emit>
void tableRows(const CompiledCompute& c, const CandidateTable& t, uint64_t begin, uint64_t end, Emit&& write) {
    switch (c.positions.size()) {
        case 0: tableRowsN<0, Fold>(c, t, begin, end, write); return;
        case 1: tableRowsN<1, Fold>(c, t, begin, end, write); return;
        case 2: tableRowsN<2, Fold>(c, t, begin, end, write); return;
        case 3: tableRowsN<3, Fold>(c, t, begin, end, write); return;
        case 4: tableRowsN<4, Fold>(c, t, begin, end, write); return;
        case 5: tableRowsN<5, Fold>(c, t, begin, end, write); return;
        case 6: tableRowsN<6, Fold>(c, t, begin, end, write); return;
        default: tableRowsN<7, Fold>(c, t, begin, end, write); return;
    }
}

}  // namespace

namespace {

// The AC value row by row. With at most five positions every difference is stored, and for
// numbers that rise along the positions the value is the count of distinct differences less
// n - 1, which a mask of the differences gives at once; other rows take the loop itself.
template <int N>
constexpr int kAcStored = std::min(N * (N - 1) / 2, 10);

// The pairs (earlier, later) whose differences the array of ten holds, in the loop's order.
template <int N>
constexpr std::array<std::pair<int, int>, 10> kAcPairs = [] {
    std::array<std::pair<int, int>, 10> a{};
    int n = 0;
    for (int i = 0; i < N; ++i)
        for (int j = i + 1; j < N; ++j)
            if (n < 10) a[static_cast<size_t>(n++)] = {i, j};
    return a;
}();

template <int N>
void acRowsN(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin, uint64_t end) {
    std::array<const uint8_t*, 7> cols{};
#pragma GCC unroll 8
    for (int k = 0; k < N; ++k) cols[static_cast<size_t>(k)] = t.fig(c.positions[static_cast<size_t>(k)] + 1).data();
    for (uint64_t r = begin; r < end; ++r) {
        std::array<int, 7> v{};
        bool rising = N <= 5;
        uint64_t set = 0;
#pragma GCC unroll 8
        for (int k = 0; k < N; ++k) {
            v[static_cast<size_t>(k)] = cols[static_cast<size_t>(k)][r];
            if (k) rising &= v[static_cast<size_t>(k)] > v[static_cast<size_t>(k - 1)];
            set |= uint64_t{1} << (v[static_cast<size_t>(k)] & 63);
        }
        int top = 0;
#pragma GCC unroll 8
        for (int k = 0; k < N; ++k) top |= v[static_cast<size_t>(k)];
        if (top >= 64) [[unlikely]] {
            out[r] = static_cast<int16_t>(acValue(v.data(), N));
            continue;
        }
        if (N > 0 && rising) {
            uint64_t diffs = 0;
#pragma GCC unroll 8
            for (int k = 0; k < N; ++k) diffs |= set >> v[static_cast<size_t>(k)];
            out[r] = static_cast<int16_t>(popcount64(diffs & ~uint64_t{1}) - (N - 1));
            continue;
        }
        // Any order and up to seven numbers: the stored differences (the first ten pairs) as
        // a mask over -63..63; an entry that has an equal one after it takes one off, so the
        // value is pairs - n + 1 - stored + the count of distinct stored differences.
        uint64_t low = 0, high = 0;
#pragma GCC unroll 10
        for (int p = 0; p < kAcStored<N>; ++p) {
            const int d = v[static_cast<size_t>(kAcPairs<N>[static_cast<size_t>(p)].second)] -
                          v[static_cast<size_t>(kAcPairs<N>[static_cast<size_t>(p)].first)] + 64;
            const uint64_t bit = uint64_t{1} << (d & 63);
            low |= d < 64 ? bit : 0;
            high |= d < 64 ? 0 : bit;
        }
        constexpr int kPairs = N * (N - 1) / 2;
        out[r] = static_cast<int16_t>(kPairs - N + 1 - kAcStored<N> + popcount64(low) + popcount64(high));
    }
}

void acRows(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin, uint64_t end) {
    switch (c.positions.size()) {
        case 0: acRowsN<0>(c, t, out, begin, end); return;
        case 1: acRowsN<1>(c, t, out, begin, end); return;
        case 2: acRowsN<2>(c, t, out, begin, end); return;
        case 3: acRowsN<3>(c, t, out, begin, end); return;
        case 4: acRowsN<4>(c, t, out, begin, end); return;
        case 5: acRowsN<5>(c, t, out, begin, end); return;
        case 6: acRowsN<6>(c, t, out, begin, end); return;
        default: acRowsN<7>(c, t, out, begin, end); return;
    }
}

}  // namespace

namespace {

// A Sum whose term is arithmetic on the number: column by column over blocks of 16-bit lanes.
template <typename Term>
void addColumn(int16_t* acc, const uint8_t* f, uint64_t n, Term term) {
    for (uint64_t i = 0; i < n; ++i) acc[i] = static_cast<int16_t>(acc[i] + term(int16_t{f[i]}));
}

void arithmeticSum(const CompiledCompute& c, const CandidateTable& t, int16_t* out, uint64_t begin, uint64_t end,
                   bool mod10) {
    using Term = CompiledCompute::Term;
    constexpr uint64_t kSumBlock = 4096;
    alignas(64) std::array<int16_t, kSumBlock> acc;
    for (uint64_t b = begin; b < end; b += kSumBlock) {
        const uint64_t n = std::min(end, b + kSumBlock) - b;
        std::fill_n(acc.begin(), n, int16_t{0});
        for (int col : c.positions) {
            const uint8_t* f = t.fig(col + 1).data() + b;
            const auto max = static_cast<int16_t>(c.zoneMax[static_cast<size_t>(col)]);
            const auto lo = static_cast<int16_t>(c.termLo), hi = static_cast<int16_t>(c.termHi);
            int16_t* a = acc.data();
            switch (c.term) {
                case Term::Value: addColumn(a, f, n, [](int16_t x) { return x; }); break;
                case Term::Even: addColumn(a, f, n, [](int16_t x) { return static_cast<int16_t>((x & 1) ^ 1); }); break;
                case Term::Big: addColumn(a, f, n, [max](int16_t x) { return static_cast<int16_t>(2 * x > max); }); break;
                case Term::TailBig: addColumn(a, f, n, [](int16_t x) { return static_cast<int16_t>(x % 10 > 4); }); break;
                case Term::UpTo10: addColumn(a, f, n, [](int16_t x) { return static_cast<int16_t>(x <= 10); }); break;
                case Term::From11To20:
                    addColumn(a, f, n, [](int16_t x) { return static_cast<int16_t>((x > 10) & (x <= 20)); });
                    break;
                case Term::Above20: addColumn(a, f, n, [](int16_t x) { return static_cast<int16_t>(x > 20); }); break;
                case Term::OddValue: addColumn(a, f, n, [](int16_t x) { return static_cast<int16_t>(x * (x & 1)); }); break;
                case Term::EvenValue:
                    addColumn(a, f, n, [](int16_t x) { return static_cast<int16_t>(x * ((x & 1) ^ 1)); });
                    break;
                case Term::Tail: addColumn(a, f, n, [](int16_t x) { return static_cast<int16_t>(x % 10); }); break;
                case Term::SmallValue:
                    addColumn(a, f, n, [max](int16_t x) { return static_cast<int16_t>(x * (2 * x <= max)); });
                    break;
                case Term::BigValue:
                    addColumn(a, f, n, [max](int16_t x) { return static_cast<int16_t>(x * (2 * x > max)); });
                    break;
                case Term::Interval:
                    addColumn(a, f, n, [lo, hi](int16_t x) { return static_cast<int16_t>((x > lo) & (x <= hi)); });
                    break;
                case Term::Table: break;
            }
        }
        if (mod10)
            for (uint64_t i = 0; i < n; ++i) out[b + i] = static_cast<int16_t>(acc[i] % 10);
        else
            std::copy_n(acc.begin(), n, out + b);
    }
}

}  // namespace

void computeRows(const CompiledCompute& c, const CandidateTable& t, std::span<int16_t> canshu, uint64_t begin,
                 uint64_t end) {
    if (!c.writesCanshu() || begin >= end) return;
    int16_t* out = canshu.data();
    constexpr int32_t kMax16 = std::numeric_limits<int16_t>::max();
    if ((c.op == Op::Sum || c.op == Op::SumMod10) && c.term != CompiledCompute::Term::Table) {
        arithmeticSum(c, t, out, begin, end, c.op == Op::SumMod10);
        return;
    }
    switch (c.op) {
        case Op::Sum:
            if (c.checkOverflow)
                tableRows<SumFold>(c, t, begin, end, [out](uint64_t r, int32_t v) {
                    if (v <= kMax16) out[r] = static_cast<int16_t>(v);
                });
            else
                tableRows<SumFold>(c, t, begin, end, [out](uint64_t r, int32_t v) { out[r] = static_cast<int16_t>(v); });
            return;
        case Op::SumMod10:
            tableRows<SumFold>(c, t, begin, end, [out](uint64_t r, int32_t v) { out[r] = static_cast<int16_t>(v % 10); });
            return;
        case Op::LiveListCount: {
            const BitVector& un = t.unslt();
            tableRows<SumFold>(c, t, begin, end,
                               [out, &un](uint64_t r, int32_t v) { out[r] = un.test(r) ? int16_t{0} : static_cast<int16_t>(v); });
            return;
        }
        case Op::OmissionRange: {
            // Column by column over blocks: the greatest from 0 and the least from 99.
            constexpr uint64_t kRangeBlock = 4096;
            alignas(64) std::array<int16_t, kRangeBlock> greatest, least;
            for (uint64_t b = begin; b < end; b += kRangeBlock) {
                const uint64_t n = std::min(end, b + kRangeBlock) - b;
                std::fill_n(greatest.begin(), n, int16_t{0});
                std::fill_n(least.begin(), n, int16_t{99});
                for (int col : c.positions) {
                    const uint8_t* f = t.fig(col + 1).data() + b;
                    const int16_t* tab = c.table[static_cast<size_t>(col)].data();
                    for (uint64_t i = 0; i < n; ++i) {
                        const int16_t v = tab[f[i]];
                        greatest[i] = std::max(greatest[i], v);
                        least[i] = std::min(least[i], v);
                    }
                }
                for (uint64_t i = 0; i < n; ++i) out[b + i] = static_cast<int16_t>(greatest[i] - least[i]);
            }
            return;
        }
        case Op::SameTail: {
            const int k = c.constant;
            tableRows<OrFold>(c, t, begin, end,
                              [out, k](uint64_t r, uint32_t flags) { out[r] = static_cast<int16_t>(k - popcount32(flags)); });
            return;
        }
        default: break;
    }
    constexpr uint64_t kBlock = 4096;
    // A local block (no alias of the columns), so the loops below run on vector lanes.
    alignas(64) std::array<int16_t, kBlock> acc;
    const auto fig = [&t](int col) { return t.fig(col + 1).data(); };

    for (uint64_t b = begin; b < end; b += kBlock) {
        const uint64_t e = std::min(end, b + kBlock);
        const uint64_t n = e - b;
        switch (c.op) {
            // The counts and gaps fit 16 bits a lane.
            case Op::Consecutive: {
                int16_t* o = acc.data();
                std::fill(o, o + n, int16_t{0});
                for (const auto& [x, y] : c.pairs) {
                    const uint8_t* fx = fig(x) + b;
                    const uint8_t* fy = fig(y) + b;
                    for (uint64_t i = 0; i < n; ++i) o[i] = static_cast<int16_t>(o[i] + ((int16_t{fy[i]} - int16_t{fx[i]}) == 1));
                }
                std::copy_n(o, n, out + b);
                break;
            }
            case Op::MaxGap: {
                const auto& p = c.positions;
                int16_t* o = acc.data();
                std::fill(o, o + n, std::numeric_limits<int16_t>::min());
                for (size_t k = 0; k + 1 < p.size(); ++k) {
                    const uint8_t* fx = fig(p[k]) + b;
                    const uint8_t* fy = fig(p[k + 1]) + b;
                    for (uint64_t i = 0; i < n; ++i)
                        o[i] = std::max(o[i], static_cast<int16_t>(int16_t{fy[i]} - int16_t{fx[i]}));
                }
                std::copy_n(o, n, out + b);
                break;
            }
            case Op::Difference: {
                const uint8_t* first = fig(c.positions[0]) + b;
                const uint8_t* last = fig(c.positions[1]) + b;
                for (uint64_t i = 0; i < n; ++i) out[b + i] = static_cast<int16_t>(int{last[i]} - int{first[i]});
                break;
            }
            case Op::SameNumber: {
                int16_t* o = acc.data();
                std::fill(o, o + n, int16_t{0});
                for (int backCol : {5, 6})
                    for (int frontCol = 0; frontCol < kFrontCols; ++frontCol) {
                        const uint8_t* fb = fig(backCol) + b;
                        const uint8_t* ff = fig(frontCol) + b;
                        for (uint64_t i = 0; i < n; ++i) o[i] = static_cast<int16_t>(o[i] + (fb[i] == ff[i]));
                    }
                std::copy_n(o, n, out + b);
                break;
            }
            case Op::Ac: acRows(c, t, out, b, e); break;
            case Op::FigMod2: {
                const uint8_t* f = fig(c.constant) + b;
                for (uint64_t i = 0; i < n; ++i) out[b + i] = static_cast<int16_t>(f[i] % 2);
                break;
            }
            default: break;
        }
    }
}

void computeAll(const CompiledCompute& c, CandidateTable& t) {
    if (!c.writesCanshu()) return;
    std::span<int16_t> canshu = t.canshu();
    const CandidateTable& ct = t;
    kernels::parallelSlices(t.rowCount(), [&](uint64_t begin, uint64_t end) { computeRows(c, ct, canshu, begin, end); });
}

}  // namespace param_kernels
