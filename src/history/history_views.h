#pragma once

// The three views of the history, each with its draw table, omission table and frequency
// table: front (fig, Ylqs, Gailv), back (fighou, YlqsHou, GailvHou) and both zones counted in
// one set of 36 (figquan, YlqsQuan, GailvQuan).

#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <span>
#include <vector>

enum class HistoryView { Front, Back, Both };

inline constexpr std::array<HistoryView, 3> kAllViews{HistoryView::Front, HistoryView::Back,
                                                      HistoryView::Both};

struct ViewInfo {
    QString drawTable;
    QString omissionTable;
    QString frequencyTable;
    int firstSlot;      // first Figarr slot of the view's numbers
    int numberCount;    // numbers per draw in the view
    int omissionRange;  // omissions grow for 1..this, whatever the zone sizes
    int frequencyRows;  // rows of the frequency table, one per number
};

const ViewInfo& viewInfo(HistoryView v);

NumberStats& statsOf(StatsViews& s, HistoryView v);
const NumberStats& statsOf(const StatsViews& s, HistoryView v);
std::vector<DrawParams>& paramsOf(DrawHistory& h, HistoryView v);
const std::vector<DrawParams>& paramsOf(const DrawHistory& h, HistoryView v);

// The numbers of a draw that the view counts: five, two, or all seven.
std::span<const int32_t> numbersOf(const DrawNumbers& d, HistoryView v);

// True when every number of a draw has a place in the arrays: 0..36 in front, 0..24 in back.
// A larger number read from outside is a fault of that source.
bool fitsArrays(const DrawNumbers& d);

// Applies one draw to a view's statistics: each number's count and the sum go up, every
// omission of 1..omissionRange grows by one, the drawn numbers' omissions become 0.
void applyDraw(NumberStats& stats, std::span<const int32_t> numbers, int omissionRange);

// Gailvarr = Glarr / Glsum x 100 for numbers 1..rows. False, changing nothing, when Glsum
// is 0: the percentages have no denominator.
bool recomputePercent(NumberStats& stats, int rows);

// Sets a per-draw array's element for row `idx`, growing the array with zero rows when it
// is shorter (the back and both tables can lag behind fig).
void setRow(std::vector<DrawParams>& params, int idx, const DrawParams& p);
