#pragma once

#include "support/qt_printers.h"

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

// Runs the built shuangqu-cli as a process against its own data root.
struct CliRun {
    int exitCode = -1;
    QString out;
    QString err;
};

class CliRunner {
public:
    CliRunner() = default;
    // Runs against a data root the test chose (to look at what lies beside it).
    explicit CliRunner(QString home) : m_home(std::move(home)) {}
    QString home() const { return m_home.isEmpty() ? m_dir.path() : m_home; }

    CliRun run(const QStringList& args, int timeoutMs = 120000) const {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("SHUANGQU_HOME"));
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(SHUANGQU_CLI), QStringList{QStringLiteral("--home"), home()} + args);
        p.waitForFinished(timeoutMs);
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, QString::fromUtf8(p.readAllStandardOutput()),
                QString::fromUtf8(p.readAllStandardError())};
    }

private:
    QTemporaryDir m_dir;
    QString m_home;
};
