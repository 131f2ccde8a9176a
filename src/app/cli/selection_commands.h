#pragma once

// selection save|list|call|add|delete|rename: the saved selections of the board;
// selection-template list|add|delete|run: the selection template.

#include "app/cli/pick_commands.h"

class SelectionSaveCommand : public BoardCommand {
public:
    SelectionSaveCommand();

protected:
    int onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const override;
};

class SelectionListCommand : public SessionCommand {
public:
    SelectionListCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

// call and add: both replace the board with the selection stored under IDX.
class SelectionLoadCommand : public BoardCommand {
public:
    explicit SelectionLoadCommand(const QString& name);

protected:
    int onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const override;
};

class SelectionCallCommand : public SelectionLoadCommand {
public:
    SelectionCallCommand() : SelectionLoadCommand(QStringLiteral("selection call")) {}
};

class SelectionAddCommand : public SelectionLoadCommand {
public:
    SelectionAddCommand() : SelectionLoadCommand(QStringLiteral("selection add")) {}
};

class SelectionDeleteCommand : public SessionCommand {
public:
    SelectionDeleteCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SelectionRenameCommand : public SessionCommand {
public:
    SelectionRenameCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SelectionTemplateListCommand : public SessionCommand {
public:
    SelectionTemplateListCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SelectionTemplateAddCommand : public SessionCommand {
public:
    SelectionTemplateAddCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SelectionTemplateDeleteCommand : public SessionCommand {
public:
    SelectionTemplateDeleteCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class SelectionTemplateRunCommand : public BoardCommand {
public:
    SelectionTemplateRunCommand();

protected:
    int onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const override;
};
