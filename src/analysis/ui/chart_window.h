#pragma once

#include "workspace/ui/printer_choice.h"

#include <QMainWindow>

class Prompter;

// The frame every chart window shares: its given name and caption, and the menu entry that
// prints the window's picture through the printer dialog.
class ChartWindow : public QMainWindow {
    Q_OBJECT
public:
    static inline const QString kPrintFailedTitle = QStringLiteral("打印");
    static inline const QString kPrintFailedText = QStringLiteral("抱歉！发生错误，图形不能打印！");

    ChartWindow(const QString& given, const QString& caption, Prompter& prompter, QWidget* parent);

    // Tests answer the printer dialog through this.
    void setPrinterChooser(PrinterChooser chooser) { m_printerChooser = std::move(chooser); }
    // Prints the picture of the window's content scaled to the page; a printer that cannot
    // start gives the failure message.
    void print();

private:
    Prompter& m_prompter;
    PrinterChooser m_printerChooser;
};
