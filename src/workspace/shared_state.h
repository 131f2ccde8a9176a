#pragma once

// The state every window shares: the current workspace, the game shape, the draws with
// their per-draw parameters, the number statistics and the number board. One Session
// object holds it (session.h); this header is its data.

#include "workspace/game_rules.h"

#include <QString>

#include <array>
#include <cstdint>
#include <vector>

// Numbers are indexed from 1; index 0 is unused. 36 covers both zones.
inline constexpr int kNumberSlots = 37;

// One draw, Figarr's column: slot 0 the issue (期号), 1..5 front, 6..7 back.
using DrawNumbers = std::array<int32_t, 8>;

// The parameters of one draw in one view (fig, fighou or figquan). The three views share the
// field names of their columns; a field a view's table lacks stays 0.
struct DrawParams {
    int16_t sum = 0;                        // Znum: the sum (back view, recompute: front sum + 2nd)
    int16_t smallSum = 0;                   // XZnum: sum of the numbers at or below the zone's middle
    int16_t bigSum = 0;                     // DZnum: sum of the numbers above the middle
    int16_t oddSum = 0;                     // Zjnum: sum of the odd numbers
    int16_t evenSum = 0;                    // Zonum: sum of the even numbers
    int16_t lastDigitSum = 0;               // Zgnum: sum of the last digits
    int16_t omissionSum = 0;                // Zynum: sum of the omissions (draws since last drawn)
    int16_t sumLastDigit = 0;               // Sumgwnum: the last digit of the sum
    int16_t repeatCount = 0;                // Cnum: numbers also drawn in the previous draw
    int16_t evenCount = 0;                  // Onum: even numbers
    int16_t oddCount = 0;                   // Jnum: odd numbers
    int16_t bigLastDigitCount = 0;          // Bignum: numbers ending in 5..9
    int16_t smallLastDigitCount = 0;        // Smlnum: numbers ending in 0..4
    int16_t bigCount = 0;                   // Mornum: numbers above the middle
    int16_t smallCount = 0;                 // Ltlnum: numbers at or below the middle
    int16_t repeatedLastDigits = 0;         // Modenum: count of numbers minus count of distinct last digits
    int16_t consecutivePairs = 0;           // Lnum: adjacent sorted numbers that differ by 1
    int16_t longestRun = 0;                 // Lxnum: the longest chain of adjacent differences equal to 1
    int16_t largestGap = 0;                 // Mxzounum: the largest difference of adjacent sorted numbers
    int16_t numberSpan = 0;                 // Apzounum: largest minus smallest (both: backs among fronts)
    int16_t complexity = 0;                 // Fcodp: distinct pairwise differences minus (count - 1)
    float R = 0;                            // correlation of the line fitted through (0,0) and (i, number i)
    float a = 0;                            // intercept of that line
    std::array<int16_t, 4> decadeCounts{};  // Qnum0..3: numbers in 1-10, 11-20, 21-30, 31 and up
    std::array<double, 5> centreOffsets{};  // Lcz1..5: each number minus the centre of its position
    int16_t omissionSpread = 0;             // intYljz: largest minus smallest omission of the numbers
};

// The draw history with its per-draw arrays; row 0 is the zero row before the first draw, so
// row Idx is draw Idx and Drawnum = rows - 1.
struct DrawHistory {
    std::vector<DrawNumbers> numbers{DrawNumbers{}};
    std::vector<DrawParams> front{DrawParams{}};  // fig
    std::vector<DrawParams> back{DrawParams{}};   // fighou
    std::vector<DrawParams> both{DrawParams{}};   // figquan

    int drawCount() const { return static_cast<int>(numbers.size()) - 1; }
    int32_t lastIssue() const { return numbers.back()[0]; }
    void clear() { *this = DrawHistory{}; }
};

// The history as a reader sees it: the whole of it, or only its first `cut` draws (a back-test
// asks the filters what they would have done before a draw). Reads in place; nothing is copied.
// A view of the whole history follows draws added after it was made.
class DrawHistoryView {
public:
    // Implicit: a reader of a view takes a whole history as it stands.
    DrawHistoryView(const DrawHistory& history) : m_history(&history) {}
    DrawHistoryView(const DrawHistory& history, int cut) : m_history(&history), m_cut(cut) {}

    int drawCount() const {
        const int all = m_history->drawCount();
        return m_cut < 0 || m_cut > all ? all : m_cut;
    }
    // Row `idx` (0 the zero row) of a view: at most drawCount().
    const DrawNumbers& numbers(int idx) const { return m_history->numbers[static_cast<size_t>(idx)]; }
    const DrawHistory& whole() const { return *m_history; }
    bool isCut() const { return m_cut >= 0; }

private:
    const DrawHistory* m_history;
    int m_cut = -1;  // -1: every draw
};

// Omission and frequency of each number in one view: Ylarr, Glarr, Gailvarr, Glsum.
struct NumberStats {
    std::array<int16_t, kNumberSlots> omission{};   // Ylarr
    std::array<int16_t, kNumberSlots> frequency{};  // Glarr
    std::array<double, kNumberSlots> percent{};     // Gailvarr
    int32_t total = 0;                              // Glsum
};

struct StatsViews {
    NumberStats front;  // no suffix
    NumberStats back;   // Hou
    NumberStats both;   // Quan
};

// The number board of one zone (front: no suffix, back: Hou).
struct ZoneBoardState {
    int16_t pickCount = 0;                         // PickCount
    int16_t bankerCount = 0;                          // DanCount
    std::array<int16_t, kNumberSlots> pickList{};  // PickList, by position from 1
    std::array<int16_t, kNumberSlots> bankerList{};   // DanList, by position from 1
    std::array<bool, kNumberSlots> pickFlag{};     // PickFlag, by number
    std::array<bool, kNumberSlots> bankerFlag{};      // DanFlag, by number
    std::array<int16_t, kNumberSlots> pickPos{};   // PickPos, by number
    std::array<int16_t, kNumberSlots> bankerPos{};    // DanPos, by number
    int16_t activeNum = 0;                         // ActiveNum
    bool readyFlag = false;                        // ReadyFlag
    bool bankerMode = false;                       // DantuoMode
    int16_t spinCount = 0;                         // SpinCount: 5 and 2 at start
    int16_t chosenCount = 0;                       // ChosenCount
    std::array<int16_t, kNumberSlots> predictList{};  // PredictList: the spin's result, positions from 0
};

struct BoardState {
    ZoneBoardState front;
    ZoneBoardState back;
    int32_t ticketCount = 0;  // TicketCount, the last result of Zhushu
    bool fromSpin = false;    // FromSpin: expansions take PredictList instead of PickList
    bool multiMode = false;   // MultiMode: GAgan writes MultiTable instead of expanding
    int16_t multiCount = 0;   // MultiCount: rows of MultiTable in use
    // MultiTable: the tickets kept from successive spins, fig1..fig7 (at most 11,520 rows).
    std::vector<std::array<int16_t, 7>> multiTable;
};
