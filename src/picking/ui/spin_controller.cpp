#include "picking/ui/spin_controller.h"

#include "picking/ui/spin_panel.h"
#include "workspace/prompter.h"

#include <QTimer>

#include <algorithm>

SpinController::SpinController(NumberBoard& board, SpinRows& rows, ProbabilityBars& bars, Prompter& prompter,
                               QObject* parent)
    : QObject(parent),
      m_spin(board),
      m_rows(rows),
      m_bars(bars),
      m_prompter(prompter),
      m_random(std::make_unique<ClockSpinRandom>()),
      m_frontTimer(new QTimer(this)),
      m_backTimer(new QTimer(this)) {
    m_frontTimer->setObjectName(QStringLiteral("Timer1"));
    m_backTimer->setObjectName(QStringLiteral("Timer2"));
    for (QTimer* t : {m_frontTimer, m_backTimer}) t->setInterval(kTickInterval);
    connect(m_frontTimer, &QTimer::timeout, this, &SpinController::tickFront);
    connect(m_backTimer, &QTimer::timeout, this, &SpinController::tickBack);
}

SpinController::~SpinController() = default;

void SpinController::syncTimers() {
    const auto follow = [](QTimer* timer, bool on) {
        if (on && !timer->isActive()) timer->start();
        if (!on && timer->isActive()) timer->stop();
    };
    follow(m_frontTimer, m_spin.frontTimerOn());
    follow(m_backTimer, m_spin.backTimerOn());
}

void SpinController::afterCommand() {
    syncTimers();
    emit controlsChanged();
}

void SpinController::start() {
    m_spin.start();
    afterCommand();
}

void SpinController::startFromMenu() {
    m_spin.startFromMenu();
    afterCommand();
}

void SpinController::pause() {
    m_spin.pause();
    afterCommand();
}

void SpinController::reset() {
    m_spin.reset();
    afterCommand();
}

void SpinController::resetFromMenu() {
    m_spin.resetFromMenu();
    afterCommand();
}

void SpinController::askTicketCount() { m_spin.askTicketCount(m_prompter); }

void SpinController::stopTimers() {
    m_spin.stopTimers();
    syncTimers();
}

void SpinController::clear() {
    m_spin.clear();
    m_rows.clearRows();
    m_bars.clearShares();
}

void SpinController::showZone(Zone zone) {
    const SpinZone& z = m_spin.zone(zone);
    const int k = std::min(z.spinCount(), z.options().positions);
    for (int i = 0; i < k; ++i) {
        m_rows.showMachinePick(zone, i, z.machinePick(i));
        m_rows.showPrediction(zone, i, z.predicted(i));
    }
    const int size = m_spin.zoneSize(zone);
    for (int n = 1; n <= size; ++n) m_bars.showShare(z.options().barOffset + n, z.hitPercent(n), z.barWidth(n));
}

void SpinController::tickFront() {
    m_spin.tickFront(*m_random);
    showZone(Zone::Front);
    syncTimers();
}

void SpinController::tickBack() {
    const SpinSimulator::TickOutcome outcome = m_spin.tickBack(*m_random);
    showZone(Zone::Back);
    syncTimers();
    switch (outcome) {
        case SpinSimulator::TickOutcome::Running:
            return;
        case SpinSimulator::TickOutcome::NextTicket:
        case SpinSimulator::TickOutcome::Stopped:
            emit controlsChanged();
            return;
        case SpinSimulator::TickOutcome::Finished:
            emit controlsChanged();
            // Unless the answer is Cancel, the prediction goes on to the expansion.
            if (m_prompter.okCancel(SpinSimulator::kEndTitle, SpinSimulator::kEndQuestion)) emit handOverAsked();
            return;
    }
}
