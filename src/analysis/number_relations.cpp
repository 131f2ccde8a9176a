#include "analysis/number_relations.h"

namespace number_relations {
namespace {

bool fits(int n) { return n >= 1 && n < kNumberSlots; }

void countPairs(NumberMatrix& m, std::span<const int32_t> numbers, int leaveOut = 0) {
    for (size_t j = 0; j < numbers.size(); ++j) {
        if (numbers[j] == leaveOut || !fits(numbers[j])) continue;
        for (size_t k = j + 1; k < numbers.size(); ++k)
            if (numbers[k] != leaveOut && fits(numbers[k])) m.add(numbers[j], numbers[k]);
    }
}

}  // namespace

int gridSize(HistoryView scope, int frontSize, int backSize) {
    return scope == HistoryView::Back ? backSize : frontSize;
}

NumberMatrix pairs(const DrawHistory& history, HistoryView scope) {
    NumberMatrix m;
    for (int i = 1; i <= history.drawCount(); ++i) countPairs(m, numbersOf(history.numbers[static_cast<size_t>(i)], scope));
    return m;
}

NumberMatrix pairsWith(const DrawHistory& history, HistoryView scope, int x) {
    NumberMatrix m;
    for (int i = 1; i <= history.drawCount(); ++i) {
        const auto numbers = numbersOf(history.numbers[static_cast<size_t>(i)], scope);
        if (std::find(numbers.begin(), numbers.end(), x) != numbers.end()) countPairs(m, numbers, x);
    }
    return m;
}

NumberMatrix transitions(const DrawHistory& history, HistoryView scope, int gap) {
    NumberMatrix m;
    for (int i = gap + 1; i <= history.drawCount(); ++i) {
        const auto before = numbersOf(history.numbers[static_cast<size_t>(i - gap)], scope);
        const auto after = numbersOf(history.numbers[static_cast<size_t>(i)], scope);
        for (int a : before)
            for (int b : after)
                if (fits(a) && fits(b)) m.add(a, b);
    }
    return m;
}

FollowRows followRows(const DrawHistory& history, HistoryView scope, int gap, const NumberMatrix& m, int size) {
    FollowRows f;
    f.total.assign(static_cast<size_t>(size + 1), 0);
    const int draw = history.drawCount() - gap + 1;
    if (draw < 1) return f;
    for (int a : numbersOf(history.numbers[static_cast<size_t>(draw)], scope)) {
        std::vector<int> row(static_cast<size_t>(size + 1), 0);
        if (fits(a))
            for (int b = 1; b <= size; ++b) row[static_cast<size_t>(b)] = m.at(a, b);
        for (int b = 1; b <= size; ++b) f.total[static_cast<size_t>(b)] += row[static_cast<size_t>(b)];
        f.numbers.push_back(a);
        f.rows.push_back(std::move(row));
    }
    return f;
}

}  // namespace number_relations
