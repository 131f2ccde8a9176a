// The real password box of the start window checks typed passwords against the stored hash.
#include "support/temp_home.h"
#include "workspace/password_hash.h"
#include "workspace/ui/frm_login.h"
#include "workspace/ui/frmpre.h"
#include "workspace/ui/qt_prompter.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

class WorkspaceLoginTest : public QObject {
    Q_OBJECT
private slots:
    void enterThroughTheRealBoxWithAHashedPassword();
};

namespace {

// Answers the password box: a wrong text first, the message it brings, then the right text.
// Each dialog is answered once, when it is the active modal widget.
class LoginScript {
public:
    LoginScript(QString wrong, QString right) : m_wrong(std::move(wrong)), m_right(std::move(right)) {
        m_poll.setInterval(20);
        QObject::connect(&m_poll, &QTimer::timeout, [this] { next(); });
        m_poll.start();
    }
    QStringList messages;
    int boxesAnswered = 0;

private:
    void next() {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible()) return;
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            if (box->property("answered").toBool()) return;
            box->setProperty("answered", true);
            messages << box->text();
            box->button(QMessageBox::Ok)->click();
            return;
        }
        auto* login = qobject_cast<FrmLogin*>(modal);
        if (!login || login->property("typed").toInt() >= 2) return;
        const int typed = login->property("typed").toInt();
        login->setProperty("typed", typed + 1);
        auto* field = login->findChild<QLineEdit*>(QStringLiteral("txtPassword"));
        field->setText(typed == 0 ? m_wrong : m_right);
        ++boxesAnswered;
        // Pressed from the event loop: a wrong text opens its message inside the click, and
        // this poll must be free to answer it.
        QMetaObject::invokeMethod(login->findChild<QPushButton*>(QStringLiteral("cmdOK")),
                                  &QPushButton::click, Qt::QueuedConnection);
    }
    QString m_wrong, m_right;
    QTimer m_poll;
};

void clickLabel(Frmpre& w, const char* name) {
    auto* label = w.findChild<QLabel*>(QString::fromLatin1(name));
    QVERIFY(label);
    QTest::mouseClick(label, Qt::LeftButton);
}

}  // namespace

void WorkspaceLoginTest::enterThroughTheRealBoxWithAHashedPassword() {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    QCOMPARE(list.create(QStringLiteral("锁"), QStringLiteral("开门")), 0);
    QVERIFY(password_hash::isHash(home.settings.read(keys::UserPassword, {}, 1)));
    QtPrompter prompter;
    Frmpre w(list, prompter);
    prompter.setParent(&w);
    w.show();
    w.findChild<QListWidget*>(QStringLiteral("LstName"))->setCurrentRow(0);
    QSignalSpy entered(&w, &Frmpre::entered);
    LoginScript script(QStringLiteral("关门"), QStringLiteral("开门"));
    clickLabel(w, "Label3");
    QCOMPARE(script.boxesAnswered, 2);
    QCOMPARE(script.messages, QStringList{QStringLiteral("无效的密码，请重试!")});
    QCOMPARE(entered.count(), 1);
    QCOMPARE(entered.at(0).at(0).value<EnteredWorkspace>().name, QStringLiteral("锁"));
}

QTEST_MAIN(WorkspaceLoginTest)
#include "test_workspace_login.moc"
