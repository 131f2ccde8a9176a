#include "analysis/ui/fit_window.h"

#include "analysis/line_fit_plot.h"
#include "analysis/ui/fit_plot.h"
#include "workspace/shared_state.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QString kHeading = QStringLiteral("本图为各位数平均值拟和直线以及参数与前八期拟和直线的对比.");
const QString kNote = QStringLiteral(
    "说明:直线拟合表示的是各组号码排除个别特例号码而表现出的整体趋势,具有很高的参考价值.其中A "
    "表示拟合直线在纵轴的截距,B表示坐标单位距离,R表示直线度(R值越大,分布点越接近直线,样本标准差越小)");
constexpr int kPlotColumns = 4;

}  // namespace

FitWindow::FitWindow(const DrawHistory& history, QWidget* parent) : QWidget(parent), m_history(history) {
    setObjectName(QStringLiteral("frmNh"));
    setWindowTitle(QStringLiteral("拟合直线参考"));

    auto* heading = new QLabel(kHeading, this);
    heading->setObjectName(QStringLiteral("heading"));
    auto* plots = new QGridLayout;
    for (int i = 0; i < kPlots; ++i) {
        m_plots[i] = new FitPlot(this);
        m_plots[i]->setObjectName(QStringLiteral("plot%1").arg(i + 1));
        plots->addWidget(m_plots[i], i / kPlotColumns, i % kPlotColumns);
    }
    // The ninth plot shares the last row with the draw input and the note.
    auto* note = new QLabel(kNote, this);
    note->setObjectName(QStringLiteral("note"));
    note->setWordWrap(true);
    auto* side = new QVBoxLayout;
    side->addWidget(makeDrawInput());
    side->addWidget(note, 1);
    auto* close = new QPushButton(QStringLiteral("关闭(&C)"), this);
    close->setObjectName(QStringLiteral("Command2"));
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    side->addWidget(close, 0, Qt::AlignRight);
    plots->addLayout(side, 2, 1, 1, kPlotColumns - 1);
    for (int c = 0; c < kPlotColumns; ++c) plots->setColumnStretch(c, 1);
    for (int r = 0; r < 3; ++r) plots->setRowStretch(r, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addLayout(plots, 1);
    resize(1100, 680);

    showRecentDraws();
}

QWidget* FitWindow::makeDrawInput() {
    auto* input = new QWidget(this);
    auto* row = new QHBoxLayout(input);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(new QLabel(QStringLiteral("输入期号:"), input));
    for (int i = 0; i < kDigits; ++i) {
        auto* digit = new QLineEdit(input);
        digit->setObjectName(QStringLiteral("MaskEdBox1(%1)").arg(i));
        digit->setInputMask(QStringLiteral("9"));
        digit->setFixedWidth(digit->fontMetrics().horizontalAdvance(QStringLiteral("00")) + 12);
        digit->setAlignment(Qt::AlignCenter);
        connect(digit, &QLineEdit::textEdited, this, [this, i] { digitTyped(i); });
        m_digits[i] = digit;
        row->addWidget(digit);
    }
    row->addStretch(1);
    return input;
}

void FitWindow::showRecentDraws() {
    const std::vector<int> draws = line_fit_plot::recentDraws(m_history.drawCount());
    for (size_t k = 0; k < draws.size(); ++k) showDraw(m_plots[k], draws[k]);
}

void FitWindow::digitTyped(int field) {
    if (m_digits[field]->text().isEmpty()) return;  // a digit erased
    if (field + 1 < kDigits) {
        focusDigit(field + 1);
        return;
    }
    std::array<int, kDigits> digits{};
    for (int i = 0; i < kDigits; ++i) digits[i] = m_digits[i]->text().toInt();
    if (const auto draw = line_fit_plot::typedDraw(digits, m_history.drawCount()))
        showDraw(m_plots[kPlots - 1], *draw);
}

void FitWindow::showDraw(FitPlot* plot, int runningNumber) {
    // Every stored draw, the row before the first included, holds five front numbers.
    plot->showDraw(runningNumber, draw_params::frontOf(m_history.numbers[runningNumber]));
}

void FitWindow::focusDigit(int field) {
    // Selected, so that the next digit typed replaces the one there.
    m_digits[field]->setFocus();
    m_digits[field]->selectAll();
}

void FitWindow::mousePressEvent(QMouseEvent* event) {
    focusDigit(0);
    QWidget::mousePressEvent(event);
}
