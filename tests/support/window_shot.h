#pragma once

#include <QDir>
#include <QWidget>

// Saves a picture of a window into $SHUANGQU_SHOT_DIR when that is set, so that a person can
// look at what the tests drove.
inline void saveShot(QWidget* w, const QString& name) {
    const QString dir = qEnvironmentVariable("SHUANGQU_SHOT_DIR");
    if (dir.isEmpty()) return;
    QDir().mkpath(dir);
    w->grab().save(QDir(dir).filePath(name + QStringLiteral(".png")));
}
