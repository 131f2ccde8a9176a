#include "prize/report_book.h"

#include "prize/prize_report.h"
#include "workspace/prompter.h"
#include "workspace/settings.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

#include <optional>

namespace {
// Reads a whole report, or nothing when it cannot be read.
std::optional<QString> readAll(const QString& path) {
    if (path.isEmpty()) return std::nullopt;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return std::nullopt;
    return QString::fromUtf8(f.readAll());
}

QStringList reportsIn(const QString& folder) {
    const QDir dir(folder);
    QStringList out;
    for (const QString& name : dir.entryList({prize_report::kPattern}, QDir::Files))
        out << dir.filePath(name);
    return out;
}
}  // namespace

ReportBook::ReportBook(QString workspaceFolder, Settings& settings, QString workspace)
    : m_folder(std::move(workspaceFolder)), m_settings(settings), m_workspace(std::move(workspace)) {}

QString ReportBook::reportFolder() const { return QDir(m_folder).filePath(prize_report::kFolder); }

QString ReportBook::pathAt(int index) const {
    return index >= 0 && index < kEntries ? m_paths[static_cast<size_t>(index)] : QString();
}

void ReportBook::load() {
    for (const QString& path : reportsIn(reportFolder())) {
        // Entries beyond the array are not stored; the walk goes on.
        if (m_count < kEntries) m_paths[static_cast<size_t>(m_count)] = path;
        ++m_count;
        QFile f(path);
        QString first, second;
        if (f.open(QIODevice::ReadOnly)) {
            QTextStream in(&f);
            first = in.readLine();
            second = in.readLine();
        }
        m_items.append({first + kItemGap + second, path});
    }
    if (m_count > 0) show(m_count - 1);
}

void ReportBook::show(int index) {
    if (std::optional<QString> text = readAll(pathAt(index))) m_shown = *text;
}

void ReportBook::previous() {
    if (m_current <= 0) return;
    --m_current;
    show(m_current);
}

void ReportBook::next() {
    if (m_current >= m_count) return;
    ++m_current;
    show(m_current);
}

void ReportBook::tickChanged(int position) { show(position); }

bool ReportBook::deleteTicked(Prompter& prompter, const QList<int>& tickedPositions) {
    if (!prompter.yesNo(kDeleteTitle, kDeleteTickedQuestion)) return false;
    for (int position : tickedPositions)
        if (position >= 0 && position < m_items.size()) QFile::remove(m_items[position].path);
    m_items.clear();
    load();
    return true;
}

bool ReportBook::deleteAll(Prompter& prompter) {
    if (!prompter.yesNo(kDeleteTitle, kDeleteAllQuestion)) return false;
    m_shown.clear();
    m_settings.write(setting_keys::MoneyDefault, QStringLiteral("0"), m_workspace);
    m_items.clear();
    // The pattern is matched in the workspace folder itself, one above the reports.
    for (const QString& path : reportsIn(m_folder)) QFile::remove(path);
    return true;
}
