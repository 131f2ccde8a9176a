#include "app/cli/cli_tables.h"

#include "filter/candidate_store.h"

namespace cli_tables {

std::optional<FilterInstance> instanceFor(CliContext& ctx, const QStringList& args) {
    bool found = false;
    const QString name = cliargs::option(args, QStringLiteral("--table"), &found);
    if (!found || name.compare(QLatin1String("zuhe"), Qt::CaseInsensitive) == 0) return FilterInstance::GAganMb;
    if (name.compare(QLatin1String("zuheRote"), Qt::CaseInsensitive) == 0) return FilterInstance::GAganRoteMb;
    if (name.compare(QLatin1String("zuheRead"), Qt::CaseInsensitive) == 0) return FilterInstance::GAganRead;
    if (name.compare(QLatin1String("zuheMoban"), Qt::CaseInsensitive) == 0) return FilterInstance::GAganZhMb;
    ctx.fail(QStringLiteral("--table: one of zuhe, zuheRote, zuheRead, zuheMoban"));
    return std::nullopt;
}

bool OpenTable::open(CliContext& ctx, const QStringList& args, bool withTable) {
    const auto instance = instanceFor(ctx, args);
    if (!instance) return false;
    session = ctx.session();
    if (!session) return false;
    workspace = std::make_unique<FilterWorkspace>(*instance, session->paths().filnumDb());
    if (!withTable) return true;
    QString error;
    if (!workspace->openStored(session->fildb(), nullptr, &error) ||
        !candidate_store::tableExists(session->fildb(), workspace->traits().table)) {
        ctx.fail(error.isEmpty() ? QStringLiteral("no candidate table: run `expand` first") : error);
        return false;
    }
    return true;
}

int OpenTable::finish(CliContext& ctx) {
    const candidate_store::SaveResult saved = workspace->waitForWrite();
    if (saved.outcome != candidate_store::Outcome::Done) return ctx.fail(saved.error);
    ctx.out << workspace->table().liveCount() << '\n';
    return 0;
}

std::optional<ParamId> paramByName(const QString& name) {
    if (auto id = param_catalogue::byDrawColumn(name)) return id;
    return param_catalogue::byButton(name);
}

}  // namespace cli_tables
