// The edge cases of the parameter filters that the statements make easy to get wrong.
#include "filter/candidate_actions.h"
#include "filter/param/param_filter.h"

#include "support/qt_printers.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <random>

namespace {

using Ticket = std::array<int, 7>;

CandidateTable tableOf(std::initializer_list<Ticket> tickets) {
    CandidateTable t(schema::CandidateKind::Combinations, tickets.size());
    uint64_t r = 0;
    for (const Ticket& k : tickets) {
        for (int c = 0; c < 7; ++c)
            t.numberColumn(c + 1)[r] = static_cast<uint8_t>(k[static_cast<size_t>(c)]);
        ++r;
    }
    return t;
}

// Every ticket of 1..12 front / 1..4 back: enough variety for the sums.
CandidateTable smallExpansion() {
    std::vector<Ticket> all;
    for (int a = 1; a <= 8; ++a)
        for (int b = a + 1; b <= 9; ++b)
            for (int c = b + 1; c <= 10; ++c)
                for (int d = c + 1; d <= 11; ++d)
                    for (int e = d + 1; e <= 12; ++e)
                        for (int f = 1; f <= 3; ++f)
                            for (int g = f + 1; g <= 4; ++g) all.push_back({a, b, c, d, e, f, g});
    CandidateTable t(schema::CandidateKind::Combinations, all.size());
    for (uint64_t r = 0; r < all.size(); ++r)
        for (int c = 0; c < 7; ++c)
            t.numberColumn(c + 1)[r] = static_cast<uint8_t>(all[r][static_cast<size_t>(c)]);
    return t;
}

std::vector<int> canshuOf(const CandidateTable& t) {
    std::vector<int> v;
    for (uint64_t r = 0; r < t.rowCount(); ++r) v.push_back(t.paramValueAt(r));
    return v;
}

ParamWindowState ticked(ZoneScope scope, std::initializer_list<int> boxes) {
    ParamWindowState s = ParamWindowState::defaults();
    s.scope = scope;
    s.numberTicks.fill(false);
    for (int b : boxes) s.numberTicks[static_cast<size_t>(b - 1)] = true;
    return s;
}

void compute(CandidateTable& t, ParamId id, const ParamWindowState& s, const ParamContext& ctx = {}) {
    param_kernels::computeAll(param_kernels::compile(id, s.computeInputs(), ctx), t);
}

TEST(ParamKernels, CatalogueEdgeValues) {
    // 偶数个数 with only ChkBt(1): 0 or 1, never more.
    CandidateTable t = smallExpansion();
    compute(t, ParamId::EvenCount, ticked(ZoneScope::Front, {1}));
    for (int v : canshuOf(t)) EXPECT_TRUE(v == 0 || v == 1) << v;

    // 同尾个数: five tails 0; two numbers sharing a tail 1; unticked positions count against
    // the full zone's constant.
    CandidateTable tails = tableOf({{1, 2, 3, 4, 5, 1, 2}, {1, 11, 13, 24, 35, 1, 11}, {3, 13, 23, 33, 5, 2, 12}});
    compute(tails, ParamId::SameLastDigitCount, ticked(ZoneScope::Front, {1, 2, 3, 4, 5}));
    EXPECT_EQ(canshuOf(tails), (std::vector<int>{0, 1, 3}));
    compute(tails, ParamId::SameLastDigitCount, ticked(ZoneScope::Front, {1, 2}));
    EXPECT_EQ(canshuOf(tails), (std::vector<int>{3, 4, 4}));
    compute(tails, ParamId::SameLastDigitCount, ticked(ZoneScope::Back, {1, 2}));
    EXPECT_EQ(canshuOf(tails), (std::vector<int>{0, 1, 1}));

    // 首尾差值 with one box: first and last are the same position.
    compute(tails, ParamId::LastMinusFirst, ticked(ZoneScope::Front, {3}));
    EXPECT_EQ(canshuOf(tails), (std::vector<int>{0, 0, 0}));
    // ...in the back tab the fixed front statement fig2 - fig1, whatever is ticked.
    compute(tails, ParamId::LastMinusFirst, ticked(ZoneScope::Back, {}));
    EXPECT_EQ(canshuOf(tails), (std::vector<int>{1, 10, 10}));
    // ...and in both zones the count of back numbers equal to a front number.
    compute(tails, ParamId::LastMinusFirst, ticked(ZoneScope::Both, {}));
    EXPECT_EQ(canshuOf(tails), (std::vector<int>{2, 2, 0}));

    // 自定区间 0..9 counts the numbers 1 to 9: the lower limit is excluded.
    CandidateTable low = tableOf({{1, 5, 9, 10, 20, 1, 2}, {2, 3, 4, 6, 7, 8, 9}});
    ParamWindowState zd = ticked(ZoneScope::Front, {1, 2, 3, 4, 5});
    zd.box(ParamId::CustomRange)[3] = QStringLiteral("0");
    zd.box(ParamId::CustomRange)[2] = QStringLiteral("9");
    compute(low, ParamId::CustomRange, zd);
    EXPECT_EQ(canshuOf(low), (std::vector<int>{3, 5}));
    zd.scope = ZoneScope::Both;
    zd.numberTicks.fill(true);
    compute(low, ParamId::CustomRange, zd);
    EXPECT_EQ(canshuOf(low), (std::vector<int>{5, 7}));
}

TEST(ParamKernels, RepeatsOfTheLastDrawCountFig6TwiceInBothZones) {
    ParamContext ctx;
    for (int n : {1, 7, 12, 20, 33}) ctx.lastDrawFront[static_cast<size_t>(n)] = true;
    CandidateTable t = tableOf({{1, 2, 3, 4, 5, 7, 12}, {2, 3, 4, 5, 6, 3, 7}, {1, 7, 12, 20, 33, 2, 12}});
    compute(t, ParamId::RepeatsOfPrevious, ticked(ZoneScope::Front, {1, 2, 3, 4, 5}), ctx);
    EXPECT_EQ(canshuOf(t), (std::vector<int>{1, 0, 5}));
    // Back tab: the back numbers are looked up among the front numbers of the draw.
    compute(t, ParamId::RepeatsOfPrevious, ticked(ZoneScope::Back, {1, 2}), ctx);
    EXPECT_EQ(canshuOf(t), (std::vector<int>{2, 1, 1}));
    // Both zones: fig6 counts twice, fig7 not at all, and ChkBt(7) changes nothing.
    compute(t, ParamId::RepeatsOfPrevious, ticked(ZoneScope::Both, {1, 2, 3, 4, 5, 6}), ctx);
    EXPECT_EQ(canshuOf(t), (std::vector<int>{3, 0, 5}));
    compute(t, ParamId::RepeatsOfPrevious, ticked(ZoneScope::Both, {1, 2, 3, 4, 5, 7}), ctx);
    EXPECT_EQ(canshuOf(t), (std::vector<int>{1, 0, 5}));
}

TEST(ParamKernels, LargestGapNeedsThreePositionsAndAcHoldsTen) {
    CandidateTable t = tableOf({{1, 2, 10, 11, 30, 1, 2}, {5, 6, 7, 8, 9, 1, 2}});
    t.paramValues()[0] = 77;
    t.paramValues()[1] = -4;
    // Two ticked positions: the statement is refused and canshu keeps its value.
    compute(t, ParamId::LargestGap, ticked(ZoneScope::Front, {1, 3}));
    EXPECT_EQ(canshuOf(t), (std::vector<int>{77, -4}));
    compute(t, ParamId::LargestGap, ticked(ZoneScope::Front, {1, 2, 3, 4, 5}));
    EXPECT_EQ(canshuOf(t), (std::vector<int>{19, 1}));
    // The handler ignores the tab.
    compute(t, ParamId::LargestGap, ticked(ZoneScope::Back, {1, 2, 3}));
    EXPECT_EQ(canshuOf(t), (std::vector<int>{8, 1}));

    // AC: distinct differences less n - 1 for five numbers; with seven the array keeps only
    // the first ten differences.
    const int five[] = {1, 2, 10, 11, 30};
    EXPECT_EQ(param_kernels::acValue(five, 5), 4);
    const int row[] = {5, 6, 7, 8, 9};
    EXPECT_EQ(param_kernels::acValue(row, 5), 0);
    const int seven[] = {1, 2, 10, 11, 30, 1, 2};
    // Of the first ten differences 1 and 9 repeat; the start is 21 pairs - 7 + 1.
    EXPECT_EQ(param_kernels::acValue(seven, 7), 21 - 7 + 1 - 2);
    compute(t, ParamId::AcComplexity, ticked(ZoneScope::Both, {1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(t.paramValueAt(0), param_kernels::acValue(seven, 7));
    compute(t, ParamId::AcComplexity, ticked(ZoneScope::Front, {1, 2, 3, 4, 5}));
    EXPECT_EQ(canshuOf(t), (std::vector<int>{4, 0}));
}

TEST(ParamSingle, AcValueOfAnyRowsMatchesTheLoop) {
    // Rows in any order, with repeated numbers, over several blocks; one block holds numbers
    // of 128 and above, where differences taken on bytes would meet.
    constexpr uint64_t kRows = 3 * 4096 + 17;
    CandidateTable t(schema::CandidateKind::Combinations, kRows);
    std::mt19937 rng(24);
    std::uniform_int_distribution<int> small(1, 35), any(0, 255);
    for (uint64_t r = 0; r < kRows; ++r)
        for (int c = 1; c <= 7; ++c)
            t.numberColumn(c)[r] = static_cast<uint8_t>(r / 4096 == 1 && r % 7 == 0 ? any(rng) : small(rng));
    const std::vector<std::pair<ZoneScope, std::vector<int>>> choices = {
        {ZoneScope::Front, {1, 2}},
        {ZoneScope::Front, {1, 3, 5}},
        {ZoneScope::Front, {2, 3, 4, 5}},
        {ZoneScope::Front, {1, 2, 3, 4, 5}},
        {ZoneScope::Both, {1, 2, 3, 4, 5, 6, 7}}};
    for (const auto& [scope, boxes] : choices) {
        ParamWindowState s = ticked(scope, {});
        for (int b : boxes) s.numberTicks[static_cast<size_t>(b - 1)] = true;
        compute(t, ParamId::AcComplexity, s);
        const int n = static_cast<int>(boxes.size());
        for (uint64_t r = 0; r < kRows; ++r) {
            std::array<int, 7> v{};
            for (int k = 0; k < n; ++k)
                v[static_cast<size_t>(k)] = t.numberColumn(boxes[static_cast<size_t>(k)])[r];
            ASSERT_EQ(t.paramValueAt(r), param_kernels::acValue(v.data(), n)) << "row " << r << ", " << n;
        }
    }
}

TEST(ParamSingle, OmissionSpreadOfAnyRowsMatchesTheStatement) {
    // Omissions of the front and back numbers all different: the front tab has fewer than 64
    // values, both zones together more. Numbers past the zone have omission 0.
    constexpr uint64_t kRows = 2 * 4096 + 5;
    CandidateTable t(schema::CandidateKind::Combinations, kRows);
    std::mt19937 rng(12);
    std::uniform_int_distribution<int> number(0, 40);
    for (uint64_t r = 0; r < kRows; ++r)
        for (int c = 1; c <= 7; ++c) t.numberColumn(c)[r] = static_cast<uint8_t>(number(rng));
    ParamContext ctx;
    for (int n = 1; n < kNumberSlots; ++n) {
        ctx.omissionFront[static_cast<size_t>(n)] = static_cast<int16_t>(3 * n + 1);
        ctx.omissionBack[static_cast<size_t>(n)] = static_cast<int16_t>(3 * n + 2);
    }
    const auto omission = [&](int f, int c) {
        if (f >= kNumberSlots) return 0;
        return int{c <= 5 ? ctx.omissionFront[static_cast<size_t>(f)]
                          : ctx.omissionBack[static_cast<size_t>(f)]};
    };
    for (const auto& [scope, boxes] :
         std::vector<std::pair<ZoneScope, std::vector<int>>>{{ZoneScope::Front, {1, 2, 3, 4, 5}},
                                                             {ZoneScope::Front, {2, 4}},
                                                             {ZoneScope::Both, {1, 2, 3, 4, 5, 6, 7}}}) {
        ParamWindowState s = ticked(scope, {});
        for (int b : boxes) s.numberTicks[static_cast<size_t>(b - 1)] = true;
        compute(t, ParamId::OmissionSpread, s, ctx);
        for (uint64_t r = 0; r < kRows; ++r) {
            int greatest = 0, least = 99;
            for (int c : boxes) {
                greatest = std::max(greatest, omission(t.numberColumn(c)[r], c));
                least = std::min(least, omission(t.numberColumn(c)[r], c));
            }
            ASSERT_EQ(t.paramValueAt(r), greatest - least) << "row " << r << ", " << boxes.size();
        }
    }
}

TEST(ParamSingle, KeepAndExcludeAreComplementsAndListsMatchWholeValues) {
    ParamWindowState s = ticked(ZoneScope::Front, {1, 2, 3, 4, 5});
    auto& box = s.box(ParamId::EvenCount);

    // Keep 0..9 leaves every row; exclude 0..9 kills them all.
    box = {QStringLiteral("0"), QStringLiteral("9"), {}, {}};
    CandidateTable all = smallExpansion();
    param_filter::runSingle(all, ParamId::EvenCount, s, {});
    EXPECT_EQ(all.liveCount(), all.rowCount());
    s.keep = false;
    param_filter::runSingle(all, ParamId::EvenCount, s, {});
    EXPECT_EQ(all.liveCount(), 0u);

    // Same limits: the rows kept and the rows excluded split the live rows exactly.
    box = {QStringLiteral("2"), QStringLiteral("3"), {}, {}};
    CandidateTable keep = smallExpansion(), exclude = smallExpansion();
    keep.filteredOut().set(7);
    exclude.filteredOut().set(7);
    s.keep = true;
    param_filter::runSingle(keep, ParamId::EvenCount, s, {});
    s.keep = false;
    param_filter::runSingle(exclude, ParamId::EvenCount, s, {});
    for (uint64_t r = 0; r < keep.rowCount(); ++r) {
        if (r == 7) continue;
        EXPECT_NE(keep.filteredOut().test(r), exclude.filteredOut().test(r)) << r;
    }
    EXPECT_TRUE(keep.filteredOut().test(7) && exclude.filteredOut().test(7));
    const uint64_t dead = [&] {
        for (uint64_t r = 0; r < keep.rowCount(); ++r)
            if (keep.filteredOut().test(r) && r != 7) return r;
        return uint64_t{0};
    }();
    EXPECT_EQ(keep.reasonText(dead), QStringLiteral("偶数个数大小:%1 保留2~3").arg(keep.paramValueAt(dead)));

    // List mode: an empty list kills every live row in keep, none in exclude; 3 does not
    // match 13, and "03" is not 3.
    s.listMode = true;
    box[3] = QString();
    CandidateTable empty = smallExpansion();
    s.keep = false;
    param_filter::runSingle(empty, ParamId::EvenCount, s, {});
    EXPECT_EQ(empty.liveCount(), empty.rowCount());
    s.keep = true;
    param_filter::runSingle(empty, ParamId::EvenCount, s, {});
    EXPECT_EQ(empty.liveCount(), 0u);

    CandidateTable sums = tableOf({{1, 2, 3, 4, 3, 1, 2}, {1, 2, 3, 4, 5, 1, 2}, {1, 2, 3, 4, 30, 1, 2}});
    s.box(ParamId::NumberSum)[3] = QStringLiteral("13 03 40");
    param_filter::runSingle(sums, ParamId::NumberSum, s, {});
    EXPECT_EQ(canshuOf(sums), (std::vector<int>{13, 15, 40}));
    EXPECT_FALSE(sums.filteredOut().test(0));
    EXPECT_TRUE(sums.filteredOut().test(1));
    EXPECT_EQ(sums.reasonText(1), QStringLiteral("各位数和大小:15 保留13 03 40"));
    // The positions test the list without blanks around the value: 3 matches "13".
    CandidateTable pos = tableOf({{3, 5, 8, 9, 10, 1, 2}, {4, 5, 8, 9, 10, 1, 2}});
    s.box(ParamId::Position1)[3] = QStringLiteral("13");
    param_filter::runSingle(pos, ParamId::Position1, s, {});
    EXPECT_FALSE(pos.filteredOut().test(0));
    EXPECT_TRUE(pos.filteredOut().test(1));
    EXPECT_EQ(pos.reasonText(1), QStringLiteral("第1位大小:4 保留13"));
}

TEST(ParamSingle, ParityBoxesAndTheLeadingNumberRule) {
    CandidateTable t = tableOf({{3, 5, 8, 9, 10, 1, 2}, {4, 5, 8, 9, 10, 1, 2}, {20, 21, 22, 23, 24, 1, 2}});
    ParamWindowState s = ParamWindowState::defaults();
    s.box(ParamId::Position1) = {QStringLiteral("2.5x"), QStringLiteral("12abc"), {}, {}};
    s.parityTicks[4] = true;  // 第1位 "奇" only: the even numbers die by parity first
    param_filter::runSingle(t, ParamId::Position1, s, {});
    EXPECT_FALSE(t.filteredOut().test(0));
    EXPECT_EQ(t.reasonText(1), QStringLiteral("1位奇偶性"));
    EXPECT_EQ(t.reasonText(2), QStringLiteral("1位奇偶性"));
    // The parity step leaves fig mod 2 in canshu.
    EXPECT_EQ(canshuOf(t), (std::vector<int>{1, 0, 0}));

    // Both zones: 第2位 works on fig7 with position 2's boxes, and says "7位奇偶性".
    CandidateTable b = tableOf({{1, 2, 3, 4, 5, 1, 2}, {1, 2, 3, 4, 5, 2, 3}});
    ParamWindowState both = ParamWindowState::defaults();
    both.scope = ZoneScope::Both;
    both.parityTicks[6] = true;
    param_filter::runSingle(b, ParamId::Position2, both, {});
    EXPECT_EQ(b.reasonText(0), QStringLiteral("7位奇偶性"));
    EXPECT_FALSE(b.filteredOut().test(1));
    // 第1位 in both zones only takes its colour.
    const param_filter::SingleResult r = param_filter::runSingle(b, ParamId::Position1, both, {});
    EXPECT_FALSE(r.ran);

    // Empty text, text and the fraction: limits 0, 0 and 2.5 in the reason.
    CandidateTable c = tableOf({{1, 2, 3, 4, 5, 1, 2}});
    ParamWindowState k = ParamWindowState::defaults();
    k.box(ParamId::EvenCount) = {QStringLiteral("abc"), QString(), {}, {}};
    param_filter::runSingle(c, ParamId::EvenCount, k, {});
    EXPECT_EQ(c.reasonText(0), QStringLiteral("偶数个数大小:2 保留0~0"));
    EXPECT_DOUBLE_EQ(param_catalogue::leadingNumber(QStringLiteral(" 12.5.3")), 12.5);
    EXPECT_EQ(param_catalogue::formatNumber(2.5), QStringLiteral("2.5"));
    EXPECT_EQ(param_catalogue::formatNumber(7.0), QStringLiteral("7"));
}

TEST(ParamSingle, DeadRowsKeepTheirFirstReasonAndResetLastUndoesOnlyTheSecondFilter) {
    CandidateTable t = smallExpansion();
    ParamWindowState s = ParamWindowState::defaults();
    s.box(ParamId::EvenCount) = {QStringLiteral("2"), QStringLiteral("3"), {}, {}};
    param_filter::runSingle(t, ParamId::EvenCount, s, {});
    const BitVector afterFirst = t.filteredOut();
    std::vector<QString> firstReasons;
    for (uint64_t r = 0; r < t.rowCount(); ++r) firstReasons.push_back(t.reasonText(r));

    s.box(ParamId::NumberSum) = {QStringLiteral("20"), QStringLiteral("40"), {}, {}};
    param_filter::runSingle(t, ParamId::NumberSum, s, {});
    EXPECT_EQ(t.previousFilteredOut(), afterFirst);
    uint64_t secondKilled = 0;
    for (uint64_t r = 0; r < t.rowCount(); ++r) {
        if (afterFirst.test(r)) {
            EXPECT_EQ(t.reasonText(r), firstReasons[r]) << r;
        } else if (t.filteredOut().test(r)) {
            ++secondKilled;
        }
    }
    EXPECT_GT(secondKilled, 0u);
    candidate_actions::resetLast(t);
    EXPECT_EQ(t.filteredOut(), afterFirst);
}

TEST(ParamIntegrated, SensesToleranceAndPairing) {
    ParamWindowState s = ParamWindowState::defaults();
    s.box(ParamId::EvenCount) = {QStringLiteral("2"), QStringLiteral("3"), {}, {}};
    s.box(ParamId::NumberSum) = {QStringLiteral("20"), QStringLiteral("40"), {}, {}};
    s.integratedBox[0] = s.integratedBox[3] = true;

    // 保留 + 逻辑和 without tolerance: the same rows as the two filters one after the other.
    CandidateTable one = smallExpansion(), seq = smallExpansion();
    one.filteredOut().set(3);
    seq.filteredOut().set(3);
    param_filter::runIntegrated(one, s, {});
    param_filter::runSingle(seq, ParamId::NumberSum, s, {});
    param_filter::runSingle(seq, ParamId::EvenCount, s, {});
    EXPECT_EQ(one.filteredOut(), seq.filteredOut());

    // With a tolerance of 1 a row must miss both ranges to die.
    CandidateTable tol = smallExpansion();
    s.useTolerance = true;
    s.txtRc0 = QStringLiteral("1");
    param_filter::runIntegrated(tol, s, {});
    for (uint64_t r = 0; r < tol.rowCount(); ++r)
        EXPECT_EQ(tol.filteredOut().test(r), tol.failCountAt(r) == 2) << r;
    s.useTolerance = false;

    // 保留 + 逻辑或: the flip over Gpslt brings back rows dead before, and a live row may keep
    // the reasons of the tally.
    CandidateTable flip = smallExpansion();
    flip.filteredOut().set(0);
    s.logicAnd = false;
    const param_filter::IntegratedResult res = param_filter::runIntegrated(flip, s, {});
    EXPECT_FALSE(res.keepSense);
    EXPECT_TRUE(res.flipped);
    for (uint64_t r = 0; r < flip.rowCount(); ++r)
        EXPECT_EQ(flip.filteredOut().test(r), flip.failCountAt(r) == 0) << r;
    // Row 0 (1 2 3 4 5: sum 15, two even) falls in the even range only.
    EXPECT_EQ(flip.failCountAt(0), 1);
    EXPECT_FALSE(flip.filteredOut().test(0));
    EXPECT_EQ(flip.reasonText(0), QStringLiteral("偶数个数大小:2 排除2~3"));

    // 排除 + 逻辑和: baoliuMode true again (out-of-range tally), then the flip.
    s.keep = false;
    s.logicAnd = true;
    CandidateTable ex = smallExpansion();
    const param_filter::IntegratedResult exr = param_filter::runIntegrated(ex, s, {});
    EXPECT_TRUE(exr.keepSense);
    for (uint64_t r = 0; r < ex.rowCount(); ++r)
        EXPECT_EQ(ex.filteredOut().test(r), ex.failCountAt(r) == 0) << r;

    // Box 19 alone runs nothing: Errnum stays 0 and nothing dies; box 15 runs 首尾差值 and
    // 小数之和.
    ParamWindowState only = ParamWindowState::defaults();
    only.integratedBox[19] = true;
    CandidateTable none = smallExpansion();
    none.failCount()[5] = 3;
    EXPECT_EQ(param_filter::runIntegrated(none, only, {}).steps, 0);
    EXPECT_EQ(none.liveCount(), none.rowCount());
    EXPECT_EQ(none.failCountAt(5), 0);
    only.integratedBox[19] = false;
    only.integratedBox[15] = true;
    only.box(ParamId::LastMinusFirst) = {QStringLiteral("0"), QStringLiteral("0"), {}, {}};
    only.box(ParamId::SmallSum) = {QStringLiteral("0"), QStringLiteral("0"), {}, {}};
    CandidateTable two = smallExpansion();
    EXPECT_EQ(param_filter::runIntegrated(two, only, {}).steps, 2);
    EXPECT_EQ(two.failCountAt(0), 2);
    EXPECT_EQ(two.reasonText(0), QStringLiteral("首尾差值大小:4 保留0~0小数之和大小:15 保留0~0"));
}

TEST(ParamIntegrated, AllowedCountRoundsHalfToEvenAndTheBoxesFollowEachOther) {
    EXPECT_EQ(param_filter::allowedCount(QStringLiteral("2.5")), 2);
    EXPECT_EQ(param_filter::allowedCount(QStringLiteral("3.5")), 4);
    EXPECT_EQ(param_filter::allowedCount(QStringLiteral("")), 0);

    ParamWindowState s = ParamWindowState::defaults();
    param_filter::Tolerance tol;
    for (int i = 0; i < 15; ++i) s.integratedBox[static_cast<size_t>(i)] = true;
    // 15 boxes at 10%: 1.5 rounds half up to 2.
    EXPECT_EQ(tol.onIntegratedBoxClick(s), QStringLiteral("2"));
    EXPECT_EQ(tol.keptCount, 15);
    // Fewer boxes: 0.4 + 0.5 gives 0, and the count keeps its text.
    ParamWindowState few = ParamWindowState::defaults();
    few.integratedBox[0] = few.integratedBox[1] = few.integratedBox[2] = few.integratedBox[3] = true;
    few.txtRc0 = QStringLiteral("3");
    param_filter::Tolerance t4;
    EXPECT_EQ(t4.onIntegratedBoxClick(few), QStringLiteral("3"));
    // The count edited: percent = int(count / kept * 100); the percent edited: count truncated.
    s.txtRc0 = QStringLiteral("4");
    EXPECT_EQ(tol.onCountEdited(s), QStringLiteral("26"));
    s.txtRc1 = QStringLiteral("29");
    EXPECT_EQ(tol.onPercentEdited(s), QStringLiteral("4"));
    param_filter::Tolerance unset;
    EXPECT_EQ(unset.onCountEdited(s), s.txtRc1);
}

}  // namespace

namespace {

TEST(ParamCatalogue, BoxesNamesAndTabs) {
    // Defaults: lower limits "0"; upper and count by parameter; 自定区间 0..9 both ways.
    EXPECT_EQ(param_catalogue::boxDefaults(ParamId::NumberSum),
              (std::array<QString, 4>{QStringLiteral("0"), QStringLiteral("999"), QStringLiteral("18"),
                                      QString()}));
    EXPECT_EQ(param_catalogue::boxDefaults(ParamId::Position1)[1], QStringLiteral("99"));
    EXPECT_EQ(param_catalogue::boxDefaults(ParamId::LastMinusFirst)[2], QStringLiteral("5"));
    EXPECT_EQ(param_catalogue::boxDefaults(ParamId::CustomRange),
              (std::array<QString, 4>{QStringLiteral("0"), QStringLiteral("9"), QStringLiteral("9"),
                                      QStringLiteral("0")}));
    // The key filter of the boxes lets digits, "." and a blank through; Text1 digits only.
    for (QChar c : QStringLiteral("0123456789. ")) EXPECT_TRUE(param_catalogue::boxAcceptsKey(c)) << int{c.unicode()};
    for (QChar c : QStringLiteral("a-,+")) EXPECT_FALSE(param_catalogue::boxAcceptsKey(c)) << int{c.unicode()};
    EXPECT_FALSE(param_catalogue::pageBoxAcceptsKey(QLatin1Char('.')));
    EXPECT_FALSE(param_catalogue::pageBoxAcceptsKey(QLatin1Char(' ')));

    // Names: the draw columns, the buttons, and 自定区间 by its settings name.
    EXPECT_EQ(param_catalogue::byDrawColumn(QStringLiteral("onum")), ParamId::EvenCount);
    EXPECT_EQ(param_catalogue::byDrawColumn(QStringLiteral("fig3")), ParamId::Position3);
    EXPECT_EQ(param_catalogue::byDrawColumn(QStringLiteral("Zdqj")), ParamId::CustomRange);
    EXPECT_EQ(param_catalogue::byButton(QStringLiteral("Option41")), ParamId::SameLastDigitCount);
    EXPECT_FALSE(param_catalogue::byDrawColumn(QStringLiteral("nothing")).has_value());

    // The captions that follow the tab and the list mode.
    EXPECT_EQ(param_catalogue::caption(ParamId::LastMinusFirst, ZoneScope::Both, false),
              QStringLiteral("前后区同号"));
    EXPECT_EQ(param_catalogue::integratedBoxCaption(15, ZoneScope::Both), QStringLiteral("前后区同号"));
    EXPECT_EQ(param_catalogue::integratedBoxCaption(17, ZoneScope::Front), QStringLiteral("复杂度AC值"));
    EXPECT_EQ(param_catalogue::caption(ParamId::CustomRange, ZoneScope::Front, true),
              QStringLiteral("指定号码"));
    EXPECT_EQ(param_catalogue::exportTitle(ParamId::AcComplexity, false), QStringLiteral("数字复杂度"));
    // The back tab disables the front-only parameters; both zones hide the positions and 最大差值.
    EXPECT_FALSE(param_catalogue::enabledIn(ParamId::Range1To10, ZoneScope::Back));
    EXPECT_TRUE(param_catalogue::enabledIn(ParamId::Position2, ZoneScope::Back));
    EXPECT_FALSE(param_catalogue::enabledIn(ParamId::Position3, ZoneScope::Back));
    EXPECT_FALSE(param_catalogue::enabledIn(ParamId::LargestGap, ZoneScope::Both));
    EXPECT_TRUE(param_catalogue::enabledIn(ParamId::AcComplexity, ZoneScope::Both));
    // The run visits 27 buttons; the export leaves out the five positions.
    EXPECT_EQ(param_catalogue::integratedOrder().size(), 27u);
    EXPECT_EQ(param_catalogue::exportOrder().size(), 22u);
    EXPECT_EQ(param_catalogue::integratedOrder()[24].param, ParamId::SmallSum);
    EXPECT_EQ(param_catalogue::integratedOrder()[24].box, 15);
    // 小数之和 and 大数之和 have their own entries 19 and 20, but boxes 15 and 16 run them.
    EXPECT_EQ(param_catalogue::info(ParamId::SmallSum).integratedBox, 19);
    EXPECT_EQ(param_catalogue::runBox(ParamId::SmallSum), 15);
    EXPECT_EQ(param_catalogue::runBox(ParamId::BigSum), 16);
    EXPECT_EQ(param_catalogue::runBox(ParamId::CustomRange), 21);
}

}  // namespace
