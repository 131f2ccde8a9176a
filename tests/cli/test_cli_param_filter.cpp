// The parameter filters through shuangqu-cli: each call reopens the stored table, acts and
// writes it back, so a sequence of calls behaves as a sequence of clicks.
#include "support/cli_runner.h"

#include <QFile>

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <vector>

namespace {

using Ticket = std::array<int, 7>;

// The tickets of --front 1..8 --back 1..3 in the expansion's order.
std::vector<Ticket> expansion() {
    std::vector<Ticket> out;
    for (int a = 1; a <= 4; ++a)
        for (int b = a + 1; b <= 5; ++b)
            for (int c = b + 1; c <= 6; ++c)
                for (int d = c + 1; d <= 7; ++d)
                    for (int e = d + 1; e <= 8; ++e)
                        for (int f = 1; f <= 2; ++f)
                            for (int g = f + 1; g <= 3; ++g) out.push_back({a, b, c, d, e, f, g});
    return out;
}

int evens(const Ticket& t) {
    int n = 0;
    for (int k = 0; k < 5; ++k) n += t[static_cast<size_t>(k)] % 2 == 0;
    return n;
}

int sum(const Ticket& t) { return t[0] + t[1] + t[2] + t[3] + t[4]; }

QString count(const std::function<bool(const Ticket&)>& live) {
    int n = 0;
    for (const Ticket& t : expansion()) n += live(t);
    return QString::number(n) + QLatin1Char('\n');
}

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

    // Double click twice on idx 1 (1 2 3 4 5 + 1 2, live): dead, then back.
    EXPECT_EQ(cli.run({"candidates", "toggle", "1"}).out, count(twoOrThree).replace(QStringLiteral("144"), QStringLiteral("143")));
    CliRun shown = cli.run({"candidates", "show", "--all"});
    EXPECT_TRUE(shown.out.contains(QStringLiteral("\n1\t1\t2\t3\t4\t5\t1\t2\t")));
    EXPECT_TRUE(shown.out.contains(QStringLiteral("手工删除")));
    EXPECT_EQ(cli.run({"candidates", "toggle", "1"}).out, count(twoOrThree));

    // The integrated filter, keep and logical and, with each parameter's range.
    CliRun integrated = cli.run({"filter", "integrated", "--params", "Znum,Onum", "--keep", "--and", "--range", "Znum", "15",
                                 "20", "--range", "Onum", "2", "2"});
    ASSERT_EQ(integrated.exitCode, 0) << qPrintable(integrated.err);
    EXPECT_EQ(integrated.out, count([&](const Ticket& t) { return twoOrThree(t) && sum(t) >= 15 && sum(t) <= 20 && evens(t) == 2; }));
    shown = cli.run({"candidates", "show", "--all"});
    // A ticket that failed both carries both reasons, in the order of the run.
    EXPECT_TRUE(shown.out.contains(QStringLiteral("各位数和大小:30 保留15~20偶数个数大小:3 保留2~2"))) << qPrintable(shown.out.left(2000));

    // The export of the live tickets.
    const QString file = cli.home() + QStringLiteral("/out.xlsx");
    CliRun exported = cli.run({"candidates", "export", file, "--params", "Znum,Fcodp"});
    ASSERT_EQ(exported.exitCode, 0) << qPrintable(exported.err);
    EXPECT_EQ(exported.out, cli.run({"candidates", "count"}).out);
    EXPECT_TRUE(QFile::exists(file));

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
