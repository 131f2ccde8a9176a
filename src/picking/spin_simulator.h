#pragma once

// The spin simulator (摇奖): draws from the board's picks tick after tick, counts each number's
// share and keeps the numbers with the highest shares as the prediction (预测). A spin ends
// when both zones' predictions stayed the same for `threshold` ticks. The window runs the ticks
// on two timers and mirrors the state kept here; the command line loops them.

#include "picking/number_board.h"
#include "picking/spin_random.h"
#include "workspace/game_rules.h"

#include <QString>

#include <array>
#include <cstdint>
#include <optional>

class Prompter;

// Everything in which the two zones' spins differ.
struct SpinZoneOptions {
    Zone zone;
    int positions;            // drawn and predicted positions: 16 (Label1/Label2), 9 (lblHou1/lblHou2)
    int lastCompared;      // the stable count compares spins of 1..15 (front) or 1..8 (back) numbers
    int predictLast;       // the upper bound of PredictList that the sort runs over: 16 and 8
    int barOffset;         // Label6/Picture2 index of number n: n (front) or 35 + n (back)
    bool resetClearsCounts;  // ComRst clears the front's counts; the back's run on

    static const SpinZoneOptions& of(Zone zone);
};

// The bar of a number: 3 units at the fair share 100 / pickCount, 3 more per percentage point.
double spinBarWidth(int pickCount, double hitPercent);

// One zone's spin. Its prediction lives in the board (PredictList, read by the expansions).
class SpinZone {
public:
    SpinZone(const SpinZoneOptions& options, ZoneBoard& board) : m_opt(options), m_board(board) {}

    const SpinZoneOptions& options() const { return m_opt; }
    // One tick (draw, count, shares, top-k scan, stable count). False when the tick ended early
    // without a change of the stable count: no picks, too many to draw, or a counter at its end.
    bool tick(SpinRandom& random);
    // ComRst: a zone whose counts do not survive a reset starts them again.
    void resetCounts();
    // Everything the spin knows of the zone, as a change of the board's modes asks.
    void clear();

    int spinCount() const { return m_board.state().spinCount; }
    int pickCount() const { return m_board.state().pickCount; }
    int16_t machinePick(int i) const { return m_machinePick[static_cast<size_t>(i)]; }  // Label1 / lblHou1
    int16_t predicted(int i) const { return m_board.state().predictList[static_cast<size_t>(i)]; }
    int32_t hitCount(int n) const { return m_hitCount[static_cast<size_t>(n)]; }
    int32_t hitTotal() const { return m_hitTotal; }
    double hitPercent(int n) const { return m_hitPercent[static_cast<size_t>(n)]; }  // Label6
    double barWidth(int n) const { return spinBarWidth(pickCount(), hitPercent(n)); }  // Picture2
    int16_t stableCount() const { return m_stableCount; }
    void setStableCount(int16_t count) { m_stableCount = count; }

    // Selection_Sort: ascending, but a zero never moves towards the front.
    template <size_t N>
    static void sortKeepingZeros(std::array<int16_t, N>& list, size_t last);

private:
    static constexpr size_t kSlots = 16;
    void draw(SpinRandom& random, int k, int n);
    void scanTop(int k, int size);
    bool updateStableCount(int k);

    const SpinZoneOptions& m_opt;
    ZoneBoard& m_board;
    std::array<int16_t, kSlots> m_drawIndex{};    // DrawIndex
    std::array<int16_t, kSlots> m_machinePick{};  // MachinePick
    std::array<int32_t, kNumberSlots> m_hitCount{};
    int32_t m_hitTotal = 0;
    std::array<double, kNumberSlots> m_hitPercent{};
    std::array<int16_t, kSlots> m_prevPredict{};  // PrevPredict
    std::array<float, kSlots> m_topPercent{};     // TopPercent: single precision, as compared
    int16_t m_stableCount = 0;
};

template <size_t N>
void SpinZone::sortKeepingZeros(std::array<int16_t, N>& list, size_t last) {
    for (size_t i = 0; i <= last && i < N; ++i)
        for (size_t j = i + 1; j <= last && j < N; ++j)
            if (list[i] > list[j] && list[j] != 0) std::swap(list[i], list[j]);
}

// The spin of both zones with its commands, its end and the state of its controls. The
// enabled state of the controls is the board's (the board's rules set them too); the spin adds
// the caption of the start command and the two timers.
class SpinSimulator {
public:
    static inline const QString kStartCaption = QStringLiteral("开始(&S)");
    static inline const QString kContinueCaption = QStringLiteral("继续(&G)");
    static inline const QString kEndTitle = QStringLiteral("通告");
    static inline const QString kEndQuestion =
        QStringLiteral("预测结果已经得出！是否现在就将结果排列组合出来，以便再观察参数和缩水过滤？");
    static constexpr int kMultiRows = 11520;  // the rows MultiTable holds
    static constexpr int32_t kInfiniteThreshold = 30000;

    explicit SpinSimulator(NumberBoard& board);

    SpinZone& zone(Zone z) { return z == Zone::Front ? m_front : m_back; }
    const SpinZone& zone(Zone z) const { return z == Zone::Front ? m_front : m_back; }
    int zoneSize(Zone z) const { return m_board.zone(z).size(); }  // Bitnum, BitnumHou

    // What the end of a back tick asks of the window.
    enum class TickOutcome {
        Running,     // not stable yet (or the tick ended early)
        NextTicket,  // a ticket was kept and the next spin started at once
        Finished,    // the spin is over: ask whether to hand the prediction on
        Stopped,     // the spin is over, the table of tickets full: nothing more to do
    };
    void tickFront(SpinRandom& random);  // Timer1
    TickOutcome tickBack(SpinRandom& random);  // Timer2
    // The ticks as the two timers run them, without the timers (back first: the start command
    // starts only the back timer), until the spin stops, the timers are off or `maxTicks`
    // rounds ran. A kept ticket that starts the next spin goes on. Returns the last outcome.
    TickOutcome runUntilStopped(SpinRandom& random, int64_t maxTicks, int64_t* ticks = nullptr);

    // The commands.
    void start();             // ComSta
    void startFromMenu();     // meuSta
    void pause();             // ComSpd, meuSup
    void reset();             // ComRst
    void resetFromMenu();     // meuRst
    // The board's hooks: a board change stops the timers and clears the spin's counts.
    void stopTimers() { m_frontTimer = m_backTimer = false; }
    void clear();

    bool frontTimerOn() const { return m_frontTimer; }  // Timer1
    bool backTimerOn() const { return m_backTimer; }    // Timer2
    const QString& startCaption() const { return m_startCaption; }  // ComSta, meuSta

    // The stability coefficient: an entry of 稳定系数 and the coefficient stored in Wd.
    static int32_t thresholdForItem(const game_rules::StabilityItem& item);
    static int32_t thresholdForStored(int coefficient);
    void setThreshold(int32_t threshold) { m_threshold = threshold; }
    int32_t threshold() const { return m_threshold; }

    // mnuMilt: asks how many tickets a run keeps; false (after the message) on a wrong answer.
    bool askTicketCount(Prompter& prompter);
    // The count as mnuMilt takes it: a number rounded to a 16-bit integer, else nothing.
    static std::optional<int16_t> parseTicketCount(const QString& answer);

    int32_t spinRound() const { return m_spinRound; }  // SpinRound
    int16_t keptCount() const { return m_keptCount; }  // KeptCount

private:
    TickOutcome finishTicket();
    void keepTicket();
    bool guardEmptyZones();

    NumberBoard& m_board;
    SpinZone m_front;
    SpinZone m_back;
    bool m_frontTimer = false;
    bool m_backTimer = false;
    int32_t m_threshold = kInfiniteThreshold;
    int32_t m_spinRound = 0;
    int16_t m_keptCount = 0;
    QString m_startCaption = kStartCaption;
};
