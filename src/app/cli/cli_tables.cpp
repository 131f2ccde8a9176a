#include "app/cli/cli_tables.h"

#include "app/cli/cli_context.h"
#include "app/cli/command.h"
#include "engine/candidate_store.h"
#include "workspace/session.h"
#include "workspace/sqlite_db.h"

#include <array>

namespace cli_tables {

namespace {

constexpr std::array kStoredKinds{Kind::Combinations, Kind::Wheel, Kind::Template, Kind::Imported,
                                  Kind::SixNumbers};
constexpr std::array kWindowKinds{Kind::Combinations, Kind::Wheel, Kind::Imported, Kind::Template};
// The window tables first, so that a choice's index means the same table in both lists.
constexpr std::array kWindowOrSixKinds{Kind::Combinations, Kind::Wheel, Kind::Imported, Kind::Template,
                                       Kind::SixNumbers};

template <size_t N>
QStringList tableNames(const std::array<Kind, N>& kinds) {
    QStringList names;
    for (Kind k : kinds) names << schema::candidateTableName(k);
    return names;
}

}  // namespace

OptionDeclaration storedTableOption() {
    return OptionDeclaration::valued(
        QStringLiteral("table"), QStringLiteral("T"),
        QStringLiteral("The candidate table: zuhe (the default), zuheRote, zuheMoban, zuheRead "
                       "or zuhef."),
        ValueKind::oneOf(tableNames(kStoredKinds)));
}

Kind storedTable(const Args& args) {
    return kStoredKinds[static_cast<size_t>(args.choice(QStringLiteral("table")))];
}

OptionDeclaration windowTableOption() {
    return OptionDeclaration::valued(QStringLiteral("table"), QStringLiteral("T"),
                              QStringLiteral("The candidate table: zuhe (the default), zuheRote, zuheRead or "
                                             "zuheMoban."),
                              ValueKind::oneOf(tableNames(kWindowKinds)));
}

OptionDeclaration windowOrSixTableOption() {
    return OptionDeclaration::valued(QStringLiteral("table"), QStringLiteral("T"),
                                     QStringLiteral("The candidate table: zuhe (the default), zuheRote, zuheRead, "
                                                    "zuheMoban or zuhef (the six-number window)."),
                                     ValueKind::oneOf(tableNames(kWindowOrSixKinds)));
}

bool onSixTable(const Args& args) {
    return kWindowOrSixKinds[static_cast<size_t>(args.choice(QStringLiteral("table")))] == Kind::SixNumbers;
}

FilterSource windowInstance(const Args& args) {
    if (onSixTable(args)) return FilterSource::StoredSixExpansion;
    const auto instance =
        reopeningInstance(kWindowKinds[static_cast<size_t>(args.choice(QStringLiteral("table")))]);
    Q_ASSERT(instance);  // every kind of the list has its window
    return *instance;
}

std::optional<FilterSource> reopeningInstance(Kind kind) {
    switch (kind) {
        case Kind::Combinations:
            return FilterSource::StoredExpansion;
        case Kind::Wheel:
            return FilterSource::StoredWheel;
        case Kind::Imported:
            return FilterSource::Imported;
        case Kind::Template:
            return FilterSource::CombinationTemplate;
        case Kind::SixNumbers:
            return std::nullopt;
    }
    return std::nullopt;
}

std::unique_ptr<CandidateTable> loadStored(CliContext& ctx, Session& s, Kind kind) {
    candidate_store::LoadResult r =
        candidate_store::load(s.filterDb(), kind, nullptr, true, {s.frontSize(), s.backSize()});
    if (!r.table)
        ctx.fail(r.error.isEmpty() ? QStringLiteral("cannot read %1").arg(schema::candidateTableName(kind))
                                   : r.error);
    return std::move(r.table);
}

bool openStoredTable(Session& session, FilterWorkspace& workspace, Kind kind, QString* error) {
    const SqliteReadTransaction read(session.filterDb());
    return workspace.openStored(session.filterDb(), nullptr, error) &&
           candidate_store::tableExists(session.filterDb(), kind);
}

bool OpenTable::open(CliContext& ctx, const Args& args, bool withTable) {
    session = ctx.session();
    if (!session) return false;
    workspace = std::make_unique<FilterWorkspace>(windowInstance(args), session->paths().filterDb());
    workspace->setZoneLimits({session->frontSize(), session->backSize()});
    if (!withTable) return true;
    QString error;
    if (!openStoredTable(*session, *workspace, workspace->traits().table, &error)) {
        ctx.fail(error.isEmpty() ? QStringLiteral("no candidate table: run `expand` first") : error);
        return false;
    }
    return true;
}

int OpenTable::finish(CliContext& ctx) {
    const candidate_store::SaveResult saved = workspace->waitForWrite();
    if (saved.outcome != candidate_store::Outcome::Done) return ctx.fail(saved.error);
    ctx.out << workspace->table().liveCount() << '\n';
    return Command::kDone;
}

}  // namespace cli_tables
