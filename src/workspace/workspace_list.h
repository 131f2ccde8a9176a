#pragma once

#include "workspace/data_root.h"
#include "workspace/settings.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>

#include <QMetaType>

class Prompter;
class WorkspaceLock;

// What entering a workspace hands to the main window.
struct EnteredWorkspace {
    int index = 0;  // 1-based index in the list (Ftopt)
    QString name;   // Curuser
    int frontSize = 35;
    int backSize = 12;
    // The workspace's writer lock, held by the window's session while the player stays.
    std::shared_ptr<WorkspaceLock> lock = nullptr;
};

// The workspace list of the start window, Usernames/Userpass, kept in the settings under
// LUMENQYSQ. Rows are 0-based list positions; workspace indices are row + 1.
//
// A name becomes the folder <app>/<name> and the file names <name>.db, <name>QY.ini and more,
// so every way of making a name goes through nameError. Passwords are kept as salted hashes
// (password_hash) and checked through checkPassword only.
class WorkspaceList {
public:
    static constexpr int kMaxWorkspaces = 1023;
    // Bytes of UTF-8 a name may take. A file name holds at most 255 bytes, and the longest one
    // made from a workspace name is the history text copy moved aside on import,
    // "<name> 2026-12-31日前 大乐透号码 .TXT", 38 bytes more than the name.
    static constexpr int kMaxNameBytes = 255 - 38;

    // Titles and refusals of the name prompts.
    static inline const QString kNameTitle = QStringLiteral("用户名输入");
    static inline const QString kNameTaken = QStringLiteral("此用户名已经被注册，请换用其他的名字");
    static inline const QString kNameHasSeparator =
        QStringLiteral("用户名不能含有“/”或“\\”，请换用其他的名字");
    static inline const QString kNameIsDots = QStringLiteral("用户名不能是“.”或“..”，请换用其他的名字");
    static inline const QString kNameHasControl =
        QStringLiteral("用户名不能含有换行等控制字符，请换用其他的名字");
    static inline const QString kNameHasOuterBlank =
        QStringLiteral("用户名的开头和结尾不能是空格，请换用其他的名字");
    static inline const QString kNameTooLong = QStringLiteral("此用户名太长，请换用短一些的名字");
    static inline const QString kNameIsProgramFolder =
        QStringLiteral("此用户名与本程序自用的文件夹同名，请换用其他的名字");
    static inline const QString kNoFolder = QStringLiteral("无法建立此用户名的文件夹，请换用其他的名字");
    static inline const QString kListFull = QStringLiteral("用户名已满1023个，请先删除不用的用户名");
    // A change to an entry that another program deleted or moved meanwhile.
    static inline const QString kListChanged = QStringLiteral("用户名列表已被另一个程序修改，请重新选择。");
    // Entering a workspace whose stored name would lead outside the program folder.
    static inline const QString kNameErrorTitle = QStringLiteral("用户名错误");
    static inline const QString kUnsafeStoredName =
        QStringLiteral("此用户名不能用作文件夹名，请您删除该用户名，然后新建用户进入。");

    WorkspaceList(Settings& settings, DataRoot root);

    // Reads Usernum and every name and password; empty stored names read as "新用户" + i.
    void load();
    int count() const { return static_cast<int>(m_names.size()); }
    QString name(int row) const { return m_names.value(row); }
    // The stored form of the password: a hash, or the plain text written by an earlier
    // version; empty when the workspace has none. Never compare a typed text with it: use
    // checkPassword.
    QString password(int row) const { return m_passwords.value(row); }
    bool hasPassword(int row) const { return !m_passwords.value(row).isEmpty(); }
    const QStringList& names() const { return m_names; }
    const DataRoot& root() const { return m_root; }
    const Settings& settings() const { return m_settings; }
    // Ftopt clamped down to Usernum.
    int lastWorkspace() const;
    // The row whose name is that of workspace Ftopt, or -1.
    int preselectedRow() const;

    // Why `name` cannot be a workspace name, or nothing when it can. The empty name passes:
    // a cancelled input box makes a nameless entry that gets no folder.
    std::optional<QString> nameError(const QString& name) const;
    // True when `typed` opens the workspace at `row` (any text for one without a password).
    // A plain password of an earlier version is rewritten as a hash on its first right use.
    bool checkPassword(int row, const QString& typed);

    // The prompt chain of 新用户. Returns the new row, or -1 when the list is full or the
    // settings could not be saved (the message was shown).
    int askNew(Prompter& prompter);
    // 进入系统 on a row (-1: no selection). Empty when refused.
    std::optional<EnteredWorkspace> enter(int row, Prompter& prompter);
    // 删除用户 on a row (-1: no selection). True when deleted.
    bool remove(int row, Prompter& prompter);
    // 用户名设置 of the main window for the workspace at 1-based `index`: a fresh workspace
    // under the new name; the old files stay. Returns the new name, or empty when cancelled or
    // when the settings could not be saved (the message was shown).
    std::optional<QString> askRename(int index, const QString& current, Prompter& prompter);

    // The same without prompts (the command line). Each refuses what the prompt chains refuse
    // and puts the message into `error`. Each holds the list's lock and starts from the stored
    // list, read again under it, so that two programs changing the list at once lose nothing;
    // rows and indices are those of the list the caller saw, followed by name. removeAt also
    // holds the deleted workspace's lock while its files go.
    // create: the new row, or -1 (list full, bad name, no folder, settings not saved).
    // `makeLast` also makes it the last workspace entered, in the same save.
    int create(const QString& name, const QString& password, QString* error = nullptr, bool makeLast = false);
    // removeAt: deletes the files of the workspace's folder, never anything outside it, and
    // removes the entry. A stored name whose folder is no direct child of the data root loses
    // its entry only. False when the settings could not be saved (nothing deleted then).
    bool removeAt(int row, QString* error = nullptr);
    // renameAt: false when the name is refused, its folder cannot be made or the settings
    // could not be saved; the entry stays as it was then.
    bool renameAt(int index, const QString& newName, const QString& password, QString* error = nullptr);
    bool nameTaken(const QString& name, int exceptIndex = 0) const;

    // Makes <app>/<name>/ and copies in the templates of the files it lacks; copyFilnumR only
    // at creation. False when the folder cannot be made there or a copy fails.
    bool makeWorkspaceFiles(const QString& name, bool copyFilnumR) const;

private:
    // Takes the list's lock into `lock` and reads the stored list again; false with `error`
    // set when another program holds the lock.
    bool lockAndReload(std::unique_ptr<WorkspaceLock>& lock, QString* error);
    // Saves entry `index` (name and password together), or entries `from`.. with the count.
    bool saveEntry(int index, QString* error);
    bool saveEntriesAndCount(int from, QString* error, const QList<Settings::KeyValue>& more = {});
    QList<Settings::KeyValue> entryValues(int index) const;
    std::optional<QString> askPasswordTwice(Prompter& prompter) const;
    // Asks for a name until one passes; empty when the player cancels a rename.
    std::optional<QString> askName(Prompter& prompter, const QString& prompt, const QString& proposal,
                                   int exceptIndex, bool emptyEnds);
    // Makes the folder of a name that passed nameError; the message when it cannot be made.
    std::optional<QString> folderError(const QString& name) const;
    // Sets the message for a write of `key` that was not saved; returns false.
    bool saveFailed(const SettingKey& key, QString* error) const;
    void deleteFiles(const QString& name) const;

    Settings& m_settings;
    DataRoot m_root;
    QStringList m_names;      // Usernames[1..Usernum] at rows 0..
    QStringList m_passwords;  // Userpass, as stored
};

Q_DECLARE_METATYPE(EnteredWorkspace)
