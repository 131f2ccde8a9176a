#include "engine/candidate_table.h"

#include <QRandomGenerator>

namespace {

QString twoDigits(const std::array<int, 7>& nums, int count) {
    QString s;
    s.reserve(count * 3);
    for (int i = 0; i < count; ++i) {
        if (i) s += QLatin1Char(' ');
        s += QStringLiteral("%1").arg(nums[static_cast<size_t>(i)], 2, 10, QLatin1Char('0'));
    }
    return s;
}

}  // namespace

CandidateTable::CandidateTable(Kind kind, uint64_t rows) : m_kind(kind), m_rows(rows) {
    for (int k = 1; k <= numberCount(); ++k) m_numberColumns[static_cast<size_t>(k - 1)].resize(rows);
    m_filteredOut.resize(rows);
    m_previousFilteredOut.resize(rows);
    m_scratchFilteredOut.resize(rows);
    m_groupMark.resize(rows);
    m_rowReasons.resize(rows);  // kNull
}

QString CandidateTable::reasonText(uint64_t row) const {
    const ReasonTable::Id id = m_rowReasons[row];
    if (!m_reasons.dependsOnRow(id)) return m_reasons.text(id);
    std::array<uint8_t, kMaxNumbers> numbers{};
    for (int k = 1; k <= numberCount(); ++k) numbers[static_cast<size_t>(k - 1)] = numberColumn(k)[row];
    return m_reasons.text(id, std::span(numbers).first(static_cast<size_t>(numberCount())));
}

QString CandidateTable::numberText(uint64_t row) const {
    if (m_numberTextMode == NumberTextMode::Back) return backNumberText(row);
    if (m_numberTextMode == NumberTextMode::Marked) {
        static constexpr char kMarks[] = "!@#$%^";
        QString s = QStringLiteral("(");
        for (int k = 0; k < numberCount(); ++k) {
            if (k) s += QLatin1Char(kMarks[k - 1]);
            s += QString::number(m_numberColumns[static_cast<size_t>(k)][row]);
        }
        return s + QLatin1Char(')');
    }
    const int count =
        m_numberTextMode == NumberTextMode::Whole ? numberCount() : (m_kind == Kind::SixNumbers ? 6 : 5);
    std::array<int, 7> nums{};
    for (int k = 0; k < count; ++k)
        nums[static_cast<size_t>(k)] = m_numberColumns[static_cast<size_t>(k)][row];
    return twoDigits(nums, count);
}

QString CandidateTable::backNumberText(uint64_t row) const {
    return twoDigits({m_numberColumns[5][row], m_numberColumns[6][row]}, 2);
}

uint64_t CandidateTable::memoryBytes() const {
    uint64_t bytes = 0;
    for (const auto& f : m_numberColumns) bytes += f.size();
    bytes += 4 * m_filteredOut.wordCount() * sizeof(BitVector::Word);
    bytes += m_rowReasons.size() * sizeof(ReasonTable::Id);
    bytes += (m_paramValues.size() + m_superCount.size() + m_failCount.size()) * sizeof(int16_t);
    bytes += (m_matchIssue.size() + m_idx.size()) * sizeof(int32_t);
    return bytes;
}

uint64_t CandidateTable::newRecordToken() {
    // A stored token is an SQLite integer: 63 bits keep it positive.
    return QRandomGenerator::global()->generate64() >> 1;
}
