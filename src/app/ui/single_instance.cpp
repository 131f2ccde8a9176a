#include "app/ui/single_instance.h"

#include <QCryptographicHash>
#include <QLocalServer>
#include <QLocalSocket>

SingleInstance::SingleInstance(const QString& dataRoot, QObject* parent) : QObject(parent) {
    const QByteArray hash =
        QCryptographicHash::hash(dataRoot.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    m_name = QStringLiteral("shuangqu-") + QString::fromLatin1(hash);
}

bool SingleInstance::anotherIsRunning() {
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(500)) return false;
    socket.write("activate\n");
    socket.waitForBytesWritten(500);
    socket.disconnectFromServer();
    return true;
}

bool SingleInstance::listen() {
    m_server = new QLocalServer(this);
    // A socket left by a crashed instance is removed: nobody answered on it.
    QLocalServer::removeServer(m_name);
    if (!m_server->listen(m_name)) return false;
    connect(m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* s = m_server->nextPendingConnection()) {
            connect(s, &QLocalSocket::disconnected, s, &QObject::deleteLater);
            emit activationRequested();
        }
    });
    return true;
}
