#include "history/history_writer.h"

#include "history/draw_params.h"
#include "history/history_store.h"
#include "workspace/session.h"

HistoryState HistoryState::of(Session& s) { return {s.history(), s.stats()}; }

void HistoryState::commitTo(Session& s) && {
    s.history() = std::move(history);
    s.stats() = std::move(stats);
}

ZoneShape ZoneShape::of(const Session& s) { return {s.frontSize(), s.backSize(), s.positionCentres()}; }

namespace {

using namespace draw_params;

// The parameters of row r in one view by the append path. `working` is the figquan working row.
std::optional<DrawParams> appendParams(HistoryView view, const HistoryState& state, int r,
                                       const ZoneShape& shape, WorkingRow& working) {
    const DrawNumbers& d = state.history.numbers[static_cast<size_t>(r)];
    const DrawNumbers& prev = state.history.numbers[static_cast<size_t>(r - 1)];
    switch (view) {
        case HistoryView::Front:
            return front(frontOf(d), frontOf(prev), state.stats.front.omission, shape.frontSize,
                         shape.positionCentres, Path::Append);
        case HistoryView::Back:
            return back(backOf(d), backOf(prev), state.stats.back.omission, shape.backSize,
                        shape.positionCentres, Path::Append);
        case HistoryView::Both:
            fillWorkingRow(frontOf(d), backOf(d), working);
            return both(frontOf(d), backOf(d), working, {}, state.stats.both.omission,
                        state.stats.both.omission, shape.frontSize, Path::Append);
    }
    return std::nullopt;
}

}  // namespace

WriteStatus appendRows(SqliteDb& db, HistoryView view, HistoryState& state, int from, int to,
                       const ZoneShape& shape, Denominator denominator, ProgressSpan progress) {
    const ViewInfo& info = viewInfo(view);
    NumberStats& stats = statsOf(state.stats, view);
    std::vector<DrawParams>& params = paramsOf(state.history, view);
    if (denominator == Denominator::Batch) stats.total = 0;
    ViewRowWriter writer(db, view);
    if (!writer.ok()) return WriteStatus::DatabaseError;
    WorkingRow working{};
    for (int r = from; r <= to; ++r) {
        if (progress.progress && (r - from) % HistoryProgress::kChunkRows == 0 &&
            !progress.progress->step(progress.before + r - from, progress.total))
            return WriteStatus::Cancelled;
        const std::optional<DrawParams> p = appendParams(view, state, r, shape, working);
        if (!p) return WriteStatus::NoFittedLine;
        const DrawNumbers& d = state.history.numbers[static_cast<size_t>(r)];
        const qint64 storedIssue = d[0] != 0 ? d[0] : r;
        if (!writer.insertDraw(r, storedIssue, d, *p)) return WriteStatus::DatabaseError;
        setRow(params, r, *p);
        applyDraw(stats, numbersOf(d, view), info.omissionRange);
        if (!writer.insertOmission(d[0], stats)) return WriteStatus::DatabaseError;
    }
    if (denominator == Denominator::DrawCount) stats.total = to * info.numberCount;
    if (!recomputePercent(stats, info.frequencyRows)) return WriteStatus::ZeroDenominator;
    if (!history_store::writeFrequency(db, view, stats, info.frequencyRows))
        return WriteStatus::DatabaseError;
    return WriteStatus::Ok;
}

WriteStatus replaceAllViews(SqliteDb& db, HistoryState& state, const ZoneShape& shape,
                            const HistoryProgress* progress) {
    for (HistoryView v : kAllViews) {
        if (!history_store::clearTable(db, viewInfo(v).drawTable) ||
            !history_store::clearTable(db, viewInfo(v).omissionTable))
            return WriteStatus::DatabaseError;
    }
    const int rows = state.history.drawCount();
    int before = 0;
    for (HistoryView v : kAllViews) {
        const WriteStatus s =
            appendRows(db, v, state, 1, rows, shape, Denominator::Batch, {progress, before, 3 * rows});
        if (s != WriteStatus::Ok) return s;
        before += rows;
    }
    return WriteStatus::Ok;
}

const QString& writeStatusText(WriteStatus s) {
    static const QString texts[] = {
        QStringLiteral("ok"),
        QStringLiteral("cancelled"),
        QStringLiteral("no numbers counted: the percentages have no denominator"),
        QStringLiteral("the five front numbers are all 0: no line can be fitted"),
        QStringLiteral("database error"),
    };
    return texts[static_cast<int>(s)];
}
