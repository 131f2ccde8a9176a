#pragma once

#include <QStringList>
#include <QTextStream>

namespace cli_main {

// The whole command line of shuangqu-cli, the program's name first: the global options, then
// help, or the command's parse and run. Returns the exit code; never ends the process.
int run(const QStringList& arguments, QTextStream& out, QTextStream& err);

}  // namespace cli_main
