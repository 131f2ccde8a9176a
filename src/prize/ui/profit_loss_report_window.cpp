#include "prize/ui/profit_loss_report_window.h"

#include "workspace/prompter.h"
#include "workspace/ui/named_widgets.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPrinter>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {
QPushButton* button(const QString& name, const QString& caption, const QString& tip, QWidget* parent) {
    QPushButton* b = namedButton(name, caption, parent);
    b->setToolTip(tip);
    return b;
}
}  // namespace

ProfitLossReportWindow::ProfitLossReportWindow(ReportBook book, Prompter& prompter, QWidget* parent)
    : QDialog(parent), m_book(std::move(book)), m_prompter(prompter), m_chooser(choosePrinter) {
    setObjectName(QStringLiteral("frmYk"));
    setWindowTitle(ReportBook::kCaption);
    auto* layout = new QHBoxLayout(this);

    auto* left = new QVBoxLayout;
    auto* label = new QLabel(ReportBook::kListLabel, this);
    label->setObjectName(QStringLiteral("Label1"));
    label->setWordWrap(true);
    left->addWidget(label);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("List1"));
    left->addWidget(m_list, 1);
    auto* buttons = new QGridLayout;
    const QString closeTip = QStringLiteral("关闭该窗口");
    auto* previousButton = button(QStringLiteral("Command1"), QStringLiteral("上一次(&P)"),
                                  QStringLiteral("显示上次中奖查询产生的盈亏报告"), this);
    auto* nextButton = button(QStringLiteral("Command2"), QStringLiteral("下一次(&N)"),
                              QStringLiteral("显示下次中奖查询产生的盈亏报告"), this);
    auto* printButton = button(QStringLiteral("Command4"), QStringLiteral("打印(&P)"),
                               QStringLiteral("通过打印机将该报告打印"), this);
    auto* deleteTickedButton =
        button(QStringLiteral("Command6"), QStringLiteral("指定删除(&D)"), closeTip, this);
    auto* deleteAllButton =
        button(QStringLiteral("Command5"), QStringLiteral("全部删除(&R)"), closeTip, this);
    auto* closeButton = button(QStringLiteral("Command3"), QStringLiteral("关闭(&C)"), {}, this);
    buttons->addWidget(previousButton, 0, 0);
    buttons->addWidget(nextButton, 0, 1);
    buttons->addWidget(printButton, 0, 2);
    buttons->addWidget(deleteTickedButton, 1, 0);
    buttons->addWidget(deleteAllButton, 1, 1);
    buttons->addWidget(closeButton, 1, 2);
    left->addLayout(buttons);
    layout->addLayout(left, 2);

    m_text = new QTextEdit(this);
    m_text->setObjectName(QStringLiteral("RichTextBox1"));
    m_text->setReadOnly(true);
    layout->addWidget(m_text, 3);

    connect(previousButton, &QPushButton::clicked, this, [this] {
        m_book.previous();
        showBookText();
    });
    connect(nextButton, &QPushButton::clicked, this, [this] {
        m_book.next();
        showBookText();
    });
    connect(m_list, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        if (m_filling) return;
        m_book.tickChanged(m_list->row(item));
        showBookText();
    });
    connect(deleteTickedButton, &QPushButton::clicked, this, [this] {
        if (!m_book.deleteTicked(m_prompter, tickedPositions())) return;
        fillList();
        showBookText();
    });
    connect(deleteAllButton, &QPushButton::clicked, this, [this] {
        if (!m_book.deleteAll(m_prompter)) return;
        fillList();
        m_text->clear();
    });
    connect(printButton, &QPushButton::clicked, this, &ProfitLossReportWindow::print);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::close);

    m_book.load();
    fillList();
    showBookText();
    resize(1000, 600);
}

ProfitLossReportWindow::~ProfitLossReportWindow() = default;

void ProfitLossReportWindow::fillList() {
    m_filling = true;
    m_list->clear();
    for (const ReportBook::Item& it : m_book.items()) {
        auto* item = new QListWidgetItem(it.text, m_list);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
    }
    m_filling = false;
}

void ProfitLossReportWindow::showBookText() {
    if (m_text->toPlainText() != m_book.shownText()) m_text->setPlainText(m_book.shownText());
}

QList<int> ProfitLossReportWindow::tickedPositions() const {
    QList<int> out;
    for (int i = 0; i < m_list->count(); ++i)
        if (m_list->item(i)->checkState() == Qt::Checked) out << i;
    return out;
}

void ProfitLossReportWindow::print() {
    QPrinter printer;
    const bool hasSelection = m_text->textCursor().hasSelection();
    if (!m_chooser(printer, hasSelection, this)) return;
    m_text->print(&printer);
}
