#pragma once

#include <QEventLoop>
#include <QHash>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <gtest/gtest.h>

#include <future>
#include <thread>

// Answers GET requests for a fixed set of paths, 404 for the rest. It closes after
// kMaxRequests requests and when the test ends.
class TinyHttpServer {
public:
    static constexpr int kMaxRequests = 8;

    explicit TinyHttpServer(QHash<QString, QByteArray> files) : m_files(std::move(files)) {
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost, 0));
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] { accept(); });
    }

    QString host() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort()); }
    const QStringList& requested() const { return m_requested; }

private:
    void accept() {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { serve(socket); });
        }
    }

    void serve(QTcpSocket* socket) {
        QByteArray& buffer = m_buffers[socket];
        buffer += socket->readAll();
        if (!buffer.contains("\r\n\r\n")) return;
        const QList<QByteArray> requestLine = buffer.left(buffer.indexOf("\r\n")).split(' ');
        const QString path = QUrl::fromPercentEncoding(requestLine.value(1));
        m_buffers.remove(socket);
        m_requested << path;
        const auto it = m_files.constFind(path);
        const QByteArray body = it != m_files.constEnd() ? *it : QByteArray("not found");
        const QByteArray status = it != m_files.constEnd() ? "200 OK" : "404 Not Found";
        socket->write("HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                      "\r\nConnection: close\r\n\r\n" + body);
        socket->disconnectFromHost();
        if (m_requested.size() >= kMaxRequests) m_server.close();
    }

    QTcpServer m_server;
    QHash<QString, QByteArray> m_files;
    QHash<QTcpSocket*, QByteArray> m_buffers;
    QStringList m_requested;
};

// The same server on a thread of its own, for a client that blocks the test's thread (a process
// the test waits for).
class TinyHttpServerThread {
public:
    explicit TinyHttpServerThread(QHash<QString, QByteArray> files) {
        std::promise<QString> started;
        std::future<QString> host = started.get_future();
        m_thread = std::thread([this, &started, files = std::move(files)]() mutable {
            QEventLoop loop;
            m_loop = &loop;
            TinyHttpServer server(std::move(files));
            started.set_value(server.host());
            loop.exec();
        });
        m_host = host.get();
    }
    ~TinyHttpServerThread() {
        QMetaObject::invokeMethod(m_loop, &QEventLoop::quit, Qt::QueuedConnection);
        m_thread.join();
    }
    QString host() const { return m_host; }

private:
    std::thread m_thread;
    QEventLoop* m_loop = nullptr;
    QString m_host;
};
