#pragma once

#include "workspace/data_root.h"
#include "workspace/settings.h"
#include "workspace/shared_state.h"
#include "workspace/sqlite_db.h"
#include "workspace/workspace_list.h"
#include "workspace/workspace_lock.h"

#include <QString>

#include <array>
#include <memory>

// The state of the entered workspace, owned by the application and handed to every window by
// reference: Curuser, the zone sizes, Lsdb and Fildb, the history and its arrays, the number
// statistics, the board, the print setting.
class Session {
public:
    static inline const QString kFatalTitle = QStringLiteral("数据库错误");
    static inline const QString kFatalText =
        QStringLiteral("数据库读写错误,程序即将退出!请您删除该用户名,然后新建用户进入.");

    Session(const DataRoot& root, Settings& settings);

    // The initialisation of the main window: opens the workspace's databases, repairing a
    // workspace whose folder or files are gone from the templates, and loads the history and
    // the statistics. False with `error` set when even the repair fails (the fatal message)
    // or a file is there but is no database of its kind (a message naming the file; the file
    // stays as it is). True with `error` set when the history could not be read: the message
    // names the file and the history stays empty. The entered workspace's lock is kept.
    bool open(const EnteredWorkspace& workspace, QString* error = nullptr);

    // A database file that cannot be read as one, or a file in the history's place that holds
    // other tables.
    static QString unreadableText(const QString& file, const QString& detail);
    static QString notHistoryText(const QString& file);
    // A workspace database with none of its kind's tables: another program's file.
    static QString foreignText(const QString& file);

    const DataRoot& root() const { return m_root; }
    Settings& settings() { return m_settings; }
    const WorkspacePaths& paths() const { return *m_paths; }

    int userIndex() const { return m_userIndex; }
    const QString& workspaceName() const { return m_workspaceName; }
    int frontSize() const { return m_frontSize; }
    int backSize() const { return m_backSize; }
    const game_rules::PositionCentres& positionCentres() const { return m_positionCentres; }
    // meuS / meuSHou: change the size, recompute Fitbase, save at once. False, with nothing
    // changed, for a size out of range or when the setting cannot be saved (`error` then
    // names the file).
    bool setFrontSize(int size, QString* error = nullptr);
    bool setBackSize(int size, QString* error = nullptr);

    SqliteDb& historyDb() { return m_historyDb; }
    SqliteDb& filterDb() { return m_filterDb; }
    SqliteDb& savedPicksDb() { return m_savedPicksDb; }

    DrawHistory& history() { return m_history; }
    const DrawHistory& history() const { return m_history; }
    int drawCount() const { return m_history.drawCount(); }
    StatsViews& stats() { return m_stats; }
    BoardState& board() { return m_board; }

    // Reads fig, fighou and figquan into the arrays (start-up step 5), in one read
    // transaction. Every draw number must lie in the largest zone and the Idx of each table
    // run 1, 2, 3, ... False with a message naming the file and the first fault when a table
    // cannot be read or holds a fault; the history is empty then.
    bool loadHistory(QString* error = nullptr);
    // Omissions from the last rows of Ylqs*, frequencies from Gailv*.
    void loadStatistics();

    int ticketsPerLine() const { return m_ticketsPerLine; }
    // Sets and saves dayin; false, with nothing changed, when it cannot be saved.
    bool setTicketsPerLine(int n, QString* error = nullptr);
    bool trendGridsBuilt = false;                   // Picbuilt
    int frontLeftToSpin = game_rules::kFrontPicks;  // Yaoqian
    int backLeftToSpin = game_rules::kBackPicks;    // Yaohou
    int frontBankersChosen = 0;                     // Danqian
    int backBankersChosen = 0;                      // Danhou
    std::array<double, 6> spinValues{};  // the six running values of the spin simulator

    // Writes the six spin values under Initial/1..6, as exit does. False when not saved.
    bool saveSpinValues();

private:
    bool saveSetting(const SettingKey& key, int value, QString* error, int index = 0);
    bool repairHistoryDb();
    bool openSavedPicksDb();
    bool openFilterDb();

    DataRoot m_root;
    std::shared_ptr<WorkspaceLock> m_lock;
    Settings& m_settings;
    std::unique_ptr<WorkspacePaths> m_paths;
    int m_userIndex = 0;
    QString m_workspaceName;
    int m_frontSize = game_rules::kDefaultFront;
    int m_backSize = game_rules::kDefaultBack;
    game_rules::PositionCentres m_positionCentres =
        game_rules::positionCentres(game_rules::kDefaultFront, game_rules::kDefaultBack);
    SqliteDb m_historyDb;
    SqliteDb m_filterDb;
    SqliteDb m_savedPicksDb;
    DrawHistory m_history;
    StatsViews m_stats;
    BoardState m_board;
    int m_ticketsPerLine = 4;
};
