#pragma once

#include "engine/bit_vector.h"
#include "engine/reason_table.h"
#include "engine/zeroed_allocator.h"
#include "workspace/schema.h"

#include <QString>

#include <array>
#include <cstdint>
#include <span>
#include <vector>

// One candidate table (zuhe, zuheRote, zuheRead, zuheMoban, zuhef) held in memory as columns.
// The numbers fig1..fig7 (fig1..fig6 in zuhef) are immutable byte columns; the flags are bit
// vectors; the scratch values are small integer columns allocated when a filter first writes
// them (an unallocated column reads as 0); the reasons are ids into an interned text table.
// Row r is the ticket with idx r + 1 unless an explicit idx column was loaded.
class CandidateTable {
public:
    using Kind = schema::CandidateKind;
    static constexpr int kMaxNumbers = 7;
    // Bytes one ticket needs with every column allocated (figs, four flags, reason id, the four
    // scratch columns, idx): what the memory check of an expansion counts.
    static constexpr uint64_t kBytesPerTicket = 7 + 1 + 4 + 2 + 2 + 2 + 4 + 4;

    // How the scratch text columns Numstring / NumstringHou are currently filled: the front
    // numbers, all numbers or the back numbers in two digits joined by blanks, or the marked
    // form "(1!2@3#4$5%6^7)" of the same-as-template filter.
    enum class NumberTextMode : uint8_t { Null, Front, Whole, Back, Marked };

    // The columns of the record, one bit each: what changed since the record was last written.
    // The non-const accessors mark their column; the numbers are written once (expansion,
    // loading) and marked by the constructor only.
    enum Column : uint32_t {
        Numbers = 1u << 0,
        FilteredOutColumn = 1u << 1,
        PreviousFilteredOutColumn = 1u << 2,
        ScratchFilteredOutColumn = 1u << 3,
        GroupMarkColumn = 1u << 4,
        ReasonColumn = 1u << 5,
        ParamValueColumn = 1u << 6,
        SuperCountColumn = 1u << 7,
        FailCountColumn = 1u << 8,
        MatchIssueColumn = 1u << 9,
        IdxColumn = 1u << 10,
        AllColumns = (1u << 11) - 1
    };

    CandidateTable() = default;
    CandidateTable(Kind kind, uint64_t rows);

    Kind kind() const { return m_kind; }
    QString tableName() const { return schema::candidateTableName(m_kind); }
    int numberCount() const { return m_kind == Kind::SixNumbers ? 6 : 7; }
    uint64_t rowCount() const { return m_rows; }
    uint64_t deadCount() const { return m_filteredOut.count(); }
    uint64_t liveCount() const { return m_rows - deadCount(); }

    // fig1..fig7 as k = 1..7.
    std::span<uint8_t> numberColumn(int k) { return m_numberColumns[static_cast<size_t>(k - 1)]; }
    std::span<const uint8_t> numberColumn(int k) const { return m_numberColumns[static_cast<size_t>(k - 1)]; }

    BitVector& filteredOut() { return marked(FilteredOutColumn, m_filteredOut); }
    BitVector& previousFilteredOut() { return marked(PreviousFilteredOutColumn, m_previousFilteredOut); }
    BitVector& scratchFilteredOut() { return marked(ScratchFilteredOutColumn, m_scratchFilteredOut); }
    BitVector& groupMark() { return marked(GroupMarkColumn, m_groupMark); }
    const BitVector& filteredOut() const { return m_filteredOut; }
    const BitVector& previousFilteredOut() const { return m_previousFilteredOut; }
    const BitVector& scratchFilteredOut() const { return m_scratchFilteredOut; }
    const BitVector& groupMark() const { return m_groupMark; }

    std::span<ReasonTable::Id> rowReasons() { return marked(ReasonColumn, m_rowReasons); }
    std::span<const ReasonTable::Id> rowReasons() const { return m_rowReasons; }
    ReasonTable& reasons() { return m_reasons; }
    const ReasonTable& reasons() const { return m_reasons; }
    QString reasonText(uint64_t row) const;

    // The scratch columns. The mutable accessors allocate (zeroed) on first use.
    std::span<int16_t> paramValues() { return allocated(ParamValueColumn, m_paramValues); }
    std::span<int16_t> superCount() { return allocated(SuperCountColumn, m_superCount); }
    std::span<int16_t> failCount() { return allocated(FailCountColumn, m_failCount); }
    std::span<int32_t> matchIssue() { return allocated(MatchIssueColumn, m_matchIssue); }
    // Read-only views of the scratch columns and of an explicit idx: empty when unallocated.
    std::span<const int16_t> paramValues() const { return m_paramValues; }
    std::span<const int16_t> superCount() const { return m_superCount; }
    std::span<const int16_t> failCount() const { return m_failCount; }
    std::span<const int32_t> matchIssue() const { return m_matchIssue; }
    std::span<const int32_t> explicitIdx() const { return m_idx; }
    bool hasParamValues() const { return !m_paramValues.empty(); }
    bool hasSuperCount() const { return !m_superCount.empty(); }
    bool hasFailCount() const { return !m_failCount.empty(); }
    bool hasMatchIssue() const { return !m_matchIssue.empty(); }
    int16_t paramValueAt(uint64_t r) const { return m_paramValues.empty() ? 0 : m_paramValues[r]; }
    int16_t superCountAt(uint64_t r) const { return m_superCount.empty() ? 0 : m_superCount[r]; }
    int16_t failCountAt(uint64_t r) const { return m_failCount.empty() ? 0 : m_failCount[r]; }
    int32_t matchIssueAt(uint64_t r) const { return m_matchIssue.empty() ? 0 : m_matchIssue[r]; }

    int32_t idxAt(uint64_t r) const { return m_idx.empty() ? static_cast<int32_t>(r + 1) : m_idx[r]; }
    bool hasExplicitIdx() const { return !m_idx.empty(); }
    std::span<int32_t> explicitIdx() { return allocated(IdxColumn, m_idx); }

    NumberTextMode numberTextMode() const { return m_numberTextMode; }
    bool backNumberTextFilled() const { return m_backNumberTextFilled; }
    void setNumberTextMode(NumberTextMode mode) { m_numberTextMode = mode; }
    void setBackNumberTextFilled(bool filled) { m_backNumberTextFilled = filled; }
    // "01 05 12 23 30": two digits per number joined by one blank.
    QString numberText(uint64_t row) const;
    QString backNumberText(uint64_t row) const;

    // Bytes the columns hold now.
    uint64_t memoryBytes() const;

    // The columns changed since the record was last written. The record's writer clears what it
    // wrote once its transaction is committed; it runs only while nothing edits the table, so
    // the mask is shared without a lock (the writer's thread is joined before the next edit).
    uint32_t dirtyColumns() const { return m_dirty; }
    void markClean(uint32_t columns) const { m_dirty &= ~columns; }
    void markDirty(uint32_t columns) { m_dirty |= columns; }
    // Which table of the record this is: kept by loading, new for every other table, so that a
    // record written from another table is never taken for this one's.
    uint64_t recordToken() const { return m_recordToken; }
    void setRecordToken(uint64_t token) { m_recordToken = token; }

private:
    template <typename T>
    std::span<T> allocated(Column column, ZeroedVector<T>& v) {
        m_dirty |= column;
        if (v.empty() && m_rows > 0) v.resize(m_rows);
        return v;
    }
    template <typename T>
    T& marked(Column column, T& v) {
        m_dirty |= column;
        return v;
    }

    Kind m_kind = Kind::Combinations;
    uint64_t m_rows = 0;
    std::array<ZeroedVector<uint8_t>, kMaxNumbers> m_numberColumns;
    BitVector m_filteredOut, m_previousFilteredOut, m_scratchFilteredOut, m_groupMark;
    ZeroedVector<ReasonTable::Id> m_rowReasons;
    ReasonTable m_reasons;
    ZeroedVector<int16_t> m_paramValues, m_superCount, m_failCount;
    ZeroedVector<int32_t> m_matchIssue;
    ZeroedVector<int32_t> m_idx;
    NumberTextMode m_numberTextMode = NumberTextMode::Null;
    bool m_backNumberTextFilled = false;
    mutable uint32_t m_dirty = AllColumns;
    uint64_t m_recordToken = newRecordToken();

    static uint64_t newRecordToken();
};
