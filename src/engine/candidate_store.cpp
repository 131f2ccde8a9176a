#include "engine/candidate_store.h"

#include "engine/relational_record.h"
#include "engine/row_loader.h"
#include "workspace/saved_file.h"
#include "workspace/sqlite_db.h"

#include <sqlite3.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace candidate_store {

namespace {

using Kind = schema::CandidateKind;

SaveResult failed(SqliteDb& db, const QString& error = {}) {
    return {Outcome::Failed, error.isEmpty() ? QString::fromUtf8(sqlite3_errmsg(db.handle())) : error};
}

// A byte copy of a damaged file beside it, <file>.damaged-<time>, unless the newest such copy
// holds the same bytes: the next action may write a new record over the file, the copy keeps
// the evidence. Empty when no copy could be made.
QString keepAside(const QString& path) {
    const QFileInfo info(path);
    const QStringList earlier = info.dir().entryList({info.fileName() + QStringLiteral(".damaged-*")},
                                                     QDir::Files, QDir::Name | QDir::Reversed);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray bytes = file.readAll();
    if (!earlier.isEmpty()) {
        QFile last(info.dir().filePath(earlier.front()));
        if (last.size() == bytes.size() && last.open(QIODevice::ReadOnly) && last.readAll() == bytes)
            return last.fileName();
    }
    QSaveFile aside(path + QStringLiteral(".damaged-") +
                    QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
    if (!aside.open(QIODevice::WriteOnly) || aside.write(bytes) != bytes.size() || !saved_file::commit(aside)) return {};
    return aside.fileName();
}

QString damaged(SqliteDb& db, const QString& table, const QString& problem) {
    const QString aside = keepAside(db.path());
    const QString file = QDir::toNativeSeparators(db.path());
    if (aside.isEmpty())
        return QStringLiteral("%1: the stored table %2 is damaged (%3); the file is left as it is.")
            .arg(file, table, problem);
    return QStringLiteral("%1: the stored table %2 is damaged (%3); a copy of the file is kept as %4.")
        .arg(file, table, problem, QDir::toNativeSeparators(aside));
}

// Whether the relational rows are the record: other code made the table anew (no triggers) or
// changed its rows (sql_changed).
bool rowsAreTheRecord(SqliteDb& db, const QString& name, const std::optional<record_image::Info>& info) {
    if (!db.tableExists(name)) return false;
    return !info || info->sqlChanged || !relational_record::hasTriggers(db, name);
}

// Writes the image of a table read from its rows (or from the previous version's image), the
// relational table being current; a failure leaves the file as it was and the table dirty.
void convert(SqliteDb& db, const CandidateTable& t) {
    SqliteTransaction tx(db);
    if (!tx.active()) return;
    const QString name = t.tableName();
    if (record_image::write(db, t, nullptr, true) != record_image::Status::Done ||
        !relational_record::createTriggers(db, name) || !row_loader::dropLegacy(db, name) || !tx.commit())
        return;
    t.markClean(CandidateTable::AllColumns);
}

// Whether `t` is exactly what the stored image holds.
bool isStoredImage(const CandidateTable* t, const record_image::Info& info) {
    return t && t->dirtyColumns() == 0 && static_cast<int64_t>(t->recordToken()) == info.token &&
           t->rowCount() == info.rows && t->reasons().size() == info.reasons;
}

LoadResult loadRelational(SqliteDb& db, Kind kind, EngineProgress* progress, bool convertAfter,
                          ZoneLimits limits) {
    const QString name = schema::candidateTableName(kind);
    LoadResult r;
    if (convertAfter && !record_image::readInfo(db, name) && row_loader::legacyImageIsCurrent(db, name)) {
        r.table = row_loader::loadLegacyImage(db, kind);
        r.path = LoadPath::LegacyImage;
    }
    if (!r.table) {
        row_loader::Loaded rows = row_loader::loadRows(db, kind, progress);
        r.path = LoadPath::Rows;
        if (!rows.table) {
            r.error = rows.error;
            return r;
        }
        r.table = std::move(rows.table);
    }
    const QString problem = record_image::checkTable(*r.table, limits);
    if (!problem.isEmpty()) return {nullptr, r.path, damaged(db, name, problem)};
    if (convertAfter) convert(db, *r.table);
    return r;
}

}  // namespace

SaveResult saveImage(SqliteDb& db, const CandidateTable& table, EngineProgress* progress) {
    const uint32_t written = table.dirtyColumns();
    const QString name = table.tableName();
    SqliteTransaction tx(db);
    if (!tx.active()) return failed(db, db.lastError());
    switch (record_image::write(db, table, progress, false)) {
        case record_image::Status::Cancelled:
            return {Outcome::Cancelled, {}};
        case record_image::Status::Failed:
            return failed(db);
        case record_image::Status::Done:
            break;
    }
    // A relational table that other code made since is now behind the image: it gets the
    // triggers, so that it reads as derived (and stale) rather than as the record.
    if (db.tableExists(name) &&
        (!relational_record::createTriggers(db, name) || !row_loader::dropLegacy(db, name)))
        return failed(db);
    if (!tx.commit()) return failed(db, db.lastError());
    table.markClean(written);
    return {Outcome::Done, {}};
}

SaveResult ensureRelational(SqliteDb& db, Kind kind, EngineProgress* progress,
                            const CandidateTable* current) {
    const QString name = schema::candidateTableName(kind);
    SqliteTransaction tx(db);
    if (!tx.active()) return failed(db, db.lastError());
    const std::optional<record_image::Info> info = record_image::readInfo(db, name);
    if (!info || rowsAreTheRecord(db, name, info)) return {Outcome::Done, {}};
    if (db.tableExists(name) && info->relationalVersion == info->imageVersion) return {Outcome::Done, {}};
    std::unique_ptr<CandidateTable> read;
    if (!isStoredImage(current, *info)) {
        record_image::ReadResult r = record_image::read(db, kind, *info, {}, nullptr);
        if (!r.table) return failed(db, damaged(db, name, r.problem));
        read = std::move(r.table);
        current = read.get();
    }
    QString error;
    switch (relational_record::write(db, *current, progress, &error)) {
        case relational_record::Status::Cancelled:
            return {Outcome::Cancelled, {}};
        case relational_record::Status::Failed:
            return failed(db, error);
        case relational_record::Status::Done:
            break;
    }
    if (!db.exec(QStringLiteral(
                     "UPDATE [%1] SET [relational_version]=[image_version],[sql_changed]=0 WHERE [tbl]=?1")
                     .arg(record_image::kInfoTable),
                 {name}) ||
        !tx.commit())
        return failed(db, db.lastError());
    return {Outcome::Done, {}};
}

SaveResult save(SqliteDb& db, const CandidateTable& table, EngineProgress* progress) {
    const SaveResult image = saveImage(db, table, progress);
    if (image.outcome != Outcome::Done) return image;
    return ensureRelational(db, table.kind(), progress, &table);
}

LoadResult load(SqliteDb& db, Kind kind, EngineProgress* progress, bool allowImage, ZoneLimits limits) {
    // The image's columns are read one after another: all of them from one state of the file.
    const SqliteReadTransaction read(db);
    const QString name = schema::candidateTableName(kind);
    const std::optional<record_image::Info> info = record_image::readInfo(db, name);
    const bool rowsRecord = rowsAreTheRecord(db, name, info);
    if (!info && !db.tableExists(name))
        return {nullptr, LoadPath::None, QStringLiteral("no table %1").arg(name)};
    if (allowImage && info && !rowsRecord) {
        record_image::ReadResult r = record_image::read(db, kind, *info, limits, progress);
        if (r.table) {
            if (progress) progress->progress(r.table->rowCount(), r.table->rowCount());
            return {std::move(r.table), LoadPath::ColumnImage, {}};
        }
        // Nothing damaged and no table: the read was cancelled.
        return {nullptr, LoadPath::ColumnImage,
                r.problem.isEmpty() ? QString() : damaged(db, name, r.problem)};
    }
    if (!db.tableExists(name)) return {nullptr, LoadPath::None, QStringLiteral("no table %1").arg(name)};
    return loadRelational(db, kind, progress, allowImage, limits);
}

bool tableExists(SqliteDb& db, Kind kind) {
    const QString name = schema::candidateTableName(kind);
    return db.tableExists(name) || record_image::readInfo(db, name).has_value();
}

}  // namespace candidate_store
