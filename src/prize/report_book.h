#pragma once

#include <QList>
#include <QString>

#include <vector>

class Prompter;
class Settings;

// The logic of frmYk over the reports of one workspace: the list of their first two lines, the
// report shown, stepping back and forth, and the two deletions.
//
// The list is filled by a walk that stores each path at a running index of a fixed array and
// shows the last file of the walk. That index is not reset when the list is read again, while
// a list item's position is what ticking it looks up, so after a reading anew an item points
// at an older entry. Deleting ticked items removes the files those items were listed for.
class ReportBook {
public:
    static constexpr int kEntries = 1025;
    static inline const QString kCaption = QStringLiteral("盈亏报告");
    static inline const QString kListLabel =
        QStringLiteral("请在下面指定查询历史购买彩票的日期和时间(选择察看请在左边选项框内打勾)");
    static inline const QString kItemGap = QStringLiteral("     ");
    static inline const QString kDeleteTitle = QStringLiteral("删除清空");
    static inline const QString kDeleteTickedQuestion =
        QStringLiteral("阁下是否确定删除指定的(前面打勾的)历史盈亏纪录？删除后将永久性不可回收的删除！");
    static inline const QString kDeleteAllQuestion =
        QStringLiteral("阁下是否确定删除以前所有的历史盈亏纪录？删除后将永久性不可回收的删除！");

    // `workspaceFolder` holds duijiang/; `workspace` names the report's settings application.
    ReportBook(QString workspaceFolder, Settings& settings, QString workspace);

    struct Item {
        QString text;  // first line, five blanks, second line
        QString path;  // the file the item was listed for
    };

    // Walks duijiang/ for *兑奖.txt and appends an item per file; shows the last file walked.
    void load();
    const QList<Item>& items() const { return m_items; }
    const QString& shownText() const { return m_shown; }
    int currentIndex() const { return m_current; }
    int count() const { return m_count; }
    // The path stored at an index of the array, empty past the stored ones.
    QString pathAt(int index) const;

    void previous();                 // Command1
    void next();                     // Command2
    void tickChanged(int position);  // an item of List1 ticked or unticked
    // Command6 / Command5: ask, then delete; false when the player said no.
    bool deleteTicked(Prompter& prompter, const QList<int>& tickedPositions);
    bool deleteAll(Prompter& prompter);

    QString reportFolder() const;

private:
    void show(int index);

    QString m_folder;
    Settings& m_settings;
    QString m_workspace;
    std::vector<QString> m_paths = std::vector<QString>(kEntries);
    QList<Item> m_items;
    QString m_shown;
    int m_count = 0;  // the running index of the walk
    int m_current = 0;
};
