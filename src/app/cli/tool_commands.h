#pragma once

// fortune: the daily fortune for buying tickets, from a birthday and a date.

#include "app/cli/command.h"

class FortuneCommand : public Command {
public:
    FortuneCommand();
    int execute(CliContext& ctx, const Args& args) const override;

protected:
    QString check(const Args& args) const override;
};
