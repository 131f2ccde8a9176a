#pragma once

// Counts the paint events of the widgets it watches: the window benchmarks time an action to the
// end of the paint that shows its result.

#include <QEvent>
#include <QObject>

namespace bench {

class PaintCounter : public QObject {
public:
    int paints = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++paints;
        return QObject::eventFilter(watched, event);
    }
};

}  // namespace bench
