#include "filter/param/param_reason_builder.h"

#include "engine/candidate_kernels.h"
#include "engine/column_backup.h"
#include "engine/kernel_executor.h"
#include "engine/slice_progress.h"
#include "filter/param/block_runs.h"
#include "filter/param/param_reason_keys.h"

#include <atomic>
#include <bit>
#include <cstring>
#include <limits>
#include <optional>
#include <thread>
#include <unordered_map>
#include <unordered_set>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace param_reason_builder {

namespace {

constexpr uint64_t kBlock = KernelExecutor::kBlockRows;

using param_reason_keys::KeyMap;
using param_reason_keys::KeyReasons;
using param_reason_keys::kMaxSteps;

// Sets bits [from, to) of the words.
inline void setBits(BitVector::Word* words, uint32_t from, uint32_t to) {
    constexpr uint32_t kBits = BitVector::kWordBits;
    while (from < to) {
        const uint32_t w = from / kBits, lo = from % kBits;
        const uint32_t hi = std::min<uint32_t>(kBits, lo + (to - from));
        const BitVector::Word ones =
            hi - lo == kBits ? ~BitVector::Word{0} : ((BitVector::Word{1} << (hi - lo)) - 1);
        words[w] |= ones << lo;
        from += hi - lo;
    }
}  // 22 parameters and the five positions with their parity

// What the steps read of a row: the number columns (bit k for column k) and whether every
// value is a function of those numbers and the row's live flag. It is not when a step reads
// canshu that no computation of the step wrote (a computation that does not run, or a sum that
// keeps the old value of the rows it overflows).
struct StepInputs {
    uint32_t columns = 0;
    bool numbersOnly = true;
    bool writesCanshu = false;

    explicit StepInputs(const std::vector<FilterStep>& steps) {
        for (const FilterStep& s : steps) {
            columns |= param_kernels::columnsRead(s.compute);
            if (s.valueColumn >= 0) columns |= 1u << (s.valueColumn + 1);
            if (!s.valueFromNumbers()) numbersOnly = false;
            if (s.compute.writesCanshu()) writesCanshu = true;
        }
    }
};

// The first pass of the tally over one slice of rows. Each block is cut into runs of rows that
// agree in everything the steps read and in their old reason (neighbouring rows often differ
// only in numbers no step looks at: the back numbers of a front-scope run); the steps run on the
// first row of each run, gathered into a small table, and the run's rows share its outcome. A
// caught row takes in place of its reason the id of its key in the slice's map, until the texts
// of the keys are made, and canshu the value of the last computation; Errnum is written after
// the pass (and canshu too where a run is a single row).
// In the formula mode the rows keep their old reasons through the pass, which notes the distinct
// pairs of an old reason and a live flag among the caught rows, and writes Errnum at once.
struct SliceOutcome {
    KeyMap keys;
    std::vector<uint64_t> formulaPairs;  // (old reason << 1) | live, in the order of the rows
    std::unordered_set<uint64_t> seenPairs;
};

class TallySlice {
    static constexpr uint32_t kFrontColumns = 0b111110;  // fig1..fig5

public:
    TallySlice(CandidateTable& table, const std::vector<FilterStep>& steps, const StepInputs& inputs,
               BitVector& changed, std::span<ReasonTable::Id> rowReasons, SliceOutcome& outcome, bool formulaMode)
        : m_table(table),
          m_paramValues(table.paramValues()),
          m_failCount(table.failCount()),
          m_steps(steps),
          m_inputs(inputs),
          m_changed(changed),
          m_rowReasons(rowReasons),
          m_map(outcome.keys),
          m_outcome(outcome),
          m_formulaMode(formulaMode),
          m_heads(table.kind(), kBlock),
          m_vals(steps.size() * kBlock),
          m_runs(table, inputs.columns),
          m_canRunDirect(inputs.numbersOnly),
          m_frontRuns(table, kFrontColumns) {
        m_all.fill(1);
        for (const FilterStep& s : steps) m_byFrontRuns.push_back(computesByFrontRuns(s.compute));
    }

    // False when the run was cancelled.
    bool run(uint64_t begin, uint64_t end, SliceProgress& control) {
        uint64_t blockIndex = 0;
        for (uint64_t b = begin; b < end; b += kBlock, ++blockIndex) {
            const uint64_t n = std::min(end, b + kBlock) - b;
            m_runs.liveBytes(b, n, m_live.data());
            // Where rows seldom repeat (every number is read) the steps run on the table's rows
            // themselves; a block now and then is cut into runs again to see whether that holds.
            const bool direct = m_canRunDirect && !m_runs.worthLooking(blockIndex);
            uint32_t m = static_cast<uint32_t>(n);
            if (direct) {
                useRows(b);
            } else {
                m = findRuns(b, n);
                m_runs.note(m, n);
                gather(b, n, m);
            }
            if (m_formulaMode)
                m_caughtCount.fill(0);
            else
                std::fill_n(m_mask.begin(), m, 0u);
            for (size_t t = 0; t < m_steps.size(); ++t) applyStep(t, m);
            if (m_formulaMode) {
                notePairs(m);
            } else {
                markRepeats(m);
                keyRuns(m);
            }
            if (direct)
                scatterRows(b, m);
            else
                scatter(b, m);
            if (!control.blockDone(n)) return false;
        }
        return true;
    }

private:
    // The runs of the block, which also agree in their live flags and old reasons; returns their
    // count. Where a value may depend on more than the numbers, every row is a run of its own.
    uint32_t findRuns(uint64_t b, uint64_t n) {
        if (!m_inputs.numbersOnly) return m_runs.everyRow(n);
        const ReasonTable::Id* old = m_rowReasons.data() + b;
        for (uint64_t i = 1; i < n; ++i)
            m_marks[i] = static_cast<uint8_t>((m_live[i] ^ m_live[i - 1]) | (old[i] != old[i - 1]));
        return m_runs.find(b, n, m_marks.data());
    }

    // The first rows of the runs into the small table: their numbers, live flags, old reasons,
    // and where a step may read it unwritten, their canshu.
    void gather(uint64_t b, uint64_t n, uint32_t m) {
        m_runs.gatherNumbers(b, m, m_heads);
        auto un = m_heads.filteredOut().words();
        std::fill(un.begin(), un.end(), BitVector::Word{0});
        for (uint32_t j = 0; j < m; ++j) {
            m_headLive[j] = m_live[m_runs.starts()[j]];
            un[j / BitVector::kWordBits] |= BitVector::Word{m_headLive[j] ^ 1u} << (j % BitVector::kWordBits);
        }
        for (uint32_t j = 0; j < m; ++j) m_headOld[j] = m_rowReasons[b + m_runs.starts()[j]];
        if (!m_inputs.numbersOnly) std::copy_n(m_paramValues.data() + b, n, m_runValues.data());
        m_source = &m_heads;
        m_sourceBegin = 0;
        m_values = m_runValues.data();
        m_runLive = m_headLive.data();
        m_runOld = m_headOld.data();
    }

    // The direct form: every row of the block is a run of its own, read where it stands, and the
    // computations write canshu in place.
    void useRows(uint64_t b) {
        m_source = &m_table;
        m_sourceBegin = b;
        m_values = m_paramValues.data() + b;
        m_runLive = m_live.data();
        m_runOld = m_rowReasons.data() + b;
    }

    // One pass of step t over the runs: the condition, the leading [unslt]=false where the
    // statement has it, and the step's bit in the run's mask.
    void applyStep(size_t t, uint32_t m) {
        const FilterStep& s = m_steps[t];
        const CandidateTable& source = *m_source;
        if (m_source == &m_heads)
            param_kernels::computeRows(s.compute, source, m_runValues, 0, m);
        else
            computeRows(t, m_sourceBegin, m);
        const int16_t* computed = m_values;
        const uint8_t* figures = s.valueColumn < 0 ? nullptr : source.numberColumn(s.valueColumn + 1).data() + m_sourceBegin;
        // The formula mode needs the values only for this test; the key mode keeps them for the keys.
        int16_t* kept = m_vals.data() + (m_formulaMode ? 0 : t * kBlock);
        const int16_t* v = kept;
        if (figures)
            std::copy_n(figures, m, kept);
        else if (m_formulaMode)
            v = computed;
        else
            std::copy_n(computed, m, kept);
        const uint8_t* alive = s.liveOnly ? m_runLive : m_all.data();
        if (m_formulaMode) {
            countCaught(s, v, alive, m);
            return;
        }
        s.hitBlock(v, m, m_hit.data());
        for (uint32_t i = 0; i < m; ++i) m_mask[i] |= uint32_t{static_cast<uint8_t>(m_hit[i] & alive[i])} << t;
    }

    // Whether a step folds a term of front and of back columns: in the direct form its front
    // part is then computed once per run of equal fronts (the rows come sorted by front).
    bool computesByFrontRuns(const CompiledCompute& c) const {
        const auto front = [](int col) { return col < 5; };
        return c.byFrontRuns && m_table.kind() != CandidateTable::Kind::SixNumbers &&
               std::ranges::any_of(c.positions, front) && !std::ranges::all_of(c.positions, front);
    }

    // The direct form's computation of step t on rows [b, b + n), in place.
    void computeRows(size_t t, uint64_t b, uint64_t n) {
        const CompiledCompute& c = m_steps[t].compute;
        if (m_byFrontRuns[t] && frontRunsFound(b, n))
            c.byFrontRuns(c, m_table, m_paramValues.data(), b, m_frontRuns.starts(), m_frontCount);
        else
            param_kernels::computeRows(c, m_table, m_paramValues, b, b + n);
    }

    // The runs of equal fronts of the block, found once per block; false where they are short.
    bool frontRunsFound(uint64_t b, uint64_t n) {
        if (m_frontBlock != b) {
            m_frontBlock = b;
            m_frontCount = m_frontRuns.find(b, n, nullptr);
        }
        return m_frontCount * 2 <= n;
    }

    // The formula mode counts the steps that catch each run, on byte lanes.
    void countCaught(const FilterStep& s, const int16_t* v, const uint8_t* alive, uint32_t m) {
        uint8_t* count = m_caughtCount.data();
        s.hitBlock(v, m, m_hit.data());
        for (uint32_t i = 0; i < m; ++i) count[i] = static_cast<uint8_t>(count[i] + (m_hit[i] & alive[i]));
    }

    // m_repeat[j]: run j has the key of the run before it (the same old reason, the same steps
    // caught it, with the same values where their texts show them), so it takes that run's
    // reason without a key being made.
    void markRepeats(uint32_t m) {
        std::fill_n(m_differs.begin(), m, 0u);
        for (size_t t = 0; t < m_steps.size(); ++t) {
            if (m_steps[t].constantText) continue;
            const int16_t* v = m_vals.data() + t * kBlock;
            for (uint32_t i = 1; i < m; ++i) m_differs[i] |= static_cast<uint32_t>(v[i] != v[i - 1]) << t;
        }
        m_repeat[0] = 0;
        for (uint32_t i = 1; i < m; ++i)
            m_repeat[i] = static_cast<uint8_t>(int{m_mask[i] == m_mask[i - 1]} & int{m_runOld[i] == m_runOld[i - 1]} &
                                               int{(m_differs[i] & m_mask[i]) == 0});
    }

    // The key id of each caught run: its old reason id, the mask of the steps that caught it and
    // the values that their texts show.
    void keyRuns(uint32_t m) {
        std::array<uint16_t, 4 + kMaxSteps> key{};
        for (uint32_t j = 0; j < m; ++j) {
            const uint32_t mask = m_mask[j];
            if (!mask) continue;
            // The run before was caught with this key: m_lastId is its id.
            if (m_repeat[j]) {
                m_keyOf[j] = m_lastId;
                continue;
            }
            const uint32_t old = m_runOld[j];
            uint32_t len = 0;
            key[len++] = static_cast<uint16_t>(old);
            key[len++] = static_cast<uint16_t>(old >> 16);
            key[len++] = static_cast<uint16_t>(mask);
            key[len++] = static_cast<uint16_t>(mask >> 16);
            for (uint32_t bits = mask; bits; bits &= bits - 1) {
                const int t = std::countr_zero(bits);
                if (!m_steps[static_cast<size_t>(t)].constantText)
                    key[len++] = static_cast<uint16_t>(m_vals[static_cast<size_t>(t) * kBlock + j]);
            }
            m_lastId = m_map.idOf(key.data(), len);
            m_keyOf[j] = m_lastId;
        }
    }

    // The direct form's scatter: rows and runs are one.
    void scatterRows(uint64_t b, uint32_t n) {
        const auto words = m_changed.words();
        if (m_formulaMode) {
            for (uint32_t i = 0; i < n; ++i) m_failCount[b + i] = m_caughtCount[i];
            for (uint32_t off = 0; off < n; off += BitVector::kWordBits)
                words[(b + off) / BitVector::kWordBits] = nonZeroBits(m_caughtCount.data() + off);
            return;
        }
        std::array<uint8_t, kBlock> caught{};
        for (uint32_t i = 0; i < n; ++i) {
            caught[i] = static_cast<uint8_t>(m_mask[i] != 0);
            if (m_mask[i]) m_rowReasons[b + i] = m_keyOf[i];
        }
        for (uint32_t off = 0; off < n; off += BitVector::kWordBits)
            words[(b + off) / BitVector::kWordBits] = nonZeroBits(caught.data() + off);
    }

    // The formula mode: the pairs of old reason and live flag of the caught runs, each once.
    void notePairs(uint32_t m) {
        for (uint32_t j = 0; j < m; ++j) {
            if (!m_caughtCount[j]) continue;
            const uint64_t pair = uint64_t{m_runOld[j]} << 1 | m_runLive[j];
            uint64_t& last = m_lastPair[m_runLive[j]];
            if (pair == last) continue;
            last = pair;
            if (m_outcome.seenPairs.insert(pair).second) m_outcome.formulaPairs.push_back(pair);
        }
    }

    // Every caught row of the block takes its run's key id, run by run (in the formula mode its
    // Errnum instead: the rows keep their old reasons until the pairs are joined to the formula).
    void scatter(uint64_t b, uint32_t m) {
        std::array<BitVector::Word, kBlock / BitVector::kWordBits> caught{};
        if (m_inputs.numbersOnly && m_inputs.writesCanshu)
            for (uint32_t j = 0; j < m; ++j)
                std::fill(m_paramValues.begin() + static_cast<ptrdiff_t>(b + m_runs.starts()[j]),
                          m_paramValues.begin() + static_cast<ptrdiff_t>(b + m_runs.starts()[j + 1]), m_runValues[j]);
        for (uint32_t j = 0; j < m; ++j) {
            const uint32_t from = m_runs.starts()[j], to = m_runs.starts()[j + 1];
            const uint8_t failures = m_formulaMode ? m_caughtCount[j] : static_cast<uint8_t>(std::popcount(m_mask[j]));
            if (m_formulaMode)
                std::fill(m_failCount.begin() + static_cast<ptrdiff_t>(b + from),
                          m_failCount.begin() + static_cast<ptrdiff_t>(b + to), int16_t{failures});
            if (!failures) continue;
            if (!m_formulaMode)
                std::fill(m_rowReasons.begin() + static_cast<ptrdiff_t>(b + from),
                          m_rowReasons.begin() + static_cast<ptrdiff_t>(b + to), m_keyOf[j]);
            setBits(caught.data(), from, to);
        }
        // The block's words are the slice's own: a block starts on a whole word.
        const auto words = m_changed.words();
        const size_t first = b / BitVector::kWordBits;
        const size_t count = std::min(caught.size(), words.size() - first);
        std::copy_n(caught.begin(), count, words.begin() + static_cast<ptrdiff_t>(first));
    }

    const CandidateTable& m_table;
    std::span<int16_t> m_paramValues;
    std::span<int16_t> m_failCount;
    const std::vector<FilterStep>& m_steps;
    const StepInputs& m_inputs;
    BitVector& m_changed;
    std::span<ReasonTable::Id> m_rowReasons;
    KeyMap& m_map;
    SliceOutcome& m_outcome;
    bool m_formulaMode;
    std::array<uint64_t, 2> m_lastPair{UINT64_MAX, UINT64_MAX};  // by live flag
    CandidateTable m_heads;  // the first row of each run of the block
    std::vector<int16_t> m_vals;
    std::array<int16_t, kBlock> m_runValues{};
    std::array<uint32_t, kBlock> m_mask, m_differs, m_keyOf, m_headOld;
    std::array<uint8_t, kBlock> m_live, m_headLive, m_hit, m_all, m_repeat, m_marks, m_caughtCount;
    uint32_t m_lastId = 0;
    // Where the steps of a block read its runs: the small table of their first rows, or the
    // table itself from row m_sourceBegin on; and the computed values, live flags, old reasons.
    BlockRuns m_runs;
    const bool m_canRunDirect;
    // By step, whether it computes by runs of equal fronts; the runs of the block the direct
    // form is at.
    std::vector<bool> m_byFrontRuns;
    BlockRuns m_frontRuns;
    uint64_t m_frontBlock = UINT64_MAX;
    uint32_t m_frontCount = 0;
    const CandidateTable* m_source = nullptr;
    uint64_t m_sourceBegin = 0;
    const int16_t* m_values = nullptr;
    const uint8_t* m_runLive = nullptr;
    const uint32_t* m_runOld = nullptr;
};

// The slice of the first pass that holds each row: the slices of the first pass, in row order.
using SliceRanges = std::vector<std::pair<uint64_t, uint64_t>>;

// Calls fn(slice, begin, end) for every slice of the first pass, on all cores.
template <typename Fn>
void forEachRange(const SliceRanges& ranges, Fn&& fn) {
    const KernelExecutor::Slices one{ranges.size(), 1, ranges.size()};
    KernelExecutor::shared().forEachIndexedSlice(
        one, [&](size_t slice, uint64_t, uint64_t) { fn(slice, ranges[slice].first, ranges[slice].second); });
}

// A cancelled run: the caught rows take back the old reasons their keys hold.
void restoreReasons(CandidateTable& table, const SliceRanges& ranges, const std::vector<SliceOutcome>& outcomes,
                    const BitVector& changed) {
    auto rowReasons = table.rowReasons();
    const auto changedWords = changed.words();
    forEachRange(ranges, [&](size_t slice, uint64_t begin, uint64_t end) {
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w)
            forEachSetBit(changedWords[w], w * BitVector::kWordBits, [&](size_t r) {
                const uint16_t* key = outcomes[slice].keys.key(rowReasons[r]);
                rowReasons[r] = uint32_t{key[0]} | (uint32_t{key[1]} << 16);
            });
    });
}

// canshu as the steps leave it: the computations from the last one that writes every row on,
// each on every row in turn, block by block.
void writeParamValues(CandidateTable& table, const std::vector<FilterStep>& steps) {
    size_t from = 0;
    for (size_t t = 0; t < steps.size(); ++t)
        if (steps[t].compute.writesCanshu() && !steps[t].compute.checkOverflow) from = t;
    std::span<int16_t> paramValues = table.paramValues();
    const CandidateTable& ct = table;
    KernelExecutor::shared().forEachSlice(table.rowCount(), [&](uint64_t begin, uint64_t end) {
        for (uint64_t b = begin; b < end; b += kBlock)
            for (size_t t = from; t < steps.size(); ++t)
                param_kernels::computeRows(steps[t].compute, ct, paramValues, b, std::min(end, b + kBlock));
    });
}

// The key mode after the pass: the reasons are made slice by slice, each slice's keys in the
// order its rows met them, so that new entries take their ids in row order however many slices
// there were; then every caught row takes its key's reason and Errnum. False when cancelled.
bool finishKeys(CandidateTable& table, const SliceRanges& ranges, std::vector<SliceOutcome>& outcomes,
                const BitVector& changed, const std::vector<FilterStep>& steps, SliceProgress& control) {
    std::vector<std::vector<ReasonTable::Id>> ids(ranges.size());
    std::vector<std::vector<uint8_t>> counts(ranges.size());
    KeyReasons reasons(table.reasons(), steps);
    for (size_t slice = 0; slice < ranges.size() && !control.cancelledNow(); ++slice) {
        const KeyMap& map = outcomes[slice].keys;
        ids[slice].reserve(map.size());
        counts[slice].reserve(map.size());
        for (uint32_t key = 0; key < map.size(); ++key) {
            if (key % 65536 == 65535 && control.cancelledNow()) break;
            ids[slice].push_back(reasons.idOf(map.key(key)));
            const uint16_t* k = map.key(key);
            counts[slice].push_back(
                static_cast<uint8_t>(std::popcount(uint32_t{k[2]} | (uint32_t{k[3]} << 16))));
        }
    }
    if (control.stopped()) return false;

    auto rowReasons = table.rowReasons();
    std::span<int16_t> failCount = table.failCount();
    const auto changedWords = changed.words();
    forEachRange(ranges, [&](size_t slice, uint64_t begin, uint64_t end) {
        const std::vector<ReasonTable::Id>& sliceIds = ids[slice];
        const std::vector<uint8_t>& sliceCounts = counts[slice];
        std::fill(failCount.begin() + static_cast<ptrdiff_t>(begin),
                  failCount.begin() + static_cast<ptrdiff_t>(end), int16_t{0});
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w)
            forEachSetBit(changedWords[w], w * BitVector::kWordBits, [&](size_t r) {
                failCount[r] = sliceCounts[rowReasons[r]];
                rowReasons[r] = sliceIds[rowReasons[r]];
            });
    });
    return true;
}

// The formula mode after the pass: each distinct pair of an old reason and a live flag is joined
// to the formula's entry for that flag, in the order of the rows; then every caught row takes
// the joining of its pair.
void finishFormula(CandidateTable& table, const SliceRanges& ranges, const std::vector<SliceOutcome>& outcomes,
                   const BitVector& changed, const std::shared_ptr<const RowFormula>& formula) {
    ReasonTable& reasons = table.reasons();
    std::array<std::optional<ReasonTable::Id>, 2> formulaIds;
    std::unordered_map<uint64_t, ReasonTable::Id> joined;
    for (const SliceOutcome& outcome : outcomes)
        for (uint64_t pair : outcome.formulaPairs) {
            if (joined.contains(pair)) continue;
            const size_t live = pair & 1u;
            if (!formulaIds[live]) formulaIds[live] = reasons.formula(formula, live != 0);
            joined.emplace(pair, reasons.join(static_cast<ReasonTable::Id>(pair >> 1), *formulaIds[live]));
        }

    auto rowReasons = table.rowReasons();
    const auto changedWords = changed.words();
    const auto deadWords = table.filteredOut().words();
    forEachRange(ranges, [&](size_t, uint64_t begin, uint64_t end) {
        // The last pair met for each live flag: live and dead rows lie mixed, old reasons in runs.
        std::array<uint64_t, 2> lastPair{UINT64_MAX, UINT64_MAX};
        std::array<ReasonTable::Id, 2> lastId{};
        for (uint64_t w = begin / BitVector::kWordBits; w * BitVector::kWordBits < end; ++w) {
            const BitVector::Word dead = deadWords[w];
            forEachSetBit(changedWords[w], w * BitVector::kWordBits, [&](size_t r) {
                const uint64_t live = ((dead >> (r % BitVector::kWordBits)) & 1u) ^ 1u;
                const uint64_t pair = uint64_t{rowReasons[r]} << 1 | live;
                if (pair != lastPair[live]) {
                    lastPair[live] = pair;
                    lastId[live] = joined.at(pair);
                }
                rowReasons[r] = lastId[live];
            });
        }
    });
}

}  // namespace

bool tally(CandidateTable& table, const std::vector<FilterStep>& steps, EngineProgress* progress,
           const std::shared_ptr<const RowFormula>& formula) {
    const uint64_t rows = table.rowCount();
    if (rows == 0) return true;
    // The columns the slices write, allocated before the threads start.
    const bool hadParamValues = table.hasParamValues(), hadFailCount = table.hasFailCount();
    table.paramValues();
    std::span<int16_t> failCount = table.failCount();
    if (steps.empty()) {
        std::fill(failCount.begin(), failCount.end(), int16_t{0});
        return true;
    }
    Q_ASSERT(steps.size() <= kMaxSteps);
    auto rowReasons = table.rowReasons();
    BitVector changed(rows);
    const KernelExecutor::Slices slices = KernelExecutor::shared().slicesFor(rows);
    SliceRanges ranges;
    for (size_t i = 0; i < slices.count; ++i) ranges.emplace_back(slices.begin(i), slices.end(i));
    std::vector<SliceOutcome> outcomes(slices.count);
    const StepInputs inputs(steps);
    // A formula stands for the texts only where every value is a function of the row's numbers.
    const bool formulaMode = formula && inputs.numbersOnly;
    SliceProgress control(progress, rows);
    // The pass writes canshu where the runs give it, and Errnum in the formula mode: a run that
    // may be cancelled keeps the old values to put back.
    std::optional<ColumnBackup> oldParamValues, oldFailCount;
    if (progress && inputs.numbersOnly && inputs.writesCanshu) oldParamValues.emplace(table.paramValues(), hadParamValues);
    if (progress && formulaMode) oldFailCount.emplace(failCount, hadFailCount);
    forEachRange(ranges, [&](size_t slice, uint64_t begin, uint64_t end) {
        if (!control.stopped())
            TallySlice(table, steps, inputs, changed, rowReasons, outcomes[slice], formulaMode)
                .run(begin, end, control);
    });

    const bool done = formulaMode ? !control.cancelledNow()
                                  : finishKeys(table, ranges, outcomes, changed, steps, control);
    if (!done) {
        if (!formulaMode) restoreReasons(table, ranges, outcomes, changed);
        if (oldParamValues) oldParamValues->restore(table.paramValues());
        if (oldFailCount) oldFailCount->restore(failCount);
        return false;
    }
    if (formulaMode) finishFormula(table, ranges, outcomes, changed, formula);
    if (!inputs.numbersOnly) writeParamValues(table, steps);
    return true;
}

}  // namespace param_reason_builder
