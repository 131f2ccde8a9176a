#include "filter/param/param_window.h"

#include "engine/candidate_kernels.h"
#include "filter/candidate_actions.h"
#include "engine/candidate_store.h"
#include "workspace/prompter.h"
#include "workspace/schema.h"
#include "workspace/sqlite_db.h"

#include <QDir>

#include <set>

ParamWindow::ParamWindow(FilterWorkspace& workspace, ParamContext context, QString workspaceFolder)
    : m_workspace(workspace), m_context(std::move(context)), m_folder(std::move(workspaceFolder)) {
    showFirstView();
}

param_filter::SingleResult ParamWindow::clickParameter(ParamId id, const ParamWindowState& state, Prompter&) {
    markUsed(QLatin1String(param_catalogue::info(id).button));
    if (!m_workspace.isOpen()) return {};
    m_workspace.keepSense = state.keep;
    const param_filter::SingleResult r =
        param_filter::runSingle(m_workspace.edit().table(), id, state, m_context);
    if (r.ran) m_view = GridView::afterParameter(r.view, r.heading);
    return r;
}

param_filter::IntegratedResult ParamWindow::clickIntegrated(const ParamWindowState& state, Prompter&,
                                                            EngineProgress* progress) {
    markUsed(QStringLiteral("Option29"));
    if (!m_workspace.isOpen()) return {};
    const FilterWorkspace::Edit edit = m_workspace.edit();
    const param_filter::IntegratedResult r =
        param_filter::runIntegrated(edit.table(), state, m_context, progress);
    if (r.cancelled) return r;
    m_workspace.keepSense = r.keepSense;
    m_view = GridView::live();
    return r;
}

QString ParamWindow::exportPath() const {
    return QDir(m_folder).filePath(param_export::xlsxName(m_workspace.traits().exportFile));
}

param_export::Result ParamWindow::clickExport(const ParamWindowState& state, Prompter& prompter,
                                              EngineProgress* progress) {
    if (!m_workspace.isOpen()) return {};
    // canshu changes: the record follows.
    return param_export::exportLive(m_workspace.edit().table(), state, m_context, exportPath(), prompter,
                                    progress);
}

void ParamWindow::showPage(const QString& pageText) {
    const auto n = static_cast<int64_t>(param_catalogue::leadingNumber(pageText));
    m_view = GridView::page(n);
}

void ParamWindow::doubleClick(ResultGridModel& model, int viewRow) {
    if (!m_workspace.isOpen() || viewRow < 0 || viewRow >= model.rowCount()) return;
    const int32_t idx = model.idxAt(viewRow);
    const FilterWorkspace::Edit edit = m_workspace.edit();
    if (const auto dead = candidate_actions::toggleByHand(edit.table(), idx)) model.setPainted(viewRow, *dead);
}

bool ParamWindow::clickAddTemplate(SqliteDb& filterDb, Prompter& prompter) {
    if (!m_workspace.isOpen()) return false;
    const FilterSourceTraits& traits = m_workspace.traits();
    if (traits.filtersTemplateItself) {
        if (!prompter.okCancel(filter_source::kClearTemplateTitle, filter_source::kClearTemplateText))
            return false;
        return clearTemplate(filterDb);
    }
    if (!prompter.okCancel(kAddTemplateTitle, kAddTemplateText)) return false;
    return addLiveToTemplate(filterDb);
}

bool ParamWindow::addLiveToTemplate(SqliteDb& filterDb) {
    // The record may be behind the table while it is written: the tickets come from memory, and
    // the write is stopped so the template's transaction finds the database free.
    const FilterWorkspace::Edit edit = m_workspace.edit();
    const CandidateTable& t = edit.table();
    std::vector<std::array<int, 7>> tickets;
    tickets.reserve(t.liveCount());
    for (uint64_t r = 0; r < t.rowCount(); ++r) {
        if (t.filteredOut().test(r)) continue;
        std::array<int, 7> k{};
        for (int c = 1; c <= t.numberCount(); ++c) k[static_cast<size_t>(c - 1)] = t.numberColumn(c)[r];
        tickets.push_back(k);
    }
    return param_window::addTickets(filterDb, tickets);
}

bool ParamWindow::clearTemplate(SqliteDb& filterDb) {
    // No write of the old table may run while it is dropped; the reopened one is written after.
    const FilterWorkspace::Edit paused = m_workspace.pauseWrite();
    if (!param_window::makeEmptyTemplate(filterDb)) return false;
    // The window reloads its (now empty) table, with the headings of a cleared template.
    m_workspace.openStored(filterDb);
    m_view = GridView::live();
    m_view.headings = {QStringLiteral("号码索引"), QStringLiteral("1位"), QStringLiteral("2位"),
                       QStringLiteral("3位"),      QStringLiteral("4位"), QStringLiteral("5位"),
                       QStringLiteral("6位"),      QStringLiteral("7位")};
    return true;
}

namespace param_window {

bool makeEmptyTemplate(SqliteDb& filterDb) {
    SqliteTransaction tx(filterDb);
    if (!tx.active()) return false;
    filterDb.exec(QStringLiteral("DROP TABLE IF EXISTS [zuheMoban]"));
    return filterDb.exec(schema::candidate(schema::CandidateKind::Template).createStatement()) && tx.commit();
}

bool addTickets(SqliteDb& filterDb, const std::vector<std::array<int, 7>>& tickets) {
    const QString table = QStringLiteral("zuheMoban");
    // The rows are read with SQL: the relational table must be current first.
    candidate_store::ensureRelational(filterDb, schema::CandidateKind::Template);
    if (!filterDb.tableExists(table)) return false;
    SqliteTransaction tx(filterDb);
    if (!tx.active()) return false;
    // select distinct ... into Tmp: the distinct tickets in the order of their numbers.
    std::set<std::array<int, 7>> distinct(tickets.begin(), tickets.end());
    {
        SqliteStatement old(filterDb,
                            QStringLiteral("SELECT fig1,fig2,fig3,fig4,fig5,fig6,fig7 FROM [zuheMoban]"));
        if (!old.ok()) return false;
        while (old.next()) {
            std::array<int, 7> k{};
            for (int c = 0; c < 7; ++c) k[static_cast<size_t>(c)] = old.integer(c);
            distinct.insert(k);
        }
    }
    if (!filterDb.exec(QStringLiteral("DROP TABLE [zuheMoban]"))) return false;
    // The seven numbers, then the columns added back one by one; fliter does not come back.
    TableDef def{table, {}};
    using T = ColumnType;
    for (int c = 1; c <= 7; ++c) def.columns.append({QStringLiteral("fig%1").arg(c), T::Integer});
    def.columns += QList<ColumnDef>{
        {"idx", T::Integer},         {"unslt", T::Bit},     {"canshu", T::Integer}, {"Numstring", T::String},
        {"NumstringHou", T::String}, {"SKnum", T::Integer}, {"JSqihao", T::Long},   {"preunslt", T::Bit},
        {"tmpunslt", T::Bit},        {"Gpslt", T::Bit},     {"Errnum", T::Integer}};
    if (!filterDb.exec(def.createStatement())) return false;
    SqliteStatement ins(filterDb,
                        QStringLiteral("INSERT INTO [zuheMoban](fig1,fig2,fig3,fig4,fig5,fig6,fig7,idx) "
                                       "VALUES(?1,?2,?3,?4,?5,?6,?7,?8)"));
    if (!ins.ok()) return false;
    qint64 idx = 0;
    for (const std::array<int, 7>& k : distinct) {
        for (int c = 0; c < 7; ++c) ins.bind(c + 1, static_cast<qint64>(k[static_cast<size_t>(c)]));
        ins.bind(8, ++idx);
        if (!ins.run()) return false;
    }
    return tx.commit();
}

}  // namespace param_window
