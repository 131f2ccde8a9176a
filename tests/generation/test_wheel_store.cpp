// The bundled wheels made into the program's wheel databases, read back, and expanded into
// zuheRote as the wheel window fills it.
#include "generation/wheels/wheel_check.h"
#include "generation/wheels/wheel_expansion.h"
#include "generation/wheels/wheel_menus.h"
#include "generation/wheels/wheel_store.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace wheels;

namespace {

std::vector<int> ticket(const CandidateTable& t, uint64_t r) {
    std::vector<int> v;
    for (int k = 1; k <= 7; ++k) v.push_back(t.numberColumn(k)[r]);
    return v;
}

}  // namespace

// Every wheel the program brings keeps its promise, checked by the definition.
TEST(WheelStore, EveryBundledWheelKeepsItsPromise) {
    int bundled = 0;
    for (const WheelTable& t : catalogue()) {
        const std::vector<Block> design = wheel_store::bundledDesign(t);
        if (design.empty()) continue;
        ++bundled;
        if (t.single()) {
            EXPECT_EQ(design.size(), 1u);
            continue;
        }
        EXPECT_TRUE(check({t.design, design}).holds)
            << familyWord(t.family).toStdString() << " " << t.name.toStdString();
        EXPECT_LE(design.size(), static_cast<size_t>(t.family == Family::Six ? kMostRows6 : kMostRows5));
    }
    EXPECT_GT(bundled, 0);
}

TEST(WheelStore, DatabasesAreMadeOnceAndRemadeWhenDamaged) {
    QTemporaryDir dir;
    QString error;
    ASSERT_TRUE(wheel_store::ensureDatabases(dir.path(), &error)) << error.toStdString();
    const QString basic = wheel_store::databasePath(dir.path(), Family::Basic);
    EXPECT_TRUE(basic.endsWith(QStringLiteral("/Xuanzhuanjb.db")));
    for (Family f : {Family::Super, Family::Banker, Family::Six})
        EXPECT_TRUE(QFile::exists(wheel_store::databasePath(dir.path(), f)));

    // A table reads back as the bundled wheel's rows, in order.
    const WheelTable* twelve = findTable(Family::Basic, QStringLiteral("12"));
    const auto rows = wheel_store::readTable(basic, QStringLiteral("12"));
    ASSERT_TRUE(rows.has_value());
    EXPECT_EQ(*rows, tableRows(*twelve, wheel_store::bundledDesign(*twelve)));
    EXPECT_EQ(wheel_store::rowCount(basic, QStringLiteral("12")), static_cast<int>(rows->size()));
    EXPECT_FALSE(wheel_store::readTable(basic, QStringLiteral("8")).has_value());
    EXPECT_FALSE(
        wheel_store::rowCount(dir.filePath(QStringLiteral("none.db")), QStringLiteral("12")).has_value());
    const auto banker = wheel_store::readTable(wheel_store::databasePath(dir.path(), Family::Banker),
                                               QStringLiteral("2D1055"));
    ASSERT_TRUE(banker.has_value());
    EXPECT_EQ(banker->size(), 56u);
    const auto six =
        wheel_store::readTable(wheel_store::databasePath(dir.path(), Family::Six), QStringLiteral("561044"));
    ASSERT_TRUE(six.has_value());
    EXPECT_EQ(six->front().size(), 6u);

    // Up to date: left alone. Damaged: made again.
    const QDateTime made = QFileInfo(basic).lastModified();
    ASSERT_TRUE(wheel_store::ensureDatabases(dir.path()));
    EXPECT_EQ(QFileInfo(basic).lastModified(), made);
    QFile damaged(basic);
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("not a database");
    damaged.close();
    ASSERT_TRUE(wheel_store::ensureDatabases(dir.path()));
    EXPECT_EQ(wheel_store::readTable(basic, QStringLiteral("12")), rows);
    EXPECT_FALSE(QFile::exists(basic + QStringLiteral(".part")));
}

// Twelve front picks, three back picks, a wheel of 100 rows: 300 tickets, the back pair
// changing fastest.
TEST(WheelExpansion, EachRowTakesEveryPairOfTheBackPicks) {
    WheelExpansionInput in;
    for (int i = 0; i < 100; ++i) in.rows.push_back({1 + i % 8, 2 + i % 8, 3 + i % 8, 4 + i % 8, 5 + i % 8});
    in.list = {2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24};
    in.back = {3, 7, 11};
    in.backCount = 3;
    const auto t = expandWheel(in);
    ASSERT_EQ(t->rowCount(), 300u);
    EXPECT_EQ(t->kind(), schema::CandidateKind::Wheel);
    EXPECT_EQ(ticket(*t, 0), (std::vector<int>{2, 4, 6, 8, 10, 3, 7}));
    EXPECT_EQ(ticket(*t, 1), (std::vector<int>{2, 4, 6, 8, 10, 3, 11}));
    EXPECT_EQ(ticket(*t, 2), (std::vector<int>{2, 4, 6, 8, 10, 7, 11}));
    EXPECT_EQ(ticket(*t, 3), (std::vector<int>{4, 6, 8, 10, 12, 3, 7}));
    EXPECT_EQ(ticket(*t, 299),
              (std::vector<int>{8, 10, 12, 14, 16, 7, 11}));  // row 100 is i = 99, 99 % 8 = 3

    // Two back picks give one pair; one gives none.
    in.backCount = 2;
    EXPECT_EQ(wheelExpansionRows(in), 100u);
    in.backCount = 1;
    EXPECT_EQ(expandWheel(in)->rowCount(), 0u);
}

// A banker wheel indexes the bankers (in marking order) then the picks, and sorts each row.
TEST(WheelExpansion, BankerRowsAreSortedAfterMapping) {
    WheelExpansionInput in;
    in.rows = {{1, 2, 3, 4, 5}, {1, 2, 3, 6, 7}};
    in.list = {30, 4, 1, 9, 17, 22, 35};
    in.back = {1, 2};
    in.backCount = 2;
    in.sortMapped = true;
    const auto t = expandWheel(in);
    ASSERT_EQ(t->rowCount(), 2u);
    EXPECT_EQ(ticket(*t, 0), (std::vector<int>{1, 4, 9, 17, 30, 1, 2}));
    EXPECT_EQ(ticket(*t, 1), (std::vector<int>{1, 4, 22, 30, 35, 1, 2}));
    in.sortMapped = false;
    EXPECT_EQ(ticket(*expandWheel(in), 0), (std::vector<int>{30, 4, 1, 9, 17, 1, 2}));
}

// The captions count the wheel's tickets times the back pairs (or the six-number money); a
// number of picks without a table leaves the entries disabled.
TEST(WheelMenus, EntriesCountTheirTicketsOrStayDisabled) {
    QTemporaryDir dir;
    ASSERT_TRUE(wheel_store::ensureDatabases(dir.path()));
    const auto rowsOf = [&](Family f, const char* table) {
        return *wheel_store::rowCount(wheel_store::databasePath(dir.path(), f), QString::fromLatin1(table));
    };
    const auto super = wheel_menus::superEntries(dir.path(), 12, 3);
    ASSERT_EQ(super.size(), 6u);
    EXPECT_EQ(super[2].table, QStringLiteral("1243"));
    EXPECT_TRUE(super[2].enabled);
    EXPECT_EQ(super[2].caption,
              QStringLiteral("12选 中4保3共计%1注(&R)").arg(rowsOf(Family::Super, "1243") * 3));
    EXPECT_EQ(super[0].caption,
              QStringLiteral("12选 中2保2共计%1注(&W)").arg(rowsOf(Family::Super, "1222") * 3));
    for (const auto& e : wheel_menus::superEntries(dir.path(), 8, 3)) {
        EXPECT_FALSE(e.enabled);
        EXPECT_TRUE(e.caption.isEmpty());
    }

    const auto banker = wheel_menus::bankerEntries(dir.path(), 2, 8, 2);
    ASSERT_EQ(banker.size(), 3u);
    EXPECT_EQ(banker[2].caption, QStringLiteral("2胆10拖 中5保5共计56注(&V)"));
    EXPECT_EQ(banker[0].table, QStringLiteral("2D1044"));

    const auto six = wheel_menus::sixEntries(dir.path(), 10);
    const int r = rowsOf(Family::Six, "561044");
    EXPECT_EQ(six[0].caption, QStringLiteral("10选复6 中4保4共计%1注,合计 %2 元 (&U)").arg(r).arg(r * 12));
    EXPECT_EQ(six[5].table, QStringLiteral("561076"));

    EXPECT_TRUE(wheel_menus::basicEntryEnabled(12, 12));
    EXPECT_FALSE(wheel_menus::basicEntryEnabled(12, 13));
    EXPECT_FALSE(wheel_menus::basicEntryEnabled(8, 8));
    EXPECT_FALSE(wheel_menus::basicEntryEnabled(23, 23));
}
