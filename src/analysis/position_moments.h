#pragma once

// The moments of each front position against its ideal mean and its sample mean. A row whose
// formula divides by zero (no draws, or R - 1 with one draw) has no value.

#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <optional>

namespace position_moments {

inline constexpr int kRows = 9;
inline constexpr int kPositions = 5;

// The heads of the nine rows, in order.
const std::array<QString, kRows>& heads();

// rows[r][p - 1]: row r + 1 of position p.
using Table = std::array<std::array<std::optional<double>, kPositions>, kRows>;
Table compute(const DrawHistory& history, int frontSize, int backSize);

}  // namespace position_moments
