#pragma once

// history import|add|edit|delete-last|clear|show|download|download-db, stats show

#include "app/cli/session_command.h"

class HistoryImportCommand : public SessionCommand {
public:
    HistoryImportCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class HistoryAddCommand : public SessionCommand {
public:
    HistoryAddCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class HistoryEditCommand : public SessionCommand {
public:
    HistoryEditCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class HistoryDeleteLastCommand : public SessionCommand {
public:
    HistoryDeleteLastCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class HistoryClearCommand : public SessionCommand {
public:
    HistoryClearCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class HistoryShowCommand : public SessionCommand {
public:
    HistoryShowCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class HistoryDownloadCommand : public SessionCommand {
public:
    HistoryDownloadCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class HistoryDownloadDbCommand : public SessionCommand {
public:
    HistoryDownloadDbCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class StatsShowCommand : public SessionCommand {
public:
    StatsShowCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};
