#include "history/cell_edit.h"

#include "history/history_actions.h"
#include "history/history_store.h"
#include "history/history_text.h"
#include "history/history_texts.h"
#include "history/recompute.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <limits>

namespace cell_edit {
const QStringList& headers() {
    static const QStringList h{QStringLiteral("序数"),  QStringLiteral("期号"),  QStringLiteral("前1位"),
                               QStringLiteral("前2位"), QStringLiteral("前3位"), QStringLiteral("前4位"),
                               QStringLiteral("前5位"), QStringLiteral("后1位"), QStringLiteral("后2位")};
    return h;
}
}  // namespace cell_edit

namespace {

using Outcome = HistoryActionResult::Outcome;
using namespace cell_edit;

constexpr int kFrontSlots = 5;
constexpr int kFirstBackSlot = 6;
constexpr int kLastSlot = 7;

// The text of Text1 as a number: its digits, 0 when empty, as the classic Val reads them.
std::optional<qint64> cellValue(const QString& text) {
    const QString t = text.trimmed();
    if (t.isEmpty()) return 0;
    bool ok = false;
    const qint64 v = t.toLongLong(&ok);
    if (!ok || v < 0 || v > std::numeric_limits<int32_t>::max()) return std::nullopt;
    return v;
}

// A number fits when it lies in its zone and strictly between its zone neighbours.
bool fitsBetweenNeighbours(const DrawNumbers& d, int slot, qint64 v, int frontSize, int backSize) {
    const bool isFront = slot <= kFrontSlots;
    const int first = isFront ? 1 : kFirstBackSlot;
    const int last = isFront ? kFrontSlots : kLastSlot;
    const int size = isFront ? frontSize : backSize;
    if (v < 1 || v > size) return false;
    if (slot > first && v <= d[slot - 1]) return false;
    if (slot < last && v >= d[slot + 1]) return false;
    return true;
}

// An issue fits when the history text gives it back, and the next row's issue still reads back
// after it as well as it did before.
bool issueFits(const DrawHistory& h, int row, qint64 v) {
    const auto& numbers = h.numbers;
    if (!history_text::issueReadsBack(v, numbers[static_cast<size_t>(row - 1)][0])) return false;
    if (row >= h.drawCount()) return true;
    const int32_t next = numbers[static_cast<size_t>(row + 1)][0];
    return history_text::issueReadsBack(next, static_cast<int32_t>(v)) ||
           !history_text::issueReadsBack(next, numbers[static_cast<size_t>(row)][0]);
}

// The statements that store the new value: fig and figquan for a front number, fighou and
// figquan for a back number, fig alone for the issue.
bool writeCell(SqliteDb& db, int row, int slot, qint64 v) {
    auto update = [&](const char* table, const QString& column) {
        return db.exec(
            QStringLiteral("UPDATE [%1] SET [%2]=?1 WHERE [Idx]=?2").arg(QLatin1String(table), column),
            {v, row});
    };
    if (slot == 0) return update("fig", QStringLiteral("fig0"));
    if (slot <= kFrontSlots)
        return update("fig", QStringLiteral("fig%1").arg(slot)) &&
               update("figquan", QStringLiteral("fig%1").arg(slot));
    return update("fighou", QStringLiteral("fig%1").arg(slot - kFrontSlots)) &&
           update("figquan", QStringLiteral("fig%1").arg(slot));
}

// Moves one count of the zone from the old number to the new one; Glsum stays. Both Gailv
// and GailvHou are then rewritten.
bool moveCount(SqliteDb& db, StatsViews& stats, int slot, int oldValue, int newValue) {
    NumberStats& zone = slot <= kFrontSlots ? stats.front : stats.back;
    if (oldValue >= 0 && oldValue < kNumberSlots) --zone.frequency[oldValue];
    ++zone.frequency[newValue];
    for (HistoryView v : {HistoryView::Front, HistoryView::Back}) {
        NumberStats& s = statsOf(stats, v);
        const int rows = viewInfo(v).frequencyRows;
        // Without a denominator there is no percentage to write.
        if (!recomputePercent(s, rows)) continue;
        if (!history_store::writeFrequency(db, v, s, rows)) return false;
    }
    return true;
}

}  // namespace

bool CellEdit::acceptsKey(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

bool CellEdit::isEditable(int row, int column) const {
    return row >= 1 && row <= m_session.drawCount() && column >= kIssueColumn && column <= kLastColumn;
}

CellEdit::Commit CellEdit::next(int row, int column, Key key) const {
    const int last = std::max(1, m_session.drawCount());
    switch (key) {
        case Key::Up:
            return {{}, std::max(1, row - 1), column};
        case Key::Down:
            return {{}, std::min(last, row + 1), column};
        case Key::Escape:
            return {{}, row, column};
        case Key::Enter:
        case Key::Tab:
            break;
    }
    if (column < kLastColumn) return {{}, row, column + 1};
    return {{}, std::min(last, row + 1), kIssueColumn};
}

CellEdit::Commit CellEdit::commit(int row, int column, const QString& text, Key key) {
    if (key == Key::Escape || !isEditable(row, column)) return {{}, row, column};
    const int slot = slotOf(column);
    const DrawNumbers& current = m_session.history().numbers[static_cast<size_t>(row)];
    const std::optional<qint64> value = cellValue(text);
    const bool isNumber = slot >= 1;
    if (!value || (isNumber && !fitsBetweenNeighbours(current, slot, *value, m_session.frontSize(),
                                                      m_session.backSize()))) {
        m_prompter.inform(history_texts::kEntryTitle, history_texts::kCellRangeText,
                          Prompter::Icon::Critical);
        Commit c{{}, row, column};
        c.result.outcome = Outcome::Refused;
        return c;
    }
    if (!isNumber && !issueFits(m_session.history(), row, *value)) {
        m_prompter.inform(history_texts::kEntryTitle, history_texts::kIssueEditText,
                          Prompter::Icon::Critical);
        Commit c{{}, row, column};
        c.result.outcome = Outcome::Refused;
        return c;
    }

    HistoryState state = HistoryState::of(m_session);
    const int oldValue = current[slot];
    SqliteDb& db = m_session.historyDb();
    SqliteTransaction tx(db);
    state.history.numbers[static_cast<size_t>(row)][slot] = static_cast<int32_t>(*value);
    const bool written =
        tx.active() && (!isNumber || moveCount(db, state.stats, slot, oldValue, static_cast<int>(*value))) &&
        writeCell(db, row, slot, *value) && recompute::updateRow(db, state, row, ZoneShape::of(m_session)) &&
        tx.commit();
    if (!written) {
        m_prompter.inform(history_texts::kWriteFailedTitle, history_texts::kWriteFailedText,
                          Prompter::Icon::Critical);
        Commit c{{}, row, column};
        c.result.outcome = Outcome::Failed;
        return c;
    }
    std::move(state).commitTo(m_session);
    m_session.trendGridsBuilt = false;
    history_actions::writeText(m_session);
    Commit c = next(row, column, key);
    c.result.outcome = Outcome::Done;
    return c;
}
