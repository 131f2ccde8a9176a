#pragma once

// A model as text: the horizontal header, then every row, cells separated by tabs and rows
// ended by a newline, each cell its DisplayRole text (an invalid value is an empty cell).

#include <QAbstractItemModel>
#include <QString>
#include <QStringList>

inline QString modelTsv(const QAbstractItemModel& m) {
    QString out;
    QStringList cells;
    for (int c = 0; c < m.columnCount(); ++c) cells << m.headerData(c, Qt::Horizontal, Qt::DisplayRole).toString();
    out += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    for (int r = 0; r < m.rowCount(); ++r) {
        cells.clear();
        for (int c = 0; c < m.columnCount(); ++c) cells << m.index(r, c).data(Qt::DisplayRole).toString();
        out += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return out;
}
