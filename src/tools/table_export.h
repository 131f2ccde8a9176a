#pragma once

// A window's table as a spreadsheet: every cell's text at its row and column of "Sheet1", and
// its background colour where the grid gives one. The file is deleted first and written anew.

#include <QList>
#include <QString>

#include <optional>

namespace table_export {

inline const QString kErrorTitle = QStringLiteral("列表显示错误");
inline const QString kErrorText =
    QStringLiteral("您的电脑没有安装Microsoft Excel表格软件，多参数列表无法显示");

struct Cell {
    QString text;
    std::optional<unsigned> background;  // 0xRRGGBB
};
using Grid = QList<QList<Cell>>;

// The export file in `folder`.
QString exportPath(const QString& folder);

// Deletes `path` (a failure to delete is ignored) and writes `grid` there; false with the
// reason when the file cannot be written.
bool writeXlsx(const Grid& grid, const QString& path, QString* error);

}  // namespace table_export
