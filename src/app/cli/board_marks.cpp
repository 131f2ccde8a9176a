#include "app/cli/board_marks.h"

bool markOnBoard(NumberBoard& board, Zone z, const QList<int>& nums, bool banker) {
    const int size = board.zone(z).size();
    for (int n : nums) {
        if (n < 1 || n > size) return false;
        if (!banker) {
            board.leftClick(z, n);
            continue;
        }
        board.rightClick(z, n);
        board.toggleBanker(z);
    }
    return true;
}
