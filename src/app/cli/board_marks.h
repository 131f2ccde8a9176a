#pragma once

#include "picking/number_board.h"

#include <QList>

// Marks the numbers on the board as clicks would (a banker by the right button and 设胆);
// false when one lies outside the zone.
bool markOnBoard(NumberBoard& board, Zone z, const QList<int>& nums, bool banker);
