#pragma once

// workspace list|create|delete|rename, rules show|set

#include "app/cli/command.h"

class WorkspaceListCommand : public Command {
public:
    WorkspaceListCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

class WorkspaceCreateCommand : public Command {
public:
    WorkspaceCreateCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

class WorkspaceDeleteCommand : public Command {
public:
    WorkspaceDeleteCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

class WorkspaceRenameCommand : public Command {
public:
    WorkspaceRenameCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

class RulesShowCommand : public Command {
public:
    RulesShowCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

class RulesSetCommand : public Command {
public:
    RulesSetCommand();
    int execute(CliContext& ctx, const Args& args) const override;

protected:
    QString check(const Args& args) const override;
};
