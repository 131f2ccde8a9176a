#pragma once

#include "engine/engine_progress.h"
#include "prize/prize_view.h"

#include <QStringList>

#include <memory>

class Session;

// The check as the main window opens it on a workspace: the stored candidate table of filnum.db
// (read, never written), the newest draw of the history in memory, and the prize rules read
// from the settings again.
namespace prize_session {

// Whether the menu entry of this table's check is enabled: the table exists.
bool tableExists(Session& session, schema::CandidateKind kind);

struct Opened {
    std::unique_ptr<PrizeView> view;
    // Settings values that were no number (their defaults were used).
    QStringList ruleProblems;
    // Set when the stored table is there but could not be read: a message naming the file.
    // The view's lists are empty then; it is no result to show as one.
    QString loadError;
};
Opened open(Session& session, schema::CandidateKind kind, EngineProgress* progress = nullptr);

// The message for a stored table that could not be read.
QString unreadableText(const QString& file, const QString& table, const QString& detail);

PrizeSettings settingsOf(Session& session);
// The workspace folder, where duijiang/ lies.
QString workspaceFolder(Session& session);

}  // namespace prize_session
