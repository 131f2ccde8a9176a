#include "workspace/schema.h"

#include "workspace/sqlite_db.h"

#include <QCoreApplication>
#include <QFile>

namespace {

using T = ColumnType;

QList<ColumnDef> named(const QStringList& names, ColumnType type) {
    QList<ColumnDef> out;
    for (const QString& n : names) out.append({n, type});
    return out;
}

QList<ColumnDef> numbered(const QString& prefix, int from, int to, ColumnType type) {
    QList<ColumnDef> out;
    for (int i = from; i <= to; ++i) out.append({prefix + QString::number(i), type});
    return out;
}

QString sqlType(ColumnType t) {
    switch (t) {
        case T::Integer:
        case T::Long:
        case T::Bit: return QStringLiteral("INTEGER");
        case T::Single:
        case T::Double: return QStringLiteral("REAL");
        case T::String: return QStringLiteral("TEXT");
    }
    return {};
}

}  // namespace

QStringList TableDef::columnNames() const {
    QStringList out;
    for (const ColumnDef& c : columns) out << c.name;
    return out;
}

QString TableDef::createStatement() const {
    QStringList cols;
    for (const ColumnDef& c : columns) {
        QString def = QStringLiteral("[%1] %2").arg(c.name, sqlType(c.type));
        if (c.type != T::String) def += QStringLiteral(" DEFAULT 0");
        cols << def;
    }
    return QStringLiteral("CREATE TABLE [%1](%2)").arg(name, cols.join(QLatin1Char(',')));
}

namespace schema {

TableDef frontDrawTable() {
    TableDef t{QStringLiteral("fig"), {{"Idx", T::Integer}, {"fig0", T::Long}}};
    t.columns += numbered("fig", 1, 5, T::Integer);
    t.columns += named({"Znum", "XZnum", "DZnum", "Zjnum", "Zonum", "Zgnum", "Zynum", "Sumgwnum"}, T::Integer);
    t.columns += named({"Cnum", "Onum", "Jnum", "Bignum", "Smlnum", "Mornum", "Ltlnum", "Modenum", "Lnum", "Lxnum"},
                       T::Integer);
    t.columns += named({"Mxzounum", "Apzounum", "Fcodp"}, T::Integer);
    t.columns += named({"R", "a"}, T::Single);
    t.columns += numbered("Qnum", 0, 3, T::Integer);
    t.columns += numbered("Lcz", 1, 5, T::Double);
    t.columns.append({"intYljz", T::Integer});
    return t;
}

TableDef backDrawTable() {
    TableDef t{QStringLiteral("fighou"), {{"Idx", T::Integer}, {"fig0", T::Long}}};
    t.columns += numbered("fig", 1, 2, T::Integer);
    t.columns += numbered("Lcz", 1, 2, T::Double);
    t.columns += named({"Znum", "Sumgwnum", "Cnum", "Onum", "Jnum", "Zgnum", "Zynum", "Bignum", "Smlnum", "Mornum",
                        "Ltlnum", "Modenum", "Lnum", "Apzounum", "intYljz"},
                       T::Integer);
    return t;
}

TableDef wholeDrawTable() {
    TableDef t{QStringLiteral("figquan"), {{"Idx", T::Integer}, {"fig0", T::Long}}};
    t.columns += numbered("fig", 1, 7, T::Integer);
    t.columns += named({"Znum", "XZnum", "DZnum", "Sumgwnum", "Zjnum", "Zonum", "Zgnum", "Zynum", "Cnum", "Onum",
                        "Jnum", "Bignum", "Smlnum", "Mornum", "Ltlnum", "Modenum", "Lnum", "Lxnum", "Apzounum",
                        "Fcodp"},
                       T::Integer);
    t.columns += numbered("Qnum", 0, 3, T::Integer);
    t.columns.append({"intYljz", T::Integer});
    return t;
}

static TableDef omissionTable(const QString& name, int numbers) {
    TableDef t{name, {{"qihao", T::Long}}};
    t.columns += numbered("ylqs", 1, numbers, T::Integer);
    return t;
}

TableDef frontOmissionTable() { return omissionTable(QStringLiteral("Ylqs"), 36); }
TableDef backOmissionTable() { return omissionTable(QStringLiteral("YlqsHou"), 24); }
TableDef wholeOmissionTable() { return omissionTable(QStringLiteral("YlqsQuan"), 36); }

TableDef frequencyTable(const QString& name) {
    return {name, {{"Number", T::Integer}, {"gailv", T::Double}, {"Glnum", T::Integer}}};
}

TableDef frequencyScratchTable(const QString& name) {
    return {name, {{"Number", T::Integer}, {"gailv", T::Double}}};
}

TableDef reducedDrawTable() {
    TableDef t{QStringLiteral("fig"), {{"Idx", T::Integer}, {"fig0", T::Long}}};
    t.columns += numbered("fig", 1, 5, T::Integer);
    return t;
}

TableDef snapshotTable(const QString& name) {
    TableDef t{name, {{"Name", T::String}, {"Idx", T::Integer}}};
    t.columns += named({"intCmdnb", "intQianHou", "ljh", "baoliu", "chk", "opt36", "qj1", "qj2", "qj3"}, T::Integer);
    t.columns += named({"lhg", "csq", "sh", "fzd", "dsg", "zdc", "swc", "osg", "shg", "Gwd", "Gwh", "Jsh", "Osh",
                        "Ylh", "Ylc", "Dsh", "Xsh", "Tws", "Zdqj"},
                       T::Integer);
    for (const char* base : {"ZdqjNum", "lsh", "csq", "sh", "fzd", "ds", "zdzj", "czzj", "os", "shgw", "Gwds", "Gwh",
                             "Jsh", "Osh", "Ylh", "Ylc", "Dsh", "Xsh", "Tws", "Zdqj"}) {
        t.columns.append({QString::fromLatin1(base) + QStringLiteral("_1"), T::Integer});
        t.columns.append({QString::fromLatin1(base) + QStringLiteral("_2"), T::Integer});
    }
    t.columns += named({"RCperct", "RCcount"}, T::Integer);
    t.columns += named({"sknum", "skzu"}, T::String);
    t.columns += numbered("sk", 0, 9, T::String);
    return t;
}

TableDef xhmb() { return {QStringLiteral("Xhmb"), {{"Idx", T::Integer}, {"cmd", T::Integer}, {"nmb", T::Integer}}}; }

TableDef saveTable(const QString& name) {
    TableDef t{name, {{"Idx", T::Integer}, {"Name", T::String}, {"Bit", T::Integer}}};
    t.columns += numbered("f", 1, 36, T::Integer);
    return t;
}

QString candidateTableName(CandidateKind kind) {
    switch (kind) {
        case CandidateKind::Combinations:
            return QStringLiteral("zuhe");
        case CandidateKind::Wheel:
            return QStringLiteral("zuheRote");
        case CandidateKind::Template:
            return QStringLiteral("zuheMoban");
        case CandidateKind::Imported:
            return QStringLiteral("zuheRead");
        case CandidateKind::SixNumbers:
            return QStringLiteral("zuhef");
    }
    return {};
}

TableDef candidate(CandidateKind kind) {
    TableDef t{candidateTableName(kind), {{"idx", T::Integer}}};
    const bool six = kind == CandidateKind::SixNumbers;
    t.columns += numbered("fig", 1, six ? 6 : 7, T::Integer);
    t.columns.append({"canshu", T::Integer});
    const QList<ColumnDef> flags = named({"unslt", "preunslt", "tmpunslt", "Gpslt"}, T::Bit);
    if (six) {
        t.columns += {{"Numstring", T::String}, {"fliter", T::String}};
        t.columns += flags;
        return t;
    }
    const QList<ColumnDef> texts{{"Numstring", T::String}, {"NumstringHou", T::String},
                                 {"SKnum", T::Integer},    {"JSqihao", T::Long}};
    // zuheRead has its reason column right after canshu.
    if (kind == CandidateKind::Imported) {
        t.columns.append({"fliter", T::String});
        t.columns += texts;
    } else {
        t.columns += texts;
        t.columns.append({kind == CandidateKind::Wheel ? "Fliter" : "fliter", T::String});
    }
    t.columns += flags;
    t.columns.append({"Errnum", T::Integer});
    return t;
}

QList<TableDef> templateTables(TemplateKind kind) {
    switch (kind) {
        case TemplateKind::History:
            return {frontDrawTable(),
                    backDrawTable(),
                    wholeDrawTable(),
                    frontOmissionTable(),
                    backOmissionTable(),
                    wholeOmissionTable(),
                    frequencyTable(QStringLiteral("Gailv")),
                    frequencyTable(QStringLiteral("GailvHou")),
                    frequencyTable(QStringLiteral("GailvQuan")),
                    frequencyScratchTable(QStringLiteral("Gailvtmp")),
                    frequencyScratchTable(QStringLiteral("Gailvtmphou"))};
        case TemplateKind::FilterDb:
            return {reducedDrawTable(), snapshotTable(QStringLiteral("Canshu")),
                    snapshotTable(QStringLiteral("moban")), xhmb()};
        case TemplateKind::SavedPicks:
            return {saveTable(QStringLiteral("SAVE")), saveTable(QStringLiteral("SAVEHOU")),
                    saveTable(QStringLiteral("SAVEdan")), saveTable(QStringLiteral("SAVEHOUdan"))};
        case TemplateKind::Empty: return {};
    }
    return {};
}

int frequencyRows(const QString& table) {
    if (table.compare(QLatin1String("GailvHou"), Qt::CaseInsensitive) == 0) return 24;
    if (table.compare(QLatin1String("Gailv"), Qt::CaseInsensitive) == 0 ||
        table.compare(QLatin1String("GailvQuan"), Qt::CaseInsensitive) == 0)
        return 36;
    return 0;
}

}  // namespace schema

bool createTemplateTables(SqliteDb& db, TemplateKind kind) {
    SqliteTransaction tx(db);
    if (!tx.active()) return false;
    for (const TableDef& t : schema::templateTables(kind)) {
        if (!db.exec(t.createStatement())) return false;
        // The frequency tables exist from the start with one row of zeros per number.
        const int rows = schema::frequencyRows(t.name);
        for (int n = 1; n <= rows; ++n) {
            if (!db.exec(QStringLiteral("INSERT INTO [%1]([Number],[gailv],[Glnum]) VALUES (?1,0,0)").arg(t.name),
                         {n}))
                return false;
        }
    }
    return tx.commit();
}

bool createTemplate(const QString& path, TemplateKind kind) {
    if (QFile::exists(path)) return false;
    // Written under a temporary name of this process first, so a half-made template is never
    // taken for one, and two programs starting at once each write their own.
    const QString tmp = path + QStringLiteral(".part-%1").arg(QCoreApplication::applicationPid());
    QFile::remove(tmp);
    {
        SqliteDb db;
        if (!db.open(tmp, true) || !createTemplateTables(db, kind)) {
            db.close();
            QFile::remove(tmp);
            return false;
        }
    }
    if (QFile::rename(tmp, path)) return true;
    // Another program made the template first: its copy is as good as this one.
    QFile::remove(tmp);
    return QFile::exists(path);
}
