// shuangqu: the start window, then the main window of the entered workspace.
#include "app/ui/main_window.h"
#include "app/ui/qt_translations.h"
#include "app/ui/single_instance.h"
#include "app/ui/start_window.h"
#include "generation/wheels/wheel_store.h"
#include "workspace/data_root.h"
#include "workspace/session.h"
#include "workspace/settings.h"
#include "workspace/ui/qt_prompter.h"
#include "workspace/workspace_list.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFont>
#include <QPointer>

#include <memory>

namespace {

// --version and --help answer on the terminal and end the program, without needing a display;
// other arguments (Qt's own, such as -platform) are left to the application.
void answerOnTerminal(int argc, char** argv) {
    QCoreApplication core(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("shuangqu"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SHUANGQU_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("双区大乐透彩票助理: the desktop program."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.parse(core.arguments());
    if (parser.isSet(version)) parser.showVersion();
    if (parser.isSet(help)) parser.showHelp(0);
}

}  // namespace

int main(int argc, char** argv) {
    answerOnTerminal(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("shuangqu"));
    QApplication::setApplicationVersion(QStringLiteral(SHUANGQU_VERSION));
    qt_translations::install(app);
    QFont font(QStringLiteral("Noto Sans CJK SC"), 9);
    QApplication::setFont(font);

    QtPrompter prompter;
    const DataRoot root = DataRoot::fromEnvironment();
    SingleInstance instance(root.root());
    if (instance.anotherIsRunning()) {
        prompter.inform(QString(), SingleInstance::kAlreadyRunning, Prompter::Icon::Critical);
        return 0;
    }
    instance.listen();
    if (!root.ensureFirstStart()) {
        prompter.inform(Session::kFatalTitle, Session::kFatalText, Prompter::Icon::Critical);
        return 1;
    }
    // Without its wheel databases the program goes on: the wheel entries stay disabled.
    if (QString error; !wheel_store::ensureDatabases(root.root(), &error))
        qWarning("wheel databases not written: %s", qPrintable(error));

    Settings settings(root.settingsDir());
    // A workspace list or fortune file that cannot be read would read as defaults and be saved
    // over: the program stops before it reads them, and the player can mend or move the file.
    if (const QString problem = settings.filesProblem(); !problem.isEmpty()) {
        prompter.inform(Settings::kDamagedTitle, problem, Prompter::Icon::Critical);
        return 1;
    }
    WorkspaceList workspaces(settings, root);
    Session session(root, settings);
    std::unique_ptr<MainWindow> mainWindow;

    auto* start = new StartWindow(workspaces, prompter);
    start->setAttribute(Qt::WA_DeleteOnClose);
    prompter.setParent(start);
    QPointer<QWidget> front = start;
    QObject::connect(&instance, &SingleInstance::activationRequested, [&front] {
        if (!front) return;
        front->show();
        front->setWindowState((front->windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
        front->raise();
        front->activateWindow();
    });
    QObject::connect(start, &StartWindow::entered, [&](const EnteredWorkspace& w) {
        QString error;
        if (!session.open(w, &error)) {
            prompter.inform(Session::kFatalTitle, error.isEmpty() ? Session::kFatalText : error,
                            Prompter::Icon::Critical);
            QApplication::exit(1);
            return;
        }
        mainWindow = std::make_unique<MainWindow>(session, workspaces, prompter);
        prompter.setParent(mainWindow.get());
        // A history that could not be read still opens the window, with the error's text.
        if (!error.isEmpty()) prompter.inform(MainWindow::kTitle, error, Prompter::Icon::Warning);
        front = mainWindow.get();
        mainWindow->show();
        start->close();
    });
    start->show();
    return app.exec();
}
