#pragma once

#include "app/ui/main_window.h"
#include "support/temp_home.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QDir>

#include <functional>
#include <memory>

// A workspace entered as the start window enters it, with its main window.
struct MainWindowFixture {
    TempHome home;
    WorkspaceList list{home.settings, home.root};
    ScriptedPrompter prompter;
    std::unique_ptr<Session> session;
    std::unique_ptr<MainWindow> window;

    explicit MainWindowFixture(const QString& name = QStringLiteral("测试")) {
        list.load();
        list.create(name, {});
    }

    // Enters the workspace again (a restart): a fresh session and main window. `beforeWindow`
    // runs on the opened session before the window is built; `windowPrompter`, when given,
    // answers the window's prompts instead of the scripted one.
    MainWindow* open(const std::function<void(Session&)>& beforeWindow = {}, Prompter* windowPrompter = nullptr) {
        window.reset();
        auto entered = list.enter(0, prompter);
        session = std::make_unique<Session>(home.root, home.settings);
        if (!entered || !session->open(*entered)) return nullptr;
        if (beforeWindow) beforeWindow(*session);
        window = std::make_unique<MainWindow>(*session, list, windowPrompter ? *windowPrompter : prompter);
        return window.get();
    }

    QString bundledHistory() const {
        return QDir(home.root.historyTextFolder()).filePath(QStringLiteral("大乐透历史开奖号码.txt"));
    }
};
