// A workspace's settings file (<name>QY.ini) not written by this program: the workspace
// entered with it, its history and statistics loaded, its prize rules read.
#include "fuzz_support.h"
#include "prize/prize_rules.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"

SQ_FUZZ_START_APPLICATION

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz_support::Scratch& s = fuzz_support::scratch();
    const QString file =
        s.settings.fileFor(Settings::appName(SettingApp::Workspace, fuzz_support::Scratch::kWorkspace));
    if (!fuzz_support::writeFile(file, fuzz_support::bytes(data, size))) return 0;
    WorkspaceList list(s.settings, s.root);
    list.load();
    ScriptedPrompter prompter;
    const std::optional<EnteredWorkspace> entered = list.enter(0, prompter);
    if (!entered) return 0;
    Session session(s.root, s.settings);
    if (session.open(*entered)) {
        session.loadHistory();
        session.loadStatistics();
    }
    PrizeSettings(s.settings, entered->name).read();
    return 0;
}
