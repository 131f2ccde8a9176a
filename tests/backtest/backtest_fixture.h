#pragma once

// A workspace entered as the start window enters it, with the bundled draw history imported
// (made once for the whole test program), and the winning ticket of a draw.

#include "filter/super_fixture.h"
#include "history/history_import.h"
#include "support/temp_home.h"
#include "workspace/schema.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QDir>

#include <array>
#include <memory>
#include <vector>

struct BundledWorkspace {
    TempHome home;
    WorkspaceList list{home.settings, home.root};
    ScriptedPrompter prompter;
    std::unique_ptr<Session> session;

    BundledWorkspace() {
        list.load();
        list.create(QStringLiteral("bt"), {});
        auto entered = list.enter(0, prompter);
        session = std::make_unique<Session>(home.root, home.settings);
        if (!entered || !session->open(*entered)) {
            session.reset();
            return;
        }
        const QString file = QDir(home.root.historyTextFolder()).filePath(QStringLiteral("大乐透历史开奖号码.txt"));
        HistoryImport(*session, prompter).importFile(HistoryImport::Mode::Whole, file);
        session->loadStatistics();
    }

    // One for the whole test program: the import takes a while.
    static BundledWorkspace& shared() {
        static BundledWorkspace w;
        return w;
    }
};

inline Ticket ticketOf(const DrawNumbers& d) {
    Ticket t{};
    for (size_t k = 0; k < 7; ++k) t[k] = d[k + 1];
    std::sort(t.begin(), t.begin() + 5);
    std::sort(t.begin() + 5, t.end());
    return t;
}
