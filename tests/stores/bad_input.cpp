#include "stores/bad_input.h"

#include "workspace/sqlite_db.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStringDecoder>
#include <QStringEncoder>

#include <sys/resource.h>
#include <unistd.h>
#include <csignal>

namespace bad_input {

namespace {

// Room for a lock file, not for a database page with its journal.
constexpr qint64 kFileSizeLimit = 4096;
constexpr uid_t kNobody = 65534;

bool isDatabase(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) && f.read(16) == QByteArrayLiteral("SQLite format 3\0");
}

void put(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) f.write(bytes);
}

void makeDatabase(const QString& path, bool pages) {
    QFile::remove(path);
    SqliteDb db;
    if (!db.open(path, true)) return;
    db.exec(QStringLiteral("CREATE TABLE notes(id INTEGER PRIMARY KEY, text TEXT)"));
    const int rows = pages ? 400 : 1;
    db.begin();
    for (int i = 0; i < rows; ++i)
        db.exec(QStringLiteral("INSERT INTO notes(text) VALUES (?1)"), {QString(100, QChar(u'a' + i % 26))});
    db.commit();
}

}  // namespace

const char* name(Kind k) {
    switch (k) {
        case Kind::Empty:
            return "empty";
        case Kind::Garbage:
            return "binary garbage";
        case Kind::Utf16Bom:
            return "UTF-16 with BOM";
        case Kind::Utf8Bom:
            return "UTF-8 with BOM";
        case Kind::Crlf:
            return "CRLF lines";
        case Kind::MegaLine:
            return "a line of a megabyte";
        case Kind::TruncatedSqlite:
            return "truncated SQLite file";
        case Kind::ForeignSqlite:
            return "foreign SQLite file";
    }
    return "";
}

void write(Kind k, const QString& path, const QByteArray& valid) {
    switch (k) {
        case Kind::Empty:
            return put(path, {});
        case Kind::Garbage: {
            QRandomGenerator random(7);
            QByteArray bytes(4096, '\0');
            for (char& c : bytes) c = static_cast<char>(random.bounded(256));
            return put(path, bytes);
        }
        case Kind::Utf16Bom: {
            QStringEncoder toUtf16(QStringEncoder::Utf16LE);
            return put(path, QByteArrayLiteral("\xFF\xFE") + QByteArray(toUtf16(QString::fromUtf8(valid))));
        }
        case Kind::Utf8Bom:
            return put(path, QByteArrayLiteral("\xEF\xBB\xBF") + valid);
        case Kind::Crlf:
            return put(path, QByteArray(valid).replace("\n", "\r\n"));
        case Kind::MegaLine:
            return put(path, valid + QByteArray(1 << 20, '7') + '\n');
        case Kind::TruncatedSqlite: {
            if (!isDatabase(path)) makeDatabase(path, true);
            QFile f(path);
            f.resize(f.size() / 2);
            return;
        }
        case Kind::ForeignSqlite:
            return makeDatabase(path, false);
    }
}

QMap<QString, QByteArray> digest(const QString& root) {
    QMap<QString, QByteArray> files;
    const QDir base(root);
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (path.endsWith(QLatin1String(".lock"))) continue;
        QFile f(path);
        files[base.relativeFilePath(path)] =
            f.open(QIODevice::ReadOnly) ? QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256)
                                        : QByteArrayLiteral("unreadable");
    }
    return files;
}

bool prepareReadOnly(const QString& root, bool undo) {
    const bool root_user = geteuid() == 0;
    const auto dirPerm = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup |
                         QFile::ReadOther | QFile::ExeOther |
                         ((undo || root_user) ? QFile::WriteOwner : QFile::Permissions());
    const auto filePerm = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther |
                          ((undo || root_user) ? QFile::WriteOwner : QFile::Permissions());
    bool ok = QFile::setPermissions(root, dirPerm);
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        ok = QFile::setPermissions(path, it.fileInfo().isDir() ? dirPerm : filePerm) && ok;
    }
    // Every folder above must let `nobody` pass.
    for (QDir up(root); up.cdUp() && !up.isRoot();)
        QFile::setPermissions(up.path(), QFile::permissions(up.path()) | QFile::ExeOther | QFile::ReadOther);
    return ok;
}

Run runCli(const QString& home, const QStringList& args, Limit limit) {
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("SHUANGQU_HOME"));
    p.setProcessEnvironment(env);
    p.setChildProcessModifier([limit] {
        if (limit == Limit::FileSize) {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit l{kFileSizeLimit, kFileSizeLimit};
            setrlimit(RLIMIT_FSIZE, &l);
        } else if (limit == Limit::ReadOnly && geteuid() == 0) {
            if (setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(126);
        }
    });
    p.start(QStringLiteral(SHUANGQU_CLI), QStringList{QStringLiteral("--home"), home} + args);
    p.waitForFinished(120000);
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
            QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

}  // namespace bad_input
