#pragma once

// backtest and passrate: how a filter strategy would have fared on past draws, and how often
// the history lay in a parameter's range.

#include "app/cli/session_command.h"
#include "engine/candidate_table.h"

#include <memory>

class BacktestCommand : public SessionCommand {
public:
    BacktestCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class PassRateCommand : public SessionCommand {
public:
    PassRateCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

namespace backtest_space {
// Every ticket of the zone sizes, as the expansion of all numbers makes it; null when the
// machine has not the memory (`error` says so).
std::unique_ptr<CandidateTable> fullSet(int frontSize, int backSize, QString* error = nullptr);
}  // namespace backtest_space
