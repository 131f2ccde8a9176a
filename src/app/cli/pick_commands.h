#pragma once

// pick frequency|omission|show|clear: the number board's picks by frequency and omission, kept
// in the workspace's settings between calls.

#include "app/cli/session_command.h"
#include "workspace/shared_state.h"

class NumberBoard;

// A command on the number board: the stored board is loaded before it runs and, when the
// command changes it, saved after.
class BoardCommand : public SessionCommand {
public:
    using SessionCommand::SessionCommand;

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const final;
    // kDone when the board may have changed and is to be kept.
    virtual int onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const = 0;
};

class PickFrequencyCommand : public BoardCommand {
public:
    PickFrequencyCommand();

protected:
    QString check(const Args& args) const override;
    int onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const override;
};

class PickOmissionCommand : public BoardCommand {
public:
    PickOmissionCommand();

protected:
    QString check(const Args& args) const override;
    int onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const override;
};

class PickShowCommand : public BoardCommand {
public:
    PickShowCommand();

protected:
    int onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const override;
};

class PickClearCommand : public BoardCommand {
public:
    PickClearCommand();

protected:
    int onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const override;
};

namespace pick_output {
// Four lines: front picks, back picks, front bankers, back bankers; two-digit numbers.
void printBoard(CliContext& ctx, const BoardState& board);
}  // namespace pick_output
