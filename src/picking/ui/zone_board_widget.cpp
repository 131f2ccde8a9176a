#include "picking/ui/zone_board_widget.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
// Text colours of a number button: plain pick red, banker green, neither black.
const QString kPicked = QStringLiteral("color: rgb(255,0,0); font-weight: bold;");
const QString kBanker = QStringLiteral("color: rgb(0,255,0); font-weight: bold; background: rgb(40,40,40);");
const QString kPlain = QStringLiteral("color: black;");
}  // namespace

const ZoneBoardWidget::Names& ZoneBoardWidget::namesOf(Zone zone) {
    static const Names front{"Command1",  "Label5", "Label19", "Command41", "Command42", "Command45",
                             "mnuDt",     "mnuDan", 36,        12,          "前区"};
    static const Names back{"Command2",  "Label10",   "Label11", "Command7", "Command6", "Command8",
                            "mnuDtHou", "mnuDanHou", 24,        12,         "后区"};
    return zone == Zone::Front ? front : back;
}

ZoneBoardWidget::ZoneBoardWidget(Zone zone, QWidget* parent) : QGroupBox(parent), m_zone(zone) {
    const Names& n = namesOf(zone);
    setTitle(QString::fromUtf8(n.title));
    setObjectName(zone == Zone::Front ? QStringLiteral("FrameQian") : QStringLiteral("FrameHou"));

    auto* hint = new QLabel(QStringLiteral("下列按钮选择参选数(右键选择胆)："), this);
    auto* grid = new QGridLayout;
    grid->setSpacing(2);
    for (int i = 1; i <= n.buttonCount; ++i) {
        auto* b = new QPushButton(QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0')), this);
        b->setObjectName(QStringLiteral("%1(%2)").arg(QString::fromLatin1(n.numberButton)).arg(i));
        b->setCheckable(true);
        b->setFixedSize(32, 24);
        b->setFocusPolicy(Qt::NoFocus);
        b->installEventFilter(this);
        b->setStyleSheet(kPlain);
        // The pressed state follows the board's logic, not the click itself.
        connect(b, &QPushButton::clicked, this, [this, b, i] {
            b->setChecked(!b->isChecked());
            emit numberClicked(i);
        });
        grid->addWidget(b, (i - 1) / n.columns, (i - 1) % n.columns);
        m_buttons << b;
    }

    auto makeButton = [this](const char* name, const char* text) {
        auto* b = new QPushButton(QString::fromUtf8(text), this);
        b->setObjectName(QString::fromLatin1(name));
        return b;
    };
    auto* all = makeButton(n.selectAll, "全选(&A)");
    auto* inv = makeButton(n.invert, "反选(&O)");
    auto* reset = makeButton(n.reset, "重选(&R)");
    m_invert = inv;

    m_popup = new QMenu(QStringLiteral("胆拖模式"), this);
    m_popup->setObjectName(QString::fromLatin1(n.popup));
    QAction* bankerItem = m_popup->addAction(QStringLiteral("胆-选择/取消"));
    bankerItem->setObjectName(QString::fromLatin1(n.popupItem));
    connect(bankerItem, &QAction::triggered, this, &ZoneBoardWidget::bankerToggled);
    connect(all, &QPushButton::clicked, this, &ZoneBoardWidget::selectAllClicked);
    connect(inv, &QPushButton::clicked, this, &ZoneBoardWidget::invertClicked);
    connect(reset, &QPushButton::clicked, this, &ZoneBoardWidget::resetClicked);

    m_pickCountLabel = new QLabel(QStringLiteral("0"), this);
    m_pickCountLabel->setObjectName(QString::fromLatin1(n.pickCountLabel));
    m_bankerCountLabel = new QLabel(QStringLiteral("0"), this);
    m_bankerCountLabel->setObjectName(QString::fromLatin1(n.bankerCountLabel));
    for (QLabel* l : {m_pickCountLabel, m_bankerCountLabel}) {
        l->setMinimumWidth(22);
        l->setStyleSheet(QStringLiteral("color: rgb(0,0,160); font-weight: bold;"));
    }

    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("拖"), this));
    row->addWidget(m_pickCountLabel);
    row->addWidget(new QLabel(QStringLiteral("胆"), this));
    row->addWidget(m_bankerCountLabel);
    row->addStretch();
    row->addWidget(all);
    row->addWidget(inv);
    row->addWidget(reset);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->setSpacing(3);
    layout->addWidget(hint);
    layout->addLayout(grid);
    layout->addLayout(row);
}

void ZoneBoardWidget::render(const ZoneBoard& board) {
    for (int i = 1; i <= static_cast<int>(m_buttons.size()); ++i) {
        QPushButton* b = m_buttons[i - 1];
        const NumberButton& state = board.button(i);
        b->setVisible(state.visible);
        b->setChecked(state.pressed);
        b->setStyleSheet(state.colour == ButtonColour::Green ? kBanker
                         : state.colour == ButtonColour::Red ? kPicked
                                                             : kPlain);
    }
    m_pickCountLabel->setText(QString::number(board.pickLabel()));
    m_bankerCountLabel->setText(QString::number(board.bankerLabel()));
    m_invert->setEnabled(board.invertEnabled);
}

bool ZoneBoardWidget::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
        const int i = static_cast<int>(m_buttons.indexOf(static_cast<QPushButton*>(watched)));
        if (i >= 0) {
            emit numberRightClicked(i + 1);
            return true;
        }
    }
    return QGroupBox::eventFilter(watched, event);
}
