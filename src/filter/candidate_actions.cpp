#include "filter/candidate_actions.h"

#include "engine/candidate_kernels.h"

#include <algorithm>

namespace candidate_actions {

using Word = BitVector::Word;

std::optional<bool> toggleByHand(CandidateTable& t, int32_t idx) {
    candidate_kernels::beginFilter(t);
    // SELECT * WHERE [idx] = {idx}: the first such row decides, the update takes them all.
    std::vector<uint64_t> rows;
    if (!t.hasExplicitIdx()) {
        if (idx >= 1 && static_cast<uint64_t>(idx) <= t.rowCount()) rows.push_back(static_cast<uint64_t>(idx - 1));
    } else {
        for (uint64_t r = 0; r < t.rowCount(); ++r)
            if (t.idxAt(r) == idx) rows.push_back(r);
    }
    if (rows.empty()) return std::nullopt;
    const bool wasDead = t.filteredOut().test(rows.front());
    const ReasonTable::Id reason = wasDead ? ReasonTable::kEmpty : t.reasons().intern(kManualDelete);
    for (uint64_t r : rows) {
        if (t.filteredOut().test(r) != wasDead) continue;
        t.filteredOut().set(r, !wasDead);
        t.rowReasons()[r] = reason;
    }
    return !wasDead;
}

void resetAll(CandidateTable& table) {
    table.filteredOut().fill(false);
    auto fl = table.rowReasons();
    // Most reasons are empty already (a reset after a filter clears the rows it killed): a
    // block is read first and written only when it holds another reason, which halves the
    // memory traffic of the common case.
    constexpr uint64_t kBlock = 64;
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        for (uint64_t b = begin; b < end; b += kBlock) {
            const uint64_t e = std::min(end, b + kBlock);
            ReasonTable::Id other = 0;
            for (uint64_t r = b; r < e; ++r) other |= fl[r] ^ ReasonTable::kEmpty;
            if (other)
                std::fill(fl.begin() + static_cast<ptrdiff_t>(b), fl.begin() + static_cast<ptrdiff_t>(e),
                          ReasonTable::kEmpty);
        }
    });
}

void resetLast(CandidateTable& table) {
    auto un = table.filteredOut().words();
    const auto pre = table.previousFilteredOut().words();
    auto fl = table.rowReasons();
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        const uint64_t firstWord = begin / BitVector::kWordBits;
        const uint64_t lastWord = BitVector::wordsFor(end);
        for (uint64_t w = firstWord; w < lastWord; ++w) {
            const Word back = ~pre[w] & un[w];
            if (!back) continue;
            un[w] &= ~back;
            forEachSetBit(back, w * BitVector::kWordBits, [&](size_t r) { fl[r] = ReasonTable::kEmpty; });
        }
    });
}

void invertAll(CandidateTable& table) {
    candidate_kernels::beginFilter(table);
    table.filteredOut().complement();
    candidate_kernels::prefixReasons(table, kInvertAllPrefix);
}

void invertLast(CandidateTable& table) {
    std::ranges::copy(table.previousFilteredOut().words(), table.scratchFilteredOut().words().begin());
    candidate_kernels::beginFilter(table);
    // The rows live before the last filter flip.
    BitVector swapped = table.scratchFilteredOut();
    swapped.complement();
    auto un = table.filteredOut().words();
    const auto sw = swapped.words();
    for (size_t w = 0; w < un.size(); ++w) un[w] ^= sw[w];
    candidate_kernels::prefixReasons(table, kInvertLastPrefix, &swapped);
}

namespace {

template <typename T>
std::vector<T> copied(std::span<T> column) {
    return std::vector<T>(column.begin(), column.end());
}

// Puts an allocated column back; one that was not allocated before reads 0 again.
template <typename T>
void putBack(const std::vector<T>& saved, std::span<T> column) {
    if (saved.empty())
        std::ranges::fill(column, T{0});
    else
        std::ranges::copy(saved, column.begin());
}

}  // namespace

Snapshot snapshot(CandidateTable& table) {
    Snapshot s;
    s.filteredOut = table.filteredOut();
    s.previousFilteredOut = table.previousFilteredOut();
    s.scratchFilteredOut = table.scratchFilteredOut();
    s.groupMark = table.groupMark();
    s.rowReasons.assign(table.rowReasons().begin(), table.rowReasons().end());
    s.reasons = table.reasons();
    // The mutable accessors would allocate: only the allocated columns are read.
    if (table.hasParamValues()) s.paramValues = copied(table.paramValues());
    if (table.hasSuperCount()) s.superCount = copied(table.superCount());
    if (table.hasFailCount()) s.failCount = copied(table.failCount());
    if (table.hasMatchIssue()) s.matchIssue = copied(table.matchIssue());
    s.numberTextMode = table.numberTextMode();
    s.backNumberTextFilled = table.backNumberTextFilled();
    return s;
}

void restore(CandidateTable& table, Snapshot&& s) {
    table.filteredOut() = std::move(s.filteredOut);
    table.previousFilteredOut() = std::move(s.previousFilteredOut);
    table.scratchFilteredOut() = std::move(s.scratchFilteredOut);
    table.groupMark() = std::move(s.groupMark);
    std::ranges::copy(s.rowReasons, table.rowReasons().begin());
    table.reasons() = std::move(s.reasons);
    if (table.hasParamValues()) putBack(s.paramValues, table.paramValues());
    if (table.hasSuperCount()) putBack(s.superCount, table.superCount());
    if (table.hasFailCount()) putBack(s.failCount, table.failCount());
    if (table.hasMatchIssue()) putBack(s.matchIssue, table.matchIssue());
    table.setNumberTextMode(s.numberTextMode);
    table.setBackNumberTextFilled(s.backNumberTextFilled);
}

}  // namespace candidate_actions
