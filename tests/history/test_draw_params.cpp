// The arithmetic of the per-draw parameters, by both writers.
#include "history/draw_params.h"

#include <gtest/gtest.h>

using namespace draw_params;

namespace {

const Omission kNoOmission{};
const game_rules::PositionCentres kFit = game_rules::positionCentres(35, 12);

DrawParams appendFront(const FrontNumbers& x, int frontSize = 35, const FrontNumbers& prev = {}) {
    return *front(x, prev, kNoOmission, frontSize, game_rules::positionCentres(frontSize, 12), Path::Append);
}

}  // namespace

TEST(FrontParams, RunOfFiveHasNoComplexity) {
    const DrawParams p = appendFront({1, 2, 3, 4, 5});
    EXPECT_EQ(p.consecutivePairs, 4);
    EXPECT_EQ(p.longestRun, 4);
    EXPECT_EQ(p.largestGap, 1);
    EXPECT_EQ(p.numberSpan, 4);
    EXPECT_EQ(p.complexity, 0);
    // The numbers lie on the line y = x through the origin.
    EXPECT_FLOAT_EQ(p.R, 1.0f);
    EXPECT_NEAR(p.a, 0.0f, 1e-6);
}

TEST(FrontParams, DoublingsHaveTenDifferentDifferences) {
    const DrawParams p = appendFront({1, 2, 4, 8, 16});
    EXPECT_EQ(p.complexity, 6);
    EXPECT_EQ(p.consecutivePairs, 1);
    EXPECT_EQ(p.longestRun, 1);
    EXPECT_EQ(p.largestGap, 8);
}

TEST(FrontParams, RunsCountAdjacentDifferencesOfOne) {
    EXPECT_EQ(longestRun(std::array<int, 5>{3, 4, 10, 11, 12}), 2);
    EXPECT_EQ(appendFront({3, 4, 10, 11, 12}).consecutivePairs, 3);
    EXPECT_EQ(longestRun(std::array<int, 5>{3, 5, 7, 9, 11}), 0);
}

TEST(FrontParams, MiddleOfTheZone) {
    // With 35 numbers the middle is 17.5: 17 is small, 18 big; with 36 it is 18, still small.
    DrawParams p35 = appendFront({1, 17, 18, 30, 35}, 35);
    EXPECT_EQ(p35.smallCount, 2);
    EXPECT_EQ(p35.bigCount, 3);
    EXPECT_EQ(p35.smallSum, 18);
    EXPECT_EQ(p35.bigSum, 83);
    DrawParams p36 = appendFront({1, 17, 18, 30, 36}, 36);
    EXPECT_EQ(p36.smallCount, 3);
    EXPECT_EQ(p36.bigCount, 2);
}

TEST(FrontParams, DecadesAndLastDigitsByWriter) {
    const FrontNumbers x{10, 15, 21, 30, 31};
    const DrawParams app = appendFront(x);
    // 10 is in the first decade and its last digit 0 is small; 31 in the fourth decade.
    EXPECT_EQ(app.decadeCounts[0], 1);
    EXPECT_EQ(app.decadeCounts[1], 1);
    // The append path puts everything from 21 on into Qnum2 and leaves Qnum3 at 0.
    EXPECT_EQ(app.decadeCounts[2], 3);
    EXPECT_EQ(app.decadeCounts[3], 0);
    EXPECT_EQ(app.smallLastDigitCount, 4);
    EXPECT_EQ(app.bigLastDigitCount, 1);
    const DrawParams again = *front(x, {}, kNoOmission, 35, kFit, Path::Recompute);
    EXPECT_EQ(again.decadeCounts[2], 2);
    EXPECT_EQ(again.decadeCounts[3], 1);
}

TEST(FrontParams, SumsCountsAndSameLastDigits) {
    const DrawParams p = appendFront({3, 13, 22, 23, 35});
    EXPECT_EQ(p.sum, 96);
    EXPECT_EQ(p.sumLastDigit, 6);
    EXPECT_EQ(p.lastDigitSum, 3 + 3 + 2 + 3 + 5);
    EXPECT_EQ(p.oddCount, 4);
    EXPECT_EQ(p.evenCount, 1);
    EXPECT_EQ(p.oddSum, 74);
    EXPECT_EQ(p.evenSum, 22);
    // Last digits 3, 3, 2, 3, 5: three different ones.
    EXPECT_EQ(p.repeatedLastDigits, 2);
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
    EXPECT_EQ(p.repeatCount, 3);
    EXPECT_EQ(p.omissionSum, 24);
    EXPECT_EQ(p.omissionSpread, 11);
    // The row before the first draw holds zeros.
    EXPECT_EQ(appendFront(x).repeatCount, 0);
}

TEST(FrontParams, SpreadStartsItsSmallestAt100) {
    Omission yl{};
    for (int n : {5, 6, 7, 8, 9}) yl[n] = static_cast<int16_t>(120 + n);
    const DrawParams p = *front({5, 6, 7, 8, 9}, {}, yl, 35, kFit, Path::Append);
    EXPECT_EQ(p.omissionSpread, 129 - 100);
}

TEST(FrontParams, FittedLineAndDistancesFromTheCentres) {
    const DrawParams p = appendFront({22, 24, 29, 31, 35});
    EXPECT_FLOAT_EQ(p.a, static_cast<float>(915.0 / 105.0));
    EXPECT_NEAR(p.R, 0.8895926f, 1e-6);
    EXPECT_DOUBLE_EQ(p.centreOffsets[0], 22 - 3.5);
    EXPECT_DOUBLE_EQ(p.centreOffsets[4], 35 - 31.5);
    // Five zeros give no line: the row cannot be computed.
    EXPECT_FALSE(front({0, 0, 0, 0, 0}, {}, kNoOmission, 35, kFit, Path::Append).has_value());
}

TEST(FrontParams, RecomputeKeepsALongerOldRun) {
    const DrawParams p = *front({1, 5, 9, 13, 17}, {}, kNoOmission, 35, kFit, Path::Recompute, 3);
    EXPECT_EQ(p.longestRun, 3);
    EXPECT_EQ(p.consecutivePairs, 0);
    EXPECT_EQ(front({1, 5, 9, 13, 17}, {}, kNoOmission, 35, kFit, Path::Append)->longestRun, 0);
}

TEST(BackParams, AppendPath) {
    Omission yl{};
    yl[4] = 130;
    yl[5] = 160;
    const DrawParams p = back({4, 5}, {5, 9}, yl, 12, kFit, Path::Append);
    EXPECT_EQ(p.sum, 9);
    EXPECT_EQ(p.sumLastDigit, 9);
    EXPECT_EQ(p.consecutivePairs, 1);
    EXPECT_EQ(p.numberSpan, 1);
    EXPECT_EQ(p.repeatCount, 1);
    EXPECT_EQ(p.repeatedLastDigits, 0);
    EXPECT_EQ(p.omissionSum, 290);
    // The back spread is a plain difference, not measured from 0 and 100.
    EXPECT_EQ(p.omissionSpread, 30);
    EXPECT_DOUBLE_EQ(p.centreOffsets[0], 4 - 3.0);
    EXPECT_DOUBLE_EQ(p.centreOffsets[1], 5 - 9.0);
    // With 12 numbers the middle is 6: 4 and 5 are small.
    EXPECT_EQ(p.smallCount, 2);
    EXPECT_EQ(p.bigCount, 0);
    EXPECT_EQ(back({2, 12}, {}, yl, 12, kFit, Path::Append).repeatedLastDigits, 1);
}

TEST(BackParams, RecomputeUsesTheFrontSumAndMiddle) {
    const DrawParams p =
        back({13, 14}, {}, kNoOmission, 24, game_rules::positionCentres(28, 24), Path::Recompute, {97, 28});
    EXPECT_EQ(p.sum, 97 + 14);
    EXPECT_EQ(p.sumLastDigit, 7);
    // The middle is Bitnum/2 = 14, and 14 itself counts as big.
    EXPECT_EQ(p.bigCount, 1);
    EXPECT_EQ(p.smallCount, 1);
    const DrawParams app =
        back({13, 14}, {}, kNoOmission, 24, game_rules::positionCentres(28, 24), Path::Append);
    EXPECT_EQ(app.sum, 27);
    EXPECT_EQ(app.bigCount, 2);
}

TEST(QuanPlacement, InterleaveIsNotAMerge) {
    WorkingRow s{};
    // 3 loses to the back 2 and 11 to the back 9: both front numbers are dropped.
    fillWorkingRow({3, 11, 19, 24, 33}, {2, 9}, s);
    EXPECT_EQ(s, (WorkingRow{0, 0, 2, 0, 9, 19, 24, 33}));
    // A back number above all front numbers is not placed; the last slot keeps its old value.
    s[7] = 44;
    fillWorkingRow({1, 2, 3, 4, 5}, {6, 7}, s);
    EXPECT_EQ(s, (WorkingRow{0, 0, 1, 2, 3, 4, 5, 44}));
    WorkingRow fresh{};
    fillWorkingRow({1, 5, 9, 13, 17}, {6, 10}, fresh);
    EXPECT_EQ(fresh, (WorkingRow{0, 0, 1, 5, 6, 0, 10, 17}));
}

TEST(QuanParams, AppendAndRecomputeDiffer) {
    const FrontNumbers x{3, 11, 19, 24, 33};
    const BackNumbers y{3, 11};
    WorkingRow s{};
    fillWorkingRow(x, y, s);  // 0, 3, 0, 11, 19, 24, 33
    Omission quan{}, frontYl{};
    quan[11] = 5;
    frontYl[11] = 9;
    const DrawParams app = both(x, y, s, {}, quan, quan, 35, Path::Append);
    EXPECT_EQ(app.sum, 90);
    EXPECT_EQ(app.numberSpan, 2);
    EXPECT_EQ(app.repeatCount, 0);
    EXPECT_EQ(app.consecutivePairs, 0);
    EXPECT_EQ(app.omissionSum, 5);
    // Slot 0 counts as even, small and in the first decade.
    EXPECT_EQ(app.evenCount, 3);
    EXPECT_EQ(app.decadeCounts[0], 3);
    EXPECT_EQ(app.decadeCounts[2], 2);
    EXPECT_EQ(app.decadeCounts[3], 0);
    // Last digits 0, 3, 0, 1, 9, 4, 3: five different ones.
    EXPECT_EQ(app.repeatedLastDigits, 2);
    const DrawParams again = both(x, y, s, WorkingRow{}, frontYl, quan, 35, Path::Recompute);
    EXPECT_EQ(again.omissionSum, 9);
    // Pairs between the working rows: the two zero slots meet seven zeros each.
    EXPECT_EQ(again.repeatCount, 14);
    EXPECT_EQ(again.decadeCounts[2], 1);
    EXPECT_EQ(again.decadeCounts[3], 1);
}

TEST(QuanParams, CommonNumbersStopAtTheFirstLargerFront) {
    WorkingRow s{};
    fillWorkingRow({3, 11, 19, 24, 33}, {2, 11}, s);
    // 2 meets 3 first and stops; 11 is found.
    EXPECT_EQ(
        both({3, 11, 19, 24, 33}, {2, 11}, s, {}, kNoOmission, kNoOmission, 35, Path::Append).numberSpan, 1);
}

TEST(QuanParams, ComplexityOverSevenSlotsStartsAt15) {
    EXPECT_EQ(complexity(std::array<int, 7>{1, 2, 4, 8, 16, 32, 64}), 15);
    EXPECT_EQ(complexity(std::array<int, 7>{1, 2, 3, 4, 5, 6, 7}), 0);
}

TEST(DamagedNumbers, NumbersOutsideTheArraysHaveNoOmissionAndNeverIndexPastThem) {
    Omission omission{};
    omission.fill(3);
    // Negative, zero and numbers beyond the 36 slots, as a damaged row may hold them.
    const std::array<int, 5> v{-13, 0, 7, 40, 1000};
    const DrawParams p = core(v, std::array<int, 2>{40, -13}, omission, v, {17.5, false, false});
    EXPECT_EQ(p.omissionSum, 3 + 3);  // slots 0 and 7 only
    EXPECT_EQ(p.repeatCount, 2);
    EXPECT_EQ(p.sum, -13 + 0 + 7 + 40 + 1000);
    // Last digits 3, 0, 7, 0, 0: two repeated.
    EXPECT_EQ(p.repeatedLastDigits, 2);
    // Largest 3 (slots 0 and 7), smallest 0 (the numbers without an omission).
    EXPECT_EQ(p.omissionSpread, 3);
    const auto x = front({-13, 0, 7, 40, 1000}, {}, omission, 35, kFit, Path::Recompute);
    ASSERT_TRUE(x.has_value());
    EXPECT_EQ(x->omissionSum, 6);
    const DrawParams b = back({-1, 99}, {}, omission, 12, kFit, Path::Append);
    EXPECT_EQ(b.omissionSum, 0);
    EXPECT_EQ(b.omissionSpread, 0);
}

TEST(DamagedNumbers, ComplexityOfMoreThanSevenNumbers) {
    // Ten numbers: 45 differences, all distinct for powers of two.
    const std::array<int, 10> v{1, 2, 4, 8, 16, 32, 64, 128, 256, 512};
    EXPECT_EQ(complexity(v), 45 - 9);
    const std::array<int, 10> run{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    EXPECT_EQ(complexity(run), 0);
}

// The fit of the analysis window: the origin is the sixth point, so a straight run that does
// not point at the origin is not straight.
TEST(LineFit, InterceptSlopeAndStraightness) {
    const LineFit onLine = lineFit({2, 4, 6, 8, 10});
    EXPECT_NEAR(onLine.A, 0.0, 1e-12);
    EXPECT_DOUBLE_EQ(onLine.B, 2.0);
    ASSERT_TRUE(onLine.R);
    EXPECT_NEAR(*onLine.R, 1.0, 1e-12);

    const LineFit run = lineFit({7, 8, 9, 10, 11});
    ASSERT_TRUE(run.R);
    EXPECT_LT(*run.R, 0.99);
    EXPECT_NEAR(run.A, 300.0 / 105.0, 1e-12);  // the origin pulls the intercept down from 6

    const LineFit stored = lineFit({22, 24, 29, 31, 35});
    EXPECT_DOUBLE_EQ(stored.A, 915.0 / 105.0);
    EXPECT_DOUBLE_EQ(stored.B, 621.0 / 105.0);

    // The row before the first draw: a flat line with no straightness.
    const LineFit none = lineFit({0, 0, 0, 0, 0});
    EXPECT_EQ(none.A, 0.0);
    EXPECT_EQ(none.B, 0.0);
    EXPECT_FALSE(none.R);
}
