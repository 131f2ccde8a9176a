// The tally tables on three draws whose counts can be told by hand.
#include "analysis/draw_tallies.h"

#include <gtest/gtest.h>

namespace {

DrawHistory historyOf(const std::vector<DrawNumbers>& draws) {
    DrawHistory h;
    for (const DrawNumbers& d : draws) h.numbers.push_back(d);
    return h;
}

const DrawHistory kDraws = historyOf({{2025101, 1, 2, 3, 4, 5, 1, 2},
                                      {2025102, 3, 5, 7, 9, 20, 3, 4},
                                      {2025103, 4, 6, 8, 21, 22, 1, 12}});

using Row = std::vector<std::optional<int>>;

// A row written as the value of each column, -1 for an unmarked cell.
Row row(std::initializer_list<int> values) {
    Row out;
    for (int v : values) out.push_back(v < 0 ? std::nullopt : std::optional<int>(v));
    return out;
}

TallyTable front(TallyKind kind) { return draw_tallies::build(kDraws, HistoryView::Front, 35, kind); }

}  // namespace

TEST(DrawTallies, SingleCountsMarkTheirValueAndCountTheDrawsPerValue) {
    const TallyTable odd = front(TallyKind::Odd);
    EXPECT_EQ(odd.heads, (QStringList{"0个", "1个", "2个", "3个", "4个", "5个"}));
    EXPECT_EQ(odd.issues, (std::vector<int32_t>{2025101, 2025102, 2025103}));
    EXPECT_EQ(odd.cells[0], row({-1, -1, -1, 3, -1, -1}));
    EXPECT_EQ(odd.cells[1], row({-1, -1, -1, -1, 4, -1}));
    EXPECT_EQ(odd.cells[2], row({-1, 1, -1, -1, -1, -1}));
    ASSERT_EQ(odd.foot.size(), 1u);
    EXPECT_EQ(odd.foot[0].head, QStringLiteral("期数"));
    EXPECT_EQ(odd.foot[0].values, (std::vector<int>{0, 1, 0, 1, 1, 0}));
    // Above the middle of 35 (17.5): 20; then 21 and 22.
    EXPECT_EQ(front(TallyKind::Big).foot[0].values, (std::vector<int>{1, 1, 1, 0, 0, 0}));

    // Against the previous draw: the first draw has none, so nothing repeats and nothing is next
    // to it; 3 and 5 come again in the second; 4, 6, 8 and 21 lie next to 3 5 7 9 20.
    EXPECT_EQ(front(TallyKind::Repeats).foot[0].values, (std::vector<int>{2, 0, 1, 0, 0, 0}));
    const TallyTable edges = front(TallyKind::Edges);
    EXPECT_EQ(edges.cells[0][0], 0);
    EXPECT_EQ(edges.cells[1][2], 2);  // 3 beside 2 and 4, 5 beside 4
    EXPECT_EQ(edges.cells[2][4], 4);

    // Runs: 1-5 is one run, 21 22 another; odd and even runs among each parity's numbers.
    const TallyTable runs = front(TallyKind::Runs);
    EXPECT_EQ(runs.heads.size(), 3);
    EXPECT_EQ(runs.foot[0].values, (std::vector<int>{1, 2, 0}));
    EXPECT_EQ(front(TallyKind::ParityRuns).cells[0][2], 2);  // 1 3 5 and 2 4
    EXPECT_EQ(front(TallyKind::ParityRuns).cells[1][1], 1);  // 3 5 7 9
    EXPECT_EQ(front(TallyKind::ParityRuns).cells[2][1], 1);  // 4 6 8
}

TEST(DrawTallies, IntervalsAndTailsMarkEachGroup) {
    const TallyTable bands = front(TallyKind::Intervals);
    ASSERT_EQ(bands.heads.size(), 7 * 5);
    EXPECT_EQ(bands.groupHeads.first(), QStringLiteral("01~05"));
    EXPECT_EQ(bands.groupHeads.last(), QStringLiteral("31~35"));
    EXPECT_EQ(bands.groupStarts[1], 5);
    EXPECT_EQ(bands.cells[0][4], 5);   // all five in 01~05
    EXPECT_EQ(bands.cells[1][1], 2);   // 3 5
    EXPECT_EQ(bands.cells[1][6], 2);   // 7 9
    EXPECT_EQ(bands.cells[1][15], 1);  // 20 in 16~20
    ASSERT_EQ(bands.foot.size(), 2u);
    EXPECT_EQ(bands.foot[0].head, QStringLiteral("区间总计"));
    EXPECT_EQ(bands.foot[1].head, QStringLiteral("近十区间次"));
    EXPECT_EQ(bands.foot[0].values[1], 1);
    // A back zone of 12: the last band holds 11 and 12.
    EXPECT_EQ(draw_tallies::build(kDraws, HistoryView::Back, 12, TallyKind::Intervals).groupHeads.last(),
              QStringLiteral("11~12"));

    const TallyTable tails = front(TallyKind::Tails);
    EXPECT_EQ(tails.cells[2], row({-1, 1, 1, -1, 1, -1, 1, -1, 1, -1}));
    EXPECT_EQ(tails.foot[0].values, (std::vector<int>{1, 2, 2, 2, 2, 2, 1, 1, 1, 1}));
}

TEST(DrawTallies, OmissionsAndRecentAppearancesPerBand) {
    const TallyTable omissions = front(TallyKind::Omissions);
    EXPECT_EQ(omissions.heads.last(), QStringLiteral("4次以上"));
    EXPECT_EQ(omissions.cells[0], row({5, -1, -1, -1, -1}));
    EXPECT_EQ(omissions.cells[1], row({2, 3, -1, -1, -1}));
    EXPECT_EQ(omissions.cells[2], row({-1, 1, 4, -1, -1}));
    EXPECT_EQ(omissions.foot[0].values, (std::vector<int>{7, 4, 4, 0, 0}));
    const TallyTable recent = front(TallyKind::RecentAppearances);
    EXPECT_EQ(recent.cells[1], row({3, 2, -1, -1, -1}));
    EXPECT_EQ(recent.cells[2], row({4, 1, -1, -1, -1}));
    // No draws: no rows, foot rows of zeros.
    const TallyTable none = draw_tallies::build(DrawHistory{}, HistoryView::Both, 35, TallyKind::Repeats);
    EXPECT_TRUE(none.cells.empty());
    EXPECT_EQ(none.heads.size(), 8);
    EXPECT_EQ(none.foot[0].values, std::vector<int>(8, 0));
}
