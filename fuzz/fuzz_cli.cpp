// The command line: the input's lines are the words after `shuangqu-cli --home <scratch>`,
// parsed and run in-process. Words that would reach outside the scratch root (another data
// root, a path) or the network (downloads) are left out of the run.
#include "app/cli/cli_main.h"
#include "fuzz_support.h"

#include <QDir>

namespace {

constexpr int kMaxWords = 24;

bool staysInScratch(const QString& word) {
    QString bare = word;
    while (bare.startsWith(QLatin1Char('-'))) bare.remove(0, 1);
    if (bare.startsWith(QLatin1String("home")) || bare.startsWith(QLatin1String("download"))) return false;
    return !word.contains(QLatin1Char('/')) && !word.contains(QLatin1Char('\\')) &&
           !word.startsWith(QLatin1Char('~'));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    fuzz_support::startApplication(argc, argv);
    // Files the commands name relative to the working folder land in the scratch root.
    QDir::setCurrent(fuzz_support::scratch().dir.path());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QList<QByteArray> lines = fuzz_support::bytes(data, size).split('\n');
    if (lines.size() > kMaxWords) return 0;
    QStringList arguments{QStringLiteral("shuangqu-cli"), QStringLiteral("--home"),
                          fuzz_support::scratch().dir.path()};
    for (const QByteArray& line : lines) {
        const QString word = QString::fromUtf8(line);
        if (!staysInScratch(word)) return 0;
        arguments << word;
    }
    QString out;
    QString err;
    QTextStream outStream(&out);
    QTextStream errStream(&err);
    cli_main::run(arguments, outStream, errStream);
    return 0;
}
