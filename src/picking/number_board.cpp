#include "picking/number_board.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kSlots = kNumberSlots;  // list and flag arrays run 0..36

bool inSlots(int i) { return i >= 0 && i < kSlots; }

const ZoneOptions kFrontOptions{Zone::Front, 5, 5, 16, 16, false, false, true, false};
const ZoneOptions kBackOptions{Zone::Back, 2, 2, 8, 8, true, true, false, true};

// Menu entries keep the state they have in the window's design until a rule touches them.
constexpr bool kDesignEnabled = true;

}  // namespace

const ZoneOptions& ZoneOptions::of(Zone zone) { return zone == Zone::Front ? kFrontOptions : kBackOptions; }

// ---- ZoneBoard ----

void ZoneBoard::setSize(int16_t size) {
    m_size = size;
    for (int n = 1; n < kSlots; ++n) btn(n).visible = n <= size;
}

// Removal from a list at position p: every following element moves one position down, for i
// from p to the new count, and the position entry of each moved number decreases by one.
void ZoneBoard::removeAt(std::array<int16_t, kNumberSlots>& list, std::array<int16_t, kNumberSlots>& pos, int p,
                         int newCount) {
    for (int i = p; i <= newCount; ++i) {
        if (!inSlots(i) || !inSlots(i + 1)) break;
        list[static_cast<size_t>(i)] = list[static_cast<size_t>(i + 1)];
        const int moved = list[static_cast<size_t>(i)];
        if (inSlots(moved)) --pos[static_cast<size_t>(moved)];
    }
}

void ZoneBoard::clearBankerOnClick(int n) {
    const auto i = static_cast<size_t>(n);
    if (m_s.bankerFlag[i]) {
        m_s.bankerFlag[i] = false;
        --m_s.bankerCount;
        removeAt(m_s.bankerList, m_s.bankerPos, m_s.bankerPos[i], m_s.bankerCount);
    }
    btn(n).colour = ButtonColour::Black;
}

void ZoneBoard::togglePick(int n) {
    const auto i = static_cast<size_t>(n);
    m_s.pickFlag[i] = !m_s.pickFlag[i];
    btn(n).pressed = m_s.pickFlag[i];
    if (m_s.pickFlag[i]) {
        invertEnabled = true;
        ++m_s.pickCount;
        m_s.pickPos[i] = m_s.pickCount;
        if (inSlots(m_s.pickCount)) m_s.pickList[static_cast<size_t>(m_s.pickCount)] = static_cast<int16_t>(n);
        btn(n).colour = ButtonColour::Red;
        return;
    }
    --m_s.pickCount;
    removeAt(m_s.pickList, m_s.pickPos, m_s.pickPos[i], m_s.pickCount);
    btn(n).colour = ButtonColour::Black;
}

bool ZoneBoard::toggleBanker(int n) {
    const auto i = static_cast<size_t>(n);
    if (m_s.pickFlag[i]) {
        // The button keeps its pressed state.
        m_s.pickFlag[i] = false;
        --m_s.pickCount;
        removeAt(m_s.pickList, m_s.pickPos, m_s.pickPos[i], m_s.pickCount);
    }
    m_s.bankerFlag[i] = !m_s.bankerFlag[i];
    if (m_s.bankerFlag[i]) {
        ++m_s.bankerCount;
        m_s.bankerPos[i] = m_s.bankerCount;
        if (inSlots(m_s.bankerCount))
            m_s.bankerList[static_cast<size_t>(m_s.bankerCount)] = static_cast<int16_t>(n);
        btn(n).colour = ButtonColour::Green;
        return true;
    }
    --m_s.bankerCount;
    removeAt(m_s.bankerList, m_s.bankerPos, m_s.bankerPos[i], m_s.bankerCount);
    btn(n).colour = ButtonColour::Black;
    return false;
}

void ZoneBoard::selectAll() {
    // Bankers stay: their numbers are then in PickList and in DanList.
    m_s.pickCount = m_size;
    for (int n = 1; n <= m_size; ++n) {
        const auto i = static_cast<size_t>(n);
        m_s.pickList[i] = static_cast<int16_t>(n);
        m_s.pickFlag[i] = true;
        m_s.pickPos[i] = static_cast<int16_t>(n);
        btn(n).pressed = true;
        btn(n).colour = ButtonColour::Red;
    }
    invertEnabled = true;
}

void ZoneBoard::invertPicks() {
    std::vector<int16_t> scratch{0};  // positions from 1
    for (int n = 1; n <= m_size; ++n) {
        const auto i = static_cast<size_t>(n);
        if (!m_s.pickFlag[i] && !m_s.bankerFlag[i]) {
            scratch.push_back(static_cast<int16_t>(n));
            btn(n).pressed = true;
            btn(n).colour = ButtonColour::Red;
        } else {
            btn(n).pressed = false;
            btn(n).colour = ButtonColour::Black;
        }
        m_s.pickFlag[i] = !m_s.pickFlag[i];
        if (m_s.bankerFlag[i]) btn(n).colour = ButtonColour::Green;
    }
    // May be negative after 全选 with bankers; the loop then runs no round.
    m_s.pickCount = static_cast<int16_t>(m_size - m_s.pickCount - m_s.bankerCount);
    for (int k = 1; k <= m_s.pickCount && k < static_cast<int>(scratch.size()); ++k) {
        const int16_t n = scratch[static_cast<size_t>(k)];
        m_s.pickList[static_cast<size_t>(k)] = n;
        m_s.pickPos[static_cast<size_t>(n)] = static_cast<int16_t>(k);
    }
}

void ZoneBoard::reselect() {
    for (int n = 1; n < kSlots; ++n) {
        const auto i = static_cast<size_t>(n);
        m_s.bankerFlag[i] = false;
        m_s.pickFlag[i] = false;
        m_s.pickPos[i] = 0;
        btn(n).pressed = false;
        btn(n).colour = ButtonColour::Black;
    }
    m_s.pickCount = 0;
    m_s.bankerCount = 0;
    setSize(m_size);
}

void ZoneBoard::sortPicks() {
    // Sorts the list only: PickPos keeps its former values.
    const int count = std::min<int>(m_s.pickCount, kSlots - 1);
    for (int i = 1; i <= count; ++i)
        for (int j = i + 1; j <= count; ++j)
            if (m_s.pickList[static_cast<size_t>(i)] > m_s.pickList[static_cast<size_t>(j)])
                std::swap(m_s.pickList[static_cast<size_t>(i)], m_s.pickList[static_cast<size_t>(j)]);
}

// ---- NumberBoard ----

NumberBoard::NumberBoard(BoardState& state, int16_t frontSize, int16_t backSize, BoardEvents* events)
    : m_state(state),
      m_events(events ? events : &m_noEvents),
      m_front(ZoneOptions::of(Zone::Front), state.front),
      m_back(ZoneOptions::of(Zone::Back), state.back) {
    for (ZoneBoard* z : {&m_front, &m_back}) {
        const ZoneOptions& o = z->options();
        z->state().spinCount = o.picks;
        for (int k = 0; k < 17; ++k) {
            z->multiMenu.enabled[static_cast<size_t>(k)] = kDesignEnabled;
            z->bankerMenu.enabled[static_cast<size_t>(k)] = kDesignEnabled;
        }
        z->multiMenu.checked[static_cast<size_t>(o.multiMenuFirst)] = true;
    }
    setSizes(frontSize, backSize);
}

void NumberBoard::setSizes(int16_t frontSize, int16_t backSize) {
    m_front.setSize(frontSize);
    m_back.setSize(backSize);
}

void NumberBoard::applyStartRule() {
    const bool ready = m_state.front.readyFlag && m_state.back.readyFlag;
    startEnabled = ready;
    startItemEnabled = ready;
}

void NumberBoard::setBankerModes() {
    m_state.front.bankerMode = m_state.front.bankerCount != 0;
    m_state.back.bankerMode = m_state.back.bankerCount != 0;
}

void NumberBoard::applyCountRule(int first, int third) {
    const int f = m_front.totalCount();
    const int b = m_back.totalCount();
    const int fp = m_front.options().picks, bp = m_back.options().picks;
    // Only picks that make more than one ticket change the status bar.
    if ((b < bp || f <= fp) && (b <= bp || f < fp)) return;
    updateTicketCount(first, fp - m_state.front.bankerCount, third, bp - m_state.back.bankerCount);
}

int32_t NumberBoard::ticketCount(int n1, int k1, int n2, int k2) {
    int32_t count = 1;
    const auto factor = [&count](int n, int k) {
        for (int i = 1; i <= k; ++i) {
            count = static_cast<int32_t>(static_cast<int64_t>(count) * (n - i + 1));
            // A division assigned to a 32-bit integer rounds half to even.
            count = static_cast<int32_t>(std::nearbyint(static_cast<double>(count) / i));
        }
    };
    factor(n1, k1);
    factor(n2, k2);
    return count;
}

int32_t NumberBoard::updateTicketCount(int n1, int k1, int n2, int k2) {
    const int32_t count = ticketCount(n1, k1, n2, k2);
    m_state.ticketCount = count;
    const auto zoneText = [](const ZoneBoard& z, int n, int k) {
        if (z.state().bankerCount == 0) return QString::number(n) + QStringLiteral("码");
        return QString::number(n) + QStringLiteral("拖") + QString::number(z.options().picks - k) + QStringLiteral("胆");
    };
    statusText = QStringLiteral("前区：") + zoneText(m_front, n1, k1) + QStringLiteral(" 后区：") +
                 zoneText(m_back, n2, k2) + QStringLiteral(" 共计：") + QString::number(count) + QStringLiteral("注");
    return count;
}

void NumberBoard::afterPickChange(Zone z, bool applyStart, bool ownCountQuirk) {
    ZoneBoard& zb = zone(z);
    zb.applyReadyRule();
    if (applyStart) applyStartRule();
    setBankerModes();
    if (ownCountQuirk) applyCountRule(zb.state().pickCount, zb.state().pickCount);
    else applyCountRule(m_state.front.pickCount, m_state.back.pickCount);
}

void NumberBoard::leftClick(Zone z, int n) {
    ZoneBoard& zb = zone(z);
    if (n < 1 || n > zb.size()) return;
    zb.state().activeNum = static_cast<int16_t>(n);
    zb.clearBankerOnClick(n);
    zb.togglePick(n);
    afterPickChange(z, zb.options().leftClickAppliesStartRule, false);
    if (zb.state().bankerCount != 0) syncSpinMenus(z);
}

void NumberBoard::programClick(Zone z, int n) {
    ZoneBoard& zb = zone(z);
    if (n < 1 || n > zb.size()) return;
    zb.state().activeNum = static_cast<int16_t>(n);
    zb.clearBankerOnClick(n);
    zb.togglePick(n);
    afterPickChange(z, true, zb.options().ownCountForBothInTicketCount);
    if (zb.state().bankerCount != 0) syncSpinMenus(z);
}

bool NumberBoard::rightClick(Zone z, int n) {
    ZoneBoard& zb = zone(z);
    if (n < 1 || n > zb.size()) return false;
    zb.state().activeNum = static_cast<int16_t>(n);
    return true;
}

void NumberBoard::toggleBanker(Zone z) {
    ZoneBoard& zb = zone(z);
    const int n = zb.state().activeNum;
    if (n < 1 || n > zb.size()) return;
    if (zb.toggleBanker(n)) {
        startEnabled = true;
        startItemEnabled = true;
    }
    afterPickChange(z, true, false);
}

void NumberBoard::selectAll(Zone z) {
    ZoneBoard& zb = zone(z);
    zb.state().readyFlag = true;
    applyStartRule();
    zb.selectAll();
    afterPickChange(z, true, false);
}

void NumberBoard::invert(Zone z) {
    ZoneBoard& zb = zone(z);
    m_events->stopSpinTimers();
    zb.invertPicks();
    afterPickChange(z, true, zb.options().ownCountForBothInTicketCount);
}

void NumberBoard::reselect(Zone z) {
    ZoneBoard& zb = zone(z);
    m_events->stopSpinTimers();
    zb.reselect();
    startEnabled = startItemEnabled = resetEnabled = resetItemEnabled = false;
    if (zb.options().reselectResetsSpinMenus) {
        wheelEntries = false;
        m_state.front.spinCount = m_front.options().picks;
        m_state.back.spinCount = m_back.options().picks;
        const ZoneOptions& o = m_front.options();
        for (int k = o.multiMenuFirst; k <= o.multiMenuLast; ++k)
            m_front.multiMenu.checked[static_cast<size_t>(k)] = false;
        m_front.multiMenu.checked[static_cast<size_t>(m_state.front.spinCount)] = true;
    }
    statusText.clear();
}

void NumberBoard::openModeMenu() {
    const ZoneBoardState& f = m_state.front;
    const ZoneBoardState& b = m_state.back;
    modeMenu.frontBankerSpin = modeMenu.bankerWheel = f.bankerCount > 0;
    m_state.front.bankerMode = f.bankerCount > 0;
    modeMenu.backBankerSpin = b.bankerCount > 0;
    m_state.back.bankerMode = b.bankerCount > 0;
    if (f.bankerCount == 0 || b.bankerCount == 0) {
        modeMenu.frontMultiSpin = f.pickCount >= 6;
        modeMenu.backMultiSpin = b.pickCount >= 3;
    }
    const int backTotal = b.pickCount + b.bankerCount;
    const int frontTotal = f.pickCount + f.bankerCount;
    modeMenu.multiExpansion = backTotal >= 2 && f.pickCount >= 6;
    modeMenu.bankerExpansion = backTotal >= 2 && frontTotal >= 6 && f.bankerCount >= 1;
    modeMenu.sixFrontMultiExpansion = f.pickCount >= 7 && b.pickCount >= 2;
    modeMenu.sixFrontBankerExpansion = backTotal >= 2 && frontTotal >= 7 && f.bankerCount >= 1;
}

void NumberBoard::syncSpinMenus(Zone z) {
    ZoneBoard& zb = zone(z);
    const ZoneOptions& o = zb.options();
    ZoneBoardState& s = zb.state();
    for (int k = o.multiMenuFirst; k <= o.multiMenuLast; ++k)
        zb.multiMenu.enabled[static_cast<size_t>(k)] = false;
    if (s.pickCount >= o.multiMenuFirst)
        for (int k = o.multiMenuFirst; k <= std::min<int>(s.pickCount, o.multiMenuLast); ++k)
            zb.multiMenu.enabled[static_cast<size_t>(k)] = true;
    if (s.pickCount == 0) return;
    if (s.bankerCount == 0) {
        if (s.spinCount == 0) s.spinCount = o.picks;
        m_events->reloadSpinThreshold(z, false);
        return;
    }
    s.spinCount = static_cast<int16_t>(o.picks - s.bankerCount);
    m_events->reloadSpinThreshold(z, true);
    // The entries from picks - DanCount to PickCount remain; the last entry is never touched.
    const int last = o.bankerMenuLast - 1;
    for (int k = 1; k <= last; ++k) zb.bankerMenu.enabled[static_cast<size_t>(k)] = true;
    for (int k = 1; k <= o.picks - 1 - s.bankerCount; ++k)
        zb.bankerMenu.enabled[static_cast<size_t>(k)] = false;
    for (int k = std::max(1, s.pickCount + 1); k <= last; ++k)
        zb.bankerMenu.enabled[static_cast<size_t>(k)] = false;
    if (s.spinCount > 0) chooseBankerEntry(z, s.spinCount);
}

void NumberBoard::chooseMultiEntry(Zone z, int k) { chooseMode(z, k, false); }
void NumberBoard::chooseBankerEntry(Zone z, int k) { chooseMode(z, k, true); }

void NumberBoard::chooseMode(Zone z, int k, bool fromBankerMenu) {
    ZoneBoard& zb = zone(z);
    const ZoneOptions& o = zb.options();
    ZoneBoardState& s = zb.state();
    IndexedMenu& menu = fromBankerMenu ? zb.bankerMenu : zb.multiMenu;
    const int first = fromBankerMenu ? 1 : o.multiMenuFirst;
    const int last = fromBankerMenu ? o.bankerMenuLast : o.multiMenuLast;
    if (k < first || k > last) return;

    s.chosenCount = static_cast<int16_t>(k);
    startEnabled = startItemEnabled = resetEnabled = resetItemEnabled = true;
    predictionExpansion = false;
    m_events->clearSpinState();
    for (int i = first; i <= last; ++i) menu.checked[static_cast<size_t>(i)] = false;
    menu.checked[static_cast<size_t>(k)] = true;
    s.spinCount = static_cast<int16_t>(k);
    if (o.multiMenuShowsSpinLabels) m_events->showBackSpinLabels(k);
    m_events->stopSpinTimers();
    if (s.pickCount > k) {
        // The spin is to run.
        startEnabled = startItemEnabled = resetEnabled = resetItemEnabled = true;
        pauseEnabled = pauseItemEnabled = false;
    } else {
        // The picks are no more than k: they are the prediction.
        startEnabled = resetEnabled = pauseEnabled = startItemEnabled = resetItemEnabled = pauseItemEnabled =
            false;
        for (int i = 0; i < k; ++i) s.predictList[static_cast<size_t>(i)] = s.pickList[static_cast<size_t>(i + 1)];
        if (!fromBankerMenu) {
            m_state.fromSpin = true;
            m_events->openFilterFromPrediction();
        }
    }
    applyCountRule(m_state.front.chosenCount, m_state.back.chosenCount);
}

void NumberBoard::prepareList(ListCommand command) {
    switch (command) {
        case ListCommand::MultiExpansion:
        case ListCommand::BankerExpansion:
            m_state.front.spinCount = m_state.front.pickCount;
            m_state.back.spinCount = m_state.back.pickCount;
            m_front.sortPicks();
            m_back.sortPicks();
            if (command == ListCommand::MultiExpansion) m_state.fromSpin = false;
            return;
        case ListCommand::SixFrontMultiExpansion:
        case ListCommand::SixFrontBankerExpansion:
            m_state.front.spinCount = m_state.front.pickCount;
            m_front.sortPicks();
            return;
        case ListCommand::PredictionExpansion:
            m_state.fromSpin = true;
            return;
        case ListCommand::Wheel:
            m_state.back.spinCount = m_state.back.pickCount;
            m_front.sortPicks();
            m_back.sortPicks();
            return;
        case ListCommand::SixNumberWheel:
            m_front.sortPicks();
            m_back.sortPicks();
            return;
    }
}
