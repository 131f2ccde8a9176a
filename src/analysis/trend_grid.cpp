#include "analysis/trend_grid.h"

#include "workspace/session.h"

#include <QStringList>

#include <algorithm>

namespace {
// The draw slots of a zone's numbers: front 1..5, back 6..7.
struct Slots {
    int first;
    int last;
};
Slots slotsOf(Zone zone) { return zone == Zone::Front ? Slots{1, 5} : Slots{6, 7}; }
}  // namespace

TrendGrid::TrendGrid(Session& session, Zone zone) : m_session(session), m_zone(zone) {}

QString TrendGrid::omissionTable() const {
    return m_zone == Zone::Front ? QStringLiteral("Ylqs") : QStringLiteral("YlqsHou");
}

QString TrendGrid::omissionColumns() const {
    QStringList cols;
    for (int n = 1; n <= m_size; ++n) cols << QStringLiteral("[ylqs%1]").arg(n);
    return cols.join(QLatin1Char(','));
}

void TrendGrid::load() {
    m_size = m_zone == Zone::Front ? m_session.frontSize() : m_session.backSize();
    m_drawCount = m_session.drawCount();
    m_draws = m_session.history().numbers;
    m_cells.assign(static_cast<size_t>((m_drawCount + 1) * (m_size + 1)), TrendCell{});
    m_current.assign(static_cast<size_t>(m_size + 1), std::nullopt);
    m_appearances.assign(static_cast<size_t>(m_size + 1), 0);

    // The omission table is walked once, forward, one row per draw row. A missing table or one
    // with fewer rows than draws leaves the grey figures of the rows it lacks out.
    SqliteDb& db = m_session.historyDb();
    const SqliteReadTransaction read(db);
    SqliteStatement rows(
        db, QStringLiteral("SELECT %1 FROM [%2] ORDER BY [Qihao]").arg(omissionColumns(), omissionTable()));
    const auto readRow = [this, &rows] {
        std::vector<int16_t> row(static_cast<size_t>(m_size + 1), 0);
        for (int n = 1; n <= m_size; ++n)
            row[static_cast<size_t>(n)] = static_cast<int16_t>(rows.integer(n - 1));
        return row;
    };
    std::vector<int16_t> row;
    bool haveRow = false;
    const Slots s = slotsOf(m_zone);
    for (int r = 1; r <= m_drawCount; ++r) {
        haveRow = rows.ok() && rows.next();
        if (haveRow) row = readRow();
        const DrawNumbers& draw = m_draws[static_cast<size_t>(r)];
        for (int slot = s.first; slot <= s.last; ++slot) {
            const int v = draw[static_cast<size_t>(slot)];
            if (v < 1 || v > m_size) continue;  // no column for it
            TrendCell& hit = at(r, v);
            hit.figure = static_cast<int16_t>(v);
            hit.shown = hit.drawn = true;
            hit.omission = false;
            // The figure in the cell before the hit comes from the omission row read in step with
            // this draw row; it stands over whatever that cell held, a hit keeping its green.
            if (r == 1 || !haveRow) continue;
            TrendCell& before = at(r - 1, v);
            before.figure = row[static_cast<size_t>(v)];
            before.shown = before.omission = true;
        }
    }
    // The table's last row gives the current omissions.
    while (rows.ok() && rows.next()) {
        row = readRow();
        haveRow = true;
    }
    if (haveRow) setCurrentOmissions(row);
    countAppearances(0);
    countRuns();
}

void TrendGrid::countRuns() {
    m_runs.assign(static_cast<size_t>(m_size + 1), NumberRuns{});
    for (int n = 1; n <= m_size; ++n) {
        NumberRuns& runs = m_runs[static_cast<size_t>(n)];
        int hits = 0, missing = 0, streak = 0;
        for (int r = 1; r <= m_drawCount; ++r) {
            if (cell(r, n).drawn) {
                ++hits;
                missing = 0;
                runs.longestStreak = std::max(runs.longestStreak, ++streak);
            } else {
                streak = 0;
                runs.longestOmission = std::max(runs.longestOmission, ++missing);
            }
        }
        // hits + 1 gaps share the draws without the number.
        runs.meanOmission = static_cast<double>(m_drawCount - hits) / (hits + 1);
    }
}

const TrendCell& TrendGrid::cell(int row, int number) const {
    return m_cells[static_cast<size_t>(row * (m_size + 1) + number)];
}

std::optional<int16_t> TrendGrid::currentOmission(int number) const {
    return m_current[static_cast<size_t>(number)];
}

int TrendGrid::appearances(int number) const { return m_appearances[static_cast<size_t>(number)]; }

QString TrendGrid::mark(int number) const {
    if (banker(number)) return kBankerMark;
    return picked(number) ? kPickMark : QString();
}

bool TrendGrid::picked(int number) const {
    const ZoneBoardState& z = m_zone == Zone::Front ? m_session.board().front : m_session.board().back;
    return z.pickFlag[static_cast<size_t>(number)];
}

bool TrendGrid::banker(int number) const {
    const ZoneBoardState& z = m_zone == Zone::Front ? m_session.board().front : m_session.board().back;
    return z.bankerFlag[static_cast<size_t>(number)];
}

double TrendGrid::probability(int number) const {
    const NumberStats& s = m_zone == Zone::Front ? m_session.stats().front : m_session.stats().back;
    return s.percent[static_cast<size_t>(number)];
}

void TrendGrid::countAppearances(int after) {
    // One pass over the draws gives what a count per number and position over the draw table
    // would: every position of the zone holding the number counts once.
    m_appearances.assign(static_cast<size_t>(m_size + 1), 0);
    const Slots s = slotsOf(m_zone);
    for (int r = std::max(after, 0) + 1; r <= m_drawCount; ++r) {
        const DrawNumbers& draw = m_draws[static_cast<size_t>(r)];
        for (int slot = s.first; slot <= s.last; ++slot) {
            const int v = draw[static_cast<size_t>(slot)];
            if (v >= 1 && v <= m_size) ++m_appearances[static_cast<size_t>(v)];
        }
    }
}

bool TrendGrid::showOmissionsOf(int32_t issue) {
    SqliteDb& db = m_session.historyDb();
    SqliteStatement st(db, QStringLiteral("SELECT %1 FROM [%2] WHERE [Qihao] = ?1 ORDER BY rowid LIMIT 1")
                               .arg(omissionColumns(), omissionTable()));
    if (!st.ok()) return false;
    st.bind(1, static_cast<qint64>(issue));
    if (!st.next()) return false;
    std::vector<int16_t> row(static_cast<size_t>(m_size + 1), 0);
    for (int n = 1; n <= m_size; ++n) row[static_cast<size_t>(n)] = static_cast<int16_t>(st.integer(n - 1));
    setCurrentOmissions(row);
    return true;
}

void TrendGrid::setCurrentOmissions(const std::vector<int16_t>& row) {
    NumberStats& stats = m_zone == Zone::Front ? m_session.stats().front : m_session.stats().back;
    for (int n = 1; n <= m_size; ++n) {
        m_current[static_cast<size_t>(n)] = row[static_cast<size_t>(n)];
        stats.omission[static_cast<size_t>(n)] = row[static_cast<size_t>(n)];
    }
}
