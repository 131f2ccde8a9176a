#pragma once

// Saved filter settings: named snapshots of the window's boxes and choices in the table Canshu
// of filnum.db. Command7 saves one; Command6 opens frmFind over the names, whose double click
// chooses one and whose popup deletes or renames, and then sets the controls from it. Nothing
// filters: the player presses the filters afterwards.

#include "filter/param/param_filter.h"
#include "filter/templates/filter_snapshot.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

class Prompter;
class SqliteDb;

namespace saved_setting_store {

inline const QString kTable = QStringLiteral("Canshu");
inline const QString kSaveTitle = QStringLiteral("过滤设置保存");
inline const QString kSavePrompt = QStringLiteral("请输入本次的过滤设置名字：");
inline const QString kFinderCaption = QStringLiteral("过滤设置保存（双击指定调用该期）");
inline const QString kDeleteItem = QStringLiteral("删除(&D)");
inline const QString kRenameItem = QStringLiteral("改名(&N)");
inline const QString kRenameTitle = QStringLiteral("选号名字修改");
inline const QString kRenamePrompt = QStringLiteral("请输入本次修改的选号名字：");

// "yy-m-d日h.m.s秒" of a moment: "26-3-5日14.7.9秒".
QString stamp(const QDateTime& when);

// Command7: asks for a name (proposing "过滤设置保存于" and the stamp) and adds a row with it and
// the snapshot, even when the prompt was cancelled (the name is then empty). Duplicate names
// are not refused. Returns the name stored, or none when the row could not be written.
std::optional<QString> save(SqliteDb& filterDb, const ParamWindowState& state, Prompter& prompter,
                            const QDateTime& now);

// frmFind over SELECT Name FROM Canshu.
class Finder {
public:
    explicit Finder(SqliteDb& filterDb);
    bool ready() const { return m_ready; }
    // The names in the table's order, read again after each delete or rename.
    const QStringList& names() const { return m_names; }
    void reload();
    // "删除(&D)": every row of that name goes.
    bool remove(const QString& name);
    // "改名(&N)": asks the new name (proposing "选号名字修改于" and the stamp) and renames every
    // row of the old name; a cancelled prompt renames to "".
    bool rename(const QString& name, Prompter& prompter, const QDateTime& now);

private:
    SqliteDb& m_db;
    bool m_ready = false;
    QStringList m_names;
};

// Command6 after a name was chosen: the first row of that name sets the controls as a replayed
// snapshot does. None when no row has that name.
std::optional<filter_snapshot::SnapshotEffects> load(SqliteDb& filterDb, const QString& name,
                                                     ParamWindowState& state);

}  // namespace saved_setting_store
