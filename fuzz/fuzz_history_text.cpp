// The history text: each line through the parser, then the file through the whole or the
// append import (the first byte chooses) into a workspace.
#include "fuzz_support.h"
#include "history/history_import.h"
#include "history/history_text.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"

#include <QDir>

namespace {

struct Target {
    Session session{fuzz_support::scratch().root, fuzz_support::scratch().settings};
    ScriptedPrompter prompter;
    QTemporaryDir files;
    Target() { session.open(fuzz_support::scratch().entered()); }
};

void parseLines(const QByteArray& text) {
    int32_t previous = 0;
    for (const QByteArray& line : text.split('\n')) {
        history_text::leadingValue(line);
        if (history_text::isBlank(line)) continue;
        const history_text::ParsedLine parsed = history_text::parseLine(line, previous);
        if (parsed.status == history_text::ParsedLine::Status::Ok) previous = parsed.draw[0];
    }
}

}  // namespace

SQ_FUZZ_START_APPLICATION

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Target target;
    const QByteArray input = fuzz_support::bytes(data, size);
    parseLines(input);
    if (input.isEmpty()) return 0;
    const auto mode = (input[0] & 1) ? HistoryImport::Mode::Append : HistoryImport::Mode::Whole;
    // Each import in a folder of its own: the workspace's copy of the file goes beside it.
    QTemporaryDir dir(target.files.filePath(QStringLiteral("XXXXXX")));
    const QString path = QDir(dir.path()).filePath(QStringLiteral("h.txt"));
    if (!fuzz_support::writeFile(path, input.mid(1))) return 0;
    target.prompter.clear();
    HistoryImport(target.session, target.prompter).importFile(mode, path);
    return 0;
}
