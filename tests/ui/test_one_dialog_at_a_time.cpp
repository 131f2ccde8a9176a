// One dialog at a time, with the real dialogs: every question of an action is the active
// modal widget while it is open, and no progress dialog shows above it, however long the
// player takes to answer; a progress dialog that is showing steps aside for a late message.
#include "app/ui/main_menu.h"
#include "filter/ui/filter_window.h"
#include "support/main_window_fixture.h"
#include "support/modal_answerer.h"
#include "workspace/ui/qt_prompter.h"
#include "workspace/ui/work_progress.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include <memory>

namespace {
// A workspace entered with the real Qt prompter behind every window.
struct RealDialogs : MainWindowFixture {
    QtPrompter qtPrompter;

    RealDialogs() : MainWindowFixture(QStringLiteral("张先生")) {
        if (!open({}, &qtPrompter)) return;
        qtPrompter.setParent(window.get());
        window->resize(1366, 740);
        window->show();
    }
    template <typename T>
    T* find(const QString& name) const {
        return window->findChild<T*>(name);
    }
    FilterWindow* expandSevenAndThree() {
        for (int n : {3, 9, 14, 22, 27, 31, 35}) find<QPushButton>(QStringLiteral("Command1(%1)").arg(n))->click();
        for (int n : {2, 7, 11}) find<QPushButton>(QStringLiteral("Command2(%1)").arg(n))->click();
        emit window->menuActions().playModesMenu->aboutToShow();
        window->findChild<QAction*>(QStringLiteral("mnuLst"))->trigger();
        return window->filterWindows().isEmpty() ? nullptr : window->filterWindows().last();
    }
};

QString report(const ModalAnswerer& answerer) {
    return answerer.failures().join(QLatin1Char('\n')) + QStringLiteral("\nseen: ") +
           answerer.seen().join(QStringLiteral(" | "));
}
}  // namespace

class OneDialogAtATimeTest : public QObject {
    Q_OBJECT
private slots:
    void wholeImportAsksThenWorks();
    void superFilterPromptChains();
    void lateMessageHidesTheProgressDialog();
    void typedDrawWithTheRealDialogs();
};

void OneDialogAtATimeTest::wholeImportAsksThenWorks() {
    RealDialogs d;
    QVERIFY(d.window);
    ModalAnswerer answerer;
    answerer.expect(QStringLiteral("读入历史"), ModalAnswerer::press(QMessageBox::Ok))
        .expect(QStringLiteral("打开"), ModalAnswerer::chooseFile(d.bundledHistory()));
    d.find<QPushButton>(QStringLiteral("cmdRead"))->click();
    QVERIFY2(answerer.allAnswered(), qPrintable(report(answerer)));
    QVERIFY2(answerer.failures().isEmpty(), qPrintable(report(answerer)));
    QCOMPARE(d.session->drawCount(), 2933);
    QVERIFY(!ModalAnswerer::progressVisible());

    // The append asks the same way; the file holds nothing new, so nothing is added.
    answerer.expect(QStringLiteral("读入历史"), ModalAnswerer::press(QMessageBox::Ok))
        .expect(QStringLiteral("打开"), ModalAnswerer::chooseFile(d.bundledHistory()))
        .expect(QStringLiteral("读入历史"), ModalAnswerer::press(QMessageBox::Cancel));
    d.window->findChild<QAction*>(QStringLiteral("mnuRead"))->trigger();
    QVERIFY2(answerer.failures().isEmpty(), qPrintable(report(answerer)));
    QCOMPARE(d.session->drawCount(), 2933);
}

void OneDialogAtATimeTest::superFilterPromptChains() {
    RealDialogs d;
    QVERIFY(d.window);
    FilterWindow* filter = d.expandSevenAndThree();
    QVERIFY(filter);
    ModalAnswerer answerer;
    // 相克 of 03 and 09: how many numbers, then each number.
    answerer.expect(QStringLiteral("相生/相克个数"), ModalAnswerer::type(QStringLiteral("2")))
        .expect(QStringLiteral("相克数输入"), ModalAnswerer::type(QStringLiteral("3")))
        .expect(QStringLiteral("相克数输入"), ModalAnswerer::type(QStringLiteral("9")));
    filter->findChild<QPushButton*>(QStringLiteral("Option25(0)"))->click();
    QVERIFY2(answerer.allAnswered() && answerer.failures().isEmpty(), qPrintable(report(answerer)));
    QVERIFY(filter->windowTitle().endsWith(QStringLiteral("33注")));

    // A history filter asks for its span first, then filters.
    answerer.expect(QStringLiteral("历史过滤"), ModalAnswerer::type(QString()));
    filter->findChild<QPushButton*>(QStringLiteral("Option26"))->click();
    QVERIFY2(answerer.allAnswered() && answerer.failures().isEmpty(), qPrintable(report(answerer)));
    QVERIFY(!ModalAnswerer::progressVisible());
    filter->close();
}

void OneDialogAtATimeTest::lateMessageHidesTheProgressDialog() {
    QWidget parent;
    parent.show();
    QtPrompter prompter(&parent);
    WorkProgress progress(QStringLiteral("正在工作..."), &parent);
    // Before any report the dialog does not exist, so a question asked first stands alone.
    QVERIFY(!ModalAnswerer::progressVisible());
    QElapsedTimer working;
    working.start();
    while (working.elapsed() < WorkProgress::kShowAfterMs + 200) {
        progress.report(static_cast<uint64_t>(working.elapsed()), 1000);
        QTest::qWait(20);
    }
    QVERIFY(ModalAnswerer::progressVisible());

    // An error the work has to show comes alone: the progress dialog steps aside.
    ModalAnswerer answerer;
    answerer.expect(QStringLiteral("出错了"), ModalAnswerer::press(QMessageBox::Ok));
    prompter.inform(QStringLiteral("读入历史"), QStringLiteral("出错了"), Prompter::Icon::Critical);
    QVERIFY2(answerer.allAnswered() && answerer.failures().isEmpty(), qPrintable(report(answerer)));

    // Work that goes on afterwards shows its progress again.
    progress.report(900, 1000);
    QVERIFY(ModalAnswerer::progressVisible());
    QVERIFY(!progress.cancelled());
}

void OneDialogAtATimeTest::typedDrawWithTheRealDialogs() {
    RealDialogs d;
    QVERIFY(d.window);
    d.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(d.window.get()));
    const auto typeKeys = [](const QString& keys) {
        for (const QChar c : keys) QTest::keyClick(QApplication::focusWidget(), c.toLatin1());
    };
    ModalAnswerer answerer;
    // A padded draw goes in without a single prompt.
    d.find<QLineEdit>(QStringLiteral("MaskEdBox1(1)"))->setFocus();
    typeKeys(QStringLiteral("03091422270607"));
    QTest::qWait(ModalAnswerer::kHoldMs + 200);
    QVERIFY2(answerer.failures().isEmpty(), qPrintable(report(answerer)));
    QCOMPARE(d.session->drawCount(), 1);

    // An unpadded number gives the message, alone in front, and nothing is stored.
    answerer.expect(QStringLiteral("若需输入个位数"), ModalAnswerer::press(QMessageBox::Ok));
    d.find<QLineEdit>(QStringLiteral("MaskEdBox1(1)"))->setFocus();
    typeKeys(QStringLiteral("4"));
    d.find<QLineEdit>(QStringLiteral("MaskEdBox1(2)"))->setFocus();
    typeKeys(QStringLiteral("091422270607"));
    QTRY_VERIFY_WITH_TIMEOUT(answerer.allAnswered(), 10000);
    QVERIFY2(answerer.failures().isEmpty(), qPrintable(report(answerer)));
    QCOMPARE(d.session->drawCount(), 1);
}

QTEST_MAIN(OneDialogAtATimeTest)
#include "test_one_dialog_at_a_time.moc"
