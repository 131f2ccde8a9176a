#pragma once

// The history filters of the six-number window (历史同3号滤, 历史同4号滤, 历史同5号滤): a live row
// of zuhef dies when it holds `matches` of the five front numbers of one of the latest draws.
// The subsets of each draw are marked in a table by their rank, so a row costs a look-up per
// subset of its own, whatever the length of the history.

#include "engine/candidate_table.h"
#include "workspace/shared_state.h"

#include <QString>

#include <optional>

namespace six_history {

// The draws the input box asks for: empty is every draw; otherwise a positive whole number.
struct DrawCount {
    std::optional<int> draws;  // nothing: every draw
    QString error;             // "请输入数字" or "请输入一个正数", title "输入错误"
};
DrawCount parseDrawCount(const QString& answer);

// Kills the live rows that hold `matches` (3, 4 or 5) numbers of one of the latest `draws`
// draws (every draw when `draws` is empty, or larger than the history). Returns the rows killed.
uint64_t run(CandidateTable& table, int matches, std::optional<int> draws, const DrawHistory& history);

}  // namespace six_history
