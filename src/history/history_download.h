#pragma once

// History download from the service whose host is the setting setting_keys::DownloadHost:
// a text list of a provincial game (mnuNew, Command3) and the database of the national game
// (mnuNewol, Command5). Both wait synchronously for the answer. Any failure shows one
// message and leaves the history as it was.

#include "history/history_result.h"
#include "history/progress.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>

class Prompter;
class Session;

class HistoryDownload {
public:
    static constexpr int kDefaultTimeoutMs = 30000;

    // The games of frmLstUrl, in its order.
    static const QStringList& downloadableGames();
    // The file the database download writes into the workspace folder.
    static QString downloadedDbName();

    HistoryDownload(Session& session, Prompter& prompter, int timeoutMs = kDefaultTimeoutMs)
        : m_session(session), m_prompter(prompter), m_timeoutMs(timeoutMs) {}

    // frmLstUrl shown modally: the game double-clicked, or empty when closed.
    using GameChooser = std::function<QString()>;

    // mnuNew: the question, the choice, the GET, then <app>/五星历史号码/<name>.Txt replaced by
    // the answer. Done with `path` set to that file, ready for the import.
    HistoryActionResult downloadText(const GameChooser& chooseGame);

    // mnuNewol: the question, the GET of the database, the player's confirmation of its first
    // and last issue, then the history replaced by its draws (all three views recomputed, as a
    // whole import does), the reduced fig of filnum.db copied from it, and the history text
    // rewritten. The recomputation reports to `progress`; a cancel there changes nothing.
    HistoryActionResult downloadDatabase(const HistoryProgress* progress = nullptr);

    // Uses this host instead of the setting (the command line's --host).
    void setHost(const QString& host) { m_host = host; }

    // The service address of a path under the configured host.
    QUrl endpoint(const QString& path) const;

private:
    std::optional<QByteArray> get(const QUrl& url) const;
    HistoryActionResult failed();

    Session& m_session;
    Prompter& m_prompter;
    int m_timeoutMs;
    QString m_host;
};
