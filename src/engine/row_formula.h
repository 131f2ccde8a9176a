#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <span>

// A reason whose text is made from the numbers of the row that holds it. A filter that gives
// millions of rows each a text of its own (the values it computed for that row) gives them all
// one formula instead: the text is computed again, for the one row, when it is shown, exported
// or written into the relational table. A formula never changes once made.
class RowFormula {
public:
    virtual ~RowFormula() = default;

    // The text for a row with these numbers (fig1.. in order) that was live, or not, when the
    // formula was given to it.
    virtual QString text(std::span<const uint8_t> numbers, bool live) const = 0;
    // No text of this formula is longer.
    virtual qsizetype maxTextLength() const = 0;
    // The name its loader is registered under, and the bytes the loader rebuilds it from.
    virtual QByteArray kind() const = 0;
    virtual QByteArray payload() const = 0;
};

namespace row_formula {

// Rebuilds a formula from its payload; null when the bytes are not one.
using Loader = std::shared_ptr<const RowFormula> (*)(const QByteArray& payload);

// Makes formulas of `kind` loadable. A library that makes formulas registers its loader once, at
// start-up, from the file that defines the formula.
void registerLoader(const QByteArray& kind, Loader loader);

// The formula as a stored record keeps it: its kind, a NUL, its payload.
QByteArray save(const RowFormula& formula);
// Null when the kind has no loader or its loader refuses the payload.
std::shared_ptr<const RowFormula> load(const QByteArray& bytes);

}  // namespace row_formula
