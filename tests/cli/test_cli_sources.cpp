#include "cli/cli_fixture.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

class CliSources : public CliTest {
protected:
    void SetUp() override { ASSERT_EQ(one({"workspace", "create", "w1"}), QStringLiteral("1")); }

    QString write(const char* name, const QByteArray& bytes) {
        const QString path = dir.filePath(QString::fromLatin1(name));
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        return path;
    }
    QStringList rows(const char* table) {
        return one({"candidates", "show", "--table", table}).split('\n').mid(1);
    }
    // idx and the seven numbers of a shown row.
    static QString ticket(const QString& row) { return row.split('\t').mid(0, 8).join(' '); }

    QTemporaryDir dir;
};

}  // namespace

// The serial number "1:" is no number, "123" gives 23, short lines and lines of eight numbers
// are dropped; a file without a ticket, or no text at all, leaves zuheRead as it was.
TEST_F(CliSources, ReadsTicketsFromTextAndKeepsTheTableWhenNothingQualifies) {
    const QString good = write("good.txt",
                               "1: 01 02 03 04 05 06 07\n"
                               "123 04 05 06 07 08 09\r\n"
                               "01 02 03\n"
                               "10: 01 02 03 04 05 06 07\n"
                               "\xb5\xda\x32\xc6\xda\xa3\xba 11 12 13 14 15 06 10\n");  // GBK "第2期："
    EXPECT_EQ(one({"read-text", good}), QStringLiteral("3"));
    const QStringList shown = rows("zuheRead");
    ASSERT_EQ(shown.size(), 3);
    EXPECT_EQ(ticket(shown[0]), QStringLiteral("1 1 2 3 4 5 6 7"));
    EXPECT_EQ(ticket(shown[1]), QStringLiteral("2 23 4 5 6 7 8 9"));
    EXPECT_EQ(ticket(shown[2]), QStringLiteral("3 11 12 13 14 15 6 10"));

    // From column 4 the serial numbers are skipped: "10:" now gives a ticket, "123 04" does not.
    EXPECT_EQ(one({"read-text", good, "--start", "4"}), QStringLiteral("3"));
    EXPECT_EQ(ticket(rows("zuheRead")[1]), QStringLiteral("2 1 2 3 4 5 6 7"));

    const CliRun none = cli.run({"read-text", write("none.txt", "01 02 03\nhello\n")});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_TRUE(none.err.contains(QStringLiteral("zuheRead is as it was"))) << none.err.toStdString();
    const CliRun binary = cli.run({"read-text", write("b.bin", QByteArray("01 02 03 04 05 06 07\n\0", 22))});
    EXPECT_EQ(binary.exitCode, 1);
    const CliRun outside = cli.run({"read-text", write("o.txt", "36 01 02 03 04 05 06\n")});
    EXPECT_EQ(outside.exitCode, 1);
    EXPECT_TRUE(outside.err.contains(QStringLiteral("outside the zones"))) << outside.err.toStdString();
    EXPECT_EQ(one({"candidates", "count", "--table", "zuheRead"}), QStringLiteral("3"));
    EXPECT_EQ(cli.run({"read-text", dir.filePath(QStringLiteral("missing.txt"))}).exitCode, 1);
    EXPECT_EQ(cli.run({"read-text", good, "--start", "0"}).exitCode, 1);
}

// The template gathers the live tickets of each add without duplicates, in the order of their
// numbers, numbered anew; an add of nothing only renumbers.
TEST_F(CliSources, TheTemplateGathersTicketsWithoutDuplicates) {
    EXPECT_EQ(cli.run({"template", "count"}).exitCode, 1);  // not made yet
    EXPECT_EQ(cli.run({"template", "add", "--table", "zuheRead"}).exitCode, 1);
    EXPECT_EQ(one({"template", "clear"}), QStringLiteral("0"));
    EXPECT_EQ(one({"template", "count"}), QStringLiteral("0"));

    one({"read-text", write("a.txt", "05 06 07 08 09 01 02\n01 02 03 04 05 06 07\n")});
    EXPECT_EQ(one({"template", "add", "--table", "zuheRead"}), QStringLiteral("2"));
    one({"read-text", write("b.txt", "01 02 03 04 05 06 07\n02 03 04 05 06 01 02\n")});
    EXPECT_EQ(one({"template", "add", "--table", "zuheRead"}), QStringLiteral("3"));
    QStringList shown = rows("zuheMoban");
    ASSERT_EQ(shown.size(), 3);
    EXPECT_EQ(ticket(shown[0]), QStringLiteral("1 1 2 3 4 5 6 7"));
    EXPECT_EQ(ticket(shown[1]), QStringLiteral("2 2 3 4 5 6 1 2"));
    EXPECT_EQ(ticket(shown[2]), QStringLiteral("3 5 6 7 8 9 1 2"));

    one({"filter", "invert-all", "--table", "zuheRead"});
    EXPECT_EQ(one({"template", "add", "--table", "zuheRead"}), QStringLiteral("3"));
    EXPECT_EQ(one({"template", "count"}), QStringLiteral("3"));
    EXPECT_EQ(one({"template", "clear"}), QStringLiteral("0"));
    EXPECT_EQ(one({"template", "count"}), QStringLiteral("0"));
}

// The six-number window's filters on zuhef: a parameter by its English name, the undo and
// invert buttons of that window, the history filter with its input check.
TEST_F(CliSources, SixNumberFiltersWorkOnZuhef) {
    EXPECT_EQ(cli.run({"six", "reset-all"}).exitCode, 1);  // no zuhef yet
    EXPECT_EQ(one({"expand", "--six", "--front", "1,2,3,4,5,6,7,8", "--back", "1,2"}), QStringLiteral("28"));
    // A row leaves out two of 1..8, a and b, and sums 36 - a - b: 25..27 keeps a + b in 9..11,
    // ten pairs. Of those only the row without 1 (and 8) starts at 2.
    EXPECT_EQ(one({"six", "param", "sum", "--keep", "--range", "25", "27"}), QStringLiteral("10"));
    EXPECT_EQ(one({"six", "param", "position-1", "--exclude", "--range", "2", "9"}), QStringLiteral("9"));
    EXPECT_EQ(one({"six", "reset-last"}), QStringLiteral("10"));
    EXPECT_EQ(one({"six", "invert-all"}), QStringLiteral("18"));
    EXPECT_EQ(one({"six", "invert-all"}), QStringLiteral("10"));
    EXPECT_EQ(one({"six", "reset-all"}), QStringLiteral("28"));
    // One draw 1 2 3 20 30: five of its numbers are never in a row, three are in the rows that
    // leave out two of 4..8.
    one({"history", "add", "01", "02", "03", "20", "30", "01", "02"});
    EXPECT_EQ(one({"six", "history", "5"}), QStringLiteral("28"));
    const int afterHistory = one({"six", "history", "3", "--draws", "1"}).toInt();
    EXPECT_EQ(afterHistory, 18);
    EXPECT_EQ(cli.run({"six", "history", "6"}).exitCode, 2);
    const CliRun zero = cli.run({"six", "history", "3", "--draws", "0"});
    EXPECT_EQ(zero.exitCode, 1);
    EXPECT_TRUE(zero.err.contains(QStringLiteral("请输入一个正数"))) << zero.err.toStdString();
    const CliRun unknown = cli.run({"six", "param", "fig7", "--keep", "--range", "1", "2"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.contains(QStringLiteral("position-6"))) << unknown.err.toStdString();
    EXPECT_EQ(one({"candidates", "count", "--table", "zuhef"}).toInt(), afterHistory);
}

// The filter commands on --table zuhef run the six-number window's filters: its parameters by
// their English names, its integrated filter that never revives a row dead before, its undo
// buttons, its relation filter; what that window lacks is refused. Settings round-trip.
TEST_F(CliSources, FilterCommandsRunTheSixNumberWindowOnZuhef) {
    EXPECT_EQ(one({"expand", "--six", "--front", "1,2,3,4,5,6,7,8", "--back", "1,2"}), QStringLiteral("28"));
    EXPECT_EQ(one({"filter", "param", "sum", "--keep", "--range", "25", "27", "--table", "zuhef"}), QStringLiteral("10"));
    // 上次反选 of this window turns the rows live before the last filter and leaves preunslt.
    EXPECT_EQ(one({"filter", "invert-last", "--table", "zuhef"}), QStringLiteral("18"));
    EXPECT_EQ(one({"filter", "invert-last", "--table", "zuhef"}), QStringLiteral("10"));
    EXPECT_EQ(one({"filter", "reset-all", "--table", "zuhef"}), QStringLiteral("28"));

    // 逻辑和: the sum in 25..27 and 1 first, nine rows. 逻辑或 under 保留 from all rows live: the
    // 21 rows holding 1 and the row without 1 and 8.
    const QStringList both{"--params", "sum,position-1", "--range", "sum", "25", "27", "--range", "position-1", "1", "1",
                           "--table", "zuhef"};
    EXPECT_EQ(one(QStringList{"filter", "integrated", "--keep"} + both), QStringLiteral("9"));
    EXPECT_EQ(one({"filter", "reset-all", "--table", "zuhef"}), QStringLiteral("28"));
    EXPECT_EQ(one(QStringList{"filter", "integrated", "--keep", "--or"} + both), QStringLiteral("22"));
    // Again from those 22: the flip turns only them, so the six dead rows stay dead.
    EXPECT_EQ(one(QStringList{"filter", "integrated", "--keep", "--or"} + both), QStringLiteral("22"));

    // 保留号过滤 with 7 and 8 keeps the rows holding both: those leaving out two of 1..6.
    EXPECT_EQ(one({"filter", "reset-all", "--table", "zuhef"}), QStringLiteral("28"));
    EXPECT_EQ(one({"filter", "relation", "keep", "7", "8", "--table", "zuhef"}), QStringLiteral("15"));
    // A double click deletes a live row by hand (28 is 3..8) and a second one brings it back; on
    // a dead row (1 is 1..6) it revives the row whatever killed it.
    EXPECT_EQ(one({"candidates", "toggle", "28", "--table", "zuhef"}), QStringLiteral("14"));
    EXPECT_EQ(one({"candidates", "toggle", "28", "--table", "zuhef"}), QStringLiteral("15"));
    EXPECT_EQ(one({"candidates", "toggle", "1", "--table", "zuhef"}), QStringLiteral("16"));
    EXPECT_EQ(cli.run({"candidates", "toggle", "99", "--table", "zuhef"}).exitCode, 1);

    const auto refused = [this](const QStringList& args, const char* says) {
        const CliRun r = cli.run(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains(QString::fromUtf8(says))) << r.err.toStdString();
    };
    refused({"filter", "param", "Znum", "--keep", "--range", "1", "2", "--table", "zuhef"}, "position-6");
    refused({"filter", "param", "sum", "--keep", "--range", "1", "2"}, "--table zuhef");
    refused({"filter", "integrated", "--keep", "--params", "sum", "--tolerance", "1", "--table", "zuhef"}, "--tolerance");
    refused({"filter", "history", "--same", "3", "--table", "zuhef"}, "six history");
    refused({"template", "add", "--table", "zuhef"}, "zuhef");

    EXPECT_EQ(cli.run({"six", "save-setting", "窄范围", "--range", "sum", "25", "27", "--range", "position-6", "8", "8"})
                  .exitCode,
              0);
    const QStringList loaded = one({"six", "load-setting", "窄范围"}).split('\n');
    EXPECT_TRUE(loaded.contains(QStringLiteral("sum\t25\t27"))) << loaded.join('|').toStdString();
    EXPECT_TRUE(loaded.contains(QStringLiteral("position-6\t8\t8"))) << loaded.join('|').toStdString();
    EXPECT_TRUE(loaded.contains(QStringLiteral("even\t0\t9"))) << loaded.join('|').toStdString();
    EXPECT_EQ(cli.run({"six", "load-setting", "没有"}).exitCode, 1);
}
