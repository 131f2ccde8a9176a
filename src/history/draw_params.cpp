#include "history/draw_params.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace draw_params {

namespace {

constexpr int kDecades = 4;
constexpr int kSpreadMaxStart = 0;
constexpr int kSpreadMinStart = 100;
constexpr int kSmallLastDigit = 4;

int16_t i16(long v) { return static_cast<int16_t>(v); }

int decadeOf(int n) {
    // Truncating division: a slot 0 falls into the first decade as well.
    const int q = (n - 1) / 10;
    return std::clamp(q, 0, kDecades - 1);
}

// The omission of a number; one outside the arrays (a damaged row) has none.
int omissionOf(const Omission& omission, int n) {
    return n >= 0 && n < static_cast<int>(omission.size()) ? omission[static_cast<size_t>(n)] : 0;
}

// The last decimal digit, 0..9 for any number.
int lastDigitOf(int n) { return std::abs(n % 10); }

int16_t spread(std::span<const int> numbers, const Omission& omission, bool absDifference) {
    if (numbers.empty()) return 0;
    if (absDifference && numbers.size() == 2)
        return i16(std::abs(omissionOf(omission, numbers[0]) - omissionOf(omission, numbers[1])));
    int largest = kSpreadMaxStart;
    int smallest = kSpreadMinStart;
    for (int n : numbers) {
        largest = std::max(largest, omissionOf(omission, n));
        smallest = std::min(smallest, omissionOf(omission, n));
    }
    return i16(largest - smallest);
}

}  // namespace

FrontNumbers frontOf(const DrawNumbers& d) { return {d[1], d[2], d[3], d[4], d[5]}; }
BackNumbers backOf(const DrawNumbers& d) { return {d[6], d[7]}; }

int16_t complexity(std::span<const int> v) {
    const int n = static_cast<int>(v.size());
    if (n < 2) return 0;
    // Differences x(a) - x(b) for a = 2..n, b = 1..a-1, in that order; each one equal to an
    // earlier one takes one off the start.
    std::vector<int> diffs;
    diffs.reserve(static_cast<size_t>(n * (n - 1) / 2));
    int result = n * (n - 1) / 2 - (n - 1);
    for (int a = 1; a < n; ++a) {
        for (int b = 0; b < a; ++b) {
            const int d = v[a] - v[b];
            if (std::find(diffs.begin(), diffs.end(), d) != diffs.end()) --result;
            diffs.push_back(d);
        }
    }
    return i16(result);
}

int16_t longestRun(std::span<const int> v) {
    int best = 0;
    int run = 0;
    for (size_t i = 1; i < v.size(); ++i) {
        run = v[i] - v[i - 1] == 1 ? run + 1 : 0;
        best = std::max(best, run);
    }
    return i16(best);
}

DrawParams core(std::span<const int> v, std::span<const int> prev, const Omission& omission,
                std::span<const int> spreadNumbers, const CoreOptions& options) {
    DrawParams p;
    const int n = static_cast<int>(v.size());
    std::bitset<10> lastDigits;
    for (int x : v) {
        p.sum = i16(p.sum + x);
        const bool big = options.middleCountsBig ? x >= options.middle : x > options.middle;
        if (big) {
            p.bigSum = i16(p.bigSum + x);
            ++p.bigCount;
        } else {
            p.smallSum = i16(p.smallSum + x);
            ++p.smallCount;
        }
        if (x % 2 != 0) {
            p.oddSum = i16(p.oddSum + x);
            ++p.oddCount;
        } else {
            p.evenSum = i16(p.evenSum + x);
            ++p.evenCount;
        }
        const int last = lastDigitOf(x);
        p.lastDigitSum = i16(p.lastDigitSum + last);
        if (last <= kSmallLastDigit)
            ++p.smallLastDigitCount;
        else
            ++p.bigLastDigitCount;
        lastDigits.set(static_cast<size_t>(last));
        p.omissionSum = i16(p.omissionSum + omissionOf(omission, x));
        ++p.decadeCounts[decadeOf(x)];
        for (int q : prev)
            if (q == x) ++p.repeatCount;
    }
    p.sumLastDigit = i16(p.sum % 10);
    p.repeatedLastDigits = i16(n - static_cast<int>(lastDigits.count()));
    for (int i = 1; i < n; ++i) {
        const int d = v[i] - v[i - 1];
        if (d == 1) ++p.consecutivePairs;
        p.largestGap = i16(std::max<int>(p.largestGap, d));
    }
    p.longestRun = longestRun(v);
    p.numberSpan = n > 0 ? i16(v[n - 1] - v[0]) : 0;
    p.complexity = complexity(v);
    p.omissionSpread = spread(spreadNumbers, omission, options.spreadIsAbsDifference);
    return p;
}

LineFit lineFit(const FrontNumbers& x) {
    // Point 0 is the origin; points 1..5 have x = i and so arrive sorted by x.
    constexpr int n = 6;
    std::array<double, n> px{}, py{};
    for (int i = 1; i < n; ++i) {
        px[i] = i;
        py[i] = x[i - 1];
    }
    double sx = 0, sxx = 0, sy = 0, sxy = 0;
    for (int i = 0; i < n; ++i) {
        sx += px[i];
        sxx += px[i] * px[i];
        sy += py[i];
        sxy += px[i] * py[i];
    }
    // D = Sx^2 - n*Sxx is -105 for these x, never zero.
    const double d = sx * sx - n * sxx;
    LineFit f;
    f.A = (sxy * sx - sxx * sy) / d;
    f.B = (sx * sy - n * sxy) / d;
    double sdxdy = 0, sdx2 = 0, sdy2 = 0;
    for (int i = 0; i < n; ++i) {
        const double dx = sx / n - px[i];
        const double dy = sy / n - py[i];
        sdxdy += dx * dy;
        sdx2 += dx * dx;
        sdy2 += dy * dy;
    }
    if (sdy2 > 0) f.R = sdxdy / (std::sqrt(sdx2) * std::sqrt(sdy2));
    return f;
}

std::optional<Fit> fittedLine(const FrontNumbers& x) {
    const LineFit line = lineFit(x);
    if (!line.R) return std::nullopt;
    return Fit{static_cast<float>(*line.R), static_cast<float>(line.A)};
}

void storeDecades(DrawParams& p, const std::array<int16_t, 4>& counted, Path path) {
    p.decadeCounts = counted;
    if (path == Path::Append) {
        p.decadeCounts[2] = i16(counted[2] + counted[3]);
        p.decadeCounts[3] = 0;
    }
}

std::optional<DrawParams> front(const FrontNumbers& x, const FrontNumbers& prev, const Omission& omission,
                                int frontSize, const game_rules::PositionCentres& positionCentres, Path path,
                                int16_t oldLongestRun) {
    const std::optional<Fit> fit = fittedLine(x);
    if (!fit) return std::nullopt;
    DrawParams p = core(x, prev, omission, x, {frontSize / 2.0, false, false});
    storeDecades(p, p.decadeCounts, path);
    if (path == Path::Recompute) p.longestRun = std::max(p.longestRun, oldLongestRun);
    for (int i = 0; i < 5; ++i) p.centreOffsets[i] = x[i] - positionCentres[i + 1];
    p.R = fit->R;
    p.a = fit->a;
    return p;
}

DrawParams back(const BackNumbers& y, const BackNumbers& prev, const Omission& omission, int backSize,
                const game_rules::PositionCentres& positionCentres, Path path,
                const BackRecompute& recompute) {
    const bool again = path == Path::Recompute;
    const CoreOptions options{again ? recompute.frontSize / 2.0 : backSize / 2.0, again, true};
    const DrawParams c = core(y, prev, omission, y, options);
    // fighou has no columns for the other fields: they stay 0.
    DrawParams p;
    p.sum = again ? i16(recompute.frontSum + y[1]) : c.sum;
    p.sumLastDigit = again ? i16(recompute.frontSum % 10) : c.sumLastDigit;
    p.lastDigitSum = c.lastDigitSum;
    p.omissionSum = c.omissionSum;
    p.repeatCount = c.repeatCount;
    p.evenCount = c.evenCount;
    p.oddCount = c.oddCount;
    p.smallLastDigitCount = c.smallLastDigitCount;
    p.bigLastDigitCount = c.bigLastDigitCount;
    p.smallCount = c.smallCount;
    p.bigCount = c.bigCount;
    p.repeatedLastDigits = c.repeatedLastDigits;
    p.consecutivePairs = c.consecutivePairs;
    p.numberSpan = c.numberSpan;
    p.omissionSpread = c.omissionSpread;
    p.centreOffsets[0] = y[0] - positionCentres[6];
    p.centreOffsets[1] = y[1] - positionCentres[7];
    return p;
}

void fillWorkingRow(const FrontNumbers& x, const BackNumbers& y, WorkingRow& working) {
    int j = 0;
    for (int i = 1; i <= 5; ++i) {
        const int xi = x[i - 1];
        if (j == 2) {
            working[i + 2] = xi;
        } else if (xi < y[j]) {
            working[i + 1 + j] = xi;
        } else {
            // The back number takes the slot and the front number goes nowhere.
            working[i + 1 + j] = y[j];
            ++j;
        }
    }
}

namespace {

// How many back numbers occur among the front numbers, each scan stopping at a match or at
// the first front number larger than it.
int16_t commonToBothZones(const FrontNumbers& x, const BackNumbers& y) {
    int16_t count = 0;
    for (int b : y) {
        for (int a : x) {
            if (a == b) {
                ++count;
                break;
            }
            if (a > b) break;
        }
    }
    return count;
}

}  // namespace

DrawParams both(const FrontNumbers& x, const BackNumbers& y, const WorkingRow& working,
                const WorkingRow& prevWorking, const Omission& slotOmission, const Omission& spreadOmission,
                int frontSize, Path path) {
    const std::span<const int> s(working.data() + 1, 7);
    const std::span<const int> prev(prevWorking.data() + 1, 7);
    const std::array<int, 7> plain{x[0], x[1], x[2], x[3], x[4], y[0], y[1]};
    const bool again = path == Path::Recompute;
    DrawParams p =
        core(s, again ? prev : std::span<const int>{}, slotOmission, {}, {frontSize / 2.0, false, false});
    // The spread is measured on the plain numbers with YlarrQuan.
    p.omissionSpread = spread(plain, spreadOmission, false);
    storeDecades(p, p.decadeCounts, path);
    p.numberSpan = commonToBothZones(x, y);
    if (!again) {
        p.consecutivePairs = 0;
        p.longestRun = 0;
    }
    // figquan has no gap, fitted line or distance columns.
    p.largestGap = 0;
    p.R = 0;
    p.a = 0;
    p.centreOffsets = {};
    return p;
}

}  // namespace draw_params
