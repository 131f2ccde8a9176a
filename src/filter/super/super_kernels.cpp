#include "filter/super/super_kernels.h"

#include "engine/candidate_kernels.h"
#include "filter/super/super_text.h"

#include <algorithm>
#include <bit>
#include <climits>

namespace super_kernels {

namespace {

using super_text::LiteralClasses;
using super_text::Pieces;
using Mode = CandidateTable::NumberTextMode;
using Word = BitVector::Word;

// The front numbers' part of a ticket key (five bytes).
constexpr uint64_t kFrontBits = (uint64_t{1} << 40) - 1;

bool bit(uint64_t mask, int c) { return c >= 0 && ((mask >> c) & 1u); }

// Sets unslt (true or false) and a reason on the rows of `sel`.
void setRows(CandidateTable& t, const BitVector& sel, bool dead, ReasonTable::Id reason) {
    auto un = t.filteredOut().words();
    const auto s = sel.words();
    auto fl = t.rowReasons();
    for (size_t w = 0; w < un.size(); ++w) {
        if (!s[w]) continue;
        un[w] = dead ? (un[w] | s[w]) : (un[w] & ~s[w]);
        forEachSetBit(s[w], w * BitVector::kWordBits, [&](size_t r) { fl[r] = reason; });
    }
}

// Intersects `sel` with the live (or dead) rows.
void keepOnly(BitVector& sel, const BitVector& flags, bool set) {
    auto s = sel.words();
    const auto f = flags.words();
    for (size_t w = 0; w < s.size(); ++w) s[w] &= set ? f[w] : ~f[w];
    sel.clearTail();
}

bool any(const BitVector& v) {
    for (Word w : v.words())
        if (w) return true;
    return false;
}

}  // namespace

// ---- relation -------------------------------------------------------------------------------

QString relationPattern(std::span<const int16_t> numbers) {
    QString pat;
    for (int16_t n : numbers) pat += QLatin1Char('*') + super_text::twoDigits(n) + QLatin1Char('*');
    return pat;
}

void relationPrologue(CandidateTable& t) {
    candidate_kernels::beginFilter(t);
    t.setNumberTextMode(Mode::Whole);
}

uint64_t relation(CandidateTable& t, Relation kind, std::span<const int16_t> numbers,
                  const QString& caption) {
    const QString pat = relationPattern(numbers);
    relationPrologue(t);
    const Pieces pieces = super_text::piecesOf(Mode::Whole, t.numberCount());
    LiteralClasses cls;
    std::vector<int> order;
    uint64_t anyMask = 0;
    for (int16_t n : numbers) {
        const int c = cls.add(super_text::twoDigits(n));
        order.push_back(c);
        if (c >= 0) anyMask |= uint64_t{1} << c;
    }
    cls.build();
    // LIKE "*a**b*": the pieces must hold a, then b, ... in this order, one literal per piece
    // (a piece holds at most three characters, a literal at least two).
    // The pieces' columns, taken once for the row loop.
    std::array<const uint8_t*, 7> cols{};
    for (int i = 0; i < pieces.count; ++i)
        cols[static_cast<size_t>(i)] = t.numberColumn(pieces.cols[static_cast<size_t>(i)] + 1).data();
    const auto matches = [&](uint64_t r) {
        if (order.empty()) return false;  // LIKE "" never holds on a ticket
        size_t p = 0;
        for (int i = 0; i < pieces.count && p < order.size(); ++i)
            if (bit(cls.maskOf(cols[static_cast<size_t>(i)][r], true), order[p])) ++p;
        return p == order.size();
    };
    // Only live rows can die: the dead ones are not tested.
    BitVector live = t.filteredOut();
    live.complement();
    BitVector sel;
    switch (kind) {
        case Relation::Conflicting:
            sel = candidate_kernels::selectWithin(t, live, matches);
            break;
        case Relation::Keeping:
            sel = candidate_kernels::selectWithin(t, live, [&](uint64_t r) { return !matches(r); });
            break;
        case Relation::Supporting:
            sel = candidate_kernels::selectWithin(
                t, live, [&](uint64_t r) { return (cls.rowMask(t, r, pieces) & anyMask) != 0 && !matches(r); });
            break;
    }
    keepOnly(sel, t.filteredOut(), false);
    if (!any(sel)) return 0;
    return candidate_kernels::killSelected(t, sel, t.reasons().intern(caption + pat));
}

// ---- inclusion ------------------------------------------------------------------------------

QString inclusionList(std::span<const int16_t> numbers) {
    QStringList parts;
    for (int16_t n : numbers) parts << super_text::twoDigits(n);
    return parts.join(QLatin1Char(' '));
}

namespace {

Mode modeOf(ZoneScope scope) {
    switch (scope) {
        case ZoneScope::Front:
            return Mode::Front;
        case ZoneScope::Back:
            return Mode::Back;
        case ZoneScope::Both:
            return Mode::Whole;
    }
    return Mode::Front;
}

struct InclusionClasses {
    LiteralClasses cls;
    std::vector<int> numbers, bankers;
    uint64_t bankerMask = 0;
    Pieces pieces;

    InclusionClasses(const CandidateTable& t, const InclusionRun& run) {
        for (int16_t n : run.numbers) numbers.push_back(cls.add(super_text::twoDigits(n)));
        for (int16_t d : run.bankers) bankers.push_back(cls.add(super_text::twoDigits(d)));
        cls.build();
        for (int c : bankers)
            if (c >= 0) bankerMask |= uint64_t{1} << c;
        pieces = super_text::piecesOf(t.numberTextMode(), t.numberCount());
    }
    int count(uint64_t mask) const {
        int n = 0;
        for (int c : numbers) n += bit(mask, c);
        return n;
    }
    // NOT LIKE "*dd*" for some banker.
    bool lacksBanker(uint64_t mask) const {
        for (int c : bankers)
            if (!bit(mask, c)) return true;
        return false;
    }
};

QString groupReason(const InclusionRun& run) {
    return run.caption + inclusionList(run.numbers) + QStringLiteral("  ") + QString::number(run.groupSize) +
           QStringLiteral("个一组");
}

QString bankerReason(const InclusionRun& run) {
    return run.caption + inclusionList(run.numbers) + QStringLiteral("  胆");
}

// SKnum of the rows of `counted` (others 0) and the selection of those reaching skzu.
BitVector countNumbers(CandidateTable& t, const InclusionClasses& ic, const BitVector& counted,
                       int16_t groupSize) {
    auto counts = t.superCount();
    std::ranges::fill(counts, int16_t{0});
    return candidate_kernels::selectWithin(t, counted, [&](uint64_t r) {
        const int n = ic.count(ic.cls.rowMask(t, r, ic.pieces));
        counts[r] = static_cast<int16_t>(n);
        return n >= groupSize;
    });
}

}  // namespace

uint64_t inclusionKill(CandidateTable& t, const InclusionRun& run) {
    candidate_kernels::beginFilter(t);
    t.setNumberTextMode(modeOf(run.scope));
    const InclusionClasses ic(t, run);
    BitVector live = t.filteredOut();
    live.complement();
    const BitVector reach = countNumbers(t, ic, live, run.groupSize);
    uint64_t killed = 0;
    if (any(reach)) killed = candidate_kernels::killSelected(t, reach, t.reasons().intern(groupReason(run)));
    if (run.bankers.empty()) return killed;
    BitVector back = candidate_kernels::select(
        t, [&](uint64_t r) { return ic.lacksBanker(ic.cls.rowMask(t, r, ic.pieces)); });
    keepOnly(back, t.filteredOut(), true);
    if (any(back)) setRows(t, back, false, t.reasons().intern(QStringLiteral(" ")));
    return killed;
}

uint64_t inclusionKeep(CandidateTable& t, const InclusionRun& run) {
    candidate_kernels::beginFilter(t);
    t.setNumberTextMode(modeOf(run.scope));
    const InclusionClasses ic(t, run);
    BitVector preLive = t.previousFilteredOut();
    preLive.complement();
    const BitVector reach = countNumbers(t, ic, preLive, run.groupSize);
    // All rows live before die with the group reason, those that reach skzu come back with "".
    BitVector dies = preLive;
    {
        auto d = dies.words();
        const auto s = reach.words();
        for (size_t w = 0; w < d.size(); ++w) d[w] &= ~s[w];
    }
    if (any(dies)) setRows(t, dies, true, t.reasons().intern(groupReason(run)));
    if (any(reach)) setRows(t, reach, false, ReasonTable::kEmpty);
    if (!run.bankers.empty()) {
        BitVector marked = candidate_kernels::select(
            t, [&](uint64_t r) { return ic.lacksBanker(ic.cls.rowMask(t, r, ic.pieces)); });
        keepOnly(marked, t.filteredOut(), true);
        if (any(marked)) setRows(t, marked, true, t.reasons().intern(bankerReason(run)));
    }
    return dies.count();
}

// ---- same as template -----------------------------------------------------------------------

std::optional<uint64_t> ticketKey(const std::array<qint64, 7>& numbers) {
    uint64_t key = 0;
    for (size_t k = 0; k < numbers.size(); ++k) {
        if (numbers[k] < 0 || numbers[k] > UINT8_MAX) return std::nullopt;
        key |= static_cast<uint64_t>(numbers[k]) << (8 * k);
    }
    return key;
}

uint64_t rowKey(const CandidateTable& t, uint64_t row) {
    uint64_t key = 0;
    for (int k = 1; k <= 7; ++k)
        key |= static_cast<uint64_t>(k <= t.numberCount() ? t.numberColumn(k)[row] : 0) << (8 * (k - 1));
    return key;
}

uint64_t sameAsTemplate(CandidateTable& t, const std::unordered_set<uint64_t>& templateKeys) {
    t.setNumberTextMode(Mode::Marked);
    if (templateKeys.empty()) return 0;
    // The template's tickets ordered by their front numbers: rows that share their front numbers
    // come together, so the range of tickets with those numbers is found once per run of rows.
    const auto byFront = [](uint64_t a, uint64_t b) {
        return std::pair(a & kFrontBits, a) < std::pair(b & kFrontBits, b);
    };
    std::vector<uint64_t> keys(templateKeys.begin(), templateKeys.end());
    std::ranges::sort(keys, byFront);
    BitVector hit(t.rowCount());
    auto hw = hit.words();
    KernelExecutor::shared().forEachSlice(t.rowCount(), [&](uint64_t begin, uint64_t end) {
        uint64_t lastFront = 0;
        bool known = false;
        std::span<const uint64_t> same;
        for (uint64_t r = begin; r < end; ++r) {
            const uint64_t key = rowKey(t, r);
            const uint64_t front = key & kFrontBits;
            if (!known || front != lastFront) {
                known = true;
                lastFront = front;
                const auto lo = std::ranges::lower_bound(keys, front, std::ranges::less{},
                                                         [](uint64_t k) { return k & kFrontBits; });
                auto hi = lo;
                while (hi != keys.end() && (*hi & kFrontBits) == front) ++hi;
                same = std::span<const uint64_t>(lo, hi);
            }
            if (!same.empty() && std::ranges::find(same, key) != same.end())
                hw[r / BitVector::kWordBits] |= Word{1} << (r % BitVector::kWordBits);
        }
    });
    uint64_t died = 0;
    auto un = t.filteredOut().words();
    for (size_t w = 0; w < un.size(); ++w) {
        died += static_cast<uint64_t>(std::popcount(hw[w] & ~un[w]));
        un[w] |= hw[w];
    }
    return died;
}

}  // namespace super_kernels
