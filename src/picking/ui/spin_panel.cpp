#include "picking/ui/spin_panel.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
// A cell of a spin row. Up to 16 cells show in a row, and the rows must fit under the number
// board whatever the count: a cell takes between the least width that holds a bold two-digit
// number and its full width, and a hidden cell keeps its place, so the panel asks for the same
// width with 5 cells shown as with 16 and never widens the window.
constexpr int kCellMinWidth = 18;
constexpr int kCellWidth = 22;
constexpr int kCellHeight = 20;
// The unrounded percentage of a bar, as "17.1428571428571".
constexpr int kPercentWidth = 110;
constexpr int kPercentHeight = 14;

// The place of a cell in the grid. The label fills it at a fixed size set on each resize, so
// that a new number each tick repaints the label and asks for no layout.
class CellPlace : public QWidget {
public:
    explicit CellPlace(QWidget* parent) : QWidget(parent) {
        setFixedHeight(kCellHeight);
        setMinimumWidth(kCellMinWidth);
        setMaximumWidth(kCellWidth);
        QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        policy.setRetainSizeWhenHidden(true);
        setSizePolicy(policy);
    }

protected:
    void resizeEvent(QResizeEvent*) override {
        for (QWidget* w : findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) w->setFixedSize(size());
    }
};

// A cell of a spin row, in its place; the grid holds the place (the label's parent).
QLabel* spinCell(QWidget* parent, const QString& name) {
    auto* l = new QLabel(new CellPlace(parent));
    l->setObjectName(name);
    l->setAlignment(Qt::AlignCenter);
    l->setFixedSize(kCellWidth, kCellHeight);
    l->setFrameShape(QFrame::Panel);
    l->setFrameShadow(QFrame::Sunken);
    l->setStyleSheet(QStringLiteral("background: white; color: rgb(200,0,0); font-weight: bold;"));
    return l;
}
}  // namespace

SpinRows::SpinRows(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("SpinRows"));
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* box = new QGroupBox(QStringLiteral("摇奖"), this);
    outer->addWidget(box);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(6, 4, 6, 4);
    grid->setHorizontalSpacing(2);
    grid->setVerticalSpacing(3);
    const QString backStyle = QStringLiteral("background: white; color: rgb(0,0,200); font-weight: bold;");
    const char* titles[] = {"前区机选", "前区预测", "后区机选", "后区预测"};
    for (int row = 0; row < 4; ++row) {
        auto* title = new QLabel(QString::fromUtf8(titles[row]), box);
        title->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        grid->addWidget(title, row, 0);
    }
    for (int i = 0; i < kFrontSlots; ++i) {
        m_machine << spinCell(box, QStringLiteral("Label1(%1)").arg(i));
        m_predict << spinCell(box, QStringLiteral("Label2(%1)").arg(i));
        grid->addWidget(m_machine.last()->parentWidget(), 0, 1 + i);
        grid->addWidget(m_predict.last()->parentWidget(), 1, 1 + i);
    }
    for (int i = 0; i < kBackSlots; ++i) {
        m_machineBack << spinCell(box, QStringLiteral("lblHou1(%1)").arg(i));
        m_predictBack << spinCell(box, QStringLiteral("lblHou2(%1)").arg(i));
        m_machineBack.last()->setStyleSheet(backStyle);
        m_predictBack.last()->setStyleSheet(backStyle);
        grid->addWidget(m_machineBack.last()->parentWidget(), 2, 1 + i);
        grid->addWidget(m_predictBack.last()->parentWidget(), 3, 1 + i);
    }
    // The cells grow into spare room up to their full width; the rest stays right of them.
    grid->setColumnStretch(1 + kFrontSlots, 1);
    for (int i = 0; i < kFrontSlots; ++i) grid->setColumnStretch(1 + i, 1);
    m_startButton = new QPushButton(QStringLiteral("开始(&S)"), box);
    m_startButton->setObjectName(QStringLiteral("ComSta"));
    m_pauseButton = new QPushButton(QStringLiteral("暂停(&P)"), box);
    m_pauseButton->setObjectName(QStringLiteral("ComSpd"));
    m_resetButton = new QPushButton(QStringLiteral("重置(&T)"), box);
    m_resetButton->setObjectName(QStringLiteral("ComRst"));
    // Start and reset wait for enough picks; the spin itself comes with the simulator.
    for (QPushButton* b : {m_startButton, m_pauseButton, m_resetButton}) b->setEnabled(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_startButton);
    buttons->addWidget(m_pauseButton);
    buttons->addWidget(m_resetButton);
    grid->addLayout(buttons, 4, 0, 1, 2 + kFrontSlots);
    setSpinCounts(5, 2);
}

void SpinRows::setSpinCounts(int front, int back) {
    for (int i = 0; i < kFrontSlots; ++i) {
        m_machine[i]->parentWidget()->setVisible(i < front);
        m_predict[i]->parentWidget()->setVisible(i < front);
    }
    for (int i = 0; i < kBackSlots; ++i) {
        m_machineBack[i]->parentWidget()->setVisible(i < back);
        m_predictBack[i]->parentWidget()->setVisible(i < back);
    }
}

ProbabilityBars::ProbabilityBars(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("ProbabilityBars"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(makeBars(QStringLiteral("前区概率"), kFrontBars, 0, 2), 3);
    layout->addWidget(makeBars(QStringLiteral("后区概率"), 24, kBackOffset, 2), 2);
}

QWidget* ProbabilityBars::makeBars(const QString& title, int count, int offset, int columns) {
    auto* box = new QGroupBox(title, this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(4, 2, 4, 2);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(0);
    const int rows = (count + columns - 1) / columns;
    for (int n = 1; n <= count; ++n) {
        auto* cell = new QWidget(box);
        auto* h = new QHBoxLayout(cell);
        h->setContentsMargins(0, 0, 0, 0);
        h->setSpacing(2);
        auto* caption = new QLabel(QStringLiteral("%1的概率:").arg(n, 2, 10, QLatin1Char('0')), cell);
        auto* bar = new ProbabilityBar(kBarUnits, cell);
        bar->setObjectName(QStringLiteral("Picture2(%1)").arg(offset + n));
        auto* pct = new QLabel(QStringLiteral("0"), cell);
        pct->setObjectName(QStringLiteral("Label6(%1)").arg(offset + n));
        // A fixed size: a new text each tick repaints the label and lays out nothing.
        pct->setFixedSize(kPercentWidth, kPercentHeight);
        m_percents[static_cast<size_t>(offset + n)] = pct;
        m_bars[static_cast<size_t>(offset + n)] = bar;
        // A font rather than a style sheet: a styled label paints much slower, and these repaint
        // with every tick of the spin.
        QFont small = caption->font();
        small.setPointSize(8);
        for (QLabel* l : {caption, pct}) l->setFont(small);
        h->addWidget(caption);
        h->addWidget(bar, 1);
        h->addWidget(pct);
        const int i = n - 1;
        grid->addWidget(cell, i % rows, i / rows);
        (offset == 0 ? m_frontBarRows : m_backBarRows) << cell;
    }
    return box;
}

void ProbabilityBars::setZoneSizes(int frontSize, int backSize) {
    for (int i = 0; i < static_cast<int>(m_frontBarRows.size()); ++i)
        m_frontBarRows[i]->setVisible(i + 1 <= frontSize);
    for (int i = 0; i < static_cast<int>(m_backBarRows.size()); ++i)
        m_backBarRows[i]->setVisible(i + 1 <= backSize);
}

void SpinRows::showMachinePick(Zone zone, int i, int number) {
    const QList<QLabel*>& row = zone == Zone::Front ? m_machine : m_machineBack;
    if (i >= 0 && i < row.size()) row[i]->setText(QString::number(number));
}

void SpinRows::showPrediction(Zone zone, int i, int number) {
    const QList<QLabel*>& row = zone == Zone::Front ? m_predict : m_predictBack;
    if (i >= 0 && i < row.size()) row[i]->setText(QString::number(number));
}

void SpinRows::clearRows() {
    for (const QList<QLabel*>* row : {&m_machine, &m_predict, &m_machineBack, &m_predictBack})
        for (QLabel* l : *row) l->clear();
}

void ProbabilityBars::showShare(int index, double percent, double barWidth) {
    if (index < 0 || index >= static_cast<int>(m_bars.size()) || !m_bars[static_cast<size_t>(index)]) return;
    m_percents[static_cast<size_t>(index)]->setText(QString::number(percent, 'g', 15));
    // Most numbers are not picked and keep their empty bar: only a changed bar repaints.
    ProbabilityBar* bar = m_bars[static_cast<size_t>(index)];
    if (bar->barWidth() != barWidth) bar->setBarWidth(barWidth);
}

void ProbabilityBars::clearShares() {
    for (size_t i = 0; i < m_bars.size(); ++i) {
        if (!m_bars[i]) continue;
        m_percents[i]->setText(QStringLiteral("0"));
        m_bars[i]->setBarWidth(0);
    }
}
