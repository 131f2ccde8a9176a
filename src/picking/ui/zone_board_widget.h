#pragma once

#include "picking/number_board.h"

#include <QGroupBox>

class QLabel;
class QMenu;
class QPushButton;

// The number buttons of one zone with their counts, the 全选/反选/重选 buttons and the banker
// popup. One class for both zones; the names of the controls differ by zone. It draws what the
// zone's logic (ZoneBoard) holds and forwards the clicks.
class ZoneBoardWidget : public QGroupBox {
    Q_OBJECT
public:
    // Names and sizes of one zone's controls.
    struct Names {
        const char* numberButton;  // Command1 / Command2
        const char* pickCountLabel;    // Label5 / Label10 ("拖")
        const char* bankerCountLabel;  // Label19 / Label11 ("胆")
        const char* selectAll;     // Command41 / Command7
        const char* invert;        // Command42 / Command6
        const char* reset;         // Command45 / Command8
        const char* popup;         // mnuDt / mnuDtHou
        const char* popupItem;     // mnuDan / mnuDanHou
        int buttonCount;           // 36 / 24 buttons
        int columns;               // buttons per row
        const char* title;
    };
    static const Names& namesOf(Zone zone);

    explicit ZoneBoardWidget(Zone zone, QWidget* parent = nullptr);

    Zone zone() const { return m_zone; }
    QPushButton* numberButton(int number) const { return m_buttons.value(number - 1); }
    QMenu* bankerPopup() const { return m_popup; }
    // Buttons, colours, counts and the invert button from the zone's logic.
    void render(const ZoneBoard& board);

signals:
    void numberClicked(int number);       // left button
    void numberRightClicked(int number);  // right button: the target of the banker popup
    void bankerToggled();                 // mnuDan / mnuDanHou
    void selectAllClicked();
    void invertClicked();
    void resetClicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Zone m_zone;
    QList<QPushButton*> m_buttons;
    QLabel* m_pickCountLabel;
    QLabel* m_bankerCountLabel;
    QPushButton* m_invert;
    QMenu* m_popup;
};
