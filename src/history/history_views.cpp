#include "history/history_views.h"

#include <utility>

#include <QtGlobal>

const ViewInfo& viewInfo(HistoryView v) {
    static const std::array<ViewInfo, 3> infos{{
        {QStringLiteral("fig"), QStringLiteral("Ylqs"), QStringLiteral("Gailv"), 1, 5, 36, 36},
        {QStringLiteral("fighou"), QStringLiteral("YlqsHou"), QStringLiteral("GailvHou"), 6, 2, 24, 24},
        {QStringLiteral("figquan"), QStringLiteral("YlqsQuan"), QStringLiteral("GailvQuan"), 1, 7, 36, 36},
    }};
    return infos[static_cast<size_t>(v)];
}

NumberStats& statsOf(StatsViews& s, HistoryView v) {
    switch (v) {
        case HistoryView::Front:
            return s.front;
        case HistoryView::Back:
            return s.back;
        case HistoryView::Both:
            return s.both;
    }
    return s.front;
}

const NumberStats& statsOf(const StatsViews& s, HistoryView v) {
    return statsOf(const_cast<StatsViews&>(s), v);
}

const std::vector<DrawParams>& paramsOf(const DrawHistory& h, HistoryView v) {
    switch (v) {
        case HistoryView::Front:
            return h.front;
        case HistoryView::Back:
            return h.back;
        case HistoryView::Both:
            return h.both;
    }
    return h.front;
}

std::vector<DrawParams>& paramsOf(DrawHistory& h, HistoryView v) {
    return const_cast<std::vector<DrawParams>&>(paramsOf(std::as_const(h), v));
}

std::span<const int32_t> numbersOf(const DrawNumbers& d, HistoryView v) {
    const ViewInfo& info = viewInfo(v);
    return {d.data() + info.firstSlot, static_cast<size_t>(info.numberCount)};
}

bool fitsArrays(const DrawNumbers& d) {
    for (HistoryView v : {HistoryView::Front, HistoryView::Back}) {
        const int end = viewInfo(v).omissionRange;
        for (int32_t n : numbersOf(d, v))
            if (n < 0 || n > end) return false;
    }
    return true;
}

void applyDraw(NumberStats& stats, std::span<const int32_t> numbers, int omissionRange) {
    for (int32_t n : numbers) {
        Q_ASSERT(n >= 0 && n < kNumberSlots);  // imports refuse numbers beyond the arrays
        ++stats.frequency[n];
        ++stats.total;
    }
    for (int n = 1; n <= omissionRange; ++n) ++stats.omission[n];
    for (int32_t n : numbers) stats.omission[n] = 0;
}

bool recomputePercent(NumberStats& stats, int rows) {
    if (stats.total == 0) return false;
    for (int n = 1; n <= rows && n < kNumberSlots; ++n)
        stats.percent[n] = static_cast<double>(stats.frequency[n]) / stats.total * 100.0;
    return true;
}

void setRow(std::vector<DrawParams>& params, int idx, const DrawParams& p) {
    if (static_cast<int>(params.size()) <= idx) params.resize(static_cast<size_t>(idx) + 1);
    params[static_cast<size_t>(idx)] = p;
}
