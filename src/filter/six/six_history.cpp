#include "filter/six/six_history.h"

#include <algorithm>
#include <vector>

namespace six_history {

namespace {

// Binomials up to C(kNumberSlots, 6), for the colex rank of a subset of 0..36.
struct Binomials {
    std::array<std::array<uint32_t, 7>, kNumberSlots + 1> c{};
    Binomials() {
        for (size_t n = 0; n < c.size(); ++n) {
            c[n][0] = 1;
            for (size_t k = 1; k < 7 && k <= n; ++k) c[n][k] = c[n - 1][k - 1] + (k < n ? c[n - 1][k] : 0);
        }
    }
    uint32_t at(int n, int k) const { return k > n ? 0 : c[static_cast<size_t>(n)][static_cast<size_t>(k)]; }
};

const Binomials kC;

// Calls f with the colex rank of every `size`-subset of the ascending `numbers`.
template <typename F>
void forEachSubsetRank(const int* numbers, int count, int size, F&& f) {
    std::array<int, 6> pick{};
    for (int i = 0; i < size; ++i) pick[static_cast<size_t>(i)] = i;
    while (true) {
        uint32_t rank = 0;
        for (int i = 0; i < size; ++i) rank += kC.at(numbers[pick[static_cast<size_t>(i)]], i + 1);
        f(rank);
        int i = size - 1;
        while (i >= 0 && pick[static_cast<size_t>(i)] == count - size + i) --i;
        if (i < 0) return;
        ++pick[static_cast<size_t>(i)];
        for (int j = i + 1; j < size; ++j) pick[static_cast<size_t>(j)] = pick[static_cast<size_t>(j - 1)] + 1;
    }
}

}  // namespace

DrawCount parseDrawCount(const QString& answer) {
    const QString text = answer.trimmed();
    if (text.isEmpty()) return {};
    bool ok = false;
    const double n = text.toDouble(&ok);
    if (!ok) return {std::nullopt, QStringLiteral("请输入数字")};
    if (n <= 0) return {std::nullopt, QStringLiteral("请输入一个正数")};
    return {static_cast<int>(std::min(n, 1e9)), {}};
}

uint64_t run(CandidateTable& table, int matches, std::optional<int> draws, const DrawHistory& history) {
    if (matches < 3 || matches > 5) return 0;
    std::vector<uint8_t> drawn(kC.at(kNumberSlots, matches), 0);
    const int last = history.drawCount();
    const int first = draws ? std::max(1, last - *draws + 1) : 1;
    for (int d = first; d <= last; ++d) {
        std::array<int, 5> front{};
        for (size_t k = 0; k < 5; ++k) front[k] = std::clamp(history.numbers[static_cast<size_t>(d)][k + 1], 0, kNumberSlots - 1);
        std::sort(front.begin(), front.end());
        forEachSubsetRank(front.data(), 5, matches, [&](uint32_t rank) { drawn[rank] = 1; });
    }
    table.previousFilteredOut() = table.filteredOut();
    BitVector& out = table.filteredOut();
    std::array<std::span<const uint8_t>, 6> columns;
    for (int k = 1; k <= 6; ++k) columns[static_cast<size_t>(k - 1)] = std::as_const(table).numberColumn(k);
    uint64_t killed = 0;
    for (uint64_t r = 0; r < table.rowCount(); ++r) {
        if (out.test(r)) continue;
        std::array<int, 6> row{};
        for (size_t k = 0; k < 6; ++k) row[k] = std::min<int>(columns[k][r], kNumberSlots - 1);
        std::sort(row.begin(), row.end());
        bool hit = false;
        forEachSubsetRank(row.data(), 6, matches, [&](uint32_t rank) { hit = hit || drawn[rank]; });
        if (!hit) continue;
        out.set(r);
        ++killed;
    }
    return killed;
}

}  // namespace six_history
