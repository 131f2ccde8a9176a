#include "workspace/settings.h"

#include <QDir>
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
    const QString file = fileFor(app);
    QSettings s(file, QSettings::IniFormat);
    if (!s.isWritable()) return false;
    const QString path = section + QLatin1Char('/') + key;
    const QVariant before = s.value(path);
    s.setValue(path, value);
    s.sync();
    if (s.status() == QSettings::NoError && QFileInfo(file).isFile()) return true;
    // Not saved: take the value back out of the process's cached copy of the file.
    if (before.isValid())
        s.setValue(path, before);
    else
        s.remove(path);
    return false;
}

QString Settings::saveFailedText(const QString& file) {
    return QStringLiteral("设置无法保存，请检查该文件及其文件夹是否可写：") + QDir::toNativeSeparators(file);
}
