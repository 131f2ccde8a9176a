#include "prize/prize_sql_form.h"

#include "workspace/sqlite_db.h"

namespace prize_sql_form {

namespace {
QString twoDigits(int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }

// "01 02 03": each column formatted "00", joined by one blank.
QString joinedText(int first, int last) {
    QStringList parts;
    for (int k = first; k <= last; ++k) parts << QStringLiteral("substr('0'||[fig%1],-2)").arg(k);
    return parts.join(QStringLiteral("||' '||"));
}
}  // namespace

Outcome run(SqliteDb& db, schema::CandidateKind kind, const CheckDraw& draw, const PrizeRules& rules) {
    const QString t = schema::candidateTableName(kind);
    const bool six = kind == schema::CandidateKind::SixNumbers;
    const QStringList scratch = six ? QStringList{QStringLiteral("jiben")}
                                    : QStringList{QStringLiteral("jiben"), QStringLiteral("tebie"),
                                                  QStringLiteral("jiang"), QStringLiteral("jing")};
    const QStringList types{QStringLiteral("integer"), QStringLiteral("integer"), QStringLiteral("text"),
                            QStringLiteral("integer")};
    SqliteTransaction tx(db);
    // The drops fail on a table without the columns, as they are meant to.
    for (const QString& c : scratch) db.exec(QStringLiteral("ALTER TABLE [%1] DROP COLUMN [%2]").arg(t, c));
    for (int i = 0; i < scratch.size(); ++i)
        if (!db.exec(QStringLiteral("ALTER TABLE [%1] ADD COLUMN [%2] %3").arg(t, scratch[i], types[i])))
            return {false, db.lastError()};
    QString set = QStringLiteral("UPDATE [%1] SET [Numstring]=%2").arg(t, joinedText(1, six ? 6 : 5));
    if (!six) set += QStringLiteral(", [NumstringHou]=%1").arg(joinedText(6, 7));
    bool ok = db.exec(set);
    ok = db.exec(six ? QStringLiteral("UPDATE [%1] SET [jiben]=0").arg(t)
                     : QStringLiteral("UPDATE [%1] SET [jiben]=0 ,[tebie]=0").arg(t)) &&
         ok;
    for (int i = 0; i < prize_rules::kFrontMax + (six ? 0 : prize_rules::kBackMax); ++i) {
        const bool front = i < prize_rules::kFrontMax;
        const QString sql = QStringLiteral("UPDATE [%1] SET [%2]=[%2]+1 WHERE [%1].[%3] LIKE ?1")
                                .arg(t, front ? QStringLiteral("jiben") : QStringLiteral("tebie"),
                                     front ? QStringLiteral("NumString") : QStringLiteral("NumStringHou"));
        ok = db.exec(sql, {QStringLiteral("%") + twoDigits(draw.numbers[static_cast<size_t>(i)]) +
                           QStringLiteral("%")}) &&
             ok;
    }
    if (!six) {
        for (int n = prize_rules::kSlots; n >= 1; --n) {
            const PrizeSlot& s = rules.slot(n);
            ok =
                db.exec(QStringLiteral(
                            "UPDATE [%1] SET [jiang]=?1 ,[jing]=?2 WHERE [%1].[jiben]=?3 AND [%1].[tebie]=?4")
                            .arg(t),
                        {s.rank, s.money, s.front, s.back}) &&
                ok;
        }
    }
    if (!ok) return {false, db.lastError()};
    if (!tx.commit()) return {false, db.lastError()};
    return {true, {}};
}

}  // namespace prize_sql_form
