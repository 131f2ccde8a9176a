#include "picking/spin_simulator.h"

#include "workspace/scripted_prompter.h"

#include <gtest/gtest.h>

#include <deque>
#include <limits>

namespace {

// Draws given as positions of PickList: the value that lands on position p of n picks in a
// zone of `size` numbers (the middle of the first of its values).
class PositionRandom : public SpinRandom {
public:
    PositionRandom(int size, std::deque<int> positions) : m_size(size), m_positions(std::move(positions)) {}
    void reseed() override {}
    float next() override {
        const int p = m_positions.front();
        m_positions.pop_front();
        return (static_cast<float>(p - 1) + 0.5f) / static_cast<float>(m_size);
    }

private:
    int m_size;
    std::deque<int> m_positions;
};

struct Spin {
    BoardState state;
    NumberBoard board{state, 35, 12};
    SpinSimulator spin{board};
    SeededSpinRandom random{20261124};

    Spin(std::initializer_list<int> front, std::initializer_list<int> back) {
        for (int n : back) board.leftClick(Zone::Back, n);
        for (int n : front) board.leftClick(Zone::Front, n);
    }
    std::vector<int> prediction(Zone z) const {
        const ZoneBoardState& s = z == Zone::Front ? state.front : state.back;
        return {s.predictList.begin(), s.predictList.begin() + s.spinCount};
    }
};

TEST(SpinDraws, SixPicksOfThirtyFiveGiveTheLastPickedTheSmallestShare) {
    // 35 values folded onto 6 positions: positions 1..5 take 6 values each, position 6 five.
    Spin s({30, 4, 17, 22, 9, 12}, {1, 2, 3});
    SpinZone& front = s.spin.zone(Zone::Front);
    int endedEarly = 0;
    for (int t = 0; t < 200000; ++t) endedEarly += !front.tick(s.random);
    // The prediction settles long before: its stable count stops at the end of 16 bits, and the
    // ticks from there end early, after their draws were counted.
    EXPECT_GT(endedEarly, 0);
    EXPECT_EQ(front.stableCount(), std::numeric_limits<int16_t>::max());
    const double total = front.hitTotal();
    EXPECT_EQ(total, 200000.0 * 5);
    for (int n : {30, 4, 17, 22, 9}) EXPECT_NEAR(front.hitCount(n) / total, 6.0 / 35, 6.0 / 35 * 0.01) << n;
    EXPECT_NEAR(front.hitCount(12) / total, 5.0 / 35, 5.0 / 35 * 0.01);
    EXPECT_NEAR(front.hitPercent(12), front.hitCount(12) / total * 100, 1e-9);
}

TEST(SpinDraws, OneTickMayShowANumberTwiceAndTheRowIsSorted) {
    Spin s({1, 2, 3, 4, 5, 6}, {1, 2, 3});
    SpinZone& front = s.spin.zone(Zone::Front);
    bool twice = false;
    for (int t = 0; t < 100 && !twice; ++t) {
        ASSERT_TRUE(front.tick(s.random));
        for (int i = 0; i + 1 < 5; ++i) {
            EXPECT_LE(front.machinePick(i), front.machinePick(i + 1));
            twice = twice || front.machinePick(i) == front.machinePick(i + 1);
        }
    }
    EXPECT_TRUE(twice);
}

TEST(SpinSort, ZerosNeverMoveTowardsTheFront) {
    std::array<int16_t, 5> a{7, 0, 3, 0, 5};
    SpinZone::sortKeepingZeros(a, 4);
    EXPECT_EQ(a, (std::array<int16_t, 5>{3, 0, 5, 0, 7}));
    std::array<int16_t, 5> b{0, 5, 3, 0, 1};
    SpinZone::sortKeepingZeros(b, 4);
    EXPECT_EQ(b, (std::array<int16_t, 5>{0, 1, 3, 0, 5}));
    std::array<int16_t, 6> c{9, 2, 4, 0, 0, 8};
    SpinZone::sortKeepingZeros(c, 3);  // the bound is inclusive; 8 lies beyond it
    EXPECT_EQ(c, (std::array<int16_t, 6>{2, 4, 9, 0, 0, 8}));
}

TEST(SpinTopScan, OnEqualSharesTheLowerNumberStays) {
    // Back picks 4, 7, 9 and two draws a tick: 4 7 | 9 9 | 4 7 leaves all three at 2/6.
    Spin s({1, 2, 3, 4, 5, 6}, {4, 7, 9});
    PositionRandom draws(12, {1, 2, 3, 3, 1, 2});
    SpinZone& back = s.spin.zone(Zone::Back);
    for (int t = 0; t < 3; ++t) ASSERT_TRUE(back.tick(draws));
    EXPECT_DOUBLE_EQ(back.hitPercent(4), back.hitPercent(9));
    EXPECT_EQ(s.prediction(Zone::Back), (std::vector<int>{4, 7}));
}

TEST(SpinTopScan, TheNumberZeroOfTheSeedStaysUntilAnotherNumberHasAShare) {
    // Two draws of 1: no other number has a share, so the seed's 0 stays in the prediction.
    Spin s({1, 2, 3, 4, 5, 6}, {1, 5, 7});
    PositionRandom draws(12, {1, 1, 2, 3});
    SpinZone& back = s.spin.zone(Zone::Back);
    ASSERT_TRUE(back.tick(draws));
    EXPECT_EQ(s.prediction(Zone::Back), (std::vector<int>{0, 1}));  // the number 0 of the seed stays
    ASSERT_TRUE(back.tick(draws));
    // 1 has 50 %, 5 and 7 25 % each: 5 takes the place of 0, and 7 with the same share does not.
    EXPECT_EQ(s.prediction(Zone::Back), (std::vector<int>{1, 5}));
}

TEST(SpinStability, EachZoneCountsItsOwnUnchangedTicksAndBothMustReachTheThreshold) {
    Spin s({3, 8, 14, 19, 25, 31, 33}, {2, 6, 11});
    s.spin.setThreshold(50);
    s.spin.start();
    ASSERT_TRUE(s.spin.backTimerOn());
    ASSERT_FALSE(s.spin.frontTimerOn());
    bool frontChangedWhileBackKept = false;
    SpinSimulator::TickOutcome outcome = SpinSimulator::TickOutcome::Running;
    for (int t = 0; t < 100000 && outcome == SpinSimulator::TickOutcome::Running; ++t) {
        for (Zone z : {Zone::Back, Zone::Front}) {
            const std::vector<int> before = s.prediction(z);
            const int frontCount = s.spin.zone(Zone::Front).stableCount();
            const int backCount = s.spin.zone(Zone::Back).stableCount();
            if (z == Zone::Back)
                outcome = s.spin.tickBack(s.random);
            else
                s.spin.tickFront(s.random);
            const int own = z == Zone::Front ? frontCount : backCount;
            const int other = z == Zone::Front ? backCount : frontCount;
            const Zone otherZone = z == Zone::Front ? Zone::Back : Zone::Front;
            EXPECT_EQ(s.spin.zone(z).stableCount(), s.prediction(z) == before ? own + 1 : 0);
            EXPECT_EQ(s.spin.zone(otherZone).stableCount(), other);
            if (z == Zone::Front && s.prediction(z) != before && backCount > 0) frontChangedWhileBackKept = true;
            if (outcome != SpinSimulator::TickOutcome::Running) break;
        }
    }
    ASSERT_EQ(outcome, SpinSimulator::TickOutcome::Finished);
    EXPECT_TRUE(frontChangedWhileBackKept);
    // The spin ends at the first back tick where both counts reach 50.
    EXPECT_GE(s.spin.zone(Zone::Front).stableCount(), 50);
    EXPECT_GE(s.spin.zone(Zone::Back).stableCount(), 50);
    EXPECT_FALSE(s.spin.frontTimerOn() || s.spin.backTimerOn());
    EXPECT_TRUE(s.board.predictionExpansion && s.board.startEnabled && s.board.resetEnabled);
    EXPECT_FALSE(s.board.pauseEnabled || s.board.pauseItemEnabled);
    EXPECT_EQ(s.spin.startCaption(), QStringLiteral("继续(&G)"));
    EXPECT_EQ(s.spin.keptCount(), 1);
}

TEST(SpinStability, ASixteenNumberFrontSpinNeverEndsByItself) {
    Spin s({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17}, {1, 2, 3});
    s.state.front.spinCount = 16;
    s.spin.setThreshold(50);
    s.spin.start();
    int64_t ticks = 0;
    EXPECT_EQ(s.spin.runUntilStopped(s.random, 20000, &ticks), SpinSimulator::TickOutcome::Running);
    EXPECT_EQ(ticks, 20000);
    EXPECT_EQ(s.spin.zone(Zone::Front).stableCount(), 0);
    EXPECT_GE(s.spin.zone(Zone::Back).stableCount(), 50);
}

TEST(SpinCommands, ResetClearsTheFrontSharesAndTheBackOnesGoOn) {
    Spin s({3, 8, 14, 19, 25, 31}, {2, 6, 11});
    s.spin.setThreshold(30000);
    s.spin.start();
    s.spin.runUntilStopped(s.random, 300);
    const int32_t backTotal = s.spin.zone(Zone::Back).hitTotal();
    const int16_t frontStable = s.spin.zone(Zone::Front).stableCount();
    const int16_t backStable = s.spin.zone(Zone::Back).stableCount();
    ASSERT_GT(frontStable + backStable, 0);

    s.spin.resetFromMenu();  // meuRst: the counts go, the stable counts stay
    EXPECT_EQ(s.spin.zone(Zone::Front).hitTotal(), 0);
    EXPECT_EQ(s.spin.zone(Zone::Front).stableCount(), frontStable);
    EXPECT_EQ(s.spin.zone(Zone::Back).stableCount(), backStable);

    s.spin.runUntilStopped(s.random, 10);
    s.board.predictionExpansion = true;
    s.spin.reset();  // ComRst
    const SpinZone& front = s.spin.zone(Zone::Front);
    EXPECT_EQ(front.hitTotal(), 0);
    for (int n = 1; n <= 35; ++n) ASSERT_EQ(front.hitCount(n) + front.hitPercent(n), 0) << n;
    EXPECT_EQ(s.prediction(Zone::Front), (std::vector<int>{0, 0, 0, 0, 0}));
    EXPECT_EQ(s.spin.zone(Zone::Back).hitTotal(), backTotal + 20);
    EXPECT_EQ(front.stableCount() + s.spin.zone(Zone::Back).stableCount(), 0);
    EXPECT_EQ(s.spin.spinRound(), 0);
    EXPECT_FALSE(s.board.predictionExpansion || s.board.startEnabled || s.board.startItemEnabled);
    EXPECT_TRUE(s.spin.frontTimerOn() && s.spin.backTimerOn() && s.board.pauseEnabled);

    s.spin.tickFront(s.random);  // the front shares start from the new draws alone
    EXPECT_EQ(front.hitTotal(), 5);
}

TEST(SpinCommands, PauseKeepsTheTicketCountComStaClearsItMeuStaKeepsIt) {
    Spin s({3, 8, 14, 19, 25, 31}, {2, 6, 11});
    s.spin.setThreshold(50);
    s.spin.start();
    ASSERT_EQ(s.spin.runUntilStopped(s.random, 100000), SpinSimulator::TickOutcome::Finished);
    ASSERT_EQ(s.spin.keptCount(), 1);
    s.spin.startFromMenu();
    EXPECT_TRUE(s.spin.frontTimerOn() && s.spin.backTimerOn());
    s.spin.pause();
    EXPECT_EQ(s.spin.keptCount(), 1);
    EXPECT_FALSE(s.spin.frontTimerOn() || s.spin.backTimerOn() || s.board.pauseEnabled);
    EXPECT_TRUE(s.board.startEnabled && s.board.startItemEnabled && s.board.predictionExpansion);
    s.spin.startFromMenu();
    EXPECT_EQ(s.spin.keptCount(), 1);
    s.spin.pause();
    s.spin.start();
    EXPECT_EQ(s.spin.keptCount(), 0);
    EXPECT_TRUE(s.spin.backTimerOn());
}

TEST(SpinCommands, StartWithoutChoiceOrWithoutBackPicksRunsNoTimer) {
    Spin few({3, 8, 14, 19, 25}, {2, 6});  // SpinCount 5 >= PickCount 5
    few.spin.start();
    EXPECT_FALSE(few.spin.frontTimerOn() || few.spin.backTimerOn());
    EXPECT_FALSE(few.board.startEnabled || few.board.resetEnabled || few.board.resetItemEnabled);
    EXPECT_TRUE(few.board.pauseEnabled && few.board.pauseItemEnabled && few.board.predictionExpansion);

    Spin noBack({3, 8, 14, 19, 25, 31}, {});
    noBack.board.startEnabled = noBack.board.startItemEnabled = true;  // as the banker menu leaves them
    for (auto command : {&SpinSimulator::start, &SpinSimulator::startFromMenu}) {
        (noBack.spin.*command)();
        EXPECT_FALSE(noBack.spin.frontTimerOn() || noBack.spin.backTimerOn());
        EXPECT_FALSE(noBack.board.startEnabled || noBack.board.startItemEnabled);
    }
    // A tick without picks to fold onto ends quietly.
    EXPECT_FALSE(noBack.spin.zone(Zone::Back).tick(noBack.random));
}

TEST(SpinTickets, ThreeTicketsAreKeptWithTheFirstTwoFrontNumbersRepeatedThenTheSpinAsks) {
    Spin s({3, 8, 14, 19, 25, 31, 33}, {2, 6, 11});
    s.state.multiMode = true;
    s.state.multiCount = 3;
    s.spin.setThreshold(50);
    s.spin.start();
    int nextTickets = 0;
    SpinSimulator::TickOutcome outcome = SpinSimulator::TickOutcome::Running;
    while (outcome != SpinSimulator::TickOutcome::Finished) {
        outcome = s.spin.tickBack(s.random);
        if (outcome == SpinSimulator::TickOutcome::NextTicket) {
            ++nextTickets;
            EXPECT_EQ(s.spin.zone(Zone::Front).hitTotal(), 0);  // the next spin starts afresh
        }
        if (s.spin.frontTimerOn()) s.spin.tickFront(s.random);
    }
    EXPECT_EQ(nextTickets, 2);
    EXPECT_EQ(s.spin.keptCount(), 3);
    ASSERT_EQ(s.state.multiTable.size(), 3u);
    for (const auto& row : s.state.multiTable) {
        EXPECT_GT(row[0], 0);
        EXPECT_EQ(row[5], row[0]);
        EXPECT_EQ(row[6], row[1]);
    }
    const auto& last = s.state.multiTable.back();
    EXPECT_EQ(std::vector<int>(last.begin(), last.begin() + 5), s.prediction(Zone::Front));
}

TEST(SpinTickets, ACountBeyondTheTableStopsQuietlyAtItsEnd) {
    Spin s({3, 8, 14, 19, 25, 31}, {2, 6, 11});
    s.state.multiMode = true;
    s.state.multiCount = SpinSimulator::kMultiRows + 5;
    s.spin.setThreshold(50);
    s.spin.start();
    EXPECT_EQ(s.spin.runUntilStopped(s.random, 100000000), SpinSimulator::TickOutcome::Stopped);
    EXPECT_EQ(s.spin.keptCount(), SpinSimulator::kMultiRows + 1);
    EXPECT_EQ(s.state.multiTable.size(), static_cast<size_t>(SpinSimulator::kMultiRows));
    EXPECT_FALSE(s.spin.frontTimerOn() || s.spin.backTimerOn());
}

TEST(SpinTickets, TheTicketCountTakesNumbersOnly) {
    ScriptedPrompter prompter;
    Spin s({}, {});
    prompter.answer(QStringLiteral("七"));
    EXPECT_FALSE(s.spin.askTicketCount(prompter));
    ASSERT_EQ(prompter.asked().size(), 2);
    EXPECT_EQ(prompter.asked()[0].title, QStringLiteral("摇奖注数设置"));
    EXPECT_EQ(prompter.asked()[0].text, QStringLiteral("请输入单词摇奖生成注数！"));
    EXPECT_EQ(prompter.asked()[1].title, QStringLiteral("输入错误"));
    EXPECT_EQ(prompter.asked()[1].text, QStringLiteral("请输入整数数字"));
    EXPECT_FALSE(s.state.multiMode);
    prompter.answer(QStringLiteral(" 4 "));
    EXPECT_TRUE(s.spin.askTicketCount(prompter));
    EXPECT_TRUE(s.state.multiMode);
    EXPECT_EQ(s.state.multiCount, 4);
    EXPECT_EQ(SpinSimulator::parseTicketCount(QStringLiteral("2.5")), 2);  // half to even
    EXPECT_EQ(SpinSimulator::parseTicketCount(QStringLiteral("40000")), std::nullopt);
    EXPECT_EQ(SpinSimulator::parseTicketCount(QString()), std::nullopt);
}

TEST(SpinThreshold, EntriesAndStoredCoefficients) {
    for (const game_rules::StabilityItem& it : game_rules::stabilityItems()) {
        EXPECT_EQ(SpinSimulator::thresholdForStored(it.value), it.value) << it.value;
        EXPECT_EQ(SpinSimulator::thresholdForItem(it), it.index == 8 ? 30000 : it.value) << it.index;
    }
    // 无穷大 saves 8000: loaded again, that is a threshold of 8000 with no entry checked, while
    // the default 30000 checks 无穷大.
    EXPECT_EQ(SpinSimulator::thresholdForStored(8000), 8000);
    EXPECT_EQ(game_rules::stabilityItemCheckedAtLoad(8000), 0);
    EXPECT_EQ(SpinSimulator::thresholdForStored(30000), 30000);
    EXPECT_EQ(game_rules::stabilityItemCheckedAtLoad(30000), 8);
}

TEST(SpinBars, FairShareIsThreeUnitsAndEachPointAddsThree) {
    EXPECT_DOUBLE_EQ(spinBarWidth(6, 100.0 / 6), 3.0);
    EXPECT_DOUBLE_EQ(spinBarWidth(6, 100.0 / 6 + 1), 6.0);
    EXPECT_DOUBLE_EQ(spinBarWidth(4, 0), 3.0 - 75.0);
    EXPECT_DOUBLE_EQ(spinBarWidth(0, 50), 0.0);
}

}  // namespace
