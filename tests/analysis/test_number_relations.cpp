// Pairs, pairs with a number, transitions and the moments of the positions, on small histories
// whose counts can be told by hand.
#include "analysis/number_relations.h"
#include "analysis/position_moments.h"

#include <gtest/gtest.h>

namespace {

DrawHistory historyOf(const std::vector<DrawNumbers>& draws) {
    DrawHistory h;
    for (const DrawNumbers& d : draws) h.numbers.push_back(d);
    return h;
}

int total(const NumberMatrix& m) {
    int sum = 0;
    for (int a = 1; a < kNumberSlots; ++a)
        for (int b = 1; b < kNumberSlots; ++b) sum += m.at(a, b);
    return sum;
}

const DrawHistory kThree = historyOf({{1, 1, 2, 3, 4, 5, 1, 2}, {2, 3, 9, 17, 28, 35, 3, 12}, {3, 2, 3, 17, 30, 35, 1, 12}});

}  // namespace

using namespace number_relations;

TEST(Pairs, EachDrawCountsEveryPairOfItsScopeOnce) {
    const NumberMatrix front = pairs(kThree, HistoryView::Front);
    EXPECT_EQ(total(front), 3 * 10);
    EXPECT_EQ(front.at(3, 17), 2);
    EXPECT_EQ(front.at(17, 3), 0);  // the lower number first
    EXPECT_EQ(front.at(17, 35), 2);
    for (int n = 1; n <= 35; ++n) EXPECT_EQ(front.at(n, 6) + front.at(6, n), 0) << n;  // 6 never drawn
    const NumberMatrix back = pairs(kThree, HistoryView::Back);
    EXPECT_EQ(total(back), 3);
    EXPECT_EQ(back.at(1, 12), 1);
    // Both zones: 21 pairs a draw, a front and a back number paired by value in position order.
    const NumberMatrix both = pairs(kThree, HistoryView::Both);
    EXPECT_EQ(total(both), 3 * 21);
    EXPECT_EQ(both.at(1, 1), 1);    // front 1 with back 1 in the first draw
    EXPECT_EQ(both.at(35, 12), 2);  // front 35 before back 12
    EXPECT_EQ(both.at(3, 3), 1);    // front 3 with back 3 in the second draw
}

TEST(Pairs, WithANumberCountOnlyItsDrawsWithoutIt) {
    const NumberMatrix with3 = pairsWith(kThree, HistoryView::Front, 3);
    EXPECT_EQ(total(with3), 3 * 6);  // four other numbers, six pairs
    EXPECT_EQ(with3.at(17, 35), 2);
    EXPECT_EQ(with3.at(1, 3) + with3.at(3, 9), 0);
    EXPECT_EQ(total(pairsWith(kThree, HistoryView::Front, 36)), 0);
    // Both zones: the second draw holds 3 in front and back; both places are left out.
    const NumberMatrix both = pairsWith(kThree, HistoryView::Both, 3);
    EXPECT_EQ(both.at(9, 12), 1);
    EXPECT_EQ(total(both), 15 + 10 + 15);
}

TEST(Transitions, CountEveryNumberOfALaterDrawAfterEveryNumberOfTheEarlier) {
    const NumberMatrix next = transitions(kThree, HistoryView::Front, 1);
    EXPECT_EQ(total(next), 2 * 25);
    EXPECT_EQ(next.at(3, 3), 2);  // 3 in each draw
    EXPECT_EQ(next.at(1, 35), 1);
    EXPECT_EQ(total(transitions(kThree, HistoryView::Both, 1)), 2 * 49);
    // One draw skipped: only the first draw to the third.
    const NumberMatrix skip = transitions(kThree, HistoryView::Front, 2);
    EXPECT_EQ(total(skip), 25);
    EXPECT_EQ(skip.at(5, 30), 1);
    EXPECT_EQ(skip.at(9, 30), 0);

    // The follow rows read the draw whose followers come next: the newest for the next draw,
    // the one before it when one draw is skipped.
    const FollowRows after = followRows(kThree, HistoryView::Front, 2, skip, 35);
    EXPECT_EQ(after.numbers, (std::vector<int>{3, 9, 17, 28, 35}));
    EXPECT_EQ(after.rows[0][30], 1);  // 3 of the first draw, 30 of the third
    EXPECT_EQ(after.rows[1][30], 0);  // 9 came only in the second
    const FollowRows afterNext = followRows(kThree, HistoryView::Front, 1, next, 35);
    EXPECT_EQ(afterNext.numbers, (std::vector<int>{2, 3, 17, 30, 35}));
    EXPECT_EQ(afterNext.rows[1][3], 2);  // 3 followed by 3 twice
    EXPECT_EQ(afterNext.total[3], next.at(2, 3) + next.at(3, 3) + next.at(17, 3) + next.at(30, 3) + next.at(35, 3));
    EXPECT_TRUE(followRows(DrawHistory{}, HistoryView::Front, 1, NumberMatrix{}, 35).numbers.empty());
}

TEST(Moments, SampleAndIdealRowsWithTheirEmptyCells) {
    using position_moments::compute;
    // All draws alike: no spread about the sample mean.
    const DrawHistory same = historyOf({{1, 4, 11, 18, 25, 32, 3, 9}, {2, 4, 11, 18, 25, 32, 3, 9}, {3, 4, 11, 18, 25, 32, 3, 9}});
    const auto t = compute(same, 35, 12);
    EXPECT_DOUBLE_EQ(*t[0][0], 3.5);
    EXPECT_DOUBLE_EQ(*t[1][0], 4);
    for (int row : {2, 3, 4, 5}) EXPECT_EQ(*t[static_cast<size_t>(row)][2], 0) << row;
    EXPECT_DOUBLE_EQ(*t[6][0], 3 * 0.25 / 2);   // ideal variance: (4 - 3.5)^2 over R - 1
    EXPECT_DOUBLE_EQ(*t[7][0], 0.25);           // over R
    EXPECT_DOUBLE_EQ(*t[8][0], 0.125);          // (0.5)^3
    // One draw: the rows over R - 1 have no value.
    const auto one = compute(historyOf({{1, 1, 2, 3, 4, 5, 1, 2}}), 35, 12);
    EXPECT_FALSE(one[2][0] || one[3][0] || one[6][0]);
    EXPECT_TRUE(one[4][0] && one[5][0] && one[8][0]);
    // No draws: the ideal mean alone, and the ideal variance over -1 as a plain 0.
    const auto none = compute(DrawHistory{}, 28, 12);
    EXPECT_NEAR(*none[0][1], 8.4, 1e-12);
    EXPECT_FALSE(none[1][0] || none[4][0] || none[7][0]);
    EXPECT_EQ(*none[6][0], 0.0);
    EXPECT_FALSE(std::signbit(*none[6][0]));
}
