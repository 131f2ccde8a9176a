#pragma once

// The ticket texts that the super filters test with LIKE, reduced to what the tests need.
//
// Numstring is made of pieces: the numbers in two digits joined by blanks (front, whole or back
// form), or the plain numbers between markers "(1!2@3#4$5%6^7)". A literal that the filters
// look for is a number in two digits (format(n,"00")): it holds neither a blank nor a marker,
// so `Numstring LIKE "*L*"` holds exactly when one piece contains L. The filters therefore
// number the distinct literals of a run (its classes, at most 64) and give every ticket a bit
// mask of the classes its pieces contain, read from a table by byte value.

#include "engine/candidate_table.h"

#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace super_text {

// format(n, "00").
QString twoDigits(qint64 n);

// The figure columns (0-based) that a form of Numstring holds and whether they are padded.
struct Pieces {
    std::array<int, 7> cols{};
    int count = 0;
    bool padded = true;
    bool null = false;  // Numstring was never built: LIKE gives null
};
Pieces piecesOf(CandidateTable::NumberTextMode mode, int numberCount);
// NumstringHou: fig6 and fig7 in two digits.
Pieces backPieces();

// The text of one piece: the number in two digits, or plain in the marked form.
QString pieceText(int value, bool padded);

// The distinct literals of a run and, per byte value, which of them its piece contains.
class LiteralClasses {
public:
    static constexpr int kMaxClasses = 64;

    // The class of a literal, added when new; -1 once more than kMaxClasses would be needed.
    int add(const QString& literal);
    int find(const QString& literal) const;
    int size() const { return static_cast<int>(m_literals.size()); }
    bool overflow() const { return m_overflow; }
    const QString& literal(int c) const { return m_literals[static_cast<size_t>(c)]; }

    // Call after the last add(): builds the tables by byte value.
    void build();
    uint64_t maskOf(uint8_t value, bool padded) const { return padded ? m_padded[value] : m_plain[value]; }
    // The classes contained in the pieces of a row.
    uint64_t rowMask(const CandidateTable& t, uint64_t row, const Pieces& p) const {
        uint64_t m = 0;
        for (int i = 0; i < p.count; ++i)
            m |= maskOf(t.numberColumn(p.cols[static_cast<size_t>(i)] + 1)[row], p.padded);
        return m;
    }

private:
    std::vector<QString> m_literals;
    bool m_overflow = false;
    std::array<uint64_t, 256> m_padded{};
    std::array<uint64_t, 256> m_plain{};
};

}  // namespace super_text
