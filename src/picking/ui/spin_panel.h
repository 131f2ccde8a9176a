#pragma once

#include "picking/number_board.h"
#include "workspace/ui/probability_bar.h"

#include <QWidget>

#include <array>

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

    // The rows 机选 and 预测: position i of the zone's spin shows `number`.
    void showMachinePick(Zone zone, int i, int number);
    void showPrediction(Zone zone, int i, int number);
    void clearRows();

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
    // The share of the number at `index` (n, or 35 + n for the back zone): its percentage as
    // text, unrounded, and its bar in bar units. Only the two repaint; nothing is laid out again.
    void showShare(int index, double percent, double barWidth);
    void clearShares();

private:
    QWidget* makeBars(const QString& title, int count, int offset, int columns);
    QList<QWidget*> m_frontBarRows, m_backBarRows;
    // By index as above; null where no number sits.
    std::array<QLabel*, kBackOffset + 25> m_percents{};
    std::array<ProbabilityBar*, kBackOffset + 25> m_bars{};
};
