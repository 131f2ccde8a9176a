// The start window's 新建用户 refuses names that would leave the data root, with the scripted
// prompter and with the real dialogs.
#include "app/ui/start_window.h"
#include "workspace/scripted_prompter.h"
#include "workspace/ui/qt_prompter.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

class WorkspaceNamesWindowTest : public QObject {
    Q_OBJECT
private slots:
    void newWorkspaceRefusesBadNamesAndAsksAgain();
    void realDialogsShowTheRefusalAndAskAgain();
};

namespace {

void clickLabel(StartWindow& w, const char* name) {
    auto* label = w.findChild<QLabel*>(QString::fromLatin1(name));
    QVERIFY(label);
    QTest::mouseClick(label, Qt::LeftButton);
}

// A data root <outer>/app, so that its parent holds nothing but what a test puts there.
struct NestedHome {
    QTemporaryDir outer;
    DataRoot root{outer.filePath(QStringLiteral("app"))};
    Settings settings{root.settingsDir()};
    NestedHome() { root.ensureFirstStart(); }
};

// The entries of a folder, sorted.
QStringList entries(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

// Answers the modal dialogs in turn: each step gets the dialog that is the active modal widget
// when it appears, once.
class ModalScript {
public:
    using Step = std::function<void(QWidget*)>;
    explicit ModalScript(QList<Step> steps) : m_steps(std::move(steps)) {
        m_poll.setInterval(20);
        QObject::connect(&m_poll, &QTimer::timeout, [this] { next(); });
        m_poll.start();
    }
    int done() const { return m_done; }

private:
    void next() {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible() || modal->property("answered").toBool()) return;
        modal->setProperty("answered", true);
        if (m_done < m_steps.size()) {
            m_steps[m_done++](modal);
        } else if (auto* dialog = qobject_cast<QDialog*>(modal)) {
            dialog->reject();  // more dialogs than the script knows: end the chain
        }
    }
    QList<Step> m_steps;
    int m_done = 0;
    QTimer m_poll;
};

ModalScript::Step typeInto(const QString& title, const QString& text) {
    return [title, text](QWidget* modal) {
        auto* input = qobject_cast<QInputDialog*>(modal);
        QVERIFY(input);
        QCOMPARE(input->windowTitle(), title);
        input->setTextValue(text);
        input->accept();
    };
}

}  // namespace

void WorkspaceNamesWindowTest::newWorkspaceRefusesBadNamesAndAsksAgain() {
    NestedHome home;
    const QStringList outsideBefore = entries(home.outer.path());
    WorkspaceList list(home.settings, home.root);
    ScriptedPrompter p;
    StartWindow w(list, p);
    auto* lst = w.findChild<QListWidget*>(QStringLiteral("LstName"));
    QVERIFY(lst);

    p.answer(QStringLiteral("../x")).answer(QStringLiteral("a/b")).answer(QStringLiteral(".."));
    p.answer(QStringLiteral("王\n先生")).answer(QString(300, QLatin1Char('w')));
    p.answer(QStringLiteral("王先生")).answer(QString()).answer(QString());
    clickLabel(w, "Label2");
    QCOMPARE(p.messages(), QStringList({WorkspaceList::kNameHasSeparator, WorkspaceList::kNameHasSeparator,
                                        WorkspaceList::kNameIsDots, WorkspaceList::kNameHasControl,
                                        WorkspaceList::kNameTooLong}));
    QCOMPARE(lst->count(), 1);
    QCOMPARE(lst->currentItem()->text(), QStringLiteral("王先生"));
    QCOMPARE(home.settings.readInt(setting_keys::WorkspaceCount), 1);
    QCOMPARE(entries(home.outer.path()), outsideBefore);
    QVERIFY(!QFileInfo::exists(home.root.path(QStringLiteral("a"))));
}

void WorkspaceNamesWindowTest::realDialogsShowTheRefusalAndAskAgain() {
    NestedHome home;
    const QStringList outsideBefore = entries(home.outer.path());
    WorkspaceList list(home.settings, home.root);
    QtPrompter prompter;
    StartWindow w(list, prompter);
    prompter.setParent(&w);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));

    QString refusal, refusalTitle;
    const QString title = WorkspaceList::kNameTitle;
    const QString passwordTitle = QStringLiteral("用户密码设置");
    ModalScript script({typeInto(title, QStringLiteral("../x")),
                        [&](QWidget* modal) {
                            auto* box = qobject_cast<QMessageBox*>(modal);
                            QVERIFY(box);
                            refusal = box->text();
                            refusalTitle = box->windowTitle();
                            box->button(QMessageBox::Ok)->click();
                        },
                        typeInto(title, QStringLiteral("李四[大乐透]")), typeInto(passwordTitle, QString()),
                        typeInto(passwordTitle, QString())});
    clickLabel(w, "Label2");
    QCOMPARE(script.done(), 5);
    QCOMPARE(refusal, WorkspaceList::kNameHasSeparator);
    QCOMPARE(refusalTitle, title);
    auto* lst = w.findChild<QListWidget*>(QStringLiteral("LstName"));
    QCOMPARE(lst->count(), 1);
    QCOMPARE(lst->currentItem()->text(), QStringLiteral("李四[大乐透]"));
    QCOMPARE(entries(home.outer.path()), outsideBefore);
}

QTEST_MAIN(WorkspaceNamesWindowTest)
#include "test_workspace_names.moc"
