#include "tools/fortune.h"

#include <gtest/gtest.h>

namespace {

using fortune::Personality;
constexpr Personality kAll[] = {Personality::Impulsive, Personality::Rational, Personality::Emotional,
                                Personality::Ordinary};

}  // namespace

// On the birthday every phase is 0, each curve stands at its middle (50) and the total at 200
// whatever the weights.
TEST(Fortune, OnTheBirthdayEveryTypeReadsTheMiddle) {
    const QDate birth(1970, 1, 1);
    for (Personality p : kAll) {
        const auto r = fortune::read(birth, birth, p);
        ASSERT_TRUE(r);
        EXPECT_EQ(r->curves.c28[0], 50);
        EXPECT_FLOAT_EQ(r->curves.c23[0], 50);
        EXPECT_FLOAT_EQ(r->curves.c33[0], 50);
        EXPECT_EQ(r->fortune, 200.0);
        EXPECT_EQ(r->popularity, 200000);
        EXPECT_EQ(r->word, QStringLiteral("一般"));
    }
}

TEST(Fortune, WeightsAndTheExtremesOfTheTotal) {
    for (Personality p : kAll) {
        const fortune::Weights w = fortune::weightsOf(p);
        EXPECT_NEAR(w.w23 + w.w28 + w.w33, 4.0, 1e-12);
        EXPECT_FLOAT_EQ(fortune::weightedTotal(p, 100, 100, 100), 400.0f);
        EXPECT_FLOAT_EQ(fortune::weightedTotal(p, 0, 0, 0), 0.0f);
    }
    // The impulsive weigh the 23-day curve twice.
    EXPECT_FLOAT_EQ(fortune::weightedTotal(Personality::Impulsive, 10, 20, 30), 10 + 40 + 30);
    EXPECT_FLOAT_EQ(fortune::weightedTotal(Personality::Rational, 10, 20, 30), 10 + 20 + 60);
    EXPECT_FLOAT_EQ(fortune::weightedTotal(Personality::Emotional, 10, 20, 30), 20 + 20 + 30);
    // Ordinary, all curves at their low point: the fortune is 0.
    const double x = 400.0 - fortune::weightedTotal(Personality::Ordinary, 100, 100, 100);
    EXPECT_EQ(fortune::popularity(x), 0);
    EXPECT_EQ(fortune::verdict(x), QStringLiteral("很低"));
    EXPECT_EQ(fortune::captionOf(Personality::Emotional), QStringLiteral("情绪型"));
    EXPECT_FALSE(fortune::personalityFromNumber(0));
    EXPECT_FALSE(fortune::personalityFromNumber(5));
    EXPECT_EQ(fortune::personalityFromNumber(2), Personality::Rational);
}

TEST(Fortune, VerdictAtEveryBandEdge) {
    const std::pair<double, const char*> cases[] = {
        {0, "很低"},      {79.999, "很低"}, {80, "较低"},  {159.999, "较低"}, {160, "一般"},
        {239.999, "一般"}, {240, "较高"},   {319.999, "较高"}, {320, "很好"},  {399.999, "很好"},
        {400, "千载难逢"},
    };
    for (const auto& [x, word] : cases) EXPECT_EQ(fortune::verdict(x), QString::fromUtf8(word)) << x;
    EXPECT_EQ(fortune::popularity(399.9999), 399999);
    EXPECT_EQ(fortune::popularity(400), 400000);
    EXPECT_EQ(fortune::popularity(123.4567), 123456) << "the integer part, not the rounded value";
}

// The curves follow their periods from the birthday's phases: the 28-day curve is whole and
// reaches 0 a quarter period in and 100 three quarters in; a day far in the future keeps
// every value in range.
TEST(Fortune, CurvesFollowTheirPeriods) {
    const fortune::Curves c = fortune::curves(0, Personality::Ordinary);
    EXPECT_EQ(c.c28[7], 0);
    EXPECT_EQ(c.c28[21], 100);
    EXPECT_EQ(c.c28[28], 50);
    for (int i = 0; i + 23 < fortune::kDays; ++i) EXPECT_FLOAT_EQ(c.c23[i], c.c23[i + 23]);
    EXPECT_LT(c.c33[8], 1.0f);

    const QDate birth(1950, 6, 15);
    const auto far = fortune::read(birth, QDate(9000, 1, 1), Personality::Rational);
    ASSERT_TRUE(far);
    const int64_t d = birth.daysTo(QDate(9000, 1, 1));
    const fortune::Curves same = fortune::curves(d % (23 * 28 * 33), Personality::Rational);
    EXPECT_EQ(far->curves.total, same.total) << "the curves repeat every 23×28×33 days";
    for (int i = 0; i < fortune::kDays; ++i) {
        EXPECT_GE(far->curves.total[i], 0.0f);
        EXPECT_LE(far->curves.total[i], 400.0f);
    }
    EXPECT_FALSE(fortune::read(birth, birth.addDays(-1), Personality::Rational)) << "before the birthday";
}

TEST(Fortune, DatesAsPlayersTypeThem) {
    EXPECT_EQ(fortune::parseDate(QStringLiteral("1970-01-01")), QDate(1970, 1, 1));
    EXPECT_EQ(fortune::parseDate(QStringLiteral(" 2026/3/9 ")), QDate(2026, 3, 9));
    EXPECT_EQ(fortune::parseDate(QStringLiteral("85.12.31")), QDate(1985, 12, 31));
    EXPECT_EQ(fortune::parseDate(QStringLiteral("26-11-24")), QDate(2026, 11, 24));
    for (const char* bad : {"", "today", "2026-02-30", "2026-13-01", "2026-1/2", "20261124", "1970-01-01x"})
        EXPECT_FALSE(fortune::parseDate(QString::fromUtf8(bad)).isValid()) << bad;
}
