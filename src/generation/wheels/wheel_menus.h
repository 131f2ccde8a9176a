#pragma once

// The wheel entries of 组号方式 as the board leaves them: which is enabled, and the captions
// that count a wheel's tickets (and their money) when their menu opens. A missing table
// leaves its entry disabled and its caption as it was.

#include "generation/wheels/wheel_catalogue.h"

#include <QString>

#include <vector>

namespace wheel_menus {

struct Entry {
    QString table;    // the wheel table the entry opens
    QString caption;  // empty: the entry keeps its caption
    bool enabled = false;
};

// meuRt(k): only the entry of the number of picks, and none below 9 or above 22.
bool basicEntryEnabled(int k, int pickCount);
QString basicTable(int pickCount);

// mnuRt22, mnuRt33, mnuRt43, mnuRt44, mnuRt53, mnuRt54: "12选 中4保3共计 36注(&R)" with the
// back pairs of the back picks counted in.
std::vector<Entry> superEntries(const QString& programFolder, int pickCount, int backPickCount);
// mnuZb(3..5): 中4保4, 中5保4, 中5保5 with the bankers in every ticket.
std::vector<Entry> bankerEntries(const QString& programFolder, int bankerCount, int pickCount,
                                 int backPickCount);
// F6RT44 .. F6RT76: six-number tickets at 12 yuan each.
std::vector<Entry> sixEntries(const QString& programFolder, int pickCount);

}  // namespace wheel_menus
