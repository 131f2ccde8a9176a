#pragma once

// fortune: the daily fortune for buying tickets, from a birthday and a date; print tickets: the
// kept tickets of a table as the printed list.

#include "app/cli/session_command.h"

class FortuneCommand : public Command {
public:
    FortuneCommand();
    int execute(CliContext& ctx, const Args& args) const override;

protected:
    QString check(const Args& args) const override;
};

class PrintTicketsCommand : public SessionCommand {
public:
    PrintTicketsCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};
