#include "generation/ticket_text.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace {

using ticket_text::parseLine;
using ticket_text::Ticket;

std::optional<Ticket> line(const char* text, int start = 1) { return parseLine(QString::fromUtf8(text), start); }

}  // namespace

// A serial number of one digit gives nothing; a run of three digits gives its last two; the
// numbers are taken in their order in the line, with any separator that is no digit.
TEST(TicketText, ReadsTwoDigitNumbersFromTheStartColumn) {
    EXPECT_EQ(line("1: 01 02 03 04 05 06 07"), (Ticket{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(line("123 04 05 06 07 08 09"), (Ticket{23, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(line("35,07;21|01-02+12x11"), (Ticket{35, 7, 21, 1, 2, 12, 11}));
    EXPECT_EQ(line("01 02 03 04 05 06 07"), line("01 02 03 04 05 06 07", 1));
    // Read from column 4, the serial number "10:" is skipped.
    EXPECT_EQ(line("10: 01 02 03 04 05 06 07", 4), (Ticket{1, 2, 3, 4, 5, 6, 7}));
    // A line ending on a number still gives it.
    EXPECT_EQ(line("0102030405060708", 1), std::nullopt);  // one run: 08 alone
    EXPECT_EQ(line("01 02 03 04 05 06 7"), std::nullopt);
}

TEST(TicketText, DropsLinesOfAnyOtherCountAndShortLines) {
    EXPECT_EQ(line("01 02 03"), std::nullopt);
    EXPECT_EQ(line("10: 01 02 03 04 05 06 07"), std::nullopt);  // eight numbers
    EXPECT_EQ(line(""), std::nullopt);
    EXPECT_EQ(line("01 02 03 04 05 06 07", 30), std::nullopt);  // shorter than the start
    EXPECT_EQ(line("01 02 03 04 05 06 07", 0), std::nullopt);
    // From column 2 the first number is "1" alone.
    EXPECT_EQ(line("01 02 03 04 05 06 07", 2), std::nullopt);
}

// Columns count characters of the decoded text: a GBK line with Chinese before the numbers
// reads from the same column as it shows in an editor.
TEST(TicketText, DecodesUtf8AndTheNationalEncoding) {
    const QByteArray gbk("\xb5\xda\x31\xc6\xda 01 02 03 04 05 06 07");  // 第1期 in GBK
    const QString text = ticket_text::decode(gbk);
    EXPECT_EQ(text.left(3), QStringLiteral("第1期"));
    EXPECT_EQ(parseLine(text, 4), (Ticket{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(ticket_text::decode(QStringLiteral("第1期 01").toUtf8()), QStringLiteral("第1期 01"));
}

TEST(TicketText, ReadsAFileKeepingOrderAndCountingNumbersOutsideTheZones) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("t.txt"));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("05 06 07 08 09 10 11\r\nnothing here\n40 01 02 03 04 05 06\n01 02 03 04 05 06 07");
    f.close();
    const ticket_text::ReadResult r = ticket_text::readFile(path, 1, {35, 12});
    EXPECT_TRUE(r.error.isEmpty());
    EXPECT_EQ(r.lines, 4);
    EXPECT_EQ(r.outOfRange, 1);
    ASSERT_EQ(r.tickets.size(), 2u);
    EXPECT_EQ(r.tickets[0], (Ticket{5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(r.tickets[1], (Ticket{1, 2, 3, 4, 5, 6, 7}));

    const auto table = ticket_text::toTable(r.tickets);
    EXPECT_EQ(table->kind(), schema::CandidateKind::Imported);
    ASSERT_EQ(table->rowCount(), 2u);
    EXPECT_EQ(table->numberColumn(1)[1], 1);
    EXPECT_EQ(table->numberColumn(7)[0], 11);
    EXPECT_EQ(table->idxAt(1), 2);

    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(QByteArray("01 02 03 04 05 06 07\n\0\x01\x02", 24));
    f.close();
    const ticket_text::ReadResult binary = ticket_text::readFile(path, 1, {35, 12});
    EXPECT_FALSE(binary.error.isEmpty());
    EXPECT_TRUE(binary.tickets.empty());
    EXPECT_FALSE(ticket_text::readFile(dir.filePath(QStringLiteral("missing.txt")), 1, {}).error.isEmpty());
}

// The player may cancel a long read: nothing of it is kept.
TEST(TicketText, ACancelledReadGivesNoTickets) {
    struct CancelAtOnce : EngineProgress {
        void progress(uint64_t, uint64_t) override { ++reports; }
        bool cancelled() const override { return true; }
        int reports = 0;
    } cancel;
    QString text;
    for (int i = 0; i < 200000; ++i) text += QStringLiteral("01 02 03 04 05 06 07\n");
    const ticket_text::ReadResult r = ticket_text::readText(text, 1, {}, &cancel);
    EXPECT_TRUE(r.cancelled);
    EXPECT_TRUE(r.tickets.empty());
    EXPECT_EQ(cancel.reports, 1);
}
