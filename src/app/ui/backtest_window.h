#pragma once

// 过滤回测: how the filter template or a saved setting would have fared on the last draws. The
// player chooses what to test, the span and the tickets; the rows come in draw by draw with
// the progress, a chart of the kept tickets and the running survival beside them, and the
// summary under them. Cancel keeps the rows done; the table exports to a spreadsheet.

#include "filter/backtest/backtest_runner.h"

#include <QWidget>

class BacktestJob;
class BacktestRowsModel;
class Prompter;
class QComboBox;
class QLabel;
class QLineSeries;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QTableView;
class QValueAxis;
class Session;

class BacktestWindow : public QWidget {
    Q_OBJECT
public:
    BacktestWindow(Session& session, Prompter& prompter, QWidget* parent = nullptr);
    ~BacktestWindow() override;

    BacktestRowsModel& rowsModel() { return *m_model; }
    bool running() const;

    void start();
    void cancel();
    void exportTable();

signals:
    // The run has ended, all of it or up to a cancel, or could not start.
    void runEnded();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeControls();
    QWidget* makeChart();
    void drawDone(const backtest::DrawRow& row, int done, int total);
    void finished(const backtest::Result& result);
    void showSummary(const backtest::Summary& s);
    void setRunning(bool on);

    Session& m_session;
    Prompter& m_prompter;
    BacktestJob* m_job;
    BacktestRowsModel* m_model;
    backtest::Summary m_summary;
    QComboBox* m_strategy = nullptr;
    QComboBox* m_scope = nullptr;
    QSpinBox* m_span = nullptr;
    QComboBox* m_space = nullptr;
    QPushButton* m_start = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_export = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_summaryLabel = nullptr;
    QLabel* m_result = nullptr;
    QLineSeries* m_kept = nullptr;
    QLineSeries* m_survival = nullptr;
    QValueAxis* m_drawAxis = nullptr;
    QValueAxis* m_keptAxis = nullptr;
};
