#include "engine/candidate_store.h"
#include "engine/record_chunks.h"
#include "engine/record_image.h"
#include "engine/stored_columns.h"
#include "filter/candidate_actions.h"
#include "filter/filter_workspace.h"
#include "filter/param/param_filter.h"
#include "workspace/sqlite_db.h"

#include "filter/record_fixture.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>

namespace {

namespace store = candidate_store;
using Kind = schema::CandidateKind;

// Runs `sql` with ?1 bound to a blob and ?2.. to integers or texts (SqliteDb binds bytes as text).
bool execWithBlob(SqliteDb& db, const QString& sql, const QByteArray& blob, const QVariantList& rest) {
    stored_columns::Stmt st(db, sql);
    if (!st.ok()) return false;
    sqlite3_bind_blob(st.get(), 1, blob.constData(), static_cast<int>(blob.size()), SQLITE_TRANSIENT);
    for (int i = 0; i < rest.size(); ++i) {
        if (rest[i].typeId() == QMetaType::QString) {
            const QByteArray text = rest[i].toString().toUtf8();
            sqlite3_bind_text(st.get(), i + 2, text.constData(), static_cast<int>(text.size()),
                              SQLITE_TRANSIENT);
        } else {
            sqlite3_bind_int64(st.get(), i + 2, rest[i].toLongLong());
        }
    }
    return sqlite3_step(st.get()) == SQLITE_DONE;
}

QByteArray blob(SqliteDb& db, const QString& part) {
    stored_columns::Stmt st(
        db, QStringLiteral("SELECT data FROM sq_record_chunk WHERE part=?1 ORDER BY seq DESC LIMIT 1"));
    const QByteArray p = part.toUtf8();
    sqlite3_bind_text(st.get(), 1, p.constData(), static_cast<int>(p.size()), SQLITE_TRANSIENT);
    if (sqlite3_step(st.get()) != SQLITE_ROW) return {};
    return QByteArray(static_cast<const char*>(sqlite3_column_blob(st.get(), 0)),
                      sqlite3_column_bytes(st.get(), 0));
}

struct Db {
    QTemporaryDir dir;
    SqliteDb db;
    QString path() const { return dir.filePath(QStringLiteral("filnum.db")); }
    Db() { db.open(path(), true); }
    QByteArray fileHash() const {
        QFile f(path());
        f.open(QIODevice::ReadOnly);
        return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256);
    }
    // The rowid of every stored piece of one part: a rewritten piece gets a new one.
    QList<QVariantList> pieces(const QString& part) {
        return db.rows(QStringLiteral("SELECT seq, rowid FROM sq_record_chunk WHERE part=?1 ORDER BY seq"),
                       {part});
    }
};

TEST(RecordImage, EveryColumnAndEveryKindComesBackFromTheImageAndFromTheDerivedRows) {
    for (Kind kind : {Kind::Combinations, Kind::Wheel, Kind::Template, Kind::Imported, Kind::SixNumbers}) {
        SCOPED_TRACE(static_cast<int>(kind));
        Db d;
        const CandidateTable t = fullTable(3000, kind);
        ASSERT_EQ(store::saveImage(d.db, t).outcome, store::Outcome::Done);
        EXPECT_EQ(t.dirtyColumns(), 0u);
        EXPECT_FALSE(d.db.tableExists(t.tableName())) << "the relational table waits for a reader";
        EXPECT_TRUE(store::tableExists(d.db, kind));
        const store::LoadResult image = store::load(d.db, kind);
        ASSERT_TRUE(image.table) << image.error.toStdString();
        EXPECT_EQ(image.path, store::LoadPath::ColumnImage);
        expectIdenticalTables(t, *image.table);
        EXPECT_EQ(image.table->dirtyColumns(), 0u);

        ASSERT_EQ(store::ensureRelational(d.db, kind).outcome, store::Outcome::Done);
        EXPECT_EQ(d.db.columns(t.tableName()), schema::candidate(kind).columnNames());
        const store::LoadResult rows = store::load(d.db, kind, nullptr, false);
        ASSERT_TRUE(rows.table);
        EXPECT_EQ(rows.path, store::LoadPath::Rows);
        EXPECT_EQ(rows.table->deadCount(), t.deadCount());
        EXPECT_EQ(rows.table->reasonText(4), t.reasonText(4));
        if (kind != Kind::SixNumbers) {  // zuhef has no JSqihao
            EXPECT_EQ(rows.table->matchIssueAt(77), t.matchIssueAt(77));
        }
        EXPECT_EQ(rows.table->idxAt(0), t.idxAt(0));
    }
}

// A single filter gives the rows it kills texts with their values, and in the both-zones scope
// the integrated filter gives nearly every caught row a text of its own, with no entry per row
// or per value: the texts come back from the image and from the derived rows.
TEST(RecordImage, RowTextsOfTheIntegratedFilterComeBackFromTheImageAndTheDerivedRows) {
    Db d;
    CandidateTable t = fullTable(4000, Kind::Combinations);
    std::mt19937 random(7);
    for (uint64_t r = 0; r < t.rowCount(); ++r) {
        std::vector<uint8_t> front(35), back(12);
        std::iota(front.begin(), front.end(), uint8_t{1});
        std::iota(back.begin(), back.end(), uint8_t{1});
        std::shuffle(front.begin(), front.end(), random);
        std::shuffle(back.begin(), back.end(), random);
        std::sort(front.begin(), front.begin() + 5);
        std::sort(back.begin(), back.begin() + 2);
        for (int k = 1; k <= 7; ++k)
            t.numberColumn(k)[r] = k <= 5 ? front[static_cast<size_t>(k - 1)] : back[static_cast<size_t>(k - 6)];
    }
    ParamWindowState s = ParamWindowState::defaults();
    s.scope = ZoneScope::Both;
    s.integratedBox.fill(true);
    // Narrow ranges, so that most steps catch most rows with values of their own.
    for (auto& box : s.boxes) box[0] = box[1] = QStringLiteral("3");
    ParamContext ctx;
    for (int n = 1; n <= 35; ++n) ctx.omissionFront[static_cast<size_t>(n)] = static_cast<int16_t>(n % 9);
    const size_t before = t.reasons().size();
    // A single filter first: the rows it kills hold its formula, which the integrated filter's
    // reasons then follow.
    ParamWindowState single = ParamWindowState::defaults();
    single.box(ParamId::NumberSum) = {QStringLiteral("60"), QStringLiteral("120"), QString(), QString()};
    ASSERT_GT(param_filter::runSingle(t, ParamId::NumberSum, single, ctx).killed, 100u);
    param_filter::runIntegrated(t, s, ctx);
    QSet<QString> texts;
    for (uint64_t r = 0; r < t.rowCount(); ++r)
        if (t.failCountAt(r) > 0) texts.insert(t.reasonText(r));
    EXPECT_GT(texts.size(), 1000);
    EXPECT_LT(t.reasons().size(), before + 16) << "an entry per old reason, not per row";

    ASSERT_EQ(store::saveImage(d.db, t).outcome, store::Outcome::Done);
    const store::LoadResult image = store::load(d.db, Kind::Combinations);
    ASSERT_TRUE(image.table) << image.error.toStdString();
    expectIdenticalTables(t, *image.table);

    ASSERT_EQ(store::ensureRelational(d.db, Kind::Combinations).outcome, store::Outcome::Done);
    const store::LoadResult rows = store::load(d.db, Kind::Combinations, nullptr, false);
    ASSERT_TRUE(rows.table);
    for (uint64_t r = 0; r < t.rowCount(); ++r) ASSERT_EQ(rows.table->reasonText(r), t.reasonText(r)) << r;
}

// Several actions, each writing only what it changed; the reopened table is the one in memory.
TEST(RecordImage, ActionsWriteOnlyTheirColumnsAndNewReasons) {
    Db d;
    CandidateTable t = smallTable(2 * record_chunks::kRowsPerChunk + 5);
    ASSERT_EQ(store::saveImage(d.db, t).outcome, store::Outcome::Done);
    const auto figs = d.pieces(QStringLiteral("fig1"));
    ASSERT_EQ(figs.size(), 3);

    // A filter on the rows of the last piece only.
    const BitVector sel =
        candidate_kernels::select(t, [](uint64_t r) { return r > 2 * record_chunks::kRowsPerChunk; });
    candidate_kernels::beginFilter(t);
    candidate_kernels::killSelected(t, sel, t.reasons().intern(QStringLiteral("和值:1 排除")));
    ASSERT_EQ(store::saveImage(d.db, t).outcome, store::Outcome::Done);
    EXPECT_EQ(d.pieces(QStringLiteral("fig1")), figs) << "the numbers are written once";
    const auto flags = d.pieces(QStringLiteral("unslt"));
    candidate_actions::invertLast(t);
    candidate_actions::resetLast(t);
    ASSERT_EQ(store::saveImage(d.db, t).outcome, store::Outcome::Done);
    const auto after = d.pieces(QStringLiteral("unslt"));
    EXPECT_EQ(after[0], flags[0]) << "an unchanged piece stays";
    EXPECT_NE(after[2], flags[2]);
    // One piece of reason entries per write that added some, keyed by its first id.
    const auto reasonPieces =
        d.db.rows(QStringLiteral("SELECT seq FROM sq_record_chunk WHERE part='reasons' ORDER BY seq"));
    ASSERT_EQ(reasonPieces.size(), 2);
    EXPECT_EQ(reasonPieces[0].value(0).toInt(), 2);
    EXPECT_EQ(reasonPieces[1].value(0).toInt(), 3);

    d.db.close();
    ASSERT_TRUE(d.db.open(d.path()));
    const store::LoadResult r = store::load(d.db, Kind::Combinations);
    ASSERT_TRUE(r.table);
    expectIdenticalTables(t, *r.table);
    // The reopened table goes on from its record: its next write adds to the same image.
    candidate_actions::invertAll(*r.table);
    ASSERT_EQ(store::saveImage(d.db, *r.table).outcome, store::Outcome::Done);
    EXPECT_EQ(d.pieces(QStringLiteral("fig1")), figs);
    expectIdenticalTables(*r.table, *store::load(d.db, Kind::Combinations).table);

    // Another table of the kind replaces the image whole.
    const CandidateTable other = smallTable(10);
    ASSERT_EQ(store::saveImage(d.db, other).outcome, store::Outcome::Done);
    EXPECT_EQ(d.db.scalar(QStringLiteral("SELECT count(*) FROM sq_record_chunk WHERE part='fig1'")).toInt(),
              1);
    expectIdenticalTables(other, *store::load(d.db, Kind::Combinations).table);
}

// What the previous version wrote: the rows, and beside them its own image guarded by triggers.
void writeLegacyImage(SqliteDb& db, const CandidateTable& t) {
    ASSERT_TRUE(db.exec(
        QStringLiteral("CREATE TABLE sq_candidate_cache(tbl TEXT, part TEXT, seq INTEGER, data BLOB)")));
    const auto put = [&](const QString& part, const QByteArray& bytes) {
        ASSERT_TRUE(execWithBlob(db, QStringLiteral("INSERT INTO sq_candidate_cache VALUES('zuhe',?2,0,?1)"),
                                 bytes, {part}));
    };
    const auto raw = [](const auto span) {
        return QByteArray(reinterpret_cast<const char*>(span.data()),
                          static_cast<qsizetype>(span.size_bytes()));
    };
    put(QStringLiteral("meta"),
        QStringLiteral("%1 0 0 0 %2 0 0 0 0").arg(t.rowCount()).arg(t.hasParamValues() ? 1 : 0).toLatin1());
    put(QStringLiteral("reasons"), QByteArray(2, '\0') + t.reasons().image());
    for (int k = 1; k <= 7; ++k) put(QStringLiteral("fig%1").arg(k), raw(t.numberColumn(k)));
    put(QStringLiteral("unslt"), raw(t.filteredOut().words()));
    put(QStringLiteral("preunslt"), raw(t.previousFilteredOut().words()));
    put(QStringLiteral("tmpunslt"), raw(t.scratchFilteredOut().words()));
    put(QStringLiteral("gpslt"), raw(t.groupMark().words()));
    put(QStringLiteral("fliter"), raw(t.rowReasons()));
    put(QStringLiteral("canshu"), raw(t.paramValues()));
    for (const char* ev : {"INSERT", "UPDATE", "DELETE"})
        ASSERT_TRUE(db.exec(QStringLiteral("CREATE TRIGGER sq_image_zuhe_%1 AFTER %1 ON zuhe BEGIN "
                                           "DELETE FROM sq_candidate_cache WHERE tbl='zuhe'; END")
                                .arg(QLatin1String(ev))));
}

TEST(RecordImage, AFileOfThePreviousVersionIsConvertedOnce) {
    CandidateTable t = smallTable(5000);
    for (uint64_t r = 0; r < t.rowCount(); r += 4) t.filteredOut().set(r);
    t.rowReasons()[0] = t.reasons().intern(QStringLiteral("旧的缘故"));
    t.rowReasons()[1] = ReasonTable::kEmpty;
    for (uint64_t r = 0; r < t.rowCount(); ++r) t.paramValues()[r] = static_cast<int16_t>(r % 50);
    for (bool withImage : {true, false}) {
        SCOPED_TRACE(withImage);
        Db d;
        // The rows as the previous version wrote them (the relational table without triggers).
        ASSERT_EQ(store::save(d.db, t).outcome, store::Outcome::Done);
        ASSERT_TRUE(d.db.exec(
            QStringLiteral("DROP TABLE sq_record; DROP TABLE sq_record_chunk; "
                           "DROP TRIGGER sq_record_zuhe_INSERT; DROP TRIGGER sq_record_zuhe_UPDATE; "
                           "DROP TRIGGER sq_record_zuhe_DELETE")));
        if (withImage) writeLegacyImage(d.db, t);
        const store::LoadResult first = store::load(d.db, Kind::Combinations);
        ASSERT_TRUE(first.table) << first.error.toStdString();
        EXPECT_EQ(first.path, withImage ? store::LoadPath::LegacyImage : store::LoadPath::Rows);
        expectIdenticalTables(t, *first.table);
        EXPECT_FALSE(d.db.tableExists(QStringLiteral("sq_candidate_cache")));
        EXPECT_EQ(
            d.db.scalar(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name LIKE 'sq_image_%'"))
                .toInt(),
            0);
        const store::LoadResult again = store::load(d.db, Kind::Combinations);
        EXPECT_EQ(again.path, store::LoadPath::ColumnImage);
        expectIdenticalTables(t, *again.table);
        // The rows stay current: nothing to derive.
        EXPECT_EQ(
            d.db.scalar(QStringLiteral("SELECT relational_version = image_version FROM sq_record")).toInt(),
            1);
    }
}

// A change of the rows by other code makes them the record again; an empty text read from the
// rows is the empty reason, not the null.
TEST(RecordImage, RowsChangedBySqlAreReadAndConverted) {
    Db d;
    CandidateTable t = smallTable(3000);
    ASSERT_EQ(store::save(d.db, t).outcome, store::Outcome::Done);
    ASSERT_TRUE(d.db.exec(QStringLiteral("UPDATE zuhe SET unslt=1, fliter='' WHERE idx<=2")));
    const store::LoadResult r = store::load(d.db, Kind::Combinations);
    ASSERT_TRUE(r.table);
    EXPECT_EQ(r.path, store::LoadPath::Rows);
    EXPECT_EQ(r.table->rowReasons()[0], ReasonTable::kEmpty);
    EXPECT_EQ(r.table->rowReasons()[1], ReasonTable::kEmpty);
    EXPECT_TRUE(r.table->reasons().isNull(r.table->rowReasons()[2]));
    EXPECT_EQ(r.table->deadCount(), 2u);
    EXPECT_EQ(store::load(d.db, Kind::Combinations).path, store::LoadPath::ColumnImage);
    // A table made anew by other code (the template's rows are rebuilt by SQL) is read likewise.
    ASSERT_TRUE(d.db.exec(
        QStringLiteral("DROP TABLE zuhe; CREATE TABLE zuhe(fig1 INTEGER, fig2 INTEGER, fig3 INTEGER, "
                       "fig4 INTEGER, fig5 INTEGER, fig6 INTEGER, fig7 INTEGER, idx INTEGER, unslt BIT); "
                       "INSERT INTO zuhe VALUES(1,2,3,4,5,6,7,1,0)")));
    const store::LoadResult made = store::load(d.db, Kind::Combinations);
    ASSERT_TRUE(made.table);
    EXPECT_EQ(made.table->rowCount(), 1u);
}

// Damage of every kind: a message naming the file, no table, the file unchanged.
struct Damage {
    const char* what;
    QString part;
    std::function<void(QByteArray& raw, QByteArray& packed, bool& rehash)> edit;
};

void damage(SqliteDb& db, const Damage& dmg) {
    const QList<QVariantList> rows = db.rows(
        QStringLiteral("SELECT seq, raw, hash FROM sq_record_chunk WHERE part=?1 ORDER BY seq DESC LIMIT 1"),
        {dmg.part});
    ASSERT_EQ(rows.size(), 1);
    QByteArray raw(rows[0].value(1).toInt(), Qt::Uninitialized);
    QByteArray packed = blob(db, dmg.part);
    ASSERT_TRUE(record_chunks::decompressInto(packed, raw.data(), static_cast<size_t>(raw.size()),
                                              rows[0].value(2).toLongLong()));
    bool rehash = true;
    dmg.edit(raw, packed, rehash);
    const qint64 hash = rehash ? record_chunks::hash(raw.constData(), static_cast<size_t>(raw.size()))
                               : rows[0].value(2).toLongLong();
    ASSERT_TRUE(execWithBlob(
        db, QStringLiteral("UPDATE sq_record_chunk SET data=?1, hash=?2 WHERE part=?3 AND seq=?4"), packed,
        {hash, dmg.part, rows[0].value(0)}));
}

TEST(RecordImage, ADamagedImageGivesAMessageAndChangesNothing) {
    const auto repack = [](QByteArray& raw, QByteArray& packed) {
        packed = record_chunks::compress(raw.constData(), static_cast<size_t>(raw.size()));
    };
    const std::vector<Damage> damages = {
        {"a flag past the last row", QStringLiteral("unslt"),
         [&](QByteArray& raw, QByteArray& packed, bool&) {
             raw[raw.size() - 1] = '\x80';
             repack(raw, packed);
         }},
        {"a number outside the zone", QStringLiteral("fig6"),
         [&](QByteArray& raw, QByteArray& packed, bool&) {
             raw[3] = 25;
             repack(raw, packed);
         }},
        {"a reason id out of range", QStringLiteral("fliter"),
         [&](QByteArray& raw, QByteArray& packed, bool&) {
             raw[9] = 99;
             repack(raw, packed);
         }},
        {"a truncated piece", QStringLiteral("fig2"),
         [](QByteArray&, QByteArray& packed, bool& rehash) {
             packed.chop(packed.size() / 2);
             rehash = false;
         }},
        {"a corrupt piece", QStringLiteral("preunslt"),
         [](QByteArray&, QByteArray& packed, bool& rehash) {
             packed[packed.size() / 2] = static_cast<char>(packed[packed.size() / 2] ^ 0x5a);
             rehash = false;
         }},
        {"a changed byte behind a valid stream", QStringLiteral("canshu"),
         [&](QByteArray& raw, QByteArray& packed, bool& rehash) {
             raw[0] = static_cast<char>(raw[0] + 1);
             repack(raw, packed);
             rehash = false;
         }},
        {"reason entries that repeat", QStringLiteral("reasons"),
         [&](QByteArray& raw, QByteArray& packed, bool&) {
             raw += raw;
             repack(raw, packed);
         }},
    };
    for (const Damage& dmg : damages) {
        SCOPED_TRACE(dmg.what);
        Db d;
        CandidateTable t = fullTable(1000, Kind::Combinations);
        ASSERT_EQ(store::saveImage(d.db, t).outcome, store::Outcome::Done);
        damage(d.db, dmg);
        if (dmg.part == QLatin1String("reasons")) {
            ASSERT_TRUE(
                d.db.exec(QStringLiteral("UPDATE sq_record_chunk SET raw=raw*2 WHERE part='reasons'")));
        }
        const QByteArray before = d.fileHash();
        const store::LoadResult r = store::load(d.db, Kind::Combinations);
        EXPECT_FALSE(r.table);
        EXPECT_TRUE(r.error.contains(d.path())) << r.error.toStdString();
        EXPECT_TRUE(r.error.contains(QStringLiteral("damaged"))) << r.error.toStdString();
        FilterWorkspace window(FilterSource::StoredExpansion, d.path());
        QString error;
        EXPECT_FALSE(window.openStored(d.db, nullptr, &error));
        EXPECT_EQ(error, r.error);
        EXPECT_NE(store::ensureRelational(d.db, Kind::Combinations).outcome, store::Outcome::Done);
        EXPECT_EQ(d.fileHash(), before);
    }
}

TEST(RecordImage, TheWorkspaceZonesBoundTheNumbers) {
    Db d;
    const CandidateTable t = smallTable(100);  // back numbers up to 12
    ASSERT_EQ(store::saveImage(d.db, t).outcome, store::Outcome::Done);
    EXPECT_TRUE(store::load(d.db, Kind::Combinations, nullptr, true, {35, 12}).table);
    const store::LoadResult narrow = store::load(d.db, Kind::Combinations, nullptr, true, {35, 11});
    EXPECT_FALSE(narrow.table);
    EXPECT_TRUE(narrow.error.contains(QStringLiteral("fig6"))) << narrow.error.toStdString();
}

}  // namespace
