#pragma once

#include "filter/filter_source.h"
#include "filter/filter_workspace.h"
#include "filter/param/param_catalogue.h"
#include "filter/param/param_filter.h"
#include "filter/param/param_window.h"
#include "filter/super/super_filter.h"
#include "filter/templates/template_recorder.h"

#include <QWidget>

#include <deque>
#include <optional>
#include <functional>
#include <memory>

class EngineProgress;
class PassRateLabels;
class Prompter;
class ResultGridModel;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QRadioButton;
class QScrollBar;
class QTabBar;
class QTableView;
class Session;

// The filter window: one class for the seven instances (GAgan, Gdanagan, GAganRote, GAganMb,
// GAganRead, GAganRoteMb, GAganZhMb). It shows the candidate table that its FilterWorkspace
// holds, and every control carries its given name.
class FilterWindow : public QWidget {
    Q_OBJECT
public:
    // `workspace` is opened already (made by an expansion, or loaded from filnum.db).
    FilterWindow(FilterSource instance, std::unique_ptr<FilterWorkspace> workspace, Session& session,
                 Prompter& prompter, QWidget* parent = nullptr);
    ~FilterWindow() override;

    FilterWorkspace& workspace() { return *m_workspace; }
    FilterSource instance() const { return m_instance; }

    // The boxes and choices as the parameter filters read them, in the workspace's zone.
    ParamWindowState readState() const;
    // The same in the zone the window shows: a click taken while an action runs reads the
    // window as the player saw it, a tab changed meanwhile included.
    ParamWindowState shownState() const;
    // intQianHou from the tab: 1 front, 2 back, 3 both.
    void setZoneTab(int zoneScope);

    ParamWindow& params() { return *m_params; }
    TemplateRecorder& recorder() { return *m_recorder; }
    SuperInputs& superInputs() { return m_superInputs; }
    ResultGridModel& gridModel() { return *m_model; }

    // Runs a parameter button as a left click does.
    void runParameter(ParamId id);
    // Refreshes the grid's view and the caption after an action.
    void refreshView();
    // Binds the grid to the view of the last action and shows the caption and used buttons.
    void showParamView();
    // Whether an action is running (a click that comes meanwhile runs after it).
    bool acting() const { return m_acting; }

signals:
    void closed();
    // CmdPrint: the player asks for the printed list of the live tickets.
    void printRequested();
    // CmdBacktest: the player asks how the filter template would have fared on past draws.
    void backtestRequested();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeParameterFrame();
    QHBoxLayout* makeActionRow(QWidget* panel);
    QWidget* makeOptionsPanel();
    QWidget* makeSuperFrame();
    QWidget* makeRangeFrame();
    QWidget* makeTemplateFrame();
    QWidget* makeGridPanel();
    void adaptToZone();
    void runAction(FilterWorkspace::Button which, bool rightButton);
    void showFirstView();
    void runIntegrated();       // Option29
    void runExport();           // Option42
    void showPage();            // Command111
    void showAllRows();         // optZzuhe(1)
    void addToTemplate();       // cmdAdmb
    void integratedCheckClicked();
    // The range query: boxes from the history at load, on a tab change and on a Combo1 choice.
    void presetRanges();
    void comboChosen(int combo, int spanData);
    void writeBoxes(const ParamWindowState& state, const std::vector<ParamId>& params);
    // Option36 shows the list boxes and TxtZdqj and turns 自定区间 into 指定号码.
    void applyListMode();
    // Waits for the record's background write; `closing` when the window goes afterwards.
    void waitForRecord(bool closing);
    // Runs `action` now, or, when it comes while another action runs (a progress dialog lets
    // events through), right after that one: every click runs, one at a time, in order.
    void whenIdle(std::function<void()> action);
    // Runs a long action of the table behind a progress dialog; cancelled, the table is put
    // back as it was before. Returns false when cancelled.
    bool runCancellable(const QString& label, const std::function<void(EngineProgress*)>& action);
    // Runs `action` with the record's background write stopped, so that it can use filnum.db.
    void withRecordPaused(const std::function<void()>& action);

    // The super filters and the filter templates.
    void superClick(SuperButton b, bool rightButton);
    void recordFrom(RecordSource source);  // pops up mnuAdm; its closing records the step
    void finishRecording();
    void replayTemplate();                 // Command9
    void browseTemplate(int value);        // HScroll1
    void deleteLastStep();                 // Command5
    void clearTemplate();                  // Command4
    void saveSetting();                    // Command7
    void loadSetting();                    // Command6
    // Sets the snapshot's controls (boxes, TxtRc, Check1, Option37, Option1, Option36).
    void writeSnapshot(const ParamWindowState& state, const filter_snapshot::SnapshotEffects& effects);
    void markUsedButtons();
    // The pass rates beside the boxes follow every control they read.
    void connectPassRates();

    FilterSource m_instance;
    std::unique_ptr<FilterWorkspace> m_workspace;
    Session& m_session;
    Prompter& m_prompter;

    QTabBar* m_zoneTabs = nullptr;
    struct ParamRow {
        ParamId id;
        QPushButton* button = nullptr;
        std::array<QLineEdit*, 4> boxes{};
        QCheckBox* integratedBox = nullptr;
        QComboBox* spanCombo = nullptr;
        QLabel* countLabel = nullptr;  // "个" between the count and the list
        QLabel* passRate = nullptr;    // the share of the span's draws in the range
    };
    std::vector<ParamRow> m_rows;
    ParamRow addParameterRow(const ParamInfo& p, QGridLayout* grid, int r, QWidget* paramFrame);
    std::array<QCheckBox*, 7> m_positionChecks{};
    std::array<QCheckBox*, 14> m_parityChecks{};  // Check2(4..13) at their own indices
    QRadioButton* m_keep = nullptr;          // Option1(0)
    QRadioButton* m_exclude = nullptr;       // Option1(1)
    QRadioButton* m_logicAnd = nullptr;      // Option37(0)
    QRadioButton* m_logicOr = nullptr;       // Option37(1)
    QCheckBox* m_toleranceCheck = nullptr;
    QLineEdit* m_toleranceCount = nullptr;
    QLineEdit* m_tolerancePercent = nullptr;
    QRadioButton* m_averageQuery = nullptr;
    QRadioButton* m_topValuesQuery = nullptr;
    QRadioButton* m_rangeQuery = nullptr;
    QComboBox* m_averageSpan = nullptr;
    QLineEdit* m_chosenNumbers = nullptr;
    QLabel* m_topValuesHeading = nullptr;
    QHash<QString, QPushButton*> m_superButtons;
    QScrollBar* m_templateScroll = nullptr;
    QLabel* m_templateStepLabel = nullptr;
    QTableView* m_grid = nullptr;
    QLineEdit* m_pageBox = nullptr;
    QRadioButton* m_showRemaining = nullptr;
    QRadioButton* m_showAllCandidates = nullptr;
    QMenu* m_recordMenu = nullptr;
    ResultGridModel* m_model = nullptr;
    std::unique_ptr<ParamWindow> m_params;
    param_filter::Tolerance m_tolerance;
    SuperInputs m_superInputs;
    std::unique_ptr<SuperFilter> m_super;
    std::unique_ptr<TemplateRecorder> m_recorder;
    PassRateLabels* m_passRates = nullptr;
    QComboBox* m_allRowsSpan = nullptr;     // Combo1(20)
    QLabel* m_integratedRate = nullptr;     // the integrated filter's pass rate
    RecordSource m_recordSource;
    bool m_addToTemplatePicked = false;
    bool m_acting = false;
    std::deque<std::function<void()>> m_pending;
    // The zone of a tab change that waits in the queue, and the count of tab changes so far.
    std::optional<int16_t> m_pendingZone;
    int m_tabChanges = 0;
    bool m_closeWhenIdle = false;
};
