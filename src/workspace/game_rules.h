#pragma once

#include <QString>

#include <array>

// The shape of the game: five front numbers of 1..Bitnum, two back numbers of 1..BitnumHou.
namespace game_rules {
inline constexpr int kFrontPicks = 5;
inline constexpr int kBackPicks = 2;
inline constexpr int kFrontMin = 28;
inline constexpr int kFrontMax = 36;
inline constexpr int kBackMin = 12;
inline constexpr int kBackMax = 24;
inline constexpr int kDefaultFront = 35;
inline constexpr int kDefaultBack = 12;
inline constexpr int kMaxDraws = 32767;
inline constexpr int kTicketPrice = 2;      // yuan
inline constexpr int kSixNumberPrice = 12;  // yuan, a six-number front row

inline bool validFront(int n) { return n >= kFrontMin && n <= kFrontMax; }
inline bool validBack(int n) { return n >= kBackMin && n <= kBackMax; }

// Centre of each sorted position, [1..7]; index 0 unused.
using PositionCentres = std::array<double, 8>;
PositionCentres positionCentres(int frontSize, int backSize);

// A stability coefficient item of the spin control menu.
struct StabilityItem {
    int index;  // meuSpd<index>
    const char* caption;
    int value;
};
// In menu order ("无穷大(&I)" last).
const std::array<StabilityItem, 12>& stabilityItems();
// The item checked at main window load for a stored Wd, or 0 for none. 30000 (the default)
// checks meuSpd8, while 8000, which meuSpd8 itself saves, checks none.
int stabilityItemCheckedAtLoad(int coefficient);

// "28选5" .. "36选5" and "12选2" .. "24选2".
QString frontRuleCaption(int size);
QString backRuleCaption(int size);
}  // namespace game_rules
