#include "app/cli/wheel_commands.h"

#include "app/cli/board_marks.h"
#include "app/cli/cli_context.h"
#include "app/filter_opening.h"
#include "engine/candidate_store.h"
#include "filter/filter_workspace.h"
#include "generation/wheels/wheel_menus.h"
#include "workspace/session.h"

#include <QDir>
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
              QStringLiteral(
                  "Lists the wheel tables: family, table, rows, the best known size and their ratio.")) {
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
        ctx.out << wheels::familyWord(t.family) << '\t' << t.name << '\t'
                << (rows ? QString::number(*rows) : "-") << '\t'
                << (t.bestKnown ? QString::number(t.bestKnown) : "-") << '\t'
                << (rows && t.bestKnown ? QString::number(double(*rows) / t.bestKnown, 'f', 3) : "-") << '\n';
    }
    return kDone;
}

WheelShowCommand::WheelShowCommand()
    : Command(QStringLiteral("wheel show"), QStringLiteral("--family F --table NAME"),
              QStringLiteral("Prints a wheel table's rows of positions, a row a line.")) {
    setAccess(Access::Reads);
    option(kFamily, QStringLiteral("F"), familyHelp(), ValueKind::oneOf(kFamilies));
    option(kTable, QStringLiteral("NAME"),
           QStringLiteral("The table: \"12\", \"1243\", \"2D1055\", \"561044\"..."));
}

QString WheelShowCommand::check(const Args& args) const {
    return args.has(kFamily) && args.has(kTable) ? QString()
                                                 : QStringLiteral("--family and --table are required");
}

int WheelShowCommand::execute(CliContext& ctx, const Args& args) const {
    if (!ensureWheels(ctx)) return kRefused;
    const wheels::Family family = kFamilyOf[args.choice(kFamily)];
    const std::optional<wheel_store::Rows> rows =
        wheel_store::readTable(wheel_store::databasePath(ctx.root.root(), family), args.text(kTable));
    if (!rows)
        return ctx.fail(
            QStringLiteral("no table \"%1\" in the %2 wheels").arg(args.text(kTable), args.text(kFamily)));
    for (const std::vector<int>& row : *rows) {
        QStringList fields;
        for (int p : row) fields << QString::number(p);
        ctx.out << fields.join(QLatin1Char(' ')) << '\n';
    }
    return kDone;
}

WheelCheckCommand::WheelCheckCommand()
    : Command(QStringLiteral("wheel check"), QStringLiteral("N K P T FILE"),
              QStringLiteral(
                  "Checks that the wheel in FILE (a ticket of K positions of 1..N a line) holds T of "
                  "any P drawn positions; prints PASS, or FAIL with the unmet count and one example.")) {
    setAccess(Access::Reads);
    positional(QStringLiteral("N"), QStringLiteral("Positions."), ValueKind::integer());
    positional(QStringLiteral("K"), QStringLiteral("Positions in a ticket."), ValueKind::integer());
    positional(QStringLiteral("P"), QStringLiteral("Drawn positions."), ValueKind::integer());
    positional(QStringLiteral("T"), QStringLiteral("Of which a ticket holds at least this many."),
               ValueKind::integer());
    positional(QStringLiteral("FILE"), QStringLiteral("The wheel as text."));
}

namespace {
wheels::Guarantee guaranteeOf(const Args& args) {
    return {args.positionalInteger(0), args.positionalInteger(1), args.positionalInteger(2),
            args.positionalInteger(3)};
}
}  // namespace

QString WheelCheckCommand::check(const Args& args) const {
    return guaranteeOf(args).valid()
               ? QString()
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
    ctx.out << "FAIL: " << c.unsatisfied << " drawn sets unmet, e.g. " << example.join(QLatin1Char(' '))
            << '\n';
    return kRefused;
}

namespace {

const QString kGuarantee = QStringLiteral("guarantee");
const QString kFront = QStringLiteral("front");
const QString kBack = QStringLiteral("back");
const QString kBankers = QStringLiteral("bankers");
const QStringList kPromises{QStringLiteral("22"), QStringLiteral("33"), QStringLiteral("43"),
                            QStringLiteral("44"), QStringLiteral("53"), QStringLiteral("54"),
                            QStringLiteral("55"), QStringLiteral("64"), QStringLiteral("65"),
                            QStringLiteral("76")};

// The entry of the family's menu for the promise, as the menu shows it for these picks.
std::optional<wheel_menus::Entry> chosenEntry(const QString& folder, wheels::Family family,
                                              const QString& promise, const BoardState& b) {
    std::vector<wheel_menus::Entry> entries;
    switch (family) {
        case wheels::Family::Basic:
            if (promise != QLatin1String("43")) return std::nullopt;
            return wheel_menus::Entry{wheel_menus::basicTable(b.front.pickCount),
                                      {},
                                      wheel_menus::basicEntryEnabled(b.front.pickCount, b.front.pickCount)};
        case wheels::Family::Super:
            entries = wheel_menus::superEntries(folder, b.front.pickCount, b.back.pickCount);
            break;
        case wheels::Family::Banker:
            entries =
                wheel_menus::bankerEntries(folder, b.front.bankerCount, b.front.pickCount, b.back.pickCount);
            break;
        case wheels::Family::Six:
            entries = wheel_menus::sixEntries(folder, b.front.pickCount);
            break;
    }
    for (const wheel_menus::Entry& e : entries)
        if (e.table.endsWith(promise)) return e;
    return std::nullopt;
}

// The six-number tickets as aganFRote lists them, and their money.
int listSixNumberWheel(CliContext& ctx, const QString& database, const QString& table, const BoardState& b) {
    const std::optional<wheel_store::Rows> rows = wheel_store::readTable(database, table);
    if (!rows) return ctx.fail(QStringLiteral("no six-number wheel \"%1\"").arg(table));
    for (const std::vector<int>& row : *rows) {
        QStringList numbers;
        for (int p : row)
            numbers << QStringLiteral("%1").arg(b.front.pickList[static_cast<size_t>(p)], 2, 10,
                                                QLatin1Char('0'));
        ctx.out << numbers.join(QLatin1Char(' ')) << '\n';
    }
    ctx.out << QStringLiteral("单注旋转所需总金额:") << rows->size() * 12 << QStringLiteral("圆") << '\n';
    return Command::kDone;
}

}  // namespace

WheelExpandCommand::WheelExpandCommand()
    : SessionCommand(
          QStringLiteral("wheel expand"),
          QStringLiteral("--family F [--guarantee PT] --front LIST --back LIST [--bankers LIST]"),
          QStringLiteral("Puts the picks through a wheel into zuheRote, as the wheel menus do, and prints "
                         "the count of tickets; a six-number wheel prints its tickets and their money.")) {
    option(kFamily, QStringLiteral("F"), familyHelp(), ValueKind::oneOf(kFamilies));
    option(kGuarantee, QStringLiteral("PT"),
           QStringLiteral(
               "The promise 中P保T as two digits (default 43): basic 43; super 22 33 43 44 53 54; banker "
               "44 54 55; six 44 54 55 64 65 76."),
           ValueKind::oneOf(kPromises));
    option(kFront, QStringLiteral("LIST"), QStringLiteral("Picked front numbers, as 1,5,12."),
           ValueKind::numbers());
    option(kBack, QStringLiteral("LIST"), QStringLiteral("Picked back numbers."), ValueKind::numbers());
    option(kBankers, QStringLiteral("LIST"), QStringLiteral("Front bankers (the banker family)."),
           ValueKind::numbers());
}

QString WheelExpandCommand::check(const Args& args) const {
    if (!args.has(kFamily) || !args.has(kFront)) return QStringLiteral("--family and --front are required");
    const bool banker = kFamilyOf[args.choice(kFamily)] == wheels::Family::Banker;
    if (banker != args.has(kBankers))
        return QStringLiteral("--bankers goes with the banker family, and only there");
    return {};
}

int WheelExpandCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    if (!ensureWheels(ctx)) return kRefused;
    const wheels::Family family = kFamilyOf[args.choice(kFamily)];
    const QString promise = args.text(kGuarantee, QStringLiteral("43"));
    BoardState& state = s.board();
    NumberBoard board(state, static_cast<int16_t>(s.frontSize()), static_cast<int16_t>(s.backSize()));
    if (!markOnBoard(board, Zone::Front, args.numbers(kFront), false) ||
        !markOnBoard(board, Zone::Back, args.numbers(kBack), false) ||
        !markOnBoard(board, Zone::Front, args.numbers(kBankers), true))
        return ctx.fail(QStringLiteral("a number lies outside the zone (front 1..%1, back 1..%2)")
                            .arg(s.frontSize())
                            .arg(s.backSize()));
    board.openModeMenu();
    if (family == wheels::Family::Banker && !board.modeMenu.bankerWheel)
        return ctx.fail(QStringLiteral("mnuDtxj 胆拖旋转矩阵 needs a front banker"));
    board.prepareList(family == wheels::Family::Six ? ListCommand::SixNumberWheel : ListCommand::Wheel);

    const QString folder = ctx.root.root();
    const std::optional<wheel_menus::Entry> entry = chosenEntry(folder, family, promise, state);
    if (!entry)
        return ctx.fail(QStringLiteral("the %1 wheels have no 中%2保%3")
                            .arg(args.text(kFamily), promise.left(1), promise.mid(1)));
    if (!entry->enabled)
        return ctx.fail(
            QStringLiteral("no %1 wheel \"%2\" for these picks").arg(args.text(kFamily), entry->table));
    if (family == wheels::Family::Six)
        return listSixNumberWheel(ctx, wheel_store::databasePath(folder, family), entry->table, state);

    FilterWorkspace window(FilterSource::Wheel, s.paths().filterDb());
    openWheelWindow(window, state, family, entry->table, folder);
    const candidate_store::SaveResult saved = window.waitForWrite();
    if (saved.outcome != candidate_store::Outcome::Done)
        return ctx.fail(QDir::toNativeSeparators(s.paths().filterDb()) + QStringLiteral(": ") + saved.error);
    ctx.out << window.shownCount() << '\n';
    return kDone;
}
