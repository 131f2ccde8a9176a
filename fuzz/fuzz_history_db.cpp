// A history database not written by this program: the database the history download fetches
// (served by a local HTTP server, read and made the history) and a workspace's <name>.db read
// by the history loader. The first byte chooses.
#include "fuzz_support.h"
#include "history/history_download.h"
#include "workspace/history_loader.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/sqlite_db.h"

#include <QDir>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

namespace {

// Answers every GET with `body`.
class OneFileServer {
public:
    QByteArray body;

    OneFileServer() {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
            while (QTcpSocket* socket = m_server.nextPendingConnection()) {
                QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
                QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                    m_request += socket->readAll();
                    if (!m_request.contains("\r\n\r\n")) return;
                    m_request.clear();
                    socket->write(
                        "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\nContent-Length: " +
                        QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
                    socket->disconnectFromHost();
                });
            }
        });
    }
    QString host() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort()); }

private:
    QTcpServer m_server;
    QByteArray m_request;
};

struct Target {
    Session session{fuzz_support::scratch().root, fuzz_support::scratch().settings};
    ScriptedPrompter prompter;
    OneFileServer server;
    Target() { session.open(fuzz_support::scratch().entered()); }
};

void download(Target& t, const QByteArray& file) {
    t.server.body = file;
    t.prompter.clear();
    HistoryDownload d(t.session, t.prompter, 5000);
    d.setHost(t.server.host());
    d.downloadDatabase();
}

void loadHistory(const QByteArray& file) {
    const QString path = fuzz_support::scratch().dir.filePath(QStringLiteral("history.db"));
    QFile::remove(path);
    if (!fuzz_support::writeFile(path, file)) return;
    SqliteDb db;
    if (!db.open(path)) return;
    DrawHistory history;
    QString error;
    if (history_loader::isHistoryDatabase(db)) history_loader::load(db, history, &error);
}

}  // namespace

SQ_FUZZ_START_APPLICATION

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Target target;
    if (size < 1) return 0;
    const QByteArray file = fuzz_support::bytes(data + 1, size - 1);
    if (data[0] & 1)
        download(target, file);
    else
        loadHistory(file);
    return 0;
}
