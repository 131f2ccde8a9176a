#pragma once

#include "engine/candidate_table.h"
#include "filter/param/param_filter.h"

#include <QString>

class EngineProgress;
class Prompter;

// Option42 "多选参数导出": the live tickets with the front-only value of every ticked
// parameter, as a spreadsheet. Sheet "Sheet1": "序号", "第1位".."第5位", then one column per
// parameter headed by its title, rows in idx order. Computing the columns writes canshu, as
// the companion statements do; the flags are not changed.
namespace param_export {

inline const QString kErrorTitle = QStringLiteral("列表显示错误");
inline const QString kErrorText =
    QStringLiteral("您的电脑没有安装Microsoft Excel表格软件，多参数列表无法显示");
// The rows a sheet holds, the heading included.
inline constexpr uint64_t kSheetRows = 1048576;

struct Result {
    bool written = false;
    bool cancelled = false;
    uint64_t rows = 0;     // tickets written
    uint64_t leftOut = 0;  // live tickets past the sheet's last row
    QStringList titles;    // the parameter columns, in order
};

// The instance's export file ("Zuhe.xls", "zuheRote.xls"...) as the .xlsx written here.
QString xlsxName(const QString& exportFile);

// Writes `path` anew: into a temporary file beside it, which replaces `path` once complete, so a
// cancel or a failure leaves the file that was there and no partial one. A failure shows the
// message through `prompter`; `progress` sees the columns computed and the rows written, and
// its cancel is polled between them.
Result exportLive(CandidateTable& table, const ParamWindowState& state, const ParamContext& ctx,
                  const QString& path, Prompter& prompter, EngineProgress* progress = nullptr);

}  // namespace param_export
