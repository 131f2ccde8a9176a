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
    int16_t Znum = 0, XZnum = 0, DZnum = 0, Zjnum = 0, Zonum = 0, Zgnum = 0, Zynum = 0, Sumgwnum = 0;
    int16_t Cnum = 0, Onum = 0, Jnum = 0, Bignum = 0, Smlnum = 0, Mornum = 0, Ltlnum = 0, Modenum = 0, Lnum = 0,
            Lxnum = 0;
    int16_t Mxzounum = 0, Apzounum = 0, Fcodp = 0;
    float R = 0, a = 0;
    std::array<int16_t, 4> Qnum{};
    std::array<double, 5> Lcz{};
    int16_t intYljz = 0;
};

// The draw history with its per-draw arrays; row 0 is the zero row before the first draw, so
// row Idx is draw Idx and Drawnum = rows - 1.
struct DrawHistory {
    std::vector<DrawNumbers> figarr{DrawNumbers{}};
    std::vector<DrawParams> front{DrawParams{}};  // fig
    std::vector<DrawParams> back{DrawParams{}};   // fighou
    std::vector<DrawParams> both{DrawParams{}};   // figquan

    int drawnum() const { return static_cast<int>(figarr.size()) - 1; }
    int32_t lastIssue() const { return figarr.back()[0]; }
    void clear() { *this = DrawHistory{}; }
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
    int16_t danCount = 0;                          // DanCount
    std::array<int16_t, kNumberSlots> pickList{};  // PickList, by position from 1
    std::array<int16_t, kNumberSlots> danList{};   // DanList, by position from 1
    std::array<bool, kNumberSlots> pickFlag{};     // PickFlag, by number
    std::array<bool, kNumberSlots> danFlag{};      // DanFlag, by number
    std::array<int16_t, kNumberSlots> pickPos{};   // PickPos, by number
    std::array<int16_t, kNumberSlots> danPos{};    // DanPos, by number
    int16_t activeNum = 0;                         // ActiveNum
    bool readyFlag = false;                        // ReadyFlag
    bool dantuoMode = false;                       // DantuoMode
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
