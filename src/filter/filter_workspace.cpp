#include "filter/filter_workspace.h"

#include "filter/candidate_actions.h"

#include <algorithm>
#include <numeric>

FilterWorkspace::FilterWorkspace(FilterSource instance, QString filterDbPath)
    : m_instance(instance), m_writer(std::move(filterDbPath)) {}

FilterWorkspace::~FilterWorkspace() { m_writer.wait(); }

void FilterWorkspace::openMade(std::unique_ptr<CandidateTable> table, uint64_t openingCount) {
    m_writer.cancelAndJoin();
    m_table = std::move(table);
    m_shownCount = openingCount;
    m_recorded = true;
    m_writer.start(*m_table);
}

void FilterWorkspace::openUnrecorded(std::unique_ptr<CandidateTable> table) {
    m_writer.cancelAndJoin();
    m_table = std::move(table);
    m_shownCount = m_table->liveCount();
    m_recorded = false;
}

bool FilterWorkspace::openStored(SqliteDb& db, EngineProgress* progress, QString* error) {
    m_writer.cancelAndJoin();
    m_recorded = true;
    candidate_store::LoadResult loaded = candidate_store::load(db, traits().table, progress, true, m_limits);
    if (!loaded.table) {
        if (error) *error = loaded.error;
        m_table = std::make_unique<CandidateTable>(traits().table, 0);
        m_shownCount = 0;
        return loaded.path == candidate_store::LoadPath::None;
    }
    m_table = std::move(loaded.table);
    switch (traits().firstView) {
        case FirstView::IdxRange: {
            uint64_t n = 0;
            for (uint64_t r = 0; r < m_table->rowCount(); ++r) {
                const int32_t idx = m_table->idxAt(r);
                n += idx >= 1 && idx <= kFirstViewRows;
            }
            m_shownCount = n;
            break;
        }
        case FirstView::Ordered: m_shownCount = m_table->rowCount(); break;
        case FirstView::Live: m_shownCount = m_table->liveCount(); break;
    }
    return true;
}

FilterWorkspace::Edit::Edit(FilterWorkspace* workspace) : m_workspace(workspace) {
    if (m_workspace) m_workspace->beginEdit();
}

FilterWorkspace::Edit::~Edit() {
    if (m_workspace) m_workspace->endEdit();
}

CandidateTable& FilterWorkspace::Edit::table() const {
    Q_ASSERT(m_workspace && m_workspace->m_table);  // pauseWrite() gives no table
    return *m_workspace->m_table;
}

FilterWorkspace::Edit FilterWorkspace::edit() {
    Q_ASSERT(m_table);  // the windows edit open tables only
    return Edit(this);
}

FilterWorkspace::Edit FilterWorkspace::pauseWrite() {
    return Edit(m_table && writePending() ? this : nullptr);
}

void FilterWorkspace::beginEdit() {
    if (m_openEdits++ == 0) m_writer.cancelAndJoin();
}

void FilterWorkspace::endEdit() {
    --m_openEdits;
    afterAction();
}

void FilterWorkspace::afterAction() {
    m_shownCount = m_table->liveCount();
    // Inside an edit the write waits for its end.
    if (m_openEdits == 0 && m_recorded) m_writer.start(*m_table);
}

std::vector<uint64_t> FilterWorkspace::firstViewRows(int limit) const {
    std::vector<uint64_t> rows;
    if (!m_table) return rows;
    const auto cap = static_cast<size_t>(limit);
    switch (traits().firstView) {
        case FirstView::IdxRange:
            for (uint64_t r = 0; r < m_table->rowCount() && rows.size() < cap; ++r) {
                const int32_t idx = m_table->idxAt(r);
                if (idx >= 1 && idx <= kFirstViewRows) rows.push_back(r);
            }
            return rows;
        case FirstView::Live: return liveRows(0, limit);
        case FirstView::Ordered: {
            // ORDER BY idx, fig1..fig5; a table made in idx order is already in that order.
            rows.resize(m_table->rowCount());
            std::iota(rows.begin(), rows.end(), uint64_t{0});
            const CandidateTable& t = *m_table;
            const auto key = [&t](uint64_t r) {
                return std::tuple(t.idxAt(r), t.numberColumn(1)[r], t.numberColumn(2)[r],
                                  t.numberColumn(3)[r], t.numberColumn(4)[r], t.numberColumn(5)[r]);
            };
            const size_t n = std::min(cap, rows.size());
            std::partial_sort(rows.begin(), rows.begin() + static_cast<ptrdiff_t>(n), rows.end(),
                              [&](uint64_t a, uint64_t b) { return key(a) < key(b); });
            rows.resize(n);
            return rows;
        }
    }
    return rows;
}

std::vector<uint64_t> FilterWorkspace::liveRows(uint64_t fromRow, int limit) const {
    std::vector<uint64_t> rows;
    if (!m_table) return rows;
    const auto words = m_table->filteredOut().words();
    const auto cap = static_cast<size_t>(limit);
    for (uint64_t r = fromRow; r < m_table->rowCount() && rows.size() < cap; ++r) {
        // Skip whole dead words quickly.
        if (r % BitVector::kWordBits == 0 &&
            words[r / BitVector::kWordBits] == m_table->filteredOut().validMask(r / BitVector::kWordBits)) {
            r += BitVector::kWordBits - 1;
            continue;
        }
        if (!m_table->filteredOut().test(r)) rows.push_back(r);
    }
    return rows;
}

void FilterWorkspace::resetAll() { candidate_actions::resetAll(edit().table()); }

void FilterWorkspace::resetLast() { candidate_actions::resetLast(edit().table()); }

void FilterWorkspace::invertAll() { candidate_actions::invertAll(edit().table()); }

void FilterWorkspace::invertLast() { candidate_actions::invertLast(edit().table()); }

FilterWorkspace::ClickOutcome FilterWorkspace::release(Button button, Mouse mouse) {
    if (!m_table) return {};
    if (mouse == Mouse::Right) {
        // Only the two invert buttons record a step from the right button.
        if (button == Button::InvertAll)
            m_stepCode = 2;
        else if (button == Button::InvertLast)
            m_stepCode = 1;
        else return {};
        return {false, true};
    }
    switch (button) {
        case Button::ResetAll:
            resetAll();
            break;
        case Button::ResetLast:
            resetLast();
            break;
        case Button::InvertAll:
            invertAll();
            break;
        case Button::InvertLast:
            invertLast();
            break;
    }
    return {true, false};
}
