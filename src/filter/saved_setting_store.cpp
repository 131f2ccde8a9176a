#include "filter/saved_setting_store.h"

#include "filter/moban_store.h"
#include "workspace/prompter.h"
#include "workspace/sqlite_db.h"

namespace saved_setting {

QString stamp(const QDateTime& when) { return when.toString(QStringLiteral("yy-M-d日H.m.s秒")); }

std::optional<QString> save(SqliteDb& fildb, const ParamWindowState& state, Prompter& prompter, const QDateTime& now) {
    const QString name = prompter.askText(kSaveTitle, kSavePrompt, QStringLiteral("过滤设置保存于") + stamp(now));
    if (!moban_snapshot::ensureColumns(fildb, kTable)) return std::nullopt;
    QVariantMap v = moban_snapshot::snapshotValues(state);
    v.insert(QStringLiteral("Name"), name);
    if (table_rows::insert(fildb, kTable, v) < 0) return std::nullopt;
    return name;
}

Finder::Finder(SqliteDb& fildb) : m_db(fildb) {
    m_ready = moban_snapshot::ensureColumns(fildb, kTable);
    reload();
}

void Finder::reload() {
    m_names.clear();
    if (!m_ready) return;
    for (const QVariantMap& row : table_rows::select(m_db, QStringLiteral("SELECT Name FROM Canshu ORDER BY rowid")))
        m_names << moban_snapshot::column(row, QStringLiteral("Name")).toString();
}

bool Finder::remove(const QString& name) {
    if (!m_ready) return false;
    SqliteTransaction tx(m_db);
    const bool done = tx.active() && m_db.exec(QStringLiteral("DELETE FROM [Canshu]  WHERE [Name] = ?1"), {name}) && tx.commit();
    reload();
    return done;
}

bool Finder::rename(const QString& name, Prompter& prompter, const QDateTime& now) {
    if (!m_ready) return false;
    const QString fresh = prompter.askText(kRenameTitle, kRenamePrompt, QStringLiteral("选号名字修改于") + stamp(now));
    SqliteTransaction tx(m_db);
    const bool done = tx.active() &&
                      m_db.exec(QStringLiteral("UPDATE [Canshu] SET [Name]= ?1 WHERE [Name] = ?2"), {fresh, name}) &&
                      tx.commit();
    reload();
    return done;
}

std::optional<moban_snapshot::SnapshotEffects> load(SqliteDb& fildb, const QString& name, ParamWindowState& state) {
    if (!moban_snapshot::ensureColumns(fildb, kTable)) return std::nullopt;
    const auto rows =
        table_rows::select(fildb, QStringLiteral("SELECT * FROM [Canshu] WHERE [Name] = ?1 ORDER BY rowid LIMIT 1"), {name});
    if (rows.empty()) return std::nullopt;
    return moban_snapshot::applySnapshot(rows.front(), state);
}

}  // namespace saved_setting
