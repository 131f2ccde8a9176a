#include "filter/ui/pass_rate_labels.h"

#include "workspace/session.h"

#include <QComboBox>
#include <QLabel>

#include <algorithm>

namespace pass_rate_labels {

QString text(const pass_rate::Rate& r) {
    if (r.draws <= 0) return {};
    return QStringLiteral("%1%").arg(qRound(100.0 * r.passed / r.draws));
}

QString toolTip(const pass_rate::Rate& r) {
    if (r.draws <= 0) return QStringLiteral("历史符合率：没有开奖数据");
    return QStringLiteral("历史符合率：近%1期中%2期符合").arg(r.draws).arg(r.passed);
}

}  // namespace pass_rate_labels

namespace {

// The integrated filter judges each draw's winning ticket with the history before it, far
// more work per draw than a column read: after the last change it waits this long, so that
// typing into a box or ticking several boxes in a row costs one run, not one per key.
constexpr int kIntegratedDelayMs = 50;

}  // namespace

PassRateLabels::PassRateLabels(Session& session, StateReader state, QObject* parent)
    : QObject(parent), m_session(session), m_state(std::move(state)) {
    m_rowTimer.setSingleShot(true);
    m_rowTimer.setInterval(0);
    connect(&m_rowTimer, &QTimer::timeout, this, &PassRateLabels::updateRows);
    m_integratedTimer.setSingleShot(true);
    m_integratedTimer.setInterval(kIntegratedDelayMs);
    connect(&m_integratedTimer, &QTimer::timeout, this, &PassRateLabels::updateIntegrated);
}

void PassRateLabels::addRow(ParamId id, QLabel* label, const QComboBox* span) {
    m_rows.push_back(Row{id, label, span, std::nullopt});
    rowChanged(id);
}

void PassRateLabels::setIntegrated(QLabel* label, const QComboBox* span) {
    m_integrated.label = label;
    m_integrated.span = span;
    integratedChanged();
}

void PassRateLabels::rowChanged(ParamId id) {
    m_dirtyRows.insert(id);
    m_rowTimer.start();
    integratedChanged();
}

void PassRateLabels::allChanged() {
    for (const Row& row : m_rows) m_dirtyRows.insert(row.id);
    m_rowTimer.start();
    integratedChanged();
}

void PassRateLabels::integratedChanged() {
    if (m_integrated.label) m_integratedTimer.start();  // a restart: the wait begins again
}

std::optional<pass_rate::Rate> PassRateLabels::rowRate(ParamId id) const {
    const auto row = std::ranges::find(m_rows, id, &Row::id);
    return row == m_rows.end() ? std::nullopt : row->rate;
}

int PassRateLabels::spanOf(const QComboBox* combo) {
    return combo && combo->currentIndex() >= 0 ? combo->currentData().toInt() : 0;
}

void PassRateLabels::show(QLabel* label, const std::optional<pass_rate::Rate>& rate) {
    label->setText(rate ? pass_rate_labels::text(*rate) : QString());
    label->setToolTip(rate ? pass_rate_labels::toolTip(*rate) : QString());
}

void PassRateLabels::updateRows() {
    if (m_dirtyRows.empty()) return;
    const ParamWindowState state = m_state();
    const DrawHistory& history = m_session.history();
    for (Row& row : m_rows) {
        if (!m_dirtyRows.count(row.id)) continue;
        // A row the zone disables shows nothing, as does a parameter the draws have no column of.
        row.rate = param_catalogue::enabledIn(row.id, state.scope)
                       ? pass_rate::ofParam(history, state, row.id, spanOf(row.span))
                       : std::nullopt;
        show(row.label, row.rate);
    }
    m_dirtyRows.clear();
}

// The span is that of 所有参数检索, the combo that fills every row's boxes at once: like the
// rows' own combos it starts at every draw, so the integrated rate and the rows' rates begin
// over the same draws and can be read side by side. Over the whole history (about 2,900
// draws) the run costs some tens of milliseconds with many boxes ticked, once, after the
// changes pause; a player who wants it lighter or more recent picks a shorter span there.
void PassRateLabels::updateIntegrated() {
    if (!m_integrated.label) return;
    m_integrated.rate = pass_rate::ofIntegrated(m_session.history(), m_state(), spanOf(m_integrated.span),
                                                m_session.frontSize(), m_session.backSize());
    show(m_integrated.label, m_integrated.rate);
}
