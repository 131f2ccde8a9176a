#include "prize/prize_session.h"

#include "engine/candidate_store.h"
#include "workspace/session.h"
#include "workspace/sqlite_db.h"

#include <QDir>

namespace prize_session {

QString unreadableText(const QString& file, const QString& table, const QString& detail) {
    QString text = QStringLiteral("候选号码表 %1 无法读取：%2").arg(table, QDir::toNativeSeparators(file));
    if (!detail.isEmpty()) text += QLatin1Char('\n') + detail;
    return text;
}

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
    // A missing table gives empty lists and zero sums; one that cannot be read says so too.
    if (tableExists(session, kind)) {
        const SqliteReadTransaction read(session.filterDb());
        candidate_store::LoadResult loaded = candidate_store::load(session.filterDb(), kind, progress);
        table = std::move(loaded.table);
        if (!table && !(progress && progress->cancelled()))
            o.loadError =
                unreadableText(session.paths().filterDb(), schema::candidateTableName(kind), loaded.error);
    }
    o.view = std::make_unique<PrizeView>(kind, std::move(table), CheckDraw::newest(session.history()),
                                         rules.rules);
    return o;
}

}  // namespace prize_session
