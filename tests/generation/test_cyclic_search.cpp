#include "generation/wheels/cyclic_search.h"
#include "generation/wheels/wheel_check.h"

#include <gtest/gtest.h>

#include <set>

using namespace wheels;

TEST(CyclicSearch, TurnsPositionsRound) {
    EXPECT_EQ(turned(0b00011, 1, 5, 5), 0b00110u);
    EXPECT_EQ(turned(0b10001, 1, 5, 5), 0b00011u);  // position 5 comes round to 1
    EXPECT_EQ(turned(0b10001, 6, 5, 5), 0b00011u);
    EXPECT_EQ(turned(0b10001, -1, 5, 5), 0b11000u);
    EXPECT_EQ(turned(0b1, 31, 32, 32), 0x80000000u);
    // Two cycles of three and a position that stays: 1 2 3 | 4 5 6 | 7.
    EXPECT_EQ(turned(0b1100101, 1, 3, 7), 0b1001011u);
}

// Whatever the budget, the wheel found keeps its promise, and every ticket's turn is a ticket.
TEST(CyclicSearch, FindsTurningInvariantWheelsThatKeepThePromise) {
    for (const Guarantee g : {Guarantee{13, 5, 5, 4}, {12, 6, 4, 4}, {14, 6, 6, 5}, {11, 5, 3, 3}}) {
        const std::vector<Block> wheel = searchCyclic(g, {7, 0.3, 1, nullptr});
        ASSERT_FALSE(wheel.empty()) << g.name().toStdString();
        EXPECT_TRUE(check({g, wheel}).holds) << g.name().toStdString();
        const std::set<Block> tickets(wheel.begin(), wheel.end());
        EXPECT_EQ(tickets.size(), wheel.size());
        for (Block b : wheel) EXPECT_TRUE(tickets.contains(turned(b, 1, g.n, g.n))) << g.name().toStdString();
    }
    // A cancel before the start gives no wheel rather than a broken one.
    const std::atomic<bool> cancelled{true};
    const std::vector<Block> none = searchCyclic({13, 5, 5, 4}, {7, 10, 1, &cancelled});
    EXPECT_TRUE(none.empty() || check({{13, 5, 5, 4}, none}).holds);
}

// With a fixed point the last position stays where it is and the others turn among themselves.
TEST(CyclicSearch, OnePositionMayStayFixed) {
    EXPECT_EQ(turned(0b10001, 1, 4, 5), 0b10010u);
    EXPECT_EQ(turned(0b11000, 1, 4, 5), 0b10001u);
    const Guarantee g{15, 5, 5, 4};
    CyclicOptions o{3, 0.3, 1, nullptr, 14};
    const std::vector<Block> wheel = searchCyclic(g, o);
    ASSERT_FALSE(wheel.empty());
    EXPECT_TRUE(check({g, wheel}).holds);
    const std::set<Block> tickets(wheel.begin(), wheel.end());
    for (Block b : wheel) EXPECT_TRUE(tickets.contains(turned(b, 1, g.n - 1, g.n)));
}

// Two cycles: each ticket's turn within both halves is a ticket too.
TEST(CyclicSearch, PositionsMayTurnInTwoCycles) {
    const Guarantee g{16, 6, 5, 4};
    const std::vector<Block> wheel = searchCyclic(g, {5, 0.3, 1, nullptr, 8});
    ASSERT_FALSE(wheel.empty());
    EXPECT_TRUE(check({g, wheel}).holds);
    const std::set<Block> tickets(wheel.begin(), wheel.end());
    for (Block b : wheel) EXPECT_TRUE(tickets.contains(turned(b, 1, 8, g.n)));
}
