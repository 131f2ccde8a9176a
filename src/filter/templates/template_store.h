#pragma once

// The filter template: the rows of moban in filnum.db, one per recorded step, in the order
// they were added (the recordset's order). Each change is one transaction.

#include <QString>
#include <QVariantMap>

#include <optional>
#include <vector>

class SqliteDb;

class TemplateStore {
public:
    static inline const QString kTable = QStringLiteral("moban");

    explicit TemplateStore(SqliteDb& db);

    // False when the table is missing or its snapshot columns cannot be added (yet: a busy
    // database is asked again by the next call that writes).
    bool ready() const { return m_ready; }

    int count() const;
    // mnuAdf: a row with Idx = count + 1, the step code and its scope, and `values` over them,
    // in one statement: a step is stored whole or not at all.
    bool addStep(int stepCode, int zoneScope, const QVariantMap& values = {});
    // The last row opened for edit: the given columns written, the others kept. False when the
    // table has no row.
    bool writeLast(const QVariantMap& values);
    // Command5: the last row goes. Command4: every row goes.
    bool deleteLast();
    bool clear();

    // Every row in order, all columns by name.
    std::vector<QVariantMap> rows() const;
    // SELECT * FROM [moban] WHERE [idx] = v: the first such row.
    std::optional<QVariantMap> byIdx(qint64 idx) const;

private:
    bool ensure();

    SqliteDb& m_db;
    bool m_ready = false;
};

namespace template_store {
// Writes the columns of `values` (names checked against the table's columns) on the row with
// this rowid, in one transaction.
bool update(SqliteDb& db, const QString& table, qint64 rowid, const QVariantMap& values);
// Inserts a row with these columns; returns its rowid or -1.
qint64 insert(SqliteDb& db, const QString& table, const QVariantMap& values);
// The rows of a query as maps of column name to value.
std::vector<QVariantMap> select(SqliteDb& db, const QString& sql, const QVariantList& params = {});
}  // namespace template_store
