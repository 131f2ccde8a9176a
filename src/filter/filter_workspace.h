#pragma once

#include "engine/candidate_store.h"
#include "engine/candidate_table.h"
#include "engine/candidate_writer.h"
#include "filter/filter_source.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

class SqliteDb;

// The logic of one filter window (any of the seven instances): it holds the candidate table
// in memory, keeps the record in filnum.db up to date behind each action, and gives the window
// its caption, its first view and the four actions of the reset and invert buttons.
class FilterWorkspace {
public:
    // The buttons of this logic and the mouse button that released them.
    enum class Button { ResetAll, ResetLast, InvertAll, InvertLast };
    enum class Mouse { Left, Right };
    struct ClickOutcome {
        bool ranAction = false;  // an action changed the table
        bool popupRecordMenu = false;  // the window pops up mnuAdm (recording a step)
    };

    static constexpr int kFirstViewRows = 10000;

    FilterWorkspace(FilterSource instance, QString filterDbPath);
    // Waits for the record to be written (the window shows progress through waitForWrite first).
    ~FilterWorkspace();

    const FilterSourceTraits& traits() const { return filterSourceTraits(m_instance); }

    // Opening an instance that makes its table: `table` is the expansion's result (or wheel's),
    // `openingCount` the count its caption shows (RowCount, or MultiCount in multi mode).
    void openMade(std::unique_ptr<CandidateTable> table, uint64_t openingCount);
    // Opening an instance that keeps its table: loads it from filnum.db. The caption shows the
    // record count of the first query. A missing table opens empty with 0. A stored number past
    // the zone sizes of setZoneLimits() refuses the table as damaged.
    bool openStored(SqliteDb& db, EngineProgress* progress = nullptr, QString* error = nullptr);
    // Opening a table that no record follows (a back-test's own table): the actions change it in
    // memory only, and filnum.db is never written.
    void openUnrecorded(std::unique_ptr<CandidateTable> table);
    // The zone sizes of the workspace's game (the largest the game allows until set).
    void setZoneLimits(candidate_store::ZoneLimits limits) { m_limits = limits; }

    bool isOpen() const { return m_table != nullptr; }
    const CandidateTable& table() const { return *m_table; }

    // A change of the table in progress: while it lives the record's background write stays
    // stopped; its end refreshes the count and starts the write again. Edits nest: only the
    // outermost one starts the write.
    //   auto edit = workspace.edit();
    //   param_filter::runSingle(edit.table(), ...);
    class [[nodiscard]] Edit {
    public:
        Edit(Edit&& other) noexcept : m_workspace(std::exchange(other.m_workspace, nullptr)) {}
        Edit(const Edit&) = delete;
        Edit& operator=(const Edit&) = delete;
        Edit& operator=(Edit&&) = delete;
        ~Edit();

        // The table being changed (an open workspace's, from edit()).
        CandidateTable& table() const;

    private:
        friend class FilterWorkspace;
        explicit Edit(FilterWorkspace* workspace);
        FilterWorkspace* m_workspace;  // null: nothing to restart
    };
    // An edit of the open table.
    Edit edit();
    // Holds a running write stopped while something else of the workspace changes (moban, the
    // template) and writes again after; does nothing while no write runs.
    Edit pauseWrite();

    // The count in the caption and the caption itself.
    uint64_t shownCount() const { return m_shownCount; }
    QString caption() const { return filter_source::caption(static_cast<qint64>(m_shownCount)); }

    // Rows (0-based) of the grid's first view, and of the refreshed view after an action
    // (WHERE unslt = false), at most `limit` rows.
    std::vector<uint64_t> firstViewRows(int limit = kFirstViewRows) const;
    std::vector<uint64_t> liveRows(uint64_t fromRow = 0, int limit = kFirstViewRows) const;

    // The four actions; each ends with the refresh (count of live rows in the caption).
    void resetAll();
    void resetLast();
    void invertAll();
    void invertLast();
    // A button released with a mouse button. Command2 and Command3 act on the left button; the
    // right button sets intCmdnb (2 and 1) and asks for mnuAdm. Command1 and cmdRetn act on a
    // click of the left button only.
    ClickOutcome release(Button button, Mouse mouse);

    // Window-level state.
    int16_t stepCode() const { return m_stepCode; }
    // The super filters, the template steps and their replay set the code as well.
    void setStepCode(int16_t code) { m_stepCode = code; }
    int16_t zoneScope = 1;
    bool keepSense = true;

    // The record: whether a write is running, and waiting for it (closing the window).
    bool writePending() const { return m_writer.busy(); }
    candidate_store::SaveResult waitForWrite(EngineProgress* progress = nullptr) { return m_writer.wait(progress); }

private:
    void afterAction();
    void beginEdit();
    void endEdit();

    FilterSource m_instance;
    std::unique_ptr<CandidateTable> m_table;
    uint64_t m_shownCount = 0;
    candidate_store::ZoneLimits m_limits;
    int16_t m_stepCode = 0;
    int m_openEdits = 0;
    bool m_recorded = true;
    CandidateWriter m_writer;
};
