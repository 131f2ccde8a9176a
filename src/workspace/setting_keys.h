#pragma once

#include <QString>

// The four application names of the settings store. A workspace's own tree is named after it.
enum class SettingApp {
    Registry,   // "LUMENQYSQ": the workspace list
    Workspace,  // "<workspace>QY": the settings of one workspace
    Report,     // "<workspace>": the profit and loss report
    Fortune,    // "SLSS": the fortune calculator
};

// One key of the settings table with its default. A section may hold "%1" for an index
// (Username<i>, prize<i>).
struct SettingKey {
    SettingApp app;
    const char* section;
    const char* key;
    const char* fallback;
};

// Every key the program reads or writes, with the default used at every read.
namespace setting_keys {
inline constexpr SettingKey WorkspaceCount{SettingApp::Registry, "Option", "Usernum", "0"};
inline constexpr SettingKey LastWorkspace{SettingApp::Registry, "Option", "Ftopt", "0"};
// Read with the fallback "新用户" + i, see Settings::userName.
inline constexpr SettingKey UserName{SettingApp::Registry, "Username%1", "Name", ""};
inline constexpr SettingKey UserPassword{SettingApp::Registry, "Username%1", "Password", ""};
inline constexpr SettingKey FrontSize{SettingApp::Workspace, "Initial", "Bitnum", "35"};
inline constexpr SettingKey BackSize{SettingApp::Workspace, "Initial", "BitnumHou", "12"};
// The stability coefficient has two defaults: the main window reads 30000, the dan-tuo play
// modes read 8000.
inline constexpr SettingKey StabilityAtLoad{SettingApp::Workspace, "Initial", "Wd", "30000"};
inline constexpr SettingKey StabilityForPlayModes{SettingApp::Workspace, "Initial", "Wd", "8000"};
// The six running values of the spin simulator, written at exit, read by nobody.
inline constexpr SettingKey SpinValue{SettingApp::Workspace, "Initial", "%1", "0"};
inline constexpr SettingKey TicketsPerLine{SettingApp::Workspace, "setup", "dayin", "4"};
inline constexpr SettingKey MoneyDefault{SettingApp::Report, "Money", "Default", ""};
inline constexpr SettingKey FortuneOption{SettingApp::Fortune, "Select", "Option", "4"};
inline constexpr SettingKey FortuneBirth{SettingApp::Fortune, "date", "Birth", "1970-01-01"};
// Host of the history download service.
inline constexpr SettingKey DownloadHost{SettingApp::Registry, "Network", "Host", "http://127.0.0.1:8080"};
// The number board between sessions: each list as numbers separated by spaces.
inline constexpr SettingKey BoardFrontPicks{SettingApp::Workspace, "Board", "FrontPicks", ""};
inline constexpr SettingKey BoardFrontBankers{SettingApp::Workspace, "Board", "FrontBankers", ""};
inline constexpr SettingKey BoardBackPicks{SettingApp::Workspace, "Board", "BackPicks", ""};
inline constexpr SettingKey BoardBackBankers{SettingApp::Workspace, "Board", "BackBankers", ""};
}  // namespace setting_keys
