#pragma once

#include "support/qt_printers.h"
#include "workspace/data_root.h"
#include "workspace/settings.h"

#include <QTemporaryDir>

// A fresh data root with its settings store, removed after the test.
struct TempHome {
    QTemporaryDir dir;
    DataRoot root{dir.path()};
    Settings settings{root.settingsDir()};
    TempHome() { root.ensureFirstStart(); }
};
