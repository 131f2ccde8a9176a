#include "history/draw_entry.h"

#include "history/history_actions.h"
#include "history/history_text.h"
#include "history/history_texts.h"
#include "history/history_writer.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <algorithm>

namespace {

using Outcome = HistoryActionResult::Outcome;
constexpr int kFrontBoxes = 5;
constexpr int kDigits = 2;

// A box as the mask shows it: two positions, "_" where nothing was typed.
QString masked(const QString& text) {
    QString t = text.left(kDigits);
    while (t.size() < kDigits) t += DrawEntry::kMaskChar;
    return t;
}

// The value of a box's digits; 0 when it holds anything else.
int boxValue(const QString& text) {
    bool ok = false;
    const int v = text.toInt(&ok);
    return ok ? v : 0;
}

// The numbers of a typed draw, each zone sorted.
struct TypedDraw {
    std::array<int, kFrontBoxes> front{};
    std::array<int, 2> back{};
};

// Reads the seven boxes into `out`; returns the message that refuses them, empty when they hold
// a draw: every box full, each number inside its zone, no number twice in a zone.
QString readTyped(const DrawEntry::Boxes& boxes, int frontSize, int backSize, TypedDraw& out) {
    std::array<QString, DrawEntry::kBoxes> text;
    for (int i = 0; i < DrawEntry::kBoxes; ++i) text[i] = masked(boxes[i]);
    if (std::any_of(text.begin(), text.end(), [](const QString& t) { return t.contains(DrawEntry::kMaskChar); }))
        return history_texts::kEntryMaskText;
    for (int i = 0; i < kFrontBoxes; ++i) {
        out.front[i] = boxValue(text[i]);
        if (out.front[i] < 1 || out.front[i] > frontSize) return history_texts::kEntryRangeText;
    }
    for (int i = 0; i < kFrontBoxes; ++i)
        for (int j = i + 1; j < kFrontBoxes; ++j)
            if (text[i] == text[j]) return history_texts::kEntryRepeatText;
    std::sort(out.front.begin(), out.front.end());
    out.back = {boxValue(text[5]), boxValue(text[6])};
    for (int b : out.back)
        if (b < 1 || b > backSize) return history_texts::kEntryRangeText;
    if (text[5] == text[6]) return history_texts::kEntryRepeatText;
    if (out.back[0] > out.back[1]) std::swap(out.back[0], out.back[1]);
    return {};
}

}  // namespace

bool DrawEntry::movesFocus(int box, const QString& text) {
    return box >= 1 && box < kBoxes && text.size() >= kDigits && !text.left(kDigits).contains(kMaskChar);
}

HistoryActionResult DrawEntry::submit(const Boxes& boxes) {
    // A write that fails, or a history already full, changes nothing.
    auto failed = [this]() {
        m_prompter.inform(history_texts::kWriteFailedTitle, history_texts::kWriteFailedText,
                          Prompter::Icon::Critical);
        HistoryActionResult r;
        r.outcome = Outcome::Failed;
        return r;
    };
    auto refuse = [this](const QString& text) {
        m_prompter.inform(history_texts::kEntryTitle, text, Prompter::Icon::Critical);
        HistoryActionResult r;
        r.outcome = Outcome::Refused;
        return r;
    };
    TypedDraw typed;
    const QString refusal = readTyped(boxes, m_session.frontSize(), m_session.backSize(), typed);
    if (!refusal.isEmpty()) return refuse(refusal);
    const auto& [front, back] = typed;

    // The issue counts on from the last one, as far as the history text can keep it.
    const int32_t lastIssue = m_session.history().lastIssue();
    const qint64 issue = static_cast<qint64>(lastIssue) + 1;
    if (!history_text::issueReadsBack(issue, lastIssue)) return refuse(history_texts::kIssueAppendText);

    HistoryState state = HistoryState::of(m_session);
    const int drawCount = state.history.drawCount() + 1;
    if (drawCount > game_rules::kMaxDraws) return failed();
    DrawNumbers draw{};
    draw[0] = static_cast<int32_t>(issue);
    for (int i = 0; i < kFrontBoxes; ++i) draw[i + 1] = front[i];
    draw[6] = back[0];
    draw[7] = back[1];
    state.history.numbers.push_back(draw);

    const ZoneShape shape = ZoneShape::of(m_session);
    SqliteDb& historyDb = m_session.historyDb();
    SqliteDb& filterDb = m_session.filterDb();
    // The reduced copy of the draw in filnum.db commits with the history in one transaction.
    const SqliteAttachment filter(historyDb, filterDb.path(), QStringLiteral("filnum"));
    SqliteTransaction historyTx(historyDb);
    if (!filter.ok() || !historyTx.active()) return failed();
    // Glsum becomes Drawnum x 5; the back and both views go on with their own counters.
    const std::pair<HistoryView, Denominator> writers[] = {{HistoryView::Front, Denominator::DrawCount},
                                                           {HistoryView::Back, Denominator::Running},
                                                           {HistoryView::Both, Denominator::Running}};
    for (const auto& [view, denominator] : writers)
        if (appendRows(historyDb, view, state, drawCount, drawCount, shape, denominator) != WriteStatus::Ok)
            return failed();
    QVariantList reduced{drawCount};
    for (int i = 0; i <= kFrontBoxes; ++i) reduced << draw[i];
    if (!historyDb.exec(QStringLiteral("INSERT INTO [filnum].[fig]([Idx],[fig0],[fig1],[fig2],[fig3],[fig4],"
                                       "[fig5]) VALUES (?1,?2,?3,?4,?5,?6,?7)"),
                        reduced))
        return failed();
    if (!historyTx.commit()) return failed();

    std::move(state).commitTo(m_session);
    m_session.trendGridsBuilt = false;
    history_actions::writeText(m_session);
    HistoryActionResult r;
    r.outcome = Outcome::Done;
    r.grid = GridAction::AppendRow;
    r.rowsAdded = 1;
    return r;
}
