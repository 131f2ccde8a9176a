#include "filter/param/param_export.h"

#include "workspace/prompter.h"

#include <QFile>
#include <QFileInfo>

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

}  // namespace

Result exportLive(CandidateTable& table, const ParamWindowState& state, const ParamContext& ctx,
                  const QString& path, Prompter& prompter) {
    if (QFile::exists(path)) QFile::remove(path);

    // The columns first, each computed over every row as its companion statement does, so a
    // computation that does not run leaves the value of the one before.
    Result result;
    const std::vector<uint32_t> rows = liveInIdxOrder(table);
    const uint64_t fit = std::min<uint64_t>(rows.size(), kSheetRows - 1);
    std::vector<std::vector<int16_t>> columns;
    const ComputeInputs in = state.computeInputs();
    for (const param_catalogue::RunStep& s : param_catalogue::exportOrder()) {
        if (!state.integratedBox[static_cast<size_t>(s.box)]) continue;
        param_kernels::computeAll(param_kernels::compile(s.param, in, ctx, true), table);
        std::vector<int16_t> col(fit);
        for (uint64_t i = 0; i < fit; ++i) col[i] = table.paramValueAt(rows[i]);
        columns.push_back(std::move(col));
        result.titles << param_catalogue::exportTitle(s.param, state.listMode);
    }

    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    const QByteArray file = path.toLocal8Bit();
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
    }
    if (workbook_close(wb) != LXW_NO_ERROR) {
        prompter.inform(kErrorTitle, kErrorText, Prompter::Icon::Critical);
        return {};
    }
    result.written = true;
    result.rows = fit;
    result.leftOut = rows.size() - fit;
    return result;
}

}  // namespace param_export
