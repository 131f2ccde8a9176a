#pragma once

// six param|history|reset-all|reset-last|invert-all|invert-last|save-setting|load-setting: the
// six-number window on zuhef; and the filter commands' runs on --table zuhef.

#include "app/cli/session_command.h"

class CandidateTable;

namespace six_cli {

// Empty when the parameters named suit the table: the six-number window's names on zuhef, the
// filter window's draw columns elsewhere.
QString namesProblem(const Args& args, bool onSix);
// filter param NAME (--keep|--exclude) --range LO HI --table zuhef.
int runParam(CliContext& ctx, Session& s, const Args& args);
// filter integrated --params NAMES (--keep|--exclude) [--and|--or] [--range NAME LO HI]... --table zuhef.
int runIntegrated(CliContext& ctx, Session& s, const Args& args);

}  // namespace six_cli

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

class SixSaveSettingCommand : public SessionCommand {
public:
    SixSaveSettingCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SixLoadSettingCommand : public SessionCommand {
public:
    SixLoadSettingCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};
