#pragma once

// Picks by statistics: the most or least frequent numbers of a zone over a scope of the history,
// and the numbers whose current omission is at least or at most a value. Every chosen number
// goes through NumberBoard::programClick, so these add to the picks on the board and every board
// rule applies (a banker chosen here becomes a plain pick).

#include "picking/number_board.h"
#include "workspace/shared_state.h"

#include <QString>

#include <optional>
#include <vector>

namespace frequency_picks {

enum class Rank { MostFrequent, LeastFrequent };
enum class OmissionBound { AtLeast, AtMost };

// The draws a frequency count runs over.
struct Scope {
    enum class Kind { AllHistory, IssueInterval, LastDraws };
    Kind kind = Kind::AllHistory;
    qint64 firstIssue = 0;  // IssueInterval: issues firstIssue..lastIssue, both included
    qint64 lastIssue = 0;
    int lastDraws = 100;  // LastDraws: draws with Idx > drawCount - lastDraws

    static Scope allHistory() { return {}; }
    static Scope interval(qint64 first, qint64 last) { return {Kind::IssueInterval, first, last, 0}; }
    static Scope last(int draws) { return {Kind::LastDraws, 0, 0, draws}; }
};

// The input boxes' texts and defaults of the eight commands.
struct Prompt {
    QString title;
    QString text;
    QString proposal;
};
Prompt frequencyPrompt(Rank rank);
Prompt omissionPrompt(OmissionBound bound);

// The answer of an input box as a 16-bit value, rounded to the nearest integer as the classic
// conversion does; nullopt for anything that is no number or does not fit (the command then
// picks nothing).
std::optional<int> parseValue(const QString& answer);

// How often each number 1..zoneSize was drawn in the zone over the scope (index = number).
// The whole history is counted from the draws too; frequencyFromStats reads the stored table.
std::vector<double> countInScope(const DrawHistory& history, Zone zone, int zoneSize, const Scope& scope);
// The stored all-history frequency of the zone (the gailv column, the share of each number).
std::vector<double> frequencyFromStats(const NumberStats& stats, int zoneSize);

// The numbers 1..zoneSize by their count, most or least frequent first; equal counts keep the
// lower number first.
std::vector<int> ranked(const std::vector<double>& counts, Rank rank);

// Walks `order` and picks each number that lies in the zone and is not yet a plain pick until
// `wanted` numbers were added or the order ends. Returns how many were added.
int pickInOrder(NumberBoard& board, Zone zone, const std::vector<int>& order, int wanted);

// The frequency command: counts over the scope (the whole history from the stored frequency),
// ranks and picks `wanted` new numbers.
int pickByFrequency(NumberBoard& board, Zone zone, const DrawHistory& history, const NumberStats& stats,
                    Rank rank, const Scope& scope, int wanted);

// The omission command: picks every number of the zone not yet a plain pick whose current
// omission is at least (or at most) `value`. Returns how many were added.
int pickByOmission(NumberBoard& board, Zone zone, const NumberStats& stats, OmissionBound bound, int value);

}  // namespace frequency_picks
