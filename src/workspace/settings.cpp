#include "workspace/settings.h"

#include <QDir>
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

void Settings::write(const SettingKey& key, const QString& value, const QString& workspace, int index) {
    writeRaw(appName(key.app, workspace), sectionOf(key, index), keyOf(key, index), value);
}

QString Settings::readRaw(const QString& app, const QString& section, const QString& key,
                          const QString& fallback) const {
    QSettings s(fileFor(app), QSettings::IniFormat);
    return s.value(section + QLatin1Char('/') + key, fallback).toString();
}

void Settings::writeRaw(const QString& app, const QString& section, const QString& key, const QString& value) {
    QSettings s(fileFor(app), QSettings::IniFormat);
    s.setValue(section + QLatin1Char('/') + key, value);
    s.sync();
}
