// The parameter filters through shuangqu-cli: each call reopens the stored table, acts and
// writes it back, so a sequence of calls behaves as a sequence of clicks.
#include "support/cli_runner.h"
#include "support/ticket_reference.h"
#include "support/xlsx_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <vector>

namespace {

using ticket_reference::Ticket;
using ticket_reference::evens;
using ticket_reference::frontSum;

// The tickets of --front 1..8 --back 1..3 in the expansion's order (idx = position + 1).
const std::vector<Ticket>& tickets() {
    static const std::vector<Ticket> all = ticket_reference::expand({1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3});
    return all;
}

// A count as the CLI prints it.
QString line(int n) { return QString::number(n) + QLatin1Char('\n'); }

QString count(const std::function<bool(const Ticket&)>& live) { return line(ticket_reference::count(tickets(), live)); }

TEST(CliParamFilter, FiltersTogglesExportsAsASequenceOfClicks) {
    CliRunner cli;
    ASSERT_EQ(cli.run({"workspace", "create", "w"}).exitCode, 0);
    ASSERT_EQ(cli.run({"expand", "--front", "1,2,3,4,5,6,7,8", "--back", "1,2,3"}).out, QStringLiteral("168\n"));

    const auto twoOrThree = [](const Ticket& t) { return evens(t) >= 2 && evens(t) <= 3; };
    CliRun keep = cli.run({"filter", "param", "Onum", "--keep", "--range", "2", "3"});
    ASSERT_EQ(keep.exitCode, 0) << qPrintable(keep.err);
    EXPECT_EQ(keep.out, count(twoOrThree));
    // The undo of the engine's own command sees the filter's preunslt.
    EXPECT_EQ(cli.run({"filter", "reset-last"}).out, QStringLiteral("168\n"));
    EXPECT_EQ(cli.run({"filter", "param", "Onum", "--keep", "--range", "2", "3"}).out, count(twoOrThree));

    // Double click twice on idx 1 (1 2 3 4 5 + 1 2, two evens, so live): dead, then back.
    const Ticket& first = tickets().front();
    ASSERT_EQ(first, (Ticket{1, 2, 3, 4, 5, 1, 2}));
    ASSERT_TRUE(twoOrThree(first));
    EXPECT_EQ(cli.run({"candidates", "toggle", "1"}).out, line(ticket_reference::count(tickets(), twoOrThree) - 1));
    CliRun shown = cli.run({"candidates", "show", "--all"});
    EXPECT_TRUE(shown.out.contains(QStringLiteral("\n1\t1\t2\t3\t4\t5\t1\t2\t")));
    EXPECT_TRUE(shown.out.contains(QStringLiteral("手工删除")));
    EXPECT_EQ(cli.run({"candidates", "toggle", "1"}).out, count(twoOrThree));

    // The integrated filter, keep and logical and, with each parameter's range.
    CliRun integrated = cli.run({"filter", "integrated", "--params", "Znum,Onum", "--keep", "--and", "--range", "Znum", "15",
                                 "20", "--range", "Onum", "2", "2"});
    ASSERT_EQ(integrated.exitCode, 0) << qPrintable(integrated.err);
    const auto survives = [&](const Ticket& t) { return twoOrThree(t) && frontSum(t) >= 15 && frontSum(t) <= 20 && evens(t) == 2; };
    EXPECT_EQ(integrated.out, count(survives));
    shown = cli.run({"candidates", "show", "--all"});
    // A ticket that failed both carries both reasons, in the order of the run.
    EXPECT_TRUE(shown.out.contains(QStringLiteral("各位数和大小:30 保留15~20偶数个数大小:3 保留2~2"))) << qPrintable(shown.out.left(2000));

    // The export of the live tickets.
    const QString file = cli.home() + QStringLiteral("/out.xlsx");
    CliRun exported = cli.run({"candidates", "export", file, "--params", "Znum,Fcodp"});
    ASSERT_EQ(exported.exitCode, 0) << qPrintable(exported.err);
    EXPECT_EQ(exported.out, cli.run({"candidates", "count"}).out);
    // Read back cell by cell: the heading, then each live ticket in idx order with its front
    // sum and its AC value.
    const XlsxSheet sheet = xlsx_reader::read(file);
    EXPECT_TRUE(sheet.error.isEmpty()) << qPrintable(sheet.error);
    QList<QStringList> expected{{"序号", "第1位", "第2位", "第3位", "第4位", "第5位", "各位数和", "数字复杂度"}};
    for (size_t k = 0; k < tickets().size(); ++k) {
        const Ticket& t = tickets()[k];
        if (!survives(t)) continue;
        QStringList row{QString::number(k + 1)};
        for (size_t p = 0; p < 5; ++p) row << QString::number(t[p]);
        row << QString::number(frontSum(t)) << QString::number(ticket_reference::acValue(t));
        expected << row;
    }
    ASSERT_GT(expected.size(), 1);
    EXPECT_EQ(sheet.rows, expected);

    // Bad input is refused with a message and changes nothing.
    CliRun bad = cli.run({"filter", "param", "Nonsense", "--keep", "--range", "1", "2"});
    EXPECT_NE(bad.exitCode, 0);
    EXPECT_TRUE(bad.err.contains(QStringLiteral("unknown parameter")));
    EXPECT_NE(cli.run({"filter", "param", "Onum", "--range", "1", "2"}).exitCode, 0);  // neither keep nor exclude
    EXPECT_EQ(cli.run({"candidates", "count"}).out, integrated.out);

    // The template needs zuheMoban, which only its own window makes.
    CliRun tpl = cli.run({"template", "add"});
    EXPECT_NE(tpl.exitCode, 0);
    EXPECT_TRUE(tpl.err.contains(QStringLiteral("zuheMoban")));
    EXPECT_TRUE(cli.run({"help"}).out.contains(QStringLiteral("filter param NAME")));
}

}  // namespace
