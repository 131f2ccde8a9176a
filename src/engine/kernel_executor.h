#pragma once

// The one place where kernels meet threads. A job is a range of rows cut into slices of whole
// blocks; the slices are handed out to a pool of threads made once and kept alive, and the
// calling thread takes slices too. A kernel writes only the rows (and the words of the bit
// vectors) of its slice, so its result does not depend on how many threads ran it.
//
//   KernelExecutor::shared().forEachSlice(rows, [&](uint64_t begin, uint64_t end) { ... });

#include "engine/engine_progress.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <vector>

class KernelExecutor {
public:
    // Rows of one block, the unit in which every kernel cuts its rows: a multiple of 64, so a
    // block starts on a whole word of the bit vectors, and small enough that a block's scratch
    // values stay in the first-level cache.
    static constexpr uint64_t kBlockRows = 4096;
    // The fewest rows of a slice. A job of fewer than two slices runs on the calling thread alone.
    static constexpr uint64_t kMinSliceRows = 4 * kBlockRows;
    // Slices per thread: more than one, so that a thread slowed by other work on the machine
    // leaves its last slices to the others.
    static constexpr unsigned kSlicesPerThread = 4;
    // Rows between two polls of a chunked job's progress.
    static constexpr uint64_t kChunkRows = 1024 * kBlockRows;

    // How a job cuts its rows: `count` slices of `sliceRows` rows, the last one shorter.
    struct Slices {
        uint64_t rows = 0;
        uint64_t sliceRows = 0;
        size_t count = 0;

        uint64_t begin(size_t slice) const { return slice * sliceRows; }
        uint64_t end(size_t slice) const { return std::min(rows, begin(slice) + sliceRows); }
    };

    // The pool that every kernel uses, made on first use with one thread per hardware thread.
    static KernelExecutor& shared();

    // `threads` 0: one per hardware thread.
    explicit KernelExecutor(unsigned threads = 0);
    ~KernelExecutor();
    KernelExecutor(const KernelExecutor&) = delete;
    KernelExecutor& operator=(const KernelExecutor&) = delete;

    // The threads a job runs on, the calling one included.
    unsigned threadCount() const { return m_threads; }
    // What setThreadCount() was last given (0: the machine's count).
    unsigned requestedThreads() const { return m_requested; }
    // Remakes the pool with `threads` threads (0: one per hardware thread); waits for a running job,
    // so it is never called from inside a slice.
    void setThreadCount(unsigned threads);

    // The slices of a job over `rows`; they depend on the row count and the thread count only.
    Slices slicesFor(uint64_t rows) const;

    // Calls fn(slice, begin, end) once for every slice and returns when all are done. A job that
    // starts while another runs, or from inside a slice, runs its slices on the calling thread.
    template <typename Fn>
    void forEachIndexedSlice(const Slices& slices, Fn&& fn) {
        using Body = std::remove_reference_t<Fn>;
        void* body = const_cast<void*>(static_cast<const void*>(std::addressof(fn)));
        run(slices, SliceBody{body, [](void* b, size_t slice, uint64_t begin, uint64_t end) {
                                  (*static_cast<Body*>(b))(slice, begin, end);
                              }});
    }

    // Calls fn(begin, end) for every slice of `rows`.
    template <typename Fn>
    void forEachSlice(uint64_t rows, Fn&& fn) {
        forEachIndexedSlice(slicesFor(rows), [&fn](size_t, uint64_t begin, uint64_t end) { fn(begin, end); });
    }

    // The rows in chunks of `chunkRows` (a multiple of kBlockRows), each chunk spread over the
    // threads like forEachSlice. Between chunks `progress` hears how far the job got and is asked
    // whether the player cancelled; returns false when he did.
    template <typename Fn>
    bool forEachChunk(uint64_t rows, EngineProgress* progress, Fn&& fn, uint64_t chunkRows = kChunkRows) {
        for (uint64_t begin = 0; begin < rows; begin += chunkRows) {
            if (progress && progress->cancelled()) return false;
            const uint64_t end = std::min(rows, begin + chunkRows);
            forEachSlice(end - begin, [&](uint64_t b, uint64_t e) { fn(begin + b, begin + e); });
            if (progress) progress->progress(end, rows);
        }
        return true;
    }

    // For tests: the shared pool with another thread count for the life of the object (1 gives
    // the single-thread run), then as it was.
    class ScopedThreadCount {
    public:
        explicit ScopedThreadCount(unsigned threads);
        ~ScopedThreadCount();
        ScopedThreadCount(const ScopedThreadCount&) = delete;
        ScopedThreadCount& operator=(const ScopedThreadCount&) = delete;

    private:
        unsigned m_previous;
    };

private:
    // A borrowed callable, so that a job needs no allocation.
    struct SliceBody {
        void* body;
        void (*call)(void* body, size_t slice, uint64_t begin, uint64_t end);
    };
    struct Job;

    void run(const Slices& slices, SliceBody body);
    void runInline(const Slices& slices, SliceBody body);
    void work(Job& job);
    void workerLoop();
    void startWorkers(unsigned threads);
    void stopWorkers();

    unsigned m_requested = 0;
    unsigned m_threads = 1;
    std::vector<std::thread> m_workers;
    // Held by the job that uses the workers; a second job meanwhile runs inline.
    std::mutex m_jobMutex;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    Job* m_job = nullptr;
    uint64_t m_generation = 0;
    unsigned m_busyWorkers = 0;
    bool m_stop = false;
};
