#pragma once

#include <QDialog>

#include <functional>
#include <vector>

class QLabel;
class QTableWidget;

// The six-number wheel as a list (aganFRote, "旋转排列"): the tickets five to a line, the
// lines numbered, the money they cost, and the two print buttons. No candidate table is made.
class SixWheelListWindow : public QDialog {
    Q_OBJECT
public:
    static constexpr int kTicketsPerLine = 5;
    static constexpr int kYuanPerTicket = 12;  // six tickets of 2 yuan each

    // `tickets`: the wheel's rows with the numbers in place of the positions.
    explicit SixWheelListWindow(std::vector<std::vector<int>> tickets, QWidget* parent = nullptr);

    const std::vector<std::vector<int>>& tickets() const { return m_tickets; }
    QTableWidget* grid() const { return m_grid; }

signals:
    // CmdPrint(0) and CmdPrint(1).
    void previewRequested();
    void printRequested();

private:
    std::vector<std::vector<int>> m_tickets;
    QTableWidget* m_grid = nullptr;
};
