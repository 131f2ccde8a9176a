#include "tools/ticket_print.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QDateTime kAt(QDate(2026, 11, 24), QTime(20, 5, 9));

std::vector<std::vector<int>> tickets(int n) {
    std::vector<std::vector<int>> out;
    for (int i = 0; i < n; ++i) out.push_back({1 + i, 7, 12, 23, 35});
    return out;
}

// A table whose row r holds r+1 .. r+5 in front and 1, 2 behind.
CandidateTable table(schema::CandidateKind kind, uint64_t rows) {
    CandidateTable t(kind, rows);
    for (uint64_t r = 0; r < rows; ++r)
        for (int k = 1; k <= t.numberCount(); ++k)
            t.numberColumn(k)[r] = static_cast<uint8_t>(k <= 5 || kind == schema::CandidateKind::SixNumbers ? r + k : k - 5);
    return t;
}

}  // namespace

TEST(TicketPrint, HeadingAndTicketsToTheLine) {
    const ticket_print::Document d = ticket_print::build(tickets(5), 2, 2026136, kAt);
    EXPECT_EQ(d.printedAt, QStringLiteral("打印时间:2026-11-24 20:05:09"));
    EXPECT_EQ(d.forIssue, QStringLiteral("购买期数:2026136"));
    ASSERT_EQ(d.lines.size(), 3) << "two, two and the short last line";
    EXPECT_EQ(d.lines[0], QStringLiteral("<1>01 07 12 23 35    <2>02 07 12 23 35    "));
    EXPECT_EQ(d.lines[2], QStringLiteral("<5>05 07 12 23 35    "));
    EXPECT_EQ(ticket_print::printedText(d),
              QStringLiteral("打印时间:2026-11-24 20:05:09\n购买期数:2026136\n") + d.lines.join('\n') + '\n');
    EXPECT_EQ(ticket_print::fileText(d),
              QStringLiteral("购买期数:2026136\n") + d.lines.join('\n') + QStringLiteral("\n打印时间:2026-11-24 20:05:09\n"))
        << "the file puts the time last";

    const ticket_print::Document one = ticket_print::build(tickets(3), 1, 1, kAt);
    EXPECT_EQ(one.lines, (QStringList{"<1>01 07 12 23 35    ", "<2>02 07 12 23 35    ", "<3>03 07 12 23 35    "}));
    EXPECT_EQ(ticket_print::build(tickets(3), 0, 1, kAt).lines.size(), 3) << "below 1 counts as 1";
    EXPECT_TRUE(ticket_print::build({}, 4, 1, kAt).lines.isEmpty());
    EXPECT_EQ(ticket_print::build(tickets(8), 4, 1, kAt).lines.size(), 2) << "no empty line when it divides";
}

TEST(TicketPrint, LiveTicketsOfATable) {
    CandidateTable t = table(schema::CandidateKind::Combinations, 5);
    t.filteredOut().set(1);
    t.filteredOut().set(3);
    const auto live = ticket_print::liveTickets(t);
    EXPECT_EQ(live, (std::vector<std::vector<int>>{{1, 2, 3, 4, 5}, {3, 4, 5, 6, 7}, {5, 6, 7, 8, 9}}))
        << "the five front numbers of the live rows";
    const CandidateTable six = table(schema::CandidateKind::SixNumbers, 2);
    EXPECT_EQ(ticket_print::liveTickets(six), (std::vector<std::vector<int>>{{1, 2, 3, 4, 5, 6}, {2, 3, 4, 5, 6, 7}}));
}

TEST(TicketPrint, TheTextFileIsReplacedWhole) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Print.txt"));
    QString error;
    ASSERT_TRUE(ticket_print::writeTextFile(path, ticket_print::build(tickets(9), 4, 7, kAt), &error));
    ASSERT_TRUE(ticket_print::writeTextFile(path, ticket_print::build(tickets(1), 4, 8, kAt), &error));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(f.readAll()),
              QStringLiteral("购买期数:8\n<1>01 07 12 23 35    \n打印时间:2026-11-24 20:05:09\n"));
    EXPECT_FALSE(ticket_print::writeTextFile(dir.filePath(QStringLiteral("no/such/Print.txt")),
                                             ticket_print::build(tickets(1), 4, 8, kAt), &error));
    EXPECT_FALSE(error.isEmpty());
}
