#pragma once

#include "engine/engine_progress.h"

#include <atomic>
#include <cstdint>
#include <thread>

// The progress of a job cut into slices. Between blocks the slices learn whether the job was
// cancelled; the thread that started it (and only that thread, as an EngineProgress may speak
// to a window) also reports how many rows are done and asks the player. A calling thread that
// a busy machine leaves without a slice asks only when it calls cancelledNow().
class SliceProgress {
public:
    SliceProgress(EngineProgress* progress, uint64_t rows) : m_progress(progress), m_rows(rows) {}

    // Counts `rows` as done; false once the run is cancelled.
    bool blockDone(uint64_t rows) {
        const uint64_t done = m_done.fetch_add(rows, std::memory_order_relaxed) + rows;
        if (m_progress && std::this_thread::get_id() == m_caller && done >= m_nextReport) {
            m_nextReport = done + m_rows / 64;
            m_progress->progress(done, m_rows);
            if (m_progress->cancelled()) m_stopped.store(true, std::memory_order_relaxed);
        }
        return !stopped();
    }
    // Asked on the calling thread alone.
    bool cancelledNow() {
        if (m_progress && m_progress->cancelled()) m_stopped.store(true, std::memory_order_relaxed);
        return stopped();
    }
    bool stopped() const { return m_stopped.load(std::memory_order_relaxed); }

private:
    EngineProgress* m_progress;
    uint64_t m_rows;
    std::thread::id m_caller = std::this_thread::get_id();
    uint64_t m_nextReport = 0;  // the calling thread's alone
    std::atomic<uint64_t> m_done{0};
    std::atomic<bool> m_stopped{false};
};
