// Reading the column image back, with the checks of everything read.
#include "engine/record_chunks.h"
#include "engine/record_image.h"
#include "engine/stored_columns.h"
#include "workspace/sqlite_db.h"

#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace record_image {

namespace {

using Col = CandidateTable::Column;
using stored_columns::Stmt;

constexpr uint64_t kMaxRows = 104049792;
// More than any reason table holds; a larger piece is damage, not data.
constexpr uint64_t kMaxReasonBytes = uint64_t{1} << 30;
constexpr int kTextModes = 5;

// The stored pieces of one part in order of their seq: (seq, raw, hash, packed bytes).
class Pieces {
public:
    Pieces(SqliteDb& db, const QString& table, const QString& part)
        : m_st(db, QStringLiteral("SELECT [seq],[raw],[hash],[data] FROM [%1] WHERE [tbl]=?1 AND [part]=?2 "
                                  "ORDER BY [seq]")
                       .arg(kChunkTable)),
          m_table(table.toUtf8()),
          m_part(part.toUtf8()) {
        if (!m_st.ok()) return;
        sqlite3_bind_text(m_st.get(), 1, m_table.constData(), static_cast<int>(m_table.size()),
                          SQLITE_STATIC);
        sqlite3_bind_text(m_st.get(), 2, m_part.constData(), static_cast<int>(m_part.size()), SQLITE_STATIC);
    }
    bool ok() const { return m_st.ok(); }
    bool next() { return sqlite3_step(m_st.get()) == SQLITE_ROW; }
    int64_t seq() const { return sqlite3_column_int64(m_st.get(), 0); }
    int64_t raw() const { return sqlite3_column_int64(m_st.get(), 1); }
    int64_t hash() const { return sqlite3_column_int64(m_st.get(), 2); }
    QByteArray packed() const {
        // Without a copy: the bytes stay valid until the next step.
        const auto* p = static_cast<const char*>(sqlite3_column_blob(m_st.get(), 3));
        return QByteArray::fromRawData(p ? p : "", sqlite3_column_bytes(m_st.get(), 3));
    }

private:
    Stmt m_st;
    QByteArray m_table, m_part;
};

struct Target {
    QString name;
    char* data;
    uint64_t bytes;
    uint64_t chunkBytes;
};

// One piece to inflate: its packed bytes and where they go.
struct Job {
    QByteArray packed;
    char* dest;
    uint64_t bytes;
    int64_t hash;
};

// Inflates the pieces on up to four threads; the index of the first piece that fails, or -1.
int64_t inflateAll(const std::vector<Job>& jobs) {
    std::atomic<size_t> next{0};
    std::atomic<int64_t> failed{-1};
    const auto work = [&] {
        for (size_t i = next++; i < jobs.size() && failed.load() < 0; i = next++)
            if (!record_chunks::decompressInto(jobs[i].packed, jobs[i].dest, jobs[i].bytes, jobs[i].hash))
                failed.store(static_cast<int64_t>(i));
    };
    const size_t threads =
        std::min<size_t>({jobs.size(), std::max(1u, std::thread::hardware_concurrency()), 4});
    std::vector<std::thread> pool;
    for (size_t i = 1; i < threads; ++i) pool.emplace_back(work);
    work();
    for (std::thread& th : pool) th.join();
    return failed.load();
}

QString readPart(SqliteDb& db, const QString& table, const Target& t) {
    Pieces pieces(db, table, t.name);
    if (!pieces.ok()) return QStringLiteral("the pieces of %1 cannot be read").arg(t.name);
    const uint64_t chunks = (t.bytes + t.chunkBytes - 1) / t.chunkBytes;
    std::vector<Job> jobs;
    for (uint64_t seq = 0; pieces.next(); ++seq) {
        if (seq >= chunks || pieces.seq() != static_cast<int64_t>(seq))
            return QStringLiteral("%1 has a piece out of place").arg(t.name);
        const uint64_t n = std::min(t.chunkBytes, t.bytes - seq * t.chunkBytes);
        if (pieces.raw() != static_cast<int64_t>(n))
            return QStringLiteral("piece %1 of %2 has the wrong length").arg(seq).arg(t.name);
        QByteArray packed = pieces.packed();
        packed.detach();  // a copy: the statement's bytes go with the next step
        jobs.push_back({std::move(packed), t.data + seq * t.chunkBytes, n, pieces.hash()});
    }
    if (jobs.size() != chunks) return QStringLiteral("%1 lacks pieces").arg(t.name);
    const int64_t bad = inflateAll(jobs);
    if (bad >= 0) return QStringLiteral("piece %1 of %2 is corrupt").arg(bad).arg(t.name);
    return {};
}

template <typename T>
Target targetOf(const QString& name, std::span<T> v) {
    return {name, reinterpret_cast<char*>(v.data()), v.size() * sizeof(T),
            record_chunks::kRowsPerChunk * sizeof(T)};
}

Target bitsTarget(const char* name, BitVector& bits) {
    Target t = targetOf(QLatin1String(name), bits.words());
    t.chunkBytes = record_chunks::kRowsPerChunk / 8;
    return t;
}

// The columns to read into, the optional ones allocated as the layout says.
std::vector<Target> targetsOf(CandidateTable& t, uint32_t layout) {
    std::vector<Target> out;
    for (int k = 1; k <= t.numberCount(); ++k)
        out.push_back(targetOf(QStringLiteral("fig%1").arg(k), t.numberColumn(k)));
    out.push_back(bitsTarget("unslt", t.filteredOut()));
    out.push_back(bitsTarget("preunslt", t.previousFilteredOut()));
    out.push_back(bitsTarget("tmpunslt", t.scratchFilteredOut()));
    out.push_back(bitsTarget("gpslt", t.groupMark()));
    out.push_back(targetOf(QStringLiteral("fliter"), t.rowReasons()));
    if (layout & Col::ParamValueColumn) out.push_back(targetOf(QStringLiteral("canshu"), t.paramValues()));
    if (layout & Col::SuperCountColumn) out.push_back(targetOf(QStringLiteral("sknum"), t.superCount()));
    if (layout & Col::FailCountColumn) out.push_back(targetOf(QStringLiteral("errnum"), t.failCount()));
    if (layout & Col::MatchIssueColumn) out.push_back(targetOf(QStringLiteral("jsqihao"), t.matchIssue()));
    if (layout & Col::IdxColumn) out.push_back(targetOf(QStringLiteral("idx"), t.explicitIdx()));
    return out;
}

QString readReasons(SqliteDb& db, const QString& table, ReasonTable& reasons, uint64_t expected) {
    Pieces pieces(db, table, QStringLiteral("reasons"));
    if (!pieces.ok()) return QStringLiteral("the reason entries cannot be read");
    while (pieces.next()) {
        const int64_t raw = pieces.raw();
        if (pieces.seq() != static_cast<int64_t>(reasons.size()) || raw < 0 ||
            static_cast<uint64_t>(raw) > kMaxReasonBytes)
            return QStringLiteral("a piece of the reason entries is out of place");
        QByteArray bytes(static_cast<qsizetype>(raw), Qt::Uninitialized);
        if (!record_chunks::decompressInto(pieces.packed(), bytes.data(), static_cast<size_t>(raw),
                                           pieces.hash()))
            return QStringLiteral("a piece of the reason entries is corrupt");
        if (!reasons.appendImage(bytes, static_cast<ReasonTable::Id>(reasons.size())))
            return QStringLiteral("a piece of the reason entries is no list of entries");
    }
    if (reasons.size() != expected) return QStringLiteral("reason entries are missing");
    return {};
}

QString checkInfo(const Info& info, schema::CandidateKind kind) {
    if (info.kind != kind) return QStringLiteral("it names another kind of table");
    if (info.rows > kMaxRows) return QStringLiteral("its count of rows is out of range");
    const uint32_t optional = Col::ParamValueColumn | Col::SuperCountColumn | Col::FailCountColumn |
                              Col::MatchIssueColumn | Col::IdxColumn;
    if (info.layout & ~optional) return QStringLiteral("it names unknown columns");
    if (info.textMode < 0 || info.textMode >= kTextModes)
        return QStringLiteral("its text mode is out of range");
    if (info.reasons < 2 || info.reasons > UINT32_MAX)
        return QStringLiteral("its count of reasons is out of range");
    return {};
}

}  // namespace

QString checkTable(const CandidateTable& t, ZoneLimits limits) {
    const bool six = t.kind() == schema::CandidateKind::SixNumbers;
    for (int k = 1; k <= t.numberCount(); ++k) {
        const int limit = six || k <= 5 ? limits.front : limits.back;
        const auto col = t.numberColumn(k);
        if (!col.empty() && *std::ranges::max_element(col) > limit)
            return QStringLiteral("fig%1 holds a number outside the zone 1..%2").arg(k).arg(limit);
    }
    const auto ids = t.rowReasons();
    if (!ids.empty() && *std::ranges::max_element(ids) >= t.reasons().size())
        return QStringLiteral("a row names a reason that does not exist");
    for (const BitVector* bits :
         {&t.filteredOut(), &t.previousFilteredOut(), &t.scratchFilteredOut(), &t.groupMark()}) {
        const auto words = bits->words();
        if (!words.empty() && (words.back() & ~bits->validMask(words.size() - 1)) != 0)
            return QStringLiteral("a flag is set past the last row");
    }
    return {};
}

ReadResult read(SqliteDb& db, schema::CandidateKind kind, const Info& info, ZoneLimits limits,
                EngineProgress* progress) {
    const QString table = schema::candidateTableName(kind);
    ReadResult r;
    r.problem = checkInfo(info, kind);
    if (!r.problem.isEmpty()) return r;
    auto t = std::make_unique<CandidateTable>(info.kind, info.rows);
    const std::vector<Target> targets = targetsOf(*t, info.layout);
    for (size_t i = 0; i < targets.size(); ++i) {
        if (progress && progress->cancelled()) return r;
        r.problem = readPart(db, table, targets[i]);
        if (!r.problem.isEmpty()) return r;
        if (progress) progress->progress(info.rows * (i + 1) / (targets.size() + 1), info.rows);
    }
    r.problem = readReasons(db, table, t->reasons(), info.reasons);
    if (r.problem.isEmpty()) r.problem = checkTable(*t, limits);
    if (!r.problem.isEmpty()) return r;
    t->setNumberTextMode(static_cast<CandidateTable::NumberTextMode>(info.textMode));
    t->setBackNumberTextFilled(info.backText);
    t->setRecordToken(static_cast<uint64_t>(info.token));
    t->markClean(CandidateTable::AllColumns);
    r.table = std::move(t);
    return r;
}

}  // namespace record_image
