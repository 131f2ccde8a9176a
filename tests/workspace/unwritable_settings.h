#pragma once

#include "workspace/settings.h"

#include <QDir>
#include <QFile>
#include <QFileDevice>

#include <unistd.h>

// Makes one INI file of the settings store unwritable for as long as it lives. A user other
// than root gets a read-only file in a read-only folder. Root writes through permission bits,
// so for root a folder takes the file's place instead. The folder's permissions come back at
// the end, so that the temporary data root can be removed.
class UnwritableSettings {
public:
    UnwritableSettings(const Settings& settings, const QString& app)
        : m_dir(settings.dir()), m_file(settings.fileFor(app)) {
        if (geteuid() == 0) {
            QFile::remove(m_file);
            m_ok = QDir().mkdir(m_file);
            return;
        }
        m_dirPermissions = QFile::permissions(m_dir);
        const auto readOnly = QFileDevice::ReadOwner | QFileDevice::ExeOwner;
        m_ok = (!QFile::exists(m_file) || QFile::setPermissions(m_file, QFileDevice::ReadOwner)) &&
               QFile::setPermissions(m_dir, readOnly);
    }
    ~UnwritableSettings() {
        if (geteuid() == 0) QDir().rmdir(m_file);  // the file's old text is gone; the store starts anew
        else QFile::setPermissions(m_dir, m_dirPermissions);
    }
    UnwritableSettings(const UnwritableSettings&) = delete;
    UnwritableSettings& operator=(const UnwritableSettings&) = delete;

    // False when the file could not be made unwritable: the test cannot run.
    bool ok() const { return m_ok; }
    QString file() const { return m_file; }

private:
    QString m_dir;
    QString m_file;
    QFileDevice::Permissions m_dirPermissions;
    bool m_ok = false;
};
