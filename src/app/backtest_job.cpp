#include "app/backtest_job.h"

#include "app/backtest_space.h"
#include "prize/prize_session.h"
#include "workspace/session.h"
#include "workspace/sqlite_db.h"

#include <QThread>

namespace {

// Forwards the runner's news to the job's signals and asks it for the cancel.
class Relay : public backtest::Listener {
public:
    Relay(BacktestJob& job, const std::atomic<bool>& cancel) : m_job(job), m_cancel(cancel) {}
    void drawDone(const backtest::DrawRow& row, int done, int total) override {
        emit m_job.drawDone(row, done, total);
    }
    bool cancelled() const override { return m_cancel; }

private:
    BacktestJob& m_job;
    const std::atomic<bool>& m_cancel;
};

}  // namespace

BacktestJob::BacktestJob(Session& session, QObject* parent) : QObject(parent), m_session(session) {
    qRegisterMetaType<backtest::DrawRow>();
    qRegisterMetaType<backtest::Result>();
}

BacktestJob::~BacktestJob() {
    if (!m_worker) return;
    m_cancel = true;
    m_worker->wait();
    delete m_worker;
}

bool BacktestJob::start(const Request& request) {
    if (m_busy) return false;
    if (m_worker) {
        m_worker->wait();  // past its finished(): ends at once
        delete m_worker;
    }
    m_cancel = false;
    m_busy = true;
    // What the worker reads of the session is taken now, on the window's thread.
    m_history = m_session.history();
    m_rules = prize_session::settingsOf(m_session).read().rules;
    m_filterDbPath = m_session.paths().filterDb();
    m_frontSize = m_session.frontSize();
    m_backSize = m_session.backSize();
    m_worker = QThread::create([this, request] {
        const backtest::Result result = work(request);
        m_busy = false;
        emit finished(result);
    });
    m_worker->start();
    return true;
}

backtest::Result BacktestJob::work(const Request& request) {
    backtest::Result result;
    SqliteDb filterDb;
    const int front = m_frontSize, back = m_backSize;
    if (!filterDb.open(m_filterDbPath)) {
        result.error = QStringLiteral("无法打开 ") + m_filterDbPath;
        return result;
    }
    std::unique_ptr<CandidateTable> table = request.space == backtest::Space::Full
                                                ? backtest_space::fullSet(front, back, &result.error)
                                                : backtest_space::picks(filterDb, front, back, &result.error);
    if (!table) return result;
    emit tableReady(table->rowCount());
    backtest::Runner runner({filterDb, m_history, front, back, m_rules}, std::move(table));
    Relay relay(*this, m_cancel);
    backtest::Options options;
    options.span = request.span;
    return runner.run(request.strategy, options, &relay);
}
