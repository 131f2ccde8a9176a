// Issue numbers that the history text could not give back as they stand are refused, in the
// cell edit and in the manual entry, and nothing changes then.
#include "history/cell_edit.h"
#include "history/draw_entry.h"
#include "history/history_actions.h"
#include "history/history_text.h"
#include "history/history_texts.h"
#include "history_fixture.h"

#include <limits>

using Outcome = HistoryActionResult::Outcome;

namespace {

constexpr int32_t kMaxIssue = std::numeric_limits<int32_t>::max();

const DrawEntry::Boxes kNextDraw{"06", "07", "08", "09", "10", "03", "04"};

QByteArray fileText(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

}  // namespace

TEST(HistoryTextIssues, AnIssueReadsBackWhenItHasSevenDigitsOrFollowsThePreviousOne) {
    using history_text::issueReadsBack;
    EXPECT_TRUE(issueReadsBack(2007001, 0));
    EXPECT_TRUE(issueReadsBack(1000001, 5));
    EXPECT_TRUE(issueReadsBack(9999999, 2007001));
    // Eight digits and more are read back as their first seven.
    EXPECT_FALSE(issueReadsBack(10000000, 9999999));
    EXPECT_FALSE(issueReadsBack(20070011, 2007001));
    EXPECT_FALSE(issueReadsBack(kMaxIssue, kMaxIssue - 1));
    EXPECT_FALSE(issueReadsBack(static_cast<qint64>(kMaxIssue) + 1, kMaxIssue));
    // Up to 1000000 the issue is not written: only the one after the previous comes back.
    EXPECT_TRUE(issueReadsBack(1, 0));
    EXPECT_TRUE(issueReadsBack(1000000, 999999));
    EXPECT_FALSE(issueReadsBack(7, 5));
    EXPECT_FALSE(issueReadsBack(0, 0));
    EXPECT_FALSE(issueReadsBack(-1, -3));

    // A line without an issue after the largest one has no issue to count on to.
    EXPECT_EQ(history_text::parseLine("01 02 03 04 05 01 02", kMaxIssue).status,
              history_text::ParsedLine::Status::BadIssue);
    const history_text::ParsedLine own = history_text::parseLine("2007001 01 02 03 04 05 01 02", kMaxIssue);
    EXPECT_EQ(own.status, history_text::ParsedLine::Status::Ok);
    EXPECT_EQ(own.draw[0], 2007001);
}

using HistoryIssueTest = HistoryFixture;

TEST_F(HistoryIssueTest, EditedIssuesThatWouldNotReadBackAreRefused) {
    ASSERT_TRUE(importLines({"2007001 01 02 03 04 05 04 11", "2007002 10 15 21 30 31 05 12"}).done());
    const QString text = history_actions::historyTextPath(*session);
    const QStringList before = dump();
    const QByteArray textBefore = fileText(text);
    const DrawHistory historyBefore = session->history();
    CellEdit edit(*session, prompter);
    for (const char* issue : {"20070011", "99999999", "2147483647", "5"}) {
        prompter.clear();
        const CellEdit::Commit c =
            edit.commit(2, cell_edit::kIssueColumn, QString::fromLatin1(issue), CellEdit::Key::Enter);
        EXPECT_EQ(c.result.outcome, Outcome::Refused) << issue;
        EXPECT_EQ(c.nextRow, 2);
        EXPECT_EQ(c.nextColumn, cell_edit::kIssueColumn);
        EXPECT_EQ(prompter.messages(), QStringList{history_texts::kIssueEditText}) << issue;
        EXPECT_EQ(prompter.asked().first().title, history_texts::kEntryTitle);
    }
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(fileText(text), textBefore);
    EXPECT_EQ(session->history().numbers, historyBefore.numbers);

    // Seven digits go in, and the text gives them back.
    ASSERT_TRUE(edit.commit(2, cell_edit::kIssueColumn, QStringLiteral("9999999"), CellEdit::Key::Enter)
                    .result.done());
    EXPECT_EQ(cell("fig", "fig0", 2).toInt(), 9999999);
    const DrawHistory edited = session->history();
    ASSERT_TRUE(importLines(QString::fromLatin1(fileText(text)).split(QStringLiteral("\r\n"))).done());
    EXPECT_EQ(session->history().numbers, edited.numbers);
}

TEST_F(HistoryIssueTest, AnEditMayNotChangeWhatTheNextUnwrittenIssueReadsBackAs) {
    // Issues 1, 2, 3 are not written: each line counts on from the one before.
    ASSERT_TRUE(importLines({"01 02 03 04 05 01 02", "06 07 08 09 10 03 04", "11 12 13 14 15 05 06"}).done());
    ASSERT_EQ(session->history().lastIssue(), 3);
    const QStringList before = dump();
    CellEdit edit(*session, prompter);
    // 2007002 itself would read back, but issue 3 after it would read back as 2007003.
    EXPECT_EQ(edit.commit(2, cell_edit::kIssueColumn, QStringLiteral("2007002"), CellEdit::Key::Enter)
                  .result.outcome,
              Outcome::Refused);
    EXPECT_EQ(
        edit.commit(2, cell_edit::kIssueColumn, QStringLiteral("4"), CellEdit::Key::Enter).result.outcome,
        Outcome::Refused);
    EXPECT_EQ(dump(), before);
    // The last row has no row after it; typing the same issue again changes nothing.
    EXPECT_TRUE(edit.commit(3, cell_edit::kIssueColumn, QStringLiteral("2007003"), CellEdit::Key::Enter)
                    .result.done());
    EXPECT_TRUE(
        edit.commit(2, cell_edit::kIssueColumn, QStringLiteral("2"), CellEdit::Key::Enter).result.done());
}

TEST_F(HistoryIssueTest, AnAppendAfterTheLargestIssuesIsRefused) {
    ASSERT_TRUE(importLines({"2007001 01 02 03 04 05 04 11"}).done());
    const QString text = history_actions::historyTextPath(*session);
    for (const int32_t last : {kMaxIssue, 9999999}) {
        // An issue that an earlier version let in, straight in the table.
        ASSERT_TRUE(
            session->historyDb().exec(QStringLiteral("UPDATE [fig] SET [fig0]=?1 WHERE [Idx]=1"), {last}));
        reopen();
        ASSERT_EQ(session->history().lastIssue(), last);
        const QStringList before = dump();
        const QByteArray textBefore = fileText(text);
        const QVariant reducedRows = session->filterDb().scalar(QStringLiteral("SELECT count(*) FROM [fig]"));
        prompter.clear();
        const HistoryActionResult r = DrawEntry(*session, prompter).submit(kNextDraw);
        EXPECT_EQ(r.outcome, Outcome::Refused) << last;
        EXPECT_EQ(prompter.messages(), QStringList{history_texts::kIssueAppendText});
        EXPECT_EQ(session->drawCount(), 1);
        EXPECT_EQ(dump(), before);
        EXPECT_EQ(fileText(text), textBefore);
        EXPECT_EQ(session->filterDb().scalar(QStringLiteral("SELECT count(*) FROM [fig]")), reducedRows);
    }

    // One below: 9999999 is the last issue the text holds.
    ASSERT_TRUE(session->historyDb().exec(QStringLiteral("UPDATE [fig] SET [fig0]=9999998 WHERE [Idx]=1")));
    reopen();
    ASSERT_TRUE(DrawEntry(*session, prompter).submit(kNextDraw).done());
    EXPECT_EQ(cell("fig", "fig0", 2).toInt(), 9999999);
}
