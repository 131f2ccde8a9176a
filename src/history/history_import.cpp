#include "history/history_import.h"

#include "history/history_store.h"
#include "history/history_text.h"
#include "history/history_texts.h"
#include "history/history_writer.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

using Outcome = HistoryActionResult::Outcome;

enum class ParseStatus { Ok, SevenNumbers, Trap };

// Reads the lines of the copy into state.history.figarr. The whole import starts from the
// zero row; the append import keeps the rows it has and takes a line only when the value of
// its first seven characters exceeds the last issue.
ParseStatus parseInto(const QString& path, HistoryImport::Mode mode, DrawHistory& history) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return ParseStatus::Trap;
    const bool append = mode == HistoryImport::Mode::Append;
    const qint64 lastIssue = history.lastIssue();
    // A byte order mark before the first line is no part of it.
    if (file.peek(3) == QByteArrayLiteral("\xEF\xBB\xBF")) file.skip(3);
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        while (line.endsWith('\n') || line.endsWith('\r')) line.chop(1);
        if (history_text::isBlank(line)) continue;
        if (append) {
            const std::optional<qint64> head = history_text::leadingValue(line);
            if (!head) return ParseStatus::Trap;
            if (*head <= lastIssue) continue;
        }
        // Readcount is a 16-bit counter of all rows.
        if (history.drawCount() >= game_rules::kMaxDraws) return ParseStatus::Trap;
        const history_text::ParsedLine parsed = history_text::parseLine(line, history.lastIssue());
        using S = history_text::ParsedLine::Status;
        if (parsed.status == S::TooFew) return ParseStatus::SevenNumbers;
        if (parsed.status != S::Ok || !fitsArrays(parsed.draw)) return ParseStatus::Trap;
        history.numbers.push_back(parsed.draw);
    }
    // A file without a single draw would leave the whole import an empty history.
    if (!append && history.drawCount() <= 0) return ParseStatus::Trap;
    return ParseStatus::Ok;
}

}  // namespace

QString HistoryImport::copyName(const QString& user) { return user + QStringLiteral(" 大乐透号码.TXT"); }

HistoryActionResult HistoryImport::run(Mode mode, const HistoryProgress* progress) {
    const QString question =
        mode == Mode::Whole ? history_texts::kImportWholeQuestion : history_texts::kImportAppendQuestion;
    if (!m_prompter.okCancel(history_texts::kImportTitle, question)) return {};
    const QString chosen =
        m_prompter.openFile(history_texts::kOpenDialogTitle, m_session.root().historyTextFolder(),
                            history_texts::kOpenDialogFilter);
    if (chosen.isEmpty()) return {};
    return importFile(mode, chosen, progress);
}

HistoryActionResult HistoryImport::trap(Mode mode, GridAction grid) {
    m_prompter.inform(history_texts::kTrapTitle, history_texts::trapText(mode == Mode::Append),
                      Prompter::Icon::Critical);
    HistoryActionResult r;
    r.outcome = Outcome::Failed;
    r.grid = grid;
    return r;
}

HistoryActionResult HistoryImport::importFile(Mode mode, const QString& chosen,
                                              const HistoryProgress* progress) {
    if (chosen.right(3).toLower() != QLatin1String("txt")) return {};
    const QFileInfo info(chosen);
    const QString user = m_session.workspaceName();
    const QDir dir = info.absoluteDir();
    // The chosen file is copied under a name of its own, then renamed to the workspace's copy.
    const QString byCopy = info.absoluteFilePath() + QStringLiteral(" By ") + user + QStringLiteral(".TXT");
    const QString copy = dir.filePath(copyName(user));
    QFile::remove(byCopy);
    if (!QFile::copy(info.absoluteFilePath(), byCopy)) return trap(mode, GridAction::None);
    if (QFile::exists(copy)) {
        QFile::remove(byCopy);
        const QDateTime now = QDateTime::currentDateTime();
        const QString date = now.date().toString(QStringLiteral("yyyy-M-d"));
        const QString when = date + now.time().toString(QStringLiteral("H:mm:ss"));
        if (m_prompter.okCancel(history_texts::kImportTitle, history_texts::renameQuestion(user, when))) {
            const QString aside =
                dir.filePath(user + QLatin1Char(' ') + date + QStringLiteral("日前 大乐透号码 .TXT"));
            QFile::remove(aside);
            QFile::rename(copy, aside);
        }
        HistoryActionResult r;
        r.outcome = Outcome::StartAgain;
        return r;
    }
    if (!QFile::rename(byCopy, copy)) {
        QFile::remove(byCopy);
        return trap(mode, GridAction::None);
    }
    HistoryActionResult r = importCopy(mode, copy, progress);
    r.path = copy;
    return r;
}

HistoryActionResult HistoryImport::importCopy(Mode mode, const QString& copy,
                                              const HistoryProgress* progress) {
    // The whole import empties the grid before it reads; it stays so when the read fails.
    const GridAction failedGrid = mode == Mode::Whole ? GridAction::Clear : GridAction::None;
    HistoryState state = HistoryState::of(m_session);
    if (mode == Mode::Whole) state = HistoryState{};
    const int oldcount = state.history.drawCount();
    switch (parseInto(copy, mode, state.history)) {
        case ParseStatus::Ok:
            break;
        case ParseStatus::SevenNumbers: {
            m_prompter.inform(history_texts::kSevenNumbersTitle, history_texts::kSevenNumbersText,
                              Prompter::Icon::Critical);
            HistoryActionResult r;
            r.outcome = Outcome::Failed;
            r.grid = failedGrid;
            return r;
        }
        case ParseStatus::Trap:
            return trap(mode, failedGrid);
    }
    const ZoneShape shape = ZoneShape::of(m_session);
    SqliteDb& db = m_session.historyDb();
    SqliteTransaction tx(db);
    if (!tx.active()) return trap(mode, failedGrid);
    WriteStatus s = WriteStatus::Ok;
    if (mode == Mode::Whole) {
        s = replaceAllViews(db, state, shape, progress);
    } else {
        const int rows = state.history.drawCount() - oldcount;
        s = appendRows(db, HistoryView::Front, state, oldcount + 1, state.history.drawCount(), shape,
                       Denominator::Batch, {progress, 0, rows});
    }
    if (s == WriteStatus::Cancelled) {
        HistoryActionResult r;
        r.grid = mode == Mode::Whole ? GridAction::Rebuild : GridAction::None;
        return r;
    }
    if (s != WriteStatus::Ok || !tx.commit()) return trap(mode, failedGrid);
    if (progress) progress->step(1, 1);
    HistoryActionResult r;
    r.outcome = Outcome::Done;
    r.rowsAdded = state.history.drawCount() - oldcount;
    r.grid = mode == Mode::Whole ? GridAction::Rebuild : GridAction::None;
    std::move(state).commitTo(m_session);
    m_session.trendGridsBuilt = false;
    return r;
}
