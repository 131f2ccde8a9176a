#pragma once

#include "filter/bit_vector.h"
#include "filter/reason_table.h"
#include "filter/zeroed_allocator.h"
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
    static constexpr int kMaxFigs = 7;
    // Bytes one ticket needs with every column allocated (figs, four flags, reason id, the four
    // scratch columns, idx): what the memory check of an expansion counts.
    static constexpr uint64_t kBytesPerTicket = 7 + 1 + 4 + 2 + 2 + 2 + 4 + 4;

    // How the scratch text columns Numstring / NumstringHou are currently filled: the front
    // numbers, all numbers or the back numbers in two digits joined by blanks, or the marked
    // form "(1!2@3#4$5%6^7)" of the same-as-template filter.
    enum class NumstringMode : uint8_t { Null, Front, Whole, Back, Marked };

    CandidateTable() = default;
    CandidateTable(Kind kind, uint64_t rows);

    Kind kind() const { return m_kind; }
    QString tableName() const { return schema::candidateTableName(m_kind); }
    int figCount() const { return m_kind == Kind::Zuhef ? 6 : 7; }
    uint64_t rowCount() const { return m_rows; }
    uint64_t deadCount() const { return m_unslt.count(); }
    uint64_t liveCount() const { return m_rows - deadCount(); }

    // fig1..fig7 as k = 1..7.
    std::span<uint8_t> fig(int k) { return m_figs[static_cast<size_t>(k - 1)]; }
    std::span<const uint8_t> fig(int k) const { return m_figs[static_cast<size_t>(k - 1)]; }

    BitVector& unslt() { return m_unslt; }
    BitVector& preunslt() { return m_preunslt; }
    BitVector& tmpunslt() { return m_tmpunslt; }
    BitVector& gpslt() { return m_gpslt; }
    const BitVector& unslt() const { return m_unslt; }
    const BitVector& preunslt() const { return m_preunslt; }
    const BitVector& tmpunslt() const { return m_tmpunslt; }
    const BitVector& gpslt() const { return m_gpslt; }

    std::span<ReasonTable::Id> fliter() { return m_fliter; }
    std::span<const ReasonTable::Id> fliter() const { return m_fliter; }
    ReasonTable& reasons() { return m_reasons; }
    const ReasonTable& reasons() const { return m_reasons; }
    const QString& reasonText(uint64_t row) const { return m_reasons.text(m_fliter[row]); }

    // The scratch columns. The mutable accessors allocate (zeroed) on first use.
    std::span<int16_t> canshu() { return allocated(m_canshu); }
    std::span<int16_t> sknum() { return allocated(m_sknum); }
    std::span<int16_t> errnum() { return allocated(m_errnum); }
    std::span<int32_t> jsqihao() { return allocated(m_jsqihao); }
    bool hasCanshu() const { return !m_canshu.empty(); }
    bool hasSknum() const { return !m_sknum.empty(); }
    bool hasErrnum() const { return !m_errnum.empty(); }
    bool hasJsqihao() const { return !m_jsqihao.empty(); }
    int16_t canshuAt(uint64_t r) const { return m_canshu.empty() ? 0 : m_canshu[r]; }
    int16_t sknumAt(uint64_t r) const { return m_sknum.empty() ? 0 : m_sknum[r]; }
    int16_t errnumAt(uint64_t r) const { return m_errnum.empty() ? 0 : m_errnum[r]; }
    int32_t jsqihaoAt(uint64_t r) const { return m_jsqihao.empty() ? 0 : m_jsqihao[r]; }

    int32_t idxAt(uint64_t r) const { return m_idx.empty() ? static_cast<int32_t>(r + 1) : m_idx[r]; }
    bool hasExplicitIdx() const { return !m_idx.empty(); }
    std::span<int32_t> explicitIdx() { return allocated(m_idx); }

    NumstringMode numstringMode() const { return m_numstring; }
    bool numstringHouFilled() const { return m_numstringHou; }
    void setNumstring(NumstringMode mode) { m_numstring = mode; }
    void setNumstringHou(bool filled) { m_numstringHou = filled; }
    // "01 05 12 23 30": two digits per number joined by one blank.
    QString numstring(uint64_t row) const;
    QString numstringHou(uint64_t row) const;

    // Bytes the columns hold now.
    uint64_t memoryBytes() const;

private:
    template <typename T>
    std::span<T> allocated(ZeroedVector<T>& v) {
        if (v.empty() && m_rows > 0) v.resize(m_rows);
        return v;
    }

    Kind m_kind = Kind::Zuhe;
    uint64_t m_rows = 0;
    std::array<ZeroedVector<uint8_t>, kMaxFigs> m_figs;
    BitVector m_unslt, m_preunslt, m_tmpunslt, m_gpslt;
    ZeroedVector<ReasonTable::Id> m_fliter;
    ReasonTable m_reasons;
    ZeroedVector<int16_t> m_canshu, m_sknum, m_errnum;
    ZeroedVector<int32_t> m_jsqihao;
    ZeroedVector<int32_t> m_idx;
    NumstringMode m_numstring = NumstringMode::Null;
    bool m_numstringHou = false;
};
