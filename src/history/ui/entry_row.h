#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QLineEdit;
class QWidget;

// Typing of the entry row MaskEdBox1(1..7): two digits per box with "_" for a digit not yet
// typed. A box of 1..6 that holds both digits passes the focus on to the next box, whose text
// is selected so that typing replaces it. A click in a box puts the cursor on its first free
// position (or selects a full box), so a number typed after a click starts in the first digit.
//
// When the draw is checked, that is when box 7 "changes" for the checks: at once when box 7
// holds both digits; while it holds only one, typing the first of two digits must not give a
// message, so the checks wait until the player presses Enter in box 7 or leaves it, by Tab or
// by clicking elsewhere. Leaving it for another box of the row (to correct a number) or by a
// click on `discard` (放弃输入, which clears the row) does not check; nor does an empty box 7.
class EntryRow : public QObject {
    Q_OBJECT
public:
    EntryRow(const QList<QLineEdit*>& boxes, QWidget* discard, QObject* parent);

signals:
    // Box 7 changed as above: the seven boxes are to be checked and the draw stored.
    void checkRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void changed(int index);
    void moveInto(QLineEdit* box);
    void leftLast(Qt::FocusReason reason);
    void check();

    QList<QLineEdit*> m_boxes;
    QPointer<QWidget> m_discard;
    // Box 7 holds a digit typed since the last check.
    bool m_lastPending = false;
};
