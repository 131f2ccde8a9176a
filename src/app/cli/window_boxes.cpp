#include "app/cli/window_boxes.h"

#include "app/cli/cli_context.h"

#include <functional>

namespace window_boxes {

namespace {

const QStringList kScopes{QStringLiteral("front"), QStringLiteral("back"), QStringLiteral("both")};

// Ticks ChkBt or Check2 boxes: false after printing a refusal for a position outside 1..last.
bool tickPositions(CliContext& ctx, const QList<int>& positions, const QString& option, int last,
                   const std::function<void(int)>& tick) {
    for (int p : positions) {
        if (p < 1 || p > last)
            return ctx.fail(QStringLiteral("--%1: numbers 1..%2").arg(option).arg(last)), false;
        tick(p);
    }
    return true;
}

}  // namespace

OptionDeclaration scopeOption() {
    return OptionDeclaration::valued(QStringLiteral("scope"), QStringLiteral("ZONE"),
                              QStringLiteral("The zone tab: front (the default), back or both."),
                              ValueKind::oneOf(kScopes));
}

ZoneScope scope(const Args& args) { return static_cast<ZoneScope>(args.choice(QStringLiteral("scope")) + 1); }

std::vector<OptionDeclaration> commonOptions() {
    return {
        scopeOption(),
        OptionDeclaration::valued(QStringLiteral("positions"), QStringLiteral("LIST"),
                           QStringLiteral("The positions 1..7 that count; all when absent."),
                           ValueKind::numbers()),
        OptionDeclaration::valued(QStringLiteral("odd"), QStringLiteral("LIST"),
                           QStringLiteral("Positions 1..5 whose number must be odd."), ValueKind::numbers()),
        OptionDeclaration::valued(QStringLiteral("even"), QStringLiteral("LIST"),
                           QStringLiteral("Positions 1..5 whose number must be even."),
                           ValueKind::numbers())};
}

bool readCommon(CliContext& ctx, const Args& args, ParamWindowState& s) {
    s.scope = scope(args);
    if (args.has(QStringLiteral("positions"))) {
        s.numberTicks.fill(false);
        if (!tickPositions(ctx, args.numbers(QStringLiteral("positions")), QStringLiteral("positions"), 7,
                           [&](int p) { s.numberTicks[static_cast<size_t>(p - 1)] = true; }))
            return false;
    }
    for (const auto& [option, second] :
         {std::pair{QStringLiteral("odd"), 0}, std::pair{QStringLiteral("even"), 1}}) {
        const int column = second;
        if (!tickPositions(ctx, args.numbers(option), option, 5,
                           [&](int p) { s.parityTicks[static_cast<size_t>(2 + 2 * p + column)] = true; }))
            return false;
    }
    readSense(args, s);
    return true;
}

std::vector<OptionDeclaration> senseOptions() {
    return {OptionDeclaration::flag(QStringLiteral("keep"),
                             QStringLiteral("Keeps the tickets inside the ranges (保留).")),
            OptionDeclaration::flag(QStringLiteral("exclude"),
                             QStringLiteral("Excludes the tickets inside the ranges (排除)."))};
}

QString checkSense(const Args& args, bool required) {
    const bool keep = args.has(QStringLiteral("keep")), exclude = args.has(QStringLiteral("exclude"));
    if (keep && exclude) return QStringLiteral("give --keep or --exclude, not both");
    if (required && !keep && !exclude) return QStringLiteral("give one of --keep and --exclude");
    return {};
}

void readSense(const Args& args, ParamWindowState& s) { s.keep = !args.has(QStringLiteral("exclude")); }

OptionDeclaration intervalOption() {
    return OptionDeclaration::valued(
        QStringLiteral("interval"), QStringLiteral("LO HI"),
        QStringLiteral("自定区间 counts the numbers above LO up to HI; 0 and 9 when absent."),
        {ValueKind::number(), ValueKind::number()});
}

void readInterval(const Args& args, ParamWindowState& s) {
    if (!args.has(QStringLiteral("interval"))) return;
    const QStringList v = args.values(QStringLiteral("interval"));
    auto& box = s.box(ParamId::CustomRange);
    box[3] = v[0];
    box[2] = v[1];
}

std::vector<OptionDeclaration> runOptions(bool sixNames) {
    const ValueKind param = sixNames ? ValueKind::paramOrSix() : ValueKind::param();
    return {OptionDeclaration::valued(
                QStringLiteral("params"), QStringLiteral("NAMES"),
                QStringLiteral("The parameters to tick, as Znum,Onum (draw columns, Zdqj for 自定区间)."),
                sixNames ? ValueKind::paramsOrSix() : ValueKind::params()),
            OptionDeclaration::valued(QStringLiteral("range"), QStringLiteral("NAME LO HI"),
                               QStringLiteral("A parameter's range; repeat for each parameter."),
                               {param, ValueKind::number(), ValueKind::number()}),
            OptionDeclaration::valued(QStringLiteral("list"), QStringLiteral("NAME VALUES"),
                               QStringLiteral("A parameter's values, as \"2 3\"; puts the run in list mode."),
                               {param, ValueKind::values()}),
            intervalOption(),
            OptionDeclaration::flag(QStringLiteral("and"),
                             QStringLiteral("Logical and of the parameters (the default).")),
            OptionDeclaration::flag(QStringLiteral("or"), QStringLiteral("Logical or of the parameters.")),
            OptionDeclaration::valued(QStringLiteral("tolerance"), QStringLiteral("N"),
                               QStringLiteral("Allowed misses (整合过滤容错比, rounded half to even)."),
                               ValueKind::number())};
}

void readRun(const Args& args, ParamWindowState& s, Tick tick) {
    for (const QString& name :
         args.text(QStringLiteral("params")).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const ParamId id = *command_args::param(name);
        const int box =
            tick == Tick::RunBox ? param_catalogue::runBox(id) : param_catalogue::info(id).integratedBox;
        s.integratedBox[static_cast<size_t>(box)] = true;
    }
    for (const QStringList& r : args.occurrences(QStringLiteral("range"))) {
        auto& box = s.box(*command_args::param(r[0]));
        box[0] = r[1];
        box[1] = r[2];
    }
    // A list puts the whole run in list mode, as Option36 does for the window.
    for (const QStringList& l : args.occurrences(QStringLiteral("list"))) {
        const ParamId id = *command_args::param(l[0]);
        if (id == ParamId::CustomRange)
            s.txtZdqj = l[1];
        else
            s.box(id)[3] = l[1];
        s.listMode = true;
    }
    readInterval(args, s);
    s.logicAnd = !args.has(QStringLiteral("or"));
    if (args.has(QStringLiteral("tolerance"))) {
        s.useTolerance = true;
        s.txtRc0 = args.text(QStringLiteral("tolerance"));
    }
}

}  // namespace window_boxes
