#include "tools/table_export.h"

#include <QDir>
#include <QFile>

#include <xlsxwriter.h>

#include <map>

namespace table_export {

namespace {

// One cell format per background colour, made as the colours come.
class Fills {
public:
    explicit Fills(lxw_workbook* wb) : m_wb(wb) {}
    lxw_format* of(const std::optional<unsigned>& rgb) {
        if (!rgb) return nullptr;
        auto [i, fresh] = m_formats.try_emplace(*rgb, nullptr);
        if (fresh) {
            i->second = workbook_add_format(m_wb);
            format_set_pattern(i->second, LXW_PATTERN_SOLID);
            format_set_bg_color(i->second, *rgb);
        }
        return i->second;
    }

private:
    lxw_workbook* m_wb;
    std::map<unsigned, lxw_format*> m_formats;
};

}  // namespace

QString exportPath(const QString& folder) { return QDir(folder).filePath(QStringLiteral("Print.xlsx")); }

bool writeXlsx(const Grid& grid, const QString& path, QString* error) {
    QFile::remove(path);
    const QByteArray file = QFile::encodeName(path);
    lxw_workbook* wb = workbook_new(file.constData());
    if (!wb) {
        if (error) *error = QStringLiteral("cannot create %1").arg(path);
        return false;
    }
    lxw_worksheet* ws = workbook_add_worksheet(wb, "Sheet1");
    Fills fills(wb);
    for (qsizetype r = 0; r < grid.size(); ++r) {
        for (qsizetype c = 0; c < grid[r].size(); ++c) {
            const Cell& cell = grid[r][c];
            const auto row = static_cast<lxw_row_t>(r);
            const auto col = static_cast<lxw_col_t>(c);
            lxw_format* format = fills.of(cell.background);
            if (cell.text.isEmpty())
                worksheet_write_blank(ws, row, col, format);
            else
                worksheet_write_string(ws, row, col, cell.text.toUtf8().constData(), format);
        }
    }
    const lxw_error rc = workbook_close(wb);
    if (rc != LXW_NO_ERROR) {
        if (error) *error = QString::fromUtf8(lxw_strerror(rc));
        QFile::remove(path);
        return false;
    }
    return true;
}

}  // namespace table_export
