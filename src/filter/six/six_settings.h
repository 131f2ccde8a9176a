#pragma once

// The saved settings of the six-number window: the bounds of its nineteen parameters stored in
// the table Canshu of filnum.db under the same keys as the filter window's (sh_1, sh_2, 1to10_1,
// ...), so a setting saved in one window fills the shared parameters of the other. The sixth
// position has no column of its own there; it is added as 6z_1 and 6z_2.

#include "filter/six/six_params.h"

#include <QDateTime>
#include <QString>

#include <array>
#include <optional>

class Prompter;
class SqliteDb;

namespace six_settings {

struct Bounds {
    std::array<QString, kSixParamCount> lo;
    std::array<QString, kSixParamCount> hi;
};

// Command7: asks for the name (proposing "过滤设置保存于" and the stamp) and adds a row with it
// and the bounds, even when the prompt was cancelled. None when the row could not be written.
std::optional<QString> save(SqliteDb& filterDb, const Bounds& bounds, Prompter& prompter, const QDateTime& now);

// Command6 after a name was chosen: the first row of that name sets the bounds it holds; a
// column left empty (a setting saved with the list mode) keeps the box's text. False when no
// row has that name.
bool load(SqliteDb& filterDb, const QString& name, Bounds& bounds);

}  // namespace six_settings
