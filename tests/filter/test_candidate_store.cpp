#include "engine/candidate_kernels.h"
#include "engine/candidate_store.h"
#include "engine/candidate_writer.h"
#include "engine/record_image.h"
#include "filter/candidate_actions.h"
#include "filter/filter_workspace.h"
#include "workspace/sqlite_db.h"

#include "filter/record_fixture.h"

#include <QTemporaryDir>

#include <chrono>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

namespace {

namespace store = candidate_store;

void expectSameTable(const CandidateTable& a, const CandidateTable& b) { expectIdenticalTables(a, b); }

// A table after some work: a filter with a reason, an inversion, scratch values.
CandidateTable workedTable(uint64_t rows) {
    CandidateTable t = smallTable(rows);
    const BitVector sel = candidate_kernels::select(t, [&](uint64_t r) { return t.numberColumn(2)[r] > 20; });
    candidate_kernels::beginFilter(t);
    candidate_kernels::killSelected(t, sel, t.reasons().intern(QStringLiteral("各位数和大小:99 排除0~100")));
    candidate_actions::invertLast(t);
    for (uint64_t r = 0; r < rows; ++r) t.paramValues()[r] = static_cast<int16_t>(r % 300 - 100);
    t.failCount()[rows / 2] = 3;
    t.rowReasons()[1] = ReasonTable::kNull;
    return t;
}

class Counting : public EngineProgress {
public:
    explicit Counting(uint64_t cancelAfter = UINT64_MAX) : m_cancelAfter(cancelAfter) {}
    void progress(uint64_t done, uint64_t) override { m_done = done; }
    bool cancelled() const override { return m_done >= m_cancelAfter; }

private:
    uint64_t m_cancelAfter;
    uint64_t m_done = 0;
};

struct Db {
    QTemporaryDir dir;
    SqliteDb db;
    QString path() const { return dir.filePath(QStringLiteral("filnum.db")); }
    Db() { db.open(path(), true); }
};

TEST(CandidateStore, CloseAndReopenGivesTheSameFlagsAndReasons) {
    Db d;
    const CandidateTable t = workedTable(200000);
    ASSERT_EQ(store::save(d.db, t).outcome, store::Outcome::Done);
    // The record holds the schema's columns with the values of the statements.
    EXPECT_EQ(d.db.columns(QStringLiteral("zuhe")),
              schema::candidate(schema::CandidateKind::Combinations).columnNames());
    EXPECT_EQ(d.db.scalar(QStringLiteral("SELECT count(*) FROM zuhe WHERE unslt=1")).toULongLong(), t.deadCount());
    EXPECT_EQ(d.db.scalar(QStringLiteral("SELECT fliter FROM zuhe WHERE idx=1")).toString(), t.reasonText(0));
    EXPECT_TRUE(d.db.scalar(QStringLiteral("SELECT fliter FROM zuhe WHERE idx=2")).isNull());
    EXPECT_EQ(d.db.scalar(QStringLiteral("SELECT fig3 FROM zuhe WHERE idx=777")).toInt(),
              t.numberColumn(3)[776]);

    d.db.close();
    ASSERT_TRUE(d.db.open(d.path()));
    const store::LoadResult image = store::load(d.db, schema::CandidateKind::Combinations);
    ASSERT_TRUE(image.table);
    EXPECT_EQ(image.path, store::LoadPath::ColumnImage);
    expectSameTable(t, *image.table);
    const store::LoadResult rows = store::load(d.db, schema::CandidateKind::Combinations, nullptr, false);
    ASSERT_TRUE(rows.table);
    EXPECT_EQ(rows.path, store::LoadPath::Rows);
    expectSameTable(t, *rows.table);
}

TEST(CandidateStore, AChangeOfTheRowsByOtherCodeIsWhatTheNextLoadReads) {
    Db d;
    CandidateTable t = workedTable(5000);
    ASSERT_EQ(store::save(d.db, t).outcome, store::Outcome::Done);
    ASSERT_TRUE(d.db.exec(QStringLiteral("UPDATE zuhe SET unslt=1, fliter='手工删除' WHERE idx=10")));
    const store::LoadResult r = store::load(d.db, schema::CandidateKind::Combinations);
    ASSERT_TRUE(r.table);
    EXPECT_EQ(r.path, store::LoadPath::Rows) << "the trigger dropped the column image";
    EXPECT_TRUE(r.table->filteredOut().test(9));
    EXPECT_EQ(r.table->reasonText(9), QStringLiteral("手工删除"));
    // Saved again, the image is current once more.
    ASSERT_EQ(store::save(d.db, *r.table).outcome, store::Outcome::Done);
    EXPECT_EQ(store::load(d.db, schema::CandidateKind::Combinations).path, store::LoadPath::ColumnImage);
}

// A cancelled image write leaves the previous record; a cancelled derivation of the relational
// table leaves the new image with the previous rows behind it, brought up to date by the next
// reader.
TEST(CandidateStore, ACancelledWriteLeavesThePreviousRecord) {
    Db d;
    CandidateTable first = workedTable(300000);
    ASSERT_EQ(store::save(d.db, first).outcome, store::Outcome::Done);
    CandidateTable second = smallTable(400000);
    candidate_actions::invertAll(second);
    Counting cancelAtOnce(0);
    EXPECT_EQ(store::saveImage(d.db, second, &cancelAtOnce).outcome, store::Outcome::Cancelled);
    for (bool image : {true, false}) {
        const store::LoadResult r = store::load(d.db, schema::CandidateKind::Combinations, nullptr, image);
        ASSERT_TRUE(r.table);
        expectSameTable(first, *r.table);
    }
    EXPECT_NE(second.dirtyColumns(), 0u) << "nothing was written";

    Counting cancelHalfWay(200000);
    EXPECT_EQ(store::save(d.db, second, &cancelHalfWay).outcome, store::Outcome::Cancelled);
    EXPECT_FALSE(d.db.tableExists(QStringLiteral("zuhe__new")));
    EXPECT_EQ(d.db.scalar(QStringLiteral("SELECT count(*) FROM zuhe")).toULongLong(), 300000u);
    expectSameTable(second, *store::load(d.db, schema::CandidateKind::Combinations).table);
    ASSERT_EQ(store::ensureRelational(d.db, schema::CandidateKind::Combinations).outcome,
              store::Outcome::Done);
    EXPECT_EQ(d.db.scalar(QStringLiteral("SELECT count(*) FROM zuhe WHERE unslt=1")).toULongLong(), 400000u);
    expectSameTable(second, *store::load(d.db, schema::CandidateKind::Combinations, nullptr, false).table);
}

TEST(CandidateStore, SixNumberTableAndAnExplicitIdx) {
    Db d;
    CandidateTable t = smallTable(1000, schema::CandidateKind::SixNumbers);
    candidate_actions::invertAll(t);
    ASSERT_EQ(store::save(d.db, t).outcome, store::Outcome::Done);
    EXPECT_EQ(d.db.columns(QStringLiteral("zuhef")),
              schema::candidate(schema::CandidateKind::SixNumbers).columnNames());
    // Renumbered by other code (the template's numbering runs in the order of its rows).
    ASSERT_TRUE(d.db.exec(QStringLiteral("UPDATE zuhef SET idx = 1001 - idx")));
    const store::LoadResult r = store::load(d.db, schema::CandidateKind::SixNumbers);
    ASSERT_TRUE(r.table);
    EXPECT_EQ(r.table->idxAt(0), 1000);
    EXPECT_EQ(r.table->idxAt(999), 1);
    EXPECT_EQ(r.table->deadCount(), 1000u);
    ASSERT_EQ(store::save(d.db, *r.table).outcome, store::Outcome::Done);
    expectSameTable(*r.table, *store::load(d.db, schema::CandidateKind::SixNumbers).table);
}

TEST(FilterWorkspace, ActionsKeepTheRecordUpToDateBehindTheWindow) {
    Db d;
    {
        FilterWorkspace window(FilterSource::Expansion, d.path());
        window.openMade(std::make_unique<CandidateTable>(smallTable(300000)), 300000);
        EXPECT_EQ(window.caption(), QStringLiteral("复选组合情况排列总表（每页至多显示10000注，双击任意注可删除）   合计：300000注"));
        // Clicks faster than the writes: each cancels the running write and starts the next.
        EXPECT_TRUE(
            window.release(FilterWorkspace::Button::InvertAll, FilterWorkspace::Mouse::Left).ranAction);
        EXPECT_EQ(window.shownCount(), 0u);
        window.release(FilterWorkspace::Button::ResetLast, FilterWorkspace::Mouse::Left);
        window.release(FilterWorkspace::Button::InvertLast, FilterWorkspace::Mouse::Left);
        EXPECT_EQ(window.shownCount(), 0u);
        EXPECT_EQ(window.waitForWrite().outcome, store::Outcome::Done);
        EXPECT_FALSE(window.writePending());
    }
    // Reopened (mnuCallfd): GAganMb's caption counts its first query, idx 1..10000.
    FilterWorkspace reopened(FilterSource::StoredExpansion, d.path());
    ASSERT_TRUE(reopened.openStored(d.db));
    EXPECT_EQ(reopened.shownCount(), 10000u);
    EXPECT_EQ(reopened.table().deadCount(), 300000u);
    EXPECT_EQ(reopened.table().reasonText(0), QStringLiteral("上次反选-")) << "reset last wrote \"\" first";
    EXPECT_EQ(reopened.firstViewRows().size(), 10000u);
    EXPECT_TRUE(reopened.liveRows().empty());

    // The right button runs nothing: it sets intCmdnb and asks for mnuAdm.
    const auto right = reopened.release(FilterWorkspace::Button::InvertLast, FilterWorkspace::Mouse::Right);
    EXPECT_FALSE(right.ranAction);
    EXPECT_TRUE(right.popupRecordMenu);
    EXPECT_EQ(reopened.stepCode(), 1);
    reopened.release(FilterWorkspace::Button::InvertAll, FilterWorkspace::Mouse::Right);
    EXPECT_EQ(reopened.stepCode(), 2);
    EXPECT_FALSE(
        reopened.release(FilterWorkspace::Button::ResetAll, FilterWorkspace::Mouse::Right).popupRecordMenu);
    EXPECT_EQ(reopened.table().deadCount(), 300000u);
    reopened.release(FilterWorkspace::Button::ResetAll, FilterWorkspace::Mouse::Left);
    EXPECT_EQ(reopened.shownCount(), 300000u);
    EXPECT_EQ(reopened.liveRows(299990).size(), 10u);
}

// An edit holds the record's write stopped while the table changes and writes it once at its
// end, nested edits included; a pause without a running write leaves the record alone.
TEST(FilterWorkspace, EditsStopTheWriteAndWriteTheirChangeOnce) {
    Db d;
    FilterWorkspace window(FilterSource::Expansion, d.path());
    window.openMade(std::make_unique<CandidateTable>(smallTable(200000)), 200000);
    ASSERT_TRUE(window.writePending());
    {
        const FilterWorkspace::Edit outer = window.edit();
        EXPECT_FALSE(window.writePending()) << "the opening write is stopped";
        {
            const FilterWorkspace::Edit inner = window.edit();
            candidate_kernels::beginFilter(inner.table());
            inner.table().filteredOut().set(7);
        }
        EXPECT_FALSE(window.writePending()) << "an inner edit leaves the write to the outer one";
        EXPECT_EQ(window.shownCount(), 199999u) << "the count follows each edit";
        outer.table().filteredOut().set(8);
    }
    ASSERT_TRUE(window.writePending());
    {
        // A pause while the record is written stops the write and starts it again after.
        const FilterWorkspace::Edit paused = window.pauseWrite();
        EXPECT_FALSE(window.writePending());
    }
    EXPECT_TRUE(window.writePending());
    ASSERT_EQ(window.waitForWrite().outcome, store::Outcome::Done);
    { const FilterWorkspace::Edit idle = window.pauseWrite(); }
    EXPECT_FALSE(window.writePending()) << "nothing was written, nothing starts";

    // An edit that ends brings the record up to date.
    { window.edit().table().filteredOut().set(9); }
    EXPECT_EQ(window.shownCount(), 199997u);
    ASSERT_EQ(window.waitForWrite().outcome, store::Outcome::Done);
    const store::LoadResult stored = store::load(d.db, schema::CandidateKind::Combinations);
    ASSERT_TRUE(stored.table);
    EXPECT_EQ(stored.table->deadCount(), 3u);
    EXPECT_TRUE(stored.table->filteredOut().test(7) && stored.table->filteredOut().test(8) &&
                stored.table->filteredOut().test(9));
}

TEST(FilterWorkspace, KeepingInstancesOpenEmptyWithoutATable) {
    Db d;
    FilterWorkspace window(FilterSource::Imported, d.path());
    QString error;
    EXPECT_TRUE(window.openStored(d.db, nullptr, &error));
    EXPECT_EQ(window.shownCount(), 0u);
    EXPECT_EQ(window.caption(), filter_source::caption(0));
    EXPECT_EQ(filterSourceTraits(FilterSource::BankerExpansion).historyInputMessage,
              QStringLiteral("请按照号码排列依次输入数字"));
    EXPECT_EQ(filterSourceTraits(FilterSource::CombinationTemplate).table, schema::CandidateKind::Template);
}

}  // namespace

// Behind the window the writer derives the relational table of a small table once the image is
// written; a larger table keeps only its image until something reads its rows with SQL.
TEST(CandidateWriter, DerivesTheRelationalTableOfSmallTablesOnly) {
    const auto derivedVersion = [](SqliteDb& db) {
        const auto info = record_image::readInfo(db, QStringLiteral("zuhe"));
        return info ? std::optional(info->relationalVersion == info->imageVersion) : std::nullopt;
    };
    Db d;
    const CandidateTable small = workedTable(1000);
    {
        CandidateWriter writer(d.path(), 1000);
        writer.start(small);
        while (writer.busy()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_EQ(writer.wait().outcome, store::Outcome::Done);
    }
    EXPECT_EQ(derivedVersion(d.db), std::optional(true));
    EXPECT_EQ(d.db.scalar(QStringLiteral("SELECT count(*) FROM zuhe")).toULongLong(), 1000u);

    const CandidateTable large = workedTable(1001);
    {
        CandidateWriter writer(d.path(), 1000);
        writer.start(large);
        while (writer.busy()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_EQ(writer.wait().outcome, store::Outcome::Done);
    }
    EXPECT_EQ(derivedVersion(d.db), std::optional(false)) << "the image only";
    expectSameTable(large, *store::load(d.db, schema::CandidateKind::Combinations).table);
    ASSERT_EQ(store::ensureRelational(d.db, schema::CandidateKind::Combinations).outcome, store::Outcome::Done);
    EXPECT_EQ(derivedVersion(d.db), std::optional(true));
    EXPECT_EQ(d.db.scalar(QStringLiteral("SELECT count(*) FROM zuhe")).toULongLong(), 1001u);
    expectSameTable(large, *store::load(d.db, schema::CandidateKind::Combinations, nullptr, false).table);
}

// A load reads the image's columns one after the other; a writer on another connection that
// saves a different table meanwhile must not mix into it: the load gives the table as it was
// when it began, and the writer's table is there afterwards.
TEST(CandidateStore, ALoadNeverMixesInAWriteMadeMeanwhile) {
    Db d;
    const CandidateTable before = workedTable(300000);
    ASSERT_EQ(store::saveImage(d.db, before).outcome, store::Outcome::Done);
    CandidateTable after = smallTable(300000);
    candidate_actions::invertAll(after);
    after.rowReasons()[5] = after.reasons().intern(QStringLiteral("另一次保存"));

    class WriteDuringLoad : public EngineProgress {
    public:
        WriteDuringLoad(const QString& path, const CandidateTable& t) : m_path(path), m_table(t) {}
        ~WriteDuringLoad() override { join(); }
        void progress(uint64_t, uint64_t) override {
            if (m_writer.joinable()) return;
            m_writer = std::thread([this] {
                SqliteDb db;
                db.open(m_path);
                outcome = store::saveImage(db, m_table).outcome;
            });
            // Time for the writer to commit, were the load not holding the file still.
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
        }
        bool cancelled() const override { return false; }
        void join() {
            if (m_writer.joinable()) m_writer.join();
        }
        store::Outcome outcome = store::Outcome::Failed;

    private:
        QString m_path;
        const CandidateTable& m_table;
        std::thread m_writer;
    } writeDuringLoad(d.path(), after);

    const store::LoadResult loaded = store::load(d.db, schema::CandidateKind::Combinations, &writeDuringLoad);
    ASSERT_TRUE(loaded.table) << loaded.error.toStdString();
    expectSameTable(before, *loaded.table);
    writeDuringLoad.join();
    ASSERT_EQ(writeDuringLoad.outcome, store::Outcome::Done);
    expectSameTable(after, *store::load(d.db, schema::CandidateKind::Combinations).table);
}
