// Manual entry, cell editing, delete last, empty the list, and the history text.
#include "history/cell_edit.h"
#include "history/draw_entry.h"
#include "history/history_actions.h"
#include "history/history_text.h"
#include "history/history_texts.h"
#include "history/history_views.h"
#include "history_fixture.h"

using Outcome = HistoryActionResult::Outcome;

namespace {

DrawEntry::Boxes boxes(std::initializer_list<const char*> texts) {
    DrawEntry::Boxes b;
    int i = 0;
    for (const char* t : texts) b[i++] = QString::fromLatin1(t);
    return b;
}

QStringList readLines(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return {};
    return QString::fromLatin1(f.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
}

}  // namespace

using HistoryEntryTest = HistoryFixture;

TEST_F(HistoryEntryTest, EntryMessagesStoreNothing) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11"}).done());
    reopen(33, 12);
    const QStringList before = dump();
    struct Case {
        DrawEntry::Boxes boxes;
        QString message;
    };
    const Case cases[] = {
        // 4 typed without its leading zero leaves a "_".
        {boxes({"_4", "11", "19", "24", "33", "02", "09"}), history_texts::kEntryMaskText},
        {boxes({"03", "11", "19", "24", "33", "02", "9_"}), history_texts::kEntryMaskText},
        {boxes({"03", "11", "19", "24", "33", "02", ""}), history_texts::kEntryMaskText},
        // 35 in a 33-number game, and 00, are out of range.
        {boxes({"35", "11", "19", "24", "33", "02", "09"}), history_texts::kEntryRangeText},
        {boxes({"00", "11", "19", "24", "33", "02", "09"}), history_texts::kEntryRangeText},
        {boxes({"03", "11", "19", "24", "33", "13", "09"}), history_texts::kEntryRangeText},
        {boxes({"03", "11", "19", "11", "33", "02", "09"}), history_texts::kEntryRepeatText},
        {boxes({"03", "11", "19", "24", "33", "09", "09"}), history_texts::kEntryRepeatText},
    };
    for (const Case& c : cases) {
        prompter.clear();
        const HistoryActionResult r = DrawEntry(*session, prompter).submit(c.boxes);
        EXPECT_EQ(r.outcome, Outcome::Refused);
        EXPECT_EQ(prompter.messages(), QStringList{c.message});
        EXPECT_EQ(prompter.asked().last().title, history_texts::kEntryTitle);
    }
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(session->drawCount(), 1);
    EXPECT_EQ(session->filterDb().scalar("SELECT count(*) FROM fig").toInt(), 0);
}

TEST_F(HistoryEntryTest, EntrySortsAndAppendsToEveryTable) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11", "2007002 15 22 31 34 35 05 12"}).done());
    const NumberStats backBefore = session->stats().back;
    const HistoryActionResult r =
        DrawEntry(*session, prompter).submit(boxes({"33", "03", "24", "19", "11", "09", "02"}));
    ASSERT_TRUE(r.done());
    EXPECT_EQ(r.grid, GridAction::AppendRow);
    EXPECT_TRUE(prompter.messages().isEmpty());
    EXPECT_EQ(session->drawCount(), 3);
    EXPECT_EQ(session->history().numbers[3], (DrawNumbers{2007003, 3, 11, 19, 24, 33, 2, 9}));
    EXPECT_EQ(history_actions::nextIssueText(*session), QStringLiteral("在右输入2007004 期历史号码:"));
    for (const char* t : {"fig", "fighou", "figquan", "Ylqs", "YlqsHou", "YlqsQuan"})
        EXPECT_EQ(count(t), 3) << t;
    EXPECT_EQ(cell("fig", "fig1", 3).toInt(), 3);
    EXPECT_EQ(cell("fighou", "fig1", 3).toInt(), 2);
    EXPECT_EQ(cell("figquan", "fig7", 3).toInt(), 9);
    EXPECT_EQ(cell("fig", "Cnum", 3).toInt(), 0);
    // Computed with the omissions before this draw: only 24 came in the last two draws.
    EXPECT_EQ(cell("fig", "Zynum", 3).toInt(), 2 + 2 + 2 + 1 + 2);
    // Glsum = Drawnum x 5; the back view goes on with its own counter.
    EXPECT_EQ(session->stats().front.total, 15);
    EXPECT_EQ(session->stats().back.total, backBefore.total + 2);
    EXPECT_DOUBLE_EQ(session->historyDb().scalar("SELECT gailv FROM Gailv WHERE Number=35").toDouble(),
                     2.0 / 15 * 100);
    EXPECT_EQ(session->stats().front.omission[22], 1);
    EXPECT_EQ(session->stats().front.omission[3], 0);
    // The reduced fig of filnum.db and the history text follow.
    EXPECT_EQ(session->filterDb().rows("SELECT Idx, fig0, fig1, fig5 FROM fig"),
              (QList<QVariantList>{{3, 2007003, 3, 33}}));
    EXPECT_EQ(readLines(history_actions::historyTextPath(*session)),
              (QStringList{"2007001 22 24 29 31 35 04 11", "2007002 15 22 31 34 35 05 12",
                           "2007003 03 11 19 24 33 02 09"}));
    EXPECT_TRUE(DrawEntry::movesFocus(1, QStringLiteral("04")));
    EXPECT_FALSE(DrawEntry::movesFocus(1, QStringLiteral("4_")));
    EXPECT_FALSE(DrawEntry::movesFocus(7, QStringLiteral("04")));
}

TEST_F(HistoryEntryTest, HistoryTextRoundTrips) {
    ASSERT_TRUE(
        DrawEntry(*session, prompter).submit(boxes({"01", "02", "03", "04", "05", "01", "02"})).done());
    ASSERT_TRUE(
        DrawEntry(*session, prompter).submit(boxes({"06", "07", "08", "09", "10", "03", "04"})).done());
    const DrawHistory typed = session->history();
    // Issues 1 and 2 are written without their issue; the import numbers them 1, 2 again.
    const QString text = history_actions::historyTextPath(*session);
    EXPECT_EQ(readLines(text), (QStringList{"01 02 03 04 05 01 02", "06 07 08 09 10 03 04"}));
    QFile f(text);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    ASSERT_TRUE(importLines(QString::fromLatin1(f.readAll()).split(QStringLiteral("\r\n"))).done());
    EXPECT_EQ(session->history().numbers, typed.numbers);
}

TEST_F(HistoryEntryTest, CellEditRecomputesTheRow) {
    ASSERT_TRUE(importLines({"2007001 01 02 03 04 05 04 11", "2007002 10 15 21 30 31 05 12",
                             "2007003 03 04 18 23 32 01 06"})
                    .done());
    const int intYljzBefore = cell("fig", "intYljz", 2).toInt();
    EXPECT_EQ(cell("fig", "Qnum2", 2).toInt(), 3);
    CellEdit edit(*session, prompter);
    EXPECT_TRUE(edit.isEditable(2, cell_edit::kIssueColumn));
    EXPECT_FALSE(edit.isEditable(2, cell_edit::kIndexColumn));
    EXPECT_FALSE(edit.isEditable(0, 3));
    EXPECT_FALSE(edit.isEditable(4, 3));
    EXPECT_TRUE(CellEdit::acceptsKey(QLatin1Char('7')));
    EXPECT_FALSE(CellEdit::acceptsKey(QLatin1Char('-')));

    // Front 15 -> 16 (column of 前2位).
    const int glsum = session->stats().front.total;
    const CellEdit::Commit c =
        edit.commit(2, cell_edit::kFirstFrontColumn + 1, QStringLiteral("16"), CellEdit::Key::Enter);
    ASSERT_TRUE(c.result.done());
    EXPECT_EQ(c.nextRow, 2);
    EXPECT_EQ(c.nextColumn, cell_edit::kFirstFrontColumn + 2);
    EXPECT_EQ(cell("fig", "fig2", 2).toInt(), 16);
    EXPECT_EQ(cell("figquan", "fig2", 2).toInt(), 16);
    EXPECT_EQ(cell("fig", "Znum", 2).toInt(), 10 + 16 + 21 + 30 + 31);
    // The recompute path: Qnum2 leaves out the numbers above 30, which go to Qnum3.
    EXPECT_EQ(cell("fig", "Qnum2", 2).toInt(), 2);
    EXPECT_EQ(cell("fig", "Qnum3", 2).toInt(), 1);
    // fighou.Znum holds the front sum plus y2; Sumgwnum the front sum's last digit.
    EXPECT_EQ(cell("fighou", "Znum", 2).toInt(), 108 + 12);
    EXPECT_EQ(cell("fighou", "Sumgwnum", 2).toInt(), 8);
    EXPECT_EQ(session->history().back[2].sum, 120);
    // intYljz is not recomputed; Glsum stays and one count moves from 15 to 16.
    EXPECT_EQ(cell("fig", "intYljz", 2).toInt(), intYljzBefore);
    EXPECT_EQ(session->stats().front.total, glsum);
    EXPECT_EQ(session->historyDb().scalar("SELECT Glnum FROM Gailv WHERE Number=15").toInt(), 0);
    EXPECT_EQ(session->historyDb().scalar("SELECT Glnum FROM Gailv WHERE Number=16").toInt(), 1);
    EXPECT_EQ(session->history().numbers[2][2], 16);
    EXPECT_EQ(readLines(history_actions::historyTextPath(*session)).value(1),
              QStringLiteral("2007002 10 16 21 30 31 05 12"));
    // ParaQuan counts Cnum between the working rows, which the append path leaves at 0.
    EXPECT_GT(cell("figquan", "Cnum", 2).toInt(), 0);
    // The row in memory and in the table agree on every written column.
    EXPECT_EQ(session->history().front[2].complexity, cell("fig", "Fcodp", 2).toInt());
    EXPECT_FLOAT_EQ(session->history().front[2].R, cell("fig", "R", 2).toFloat());
}

TEST_F(HistoryEntryTest, CellEditRefusesNumbersOutOfOrder) {
    ASSERT_TRUE(importLines({"2007001 01 02 03 04 05 04 11", "2007002 10 15 21 30 31 05 12"}).done());
    const QStringList before = dump();
    CellEdit edit(*session, prompter);
    struct Case {
        int column;
        const char* text;
    };
    // Equal to a neighbour, beyond the zone, 0, or beyond the back zone.
    for (const Case& c :
         {Case{3, "10"}, Case{3, "21"}, Case{6, "36"}, Case{2, "0"}, Case{8, "13"}, Case{7, "12"}}) {
        prompter.clear();
        const CellEdit::Commit r = edit.commit(2, c.column, QString::fromLatin1(c.text), CellEdit::Key::Tab);
        EXPECT_EQ(r.result.outcome, Outcome::Refused) << c.column << c.text;
        EXPECT_EQ(prompter.messages(), QStringList{history_texts::kCellRangeText});
        EXPECT_EQ(r.nextRow, 2);
        EXPECT_EQ(r.nextColumn, c.column);
    }
    EXPECT_EQ(dump(), before);
    // Escape changes nothing; the arrows move after the commit; the last column wraps.
    EXPECT_EQ(edit.commit(2, 3, QStringLiteral("11"), CellEdit::Key::Escape).result.outcome,
              Outcome::Cancelled);
    EXPECT_EQ(dump(), before);
    const CellEdit::Commit up = edit.commit(2, 8, QStringLiteral("11"), CellEdit::Key::Up);
    ASSERT_TRUE(up.result.done());
    EXPECT_EQ(up.nextRow, 1);
    EXPECT_EQ(cell("fighou", "fig2", 2).toInt(), 11);
    EXPECT_EQ(cell("figquan", "fig7", 2).toInt(), 11);
    // A back edit moves the back count: 12 loses it, 11 gains one more.
    EXPECT_EQ(session->historyDb().scalar("SELECT Glnum FROM GailvHou WHERE Number=12").toInt(), 0);
    EXPECT_EQ(session->historyDb().scalar("SELECT Glnum FROM GailvHou WHERE Number=11").toInt(), 2);
    const CellEdit::Commit wrap = edit.commit(1, 8, QStringLiteral("11"), CellEdit::Key::Enter);
    EXPECT_EQ(wrap.nextRow, 2);
    EXPECT_EQ(wrap.nextColumn, cell_edit::kIssueColumn);
    // The issue column is written to fig alone.
    ASSERT_TRUE(edit.commit(1, cell_edit::kIssueColumn, QStringLiteral("2006999"), CellEdit::Key::Enter)
                    .result.done());
    EXPECT_EQ(cell("fig", "fig0", 1).toInt(), 2006999);
    EXPECT_EQ(cell("fighou", "fig0", 1).toInt(), 2007001);
}

TEST_F(HistoryEntryTest, CellEditKeepsALongerOldRun) {
    ASSERT_TRUE(importLines({"2007001 01 02 03 04 05 04 11"}).done());
    EXPECT_EQ(cell("fig", "Lxnum", 1).toInt(), 4);
    ASSERT_TRUE(
        CellEdit(*session, prompter).commit(1, 6, QStringLiteral("20"), CellEdit::Key::Enter).result.done());
    EXPECT_EQ(cell("fig", "Lnum", 1).toInt(), 3);
    EXPECT_EQ(cell("fig", "Lxnum", 1).toInt(), 4);
}

TEST_F(HistoryEntryTest, DeleteTheOnlyDraw) {
    ASSERT_TRUE(
        DrawEntry(*session, prompter).submit(boxes({"01", "02", "03", "04", "05", "01", "02"})).done());
    const StatsViews after = session->stats();
    const HistoryActionResult r = history_actions::deleteLast(*session, prompter);
    ASSERT_TRUE(r.done());
    EXPECT_EQ(r.grid, GridAction::Rebuild);
    EXPECT_TRUE(prompter.asked().isEmpty());
    EXPECT_EQ(session->drawCount(), 0);
    for (const char* t : {"fig", "fighou", "figquan", "Ylqs", "YlqsHou", "YlqsQuan"})
        EXPECT_EQ(count(t), 0) << t;
    // No Ylqs row is left to reload from, and the back view keeps counting the deleted draw.
    EXPECT_TRUE(sameStats(session->stats().back, after.back));
    EXPECT_EQ(session->stats().back.omission[3], 1);
    EXPECT_EQ(session->stats().front.omission, after.front.omission);
    EXPECT_EQ(session->stats().front.total, 0);
    // Without a denominator Gailv keeps its rows as they were.
    EXPECT_EQ(session->historyDb().scalar("SELECT Glnum FROM Gailv WHERE Number=1").toInt(), 1);
    // The reduced fig of filnum.db keeps its row; the text is empty; a second delete does nothing.
    EXPECT_EQ(session->filterDb().scalar("SELECT count(*) FROM fig").toInt(), 1);
    EXPECT_TRUE(readLines(history_actions::historyTextPath(*session)).isEmpty());
    EXPECT_EQ(history_actions::deleteLast(*session, prompter).outcome, Outcome::Cancelled);
}

TEST_F(HistoryEntryTest, DeleteRecountsTheFrontOnly) {
    ASSERT_TRUE(importLines({"2007001 01 02 03 04 05 01 02", "2007002 01 07 08 09 10 03 04",
                             "2007003 11 12 13 14 15 05 06"})
                    .done());
    const NumberStats both = session->stats().both;
    ASSERT_TRUE(history_actions::deleteLast(*session, prompter).done());
    EXPECT_EQ(session->drawCount(), 2);
    EXPECT_EQ(session->stats().front.total, 10);
    EXPECT_EQ(session->stats().front.omission[11], 2);
    EXPECT_EQ(session->stats().front.omission[1], 0);
    EXPECT_DOUBLE_EQ(session->historyDb().scalar("SELECT gailv FROM Gailv WHERE Number=1").toDouble(), 20.0);
    EXPECT_EQ(session->historyDb().scalar("SELECT Glnum FROM Gailv WHERE Number=11").toInt(), 0);
    EXPECT_TRUE(sameStats(session->stats().both, both));
    EXPECT_EQ(session->historyDb().scalar("SELECT Glnum FROM GailvQuan WHERE Number=11").toInt(), 1);
    EXPECT_EQ(readLines(history_actions::historyTextPath(*session)).size(), 2);
}

TEST_F(HistoryEntryTest, ClearEmptiesFigOnly) {
    ASSERT_TRUE(importLines({"2007001 01 02 03 04 05 01 02", "2007002 01 07 08 09 10 03 04"}).done());
    const StatsViews stats = session->stats();
    prompter.answer(false);
    EXPECT_EQ(history_actions::clearList(*session, prompter).outcome, Outcome::Cancelled);
    EXPECT_EQ(count("fig"), 2);
    const HistoryActionResult r = history_actions::clearList(*session, prompter);
    ASSERT_TRUE(r.done());
    EXPECT_EQ(r.grid, GridAction::Clear);
    EXPECT_EQ(prompter.asked().last().title, history_texts::kClearTitle);
    EXPECT_EQ(prompter.asked().last().text, history_texts::kClearText);
    EXPECT_EQ(session->drawCount(), 0);
    EXPECT_EQ(count("fig"), 0);
    EXPECT_EQ(count("Ylqs"), 0);
    EXPECT_EQ(count("fighou"), 2);
    EXPECT_EQ(count("YlqsQuan"), 2);
    EXPECT_TRUE(sameViews(session->stats(), stats));
}

TEST_F(HistoryEntryTest, EditTextOpensTheFiveStarFile) {
    const QString path = history_actions::editTextPath(*session);
    EXPECT_TRUE(path.endsWith(QStringLiteral("五星历史号码/张三 五星号码.TXT")));
    ASSERT_TRUE(importLines({"2007001 01 02 03 04 05 01 02"}).done());
    const QStringList before = dump();
    // Missing: the question after the notice; the writer then has nothing to write.
    HistoryActionResult r = history_actions::editText(*session, prompter);
    EXPECT_FALSE(r.done());
    ASSERT_EQ(prompter.asked().size(), 2);
    EXPECT_EQ(prompter.asked()[0].title, history_texts::kEditTitle);
    EXPECT_TRUE(prompter.asked()[0].text.contains(QStringLiteral("张三 五星号码.TXT")));
    EXPECT_EQ(prompter.asked()[1].title, history_texts::kEditMissingTitle);
    EXPECT_EQ(dump(), before);
    // The history text the program writes has the other name; a file of this name is opened.
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    r = history_actions::editText(*session, prompter);
    EXPECT_TRUE(r.done());
    EXPECT_EQ(r.path, path);
}
