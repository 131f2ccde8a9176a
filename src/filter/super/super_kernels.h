#pragma once

// The workers of the super filters as kernels over a candidate table. Each gives the flags,
// reasons, Numstring form and the SKnum, canshu and JSqihao values that the window's
// statements give:
//
//   relation (Option25up)      Numstring = all numbers; kill by the pattern "*05**12*"
//   inclusion (Option31up,     SKnum = how many of the numbers a row holds; kill or keep by
//              Option30up)     the group size, then the bankers' statements
//   same as template (Option43up) Numstring = the marked form; kill the rows equal to a row
//                              of the combination template, without undo or reason

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"
#include "filter/param/param_catalogue.h"
#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_set>
#include <vector>

namespace super_kernels {

// Option25(0..2).
enum class Relation { Conflicting = 0, Supporting = 1, Keeping = 2 };

// "*05**12*": each number in two digits between asterisks.
QString relationPattern(std::span<const int16_t> numbers);

uint64_t relation(CandidateTable& t, Relation kind, std::span<const int16_t> numbers, const QString& caption);
// What Option25up does before its statement of an index: preunslt = unslt and Numstring with
// all numbers (all that runs for an index without a member).
void relationPrologue(CandidateTable& t);

struct InclusionRun {
    ZoneScope scope = ZoneScope::Front;  // which numbers Numstring holds
    std::vector<int16_t> numbers;        // sk(1)..sk(sknum)
    int16_t groupSize = 0;
    std::vector<int16_t> bankers;  // dan(1)..dan(dannum)
    QString caption;
};

// The list in the reasons: the numbers in two digits joined by blanks.
QString inclusionList(std::span<const int16_t> numbers);

// Option31up: kills rows holding skzu or more of the numbers; then every dead row that lacks a
// banker comes back with the reason " ".
uint64_t inclusionKill(CandidateTable& t, const InclusionRun& run);
// Option30up: of the live rows only those holding skzu or more of the numbers stay; then every
// dead row that lacks a banker takes the banker reason.
uint64_t inclusionKeep(CandidateTable& t, const InclusionRun& run);

// A ticket's seven numbers as one key; none when a number does not fit a byte (it can match no
// row of a candidate table).
std::optional<uint64_t> ticketKey(const std::array<qint64, 7>& numbers);
uint64_t rowKey(const CandidateTable& t, uint64_t row);

// Option43up over the keys of the template's rows. Returns the rows that died.
uint64_t sameAsTemplate(CandidateTable& t, const std::unordered_set<uint64_t>& templateKeys);

}  // namespace super_kernels
