#pragma once

// Progress of long history work (imports, recomputation): reported and polled once per
// chunk of rows, never per row. A window shows a progress dialog behind it; the command line
// and the tests pass none.

#include <functional>

struct HistoryProgress {
    static constexpr int kChunkRows = 256;

    // Called with the rows done so far and the rows in all.
    std::function<void(int done, int total)> report;
    // Polled per chunk: true stops the work, which then leaves everything as it was.
    std::function<bool()> cancelled;

    // Reports and polls; false when the work must stop.
    bool step(int done, int total) const {
        if (report) report(done, total);
        return !(cancelled && cancelled());
    }
};
