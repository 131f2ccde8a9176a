#pragma once

// The integrated filter of the six-number window (多(名称勾选)参数整合过滤): the parameters
// whose name box is ticked all at one stroke, each tallying the rows it rejects, combined by
// 逻辑和 or 逻辑或 under 保留 or 排除. The window has no tolerance boxes: a row dies on its
// first tally. Rows dead before the filter are marked in Gpslt first, so the flip of the mixed
// choices (保留 with 逻辑或, 排除 with 逻辑和) turns only the rows that were live.

#include "engine/candidate_table.h"
#include "filter/six/six_params.h"

#include <QString>

#include <vector>

namespace six_integrated {

// One ticked parameter with the texts of its boxes.
struct Range {
    SixParam id;
    QString lo;
    QString hi;
};

struct Choice {
    bool keep = true;      // Option1(0) 保留, else 排除
    bool logicAnd = true;  // Option37(0) 逻辑和, else 逻辑或
};

// Runs the ticked parameters in the window's order. Returns the rows that died (live before,
// dead after). With nothing ticked no row tallies: the plain senses kill nothing and the mixed
// ones kill every live row.
uint64_t run(CandidateTable& table, const std::vector<Range>& ticked, Choice choice,
             const six_params::Context& ctx);

}  // namespace six_integrated
