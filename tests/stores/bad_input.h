#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

// The bad files every reader of outside data meets, and what a test needs around them: a
// digest of a whole data root to show that a refusal changed no byte, and the CLI run with a
// file size limit (a full disk) or as a user who may not write (a read-only folder).
namespace bad_input {

enum class Kind { Empty, Garbage, Utf16Bom, Utf8Bom, Crlf, MegaLine, TruncatedSqlite, ForeignSqlite };
inline constexpr Kind kAll[] = {Kind::Empty, Kind::Garbage,  Kind::Utf16Bom,        Kind::Utf8Bom,
                                Kind::Crlf,  Kind::MegaLine, Kind::TruncatedSqlite, Kind::ForeignSqlite};
const char* name(Kind k);

// Replaces `path` with the bad form of `valid` (LF text): the text re-encoded, or bytes that
// are no such text. TruncatedSqlite cuts `path` itself to half when it is a database, else
// writes the first half of a database of some pages; ForeignSqlite writes a valid database of
// other tables.
void write(Kind k, const QString& path, const QByteArray& valid);

// Path (relative) -> SHA-256 of every file under `root`, lock files left out.
QMap<QString, QByteArray> digest(const QString& root);

enum class Limit { None, FileSize, ReadOnly };
struct Run {
    int exitCode = -1;
    QString out, err;
};
// Runs shuangqu-cli against `home`. FileSize: no file may be written past 4 KiB (SIGXFSZ ignored, so
// writes fail with EFBIG as on a full disk). ReadOnly: the process runs as the unprivileged
// user `nobody` when the test runs as root, over a tree it can read but not write; as another
// user the tree is made read-only instead (prepareReadOnly).
Run runCli(const QString& home, const QStringList& args, Limit limit = Limit::None);
// Makes the tree readable to all and, for ReadOnly as a user other than root, not writable;
// undo restores write access.
bool prepareReadOnly(const QString& root, bool undo = false);

}  // namespace bad_input
