#pragma once

#include "history/history_import.h"
#include "support/temp_home.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QDir>

#include <gtest/gtest.h>

#include <memory>

// One workspace entered, optionally with the bundled history imported, and a board of its own.
struct PickingWorkspace {
    TempHome home;
    ScriptedPrompter prompter;
    std::unique_ptr<Session> session;

    explicit PickingWorkspace(bool withHistory) {
        WorkspaceList list(home.settings, home.root);
        list.load();
        list.create(QStringLiteral("选号"), {});
        session = std::make_unique<Session>(home.root, home.settings);
        EnteredWorkspace w;
        w.index = 1;
        w.name = QStringLiteral("选号");
        w.frontSize = 35;
        w.backSize = 12;
        if (!session->open(w)) ADD_FAILURE() << "workspace not opened";
        if (withHistory) {
            // The history the program brings along (the bundled draws).
            const QString history =
                QDir(home.root.historyTextFolder()).filePath(QStringLiteral("大乐透历史开奖号码.txt"));
            if (!HistoryImport(*session, prompter).importFile(HistoryImport::Mode::Whole, history).done())
                ADD_FAILURE() << "history not imported";
        }
    }
};
