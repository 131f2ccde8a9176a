#include "workspace/ui/printer_choice.h"

#include <QPrintDialog>
#include <QPrinter>

bool choosePrinter(QPrinter& printer, bool hasSelection, QWidget* parent) {
    QPrintDialog dialog(&printer, parent);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, hasSelection);
    if (hasSelection) printer.setPrintRange(QPrinter::Selection);
    return dialog.exec() == QDialog::Accepted;
}
