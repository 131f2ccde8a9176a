#include "generation/wheels/wheel_menus.h"

#include "generation/wheels/wheel_store.h"

#include <array>
#include <functional>

namespace wheel_menus {

namespace {

struct Promise {
    int drawn, held;
    const char* key;  // the entry's accelerator
};

constexpr std::array<Promise, 6> kSuper{
    {{2, 2, "W"}, {3, 3, "T"}, {4, 3, "R"}, {4, 4, "U"}, {5, 3, "V"}, {5, 4, "F"}}};
constexpr std::array<Promise, 3> kBanker{{{4, 4, "U"}, {5, 4, "F"}, {5, 5, "V"}}};
constexpr std::array<Promise, 6> kSix{
    {{4, 4, "U"}, {5, 4, "O"}, {5, 5, "V"}, {6, 4, "R"}, {6, 5, "I"}, {7, 6, "S"}}};
constexpr int kFirstBasic = 9, kLastBasic = 22;
constexpr int kYuanPerSixTicket = 12;  // six tickets of 2 yuan

QString promiseText(const Promise& p) { return QStringLiteral("中%1保%2共计").arg(p.drawn).arg(p.held); }
QString promiseCode(const Promise& p) { return QString::number(p.drawn) + QString::number(p.held); }
qint64 backPairs(int m) { return qint64{m} * (m - 1) / 2; }

// The entry of one table: enabled with its caption when the table can be read.
Entry entry(const QString& database, const QString& table, const std::function<QString(qint64)>& caption) {
    Entry e{table, {}, false};
    if (const std::optional<int> rows = wheel_store::rowCount(database, table)) {
        e.enabled = true;
        e.caption = caption(*rows);
    }
    return e;
}

}  // namespace

bool basicEntryEnabled(int k, int pickCount) {
    return k == pickCount && pickCount >= kFirstBasic && pickCount <= kLastBasic;
}

QString basicTable(int pickCount) { return QString::number(pickCount); }

std::vector<Entry> superEntries(const QString& programFolder, int pickCount, int backPickCount) {
    const QString db = wheel_store::databasePath(programFolder, wheels::Family::Super);
    std::vector<Entry> entries;
    for (const Promise& p : kSuper) {
        const QString table = QStringLiteral("%1").arg(pickCount, 2, 10, QLatin1Char('0')) + promiseCode(p);
        entries.push_back(entry(db, table, [&](qint64 rows) {
            return QString::number(pickCount) + QStringLiteral("选 ") + promiseText(p) +
                   QString::number(rows * backPairs(backPickCount)) + QStringLiteral("注(&") +
                   QLatin1String(p.key) + QLatin1Char(')');
        }));
    }
    return entries;
}

std::vector<Entry> bankerEntries(const QString& programFolder, int bankerCount, int pickCount,
                                 int backPickCount) {
    const QString db = wheel_store::databasePath(programFolder, wheels::Family::Banker);
    const int total = pickCount + bankerCount;
    std::vector<Entry> entries;
    for (const Promise& p : kBanker) {
        const QString table =
            QString::number(bankerCount) + QStringLiteral("D") + QString::number(total) + promiseCode(p);
        entries.push_back(entry(db, table, [&](qint64 rows) {
            return QString::number(bankerCount) + QStringLiteral("胆") + QString::number(total) +
                   QStringLiteral("拖 ") + promiseText(p) + QString::number(rows * backPairs(backPickCount)) +
                   QStringLiteral("注(&") + QLatin1String(p.key) + QLatin1Char(')');
        }));
    }
    return entries;
}

std::vector<Entry> sixEntries(const QString& programFolder, int pickCount) {
    const QString db = wheel_store::databasePath(programFolder, wheels::Family::Six);
    std::vector<Entry> entries;
    for (const Promise& p : kSix) {
        const QString table = QStringLiteral("56") + QString::number(pickCount) + promiseCode(p);
        entries.push_back(entry(db, table, [&](qint64 rows) {
            return QString::number(pickCount) + QStringLiteral("选复6 ") + promiseText(p) +
                   QString::number(rows) + QStringLiteral("注,合计 ") +
                   QString::number(rows * kYuanPerSixTicket) + QStringLiteral(" 元 (&") +
                   QLatin1String(p.key) + QLatin1Char(')');
        }));
    }
    return entries;
}

}  // namespace wheel_menus
