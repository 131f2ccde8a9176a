#include "tools/pages/ticket_pages.h"

#include "workspace/saved_file.h"

#include <QAbstractTextDocumentLayout>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTextDocument>

namespace ticket_pages {

namespace {
constexpr double kMarginMm = 15;
constexpr qreal kPointSize = 11;

// The largest size up to kPointSize at which every line fits `width` device pixels.
qreal fittingPointSize(QFont font, const QStringList& lines, QPaintDevice& device, qreal width) {
    font.setPointSizeF(kPointSize);
    const QFontMetricsF metrics(font, &device);
    qreal widest = 0;
    for (const QString& line : lines) widest = std::max(widest, metrics.horizontalAdvance(line));
    return widest <= width ? kPointSize : kPointSize * width / widest * 0.98;
}

}  // namespace

void setUpPage(QPagedPaintDevice& device) {
    device.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                     QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm), QPageLayout::Millimeter));
}

void print(const ticket_print::Document& d, QPagedPaintDevice& device) {
    const QString text = ticket_print::printedText(d);
    const QRectF page = device.pageLayout().paintRectPixels(device.logicalDpiX());
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(fittingPointSize(font, text.split(QLatin1Char('\n')), device, page.width()));
    QTextDocument doc;
    doc.documentLayout()->setPaintDevice(&device);
    doc.setDefaultFont(font);
    doc.setDocumentMargin(0);
    // With a page size of its own the document is paginated as it stands, without margins added.
    doc.setPageSize(page.size());
    doc.setPlainText(text);
    doc.print(&device);
}

bool writePdf(const ticket_print::Document& d, const QString& path, QString* error) {
    // Into a temporary file first: a failed write leaves an earlier PDF of that name whole.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error) *error = file.errorString();
        return false;
    }
    {
        QPdfWriter writer(&file);
        writer.setTitle(d.forIssue);
        writer.setCreator(QStringLiteral("shuangqu"));
        setUpPage(writer);
        print(d, writer);
    }
    if (!saved_file::commit(file)) {
        if (error) *error = file.errorString();
        return false;
    }
    return true;
}

}  // namespace ticket_pages
