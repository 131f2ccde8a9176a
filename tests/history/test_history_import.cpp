// History text files: the parser, whole and append import, the copies of the chosen file, the
// statistics the writers leave, and the fail-safe of a bad file.
#include "history/history_actions.h"
#include "history/history_import.h"
#include "history/history_text.h"
#include "history/history_texts.h"
#include "history/history_views.h"
#include "history_fixture.h"

#include <QDate>

using Mode = HistoryImport::Mode;
using Outcome = HistoryActionResult::Outcome;
using history_text::ParsedLine;

TEST(HistoryParser, ScansForIssueAndTwoDigitNumbers) {
    ParsedLine p = history_text::parseLine("2004014 03 11 19 24 33 02 09", 0);
    EXPECT_EQ(p.status, ParsedLine::Status::Ok);
    EXPECT_EQ(p.draw, (DrawNumbers{2004014, 3, 11, 19, 24, 33, 2, 9}));
    // Separators are not checked, and a line without an issue continues the previous one.
    p = history_text::parseLine("03,11;19x24-33 02/09", 41);
    EXPECT_EQ(p.draw, (DrawNumbers{42, 3, 11, 19, 24, 33, 2, 9}));
    // Seven numeric characters are an issue wherever they stand.
    p = history_text::parseLine("03 11 19 24 33 02 09 2005001", 0);
    EXPECT_EQ(p.status, ParsedLine::Status::Ok);
    EXPECT_EQ(p.draw[0], 2005001);
}

TEST(HistoryParser, CountsWhatItFinds) {
    EXPECT_EQ(history_text::parseLine("03 11 19 24 33 02", 0).status, ParsedLine::Status::TooFew);
    // A single digit at the very end is not read: "9" alone is no number.
    EXPECT_EQ(history_text::parseLine("03 11 19 24 33 02 9", 0).status, ParsedLine::Status::TooFew);
    EXPECT_EQ(history_text::parseLine("03 11 19 24 33 02 09 10", 0).status, ParsedLine::Status::TooMany);
    // Digits left over from a long issue become a number of their own.
    EXPECT_EQ(history_text::parseLine("9999999999 03 11 19 24 33 02 09", 0).status,
              ParsedLine::Status::TooMany);
    EXPECT_TRUE(history_text::isBlank(" \t "));
    EXPECT_EQ(history_text::leadingValue("2004014 03"), 2004014);
    EXPECT_FALSE(history_text::leadingValue("03 11 19 24").has_value());
}

TEST(HistoryParser, WritetextLines) {
    EXPECT_EQ(history_text::formatLine({2007001, 1, 2, 3, 14, 35, 4, 11}),
              QStringLiteral("2007001 01 02 03 14 35 04 11"));
    // Issues up to 1000000 are left out.
    EXPECT_EQ(history_text::formatLine({12, 1, 2, 3, 14, 35, 4, 11}), QStringLiteral("01 02 03 14 35 04 11"));
}

using HistoryImportTest = HistoryFixture;

TEST_F(HistoryImportTest, WholeImportFillsTheThreeViews) {
    const HistoryActionResult r = importLines(
        {"2007001 22 24 29 31 35 04 11", "", "2007002 15 22 31 34 35 05 12", "2007003 03 04 18 23 32 01 06"});
    ASSERT_TRUE(r.done());
    EXPECT_EQ(r.grid, GridAction::Rebuild);
    EXPECT_EQ(r.rowsAdded, 3);
    EXPECT_EQ(session->drawCount(), 3);
    for (const char* t : {"fig", "fighou", "figquan", "Ylqs", "YlqsHou", "YlqsQuan"})
        EXPECT_EQ(count(t), 3) << t;
    EXPECT_EQ(cell("fig", "fig0", 2).toInt(), 2007002);
    EXPECT_EQ(cell("fighou", "fig2", 3).toInt(), 6);
    EXPECT_EQ(cell("figquan", "fig7", 1).toInt(), 11);
    // The first row is compared with row 0, all zeros; the second shares 22, 31 and 35.
    EXPECT_EQ(cell("fig", "Cnum", 1).toInt(), 0);
    EXPECT_EQ(cell("fig", "Cnum", 2).toInt(), 3);
    EXPECT_EQ(cell("fig", "Qnum3", 2).toInt(), 0);
    EXPECT_EQ(cell("fig", "Qnum2", 2).toInt(), 4);
    // Omissions before the row: 22 was drawn one row earlier.
    EXPECT_EQ(cell("fig", "Zynum", 2).toInt(), 2);
    EXPECT_FLOAT_EQ(cell("fig", "R", 1).toFloat(), session->history().front[1].R);
    EXPECT_EQ(cell("figquan", "Cnum", 2).toInt(), 0);
    // The figquan working row is carried: row 3 (3 4 18 23 32 / 1 6) leaves slot 3 to row 2's value.
    EXPECT_EQ(session->history().both[3].sum, cell("figquan", "Znum", 3).toInt());
    // Percentages over all numbers of the batch.
    EXPECT_EQ(session->stats().front.total, 15);
    EXPECT_EQ(session->stats().back.total, 6);
    EXPECT_EQ(session->stats().both.total, 21);
    EXPECT_DOUBLE_EQ(session->historyDb().scalar("SELECT gailv FROM Gailv WHERE Number=35").toDouble(),
                     2.0 / 15 * 100);
    EXPECT_EQ(session->historyDb().scalar("SELECT Glnum FROM GailvQuan WHERE Number=4").toInt(), 2);
    EXPECT_FALSE(session->trendGridsBuilt);
}

TEST_F(HistoryImportTest, FileWithoutIssueNumbersCountsFromOne) {
    ASSERT_TRUE(importLines({"01 02 03 04 05 01 02", "06 07 08 09 10 03 04", "11 12 13 14 15 05 06"}).done());
    for (int idx = 1; idx <= 3; ++idx) {
        EXPECT_EQ(cell("fig", "fig0", idx).toInt(), idx);
        EXPECT_EQ(session->historyDb().scalar("SELECT qihao FROM Ylqs WHERE rowid=?1", {idx}).toInt(), idx);
    }
    EXPECT_EQ(history_actions::nextIssueText(*session), QStringLiteral("在右输入4 期历史号码:"));
}

TEST_F(HistoryImportTest, OmissionAfterOneDraw) {
    reopen(30, 12);
    ASSERT_TRUE(importLines({"2007001 03 11 19 24 30 02 09"}).done());
    const NumberStats& front = session->stats().front;
    for (int n = 1; n <= 36; ++n) {
        const bool drawn = n == 3 || n == 11 || n == 19 || n == 24 || n == 30;
        // With Bitnum 30 the omissions of 31..36 still grow.
        EXPECT_EQ(front.omission[n], drawn ? 0 : 1) << n;
    }
    EXPECT_EQ(session->stats().back.omission[24], 1);
    EXPECT_EQ(session->stats().back.omission[9], 0);
    EXPECT_EQ(session->historyDb().scalar("SELECT ylqs36 FROM Ylqs").toInt(), 1);
    EXPECT_EQ(session->historyDb().scalar("SELECT ylqs9 FROM YlqsQuan").toInt(), 0);
}

TEST_F(HistoryImportTest, SixNumberLineStopsAndChangesNothing) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11"}).done());
    const QStringList before = dump();
    const StatsViews stats = session->stats();
    const HistoryActionResult r = importLines({"2007001 01 02 03 04 05 06 07", "2007002 01 02 03 04 05 06"});
    EXPECT_EQ(r.outcome, Outcome::Failed);
    // The grid was emptied before the read and stays so; tables and arrays are as they were.
    EXPECT_EQ(r.grid, GridAction::Clear);
    EXPECT_EQ(prompter.messages(), QStringList{history_texts::kSevenNumbersText});
    EXPECT_EQ(prompter.asked().last().title, history_texts::kSevenNumbersTitle);
    EXPECT_EQ(dump(), before);
    EXPECT_TRUE(sameViews(session->stats(), stats));
    EXPECT_EQ(session->drawCount(), 1);
}

TEST_F(HistoryImportTest, NumbersBeyondTheArraysOrAnEighthNumberTrap) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11"}).done());
    const QStringList before = dump();
    for (const char* bad : {"2007002 01 02 03 04 37 06 07", "2007002 01 02 03 04 05 06 25",
                            "2007002 01 02 03 04 05 06 07 08"}) {
        prompter.clear();
        const HistoryActionResult r = importLines({"2007001 01 02 03 04 05 06 07", bad});
        EXPECT_EQ(r.outcome, Outcome::Failed) << bad;
        EXPECT_EQ(prompter.messages(), QStringList{history_texts::trapText(false)}) << bad;
        EXPECT_EQ(prompter.asked().last().title, history_texts::kTrapTitle);
        EXPECT_EQ(prompter.asked().last().icon, Prompter::Icon::Critical);
        EXPECT_EQ(dump(), before) << bad;
    }
    // Within the arrays the file is trusted: 36 in a 35-number game and an unsorted row pass.
    EXPECT_TRUE(importLines({"2007001 36 02 01 04 05 13 24"}).done());
}

TEST_F(HistoryImportTest, EmptyFileEndsInTheTrap) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11"}).done());
    const QStringList before = dump();
    EXPECT_EQ(importLines({"", "  "}).outcome, Outcome::Failed);
    EXPECT_EQ(prompter.messages(), QStringList{history_texts::trapText(false)});
    EXPECT_EQ(dump(), before);
}

TEST_F(HistoryImportTest, AppendSkipsOldIssuesAndWritesFigOnly) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11", "2007002 15 22 31 34 35 05 12"}).done());
    const QStringList hou = dump().filter("fighou:");
    const HistoryActionResult r =
        importLines({"2007001 01 02 03 04 05 06 07", "2007002 01 02 03 04 05 06 07",
                     "2007003 03 04 18 23 32 01 06", "2007004 05 06 07 08 09 01 02"},
                    Mode::Append);
    ASSERT_TRUE(r.done());
    EXPECT_EQ(r.rowsAdded, 2);
    EXPECT_EQ(r.grid, GridAction::None);
    EXPECT_EQ(session->drawCount(), 4);
    EXPECT_EQ(count("fig"), 4);
    EXPECT_EQ(count("Ylqs"), 4);
    // fighou, figquan and their omissions stay behind until the next whole import.
    EXPECT_EQ(count("fighou"), 2);
    EXPECT_EQ(count("figquan"), 2);
    EXPECT_EQ(count("YlqsQuan"), 2);
    EXPECT_EQ(dump().filter("fighou:"), hou);
    EXPECT_EQ(cell("fig", "fig1", 3).toInt(), 3);
    EXPECT_EQ(cell("fig", "Cnum", 3).toInt(), 0);
    EXPECT_EQ(cell("fig", "Cnum", 4).toInt(), 0);
    // The percentages divide the counts of all draws by the numbers of this batch only.
    EXPECT_EQ(session->stats().front.total, 10);
    const double sum = session->historyDb().scalar("SELECT sum(gailv) FROM Gailv").toDouble();
    EXPECT_NEAR(sum, 200.0, 1e-9);
    EXPECT_EQ(session->stats().back.total, 4);
}

TEST_F(HistoryImportTest, AppendOfNothingNewChangesNothing) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11", "2007002 15 22 31 34 35 05 12"}).done());
    const QStringList before = dump();
    const StatsViews stats = session->stats();
    const HistoryActionResult r = importLines({"2007001 22 24 29 31 35 04 11"}, Mode::Append);
    EXPECT_EQ(r.outcome, Outcome::Failed);
    EXPECT_EQ(r.grid, GridAction::None);
    // The append's trap text still speaks of five numbers.
    EXPECT_EQ(prompter.messages(), QStringList{history_texts::trapText(true)});
    EXPECT_TRUE(history_texts::trapText(true).contains(QStringLiteral("共计5个数")));
    EXPECT_EQ(dump(), before);
    EXPECT_TRUE(sameViews(session->stats(), stats));
    // A line whose first seven characters are no number is a fault of the file.
    prompter.clear();
    EXPECT_EQ(importLines({"03 11 19 24 33 02 09"}, Mode::Append).outcome, Outcome::Failed);
    EXPECT_EQ(prompter.messages(), QStringList{history_texts::trapText(true)});
    EXPECT_EQ(dump(), before);
}

TEST_F(HistoryImportTest, CancelledByProgressLeavesEverything) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11"}).done());
    const QStringList before = dump();
    QStringList lines;
    for (int i = 0; i < 600; ++i) lines << QStringLiteral("%1 01 02 03 04 05 06 07").arg(2008001 + i);
    int reports = 0;
    HistoryProgress progress;
    progress.report = [&reports](int, int total) {
        EXPECT_EQ(total, 1800);
        ++reports;
    };
    progress.cancelled = [&reports] { return reports >= 3; };
    const HistoryActionResult r = importLines(lines, Mode::Whole, &progress);
    EXPECT_EQ(r.outcome, Outcome::Cancelled);
    EXPECT_EQ(reports, 3);
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(session->drawCount(), 1);
}

TEST_F(HistoryImportTest, QuestionDialogAndTheWorkspaceCopy) {
    const QString chosen = writeFile(QStringLiteral("lottery.txt"), {"2007001 22 24 29 31 35 04 11"});
    const QString copy = QDir(files.path()).filePath(kUser + QStringLiteral(" 大乐透号码.TXT"));
    HistoryImport import(*session, prompter);
    // Cancel at the question, then at the dialog, then a file that is no .txt: nothing happens.
    prompter.answer(false);
    EXPECT_EQ(import.run(Mode::Whole).outcome, Outcome::Cancelled);
    prompter.answer(true).cancel();
    EXPECT_EQ(import.run(Mode::Whole).outcome, Outcome::Cancelled);
    prompter.answer(true).answer(QDir(files.path()).filePath("lottery.csv"));
    EXPECT_EQ(import.run(Mode::Whole).outcome, Outcome::Cancelled);
    EXPECT_EQ(prompter.asked()[0].text, history_texts::kImportWholeQuestion);
    EXPECT_EQ(prompter.asked()[2].kind, QStringLiteral("openFile"));
    EXPECT_EQ(prompter.asked()[2].text, home.root.historyTextFolder());
    EXPECT_EQ(session->drawCount(), 0);

    prompter.clear();
    prompter.answer(true).answer(chosen);
    ASSERT_TRUE(import.run(Mode::Whole).done());
    EXPECT_TRUE(QFile::exists(copy));
    EXPECT_TRUE(QFile::exists(chosen));
    EXPECT_FALSE(QFile::exists(chosen + QStringLiteral(" By ") + kUser + QStringLiteral(".TXT")));

    // The copy exists now: the next import moves it aside after a question and stops there.
    prompter.clear();
    prompter.answer(true).answer(chosen).answer(true);
    const HistoryActionResult r = import.run(Mode::Append);
    EXPECT_EQ(r.outcome, Outcome::StartAgain);
    EXPECT_EQ(prompter.asked()[0].text, history_texts::kImportAppendQuestion);
    EXPECT_TRUE(prompter.asked()[2].text.startsWith(
        QStringLiteral("读取的历史号码将保存为名为: 张三 大乐透号码.TXT")));
    const QString aside =
        QDir(files.path())
            .filePath(kUser + QLatin1Char(' ') + QDate::currentDate().toString(QStringLiteral("yyyy-M-d")) +
                      QStringLiteral("日前 大乐透号码 .TXT"));
    EXPECT_TRUE(QFile::exists(aside));
    EXPECT_FALSE(QFile::exists(copy));
    // Started again, the import goes through (and finds nothing new).
    prompter.clear();
    prompter.answer(true).answer(chosen);
    EXPECT_EQ(import.run(Mode::Append).outcome, Outcome::Failed);
    EXPECT_TRUE(QFile::exists(copy));
    // A missing file ends in the trap.
    prompter.clear();
    EXPECT_EQ(import.importFile(Mode::Whole, QDir(files.path()).filePath("missing.txt")).outcome,
              Outcome::Failed);
    EXPECT_EQ(prompter.messages(), QStringList{history_texts::trapText(false)});
}

TEST_F(HistoryImportTest, BundledHistoryImportsWhole) {
    const QString bundled =
        QDir(home.root.historyTextFolder()).filePath(QStringLiteral("大乐透历史开奖号码.txt"));
    ASSERT_TRUE(QFile::exists(bundled));
    prompter.answer(true).answer(bundled);
    const HistoryActionResult r = HistoryImport(*session, prompter).run(Mode::Whole);
    ASSERT_TRUE(r.done());
    EXPECT_EQ(r.rowsAdded, 2933);
    EXPECT_EQ(session->drawCount(), 2933);
    EXPECT_EQ(session->history().lastIssue(), 2026115);
    EXPECT_EQ(history_actions::nextIssueText(*session), QStringLiteral("在右输入2026116 期历史号码:"));
    for (const char* t : {"fig", "fighou", "figquan", "Ylqs", "YlqsHou", "YlqsQuan"})
        EXPECT_EQ(count(t), 2933) << t;
    EXPECT_EQ(cell("fig", "fig0", 2933).toInt(), 2026115);
    EXPECT_EQ(cell("fighou", "fig1", 2933).toInt(), 6);
    EXPECT_NEAR(session->historyDb().scalar("SELECT sum(gailv) FROM Gailv").toDouble(), 100.0, 1e-9);
    EXPECT_NEAR(session->historyDb().scalar("SELECT sum(gailv) FROM GailvHou").toDouble(), 100.0, 1e-9);
    EXPECT_EQ(session->historyDb().scalar("SELECT sum(Glnum) FROM GailvQuan").toInt(), 2933 * 7);

    // A restart reads the same arrays back.
    DrawHistory history = session->history();
    const StatsViews stats = session->stats();
    reopen();
    EXPECT_EQ(session->history().numbers, history.numbers);
    for (HistoryView v : kAllViews)
        for (int row = 1; row <= 2933; row += 97) {
            const DrawParams& a = paramsOf(history, v)[row];
            const DrawParams& b = paramsOf(session->history(), v)[row];
            EXPECT_EQ(a.sum, b.sum);
            EXPECT_EQ(a.complexity, b.complexity);
            EXPECT_EQ(a.decadeCounts, b.decadeCounts);
            EXPECT_EQ(a.R, b.R);
            EXPECT_EQ(a.a, b.a);
            EXPECT_EQ(a.centreOffsets, b.centreOffsets);
        }
    for (HistoryView v : kAllViews) {
        const NumberStats& a = statsOf(stats, v);
        const NumberStats& b = statsOf(session->stats(), v);
        for (int n = 1; n <= 35; ++n) {
            if (v != HistoryView::Back || n <= 24) {
                EXPECT_EQ(a.omission[n], b.omission[n]);
            }
            EXPECT_EQ(a.frequency[n], b.frequency[n]);
            EXPECT_DOUBLE_EQ(a.percent[n], b.percent[n]);
        }
        EXPECT_EQ(a.total, b.total);
    }
}
