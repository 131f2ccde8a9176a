#pragma once

#include <functional>

class QPrinter;
class QWidget;

// The printer dialog of the text windows: no page range; all, or the selection when there is
// one. False when the player cancels. Windows keep a PrinterChooser so that tests can answer.
using PrinterChooser = std::function<bool(QPrinter& printer, bool hasSelection, QWidget* parent)>;
bool choosePrinter(QPrinter& printer, bool hasSelection, QWidget* parent);
