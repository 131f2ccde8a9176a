#include "app/cli/wheel_commands.h"

#include "app/cli/cli_context.h"
#include "generation/wheels/wheel_check.h"
#include "generation/wheels/wheel_store.h"

namespace {

const QString kFamily = QStringLiteral("family");
const QString kTable = QStringLiteral("table");
const QStringList kFamilies{QStringLiteral("basic"), QStringLiteral("super"), QStringLiteral("banker"),
                            QStringLiteral("six")};
constexpr wheels::Family kFamilyOf[] = {wheels::Family::Basic, wheels::Family::Super, wheels::Family::Banker,
                                        wheels::Family::Six};

QString familyHelp() { return QStringLiteral("basic, super, banker or six."); }

// The program's wheel databases, made or renewed from the bundled wheels first.
bool ensureWheels(CliContext& ctx) {
    QString error;
    if (wheel_store::ensureDatabases(ctx.root.root(), &error)) return true;
    ctx.fail(QStringLiteral("the wheel databases cannot be written: %1").arg(error));
    return false;
}

}  // namespace

WheelListCommand::WheelListCommand()
    : Command(QStringLiteral("wheel list"), QStringLiteral("[--family F]"),
              QStringLiteral("Lists the wheel tables: family, table, rows, the best known size and their ratio.")) {
    setAccess(Access::Reads);
    option(kFamily, QStringLiteral("F"), familyHelp(), ValueKind::oneOf(kFamilies));
}

int WheelListCommand::execute(CliContext& ctx, const Args& args) const {
    if (!ensureWheels(ctx)) return kRefused;
    ctx.out << "family\ttable\trows\tbest known\tratio\n";
    for (const wheels::WheelTable& t : wheels::catalogue()) {
        if (args.has(kFamily) && t.family != kFamilyOf[args.choice(kFamily)]) continue;
        const std::optional<int> rows =
            wheel_store::rowCount(wheel_store::databasePath(ctx.root.root(), t.family), t.name);
        ctx.out << wheels::familyWord(t.family) << '\t' << t.name << '\t' << (rows ? QString::number(*rows) : "-")
                << '\t' << (t.bestKnown ? QString::number(t.bestKnown) : "-") << '\t'
                << (rows && t.bestKnown ? QString::number(double(*rows) / t.bestKnown, 'f', 3) : "-") << '\n';
    }
    return kDone;
}

WheelShowCommand::WheelShowCommand()
    : Command(QStringLiteral("wheel show"), QStringLiteral("--family F --table NAME"),
              QStringLiteral("Prints a wheel table's rows of positions, a row a line.")) {
    setAccess(Access::Reads);
    option(kFamily, QStringLiteral("F"), familyHelp(), ValueKind::oneOf(kFamilies));
    option(kTable, QStringLiteral("NAME"), QStringLiteral("The table: \"12\", \"1243\", \"2D1055\", \"561044\"..."));
}

QString WheelShowCommand::check(const Args& args) const {
    return args.has(kFamily) && args.has(kTable) ? QString() : QStringLiteral("--family and --table are required");
}

int WheelShowCommand::execute(CliContext& ctx, const Args& args) const {
    if (!ensureWheels(ctx)) return kRefused;
    const wheels::Family family = kFamilyOf[args.choice(kFamily)];
    const std::optional<wheel_store::Rows> rows =
        wheel_store::readTable(wheel_store::databasePath(ctx.root.root(), family), args.text(kTable));
    if (!rows)
        return ctx.fail(QStringLiteral("no table \"%1\" in the %2 wheels").arg(args.text(kTable), args.text(kFamily)));
    for (const std::vector<int>& row : *rows) {
        QStringList fields;
        for (int p : row) fields << QString::number(p);
        ctx.out << fields.join(QLatin1Char(' ')) << '\n';
    }
    return kDone;
}

WheelCheckCommand::WheelCheckCommand()
    : Command(QStringLiteral("wheel check"), QStringLiteral("N K P T FILE"),
              QStringLiteral("Checks that the wheel in FILE (a ticket of K positions of 1..N a line) holds T of "
                             "any P drawn positions; prints PASS, or FAIL with the unmet count and one example.")) {
    setAccess(Access::Reads);
    positional(QStringLiteral("N"), QStringLiteral("Positions."), ValueKind::integer());
    positional(QStringLiteral("K"), QStringLiteral("Positions in a ticket."), ValueKind::integer());
    positional(QStringLiteral("P"), QStringLiteral("Drawn positions."), ValueKind::integer());
    positional(QStringLiteral("T"), QStringLiteral("Of which a ticket holds at least this many."), ValueKind::integer());
    positional(QStringLiteral("FILE"), QStringLiteral("The wheel as text."));
}

namespace {
wheels::Guarantee guaranteeOf(const Args& args) {
    return {args.positionalInteger(0), args.positionalInteger(1), args.positionalInteger(2), args.positionalInteger(3)};
}
}  // namespace

QString WheelCheckCommand::check(const Args& args) const {
    return guaranteeOf(args).valid() ? QString()
                                     : QStringLiteral("no such guarantee: N K P T need 1 <= T <= P <= N and T <= K <= N <= 32");
}

int WheelCheckCommand::execute(CliContext& ctx, const Args& args) const {
    const wheels::Guarantee g = guaranteeOf(args);
    const wheels::ReadResult read = wheels::readFile(args.positional(4), g);
    if (!read.error.isEmpty()) return ctx.fail(read.error);
    const wheels::CheckResult c = wheels::check({g, read.blocks});
    ctx.out << read.blocks.size() << " tickets\n";
    if (c.holds) {
        ctx.out << "PASS\n";
        return kDone;
    }
    QStringList example;
    for (int p : wheels::positionsOf(c.example)) example << QString::number(p);
    ctx.out << "FAIL: " << c.unsatisfied << " drawn sets unmet, e.g. " << example.join(QLatin1Char(' ')) << '\n';
    return kRefused;
}
