#include "workspace/game_rules.h"

namespace game_rules {

PositionCentres positionCentres(int frontSize, int backSize) {
    PositionCentres f{};
    for (int i = 1; i <= 5; ++i) f[i] = frontSize / 10.0 + (i - 1) * (frontSize / 5.0);
    for (int i = 6; i <= 7; ++i) f[i] = backSize / 4.0 + (i - 6) * (backSize / 2.0);
    return f;
}

const std::array<StabilityItem, 12>& stabilityItems() {
    static const std::array<StabilityItem, 12> items{{
        {1, "50(&N)", 50},
        {2, "100(&O)", 100},
        {3, "200(&R)", 200},
        {4, "400(&U)", 400},
        {5, "600(&E)", 600},
        {6, "800(&I)", 800},
        {7, "1000(&H)", 1000},
        {9, "1500(&V)", 1500},
        {10, "2500(&W)", 2500},
        {11, "4000(&T)", 4000},
        {12, "6000(&X)", 6000},
        {8, "无穷大(&I)", 8000},
    }};
    return items;
}

int stabilityItemCheckedAtLoad(int coefficient) {
    if (coefficient == 30000) return 8;
    if (coefficient == 8000) return 0;
    for (const StabilityItem& it : stabilityItems())
        if (it.value == coefficient) return it.index;
    return 0;
}

QString frontRuleCaption(int size) { return QStringLiteral("%1选5").arg(size); }
QString backRuleCaption(int size) { return QStringLiteral("%1选2").arg(size); }

}  // namespace game_rules
