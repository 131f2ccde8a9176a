#pragma once

// six param|history|reset-all|reset-last|invert-all|invert-last: the six-number window on zuhef.

#include "app/cli/session_command.h"

class CandidateTable;

class SixParamCommand : public SessionCommand {
public:
    SixParamCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SixHistoryCommand : public SessionCommand {
public:
    SixHistoryCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

// One of the four buttons under the grid.
class SixActionCommand : public SessionCommand {
public:
    using Action = void (*)(CandidateTable&);
    SixActionCommand(const QString& word, const QString& caption, Action action);

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;

private:
    Action m_action;
};

class SixResetAllCommand : public SixActionCommand {
public:
    SixResetAllCommand();
};
class SixResetLastCommand : public SixActionCommand {
public:
    SixResetLastCommand();
};
class SixInvertAllCommand : public SixActionCommand {
public:
    SixInvertAllCommand();
};
class SixInvertLastCommand : public SixActionCommand {
public:
    SixInvertLastCommand();
};
