#include "workspace/settings.h"

#include <QByteArrayView>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

Settings::Settings(QString dir) : m_dir(std::move(dir)) { QDir().mkpath(m_dir); }

QString Settings::appName(SettingApp app, const QString& workspace) {
    switch (app) {
        case SettingApp::Registry: return QStringLiteral("LUMENQYSQ");
        case SettingApp::Workspace: return workspace + QStringLiteral("QY");
        case SettingApp::Report: return workspace;
        case SettingApp::Fortune: return QStringLiteral("SLSS");
    }
    return {};
}

QString Settings::fileFor(const QString& app) const { return QDir(m_dir).filePath(app + QStringLiteral(".ini")); }

static QString sectionOf(const SettingKey& key, int index) {
    QString s = QString::fromUtf8(key.section);
    return s.contains(QLatin1String("%1")) ? s.arg(index) : s;
}

static QString keyOf(const SettingKey& key, int index) {
    QString k = QString::fromUtf8(key.key);
    return k.contains(QLatin1String("%1")) ? k.arg(index) : k;
}

QString Settings::read(const SettingKey& key, const QString& workspace, int index) const {
    return readRaw(appName(key.app, workspace), sectionOf(key, index), keyOf(key, index),
                   QString::fromUtf8(key.fallback));
}

int Settings::readInt(const SettingKey& key, const QString& workspace, int index) const {
    bool ok = false;
    int v = read(key, workspace, index).trimmed().toInt(&ok);
    return ok ? v : QString::fromUtf8(key.fallback).toInt();
}

bool Settings::write(const SettingKey& key, const QString& value, const QString& workspace, int index) {
    return writeRaw(appName(key.app, workspace), sectionOf(key, index), keyOf(key, index), value);
}

QString Settings::readRaw(const QString& app, const QString& section, const QString& key,
                          const QString& fallback) const {
    QSettings s(fileFor(app), QSettings::IniFormat);
    return s.value(section + QLatin1Char('/') + key, fallback).toString();
}

bool Settings::writeRaw(const QString& app, const QString& section, const QString& key,
                        const QString& value) {
    return writeAll(app, {{section, key, value}});
}

bool Settings::writeAll(const QList<KeyValue>& values, const QString& workspace) {
    if (values.isEmpty()) return true;
    QList<Value> raw;
    const SettingApp app = values.front().key->app;
    for (const KeyValue& v : values) {
        Q_ASSERT(v.key->app == app);  // one file per call
        raw.append({sectionOf(*v.key, v.index), keyOf(*v.key, v.index), v.value});
    }
    return writeAll(appName(app, workspace), raw);
}

bool Settings::writeAll(const QString& app, const QList<Value>& values) {
    const QString file = fileFor(app);
    QSettings s(file, QSettings::IniFormat);
    if (!s.isWritable()) return false;
    QList<QVariant> before;
    for (const Value& v : values) {
        const QString path = v.section + QLatin1Char('/') + v.key;
        before.append(s.value(path));
        s.setValue(path, v.value);
    }
    s.sync();
    if (s.status() == QSettings::NoError && QFileInfo(file).isFile()) return true;
    // Not saved: take the values back out of the process's cached copy of the file, last first.
    for (qsizetype i = values.size() - 1; i >= 0; --i) {
        const QString path = values[i].section + QLatin1Char('/') + values[i].key;
        if (before[i].isValid())
            s.setValue(path, before[i]);
        else
            s.remove(path);
    }
    return false;
}

QString Settings::fileProblem(const QString& file) {
    QFile f(file);
    if (!f.exists()) return {};
    const auto problem = [&file](const QString& what) {
        return QStringLiteral("设置文件无法读取（%1），未作任何改动：%2")
            .arg(what, QDir::toNativeSeparators(file));
    };
    if (!f.open(QIODevice::ReadOnly)) return problem(f.errorString());
    QByteArray bytes = f.readAll();
    if (bytes.startsWith("\xEF\xBB\xBF")) bytes.remove(0, 3);
    if (bytes.contains('\0')) return problem(QStringLiteral("binary content or UTF-16 text"));
    if (!QByteArrayView(bytes).isValidUtf8()) return problem(QStringLiteral("not UTF-8 text"));
    int number = 0;
    for (const QByteArray& raw : bytes.split('\n')) {
        ++number;
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(';') || line.startsWith('#') || line.contains('=') ||
            (line.startsWith('[') && line.endsWith(']')))
            continue;
        return problem(QStringLiteral("line %1 is neither a section nor a key=value line").arg(number));
    }
    return {};
}

QString Settings::filesProblem(const QString& workspace) const {
    // The list first: the workspace's own files are found through it.
    QList<QString> apps{appName(SettingApp::Registry, {}), appName(SettingApp::Fortune, {})};
    if (!workspace.isEmpty())
        apps << appName(SettingApp::Workspace, workspace) << appName(SettingApp::Report, workspace);
    for (const QString& app : apps) {
        const QString problem = fileProblem(fileFor(app));
        if (!problem.isEmpty()) return problem;
    }
    return {};
}

QString Settings::saveFailedText(const QString& file) {
    return QStringLiteral("设置无法保存，请检查该文件及其文件夹是否可写：") + QDir::toNativeSeparators(file);
}
