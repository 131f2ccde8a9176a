#pragma once

#include "workspace/ui/probability_bar.h"

#include <QWidget>

class QLabel;
class QPushButton;

// The spin rows (机选, 预测) of both zones with the start, pause and reset buttons.
class SpinRows : public QWidget {
    Q_OBJECT
public:
    static constexpr int kFrontSlots = 16;  // Label1(0..15), Label2(0..15)
    static constexpr int kBackSlots = 9;    // lblHou1(0..8), lblHou2(0..8)

    explicit SpinRows(QWidget* parent = nullptr);
    // Shows the spin labels 0..count-1 of each zone.
    void setSpinCounts(int front, int back);

    QPushButton* startButton() const { return m_startButton; }
    QPushButton* pauseButton() const { return m_pauseButton; }
    QPushButton* resetButton() const { return m_resetButton; }

private:
    QList<QLabel*> m_machine, m_predict, m_machineBack, m_predictBack;
    QPushButton* m_startButton;
    QPushButton* m_pauseButton;
    QPushButton* m_resetButton;
};

// The probability bars with their percentages. Front number n has Label6(n) and Picture2(n),
// n = 1..35; back number n has Label6(35 + n) and Picture2(35 + n): the offset 35 is fixed.
class ProbabilityBars : public QWidget {
    Q_OBJECT
public:
    static constexpr double kBarUnits = 135.0;  // the bars' full width in units
    static constexpr int kFrontBars = 35;  // the bar row has 35 places
    static constexpr int kBackOffset = 35;

    explicit ProbabilityBars(QWidget* parent = nullptr);
    // Hides the bars of front numbers above the zone size, and of back numbers above the back
    // zone's size.
    void setZoneSizes(int frontSize, int backSize);

private:
    QWidget* makeBars(const QString& title, int count, int offset, int columns);
    QList<QWidget*> m_frontBarRows, m_backBarRows;
};
