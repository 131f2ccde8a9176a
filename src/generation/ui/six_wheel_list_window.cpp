#include "generation/ui/six_wheel_list_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

// " 01 02 03 04 05 06": each number in two digits, led by a blank.
QString ticketText(const std::vector<int>& numbers) {
    QString text;
    for (int n : numbers) text += QStringLiteral(" %1").arg(n, 2, 10, QLatin1Char('0'));
    return text;
}

QPushButton* button(const QString& given, const QString& caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(given);
    return b;
}

}  // namespace

SixWheelListWindow::SixWheelListWindow(std::vector<std::vector<int>> tickets, QWidget* parent)
    : QDialog(parent), m_tickets(std::move(tickets)) {
    setObjectName(QStringLiteral("aganFRote"));
    setWindowTitle(QStringLiteral("旋转排列"));

    const int lines = static_cast<int>((m_tickets.size() + kTicketsPerLine - 1) / kTicketsPerLine);
    m_grid = new QTableWidget(lines, kTicketsPerLine + 1, this);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->verticalHeader()->hide();
    m_grid->horizontalHeader()->hide();
    for (int line = 0; line < lines; ++line) {
        m_grid->setItem(line, 0, new QTableWidgetItem(QString::number(line + 1)));
        for (int k = 0; k < kTicketsPerLine; ++k) {
            const size_t at = static_cast<size_t>(line * kTicketsPerLine + k);
            if (at < m_tickets.size())
                m_grid->setItem(line, k + 1, new QTableWidgetItem(ticketText(m_tickets[at])));
        }
    }
    m_grid->resizeColumnsToContents();

    auto* money = new QLabel(QStringLiteral("单注旋转所需总金额:"), this);
    money->setObjectName(QStringLiteral("Label5"));
    auto* total = new QLabel(QString::number(m_tickets.size() * kYuanPerTicket) + QStringLiteral("圆"), this);
    total->setObjectName(QStringLiteral("Label6"));
    QPushButton* preview = button(QStringLiteral("CmdPrint(0)"), QStringLiteral("打印预览(&P)"), this);
    QPushButton* print = button(QStringLiteral("CmdPrint(1)"), QStringLiteral("直接打印(&T)"), this);
    QPushButton* back = button(QStringLiteral("cmdQut"), QStringLiteral("返回(&E)"), this);
    connect(preview, &QPushButton::clicked, this, &SixWheelListWindow::previewRequested);
    connect(print, &QPushButton::clicked, this, &SixWheelListWindow::printRequested);
    connect(back, &QPushButton::clicked, this, &QDialog::accept);

    auto* row = new QHBoxLayout;
    row->addWidget(money);
    row->addWidget(total);
    row->addStretch(1);
    row->addWidget(preview);
    row->addWidget(print);
    row->addWidget(back);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_grid, 1);
    layout->addLayout(row);
    resize(900, 560);
}
