#pragma once

// expand, candidates count|show, filter reset-all|reset-last|invert-all|invert-last

#include "app/cli/session_command.h"
#include "filter/filter_workspace.h"

class CandidateTable;

class ExpandCommand : public SessionCommand {
public:
    ExpandCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class CandidatesCountCommand : public SessionCommand {
public:
    CandidatesCountCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class CandidatesShowCommand : public SessionCommand {
public:
    CandidatesShowCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

// The buttons under the grid that act on the flags alone: undo and invert.
class CandidateActionCommand : public SessionCommand {
public:
    using Action = void (*)(CandidateTable&);
    // `sixAction` is the six-number window's button of the same caption, run on zuhef.
    CandidateActionCommand(const QString& name, const QString& description, Action action,
                           FilterWorkspace::Button button, Action sixAction);

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;

private:
    Action m_action;
    Action m_sixAction;
    FilterWorkspace::Button m_button;
};

class FilterResetAllCommand : public CandidateActionCommand {
public:
    FilterResetAllCommand();
};

class FilterResetLastCommand : public CandidateActionCommand {
public:
    FilterResetLastCommand();
};

class FilterInvertAllCommand : public CandidateActionCommand {
public:
    FilterInvertAllCommand();
};

class FilterInvertLastCommand : public CandidateActionCommand {
public:
    FilterInvertLastCommand();
};
