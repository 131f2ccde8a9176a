#include "engine/candidate_kernels.h"
#include "filter/candidate_actions.h"
#include "filter/filter_source.h"

#include "filter/candidate_fixture.h"

#include <gtest/gtest.h>

namespace {

namespace act = candidate_actions;

const QString kFilterReason = QStringLiteral("和值大小:120 保留50~100");

// A filter as the later filters run it: preunslt = unslt, then the rows of the selection die.
void filterRows(CandidateTable& t, std::initializer_list<uint64_t> rows) {
    BitVector sel(t.rowCount());
    for (uint64_t r : rows) sel.set(r);
    candidate_kernels::beginFilter(t);
    candidate_kernels::killSelected(t, sel, t.reasons().intern(kFilterReason));
}

TEST(CandidateActions, InvertAllOnATableWithNoDeadRowKillsEverything) {
    // Large enough for the kernels' threads and a partial last word.
    CandidateTable t = smallTable(3 * 1024 * 1024 + 17);
    act::invertAll(t);
    EXPECT_EQ(t.liveCount(), 0u);
    EXPECT_EQ(filter_source::caption(static_cast<qint64>(t.liveCount())),
              QStringLiteral("复选组合情况排列总表（每页至多显示10000注，双击任意注可删除）   合计：0注"));
    EXPECT_EQ(t.previousFilteredOut().count(), 0u);
    EXPECT_EQ(t.reasonText(0), QStringLiteral("全部反选-"));
    EXPECT_EQ(t.reasonText(t.rowCount() - 1), QStringLiteral("全部反选-"));
    // Twice: all alive again, each row carrying the prefix twice.
    act::invertAll(t);
    EXPECT_EQ(t.liveCount(), t.rowCount());
    EXPECT_EQ(t.reasonText(12345), QStringLiteral("全部反选-全部反选-"));
    EXPECT_EQ(t.filteredOut().words().back() & ~t.filteredOut().validMask(t.filteredOut().wordCount() - 1),
              0u);
}

TEST(CandidateActions, ResetLastAfterInvertAllReturnsOnlyTheRowsTheInversionKilled) {
    CandidateTable t = smallTable(10);
    filterRows(t, {1, 4});
    act::invertAll(t);
    EXPECT_EQ(bits(t.filteredOut()), (std::vector<bool>{1, 0, 1, 1, 0, 1, 1, 1, 1, 1}));
    act::resetLast(t);
    // Rows killed by the inversion return; the rows it brought back stay alive.
    EXPECT_EQ(t.liveCount(), 10u);
    EXPECT_EQ(t.reasonText(0), QString(""));
    EXPECT_EQ(t.reasonText(1), QStringLiteral("全部反选-") + kFilterReason) << "a live row keeps its reason";
    // A second press changes nothing.
    const auto before = reasons(t);
    act::resetLast(t);
    EXPECT_EQ(reasons(t), before);
}

TEST(CandidateActions, InvertLastTwiceFollowsTheStatements) {
    CandidateTable t = smallTable(8);
    filterRows(t, {0, 1});      // dead before the filter below
    filterRows(t, {2, 3, 4});  // the latest filter
    const auto pre = bits(t.previousFilteredOut());
    act::invertLast(t);
    // Rows live before the latest filter swap; rows dead before it stay dead.
    EXPECT_EQ(bits(t.filteredOut()), (std::vector<bool>{1, 1, 0, 0, 0, 1, 1, 1}));
    EXPECT_EQ(bits(t.scratchFilteredOut()), pre);
    EXPECT_EQ(t.reasonText(0), kFilterReason);
    EXPECT_EQ(t.reasonText(2), QStringLiteral("上次反选-") + kFilterReason);
    EXPECT_EQ(t.reasonText(5), QStringLiteral("上次反选-"));
    act::invertLast(t);
    // The second press swaps only the rows that were live after the latest filter: the rows it
    // had killed stay alive, and only the swapped rows carry the prefix twice.
    EXPECT_EQ(bits(t.filteredOut()), (std::vector<bool>{1, 1, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(t.reasonText(2), QStringLiteral("上次反选-") + kFilterReason);
    EXPECT_EQ(t.reasonText(5), QStringLiteral("上次反选-上次反选-"));
    EXPECT_EQ(t.reasonText(0), kFilterReason);
}

TEST(CandidateActions, ResetAllThenResetLastChangesNothingFurther) {
    CandidateTable t = smallTable(6);
    filterRows(t, {1});
    filterRows(t, {2, 3});
    act::resetAll(t);
    EXPECT_EQ(t.liveCount(), 6u);
    EXPECT_EQ(bits(t.previousFilteredOut()), (std::vector<bool>{0, 1, 0, 0, 0, 0}))
        << "reset all leaves preunslt";
    for (const QString& r : reasons(t)) EXPECT_EQ(r, QString(""));
    act::resetLast(t);
    EXPECT_EQ(t.liveCount(), 6u);
    EXPECT_EQ(bits(t.previousFilteredOut()), (std::vector<bool>{0, 1, 0, 0, 0, 0}));
}

TEST(CandidateKernels, SelectionsKillOnlyLiveRowsWithTheirReason) {
    CandidateTable t = smallTable(2 * 1024 * 1024);
    filterRows(t, {0});
    const BitVector odd =
        candidate_kernels::select(t, [&](uint64_t r) { return t.numberColumn(1)[r] % 2 == 1; });
    uint64_t expected = 0;
    for (uint64_t r = 1; r < t.rowCount(); ++r) expected += t.numberColumn(1)[r] % 2 == 1;
    candidate_kernels::beginFilter(t);
    const uint64_t killed = candidate_kernels::killSelectedWith(t, odd, [&](size_t r) {
        return t.reasons().intern(QStringLiteral("1位奇偶性") + QString::number(t.numberColumn(1)[r] % 10));
    });
    EXPECT_EQ(killed, expected);
    EXPECT_EQ(t.reasonText(0), kFilterReason) << "an already dead row keeps its reason";
    act::resetLast(t);
    EXPECT_EQ(t.deadCount(), 1u);
}

}  // namespace
