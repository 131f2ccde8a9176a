#pragma once

// moban list|add FORM|replay|delete-last|clear: the filter templates (moban) of the filter
// window. `moban add FORM` records a step as the right button and the popup mnuAdm do.

#include "app/cli/command.h"
#include "filter/templates/template_recorder.h"

#include <optional>

struct SuperForm;
struct SuperWindow;

class MobanListCommand : public Command {
public:
    MobanListCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

// A step recorded on the template; --dismiss closes the popup without adding a step, so the
// last step takes the window's input.
class MobanAddCommand : public Command {
public:
    // The step's own arguments and options come before those of every step.
    MobanAddCommand(const QString& form, const QString& synopsis, const QString& description,
                    std::vector<PositionalDeclaration> ownPositionals,
                    std::vector<OptionDeclaration> ownOptions);
    int execute(CliContext& ctx, const Args& args) const override;

protected:
    // Sets the window up as the step's click would; nullopt after printing a refusal.
    virtual std::optional<RecordSource> prepare(CliContext& ctx, const Args& args, SuperWindow& w) const = 0;
};

class MobanAddSuperCommand : public MobanAddCommand {
public:
    explicit MobanAddSuperCommand(const SuperForm& form);

protected:
    QString check(const Args& args) const override;
    std::optional<RecordSource> prepare(CliContext& ctx, const Args& args, SuperWindow& w) const override;

private:
    const SuperForm& m_form;
};

class MobanAddRelationCommand : public MobanAddSuperCommand {
public:
    MobanAddRelationCommand();
};

class MobanAddHistoryCommand : public MobanAddSuperCommand {
public:
    MobanAddHistoryCommand();
};

class MobanAddInclusionCommand : public MobanAddSuperCommand {
public:
    MobanAddInclusionCommand();
};

class MobanAddSameAsTemplateCommand : public MobanAddSuperCommand {
public:
    MobanAddSameAsTemplateCommand();
};

// The invert buttons' steps: intCmdnb 2 for invert-all, 1 for invert-last.
class MobanAddInvertCommand : public MobanAddCommand {
public:
    MobanAddInvertCommand(const QString& form, const QString& description, int code);

protected:
    std::optional<RecordSource> prepare(CliContext& ctx, const Args& args, SuperWindow& w) const override;

private:
    int m_code;
};

class MobanAddInvertAllCommand : public MobanAddInvertCommand {
public:
    MobanAddInvertAllCommand();
};

class MobanAddInvertLastCommand : public MobanAddInvertCommand {
public:
    MobanAddInvertLastCommand();
};

class MobanAddIntegratedCommand : public MobanAddCommand {
public:
    MobanAddIntegratedCommand();

protected:
    QString check(const Args& args) const override;
    std::optional<RecordSource> prepare(CliContext& ctx, const Args& args, SuperWindow& w) const override;
};

class MobanReplayCommand : public Command {
public:
    MobanReplayCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

// A change of the template's steps alone.
class MobanEditCommand : public Command {
public:
    using Edit = int (TemplateRecorder::*)();
    MobanEditCommand(const QString& name, const QString& description, Edit edit);
    int execute(CliContext& ctx, const Args& args) const override;

private:
    Edit m_edit;
};

class MobanDeleteLastCommand : public MobanEditCommand {
public:
    MobanDeleteLastCommand();
};

class MobanClearCommand : public MobanEditCommand {
public:
    MobanClearCommand();
};
