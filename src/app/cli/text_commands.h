#pragma once

// read-text, template clear, template count: the sources of GAganRead and GAganZhMb.

#include "app/cli/session_command.h"

class ReadTextCommand : public SessionCommand {
public:
    ReadTextCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class TemplateClearCommand : public SessionCommand {
public:
    TemplateClearCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class TemplateCountCommand : public SessionCommand {
public:
    TemplateCountCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};
