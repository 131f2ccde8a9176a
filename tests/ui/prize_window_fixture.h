#pragma once

// A workspace for the prize window tests: entered as the start window does, with the bundled
// real history in its draw tables and candidate tables stored in its filnum.db.

#include "engine/candidate_store.h"
#include "history/history_import.h"
#include "support/temp_home.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <memory>

struct PrizeWorkspace {
    TempHome home;
    WorkspaceList list{home.settings, home.root};
    ScriptedPrompter prompter;
    std::unique_ptr<Session> session;

    PrizeWorkspace() {
        list.load();
        list.create(QStringLiteral("测试"), {});
        auto entered = list.enter(0, prompter);
        session = std::make_unique<Session>(home.root, home.settings);
        session->open(*entered);
    }

    // The real draw history that first start puts beside the import dialog, written into fig and
    // fighou and read into the session. Returns the number of draws.
    int importRealHistory() {
        QFile f(QDir(home.root.historyTextFolder()).filePath(QStringLiteral("大乐透历史开奖号码.txt")));
        if (!f.open(QIODevice::ReadOnly)) return 0;
        SqliteDb& db = session->historyDb();
        SqliteTransaction tx(db);
        QTextStream in(&f);
        int idx = 0;
        while (!in.atEnd()) {
            const QStringList p = in.readLine().split(QLatin1Char(' '), Qt::SkipEmptyParts);
            if (p.size() != 8) continue;
            ++idx;
            db.exec(
                QStringLiteral(
                    "INSERT INTO fig(Idx,fig0,fig1,fig2,fig3,fig4,fig5) VALUES (?1,?2,?3,?4,?5,?6,?7)"),
                {idx, p[0].toInt(), p[1].toInt(), p[2].toInt(), p[3].toInt(), p[4].toInt(), p[5].toInt()});
            db.exec(QStringLiteral("INSERT INTO fighou(Idx,fig0,fig1,fig2) VALUES (?1,?2,?3,?4)"),
                    {idx, p[0].toInt(), p[6].toInt(), p[7].toInt()});
        }
        tx.commit();
        session->loadHistory();
        return idx;
    }

    // A history file of tests/fixtures imported as the player imports one (a whole import,
    // from the history folder where the file dialog opens). Returns the number of draws.
    int importHistory(const QString& fixture) {
        const QString copy = QDir(home.root.historyTextFolder()).filePath(fixture);
        QFile::remove(copy);
        if (!QFile::copy(QDir(QStringLiteral(SHUANGQU_FIXTURES)).filePath(fixture), copy)) return 0;
        HistoryImport(*session, prompter).importFile(HistoryImport::Mode::Whole, copy);
        return session->history().drawCount();
    }

    bool store(const CandidateTable& t) {
        return candidate_store::save(session->filterDb(), t).outcome == candidate_store::Outcome::Done;
    }
};

// The cells of one model column, as shown.
inline QStringList columnTexts(const QAbstractItemModel* m, int col, int rows = -1) {
    QStringList out;
    const int n = rows < 0 ? m->rowCount() : std::min(rows, m->rowCount());
    for (int r = 0; r < n; ++r) out << m->index(r, col).data().toString();
    return out;
}

inline QStringList headerTexts(const QAbstractItemModel* m) {
    QStringList out;
    for (int c = 0; c < m->columnCount(); ++c) out << m->headerData(c, Qt::Horizontal).toString();
    return out;
}
