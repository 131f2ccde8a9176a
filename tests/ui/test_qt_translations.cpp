// Qt's own dialogs speak Chinese once the program has loaded Qt's translations, whatever the
// locale the tests run in.
#include "app/ui/qt_translations.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

#include <algorithm>

namespace {
bool hasChinese(const QString& text) {
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.unicode() >= 0x4E00 && c.unicode() <= 0x9FFF; });
}
}  // namespace

class QtTranslationsTest : public QObject {
    Q_OBJECT
private slots:
    void fileDialogSpeaksChinese();
};

void QtTranslationsTest::fileDialogSpeaksChinese() {
    QVERIFY(!hasChinese(QCoreApplication::translate("QFileDialog", "Look in:")));
    QVERIFY(qt_translations::install(*QCoreApplication::instance()));
    auto* translator = QCoreApplication::instance()->findChild<QTranslator*>();
    QVERIFY(translator);
    QCOMPARE(translator->language(), QStringLiteral("zh_CN"));
    QVERIFY(translator->filePath().endsWith(QStringLiteral("qtbase_zh_CN.qm")));

    // Qt's own file dialog, as the imports show it.
    QFileDialog dialog(nullptr, QStringLiteral("打开"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    const auto* lookIn = dialog.findChild<QLabel*>(QStringLiteral("lookInLabel"));
    QVERIFY(lookIn);
    QVERIFY2(hasChinese(lookIn->text()), qPrintable(lookIn->text()));
    const auto* buttons = dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
    QVERIFY(buttons);
    for (QAbstractButton* b : buttons->buttons()) QVERIFY2(hasChinese(b->text()), qPrintable(b->text()));
    QVERIFY(hasChinese(QCoreApplication::translate("QFileDialog", "Look in:")));
}

QTEST_MAIN(QtTranslationsTest)
#include "test_qt_translations.moc"
