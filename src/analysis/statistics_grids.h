#pragma once

// The statistics windows' grids as text, row 0 the heads and column 0 the row heads: the pair
// counts, the transitions with their follow rows, and the moments of the positions. The
// windows show them and the command line prints them.

#include "analysis/number_relations.h"
#include "analysis/position_moments.h"

#include "analysis/text_grid.h"

namespace statistics_grids {

inline const QString kCorrelationCorner = QStringLiteral("相关参数");
inline const QString kTransitionCorner = QStringLiteral("前期\\下期");

// Row r, column c holds the count of (c, r) below the diagonal; the rest stays empty.
TextGrid correlation(const NumberMatrix& m, int size);

// Rows 1..size: the matrix, cell (a, b) how often b followed a. Two rows on, the head of the
// follow rows ("上1期跟随" for the next draw), the follow rows, then at row size + 8 at the
// earliest their total ("上1期总跟随"), and an empty row.
TextGrid transitions(const NumberMatrix& m, const number_relations::FollowRows& follow, int size, int gap);

// The nine rows of moments under the heads "第1位" .. "第5位"; a cell without value is empty.
TextGrid moments(const position_moments::Table& t);

}  // namespace statistics_grids
