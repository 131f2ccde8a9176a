#pragma once

#include "app/cli/command.h"

class Session;

// A command that works in the chosen workspace: the workspace is opened before it runs, and a
// missing one is refused.
class SessionCommand : public Command {
public:
    using Command::Command;
    int execute(CliContext& ctx, const Args& args) const final;

protected:
    virtual int run(CliContext& ctx, Session& session, const Args& args) const = 0;
};
