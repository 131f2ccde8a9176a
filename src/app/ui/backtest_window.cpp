#include "app/ui/backtest_window.h"

#include "app/backtest_job.h"
#include "filter/templates/saved_setting_store.h"
#include "app/ui/backtest_rows_model.h"
#include "tools/table_export.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QChart>
#include <QChartView>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineSeries>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QTableView>
#include <QValueAxis>
#include <QVBoxLayout>

#include <algorithm>

namespace {

const QString kTitle = QStringLiteral("过滤回测");
// The result in green for a gain, red otherwise, as the prize check shows it.
const QColor kGain(0, 255, 0);
const QColor kLoss(255, 0, 0);

}  // namespace

BacktestWindow::BacktestWindow(Session& session, Prompter& prompter, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_session(session),
      m_prompter(prompter),
      m_job(new BacktestJob(session, this)),
      m_model(new BacktestRowsModel(this)) {
    setObjectName(QStringLiteral("BacktestWindow"));
    setWindowTitle(kTitle);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeControls());
    auto* split = new QSplitter(Qt::Horizontal, this);
    auto* grid = new QTableView(split);
    grid->setObjectName(QStringLiteral("GridBacktest"));
    grid->setModel(m_model);
    grid->verticalHeader()->hide();
    grid->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    grid->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    split->addWidget(grid);
    split->addWidget(makeChart());
    split->setStretchFactor(1, 1);
    // The grid wide enough for its seven columns, the chart the rest.
    split->setSizes({560, 640});
    layout->addWidget(split, 1);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("ProgressBacktest"));
    m_summaryLabel = new QLabel(this);
    m_summaryLabel->setObjectName(QStringLiteral("LabelSummary"));
    m_result = new QLabel(this);
    m_result->setObjectName(QStringLiteral("LabelResult"));
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_summaryLabel, 1);
    bottom->addWidget(m_result);
    layout->addWidget(m_progress);
    layout->addLayout(bottom);
    connect(m_job, &BacktestJob::tableReady, this, [this](quint64 rows) {
        m_summaryLabel->setText(QStringLiteral("号码表共%1注，正在回测……").arg(rows));
    });
    connect(m_job, &BacktestJob::drawDone, this, &BacktestWindow::drawDone);
    connect(m_job, &BacktestJob::finished, this, &BacktestWindow::finished);
    setRunning(false);
    m_drawAxis->setRange(1, m_span->value());
    m_keptAxis->setRange(0, 100);
    resize(1200, 640);
}

BacktestWindow::~BacktestWindow() {
    // The worker is stopped and joined while the window still stands.
    m_job->disconnect(this);
    delete m_job;
}

QWidget* BacktestWindow::makeControls() {
    auto* bar = new QWidget(this);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    m_strategy = new QComboBox(bar);
    m_strategy->setObjectName(QStringLiteral("ComboStrategy"));
    m_strategy->addItem(QStringLiteral("过滤模板（按步骤重放）"));
    const saved_setting_store::Finder finder(m_session.filterDb());
    for (const QString& name : finder.names()) m_strategy->addItem(QStringLiteral("过滤设置：") + name, name);
    m_scope = new QComboBox(bar);
    m_scope->setObjectName(QStringLiteral("ComboScope"));
    m_scope->addItem(QStringLiteral("前区"), int(ZoneScope::Front));
    m_scope->addItem(QStringLiteral("后区"), int(ZoneScope::Back));
    m_scope->addItem(QStringLiteral("前后区"), int(ZoneScope::Both));
    // The zone belongs to a saved setting; a template step carries its own.
    const auto scopeFollows = [this] { m_scope->setEnabled(m_strategy->currentIndex() > 0); };
    connect(m_strategy, &QComboBox::currentIndexChanged, this, scopeFollows);
    scopeFollows();
    m_span = new QSpinBox(bar);
    m_span->setObjectName(QStringLiteral("SpinSpan"));
    m_span->setRange(1, std::max(1, m_session.history().drawCount() - 1));
    m_span->setValue(std::min(backtest::kDefaultSpan, m_span->maximum()));
    m_span->setSuffix(QStringLiteral("期"));
    m_space = new QComboBox(bar);
    m_space->setObjectName(QStringLiteral("ComboSpace"));
    m_space->addItem(QStringLiteral("全部号码（%1选5+%2选2）").arg(m_session.frontSize()).arg(m_session.backSize()));
    m_space->addItem(QStringLiteral("当前选号组合"));
    m_start = new QPushButton(QStringLiteral("开始回测(&S)"), bar);
    m_start->setObjectName(QStringLiteral("CmdStart"));
    m_cancel = new QPushButton(QStringLiteral("取消(&C)"), bar);
    m_cancel->setObjectName(QStringLiteral("CmdCancel"));
    m_export = new QPushButton(QStringLiteral("导出表格(&X)"), bar);
    m_export->setObjectName(QStringLiteral("CmdExport"));
    auto* quit = new QPushButton(QStringLiteral("返回(&E)"), bar);
    quit->setObjectName(QStringLiteral("cmdQut"));
    connect(m_start, &QPushButton::clicked, this, &BacktestWindow::start);
    connect(m_cancel, &QPushButton::clicked, this, &BacktestWindow::cancel);
    connect(m_export, &QPushButton::clicked, this, &BacktestWindow::exportTable);
    connect(quit, &QPushButton::clicked, this, &QWidget::close);
    row->addWidget(new QLabel(QStringLiteral("回测对象:"), bar));
    row->addWidget(m_strategy, 1);
    row->addWidget(m_scope);
    row->addWidget(new QLabel(QStringLiteral("最近"), bar));
    row->addWidget(m_span);
    row->addWidget(new QLabel(QStringLiteral("号码:"), bar));
    row->addWidget(m_space);
    for (QPushButton* b : {m_start, m_cancel, m_export, quit}) row->addWidget(b);
    return bar;
}

QWidget* BacktestWindow::makeChart() {
    auto* chart = new QChart;
    m_kept = new QLineSeries(chart);
    m_kept->setName(QStringLiteral("剩余注数"));
    m_survival = new QLineSeries(chart);
    m_survival->setName(QStringLiteral("累计存活率(%)"));
    chart->addSeries(m_kept);
    chart->addSeries(m_survival);
    m_drawAxis = new QValueAxis(chart);
    m_drawAxis->setTitleText(QStringLiteral("回测第几期"));
    m_drawAxis->setLabelFormat(QStringLiteral("%d"));
    m_keptAxis = new QValueAxis(chart);
    m_keptAxis->setTitleText(QStringLiteral("注数"));
    m_keptAxis->setLabelFormat(QStringLiteral("%d"));
    auto* rateAxis = new QValueAxis(chart);
    rateAxis->setRange(0, 100);
    rateAxis->setTitleText(QStringLiteral("%"));
    chart->addAxis(m_drawAxis, Qt::AlignBottom);
    chart->addAxis(m_keptAxis, Qt::AlignLeft);
    chart->addAxis(rateAxis, Qt::AlignRight);
    m_kept->attachAxis(m_drawAxis);
    m_kept->attachAxis(m_keptAxis);
    m_survival->attachAxis(m_drawAxis);
    m_survival->attachAxis(rateAxis);
    auto* view = new QChartView(chart, this);
    view->setObjectName(QStringLiteral("ChartBacktest"));
    view->setRenderHint(QPainter::Antialiasing);
    view->setMinimumWidth(420);
    return view;
}

bool BacktestWindow::running() const { return m_job->running(); }

void BacktestWindow::start() {
    if (running()) return;
    BacktestJob::Request request;
    if (m_strategy->currentIndex() > 0)
        request.strategy = backtest::Strategy::setting(m_strategy->currentData().toString(),
                                                       static_cast<ZoneScope>(m_scope->currentData().toInt()));
    request.space = m_space->currentIndex() == 0 ? backtest::Space::Full : backtest::Space::Picks;
    request.span = m_span->value();
    m_model->clear();
    m_kept->clear();
    m_survival->clear();
    m_summary = {};
    m_result->clear();
    const int total = backtest::spanOf(m_session.history().drawCount(), request.span).count();
    m_progress->setRange(0, std::max(1, total));
    m_progress->setValue(0);
    m_drawAxis->setRange(1, std::max(2, total));
    m_keptAxis->setRange(0, 100);
    m_summaryLabel->setText(QStringLiteral("正在生成号码表……"));
    setRunning(m_job->start(request));
}

void BacktestWindow::cancel() { m_job->cancel(); }

void BacktestWindow::drawDone(const backtest::DrawRow& row, int done, int total) {
    m_model->append(row);
    m_summary = backtest::summarize(m_model->rows());
    m_kept->append(done, static_cast<qreal>(row.kept));
    m_survival->append(done, 100.0 * m_summary.survived / std::max(1, m_summary.draws));
    if (static_cast<qreal>(row.kept) > m_keptAxis->max()) {
        m_keptAxis->setMax(static_cast<qreal>(row.kept) * 1.05);
        m_keptAxis->applyNiceNumbers();
    }
    m_progress->setMaximum(std::max(1, total));
    m_progress->setValue(done);
    showSummary(m_summary);
}

void BacktestWindow::finished(const backtest::Result& result) {
    setRunning(false);
    if (!result.error.isEmpty()) {
        m_summaryLabel->setText(result.error);
        m_prompter.inform(kTitle, result.error, Prompter::Icon::Warning);
    } else {
        m_summary = result.summary;
        showSummary(m_summary);
        if (result.cancelled) m_summaryLabel->setText(m_summaryLabel->text() + QStringLiteral("（已取消）"));
    }
    emit runEnded();
}

void BacktestWindow::showSummary(const backtest::Summary& s) {
    m_summaryLabel->setText(QStringLiteral("共%1期，中奖号存活%2期，存活率%3%；剩余注数中位%4（%5~%6）；总花费%7元，总奖金%8元")
                                .arg(s.draws)
                                .arg(s.survived)
                                .arg(s.survivalRate * 100, 0, 'f', 1)
                                .arg(s.medianKept)
                                .arg(s.minKept)
                                .arg(s.maxKept)
                                .arg(s.totalCost)
                                .arg(s.totalWinnings));
    m_result->setText(QStringLiteral("盈亏:%1元").arg(s.net));
    QPalette p = m_result->palette();
    p.setColor(QPalette::WindowText, s.net > 0 ? kGain : kLoss);
    m_result->setPalette(p);
}

void BacktestWindow::setRunning(bool on) {
    m_start->setEnabled(!on);
    m_cancel->setEnabled(on);
    m_export->setEnabled(!on);
    for (QWidget* w : std::initializer_list<QWidget*>{m_strategy, m_span, m_space}) w->setEnabled(!on);
    m_scope->setEnabled(!on && m_strategy->currentIndex() > 0);
}

void BacktestWindow::exportTable() {
    if (m_model->rowCount() == 0) {
        m_prompter.inform(kTitle, QStringLiteral("还没有回测结果可以导出。"));
        return;
    }
    const QString path = m_prompter.saveFile(kTitle, QDir(m_session.paths().folder()).filePath(QStringLiteral("回测.xlsx")),
                                             QStringLiteral("Excel (*.xlsx)"));
    if (path.isEmpty()) return;
    QString error;
    if (!table_export::writeXlsx(m_model->grid(m_summary), path, &error))
        m_prompter.inform(kTitle, QStringLiteral("表格无法写入：") + error, Prompter::Icon::Warning);
}

void BacktestWindow::closeEvent(QCloseEvent* event) {
    // The job's end waits for its worker; a run under way is cancelled first.
    m_job->cancel();
    event->accept();
}
