// The grid models of the main window, the filter window and the prize check, each built from a
// small known state and compared as text with what the grid must show.
#include "engine/candidate_kernels.h"
#include "filter/result_grid_model.h"
#include "history/ui/history_grid_model.h"
#include "prize/prize_fixtures.h"
#include "prize/prize_view.h"
#include "prize/ui/prize_models.h"
#include "support/model_dump.h"
#include "support/qt_printers.h"

#include <gtest/gtest.h>

namespace {

// Lines of cells separated by tabs, as modelTsv() writes them.
QString tsv(std::initializer_list<const char*> lines) {
    QString out;
    for (const char* l : lines) out += QString::fromUtf8(l) + QLatin1Char('\n');
    return out;
}

TEST(HistoryGridModel, ShowsEveryDrawWithTwoDigitNumbersAndFollowsARefresh) {
    DrawHistory h;
    HistoryGridModel m(h);
    EXPECT_EQ(modelTsv(m), tsv({"序数\t期号\t前1位\t前2位\t前3位\t前4位\t前5位\t后1位\t后2位"}));

    h.numbers.push_back({2025101, 1, 9, 14, 22, 30, 3, 11});
    h.numbers.push_back({2025102, 5, 11, 19, 26, 33, 4, 9});
    h.numbers.push_back({2025103, 2, 8, 15, 23, 29, 1, 12});
    m.refresh();
    EXPECT_EQ(modelTsv(m), tsv({"序数\t期号\t前1位\t前2位\t前3位\t前4位\t前5位\t后1位\t后2位",
                                "1\t2025101\t01\t09\t14\t22\t30\t03\t11",
                                "2\t2025102\t05\t11\t19\t26\t33\t04\t09",
                                "3\t2025103\t02\t08\t15\t23\t29\t01\t12"}));

    // A draw appended, one taken off the end: the rows follow.
    h.numbers.push_back({2025104, 10, 13, 18, 27, 35, 6, 10});
    m.refresh();
    EXPECT_EQ(m.rowCount(), 4);
    EXPECT_EQ(modelTsv(m).split(QLatin1Char('\n')).value(4), QStringLiteral("4\t2025104\t10\t13\t18\t27\t35\t06\t10"));
    h.numbers.pop_back();
    h.numbers.pop_back();
    m.refresh();
    EXPECT_EQ(modelTsv(m), tsv({"序数\t期号\t前1位\t前2位\t前3位\t前4位\t前5位\t后1位\t后2位",
                                "1\t2025101\t01\t09\t14\t22\t30\t03\t11",
                                "2\t2025102\t05\t11\t19\t26\t33\t04\t09"}));
}

// Five tickets; row 1 thrown out by a filter, canshu holding each ticket's count of evens.
CandidateTable resultTable() {
    CandidateTable t(schema::CandidateKind::Combinations, 5);
    const int rows[5][7] = {{1, 2, 3, 4, 5, 1, 2},
                            {3, 8, 15, 22, 35, 4, 11},
                            {6, 7, 9, 10, 33, 2, 12},
                            {2, 4, 6, 8, 10, 5, 6},
                            {11, 17, 23, 29, 31, 7, 9}};
    const int16_t evens[5] = {2, 2, 2, 5, 0};
    for (uint64_t r = 0; r < 5; ++r) {
        for (int k = 1; k <= 7; ++k) t.numberColumn(k)[r] = static_cast<uint8_t>(rows[r][k - 1]);
        t.paramValues()[r] = evens[r];
    }
    BitVector sel(5);
    sel.set(1);
    candidate_kernels::beginFilter(t);
    candidate_kernels::killSelected(t, sel, t.reasons().intern(QStringLiteral("偶数个数大小:2 排除0~2")));
    return t;
}

TEST(ResultGridModel, EachViewShowsItsRowsAndColumns) {
    const CandidateTable t = resultTable();
    ResultGridModel m;

    m.bind(&t, GridView::live());
    EXPECT_EQ(modelTsv(m), tsv({"idx\tfig1\tfig2\tfig3\tfig4\tfig5\tfig6\tfig7",
                                "1\t1\t2\t3\t4\t5\t1\t2",
                                "3\t6\t7\t9\t10\t33\t2\t12",
                                "4\t2\t4\t6\t8\t10\t5\t6",
                                "5\t11\t17\t23\t29\t31\t7\t9"}));

    m.bind(&t,
           GridView::afterParameter(param_filter::ViewColumns::WithParamValue, QStringLiteral("偶数个数")));
    EXPECT_EQ(modelTsv(m), tsv({"idx\tfig1\tfig2\tfig3\tfig4\tfig5\tfig6\tfig7\t偶数个数",
                                "1\t1\t2\t3\t4\t5\t1\t2\t2",
                                "3\t6\t7\t9\t10\t33\t2\t12\t2",
                                "4\t2\t4\t6\t8\t10\t5\t6\t5",
                                "5\t11\t17\t23\t29\t31\t7\t9\t0"}));

    // Every row, the thrown one with its reason, the others with an empty cell.
    m.bind(&t, GridView::allRows());
    EXPECT_EQ(modelTsv(m), tsv({"idx\tfig1\tfig2\tfig3\tfig4\tfig5\tfig6\tfig7\t参数\t过滤缘故",
                                "1\t1\t2\t3\t4\t5\t1\t2\t2\t",
                                "2\t3\t8\t15\t22\t35\t4\t11\t2\t偶数个数大小:2 排除0~2",
                                "3\t6\t7\t9\t10\t33\t2\t12\t2\t",
                                "4\t2\t4\t6\t8\t10\t5\t6\t5\t",
                                "5\t11\t17\t23\t29\t31\t7\t9\t0\t"}));

    // Page 0 holds ids 1..10000 of the live rows, without fig7; page 1 nothing.
    m.bind(&t, GridView::page(0));
    EXPECT_EQ(modelTsv(m), tsv({"idx\tfig1\tfig2\tfig3\tfig4\tfig5\tfig6",
                                "1\t1\t2\t3\t4\t5\t1",
                                "3\t6\t7\t9\t10\t33\t2",
                                "4\t2\t4\t6\t8\t10\t5",
                                "5\t11\t17\t23\t29\t31\t7"}));
    m.bind(&t, GridView::page(1));
    EXPECT_EQ(modelTsv(m), tsv({"idx\tfig1\tfig2\tfig3\tfig4\tfig5\tfig6"}));
}

TEST(ResultGridModel, TheOrderedViewSortsByIdxThenByTheNumbers) {
    CandidateTable t = resultTable();
    // Loaded ids out of order, two rows sharing 12: the one with the smaller numbers first.
    const int32_t ids[5] = {5, 12, 9, 12, 1};
    for (uint64_t r = 0; r < 5; ++r) t.explicitIdx()[r] = ids[r];
    ResultGridModel m;
    m.bind(&t, GridView::firstView(FirstView::Ordered));
    EXPECT_EQ(modelTsv(m), tsv({"idx\tfig1\tfig2\tfig3\tfig4\tfig5\tfig6\tfig7",
                                "1\t11\t17\t23\t29\t31\t7\t9",
                                "5\t1\t2\t3\t4\t5\t1\t2",
                                "9\t6\t7\t9\t10\t33\t2\t12",
                                "12\t2\t4\t6\t8\t10\t5\t6",
                                "12\t3\t8\t15\t22\t35\t4\t11"}));
}

// Against 07 21 28 31 34 + 02 08: kept 0+0, 3+1 and 5+2; thrown 2+2 and 4+1.
std::unique_ptr<PrizeView> prizeView() {
    using namespace prize_fixtures;
    auto t = table({{2, 4, 6, 9, 10, 1, 3},
                    {1, 7, 21, 28, 33, 2, 10},
                    {7, 21, 28, 31, 34, 2, 8},
                    {3, 5, 21, 34, 35, 2, 8},
                    {7, 21, 28, 31, 35, 8, 11}});
    throwOut(*t, 3, QStringLiteral("手工删除"));
    throwOut(*t, 4, QStringLiteral("各位数和大小:122 保留60~120"));
    return std::make_unique<PrizeView>(schema::CandidateKind::Combinations, std::move(t),
                                       draw(2025105, {7, 21, 28, 31, 34, 2, 8}), PrizeRules::defaults());
}

TEST(PrizeListModel, KeptAndThrownListsBeforeAndAfterSorting) {
    auto v = prizeView();
    PrizeListModel kept(*v, PrizeListModel::Side::Kept);
    PrizeListModel thrown(*v, PrizeListModel::Side::Thrown);
    // No hit: level and money are empty cells.
    EXPECT_EQ(modelTsv(kept), tsv({"号码索引\t前1\t前2\t前3\t前4\t前5\t后1\t后2\t中前\t中后\t奖级\t奖金",
                                   "1\t02\t04\t06\t09\t10\t01\t03\t0\t0\t\t",
                                   "2\t01\t07\t21\t28\t33\t02\t10\t3\t1\t7等奖\t10",
                                   "3\t07\t21\t28\t31\t34\t02\t08\t5\t2\t1等奖\t5000000"}));
    EXPECT_EQ(modelTsv(thrown),
              tsv({"号码索引\t前1\t前2\t前3\t前4\t前5\t后1\t后2\t中前\t中后\t奖级\t奖金\t过滤缘故",
                   "4\t03\t05\t21\t34\t35\t02\t08\t2\t2\t7等奖\t10\t手工删除",
                   "5\t07\t21\t28\t31\t35\t08\t11\t4\t1\t5等奖\t500\t各位数和大小:122 保留60~120"}));

    // Sorted by hits, front first; the lower list takes its other headings.
    v->sortByHits();
    kept.reset();
    thrown.reset();
    EXPECT_EQ(modelTsv(kept), tsv({"号码索引\t前1\t前2\t前3\t前4\t前5\t后1\t后2\t中前\t中后\t奖级\t奖金",
                                   "3\t07\t21\t28\t31\t34\t02\t08\t5\t2\t1等奖\t5000000",
                                   "2\t01\t07\t21\t28\t33\t02\t10\t3\t1\t7等奖\t10",
                                   "1\t02\t04\t06\t09\t10\t01\t03\t0\t0\t\t"}));
    EXPECT_EQ(modelTsv(thrown),
              tsv({"号码索引\t红1\t红2\t红3\t红4\t红5\t红6\t蓝球\t中红\t中蓝\t奖级\t奖金\t过滤缘故",
                   "5\t07\t21\t28\t31\t35\t08\t11\t4\t1\t5等奖\t500\t各位数和大小:122 保留60~120",
                   "4\t03\t05\t21\t34\t35\t02\t08\t2\t2\t7等奖\t10\t手工删除"}));
}

TEST(LevelSummaryModel, CountsTheKeptAndTheThrownByLevel) {
    auto v = prizeView();
    LevelSummaryModel m(*v);
    EXPECT_EQ(modelTsv(m), tsv({"1\t2",
                                "奖级\t中注",
                                "1等奖\t1", "2等奖\t0", "3等奖\t0", "4等奖\t0",
                                "5等奖\t0", "6等奖\t0", "7等奖\t1", "8等奖\t0",
                                "\t", "\t", "\t", "\t", "\t",
                                "被滤\t",
                                "1等奖\t0", "2等奖\t0", "3等奖\t0", "4等奖\t0",
                                "5等奖\t1", "6等奖\t0", "7等奖\t1", "8等奖\t0",
                                "\t", "\t", "\t", "\t"}));
}

}  // namespace
