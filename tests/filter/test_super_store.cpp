// The forms of Numstring that the super filters leave go into filnum.db as the statements write
// them, and come back as the same form, by the column image and by the rows.
#include "engine/candidate_store.h"
#include "filter/super/super_kernels.h"
#include "super_fixture.h"

namespace {

using Mode = CandidateTable::NumberTextMode;

TEST(SuperStore, EveryNumstringFormRoundTripsThroughTheRecord) {
    QTemporaryDir dir;
    SqliteDb db;
    ASSERT_TRUE(db.open(dir.filePath(QStringLiteral("filnum.db")), true));
    const struct {
        Mode mode;
        const char* text;
    } forms[] = {{Mode::Front, "03 08 15 22 29"},
                 {Mode::Whole, "03 08 15 22 29 04 09"},
                 {Mode::Back, "04 09"},
                 {Mode::Marked, "(3!8@15#22$29%4^9)"}};
    for (const auto& f : forms) {
        auto t = ticketTable({{3, 8, 15, 22, 29, 4, 9}, {1, 2, 3, 4, 5, 6, 7}});
        t->setNumberTextMode(f.mode);
        t->setBackNumberTextFilled(f.mode == Mode::Back);
        ASSERT_EQ(candidate_store::save(db, *t).outcome, candidate_store::Outcome::Done);
        EXPECT_EQ(db.scalar(QStringLiteral("SELECT Numstring FROM zuhe WHERE idx=1")).toString(), QString::fromUtf8(f.text));
        for (bool image : {true, false}) {
            const auto loaded =
                candidate_store::load(db, schema::CandidateKind::Combinations, nullptr, image);
            ASSERT_TRUE(loaded.table);
            EXPECT_EQ(loaded.table->numberTextMode(), f.mode) << f.text << (image ? " image" : " rows");
            EXPECT_EQ(loaded.table->numberText(0), QString::fromUtf8(f.text));
        }
    }
}

TEST_F(SuperWindowTest, AReopenedWindowFiltersWithTheFormTheLastFilterLeft) {
    history = historyEndingWith({{1, 2, 3, 4, 5, 6, 9}});
    open({{9, 10, 11, 12, 13, 1, 2}, {1, 2, 3, 4, 5, 7, 8}});
    // 包含 in the back tab leaves the back numbers in Numstring.
    ws->zoneScope = 2;
    in.superCount = QStringLiteral("1");
    in.groupSize = 3;
    in.superNumbers = {0, 1};
    super->runWorker(SuperButton::InclusionKill, in, ZoneScope::Back);
    ASSERT_EQ(ws->waitForWrite().outcome, candidate_store::Outcome::Done);
    // Another window on the stored table: 历史同1号滤 in the back tab reads those two numbers,
    // so the draw's 09 is not found and only fig6 could count.
    FilterWorkspace again(FilterSource::StoredExpansion, filnumPath());
    ASSERT_TRUE(again.openStored(filterDb));
    EXPECT_EQ(again.table().numberTextMode(), CandidateTable::NumberTextMode::Back);
    again.zoneScope = 2;
    SuperFilter super2(again, history, 35, filterDb);
    SuperInputs in2;
    in2.superCount = QStringLiteral("1");
    super2.runWorker(SuperButton::HistoryLow, in2, ZoneScope::Back);
    EXPECT_EQ(again.table().liveCount(), 2u);
    EXPECT_EQ(again.table().paramValueAt(0), 0);
    again.waitForWrite();
}

}  // namespace
