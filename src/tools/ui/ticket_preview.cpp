#include "tools/ui/ticket_preview.h"

#include "tools/pages/ticket_pages.h"
#include "tools/ui/text_print_window.h"
#include "workspace/prompter.h"
#include "workspace/ui/named_widgets.h"

#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace {

const QString kCaption = QStringLiteral("打印预览");

}  // namespace

TicketPreview::TicketPreview(ticket_print::Document document, QString folder, Prompter& prompter, QWidget* parent)
    : QDialog(parent),
      m_document(std::move(document)),
      m_folder(std::move(folder)),
      m_prompter(prompter),
      m_chooser(choosePrinter) {
    setObjectName(QStringLiteral("ticketPreview"));
    setWindowTitle(kCaption);
    // A page's width, and as tall as the screen allows.
    const QRect screen = (parent ? parent->screen() : QGuiApplication::primaryScreen())->availableGeometry();
    resize(760, std::min(900, screen.height() - 60));
    auto* layout = new QVBoxLayout(this);
    auto* bar = new QHBoxLayout;
    auto* printButton = namedButton(QStringLiteral("printButton"), QStringLiteral("打印(&P)"), this);
    auto* pdfButton = namedButton(QStringLiteral("pdfButton"), QStringLiteral("导出PDF(&F)"), this);
    auto* textButton = namedButton(QStringLiteral("textButton"), QStringLiteral("文本(&T)"), this);
    auto* closeButton = namedButton(QStringLiteral("closeButton"), QStringLiteral("返回(&R)"), this);
    bar->addWidget(printButton);
    bar->addWidget(pdfButton);
    bar->addWidget(textButton);
    bar->addStretch();
    bar->addWidget(closeButton);
    layout->addLayout(bar);

    m_previewPrinter = std::make_unique<QPrinter>();
    ticket_pages::setUpPage(*m_previewPrinter);
    m_view = new QPrintPreviewWidget(m_previewPrinter.get(), this);
    m_view->setObjectName(QStringLiteral("pages"));
    connect(m_view, &QPrintPreviewWidget::paintRequested, this,
            [this](QPrinter* printer) { ticket_pages::print(m_document, *printer); });
    m_view->setZoomMode(QPrintPreviewWidget::FitToWidth);
    layout->addWidget(m_view, 1);

    connect(printButton, &QPushButton::clicked, this, &TicketPreview::print);
    connect(pdfButton, &QPushButton::clicked, this, &TicketPreview::exportPdf);
    connect(textButton, &QPushButton::clicked, this, &TicketPreview::showText);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::close);
}

TicketPreview::~TicketPreview() = default;

int TicketPreview::pageCount() const { return m_view->pageCount(); }

void TicketPreview::print() {
    QPrinter printer;
    ticket_pages::setUpPage(printer);
    if (!m_chooser(printer, false, this)) return;
    ticket_pages::print(m_document, printer);
}

void TicketPreview::exportPdf() {
    const QString dir = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString path = m_prompter.saveFile(kCaption, QDir(dir).filePath(QStringLiteral("tickets.pdf")),
                                             QStringLiteral("PDF (*.pdf)"));
    if (path.isEmpty()) return;
    QString error;
    if (!ticket_pages::writePdf(m_document, path, &error))
        m_prompter.inform(kCaption, QStringLiteral("无法写入文件 %1：%2").arg(QDir::toNativeSeparators(path), error),
                          Prompter::Icon::Warning);
}

void TicketPreview::showText() {
    QString error;
    if (!showTextRoute(m_folder, m_document, this, &error))
        m_prompter.inform(kCaption, QStringLiteral("无法写入文件 %1：%2")
                                        .arg(QDir::toNativeSeparators(QDir(m_folder).filePath(QStringLiteral("Print.txt"))), error),
                          Prompter::Icon::Warning);
}

void openTicketPreview(const ticket_print::Document& document, const QString& folder, Prompter& prompter,
                       QWidget* parent) {
    auto* w = new TicketPreview(document, folder, prompter, parent);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->show();
}
