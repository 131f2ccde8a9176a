// spin run as a process: the prediction of a seeded spin, the kept tickets, and the refusals.
#include "cli_fixture.h"

#include <QRegularExpression>

namespace {

class CliSpin : public CliTest {
protected:
    void SetUp() override { one({"workspace", "create", "w"}); }
    static QStringList numbers(const QString& line) { return line.split(QLatin1Char(' ')); }
};

TEST_F(CliSpin, ASeededSpinPrintsTheSamePredictionOfThePicksEachTime) {
    const QStringList spin{"spin", "--front", "3,8,14,19,25,31", "--back", "2,6,11", "--seed", "7",
                           "--coefficient", "50"};
    const QString out = one(spin);
    EXPECT_EQ(one(spin), out);
    const QStringList lines = out.split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 2) << out.toStdString();
    const QStringList front = numbers(lines[0]);
    const QStringList back = numbers(lines[1]);
    ASSERT_EQ(front.size(), 5);
    ASSERT_EQ(back.size(), 2);
    const QStringList frontPicks{"03", "08", "14", "19", "25", "31"};
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(frontPicks.contains(front[i])) << lines[0].toStdString();
        if (i > 0) {
            EXPECT_LT(front[i - 1], front[i]);
        }
    }
    for (const QString& n : back) EXPECT_TRUE(QStringList({"02", "06", "11"}).contains(n));
    EXPECT_LT(back[0], back[1]);
}

TEST_F(CliSpin, TicketsPrintTheKeptRowsWithTheFirstTwoFrontNumbersRepeated) {
    const CliRun r = cli.run({"spin", "--front", "1,2,3,4,5,6,7", "--back", "1,2,3", "--seed", "3",
                              "--coefficient", "50", "--tickets", "3"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QStringList lines = r.out.trimmed().split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[0], QStringLiteral("fig1\tfig2\tfig3\tfig4\tfig5\tfig6\tfig7"));
    for (int i = 1; i <= 3; ++i) {
        const QStringList cells = lines[i].split(QLatin1Char('\t'));
        ASSERT_EQ(cells.size(), 7);
        EXPECT_EQ(cells[5], cells[0]);
        EXPECT_EQ(cells[6], cells[1]);
        EXPECT_TRUE(QRegularExpression(QStringLiteral("^0[1-7]$")).match(cells[4]).hasMatch());
    }
}

TEST_F(CliSpin, PicksThatMakeNoSpinThatEndsAreRefused) {
    const struct {
        QStringList args;
        const char* message;
    } refused[] = {
        {{"--front", "1,2,3,4,5", "--back", "1,2"}, "too few front picks"},
        {{"--front", "1,2,3,4,5,6"}, "too few back picks"},
        {{"--front", "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17", "--back", "1,2,3", "--front-count", "16"},
         "never ends"},
        {{"--front", "1,2,3,4,5,6", "--back", "1,13"}, "outside the zone"},
    };
    for (const auto& c : refused) {
        const CliRun r = cli.run(QStringList{"spin", "--seed", "1"} + c.args);
        EXPECT_EQ(r.exitCode, 1) << c.message;
        EXPECT_TRUE(r.err.contains(QLatin1String(c.message))) << r.err.toStdString();
        EXPECT_TRUE(r.out.isEmpty());
    }
    for (const QStringList& usage : {QStringList{"--coefficient", "70"}, QStringList{"--tickets", "0"},
                                     QStringList{"--tickets", "11521"}, QStringList{"--back-count", "9"}}) {
        const CliRun r = cli.run(QStringList{"spin", "--front", "1,2,3,4,5,6", "--back", "1,2"} + usage);
        EXPECT_EQ(r.exitCode, 2) << usage.join(' ').toStdString() << r.err.toStdString();
    }
}

}  // namespace
