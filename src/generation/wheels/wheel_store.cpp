#include "generation/wheels/wheel_store.h"

#include "workspace/sqlite_db.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

namespace wheel_store {

namespace {

constexpr auto kStampTable = "WheelBundle";

QString bundledFile(const wheels::WheelTable& table) {
    return QStringLiteral(":/wheels/%1/%2.txt").arg(wheels::familyWord(table.family), table.name);
}

QByteArray bundledText(const wheels::WheelTable& table) {
    QFile f(bundledFile(table));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// What a family's database should hold: a digest of its bundled wheels.
QString bundleStamp(wheels::Family family) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const wheels::WheelTable& t : wheels::catalogue()) {
        if (t.family != family) continue;
        hash.addData(t.name.toUtf8());
        hash.addData(bundledText(t));
    }
    return QString::fromLatin1(hash.result().toHex());
}

QString storedStamp(const QString& path) {
    if (!QFile::exists(path)) return {};
    SqliteDb db;
    if (!db.open(path) || !db.tableExists(QString::fromLatin1(kStampTable))) return {};
    return db.scalar(QStringLiteral("SELECT stamp FROM [%1]").arg(QString::fromLatin1(kStampTable)))
        .toString();
}

bool writeTable(SqliteDb& db, const wheels::WheelTable& table, const Rows& rows) {
    const int width = table.ticketSize();
    QStringList columns, marks;
    for (int k = 1; k <= width; ++k) {
        columns << QStringLiteral("[fig%1] integer").arg(k);
        marks << QStringLiteral("?");
    }
    if (!db.exec(QStringLiteral("CREATE TABLE [%1](%2)").arg(table.name, columns.join(QLatin1Char(',')))))
        return false;
    SqliteStatement insert(
        db, QStringLiteral("INSERT INTO [%1] VALUES(%2)").arg(table.name, marks.join(QLatin1Char(','))));
    if (!insert.ok()) return false;
    for (const std::vector<int>& row : rows) {
        for (int k = 0; k < width; ++k) insert.bind(k + 1, qint64{row[static_cast<size_t>(k)]});
        if (!insert.run()) return false;
    }
    return true;
}

// Writes the family's database beside its place and moves it there when complete, so that a
// failed write leaves the former database.
bool writeDatabase(const QString& path, wheels::Family family, const QString& stamp, QString* error) {
    const QString partial = path + QStringLiteral(".part");
    QFile::remove(partial);
    {
        SqliteDb db;
        bool ok = db.open(partial, true) && db.begin();
        for (const wheels::WheelTable& t : wheels::catalogue()) {
            if (!ok) break;
            if (t.family != family) continue;
            const std::vector<wheels::Block> design = bundledDesign(t);
            if (!design.empty()) ok = writeTable(db, t, wheels::tableRows(t, design));
        }
        ok = ok &&
             db.exec(QStringLiteral("CREATE TABLE [%1](stamp text)").arg(QString::fromLatin1(kStampTable))) &&
             db.exec(QStringLiteral("INSERT INTO [%1] VALUES(?)").arg(QString::fromLatin1(kStampTable)),
                     {stamp}) &&
             db.commit();
        if (!ok) {
            if (error) *error = QStringLiteral("%1: %2").arg(partial, db.lastError());
            db.close();
            QFile::remove(partial);
            return false;
        }
    }
    QFile::remove(path);
    if (!QFile::rename(partial, path)) {
        if (error) *error = QStringLiteral("cannot write %1").arg(path);
        return false;
    }
    return true;
}

}  // namespace

QString databasePath(const QString& programFolder, wheels::Family family) {
    return QDir(programFolder).filePath(wheels::databaseName(family) + QStringLiteral(".db"));
}

std::vector<wheels::Block> bundledDesign(const wheels::WheelTable& table) {
    if (table.single() || table.full()) return wheels::builtDesign(table);
    const QByteArray text = bundledText(table);
    if (text.isEmpty()) return {};
    const wheels::ReadResult read = wheels::fromText(QString::fromUtf8(text), table.design);
    return read.error.isEmpty() ? read.blocks : std::vector<wheels::Block>{};
}

bool ensureDatabases(const QString& programFolder, QString* error) {
    bool ok = true;
    for (wheels::Family f :
         {wheels::Family::Basic, wheels::Family::Super, wheels::Family::Banker, wheels::Family::Six}) {
        const QString path = databasePath(programFolder, f);
        const QString stamp = bundleStamp(f);
        if (storedStamp(path) == stamp) continue;
        ok = writeDatabase(path, f, stamp, error) && ok;
    }
    return ok;
}

std::optional<Rows> readTable(const QString& databasePath, const QString& table) {
    if (!QFile::exists(databasePath)) return std::nullopt;
    SqliteDb db;
    if (!db.open(databasePath) || !db.tableExists(table)) return std::nullopt;
    const QStringList columns = db.columns(table);
    int width = 0;
    while (columns.contains(QStringLiteral("fig%1").arg(width + 1), Qt::CaseInsensitive)) ++width;
    if (width == 0) return std::nullopt;
    QStringList figs;
    for (int k = 1; k <= width; ++k) figs << QStringLiteral("[fig%1]").arg(k);
    Rows rows;
    SqliteStatement select(
        db, QStringLiteral("SELECT %1 FROM [%2] ORDER BY rowid").arg(figs.join(QLatin1Char(',')), table));
    if (!select.ok()) return std::nullopt;
    while (select.next()) {
        std::vector<int> row(static_cast<size_t>(width));
        for (int k = 0; k < width; ++k) row[static_cast<size_t>(k)] = select.integer(k);
        rows.push_back(std::move(row));
    }
    return rows;
}

std::optional<int> rowCount(const QString& databasePath, const QString& table) {
    if (!QFile::exists(databasePath)) return std::nullopt;
    SqliteDb db;
    if (!db.open(databasePath) || !db.tableExists(table)) return std::nullopt;
    return db.scalar(QStringLiteral("SELECT COUNT(*) FROM [%1]").arg(table)).toInt();
}

}  // namespace wheel_store
