#pragma once

#include "tools/ticket_print.h"
#include "workspace/ui/printer_choice.h"

#include <QDialog>

#include <optional>

class QFont;
class QTextEdit;

// frmPrint: the text of Print.txt, to print, to restyle and to copy into a word processor.
class TextPrintWindow : public QDialog {
public:
    using FontChooser = std::function<std::optional<QFont>(const QFont& current, QWidget* parent)>;

    // Loads `path`; a missing file gives an empty text.
    explicit TextPrintWindow(const QString& path, QWidget* parent = nullptr);

    void setPrinterChooser(PrinterChooser chooser) { m_printerChooser = std::move(chooser); }
    void setFontChooser(FontChooser chooser) { m_fontChooser = std::move(chooser); }
    QTextEdit* text() const { return m_text; }

    void print();
    void chooseFont();
    // mnuCopy: the whole text on the clipboard.
    void copyAll();

private:
    QTextEdit* m_text = nullptr;
    PrinterChooser m_printerChooser;
    FontChooser m_fontChooser;
};

// The text route: writes the list to Print.txt in `folder` and opens it in the desktop's text
// editor, or, when none opens it, in frmPrint. False with the reason when the file cannot be
// written.
bool showTextRoute(const QString& folder, const ticket_print::Document& d, QWidget* parent, QString* error);
