// 功能窗口's template and text entries driven through their names: a text file read into
// GAganRead with its start column, the same table reopened, its tickets added to the template
// with cmdAdmb twice, and the template window showing them once.
#include "filter/filter_workspace.h"
#include "filter/ui/filter_window.h"
#include "support/main_window_fixture.h"

#include <QAction>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

class SourceMenusTest : public QObject {
    Q_OBJECT
private slots:
    void textTicketsGoToTheTemplateOnce();
    void aBadStartColumnOrAnEmptyFileOpensNothing();
};

namespace {

QString writeText(const QTemporaryDir& dir, const char* text) {
    const QString path = dir.filePath(QStringLiteral("tickets.txt"));
    QFile f(path);
    f.open(QIODevice::WriteOnly | QIODevice::Truncate);
    f.write(text);
    return path;
}

}  // namespace

void SourceMenusTest::textTicketsGoToTheTemplateOnce() {
    MainWindowFixture f;
    QVERIFY(f.open());
    QTemporaryDir dir;
    const QString path = writeText(dir, "1. 01 02 03 04 05 06 07\n2. 03 09 12 20 33 02 11\n3. 01 02 03\n");
    f.prompter.answer(path).answer(QStringLiteral("3"));
    f.window->findChild<QAction*>(QStringLiteral("mnuRdtxt"))->trigger();
    QCOMPARE(f.window->filterWindows().size(), 1);
    FilterWindow* read = f.window->filterWindows().last();
    QCOMPARE(read->objectName(), QStringLiteral("GAganRead"));
    QCOMPARE(read->workspace().table().rowCount(), uint64_t(2));
    QCOMPARE(read->workspace().table().numberColumn(5)[1], uint8_t(33));

    // The template window makes the template; the text window adds to it twice.
    f.window->findChild<QAction*>(QStringLiteral("mnuCallZhmb"))->trigger();
    FilterWindow* tmpl = f.window->filterWindows().last();
    QCOMPARE(tmpl->objectName(), QStringLiteral("GAganZhMb"));
    QCOMPARE(tmpl->workspace().table().rowCount(), uint64_t(0));
    tmpl->close();
    QPushButton* add = read->findChild<QPushButton*>(QStringLiteral("cmdAdmb"));
    QCOMPARE(add->text(), QStringLiteral("添加到组号模板(&A)"));
    const auto adds = [&f] {
        int n = 0;
        for (const ScriptedPrompter::Asked& a : f.prompter.asked()) n += a.title == QStringLiteral("添加组号模板");
        return n;
    };
    add->click();
    QTRY_COMPARE(adds(), 1);
    add->click();
    QTRY_COMPARE(adds(), 2);
    read->close();

    f.window->findChild<QAction*>(QStringLiteral("mnuCallZhmb"))->trigger();
    tmpl = f.window->filterWindows().last();
    QCOMPARE(tmpl->workspace().table().rowCount(), uint64_t(2));
    QCOMPARE(tmpl->findChild<QPushButton*>(QStringLiteral("cmdAdmb"))->text(), QStringLiteral("清空组号模板(&A)"));
    tmpl->close();

    // mnuCatxt reopens the text's table as it was left.
    f.window->findChild<QAction*>(QStringLiteral("mnuCatxt"))->trigger();
    QCOMPARE(f.window->filterWindows().last()->objectName(), QStringLiteral("GAganRead"));
    QCOMPARE(f.window->filterWindows().last()->workspace().table().rowCount(), uint64_t(2));
}

void SourceMenusTest::aBadStartColumnOrAnEmptyFileOpensNothing() {
    MainWindowFixture f;
    QVERIFY(f.open());
    QTemporaryDir dir;
    const QString path = writeText(dir, "01 02 03 04 05 06 07\n");
    f.prompter.answer(path).answer(QStringLiteral("x"));
    f.window->findChild<QAction*>(QStringLiteral("mnuRdtxt"))->trigger();
    QCOMPARE(f.window->filterWindows().size(), 0);
    QCOMPARE(f.prompter.asked().last().text, QStringLiteral("请输入一个正数"));

    f.prompter.answer(path).answer(QString());  // an empty answer ends the command
    f.window->findChild<QAction*>(QStringLiteral("mnuRdtxt"))->trigger();
    QCOMPARE(f.window->filterWindows().size(), 0);

    // A file without a ticket: the window shows the former table (none yet).
    f.prompter.answer(writeText(dir, "hello\n")).answer(QStringLiteral("1"));
    f.window->findChild<QAction*>(QStringLiteral("mnuRdtxt"))->trigger();
    QCOMPARE(f.window->filterWindows().size(), 1);
    QCOMPARE(f.window->filterWindows().last()->workspace().table().rowCount(), uint64_t(0));
}

QTEST_MAIN(SourceMenusTest)
#include "test_source_menus.moc"
