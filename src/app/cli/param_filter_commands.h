#pragma once

// filter param, filter integrated, candidates toggle, candidates export, template add: the
// parameter side of the filter window, each call as the window reopened on the stored table
// would run it, the table written back before the call ends.

#include "app/cli/command.h"

class FilterParamCommand : public Command {
public:
    FilterParamCommand();
    int execute(CliContext& ctx, const Args& args) const override;

protected:
    QString check(const Args& args) const override;
};

class FilterIntegratedCommand : public Command {
public:
    FilterIntegratedCommand();
    int execute(CliContext& ctx, const Args& args) const override;

protected:
    QString check(const Args& args) const override;
};

class CandidatesToggleCommand : public Command {
public:
    CandidatesToggleCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

class CandidatesExportCommand : public Command {
public:
    CandidatesExportCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

class TemplateAddCommand : public Command {
public:
    TemplateAddCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};
