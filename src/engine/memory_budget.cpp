#include "engine/memory_budget.h"

#include <QFile>

namespace memory_budget {

namespace {
// Room left for the program itself, the database's cache and the window.
constexpr uint64_t kReserveBytes = uint64_t{256} << 20;
constexpr uint64_t kMiB = uint64_t{1} << 20;
}  // namespace

uint64_t availableBytes() {
    QFile f(QStringLiteral("/proc/meminfo"));
    if (!f.open(QIODevice::ReadOnly)) return 0;
    while (!f.atEnd()) {
        const QByteArray line = f.readLine();
        if (!line.startsWith("MemAvailable:")) continue;
        const QList<QByteArray> parts = line.simplified().split(' ');
        if (parts.size() >= 2) return parts[1].toULongLong() * 1024;  // kB
    }
    return 0;
}

Check checkTickets(uint64_t tickets, uint64_t bytesPerTicket, uint64_t available) {
    Check c;
    c.neededBytes = tickets * bytesPerTicket;
    c.availableBytes = available ? available : availableBytes();
    // Without /proc/meminfo nothing is refused.
    if (c.availableBytes == 0 || c.neededBytes + kReserveBytes <= c.availableBytes) return c;
    c.fits = false;
    c.message =
        QStringLiteral(
            "所选号码共计%1注，展开约需%2MB内存，本机可用内存只有%3MB，无法展开。请减少参选号码后再试。")
            .arg(tickets)
            .arg(c.neededBytes / kMiB)
            .arg(c.availableBytes / kMiB);
    return c;
}

}  // namespace memory_budget
