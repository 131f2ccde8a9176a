#include "filter/ui/filter_window.h"

#include "filter/candidate_actions.h"
#include "filter/param/range_query.h"
#include "filter/result_grid_model.h"
#include "filter/templates/saved_setting_store.h"
#include "filter/ui/dialog_progress.h"
#include "filter/ui/pass_rate_labels.h"
#include "filter/ui/saved_settings_dialog.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDateTime>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace {

const QString kUsedStyle = QStringLiteral("QPushButton { color: blue; }");
const QString kTabCaptions[] = {QStringLiteral("前区"), QStringLiteral("后区"), QStringLiteral("全区")};

// The window's work progress: the window keeps taking clicks, which wait in its queue.
class LiveProgress : public DialogProgress {
public:
    LiveProgress(const QString& label, QWidget* window, bool cancellable = true)
        : DialogProgress(label, window, cancellable, WorkProgress::Blocking::ParentStaysLive) {}
};

}  // namespace

FilterWindow::FilterWindow(FilterSource instance, std::unique_ptr<FilterWorkspace> workspace,
                           Session& session, Prompter& prompter, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_instance(instance),
      m_workspace(std::move(workspace)),
      m_session(session),
      m_prompter(prompter),
      m_params(std::make_unique<ParamWindow>(*m_workspace, ParamContext::fromSession(session),
                                             session.paths().folder())),
      m_super(std::make_unique<SuperFilter>(*m_workspace, session.history(), session.frontSize(),
                                            session.filterDb())),
      m_recorder(std::make_unique<TemplateRecorder>(*m_workspace, *m_super, session.filterDb(),
                                                    ParamContext::fromSession(session))) {
    setObjectName(QString::fromLatin1(m_workspace->traits().className));
    setAttribute(Qt::WA_DeleteOnClose, false);

    m_zoneTabs = new QTabBar(this);
    m_zoneTabs->setObjectName(QStringLiteral("TabStrip1"));
    for (const QString& t : kTabCaptions) m_zoneTabs->addTab(t);
    connect(m_zoneTabs, &QTabBar::currentChanged, this, [this](int i) { setZoneTab(i + 1); });

    auto* left = new QVBoxLayout;
    left->setSpacing(3);
    left->addWidget(m_zoneTabs);
    left->addWidget(makeParameterFrame(), 1);

    auto* right = new QVBoxLayout;
    right->setSpacing(3);
    right->addWidget(makeOptionsPanel());
    auto* middle = new QHBoxLayout;
    middle->addWidget(makeSuperFrame(), 3);
    middle->addWidget(makeRangeFrame(), 2);
    right->addLayout(middle);
    right->addWidget(makeTemplateFrame());
    right->addWidget(makeGridPanel(), 1);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addLayout(left, 0);
    layout->addLayout(right, 1);

    // Recording a step by the right button of a command: the popup mnuAdm.
    m_recordMenu = new QMenu(QStringLiteral("添加模板(&D)"), this);
    m_recordMenu->setObjectName(QStringLiteral("mnuAdm"));
    QAction* addToTemplateItem = m_recordMenu->addAction(QStringLiteral("添加到过滤模板(&A)"));
    addToTemplateItem->setObjectName(QStringLiteral("mnuAdf"));
    connect(addToTemplateItem, &QAction::triggered, this, [this] { m_addToTemplatePicked = true; });
    // The step is written once the popup has gone, picked or dismissed.
    connect(m_recordMenu, &QMenu::aboutToHide, this, [this] {
        QMetaObject::invokeMethod(this, &FilterWindow::finishRecording, Qt::QueuedConnection);
    });
    m_templateScroll->setMaximum(m_recorder->stepScrollMax());
    connectPassRates();

    m_workspace->zoneScope = 1;
    m_workspace->keepSense = m_keep->isChecked();
    adaptToZone();
    applyListMode();
    presetRanges();
    showFirstView();
    resize(1366, 740);
}

FilterWindow::~FilterWindow() {
    // The labels' keeper reads the window's controls: it goes before them.
    delete m_passRates;
}

void FilterWindow::showFirstView() {
    m_params->showFirstView();
    showParamView();
}

void FilterWindow::refreshView() {
    m_model->bind(&m_workspace->table(), GridView::live());
    setWindowTitle(m_workspace->caption());
}

void FilterWindow::showParamView() {
    m_model->bind(&m_workspace->table(), m_params->view());
    setWindowTitle(m_workspace->caption());
    markUsedButtons();
}

void FilterWindow::runIntegrated() {
    whenIdle([this, state = shownState()] {
        m_params->setContext(ParamContext::fromSession(m_session));
        // While it runs, the caught rows hold keys in place of their reasons: the grid waits.
        m_grid->setUpdatesEnabled(false);
        {
            DialogProgress progress(QStringLiteral("正在过滤..."), this);
            m_params->clickIntegrated(state, m_prompter, &progress);
        }
        m_grid->setUpdatesEnabled(true);
        showParamView();
    });
}

void FilterWindow::runExport() {
    whenIdle([this, state = shownState()] {
        m_params->setContext(ParamContext::fromSession(m_session));
        // Cancelled, the file stays as it was and so does canshu, which the columns rewrite.
        param_export::Result r;
        runCancellable(QStringLiteral("正在导出..."), [&](EngineProgress* progress) {
            r = m_params->clickExport(state, m_prompter, progress);
        });
        showParamView();
        if (r.written) m_prompter.inform(QStringLiteral("多选参数导出"), m_params->exportPath());
    });
}

void FilterWindow::showPage() {
    whenIdle([this, page = m_pageBox->text()] {
        m_params->showPage(page);
        m_model->bind(&m_workspace->table(), m_params->view());
    });
}

void FilterWindow::showAllRows() {
    // The choice goes back to 过滤剩余, which itself runs nothing.
    m_showRemaining->setChecked(true);
    m_showRemaining->setFocus();
    whenIdle([this] {
        m_params->showAllRows();
        m_model->bind(&m_workspace->table(), m_params->view());
    });
}

void FilterWindow::whenIdle(std::function<void()> action) {
    if (m_acting) {
        m_pending.push_back(std::move(action));
        WorkProgress::noteWaiting(this, static_cast<int>(m_pending.size()));
        return;
    }
    m_acting = true;
    action();
    while (!m_pending.empty()) {
        const std::function<void()> next = std::move(m_pending.front());
        m_pending.pop_front();
        next();
    }
    m_acting = false;
    if (m_closeWhenIdle) {
        m_closeWhenIdle = false;
        close();
    }
}

bool FilterWindow::runCancellable(const QString& label, const std::function<void(EngineProgress*)>& action) {
    if (!m_workspace->isOpen()) {
        LiveProgress progress(label, this);
        action(&progress);
        return !progress.cancelled();
    }
    // Between its chunks the action leaves the table half done: the grid does not paint it.
    m_grid->setUpdatesEnabled(false);
    bool cancelled = false;
    {
        const FilterWorkspace::Edit edit = m_workspace->edit();
        candidate_actions::Snapshot before = candidate_actions::snapshot(edit.table());
        LiveProgress progress(label, this);
        action(&progress);
        cancelled = progress.cancelled();
        if (cancelled) candidate_actions::restore(edit.table(), std::move(before));
    }
    m_grid->setUpdatesEnabled(true);
    return !cancelled;
}

void FilterWindow::waitForRecord(bool closing) {
    candidate_store::SaveResult saved;
    if (m_workspace->writePending()) {
        // A closing window takes no more clicks; otherwise they wait for the write.
        DialogProgress progress(
            QStringLiteral("正在保存组合..."), this, false,
            closing ? WorkProgress::Blocking::ParentWindow : WorkProgress::Blocking::ParentStaysLive);
        saved = m_workspace->waitForWrite(&progress);
    } else {
        saved = m_workspace->waitForWrite();  // a write that ended already: its outcome
    }
    if (saved.outcome == candidate_store::Outcome::Failed)
        m_prompter.inform(QStringLiteral("保存组合"), QStringLiteral("组合保存失败：") + saved.error,
                          Prompter::Icon::Warning);
}

void FilterWindow::addToTemplate() {
    whenIdle([this] {
        // The template lives in filnum.db beside the record being written.
        waitForRecord(false);
        m_params->clickAddTemplate(m_session.filterDb(), m_prompter);
    });
}

void FilterWindow::withRecordPaused(const std::function<void()>& action) {
    const FilterWorkspace::Edit paused = m_workspace->pauseWrite();
    action();
}

void FilterWindow::markUsedButtons() {
    auto used = [this](const QString& name) {
        return m_params->usedButtons().count(name) || m_super->usedButtons().count(name) ||
               m_recorder->usedButtons().count(name);
    };
    // A style sheet set again polishes the button again: only new ones take it.
    const auto mark = [&](QPushButton* b) {
        if (b->styleSheet() != kUsedStyle && used(b->objectName())) b->setStyleSheet(kUsedStyle);
    };
    for (ParamRow& row : m_rows) mark(row.button);
    for (QPushButton* b : m_superButtons) mark(b);
}

void FilterWindow::superClick(SuperButton b, bool rightButton) {
    whenIdle([this, b, rightButton] {
        SuperFilter::Outcome outcome;
        const auto run = [&](EngineProgress* progress) {
            outcome = m_super->click(
                b, rightButton ? FilterWorkspace::Mouse::Right : FilterWorkspace::Mouse::Left, m_superInputs,
                static_cast<ZoneScope>(m_workspace->zoneScope), m_prompter, progress);
        };
        const QString label = QStringLiteral("正在过滤...");
        // The history filters run for seconds on a large table: they can be cancelled.
        const bool history =
            b == SuperButton::HistoryHigh || b == SuperButton::HistoryMiddle || b == SuperButton::HistoryLow;
        if (history && !rightButton) {
            runCancellable(label, run);
        } else {
            withRecordPaused([&] {
                LiveProgress progress(label, this);
                run(&progress);
            });
        }
        if (outcome.ran) refreshView();
        markUsedButtons();
        if (outcome.popupRecordMenu) recordFrom(RecordSource::super(b));
    });
}

void FilterWindow::recordFrom(RecordSource source) {
    m_recordSource = source;
    m_addToTemplatePicked = false;
    m_recordMenu->popup(QCursor::pos());
}

void FilterWindow::finishRecording() {
    whenIdle([this] {
        TemplateRecorder::RecordOutcome outcome;
        withRecordPaused([&] {
            m_recorder->setContext(ParamContext::fromSession(m_session));
            outcome =
                m_recorder->popupClosed(m_addToTemplatePicked, m_recordSource, readState(), m_superInputs);
        });
        m_addToTemplatePicked = false;
        m_templateScroll->setMaximum(outcome.stepScrollMax);
    });
}

void FilterWindow::writeSnapshot(const ParamWindowState& state,
                                 const filter_snapshot::SnapshotEffects& effects) {
    std::vector<ParamId> all;
    for (const ParamRow& row : m_rows) all.push_back(row.id);
    writeBoxes(state, all);
    for (ParamRow& row : m_rows)
        row.integratedBox->setChecked(
            state.integratedBox[static_cast<size_t>(param_catalogue::info(row.id).integratedBox)]);
    m_toleranceCount->setText(state.txtRc0);
    m_tolerancePercent->setText(state.txtRc1);
    (state.logicAnd ? m_logicAnd : m_logicOr)->setChecked(true);
    (state.keep ? m_keep : m_exclude)->setChecked(true);
    if (effects.listMode)
        m_topValuesQuery->setChecked(true);
    else if (m_topValuesQuery->isChecked())
        m_averageQuery->setChecked(true);
    applyListMode();
}

void FilterWindow::replayTemplate() {
    whenIdle([this] {
        ParamWindowState state = readState();
        // The replay sets the window's scope, sense and step as it goes; a cancel puts them back.
        const int16_t zoneScope = m_workspace->zoneScope;
        const bool keepSense = m_workspace->keepSense;
        const int16_t stepCode = m_workspace->stepCode();
        TemplateRecorder::ReplayOutcome outcome;
        const bool done =
            runCancellable(QStringLiteral("正在按过滤模板过滤..."), [&](EngineProgress* progress) {
                m_recorder->setContext(ParamContext::fromSession(m_session));
                outcome = m_recorder->replay(state, m_superInputs,
                                             static_cast<ZoneScope>(m_workspace->zoneScope), progress);
            });
        if (!done) {
            m_workspace->zoneScope = zoneScope;
            m_workspace->keepSense = keepSense;
            m_workspace->setStepCode(stepCode);
        } else if (outcome.boxesChanged) {
            writeSnapshot(state, outcome.effects);
        }
        if (outcome.ran) refreshView();
        markUsedButtons();
    });
}

void FilterWindow::browseTemplate(int value) {
    whenIdle([this, value] {
        ParamWindowState state = readState();
        TemplateRecorder::BrowseOutcome outcome;
        withRecordPaused([&] {
            outcome = m_recorder->browse(value, state, m_superInputs,
                                         static_cast<ZoneScope>(m_workspace->zoneScope));
        });
        if (outcome.stepLabel) m_templateStepLabel->setText(*outcome.stepLabel);
        if (outcome.boxesChanged) writeSnapshot(state, outcome.effects);
    });
}

void FilterWindow::deleteLastStep() {
    whenIdle(
        [this] { withRecordPaused([this] { m_templateScroll->setMaximum(m_recorder->deleteLast()); }); });
}

void FilterWindow::clearTemplate() {
    whenIdle([this] { withRecordPaused([this] { m_templateScroll->setMaximum(m_recorder->clear()); }); });
}

void FilterWindow::saveSetting() {
    whenIdle([this] {
        withRecordPaused([this] {
            saved_setting_store::save(m_session.filterDb(), readState(), m_prompter,
                                      QDateTime::currentDateTime());
        });
    });
}

void FilterWindow::loadSetting() {
    whenIdle([this] {
        withRecordPaused([this] {
            SavedSettingsDialog finder(m_session.filterDb(), m_prompter, this);
            if (finder.exec() != QDialog::Accepted || finder.chosen().isNull()) return;
            ParamWindowState state = readState();
            if (const auto effects = saved_setting_store::load(m_session.filterDb(), finder.chosen(), state))
                writeSnapshot(state, *effects);
        });
    });
}

void FilterWindow::integratedCheckClicked() {
    m_toleranceCount->setText(m_tolerance.onIntegratedBoxClick(readState()));
}

void FilterWindow::runAction(FilterWorkspace::Button which, bool rightButton) {
    whenIdle([this, which, rightButton] {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        const FilterWorkspace::ClickOutcome outcome = m_workspace->release(
            which, rightButton ? FilterWorkspace::Mouse::Right : FilterWorkspace::Mouse::Left);
        QApplication::restoreOverrideCursor();
        if (outcome.ranAction) refreshView();
        if (outcome.popupRecordMenu) recordFrom(RecordSource::invert());
    });
}

ParamWindowState FilterWindow::shownState() const {
    ParamWindowState s = readState();
    if (m_pendingZone) s.scope = static_cast<ZoneScope>(*m_pendingZone);
    return s;
}

ParamWindowState FilterWindow::readState() const {
    ParamWindowState s = ParamWindowState::defaults();
    s.scope = static_cast<ZoneScope>(m_workspace->zoneScope);
    for (int i = 0; i < 7; ++i)
        s.numberTicks[static_cast<size_t>(i)] = m_positionChecks[static_cast<size_t>(i)]->isChecked();
    for (const ParamRow& row : m_rows) {
        for (int i = 0; i < 4; ++i) s.box(row.id)[static_cast<size_t>(i)] = row.boxes[static_cast<size_t>(i)]->text();
        s.integratedBox[static_cast<size_t>(param_catalogue::info(row.id).integratedBox)] =
            row.integratedBox->isChecked();
    }
    for (int i = 4; i <= 13; ++i)
        s.parityTicks[static_cast<size_t>(i)] = m_parityChecks[static_cast<size_t>(i)]->isChecked();
    s.keep = m_keep->isChecked();
    s.listMode = m_topValuesQuery->isChecked();
    s.logicAnd = m_logicAnd->isChecked();
    s.useTolerance = m_toleranceCheck->isChecked();
    s.txtRc0 = m_toleranceCount->text();
    s.txtRc1 = m_tolerancePercent->text();
    s.txtZdqj = m_chosenNumbers->text();
    return s;
}

void FilterWindow::runParameter(ParamId id) {
    // The boxes as they are at the click, also when the click has to wait for another.
    whenIdle([this, id, state = shownState()] {
        m_params->setContext(ParamContext::fromSession(m_session));
        QApplication::setOverrideCursor(Qt::WaitCursor);
        m_params->clickParameter(id, state, m_prompter);
        QApplication::restoreOverrideCursor();
        showParamView();
    });
}

void FilterWindow::setZoneTab(int zoneScope) {
    if (m_zoneTabs->currentIndex() != zoneScope - 1) {
        m_zoneTabs->setCurrentIndex(zoneScope - 1);
        return;  // currentChanged comes back here
    }
    // The window shows the zone at once; the workspace takes it in its turn, after the actions
    // queued before the change.
    m_pendingZone = static_cast<int16_t>(zoneScope);
    const int change = ++m_tabChanges;
    adaptToZone();
    presetRanges();
    m_passRates->allChanged();
    whenIdle([this, zoneScope, change] {
        m_workspace->zoneScope = static_cast<int16_t>(zoneScope);
        if (change == m_tabChanges) m_pendingZone.reset();
    });
}

void FilterWindow::writeBoxes(const ParamWindowState& state, const std::vector<ParamId>& params) {
    for (ParamRow& row : m_rows) {
        if (std::find(params.begin(), params.end(), row.id) == params.end()) continue;
        for (size_t i = 0; i < 4; ++i) row.boxes[i]->setText(state.box(row.id)[i]);
    }
}

void FilterWindow::presetRanges() {
    ParamWindowState s = shownState();
    const auto written = range_query::presetAll(s, m_averageQuery->isChecked(), m_averageSpan->currentText(),
                                                m_session.history(), s.scope);
    writeBoxes(s, written);
}

void FilterWindow::comboChosen(int combo, int spanData) {
    ParamWindowState s = readState();
    const range_query::Mode mode = m_topValuesQuery->isChecked() ? range_query::Mode::Top
                                   : m_averageQuery->isChecked() ? range_query::Mode::Average
                                                                 : range_query::Mode::Plain;
    const auto written = range_query::onSpanChosen(s, combo, spanData, mode, m_averageSpan->currentText(),
                                                   m_session.history(), s.scope);
    writeBoxes(s, written);
}

void FilterWindow::applyListMode() {
    const bool list = m_topValuesQuery->isChecked();
    m_topValuesHeading->setVisible(list);
    m_chosenNumbers->setVisible(list);
    for (ParamRow& row : m_rows) {
        row.boxes[2]->setVisible(list);
        row.boxes[3]->setVisible(list);
        row.countLabel->setVisible(list);
    }
    adaptToZone();
}

void FilterWindow::adaptToZone() {
    const ZoneScope scope = shownState().scope;
    // The super filters' captions (the history buttons follow the tab) and their enabling.
    for (QPushButton* b : m_superButtons) {
        const auto sb = super_filter::byObjectName(b->objectName());
        if (!sb) continue;
        b->setText(super_filter::caption(*sb, scope));
        b->setEnabled(super_filter::enabled(*sb, scope, m_workspace->traits()));
    }
    // Positions: front 1..5, back 1..2, both none; they keep their ticks.
    for (int i = 1; i <= 7; ++i) {
        const bool on = scope == ZoneScope::Front ? i <= 5 : scope == ZoneScope::Back ? i <= 2 : false;
        m_positionChecks[static_cast<size_t>(i - 1)]->setEnabled(on);
    }
    for (ParamRow& row : m_rows) {
        const bool enabled = param_catalogue::enabledIn(row.id, scope);
        row.button->setEnabled(enabled);
        for (QLineEdit* box : row.boxes) box->setEnabled(enabled);
        row.integratedBox->setEnabled(enabled);
        row.button->setText(param_catalogue::caption(row.id, scope, m_topValuesQuery->isChecked()));
        row.integratedBox->setToolTip(
            param_catalogue::integratedBoxCaption(param_catalogue::info(row.id).integratedBox, scope));
        // The five positions are hidden in the both-zones tab.
        if (param_catalogue::info(row.id).position > 0) {
            const bool shown = scope != ZoneScope::Both;
            row.button->setVisible(shown);
        }
    }
}

bool FilterWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        const QString text = key->text();
        if (text.size() == 1 && text[0].isPrint()) {
            const bool pageBox = watched == m_pageBox;
            const bool ok = pageBox ? param_catalogue::pageBoxAcceptsKey(text[0])
                                    : param_catalogue::boxAcceptsKey(text[0]);
            if (!ok) {
                QApplication::beep();
                return true;
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FilterWindow::closeEvent(QCloseEvent* event) {
    // A close while an action runs closes the window once it and the clicks after it are done.
    if (m_acting) {
        m_closeWhenIdle = true;
        event->ignore();
        return;
    }
    // The record is brought up to date before the window goes.
    waitForRecord(true);
    emit closed();
    event->accept();
}
