#include "filter/candidate_table.h"

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
    for (int k = 1; k <= figCount(); ++k) m_figs[static_cast<size_t>(k - 1)].resize(rows);
    m_unslt.resize(rows);
    m_preunslt.resize(rows);
    m_tmpunslt.resize(rows);
    m_gpslt.resize(rows);
    m_fliter.resize(rows);  // kNull
}

QString CandidateTable::numstring(uint64_t row) const {
    if (m_numstring == NumstringMode::Back) return numstringHou(row);
    if (m_numstring == NumstringMode::Marked) {
        static constexpr char kMarks[] = "!@#$%^";
        QString s = QStringLiteral("(");
        for (int k = 0; k < figCount(); ++k) {
            if (k) s += QLatin1Char(kMarks[k - 1]);
            s += QString::number(m_figs[static_cast<size_t>(k)][row]);
        }
        return s + QLatin1Char(')');
    }
    const int count = m_numstring == NumstringMode::Whole ? figCount() : (m_kind == Kind::Zuhef ? 6 : 5);
    std::array<int, 7> nums{};
    for (int k = 0; k < count; ++k) nums[static_cast<size_t>(k)] = m_figs[static_cast<size_t>(k)][row];
    return twoDigits(nums, count);
}

QString CandidateTable::numstringHou(uint64_t row) const {
    return twoDigits({m_figs[5][row], m_figs[6][row]}, 2);
}

uint64_t CandidateTable::memoryBytes() const {
    uint64_t bytes = 0;
    for (const auto& f : m_figs) bytes += f.size();
    bytes += 4 * m_unslt.wordCount() * sizeof(BitVector::Word);
    bytes += m_fliter.size() * sizeof(ReasonTable::Id);
    bytes += (m_canshu.size() + m_sknum.size() + m_errnum.size()) * sizeof(int16_t);
    bytes += (m_jsqihao.size() + m_idx.size()) * sizeof(int32_t);
    return bytes;
}
