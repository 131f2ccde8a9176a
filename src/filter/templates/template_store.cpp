#include "filter/templates/template_store.h"

#include "filter/templates/filter_snapshot.h"
#include "workspace/sqlite_db.h"

#include <sqlite3.h>

namespace template_store {

namespace {

// The table's own spelling of each named column; a name it lacks is left out.
QStringList knownColumns(SqliteDb& db, const QString& table, const QVariantMap& values, QVariantList* bound) {
    const QStringList have = db.columns(table);
    QStringList names;
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        for (const QString& h : have) {
            if (h.compare(it.key(), Qt::CaseInsensitive) != 0) continue;
            names << h;
            *bound << it.value();
            break;
        }
    }
    return names;
}

}  // namespace

bool update(SqliteDb& db, const QString& table, qint64 rowid, const QVariantMap& values) {
    QVariantList bound;
    const QStringList names = knownColumns(db, table, values, &bound);
    if (names.isEmpty()) return true;
    QStringList sets;
    for (qsizetype i = 0; i < names.size(); ++i) sets << QStringLiteral("[%1]=?%2").arg(names[i]).arg(i + 1);
    bound << rowid;
    SqliteTransaction tx(db);
    if (!tx.active()) return false;
    const QString sql = QStringLiteral("UPDATE [%1] SET %2 WHERE rowid=?%3")
                            .arg(table, sets.join(QLatin1Char(',')))
                            .arg(bound.size());
    return db.exec(sql, bound) && tx.commit();
}

qint64 insert(SqliteDb& db, const QString& table, const QVariantMap& values) {
    QVariantList bound;
    const QStringList names = knownColumns(db, table, values, &bound);
    SqliteTransaction tx(db);
    if (!tx.active()) return -1;
    QString sql;
    if (names.isEmpty()) {
        sql = QStringLiteral("INSERT INTO [%1] DEFAULT VALUES").arg(table);
    } else {
        QStringList cols, marks;
        for (qsizetype i = 0; i < names.size(); ++i) {
            cols << QStringLiteral("[%1]").arg(names[i]);
            marks << QStringLiteral("?%1").arg(i + 1);
        }
        sql = QStringLiteral("INSERT INTO [%1](%2) VALUES(%3)")
                  .arg(table, cols.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
    }
    if (!db.exec(sql, bound)) return -1;
    const qint64 rowid = sqlite3_last_insert_rowid(db.handle());
    return tx.commit() ? rowid : -1;
}

std::vector<QVariantMap> select(SqliteDb& db, const QString& sql, const QVariantList& params) {
    std::vector<QVariantMap> out;
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db.handle(), sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK) {
        sqlite3_finalize(st);
        return out;
    }
    for (int i = 0; i < params.size(); ++i) {
        const QVariant& p = params[i];
        if (p.isNull())
            sqlite3_bind_null(st, i + 1);
        else if (p.typeId() == QMetaType::Double)
            sqlite3_bind_double(st, i + 1, p.toDouble());
        else if (p.typeId() == QMetaType::QString) {
            const QByteArray u = p.toString().toUtf8();
            sqlite3_bind_text(st, i + 1, u.constData(), static_cast<int>(u.size()), SQLITE_TRANSIENT);
        } else
            sqlite3_bind_int64(st, i + 1, p.toLongLong());
    }
    const int n = sqlite3_column_count(st);
    QStringList names;
    for (int c = 0; c < n; ++c) names << QString::fromUtf8(sqlite3_column_name(st, c));
    while (sqlite3_step(st) == SQLITE_ROW) {
        QVariantMap row;
        for (int c = 0; c < n; ++c) {
            QVariant v;
            switch (sqlite3_column_type(st, c)) {
                case SQLITE_INTEGER:
                    v = QVariant::fromValue(static_cast<qint64>(sqlite3_column_int64(st, c)));
                    break;
                case SQLITE_FLOAT:
                    v = sqlite3_column_double(st, c);
                    break;
                case SQLITE_NULL:
                    break;
                default:
                    v = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c)),
                                          sqlite3_column_bytes(st, c));
            }
            row.insert(names[c], v);
        }
        out.push_back(std::move(row));
    }
    sqlite3_finalize(st);
    return out;
}

}  // namespace template_store

TemplateStore::TemplateStore(SqliteDb& db) : m_db(db) { ensure(); }

bool TemplateStore::ensure() {
    if (!m_ready) m_ready = filter_snapshot::ensureColumns(m_db, kTable);
    return m_ready;
}

int TemplateStore::count() const {
    if (!m_db.tableExists(kTable)) return 0;
    return m_db.scalar(QStringLiteral("SELECT count(*) FROM [moban]")).toInt();
}

bool TemplateStore::addStep(int stepCode, int zoneScope, const QVariantMap& values) {
    if (!ensure()) return false;
    QVariantMap v;
    v.insert(QStringLiteral("Idx"), count() + 1);
    v.insert(QStringLiteral("intCmdnb"), stepCode);
    v.insert(QStringLiteral("intQianHou"), zoneScope);
    v.insert(values);
    return template_store::insert(m_db, kTable, v) >= 0;
}

bool TemplateStore::writeLast(const QVariantMap& values) {
    if (!ensure()) return false;
    const QVariant last = m_db.scalar(QStringLiteral("SELECT max(rowid) FROM [moban]"));
    if (last.isNull() || !last.isValid()) return false;
    return template_store::update(m_db, kTable, last.toLongLong(), values);
}

bool TemplateStore::deleteLast() {
    if (!ensure()) return false;
    SqliteTransaction tx(m_db);
    return tx.active() &&
           m_db.exec(QStringLiteral("DELETE FROM [moban] WHERE rowid=(SELECT max(rowid) FROM [moban])")) &&
           tx.commit();
}

bool TemplateStore::clear() {
    if (!ensure()) return false;
    SqliteTransaction tx(m_db);
    return tx.active() && m_db.exec(QStringLiteral("DELETE FROM [moban]")) && tx.commit();
}

std::vector<QVariantMap> TemplateStore::rows() const {
    if (!m_db.tableExists(kTable)) return {};
    return template_store::select(m_db, QStringLiteral("SELECT * FROM [moban] ORDER BY rowid"));
}

std::optional<QVariantMap> TemplateStore::byIdx(qint64 idx) const {
    if (!m_db.tableExists(kTable)) return std::nullopt;
    auto rows = template_store::select(
        m_db, QStringLiteral("SELECT * FROM [moban] WHERE [idx] =?1 ORDER BY rowid LIMIT 1"), {idx});
    if (rows.empty()) return std::nullopt;
    return rows.front();
}
