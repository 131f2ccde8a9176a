#include "picking/spin_simulator.h"

#include "workspace/prompter.h"

#include <cmath>
#include <limits>
#include <vector>

const SpinZoneOptions& SpinZoneOptions::of(Zone zone) {
    static const SpinZoneOptions front{Zone::Front, 16, 15, 16, 0, true};
    static const SpinZoneOptions back{Zone::Back, 9, 8, 8, 35, false};
    return zone == Zone::Front ? front : back;
}

double spinBarWidth(int pickCount, double hitPercent) {
    if (pickCount <= 0) return 0;
    return 3.0 - (100.0 / pickCount * 3.0) + hitPercent * 3.0;
}

// ---- SpinZone ----

void SpinZone::draw(SpinRandom& random, int k, int n) {
    const int size = m_board.size();
    for (int i = 0; i < k; ++i) {
        // Int(N * r) + 1 in single precision, folded onto the n picks: the first N mod n
        // positions of PickList come up once more per N draws than the others.
        int index = static_cast<int>(std::floor(static_cast<float>(size) * random.next())) + 1;
        while (index > n) index -= n;
        m_drawIndex[static_cast<size_t>(i)] = static_cast<int16_t>(index);
    }
}

bool SpinZone::tick(SpinRandom& random) {
    random.reseed();
    ZoneBoardState& s = m_board.state();
    const int k = s.spinCount, n = s.pickCount, size = m_board.size();
    // The tick's error trap: nothing to fold onto, more draws than slots, a zone too large.
    if (k < 0 || k > m_opt.positions || n <= 0 || n >= kNumberSlots || size >= kNumberSlots) return false;
    draw(random, k, n);
    for (int i = 0; i < k; ++i) {
        const auto slot = static_cast<size_t>(i);
        const int m = s.pickList[static_cast<size_t>(m_drawIndex[slot])];
        if (m < 0 || m >= kNumberSlots || m_hitTotal == std::numeric_limits<int32_t>::max()) return false;
        m_machinePick[slot] = static_cast<int16_t>(m);
        ++m_hitCount[static_cast<size_t>(m)];
        ++m_hitTotal;
        m_prevPredict[slot] = s.predictList[slot];
        // The seed of the top-k scan: the numbers 0..k-1 with their shares of the last tick.
        m_topPercent[slot] = static_cast<float>(m_hitPercent[slot]);
        s.predictList[slot] = static_cast<int16_t>(i);
    }
    sortKeepingZeros(m_machinePick, static_cast<size_t>(m_opt.positions - 1));
    if (m_hitTotal == 0) return false;  // a spin of no numbers has no shares
    for (int j = 1; j <= size; ++j)
        m_hitPercent[static_cast<size_t>(j)] =
            static_cast<double>(m_hitCount[static_cast<size_t>(j)]) / m_hitTotal * 100;
    scanTop(k, size);
    sortKeepingZeros(s.predictList, static_cast<size_t>(m_opt.predictLast));
    return updateStableCount(k);
}

void SpinZone::scanTop(int k, int size) {
    ZoneBoardState& s = m_board.state();
    for (int j = k; j <= size; ++j) {
        // The smallest share moves to slot 0, and only a strictly larger one replaces it: on
        // equal shares the lower number stays.
        for (int slot = 0; slot < k; ++slot) {
            const auto sl = static_cast<size_t>(slot);
            if (m_topPercent[sl] < m_topPercent[0]) {
                std::swap(m_topPercent[sl], m_topPercent[0]);
                std::swap(s.predictList[sl], s.predictList[0]);
            }
        }
        const auto share = static_cast<float>(m_hitPercent[static_cast<size_t>(j)]);
        if (share > m_topPercent[0]) {
            m_topPercent[0] = share;
            s.predictList[0] = static_cast<int16_t>(j);
        }
    }
}

bool SpinZone::updateStableCount(int k) {
    // A spin of all 16 front slots is never compared, so it has no end by itself.
    if (k < 1 || k > m_opt.lastCompared) return true;
    const ZoneBoardState& s = m_board.state();
    bool same = true;
    for (int i = 0; i < k; ++i)
        same = same && m_prevPredict[static_cast<size_t>(i)] == s.predictList[static_cast<size_t>(i)];
    if (!same) {
        m_stableCount = 0;
        return true;
    }
    if (m_stableCount == std::numeric_limits<int16_t>::max()) return false;
    ++m_stableCount;
    return true;
}

void SpinZone::resetCounts() {
    if (!m_opt.resetClearsCounts) return;
    for (int i = 0; i <= m_opt.predictLast; ++i) m_board.state().predictList[static_cast<size_t>(i)] = 0;
    m_drawIndex.fill(0);
    m_machinePick.fill(0);
    m_prevPredict.fill(0);
    m_hitCount.fill(0);
    m_hitPercent.fill(0);
    m_hitTotal = 0;
}

void SpinZone::clear() {
    m_board.state().predictList.fill(0);
    m_drawIndex.fill(0);
    m_machinePick.fill(0);
    m_prevPredict.fill(0);
    m_topPercent.fill(0);
    m_hitCount.fill(0);
    m_hitPercent.fill(0);
    m_hitTotal = 0;
    m_stableCount = 0;
}

// ---- SpinSimulator ----

SpinSimulator::SpinSimulator(NumberBoard& board)
    : m_board(board),
      m_front(SpinZoneOptions::of(Zone::Front), board.zone(Zone::Front)),
      m_back(SpinZoneOptions::of(Zone::Back), board.zone(Zone::Back)) {}

SpinSimulator::TickOutcome SpinSimulator::runUntilStopped(SpinRandom& random, int64_t maxTicks,
                                                          int64_t* ticks) {
    int64_t done = 0;
    TickOutcome outcome = TickOutcome::Running;
    while ((m_frontTimer || m_backTimer) && done < maxTicks) {
        if (m_backTimer) outcome = tickBack(random);
        if (outcome == TickOutcome::Finished || outcome == TickOutcome::Stopped) break;
        if (m_frontTimer) tickFront(random);
        ++done;
    }
    if (ticks) *ticks = done;
    return outcome;
}

void SpinSimulator::tickFront(SpinRandom& random) {
    if (m_front.tick(random)) ++m_spinRound;
}

SpinSimulator::TickOutcome SpinSimulator::tickBack(SpinRandom& random) {
    if (!m_back.tick(random)) return TickOutcome::Running;
    ++m_spinRound;
    // The back tick keeps both timers going; the start command starts only this one.
    m_frontTimer = m_backTimer = true;
    if (m_front.stableCount() >= m_threshold && m_back.stableCount() >= m_threshold) return finishTicket();
    return TickOutcome::Running;
}

SpinSimulator::TickOutcome SpinSimulator::finishTicket() {
    // The controls stand as after a pause, with the reset offered too.
    pause();
    NumberBoard& b = m_board;
    b.resetEnabled = b.resetItemEnabled = true;
    // Past the table's last row the tick ends here, without a row, a new spin or a question.
    if (m_keptCount == std::numeric_limits<int16_t>::max()) return TickOutcome::Stopped;
    ++m_keptCount;
    if (m_keptCount > kMultiRows) return TickOutcome::Stopped;
    keepTicket();
    if (m_keptCount < b.state().multiCount) {
        reset();
        return TickOutcome::NextTicket;
    }
    return TickOutcome::Finished;
}

void SpinSimulator::keepTicket() {
    // Columns 6 and 7 repeat the first two front numbers, not the back prediction: a kept
    // ticket has just this form.
    std::vector<std::array<int16_t, 7>>& table = m_board.state().multiTable;
    if (static_cast<int>(table.size()) < m_keptCount) table.resize(static_cast<size_t>(m_keptCount));
    const std::array<int16_t, kNumberSlots>& p = m_board.state().front.predictList;
    table[static_cast<size_t>(m_keptCount - 1)] = {p[0], p[1], p[2], p[3], p[4], p[0], p[1]};
}

bool SpinSimulator::guardEmptyZones() {
    // The banker menu enables the start without regard to the back zone: with no back picks
    // the draws would have nothing to fold onto, so no spin starts.
    if (m_board.state().back.pickCount > 0) return true;
    m_board.startEnabled = m_board.startItemEnabled = false;
    return false;
}

void SpinSimulator::start() {
    if (!guardEmptyZones()) return;
    NumberBoard& b = m_board;
    m_keptCount = 0;
    b.predictionExpansion = true;
    const ZoneBoardState& front = b.state().front;
    if (front.spinCount >= front.pickCount) {
        // Nothing to choose from: no timer runs.
        b.startEnabled = b.startItemEnabled = b.resetEnabled = b.resetItemEnabled = false;
        b.pauseEnabled = b.pauseItemEnabled = true;
        stopTimers();
        return;
    }
    b.predictionExpansion = false;
    b.startEnabled = b.startItemEnabled = false;
    m_backTimer = true;
    b.pauseEnabled = b.pauseItemEnabled = true;
    b.resetEnabled = b.resetItemEnabled = true;
}

void SpinSimulator::startFromMenu() {
    if (!guardEmptyZones()) return;
    NumberBoard& b = m_board;
    b.predictionExpansion = true;
    m_frontTimer = m_backTimer = true;
    b.startEnabled = b.startItemEnabled = false;
    b.pauseEnabled = b.pauseItemEnabled = true;
}

void SpinSimulator::pause() {
    stopTimers();
    NumberBoard& b = m_board;
    b.predictionExpansion = true;
    m_startCaption = kContinueCaption;
    b.startEnabled = b.startItemEnabled = true;
    b.pauseEnabled = b.pauseItemEnabled = false;
}

void SpinSimulator::reset() {
    m_front.setStableCount(0);
    m_back.setStableCount(0);
    m_board.predictionExpansion = false;
    resetFromMenu();
}

void SpinSimulator::resetFromMenu() {
    NumberBoard& b = m_board;
    m_frontTimer = m_backTimer = true;
    m_front.resetCounts();
    m_back.resetCounts();
    m_spinRound = 0;
    b.startEnabled = b.startItemEnabled = false;
    b.pauseEnabled = b.pauseItemEnabled = true;
}

void SpinSimulator::clear() {
    m_front.clear();
    m_back.clear();
    m_spinRound = 0;
}

int32_t SpinSimulator::thresholdForItem(const game_rules::StabilityItem& item) {
    // 无穷大 saves 8000 but spins to 30000.
    return item.index == 8 ? kInfiniteThreshold : thresholdForStored(item.value);
}

int32_t SpinSimulator::thresholdForStored(int coefficient) {
    return static_cast<int32_t>(std::floor(coefficient * 0.05 * 20));
}

std::optional<int16_t> SpinSimulator::parseTicketCount(const QString& answer) {
    bool ok = false;
    const double value = answer.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value)) return std::nullopt;
    // Rounded half to even into 16 bits; a number beyond them is no count either.
    const double rounded = std::nearbyint(value);
    if (rounded < std::numeric_limits<int16_t>::min() || rounded > std::numeric_limits<int16_t>::max())
        return std::nullopt;
    return static_cast<int16_t>(rounded);
}

bool SpinSimulator::askTicketCount(Prompter& prompter) {
    const QString answer = prompter.askText(QStringLiteral("摇奖注数设置"),
                                            QStringLiteral("请输入单词摇奖生成注数！"), QStringLiteral("1"));
    const std::optional<int16_t> count = parseTicketCount(answer);
    if (!count) {
        prompter.inform(QStringLiteral("输入错误"), QStringLiteral("请输入整数数字"),
                        Prompter::Icon::Warning);
        return false;
    }
    // Once set, the multi-ticket mode stays for the rest of the run.
    m_board.state().multiCount = *count;
    m_board.state().multiMode = true;
    return true;
}
