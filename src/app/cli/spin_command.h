#pragma once

#include "app/cli/session_command.h"

// spin: runs the spin simulator on the picks to its end, without timers, and prints the
// prediction, or with --tickets the tickets kept from that many spins.
class SpinCommand : public SessionCommand {
public:
    // A spin that has not ended after this many rounds (one tick of each zone) is given up:
    // a spin of near-equal shares and a large coefficient may take very long.
    static constexpr int64_t kMaxRounds = 20'000'000;

    SpinCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};
