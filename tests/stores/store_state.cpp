#include "stores/store_state.h"

#include "support/cli_runner.h"
#include "workspace/data_root.h"
#include "workspace/sqlite_db.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>

namespace store_state {

namespace {

QString digestOf(const QByteArray& bytes) {
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());
}

QByteArray valueText(const QVariant& v) {
    if (v.isNull()) return QByteArrayLiteral("NULL");
    if (v.typeId() == QMetaType::QByteArray) return "x" + v.toByteArray().toHex();
    return v.toString().toUtf8();
}

void addDatabase(Snapshot& s, const QString& path, const QString& key) {
    SqliteDb db;
    if (!db.open(path)) {
        s.damaged << key;
        s.entries[key] = QStringLiteral("cannot open: ") + db.lastError();
        return;
    }
    const QString check = db.scalar(QStringLiteral("PRAGMA integrity_check")).toString();
    if (check != QLatin1String("ok")) s.damaged << key;
    s.entries[key] = check;
    // A candidate table kept as a record image: the image is the data; the relational table is
    // derived from it after the image commits (its own transaction, marked by the versions), so
    // it and the record's version columns are left out.
    QStringList derived;
    if (db.tableExists(QStringLiteral("sq_record")))
        for (const QVariantList& r : db.rows(QStringLiteral("SELECT tbl FROM sq_record")))
            derived << r[0].toString();
    const QList<QVariantList> tables =
        db.rows(QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type='table' ORDER BY name"));
    for (const QVariantList& t : tables) {
        const QString name = t[0].toString();
        if (derived.contains(name)) continue;
        QByteArray dump = t[1].toString().toUtf8() + '\n';
        const QString quoted =
            QStringLiteral("\"") + QString(name).replace('"', QStringLiteral("\"\"")) + '"';
        const QString columns =
            name == QLatin1String("sq_record")
                ? QStringLiteral("tbl,kind,rows,layout,textmode,backtext,reasons,token,image_version")
                : QStringLiteral("*");
        for (const QVariantList& row :
             db.rows(QStringLiteral("SELECT %1 FROM %2 ORDER BY rowid").arg(columns, quoted))) {
            for (const QVariant& v : row) dump += valueText(v) + '\t';
            dump += '\n';
        }
        s.entries[key + QLatin1Char('#') + name] = digestOf(dump);
    }
}

bool isData(const QString& name) {
    const QString lower = name.toLower();
    return lower.endsWith(QLatin1String(".db")) || lower.endsWith(QLatin1String(".ini")) ||
           lower.endsWith(QLatin1String(".txt"));
}

QString reportText(const QByteArray& bytes) {
    const QList<QByteArray> lines = bytes.split('\n');
    // The first two lines name the time of the check.
    return QStringLiteral("%1 lines %2").arg(lines.size()).arg(digestOf(lines.mid(2).join('\n')));
}

// The workspace names of the list file, as many as its count says.
QStringList listedWorkspaces(const QString& root) {
    QFile f(QDir(root).filePath(QStringLiteral("settings/LUMENQYSQ.ini")));
    if (!f.open(QIODevice::ReadOnly)) return {};
    QMap<int, QString> names;
    int count = 0, section = 0;
    for (const QByteArray& raw : f.readAll().split('\n')) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.startsWith(QLatin1String("[Username")))
            section = line.mid(9).chopped(1).toInt();
        else if (line.startsWith(QLatin1Char('[')))
            section = 0;
        else if (section == 0 && line.startsWith(QLatin1String("Usernum=")))
            count = line.mid(8).toInt();
        else if (section > 0 && line.startsWith(QLatin1String("Name=")))
            names[section] = line.mid(5);
    }
    QStringList listed;
    for (int i = 1; i <= count; ++i) listed << names.value(i);
    return listed;
}

}  // namespace

Snapshot take(const QString& root) {
    Snapshot s;
    const QDir base(root);
    const DataRoot dataRoot(root);
    const QStringList listed = listedWorkspaces(root);
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString rel = base.relativeFilePath(it.next());
        // A folder that no entry of the list names is no workspace (the files of one being
        // created before its entry, or left of one deleted after its entry went).
        const QString top = rel.section(QLatin1Char('/'), 0, 0);
        if (rel.contains(QLatin1Char('/')) && !dataRoot.isProgramFolder(base.filePath(top)) &&
            !listed.contains(top))
            continue;
        files << rel;
    }
    files.sort();
    int report = 0;
    for (const QString& rel : files) {
        if (!isData(rel)) continue;
        const QString path = base.filePath(rel);
        if (rel.toLower().endsWith(QLatin1String(".db"))) {
            addDatabase(s, path, rel);
            continue;
        }
        QFile f(path);
        const QByteArray bytes = f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArrayLiteral("unreadable");
        if (rel.endsWith(QStringLiteral(" 大乐透号码.TXT")))
            s.exports[rel] = digestOf(bytes);
        else if (rel.contains(QLatin1String("/duijiang/")))
            s.entries[QStringLiteral("report %1").arg(++report)] = reportText(bytes);
        else
            s.entries[rel] = digestOf(bytes);
    }
    return s;
}

bool makeBaseRoot(const QString& home, const QString& scratch) {
    const CliRunner cli(home);
    const QString input = QDir(scratch).filePath(QStringLiteral("small.txt"));
    QDir().mkpath(scratch);
    QFile::copy(QStringLiteral(SHUANGQU_FIXTURES "/dlt_history_small.txt"), input);
    for (const QStringList& args :
         {QStringList{"workspace", "create", "乙"}, QStringList{"workspace", "create", "甲"},
          QStringList{"history", "import", input},
          QStringList{"expand", "--front", "2,8,15,23,29,30", "--back", "1,12,5"},
          QStringList{"moban", "add", "relation", "kill", "2", "8", "15"}, QStringList{"report", "write"}}) {
        const CliRun r = cli.run(args);
        if (r.exitCode != 0) {
            qWarning("%s: %s", qPrintable(args.join(' ')), qPrintable(r.err));
            return false;
        }
    }
    return true;
}

bool copyTree(const QString& from, const QString& to) {
    QDir().mkpath(to);
    QDirIterator it(from, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    const QDir src(from), dst(to);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString target = dst.filePath(src.relativeFilePath(path));
        if (it.fileInfo().isDir() ? !QDir().mkpath(target) : !QFile::copy(path, target)) return false;
    }
    return true;
}

QString difference(const Snapshot& a, const Snapshot& b, bool exports) {
    const QMap<QString, QString>& x = exports ? a.exports : a.entries;
    const QMap<QString, QString>& y = exports ? b.exports : b.entries;
    QStringList lines;
    for (auto i = x.cbegin(); i != x.cend() && lines.size() < 5; ++i)
        if (y.value(i.key()) != i.value()) lines << i.key();
    for (auto i = y.cbegin(); i != y.cend() && lines.size() < 5; ++i)
        if (!x.contains(i.key())) lines << i.key();
    return lines.join(QStringLiteral(", "));
}

}  // namespace store_state
