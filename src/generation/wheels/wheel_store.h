#pragma once

// The four wheel databases of the program folder (Xuanzhuanjb.db, Xuanzhuancj.db,
// XuanzhuanDT.db, XuanzhuanF6.db): one table per wheel, one row per ticket with the positions
// fig1..fig5 (fig1..fig6 for six-number tickets). They are made from the wheels bundled with
// the program, and made again when the program brings other wheels than they hold.

#include "generation/wheels/wheel_catalogue.h"

#include <QString>

#include <optional>
#include <vector>

namespace wheel_store {

using Rows = std::vector<std::vector<int>>;

QString databasePath(const QString& programFolder, wheels::Family family);

// Makes or renews the four databases from the bundled wheels; false with `error` set when a
// database cannot be written (the program goes on without wheels).
bool ensureDatabases(const QString& programFolder, QString* error = nullptr);

// A table's rows in the table's order; nothing when the database or the table is missing.
std::optional<Rows> readTable(const QString& databasePath, const QString& table);
// Its row count, or nothing when missing: what labels a menu entry.
std::optional<int> rowCount(const QString& databasePath, const QString& table);

// The bundled wheel of a table (its design's tickets), empty when none is bundled.
std::vector<wheels::Block> bundledDesign(const wheels::WheelTable& table);

}  // namespace wheel_store
