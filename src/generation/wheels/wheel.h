#pragma once

// A wheel: tickets (blocks) of k positions out of 1..n that keep a promise 中p保t: whichever p
// of the n positions are drawn, some ticket holds at least t of them. With p = t this is a
// covering design (every t positions lie together in a ticket).

#include <QString>

#include <bit>
#include <cstdint>
#include <optional>
#include <vector>

namespace wheels {

// Positions 1..n as bits 0..n-1.
using Block = uint32_t;

constexpr int kMostPositions = 32;

struct Guarantee {
    int n = 0;  // positions
    int k = 0;  // positions in a ticket
    int p = 0;  // drawn positions among the n
    int t = 0;  // of which a ticket then holds at least this many

    // 1 <= t <= p <= n, t <= k <= n, n <= 32.
    bool valid() const { return t >= 1 && t <= p && p <= n && t <= k && k <= n && n <= kMostPositions; }
    // "L(12,5,4,3)", or "C(12,5,3)" for a covering design.
    QString name() const;
};

struct Wheel {
    Guarantee guarantee;
    std::vector<Block> blocks;
};

inline int size(Block b) { return std::popcount(b); }

// Positions of a block, ascending, from 1.
std::vector<int> positionsOf(Block b);
Block blockOf(const std::vector<int>& positions);

// A wheel as text: one ticket a line, its positions ascending and separated by blanks.
QString toText(const std::vector<Block>& blocks);

struct ReadResult {
    std::vector<Block> blocks;
    QString error;  // empty when read
};
// Reads a wheel's text: a ticket a line, positions separated by blanks or commas; blank lines
// and lines beginning with '#' are skipped. Each ticket must hold k distinct positions of 1..n.
ReadResult fromText(const QString& text, const Guarantee& g);
ReadResult readFile(const QString& path, const Guarantee& g);
// Writes through a temporary file, so that a wheel being improved is never left half written.
QString writeFile(const QString& path, const std::vector<Block>& blocks);

}  // namespace wheels
