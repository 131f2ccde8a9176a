#pragma once

#include <cstdint>
#include <span>
#include <vector>

// The old values of a scratch column that a cancellable run writes in place, to put back if the
// run is cancelled. The buffers are kept from one run to the next: a run over millions of rows
// would otherwise fault in fresh pages for its copy every time (and release them again, which
// stops the other threads to clear their address caches), at a cost near that of the run.
class ColumnBackup {
public:
    // Keeps a copy of `column`, unless the column was only now allocated (`wasAllocated` false):
    // it holds zeros, which restore() writes back.
    ColumnBackup(std::span<const int16_t> column, bool wasAllocated);
    ~ColumnBackup();
    ColumnBackup(const ColumnBackup&) = delete;
    ColumnBackup& operator=(const ColumnBackup&) = delete;

    void restore(std::span<int16_t> column) const;

private:
    std::vector<int16_t> m_values;
    bool m_zeros;
};
