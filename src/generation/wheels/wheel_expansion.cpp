#include "generation/wheels/wheel_expansion.h"

#include <algorithm>

namespace {

uint8_t numberAt(const std::vector<int16_t>& list, int position) {
    return position >= 1 && position <= static_cast<int>(list.size())
               ? static_cast<uint8_t>(list[static_cast<size_t>(position - 1)])
               : 0;
}

}  // namespace

WheelExpansionInput WheelExpansionInput::fromBoard(const BoardState& board,
                                                   std::vector<std::vector<int>> rows, bool bankerWheel) {
    WheelExpansionInput in;
    in.rows = std::move(rows);
    const auto listOf = [](const std::array<int16_t, kNumberSlots>& list, int count) {
        return std::vector<int16_t>(list.begin() + 1, list.begin() + 1 + count);
    };
    if (bankerWheel) in.list = listOf(board.front.bankerList, board.front.bankerCount);
    const std::vector<int16_t> picks = listOf(board.front.pickList, board.front.pickCount);
    in.list.insert(in.list.end(), picks.begin(), picks.end());
    in.sortMapped = bankerWheel;
    in.back = listOf(board.back.pickList, board.back.pickCount);
    in.backCount = board.back.spinCount;
    return in;
}

uint64_t wheelExpansionRows(const WheelExpansionInput& in) {
    const uint64_t m = static_cast<uint64_t>(std::clamp(in.backCount, 0, static_cast<int>(in.back.size())));
    return in.rows.size() * (m * (m - std::min<uint64_t>(m, 1)) / 2);
}

std::unique_ptr<CandidateTable> expandWheel(const WheelExpansionInput& in) {
    auto table = std::make_unique<CandidateTable>(schema::CandidateKind::Wheel, wheelExpansionRows(in));
    const int m = std::clamp(in.backCount, 0, static_cast<int>(in.back.size()));
    uint64_t r = 0;
    for (const std::vector<int>& row : in.rows) {
        std::vector<uint8_t> front;
        for (int position : row) front.push_back(numberAt(in.list, position));
        front.resize(5, 0);
        if (in.sortMapped) std::sort(front.begin(), front.end());
        for (int f = 0; f < m; ++f)
            for (int g = f + 1; g < m; ++g) {
                for (int k = 0; k < 5; ++k) table->numberColumn(k + 1)[r] = front[static_cast<size_t>(k)];
                table->numberColumn(6)[r] = static_cast<uint8_t>(in.back[static_cast<size_t>(f)]);
                table->numberColumn(7)[r] = static_cast<uint8_t>(in.back[static_cast<size_t>(g)]);
                ++r;
            }
    }
    return table;
}
