#pragma once

// setting save|load|list|delete|rename: the saved settings (Canshu) of the filter window's
// boxes; range: the historical range query of a parameter.

#include "app/cli/session_command.h"

class SettingSaveCommand : public SessionCommand {
public:
    SettingSaveCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SettingLoadCommand : public SessionCommand {
public:
    SettingLoadCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SettingListCommand : public SessionCommand {
public:
    SettingListCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SettingDeleteCommand : public SessionCommand {
public:
    SettingDeleteCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SettingRenameCommand : public SessionCommand {
public:
    SettingRenameCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class RangeCommand : public SessionCommand {
public:
    RangeCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};
