#include "picking/board_store.h"

#include <QStringList>

namespace board_store {

namespace {

QString joined(const std::array<int16_t, kNumberSlots>& list, int count) {
    QStringList parts;
    for (int i = 1; i <= count && i < kNumberSlots; ++i) parts << QString::number(list[static_cast<size_t>(i)]);
    return parts.join(QLatin1Char(' '));
}

std::vector<int> numbers(const QString& text) {
    std::vector<int> out;
    for (const QString& part : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        bool ok = false;
        const int n = part.toInt(&ok);
        if (ok) out.push_back(n);
    }
    return out;
}

}  // namespace

bool save(Settings& settings, const QString& workspace, const BoardState& board) {
    using namespace setting_keys;
    return settings.writeAll({{&BoardFrontPicks, joined(board.front.pickList, board.front.pickCount)},
                              {&BoardFrontBankers, joined(board.front.bankerList, board.front.bankerCount)},
                              {&BoardBackPicks, joined(board.back.pickList, board.back.pickCount)},
                              {&BoardBackBankers, joined(board.back.bankerList, board.back.bankerCount)}},
                             workspace);
}

void load(Settings& settings, const QString& workspace, NumberBoard& board) {
    using namespace setting_keys;
    struct Part {
        Zone zone;
        const SettingKey& picks;
        const SettingKey& bankers;
    };
    for (const Part& part : {Part{Zone::Front, BoardFrontPicks, BoardFrontBankers},
                             Part{Zone::Back, BoardBackPicks, BoardBackBankers}}) {
        // A zone already empty is left alone: 重选 also resets the spin menus.
        if (board.zone(part.zone).totalCount() > 0) board.reselect(part.zone);
        for (int n : numbers(settings.read(part.picks, workspace))) board.leftClick(part.zone, n);
        for (int n : numbers(settings.read(part.bankers, workspace))) {
            if (n < 1 || n > board.zone(part.zone).size()) continue;
            board.zone(part.zone).state().activeNum = static_cast<int16_t>(n);
            board.toggleBanker(part.zone);
        }
    }
}

}  // namespace board_store
