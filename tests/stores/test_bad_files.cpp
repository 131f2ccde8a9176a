// Each reader of outside data meets the same bad files: what a player may hand it (a BOM, CR LF
// line ends) is read as the plain file; everything else is refused with a message naming the
// file, exit 1, and not one byte of the data root changed.
#include "history/history_texts.h"
#include "stores/bad_input.h"
#include "stores/store_state.h"
#include "support/tiny_http_server.h"
#include "workspace/sqlite_db.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

using bad_input::Kind;
using bad_input::Limit;

namespace {

class BadFiles : public store_state::BaseRootSuite {
protected:
    QTemporaryDir m_run;
    QString home() const { return m_run.filePath(QStringLiteral("home")); }
    QString work() const { return m_run.filePath(QStringLiteral("work")); }
    QString inHome(const QString& rel) const { return QDir(home()).filePath(rel); }

    // A fresh copy of the base root.
    void fresh() {
        QDir(home()).removeRecursively();
        QDir(work()).removeRecursively();
        ASSERT_TRUE(store_state::copyTree(base(), home()));
        QDir().mkpath(work());
    }

    static QByteArray contentOf(const QString& path) {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    // `args` is refused: exit 1, a message naming `file`, the data root byte-identical.
    void expectRefused(const QStringList& args, const QString& file, Limit limit = Limit::None) {
        SCOPED_TRACE(qPrintable(args.join(' ')));
        const auto before = bad_input::digest(home());
        const bad_input::Run r = bad_input::runCli(home(), args, limit);
        EXPECT_EQ(r.exitCode, 1) << qPrintable(r.err);
        EXPECT_TRUE(r.err.contains(QDir::toNativeSeparators(file))) << qPrintable(r.err);
        EXPECT_TRUE(bad_input::digest(home()) == before) << "the data root changed";
    }

    QString run(const QStringList& args) {
        const bad_input::Run r = bad_input::runCli(home(), args);
        EXPECT_EQ(r.exitCode, 0) << qPrintable(args.join(' ') + ": " + r.err);
        return r.out;
    }
};

bool acceptedText(Kind k) { return k == Kind::Utf8Bom || k == Kind::Crlf; }

// A history database as the download service sends it: a fig table with the issue and the
// seven numbers of each draw.
QByteArray serviceDatabase(const QString& path) {
    {
        SqliteDb db;
        EXPECT_TRUE(db.open(path, true));
        EXPECT_TRUE(db.exec(QStringLiteral("CREATE TABLE fig(Idx integer, fig0 integer, fig1 integer, "
                                           "fig2 integer, fig3 integer, fig4 integer, fig5 integer, "
                                           "fig6 integer, fig7 integer)")));
        EXPECT_TRUE(db.exec(QStringLiteral("INSERT INTO fig VALUES (1,2008001,1,2,3,4,5,1,2),"
                                           "(2,2008002,6,7,8,9,10,3,4)")));
    }
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

const QString kServicePath = QStringLiteral("/download/lshm/中国体彩大乐透.mdb");

}  // namespace

// The history text import: a BOM or CR LF imports the same draws; an empty file would leave an
// empty history and is refused like every file that is no history text.
TEST_F(BadFiles, HistoryTextImport) {
    const QByteArray valid = contentOf(QStringLiteral(SHUANGQU_FIXTURES "/dlt_history_small.txt"));
    fresh();
    const QString plainHistory = run({"history", "show", "--table", "figquan"});
    for (Kind k : bad_input::kAll) {
        SCOPED_TRACE(bad_input::name(k));
        fresh();
        // Draws of their own first, so that an accepted file visibly replaces them.
        run({"history", "add", "1", "2", "3", "4", "5", "1", "2"});
        const QString input = QDir(work()).filePath(QStringLiteral("历史.txt"));
        QFile::remove(input);
        bad_input::write(k, input, valid);
        if (acceptedText(k)) {
            EXPECT_EQ(run({"history", "import", input}), QStringLiteral("5\n"));
            EXPECT_EQ(run({"history", "show", "--table", "figquan"}), plainHistory);
        } else {
            expectRefused({"history", "import", input}, input);
        }
    }
}

// The settings files (the workspace list, a workspace's settings): BOM and CR LF read as the
// plain file, an empty file is a store without values; anything else is no settings file and is
// refused before a command reads defaults from it or saves over it.
TEST_F(BadFiles, SettingsFiles) {
    for (const QString& rel :
         {QStringLiteral("settings/LUMENQYSQ.ini"), QStringLiteral("settings/甲QY.ini")}) {
        for (Kind k : bad_input::kAll) {
            SCOPED_TRACE(qPrintable(rel + QLatin1Char(' ') + QString::fromLatin1(bad_input::name(k))));
            fresh();
            const QString file = inHome(rel);
            const QString list = run({"workspace", "list"});
            const QString rules = run({"rules", "show"});
            const QByteArray valid =
                QFile::exists(file) ? contentOf(file) : QByteArray("[Initial]\nBitnum=35\n");
            bad_input::write(k, file, valid);
            if (acceptedText(k)) {
                EXPECT_EQ(run({"workspace", "list"}), list);
                EXPECT_EQ(run({"rules", "show"}), rules);
            } else if (k == Kind::Empty) {
                run({"workspace", "list"});
            } else {
                expectRefused({"workspace", "list"}, file);
                expectRefused({"history", "add", "3", "9", "16", "24", "31", "2", "7"}, file);
            }
        }
    }
}

// The databases of a workspace that the program did not write (a file put there, a copy cut
// short, another program's database): every command that opens the workspace refuses. An
// empty file is a database without tables, which is made anew as an absent one is.
TEST_F(BadFiles, WorkspaceDatabases) {
    const QByteArray text = contentOf(QStringLiteral(SHUANGQU_FIXTURES "/dlt_history_small.txt"));
    for (const QString& rel :
         {QStringLiteral("甲/甲.db"), QStringLiteral("甲/filnum.db"), QStringLiteral("甲/numsave.db")}) {
        for (Kind k : bad_input::kAll) {
            SCOPED_TRACE(qPrintable(rel + QLatin1Char(' ') + QString::fromLatin1(bad_input::name(k))));
            fresh();
            const QString file = inHome(rel);
            if (k != Kind::TruncatedSqlite) QFile::remove(file);
            bad_input::write(k, file, text);
            if (k == Kind::Empty) {
                run({"history", "show"});
                EXPECT_GT(QFileInfo(file).size(), 0);
                continue;
            }
            expectRefused({"history", "show"}, file);
            expectRefused({"candidates", "count"}, file);
            expectRefused({"history", "add", "3", "9", "16", "24", "31", "2", "7"}, file);
        }
    }
}

// The database the history download fetches, in every bad form: the download's failure
// message, exit 1, and nothing of the data root changed (the fetched file not left behind).
// Bytes after the database's end (a text form's long line) leave it the same database.
TEST_F(BadFiles, DownloadedHistoryDatabase) {
    const QString served = QDir(m_run.path()).filePath(QStringLiteral("served.db"));
    const QByteArray valid = serviceDatabase(served);
    {
        // The good database replaces the history: the server and the command do their part.
        fresh();
        const TinyHttpServerThread server({{kServicePath, valid}});
        EXPECT_EQ(run({"history", "download-db", "--host", server.host()}), QStringLiteral("2\n"));
        EXPECT_TRUE(run({"history", "show", "--table", "figquan"}).contains(QStringLiteral("2008002")));
    }
    for (Kind k : bad_input::kAll) {
        SCOPED_TRACE(bad_input::name(k));
        QFile::remove(served);
        serviceDatabase(served);
        bad_input::write(k, served, valid);
        const QByteArray bytes = contentOf(served);
        fresh();
        const TinyHttpServerThread server({{kServicePath, bytes}});
        // Bytes after a database's last page are no part of it: the same database.
        if (bytes.startsWith(valid)) {
            EXPECT_EQ(run({"history", "download-db", "--host", server.host()}), QStringLiteral("2\n"));
            continue;
        }
        const auto before = bad_input::digest(home());
        const bad_input::Run r = bad_input::runCli(home(), {"history", "download-db", "--host", server.host()});
        EXPECT_EQ(r.exitCode, 1) << qPrintable(r.err);
        EXPECT_TRUE(r.err.contains(history_texts::kDownloadFailed)) << qPrintable(r.err);
        EXPECT_TRUE(bad_input::digest(home()) == before) << "the data root changed";
    }
}

// A damaged record in filnum.db: the message names the file and a byte copy kept beside it,
// once however often it is read; the next expansion starts a new record.
TEST_F(BadFiles, ADamagedRecordIsKeptAside) {
    fresh();
    const QString file = inHome(QStringLiteral("甲/filnum.db"));
    {
        SqliteDb db;
        ASSERT_TRUE(db.open(file));
        ASSERT_TRUE(db.exec(QStringLiteral("UPDATE sq_record_chunk SET data=zeroblob(64)")));
    }
    const QByteArray damaged = contentOf(file);
    for (int i = 0; i < 2; ++i) {
        const bad_input::Run r = bad_input::runCli(home(), {"candidates", "count"});
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_TRUE(r.err.contains(file)) << qPrintable(r.err);
        EXPECT_TRUE(r.err.contains(QStringLiteral(".damaged-"))) << qPrintable(r.err);
    }
    const QStringList aside =
        QDir(inHome(QStringLiteral("甲"))).entryList({QStringLiteral("filnum.db.damaged-*")});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(contentOf(inHome(QStringLiteral("甲/") + aside.front())), damaged);
    EXPECT_EQ(run({"expand", "--front", "2,8,15,23,29,30", "--back", "1,12"}), QStringLiteral("6\n"));
    EXPECT_EQ(run({"candidates", "count"}).split('\n').value(0).isEmpty(), false);
    EXPECT_EQ(contentOf(inHome(QStringLiteral("甲/") + aside.front())), damaged);
}

// The arguments: a value of 100 000 characters (the most one argument of a process may hold is
// 128 KiB), an empty word, control characters, a value missing or out of range. Each is a usage error or a
// refusal with a message; nothing is written.
TEST_F(BadFiles, Arguments) {
    fresh();
    const QString mega(100000, QLatin1Char('7'));
    const struct {
        QStringList args;
        int exitCode;
        const char* message;
    } cases[] = {
        {{"history", "add", "1", "2", "3", "4", "5", "1"}, 2, "history add"},
        {{"history", "add", "1", "2", "3", "4", "5", "1", mega}, 1, ""},
        {{"history", "edit", "3", "fig5", ""}, 1, ""},
        {{"history", "edit", mega, "fig5", "30"}, 2, "history edit"},
        {{"workspace", "create", mega}, 1, ""},
        {{"workspace", "create", QStringLiteral("a\u0001b")}, 1, ""},
        {{"rules", "set", "--front"}, 2, "--front"},
        {{"rules", "set", "--front", "3\u00A05"}, 2, "--front"},
        {{"history", "import", ""}, 1, ""},
        {{"history", "import", QStringLiteral("/nonexistent/历史.txt")}, 1, "/nonexistent/历史.txt"},
        {{"prize", "rules", "set", "1", "--money", "99999999999999999999"}, 2, "--money"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(qPrintable(c.args.join(' ').left(80)));
        const auto before = bad_input::digest(home());
        const bad_input::Run r = bad_input::runCli(home(), c.args);
        EXPECT_EQ(r.exitCode, c.exitCode) << qPrintable(r.err.left(400));
        EXPECT_FALSE(r.err.trimmed().isEmpty());
        EXPECT_TRUE(r.err.contains(QString::fromUtf8(c.message))) << qPrintable(r.err.left(400));
        EXPECT_TRUE(bad_input::digest(home()) == before) << "the data root changed";
    }
}

// Every kind of write on a data root that takes no write: refused, the file that could not be
// written named (the workspace's lock file comes first), nothing changed.
TEST_F(BadFiles, ReadOnlyFolder) {
    const struct {
        QStringList args;
        const char* file;  // what the message names, relative to the data root
    } writes[] = {
        {{"history", "add", "3", "9", "16", "24", "31", "2", "7"}, "甲/.shuangqu.lock"},
        {{"history", "import", QStringLiteral(SHUANGQU_FIXTURES "/dlt_history_small.txt")},
         "甲/.shuangqu.lock"},
        {{"expand", "--front", "2,8,15,23,29,30,31", "--back", "1,12,5,6"}, "甲/.shuangqu.lock"},
        {{"moban", "add", "history", "--same", "3", "--last", "2"}, "甲/.shuangqu.lock"},
        {{"rules", "set", "--front", "33"}, "甲/.shuangqu.lock"},
        {{"prize", "rules", "set", "9", "--money", "77"}, "甲/.shuangqu.lock"},
        {{"report", "write"}, "甲/.shuangqu.lock"},
        {{"workspace", "create", "丙"}, "丙"},
        {{"workspace", "rename", "乙", "丁"}, "丁"},
    };
    for (const auto& w : writes) {
        SCOPED_TRACE(qPrintable(w.args.join(' ')));
        fresh();
        ASSERT_TRUE(bad_input::prepareReadOnly(home()));
        expectRefused(w.args, inHome(QString::fromUtf8(w.file)), Limit::ReadOnly);
        bad_input::prepareReadOnly(home(), true);
    }
}

// A full disk (no file may grow past 4 KiB: the lock file fits, a database page does not):
// each write to a database is refused, naming it, and the database is as it was.
TEST_F(BadFiles, FullDisk) {
    const struct {
        QStringList args;
        const char* file;
    } writes[] = {
        {{"history", "add", "3", "9", "16", "24", "31", "2", "7"}, "甲/甲.db"},
        {{"history", "edit", "3", "fig5", "30"}, "甲/甲.db"},
        {{"history", "delete-last"}, "甲/甲.db"},
        {{"expand", "--front", "2,8,15,23,29,30,31,32,33", "--back", "1,12,5,6"}, "甲/filnum.db"},
        {{"moban", "add", "history", "--same", "3", "--last", "2"}, "甲/filnum.db"},
    };
    for (const auto& w : writes) {
        SCOPED_TRACE(qPrintable(w.args.join(' ')));
        fresh();
        expectRefused(w.args, inHome(QString::fromUtf8(w.file)), Limit::FileSize);
    }
}

namespace {

// A small tmpfs mounted for the test where it may mount one (as root), unmounted at the end.
class SmallDisk {
public:
    explicit SmallDisk(const QString& dir) : m_dir(dir) {
        QDir().mkpath(dir);
        m_mounted = geteuid() == 0 && QProcess::execute(QStringLiteral("mount"),
                                                        {"-t", "tmpfs", "-o", "size=8m", "tmpfs", dir}) == 0;
    }
    ~SmallDisk() {
        if (m_mounted) QProcess::execute(QStringLiteral("umount"), {QStringLiteral("-l"), m_dir});
    }
    bool mounted() const { return m_mounted; }

    // Fills the disk with a file of its own (outside any data root) until `spare` bytes are left.
    bool fill(qint64 spare) {
        QFile filler(QDir(m_dir).filePath(QStringLiteral("filler")));
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) return false;
        const QByteArray chunk(4096, '\0');
        while (filler.write(chunk) == chunk.size()) {
        }
        return filler.resize(std::max<qint64>(0, filler.size() - spare));
    }

private:
    QString m_dir;
    bool m_mounted = false;
};

}  // namespace

// A disk that is really full, with room for the lock file and no more: the writes of the small
// files (settings, the report) are refused as a database's are, naming the file, and every file
// is as it was (no settings file or report cut short).
TEST_F(BadFiles, FullDiskSmallFiles) {
    SmallDisk disk(m_run.filePath(QStringLiteral("disk")));
    if (!disk.mounted()) GTEST_SKIP() << "no tmpfs can be mounted here (not root)";
    const QString root = m_run.filePath(QStringLiteral("disk/home"));
    const struct {
        QStringList args;
        const char* file;  // what the message names, relative to the data root
    } writes[] = {
        {{"rules", "set", "--front", "33"}, "settings/甲QY.ini"},
        {{"prize", "rules", "set", "9", "--money", "78"}, "settings/甲QY.ini"},
        {{"report", "write"}, "甲/duijiang"},
        {{"workspace", "create", "丙"}, "settings/LUMENQYSQ.ini"},
        {{"history", "add", "3", "9", "16", "24", "31", "2", "7"}, "甲/甲.db"},
    };
    for (const auto& w : writes) {
        SCOPED_TRACE(qPrintable(w.args.join(' ')));
        QDir(root).removeRecursively();
        ASSERT_TRUE(store_state::copyTree(base(), root));
        ASSERT_TRUE(disk.fill(4096));
        const auto before = bad_input::digest(root);
        const bad_input::Run r = bad_input::runCli(root, w.args);
        EXPECT_EQ(r.exitCode, 1) << qPrintable(r.err);
        EXPECT_TRUE(r.err.contains(QDir::toNativeSeparators(QDir(root).filePath(QString::fromUtf8(w.file)))))
            << qPrintable(r.err);
        EXPECT_TRUE(bad_input::digest(root) == before) << "the data root changed";
    }
}
