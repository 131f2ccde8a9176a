#include "picking/saved_selections.h"

#include <algorithm>

namespace {

const QString kFrontPicks = QStringLiteral("SAVE");
const QString kBackPicks = QStringLiteral("SAVEHOU");
const QString kFrontBankers = QStringLiteral("SAVEdan");
const QString kBackBankers = QStringLiteral("SAVEHOUdan");
constexpr int kColumns = 36;

bool quoted(const QString& name) { return name.contains(QLatin1Char('"')); }

}  // namespace

QString SavedSelections::stampedName(const QString& prefix, const QDateTime& at) {
    const QDate d = at.date();
    const QTime t = at.time();
    return prefix + QStringLiteral("%1-%2-%3日").arg(d.year() % 100, 2, 10, QLatin1Char('0')).arg(d.month()).arg(d.day()) +
           QStringLiteral("%1.%2.%3秒").arg(t.hour()).arg(t.minute()).arg(t.second());
}

bool SavedSelections::insertRow(const QString& table, const QString& name, const ZoneBoardState& zone,
                                bool bankers) {
    const int count = std::min<int>(bankers ? zone.bankerCount : zone.pickCount, kColumns);
    const auto& list = bankers ? zone.bankerList : zone.pickList;
    const int idx = m_db.scalar(QStringLiteral("SELECT COUNT(*) FROM [%1]").arg(table)).toInt() + 1;
    QString columns = QStringLiteral("[Idx],[Name],[Bit]");
    QString marks = QStringLiteral("?1,?2,?3");
    QVariantList values{idx, name, count};
    for (int i = 1; i <= count; ++i) {
        columns += QStringLiteral(",[f%1]").arg(i);
        marks += QStringLiteral(",?%1").arg(i + 3);
        values << static_cast<int>(list[static_cast<size_t>(i)]);
    }
    return m_db.exec(QStringLiteral("INSERT INTO [%1](%2) VALUES (%3)").arg(table, columns, marks), values);
}

bool SavedSelections::save(const QString& name, const BoardState& board) {
    SqliteTransaction tx(m_db);
    const bool ok = insertRow(kFrontPicks, name, board.front, false) && insertRow(kBackPicks, name, board.back, false) &&
                    insertRow(kFrontBankers, name, board.front, true) &&
                    insertRow(kBackBankers, name, board.back, true);
    return ok && tx.commit();
}

QList<SavedSelectionRow> SavedSelections::list() {
    QList<SavedSelectionRow> out;
    QString columns = QStringLiteral("[Idx],[Name],[Bit]");
    for (int i = 1; i <= kColumns; ++i) columns += QStringLiteral(",[f%1]").arg(i);
    for (const QVariantList& r :
         m_db.rows(QStringLiteral("SELECT %1 FROM [%2] ORDER BY rowid").arg(columns, kFrontPicks))) {
        SavedSelectionRow row{r.value(0).toInt(), r.value(1).toString(), r.value(2).toInt(), {}};
        for (int i = 1; i <= std::clamp(row.count, 0, kColumns); ++i) row.numbers.push_back(r.value(i + 2).toInt());
        out << row;
    }
    return out;
}

bool SavedSelections::remove(const QString& name) {
    if (quoted(name)) return false;
    return m_db.exec(QStringLiteral("DELETE FROM [%1] WHERE [Name] = ?1").arg(kFrontPicks), {name});
}

bool SavedSelections::rename(const QString& oldName, const QString& newName) {
    if (quoted(oldName) || quoted(newName)) return false;
    return m_db.exec(QStringLiteral("UPDATE [%1] SET [Name] = ?1 WHERE [Name] = ?2").arg(kFrontPicks),
                     {newName, oldName});
}

std::vector<int> SavedSelections::numbersOf(const QString& table, int idx) {
    QString columns = QStringLiteral("[Bit]");
    for (int i = 1; i <= kColumns; ++i) columns += QStringLiteral(",[f%1]").arg(i);
    const QList<QVariantList> rows = m_db.rows(
        QStringLiteral("SELECT %1 FROM [%2] WHERE [Idx] = ?1 ORDER BY rowid LIMIT 1").arg(columns, table), {idx});
    std::vector<int> numbers;
    if (rows.isEmpty()) return numbers;
    const int count = std::clamp(rows[0].value(0).toInt(), 0, kColumns);
    for (int i = 1; i <= count; ++i) numbers.push_back(rows[0].value(i).toInt());
    return numbers;
}

void SavedSelections::load(NumberBoard& board, int idx, bool replace) {
    struct Part {
        Zone zone;
        const QString& picks;
        const QString& bankers;
    };
    for (const Part& part : {Part{Zone::Front, kFrontPicks, kFrontBankers}, Part{Zone::Back, kBackPicks, kBackBankers}}) {
        if (replace) board.reselect(part.zone);
        for (int n : numbersOf(part.picks, idx)) board.programClick(part.zone, n);
        for (int n : numbersOf(part.bankers, idx)) {
            board.zone(part.zone).state().activeNum = static_cast<int16_t>(n);
            board.toggleBanker(part.zone);
        }
    }
}
