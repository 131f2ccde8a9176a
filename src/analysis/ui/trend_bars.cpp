#include "analysis/ui/trend_bars.h"

#include "analysis/trend_grid.h"
#include "workspace/ui/probability_bar.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>

namespace {
// Value label colours: a pick red, a banker green (on dark, as on the number board), else black.
const QString kPicked = QStringLiteral("color: rgb(255,0,0);");
const QString kBanker = QStringLiteral("color: rgb(0,255,0); background: rgb(40,40,40);");
const QString kPlain = QStringLiteral("color: black;");
constexpr int kFrontItems = 36;  // one item for each number of the largest zone
constexpr int kBackItems = 24;
}  // namespace

TrendBars::TrendBars(Zone zone, int columns, QWidget* parent) : QGroupBox(parent), m_zone(zone) {
    const bool front = zone == Zone::Front;
    setTitle(front ? QStringLiteral("前区概率") : QStringLiteral("后区概率"));
    setObjectName(front ? QStringLiteral("frontProbabilities") : QStringLiteral("backProbabilities"));
    const QString suffix = front ? QString() : QStringLiteral("H");
    const int items = front ? kFrontItems : kBackItems;
    const int rows = (items + columns - 1) / columns;
    QFont small = font();
    small.setPointSizeF(8.0);
    setFont(small);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(4, 2, 4, 2);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(1);
    for (int n = 1; n <= items; ++n) {
        auto* row = new QWidget(this);
        auto* h = new QHBoxLayout(row);
        h->setContentsMargins(0, 0, 0, 0);
        h->setSpacing(3);
        auto* caption = new QLabel(QStringLiteral("%1概率:").arg(n, 2, 10, QLatin1Char('0')), row);
        caption->setObjectName(QStringLiteral("Label4%1(%2)").arg(suffix).arg(n - 1));
        auto* value = new QLabel(row);
        value->setObjectName(QStringLiteral("Label6%1(%2)").arg(suffix).arg(n - 1));
        value->setToolTip(kValueTip);
        value->setFixedWidth(44);
        value->setCursor(Qt::PointingHandCursor);
        value->installEventFilter(this);
        auto* bar = new ProbabilityBar(kFullScale, row);
        bar->setObjectName(QStringLiteral("Picture2%1(%2)").arg(suffix).arg(n - 1));
        bar->setMinimumWidth(30);
        h->addWidget(caption);
        h->addWidget(value);
        h->addWidget(bar, 1);
        // Numbers run down the columns, as on the board.
        grid->addWidget(row, (n - 1) % rows, (n - 1) / rows);
        m_rows << row;
        m_captions << caption;
        m_values << value;
        m_bars << bar;
    }
}

double TrendBars::barUnits(Zone zone, double probability) {
    return zone == Zone::Front ? 2 * probability - 2 : probability - 4;
}

void TrendBars::render(const TrendGrid& grid) {
    for (int n = 1; n <= static_cast<int>(m_rows.size()); ++n) {
        const bool inZone = n <= grid.size();
        m_rows[n - 1]->setVisible(inZone);
        if (!inZone) continue;
        const double p = grid.probability(n);
        QLabel* value = m_values[n - 1];
        value->setText(QString::number(p));
        value->setStyleSheet(grid.picked(n) ? kPicked : grid.banker(n) ? kBanker : kPlain);
        m_bars[n - 1]->setBarWidth(barUnits(m_zone, p));
    }
}

bool TrendBars::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease) {
        const int i = static_cast<int>(m_values.indexOf(static_cast<QLabel*>(watched)));
        const auto button = static_cast<QMouseEvent*>(event)->button();
        if (i >= 0 && button == Qt::LeftButton) emit numberClicked(i + 1);
        if (i >= 0 && button == Qt::RightButton) emit numberRightClicked(i + 1);
        if (i >= 0) return true;
    }
    return QGroupBox::eventFilter(watched, event);
}
