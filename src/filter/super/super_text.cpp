#include "filter/super/super_text.h"

namespace super_text {

QString twoDigits(qint64 n) {
    if (n < 0) return QLatin1Char('-') + twoDigits(-n);
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}

Pieces piecesOf(CandidateTable::NumberTextMode mode, int numberCount) {
    using M = CandidateTable::NumberTextMode;
    Pieces p;
    switch (mode) {
        case M::Null:
            p.null = true;
            return p;
        case M::Front:
            p.count = numberCount == 6 ? 6 : 5;
            break;
        case M::Whole:
            p.count = numberCount;
            break;
        case M::Back:
            return backPieces();
        case M::Marked:
            p.count = numberCount;
            p.padded = false;
            break;
    }
    for (int i = 0; i < p.count; ++i) p.cols[static_cast<size_t>(i)] = i;
    return p;
}

Pieces backPieces() {
    Pieces p;
    p.count = 2;
    p.cols[0] = 5;
    p.cols[1] = 6;
    return p;
}

QString pieceText(int value, bool padded) { return padded ? twoDigits(value) : QString::number(value); }

int LiteralClasses::add(const QString& literal) {
    const int c = find(literal);
    if (c >= 0) return c;
    if (size() >= kMaxClasses) {
        m_overflow = true;
        return -1;
    }
    m_literals.push_back(literal);
    return size() - 1;
}

int LiteralClasses::find(const QString& literal) const {
    for (size_t c = 0; c < m_literals.size(); ++c)
        if (m_literals[c] == literal) return static_cast<int>(c);
    return -1;
}

void LiteralClasses::build() {
    for (int v = 0; v < 256; ++v) {
        const QString padded = pieceText(v, true), plain = pieceText(v, false);
        uint64_t mp = 0, mq = 0;
        for (size_t c = 0; c < m_literals.size(); ++c) {
            if (padded.contains(m_literals[c])) mp |= uint64_t{1} << c;
            if (plain.contains(m_literals[c])) mq |= uint64_t{1} << c;
        }
        m_padded[static_cast<size_t>(v)] = mp;
        m_plain[static_cast<size_t>(v)] = mq;
    }
}

}  // namespace super_text
