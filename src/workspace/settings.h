#pragma once

#include "workspace/setting_keys.h"

#include <QList>
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

    // Several values of one application saved together: the file is replaced once (QSettings
    // writes a temporary file and renames it), so a process killed meanwhile leaves all of them
    // or none. False, and none of them kept, when the file could not be saved.
    struct Value {
        QString section;
        QString key;
        QString value;
    };
    bool writeAll(const QString& app, const QList<Value>& values);
    // Typed form: each key with its index; keys of one application only.
    struct KeyValue {
        const SettingKey* key;
        QString value;
        int index = 0;
    };
    bool writeAll(const QList<KeyValue>& values, const QString& workspace = {});

    // The INI file behind an application name, and that of a key.
    QString fileFor(const QString& app) const;
    QString fileFor(const SettingKey& key, const QString& workspace = {}) const {
        return fileFor(appName(key.app, workspace));
    }

    static QString appName(SettingApp app, const QString& workspace);

    // Why a settings file cannot be read as one, naming it; empty when it can (or is absent).
    // A settings file is UTF-8 text (a byte order mark and CR LF line ends are fine) of
    // sections, key=value lines, comments and blank lines; anything else (binary bytes, UTF-16,
    // a database, lines of neither form) was not written as settings, and reading it as
    // settings would show defaults and later overwrite it.
    static QString fileProblem(const QString& file);
    // The first problem of the files a program reads before it writes any: the workspace list and
    // the fortune settings, and with a workspace named its own settings and report files.
    QString filesProblem(const QString& workspace = {}) const;
    static inline const QString kDamagedTitle = QStringLiteral("设置文件错误");

    // What the player reads when a write to `file` failed.
    static inline const QString kSaveFailedTitle = QStringLiteral("设置错误");
    static QString saveFailedText(const QString& file);

private:
    QString m_dir;
};
