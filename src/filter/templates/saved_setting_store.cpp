#include "filter/templates/saved_setting_store.h"

#include "filter/templates/template_store.h"
#include "workspace/prompter.h"
#include "workspace/sqlite_db.h"

namespace saved_setting_store {

QString stamp(const QDateTime& when) { return when.toString(QStringLiteral("yy-M-d日H.m.s秒")); }

std::optional<QString> save(SqliteDb& filterDb, const ParamWindowState& state, Prompter& prompter,
                            const QDateTime& now) {
    const QString name =
        prompter.askText(kSaveTitle, kSavePrompt, QStringLiteral("过滤设置保存于") + stamp(now));
    if (!filter_snapshot::ensureColumns(filterDb, kTable)) return std::nullopt;
    QVariantMap v = filter_snapshot::snapshotValues(state);
    v.insert(QStringLiteral("Name"), name);
    if (template_store::insert(filterDb, kTable, v) < 0) return std::nullopt;
    return name;
}

Finder::Finder(SqliteDb& filterDb) : m_db(filterDb) {
    m_ready = filter_snapshot::ensureColumns(filterDb, kTable);
    reload();
}

void Finder::reload() {
    m_names.clear();
    if (!m_ready) return;
    for (const QVariantMap& row :
         template_store::select(m_db, QStringLiteral("SELECT Name FROM Canshu ORDER BY rowid")))
        m_names << filter_snapshot::column(row, QStringLiteral("Name")).toString();
}

bool Finder::remove(const QString& name) {
    if (!m_ready) return false;
    SqliteTransaction tx(m_db);
    const bool done = tx.active() &&
                      m_db.exec(QStringLiteral("DELETE FROM [Canshu]  WHERE [Name] = ?1"), {name}) &&
                      tx.commit();
    reload();
    return done;
}

bool Finder::rename(const QString& name, Prompter& prompter, const QDateTime& now) {
    if (!m_ready) return false;
    const QString fresh =
        prompter.askText(kRenameTitle, kRenamePrompt, QStringLiteral("选号名字修改于") + stamp(now));
    SqliteTransaction tx(m_db);
    const bool done =
        tx.active() &&
        m_db.exec(QStringLiteral("UPDATE [Canshu] SET [Name]= ?1 WHERE [Name] = ?2"), {fresh, name}) &&
        tx.commit();
    reload();
    return done;
}

std::optional<filter_snapshot::SnapshotEffects> load(SqliteDb& filterDb, const QString& name,
                                                     ParamWindowState& state) {
    if (!filter_snapshot::ensureColumns(filterDb, kTable)) return std::nullopt;
    const auto rows = template_store::select(
        filterDb, QStringLiteral("SELECT * FROM [Canshu] WHERE [Name] = ?1 ORDER BY rowid LIMIT 1"), {name});
    if (rows.empty()) return std::nullopt;
    return filter_snapshot::applySnapshot(rows.front(), state);
}

}  // namespace saved_setting_store
