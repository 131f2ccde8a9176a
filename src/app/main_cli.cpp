// shuangqu-cli: the engine without windows.
//   shuangqu-cli [--home DIR] [--workspace NAME] COMMAND ...
#include "app/cli/cli_main.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstring>
#include <memory>

namespace {

// Laying out pages (a PDF) needs fonts, which come with a Qt Gui application; the offscreen
// platform lets it run without a display.
bool laysOutPages(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--pdf") == 0) return true;
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    std::unique_ptr<QCoreApplication> app;
    if (laysOutPages(argc, argv)) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    QTextStream out(stdout);
    QTextStream err(stderr);
    return cli_main::run(QCoreApplication::arguments(), out, err);
}
