#include "engine/column_backup.h"

#include <algorithm>
#include <mutex>

namespace {

// Buffers given back, at most two: a run keeps two columns.
struct Pool {
    std::mutex mutex;
    std::vector<std::vector<int16_t>> buffers;
};

Pool& pool() {
    static Pool p;
    return p;
}

std::vector<int16_t> take(size_t size) {
    Pool& p = pool();
    const std::lock_guard lock(p.mutex);
    const auto fits = std::ranges::find_if(p.buffers, [size](const auto& b) { return b.capacity() >= size; });
    if (fits == p.buffers.end()) return {};
    std::vector<int16_t> b = std::move(*fits);
    p.buffers.erase(fits);
    return b;
}

void giveBack(std::vector<int16_t> buffer) {
    Pool& p = pool();
    const std::lock_guard lock(p.mutex);
    p.buffers.push_back(std::move(buffer));
    // The smallest goes when more than two are kept.
    if (p.buffers.size() > 2)
        p.buffers.erase(std::ranges::min_element(p.buffers, {}, [](const auto& b) { return b.capacity(); }));
}

}  // namespace

ColumnBackup::ColumnBackup(std::span<const int16_t> column, bool wasAllocated) : m_zeros(!wasAllocated) {
    if (m_zeros) return;
    m_values = take(column.size());
    m_values.assign(column.begin(), column.end());
}

ColumnBackup::~ColumnBackup() {
    if (m_values.capacity() > 0) giveBack(std::move(m_values));
}

void ColumnBackup::restore(std::span<int16_t> column) const {
    if (m_zeros)
        std::ranges::fill(column, int16_t{0});
    else
        std::ranges::copy(m_values, column.begin());
}
