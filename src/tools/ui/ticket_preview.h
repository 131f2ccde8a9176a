#pragma once

#include "tools/ticket_print.h"

#include <QDialog>

#include <functional>
#include <memory>

class Prompter;
class QPrinter;
class QPrintPreviewWidget;

// The kept tickets as they will be printed, page by page, with 打印 (the printer dialog, then
// the printer) and PDF (a file chosen by the player).
class TicketPreview : public QDialog {
public:
    // Asks for a printer; false when the player cancels. Tests put their own in.
    using PrinterChooser = std::function<bool(QPrinter& printer, QWidget* parent)>;

    TicketPreview(ticket_print::Document document, Prompter& prompter, QWidget* parent = nullptr);
    ~TicketPreview() override;

    void setPrinterChooser(PrinterChooser chooser) { m_chooser = std::move(chooser); }
    int pageCount() const;
    void print();
    void exportPdf();

private:
    ticket_print::Document m_document;
    Prompter& m_prompter;
    PrinterChooser m_chooser;
    std::unique_ptr<QPrinter> m_previewPrinter;
    QPrintPreviewWidget* m_view = nullptr;
};

// Opens the preview of `document`, without modality; it deletes itself when closed.
void openTicketPreview(const ticket_print::Document& document, Prompter& prompter, QWidget* parent);
