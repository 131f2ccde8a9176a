#include "app/backtest_space.h"

#include "engine/candidate_store.h"
#include "generation/expansion.h"
#include "workspace/sqlite_db.h"

namespace backtest_space {

std::unique_ptr<CandidateTable> fullSet(int frontSize, int backSize, QString* error) {
    ExpansionInput in;
    for (int n = 1; n <= frontSize; ++n) in.front.push_back(static_cast<int16_t>(n));
    for (int n = 1; n <= backSize; ++n) in.back.push_back(static_cast<int16_t>(n));
    ExpansionResult r = expand(in);
    if (!r.table && error) *error = r.message;
    return std::move(r.table);
}

std::unique_ptr<CandidateTable> picks(SqliteDb& filterDb, int frontSize, int backSize, QString* error) {
    const SqliteReadTransaction read(filterDb);
    candidate_store::LoadResult r =
        candidate_store::load(filterDb, schema::CandidateKind::Combinations, nullptr, true, {frontSize, backSize});
    if (!r.table && error)
        *error = r.error.isEmpty() ? QStringLiteral("没有当前选号的组合：请先选号并组号") : r.error;
    return std::move(r.table);
}

}  // namespace backtest_space
