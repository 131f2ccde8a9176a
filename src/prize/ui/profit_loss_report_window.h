#pragma once

#include "prize/report_book.h"
#include "workspace/ui/printer_choice.h"

#include <QDialog>

#include <functional>

class Prompter;
class QListWidget;
class QPrinter;
class QTextEdit;

// frmYk, "盈亏报告": the list of reports with a tick box per item, the report shown in
// RichTextBox1, stepping, printing and deleting.
class ProfitLossReportWindow : public QDialog {
    Q_OBJECT
public:
    ProfitLossReportWindow(ReportBook book, Prompter& prompter, QWidget* parent = nullptr);
    ~ProfitLossReportWindow() override;

    const ReportBook& book() const { return m_book; }
    // Tests choose a PDF file instead of the print dialog.
    void setPrinterChooser(PrinterChooser chooser) { m_chooser = std::move(chooser); }

private:
    void fillList();
    void showBookText();
    void print();  // Command4
    QList<int> tickedPositions() const;

    ReportBook m_book;
    Prompter& m_prompter;
    PrinterChooser m_chooser;
    QListWidget* m_list = nullptr;
    QTextEdit* m_text = nullptr;
    bool m_filling = false;
};
