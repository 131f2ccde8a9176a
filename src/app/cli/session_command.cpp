#include "app/cli/session_command.h"

#include "app/cli/cli_context.h"

int SessionCommand::execute(CliContext& ctx, const Args& args) const {
    Session* session = ctx.session();
    return session ? run(ctx, *session, args) : kRefused;
}
