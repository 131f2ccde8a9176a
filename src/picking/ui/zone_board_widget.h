#pragma once

#include "workspace/shared_state.h"

#include <QGroupBox>

class QLabel;
class QPushButton;

// The number buttons of one zone with their counts and the 全选/反选/重选 buttons. One class
// for both zones; the names of the controls differ by zone.
class ZoneBoardWidget : public QGroupBox {
    Q_OBJECT
public:
    enum class Zone { Front, Back };

    // Names and sizes of one zone's controls.
    struct Names {
        const char* numberButton;  // Command1 / Command2
        const char* pickCount;     // Label5 / Label10 ("拖")
        const char* danCount;      // Label19 / Label11 ("胆")
        const char* selectAll;     // Command41 / Command7
        const char* invert;        // Command42 / Command6
        const char* reset;         // Command45 / Command8
        int buttonCount;           // 36 / 24 buttons
        int columns;               // buttons per row
        const char* title;
    };
    static const Names& namesOf(Zone zone);

    explicit ZoneBoardWidget(Zone zone, QWidget* parent = nullptr);

    Zone zone() const { return m_zone; }
    QPushButton* numberButton(int number) const { return m_buttons.value(number - 1); }
    // Shows the buttons 1..size and hides the rest.
    void setZoneSize(int size);
    // Colours, pressed states and counts from the board state: pick red, banker green.
    void render(const ZoneBoardState& state);

signals:
    void numberClicked(int number);       // left button
    void numberRightClicked(int number);  // right button: the banker popup
    void selectAllClicked();
    void invertClicked();
    void resetClicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Zone m_zone;
    QList<QPushButton*> m_buttons;
    QLabel* m_pickCount;
    QLabel* m_danCount;
};
