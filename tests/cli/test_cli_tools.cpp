#include "cli/cli_fixture.h"
#include "support/pdf_text.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

using CliFortune = CliTest;

TEST_F(CliFortune, ReadsTheDayAndItsCurves) {
    EXPECT_EQ(one({"fortune", "--birth", "1970-01-01", "--date", "1970-01-01", "--type", "1"}),
              QStringLiteral("fortune\t200.000\npopularity\t200000\nword\t一般"));
    // A year ahead of the date, one row a day; the birthday's row has every curve at 50.
    const QStringList rows =
        one({"fortune", "--birth", "2000-02-29", "--date", "2000-02-29", "--curves"}).split('\n');
    ASSERT_EQ(rows.size(), 362);
    EXPECT_EQ(rows[0], QStringLiteral("day\tdate\tc23\tc28\tc33\ttotal"));
    EXPECT_EQ(rows[1], QStringLiteral("0\t2000-02-29\t50\t50\t50\t200"));
    EXPECT_TRUE(rows[361].startsWith(QStringLiteral("360\t2001-02-23\t"))) << rows[361].toStdString();
    EXPECT_TRUE(rows[8].startsWith(QStringLiteral("7\t2000-03-07\t"))) << rows[8].toStdString();
    EXPECT_EQ(rows[8].split('\t')[3], QStringLiteral("0")) << "the 28-day curve's high point";
}

TEST_F(CliFortune, RefusesWhatIsNoDateOrBeforeTheBirthday) {
    const CliRun before = cli.run({"fortune", "--birth", "1990-05-01", "--date", "1990-04-30"});
    EXPECT_EQ(before.exitCode, 1);
    EXPECT_TRUE(before.err.contains(QStringLiteral("输入时间必须比您的生日大,请重新输入")));
    for (const QStringList& args : {QStringList{"fortune"}, QStringList{"fortune", "--birth", "1990-02-30"},
                                    QStringList{"fortune", "--birth", "1990-01-01", "--date", "tomorrow"},
                                    QStringList{"fortune", "--birth", "1990-01-01", "--type", "5"}}) {
        const CliRun r = cli.run(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains(QStringLiteral("usage: shuangqu-cli fortune"))) << r.err.toStdString();
    }
}

using CliPrint = CliTest;

// The kept tickets of the table, the workspace's tickets to the line or the given number, for
// the draw after the newest; the file is replaced whole.
TEST_F(CliPrint, WritesTheKeptTicketsForTheNextDraw) {
    one({"workspace", "create", "w"});
    one({"history", "add", "1", "2", "3", "4", "5", "6", "7"});
    EXPECT_EQ(one({"expand", "--front", "1,2,3,4,5,6", "--back", "1,2"}), QStringLiteral("6"));
    EXPECT_EQ(one({"candidates", "toggle", "2"}), QStringLiteral("5"));
    const QString path = QDir(cli.home()).filePath(QStringLiteral("out.txt"));
    EXPECT_EQ(one({"print", "tickets", "--text", path}), QStringLiteral("5"));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(f.readAll()).split('\n');
    f.close();
    ASSERT_EQ(lines.size(), 5) << "the issue, two lines of tickets, the time, and the end of the last line";
    EXPECT_EQ(lines[0], QStringLiteral("购买期数:2"));
    EXPECT_EQ(lines[1], QStringLiteral("<1>01 02 03 04 05    <2>01 02 03 05 06    <3>01 02 04 05 06    "
                                       "<4>01 03 04 05 06    "))
        << "four to the line by default, the second ticket of the table filtered out";
    EXPECT_EQ(lines[2], QStringLiteral("<5>02 03 04 05 06    "));
    EXPECT_TRUE(lines[3].startsWith(QStringLiteral("打印时间:")));

    EXPECT_EQ(one({"print", "tickets", "--text", path, "--per-line", "5"}), QStringLiteral("5"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(f.readAll()).split('\n').size(), 4);
    for (const QStringList& bad : {QStringList{"print", "tickets"},
                                   QStringList{"print", "tickets", "--text", path, "--pdf", path + ".pdf"},
                                   QStringList{"print", "tickets", "--text", path, "--per-line", "0"}})
        EXPECT_EQ(cli.run(bad).exitCode, 2) << bad.join(' ').toStdString();
    const CliRun noFolder = cli.run({"print", "tickets", "--text", QDir(cli.home()).filePath("no/such/file.txt")});
    EXPECT_EQ(noFolder.exitCode, 1);
    EXPECT_TRUE(noFolder.err.contains(QStringLiteral("no/such/file.txt"))) << noFolder.err.toStdString();
}

// The same list on A4 pages: the heading and every kept ticket in order in the PDF's text.
TEST_F(CliPrint, WritesThePdf) {
    one({"workspace", "create", "w"});
    one({"history", "add", "1", "2", "3", "4", "5", "6", "7"});
    EXPECT_EQ(one({"expand", "--front", "1,2,3,4,5,6,7,8", "--back", "1,2"}), QStringLiteral("56"));
    const QString path = QDir(cli.home()).filePath(QStringLiteral("tickets.pdf"));
    EXPECT_EQ(one({"print", "tickets", "--pdf", path, "--per-line", "3"}), QStringLiteral("56"));
    const QString text = pdf_text::read(path);
    if (text.isNull()) GTEST_SKIP() << "pdftotext is not installed";
    const QString flat = QString(text).replace(QRegularExpression(QStringLiteral("\\s+")), QStringLiteral(" "));
    EXPECT_TRUE(flat.contains(QStringLiteral("打印时间:"))) << flat.left(300).toStdString();
    EXPECT_TRUE(flat.contains(QStringLiteral("购买期数:2")));
    qsizetype at = flat.indexOf(QStringLiteral("购买期数:2"));
    for (int i = 1; i <= 56; ++i) {
        at = flat.indexOf(QStringLiteral("<%1>").arg(i), at);
        ASSERT_GE(at, 0) << i;
    }
    EXPECT_TRUE(flat.contains(QStringLiteral("<56>04 05 06 07 08")));
}
