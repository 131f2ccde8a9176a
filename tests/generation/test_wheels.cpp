// The wheel search against the checker, the checker against its definition and known designs,
// and the generator tool run as a process.
#include "generation/wheels/cover_state.h"
#include "generation/wheels/subsets.h"
#include "generation/wheels/wheel_catalogue.h"
#include "generation/wheels/wheel_check.h"
#include "generation/wheels/wheel_search.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <random>

using namespace wheels;

namespace {

Wheel fixture(const char* file, Guarantee g) {
    const ReadResult r =
        readFile(QStringLiteral(SHUANGQU_FIXTURES "/wheels/") + QString::fromLatin1(file), g);
    EXPECT_TRUE(r.error.isEmpty()) << r.error.toStdString();
    return {g, r.blocks};
}

Block randomBlock(std::mt19937& random, int n, int k) {
    Block b = 0;
    while (size(b) < k) b |= Block{1} << std::uniform_int_distribution<int>(0, n - 1)(random);
    return b;
}

SearchResult searchOne(Guarantee g, size_t target, uint64_t seed = 7) {
    SearchOptions o;
    o.seed = seed;
    o.targetTickets = target;
    o.movesPerThread = 3'000'000;
    return search(g, o);
}

}  // namespace

TEST(WheelSubsets, ColexRanksAreDenseInTheOrderOfTheWalk) {
    for (const auto& [positions, chosen] : {std::pair{10, 3}, {7, 7}, {32, 1}, {32, 31}, {6, 0}}) {
        const int n = positions, r = chosen;  // captured by the lambda below
        uint32_t expected = 0;
        forEachSubset(n, r, [&](uint32_t mask) {
            EXPECT_EQ(size(mask), r);
            EXPECT_EQ(colexRank(mask), expected++);
        });
        EXPECT_EQ(expected, kBinomials(n, r)) << n << " choose " << r;
    }
}

// The projective plane of order 4 covers every pair of 21 points with 21 lines; any line taken
// away leaves the pairs on it uncovered.
TEST(WheelCheck, KnownDesignsHoldAndFailWithoutTheirLastTicket) {
    for (const auto& [file, g] :
         {std::pair{"C_21_5_2.txt", Guarantee{21, 5, 2, 2}}, {"C_20_5_2.txt", Guarantee{20, 5, 2, 2}}}) {
        Wheel w = fixture(file, g);
        ASSERT_EQ(w.blocks.size(), 21u);
        EXPECT_TRUE(check(w).holds) << file;
        w.blocks.pop_back();
        const CheckResult c = check(w);
        EXPECT_FALSE(c.holds) << file;
        EXPECT_GT(c.unsatisfied, 0u);
        EXPECT_EQ(size(c.example), 2);
    }
}

TEST(WheelCheck, RefusesTicketsOfTheWrongSizeOrOutsideThePositions) {
    const Guarantee g{9, 5, 4, 3};
    EXPECT_FALSE(check({g, {blockOf({1, 2, 3, 4})}}).error.isEmpty());
    EXPECT_FALSE(check({g, {blockOf({1, 2, 3, 4, 10})}}).error.isEmpty());
    EXPECT_EQ(fromText(QStringLiteral("1 2 3 4 4\n"), g).error.isEmpty(), false);
    EXPECT_EQ(fromText(QStringLiteral("# a wheel\n\n1,2,3,4,5\n"), g).blocks,
              std::vector<Block>{blockOf({1, 2, 3, 4, 5})});
}

// The search's counters must agree with the checker's definition after any mix of adds,
// moves and removals, lotto and covering designs alike.
TEST(WheelCoverState, CountersAgreeWithTheCheckerThroughRandomChanges) {
    std::mt19937 random(11);
    for (const Guarantee g :
         {Guarantee{11, 5, 4, 3}, {10, 6, 6, 4}, {12, 5, 3, 3}, {9, 6, 7, 6}, {13, 5, 5, 3}}) {
        CoverState state(g);
        for (int i = 0; i < 12; ++i) state.addBlock(randomBlock(random, g.n, g.k));
        for (int round = 0; round < 200; ++round) {
            const size_t i = std::uniform_int_distribution<size_t>(0, state.blocks().size() - 1)(random);
            const Block b = state.blocks()[i];
            switch (round % 4) {
                case 0:
                    state.addBlock(randomBlock(random, g.n, g.k));
                    break;
                case 1:
                    if (state.blocks().size() > 2) state.removeBlock(i);
                    break;
                default: {
                    const Block all = (Block{1} << g.n) - 1;
                    if ((all & ~b) == 0) break;
                    const int x = std::countr_zero(b);
                    const int y = std::countr_zero(all & ~b);
                    if (round % 8 == 2) state.raiseUnsatisfiedWeights();
                    const auto before = state.unsatisfied();
                    const auto weighted = static_cast<int64_t>(state.weightedCost());
                    const auto d = state.tryMove(i, x, y);
                    ASSERT_EQ(state.unsatisfied(), before);  // a try leaves the state as it was
                    state.move(i, x, y);
                    ASSERT_EQ(static_cast<int64_t>(state.unsatisfied()),
                              static_cast<int64_t>(before) + d.unsatisfied);
                    ASSERT_EQ(static_cast<int64_t>(state.weightedCost()), weighted + d.weighted);
                }
            }
            ASSERT_EQ(state.unsatisfied(), check({g, state.blocks()}).unsatisfied)
                << g.name().toStdString() << " round " << round;
        }
    }
}

// With fixed seeds the small tables reach their best known sizes (several proven optimal).
TEST(WheelSearch, ReachesTheBestKnownSizesOfSmallTables) {
    const std::pair<Guarantee, size_t> records[] = {
        {{9, 5, 4, 3}, 5},   {{10, 5, 4, 3}, 7},  {{11, 5, 4, 3}, 9},  {{12, 5, 4, 3}, 12},
        {{12, 5, 2, 2}, 9},  {{10, 5, 3, 3}, 17}, {{12, 5, 3, 3}, 29}, {{11, 5, 4, 4}, 66},
        {{12, 5, 5, 4}, 35}, {{12, 6, 5, 4}, 14}, {{12, 6, 4, 4}, 41}, {{11, 6, 6, 5}, 22},
        {{12, 5, 5, 3}, 6}};
    for (const auto& [g, record] : records) {
        const SearchResult r = searchOne(g, record);
        EXPECT_EQ(r.blocks.size(), record) << g.name().toStdString();
        EXPECT_TRUE(check({g, r.blocks}).holds) << g.name().toStdString();
    }
}

TEST(WheelSearch, IsReproducibleAndTightWheelsFailWithoutATicket) {
    const Guarantee g{10, 5, 3, 3};  // 17 tickets, proven the fewest
    const SearchResult a = searchOne(g, 17, 3);
    const SearchResult b = searchOne(g, 17, 3);
    EXPECT_EQ(a.blocks, b.blocks);
    ASSERT_EQ(a.blocks.size(), 17u);
    for (size_t i = 0; i < a.blocks.size(); ++i) {
        Wheel w{g, a.blocks};
        w.blocks.erase(w.blocks.begin() + static_cast<long>(i));
        EXPECT_FALSE(check(w).holds) << "without ticket " << i;
    }
}

// A start wheel is improved from where it stands: a redundant ticket goes at once.
TEST(WheelSearch, ImprovesAStartWheelAndStopsOnCancel) {
    const Guarantee g{21, 5, 2, 2};
    Wheel plane = fixture("C_21_5_2.txt", g);
    plane.blocks.push_back(blockOf({1, 2, 3, 4, 5}));
    SearchOptions o;
    o.movesPerThread = 2000;
    const SearchResult better = search(g, o, plane.blocks);
    EXPECT_EQ(better.blocks.size(), 21u);
    EXPECT_TRUE(check({g, better.blocks}).holds);

    std::atomic<bool> cancel{true};
    o.cancel = &cancel;
    o.threads = 2;
    o.movesPerThread = UINT64_MAX;
    const SearchResult stopped = search({22, 5, 4, 3}, o);
    EXPECT_TRUE(stopped.cancelled);
    if (!stopped.blocks.empty()) {
        EXPECT_TRUE(check({{22, 5, 4, 3}, stopped.blocks}).holds);
    }
}

TEST(WheelgenTool, WritesAWheelThatHoldsAndRefusesBadInput) {
    QTemporaryDir dir;
    const QString out = dir.filePath(QStringLiteral("w.txt"));
    QProcess tool;
    tool.start(QStringLiteral(SHUANGQU_WHEELGEN),
               {"11", "5", "4", "3", "--target", "9", "--quiet", "--out", out});
    ASSERT_TRUE(tool.waitForFinished(120000));
    EXPECT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().toStdString();
    const ReadResult r = readFile(out, {11, 5, 4, 3});
    EXPECT_EQ(r.blocks.size(), 9u);
    EXPECT_TRUE(check({{11, 5, 4, 3}, r.blocks}).holds);

    // A start wheel that does not keep the guarantee, and a guarantee that cannot be.
    QFile broken(dir.filePath(QStringLiteral("broken.txt")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("1 2 3 4 5\n");
    broken.close();
    for (const QStringList& args :
         {QStringList{"11", "5", "4", "3", "--start", broken.fileName()}, QStringList{"11", "5", "3", "4"},
          QStringList{"11", "5", "4"}, QStringList{"11", "5", "4", "3", "--moves", "many"}}) {
        tool.start(QStringLiteral(SHUANGQU_WHEELGEN), args);
        ASSERT_TRUE(tool.waitForFinished(60000));
        EXPECT_EQ(tool.exitCode(), 2) << args.join(' ').toStdString();
        EXPECT_FALSE(tool.readAllStandardError().isEmpty());
    }
}

// The designs kept beside the project, where that folder exists on this machine.
TEST(WheelCheck, DesignsOfTheSharedCollectionHoldAndFailWithoutTheirLastTicket) {
    const QDir shared(QStringLiteral(SHUANGQU_SOURCE_DIR "/../shared/data/coverings"));
    const QStringList files = shared.entryList({QStringLiteral("*.txt")});
    if (files.isEmpty()) GTEST_SKIP() << "no design collection beside the project";
    for (const QString& file : files) {
        const QStringList parts = file.chopped(4).split(QLatin1Char('_'));
        const bool covering = parts[0] == QLatin1String("C");
        const Guarantee g{parts[1].toInt(), parts[2].toInt(), parts[3].toInt(),
                          parts[covering ? 3 : 4].toInt()};
        const ReadResult r = readFile(shared.filePath(file), g);
        ASSERT_TRUE(r.error.isEmpty()) << r.error.toStdString();
        Wheel w{g, r.blocks};
        EXPECT_TRUE(check(w).holds) << file.toStdString();
        w.blocks.pop_back();
        EXPECT_FALSE(check(w).holds) << file.toStdString();
    }
}

TEST(WheelCatalogue, NamesTheTablesOfTheMenus) {
    const WheelTable* basic = findTable(Family::Basic, QStringLiteral("12"));
    ASSERT_TRUE(basic);
    EXPECT_EQ(basic->design.name(), QStringLiteral("L(12,5,4,3)"));
    EXPECT_EQ(basic->bestKnown, 12);
    const WheelTable* super = findTable(Family::Super, QStringLiteral("1243"));
    ASSERT_TRUE(super);
    EXPECT_EQ(super->bestKnown, 12);
    EXPECT_EQ(findTable(Family::Super, QStringLiteral("0922"))->design.name(), QStringLiteral("C(9,5,2)"));
    EXPECT_EQ(findTable(Family::Six, QStringLiteral("561044"))->design.name(), QStringLiteral("C(10,6,4)"));
    EXPECT_FALSE(findTable(Family::Basic, QStringLiteral("8")));
    EXPECT_FALSE(findTable(Family::Basic, QStringLiteral("23")));
    for (const WheelTable& t : catalogue()) {
        const int most = t.family == Family::Six ? kMostRows6 : kMostRows5;
        EXPECT_LE(t.bestKnown, most) << t.name.toStdString();
    }
}

// Two bankers and eight drags, 中5保5: with both bankers drawn every three drags must be
// in a ticket: all 56 choices, the bankers at positions 1 and 2 of every row.
TEST(WheelCatalogue, BankerTablesPutTheBankersFirstInEveryRow) {
    const WheelTable* t = findTable(Family::Banker, QStringLiteral("2D1055"));
    ASSERT_TRUE(t);
    EXPECT_EQ(t->design.name(), QStringLiteral("C(8,3,3)"));
    ASSERT_TRUE(t->full());
    const std::vector<Block> design = builtDesign(*t);
    EXPECT_EQ(design.size(), 56u);
    const auto rows = tableRows(*t, design);
    for (const std::vector<int>& row : rows) {
        ASSERT_EQ(row.size(), 5u);
        EXPECT_EQ(row[0], 1);
        EXPECT_EQ(row[1], 2);
        EXPECT_TRUE(std::is_sorted(row.begin(), row.end()));
        EXPECT_LE(row.back(), 10);
    }
    // As a wheel over all ten positions it keeps 中5保5 for every draw that holds both bankers.
    std::vector<Block> whole;
    for (const auto& row : rows) whole.push_back(blockOf(row));
    forEachSubset(10, 5, [&](uint32_t drawn) {
        if ((drawn & 3u) != 3u) return;
        EXPECT_TRUE(std::any_of(whole.begin(), whole.end(), [&](Block b) { return b == drawn; }));
    });
    // Four bankers, 中4保4: the four bankers alone are the one ticket.
    const WheelTable* four = findTable(Family::Banker, QStringLiteral("4D1444"));
    ASSERT_TRUE(four && four->single());
    const auto single = tableRows(*four, builtDesign(*four));
    ASSERT_EQ(single.size(), 1u);
    EXPECT_EQ(single[0], (std::vector<int>{1, 2, 3, 4, 5}));
}
