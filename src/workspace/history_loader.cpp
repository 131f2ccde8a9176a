#include "workspace/history_loader.h"

#include "workspace/draw_params_columns.h"
#include "workspace/game_rules.h"
#include "workspace/sqlite_db.h"

#include <QDir>

namespace history_loader {

namespace {

const QStringList kTables{QStringLiteral("fig"), QStringLiteral("fighou"), QStringLiteral("figquan")};

// One table of the history: its numbers go to slots first..first + count - 1 of Figarr.
struct TableShape {
    QString table;
    QStringList paramColumns;
    int numberCount;
    int firstSlot;
    bool setsDrawCount;  // fig makes the rows; the others fill in
};

// The largest number a slot of Figarr may hold: the front slots 1..5, the back slots 6..7.
int slotMax(int slot) {
    return slot <= game_rules::kFrontPicks ? game_rules::kFrontMax : game_rules::kBackMax;
}

// Reads one table in Idx order into the arrays; the message of the first fault when there is one.
QString readTable(SqliteDb& db, const TableShape& shape, std::vector<DrawNumbers>& numbers,
                  std::vector<DrawParams>& params) {
    QStringList quoted{QStringLiteral("[Idx]"), QStringLiteral("[fig0]")};
    for (int i = 1; i <= shape.numberCount; ++i) quoted << QStringLiteral("[fig%1]").arg(i);
    for (const QString& c : shape.paramColumns) quoted << QLatin1Char('[') + c + QLatin1Char(']');
    SqliteStatement st(
        db,
        QStringLiteral("SELECT %1 FROM [%2] ORDER BY [Idx]").arg(quoted.join(QLatin1Char(',')), shape.table));
    if (!st.ok()) return QStringLiteral("表 %1：%2").arg(shape.table, db.lastError());
    params.assign(1, DrawParams{});
    int row = 0;
    while (st.next()) {
        ++row;
        const qint64 idx = st.int64(0);
        if (idx < row) return QStringLiteral("表 %1 的 Idx %2 重复或小于 1").arg(shape.table).arg(idx);
        if (idx > row) return QStringLiteral("表 %1 缺少 Idx %2").arg(shape.table).arg(row);
        if (shape.setsDrawCount) {
            numbers.push_back(DrawNumbers{});
            numbers[static_cast<size_t>(row)][0] = static_cast<int32_t>(st.int64(1));
        }
        for (int i = 0; i < shape.numberCount; ++i) {
            const qint64 n = st.int64(2 + i);
            const int slot = shape.firstSlot + i;
            if (n < 1 || n > slotMax(slot))
                return QStringLiteral("表 %1 的第 %2 期 fig%3 是 %4，不在 1 到 %5 之间")
                    .arg(shape.table)
                    .arg(idx)
                    .arg(i + 1)
                    .arg(n)
                    .arg(slotMax(slot));
            if (row < static_cast<int>(numbers.size()))
                numbers[static_cast<size_t>(row)][static_cast<size_t>(slot)] = static_cast<int32_t>(n);
        }
        DrawParams p;
        for (int c = 0; c < shape.paramColumns.size(); ++c)
            draw_params_columns::setValue(p, shape.paramColumns[c], st.real(2 + shape.numberCount + c));
        params.push_back(p);
    }
    return {};
}

}  // namespace

bool isHistoryDatabase(SqliteDb& db) {
    if (db.scalar(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type='table'")).toInt() == 0)
        return true;
    for (const QString& t : kTables)
        if (!db.tableExists(t)) return false;
    return true;
}

QString faultText(const QString& file, const QString& detail) {
    return QStringLiteral("历史号码数据库有误，无法读入：%1\n%2").arg(QDir::toNativeSeparators(file), detail);
}

bool load(SqliteDb& db, DrawHistory& history, QString* error) {
    history.clear();
    const SqliteReadTransaction read(db);
    // fighou supplies the back numbers of Figarr; figquan only its parameters.
    std::vector<DrawNumbers> scratch;
    const TableShape shapes[] = {
        {kTables[0], draw_params_columns::frontColumns(), game_rules::kFrontPicks, 1, true},
        {kTables[1], draw_params_columns::backColumns(), game_rules::kBackPicks, game_rules::kFrontPicks + 1,
         false},
        {kTables[2], draw_params_columns::bothColumns(), game_rules::kFrontPicks + game_rules::kBackPicks, 1,
         false}};
    std::vector<DrawParams>* params[] = {&history.front, &history.back, &history.both};
    for (size_t k = 0; k < std::size(shapes); ++k) {
        if (k == 2) scratch = history.numbers;
        const QString fault = readTable(db, shapes[k], k == 2 ? scratch : history.numbers, *params[k]);
        if (fault.isEmpty()) continue;
        history.clear();
        if (error) *error = faultText(db.path(), fault);
        return false;
    }
    return true;
}

}  // namespace history_loader
