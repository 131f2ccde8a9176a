#pragma once

// prize rules show|set, prize check, prize list; report write|list|show

#include "app/cli/session_command.h"

class PrizeRulesShowCommand : public SessionCommand {
public:
    PrizeRulesShowCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class PrizeRulesSetCommand : public SessionCommand {
public:
    PrizeRulesSetCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class PrizeCheckCommand : public SessionCommand {
public:
    PrizeCheckCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class PrizeListCommand : public SessionCommand {
public:
    PrizeListCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class ReportWriteCommand : public SessionCommand {
public:
    ReportWriteCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class ReportListCommand : public SessionCommand {
public:
    ReportListCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class ReportShowCommand : public SessionCommand {
public:
    ReportShowCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};
