#pragma once

// The number board of the main window as logic: the two zones' buttons with picks and bankers,
// 全选/反选/重选, the counts, Zhushu and its status text, the ready and start rules, the mode
// menus under 组号方式 and the commands that hand the picks on. The window draws what this
// class holds (button states, enabled and checked entries, the status text) and forwards
// clicks; what belongs to the spin simulator is reached through BoardEvents.

#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <cstdint>

enum class Zone { Front, Back };

// Everything in which the two zones differ. The front zone has no suffix, the back zone "Hou".
struct ZoneOptions {
    Zone zone;
    int16_t picks;          // numbers of a ticket in the zone: 5 and 2
    int16_t multiMenuFirst;  // meuDanxuan(5..16), meuDanxuanHou(2..8)
    int16_t multiMenuLast;
    int16_t bankerMenuLast;  // mnuDtuo(1..16), mnuDtuoHou(1..8); the last entry is never touched
    // A left click on a number applies the start rule (back yes, front no: deliberate).
    bool leftClickAppliesStartRule;
    // 反选 and the program click pass this zone's PickCount as both first and third argument
    // of Zhushu (back only).
    bool ownCountForBothInTicketCount;
    // 重选 also resets the spin menus: meuRt, both SpinCounts, meuDanxuan's checks (front only).
    bool reselectResetsSpinMenus;
    // meuDanxuanHou hides the back spin labels (back only).
    bool multiMenuShowsSpinLabels;

    static const ZoneOptions& of(Zone zone);
};

enum class ButtonColour { Black, Red, Green };

// What the window shows of one number button.
struct NumberButton {
    bool pressed = false;
    ButtonColour colour = ButtonColour::Black;
    bool visible = false;
};

// Menu entries indexed by their control index (meuDanxuan(5..16) at [5..16]).
struct IndexedMenu {
    std::array<bool, 17> enabled{};
    std::array<bool, 17> checked{};
};

// One zone of the board: its state in the shared BoardState and its window-facing parts.
class ZoneBoard {
public:
    ZoneBoard(const ZoneOptions& options, ZoneBoardState& state) : m_opt(options), m_s(state) {}

    const ZoneOptions& options() const { return m_opt; }
    ZoneBoardState& state() { return m_s; }
    const ZoneBoardState& state() const { return m_s; }
    int16_t size() const { return m_size; }
    void setSize(int16_t size);

    const NumberButton& button(int n) const { return m_buttons[static_cast<size_t>(n)]; }
    // Label5/Label10 and Label19/Label11: the counts beside "拖" and "胆".
    int16_t pickLabel() const { return m_s.pickCount; }
    int16_t bankerLabel() const { return m_s.bankerCount; }
    bool invertEnabled = false;  // Command42 / Command6
    IndexedMenu multiMenu;       // meuDanxuan / meuDanxuanHou
    IndexedMenu bankerMenu;      // mnuDtuo / mnuDtuoHou

    int16_t totalCount() const { return static_cast<int16_t>(m_s.pickCount + m_s.bankerCount); }
    // Ready rule: picks + bankers exceed the ticket's numbers and bankers are fewer.
    void applyReadyRule() { m_s.readyFlag = totalCount() > m_opt.picks && m_s.bankerCount < m_opt.picks; }

    // The state changes of one number (steps 2 to 4 of the left click and of mnuDan).
    void clearBankerOnClick(int n);
    void togglePick(int n);
    bool toggleBanker(int n);  // mnuDan steps 1 to 4; true when n is now a banker
    void selectAll();
    void invertPicks();  // the list part of 反选
    void reselect();
    void sortPicks();    // Selection_Sort1 / Selection_Sort2

private:
    void removeAt(std::array<int16_t, kNumberSlots>& list, std::array<int16_t, kNumberSlots>& pos, int p,
                  int newCount);
    NumberButton& btn(int n) { return m_buttons[static_cast<size_t>(n)]; }

    const ZoneOptions& m_opt;
    ZoneBoardState& m_s;
    int16_t m_size = 0;
    std::array<NumberButton, kNumberSlots> m_buttons{};
};

// What the board asks of the spin simulator and the windows. The default does nothing.
class BoardEvents {
public:
    virtual ~BoardEvents() = default;
    virtual void stopSpinTimers() {}
    // Counters, machine picks, predictions, each number's counts and percentages, the bars.
    virtual void clearSpinState() {}
    // Dantuomnu: reload the spin's threshold (and with bankers the check mark) from the settings.
    virtual void reloadSpinThreshold(Zone, bool /*withBankers*/) {}
    // meuDanxuanHou: hide the back spin labels and show lblHou1/lblHou2 of index 0..k-1.
    virtual void showBackSpinLabels(int /*k*/) {}
    // meuDanxuan with no spin needed: open the filter window on the prediction.
    virtual void openFilterFromPrediction() {}
};

// The commands that hand the picks on to an expansion.
enum class ListCommand {
    MultiExpansion,
    BankerExpansion,
    SixFrontMultiExpansion,
    SixFrontBankerExpansion,
    PredictionExpansion,
    Wheel,          // mnuRt, mnuQnjz, mnuDtxj open: every back pick takes part
    SixNumberWheel  // mnuFuxj opens
};

class NumberBoard {
public:
    NumberBoard(BoardState& state, int16_t frontSize, int16_t backSize, BoardEvents* events = nullptr);

    ZoneBoard& zone(Zone z) { return z == Zone::Front ? m_front : m_back; }
    const ZoneBoard& zone(Zone z) const { return z == Zone::Front ? m_front : m_back; }
    BoardState& state() { return m_state; }

    // The zone sizes (the buttons above them are hidden).
    void setSizes(int16_t frontSize, int16_t backSize);

    // Mouse on a number button: the left button picks, the right one only makes n the target of
    // the pop-up menu mnuDt / mnuDtHou (returns true: pop it up).
    void leftClick(Zone z, int n);
    bool rightClick(Zone z, int n);
    // cmdClk / cmdClkHou: the left click by program.
    void programClick(Zone z, int n);
    // mnuDan / mnuDanHou on ActiveNum.
    void toggleBanker(Zone z);
    // 全选 (Command41 / Command7), 反选 (Command42 / Command6), 重选 (Command45 / Command8).
    void selectAll(Zone z);
    void invert(Zone z);
    void reselect(Zone z);

    // The menu 组号方式 opens (mnuSl).
    void openModeMenu();
    // Dantuomnu / DantuomnuHou.
    void syncSpinMenus(Zone z);
    // meuDanxuan(k) / meuDanxuanHou(k) and mnuDtuo(k) / mnuDtuoHou(k).
    void chooseMultiEntry(Zone z, int k);
    void chooseBankerEntry(Zone z, int k);

    // What mnuLst, mnuDtlst, mnu8Lst, mnuDt8lst and meuAgarr do before their window opens:
    // the spin counts, the sorts, FromSpin.
    void prepareList(ListCommand command);

    // Zhushu: C(n1, k1) * C(n2, k2) in 32-bit steps; sets TicketCount and the status text.
    int32_t updateTicketCount(int n1, int k1, int n2, int k2);
    static int32_t ticketCount(int n1, int k1, int n2, int k2);

    // Window-facing state.
    QString statusText;  // StatusBar1 panel 3
    bool startEnabled = false, startItemEnabled = false;  // start
    bool resetEnabled = false, resetItemEnabled = false;  // reset of the spin
    bool pauseEnabled = false, pauseItemEnabled = false;  // speed of the spin
    bool predictionExpansion = true;
    bool wheelEntries = true;  // the wheel entries (all of them)
    struct ModeMenu {
        bool frontBankerSpin = false, bankerWheel = false, backBankerSpin = false;
        bool frontMultiSpin = false, backMultiSpin = false;
        bool multiExpansion = false, bankerExpansion = false, sixFrontMultiExpansion = false,
             sixFrontBankerExpansion = false;
    } modeMenu;

private:
    void afterPickChange(Zone z, bool applyStartRule, bool ownCountQuirk);
    void applyStartRule();
    void applyCountRule(int first, int third);
    void setBankerModes();
    void chooseMode(Zone z, int k, bool fromBankerMenu);

    BoardState& m_state;
    BoardEvents m_noEvents;
    BoardEvents* m_events;
    ZoneBoard m_front;
    ZoneBoard m_back;
};
