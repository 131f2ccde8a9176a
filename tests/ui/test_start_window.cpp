// The start window and the password box, driven through their named controls.
#include "app/ui/start_window.h"
#include "support/temp_home.h"
#include "support/window_shot.h"
#include "workspace/scripted_prompter.h"
#include "workspace/ui/login_dialog.h"
#include "workspace/workspace_lock.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class StartWindowTest : public QObject {
    Q_OBJECT
private slots:
    void listsWorkspacesAndPreselectsTheLastEntered();
    void labelsCreateEnterAndDelete();
    void enteringWithoutSelectionIsRefused();
    void loginBoxKeepsAskingUntilCancelled();
    void enteringAWorkspaceInUseIsRefused();
    void aWorkspaceWhoseSettingsCannotBeReadIsNotEntered();
};

static void clickLabel(StartWindow& w, const char* name) {
    auto* label = w.findChild<QLabel*>(QString::fromLatin1(name));
    QVERIFY(label);
    QTest::mouseClick(label, Qt::LeftButton);
}

void StartWindowTest::listsWorkspacesAndPreselectsTheLastEntered() {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    list.create(QStringLiteral("甲"), {});
    list.create(QStringLiteral("乙"), {});
    home.settings.write(setting_keys::LastWorkspace, 9);  // above Usernum: clamped to the last
    ScriptedPrompter p;
    StartWindow w(list, p);
    QCOMPARE(w.windowTitle(), QStringLiteral("欢迎进入鹤鸣轩.明略乐透彩票助理"));
    auto* lst = w.findChild<QListWidget*>(QStringLiteral("LstName"));
    QVERIFY(lst);
    QCOMPARE(lst->count(), 2);
    QCOMPARE(lst->currentRow(), 1);
    for (const char* name : {"Label2", "Label3", "Label4"}) QVERIFY(w.findChild<QLabel*>(QString::fromLatin1(name)));
    w.show();
    saveShot(&w, QStringLiteral("start_window"));
}

void StartWindowTest::labelsCreateEnterAndDelete() {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    ScriptedPrompter p;
    StartWindow w(list, p);
    auto* lst = w.findChild<QListWidget*>(QStringLiteral("LstName"));
    QSignalSpy entered(&w, &StartWindow::entered);

    p.answer(QStringLiteral("王先生")).answer(QStringLiteral("k")).answer(QStringLiteral("k"));
    clickLabel(w, "Label2");
    QCOMPARE(lst->count(), 1);
    QCOMPARE(lst->currentItem()->text(), QStringLiteral("王先生"));

    p.answer(QStringLiteral("k"));  // the password box
    clickLabel(w, "Label3");
    QCOMPARE(entered.count(), 1);
    {
        const auto ws = entered.at(0).at(0).value<EnteredWorkspace>();
        QCOMPARE(ws.name, QStringLiteral("王先生"));
        QCOMPARE(ws.index, 1);
        // Entering takes the workspace's lock for the window.
        QVERIFY(ws.lock);
    }
    // The window that entered lets it go (here: the spy's copy) before the entry is deleted.
    entered.clear();

    p.answer(true).answer(QStringLiteral("k"));
    clickLabel(w, "Label4");
    QCOMPARE(lst->count(), 0);
    QCOMPARE(home.settings.readInt(setting_keys::WorkspaceCount), 0);
}

void StartWindowTest::enteringWithoutSelectionIsRefused() {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    ScriptedPrompter p;
    StartWindow w(list, p);
    QSignalSpy entered(&w, &StartWindow::entered);
    clickLabel(w, "Label3");
    QCOMPARE(entered.count(), 0);
    QCOMPARE(p.messages(), QStringList{QStringLiteral("请建立或选择一个用户名然后再进入。")});
}

void StartWindowTest::loginBoxKeepsAskingUntilCancelled() {
    ScriptedPrompter p;
    LoginDialog box(QStringLiteral("secret"), p);
    QCOMPARE(box.windowTitle(), QStringLiteral("登录"));
    auto* field = box.findChild<QLineEdit*>(QStringLiteral("txtPassword"));
    auto* ok = box.findChild<QPushButton*>(QStringLiteral("cmdOK"));
    auto* cancel = box.findChild<QPushButton*>(QStringLiteral("cmdCancel"));
    QVERIFY(field && ok && cancel);
    box.show();
    QTest::keyClicks(field, QStringLiteral("Secret"));
    ok->click();
    QCOMPARE(p.messages(), QStringList{QStringLiteral("无效的密码，请重试!")});
    QVERIFY(box.isVisible());
    QCOMPARE(field->selectedText(), QStringLiteral("Secret"));
    QVERIFY(!box.loginSucceeded());
    field->setText(QStringLiteral("secret"));
    ok->click();
    QVERIFY(box.loginSucceeded());
    QVERIFY(!box.isVisible());

    LoginDialog other(QStringLiteral("x"), p);
    other.show();
    cancel = other.findChild<QPushButton*>(QStringLiteral("cmdCancel"));
    cancel->click();
    QVERIFY(!other.loginSucceeded());
}

void StartWindowTest::enteringAWorkspaceInUseIsRefused() {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    list.create(QStringLiteral("甲"), {});
    ScriptedPrompter p;
    StartWindow w(list, p);
    w.nameList()->setCurrentRow(0);
    QSignalSpy entered(&w, &StartWindow::entered);
    {
        // Another program is changing the workspace.
        QString error;
        const auto held = WorkspaceLock::forWorkspace(home.root, QStringLiteral("甲"), &error);
        QVERIFY(held);
        clickLabel(w, "Label3");
        QCOMPARE(entered.count(), 0);
        QCOMPARE(p.messages(), QStringList{WorkspaceLock::busyText(QStringLiteral("甲"))});
        p.clear();
    }
    clickLabel(w, "Label3");
    QCOMPARE(entered.count(), 1);
    QVERIFY(p.messages().isEmpty());
}

// A settings file of the workspace that is no settings file: the message names it, the
// workspace is not entered and the file keeps every byte; once mended, the workspace opens.
void StartWindowTest::aWorkspaceWhoseSettingsCannotBeReadIsNotEntered() {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    list.create(QStringLiteral("甲"), {});
    const QString file = home.settings.fileFor(Settings::appName(SettingApp::Workspace, QStringLiteral("甲")));
    const QByteArray damaged("SQLite format 3\0\x10\x00binary", 24);
    {
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(damaged);
    }
    ScriptedPrompter p;
    StartWindow w(list, p);
    w.nameList()->setCurrentRow(0);
    QSignalSpy entered(&w, &StartWindow::entered);
    clickLabel(w, "Label3");
    QCOMPARE(entered.count(), 0);
    QCOMPARE(p.messages().size(), 1);
    QVERIFY(p.messages().constFirst().contains(QDir::toNativeSeparators(file)));
    {
        QFile f(file);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), damaged);
    }
    QVERIFY(QFile::remove(file));
    p.clear();
    clickLabel(w, "Label3");
    QCOMPARE(entered.count(), 1);
    QVERIFY(p.messages().isEmpty());
}

QTEST_MAIN(StartWindowTest)
#include "test_start_window.moc"
