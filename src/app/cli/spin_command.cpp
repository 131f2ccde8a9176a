#include "app/cli/spin_command.h"

#include "app/cli/board_marks.h"
#include "app/cli/cli_context.h"
#include "picking/board_store.h"
#include "picking/spin_simulator.h"
#include "workspace/session.h"

#include <memory>

namespace {

const QString kInfinite = QStringLiteral("infinite");

QStringList coefficientChoices() {
    QStringList choices;
    for (const game_rules::StabilityItem& it : game_rules::stabilityItems())
        choices << (it.index == 8 ? kInfinite : QString::number(it.value));
    return choices;
}

// The threshold of the 稳定系数 entry named on the command line, else of the stored Wd.
int32_t thresholdFor(const Args& args, Session& s) {
    const QString chosen = args.text(QStringLiteral("coefficient"));
    for (const game_rules::StabilityItem& it : game_rules::stabilityItems())
        if (chosen == (it.index == 8 ? kInfinite : QString::number(it.value)))
            return SpinSimulator::thresholdForItem(it);
    return SpinSimulator::thresholdForStored(
        s.settings().readInt(setting_keys::StabilityAtLoad, s.workspaceName()));
}

QString twoDigits(int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }

QString numbersLine(const ZoneBoardState& zone) {
    QStringList parts;
    for (int i = 0; i < zone.spinCount; ++i) parts << twoDigits(zone.predictList[static_cast<size_t>(i)]);
    return parts.join(QLatin1Char(' '));
}

// Why the picks make no spin that ends, or nothing.
QString refusal(const BoardState& board) {
    const ZoneBoardState& f = board.front;
    const ZoneBoardState& b = board.back;
    if (f.spinCount >= f.pickCount)
        return QStringLiteral("too few front picks for a spin: %1 picked, more than %2 needed")
            .arg(f.pickCount)
            .arg(f.spinCount);
    if (b.pickCount < b.spinCount)
        return QStringLiteral("too few back picks for a spin: %1 picked, at least %2 needed")
            .arg(b.pickCount)
            .arg(b.spinCount);
    if (f.spinCount > SpinZoneOptions::of(Zone::Front).lastCompared)
        return QStringLiteral("a spin of %1 front numbers never ends").arg(f.spinCount);
    return {};
}

}  // namespace

SpinCommand::SpinCommand()
    : SessionCommand(QStringLiteral("spin"),
                     QStringLiteral("[--front LIST --back LIST] [--front-count K] [--back-count K] [--seed S] "
                                    "[--coefficient C] [--tickets N]"),
                     QStringLiteral("Runs the spin simulator (摇奖) on the picks until its prediction is stable; "
                                    "prints the front and the back prediction, or with --tickets the kept "
                                    "tickets (fig1..fig7). Gives up after 20000000 rounds.")) {
    setAccess(Access::Reads);
    const ValueKind list = ValueKind::numbers();
    option(QStringLiteral("front"), QStringLiteral("LIST"), QStringLiteral("Picked front numbers, as 1,5,12 (default: the picks the board keeps)."),
           list);
    option(QStringLiteral("back"), QStringLiteral("LIST"), QStringLiteral("Picked back numbers."), list);
    option(QStringLiteral("front-count"), QStringLiteral("K"),
           QStringLiteral("Front numbers the spin predicts, 5..16 (default 5)."), ValueKind::integer());
    option(QStringLiteral("back-count"), QStringLiteral("K"),
           QStringLiteral("Back numbers the spin predicts, 2..8 (default 2)."), ValueKind::integer());
    option(QStringLiteral("seed"), QStringLiteral("S"),
           QStringLiteral("Seed of the draws, so that a spin can be replayed (default: the clock)."),
           ValueKind::integer());
    option(QStringLiteral("coefficient"), QStringLiteral("C"),
           QStringLiteral("Stability coefficient (稳定系数): 50, 100, 200, 400, 600, 800, 1000, 1500, 2500, "
                          "4000, 6000 or infinite (default: the stored one)."),
           ValueKind::oneOf(coefficientChoices()));
    option(QStringLiteral("tickets"), QStringLiteral("N"),
           QStringLiteral("Keep N single tickets from N spins (多注单选摇奖), 1..11520."), ValueKind::integer());
}

QString SpinCommand::check(const Args& args) const {
    const auto outside = [&args](const QString& option, int low, int high) {
        if (!args.has(option)) return false;
        const int v = args.integer(option);
        return v < low || v > high;
    };
    if (outside(QStringLiteral("front-count"), 5, 16)) return QStringLiteral("--front-count: 5..16");
    if (outside(QStringLiteral("back-count"), 2, 8)) return QStringLiteral("--back-count: 2..8");
    if (outside(QStringLiteral("tickets"), 1, SpinSimulator::kMultiRows))
        return QStringLiteral("--tickets: 1..%1").arg(SpinSimulator::kMultiRows);
    return {};
}

int SpinCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    BoardState& state = s.board();
    NumberBoard board(state, static_cast<int16_t>(s.frontSize()), static_cast<int16_t>(s.backSize()));
    // Without numbers given, the spin runs on the picks the board keeps between calls.
    if (!args.has(QStringLiteral("front")) && !args.has(QStringLiteral("back")))
        board_store::load(s.settings(), s.workspaceName(), board);
    if (!markOnBoard(board, Zone::Front, args.numbers(QStringLiteral("front")), false) ||
        !markOnBoard(board, Zone::Back, args.numbers(QStringLiteral("back")), false))
        return ctx.fail(QStringLiteral("a number lies outside the zone (front 1..%1, back 1..%2)")
                            .arg(s.frontSize())
                            .arg(s.backSize()));
    state.front.spinCount = static_cast<int16_t>(args.integer(QStringLiteral("front-count"), 5));
    state.back.spinCount = static_cast<int16_t>(args.integer(QStringLiteral("back-count"), 2));
    if (const QString why = refusal(state); !why.isEmpty()) return ctx.fail(why);

    const bool tickets = args.has(QStringLiteral("tickets"));
    if (tickets) {
        state.multiMode = true;
        state.multiCount = static_cast<int16_t>(args.integer(QStringLiteral("tickets")));
    }
    SpinSimulator spin(board);
    spin.setThreshold(thresholdFor(args, s));
    std::unique_ptr<SpinRandom> random;
    if (args.has(QStringLiteral("seed")))
        random = std::make_unique<SeededSpinRandom>(static_cast<uint32_t>(args.integer(QStringLiteral("seed"))));
    else
        random = std::make_unique<ClockSpinRandom>();
    spin.start();
    if (spin.runUntilStopped(*random, kMaxRounds) != SpinSimulator::TickOutcome::Finished)
        return ctx.fail(QStringLiteral("no stable prediction after %1 rounds; a smaller coefficient ends sooner")
                            .arg(kMaxRounds));

    if (!tickets) {
        ctx.out << numbersLine(state.front) << '\n' << numbersLine(state.back) << '\n';
        return kDone;
    }
    ctx.out << "fig1\tfig2\tfig3\tfig4\tfig5\tfig6\tfig7\n";
    for (int r = 0; r < state.multiCount; ++r) {
        QStringList cells;
        for (int16_t n : state.multiTable[static_cast<size_t>(r)]) cells << twoDigits(n);
        ctx.out << cells.join(QLatin1Char('\t')) << '\n';
    }
    return kDone;
}
