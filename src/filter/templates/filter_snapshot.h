#pragma once

// The filter snapshot: the columns that a template step (moban) and a saved setting (Canshu)
// share. A snapshot is the window's boxes and choices as Option29 writes them; a super filter
// step keeps its input in sknum, skzu and sk0..sk9.
//
// Values are kept as the controls hold them: texts, with the booleans opt36, ljh, baoliu and
// the Check1 boxes as 1/0. A null column leaves its control as it stands, as assigning a null
// to a control fails and is passed over.

#include "filter/param/param_filter.h"
#include "filter/super/super_filter.h"

#include <QString>
#include <QVariantMap>

class SqliteDb;

namespace filter_snapshot {

// The columns a snapshot needs beyond those the workspace template creates (the range and
// list columns of the five positions and the three intervals, chk0..chk26): added to `table`
// when missing. False when the table cannot be altered.
bool ensureColumns(SqliteDb& db, const QString& table);

// What Option29 writes: opt36, the list columns or the range columns, ZdqjNum_1, ZdqjNum_2,
// RCperct, RCcount, chk0..chk26, ljh, baoliu.
QVariantMap snapshotValues(const ParamWindowState& state);

// What a super filter step writes when its popup has closed, by the step's code.
QVariantMap superValues(int code, const SuperInputs& inputs);

// The controls that a snapshot row sets besides the boxes (replay code 0, browse, load).
struct SnapshotEffects {
    bool listMode = false;  // Option36 as set
    // Option36 off: Frame10 and TxtZdqj hide, and Option66 and Check1(21) read "自定区间".
    bool hideListFrame = false;
};

// Sets the boxes, TxtRc, Check1, Option37 and Option1 from a row (column names in any case).
SnapshotEffects applySnapshot(const QVariantMap& row, ParamWindowState& state);

// Sets sknum, skzu and sk from a row as replay does for `code`: 4..6 sknum; 13, 14 sknum, skzu
// and sk0..sk9; 15 nothing; any other sknum and sk0..sk4.
void applySuper(const QVariantMap& row, int code, SuperInputs& inputs);

// A column of a row by name, case-insensitive.
QVariant column(const QVariantMap& row, const QString& name);

}  // namespace filter_snapshot
