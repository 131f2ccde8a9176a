// frmPrint: Print.txt loaded, printed through the printer dialog, restyled, copied whole.
#include "support/pdf_text.h"
#include "tools/ui/text_print_window.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QPrinter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>

namespace {
ticket_print::Document document() {
    return ticket_print::build({{1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}, {31, 32, 33, 34, 35}}, 2, 2026136,
                               QDateTime(QDate(2026, 11, 24), QTime(9, 30, 0)));
}
void click(QWidget* w, const char* name) {
    QTest::mouseClick(w->findChild<QPushButton*>(QString::fromLatin1(name)), Qt::LeftButton);
}
}  // namespace

class TextPrintWindowTest : public QObject {
    Q_OBJECT
private slots:
    void loadsTheFileOrOpensEmpty();
    void printsRestylesAndCopies();
};

void TextPrintWindowTest::loadsTheFileOrOpensEmpty() {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Print.txt"));
    TextPrintWindow none(path);
    QCOMPARE(none.text()->toPlainText(), QString());
    QCOMPARE(none.windowTitle(), QStringLiteral("打印预览（可以用鼠标反键复制并粘贴到Word等文字处理软件中排版）"));
    QString error;
    QVERIFY(ticket_print::writeTextFile(path, document(), &error));
    TextPrintWindow w(path);
    QCOMPARE(w.text()->toPlainText(), ticket_print::fileText(document()));
}

void TextPrintWindowTest::printsRestylesAndCopies() {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Print.txt"));
    QString error;
    QVERIFY(ticket_print::writeTextFile(path, document(), &error));
    TextPrintWindow w(path);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));

    const QString out = dir.filePath(QStringLiteral("printed.pdf"));
    bool offeredSelection = true;
    w.setPrinterChooser([&](QPrinter& printer, bool hasSelection, QWidget*) {
        offeredSelection = hasSelection;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(out);
        return true;
    });
    click(&w, "Command1");
    QVERIFY(!offeredSelection);
    const QString text = pdf_text::read(out);
    if (!text.isNull()) {
        QVERIFY(text.contains(QStringLiteral("购买期数:2026136")));
        QVERIFY(text.contains(QStringLiteral("<3>31 32 33 34 35")));
    }

    QFont chosen(QStringLiteral("Noto Sans Mono CJK SC"), 17);
    w.setFontChooser([&](const QFont&, QWidget*) { return std::optional(chosen); });
    click(&w, "Command3");
    QCOMPARE(w.text()->font().pointSize(), 17);
    w.setFontChooser([](const QFont&, QWidget*) { return std::nullopt; });
    click(&w, "Command3");
    QCOMPARE(w.text()->font().pointSize(), 17);

    QApplication::clipboard()->setText(QStringLiteral("earlier"));
    w.findChild<QAction*>(QStringLiteral("mnuCopy"))->trigger();
    QCOMPARE(QApplication::clipboard()->text(), w.text()->toPlainText());
    click(&w, "Command2");
    QVERIFY(!w.isVisible());
}

QTEST_MAIN(TextPrintWindowTest)
#include "test_text_print_window.moc"
