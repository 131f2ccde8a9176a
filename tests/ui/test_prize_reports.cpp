// frmYk driven through List1, its buttons and the print path (PDF, never a printer).
#include "prize/prize_session.h"
#include "prize/ui/profit_loss_report_window.h"
#include "prize_window_fixture.h"
#include "support/pdf_text.h"
#include "support/window_shot.h"

#include <QAbstractItemModelTester>
#include <QListWidget>
#include <QPrinter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>

namespace {
struct Reports : PrizeWorkspace {
    QString folder() const { return QDir(session->paths().folder()).filePath(QStringLiteral("duijiang")); }
    void write(const QString& name, const QString& text) {
        QDir().mkpath(folder());
        QFile f(QDir(folder()).filePath(name));
        f.open(QIODevice::WriteOnly);
        f.write(text.toUtf8());
    }
    std::unique_ptr<ProfitLossReportWindow> open() {
        auto w = std::make_unique<ProfitLossReportWindow>(
            ReportBook(prize_session::workspaceFolder(*session), session->settings(),
                       session->workspaceName()),
            prompter);
        w->show();
        return w;
    }
};

template <typename T>
T* named(QWidget* w, const char* name) {
    return w->findChild<T*>(QString::fromLatin1(name));
}
void click(QWidget* w, const char* name) { QTest::mouseClick(named<QPushButton>(w, name), Qt::LeftButton); }
QString shown(QWidget* w) { return named<QTextEdit>(w, "RichTextBox1")->toPlainText(); }

// Prints through a chooser that picks a PDF file, as the print dialog would.
PrinterChooser pdfTo(const QString& path, bool* offeredSelection,
                                             bool accept = true) {
    return [=](QPrinter& printer, bool hasSelection, QWidget*) {
        *offeredSelection = hasSelection;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path);
        if (hasSelection) printer.setPrintRange(QPrinter::Selection);
        return accept;
    };
}
}  // namespace

class PrizeReportsTest : public QObject {
    Q_OBJECT
private slots:
    void listsReportsAndAHandWrittenOne();
    void previousRightAfterOpeningDoesNothing();
    void deletingTickedAndDeletingAll();
    void printsToPdfOrNotAtAll();
};

void PrizeReportsTest::listsReportsAndAHandWrittenOne() {
    Reports r;
    r.write(QStringLiteral("26-3-5日14.7.9秒兑奖.txt"),
            QStringLiteral("兑奖日期:2026-03-05\n兑奖时间:14:07:09\n组号方式:复选/胆拖组合缩水\n"));
    r.write(QStringLiteral("手写兑奖.txt"), QStringLiteral("第一行\n第二行\n"));
    r.write(QStringLiteral("notes.txt"), QStringLiteral("x\ny\n"));
    auto w = r.open();
    QVERIFY(QTest::qWaitForWindowExposed(w.get()));
    QCOMPARE(w->windowTitle(), QStringLiteral("盈亏报告"));
    auto* list = named<QListWidget>(w.get(), "List1");
    QAbstractItemModelTester tester(list->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->item(0)->text(), QStringLiteral("兑奖日期:2026-03-05     兑奖时间:14:07:09"));
    QCOMPARE(list->item(1)->text(), QStringLiteral("第一行     第二行"));
    QVERIFY(list->item(1)->flags() & Qt::ItemIsUserCheckable);
    // The last file of the walk is shown.
    QCOMPARE(shown(w.get()), QStringLiteral("第一行\n第二行\n"));
    list->item(0)->setCheckState(Qt::Checked);
    QVERIFY(shown(w.get()).startsWith(QStringLiteral("兑奖日期:2026-03-05")));
    QCOMPARE(named<QPushButton>(w.get(), "Command5")->toolTip(), QStringLiteral("关闭该窗口"));
    saveShot(w.get(), QStringLiteral("frm_yk"));
}

void PrizeReportsTest::previousRightAfterOpeningDoesNothing() {
    Reports r;
    r.write(QStringLiteral("a兑奖.txt"), QStringLiteral("A\n1\n"));
    r.write(QStringLiteral("b兑奖.txt"), QStringLiteral("B\n2\n"));
    auto w = r.open();
    QCOMPARE(shown(w.get()), QStringLiteral("B\n2\n"));
    click(w.get(), "Command1");
    QCOMPARE(shown(w.get()), QStringLiteral("B\n2\n"));
    QCOMPARE(w->book().currentIndex(), 0);
    click(w.get(), "Command2");
    QCOMPARE(shown(w.get()), QStringLiteral("B\n2\n"));
    QCOMPARE(w->book().currentIndex(), 1);
    click(w.get(), "Command1");
    QCOMPARE(shown(w.get()), QStringLiteral("A\n1\n"));
}

void PrizeReportsTest::deletingTickedAndDeletingAll() {
    Reports r;
    r.write(QStringLiteral("a兑奖.txt"), QStringLiteral("A\n1\n"));
    r.write(QStringLiteral("b兑奖.txt"), QStringLiteral("B\n2\n"));
    auto w = r.open();
    auto* list = named<QListWidget>(w.get(), "List1");
    QAbstractItemModelTester tester(list->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    list->item(0)->setCheckState(Qt::Checked);
    r.prompter.answer(false);
    click(w.get(), "Command6");
    QCOMPARE(list->count(), 2);
    r.prompter.answer(true);
    click(w.get(), "Command6");
    QCOMPARE(r.prompter.asked().last().text, ReportBook::kDeleteTickedQuestion);
    QCOMPARE(list->count(), 1);
    QCOMPARE(list->item(0)->text(), QStringLiteral("B     2"));
    QVERIFY(!QFile::exists(QDir(r.folder()).filePath(QStringLiteral("a兑奖.txt"))));

    r.prompter.answer(true);
    click(w.get(), "Command5");
    QCOMPARE(list->count(), 0);
    QVERIFY(shown(w.get()).isEmpty());
    QCOMPARE(r.home.settings.read(setting_keys::MoneyDefault, r.session->workspaceName()),
             QStringLiteral("0"));
    // The report itself is still there and is listed again at the next opening.
    QVERIFY(QFile::exists(QDir(r.folder()).filePath(QStringLiteral("b兑奖.txt"))));
    QCOMPARE(named<QListWidget>(r.open().get(), "List1")->count(), 1);
}

void PrizeReportsTest::printsToPdfOrNotAtAll() {
    Reports r;
    const QStringList report{QStringLiteral("兑奖日期:2026-03-05"), QStringLiteral("兑奖时间:14:07:09"),
                             QStringLiteral("开奖期数:2026025"), QStringLiteral("购买12注"), QStringLiteral("盈亏-26圆")};
    r.write(QStringLiteral("a兑奖.txt"), report.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    auto w = r.open();
    QTemporaryDir out;
    bool offered = true;
    // Nothing selected: no print range is offered, and the whole report is printed line by line.
    const QString whole = out.filePath(QStringLiteral("whole.pdf"));
    w->setPrinterChooser(pdfTo(whole, &offered));
    click(w.get(), "Command4");
    QVERIFY(!offered);
    const QString wholeText = pdf_text::read(whole);
    QVERIFY2(!wholeText.isNull(), "pdftotext could not read the printout");
    // The document prints its page number under the text.
    QCOMPARE(pdf_text::lines(wholeText), report + QStringList{QStringLiteral("1")});

    // The second and third lines selected: the printout holds those and nothing else.
    auto* text = named<QTextEdit>(w.get(), "RichTextBox1");
    QTextCursor c = text->textCursor();
    c.setPosition(0);
    c.movePosition(QTextCursor::Down);
    c.movePosition(QTextCursor::StartOfLine);
    c.movePosition(QTextCursor::Down, QTextCursor::KeepAnchor);
    c.movePosition(QTextCursor::EndOfLine, QTextCursor::KeepAnchor);
    text->setTextCursor(c);
    QCOMPARE(c.selectedText(), report[1] + QChar(QChar::ParagraphSeparator) + report[2]);
    const QString part = out.filePath(QStringLiteral("part.pdf"));
    w->setPrinterChooser(pdfTo(part, &offered));
    click(w.get(), "Command4");
    QVERIFY(offered);
    QCOMPARE(pdf_text::lines(pdf_text::read(part)), report.mid(1, 2) + QStringList{QStringLiteral("1")});

    const QString cancelled = out.filePath(QStringLiteral("cancelled.pdf"));
    w->setPrinterChooser(pdfTo(cancelled, &offered, false));
    click(w.get(), "Command4");
    QVERIFY(!QFile::exists(cancelled));
}

QTEST_MAIN(PrizeReportsTest)
#include "test_prize_reports.moc"
