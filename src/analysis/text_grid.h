#pragma once

#include <QStringList>

#include <vector>

// A table of text as the analysis windows show it and the command line prints it: the heads in
// the first row or rows, the row heads in the first column.
struct TextGrid {
    std::vector<QStringList> rows;
    int rowCount() const { return static_cast<int>(rows.size()); }
    int columnCount() const { return rows.empty() ? 0 : static_cast<int>(rows.front().size()); }
};
