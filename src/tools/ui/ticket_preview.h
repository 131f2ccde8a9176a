#pragma once

#include "tools/ticket_print.h"
#include "workspace/ui/printer_choice.h"

#include <QDialog>

#include <functional>
#include <memory>

class Prompter;
class QPrinter;
class QPrintPreviewWidget;

// The kept tickets as they will be printed, page by page, with 打印 (the printer dialog, then
// the printer), PDF (a file chosen by the player) and the text route.
class TicketPreview : public QDialog {
public:
    // `folder`: the workspace's, where the text route writes Print.txt.
    TicketPreview(ticket_print::Document document, QString folder, Prompter& prompter, QWidget* parent = nullptr);
    ~TicketPreview() override;

    // Tests put their own in.
    void setPrinterChooser(PrinterChooser chooser) { m_chooser = std::move(chooser); }
    const ticket_print::Document& document() const { return m_document; }
    int pageCount() const;
    void print();
    void exportPdf();
    // The list as Print.txt, in the text editor or frmPrint: to copy into a word processor.
    void showText();

private:
    ticket_print::Document m_document;
    QString m_folder;
    Prompter& m_prompter;
    PrinterChooser m_chooser;
    std::unique_ptr<QPrinter> m_previewPrinter;
    QPrintPreviewWidget* m_view = nullptr;
};

// Opens the preview of `document`, without modality; it deletes itself when closed.
void openTicketPreview(const ticket_print::Document& document, const QString& folder, Prompter& prompter,
                       QWidget* parent);
