#include "app/cli/pick_commands.h"

#include "app/cli/cli_context.h"
#include "picking/board_store.h"
#include "picking/frequency_picks.h"

using namespace frequency_picks;

namespace {

const QStringList kZones{QStringLiteral("front"), QStringLiteral("back")};

OptionDeclaration zoneOption() {
    OptionDeclaration o = OptionDeclaration::valued(QStringLiteral("zone"), QStringLiteral("ZONE"),
                                                    QStringLiteral("front or back."), ValueKind::oneOf(kZones));
    o.required = true;
    return o;
}

Zone zoneOf(const Args& args) { return args.choice(QStringLiteral("zone")) == 0 ? Zone::Front : Zone::Back; }

// Exactly one of the options, or a usage message naming them.
QString exactlyOne(const Args& args, const QStringList& options) {
    int given = 0;
    for (const QString& o : options) given += args.has(o) ? 1 : 0;
    if (given == 1) return {};
    QStringList spelled;
    for (const QString& o : options) spelled << QStringLiteral("--") + o;
    return QStringLiteral("give exactly one of %1").arg(spelled.join(QStringLiteral(", ")));
}

QString twoDigits(const std::array<int16_t, kNumberSlots>& list, int count) {
    QStringList parts;
    for (int i = 1; i <= count; ++i) parts << QStringLiteral("%1").arg(list[static_cast<size_t>(i)], 2, 10, QLatin1Char('0'));
    return parts.join(QLatin1Char(' '));
}

}  // namespace

namespace pick_output {
void printBoard(CliContext& ctx, const BoardState& b) {
    ctx.out << twoDigits(b.front.pickList, b.front.pickCount) << '\n'
            << twoDigits(b.back.pickList, b.back.pickCount) << '\n'
            << twoDigits(b.front.bankerList, b.front.bankerCount) << '\n'
            << twoDigits(b.back.bankerList, b.back.bankerCount) << '\n';
}
}  // namespace pick_output

int BoardCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    NumberBoard board(s.board(), static_cast<int16_t>(s.frontSize()), static_cast<int16_t>(s.backSize()));
    board_store::load(s.settings(), s.workspaceName(), board);
    const int result = onBoard(ctx, s, board, args);
    if (result == kDone && access() != Access::Reads && !board_store::save(s.settings(), s.workspaceName(), s.board()))
        return ctx.fail(QStringLiteral("the board could not be saved"));
    return result;
}

PickFrequencyCommand::PickFrequencyCommand()
    : BoardCommand(QStringLiteral("pick frequency"),
                   QStringLiteral("--zone front|back --high COUNT|--low COUNT [--all | --from ISSUE --to ISSUE | "
                                  "--last N]"),
                   QStringLiteral("Picks COUNT more numbers of the zone, the most (--high) or least (--low) frequent "
                                  "over the whole history, an interval of issues or the last N draws; prints how "
                                  "many were added.")) {
    options({zoneOption(),
             OptionDeclaration::valued(QStringLiteral("high"), QStringLiteral("COUNT"),
                                       QStringLiteral("How many of the most frequent numbers to add."),
                                       ValueKind::integer()),
             OptionDeclaration::valued(QStringLiteral("low"), QStringLiteral("COUNT"),
                                       QStringLiteral("How many of the least frequent numbers to add."),
                                       ValueKind::integer()),
             OptionDeclaration::flag(QStringLiteral("all"), QStringLiteral("Count over the whole history (default).")),
             OptionDeclaration::valued(QStringLiteral("from"), QStringLiteral("ISSUE"),
                                       QStringLiteral("First issue of the interval."), ValueKind::integer()),
             OptionDeclaration::valued(QStringLiteral("to"), QStringLiteral("ISSUE"),
                                       QStringLiteral("Last issue of the interval."), ValueKind::integer()),
             OptionDeclaration::valued(QStringLiteral("last"), QStringLiteral("N"),
                                       QStringLiteral("Count over the last N draws."), ValueKind::integer())});
}

QString PickFrequencyCommand::check(const Args& args) const {
    QString problem = exactlyOne(args, {QStringLiteral("high"), QStringLiteral("low")});
    if (!problem.isEmpty()) return problem;
    if (args.has(QStringLiteral("from")) != args.has(QStringLiteral("to")))
        return QStringLiteral("--from and --to go together");
    const int scopes = (args.has(QStringLiteral("all")) ? 1 : 0) + (args.has(QStringLiteral("from")) ? 1 : 0) +
                       (args.has(QStringLiteral("last")) ? 1 : 0);
    if (scopes > 1) return QStringLiteral("give one scope: --all, --from/--to or --last");
    const int count = args.integer(args.has(QStringLiteral("high")) ? QStringLiteral("high") : QStringLiteral("low"));
    if (count < 0 || count > 32767) return QStringLiteral("COUNT must lie in 0..32767");
    return {};
}

int PickFrequencyCommand::onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const {
    const bool high = args.has(QStringLiteral("high"));
    const int wanted = args.integer(high ? QStringLiteral("high") : QStringLiteral("low"));
    Scope scope = Scope::allHistory();
    if (args.has(QStringLiteral("from")))
        scope = Scope::interval(args.integer(QStringLiteral("from")), args.integer(QStringLiteral("to")));
    else if (args.has(QStringLiteral("last")))
        scope = Scope::last(args.integer(QStringLiteral("last")));
    const Zone zone = zoneOf(args);
    const int added = pickByFrequency(board, zone, s.history(), zone == Zone::Front ? s.stats().front : s.stats().back,
                                      high ? Rank::MostFrequent : Rank::LeastFrequent, scope, wanted);
    ctx.out << added << '\n';
    return kDone;
}

PickOmissionCommand::PickOmissionCommand()
    : BoardCommand(QStringLiteral("pick omission"), QStringLiteral("--zone front|back --at-least V|--at-most V"),
                   QStringLiteral("Picks every number of the zone whose current omission is at least (or at most) "
                                  "V; prints how many were added.")) {
    options({zoneOption(),
             OptionDeclaration::valued(QStringLiteral("at-least"), QStringLiteral("V"),
                                       QStringLiteral("The lowest omission picked."), ValueKind::integer()),
             OptionDeclaration::valued(QStringLiteral("at-most"), QStringLiteral("V"),
                                       QStringLiteral("The highest omission picked."), ValueKind::integer())});
}

QString PickOmissionCommand::check(const Args& args) const {
    return exactlyOne(args, {QStringLiteral("at-least"), QStringLiteral("at-most")});
}

int PickOmissionCommand::onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const {
    const bool atLeast = args.has(QStringLiteral("at-least"));
    const int value = args.integer(atLeast ? QStringLiteral("at-least") : QStringLiteral("at-most"));
    const Zone zone = zoneOf(args);
    const int added = pickByOmission(board, zone, zone == Zone::Front ? s.stats().front : s.stats().back,
                                     atLeast ? OmissionBound::AtLeast : OmissionBound::AtMost, value);
    ctx.out << added << '\n';
    return kDone;
}

PickShowCommand::PickShowCommand()
    : BoardCommand(QStringLiteral("pick show"), {},
                   QStringLiteral("Prints the board: the front picks, the back picks, the front bankers and the back "
                                  "bankers, one line each.")) {
    setAccess(Access::Reads);
}

int PickShowCommand::onBoard(CliContext& ctx, Session&, NumberBoard& board, const Args&) const {
    pick_output::printBoard(ctx, board.state());
    return kDone;
}

PickClearCommand::PickClearCommand()
    : BoardCommand(QStringLiteral("pick clear"), {}, QStringLiteral("Clears the picks and bankers of both zones.")) {}

int PickClearCommand::onBoard(CliContext&, Session&, NumberBoard& board, const Args&) const {
    board.reselect(Zone::Front);
    board.reselect(Zone::Back);
    return kDone;
}
