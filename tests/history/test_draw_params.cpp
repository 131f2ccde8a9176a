// The arithmetic of the per-draw parameters, by both writers.
#include "history/draw_params.h"

#include <gtest/gtest.h>

using namespace drawparams;

namespace {

const Omission kNoOmission{};
const rules::Fitbase kFit = rules::fitbase(35, 12);

DrawParams appendFront(const FrontNumbers& x, int bitnum = 35, const FrontNumbers& prev = {}) {
    return *front(x, prev, kNoOmission, bitnum, rules::fitbase(bitnum, 12), Path::Append);
}

}  // namespace

TEST(FrontParams, RunOfFiveHasNoComplexity) {
    const DrawParams p = appendFront({1, 2, 3, 4, 5});
    EXPECT_EQ(p.Lnum, 4);
    EXPECT_EQ(p.Lxnum, 4);
    EXPECT_EQ(p.Mxzounum, 1);
    EXPECT_EQ(p.Apzounum, 4);
    EXPECT_EQ(p.Fcodp, 0);
    // The numbers lie on the line y = x through the origin.
    EXPECT_FLOAT_EQ(p.R, 1.0f);
    EXPECT_NEAR(p.a, 0.0f, 1e-6);
}

TEST(FrontParams, DoublingsHaveTenDifferentDifferences) {
    const DrawParams p = appendFront({1, 2, 4, 8, 16});
    EXPECT_EQ(p.Fcodp, 6);
    EXPECT_EQ(p.Lnum, 1);
    EXPECT_EQ(p.Lxnum, 1);
    EXPECT_EQ(p.Mxzounum, 8);
}

TEST(FrontParams, RunsCountAdjacentDifferencesOfOne) {
    EXPECT_EQ(longestRun(std::array<int, 5>{3, 4, 10, 11, 12}), 2);
    EXPECT_EQ(appendFront({3, 4, 10, 11, 12}).Lnum, 3);
    EXPECT_EQ(longestRun(std::array<int, 5>{3, 5, 7, 9, 11}), 0);
}

TEST(FrontParams, MiddleOfTheZone) {
    // With 35 numbers the middle is 17.5: 17 is small, 18 big; with 36 it is 18, still small.
    DrawParams p35 = appendFront({1, 17, 18, 30, 35}, 35);
    EXPECT_EQ(p35.Ltlnum, 2);
    EXPECT_EQ(p35.Mornum, 3);
    EXPECT_EQ(p35.XZnum, 18);
    EXPECT_EQ(p35.DZnum, 83);
    DrawParams p36 = appendFront({1, 17, 18, 30, 36}, 36);
    EXPECT_EQ(p36.Ltlnum, 3);
    EXPECT_EQ(p36.Mornum, 2);
}

TEST(FrontParams, DecadesAndLastDigitsByWriter) {
    const FrontNumbers x{10, 15, 21, 30, 31};
    const DrawParams app = appendFront(x);
    // 10 is in the first decade and its last digit 0 is small; 31 in the fourth decade.
    EXPECT_EQ(app.Qnum[0], 1);
    EXPECT_EQ(app.Qnum[1], 1);
    // The append path puts everything from 21 on into Qnum2 and leaves Qnum3 at 0.
    EXPECT_EQ(app.Qnum[2], 3);
    EXPECT_EQ(app.Qnum[3], 0);
    EXPECT_EQ(app.Smlnum, 4);
    EXPECT_EQ(app.Bignum, 1);
    const DrawParams again = *front(x, {}, kNoOmission, 35, kFit, Path::Recompute);
    EXPECT_EQ(again.Qnum[2], 2);
    EXPECT_EQ(again.Qnum[3], 1);
}

TEST(FrontParams, SumsCountsAndSameLastDigits) {
    const DrawParams p = appendFront({3, 13, 22, 23, 35});
    EXPECT_EQ(p.Znum, 96);
    EXPECT_EQ(p.Sumgwnum, 6);
    EXPECT_EQ(p.Zgnum, 3 + 3 + 2 + 3 + 5);
    EXPECT_EQ(p.Jnum, 4);
    EXPECT_EQ(p.Onum, 1);
    EXPECT_EQ(p.Zjnum, 74);
    EXPECT_EQ(p.Zonum, 22);
    // Last digits 3, 3, 2, 3, 5: three different ones.
    EXPECT_EQ(p.Modenum, 2);
}

TEST(FrontParams, RepeatsOfThePreviousRowAndOmissions) {
    Omission yl{};
    yl[3] = 7;
    yl[13] = 2;
    yl[22] = 0;
    yl[23] = 11;
    yl[35] = 4;
    const FrontNumbers x{3, 13, 22, 23, 35};
    const DrawParams p = *front(x, {1, 3, 22, 30, 35}, yl, 35, kFit, Path::Append);
    EXPECT_EQ(p.Cnum, 3);
    EXPECT_EQ(p.Zynum, 24);
    EXPECT_EQ(p.intYljz, 11);
    // The row before the first draw holds zeros.
    EXPECT_EQ(appendFront(x).Cnum, 0);
}

TEST(FrontParams, SpreadStartsItsSmallestAt100) {
    Omission yl{};
    for (int n : {5, 6, 7, 8, 9}) yl[n] = static_cast<int16_t>(120 + n);
    const DrawParams p = *front({5, 6, 7, 8, 9}, {}, yl, 35, kFit, Path::Append);
    EXPECT_EQ(p.intYljz, 129 - 100);
}

TEST(FrontParams, FittedLineAndDistancesFromTheCentres) {
    const DrawParams p = appendFront({22, 24, 29, 31, 35});
    EXPECT_FLOAT_EQ(p.a, static_cast<float>(915.0 / 105.0));
    EXPECT_NEAR(p.R, 0.8895926f, 1e-6);
    EXPECT_DOUBLE_EQ(p.Lcz[0], 22 - 3.5);
    EXPECT_DOUBLE_EQ(p.Lcz[4], 35 - 31.5);
    // Five zeros give no line: the row cannot be computed.
    EXPECT_FALSE(front({0, 0, 0, 0, 0}, {}, kNoOmission, 35, kFit, Path::Append).has_value());
}

TEST(FrontParams, RecomputeKeepsALongerOldRun) {
    const DrawParams p = *front({1, 5, 9, 13, 17}, {}, kNoOmission, 35, kFit, Path::Recompute, 3);
    EXPECT_EQ(p.Lxnum, 3);
    EXPECT_EQ(p.Lnum, 0);
    EXPECT_EQ(front({1, 5, 9, 13, 17}, {}, kNoOmission, 35, kFit, Path::Append)->Lxnum, 0);
}

TEST(BackParams, AppendPath) {
    Omission yl{};
    yl[4] = 130;
    yl[5] = 160;
    const DrawParams p = back({4, 5}, {5, 9}, yl, 12, kFit, Path::Append);
    EXPECT_EQ(p.Znum, 9);
    EXPECT_EQ(p.Sumgwnum, 9);
    EXPECT_EQ(p.Lnum, 1);
    EXPECT_EQ(p.Apzounum, 1);
    EXPECT_EQ(p.Cnum, 1);
    EXPECT_EQ(p.Modenum, 0);
    EXPECT_EQ(p.Zynum, 290);
    // The back spread is a plain difference, not measured from 0 and 100.
    EXPECT_EQ(p.intYljz, 30);
    EXPECT_DOUBLE_EQ(p.Lcz[0], 4 - 3.0);
    EXPECT_DOUBLE_EQ(p.Lcz[1], 5 - 9.0);
    // With 12 numbers the middle is 6: 4 and 5 are small.
    EXPECT_EQ(p.Ltlnum, 2);
    EXPECT_EQ(p.Mornum, 0);
    EXPECT_EQ(back({2, 12}, {}, yl, 12, kFit, Path::Append).Modenum, 1);
}

TEST(BackParams, RecomputeUsesTheFrontSumAndMiddle) {
    const DrawParams p =
        back({13, 14}, {}, kNoOmission, 24, rules::fitbase(28, 24), Path::Recompute, {97, 28});
    EXPECT_EQ(p.Znum, 97 + 14);
    EXPECT_EQ(p.Sumgwnum, 7);
    // The middle is Bitnum/2 = 14, and 14 itself counts as big.
    EXPECT_EQ(p.Mornum, 1);
    EXPECT_EQ(p.Ltlnum, 1);
    const DrawParams app = back({13, 14}, {}, kNoOmission, 24, rules::fitbase(28, 24), Path::Append);
    EXPECT_EQ(app.Znum, 27);
    EXPECT_EQ(app.Mornum, 2);
}

TEST(QuanPlacement, InterleaveIsNotAMerge) {
    QuanSlots s{};
    // 3 loses to the back 2 and 11 to the back 9: both front numbers are dropped.
    placeQuan({3, 11, 19, 24, 33}, {2, 9}, s);
    EXPECT_EQ(s, (QuanSlots{0, 0, 2, 0, 9, 19, 24, 33}));
    // A back number above all front numbers is not placed; the last slot keeps its old value.
    s[7] = 44;
    placeQuan({1, 2, 3, 4, 5}, {6, 7}, s);
    EXPECT_EQ(s, (QuanSlots{0, 0, 1, 2, 3, 4, 5, 44}));
    QuanSlots fresh{};
    placeQuan({1, 5, 9, 13, 17}, {6, 10}, fresh);
    EXPECT_EQ(fresh, (QuanSlots{0, 0, 1, 5, 6, 0, 10, 17}));
}

TEST(QuanParams, AppendAndRecomputeDiffer) {
    const FrontNumbers x{3, 11, 19, 24, 33};
    const BackNumbers y{3, 11};
    QuanSlots s{};
    placeQuan(x, y, s);  // 0, 3, 0, 11, 19, 24, 33
    Omission quan{}, frontYl{};
    quan[11] = 5;
    frontYl[11] = 9;
    const DrawParams app = both(x, y, s, {}, quan, quan, 35, Path::Append);
    EXPECT_EQ(app.Znum, 90);
    EXPECT_EQ(app.Apzounum, 2);
    EXPECT_EQ(app.Cnum, 0);
    EXPECT_EQ(app.Lnum, 0);
    EXPECT_EQ(app.Zynum, 5);
    // Slot 0 counts as even, small and in the first decade.
    EXPECT_EQ(app.Onum, 3);
    EXPECT_EQ(app.Qnum[0], 3);
    EXPECT_EQ(app.Qnum[2], 2);
    EXPECT_EQ(app.Qnum[3], 0);
    // Last digits 0, 3, 0, 1, 9, 4, 3: five different ones.
    EXPECT_EQ(app.Modenum, 2);
    const DrawParams again = both(x, y, s, QuanSlots{}, frontYl, quan, 35, Path::Recompute);
    EXPECT_EQ(again.Zynum, 9);
    // Pairs between the working rows: the two zero slots meet seven zeros each.
    EXPECT_EQ(again.Cnum, 14);
    EXPECT_EQ(again.Qnum[2], 1);
    EXPECT_EQ(again.Qnum[3], 1);
}

TEST(QuanParams, CommonNumbersStopAtTheFirstLargerFront) {
    QuanSlots s{};
    placeQuan({3, 11, 19, 24, 33}, {2, 11}, s);
    // 2 meets 3 first and stops; 11 is found.
    EXPECT_EQ(both({3, 11, 19, 24, 33}, {2, 11}, s, {}, kNoOmission, kNoOmission, 35, Path::Append).Apzounum,
              1);
}

TEST(QuanParams, ComplexityOverSevenSlotsStartsAt15) {
    EXPECT_EQ(complexity(std::array<int, 7>{1, 2, 4, 8, 16, 32, 64}), 15);
    EXPECT_EQ(complexity(std::array<int, 7>{1, 2, 3, 4, 5, 6, 7}), 0);
}
