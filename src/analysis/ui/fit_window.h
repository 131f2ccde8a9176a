#pragma once

#include <QWidget>

#include <array>

class FitPlot;
class QLineEdit;
struct DrawHistory;

// The fitted-line window (frmNh): the fits of the eight newest draws, and a ninth plot for a
// draw whose running number the player types digit by digit.
class FitWindow : public QWidget {
    Q_OBJECT
public:
    explicit FitWindow(const DrawHistory& history, QWidget* parent = nullptr);

    // Plots 0..7 show the newest draws, plot 8 the typed one.
    FitPlot* plot(int index) const { return m_plots[index]; }

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    static constexpr int kPlots = 9;
    static constexpr int kDigits = 4;

    QWidget* makeDrawInput();
    void showRecentDraws();
    void digitTyped(int field);
    void focusDigit(int field);
    void showDraw(FitPlot* plot, int runningNumber);

    const DrawHistory& m_history;
    std::array<FitPlot*, kPlots> m_plots{};
    std::array<QLineEdit*, kDigits> m_digits{};  // MaskEdBox1(0..3)
};
