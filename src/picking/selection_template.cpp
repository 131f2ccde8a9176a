#include "picking/selection_template.h"

#include <QFile>

namespace selection_template {

namespace {

using frequency_picks::OmissionBound;
using frequency_picks::Rank;

struct StepKind {
    const char* text;
    const char* proposal;
    Zone zone;
    bool frequency;  // a frequency step, else an omission step
    Rank rank;
    OmissionBound bound;
};

const StepKind kKinds[8] = {
    {"前区选择多个高频号码", "10", Zone::Front, true, Rank::MostFrequent, OmissionBound::AtLeast},
    {"前区选择多个低频号码", "10", Zone::Front, true, Rank::LeastFrequent, OmissionBound::AtLeast},
    {"前区选择遗漏高次号码", "6", Zone::Front, false, Rank::MostFrequent, OmissionBound::AtLeast},
    {"前区选择遗漏低次号码", "3", Zone::Front, false, Rank::MostFrequent, OmissionBound::AtMost},
    {"后区选择多个高频号码", "3", Zone::Back, true, Rank::MostFrequent, OmissionBound::AtLeast},
    {"后区选择多个低频号码", "3", Zone::Back, true, Rank::LeastFrequent, OmissionBound::AtLeast},
    {"后区选择遗漏高次号码", "6", Zone::Back, false, Rank::MostFrequent, OmissionBound::AtLeast},
    {"后区选择遗漏低次号码", "3", Zone::Back, false, Rank::MostFrequent, OmissionBound::AtMost},
};

const StepKind* kindOf(int cmd) { return cmd >= 0 && cmd < 8 ? &kKinds[cmd] : nullptr; }

}  // namespace

QString stepText(int cmd) {
    if (cmd == kSavedSelectionStep) return QStringLiteral("添加历史选号号码");
    const StepKind* k = kindOf(cmd);
    return k ? QString::fromUtf8(k->text) : QString();
}

QString stepProposal(int cmd) {
    const StepKind* k = kindOf(cmd);
    return k ? QString::fromUtf8(k->proposal) : QString();
}

frequency_picks::Prompt stepPrompt(int cmd) {
    const StepKind* k = kindOf(cmd);
    if (!k) return {};
    frequency_picks::Prompt p = k->frequency ? frequency_picks::frequencyPrompt(k->rank)
                                             : frequency_picks::omissionPrompt(k->bound);
    p.proposal = stepProposal(cmd);
    return p;
}

Opened open(SqliteDb& db, const QString& dbPath, const QString& templatePath) {
    const QString table = QStringLiteral("Xhmb");
    if (db.isOpen() && db.tableExists(table)) return Opened::Ready;
    // An older file without the table: the program's copy takes its place.
    const auto restore = [&] {
        db.close();
        QFile::remove(dbPath);
        QFile::copy(templatePath, dbPath);
        QFile(dbPath).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        return db.open(dbPath) && db.tableExists(table);
    };
    if (restore()) return Opened::Restored;
    // The copy is made once more before the program ends, for the next start.
    restore();
    return Opened::Failed;
}

}  // namespace selection_template

QList<TemplateStep> SelectionTemplate::steps() {
    QList<TemplateStep> out;
    for (const QVariantList& r : m_db.rows(QStringLiteral("SELECT [Idx],[cmd],[nmb] FROM [Xhmb] ORDER BY rowid")))
        out << TemplateStep{r.value(0).toInt(), r.value(1).toInt(), r.value(2).toInt()};
    return out;
}

bool SelectionTemplate::add(int cmd, int nmb) {
    const QVariant last = m_db.scalar(QStringLiteral("SELECT [Idx] FROM [Xhmb] ORDER BY rowid DESC LIMIT 1"));
    const int idx = last.toInt() + 1;
    return m_db.exec(QStringLiteral("INSERT INTO [Xhmb]([Idx],[cmd],[nmb]) VALUES (?1,?2,?3)"), {idx, cmd, nmb});
}

bool SelectionTemplate::remove(int idx) {
    return m_db.exec(QStringLiteral("DELETE FROM [Xhmb] WHERE [Idx] = ?1"), {idx});
}

void SelectionTemplate::runStep(NumberBoard& board, const TemplateStep& step, const Sources& sources) {
    using namespace frequency_picks;
    if (step.cmd == selection_template::kSavedSelectionStep) {
        sources.saved.load(board, step.nmb, false);
        return;
    }
    if (step.cmd < 0 || step.cmd >= 8) return;
    const Zone zone = step.cmd < 4 ? Zone::Front : Zone::Back;
    const NumberStats& stats = zone == Zone::Front ? sources.stats.front : sources.stats.back;
    switch (step.cmd % 4) {
        case 0:
        case 1: {
            const Rank rank = step.cmd % 4 == 0 ? Rank::MostFrequent : Rank::LeastFrequent;
            const std::vector<double> shares = frequencyFromStats(stats, board.zone(zone).size());
            pickInOrder(board, zone, ranked(shares, rank), step.nmb);
            break;
        }
        case 2:
            pickByOmission(board, zone, stats, OmissionBound::AtLeast, step.nmb);
            break;
        case 3:
            pickByOmission(board, zone, stats, OmissionBound::AtMost, step.nmb);
            break;
    }
}

void SelectionTemplate::run(NumberBoard& board, const Sources& sources) {
    for (const TemplateStep& step : steps()) runStep(board, step, sources);
}
