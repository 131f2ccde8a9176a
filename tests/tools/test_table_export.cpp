#include "support/qt_printers.h"
#include "support/xlsx_reader.h"
#include "tools/table_export.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// A grid of heading, body and foot rows comes back cell by cell, with its colours; the file
// is written anew each time.
TEST(TableExport, CellsAndColoursRoundTrip) {
    if (!xlsx_reader::available()) GTEST_SKIP() << "unzip is not installed";
    QTemporaryDir dir;
    const QString path = table_export::exportPath(dir.path());
    EXPECT_TRUE(path.endsWith(QStringLiteral("/Print.xlsx")));
    using table_export::Cell;
    table_export::Grid grid{
        {Cell{QStringLiteral("期号"), 0xC0C0C0}, Cell{QStringLiteral("01"), 0xC0C0C0}, Cell{QStringLiteral("和值"), {}}},
        {Cell{QStringLiteral("2026001"), {}}, Cell{QStringLiteral("3"), 0x00FF00}, Cell{QStringLiteral("88"), {}}},
        {Cell{QStringLiteral("2026002"), {}}, Cell{QString(), 0xFF0000}, Cell{QStringLiteral("-1.5"), {}}},
        {Cell{QStringLiteral("合计"), {}}, Cell{QStringLiteral("12"), 0x00FF00}},
    };
    QString error;
    ASSERT_TRUE(table_export::writeXlsx(grid, path, &error)) << error.toStdString();
    const XlsxSheet sheet = xlsx_reader::read(path);
    ASSERT_TRUE(sheet.error.isEmpty()) << sheet.error.toStdString();
    ASSERT_EQ(sheet.rows.size(), 4);
    for (qsizetype r = 0; r < grid.size(); ++r) {
        for (qsizetype c = 0; c < grid[r].size(); ++c) {
            EXPECT_EQ(sheet.rows[r].value(c), grid[r][c].text) << r << ',' << c;
            const auto& bg = grid[r][c].background;
            EXPECT_EQ(sheet.backgrounds[r].value(c),
                      bg ? QStringLiteral("%1").arg(*bg, 6, 16, QLatin1Char('0')).toUpper() : QString())
                << r << ',' << c;
        }
    }

    ASSERT_TRUE(table_export::writeXlsx({{Cell{QStringLiteral("只此一格"), {}}}}, path, &error));
    const XlsxSheet again = xlsx_reader::read(path);
    ASSERT_EQ(again.rows.size(), 1) << "the earlier file is gone";
    EXPECT_EQ(again.rows[0], QStringList{QStringLiteral("只此一格")});

    EXPECT_FALSE(table_export::writeXlsx(grid, dir.filePath(QStringLiteral("no/such/Print.xlsx")), &error));
    EXPECT_FALSE(error.isEmpty());
}
