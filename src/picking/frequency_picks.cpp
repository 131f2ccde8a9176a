#include "picking/frequency_picks.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace frequency_picks {

Prompt frequencyPrompt(Rank rank) {
    if (rank == Rank::MostFrequent)
        return {QStringLiteral("高频选号"),
                QStringLiteral("请在下面填写需要选择的历史号码中高频（出现概率比较大）的号码的个数，"
                               "软件将从高到底自动检索相应个数的号码并选号"),
                QStringLiteral("10")};
    return {QStringLiteral("低频选号"),
            QStringLiteral("请在下面填写需要选择的历史号码中低频（出现概率比较小）的号码的个数，"
                           "软件将从高到底自动检索相应个数的号码并选号"),
            QStringLiteral("10")};
}

Prompt omissionPrompt(OmissionBound bound) {
    if (bound == OmissionBound::AtLeast)
        return {QStringLiteral("高次遗漏选号"),
                QStringLiteral("请在下面填写需要选择的遗漏次数高于的条件（比如填“6”将选择遗漏次数大于或等于“6”"
                               "的号码），软件将自动检索相应号码并选号"),
                QStringLiteral("6")};
    return {QStringLiteral("低次遗漏选号"),
            QStringLiteral("请在下面填写需要选择的遗漏次数低于的条件（比如填“3”将选择遗漏次数小于或等于“3”"
                           "的号码），软件将自动检索相应号码并选号"),
            QStringLiteral("3")};
}

std::optional<int> parseValue(const QString& answer) {
    bool ok = false;
    const double v = answer.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v)) return std::nullopt;
    // Halves go to the even neighbour, as the classic integer conversion rounds.
    const double r = std::nearbyint(v);
    if (r < -32768 || r > 32767) return std::nullopt;
    return static_cast<int>(r);
}

namespace {

// The draw positions of a zone in DrawNumbers.
std::pair<int, int> positions(Zone zone) { return zone == Zone::Front ? std::pair{1, 5} : std::pair{6, 7}; }

bool inScope(const DrawHistory& history, int idx, const Scope& scope) {
    switch (scope.kind) {
        case Scope::Kind::AllHistory:
            return true;
        case Scope::Kind::IssueInterval: {
            const qint64 issue = history.numbers[static_cast<size_t>(idx)][0];
            return issue >= scope.firstIssue && issue <= scope.lastIssue;
        }
        case Scope::Kind::LastDraws:
            return idx > history.drawCount() - scope.lastDraws;
    }
    return false;
}

}  // namespace

std::vector<double> countInScope(const DrawHistory& history, Zone zone, int zoneSize, const Scope& scope) {
    std::vector<double> counts(static_cast<size_t>(zoneSize) + 1, 0.0);
    const auto [first, last] = positions(zone);
    for (int idx = 1; idx <= history.drawCount(); ++idx) {
        if (!inScope(history, idx, scope)) continue;
        const DrawNumbers& draw = history.numbers[static_cast<size_t>(idx)];
        for (int p = first; p <= last; ++p)
            if (draw[static_cast<size_t>(p)] >= 1 && draw[static_cast<size_t>(p)] <= zoneSize)
                counts[static_cast<size_t>(draw[static_cast<size_t>(p)])] += 1;
    }
    return counts;
}

std::vector<double> frequencyFromStats(const NumberStats& stats, int zoneSize) {
    std::vector<double> shares(static_cast<size_t>(zoneSize) + 1, 0.0);
    for (int n = 1; n <= zoneSize && n < kNumberSlots; ++n) shares[static_cast<size_t>(n)] = stats.percent[n];
    return shares;
}

std::vector<int> ranked(const std::vector<double>& counts, Rank rank) {
    std::vector<int> order(counts.size() > 0 ? counts.size() - 1 : 0);
    std::iota(order.begin(), order.end(), 1);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        const double ca = counts[static_cast<size_t>(a)], cb = counts[static_cast<size_t>(b)];
        return rank == Rank::MostFrequent ? ca > cb : ca < cb;
    });
    return order;
}

int pickInOrder(NumberBoard& board, Zone zone, const std::vector<int>& order, int wanted) {
    ZoneBoard& zb = board.zone(zone);
    int added = 0;
    for (int n : order) {
        if (added >= wanted) break;
        if (n < 1 || n > zb.size() || zb.state().pickFlag[static_cast<size_t>(n)]) continue;
        board.programClick(zone, n);
        ++added;
    }
    return added;
}

int pickByFrequency(NumberBoard& board, Zone zone, const DrawHistory& history, const NumberStats& stats,
                    Rank rank, const Scope& scope, int wanted) {
    const int size = board.zone(zone).size();
    const std::vector<double> counts = scope.kind == Scope::Kind::AllHistory
                                           ? frequencyFromStats(stats, size)
                                           : countInScope(history, zone, size, scope);
    return pickInOrder(board, zone, ranked(counts, rank), wanted);
}

int pickByOmission(NumberBoard& board, Zone zone, const NumberStats& stats, OmissionBound bound, int value) {
    ZoneBoard& zb = board.zone(zone);
    int added = 0;
    for (int n = 1; n <= zb.size() && n < kNumberSlots; ++n) {
        const int omission = stats.omission[n];
        const bool fits = bound == OmissionBound::AtLeast ? omission >= value : omission <= value;
        if (!fits || zb.state().pickFlag[static_cast<size_t>(n)]) continue;
        board.programClick(zone, n);
        ++added;
    }
    return added;
}

}  // namespace frequency_picks
