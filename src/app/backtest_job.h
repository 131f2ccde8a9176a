#pragma once

// A back-test run off the window's thread: the table is made and the strategy replayed on a
// worker thread, each finished draw is handed to the window as it comes, and a cancel stops the
// run between draws with the rows done so far kept. The worker reads filnum.db through a
// connection of its own and a copy of the history taken at the start, so the player may go on
// with the program meanwhile.

#include "filter/backtest/backtest_runner.h"
#include "prize/prize_rules.h"
#include "workspace/shared_state.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>

class QThread;
class Session;

class BacktestJob : public QObject {
    Q_OBJECT
public:
    struct Request {
        backtest::Strategy strategy;
        backtest::Space space = backtest::Space::Full;
        int span = backtest::kDefaultSpan;
    };

    explicit BacktestJob(Session& session, QObject* parent = nullptr);
    // Cancels a run under way and waits for its worker.
    ~BacktestJob() override;

    // False when a run is under way already.
    bool start(const Request& request);
    void cancel() { m_cancel = true; }
    bool running() const { return m_busy; }

signals:
    // The table is made; the draws follow.
    void tableReady(quint64 rows);
    void drawDone(const backtest::DrawRow& row, int done, int total);
    // The rows done (all of them, or those before a cancel) and the summary; `result.error`
    // says why nothing ran.
    void finished(const backtest::Result& result);

private:
    backtest::Result work(const Request& request);

    Session& m_session;
    // The worker's copies of what it reads of the session.
    DrawHistory m_history;
    PrizeRules m_rules;
    QString m_filterDbPath;
    int m_frontSize = 35;
    int m_backSize = 12;
    QThread* m_worker = nullptr;
    std::atomic<bool> m_cancel{false};
    // From the start to the emission of finished(); the worker's last moments come after.
    std::atomic<bool> m_busy{false};
};
