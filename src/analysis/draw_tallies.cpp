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

// What a kind counts for one draw: the value of each column, -1 for an unmarked cell.
using RowCounter = std::function<std::vector<int>(int row, const Numbers& numbers)>;

// A kind: its table's caption and layout, what a row counts, and what its foot rows total.
struct KindLayout {
    TallyTable table;
    RowCounter counter;
    // The foot rows count the draws marked in each column ("期数"), or sum the cells, over
    // every draw and, where a kind has a head for it, over the latest ten.
    bool sums = false;
    QString allHead = QStringLiteral("期数");
    QString recentHead;
};

// What the kinds read besides the row's numbers.
struct Source {
    const DrawHistory& history;
    HistoryView scope;
    int zoneSize;
    int perDraw;                   // numbers a draw holds in the scope
    const std::vector<int>& lastSeen;  // per number, the last draw before the counted one that held it
};

void oneGroup(TallyTable& t) {
    t.groupStarts = {0};
    t.groupHeads = {QString()};
}

// A single count per draw: columns for its values 0..most, the draw's value marked.
KindLayout singleCount(const QString& caption, int most, std::function<int(int, const Numbers&)> count) {
    KindLayout s;
    s.table.caption = caption;
    for (int v = 0; v <= most; ++v) s.table.heads << QStringLiteral("%1个").arg(v);
    oneGroup(s.table);
    s.counter = [count = std::move(count), most](int row, const Numbers& numbers) {
        std::vector<int> values(static_cast<size_t>(most + 1), -1);
        const int v = count(row, numbers);
        if (v >= 0 && v <= most) values[static_cast<size_t>(v)] = v;
        return values;
    };
    return s;
}

// Per band of 0, 1, 2, 3 and 4 or more: how many of the draw's numbers have a figure there.
KindLayout countBands(const QString& caption, const QString& allHead, std::function<int(int, int)> figure) {
    KindLayout s;
    s.table.caption = caption;
    for (int b = 0; b < kCountBands - 1; ++b) s.table.heads << QStringLiteral("%1次").arg(b);
    s.table.heads << QStringLiteral("%1次以上").arg(kCountBands - 1);
    oneGroup(s.table);
    s.counter = [figure = std::move(figure)](int row, const Numbers& numbers) {
        std::vector<int> values(kCountBands, -1);
        for (int n : numbers) {
            if (n < 1 || n >= kNumberSlots) continue;
            int& cell = values[static_cast<size_t>(std::min(figure(row, n), kCountBands - 1))];
            cell = cell < 0 ? 1 : cell + 1;
        }
        return values;
    };
    s.sums = true;
    s.allHead = allHead;
    return s;
}

KindLayout intervals(int zoneSize) {
    KindLayout s;
    s.table.caption = QStringLiteral("5区间参数");
    const int bands = (zoneSize + kBandWidth - 1) / kBandWidth;
    for (int b = 0; b < bands; ++b) {
        s.table.groupStarts.push_back(static_cast<int>(s.table.heads.size()));
        s.table.groupHeads << QStringLiteral("%1~%2")
                                   .arg(b * kBandWidth + 1, 2, 10, QLatin1Char('0'))
                                   .arg(std::min((b + 1) * kBandWidth, zoneSize), 2, 10, QLatin1Char('0'));
        for (int c = 1; c <= kBandWidth; ++c) s.table.heads << QString::number(c);
    }
    // Within a band's group, the column of the band's count holds it.
    s.counter = [bands](int, const Numbers& numbers) {
        std::vector<int> values(static_cast<size_t>(bands * kBandWidth), -1);
        std::vector<int> inBand(static_cast<size_t>(bands), 0);
        for (int n : numbers)
            if (n >= 1 && (n - 1) / kBandWidth < bands) ++inBand[static_cast<size_t>((n - 1) / kBandWidth)];
        for (int b = 0; b < bands; ++b)
            if (const int c = inBand[static_cast<size_t>(b)]; c > 0)
                values[static_cast<size_t>(b * kBandWidth + std::min(c, kBandWidth) - 1)] = c;
        return values;
    };
    s.allHead = QStringLiteral("区间总计");
    s.recentHead = QStringLiteral("近十区间次");
    return s;
}

KindLayout tails() {
    KindLayout s;
    s.table.caption = QStringLiteral("尾数参数");
    for (int d = 0; d <= 9; ++d) s.table.heads << QStringLiteral("%1尾").arg(d);
    oneGroup(s.table);
    s.counter = [](int, const Numbers& numbers) {
        std::vector<int> values(10, -1);
        for (int n : numbers) {
            int& cell = values[static_cast<size_t>(n % 10)];
            cell = cell < 0 ? 1 : cell + 1;
        }
        return values;
    };
    s.sums = true;
    s.allHead = QStringLiteral("尾数次总计");
    s.recentHead = QStringLiteral("近十尾数次");
    return s;
}

// Odd, even, big (above the middle of the zone) or small.
KindLayout parity(TallyKind kind, const Source& src) {
    static const std::array<const char*, 4> captions{"奇数个数", "偶数个数", "大数个数", "小数个数"};
    const int which = static_cast<int>(kind) - static_cast<int>(TallyKind::Odd);
    const double middle = src.zoneSize / 2.0;
    return singleCount(QStringLiteral("参数列表 - %1").arg(QString::fromUtf8(captions[static_cast<size_t>(which)])),
                       src.perDraw, [which, middle](int, const Numbers& numbers) {
                           return static_cast<int>(std::count_if(numbers.begin(), numbers.end(), [&](int n) {
                               switch (which) {
                                   case 0: return n % 2 == 1;
                                   case 1: return n % 2 == 0;
                                   case 2: return n > middle;
                                   default: return n <= middle;
                               }
                           }));
                       });
}

// The numbers of the previous draw that a number of this one meets as `meets` says.
KindLayout againstPrevious(const QString& caption, const Source& src, std::function<bool(const Numbers&, int)> meets) {
    return singleCount(caption, src.perDraw, [&src, meets = std::move(meets)](int row, const Numbers& numbers) {
        const Numbers before = row > 1 ? numbersOfDraw(src.history, row - 1, src.scope) : Numbers{};
        return static_cast<int>(
            std::count_if(numbers.begin(), numbers.end(), [&](int n) { return meets(before, n); }));
    });
}

KindLayout layoutOf(TallyKind kind, const Source& src) {
    switch (kind) {
        case TallyKind::Intervals:
            return intervals(src.zoneSize);
        case TallyKind::Tails:
            return tails();
        case TallyKind::Odd:
        case TallyKind::Even:
        case TallyKind::Big:
        case TallyKind::Small:
            return parity(kind, src);
        case TallyKind::Edges:
            return againstPrevious(QStringLiteral("边号参数"), src, [](const Numbers& before, int n) {
                return holds(before, n - 1) || holds(before, n + 1);
            });
        case TallyKind::Repeats:
            return againstPrevious(QStringLiteral("重上期号参数"), src,
                                   [](const Numbers& before, int n) { return holds(before, n); });
        case TallyKind::Runs:
            return singleCount(QStringLiteral("连号参数"), src.perDraw / 2,
                               [](int, const Numbers& numbers) { return runsOf(numbers, 1); });
        case TallyKind::ParityRuns:
            return singleCount(QStringLiteral("奇偶连号参数"), src.perDraw / 2,
                               [](int, const Numbers& numbers) { return parityRunsOf(numbers); });
        case TallyKind::Omissions:
            return countBands(QStringLiteral("遗漏分布"), QStringLiteral("遗漏总计"), [&src](int row, int n) {
                return row - 1 - src.lastSeen[static_cast<size_t>(n)];
            });
        case TallyKind::RecentAppearances:
            return countBands(QStringLiteral("前10期出现次数分布"), QStringLiteral("总计"), [&src](int row, int n) {
                int seen = 0;
                for (int before = std::max(1, row - kRecentDraws); before < row; ++before)
                    seen += holds(numbersOfDraw(src.history, before, src.scope), n) ? 1 : 0;
                return seen;
            });
    }
    return {};
}

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
    std::vector<int> lastSeen(static_cast<size_t>(kNumberSlots), 0);
    const Source src{history, scope, zoneSize,
                     static_cast<int>(numbersOf(history.numbers.front(), scope).size()), lastSeen};
    KindLayout layout = layoutOf(kind, src);
    TallyTable t = std::move(layout.table);
    const int r = history.drawCount();
    const size_t columns = static_cast<size_t>(t.heads.size());
    std::vector<int> all(columns, 0), recent(columns, 0);
    for (int row = 1; row <= r; ++row) {
        const Numbers numbers = numbersOfDraw(history, row, scope);
        const std::vector<int> values = layout.counter(row, numbers);
        std::vector<std::optional<int>> cells(columns);
        for (size_t c = 0; c < columns; ++c) {
            if (values[c] < 0) continue;
            cells[c] = values[c];
            const int add = layout.sums ? values[c] : 1;
            all[c] += add;
            if (row > r - kRecentDraws) recent[c] += add;
        }
        t.issues.push_back(history.numbers[static_cast<size_t>(row)][0]);
        t.cells.push_back(std::move(cells));
        for (int n : numbers)
            if (n >= 1 && n < kNumberSlots) lastSeen[static_cast<size_t>(n)] = row;
    }
    t.foot.push_back({layout.allHead, all});
    if (!layout.recentHead.isEmpty()) t.foot.push_back({layout.recentHead, recent});
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
