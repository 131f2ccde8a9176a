#pragma once

// filter relation|history|inclusion|same-as-template: the super filters, each call as the
// window reopened on the stored table runs it. Arguments answer the window's prompts in order;
// a prompt that would show an error ends the call with that message on standard error.

#include "app/cli/command.h"

struct SuperForm;

class SuperFilterCommand : public Command {
public:
    explicit SuperFilterCommand(const SuperForm& form);
    int execute(CliContext& ctx, const Args& args) const override;

protected:
    QString check(const Args& args) const override;

private:
    const SuperForm& m_form;
};

class FilterRelationCommand : public SuperFilterCommand {
public:
    FilterRelationCommand();
};

class FilterHistoryCommand : public SuperFilterCommand {
public:
    FilterHistoryCommand();
};

class FilterInclusionCommand : public SuperFilterCommand {
public:
    FilterInclusionCommand();
};

class FilterSameAsTemplateCommand : public SuperFilterCommand {
public:
    FilterSameAsTemplateCommand();
};
