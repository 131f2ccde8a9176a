#pragma once

#include "filter/filter_source.h"
#include "filter/filter_workspace.h"
#include "filter/result_grid_model.h"
#include "filter/six/six_params.h"
#include "filter/six/six_settings.h"
#include "filter/super/super_filter.h"

#include <QWidget>

#include <array>
#include <memory>

class Prompter;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QTableView;
class Session;

// The six-number filter window over zuhef, one class for GAganf, Gdanaganf and GAganfMb: the
// nineteen parameters on one frame with 保留 and 排除, the history filters of 3, 4 and 5
// numbers, the relation and group filters, the integrated filter, saved settings, the four
// buttons under the grid, paging, printing and the money the live rows cost.
class SixFilterWindow : public QWidget {
    Q_OBJECT
public:
    SixFilterWindow(FilterSource instance, std::unique_ptr<FilterWorkspace> workspace, Session& session,
                    Prompter& prompter, QWidget* parent = nullptr);
    ~SixFilterWindow() override;

    FilterWorkspace& workspace() { return *m_workspace; }
    ResultGridModel& gridModel() { return *m_model; }

    // A click on a parameter's option button, with the boxes as they stand.
    void runParameter(SixParam id);
    // Option26, Option28, Option27: asks for the count of draws.
    void runHistory(int matches);
    // Option25(0..2), Option30, Option31: asks for the numbers as the filter window does.
    void runSuper(SuperButton b);
    // Option29 over the parameters whose name box is ticked.
    void runIntegrated();
    // Command7 and Command6.
    void saveSetting();
    void loadSetting();

signals:
    void closed();
    // CmdPrint: the player asks for the printed list of the live rows.
    void printRequested();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeParameterFrame();
    QWidget* makeSuperFrame();
    QComboBox* makeSpanCombo(const SixParamInfo& p, QWidget* parent);
    QWidget* makeGridPanel();
    six_settings::Bounds readBounds() const;
    void act(void (*action)(CandidateTable&));
    void showPage();
    // Binds the grid and refreshes the caption and the money.
    void bindView(const GridView& view);
    void showCounts(bool firstPage);
    void toggleRow(int viewRow);

    FilterSource m_instance;
    std::unique_ptr<FilterWorkspace> m_workspace;
    Session& m_session;
    Prompter& m_prompter;
    six_params::Context m_context;
    ResultGridModel* m_model = nullptr;
    QTableView* m_grid = nullptr;
    SuperFilter m_super;
    SuperInputs m_superInputs;
    QRadioButton* m_keep = nullptr;
    QRadioButton* m_logicAnd = nullptr;
    std::array<QLineEdit*, kSixParamCount> m_lo{};
    std::array<QLineEdit*, kSixParamCount> m_hi{};
    std::array<QCheckBox*, kSixParamCount> m_ticks{};
    QLineEdit* m_page = nullptr;
    QLabel* m_money = nullptr;
};
