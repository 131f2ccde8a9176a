#pragma once

#include "workspace/shared_state.h"

#include <QString>
#include <QStringList>

#include <optional>

// Access to a DrawParams field by its column name (case-insensitive), for the readers and
// writers of fig, fighou and figquan and for queries that name a column.
namespace draw_params_columns {
// The parameter columns of each table, in schema order, without Idx, fig0 and the numbers.
const QStringList& frontColumns();  // fig
const QStringList& backColumns();   // fighou
const QStringList& bothColumns();   // figquan

std::optional<double> value(const DrawParams& p, const QString& column);
bool setValue(DrawParams& p, const QString& column, double v);
}  // namespace draw_params_columns
