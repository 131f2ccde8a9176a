// frmYunshi driven through its date boxes, buttons and personality options.
#include "support/temp_home.h"
#include "support/window_shot.h"
#include "tools/fortune.h"
#include "tools/ui/fortune_strip.h"
#include "tools/ui/fortune_window.h"
#include "workspace/scripted_prompter.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace {
template <typename T = QWidget>
T* named(QWidget* w, const QString& name) {
    T* found = w->findChild<T*>(name);
    if (!found) qFatal("no control %s", qPrintable(name));
    return found;
}
QLineEdit* box(QWidget* w, const char* name) { return named<QLineEdit>(w, QString::fromLatin1(name)); }
void click(QWidget* w, const char* name) {
    QTest::mouseClick(named<QAbstractButton>(w, QString::fromLatin1(name)), Qt::LeftButton);
}
// On its circle: a wide option takes clicks on its circle and caption only.
void choose(QWidget* w, int option) {
    auto* o = named<QRadioButton>(w, QStringLiteral("Option1(%1)").arg(option));
    QTest::mouseClick(o, Qt::LeftButton, {}, QPoint(8, o->height() / 2));
}
void typeAndEnter(QLineEdit* e, const QString& text) {
    QTest::keyClicks(e, text);
    QTest::keyClick(e, Qt::Key_Return);
}
const QDate kToday(2026, 11, 24);

// The window on a fresh data root, shown.
struct Opened {
    TempHome home;
    ScriptedPrompter prompter;
    FortuneWindow w{home.settings, prompter, kToday};
    Opened() {
        w.show();
        if (!QTest::qWaitForWindowExposed(&w)) qFatal("the window did not show");
    }
};
}  // namespace

class FortuneWindowTest : public QObject {
    Q_OBJECT
private slots:
    void opensOnTheStoredSettingsAndDrawsAtOnce();
    void aChosenDayAndAPersonalityRedrawAtOnce();
    void badDatesAreRefusedAndNothingIsDrawn();
    void closingStoresTheBirthdayOfTheLastReading();
};

void FortuneWindowTest::opensOnTheStoredSettingsAndDrawsAtOnce() {
    Opened o;
    FortuneWindow& w = o.w;
    ScriptedPrompter& prompter = o.prompter;
    QCOMPARE(w.windowTitle(), QStringLiteral("鹤鸣轩彩票购买个人运势计算预测"));
    QCOMPARE(box(&w, "Text1")->text(), QStringLiteral("1970-01-01"));
    QVERIFY(!box(&w, "Text1")->isEnabled());
    QCOMPARE(box(&w, "Text4")->text(), QStringLiteral("2026-11-24"));
    QVERIFY2(named<QRadioButton>(&w, QStringLiteral("Option1(3)"))->isChecked(), "普通型 by default");
    const auto expected = fortune::read(QDate(1970, 1, 1), kToday, fortune::Personality::Ordinary);
    QCOMPARE(box(&w, "Text2")->text(), QString::number(expected->popularity));
    QCOMPARE(box(&w, "Text3")->text(), expected->word);
    QCOMPARE(named<FortuneStrip>(&w, QStringLiteral("Picture2"))->values().size(), size_t{361});
    QCOMPARE(named<FortuneStrip>(&w, QStringLiteral("Picture1(1)"))->values().front(),
             static_cast<double>(expected->curves.c28[0]));
    QCOMPARE(named<QLabel>(&w, QStringLiteral("Label1(0)"))->text(), QStringLiteral("26-11-24"));
    QCOMPARE(named<QLabel>(&w, QStringLiteral("Label1(12)"))->text(), QStringLiteral("27-11-19"));
    QVERIFY(prompter.messages().isEmpty());
    saveShot(&w, QStringLiteral("frmYunshi"));

    click(&w, "Command6");
    QCOMPARE(prompter.messages().size(), 1);
    QVERIFY(prompter.messages()[0].startsWith(QStringLiteral("使用方法:进入程序后点'输入生日'")));
}

void FortuneWindowTest::aChosenDayAndAPersonalityRedrawAtOnce() {
    Opened o;
    FortuneWindow& w = o.w;
    ScriptedPrompter& prompter = o.prompter;
    click(&w, "Command1");
    QVERIFY(box(&w, "Text1")->isEnabled() && box(&w, "Text1")->text().isEmpty());
    typeAndEnter(box(&w, "Text1"), QStringLiteral("1985-06-15"));
    click(&w, "Command7");
    // The results are cleared.
    QCOMPARE(named<QLabel>(&w, QStringLiteral("Label1(0)"))->text(), QString());
    QCOMPARE(box(&w, "Text2")->text(), QString());
    QVERIFY(box(&w, "Text4")->isEnabled() && box(&w, "Text4")->text().isEmpty());
    typeAndEnter(box(&w, "Text4"), QStringLiteral("2026-12-25"));
    QCOMPARE(box(&w, "Text2")->text(), QStringLiteral("93361"));
    QCOMPARE(box(&w, "Text3")->text(), QStringLiteral("较低"));
    // The labels now speak of the chosen day.
    const auto labels = w.findChildren<QLabel*>();
    const auto hasLabel = [&](const QString& t) {
        return std::any_of(labels.begin(), labels.end(), [&](QLabel* l) { return l->text() == t; });
    };
    QVERIFY(hasLabel(QStringLiteral("输入当日日期(yy-mm-dd):")));
    QVERIFY(hasLabel(QStringLiteral("您当天的人气指数为:")));
    QVERIFY(hasLabel(QStringLiteral("您当天的人气运势值:")));

    choose(&w, 0);
    QCOMPARE(box(&w, "Text2")->text(), QStringLiteral("126829"));
    QCOMPARE(w.form().type(), fortune::Personality::Impulsive);
    QVERIFY(prompter.messages().isEmpty());
    saveShot(&w, QStringLiteral("frmYunshi-chosen-day"));
}

void FortuneWindowTest::badDatesAreRefusedAndNothingIsDrawn() {
    Opened o;
    FortuneWindow& w = o.w;
    ScriptedPrompter& prompter = o.prompter;
    click(&w, "Command1");
    typeAndEnter(box(&w, "Text1"), QStringLiteral("1990-05-01"));
    click(&w, "Command7");
    typeAndEnter(box(&w, "Text4"), QStringLiteral("1990-04-30"));
    QCOMPARE(prompter.asked().back().title, QStringLiteral("输入错误"));
    QCOMPARE(prompter.asked().back().text, QStringLiteral("输入时间必须比您的生日大,请重新输入"));
    QVERIFY(box(&w, "Text4")->isEnabled() && box(&w, "Text4")->text().isEmpty());
    QVERIFY(named<FortuneStrip>(&w, QStringLiteral("Picture2"))->values().empty());
    QCOMPARE(box(&w, "Text2")->text(), QString());

    // A text that is no date, in the date box: the birthday box is the one emptied.
    typeAndEnter(box(&w, "Text4"), QStringLiteral("2026-13-40"));
    QCOMPARE(prompter.asked().back().text, QStringLiteral("输入时间错误,请重新输入"));
    QVERIFY(box(&w, "Text1")->isEnabled() && box(&w, "Text1")->text().isEmpty());
    QVERIFY(named<FortuneStrip>(&w, QStringLiteral("Picture1(0)"))->values().empty());
    QCOMPARE(prompter.messages().size(), 2);
}

void FortuneWindowTest::closingStoresTheBirthdayOfTheLastReading() {
    TempHome home;
    {
        ScriptedPrompter prompter;
        FortuneWindow w(home.settings, prompter, kToday);
        click(&w, "Command1");
        typeAndEnter(box(&w, "Text1"), QStringLiteral("1988-08-08"));
        choose(&w, 1);
        // Typed but never read with: not the birthday to keep.
        click(&w, "Command1");
        QTest::keyClicks(box(&w, "Text1"), QStringLiteral("2001-01-01"));
        w.close();
    }
    QCOMPARE(home.settings.read(setting_keys::FortuneBirth), QStringLiteral("1988-08-08"));
    QCOMPARE(home.settings.read(setting_keys::FortuneOption), QStringLiteral("2"));
    ScriptedPrompter prompter;
    FortuneWindow again(home.settings, prompter, kToday);
    QCOMPARE(box(&again, "Text1")->text(), QStringLiteral("1988-08-08"));
    QVERIFY(named<QRadioButton>(&again, QStringLiteral("Option1(1)"))->isChecked());
    QCOMPARE(again.form().type(), fortune::Personality::Rational);
}

QTEST_MAIN(FortuneWindowTest)
#include "test_fortune_window.moc"
