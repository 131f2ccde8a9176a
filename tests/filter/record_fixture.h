#pragma once

// Tables with every stored column filled, and the comparison of two tables column by column.

#include "engine/candidate_kernels.h"
#include "engine/candidate_table.h"
#include "filter/candidate_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>

inline void expectIdenticalTables(const CandidateTable& a, const CandidateTable& b) {
    ASSERT_EQ(a.kind(), b.kind());
    ASSERT_EQ(a.rowCount(), b.rowCount());
    for (int k = 1; k <= a.numberCount(); ++k)
        EXPECT_TRUE(std::ranges::equal(a.numberColumn(k), b.numberColumn(k))) << "fig" << k;
    EXPECT_EQ(a.filteredOut(), b.filteredOut());
    EXPECT_EQ(a.previousFilteredOut(), b.previousFilteredOut());
    EXPECT_EQ(a.scratchFilteredOut(), b.scratchFilteredOut());
    EXPECT_EQ(a.groupMark(), b.groupMark());
    EXPECT_EQ(a.numberTextMode(), b.numberTextMode());
    EXPECT_EQ(a.backNumberTextFilled(), b.backNumberTextFilled());
    // An unallocated scratch column reads as zeros, as the rows give it.
    for (uint64_t r = 0; r < a.rowCount(); ++r) {
        ASSERT_EQ(a.reasonText(r), b.reasonText(r)) << r;
        ASSERT_EQ(a.reasons().isNull(a.rowReasons()[r]), b.reasons().isNull(b.rowReasons()[r])) << r;
        ASSERT_EQ(a.paramValueAt(r), b.paramValueAt(r)) << r;
        ASSERT_EQ(a.superCountAt(r), b.superCountAt(r)) << r;
        ASSERT_EQ(a.failCountAt(r), b.failCountAt(r)) << r;
        ASSERT_EQ(a.matchIssueAt(r), b.matchIssueAt(r)) << r;
        ASSERT_EQ(a.idxAt(r), b.idxAt(r)) << r;
    }
}

// Every column of the record in use: flags, reasons (null, empty, texts), the scratch columns
// and an explicit idx.
inline CandidateTable fullTable(uint64_t rows, schema::CandidateKind kind) {
    CandidateTable t = smallTable(rows, kind);
    const ReasonTable::Id kill = t.reasons().intern(QStringLiteral("和值:99 排除0~100"));
    const ReasonTable::Id other = t.reasons().intern(QStringLiteral("上次反选-和值"));
    for (uint64_t r = 0; r < rows; ++r) {
        if (r % 3 == 0) t.filteredOut().set(r);
        if (r % 5 == 0) t.previousFilteredOut().set(r);
        if (r % 7 == 0) t.scratchFilteredOut().set(r);
        if (r % 11 == 0) t.groupMark().set(r);
        t.rowReasons()[r] =
            r % 3 == 0 ? kill : (r % 4 == 0 ? other : (r % 2 ? ReasonTable::kEmpty : ReasonTable::kNull));
        t.paramValues()[r] = static_cast<int16_t>(static_cast<int64_t>(r % 300) - 100);
        t.superCount()[r] = static_cast<int16_t>(r % 9);
        t.failCount()[r] = static_cast<int16_t>(r % 4);
        t.matchIssue()[r] = static_cast<int32_t>(2007001 + r % 1000);
        t.explicitIdx()[r] = static_cast<int32_t>(rows - r);
    }
    t.setNumberTextMode(CandidateTable::NumberTextMode::Whole);
    t.setBackNumberTextFilled(true);
    return t;
}
