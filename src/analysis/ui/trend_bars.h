#pragma once

#include "picking/number_board.h"

#include <QGroupBox>

class QLabel;
class ProbabilityBar;
class TrendGrid;

// The probability bars of one zone beside its trend grid, headed "前区概率" or "后区概率": per
// number a caption, a value label that picks the number (left button) or opens the banker
// pop-up (right button), and a bar. Numbers above the zone size have neither.
class TrendBars : public QGroupBox {
    Q_OBJECT
public:
    static inline const QString kValueTip = QStringLiteral("可以用鼠标选号，鼠标反键选胆");
    // Bar widths in units: the front's 2p - 2 and the back's p - 4 fill this at most.
    static constexpr double kFullScale = 8.0;

    TrendBars(Zone zone, int columns, QWidget* parent = nullptr);

    // Values, colours and bars from the grid; hides what lies above the zone size.
    void render(const TrendGrid& grid);
    static double barUnits(Zone zone, double probability);

    QLabel* valueLabel(int number) const { return m_values.value(number - 1); }
    ProbabilityBar* bar(int number) const { return m_bars.value(number - 1); }

signals:
    void numberClicked(int number);
    void numberRightClicked(int number);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Zone m_zone;
    QList<QWidget*> m_rows;
    QList<QLabel*> m_captions;      // Label4(i) / Label4H(i)
    QList<QLabel*> m_values;        // Label6(i) / Label6H(i)
    QList<ProbabilityBar*> m_bars;  // Picture2(i) / Picture2H(i)
};
