// The print preview of the kept tickets: its pages, 打印 through the printer dialog, and PDF.
#include "support/pdf_text.h"
#include "support/window_shot.h"
#include "tools/ui/ticket_preview.h"
#include "workspace/scripted_prompter.h"

#include <QPrinter>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

// 403 tickets, four to the line: 101 lines, more than a page holds.
ticket_print::Document document() {
    std::vector<std::vector<int>> tickets;
    for (int i = 0; i < 403; ++i) tickets.push_back({1 + i % 31, 2 + i % 31, 3 + i % 31, 4 + i % 31, 5 + i % 31});
    return ticket_print::build(tickets, 4, 2026136, QDateTime(QDate(2026, 11, 24), QTime(9, 30, 0)));
}

void click(QWidget* w, const char* name) {
    QTest::mouseClick(w->findChild<QPushButton*>(QString::fromLatin1(name)), Qt::LeftButton);
}

// Every ticket of the document, in order, in the text of a PDF.
void expectAllTickets(const QString& text) {
    const QString flat = QString(text).replace(QRegularExpression(QStringLiteral("\\s+")), QStringLiteral(" "));
    QVERIFY2(flat.contains(QStringLiteral("打印时间:2026-11-24 09:30:00")), qPrintable(flat.left(200)));
    QVERIFY(flat.contains(QStringLiteral("购买期数:2026136")));
    qsizetype at = 0;
    const ticket_print::Document d = document();
    for (int i = 0; i < 403; ++i) {
        const QString ticket = QStringLiteral("<%1>").arg(i + 1);
        at = flat.indexOf(ticket, at);
        QVERIFY2(at >= 0, qPrintable(ticket));
    }
    QVERIFY(flat.contains(QStringLiteral("<403>31 32 33 34 35")));
}

}  // namespace

class TicketPreviewTest : public QObject {
    Q_OBJECT
private slots:
    void showsThePagesAndWritesThePdf();
    void printsThroughTheChosenPrinter();
    void aFileThatCannotBeWrittenIsSaid();
};

void TicketPreviewTest::showsThePagesAndWritesThePdf() {
    QTemporaryDir dir;
    ScriptedPrompter prompter;
    const QString pdf = dir.filePath(QStringLiteral("tickets.pdf"));
    prompter.answer(pdf);
    TicketPreview w(document(), dir.path(), prompter);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QTRY_VERIFY(w.pageCount() >= 2);
    saveShot(&w, QStringLiteral("ticket-preview"));
    click(&w, "pdfButton");
    QVERIFY(prompter.messages().isEmpty());
    const QString text = pdf_text::read(pdf);
    if (text.isNull()) QSKIP("pdftotext is not installed");
    expectAllTickets(text);
}

void TicketPreviewTest::printsThroughTheChosenPrinter() {
    QTemporaryDir dir;
    ScriptedPrompter prompter;
    TicketPreview w(document(), dir.path(), prompter);
    const QString out = dir.filePath(QStringLiteral("printed.pdf"));
    bool asked = false;
    w.setPrinterChooser([&](QPrinter& printer, bool, QWidget*) {
        asked = true;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(out);
        return true;
    });
    click(&w, "printButton");
    QVERIFY(asked);
    const QString text = pdf_text::read(out);
    if (text.isNull()) QSKIP("pdftotext is not installed");
    expectAllTickets(text);

    // Cancelled: nothing is printed.
    QFile::remove(out);
    w.setPrinterChooser([](QPrinter&, bool, QWidget*) { return false; });
    click(&w, "printButton");
    QVERIFY(!QFile::exists(out));
}

void TicketPreviewTest::aFileThatCannotBeWrittenIsSaid() {
    QTemporaryDir dir;
    ScriptedPrompter prompter;
    prompter.answer(dir.filePath(QStringLiteral("no/such/folder/tickets.pdf")));
    TicketPreview w(document(), dir.path(), prompter);
    click(&w, "pdfButton");
    QCOMPARE(prompter.messages().size(), 1);
    QVERIFY(prompter.messages()[0].contains(QStringLiteral("tickets.pdf")));
    prompter.clear();
    prompter.answer(QString());  // the file dialog cancelled
    click(&w, "pdfButton");
    QVERIFY(prompter.messages().isEmpty());
}

QTEST_MAIN(TicketPreviewTest)
#include "test_ticket_preview.moc"
