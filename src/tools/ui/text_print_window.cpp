#include "tools/ui/text_print_window.h"

#include "workspace/ui/named_widgets.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QFontDialog>
#include <QHBoxLayout>
#include <QMenu>
#include <QPrinter>
#include <QPushButton>
#include <QTextEdit>
#include <QUrl>
#include <QVBoxLayout>

namespace {

std::optional<QFont> askFont(const QFont& current, QWidget* parent) {
    bool ok = false;
    const QFont f = QFontDialog::getFont(&ok, current, parent);
    return ok ? std::optional(f) : std::nullopt;
}

}  // namespace

TextPrintWindow::TextPrintWindow(const QString& path, QWidget* parent)
    : QDialog(parent), m_printerChooser(choosePrinter), m_fontChooser(askFont) {
    setObjectName(QStringLiteral("frmPrint"));
    setWindowTitle(QStringLiteral("打印预览（可以用鼠标反键复制并粘贴到Word等文字处理软件中排版）"));
    resize(760, 600);
    auto* layout = new QVBoxLayout(this);
    m_text = new QTextEdit(this);
    m_text->setObjectName(QStringLiteral("RichTextBox1"));
    m_text->setLineWrapMode(QTextEdit::NoWrap);
    // Fixed width, so that the tickets stand in columns as on paper.
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) m_text->setPlainText(QString::fromUtf8(file.readAll()));
    m_text->setContextMenuPolicy(Qt::CustomContextMenu);
    auto* menu = new QMenu(this);
    QAction* copy = menu->addAction(QStringLiteral("复制(&C)"));
    copy->setObjectName(QStringLiteral("mnuCopy"));
    connect(copy, &QAction::triggered, this, &TextPrintWindow::copyAll);
    connect(m_text, &QWidget::customContextMenuRequested, this,
            [this, menu](const QPoint& at) { menu->popup(m_text->viewport()->mapToGlobal(at)); });
    layout->addWidget(m_text, 1);

    auto* bar = new QHBoxLayout;
    auto* printButton = namedButton(QStringLiteral("Command1"), QStringLiteral("打印(&P)"), this);
    auto* fontButton = namedButton(QStringLiteral("Command3"), QStringLiteral("字体(&F)"), this);
    auto* closeButton = namedButton(QStringLiteral("Command2"), QStringLiteral("返回(&R)"), this);
    bar->addWidget(printButton);
    bar->addWidget(fontButton);
    bar->addStretch();
    bar->addWidget(closeButton);
    layout->addLayout(bar);
    connect(printButton, &QPushButton::clicked, this, &TextPrintWindow::print);
    connect(fontButton, &QPushButton::clicked, this, &TextPrintWindow::chooseFont);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::close);
}

void TextPrintWindow::print() {
    QPrinter printer;
    if (!m_printerChooser(printer, m_text->textCursor().hasSelection(), this)) return;
    m_text->print(&printer);
}

void TextPrintWindow::chooseFont() {
    // A cancelled dialog leaves the text as it is.
    if (const std::optional<QFont> f = m_fontChooser(m_text->font(), this)) m_text->setFont(*f);
}

void TextPrintWindow::copyAll() {
    QClipboard* clipboard = QApplication::clipboard();
    clipboard->clear();
    clipboard->setText(m_text->toPlainText());
}

bool showTextRoute(const QString& folder, const ticket_print::Document& d, QWidget* parent, QString* error) {
    const QString path = QDir(folder).filePath(QStringLiteral("Print.txt"));
    if (!ticket_print::writeTextFile(path, d, error)) return false;
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(path))) return true;
    auto* w = new TextPrintWindow(path, parent);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->show();
    return true;
}
