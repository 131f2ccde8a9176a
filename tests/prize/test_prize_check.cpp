// The prize check: hits, slots, the two lists, the level summary and the money.
#include "engine/candidate_store.h"
#include "prize/prize_sql_form.h"
#include "prize/prize_view.h"
#include "prize_fixtures.h"
#include "support/qt_printers.h"
#include "workspace/sqlite_db.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace prize_fixtures;
using Kind = schema::CandidateKind;

namespace {
const CheckDraw kDraw = draw(2026050, {3, 7, 12, 20, 28, 4, 9});
const QString kReason = QStringLiteral("各位数和大小:70 排除0~60");

// Rows: 5+2, none, 17 against 07 (none), 4+1, a thrown 5+1, 3+2, 2+0.
std::unique_ptr<CandidateTable> sampleTable() {
    auto t = table({{3, 7, 12, 20, 28, 4, 9},
                    {1, 2, 5, 6, 8, 1, 2},
                    {17, 18, 19, 21, 22, 10, 11},
                    {3, 7, 12, 20, 29, 4, 10},
                    {3, 7, 12, 20, 28, 4, 11},
                    {3, 7, 12, 30, 31, 4, 9},
                    {3, 7, 13, 14, 15, 1, 2}});
    throwOut(*t, 4, kReason);
    return t;
}

QStringList summaryColumn(const PrizeView& v, int col, int from, int to) {
    QStringList out;
    for (int r = from; r <= to; ++r) out << v.summaryCell(r, col);
    return out;
}

std::vector<uint64_t> rowsOf(const TicketList& l) {
    std::vector<uint64_t> out;
    for (uint64_t k = 0; k < l.size(); ++k) out.push_back(l.row(k));
    return out;
}
}  // namespace

TEST(PrizeCheck, HitsSlotsAndNullsPerTicket) {
    auto t = sampleTable();
    const PrizeCheck c = PrizeCheck::run(*t, kDraw, PrizeRules::defaults());
    EXPECT_EQ(c.frontHits(0), 5);
    EXPECT_EQ(c.backHits(0), 2);
    EXPECT_EQ(c.prizeLevel(0), QStringLiteral("1等奖"));
    EXPECT_EQ(c.prizeAmount(0), 5000000);
    // No hits: jiang and jing are Null.
    EXPECT_EQ(c.frontHits(1), 0);
    EXPECT_EQ(c.backHits(1), 0);
    EXPECT_FALSE(c.prizeLevel(1).has_value());
    EXPECT_FALSE(c.prizeAmount(1).has_value());
    // 17 is not 07, 10 and 11 not 4 or 9.
    EXPECT_EQ(c.frontHits(2), 0);
    EXPECT_EQ(c.backHits(2), 0);
    EXPECT_EQ(c.slot(3), 5);
    EXPECT_EQ(c.prizeAmount(3), 500);
    EXPECT_EQ(c.prizeLevel(4), QStringLiteral("2等奖"));
    EXPECT_EQ(c.prizeLevel(5), QStringLiteral("6等奖"));
    EXPECT_EQ(c.frontHits(6), 2);
    EXPECT_EQ(c.slot(6), 0);
    EXPECT_EQ(c.keptCount(), 6u);
    EXPECT_EQ(c.thrownCount(), 1u);
}

TEST(PrizeCheck, NeverChangesTheFlagsOrTheReasons) {
    auto t = sampleTable();
    t->previousFilteredOut().set(2);
    const BitVector filteredOut = t->filteredOut(), pre = t->previousFilteredOut();
    const std::vector<ReasonTable::Id> reasons(t->rowReasons().begin(), t->rowReasons().end());
    PrizeView v(Kind::Combinations, std::move(t), kDraw, PrizeRules::defaults());
    v.sortByHits();
    v.pageKept(QStringLiteral("1"));
    EXPECT_EQ(v.table()->filteredOut(), filteredOut);
    EXPECT_EQ(v.table()->previousFilteredOut(), pre);
    EXPECT_TRUE(std::equal(reasons.begin(), reasons.end(), v.table()->rowReasons().begin()));
    EXPECT_EQ(v.table()->reasonText(4), kReason);
}

TEST(PrizeView, DefaultRulesGiveEightLevelsAndAThrownWinnerUnderBeilv) {
    PrizeView v(Kind::Combinations, sampleTable(), kDraw, PrizeRules::defaults());
    EXPECT_EQ(v.summaryCell(0, 0), QStringLiteral("奖级"));
    EXPECT_EQ(v.summaryCell(0, 1), QStringLiteral("中注"));
    EXPECT_EQ(summaryColumn(v, 0, 1, 9),
              (QStringList{"1等奖", "2等奖", "3等奖", "4等奖", "5等奖", "6等奖", "7等奖", "8等奖", ""}));
    EXPECT_EQ(summaryColumn(v, 1, 1, 8), (QStringList{"1", "0", "0", "0", "1", "1", "0", "0"}));
    EXPECT_EQ(v.summaryCell(14, 0), QStringLiteral("被滤"));
    EXPECT_EQ(summaryColumn(v, 0, 15, 22),
              (QStringList{"1等奖", "2等奖", "3等奖", "4等奖", "5等奖", "6等奖", "7等奖", "8等奖"}));
    EXPECT_EQ(summaryColumn(v, 1, 15, 22), (QStringList{"0", "1", "0", "0", "0", "0", "0", "0"}));

    // The thrown winner is listed below with its level, money and reason.
    ASSERT_EQ(v.thrown().size(), 1u);
    EXPECT_EQ(v.thrown().row(0), 4u);
    EXPECT_EQ(v.check().prizeLevel(4), QStringLiteral("2等奖"));
    EXPECT_EQ(v.table()->reasonText(v.thrown().row(0)), kReason);
    EXPECT_EQ(v.thrownColumns().last().header, QStringLiteral("过滤缘故"));
    EXPECT_EQ(v.thrownColumns().last().widthTwips, 4800);
    EXPECT_EQ(v.thrownHeading(), QStringLiteral("投注组合情况排列总表(合计：1注)"));

    EXPECT_EQ(v.kept().size(), 6u);
    EXPECT_EQ(v.requiredText(), QStringLiteral("12元"));
    EXPECT_EQ(v.incomeText(), QStringLiteral("5000700元"));
    EXPECT_EQ(v.resultText(), QStringLiteral("5000688元"));
    EXPECT_TRUE(v.resultIsGain());
    // Hit counts by running row: rows 1..8 of the kept side.
    EXPECT_EQ(v.hitCounts()[1], 1);
    EXPECT_EQ(v.hitCounts()[5], 1);
    EXPECT_EQ(v.hitCounts()[6], 1);
}

TEST(PrizeView, AnEmptyKeptSetCostsAndEarnsNothingAndShowsRed) {
    auto t = sampleTable();
    for (uint64_t r = 0; r < t->rowCount(); ++r) throwOut(*t, r, kReason);
    PrizeView v(Kind::Combinations, std::move(t), kDraw, PrizeRules::defaults());
    EXPECT_EQ(v.kept().size(), 0u);
    EXPECT_EQ(v.requiredText(), QStringLiteral("0元"));
    EXPECT_EQ(v.incomeText(), QStringLiteral("0元"));
    EXPECT_EQ(v.resultText(), QStringLiteral("0元"));
    EXPECT_FALSE(v.resultIsGain());
    EXPECT_EQ(v.summaryCell(15, 1), QStringLiteral("1"));

    // A missing table: empty lists and zero sums.
    PrizeView missing(Kind::Wheel, nullptr, kDraw, PrizeRules::defaults());
    EXPECT_EQ(missing.kept().size(), 0u);
    EXPECT_EQ(missing.thrown().size(), 0u);
    EXPECT_EQ(missing.resultText(), QStringLiteral("0元"));
    EXPECT_EQ(missing.summaryCell(8, 1), QStringLiteral("0"));
}

TEST(PrizeView, ALevelEqualToTheSlotBeforeMergesRowsAndApartTheyRepeat) {
    PrizeRules rules = PrizeRules::defaults();
    rules.slot(3).rank = QStringLiteral("2等奖");   // 5+0 joins 5+1
    rules.slot(12).rank = QStringLiteral("1等奖");  // not a neighbour of slot 1
    auto t = table({{3, 7, 12, 20, 28, 4, 11},
                    {3, 7, 12, 20, 28, 1, 2},
                    {3, 7, 12, 20, 28, 4, 9},
                    {3, 7, 30, 31, 32, 4, 1}});
    PrizeView v(Kind::Combinations, std::move(t), kDraw, rules);
    EXPECT_EQ(summaryColumn(v, 0, 1, 9),
              (QStringList{"1等奖", "2等奖", "4等奖", "5等奖", "6等奖", "7等奖", "8等奖", "1等奖", ""}));
    // 5+1 and 5+0 in one row; "1等奖" counts slot 1 and slot 12 (2+1) together, twice over.
    EXPECT_EQ(summaryColumn(v, 1, 1, 8), (QStringList{"2", "2", "0", "0", "0", "0", "0", "2"}));
    EXPECT_EQ(v.hitCounts()[2], 2);
    EXPECT_EQ(v.hitCounts()[8], 2);
}

TEST(PrizeView, TwoSlotsWithTheSamePatternPayTheLowerSlot) {
    PrizeRules rules = PrizeRules::defaults();
    rules.slot(9) = {5, 2, 7, QStringLiteral("九")};
    PrizeView v(Kind::Combinations, table({{3, 7, 12, 20, 28, 4, 9}}), kDraw, rules);
    EXPECT_EQ(v.check().prizeLevel(0), QStringLiteral("1等奖"));
    rules.slot(1).back = 0;
    PrizeView w(Kind::Combinations, table({{3, 7, 12, 20, 28, 4, 9}}), kDraw, rules);
    EXPECT_EQ(w.check().prizeLevel(0), QStringLiteral("九"));
    EXPECT_EQ(w.incomeText(), QStringLiteral("7元"));
}

TEST(PrizeView, ZeroMoneyKeepsTheLevelAndAnOverflowingSumStaysZero) {
    PrizeRules rules = PrizeRules::defaults();
    rules.slot(1).money = 0;
    PrizeView v(Kind::Combinations, table({{3, 7, 12, 20, 28, 4, 9}}), kDraw, rules);
    EXPECT_EQ(v.check().prizeLevel(0), QStringLiteral("1等奖"));
    EXPECT_EQ(v.check().prizeAmount(0), 0);
    EXPECT_EQ(v.resultText(), QStringLiteral("-2元"));
    rules.slot(1).money = 2'000'000'000;
    PrizeView big(Kind::Combinations, table({{3, 7, 12, 20, 28, 4, 9}, {3, 7, 12, 20, 28, 4, 9}}), kDraw,
                  rules);
    EXPECT_EQ(big.income(), 0);
}

TEST(PrizeView, SortingPutsTheBestFirstAndRenamesTheLowerHeaders) {
    auto t = sampleTable();
    throwOut(*t, 1, kReason);
    PrizeView v(Kind::Combinations, std::move(t), kDraw, PrizeRules::defaults());
    EXPECT_EQ(v.thrownColumns()[1].header, QStringLiteral("前1"));
    v.sortByHits();
    // Kept: 5+2, 4+1, 3+2, 2+0, then the two without hits in table order.
    EXPECT_EQ(rowsOf(v.kept()), (std::vector<uint64_t>{0, 3, 5, 6, 2}));
    EXPECT_EQ(rowsOf(v.thrown()), (std::vector<uint64_t>{4, 1}));
    QStringList heads;
    for (const PrizeListColumn& c : v.thrownColumns()) heads << c.header;
    EXPECT_EQ(heads, (QStringList{"号码索引", "红1", "红2", "红3", "红4", "红5", "红6", "蓝球", "中红",
                                  "中蓝", "奖级", "奖金", "过滤缘故"}));
    EXPECT_EQ(v.keptColumns()[6].header, QStringLiteral("后1"));
    EXPECT_EQ(&v.lastOpened(), &v.kept());
}

TEST(PrizeView, PagesOfTheSevenNumberViewOverlapAndThoseOfZuhefDoNot) {
    std::vector<Ticket> rows(35000, Ticket{1, 2, 5, 6, 8, 1, 2});
    auto t = table(rows);
    for (uint64_t r = 0; r < 35000; r += 2) throwOut(*t, r, kReason);
    PrizeView v(Kind::Combinations, std::move(t), kDraw, PrizeRules::defaults());
    ASSERT_TRUE(v.pageKept(QStringLiteral("1")));
    EXPECT_EQ(v.kept().size(), 10000u);  // idx 1..20000, every second one kept
    EXPECT_EQ(v.table()->idxAt(v.kept().row(0)), 2);
    ASSERT_TRUE(v.pageKept(QStringLiteral("2")));
    EXPECT_EQ(v.table()->idxAt(v.kept().row(0)), 10002);
    EXPECT_EQ(v.table()->idxAt(v.kept().row(v.kept().size() - 1)), 30000);
    ASSERT_TRUE(v.pageThrown(QStringLiteral("3")));
    EXPECT_EQ(v.thrown().size(), 7500u);  // idx 20001..35000
    EXPECT_EQ(&v.lastOpened(), &v.thrown());
    EXPECT_FALSE(v.pageKept(QStringLiteral("x")));
    EXPECT_EQ(&v.lastOpened(), &v.thrown());

    std::vector<Ticket> six(25000, Ticket{3, 7, 12, 13, 14, 15, 0});
    PrizeView f(Kind::SixNumbers, table(six, Kind::SixNumbers), kDraw, PrizeRules::defaults());
    ASSERT_TRUE(f.pageKept(QStringLiteral("2")));
    EXPECT_EQ(f.kept().size(), 10000u);
    EXPECT_EQ(f.table()->idxAt(f.kept().row(0)), 10001);
    EXPECT_FALSE(f.pageThrown(QStringLiteral("1")));
}

TEST(PrizeView, ZuhefCountsFrontHitsOnlyAndPricesVisitedRowsAtTwelve) {
    auto t =
        table({{3, 7, 12, 20, 28, 33, 0}, {1, 3, 7, 17, 27, 35, 0}, {1, 2, 4, 5, 6, 8, 0}}, Kind::SixNumbers);
    throwOut(*t, 2, kReason);
    PrizeView v(Kind::SixNumbers, std::move(t), kDraw, PrizeRules::defaults());
    EXPECT_EQ(v.check().frontHits(0), 5);
    EXPECT_EQ(v.check().frontHits(1), 2);
    EXPECT_EQ(v.check().slot(0), 0);  // no levels in this view
    EXPECT_EQ(v.kept().size(), 2u);
    EXPECT_EQ(v.requiredText(), QStringLiteral("24元"));
    EXPECT_EQ(v.keptColumns().size(), 8);
    EXPECT_EQ(v.keptColumns()[7].header, QStringLiteral("中基号"));
    EXPECT_TRUE(v.thrownColumns().isEmpty());
}

// The kernel against the statements themselves, run by SQLite on the stored table.
TEST(PrizeCheck, AgreesWithItsSqlFormRowByRow) {
    QRandomGenerator rng(20260505);
    std::vector<Ticket> rows;
    for (int i = 0; i < 3000; ++i) {
        std::array<bool, 36> used{};
        Ticket t{};
        for (int k = 0; k < 5; ++k) {
            int n;
            do n = rng.bounded(1, 36);
            while (used[static_cast<size_t>(n)]);
            used[static_cast<size_t>(n)] = true;
            t[static_cast<size_t>(k)] = n;
        }
        std::sort(t.begin(), t.begin() + 5);
        t[5] = rng.bounded(1, 7);
        t[6] = rng.bounded(7, 13);
        rows.push_back(t);
    }
    // Draws near the ticket numbers so that every level occurs, and a draw with 7 against 17.
    for (const CheckDraw& d : {draw(1, {2, 9, 17, 25, 33, 5, 11}), draw(2, {7, 8, 10, 11, 12, 3, 8})}) {
        auto t = table(rows);
        for (uint64_t r = 0; r < t->rowCount(); r += 3) throwOut(*t, r, kReason);
        PrizeRules rules = PrizeRules::defaults();
        rules.slot(9) = {3, 1, 99, QStringLiteral("重复")};  // a second slot for 3+1
        const PrizeCheck c = PrizeCheck::run(*t, d, rules);

        QTemporaryDir dir;
        SqliteDb db;
        ASSERT_TRUE(db.open(dir.filePath(QStringLiteral("filnum.db")), true));
        ASSERT_EQ(candidate_store::save(db, *t).outcome, candidate_store::Outcome::Done);
        const prize_sql_form::Outcome o = prize_sql_form::run(db, Kind::Combinations, d, rules);
        ASSERT_TRUE(o.ok) << o.error.toStdString();
        const QList<QVariantList> stored =
            db.rows(QStringLiteral("SELECT jiben, tebie, jiang, jing, unslt FROM zuhe ORDER BY idx"));
        ASSERT_EQ(stored.size(), static_cast<qsizetype>(rows.size()));
        std::array<int, 13> seen{};
        for (uint64_t r = 0; r < rows.size(); ++r) {
            const QVariantList& s = stored[static_cast<qsizetype>(r)];
            ASSERT_EQ(s[0].toInt(), c.frontHits(r)) << r;
            ASSERT_EQ(s[1].toInt(), c.backHits(r)) << r;
            ASSERT_EQ(s[2].isNull(), !c.prizeLevel(r).has_value()) << r;
            ASSERT_EQ(s[2].toString(), c.prizeLevel(r).value_or(QString())) << r;
            ASSERT_EQ(s[3].isNull(), !c.prizeAmount(r).has_value()) << r;
            ASSERT_EQ(s[3].toInt(), c.prizeAmount(r).value_or(0)) << r;
            ++seen[static_cast<size_t>(c.slot(r))];
        }
        EXPECT_EQ(seen[9], 0);  // slot 8 has the same pattern and wins
        for (const QString& level :
             {QStringLiteral("1等奖"), QStringLiteral("6等奖"), QStringLiteral("8等奖")}) {
            EXPECT_EQ(
                db.scalar(QStringLiteral("SELECT COUNT(*) FROM zuhe WHERE unslt = 0 AND jiang = ?1"), {level})
                    .toULongLong(),
                c.countOfLevel(false, level));
            EXPECT_EQ(
                db.scalar(QStringLiteral("SELECT COUNT(*) FROM zuhe WHERE unslt = 1 AND jiang = ?1"), {level})
                    .toULongLong(),
                c.countOfLevel(true, level));
        }
        const QVariant sum = db.scalar(QStringLiteral("SELECT SUM(jing) FROM zuhe WHERE unslt = 0"));
        EXPECT_EQ(sum.isNull(), !c.keptPrizeSum().has_value());
        EXPECT_EQ(sum.toLongLong(), c.keptPrizeSum().value_or(0));
    }
}

TEST(TicketList, FlagBitsPastTheLastRowAreNoRows) {
    auto t = sampleTable();
    // A damaged image: every bit of the last word set, also the 57 past the seventh row.
    t->filteredOut().words()[0] |= ~BitVector::Word{0} << 7;
    const PrizeCheck c = PrizeCheck::run(*t, kDraw, PrizeRules::defaults());
    EXPECT_EQ(rowsOf(TicketList::whole(*t, true)), (std::vector<uint64_t>{4}));
    EXPECT_EQ(rowsOf(TicketList::byHits(*t, c, true)), (std::vector<uint64_t>{4}));
    EXPECT_EQ(rowsOf(TicketList::byHits(*t, c, false)), (std::vector<uint64_t>{0, 3, 5, 6, 1, 2}));
    PrizeView v(Kind::Combinations, std::move(t), kDraw, PrizeRules::defaults());
    v.sortByHits();
    EXPECT_EQ(v.thrown().size(), 1u);
    EXPECT_EQ(v.kept().size(), 6u);
}

TEST(TicketList, ACheckOfAnotherTableNeverSizesTheList) {
    auto small = sampleTable();
    // A check made over a larger table: its counts do not fit the small one.
    auto large = table(std::vector<Ticket>(300, Ticket{3, 7, 12, 20, 28, 4, 9}));
    const PrizeCheck c = PrizeCheck::run(*large, kDraw, PrizeRules::defaults());
    const std::vector<uint64_t> kept = rowsOf(TicketList::byHits(*small, c, false));
    EXPECT_EQ(kept.size(), 6u);
    for (uint64_t r : kept) EXPECT_LT(r, small->rowCount());
    EXPECT_EQ(rowsOf(TicketList::byHits(*small, c, true)), (std::vector<uint64_t>{4}));
    // And one over a smaller table lists the rows it has codes for.
    auto tiny = table({{3, 7, 12, 20, 28, 4, 9}, {1, 2, 5, 6, 8, 1, 2}});
    const PrizeCheck tinyCheck = PrizeCheck::run(*tiny, kDraw, PrizeRules::defaults());
    EXPECT_EQ(rowsOf(TicketList::byHits(*small, tinyCheck, false)), (std::vector<uint64_t>{0, 1}));
}
