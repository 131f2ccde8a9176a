#include "filter/six/six_settings.h"

#include "filter/templates/filter_snapshot.h"
#include "filter/templates/saved_setting_store.h"
#include "filter/templates/template_store.h"
#include "workspace/prompter.h"
#include "workspace/sqlite_db.h"

namespace six_settings {

namespace {

QString column(const SixParamInfo& p, int box) { return QStringLiteral("%1_%2").arg(QLatin1String(p.key)).arg(box); }

// The filter window's columns and the sixth position's pair.
bool ensureColumns(SqliteDb& db) {
    const QString table = saved_setting_store::kTable;
    if (!filter_snapshot::ensureColumns(db, table)) return false;
    const QStringList have = db.columns(table);
    const SixParamInfo& sixth = six_params::info(SixParam::Position6);
    for (int box : {1, 2}) {
        const QString c = column(sixth, box);
        if (have.contains(c, Qt::CaseInsensitive)) continue;
        if (!db.exec(QStringLiteral("ALTER TABLE [%1] ADD COLUMN [%2] TEXT").arg(table, c))) return false;
    }
    return true;
}

}  // namespace

std::optional<QString> save(SqliteDb& filterDb, const Bounds& bounds, Prompter& prompter, const QDateTime& now) {
    const QString name = prompter.askText(saved_setting_store::kSaveTitle, saved_setting_store::kSavePrompt,
                                          QStringLiteral("过滤设置保存于") + saved_setting_store::stamp(now));
    if (!ensureColumns(filterDb)) return std::nullopt;
    QVariantMap v;
    v.insert(QStringLiteral("Name"), name);
    v.insert(QStringLiteral("opt36"), 0);
    for (const SixParamInfo& p : six_params::all()) {
        const auto i = static_cast<size_t>(p.id);
        v.insert(column(p, 1), bounds.lo[i]);
        v.insert(column(p, 2), bounds.hi[i]);
    }
    if (template_store::insert(filterDb, saved_setting_store::kTable, v) < 0) return std::nullopt;
    return name;
}

bool load(SqliteDb& filterDb, const QString& name, Bounds& bounds) {
    if (!ensureColumns(filterDb)) return false;
    const auto rows = template_store::select(
        filterDb, QStringLiteral("SELECT * FROM [Canshu] WHERE [Name] = ?1 ORDER BY rowid LIMIT 1"), {name});
    if (rows.empty()) return false;
    for (const SixParamInfo& p : six_params::all()) {
        const auto i = static_cast<size_t>(p.id);
        const QVariant lo = filter_snapshot::column(rows.front(), column(p, 1));
        const QVariant hi = filter_snapshot::column(rows.front(), column(p, 2));
        if (!lo.isNull()) bounds.lo[i] = lo.toString();
        if (!hi.isNull()) bounds.hi[i] = hi.toString();
    }
    return true;
}

}  // namespace six_settings
