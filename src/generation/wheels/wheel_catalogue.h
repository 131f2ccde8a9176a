#pragma once

// Every wheel table the wheel menus can open: its family and database, its name there, the
// promise it keeps, the design searched for it and the best known size of that design.

#include "generation/wheels/wheel.h"

#include <QString>

#include <vector>

namespace wheels {

enum class Family {
    Basic,   // 基本旋转矩阵: n picks, 中4保3, tables "9" .. "22"
    Super,   // 超级旋转矩阵: n picks and six promises, tables "0922" .. "2254"
    Banker,  // 胆拖旋转矩阵: b bankers in every ticket, tables "2D1055"
    Six,     // 复式旋转矩阵: six-number tickets, tables "561044"
};

struct WheelTable {
    Family family;
    QString name;     // the table's name in its database
    int picks = 0;    // numbers the player picked, bankers included
    int bankers = 0;  // in every ticket (banker family only)
    int drawn = 0;    // the promise 中drawn保held
    int held = 0;
    // The design searched. For the banker family it is over the drags only, with the bankers
    // taken as drawn: tickets of k - b drags, promise 中(drawn - b)保(held - b). A design
    // whose held part is 0 is any single ticket; one with drawn = held = k - b is every
    // choice of k - b drags.
    Guarantee design;
    int bestKnown = 0;  // tickets of the best known design, 0 where none is published

    int ticketSize() const { return family == Family::Six ? 6 : 5; }
    // Designs that need no search: a single ticket, or every ticket.
    bool single() const { return design.t == 0; }
    bool full() const { return design.t == design.k && design.p == design.k; }
};

QString databaseName(Family family);  // Xuanzhuanjb, Xuanzhuancj, XuanzhuanDT, XuanzhuanF6
QString familyWord(Family family);    // basic, super, banker, six (the command line's words)
// The rows for each number of tickets of the family's databases.
constexpr int kMostRows5 = 7515;
constexpr int kMostRows6 = 18500;

const std::vector<WheelTable>& catalogue();
const WheelTable* findTable(Family family, const QString& name);

// The table's rows from a design's tickets: positions 1..picks, the bankers first (positions
// 1..b in every row, the drags after them), each row ascending.
std::vector<std::vector<int>> tableRows(const WheelTable& table, const std::vector<Block>& design);
// The designs that need no search, built: one ticket, or every ticket.
std::vector<Block> builtDesign(const WheelTable& table);

}  // namespace wheels
