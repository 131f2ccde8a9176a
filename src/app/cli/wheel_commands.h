#pragma once

#include "app/cli/command.h"
#include "app/cli/session_command.h"

// wheel list: the wheel tables with their rows against the best known sizes.
class WheelListCommand : public Command {
public:
    WheelListCommand();
    int execute(CliContext& ctx, const Args& args) const override;
};

// wheel show: a table's rows as the program's wheel database holds them.
class WheelShowCommand : public Command {
public:
    WheelShowCommand();
    QString check(const Args& args) const override;
    int execute(CliContext& ctx, const Args& args) const override;
};

// wheel check: whether a wheel in a text file keeps its promise.
class WheelCheckCommand : public Command {
public:
    WheelCheckCommand();
    QString check(const Args& args) const override;
    int execute(CliContext& ctx, const Args& args) const override;
};

// wheel expand: the picks through a wheel into zuheRote, as the wheel menus and GAganRote do;
// a six-number wheel is listed instead, as aganFRote lists it.
class WheelExpandCommand : public SessionCommand {
public:
    WheelExpandCommand();
    QString check(const Args& args) const override;

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};
