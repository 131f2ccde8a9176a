#pragma once

// Whole import (mnuRed, cmdRead) and append import (mnuRead, Command4) of a history text file.
// An import is one transaction: a bad line, a number beyond the arrays or a cancel leaves
// every table and the Session's arrays as they were.

#include "history/history_result.h"
#include "history/progress.h"

#include <QString>

class Prompter;
class Session;

class HistoryImport {
public:
    enum class Mode {
        Whole,   // replaces the history of all three views
        Append,  // adds the draws past the last issue to fig only
    };

    HistoryImport(Session& session, Prompter& prompter) : m_session(session), m_prompter(prompter) {}

    // The menu action: the question, the open dialog, then importFile.
    HistoryActionResult run(Mode mode, const HistoryProgress* progress = nullptr);

    // From the chosen file on: the suffix test, the workspace's copy of the file, the parse
    // and the writers.
    HistoryActionResult importFile(Mode mode, const QString& chosen,
                                   const HistoryProgress* progress = nullptr);

    // The copy that is parsed: "<user> 大乐透号码.TXT" beside the chosen file.
    static QString copyName(const QString& user);

private:
    HistoryActionResult importCopy(Mode mode, const QString& copy, const HistoryProgress* progress);
    HistoryActionResult trap(Mode mode, GridAction grid);

    Session& m_session;
    Prompter& m_prompter;
};
