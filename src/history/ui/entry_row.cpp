#include "history/ui/entry_row.h"

#include "history/draw_entry.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>

#include <algorithm>

namespace {

constexpr int kDigits = 2;

bool isFull(const QLineEdit* box) {
    const QString text = box->displayText();
    return text.size() >= kDigits && !text.left(kDigits).contains(DrawEntry::kMaskChar);
}

bool hasDigit(const QLineEdit* box) {
    const QString text = box->displayText();
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

// Where typing goes on in a box: its first free position, or over all of a full box.
void placeCursor(QLineEdit* box) {
    if (isFull(box)) {
        box->selectAll();
        return;
    }
    box->setCursorPosition(std::max(0, static_cast<int>(box->displayText().indexOf(DrawEntry::kMaskChar))));
}

// Focus that leaves box 7 because the player moved on, not because another window or a menu
// came up over it.
bool playerLeft(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
}

}  // namespace

EntryRow::EntryRow(const QList<QLineEdit*>& boxes, QWidget* discard, QObject* parent)
    : QObject(parent), m_boxes(boxes), m_discard(discard) {
    Q_ASSERT(m_boxes.size() == DrawEntry::kBoxes);
    for (int i = 0; i < static_cast<int>(m_boxes.size()); ++i) {
        QLineEdit* box = m_boxes[i];
        box->setInputMask(QStringLiteral("99;_"));
        box->installEventFilter(this);
        connect(box, &QLineEdit::textChanged, this, [this, i] { changed(i); });
    }
}

void EntryRow::changed(int index) {
    QLineEdit* box = m_boxes[index];
    if (index + 1 < static_cast<int>(m_boxes.size())) {
        if (DrawEntry::movesFocus(index + 1, box->displayText())) moveInto(m_boxes[index + 1]);
        return;
    }
    if (isFull(box)) {
        check();
        return;
    }
    m_lastPending = hasDigit(box);
}

void EntryRow::moveInto(QLineEdit* box) {
    box->setFocus();
    box->selectAll();
}

void EntryRow::check() {
    m_lastPending = false;
    emit checkRequested();
}

void EntryRow::leftLast(Qt::FocusReason reason) {
    if (!m_lastPending) return;
    QWidget* now = QApplication::focusWidget();
    // A click on 放弃输入 is about to clear the row; Tab passes over that button.
    const bool discarding = now && now == m_discard && reason == Qt::MouseFocusReason;
    if (discarding || (now && m_boxes.contains(now))) return;
    check();
}

bool EntryRow::eventFilter(QObject* watched, QEvent* event) {
    auto* box = qobject_cast<QLineEdit*>(watched);
    if (!box) return QObject::eventFilter(watched, event);
    const bool last = box == m_boxes.last();
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) break;
            box->setFocus(Qt::MouseFocusReason);
            placeCursor(box);
            return true;
        case QEvent::KeyPress: {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (last && m_lastPending && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
                check();
                return true;
            }
            break;
        }
        case QEvent::FocusOut:
            // Checked once the focus has settled: the message must not open inside the focus
            // change, and the new focus tells whether the player left the row.
            if (const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
                last && m_lastPending && playerLeft(reason))
                QMetaObject::invokeMethod(
                    this, [this, reason] { leftLast(reason); }, Qt::QueuedConnection);
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}
