#include "app/cli/text_commands.h"

#include "app/cli/cli_context.h"
#include "engine/candidate_store.h"
#include "filter/param/param_window.h"
#include "generation/ticket_text.h"
#include "workspace/session.h"
#include "workspace/sqlite_db.h"

#include <QDir>

ReadTextCommand::ReadTextCommand()
    : SessionCommand(QStringLiteral("read-text"), QStringLiteral("FILE [--start S]"),
                     QStringLiteral("Reads tickets from a text file into zuheRead, as 读取组号文本过滤 does; "
                                    "prints the count of tickets read.")) {
    positional(QStringLiteral("FILE"), QStringLiteral("The text file, one ticket a line."));
    option(QStringLiteral("start"), QStringLiteral("S"),
           QStringLiteral("The column each line is read from (default 1, the first character)."),
           ValueKind::integer());
}

int ReadTextCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const int start = args.integer(QStringLiteral("start"), 1);
    if (start < 1) return ctx.fail(QStringLiteral("--start takes a column of 1 or more"));
    const ticket_text::ImportResult r =
        ticket_text::importFile(s.filterDb(), args.positional(0), start, {s.frontSize(), s.backSize()});
    if (!r.error.isEmpty()) return ctx.fail(r.error);
    if (r.read.outOfRange > 0)
        ctx.err << r.read.outOfRange << " lines of seven numbers lie outside the zones (front 1.." << s.frontSize()
                << ", back 1.." << s.backSize() << ") and were not read\n";
    if (!r.replaced)
        return ctx.fail(QStringLiteral("no line of %1 gives seven numbers from column %2: zuheRead is as it was")
                            .arg(QDir::toNativeSeparators(args.positional(0)))
                            .arg(start));
    ctx.out << r.read.tickets.size() << '\n';
    return kDone;
}

TemplateClearCommand::TemplateClearCommand()
    : SessionCommand(QStringLiteral("template clear"), QString(),
                     QStringLiteral("Makes the combination template zuheMoban anew and empty, as 清空组号模板 "
                                    "does.")) {}

int TemplateClearCommand::run(CliContext& ctx, Session& s, const Args&) const {
    if (!param_window::makeEmptyTemplate(s.filterDb()))
        return ctx.fail(QDir::toNativeSeparators(s.paths().filterDb()) + QStringLiteral(": ") +
                        s.filterDb().lastError());
    ctx.out << 0 << '\n';
    return kDone;
}

TemplateCountCommand::TemplateCountCommand()
    : SessionCommand(QStringLiteral("template count"), QString(),
                     QStringLiteral("Prints the count of tickets in the combination template zuheMoban.")) {
    setAccess(Access::Reads);
}

int TemplateCountCommand::run(CliContext& ctx, Session& s, const Args&) const {
    if (!candidate_store::tableExists(s.filterDb(), schema::CandidateKind::Template))
        return ctx.fail(QStringLiteral("the template zuheMoban does not exist: make it with `template clear` "
                                       "or by opening 调用组号模板功能"));
    const candidate_store::LoadResult loaded =
        candidate_store::load(s.filterDb(), schema::CandidateKind::Template, nullptr, true,
                              {s.frontSize(), s.backSize()});
    if (!loaded.table) return ctx.fail(loaded.error);
    ctx.out << loaded.table->rowCount() << '\n';
    return kDone;
}
