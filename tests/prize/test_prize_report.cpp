// The report file of a check, and frmYk's list over the reports.
#include "prize/prize_report.h"
#include "prize/prize_view.h"
#include "prize/report_book.h"
#include "prize_fixtures.h"
#include "support/temp_home.h"
#include "workspace/scripted_prompter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace prize_fixtures;
using Kind = schema::CandidateKind;

namespace {
const CheckDraw kDraw = draw(2026050, {3, 7, 12, 20, 28, 4, 9});
const QDateTime kWhen(QDate(2026, 3, 5), QTime(14, 7, 9));

QStringList ticketLines(const QStringList& lines) {
    const qsizetype at = lines.indexOf(QStringLiteral("个人购买情况如下:"));
    return at < 0 ? QStringList{} : lines.mid(at + 1);
}

void writeFile(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(text);
}
}  // namespace

TEST(PrizeReport, NameAndHeaderLinesOfACheck) {
    EXPECT_EQ(prize_report::fileName(kWhen), QStringLiteral("26-3-5日14.7.9秒兑奖.txt"));
    EXPECT_EQ(prize_report::fileName(QDateTime(QDate(2026, 11, 25), QTime(0, 0, 0))),
              QStringLiteral("26-11-25日0.0.0秒兑奖.txt"));
    auto t = table({{3, 7, 12, 20, 28, 4, 9}, {1, 2, 5, 6, 8, 1, 2}, {3, 7, 12, 20, 29, 4, 10}});
    PrizeView v(Kind::Wheel, std::move(t), kDraw, PrizeRules::defaults());
    const QStringList lines = prize_report::lines(v, kWhen);
    ASSERT_GE(lines.size(), 18);
    EXPECT_EQ(lines[0], QStringLiteral("兑奖日期:2026-03-05"));
    EXPECT_EQ(lines[1], QStringLiteral("兑奖时间:14:07:09"));
    EXPECT_EQ(lines[2], QStringLiteral("组号方式:旋转矩阵组合缩水"));
    EXPECT_EQ(lines[3], QStringLiteral("开奖期数:2026050"));
    // The " + " stands before the seventh number, one place late.
    EXPECT_EQ(lines[4], QStringLiteral("开奖结果3 7 12 20 28 4  +  9"));
    EXPECT_EQ(lines[5], QStringLiteral("中出1等奖1注"));
    EXPECT_EQ(lines[9], QStringLiteral("中出5等奖1注"));
    EXPECT_EQ(lines[13], QStringLiteral("购买3注"));
    EXPECT_EQ(lines[14], QStringLiteral("支出6圆"));
    EXPECT_EQ(lines[15], QStringLiteral("收入5000500圆"));
    EXPECT_EQ(lines[16], QStringLiteral("盈亏5000494圆"));
    // Three tickets: two on a line, the odd one alone on the last.
    EXPECT_EQ(ticketLines(lines),
              (QStringList{QStringLiteral("    03 07 12 20 28 04 09         01 02 05 06 08 01 02     "),
                           QStringLiteral("    03 07 12 20 29 04 10     ")}));
}

TEST(PrizeReport, CountsAreReadBySlotAndSlideUnderTheDefaultRules) {
    // One ticket in each of 6等奖 (3+2), 7等奖 (3+1) and 8等奖 (3+0, twice).
    auto t = table({{3, 7, 12, 30, 31, 4, 9},
                    {3, 7, 12, 30, 31, 4, 1},
                    {3, 7, 12, 30, 31, 1, 2},
                    {3, 7, 12, 30, 32, 1, 2}});
    PrizeView v(Kind::Combinations, std::move(t), kDraw, PrizeRules::defaults());
    EXPECT_EQ(v.summaryCell(6, 1), QStringLiteral("1"));
    EXPECT_EQ(v.summaryCell(7, 1), QStringLiteral("1"));
    EXPECT_EQ(v.summaryCell(8, 1), QStringLiteral("2"));
    const QStringList lines = prize_report::lines(v, kWhen);
    const QStringList levels = lines.mid(5, 8);
    EXPECT_EQ(levels, (QStringList{"中出1等奖0注", "中出2等奖0注", "中出3等奖0注", "中出4等奖0注",
                                   "中出5等奖0注", "中出6等奖1注",
                                   // slot 8 reads row 8, the count of 8等奖; slot 10 reads an unused row
                                   "中出7等奖2注", "中出8等奖0注"}));
}

TEST(PrizeReport, ACheckWithNoKeptTicketsHasNoTicketLine) {
    auto t = table({{3, 7, 12, 20, 28, 4, 9}});
    throwOut(*t, 0, QStringLiteral("手工删除"));
    PrizeView v(Kind::Combinations, std::move(t), kDraw, PrizeRules::defaults());
    const QStringList lines = prize_report::lines(v, kWhen);
    EXPECT_TRUE(lines.contains(QStringLiteral("购买0注")));
    EXPECT_TRUE(lines.contains(QStringLiteral("盈亏0圆")));
    EXPECT_EQ(lines.last(), QStringLiteral("个人购买情况如下:"));
}

TEST(PrizeReport, ListsTheRecordsetOpenedLast) {
    std::vector<Ticket> rows(30, Ticket{1, 2, 5, 6, 8, 1, 2});
    rows[0] = {3, 7, 12, 20, 28, 4, 9};
    auto t = table(rows);
    for (uint64_t r = 1; r < 30; ++r) throwOut(*t, r, QStringLiteral("x"));
    PrizeView v(Kind::Combinations, std::move(t), kDraw, PrizeRules::defaults());
    EXPECT_EQ(ticketLines(prize_report::lines(v, kWhen)).size(), 1);
    v.pageThrown(QStringLiteral("1"));
    EXPECT_EQ(ticketLines(prize_report::lines(v, kWhen)).size(), 15);  // 29 thrown tickets
    v.sortByHits();
    EXPECT_EQ(ticketLines(prize_report::lines(v, kWhen)),
              QStringList{QStringLiteral("    03 07 12 20 28 04 09     ")});
}

TEST(PrizeReport, WritesIntoDuijiangAndOverwritesWithinOneSecond) {
    QTemporaryDir ws;
    PrizeView v(Kind::Imported, table({{3, 7, 12, 20, 28, 4, 9}}), kDraw, PrizeRules::defaults());
    const prize_report::WriteResult r = prize_report::write(ws.path(), v, kWhen);
    ASSERT_TRUE(r.ok) << r.error.toStdString();
    EXPECT_EQ(r.path, QDir(ws.path()).filePath(QStringLiteral("duijiang/26-3-5日14.7.9秒兑奖.txt")));
    ASSERT_TRUE(prize_report::write(ws.path(), v, kWhen).ok);
    QFile f(r.path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QStringList read = QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'));
    EXPECT_EQ(read[2], QStringLiteral("组号方式:调用文本组合缩水"));
    EXPECT_EQ(read.mid(0, read.size() - 1), prize_report::lines(v, kWhen));
    EXPECT_EQ(QDir(ws.filePath(QStringLiteral("duijiang"))).entryList(QDir::Files).size(), 1);
}

namespace {
struct Book {
    TempHome home;
    QString folder = home.dir.filePath(QStringLiteral("甲"));
    QString reports = QDir(folder).filePath(QStringLiteral("duijiang"));
    ScriptedPrompter prompter;

    void report(const QString& name, const QString& date, const QString& time) {
        writeFile(QDir(reports).filePath(name), (date + "\n" + time + "\n正文\n").toUtf8());
    }
    ReportBook open() {
        ReportBook b(folder, home.settings, QStringLiteral("甲"));
        b.load();
        return b;
    }
};
}  // namespace

TEST(ReportBook, AHandWrittenReportIsListedAndTheLastFileIsShown) {
    Book b;
    b.report(QStringLiteral("a兑奖.txt"), QStringLiteral("手写"), QStringLiteral("两行"));
    b.report(QStringLiteral("b兑奖.txt"), QStringLiteral("兑奖日期:2026-03-05"),
             QStringLiteral("兑奖时间:14:07:09"));
    writeFile(QDir(b.reports).filePath(QStringLiteral("other.txt")), "not a report\n");
    ReportBook book = b.open();
    ASSERT_EQ(book.items().size(), 2);
    EXPECT_EQ(book.items()[0].text, QStringLiteral("手写     两行"));
    EXPECT_EQ(book.items()[1].text, QStringLiteral("兑奖日期:2026-03-05     兑奖时间:14:07:09"));
    EXPECT_TRUE(book.shownText().startsWith(QStringLiteral("兑奖日期:2026-03-05\n")));
    EXPECT_EQ(book.currentIndex(), 0);

    ReportBook none(QDir(b.home.dir.path()).filePath(QStringLiteral("乙")), b.home.settings,
                    QStringLiteral("乙"));
    none.load();
    EXPECT_TRUE(none.items().isEmpty());
    EXPECT_TRUE(none.shownText().isEmpty());
}

TEST(ReportBook, PreviousRightAfterOpeningDoesNothingAndNextRunsOnePastTheEnd) {
    Book b;
    b.report(QStringLiteral("a兑奖.txt"), QStringLiteral("A"), QStringLiteral("1"));
    b.report(QStringLiteral("b兑奖.txt"), QStringLiteral("B"), QStringLiteral("2"));
    ReportBook book = b.open();
    const QString shown = book.shownText();
    book.previous();
    EXPECT_EQ(book.currentIndex(), 0);
    EXPECT_EQ(book.shownText(), shown);
    book.next();
    EXPECT_EQ(book.currentIndex(), 1);
    EXPECT_TRUE(book.shownText().startsWith(QStringLiteral("B\n")));
    book.next();  // index 2: no file there, the text stays
    EXPECT_EQ(book.currentIndex(), 2);
    EXPECT_TRUE(book.pathAt(2).isEmpty());
    book.next();
    EXPECT_EQ(book.currentIndex(), 2);
    book.previous();
    book.previous();
    EXPECT_TRUE(book.shownText().startsWith(QStringLiteral("A\n")));
}

TEST(ReportBook, DeletingTickedReadsTheListAnewWithTheIndexRunningOn) {
    Book b;
    for (const char* n : {"a", "b", "c"})
        b.report(QString::fromLatin1(n) + QStringLiteral("兑奖.txt"), QString::fromLatin1(n).toUpper(),
                 QStringLiteral("t"));
    ReportBook book = b.open();
    b.prompter.answer(false);
    EXPECT_FALSE(book.deleteTicked(b.prompter, {0}));
    EXPECT_EQ(book.items().size(), 3);
    b.prompter.answer(true);
    EXPECT_TRUE(book.deleteTicked(b.prompter, {0}));
    EXPECT_EQ(b.prompter.asked().last().title, QStringLiteral("删除清空"));
    EXPECT_FALSE(QFile::exists(QDir(b.reports).filePath(QStringLiteral("a兑奖.txt"))));
    ASSERT_EQ(book.items().size(), 2);
    EXPECT_EQ(book.count(), 5);
    EXPECT_TRUE(book.pathAt(3).endsWith(QStringLiteral("b兑奖.txt")));
    // The item "B" at position 0 now looks up entry 0, the deleted A: the text stays.
    const QString shown = book.shownText();
    book.tickChanged(0);
    EXPECT_EQ(book.shownText(), shown);
    // Item "C" at position 1 looks up entry 1, the older B.
    book.tickChanged(1);
    EXPECT_TRUE(book.shownText().startsWith(QStringLiteral("B\n")));
    // Deleting item "C" removes C, the file it was listed for.
    b.prompter.answer(true);
    book.deleteTicked(b.prompter, {1});
    EXPECT_TRUE(QFile::exists(QDir(b.reports).filePath(QStringLiteral("b兑奖.txt"))));
    EXPECT_FALSE(QFile::exists(QDir(b.reports).filePath(QStringLiteral("c兑奖.txt"))));
}

TEST(ReportBook, DeleteAllLooksOneFolderTooHigh) {
    Book b;
    b.report(QStringLiteral("a兑奖.txt"), QStringLiteral("A"), QStringLiteral("1"));
    writeFile(QDir(b.folder).filePath(QStringLiteral("z兑奖.txt")), "stray\n");
    b.home.settings.write(setting_keys::MoneyDefault, QStringLiteral("500"), QStringLiteral("甲"));
    ReportBook book = b.open();
    b.prompter.answer(true);
    EXPECT_TRUE(book.deleteAll(b.prompter));
    EXPECT_EQ(b.prompter.asked().last().text, ReportBook::kDeleteAllQuestion);
    EXPECT_TRUE(book.items().isEmpty());
    EXPECT_TRUE(book.shownText().isEmpty());
    EXPECT_EQ(b.home.settings.read(setting_keys::MoneyDefault, QStringLiteral("甲")), QStringLiteral("0"));
    EXPECT_FALSE(QFile::exists(QDir(b.folder).filePath(QStringLiteral("z兑奖.txt"))));
    EXPECT_TRUE(QFile::exists(QDir(b.reports).filePath(QStringLiteral("a兑奖.txt"))));
    // They come back at the next opening.
    EXPECT_EQ(b.open().items().size(), 1);
}
