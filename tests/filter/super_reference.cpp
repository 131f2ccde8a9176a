#include "super_reference.h"

#include <QStringList>

namespace super_reference {

namespace {

const QString kNumstringFront = QStringLiteral(
    "printf('%02d',[fig1]) || char(32) || printf('%02d',[fig2]) || char(32) || printf('%02d',[fig3]) || char(32) || "
    "printf('%02d',[fig4]) || char(32) || printf('%02d',[fig5])");
const QString kNumstringBack = QStringLiteral("printf('%02d',[fig6]) || char(32) || printf('%02d',[fig7])");
const QString kMarked = QStringLiteral(
    "('(' || ifnull(fig1,'') || '!' || ifnull(fig2,'') || '@' || ifnull(fig3,'') || '#' || ifnull(fig4,'') || '$' || "
    "ifnull(fig5,'') || '%' || ifnull(fig6,'') || '^' || ifnull(fig7,'') || ')')");

QString two(int n) { return n < 0 ? QStringLiteral("-%1").arg(-n, 2, 10, QLatin1Char('0')) : QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }

void exec(SqliteDb& db, const QString& sql, const QVariantList& params = {}) { db.exec(sql, params); }

void numstringByScope(SqliteDb& db, ZoneScope scope) {
    switch (scope) {
        case ZoneScope::Front: exec(db, "UPDATE [zuhe] SET [Numstring]= " + kNumstringFront); break;
        case ZoneScope::Back: exec(db, "UPDATE [zuhe] SET [Numstring]= " + kNumstringBack); break;
        case ZoneScope::Both: exec(db, "UPDATE [zuhe] SET [Numstring]= " + kNumstringFront + " || char(32) || " + kNumstringBack); break;
    }
}

QString listOf(const std::vector<int>& numbers) {
    QStringList parts;
    for (int n : numbers) parts << two(n);
    return parts.join(QLatin1Char(' '));
}

}  // namespace

void load(SqliteDb& db, const CandidateTable& t) {
    db.exec(QStringLiteral("DROP TABLE IF EXISTS [zuhe]"));
    db.exec(QStringLiteral(
        "CREATE TABLE [zuhe]([idx] integer,[fig1] integer,[fig2] integer,[fig3] integer,[fig4] integer,[fig5] integer,"
        "[fig6] integer,[fig7] integer,[canshu] integer,[Numstring] text,[NumstringHou] text,[SKnum] integer,"
        "[JSqihao] integer,[fliter] text,[unslt] integer,[preunslt] integer,[tmpunslt] integer,[Gpslt] integer,"
        "[Errnum] integer)"));
    SqliteTransaction tx(db);
    SqliteStatement ins(db, QStringLiteral("INSERT INTO [zuhe] VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,?14,?15,?16,?17,?18,?19)"));
    for (uint64_t r = 0; r < t.rowCount(); ++r) {
        ins.bind(1, static_cast<qint64>(t.idxAt(r)));
        for (int k = 1; k <= 7; ++k) ins.bind(1 + k, static_cast<qint64>(t.numberColumn(k)[r]));
        ins.bind(9, static_cast<qint64>(t.paramValueAt(r)));
        if (t.numberTextMode() == CandidateTable::NumberTextMode::Null)
            ins.bindNull(10);
        else
            ins.bind(10, t.numberText(r));
        if (t.backNumberTextFilled())
            ins.bind(11, t.backNumberText(r));
        else ins.bindNull(11);
        ins.bind(12, static_cast<qint64>(t.superCountAt(r)));
        ins.bind(13, static_cast<qint64>(t.matchIssueAt(r)));
        if (t.reasons().isNull(t.rowReasons()[r]))
            ins.bindNull(14);
        else ins.bind(14, t.reasonText(r));
        ins.bind(15, static_cast<qint64>(t.filteredOut().test(r) ? -1 : 0));
        ins.bind(16, static_cast<qint64>(t.previousFilteredOut().test(r) ? -1 : 0));
        ins.bind(17, static_cast<qint64>(t.scratchFilteredOut().test(r) ? -1 : 0));
        ins.bind(18, qint64{0});
        ins.bind(19, static_cast<qint64>(t.failCountAt(r)));
        ins.run();
    }
    tx.commit();
}

void loadTemplate(SqliteDb& db, const std::vector<std::array<int, 7>>& tickets) {
    db.exec(QStringLiteral("DROP TABLE IF EXISTS [zuheMoban]"));
    db.exec(QStringLiteral("CREATE TABLE [zuheMoban]([idx] integer,[fig1] integer,[fig2] integer,[fig3] integer,"
                           "[fig4] integer,[fig5] integer,[fig6] integer,[fig7] integer,[Numstring] text)"));
    SqliteStatement ins(db, QStringLiteral("INSERT INTO [zuheMoban](idx,fig1,fig2,fig3,fig4,fig5,fig6,fig7) VALUES(?1,?2,?3,?4,?5,?6,?7,?8)"));
    qint64 idx = 0;
    for (const auto& k : tickets) {
        ins.bind(1, ++idx);
        for (int c = 0; c < 7; ++c) ins.bind(c + 2, static_cast<qint64>(k[static_cast<size_t>(c)]));
        ins.run();
    }
}

void relation(SqliteDb& db, int index, const std::vector<int>& numbers, const QString& caption) {
    QString pat;
    for (int n : numbers) pat += "*" + two(n) + "*";
    exec(db, QStringLiteral("UPDATE [zuhe] SET [preunslt]=[unslt]"));
    exec(db, "UPDATE [zuhe] SET [Numstring]= " + kNumstringFront + " || char(32) || " + kNumstringBack);
    const QString head = QStringLiteral("UPDATE [zuhe] SET [unslt]=-1 , [Fliter] = ?1 || ?2");
    const QVariantList p{caption, pat};
    switch (index) {
        case 0: exec(db, head + " WHERE [unslt]=0 AND [NumString] GLOB ?2", p); break;
        case 2: exec(db, head + " WHERE [unslt]=0 AND NOT [NumString] GLOB ?2", p); break;
        case 1:
            for (int n : numbers)
                exec(db, head + " WHERE [unslt]=0 AND [NumString] GLOB ?3 AND NOT [NumString] GLOB ?2",
                     {caption, pat, "*" + two(n) + "*"});
            break;
    }
}

void history(SqliteDb& db, ZoneScope scope, int threshold, const QString& caption, const QString& nText, int64_t passes,
             const DrawHistory& h) {
    exec(db, QStringLiteral("DROP TABLE IF EXISTS [Lishi]"));
    exec(db, QStringLiteral("CREATE TABLE [Lishi]([NumString] text,[idx] integer)"));
    if (threshold <= 0) return;
    exec(db, QStringLiteral("UPDATE [zuhe] SET [preunslt]=[unslt]"));
    exec(db, QStringLiteral("UPDATE [zuhe] SET [Canshu]= 0"));
    if (scope != ZoneScope::Back) exec(db, "UPDATE [zuhe] SET [Numstring]= " + kNumstringFront);
    if (scope != ZoneScope::Front) exec(db, "UPDATE [zuhe] SET [NumstringHou]= " + kNumstringBack);
    const QString front = QStringLiteral(
        "UPDATE [zuhe] SET  [SKnum] = -(-([NumString] GLOB ?1))-(-([NumString] GLOB ?2))-(-([NumString] GLOB ?3))"
        "-(-([NumString] GLOB ?4))-(-([NumString] GLOB ?5)) WHERE [unslt]=0");
    const QString back = QStringLiteral(
        "UPDATE [zuhe] SET  [SKnum] = -(-([NumstringHou] GLOB ?1))-(-([NumString] GLOB ?2)) WHERE [unslt]=0");
    const auto like = [](int n) { return QVariant("*" + two(n) + "*"); };
    for (int64_t i = 0; i < passes; ++i) {
        exec(db, QStringLiteral("UPDATE [zuhe] SET [SKnum]= 0"));
        const int64_t row = h.drawCount() - i;
        if (row < 0) continue;  // the draw's subscript fails: the statements that read it are passed over
        const DrawNumbers& d = h.numbers[static_cast<size_t>(row)];
        if (scope != ZoneScope::Back) exec(db, front, {like(d[1]), like(d[2]), like(d[3]), like(d[4]), like(d[5])});
        if (scope != ZoneScope::Front) exec(db, back, {like(d[6]), like(d[7])});
        exec(db, QStringLiteral("UPDATE [zuhe] SET [Canshu]= [SKnum],[Jsqihao] = ?1 WHERE [unslt]=0 AND [SKnum] > [Canshu]"),
             {static_cast<qint64>(d[0])});
    }
    exec(db,
         QStringLiteral("UPDATE [zuhe] SET [unslt]=-1 , [Fliter] = ?1 || ' 检索前 ' || ?2 || ' 期' || ifnull([Jsqihao],'') || "
                        "'期 有' || ifnull([Canshu],'') || '码相同' WHERE [unslt]=0 AND [Canshu] >= ?3"),
         {caption, nText, threshold});
}

void inclusionKill(SqliteDb& db, ZoneScope scope, const std::vector<int>& numbers, int groupSize,
                   const std::vector<int>& bankers, const QString& caption) {
    exec(db, QStringLiteral("UPDATE [zuhe] SET [preunslt]=[unslt]"));
    numstringByScope(db, scope);
    exec(db, QStringLiteral("UPDATE [zuhe] SET [SKnum]= 0"));
    for (int n : numbers)
        exec(db, QStringLiteral("UPDATE [zuhe] SET [SKnum]= [SKnum] + 1 WHERE [unslt]=0 AND [NumString] GLOB ?1"),
             {"*" + two(n) + "*"});
    exec(db,
         QStringLiteral(
             "UPDATE [zuhe] SET [unslt]=-1 , [Fliter] = ?1 || ?2 || '  ' || ?3 || '个一组' WHERE [unslt]=0 "
             "AND [SKnum] >= ?3"),
         {caption, listOf(numbers), groupSize});
    for (int d : bankers)
        exec(db, QStringLiteral("UPDATE [zuhe] SET [unslt]=0 , [Fliter] = ' ' WHERE [unslt]=-1 AND NOT [NumString] GLOB ?1"),
             {"*" + two(d) + "*"});
}

void inclusionKeep(SqliteDb& db, ZoneScope scope, const std::vector<int>& numbers, int groupSize,
                   const std::vector<int>& bankers, const QString& caption) {
    exec(db, QStringLiteral("UPDATE [zuhe] SET [preunslt]=[unslt]"));
    exec(db,
         QStringLiteral("UPDATE [zuhe] SET [unslt]=-1 , [Fliter] = ?1 || ?2 || '  ' || ?3 || '个一组' WHERE "
                        "[preunslt]=0"),
         {caption, listOf(numbers), groupSize});
    numstringByScope(db, scope);
    exec(db, QStringLiteral("UPDATE [zuhe] SET [SKnum]= 0"));
    for (int n : numbers)
        exec(db, QStringLiteral("UPDATE [zuhe] SET [SKnum]= [SKnum] + 1 WHERE [preunslt]=0 AND [NumString] GLOB ?1"),
             {"*" + two(n) + "*"});
    exec(db,
         QStringLiteral("UPDATE [zuhe] SET [unslt]=0 , [Fliter] = '' WHERE [preunslt]=0 AND [SKnum] >= ?1"),
         {groupSize});
    for (int d : bankers)
        exec(db,
             QStringLiteral("UPDATE [zuhe] SET [unslt]=-1 , [Fliter] = ?1 || ?2 || '  胆' WHERE [unslt]=-1 AND NOT "
                            "[NumString] GLOB ?3"),
             {caption, listOf(numbers), "*" + two(d) + "*"});
}

void sameAsTemplate(SqliteDb& db) {
    exec(db, "UPDATE [zuhe] SET [Numstring]= " + kMarked);
    exec(db, "UPDATE [zuheMoban] SET [Numstring]= " + kMarked);
    exec(db, QStringLiteral("UPDATE [zuhe] SET [unslt]= -1  WHERE Numstring IN (SELECT  Numstring FROM [zuheMoban])"));
}

std::vector<Row> rows(SqliteDb& db) {
    std::vector<Row> out;
    SqliteStatement q(db, QStringLiteral("SELECT unslt, preunslt, fliter, canshu, SKnum, JSqihao, Numstring, NumstringHou "
                                         "FROM [zuhe] ORDER BY rowid"));
    while (q.next()) {
        Row r;
        r.filteredOut = q.integer(0) != 0;
        r.previousFilteredOut = q.integer(1) != 0;
        const QVariant f = q.value(2);
        r.fliterNull = f.isNull();
        r.rowReasons = f.toString();
        r.paramValues = q.integer(3);
        r.sknumNull = q.value(4).isNull();
        r.superCount = q.integer(4);
        r.matchIssue = q.integer(5);
        r.numstringNull = q.value(6).isNull();
        r.numberText = q.text(6);
        r.numstringHouNull = q.value(7).isNull();
        r.backNumberText = q.text(7);
        out.push_back(r);
    }
    return out;
}

}  // namespace super_reference
