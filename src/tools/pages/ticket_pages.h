#pragma once

// The printed ticket list laid out for paper: a fixed-width font so that the tickets stand in
// columns, as large as lets the longest line fit the page's width (11 points at most), the
// heading lines first. The same layout goes to the printer, the preview and a PDF.

#include "tools/ticket_print.h"

class QPagedPaintDevice;

namespace ticket_pages {

// Sets the page (A4, margins of 15 mm) on a printer or PDF writer.
void setUpPage(QPagedPaintDevice& device);

// Prints the list on `device`, page after page.
void print(const ticket_print::Document& d, QPagedPaintDevice& device);

// Writes the list as a PDF, replacing the file; false with the reason.
bool writePdf(const ticket_print::Document& d, const QString& path, QString* error);

}  // namespace ticket_pages
