#pragma once

// The player's saved selections: the four lists of the board (front picks, back picks, front
// bankers, back bankers) stored under a name in the tables SAVE, SAVEHOU, SAVEdan and
// SAVEHOUdan, one row per list. Rows are found by their Idx, which is never renumbered: a new
// row takes the table's row count + 1, so after a deletion an Idx may repeat, and the list
// window's row numbers (which callers use as the Idx to load) no longer match the rows shown.

#include "picking/number_board.h"
#include "workspace/sqlite_db.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <vector>

struct SavedSelectionRow {
    int idx = 0;
    QString name;
    int count = 0;             // Bit: the numbers of the list
    std::vector<int> numbers;  // f1.. in list order
};

class SavedSelections {
public:
    explicit SavedSelections(SqliteDb& db) : m_db(db) {}

    // The proposals of the save and rename boxes: the prefix, then the date as "yy-m-d日" and
    // the time as "h.m.s秒".
    static QString stampedName(const QString& prefix, const QDateTime& at);
    static QString saveProposal(const QDateTime& at) { return stampedName(QStringLiteral("选号保存于"), at); }
    static QString renameProposal(const QDateTime& at) {
        return stampedName(QStringLiteral("选号名字修改于"), at);
    }

    // Adds one row to each of the four tables, in the order SAVE, SAVEHOU, SAVEdan, SAVEHOUdan.
    bool save(const QString& name, const BoardState& board);
    // The rows of SAVE (front picks) in table order: what the list window shows.
    QList<SavedSelectionRow> list();
    // Deletes the SAVE rows of that name; the other three tables keep theirs. A name with a
    // double quote changes nothing (the statements were built around quoted names).
    bool remove(const QString& name);
    // Renames the SAVE rows of that name; nothing when either name holds a double quote.
    bool rename(const QString& oldName, const QString& newName);

    // Loads the selection stored under `idx` onto the board: with `replace`, each zone is reset
    // first; picks go through programClick, bankers through ActiveNum and toggleBanker. A table
    // without a row of that Idx adds nothing for its list.
    void load(NumberBoard& board, int idx, bool replace);

private:
    bool insertRow(const QString& table, const QString& name, const ZoneBoardState& zone, bool bankers);
    // The first row of `table` with that Idx: its numbers, empty when there is none.
    std::vector<int> numbersOf(const QString& table, int idx);

    SqliteDb& m_db;
};
