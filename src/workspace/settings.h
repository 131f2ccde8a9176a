#pragma once

#include "workspace/setting_keys.h"

#include <QString>

// The settings store: QSettings in INI form, one file per application name, all values
// decimal strings. The file of a key is <dir>/<application name>.ini.
//
// Every write is saved at once. A write that cannot be saved (a folder or file that is not
// writable, a folder standing where the file belongs) returns false and leaves the store as it
// was, also for reads later in this process: QSettings keeps its files cached per process, so
// the value that could not be saved is taken back out of that cache.
class Settings {
public:
    explicit Settings(QString dir);

    QString dir() const { return m_dir; }

    // Sections with "%1" take `index`; workspace keys take the workspace name.
    QString read(const SettingKey& key, const QString& workspace = {}, int index = 0) const;
    int readInt(const SettingKey& key, const QString& workspace = {}, int index = 0) const;
    // True when saved.
    bool write(const SettingKey& key, const QString& value, const QString& workspace = {}, int index = 0);
    bool write(const SettingKey& key, int value, const QString& workspace = {}, int index = 0) {
        return write(key, QString::number(value), workspace, index);
    }

    // Raw access for keys whose section and key are computed (prize rules by rank).
    QString readRaw(const QString& app, const QString& section, const QString& key, const QString& fallback) const;
    bool writeRaw(const QString& app, const QString& section, const QString& key, const QString& value);

    // The INI file behind an application name, and that of a key.
    QString fileFor(const QString& app) const;
    QString fileFor(const SettingKey& key, const QString& workspace = {}) const {
        return fileFor(appName(key.app, workspace));
    }

    static QString appName(SettingApp app, const QString& workspace);

    // What the player reads when a write to `file` failed.
    static inline const QString kSaveFailedTitle = QStringLiteral("设置错误");
    static QString saveFailedText(const QString& file);

private:
    QString m_dir;
};
