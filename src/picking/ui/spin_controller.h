#pragma once

// The spin simulator on the main window: the two 10 ms timers (Timer1 front, Timer2 back), the
// commands of its buttons and menu entries, and the rows and bars it fills tick by tick. The
// window mirrors the controls' state (the board's flags and the start caption) on
// controlsChanged and hands the prediction on when asked to.

#include "picking/spin_simulator.h"

#include <QObject>

#include <memory>

class ProbabilityBars;
class Prompter;
class QTimer;
class SpinRows;

class SpinController : public QObject {
    Q_OBJECT
public:
    static constexpr int kTickInterval = 10;  // milliseconds

    SpinController(NumberBoard& board, SpinRows& rows, ProbabilityBars& bars, Prompter& prompter,
                   QObject* parent = nullptr);
    ~SpinController() override;

    SpinSimulator& simulator() { return m_spin; }
    // The draws; the window reseeds from the clock, tests give a seeded source.
    void setRandom(std::unique_ptr<SpinRandom> random) { m_random = std::move(random); }
    QTimer* frontTimer() const { return m_frontTimer; }
    QTimer* backTimer() const { return m_backTimer; }

    void start();          // ComSta
    void startFromMenu();  // meuSta
    void pause();          // ComSpd, meuSup
    void reset();          // ComRst
    void resetFromMenu();  // meuRst
    void askTicketCount();  // mnuMilt
    // The board's hooks.
    void stopTimers();
    void clear();

    // One tick of a zone with its rows and bars, as the timers run them.
    void tickFront();
    void tickBack();

signals:
    // The enabled state of the spin's controls or the start caption changed.
    void controlsChanged();
    // The player wants the prediction arranged (the end question answered with OK).
    void handOverAsked();

private:
    void showZone(Zone zone);
    void syncTimers();
    void afterCommand();

    SpinSimulator m_spin;
    SpinRows& m_rows;
    ProbabilityBars& m_bars;
    Prompter& m_prompter;
    std::unique_ptr<SpinRandom> m_random;
    QTimer* m_frontTimer;
    QTimer* m_backTimer;
};
