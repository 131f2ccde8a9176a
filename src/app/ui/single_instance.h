#pragma once

#include <QObject>
#include <QString>

class QLocalServer;

// One running program per data root. The first instance listens on a local socket; a second
// one finds it, asks it to bring its window forward, and ends.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    static inline const QString kAlreadyRunning =
        QStringLiteral("此程序已经执行,无法重复执行本程序,否则严重影响本程序执行速度!");

    explicit SingleInstance(const QString& dataRoot, QObject* parent = nullptr);
    // True when another instance answered (it has been asked to come forward).
    bool anotherIsRunning();
    // Starts listening; `activationRequested` fires when a later start knocks.
    bool listen();

signals:
    void activationRequested();

private:
    QString m_name;
    QLocalServer* m_server = nullptr;
};
