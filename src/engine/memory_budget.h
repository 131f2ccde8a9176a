#pragma once

#include <QString>

#include <cstdint>

// Whether an expansion of a given size fits the memory of this machine, checked before it starts.
namespace memory_budget {

// MemAvailable of /proc/meminfo in bytes; 0 when it cannot be read.
uint64_t availableBytes();

struct Check {
    bool fits = true;
    uint64_t neededBytes = 0;
    uint64_t availableBytes = 0;
    QString message;  // for the player when it does not fit
};

// `available` 0 reads the machine's; tests pass their own.
Check checkTickets(uint64_t tickets, uint64_t bytesPerTicket, uint64_t available = 0);

inline const QString kTitle = QStringLiteral("内存不足");

}  // namespace memory_budget
