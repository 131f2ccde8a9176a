#include "picking/ui/picking_commands.h"

#include "picking/saved_selections.h"
#include "picking/ui/picking_dialogs.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QDateTime>

using namespace frequency_picks;

PickingCommands::PickingCommands(Session& session, NumberBoard& board, Prompter& prompter, PickingDialogs& dialogs,
                                 std::function<void()> changed)
    : m_session(session), m_board(board), m_prompter(prompter), m_dialogs(dialogs), m_changed(std::move(changed)) {}

void PickingCommands::boardChanged() {
    if (m_changed) m_changed();
}

void PickingCommands::pickByFrequency(Zone zone, Rank rank) {
    const Prompt p = frequencyPrompt(rank);
    const QString answer = m_prompter.askText(p.title, p.text, p.proposal);
    // The scope is asked also after an answer that is no number; nothing is picked then.
    const int wanted = parseValue(answer).value_or(0);
    const Scope scope = m_dialogs.askScope(m_session.history());
    if (wanted <= 0) return;
    const NumberStats& stats = zone == Zone::Front ? m_session.stats().front : m_session.stats().back;
    frequency_picks::pickByFrequency(m_board, zone, m_session.history(), stats, rank, scope, wanted);
    boardChanged();
}

void PickingCommands::pickByOmission(Zone zone, OmissionBound bound) {
    const Prompt p = omissionPrompt(bound);
    const std::optional<int> value = parseValue(m_prompter.askText(p.title, p.text, p.proposal));
    if (!value) return;
    const NumberStats& stats = zone == Zone::Front ? m_session.stats().front : m_session.stats().back;
    frequency_picks::pickByOmission(m_board, zone, stats, bound, *value);
    boardChanged();
}

void PickingCommands::savePicks() {
    const QString name =
        m_prompter.askText(QStringLiteral("选号结果保存"), QStringLiteral("请输入本次选号结果的名字："),
                           SavedSelections::saveProposal(QDateTime::currentDateTime()));
    if (name.isEmpty()) return;
    SavedSelections(m_session.savedPicksDb()).save(name, m_session.board());
}

void PickingCommands::recallPicks() {
    SavedSelections saved(m_session.savedPicksDb());
    const int row = m_dialogs.chooseSavedSelection(saved, m_prompter);
    if (row == 0) return;
    saved.load(m_board, row, true);
    boardChanged();
}

void PickingCommands::openTemplates() { m_dialogs.openTemplates(*this); }
