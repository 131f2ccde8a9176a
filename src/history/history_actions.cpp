#include "history/history_actions.h"

#include "history/history_store.h"
#include "history/history_text.h"
#include "history/history_texts.h"
#include "history/history_writer.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QDir>
#include <QFile>

namespace history_actions {

namespace {

using Outcome = HistoryActionResult::Outcome;

HistoryActionResult outcome(Outcome o, GridAction grid = GridAction::None) {
    HistoryActionResult r;
    r.outcome = o;
    r.grid = grid;
    return r;
}

HistoryActionResult writeFailed(Prompter& prompter) {
    prompter.inform(history_texts::kWriteFailedTitle, history_texts::kWriteFailedText,
                    Prompter::Icon::Critical);
    return outcome(Outcome::Failed);
}

}  // namespace

QString historyTextPath(const Session& s) {
    return QDir(s.root().otherHistoryTextFolder())
        .filePath(s.workspaceName() + QStringLiteral(" 大乐透号码.TXT"));
}

QString editTextPath(const Session& s) {
    return QDir(s.root().otherHistoryTextFolder())
        .filePath(s.workspaceName() + QStringLiteral(" 五星号码.TXT"));
}

bool writeText(const Session& s) { return history_text::writeFile(historyTextPath(s), s.history()); }

QString nextIssueText(const Session& s) {
    return history_texts::nextIssueText(static_cast<qint64>(s.history().lastIssue()) + 1);
}

HistoryActionResult editText(Session& s, Prompter& prompter) {
    const QString path = editTextPath(s);
    prompter.inform(history_texts::kEditTitle, history_texts::editText(QDir::toNativeSeparators(path)));
    if (QFile::exists(path)) {
        HistoryActionResult r = outcome(Outcome::Done);
        r.path = path;
        return r;
    }
    if (!prompter.okCancel(history_texts::kEditMissingTitle, history_texts::kEditMissingText)) return {};
    // Writefig over what has not been written yet: nothing, so no percentage can be counted
    // and the transaction leaves every table as it was.
    HistoryState state = HistoryState::of(s);
    SqliteTransaction tx(s.historyDb());
    const int drawCount = state.history.drawCount();
    if (tx.active() &&
        appendRows(s.historyDb(), HistoryView::Front, state, drawCount + 1, drawCount, ZoneShape::of(s),
                   Denominator::Batch) == WriteStatus::Ok &&
        tx.commit()) {
        std::move(state).commitTo(s);
        return outcome(Outcome::Done, GridAction::Rebuild);
    }
    return outcome(Outcome::Failed);
}

HistoryActionResult clearList(Session& s, Prompter& prompter) {
    if (!prompter.okCancel(history_texts::kClearTitle, history_texts::kClearText)) return {};
    SqliteDb& db = s.historyDb();
    SqliteTransaction tx(db);
    if (!tx.active() || !history_store::clearTable(db, QStringLiteral("fig")) ||
        !history_store::clearTable(db, QStringLiteral("Ylqs")) || !tx.commit())
        return writeFailed(prompter);
    DrawHistory& h = s.history();
    h.numbers.assign(1, DrawNumbers{});
    h.front.assign(1, DrawParams{});
    s.trendGridsBuilt = false;
    return outcome(Outcome::Done, GridAction::Clear);
}

namespace {

// Ylarr[1..bitnum] from the last row of Ylqs, when there is one.
void reloadFrontOmission(SqliteDb& db, int frontSize, NumberStats& front) {
    QStringList cols;
    for (int n = 1; n <= frontSize; ++n) cols << QStringLiteral("[ylqs%1]").arg(n);
    const QList<QVariantList> last = db.rows(
        QStringLiteral("SELECT %1 FROM [Ylqs] ORDER BY rowid DESC LIMIT 1").arg(cols.join(QLatin1Char(','))));
    if (last.isEmpty()) return;
    for (int n = 1; n <= frontSize; ++n)
        front.omission[n] = static_cast<int16_t>(last[0].value(n - 1).toInt());
}

// Glarr and Glsum counted anew from the five numbers of every row of fig.
bool recountFront(SqliteDb& db, NumberStats& front) {
    front.total = 0;
    for (int n = 1; n < kNumberSlots; ++n) front.frequency[n] = 0;
    SqliteStatement st(db, QStringLiteral("SELECT [fig1],[fig2],[fig3],[fig4],[fig5] FROM [fig]"));
    if (!st.ok()) return false;
    while (st.next()) {
        for (int c = 0; c < 5; ++c) {
            const int n = st.integer(c);
            if (n < 0 || n >= kNumberSlots) continue;
            ++front.frequency[n];
            ++front.total;
        }
    }
    return true;
}

void dropLast(std::vector<DrawParams>& v) {
    if (v.size() > 1) v.pop_back();
}

}  // namespace

HistoryActionResult deleteLast(Session& s, Prompter& prompter) {
    SqliteDb& db = s.historyDb();
    if (db.scalar(QStringLiteral("SELECT count(*) FROM [fig]")).toInt() == 0) return {};
    HistoryState state = HistoryState::of(s);
    NumberStats& front = state.stats.front;
    SqliteTransaction tx(db);
    if (!tx.active()) return writeFailed(prompter);
    for (HistoryView v : kAllViews) {
        if (!history_store::deleteLastRow(db, viewInfo(v).drawTable) ||
            !history_store::deleteLastRow(db, viewInfo(v).omissionTable))
            return writeFailed(prompter);
    }
    const int drawCount = db.scalar(QStringLiteral("SELECT count(*) FROM [fig]")).toInt();
    reloadFrontOmission(db, s.frontSize(), front);
    if (!recountFront(db, front)) return writeFailed(prompter);
    if (front.total >= 1) {
        recomputePercent(front, s.frontSize());
        if (!history_store::writeFrequency(db, HistoryView::Front, front, s.frontSize()))
            return writeFailed(prompter);
    }
    if (!tx.commit()) return writeFailed(prompter);

    DrawHistory& h = state.history;
    const size_t rows = static_cast<size_t>(drawCount) + 1;
    if (h.numbers.size() > rows) h.numbers.resize(rows);
    if (h.front.size() > rows) h.front.resize(rows);
    dropLast(h.back);
    dropLast(h.both);
    std::move(state).commitTo(s);
    s.trendGridsBuilt = false;
    writeText(s);
    return outcome(Outcome::Done, GridAction::Rebuild);
}

}  // namespace history_actions
