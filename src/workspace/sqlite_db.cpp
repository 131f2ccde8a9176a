#include "workspace/sqlite_db.h"

#include <sqlite3.h>

#include <utility>

SqliteDb::~SqliteDb() { close(); }

SqliteDb::SqliteDb(SqliteDb&& other) noexcept
    : m_db(std::exchange(other.m_db, nullptr)), m_path(std::move(other.m_path)) {}

SqliteDb& SqliteDb::operator=(SqliteDb&& other) noexcept {
    if (this != &other) {
        close();
        m_db = std::exchange(other.m_db, nullptr);
        m_path = std::move(other.m_path);
    }
    return *this;
}

bool SqliteDb::open(const QString& path, bool create) {
    close();
    int flags = SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0);
    sqlite3* db = nullptr;
    int rc = sqlite3_open_v2(path.toUtf8().constData(), &db, flags, nullptr);
    if (rc != SQLITE_OK) {
        m_lastError = db ? QString::fromUtf8(sqlite3_errmsg(db)) : QStringLiteral("out of memory");
        sqlite3_close(db);
        return false;
    }
    m_db = db;
    m_path = path;
    sqlite3_busy_timeout(m_db, 5000);
    // A file that is not a database fails here rather than at the first real query.
    if (!scalar(QStringLiteral("SELECT count(*) FROM sqlite_master")).isValid()) {
        QString err = m_lastError;
        close();
        m_lastError = err;
        return false;
    }
    return true;
}

void SqliteDb::close() {
    if (m_db) sqlite3_close_v2(m_db);
    m_db = nullptr;
}

bool SqliteDb::exec(const QString& sql) {
    if (!m_db) return false;
    char* err = nullptr;
    int rc = sqlite3_exec(m_db, sql.toUtf8().constData(), nullptr, nullptr, &err);
    if (rc != SQLITE_OK) {
        m_lastError = QString::fromUtf8(err ? err : sqlite3_errstr(rc));
        sqlite3_free(err);
        return false;
    }
    return true;
}

bool SqliteDb::exec(const QString& sql, const QVariantList& params) {
    SqliteStatement st(*this, sql);
    if (!st.ok()) return false;
    for (int i = 0; i < params.size(); ++i) st.bindVariant(i + 1, params[i]);
    return st.run();
}

QVariant SqliteDb::scalar(const QString& sql, const QVariantList& params) {
    SqliteStatement st(*this, sql);
    if (!st.ok()) return {};
    for (int i = 0; i < params.size(); ++i) st.bindVariant(i + 1, params[i]);
    if (!st.next()) return {};
    return st.value(0);
}

QList<QVariantList> SqliteDb::rows(const QString& sql, const QVariantList& params) {
    QList<QVariantList> out;
    SqliteStatement st(*this, sql);
    if (!st.ok()) return out;
    for (int i = 0; i < params.size(); ++i) st.bindVariant(i + 1, params[i]);
    while (st.next()) {
        QVariantList row;
        for (int c = 0; c < st.columnCount(); ++c) row << st.value(c);
        out << row;
    }
    return out;
}

bool SqliteDb::tableExists(const QString& table) {
    return scalar(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type='table' AND name=?1 COLLATE NOCASE"),
                  {table})
               .toInt() > 0;
}

QStringList SqliteDb::columns(const QString& table) {
    QStringList out;
    for (const QVariantList& r : rows(QStringLiteral("SELECT name FROM pragma_table_info(?1)"), {table}))
        out << r.value(0).toString();
    return out;
}

SqliteStatement::SqliteStatement(SqliteDb& db, const QString& sql) : m_db(db) {
    if (!db.handle()) return;
    QByteArray utf8 = sql.toUtf8();
    if (sqlite3_prepare_v2(db.handle(), utf8.constData(), static_cast<int>(utf8.size()), &m_stmt, nullptr) !=
        SQLITE_OK) {
        m_db.m_lastError = QString::fromUtf8(sqlite3_errmsg(db.handle()));
        m_stmt = nullptr;
    }
}

SqliteStatement::~SqliteStatement() { sqlite3_finalize(m_stmt); }

void SqliteStatement::bind(int index, qint64 value) { sqlite3_bind_int64(m_stmt, index, value); }
void SqliteStatement::bind(int index, double value) { sqlite3_bind_double(m_stmt, index, value); }
void SqliteStatement::bind(int index, const QString& value) {
    QByteArray utf8 = value.toUtf8();
    sqlite3_bind_text(m_stmt, index, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
}
void SqliteStatement::bindNull(int index) { sqlite3_bind_null(m_stmt, index); }

void SqliteStatement::bindVariant(int index, const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::UnknownType: bindNull(index); break;
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Char:
        case QMetaType::UChar: bind(index, value.toLongLong()); break;
        case QMetaType::Double:
        case QMetaType::Float: bind(index, value.toDouble()); break;
        default: bind(index, value.toString()); break;
    }
}

bool SqliteStatement::next() {
    if (!m_stmt) return false;
    int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_ROW) return true;
    if (rc != SQLITE_DONE) m_db.m_lastError = QString::fromUtf8(sqlite3_errmsg(m_db.handle()));
    return false;
}

bool SqliteStatement::run() {
    if (!m_stmt) return false;
    int rc = sqlite3_step(m_stmt);
    if (rc != SQLITE_DONE && rc != SQLITE_ROW) m_db.m_lastError = QString::fromUtf8(sqlite3_errmsg(m_db.handle()));
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
    return rc == SQLITE_DONE || rc == SQLITE_ROW;
}

void SqliteStatement::reset() {
    if (!m_stmt) return;
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
}

int SqliteStatement::columnCount() const { return m_stmt ? sqlite3_column_count(m_stmt) : 0; }
qint64 SqliteStatement::int64(int col) const { return sqlite3_column_int64(m_stmt, col); }
double SqliteStatement::real(int col) const { return sqlite3_column_double(m_stmt, col); }

QString SqliteStatement::text(int col) const {
    const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(m_stmt, col));
    return p ? QString::fromUtf8(p, sqlite3_column_bytes(m_stmt, col)) : QString();
}

QVariant SqliteStatement::value(int col) const {
    switch (sqlite3_column_type(m_stmt, col)) {
        case SQLITE_INTEGER: return QVariant::fromValue(int64(col));
        case SQLITE_FLOAT: return real(col);
        case SQLITE_NULL: return {};
        default: return text(col);
    }
}

bool SqliteDb::inTransaction() const { return m_db && sqlite3_get_autocommit(m_db) == 0; }

namespace {
const QString kSavepoint = QStringLiteral("sq_nested");
}  // namespace

SqliteAttachment::SqliteAttachment(SqliteDb& db, const QString& path, const QString& schema)
    : m_db(db),
      m_schema(schema),
      m_ok(db.exec(QStringLiteral("ATTACH DATABASE ?1 AS [%1]").arg(schema), {path})) {}

SqliteAttachment::~SqliteAttachment() {
    if (m_ok) m_db.exec(QStringLiteral("DETACH DATABASE [%1]").arg(m_schema));
}

SqliteTransaction::SqliteTransaction(SqliteDb& db)
    : m_db(db),
      m_nested(db.inTransaction()),
      m_active(m_nested ? db.exec(QStringLiteral("SAVEPOINT ") + kSavepoint) : db.begin()) {}

SqliteTransaction::~SqliteTransaction() {
    if (!m_active) return;
    if (!m_nested) {
        m_db.rollback();
        return;
    }
    m_db.exec(QStringLiteral("ROLLBACK TO ") + kSavepoint);
    m_db.exec(QStringLiteral("RELEASE ") + kSavepoint);
}

bool SqliteTransaction::commit() {
    if (!m_active) return false;
    m_active = false;
    return m_nested ? m_db.exec(QStringLiteral("RELEASE ") + kSavepoint) : m_db.commit();
}

SqliteReadTransaction::SqliteReadTransaction(SqliteDb& db)
    : m_db(db), m_open(db.isOpen() && !db.inTransaction() && db.exec(QStringLiteral("BEGIN DEFERRED"))) {}

SqliteReadTransaction::~SqliteReadTransaction() {
    // A read changes nothing; a write made inside (a table a load added) is kept.
    if (m_open && m_db.inTransaction() && !m_db.commit()) m_db.rollback();
}
