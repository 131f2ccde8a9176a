// The workspace list (LUMENQYSQ.ini) not written by this program: loaded, each stored name
// checked, the preselected workspace entered, a password tried.
#include "fuzz_support.h"
#include "workspace/scripted_prompter.h"

SQ_FUZZ_START_APPLICATION

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz_support::Scratch& s = fuzz_support::scratch();
    const QString file = s.settings.fileFor(Settings::appName(SettingApp::Registry, {}));
    if (!fuzz_support::writeFile(file, fuzz_support::bytes(data, size))) return 0;
    WorkspaceList list(s.settings, s.root);
    list.load();
    list.lastWorkspace();
    for (int row = 0; row < list.count(); ++row) {
        list.nameError(list.name(row));
        list.nameTaken(list.name(row), row + 1);
    }
    const int row = list.preselectedRow();
    if (row >= 0) {
        list.checkPassword(row, QStringLiteral("password"));
        ScriptedPrompter prompter;
        prompter.answer(true);
        list.enter(row, prompter);
    }
    return 0;
}
