#include "filter/param/param_export.h"

#include "engine/engine_progress.h"
#include "workspace/prompter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <xlsxwriter.h>

#include <algorithm>
#include <numeric>

namespace param_export {

QString xlsxName(const QString& exportFile) {
    const QString base = exportFile.isEmpty() ? QStringLiteral("Zuhe.xls") : exportFile;
    return QFileInfo(base).completeBaseName() + QStringLiteral(".xlsx");
}

namespace {

// The live rows in idx order.
std::vector<uint32_t> liveInIdxOrder(const CandidateTable& t) {
    std::vector<uint32_t> rows;
    rows.reserve(t.liveCount());
    for (uint64_t r = 0; r < t.rowCount(); ++r)
        if (!t.filteredOut().test(r)) rows.push_back(static_cast<uint32_t>(r));
    if (t.hasExplicitIdx())
        std::stable_sort(rows.begin(), rows.end(),
                         [&t](uint32_t a, uint32_t b) { return t.idxAt(a) < t.idxAt(b); });
    return rows;
}

Result fail(Prompter& prompter, lxw_workbook* wb) {
    if (wb) workbook_close(wb);
    prompter.inform(kErrorTitle, kErrorText, Prompter::Icon::Critical);
    return {};
}

Result cancelledResult() {
    Result r;
    r.cancelled = true;
    return r;
}

// Rows written between two reports of progress.
constexpr uint64_t kReportRows = 16384;

// Progress over the columns computed and then the rows written, each column counted as much as
// writing every row.
class ExportProgress {
public:
    ExportProgress(EngineProgress* progress, uint64_t columns, uint64_t rows)
        : m_progress(progress), m_rows(std::max<uint64_t>(rows, 1)), m_total((columns + 1) * m_rows) {}
    // Reports `done` units; true when the export goes on.
    bool report(uint64_t done) {
        if (!m_progress) return true;
        m_progress->progress(done, m_total);
        return !m_progress->cancelled();
    }
    bool columnDone(uint64_t column) { return report((column + 1) * m_rows); }
    bool rowsWritten(uint64_t columns, uint64_t rows) { return report(columns * m_rows + rows); }

private:
    EngineProgress* m_progress;
    uint64_t m_rows;
    uint64_t m_total;
};

// The parameter columns of the live rows, computed over every row as their companion statements
// do, so a computation that does not run leaves the value of the one before. False when cancelled.
bool computeColumns(CandidateTable& table, const ParamWindowState& state, const ParamContext& ctx,
                    const std::vector<uint32_t>& rows, uint64_t fit, ExportProgress& progress,
                    std::vector<std::vector<int16_t>>& columns, QStringList& titles) {
    const ComputeInputs in = state.computeInputs();
    for (const param_catalogue::RunStep& s : param_catalogue::exportOrder()) {
        if (!state.integratedBox[static_cast<size_t>(s.box)]) continue;
        param_kernels::computeAll(param_kernels::compile(s.param, in, ctx, true), table);
        std::vector<int16_t> col(fit);
        for (uint64_t i = 0; i < fit; ++i) col[i] = table.paramValueAt(rows[i]);
        columns.push_back(std::move(col));
        titles << param_catalogue::exportTitle(s.param, state.listMode);
        if (!progress.columnDone(columns.size() - 1)) return false;
    }
    return true;
}

uint64_t exportedColumns(const ParamWindowState& state) {
    uint64_t n = 0;
    for (const param_catalogue::RunStep& s : param_catalogue::exportOrder())
        n += state.integratedBox[static_cast<size_t>(s.box)];
    return n;
}

}  // namespace

Result exportLive(CandidateTable& table, const ParamWindowState& state, const ParamContext& ctx,
                  const QString& path, Prompter& prompter, EngineProgress* engineProgress) {
    Result result;
    const std::vector<uint32_t> rows = liveInIdxOrder(table);
    const uint64_t fit = std::min<uint64_t>(rows.size(), kSheetRows - 1);
    ExportProgress progress(engineProgress, exportedColumns(state), fit);
    std::vector<std::vector<int16_t>> columns;
    if (!computeColumns(table, state, ctx, rows, fit, progress, columns, result.titles))
        return cancelledResult();

    // The sheet goes to a file of its own in the target's folder and takes the target's name once
    // it is complete.
    QTemporaryFile part(
        QFileInfo(path).dir().filePath(QFileInfo(path).fileName() + QStringLiteral(".XXXXXX")));
    if (!part.open()) return fail(prompter, nullptr);
    part.close();
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    const QByteArray file = part.fileName().toLocal8Bit();
    lxw_workbook* wb = workbook_new_opt(file.constData(), &options);
    if (!wb) return fail(prompter, nullptr);
    lxw_worksheet* ws = workbook_add_worksheet(wb, "Sheet1");
    if (!ws) return fail(prompter, wb);

    // Constant memory mode writes row by row.
    worksheet_write_string(ws, 0, 0, "序号", nullptr);
    for (int n = 1; n <= 5; ++n)
        worksheet_write_string(ws, 0, static_cast<lxw_col_t>(n),
                               QStringLiteral("第%1位").arg(n).toUtf8().constData(), nullptr);
    for (int c = 0; c < result.titles.size(); ++c)
        worksheet_write_string(ws, 0, static_cast<lxw_col_t>(6 + c), result.titles[c].toUtf8().constData(),
                               nullptr);
    for (uint64_t i = 0; i < fit; ++i) {
        const auto row = static_cast<lxw_row_t>(i + 1);
        const uint32_t r = rows[i];
        worksheet_write_number(ws, row, 0, table.idxAt(r), nullptr);
        for (int n = 1; n <= 5; ++n)
            worksheet_write_number(ws, row, static_cast<lxw_col_t>(n), table.numberColumn(n)[r], nullptr);
        for (size_t c = 0; c < columns.size(); ++c)
            worksheet_write_number(ws, row, static_cast<lxw_col_t>(6 + c), columns[c][i], nullptr);
        if ((i + 1) % kReportRows == 0 && !progress.rowsWritten(columns.size(), i + 1)) {
            workbook_close(wb);  // frees the workbook; the part goes with `part`
            return cancelledResult();
        }
    }
    progress.rowsWritten(columns.size(), fit);  // all written: past the last cancel
    if (workbook_close(wb) != LXW_NO_ERROR) return fail(prompter, nullptr);
    if (QFile::exists(path) && !QFile::remove(path)) return fail(prompter, nullptr);
    if (!QFile::rename(part.fileName(), path)) return fail(prompter, nullptr);
    result.written = true;
    result.rows = fit;
    result.leftOut = rows.size() - fit;
    return result;
}

}  // namespace param_export
