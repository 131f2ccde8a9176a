#pragma once

// The pass rates (历史符合率) beside the boxes of the filter window: for each parameter row the
// share of the recent draws, over the span of the row's combo, whose value lies in the row's
// range (or list); for the integrated filter the share of the draws whose winning ticket its
// ticked boxes, tolerance and sense would have kept. The window reports what changed; the
// labels are brought up to date once the events of the moment have been handled, so that a
// burst of changes (a preset writing every box, a saved setting loaded) costs one update.

#include "filter/backtest/pass_rate.h"
#include "filter/param/param_filter.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <optional>
#include <set>
#include <vector>

class QComboBox;
class QLabel;
class Session;

namespace pass_rate_labels {

// "73%"; empty when there are no draws to judge.
QString text(const pass_rate::Rate& r);
// "历史符合率：近100期中73期符合".
QString toolTip(const pass_rate::Rate& r);

}  // namespace pass_rate_labels

class PassRateLabels : public QObject {
    Q_OBJECT
public:
    using StateReader = std::function<ParamWindowState()>;

    // `state` reads the window's boxes and choices in the zone it shows.
    PassRateLabels(Session& session, StateReader state, QObject* parent = nullptr);

    // A parameter row: its label and the combo that gives its span (item data n: the last n
    // draws, 0 every draw).
    void addRow(ParamId id, QLabel* label, const QComboBox* span);
    void setIntegrated(QLabel* label, const QComboBox* span);

    // What one row reads changed: its boxes or its span. Its boxes are ticked into the
    // integrated filter too, so that one follows.
    void rowChanged(ParamId id);
    // What every row reads changed: the zone, the list mode.
    void allChanged();
    // What only the integrated filter reads changed: a tick, the tolerance, the sense.
    void integratedChanged();

    // The rates shown, for a reader that wants the figures (none for a blank label).
    std::optional<pass_rate::Rate> rowRate(ParamId id) const;
    std::optional<pass_rate::Rate> integratedRate() const { return m_integrated.rate; }

private:
    struct Row {
        ParamId id;
        QLabel* label = nullptr;
        const QComboBox* span = nullptr;
        std::optional<pass_rate::Rate> rate;
    };
    void updateRows();
    void updateIntegrated();
    static void show(QLabel* label, const std::optional<pass_rate::Rate>& rate);
    static int spanOf(const QComboBox* combo);

    Session& m_session;
    StateReader m_state;
    std::vector<Row> m_rows;
    Row m_integrated{ParamId{}, nullptr, nullptr, std::nullopt};
    std::set<ParamId> m_dirtyRows;
    QTimer m_rowTimer;
    QTimer m_integratedTimer;
};
