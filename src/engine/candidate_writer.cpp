#include "engine/candidate_writer.h"

#include "workspace/sqlite_db.h"

#include <chrono>

class CandidateWriter::Progress : public EngineProgress {
public:
    explicit Progress(CandidateWriter& w) : m_w(w) {}
    void progress(uint64_t done, uint64_t total) override {
        m_w.m_done.store(done);
        m_w.m_total.store(total);
    }
    bool cancelled() const override { return m_w.m_cancel.load(); }

private:
    CandidateWriter& m_w;
};

CandidateWriter::CandidateWriter(QString dbPath, uint64_t derivationRows)
    : m_path(std::move(dbPath)), m_derivationRows(derivationRows) {}

CandidateWriter::~CandidateWriter() { wait(); }

void CandidateWriter::start(const CandidateTable& table) {
    cancelAndJoin();
    m_cancel.store(false);
    m_done.store(0);
    m_total.store(table.rowCount());
    m_busy.store(true);
    m_imagePending.store(true);
    m_thread = std::thread([this, &table] { run(&table); });
}

void CandidateWriter::run(const CandidateTable* table) {
    candidate_store::SaveResult result;
    SqliteDb db;
    Progress progress(*this);
    if (!db.open(m_path)) {
        result = {candidate_store::Outcome::Failed, db.lastError()};
    } else {
        result = candidate_store::saveImage(db, *table, &progress);
    }
    {
        std::lock_guard lock(m_mutex);
        m_last = result;
        m_imagePending.store(false);
        m_finished.notify_all();
    }
    // The derived table: its failure leaves it behind the image, which its next reader mends.
    if (result.outcome == candidate_store::Outcome::Done && !m_cancel.load() &&
        table->rowCount() <= m_derivationRows)
        candidate_store::ensureRelational(db, table->kind(), &progress, table);
    m_busy.store(false);
}

void CandidateWriter::join() {
    if (m_thread.joinable()) m_thread.join();
}

void CandidateWriter::cancelAndJoin() {
    m_cancel.store(true);
    join();
    m_busy.store(false);
    m_imagePending.store(false);
}

candidate_store::SaveResult CandidateWriter::wait(EngineProgress* progress) {
    using namespace std::chrono_literals;
    std::unique_lock lock(m_mutex);
    while (m_imagePending.load()) {
        m_finished.wait_for(lock, 50ms);
        if (progress) progress->progress(m_done.load(), m_total.load());
    }
    lock.unlock();
    cancelAndJoin();
    return m_last;
}
