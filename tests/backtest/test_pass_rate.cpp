// Pass rates against plain counts over the draw tables of the workspace's history database, and
// the integrated filter's rate against what its parameters' columns say.
#include "backtest_fixture.h"

#include "filter/backtest/backtest_runner.h"
#include "filter/backtest/pass_rate.h"
#include "filter/param/range_query.h"
#include "workspace/sqlite_db.h"

#include <gtest/gtest.h>

#include <random>

namespace {

struct Case {
    ZoneScope scope;
    const char* table;
    const char* column;
    int lo, hi;  // the values drawn for a range lie in lo..hi
};

constexpr Case kCases[] = {
    {ZoneScope::Front, "fig", "Znum", 15, 170},    {ZoneScope::Front, "fig", "Onum", 0, 5},
    {ZoneScope::Front, "fig", "Zynum", 0, 120},    {ZoneScope::Front, "fig", "fig3", 3, 33},
    {ZoneScope::Back, "fighou", "Znum", 3, 23},    {ZoneScope::Back, "fighou", "fig2", 2, 12},
    {ZoneScope::Both, "figquan", "Mornum", 0, 7},  {ZoneScope::Both, "figquan", "Fcodp", 0, 12},
};

// SELECT COUNT(*) of the last `span` rows (all for 0) with the column in lo..hi, and of all of them.
std::pair<int, int> sqlCount(SqliteDb& db, const Case& c, int span, double lo, double hi) {
    const QString table = QString::fromLatin1(c.table);
    const int rows = db.rows(QStringLiteral("SELECT COUNT(*) FROM [%1]").arg(table)).value(0).value(0).toInt();
    const int start = span == 0 ? 0 : rows - span;
    const QString where = QStringLiteral(" FROM [%1] WHERE [Idx] > ?1").arg(table);
    const int all = db.rows(QStringLiteral("SELECT COUNT(*)") + where, {start}).value(0).value(0).toInt();
    const int in = db.rows(QStringLiteral("SELECT COUNT(*)") + where +
                               QStringLiteral(" AND [%1] >= ?2 AND [%1] <= ?3").arg(QString::fromLatin1(c.column)),
                           {start, lo, hi})
                       .value(0)
                       .value(0)
                       .toInt();
    return {in, all};
}

}  // namespace

TEST(PassRate, RangesEqualAPlainCountOverTheDrawTables) {
    BundledWorkspace& w = BundledWorkspace::shared();
    ASSERT_NE(w.session, nullptr);
    const DrawHistory& h = w.session->history();
    ASSERT_GT(h.drawCount(), 2000);
    std::mt19937 rng(7);
    const int spans[] = {0, 1, 10, 30, 100, 200, 5000};
    for (const Case& c : kCases) {
        for (int trial = 0; trial < 6; ++trial) {
            std::uniform_int_distribution<int> value(c.lo, c.hi);
            int lo = value(rng), hi = value(rng);
            if (trial % 3 != 2 && lo > hi) std::swap(lo, hi);  // now and then an empty range
            const int span = spans[rng() % std::size(spans)];
            const auto rate = pass_rate::ofColumn(h, c.scope, QString::fromLatin1(c.column), span,
                                                  pass_rate::Accepted::range(lo, hi));
            ASSERT_TRUE(rate.has_value()) << c.column;
            const auto [in, all] = sqlCount(w.session->historyDb(), c, span, lo, hi);
            EXPECT_EQ(rate->passed, in) << c.table << "." << c.column << " " << lo << ".." << hi << " span " << span;
            EXPECT_EQ(rate->draws, all) << c.table << " span " << span;
        }
    }
    EXPECT_FALSE(pass_rate::ofColumn(h, ZoneScope::Back, QStringLiteral("fig5"), 10,
                                     pass_rate::Accepted::range(0, 99))
                     .has_value());
}

TEST(PassRate, BoxesInRangeAndListMode) {
    BundledWorkspace& w = BundledWorkspace::shared();
    const DrawHistory& h = w.session->history();
    ParamWindowState s = ParamWindowState::defaults();
    s.box(ParamId::EvenCount)[0] = QStringLiteral("2");
    s.box(ParamId::EvenCount)[1] = QStringLiteral("3");
    const auto range = pass_rate::ofParam(h, s, ParamId::EvenCount, 50);
    s.listMode = true;
    s.box(ParamId::EvenCount)[3] = QStringLiteral(" 2 3 ");
    const auto list = pass_rate::ofParam(h, s, ParamId::EvenCount, 50);
    ASSERT_TRUE(range && list);
    EXPECT_EQ(range->draws, 50);
    EXPECT_EQ(list->passed, range->passed);
    const auto [in, all] = sqlCount(w.session->historyDb(), kCases[1], 50, 2, 3);
    EXPECT_EQ(range->passed, in);
    s.box(ParamId::EvenCount)[3] = QString();
    EXPECT_EQ(pass_rate::ofParam(h, s, ParamId::EvenCount, 50)->passed, 0);  // an empty list keeps nothing
    EXPECT_FALSE(pass_rate::ofParam(h, s, ParamId::CustomRange, 50).has_value());
}

TEST(PassRate, IntegratedFilterKeepsTheDrawsItsColumnsAllow) {
    BundledWorkspace& w = BundledWorkspace::shared();
    const DrawHistory& h = w.session->history();
    ParamWindowState s = ParamWindowState::defaults();
    s.integratedBox[0] = true;  // 各位数和 70..110
    s.box(ParamId::NumberSum)[0] = QStringLiteral("70");
    s.box(ParamId::NumberSum)[1] = QStringLiteral("110");
    s.integratedBox[16] = true;  // 重上期个数 0..0 (also runs 大数之和, whose boxes keep all)
    s.box(ParamId::RepeatsOfPrevious)[0] = QStringLiteral("0");
    s.box(ParamId::RepeatsOfPrevious)[1] = QStringLiteral("0");
    s.box(ParamId::BigSum)[1] = QStringLiteral("999");
    const int span = 120;
    const auto fails = [&](int d) {
        const DrawParams& p = h.front[static_cast<size_t>(d)];
        return int{p.sum < 70 || p.sum > 110} + int{p.repeatCount != 0};
    };
    int bothPass = 0, atMostOneFails = 0;
    for (int d = h.drawCount() - span + 1; d <= h.drawCount(); ++d) {
        bothPass += fails(d) == 0;
        atMostOneFails += fails(d) <= 1;
    }
    pass_rate::Rate r = pass_rate::ofIntegrated(h, s, span, 35, 12);
    EXPECT_EQ(r.draws, span);
    EXPECT_EQ(r.passed, bothPass);
    s.useTolerance = true;
    s.txtRc0 = QStringLiteral("1");
    r = pass_rate::ofIntegrated(h, s, span, 35, 12);
    EXPECT_EQ(r.passed, atMostOneFails);
    EXPECT_GT(atMostOneFails, bothPass);
}

TEST(PassRate, IntegratedRateEqualsTheFilterRunOnEachWinningTicketAlone) {
    const DrawHistory& h = BundledWorkspace::shared().session->history();
    std::mt19937 rng(11);
    const auto coin = [&](int in) { return static_cast<int>(rng() % 100) < in; };
    int mixed = 0;  // trials where some draws pass and some do not
    for (int trial = 0; trial < 12; ++trial) {
        ParamWindowState s = ParamWindowState::defaults();
        for (bool& box : s.integratedBox) box = coin(15);
        if (trial % 3 == 0) s.integratedBox[16] = true;  // 重上期个数 with 大数之和
        if (trial % 4 == 1) s.integratedBox[25] = true;  // 遗漏数和
        // Ranges between quantiles of what the draws show, so that some draws miss.
        for (const range_query::ComboRow& row : range_query::rows()) {
            auto values = *range_query::columnValues(h, ZoneScope::Front, QString::fromLatin1(row.column), 0);
            std::ranges::sort(values);
            const auto at = [&](unsigned percent) { return values[values.size() * percent / 100]; };
            s.box(row.param)[0] = QString::number(at(5 + rng() % 30));
            s.box(row.param)[1] = QString::number(at(65 + rng() % 30));
        }
        s.keep = coin(60);
        s.logicAnd = coin(60);
        s.useTolerance = coin(50);
        s.txtRc0 = QString::number(rng() % 3);
        s.scope = trial % 5 == 4 ? ZoneScope::Both : ZoneScope::Front;
        const int span = 15 + static_cast<int>(rng() % 40);
        // The filter itself on a table of one ticket per draw, with the history before that draw.
        int kept = 0;
        for (int d = h.drawCount() - span + 1; d <= h.drawCount(); ++d) {
            auto t = ticketTable({ticketOf(h.numbers[static_cast<size_t>(d)])});
            param_filter::runIntegrated(*t, s, ParamContext::fromHistory(DrawHistoryView(h, d - 1), 35, 12));
            kept += t->filteredOut().test(0) ? 0 : 1;
        }
        const pass_rate::Rate r = pass_rate::ofIntegrated(h, s, span, 35, 12);
        EXPECT_EQ(r.draws, span);
        EXPECT_EQ(r.passed, kept) << "trial " << trial << " keep " << s.keep << " and " << s.logicAnd
                                  << " tolerance " << s.useTolerance;
        mixed += kept > 0 && kept < span;
    }
    EXPECT_GE(mixed, 4);
}
