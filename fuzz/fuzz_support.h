#pragma once

// What every harness shares: the Qt application object the readers expect, a scratch data
// root with one workspace, and writing the input where a reader looks for its file.

#include "workspace/data_root.h"
#include "workspace/settings.h"
#include "workspace/workspace_list.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

namespace fuzz_support {

// One QCoreApplication for the process, made before the first input. It is never destroyed:
// libFuzzer ends the process with exit(), after Qt's own globals may be gone.
inline void startApplication(int* argc, char*** argv) {
    static int count = *argc;
    static QCoreApplication* app = new QCoreApplication(count, *argv);
    (void)app;
}

// A data root made at first use, with one workspace, kept for the whole run.
struct Scratch {
    static inline const QString kWorkspace = QStringLiteral("fuzz");
    QTemporaryDir dir;
    DataRoot root{dir.path()};
    Settings settings{root.settingsDir()};

    Scratch() {
        root.ensureFirstStart();
        WorkspaceList list(settings, root);
        list.load();
        list.create(kWorkspace, {});
    }

    EnteredWorkspace entered() const {
        EnteredWorkspace w;
        w.index = 1;
        w.name = kWorkspace;
        return w;
    }
};

inline Scratch& scratch() {
    static Scratch s;
    return s;
}

inline QByteArray bytes(const uint8_t* data, size_t size) {
    return QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

// Replaces `path` with the input. Each write gets a later modification time, so that a reader
// that caches by file time (QSettings) sees every input.
inline bool writeFile(const QString& path, const QByteArray& content) {
    static qint64 tick = 0;
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    const bool written = f.write(content) == content.size() && f.flush();
    f.setFileTime(QDateTime::fromSecsSinceEpoch(1'000'000'000 + ++tick), QFileDevice::FileModificationTime);
    return written;
}

}  // namespace fuzz_support

// libFuzzer's start hook for a harness that needs nothing more than the application object.
#define SQ_FUZZ_START_APPLICATION                                        \
    extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {       \
        fuzz_support::startApplication(argc, argv);                       \
        return 0;                                                         \
    }
