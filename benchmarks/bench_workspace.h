#pragma once

// A workspace for a window benchmark: a data root of its own in a temporary folder, one
// workspace entered as the start window enters it, and the bundled draw history imported.

#include "history/history_import.h"
#include "workspace/data_root.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/settings.h"
#include "workspace/workspace_list.h"

#include <QDir>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace bench {

class BenchWorkspace {
public:
    BenchWorkspace() : root(dir.path()) {
        root.ensureFirstStart();
        settings = std::make_unique<Settings>(root.settingsDir());
        list = std::make_unique<WorkspaceList>(*settings, root);
        list->load();
        list->create(QStringLiteral("bench"), {});
        const auto entered = list->enter(0, prompter);
        session = std::make_unique<Session>(root, *settings);
        if (!entered || !session->open(*entered)) {
            std::fprintf(stderr, "cannot open the workspace\n");
            session.reset();
        }
    }
    bool ok() const { return session != nullptr; }

    // The history shipped with the program, as the first start puts it in place.
    QString bundledHistory() const {
        return QDir(root.historyTextFolder()).filePath(QStringLiteral("大乐透历史开奖号码.txt"));
    }
    void importHistory(const QString& file) {
        HistoryImport(*session, prompter).importFile(HistoryImport::Mode::Whole, file);
    }

    QTemporaryDir dir;
    DataRoot root;
    std::unique_ptr<Settings> settings;
    std::unique_ptr<WorkspaceList> list;
    ScriptedPrompter prompter;
    std::unique_ptr<Session> session;
};

}  // namespace bench
