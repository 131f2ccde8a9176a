#include "prize/prize_session.h"

#include "engine/candidate_store.h"
#include "workspace/session.h"

namespace prize_session {

bool tableExists(Session& session, schema::CandidateKind kind) {
    return session.filterDb().isOpen() && candidate_store::tableExists(session.filterDb(), kind);
}

PrizeSettings settingsOf(Session& session) {
    return PrizeSettings(session.settings(), session.workspaceName());
}

QString workspaceFolder(Session& session) { return session.paths().folder(); }

Opened open(Session& session, schema::CandidateKind kind, EngineProgress* progress) {
    Opened o;
    const PrizeSettings::ReadResult rules = settingsOf(session).read();
    o.ruleProblems = rules.problems;
    std::unique_ptr<CandidateTable> table;
    // A missing table, or one that cannot be read, gives empty lists and zero sums.
    if (tableExists(session, kind)) table = candidate_store::load(session.filterDb(), kind, progress).table;
    o.view = std::make_unique<PrizeView>(kind, std::move(table), CheckDraw::newest(session.history()),
                                         rules.rules);
    return o;
}

}  // namespace prize_session
