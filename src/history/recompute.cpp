#include "history/recompute.h"

#include "history/draw_params.h"
#include "history/history_store.h"
#include "workspace/draw_params_columns.h"

namespace recompute {

namespace {

using namespace draw_params;

QStringList withNumbered(QStringList names, const QString& prefix, int from, int to) {
    for (int i = from; i <= to; ++i) names << prefix + QString::number(i);
    return names;
}

// Copies the written columns of a recomputed row onto the row in memory; the others keep
// their values, as they keep them in the table.
void mergeWritten(std::vector<DrawParams>& params, int idx, const DrawParams& computed,
                  const QStringList& columns) {
    if (static_cast<int>(params.size()) <= idx) params.resize(static_cast<size_t>(idx) + 1);
    DrawParams& row = params[static_cast<size_t>(idx)];
    for (const QString& c : columns)
        draw_params_columns::setValue(row, c, draw_params_columns::value(computed, c).value_or(0));
}

const DrawParams* storedRow(const std::vector<DrawParams>& params, int idx) {
    return idx < static_cast<int>(params.size()) ? &params[static_cast<size_t>(idx)] : nullptr;
}

template <size_t N>
std::array<int, N> firstNumbers(const std::vector<int>& v, size_t offset = 0) {
    std::array<int, N> out{};
    for (size_t i = 0; i < N && offset + i < v.size(); ++i) out[i] = v[offset + i];
    return out;
}

}  // namespace

const QStringList& frontColumns() {
    static const QStringList c = withNumbered(
        withNumbered({"Znum", "XZnum", "DZnum",    "Zjnum",    "Zonum",  "Zgnum",  "Zynum",  "Sumgwnum",
                      "Cnum", "Onum",  "Jnum",     "Bignum",   "Smlnum", "Mornum", "Ltlnum", "Modenum",
                      "Lnum", "Lxnum", "Mxzounum", "Apzounum", "Fcodp",  "R",      "a"},
                     QStringLiteral("Qnum"), 0, 3),
        QStringLiteral("Lcz"), 1, 5);
    return c;
}

const QStringList& backColumns() {
    static const QStringList c =
        withNumbered({"Znum", "Zgnum", "Zynum", "Sumgwnum", "Cnum", "Onum", "Jnum", "Bignum", "Smlnum",
                      "Mornum", "Ltlnum", "Modenum", "Lnum", "Apzounum"},
                     QStringLiteral("Lcz"), 1, 2);
    return c;
}

const QStringList& bothColumns() {
    static const QStringList c = withNumbered(
        {"Znum", "XZnum",  "DZnum",  "Zjnum",  "Zonum",  "Zgnum",   "Zynum", "Sumgwnum", "Cnum",     "Onum",
         "Jnum", "Bignum", "Smlnum", "Mornum", "Ltlnum", "Modenum", "Lnum",  "Lxnum",    "Apzounum", "Fcodp"},
        QStringLiteral("Qnum"), 0, 3);
    return c;
}

bool updateRow(SqliteDb& db, HistoryState& state, int idx, const ZoneShape& shape) {
    DrawHistory& h = state.history;
    const DrawNumbers zero{};
    const DrawNumbers& prev =
        idx - 1 < static_cast<int>(h.numbers.size()) ? h.numbers[static_cast<size_t>(idx - 1)] : zero;

    // Paracount: fig. Lxnum is not reset first, so a longer run of the old row stays.
    if (const auto x = history_store::readNumbers(db, HistoryView::Front, idx)) {
        const DrawParams* old = storedRow(h.front, idx);
        const std::optional<DrawParams> p =
            front(firstNumbers<5>(*x), frontOf(prev), state.stats.front.omission, shape.frontSize,
                  shape.positionCentres, Path::Recompute, old ? old->longestRun : 0);
        if (!p) return false;
        if (!history_store::updateParams(db, HistoryView::Front, idx, *p, frontColumns())) return false;
        mergeWritten(h.front, idx, *p, frontColumns());
    }

    // ParaHou: its sum starts from the row's new front sum.
    if (const auto y = history_store::readNumbers(db, HistoryView::Back, idx)) {
        const DrawParams* frontRow = storedRow(h.front, idx);
        const BackRecompute again{frontRow ? frontRow->sum : int16_t{0}, shape.frontSize};
        const DrawParams p = back(firstNumbers<2>(*y), backOf(prev), state.stats.back.omission,
                                  shape.backSize, shape.positionCentres, Path::Recompute, again);
        if (!history_store::updateParams(db, HistoryView::Back, idx, p, backColumns())) return false;
        mergeWritten(h.back, idx, p, backColumns());
    }

    // ParaQuan: both rows from figquan, each placed into a working row that starts at 0.
    if (const auto cur = history_store::readNumbers(db, HistoryView::Both, idx)) {
        const std::vector<int> before =
            history_store::readNumbers(db, HistoryView::Both, idx - 1).value_or(std::vector<int>{});
        const FrontNumbers x = firstNumbers<5>(*cur);
        const BackNumbers y = firstNumbers<2>(*cur, 5);
        WorkingRow working{};
        WorkingRow previous{};
        fillWorkingRow(x, y, working);
        fillWorkingRow(firstNumbers<5>(before), firstNumbers<2>(before, 5), previous);
        // The slots' omissions come from Ylarr, the front array.
        const DrawParams p = both(x, y, working, previous, state.stats.front.omission,
                                  state.stats.both.omission, shape.frontSize, Path::Recompute);
        if (!history_store::updateParams(db, HistoryView::Both, idx, p, bothColumns())) return false;
        mergeWritten(h.both, idx, p, bothColumns());
    }
    return true;
}

}  // namespace recompute
