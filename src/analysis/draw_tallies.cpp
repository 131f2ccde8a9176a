#include "analysis/draw_tallies.h"

#include <algorithm>
#include <array>
#include <functional>

namespace draw_tallies {
namespace {

constexpr int kBandWidth = 5;
constexpr int kRecentDraws = 10;
// Omissions and recent appearances fall in 0, 1, 2, 3 and "4 and more".
constexpr int kCountBands = 5;

using Numbers = std::vector<int>;

Numbers numbersOfDraw(const DrawHistory& h, int row, HistoryView scope) {
    const auto n = numbersOf(h.numbers[static_cast<size_t>(row)], scope);
    return Numbers(n.begin(), n.end());
}

bool holds(const Numbers& numbers, int n) { return std::find(numbers.begin(), numbers.end(), n) != numbers.end(); }

// Runs of two or more numbers, each `step` above the one before, among sorted numbers.
int runsOf(Numbers numbers, int step) {
    std::sort(numbers.begin(), numbers.end());
    int runs = 0;
    bool inRun = false;
    for (size_t i = 1; i < numbers.size(); ++i) {
        const bool joined = numbers[i] - numbers[i - 1] == step;
        if (joined && !inRun) ++runs;
        inRun = joined;
    }
    return runs;
}

// Runs of consecutive odd numbers (3 5 7) and of consecutive even numbers (12 14), each among
// the numbers of its parity: 1 2 3 4 5 holds both 1 3 5 and 2 4.
int parityRunsOf(const Numbers& numbers) {
    Numbers odd, even;
    for (int n : numbers) (n % 2 ? odd : even).push_back(n);
    return runsOf(odd, 2) + runsOf(even, 2);
}

// What a kind counts for one draw: the value of each column (0 for an unmarked cell).
using RowCounter = std::function<std::vector<int>(int row, const Numbers& numbers)>;

// The layout of a kind whose columns are the values 0..most of a single count.
void countColumns(TallyTable& t, int most, const QString& unit) {
    for (int v = 0; v <= most; ++v) t.heads << QStringLiteral("%1%2").arg(v).arg(unit);
    t.groupStarts = {0};
    t.groupHeads = {QString()};
}

// A single count as a row: its value's column marked with it.
std::vector<int> markedAt(int columns, int value) {
    std::vector<int> row(static_cast<size_t>(columns), -1);
    if (value >= 0 && value < columns) row[static_cast<size_t>(value)] = value;
    return row;
}

void countBandColumns(TallyTable& t, const QString& unit) {
    for (int b = 0; b < kCountBands - 1; ++b) t.heads << QStringLiteral("%1%2").arg(b).arg(unit);
    t.heads << QStringLiteral("%1%2以上").arg(kCountBands - 1).arg(unit);
    t.groupStarts = {0};
    t.groupHeads = {QString()};
}

int countBand(int value) { return std::min(value, kCountBands - 1); }

}  // namespace

const std::vector<KindInfo>& kinds() {
    static const std::vector<KindInfo> k{
        {TallyKind::Intervals, "frmPicQj5", "intervals"},   {TallyKind::Tails, "frmPicWei", "tails"},
        {TallyKind::Odd, "frmPicJODS", "odd"},              {TallyKind::Even, "frmPicJODS", "even"},
        {TallyKind::Big, "frmPicJODS", "big"},              {TallyKind::Small, "frmPicJODS", "small"},
        {TallyKind::Edges, "frmPicBianhao", "edges"},       {TallyKind::Repeats, "frmPicChonghao", "repeats"},
        {TallyKind::Runs, "frmPicLianhao", "runs"},         {TallyKind::ParityRuns, "frmPicJOLianhao", "parity-runs"},
        {TallyKind::Omissions, "frmPicYL", "omissions"},    {TallyKind::RecentAppearances, "frmPic10Apper", "recent"}};
    return k;
}

TallyTable build(const DrawHistory& history, HistoryView scope, int zoneSize, TallyKind kind) {
    TallyTable t;
    const int r = history.drawCount();
    const int perDraw = static_cast<int>(numbersOf(history.numbers.front(), scope).size());
    const double middle = zoneSize / 2.0;
    // Draws since each number last came, before the draw being counted; appearances over the
    // draws before it are counted from the rows themselves.
    std::vector<int> lastSeen(static_cast<size_t>(kNumberSlots), 0);
    RowCounter counter;
    // Foot rows: draws marked per column ("期数") or the sum of the cells, over every draw and,
    // where a kind has it, over the latest ten.
    enum class Foot { DrawsPerValue, Sums };
    Foot foot = Foot::DrawsPerValue;
    QString allHead = QStringLiteral("期数"), recentHead;
    const auto single = [&](const QString& caption, int most, const QString& unit,
                            std::function<int(int, const Numbers&)> count) {
        t.caption = caption;
        countColumns(t, most, unit);
        counter = [count, most](int row, const Numbers& numbers) { return markedAt(most + 1, count(row, numbers)); };
    };
    const auto previous = [&history, scope](int row) {
        return row > 1 ? numbersOfDraw(history, row - 1, scope) : Numbers{};
    };
    switch (kind) {
        case TallyKind::Intervals: {
            t.caption = QStringLiteral("5区间参数");
            const int bands = (zoneSize + kBandWidth - 1) / kBandWidth;
            for (int b = 0; b < bands; ++b) {
                t.groupStarts.push_back(static_cast<int>(t.heads.size()));
                t.groupHeads << QStringLiteral("%1~%2").arg(b * kBandWidth + 1, 2, 10, QLatin1Char('0'))
                                    .arg(std::min((b + 1) * kBandWidth, zoneSize), 2, 10, QLatin1Char('0'));
                for (int c = 1; c <= kBandWidth; ++c) t.heads << QString::number(c);
            }
            counter = [bands](int, const Numbers& numbers) {
                std::vector<int> row(static_cast<size_t>(bands * kBandWidth), -1);
                std::vector<int> inBand(static_cast<size_t>(bands), 0);
                for (int n : numbers)
                    if (n >= 1 && (n - 1) / kBandWidth < bands) ++inBand[static_cast<size_t>((n - 1) / kBandWidth)];
                for (int b = 0; b < bands; ++b) {
                    const int c = inBand[static_cast<size_t>(b)];
                    if (c > 0) row[static_cast<size_t>(b * kBandWidth + std::min(c, kBandWidth) - 1)] = c;
                }
                return row;
            };
            allHead = QStringLiteral("区间总计");
            recentHead = QStringLiteral("近十区间次");
            break;
        }
        case TallyKind::Tails:
            t.caption = QStringLiteral("尾数参数");
            for (int d = 0; d <= 9; ++d) t.heads << QStringLiteral("%1尾").arg(d);
            t.groupStarts = {0};
            t.groupHeads = {QString()};
            counter = [](int, const Numbers& numbers) {
                std::vector<int> row(10, -1);
                for (int n : numbers) {
                    int& cell = row[static_cast<size_t>(n % 10)];
                    cell = cell < 0 ? 1 : cell + 1;
                }
                return row;
            };
            foot = Foot::Sums;
            allHead = QStringLiteral("尾数次总计");
            recentHead = QStringLiteral("近十尾数次");
            break;
        case TallyKind::Odd:
        case TallyKind::Even:
        case TallyKind::Big:
        case TallyKind::Small: {
            static const std::array<const char*, 4> captions{"奇数个数", "偶数个数", "大数个数", "小数个数"};
            const int which = static_cast<int>(kind) - static_cast<int>(TallyKind::Odd);
            single(QStringLiteral("参数列表 - %1").arg(QString::fromUtf8(captions[static_cast<size_t>(which)])),
                   perDraw, QStringLiteral("个"), [which, middle](int, const Numbers& numbers) {
                       return static_cast<int>(std::count_if(numbers.begin(), numbers.end(), [&](int n) {
                           switch (which) {
                               case 0: return n % 2 == 1;
                               case 1: return n % 2 == 0;
                               case 2: return n > middle;
                               default: return n <= middle;
                           }
                       }));
                   });
            break;
        }
        case TallyKind::Edges:
            single(QStringLiteral("边号参数"), perDraw, QStringLiteral("个"), [&](int row, const Numbers& numbers) {
                const Numbers before = previous(row);
                return static_cast<int>(std::count_if(numbers.begin(), numbers.end(), [&](int n) {
                    return holds(before, n - 1) || holds(before, n + 1);
                }));
            });
            break;
        case TallyKind::Repeats:
            single(QStringLiteral("重上期号参数"), perDraw, QStringLiteral("个"), [&](int row, const Numbers& numbers) {
                const Numbers before = previous(row);
                return static_cast<int>(
                    std::count_if(numbers.begin(), numbers.end(), [&](int n) { return holds(before, n); }));
            });
            break;
        case TallyKind::Runs:
            single(QStringLiteral("连号参数"), perDraw / 2, QStringLiteral("个"),
                   [](int, const Numbers& numbers) { return runsOf(numbers, 1); });
            break;
        case TallyKind::ParityRuns:
            single(QStringLiteral("奇偶连号参数"), perDraw / 2, QStringLiteral("个"),
                   [](int, const Numbers& numbers) { return parityRunsOf(numbers); });
            break;
        case TallyKind::Omissions:
            t.caption = QStringLiteral("遗漏分布");
            countBandColumns(t, QStringLiteral("次"));
            counter = [&lastSeen](int row, const Numbers& numbers) {
                std::vector<int> row5(kCountBands, -1);
                for (int n : numbers) {
                    if (n < 1 || n >= kNumberSlots) continue;
                    int& cell = row5[static_cast<size_t>(countBand(row - 1 - lastSeen[static_cast<size_t>(n)]))];
                    cell = cell < 0 ? 1 : cell + 1;
                }
                return row5;
            };
            foot = Foot::Sums;
            allHead = QStringLiteral("遗漏总计");
            break;
        case TallyKind::RecentAppearances:
            t.caption = QStringLiteral("前10期出现次数分布");
            countBandColumns(t, QStringLiteral("次"));
            counter = [&history, scope](int row, const Numbers& numbers) {
                std::vector<int> row5(kCountBands, -1);
                for (int n : numbers) {
                    int seen = 0;
                    for (int before = std::max(1, row - kRecentDraws); before < row; ++before)
                        seen += holds(numbersOfDraw(history, before, scope), n) ? 1 : 0;
                    int& cell = row5[static_cast<size_t>(countBand(seen))];
                    cell = cell < 0 ? 1 : cell + 1;
                }
                return row5;
            };
            foot = Foot::Sums;
            allHead = QStringLiteral("总计");
            break;
    }

    const size_t columns = static_cast<size_t>(t.heads.size());
    std::vector<int> all(columns, 0), recent(columns, 0);
    for (int row = 1; row <= r; ++row) {
        const Numbers numbers = numbersOfDraw(history, row, scope);
        const std::vector<int> values = counter(row, numbers);
        std::vector<std::optional<int>> cells(columns);
        for (size_t c = 0; c < columns; ++c) {
            if (values[c] < 0) continue;
            cells[c] = values[c];
            const int add = foot == Foot::Sums ? values[c] : 1;
            all[c] += add;
            if (row > r - kRecentDraws) recent[c] += add;
        }
        t.issues.push_back(history.numbers[static_cast<size_t>(row)][0]);
        t.cells.push_back(std::move(cells));
        for (int n : numbers)
            if (n >= 1 && n < kNumberSlots) lastSeen[static_cast<size_t>(n)] = row;
    }
    t.foot.push_back({allHead, all});
    if (!recentHead.isEmpty()) t.foot.push_back({recentHead, recent});
    return t;
}

TextGrid asText(const TallyTable& t) {
    TextGrid g;
    const int columns = static_cast<int>(t.heads.size()) + 1;
    if (headRows(t) == 2) {
        QStringList groups(columns, QString());
        groups[0] = QStringLiteral("区间");
        for (size_t i = 0; i < t.groupStarts.size(); ++i) groups[t.groupStarts[i] + 1] = t.groupHeads[static_cast<qsizetype>(i)];
        g.rows.push_back(groups);
    }
    g.rows.push_back(QStringList{QStringLiteral("期号")} + t.heads);
    for (size_t r = 0; r < t.cells.size(); ++r) {
        QStringList row{QString::number(t.issues[r])};
        for (const std::optional<int>& cell : t.cells[r]) row << (cell ? QString::number(*cell) : QString());
        g.rows.push_back(row);
    }
    for (const TallyTable::Foot& f : t.foot) {
        QStringList row{f.head};
        for (int v : f.values) row << QString::number(v);
        g.rows.push_back(row);
    }
    return g;
}

}  // namespace draw_tallies
