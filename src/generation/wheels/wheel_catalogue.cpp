#include "generation/wheels/wheel_catalogue.h"

#include "generation/wheels/subsets.h"

#include <algorithm>
#include <array>

namespace wheels {

namespace {

// Best known sizes: the La Jolla Covering Repository (D. Gordon, CC BY 4.0) for covering
// designs, the lotto-wheel community's record list for lotto designs. 0: none published.
struct Records {
    int n;
    std::array<int, 6> sizes;
};

// n; then 中2保2, 中3保3, 中4保3, 中4保4, 中5保3, 中5保4 with five-number tickets.
constexpr Records kFive[] = {
    {9, {5, 12, 5, 30, 2, 9}},          {10, {6, 17, 7, 51, 2, 14}},
    {11, {7, 20, 9, 66, 5, 22}},        {12, {9, 29, 12, 113, 6, 35}},
    {13, {10, 34, 16, 157, 8, 48}},     {14, {12, 43, 19, 229, 10, 69}},
    {15, {13, 55, 24, 294, 13, 95}},    {16, {15, 65, 31, 404, 14, 132}},
    {17, {16, 68, 37, 491, 18, 175}},   {18, {18, 94, 43, 664, 22, 214}},
    {19, {19, 108, 52, 839, 26, 284}},  {20, {21, 133, 61, 1063, 32, 350}},
    {21, {21, 151, 72, 1246, 37, 433}}, {22, {27, 172, 83, 1573, 40, 520}},
};
// n; then 中4保4, 中5保4, 中5保5, 中6保4, 中6保5, 中7保6 with six-number tickets.
constexpr Records kSix[] = {
    {7, {5, 1, 6, 1, 1, 1}},
    {8, {7, 3, 12, 1, 4, 4}},
    {9, {12, 3, 30, 3, 7, 12}},
    {10, {20, 7, 50, 3, 14, 30}},
    {11, {32, 10, 100, 5, 22, 66}},
    {12, {41, 14, 132, 6, 38, 132}},
    {13, {66, 21, 245, 10, 61, 264}},
    {14, {80, 29, 371, 14, 98, 471}},
    {15, {117, 40, 578, 19, 142, 789}},
    {16, {152, 52, 808, 25, 223, 0}},
    {17, {188, 66, 1202, 33, 332, 0}},
    {18, {236, 81, 1530, 42, 471, 0}},
    {19, {325, 111, 2167, 53, 646, 0}},
    {20, {382, 139, 2800, 66, 844, 0}},
};
// Drags n'; then 中4保4 with 1, 2, 3 bankers, 中5保4 with 1, 2, 3 bankers (five-number tickets).
constexpr Records kBanker[] = {
    {7, {12, 7, 4, 4, 4, 3}},        {8, {14, 11, 4, 6, 5, 4}},        {9, {25, 12, 5, 9, 7, 4}},
    {10, {30, 17, 5, 14, 8, 5}},     {11, {47, 19, 6, 19, 10, 5}},     {12, {57, 24, 6, 26, 11, 6}},
    {13, {78, 26, 7, 33, 13, 6}},    {14, {91, 33, 7, 42, 14, 7}},     {15, {124, 35, 8, 52, 18, 7}},
    {16, {140, 43, 8, 64, 19, 8}},   {17, {183, 46, 9, 77, 23, 8}},    {18, {207, 54, 9, 93, 24, 9}},
    {19, {258, 57, 10, 110, 29, 9}}, {20, {285, 67, 10, 128, 31, 10}},
};

constexpr std::array<std::pair<int, int>, 6> kFivePromises{{{2, 2}, {3, 3}, {4, 3}, {4, 4}, {5, 3}, {5, 4}}};
constexpr std::array<std::pair<int, int>, 6> kSixPromises{{{4, 4}, {5, 4}, {5, 5}, {6, 4}, {6, 5}, {7, 6}}};
constexpr std::array<std::pair<int, int>, 3> kBankerPromises{{{4, 4}, {5, 4}, {5, 5}}};
constexpr int kFirstPicks = 9, kLastPicks = 22;  // the five-number families
constexpr int kFirstSix = 7, kLastSix = 20;      // the six-number family
constexpr int kFirstDrags = 7, kLastDrags = 20;  // the banker family, besides its bankers
constexpr int kMostBankers = 4;

template <size_t N>
int recordOf(const Records (&records)[N], int n, size_t column) {
    for (const Records& r : records)
        if (r.n == n) return r.sizes[column];
    return 0;
}

QString twoDigits(int v) { return QStringLiteral("%1").arg(v, 2, 10, QLatin1Char('0')); }

QString promise(int drawn, int held) { return QString::number(drawn) + QString::number(held); }

std::vector<WheelTable> build() {
    std::vector<WheelTable> all;
    for (int n = kFirstPicks; n <= kLastPicks; ++n)
        all.push_back({Family::Basic, QString::number(n), n, 0, 4, 3, {n, 5, 4, 3}, recordOf(kFive, n, 2)});
    for (int n = kFirstPicks; n <= kLastPicks; ++n)
        for (size_t c = 0; c < kFivePromises.size(); ++c) {
            const auto [p, t] = kFivePromises[c];
            all.push_back({Family::Super,
                           twoDigits(n) + promise(p, t),
                           n,
                           0,
                           p,
                           t,
                           {n, 5, p, t},
                           recordOf(kFive, n, c)});
        }
    for (int b = 1; b <= kMostBankers; ++b)
        for (int drags = kFirstDrags; drags <= kLastDrags; ++drags)
            for (size_t c = 0; c < kBankerPromises.size(); ++c) {
                const auto [p, t] = kBankerPromises[c];
                const int k = 5 - b;
                WheelTable w{
                    Family::Banker,
                    QString::number(b) + QStringLiteral("D") + QString::number(b + drags) + promise(p, t),
                    b + drags,
                    b,
                    p,
                    t,
                    {drags, k, p - b, t - b},
                    0};
                if (w.single())
                    w.bestKnown = 1;
                else if (w.full())
                    w.bestKnown = static_cast<int>(kBinomials(drags, k));
                else if (b <= 3)
                    w.bestKnown = recordOf(kBanker, drags, (p == 4 ? 0 : 3) + static_cast<size_t>(b - 1));
                all.push_back(w);
            }
    for (int n = kFirstSix; n <= kLastSix; ++n)
        for (size_t c = 0; c < kSixPromises.size(); ++c) {
            const auto [p, t] = kSixPromises[c];
            all.push_back({Family::Six,
                           QStringLiteral("56") + QString::number(n) + promise(p, t),
                           n,
                           0,
                           p,
                           t,
                           {n, 6, p, t},
                           recordOf(kSix, n, c)});
        }
    return all;
}

}  // namespace

QString databaseName(Family family) {
    switch (family) {
        case Family::Basic:
            return QStringLiteral("Xuanzhuanjb");
        case Family::Super:
            return QStringLiteral("Xuanzhuancj");
        case Family::Banker:
            return QStringLiteral("XuanzhuanDT");
        case Family::Six:
            return QStringLiteral("XuanzhuanF6");
    }
    return {};
}

QString familyWord(Family family) {
    switch (family) {
        case Family::Basic:
            return QStringLiteral("basic");
        case Family::Super:
            return QStringLiteral("super");
        case Family::Banker:
            return QStringLiteral("banker");
        case Family::Six:
            return QStringLiteral("six");
    }
    return {};
}

const std::vector<WheelTable>& catalogue() {
    static const std::vector<WheelTable> all = build();
    return all;
}

const WheelTable* findTable(Family family, const QString& name) {
    for (const WheelTable& w : catalogue())
        if (w.family == family && w.name == name) return &w;
    return nullptr;
}

std::vector<std::vector<int>> tableRows(const WheelTable& table, const std::vector<Block>& design) {
    std::vector<std::vector<int>> rows;
    rows.reserve(design.size());
    for (Block b : design) {
        std::vector<int> row;
        for (int banker = 1; banker <= table.bankers; ++banker) row.push_back(banker);
        for (int p : positionsOf(b)) row.push_back(p + table.bankers);
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<Block> builtDesign(const WheelTable& table) {
    const Guarantee& g = table.design;
    std::vector<Block> blocks;
    if (table.single())
        blocks.push_back(static_cast<Block>((uint64_t{1} << g.k) - 1));
    else if (table.full())
        forEachSubset(g.n, g.k, [&](uint32_t b) { blocks.push_back(b); });
    return blocks;
}

}  // namespace wheels
