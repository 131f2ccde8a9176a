// shuangqu-cli: the engine without windows.
//   shuangqu-cli [--home DIR] [--workspace NAME] COMMAND ...
#include "app/cli/cli_main.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    return cli_main::run(QCoreApplication::arguments(), out, err);
}
