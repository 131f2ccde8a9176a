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
namespace keys {
inline constexpr SettingKey Usernum{SettingApp::Registry, "Option", "Usernum", "0"};
inline constexpr SettingKey Ftopt{SettingApp::Registry, "Option", "Ftopt", "0"};
// Read with the fallback "新用户" + i, see Settings::userName.
inline constexpr SettingKey UserName{SettingApp::Registry, "Username%1", "Name", ""};
inline constexpr SettingKey UserPassword{SettingApp::Registry, "Username%1", "Password", ""};
inline constexpr SettingKey Bitnum{SettingApp::Workspace, "Initial", "Bitnum", "35"};
inline constexpr SettingKey BitnumHou{SettingApp::Workspace, "Initial", "BitnumHou", "12"};
// The stability coefficient has two defaults: the main window reads 30000, the dan-tuo play
// modes read 8000.
inline constexpr SettingKey WdAtLoad{SettingApp::Workspace, "Initial", "Wd", "30000"};
inline constexpr SettingKey WdForPlayModes{SettingApp::Workspace, "Initial", "Wd", "8000"};
// The six running values of the spin simulator, written at exit, read by nobody.
inline constexpr SettingKey SpinValue{SettingApp::Workspace, "Initial", "%1", "0"};
inline constexpr SettingKey Dayin{SettingApp::Workspace, "setup", "dayin", "4"};
inline constexpr SettingKey MoneyDefault{SettingApp::Report, "Money", "Default", ""};
inline constexpr SettingKey FortuneOption{SettingApp::Fortune, "Select", "Option", "4"};
inline constexpr SettingKey FortuneBirth{SettingApp::Fortune, "date", "Birth", "1970-01-01"};
// Host of the history download service.
inline constexpr SettingKey DownloadHost{SettingApp::Registry, "Network", "Host", "http://127.0.0.1:8080"};
}  // namespace keys

// The settings store: QSettings in INI form, one file per application name, all values
// decimal strings. The file of a key is <dir>/<application name>.ini.
//
// Every write is saved at once. A write that cannot be saved (a folder or file that is not
// writable, a folder standing where the file belongs) returns false and leaves the store as it
// was, also for reads later in this process: QSettings keeps its files cached per process, so
// the value that could not be saved is taken back out of that cache.
class Settings {
public:
    explicit Settings(QString dir);

    QString dir() const { return m_dir; }

    // Sections with "%1" take `index`; workspace keys take the workspace name.
    QString read(const SettingKey& key, const QString& workspace = {}, int index = 0) const;
    int readInt(const SettingKey& key, const QString& workspace = {}, int index = 0) const;
    // True when saved.
    bool write(const SettingKey& key, const QString& value, const QString& workspace = {}, int index = 0);
    bool write(const SettingKey& key, int value, const QString& workspace = {}, int index = 0) {
        return write(key, QString::number(value), workspace, index);
    }

    // Raw access for keys whose section and key are computed (prize rules by rank).
    QString readRaw(const QString& app, const QString& section, const QString& key, const QString& fallback) const;
    bool writeRaw(const QString& app, const QString& section, const QString& key, const QString& value);

    // The INI file behind an application name, and that of a key.
    QString fileFor(const QString& app) const;
    QString fileFor(const SettingKey& key, const QString& workspace = {}) const {
        return fileFor(appName(key.app, workspace));
    }

    static QString appName(SettingApp app, const QString& workspace);

    // What the player reads when a write to `file` failed.
    static inline const QString kSaveFailedTitle = QStringLiteral("设置错误");
    static QString saveFailedText(const QString& file);

private:
    QString m_dir;
};
