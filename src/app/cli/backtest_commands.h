#pragma once

// backtest and passrate: how a filter strategy would have fared on past draws, and how often
// the history lay in a parameter's range.

#include "app/cli/session_command.h"


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
