#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <optional>

struct sqlite3;
struct sqlite3_stmt;

// A thin owner of one SQLite connection. Statements take user values only as bound
// parameters; identifiers come from the program's own schema.
class SqliteDb {
public:
    SqliteDb() = default;
    ~SqliteDb();
    SqliteDb(const SqliteDb&) = delete;
    SqliteDb& operator=(const SqliteDb&) = delete;
    SqliteDb(SqliteDb&& other) noexcept;
    SqliteDb& operator=(SqliteDb&& other) noexcept;

    // Opens an existing file; with create = true a missing file is made.
    bool open(const QString& path, bool create = false);
    void close();
    bool isOpen() const { return m_db != nullptr; }
    sqlite3* handle() const { return m_db; }
    QString path() const { return m_path; }
    QString lastError() const { return m_lastError; }

    // Runs one or more statements without results.
    bool exec(const QString& sql);
    // Runs one statement with positional parameters (?1, ?2, ...).
    bool exec(const QString& sql, const QVariantList& params);
    // First column of the first row, or an invalid QVariant.
    QVariant scalar(const QString& sql, const QVariantList& params = {});
    // All rows, each a list of column values.
    QList<QVariantList> rows(const QString& sql, const QVariantList& params = {});

    bool tableExists(const QString& table);
    QStringList columns(const QString& table);

    bool begin() { return exec(QStringLiteral("BEGIN IMMEDIATE")); }
    bool commit() { return exec(QStringLiteral("COMMIT")); }
    void rollback() { exec(QStringLiteral("ROLLBACK")); }
    // True while a transaction is open on this connection.
    bool inTransaction() const;

private:
    friend class SqliteStatement;
    sqlite3* m_db = nullptr;
    QString m_path;
    QString m_lastError;
};

// A prepared statement for loops: bind, step, read, reset.
class SqliteStatement {
public:
    SqliteStatement(SqliteDb& db, const QString& sql);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    bool ok() const { return m_stmt != nullptr; }
    void bind(int index, qint64 value);
    void bind(int index, double value);
    void bind(int index, const QString& value);
    void bindNull(int index);
    void bindVariant(int index, const QVariant& value);
    // True while a row is available.
    bool next();
    // Runs a statement that returns no rows; resets it for the next use.
    bool run();
    void reset();

    int columnCount() const;
    qint64 int64(int col) const;
    int integer(int col) const { return static_cast<int>(int64(col)); }
    double real(int col) const;
    QString text(int col) const;
    QVariant value(int col) const;

private:
    SqliteDb& m_db;
    sqlite3_stmt* m_stmt = nullptr;
};

// Rolls back unless committed: an interrupted action leaves the old state. Inside a
// transaction already open on the connection (a load that writes what it lacks) it is a
// savepoint of that transaction.
class SqliteTransaction {
public:
    explicit SqliteTransaction(SqliteDb& db);
    ~SqliteTransaction();
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;
    bool active() const { return m_active; }
    bool commit();

private:
    SqliteDb& m_db;
    bool m_nested;
    bool m_active;
};

// Another database file attached to the connection as `schema` for the scope; made before the
// transaction begins. One transaction of the connection then commits the changes of both files
// or of neither, also when the process is killed between (SQLite's super-journal).
class SqliteAttachment {
public:
    SqliteAttachment(SqliteDb& db, const QString& path, const QString& schema);
    ~SqliteAttachment();
    SqliteAttachment(const SqliteAttachment&) = delete;
    SqliteAttachment& operator=(const SqliteAttachment&) = delete;
    bool ok() const { return m_ok; }

private:
    SqliteDb& m_db;
    QString m_schema;
    bool m_ok;
};

// Every read between construction and the end of the scope sees one state of the file: the
// parts of a load never mix two writes. Inside a transaction already open it does nothing.
class SqliteReadTransaction {
public:
    explicit SqliteReadTransaction(SqliteDb& db);
    ~SqliteReadTransaction();
    SqliteReadTransaction(const SqliteReadTransaction&) = delete;
    SqliteReadTransaction& operator=(const SqliteReadTransaction&) = delete;

private:
    SqliteDb& m_db;
    bool m_open;
};
