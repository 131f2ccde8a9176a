// The range query: spans, the three modes, the box formats, the zone's table, all rows at once,
// and the preset at load.
#include "filter/param/range_query.h"

#include <gtest/gtest.h>

namespace {

using range_query::Mode;

// Twelve draws; Znum 100, 110, .. 210; Onum cycling 2 2 3 3 3 0 ...; fig1 3 .. 14.
DrawHistory twelveDraws() {
    DrawHistory h;
    const int onum[] = {2, 2, 3, 3, 3, 0, 2, 3, 5, 5, 3, 2};
    for (int i = 1; i <= 12; ++i) {
        h.numbers.push_back({2026000 + i, i + 2, 20, 21, 22, 23, 1, i % 12 + 1});
        DrawParams f;
        f.sum = static_cast<int16_t>(90 + 10 * i);
        f.evenCount = static_cast<int16_t>(onum[i - 1]);
        f.longestRun = static_cast<int16_t>(i % 3);
        h.front.push_back(f);
        DrawParams b;
        b.sum = static_cast<int16_t>(i);
        h.back.push_back(b);
        DrawParams q;
        q.sum = static_cast<int16_t>(200 + i);
        h.both.push_back(q);
    }
    return h;
}

const QString& lo(const ParamWindowState& s, ParamId id) { return s.box(id)[0]; }
const QString& hi(const ParamWindowState& s, ParamId id) { return s.box(id)[1]; }

TEST(RangeQuery, SpansCountTheLatestDrawsAndAllWhenTheSpanExceedsTheHistory) {
    const DrawHistory h = twelveDraws();
    const auto items = range_query::spanItems();
    ASSERT_EQ(items.size(), 21u);
    EXPECT_EQ(items.front().text, QStringLiteral("前所有期"));
    EXPECT_EQ(items.front().data, 0);
    EXPECT_EQ(items.back().text, QStringLiteral("前200期"));
    EXPECT_EQ(range_query::start(12, 0), 0);
    EXPECT_EQ(range_query::start(12, 30), -18);

    ParamWindowState s = ParamWindowState::defaults();
    // "前所有期": the whole table; "各位数和" is three wide.
    range_query::onSpanChosen(s, 0, 0, Mode::Plain, QStringLiteral("100"), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::NumberSum), QStringLiteral("100"));
    EXPECT_EQ(hi(s, ParamId::NumberSum), QStringLiteral("210"));
    s = ParamWindowState::defaults();
    range_query::onSpanChosen(s, 0, 30, Mode::Plain, QStringLiteral("100"), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::NumberSum), QStringLiteral("100"))
        << "a span above the history counts every draw";
    range_query::onSpanChosen(s, 0, 10, Mode::Plain, QStringLiteral("100"), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::NumberSum), QStringLiteral("120"));
    // 第1位 is two wide: "03"; 偶数个数 one wide: plain.
    range_query::onSpanChosen(s, 10, 0, Mode::Plain, QString(), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::Position1), QStringLiteral("03"));
    EXPECT_EQ(hi(s, ParamId::Position1), QStringLiteral("14"));
    range_query::onSpanChosen(s, 3, 0, Mode::Plain, QString(), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::EvenCount), QStringLiteral("0"));
    EXPECT_EQ(hi(s, ParamId::EvenCount), QStringLiteral("5"));
}

TEST(RangeQuery, AverageTakesAShareOfTheSpreadAndShareZeroGivesTheAverage) {
    const DrawHistory h = twelveDraws();
    ParamWindowState s = ParamWindowState::defaults();
    // Znum: average 155, spread 110; at 100 the margin is 55.
    range_query::onSpanChosen(s, 0, 0, Mode::Average, QStringLiteral("100"), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::NumberSum), QStringLiteral("100"));
    EXPECT_EQ(hi(s, ParamId::NumberSum), QStringLiteral("210"));
    range_query::onSpanChosen(s, 0, 0, Mode::Average, QStringLiteral("50"), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::NumberSum), QStringLiteral("127"));
    EXPECT_EQ(hi(s, ParamId::NumberSum), QStringLiteral("182"));
    // Onum: average 33 / 12 = 2.75; share 0: both Int(2.75).
    range_query::onSpanChosen(s, 3, 0, Mode::Average, QStringLiteral("0"), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::EvenCount), QStringLiteral("2"));
    EXPECT_EQ(hi(s, ParamId::EvenCount), QStringLiteral("2"));
    // Int rounds down below zero too: Lxnum 0..2, average 1, share 200 gives 1 -/+ 2.
    range_query::onSpanChosen(s, 2, 0, Mode::Average, QStringLiteral("200"), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::ConsecutiveCount), QStringLiteral("-1"));
    EXPECT_EQ(hi(s, ParamId::ConsecutiveCount), QStringLiteral("3"));
}

TEST(RangeQuery, TopListsTheMostFrequentValuesFromMinToMax) {
    const DrawHistory h = twelveDraws();
    ParamWindowState s = ParamWindowState::defaults();
    // Onum counts: 3 x5, 2 x4, 5 x2, 0 x1, 1 and 4 none.
    s.box(ParamId::EvenCount)[2] = QStringLiteral("2");
    range_query::onSpanChosen(s, 3, 0, Mode::Top, QString(), h, ZoneScope::Front);
    EXPECT_EQ(s.box(ParamId::EvenCount)[3], QStringLiteral(" 3 2 "));
    s.box(ParamId::EvenCount)[2] = QStringLiteral("9");
    range_query::onSpanChosen(s, 3, 0, Mode::Top, QString(), h, ZoneScope::Front);
    EXPECT_EQ(s.box(ParamId::EvenCount)[3], QStringLiteral(" 3 2 5 0 1 4 "))
        << "values never drawn come last, by value";
    s.box(ParamId::EvenCount)[2] = QStringLiteral("x");
    range_query::onSpanChosen(s, 3, 0, Mode::Top, QString(), h, ZoneScope::Front);
    EXPECT_EQ(s.box(ParamId::EvenCount)[3], QStringLiteral(" "));
    // Over the last 3 draws only: 5, 3, 2.
    s.box(ParamId::EvenCount)[2] = QStringLiteral("1");
    range_query::onSpanChosen(s, 3, 3, Mode::Top, QString(), h, ZoneScope::Front);
    EXPECT_EQ(s.box(ParamId::EvenCount)[3], QStringLiteral(" 2 ")) << "ties keep the order of the values";
}

TEST(RangeQuery, AllRowsFromOneSpanAndTheZonesTables) {
    const DrawHistory h = twelveDraws();
    ParamWindowState s = ParamWindowState::defaults();
    const auto written =
        range_query::onSpanChosen(s, range_query::kAllRows, 0, Mode::Plain, QString(), h, ZoneScope::Front);
    // fig has the column of every row.
    EXPECT_EQ(written.size(), 26u);
    EXPECT_EQ(hi(s, ParamId::NumberSum), QStringLiteral("210"));
    EXPECT_EQ(lo(s, ParamId::Position3), QStringLiteral("21"));
    EXPECT_EQ(s.box(ParamId::CustomRange), ParamWindowState::defaults().box(ParamId::CustomRange))
        << "自定区间 has no row";

    // fighou lacks most columns: their statements fail and the boxes keep their text.
    ParamWindowState b = ParamWindowState::defaults();
    const auto back =
        range_query::onSpanChosen(b, range_query::kAllRows, 0, Mode::Plain, QString(), h, ZoneScope::Back);
    EXPECT_LT(back.size(), 26u);
    EXPECT_EQ(lo(b, ParamId::NumberSum), QStringLiteral("001"));
    EXPECT_EQ(lo(b, ParamId::Position1), QStringLiteral("01")) << "fighou's fig1 is the first back number";
    EXPECT_EQ(hi(b, ParamId::Position2), QStringLiteral("12"));
    EXPECT_EQ(b.box(ParamId::ConsecutiveCount), ParamWindowState::defaults().box(ParamId::ConsecutiveCount))
        << "no Lxnum in fighou";
    EXPECT_EQ(b.box(ParamId::Position3), ParamWindowState::defaults().box(ParamId::Position3))
        << "no fig3 in fighou";
    EXPECT_EQ(range_query::tableFor(ZoneScope::Both), QStringLiteral("figquan"));
    ParamWindowState q = ParamWindowState::defaults();
    range_query::onSpanChosen(q, 0, 0, Mode::Plain, QString(), h, ZoneScope::Both);
    EXPECT_EQ(lo(q, ParamId::NumberSum), QStringLiteral("201"));
}

TEST(RangeQuery, PresetAtLoadAndAnEmptyHistory) {
    const DrawHistory h = twelveDraws();
    ParamWindowState s = ParamWindowState::defaults();
    s.box(ParamId::EvenCount)[2] = QStringLiteral("1");
    range_query::presetAll(s, false, QStringLiteral("100"), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::NumberSum), QStringLiteral("100"));
    EXPECT_EQ(s.box(ParamId::EvenCount)[3], QString()) << "the preset never lists";
    range_query::presetAll(s, true, QStringLiteral("0"), h, ZoneScope::Front);
    EXPECT_EQ(lo(s, ParamId::NumberSum), QStringLiteral("155"));
    EXPECT_EQ(hi(s, ParamId::NumberSum), QStringLiteral("155"));

    const DrawHistory empty;
    ParamWindowState e = ParamWindowState::defaults();
    EXPECT_TRUE(range_query::presetAll(e, true, QStringLiteral("100"), empty, ZoneScope::Front).empty());
    EXPECT_EQ(e.boxes, ParamWindowState::defaults().boxes);
    range_query::onSpanChosen(e, 3, 0, Mode::Top, QString(), empty, ZoneScope::Front);
    EXPECT_EQ(e.box(ParamId::EvenCount)[3], QStringLiteral(" "))
        << "Paramtop empties its box before it reads";
}

}  // namespace
