#include "engine/kernel_executor.h"

#include <QtGlobal>

#include <atomic>

namespace {

// Set while a thread runs slices of a job: a job started from inside one runs inline.
thread_local bool t_inSlice = false;

unsigned machineThreads() { return std::max(1u, std::thread::hardware_concurrency()); }

}  // namespace

struct KernelExecutor::Job {
    Slices slices;
    SliceBody body;
    std::atomic<size_t> next{0};
};

KernelExecutor& KernelExecutor::shared() {
    static KernelExecutor executor;
    return executor;
}

KernelExecutor::KernelExecutor(unsigned threads) {
    m_requested = threads;
    startWorkers(threads == 0 ? machineThreads() : threads);
}

KernelExecutor::~KernelExecutor() {
    std::lock_guard job(m_jobMutex);
    stopWorkers();
}

void KernelExecutor::setThreadCount(unsigned threads) {
    std::lock_guard job(m_jobMutex);
    stopWorkers();
    m_requested = threads;
    startWorkers(threads == 0 ? machineThreads() : threads);
}

void KernelExecutor::startWorkers(unsigned threads) {
    m_threads = threads;
    m_stop = false;
    // The calling thread of a job is the last of its threads.
    for (unsigned i = 1; i < threads; ++i) m_workers.emplace_back([this] { workerLoop(); });
}

void KernelExecutor::stopWorkers() {
    {
        std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    for (std::thread& t : m_workers) t.join();
    m_workers.clear();
}

KernelExecutor::Slices KernelExecutor::slicesFor(uint64_t rows) const {
    Slices s;
    s.rows = rows;
    if (rows == 0) return s;
    const uint64_t wanted = std::min<uint64_t>(uint64_t{m_threads} * kSlicesPerThread, rows / kMinSliceRows);
    if (m_threads <= 1 || wanted < 2) {
        s.sliceRows = rows;
        s.count = 1;
        return s;
    }
    const uint64_t blocks = (rows + kBlockRows - 1) / kBlockRows;
    s.sliceRows = (blocks + wanted - 1) / wanted * kBlockRows;
    s.count = static_cast<size_t>((rows + s.sliceRows - 1) / s.sliceRows);
    return s;
}

void KernelExecutor::runInline(const Slices& slices, SliceBody body) {
    for (size_t i = 0; i < slices.count; ++i) body.call(body.body, i, slices.begin(i), slices.end(i));
}

void KernelExecutor::run(const Slices& slices, SliceBody body) {
    if (slices.count == 0) return;
    std::unique_lock jobLock(m_jobMutex, std::defer_lock);
    if (slices.count == 1 || m_workers.empty() || t_inSlice || !jobLock.try_lock()) {
        runInline(slices, body);
        return;
    }
    Job job{slices, body};
    {
        std::lock_guard lock(m_mutex);
        m_job = &job;
        ++m_generation;
    }
    m_wake.notify_all();
    work(job);
    // Every slice is taken; wait for the workers still running theirs, then retire the job so
    // that a worker waking late does not pick it up.
    std::unique_lock lock(m_mutex);
    m_idle.wait(lock, [this] { return m_busyWorkers == 0; });
    m_job = nullptr;
}

void KernelExecutor::work(Job& job) {
    t_inSlice = true;
    for (size_t i = job.next.fetch_add(1); i < job.slices.count; i = job.next.fetch_add(1))
        job.body.call(job.body.body, i, job.slices.begin(i), job.slices.end(i));
    t_inSlice = false;
}

void KernelExecutor::workerLoop() {
    uint64_t seen = 0;
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [&] { return m_stop || (m_job && m_generation != seen); });
        if (m_stop) return;
        seen = m_generation;
        Job* job = m_job;
        ++m_busyWorkers;
        lock.unlock();
        work(*job);
        lock.lock();
        Q_ASSERT(m_busyWorkers > 0);
        if (--m_busyWorkers == 0) m_idle.notify_all();
    }
}

KernelExecutor::ScopedThreadCount::ScopedThreadCount(unsigned threads)
    : m_previous(KernelExecutor::shared().requestedThreads()) {
    KernelExecutor::shared().setThreadCount(threads);
}

KernelExecutor::ScopedThreadCount::~ScopedThreadCount() {
    KernelExecutor::shared().setThreadCount(m_previous);
}
