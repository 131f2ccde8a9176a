// Typing a draw into the entry row MaskEdBox1(1..7) key by key, as a player does: the keys go
// to whichever box has the focus, so the focus must move on after each full box, and the
// checks must wait for box 7 to be finished.
#include "app/ui/main_window.h"
#include "history/history_texts.h"
#include "support/main_window_fixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <algorithm>

namespace {
struct Fixture : MainWindowFixture {
    Fixture() {
        open();
        window->show();
        window->activateWindow();
    }
    QLineEdit* box(int i) const {
        return window->findChild<QLineEdit*>(QStringLiteral("MaskEdBox1(%1)").arg(i));
    }
    // A click on the right half of a box, where a plain line edit would put the cursor
    // after the first position.
    void clickBox(int i) const {
        QLineEdit* b = box(i);
        QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(b->width() * 3 / 4, b->height() / 2));
    }
    // Keys into whatever has the focus, one at a time.
    static void typeKeys(const QString& keys) {
        for (const QChar c : keys) QTest::keyClick(QApplication::focusWidget(), c.toLatin1());
    }
    QStringList entryTexts() const {
        QStringList out;
        for (int i = 1; i <= 7; ++i) out << box(i)->displayText();
        return out;
    }
    QStringList lastRow() const {
        auto* grid = window->findChild<QTableView*>(QStringLiteral("MSFlexGrid1"));
        const int row = grid->model()->rowCount() - 1;
        QStringList out;
        for (int c = 2; c <= 8; ++c) out << grid->model()->index(row, c).data().toString();
        return out;
    }
    int messages() const { return static_cast<int>(prompter.messages().size()); }
};
}  // namespace

class DrawEntryTest : public QObject {
    Q_OBJECT
private slots:
    void paddedDrawsAreTypedStraightThrough();
    void unpaddedFrontNumberGivesTheFirstMessage();
    void incompleteLastBoxIsCheckedWhenThePlayerMovesOn();
};

void DrawEntryTest::paddedDrawsAreTypedStraightThrough() {
    Fixture f;
    QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
    // Every padded one-digit value, in the front and in both back boxes, the last box's
    // leading 0 included; one click in box 1, then only keys.
    f.clickBox(1);
    QCOMPARE(QApplication::focusWidget(), f.box(1));
    const auto pad = [](int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); };
    for (int k = 1; k <= 9; ++k) {
        const QString front = QStringLiteral("0%1 1%1 2%1 30 31").arg(k);
        const int other = k % 9 + 1;
        Fixture::typeKeys(QString(front).remove(QLatin1Char(' ')) + pad(k) + pad(other));
        QCOMPARE(f.messages(), 0);
        QCOMPARE(f.session->drawCount(), k);
        QCOMPARE(f.lastRow().join(' '),
                 front + ' ' + pad(std::min(k, other)) + ' ' + pad(std::max(k, other)));
        // The row is empty again and typing starts over in box 1.
        QCOMPARE(f.entryTexts(), QStringList(7, QStringLiteral("__")));
        QCOMPARE(QApplication::focusWidget(), f.box(1));
    }
}

void DrawEntryTest::unpaddedFrontNumberGivesTheFirstMessage() {
    Fixture f;
    QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
    f.clickBox(1);
    Fixture::typeKeys(QStringLiteral("4"));
    // Half a box keeps the focus; the player clicks on to the next box.
    QCOMPARE(QApplication::focusWidget(), f.box(1));
    f.clickBox(2);
    Fixture::typeKeys(QStringLiteral("091422270607"));
    QCOMPARE(f.prompter.messages(), QStringList{history_texts::kEntryMaskText});
    QCOMPARE(f.prompter.asked().last().title, QStringLiteral("输入错误!!!"));
    QCOMPARE(f.session->drawCount(), 0);
    // The typed numbers stay for 放弃输入 to clear.
    QCOMPARE(f.entryTexts(), QStringList({"4_", "09", "14", "22", "27", "06", "07"}));
    f.window->findChild<QPushButton*>(QStringLiteral("discardEntry"))->click();
    QCOMPARE(f.entryTexts(), QStringList(7, QStringLiteral("__")));
    QCOMPARE(f.session->drawCount(), 0);
}

void DrawEntryTest::incompleteLastBoxIsCheckedWhenThePlayerMovesOn() {
    Fixture f;
    QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
    auto* discard = f.window->findChild<QPushButton*>(QStringLiteral("discardEntry"));
    f.clickBox(1);
    // A single digit in box 7 waits; a click on 放弃输入 clears the row without a message.
    Fixture::typeKeys(QStringLiteral("0309142227064"));
    QCOMPARE(f.box(7)->displayText(), QStringLiteral("4_"));
    QCOMPARE(f.messages(), 0);
    QTest::mouseClick(discard, Qt::LeftButton);
    QCoreApplication::processEvents();
    QCOMPARE(f.messages(), 0);
    QCOMPARE(f.entryTexts(), QStringList(7, QStringLiteral("__")));

    // Enter in box 7 checks it as it stands.
    f.clickBox(1);
    Fixture::typeKeys(QStringLiteral("0309142227064"));
    QTest::keyClick(f.box(7), Qt::Key_Return);
    QCOMPARE(f.prompter.messages(), QStringList{history_texts::kEntryMaskText});
    discard->click();

    // Going back to another box of the row does not check; leaving box 7 by Tab does, once.
    f.clickBox(1);
    Fixture::typeKeys(QStringLiteral("0309142227061"));
    f.clickBox(3);
    QCoreApplication::processEvents();
    QCOMPARE(f.messages(), 1);
    f.clickBox(7);
    QTest::keyClick(f.box(7), Qt::Key_Tab);
    QTRY_COMPARE(f.messages(), 2);
    QCOMPARE(f.prompter.messages().last(), history_texts::kEntryMaskText);
    QCOMPARE(f.session->drawCount(), 0);

    // A click in the box puts the cursor on the free digit; the second digit completes the
    // box and the draw goes in.
    f.clickBox(7);
    QCOMPARE(f.box(7)->cursorPosition(), 1);
    Fixture::typeKeys(QStringLiteral("1"));
    QCOMPARE(f.messages(), 2);
    QCOMPARE(f.session->drawCount(), 1);
    QCOMPARE(f.lastRow().join(' '), QStringLiteral("03 09 14 22 27 06 11"));
}

QTEST_MAIN(DrawEntryTest)
#include "test_draw_entry.moc"
