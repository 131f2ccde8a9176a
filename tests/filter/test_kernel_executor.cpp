// The executor's contract with the kernels: every row of a job in exactly one slice, slices on
// whole blocks, the single-thread switch, jobs started from inside a slice or from two threads
// at once, and the chunked jobs' progress and cancel.
#include "engine/kernel_executor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace {

using Executor = KernelExecutor;

// How often each row was visited by a job over `rows` rows.
std::vector<int> visits(Executor& executor, uint64_t rows) {
    std::vector<std::atomic<int>> seen(rows);
    executor.forEachSlice(rows, [&](uint64_t begin, uint64_t end) {
        EXPECT_EQ(begin % Executor::kBlockRows, 0u) << "a slice starts on a whole block";
        EXPECT_LT(begin, end);
        for (uint64_t r = begin; r < end; ++r) seen[r].fetch_add(1);
    });
    std::vector<int> out;
    out.reserve(rows);
    for (const auto& s : seen) out.push_back(s.load());
    return out;
}

TEST(KernelExecutor, EveryRowIsInExactlyOneSlice) {
    const uint64_t sizes[] = {0,
                              1,
                              63,
                              Executor::kBlockRows + 1,
                              2 * Executor::kMinSliceRows - 1,
                              2 * Executor::kMinSliceRows,
                              2 * Executor::kMinSliceRows + 4097,
                              1'000'003};
    for (unsigned threads : {1u, 2u, 3u, 8u}) {
        Executor executor(threads);
        for (uint64_t rows : sizes) {
            const std::vector<int> seen = visits(executor, rows);
            const auto wrong = std::find_if(seen.begin(), seen.end(), [](int n) { return n != 1; });
            ASSERT_EQ(wrong, seen.end()) << threads << " threads, " << rows << " rows: row "
                                         << (wrong - seen.begin()) << " visited " << *wrong << " times";
        }
    }
}

TEST(KernelExecutor, SlicesDependOnRowsAndThreadsOnly) {
    Executor one(1), four(4);
    // Below two slices' worth a job stays on the calling thread.
    EXPECT_EQ(four.slicesFor(2 * Executor::kMinSliceRows - 1).count, 1u);
    EXPECT_EQ(four.slicesFor(2 * Executor::kMinSliceRows).count, 2u);
    EXPECT_EQ(one.slicesFor(10'000'000).count, 1u);
    const Executor::Slices big = four.slicesFor(10'000'000);
    EXPECT_EQ(big.count, size_t{4 * Executor::kSlicesPerThread});
    EXPECT_EQ(big.sliceRows % Executor::kBlockRows, 0u);
    EXPECT_EQ(big.end(big.count - 1), 10'000'000u);
    const Executor::Slices again = Executor(4).slicesFor(10'000'000);
    EXPECT_EQ(again.sliceRows, big.sliceRows);
}

TEST(KernelExecutor, TheScopedSwitchGivesOneThreadAndRestoresThePool) {
    Executor& shared = Executor::shared();
    const unsigned before = shared.threadCount();
    {
        const Executor::ScopedThreadCount single(1);
        EXPECT_EQ(shared.threadCount(), 1u);
        EXPECT_EQ(shared.slicesFor(50'000'000).count, 1u);
        std::thread::id ran;
        shared.forEachSlice(50'000'000, [&](uint64_t, uint64_t) { ran = std::this_thread::get_id(); });
        EXPECT_EQ(ran, std::this_thread::get_id());
        const Executor::ScopedThreadCount three(3);
        EXPECT_EQ(shared.threadCount(), 3u);
    }
    EXPECT_EQ(shared.threadCount(), before);
    EXPECT_EQ(shared.requestedThreads(), 0u);
}

TEST(KernelExecutor, AJobFromInsideASliceRunsOnThatThread) {
    Executor executor(4);
    const uint64_t rows = 40 * Executor::kMinSliceRows;
    std::atomic<uint64_t> inner{0};
    executor.forEachSlice(rows, [&](uint64_t begin, uint64_t end) {
        const std::thread::id outer = std::this_thread::get_id();
        executor.forEachSlice(end - begin, [&](uint64_t b, uint64_t e) {
            EXPECT_EQ(std::this_thread::get_id(), outer);
            inner += e - b;
        });
    });
    EXPECT_EQ(inner.load(), rows);
}

TEST(KernelExecutor, JobsFromTwoThreadsAtOnceBothComplete) {
    Executor executor(3);
    const uint64_t rows = 64 * Executor::kMinSliceRows;
    std::atomic<uint64_t> a{0}, b{0};
    const auto job = [&](std::atomic<uint64_t>& sum) {
        for (int i = 0; i < 50; ++i)
            executor.forEachSlice(rows, [&](uint64_t begin, uint64_t end) { sum += end - begin; });
    };
    std::thread other([&] { job(b); });
    job(a);
    other.join();
    EXPECT_EQ(a.load(), 50 * rows);
    EXPECT_EQ(b.load(), 50 * rows);
}

class ScriptedProgress : public EngineProgress {
public:
    explicit ScriptedProgress(int cancelAfter) : m_cancelAfter(cancelAfter) {}
    void progress(uint64_t done, uint64_t) override { reports.push_back(done); }
    bool cancelled() const override { return static_cast<int>(reports.size()) >= m_cancelAfter; }
    std::vector<uint64_t> reports;

private:
    int m_cancelAfter;
};

TEST(KernelExecutor, ChunkedJobsReportEachChunkAndStopAtACancel) {
    Executor executor(2);
    const uint64_t chunk = 8 * Executor::kBlockRows;
    const uint64_t rows = 5 * chunk + 100;
    std::atomic<uint64_t> done{0};
    ScriptedProgress whole(100);
    EXPECT_TRUE(executor.forEachChunk(
        rows, &whole, [&](uint64_t b, uint64_t e) { done += e - b; }, chunk));
    EXPECT_EQ(done.load(), rows);
    EXPECT_EQ(whole.reports,
              (std::vector<uint64_t>{chunk, 2 * chunk, 3 * chunk, 4 * chunk, 5 * chunk, rows}));

    done = 0;
    ScriptedProgress stop(2);
    EXPECT_FALSE(executor.forEachChunk(
        rows, &stop, [&](uint64_t b, uint64_t e) { done += e - b; }, chunk));
    EXPECT_EQ(done.load(), 2 * chunk) << "the chunk after the cancel does not start";
}

}  // namespace
