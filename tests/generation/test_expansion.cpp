#include "engine/memory_budget.h"
#include "generation/expansion.h"
#include "picking/number_board.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr uint64_t kPlenty = uint64_t{64} << 30;  // memory the tests claim to have

std::array<int, 7> row(const CandidateTable& t, uint64_t r) {
    std::array<int, 7> out{};
    for (int k = 1; k <= t.numberCount(); ++k) out[static_cast<size_t>(k - 1)] = t.numberColumn(k)[r];
    return out;
}

// A board as the player leaves it before a list command: picks by left click, bankers by the
// right-click menu, then the command's preparation.
struct Picks {
    BoardState state;
    NumberBoard board{state, 35, 12};
    Picks& front(std::initializer_list<int> nums) {
        for (int n : nums) board.leftClick(Zone::Front, n);
        return *this;
    }
    Picks& back(std::initializer_list<int> nums) {
        for (int n : nums) board.leftClick(Zone::Back, n);
        return *this;
    }
    Picks& banker(Zone z, std::initializer_list<int> nums) {
        for (int n : nums) {
            board.rightClick(z, n);
            board.toggleBanker(z);
        }
        return *this;
    }
    ExpansionResult run(ListCommand command, ExpansionKind kind) {
        board.prepareList(command);
        return expand(ExpansionInput::fromBoard(state, kind), nullptr, kPlenty);
    }
};

TEST(Expansion, SixAndTwoGiveSixRowsInCounterOrder) {
    Picks p;
    p.front({9, 3, 30, 1, 17, 22}).back({11, 4});
    ExpansionResult r = p.run(ListCommand::MultiExpansion, ExpansionKind::Picks);
    ASSERT_TRUE(r.table);
    ASSERT_EQ(r.table->rowCount(), 6u);
    EXPECT_EQ(r.captionCount, 6u);
    EXPECT_EQ(row(*r.table, 0), (std::array<int, 7>{1, 3, 9, 17, 22, 4, 11}));
    EXPECT_EQ(row(*r.table, 1), (std::array<int, 7>{1, 3, 9, 17, 30, 4, 11}));
    EXPECT_EQ(row(*r.table, 5), (std::array<int, 7>{3, 9, 17, 22, 30, 4, 11}));
    for (uint64_t i = 0; i < 6; ++i) EXPECT_EQ(r.table->idxAt(i), static_cast<int>(i + 1));
    EXPECT_EQ(r.table->liveCount(), 6u);
    EXPECT_TRUE(r.table->reasons().isNull(r.table->rowReasons()[0]));
}

TEST(Expansion, BackPairVariesFastestAndRowsAreStrictlyIncreasing) {
    Picks p;
    p.front({1, 2, 3, 4, 5, 6, 7}).back({1, 2, 3, 4});
    ExpansionResult r = p.run(ListCommand::MultiExpansion, ExpansionKind::Picks);
    ASSERT_EQ(r.table->rowCount(), 21u * 6u);
    EXPECT_EQ(row(*r.table, 0), (std::array<int, 7>{1, 2, 3, 4, 5, 1, 2}));
    EXPECT_EQ(row(*r.table, 5), (std::array<int, 7>{1, 2, 3, 4, 5, 3, 4}));
    EXPECT_EQ(row(*r.table, 6), (std::array<int, 7>{1, 2, 3, 4, 6, 1, 2}));
    for (uint64_t i = 1; i < r.table->rowCount(); ++i) EXPECT_LT(row(*r.table, i - 1), row(*r.table, i)) << i;
}

TEST(Expansion, WholeThirtyFiveTwelveInMemory) {
    ExpansionInput in;
    for (int n = 1; n <= 35; ++n) in.front.push_back(static_cast<int16_t>(n));
    for (int n = 1; n <= 12; ++n) in.back.push_back(static_cast<int16_t>(n));
    EXPECT_EQ(expansionRows(in), 21425712u);
    ExpansionResult r = expand(in, nullptr, kPlenty);
    ASSERT_TRUE(r.table);
    const CandidateTable& t = *r.table;
    EXPECT_EQ(t.rowCount(), 21425712u);
    EXPECT_EQ(row(t, 0), (std::array<int, 7>{1, 2, 3, 4, 5, 1, 2}));
    EXPECT_EQ(row(t, 65), (std::array<int, 7>{1, 2, 3, 4, 5, 11, 12}));
    EXPECT_EQ(row(t, 66), (std::array<int, 7>{1, 2, 3, 4, 6, 1, 2}));
    EXPECT_EQ(row(t, t.rowCount() - 1), (std::array<int, 7>{31, 32, 33, 34, 35, 11, 12}));
    EXPECT_EQ(t.idxAt(t.rowCount() - 1), 21425712);
}

TEST(Expansion, TooLargeForTheMachineIsRefusedBeforeItStarts) {
    ExpansionInput in;
    for (int n = 1; n <= 36; ++n) in.front.push_back(static_cast<int16_t>(n));
    for (int n = 1; n <= 24; ++n) in.back.push_back(static_cast<int16_t>(n));
    EXPECT_EQ(expansionRows(in), 104049792u);
    const ExpansionResult refused = expand(in, nullptr, uint64_t{1} << 30);
    EXPECT_TRUE(refused.refused);
    EXPECT_FALSE(refused.table);
    EXPECT_TRUE(refused.message.contains(QStringLiteral("104049792"))) << refused.message.toStdString();
    // On a machine with 24 GiB free the same expansion is allowed.
    EXPECT_TRUE(memory_budget::checkTickets(104049792u, CandidateTable::kBytesPerTicket, uint64_t{24} << 30).fits);
}

TEST(Expansion, BankersGoIntoTheirSortedPlace) {
    Picks p;
    p.front({1, 5, 12, 20, 25, 28, 31, 35}).back({2, 6, 9}).banker(Zone::Front, {30, 3});
    p.board.openModeMenu();
    ASSERT_TRUE(p.board.modeMenu.bankerExpansion);
    ExpansionResult r = p.run(ListCommand::BankerExpansion, ExpansionKind::Bankers);
    ASSERT_TRUE(r.table);
    ASSERT_EQ(r.table->rowCount(), 168u);  // C(8, 3) * C(3, 2)
    EXPECT_EQ(row(*r.table, 0), (std::array<int, 7>{1, 3, 5, 12, 30, 2, 6}));
    for (uint64_t i = 0; i < r.table->rowCount(); ++i) {
        const auto v = row(*r.table, i);
        EXPECT_TRUE(std::is_sorted(v.begin(), v.begin() + 5)) << i;
        EXPECT_NE(std::find(v.begin(), v.begin() + 5, 3), v.begin() + 5) << i;
        EXPECT_NE(std::find(v.begin(), v.begin() + 5, 30), v.begin() + 5) << i;
    }
}

TEST(Expansion, BankersQuirks) {
    // Five bankers leave no counter: no row.
    {
        Picks p;
        p.front({1, 2}).back({1, 2}).banker(Zone::Front, {3, 4, 5, 6, 7});
        ExpansionResult r = p.run(ListCommand::BankerExpansion, ExpansionKind::Bankers);
        ASSERT_TRUE(r.table);
        EXPECT_EQ(r.table->rowCount(), 0u);
        EXPECT_EQ(r.captionCount, 0u);
    }
    // A banker that is also in PickList (after 全选) is not inserted: the row keeps a zero.
    {
        ExpansionInput in;
        in.kind = ExpansionKind::Bankers;
        in.front = {1, 2, 3, 4, 5};
        in.back = {1, 2};
        in.frontBankers = {3};
        ExpansionResult r = expand(in, nullptr, kPlenty);
        ASSERT_EQ(r.table->rowCount(), 5u);  // C(5, 4) * 1
        EXPECT_EQ(row(*r.table, 0), (std::array<int, 7>{1, 2, 3, 4, 0, 1, 2}));
        EXPECT_EQ(row(*r.table, 1), (std::array<int, 7>{1, 2, 3, 5, 0, 1, 2}));
        EXPECT_EQ(row(*r.table, 4), (std::array<int, 7>{2, 3, 4, 5, 0, 1, 2}));
    }
    // A banker below an earlier banker that was put into an empty slot: the literal insert.
    {
        ExpansionInput in;
        in.kind = ExpansionKind::Bankers;
        in.front = {3, 7, 9};
        in.back = {1, 2};
        in.frontBankers = {7, 12};
        ExpansionResult r = expand(in, nullptr, kPlenty);
        ASSERT_EQ(r.table->rowCount(), 1u);
        EXPECT_EQ(row(*r.table, 0), (std::array<int, 7>{3, 7, 9, 12, 0, 1, 2}));
    }
    // Back bankers: one counter; the pair is ordered; only the first banker counts.
    {
        ExpansionInput in;
        in.kind = ExpansionKind::Bankers;
        in.front = {1, 2, 3, 4, 5, 6};
        in.frontBankers = {10};
        in.back = {2, 9};
        in.backBankers = {5, 11};
        ExpansionResult r = expand(in, nullptr, kPlenty);
        ASSERT_EQ(r.table->rowCount(), 15u * 2u);
        EXPECT_EQ(row(*r.table, 0), (std::array<int, 7>{1, 2, 3, 4, 10, 2, 5}));
        EXPECT_EQ(row(*r.table, 1), (std::array<int, 7>{1, 2, 3, 4, 10, 5, 9}));
        in.back.clear();
        EXPECT_EQ(expand(in, nullptr, kPlenty).table->rowCount(), 0u) << "an empty back list writes no row";
    }
}

TEST(Expansion, SixNumberRows) {
    Picks p;
    p.front({8, 2, 4, 6, 10, 12, 14});
    ExpansionResult r = p.run(ListCommand::SixFrontMultiExpansion, ExpansionKind::SixPicks);
    ASSERT_TRUE(r.table);
    EXPECT_EQ(r.table->kind(), schema::CandidateKind::SixNumbers);
    ASSERT_EQ(r.table->rowCount(), 7u);
    EXPECT_EQ(row(*r.table, 0), (std::array<int, 7>{2, 4, 6, 8, 10, 12, 0}));
    EXPECT_EQ(row(*r.table, 6), (std::array<int, 7>{4, 6, 8, 10, 12, 14, 0}));

    ExpansionInput in;
    in.kind = ExpansionKind::SixBankers;
    in.front = {1, 4, 6, 8, 9};
    in.frontBankers = {5, 2};
    in.back = {1, 2};  // not read for six-number rows
    ExpansionResult d = expand(in, nullptr, kPlenty);
    ASSERT_EQ(d.table->rowCount(), 5u);  // C(5, 4)
    EXPECT_EQ(row(*d.table, 0), (std::array<int, 7>{1, 2, 4, 5, 6, 8, 0}));
}

TEST(Expansion, SpinPredictionAndMultiMode) {
    BoardState s;
    s.front.spinCount = 5;
    s.back.spinCount = 2;
    s.front.predictList = {7, 14, 21, 28, 35};
    s.back.predictList = {3, 6};
    s.front.pickCount = 6;
    s.fromSpin = true;
    ExpansionResult r = expand(ExpansionInput::fromBoard(s, ExpansionKind::Picks), nullptr, kPlenty);
    ASSERT_EQ(r.table->rowCount(), 1u);
    EXPECT_EQ(row(*r.table, 0), (std::array<int, 7>{7, 14, 21, 28, 35, 3, 6}));

    // Once MultiMode is set, GAgan writes the kept tickets, also after mnuLst.
    s.multiMode = true;
    s.multiTable = {{1, 2, 3, 4, 5, 6, 7}, {8, 9, 10, 11, 12, 1, 2}, {2, 4, 6, 8, 10, 3, 4}};
    s.multiCount = 2;
    ExpansionResult m = expand(ExpansionInput::fromBoard(s, ExpansionKind::Picks), nullptr, kPlenty);
    ASSERT_EQ(m.table->rowCount(), 2u);
    EXPECT_EQ(m.captionCount, 2u);
    EXPECT_EQ(row(*m.table, 1), (std::array<int, 7>{8, 9, 10, 11, 12, 1, 2}));
    EXPECT_EQ(m.table->idxAt(1), 2);
}

}  // namespace
