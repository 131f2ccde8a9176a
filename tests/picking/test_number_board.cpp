#include "picking/number_board.h"

#include <gtest/gtest.h>

namespace {

struct Board {
    BoardState state;
    NumberBoard board{state, 35, 12};
    ZoneBoardState& front() { return state.front; }
    ZoneBoardState& back() { return state.back; }
    void pick(Zone z, std::initializer_list<int> nums) {
        for (int n : nums) board.leftClick(z, n);
    }
    void banker(Zone z, int n) {
        ASSERT_TRUE(board.rightClick(z, n));
        board.toggleBanker(z);
    }
};

std::vector<int> pickList(const ZoneBoardState& s) {
    std::vector<int> out;
    for (int i = 1; i <= s.pickCount; ++i) out.push_back(s.pickList[static_cast<size_t>(i)]);
    return out;
}

TEST(NumberBoardStatus, FiveAndTwoKeepTheTextSixAndTwoCountSix) {
    Board b;
    b.board.statusText = QStringLiteral("former");
    b.pick(Zone::Back, {3, 9});
    b.pick(Zone::Front, {1, 2, 3, 4, 5});
    EXPECT_EQ(b.board.statusText, QStringLiteral("former"));
    b.pick(Zone::Front, {6});
    EXPECT_EQ(b.board.statusText, QStringLiteral("前区：6码 后区：2码 共计：6注"));
    EXPECT_EQ(b.state.ticketCount, 6);
}

TEST(NumberBoardStatus, BankersShowTuoAndDanWithTheBankerFactor) {
    // Six plain picks and two bankers: the front factor is C(6, 3) = 20.
    Board b;
    b.pick(Zone::Back, {1, 2});
    b.pick(Zone::Front, {1, 2, 3, 4, 5, 6});
    b.banker(Zone::Front, 7);
    b.banker(Zone::Front, 8);
    EXPECT_EQ(b.board.statusText, QStringLiteral("前区：6拖2胆 后区：2码 共计：20注"));
    EXPECT_EQ(b.state.ticketCount, 20);

    // Seven plain picks, two bankers, three back numbers: the statements multiply C(7, 3) by
    // C(3, 2), so the text reads 105 tickets.
    Board c;
    c.pick(Zone::Back, {1, 2, 3});
    c.pick(Zone::Front, {1, 2, 3, 4, 5, 6, 7});
    c.banker(Zone::Front, 8);
    c.banker(Zone::Front, 9);
    EXPECT_EQ(c.board.statusText, QStringLiteral("前区：7拖2胆 后区：3码 共计：105注"));
    EXPECT_EQ(NumberBoard::ticketCount(7, 3, 3, 2), 105);
}

TEST(NumberBoardStatus, BackInvertCountsTheBackZoneForBoth) {
    Board b;
    b.pick(Zone::Front, {1, 2, 3, 4, 5, 6});
    b.pick(Zone::Back, {1});
    b.board.invert(Zone::Back);
    EXPECT_EQ(b.back().pickCount, 11);
    // Zhushu(PickCountHou, 5, PickCountHou, 2): C(11, 5) * C(11, 2).
    EXPECT_EQ(b.board.statusText, QStringLiteral("前区：11码 后区：11码 共计：25410注"));
    // The front zone's invert uses both zones' counts.
    b.board.invert(Zone::Front);
    EXPECT_EQ(b.front().pickCount, 29);
    EXPECT_EQ(b.state.ticketCount, NumberBoard::ticketCount(29, 5, 11, 2));
}

TEST(NumberBoardStatus, LargestTicketCountFitsThirtyTwoBits) {
    BoardState state;
    NumberBoard board(state, 36, 24);
    board.selectAll(Zone::Back);
    board.selectAll(Zone::Front);
    EXPECT_EQ(state.ticketCount, 104049792);
    EXPECT_EQ(board.statusText, QStringLiteral("前区：36码 后区：24码 共计：104049792注"));
}

TEST(NumberBoardStartRule, FrontClicksNeverEnableStartBackClicksDo) {
    Board b;
    b.pick(Zone::Back, {1, 2, 3});
    EXPECT_TRUE(b.back().readyFlag);
    b.pick(Zone::Front, {1, 2, 3, 4, 5, 6});
    EXPECT_TRUE(b.front().readyFlag);
    EXPECT_FALSE(b.board.startEnabled);
    EXPECT_FALSE(b.board.startItemEnabled);
    b.pick(Zone::Back, {4});
    EXPECT_TRUE(b.board.startEnabled);
    EXPECT_TRUE(b.board.startItemEnabled);
    // The program click of the front zone applies the rule.
    b.pick(Zone::Back, {4, 3});  // back down to 2: not ready
    EXPECT_FALSE(b.board.startEnabled);
    b.board.programClick(Zone::Back, 3);
    EXPECT_TRUE(b.board.startEnabled);
    b.board.programClick(Zone::Front, 7);
    EXPECT_TRUE(b.board.startEnabled);
    b.board.programClick(Zone::Front, 7);
    b.board.programClick(Zone::Front, 6);  // front down to 5: not ready, and the program click says so
    EXPECT_FALSE(b.board.startEnabled);
}

TEST(NumberBoardBankers, RightClickMakesABankerWithoutPressingLeftClickTurnsItIntoAPick) {
    Board b;
    EXPECT_TRUE(b.board.rightClick(Zone::Front, 12));
    EXPECT_EQ(b.front().bankerCount, 0) << "the right click alone changes nothing";
    b.board.toggleBanker(Zone::Front);
    EXPECT_TRUE(b.front().bankerFlag[12]);
    EXPECT_EQ(b.front().bankerCount, 1);
    EXPECT_FALSE(b.board.zone(Zone::Front).button(12).pressed);
    EXPECT_EQ(b.board.zone(Zone::Front).button(12).colour, ButtonColour::Green);
    EXPECT_FALSE(b.board.startEnabled) << "enabled at once, then the start rule of step 5 decides";

    b.board.leftClick(Zone::Front, 12);
    EXPECT_FALSE(b.front().bankerFlag[12]);
    EXPECT_EQ(b.front().bankerCount, 0);
    EXPECT_TRUE(b.front().pickFlag[12]);
    EXPECT_EQ(b.front().pickCount, 1);
    EXPECT_TRUE(b.board.zone(Zone::Front).button(12).pressed);
    EXPECT_EQ(b.board.zone(Zone::Front).button(12).colour, ButtonColour::Red);

    // A picked number made a banker keeps its pressed button.
    b.banker(Zone::Front, 12);
    EXPECT_EQ(b.front().pickCount, 0);
    EXPECT_TRUE(b.board.zone(Zone::Front).button(12).pressed);
    EXPECT_EQ(b.board.zone(Zone::Front).button(12).colour, ButtonColour::Green);
}

TEST(NumberBoardLists, RemovalAfterASortShiftsFromThePositionRecordedBefore) {
    Board b;
    b.pick(Zone::Front, {5, 3, 9, 1, 7, 2});
    b.pick(Zone::Back, {1, 2});
    b.board.openModeMenu();
    ASSERT_TRUE(b.board.modeMenu.multiExpansion);
    b.board.prepareList(ListCommand::MultiExpansion);
    EXPECT_EQ(pickList(b.front()), (std::vector<int>{1, 2, 3, 5, 7, 9}));
    EXPECT_EQ(b.front().pickPos[9], 3) << "PickPos keeps its values through the sort";
    EXPECT_EQ(b.front().spinCount, 6);
    EXPECT_FALSE(b.state.fromSpin);
    // Un-picking 9 removes position 3, which now holds 3.
    b.board.leftClick(Zone::Front, 9);
    EXPECT_EQ(pickList(b.front()), (std::vector<int>{1, 2, 5, 7, 9}));
    EXPECT_FALSE(b.front().pickFlag[9]);
}

TEST(NumberBoardLists, SelectAllWithBankersCountsThemTwiceAndInvertGoesNegative) {
    Board b;
    b.banker(Zone::Front, 1);
    b.banker(Zone::Front, 2);
    b.board.selectAll(Zone::Front);
    EXPECT_EQ(b.front().pickCount, 35);
    EXPECT_EQ(b.front().bankerCount, 2);
    EXPECT_TRUE(b.front().pickFlag[1]);
    EXPECT_TRUE(b.front().bankerFlag[1]);
    EXPECT_TRUE(b.front().readyFlag);
    // Zone size - PickCount - DanCount = -2: the rebuild runs no round.
    b.board.invert(Zone::Front);
    EXPECT_EQ(b.front().pickCount, -2);
    EXPECT_FALSE(b.front().readyFlag);
    EXPECT_FALSE(b.front().pickFlag[3]);
    EXPECT_FALSE(b.front().pickFlag[1]);
    EXPECT_TRUE(b.front().bankerFlag[1]);
    EXPECT_EQ(b.board.zone(Zone::Front).button(1).colour, ButtonColour::Green);
}

TEST(NumberBoardLists, InvertBuildsTheComplementAscending) {
    Board b;
    b.pick(Zone::Back, {12, 1, 5});
    b.banker(Zone::Back, 7);
    b.board.invert(Zone::Back);
    // Neither picked nor banker: 2,3,4,6,8,9,10,11.
    EXPECT_EQ(b.back().pickCount, 12 - 3 - 1);
    EXPECT_EQ(pickList(b.back()), (std::vector<int>{2, 3, 4, 6, 8, 9, 10, 11}));
    EXPECT_EQ(b.back().pickPos[6], 4);
    EXPECT_TRUE(b.back().pickFlag[7]) << "the banker's pick flag is toggled too";
    EXPECT_EQ(b.board.zone(Zone::Back).button(7).colour, ButtonColour::Green);
    EXPECT_FALSE(b.board.zone(Zone::Back).button(12).pressed);
}

TEST(NumberBoardMenus, ModeMenuEnablingAndDantuomnu) {
    Board b;
    b.board.modeMenu.frontMultiSpin = true;
    b.banker(Zone::Back, 1);
    b.pick(Zone::Back, {2});
    b.banker(Zone::Front, 1);
    b.pick(Zone::Front, {2, 3, 4, 5, 6, 7});
    b.board.openModeMenu();
    EXPECT_TRUE(b.board.modeMenu.frontMultiSpin) << "both zones have bankers: meuAgn keeps its state";
    EXPECT_TRUE(b.board.modeMenu.bankerExpansion);
    EXPECT_TRUE(b.board.modeMenu.sixFrontBankerExpansion);
    EXPECT_FALSE(b.board.modeMenu.sixFrontMultiExpansion) << "one back pick only";
    EXPECT_TRUE(b.board.modeMenu.frontBankerSpin && b.board.modeMenu.backBankerSpin);

    // Dantuomnu after the last front click: SpinCount = 5 - 1, mnuDtuo 4..6 remain, and mnuDtuo(4)
    // is chosen as if clicked.
    const ZoneBoard& f = b.board.zone(Zone::Front);
    EXPECT_EQ(b.front().spinCount, 4);
    for (int k = 1; k <= 15; ++k)
        EXPECT_EQ(f.bankerMenu.enabled[static_cast<size_t>(k)], k >= 4 && k <= 6) << k;
    EXPECT_TRUE(f.bankerMenu.enabled[16]) << "mnuDtuo(16) keeps its design state";
    EXPECT_TRUE(f.bankerMenu.checked[4]);
    EXPECT_EQ(b.front().chosenCount, 4);
    EXPECT_TRUE(f.multiMenu.enabled[6]);
    EXPECT_FALSE(f.multiMenu.enabled[7]);
    EXPECT_FALSE(b.board.predictionExpansion);
    EXPECT_TRUE(b.board.startEnabled) << "6 picks are more than 4: the spin is to run";
}

TEST(NumberBoardMenus, DanxuanWithFewPicksCopiesThemAsThePrediction) {
    struct Events : BoardEvents {
        int opened = 0;
        void openFilterFromPrediction() override { ++opened; }
    } events;
    BoardState state;
    NumberBoard board(state, 35, 12, &events);
    for (int n : {4, 8, 15, 16, 23}) board.leftClick(Zone::Front, n);
    board.chooseMultiEntry(Zone::Front, 6);
    EXPECT_EQ(events.opened, 1);
    EXPECT_TRUE(state.fromSpin);
    EXPECT_EQ(state.front.spinCount, 6);
    EXPECT_EQ(state.front.predictList[0], 4);
    EXPECT_EQ(state.front.predictList[4], 23);
    EXPECT_FALSE(board.startEnabled);
    EXPECT_TRUE(board.zone(Zone::Front).multiMenu.checked[6]);
    EXPECT_FALSE(board.zone(Zone::Front).multiMenu.checked[5]);
}

TEST(NumberBoardReselect, FrontResetRestoresTheSpinCountsBackOnlyClears) {
    Board b;
    b.pick(Zone::Front, {1, 2, 3, 4, 5, 6});
    b.pick(Zone::Back, {1, 2, 3});
    b.board.chooseMultiEntry(Zone::Front, 9);
    b.board.reselect(Zone::Back);
    EXPECT_EQ(b.back().pickCount, 0);
    EXPECT_TRUE(b.board.statusText.isEmpty());
    EXPECT_EQ(b.front().spinCount, 9);
    b.board.reselect(Zone::Front);
    EXPECT_EQ(b.front().spinCount, 5);
    EXPECT_EQ(b.back().spinCount, 2);
    EXPECT_TRUE(b.board.zone(Zone::Front).multiMenu.checked[5]);
    EXPECT_FALSE(b.board.zone(Zone::Front).multiMenu.checked[9]);
    EXPECT_FALSE(b.board.wheelEntries);
    EXPECT_FALSE(b.board.startEnabled);
}

}  // namespace
