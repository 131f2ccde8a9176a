// The reasons of a stored candidate table, as the record keeps them: appended to a table after
// its first two entries, then every text made (for a row of numbers too, which the formulas of
// the parameter filters read) and the image written back.
#include "engine/reason_table.h"
#include "filter/param/param_reason_formula.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

// The parameter filters' formulas register their loader where they are defined: the harness
// names it so that the linker keeps it.
[[maybe_unused]] static const auto kFormulaLoader = &ParamReasonFormula::load;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    ReasonTable table;
    if (!table.appendImage(bytes)) {
        // A refused image leaves the table as it was.
        if (table.size() != 2) abort();
        return 0;
    }
    const std::array<uint8_t, 7> row{3, 9, 17, 28, 35, 4, 11};
    qsizetype total = 0;
    for (ReasonTable::Id id = 0; id < table.size(); ++id)
        total += table.text(id).size() + table.text(id, row).size();
    // The image of what was read reads back to the same entries.
    ReasonTable again;
    if (!again.appendImage(table.image()) || again.size() != table.size()) abort();
    return total < 0;
}
