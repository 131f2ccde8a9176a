#pragma once

#include "engine/candidate_store.h"

#include <QString>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

// Keeps the record of a candidate table up to date off the window's thread, on its own
// connection to filnum.db: first the column image of what changed (short), then, while nothing
// else happens, the relational table derived from it (long) when the table is small enough for
// that to be cheap. A large table's relational form (about 40 bytes a row on disk, 0.7 s of
// work per million rows) is derived only when something reads it with SQL. A write in progress is cancelled
// (and rolled back, leaving the previous record) when the table is about to change again; the
// next write then carries both changes. Closing a window waits for the image only: the
// relational table is brought up to date later by whatever reads it.
class CandidateWriter {
public:
    // Tables of more rows are not derived in the background.
    static constexpr uint64_t kBackgroundDerivationRows = 2'000'000;

    explicit CandidateWriter(QString dbPath, uint64_t derivationRows = kBackgroundDerivationRows);
    // Waits for a running image write: the record must never stay behind the table.
    ~CandidateWriter();
    CandidateWriter(const CandidateWriter&) = delete;
    CandidateWriter& operator=(const CandidateWriter&) = delete;

    // Starts writing `table`, which must stay unchanged until cancelAndJoin() or wait() returns.
    void start(const CandidateTable& table);
    // Stops a running write; the record keeps its previous state. Returns at once when idle.
    void cancelAndJoin();
    // Waits for the image of the running write, reporting its progress, and stops what follows
    // it; returns the outcome of the last image write.
    candidate_store::SaveResult wait(EngineProgress* progress = nullptr);

    bool busy() const { return m_busy.load(); }
    // Whether the image of the last start() is still being written.
    bool imagePending() const { return m_imagePending.load(); }
    uint64_t rowsWritten() const { return m_done.load(); }
    uint64_t rowsTotal() const { return m_total.load(); }

private:
    class Progress;
    void run(const CandidateTable* table);
    void join();

    QString m_path;
    uint64_t m_derivationRows;
    std::thread m_thread;
    std::atomic<bool> m_cancel{false};
    std::atomic<bool> m_busy{false};
    std::atomic<bool> m_imagePending{false};
    std::atomic<uint64_t> m_done{0}, m_total{0};
    std::mutex m_mutex;
    std::condition_variable m_finished;
    candidate_store::SaveResult m_last{candidate_store::Outcome::Done, {}};
};
