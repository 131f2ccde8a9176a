#include "workspace/session.h"

#include "workspace/history_loader.h"
#include "workspace/schema.h"

#include <QDir>
#include <QFile>

#include <algorithm>

Session::Session(const DataRoot& root, Settings& settings) : m_root(root), m_settings(settings) {}

namespace {

// Creates the template tables that a database lacks, keeping every table it has.
bool addMissingTables(SqliteDb& db, TemplateKind kind) {
    for (const TableDef& t : schema::templateTables(kind)) {
        if (db.tableExists(t.name)) continue;
        if (!db.exec(t.createStatement())) return false;
        for (int n = 1; n <= schema::frequencyRows(t.name); ++n)
            db.exec(QStringLiteral("INSERT INTO [%1]([Number],[gailv],[Glnum]) VALUES (?1,0,0)").arg(t.name), {n});
    }
    return true;
}

// A file without any table is a new database, as an absent one is; one with tables but none of
// its kind's is another program's.
bool hasAnyTemplateTable(SqliteDb& db, TemplateKind kind) {
    if (db.scalar(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type='table'")).toInt() == 0 &&
        db.lastError().isEmpty())
        return true;
    const QList<TableDef> tables = schema::templateTables(kind);
    return std::any_of(tables.begin(), tables.end(),
                       [&db](const TableDef& t) { return db.tableExists(t.name); });
}

// Opens a workspace database, bringing it back from its template when the file is gone. A file
// that is there but cannot be read as a database of its kind is left as it is: `error` names it.
bool openOrRestore(SqliteDb& db, const QString& file, const QString& templ, TemplateKind kind,
                   QString* error) {
    if (QFile::exists(file)) {
        if (!db.open(file)) {
            *error = Session::unreadableText(file, db.lastError());
            return false;
        }
        if (kind == TemplateKind::History && !history_loader::isHistoryDatabase(db)) {
            db.close();
            *error = Session::notHistoryText(file);
            return false;
        }
        if (kind != TemplateKind::History && !hasAnyTemplateTable(db, kind)) {
            *error = db.lastError().isEmpty() ? Session::foreignText(file)
                                              : Session::unreadableText(file, db.lastError());
            db.close();
            return false;
        }
        if (!addMissingTables(db, kind)) {
            *error = Session::unreadableText(file, db.lastError());
            return false;
        }
        return true;
    }
    *error = Session::kFatalText;
    if (!QFile::exists(templ) && !createTemplate(templ, kind)) return false;
    if (!QFile::copy(templ, file)) return false;
    QFile(file).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    return db.open(file) && addMissingTables(db, kind);
}

}  // namespace

QString Session::unreadableText(const QString& file, const QString& detail) {
    return QStringLiteral("数据库文件无法读取（%1）：%2").arg(detail, QDir::toNativeSeparators(file));
}

QString Session::foreignText(const QString& file) {
    return QStringLiteral("此文件不是本程序的数据库（没有一个应有的表），未作改动：%1")
        .arg(QDir::toNativeSeparators(file));
}

QString Session::notHistoryText(const QString& file) {
    return QStringLiteral("此文件不是历史号码数据库（缺少 fig、fighou 或 figquan 表）：%1")
        .arg(QDir::toNativeSeparators(file));
}

bool Session::open(const EnteredWorkspace& workspace, QString* error) {
    m_userIndex = workspace.index;
    m_workspaceName = workspace.name;
    m_frontSize =
        game_rules::validFront(workspace.frontSize) ? workspace.frontSize : game_rules::kDefaultFront;
    m_backSize = game_rules::validBack(workspace.backSize) ? workspace.backSize : game_rules::kDefaultBack;
    m_positionCentres = game_rules::positionCentres(m_frontSize, m_backSize);
    m_paths = std::make_unique<WorkspacePaths>(m_root, m_workspaceName);
    m_ticketsPerLine = m_settings.readInt(setting_keys::TicketsPerLine, m_workspaceName);

    auto fail = [error](const QString& detail) {
        if (error) *error = detail;
        return false;
    };
    // A workspace whose folder or files have gone comes back empty, without a question.
    // The folder is made only as a direct child of the data root, whatever the stored name.
    if (m_workspaceName.isEmpty() || m_root.makeChildFolder(m_workspaceName).isEmpty())
        return fail(kFatalText);
    m_root.ensureFirstStart();
    QString openError;
    if (!openOrRestore(m_historyDb, m_paths->historyDb(), m_root.historyTemplate(), TemplateKind::History,
                       &openError) ||
        !openOrRestore(m_savedPicksDb, m_paths->savedPicksDb(), m_root.savedPicksTemplate(),
                       TemplateKind::SavedPicks, &openError) ||
        !openOrRestore(m_filterDb, m_paths->filterDb(), m_root.filterTemplate(), TemplateKind::FilterDb,
                       &openError))
        return fail(openError);
    m_lock = workspace.lock;

    // The statistics and the draws from one state of the file.
    const SqliteReadTransaction read(m_historyDb);
    loadStatistics();
    QString loadError;
    if (!loadHistory(&loadError) && error) *error = loadError;
    return true;
}

bool Session::saveSetting(const SettingKey& key, int value, QString* error, int index) {
    if (m_settings.write(key, QString::number(value), m_workspaceName, index)) return true;
    if (error) *error = Settings::saveFailedText(m_settings.fileFor(key, m_workspaceName));
    return false;
}

bool Session::setFrontSize(int size, QString* error) {
    if (!game_rules::validFront(size) || !saveSetting(setting_keys::FrontSize, size, error)) return false;
    m_frontSize = size;
    m_positionCentres = game_rules::positionCentres(m_frontSize, m_backSize);
    return true;
}

bool Session::setBackSize(int size, QString* error) {
    if (!game_rules::validBack(size) || !saveSetting(setting_keys::BackSize, size, error)) return false;
    m_backSize = size;
    m_positionCentres = game_rules::positionCentres(m_frontSize, m_backSize);
    return true;
}

bool Session::setTicketsPerLine(int n, QString* error) {
    if (!saveSetting(setting_keys::TicketsPerLine, n, error)) return false;
    m_ticketsPerLine = n;
    return true;
}

bool Session::saveSpinValues() {
    bool saved = true;
    for (int i = 0; i < 6; ++i)
        saved = m_settings.write(setting_keys::SpinValue, QString::number(spinValues[i]), m_workspaceName,
                                 i + 1) &&
                saved;
    return saved;
}

bool Session::loadHistory(QString* error) { return history_loader::load(m_historyDb, m_history, error); }

void Session::loadStatistics() {
    const SqliteReadTransaction read(m_historyDb);
    // Omissions: the last row of each omission table. The back table is read up to Bitnum as
    // well; its columns above BitnumHou read as 0.
    struct View {
        const char* omissionTable;
        const char* frequencyTable;
        NumberStats* stats;
        int frequencyRows;
    };
    const View views[] = {{"Ylqs", "Gailv", &m_stats.front, 36},
                          {"YlqsHou", "GailvHou", &m_stats.back, 24},
                          {"YlqsQuan", "GailvQuan", &m_stats.both, 36}};
    for (const View& v : views) {
        *v.stats = NumberStats{};
        const QString table = QString::fromLatin1(v.omissionTable);
        const QStringList cols = m_historyDb.columns(table);
        const QList<QVariantList> last =
            m_historyDb.rows(QStringLiteral("SELECT * FROM [%1] ORDER BY rowid DESC LIMIT 1").arg(table));
        if (!last.isEmpty()) {
            for (int n = 1; n <= m_frontSize; ++n) {
                const int c = static_cast<int>(cols.indexOf(QStringLiteral("ylqs%1").arg(n)));
                if (c >= 0) v.stats->omission[n] = static_cast<int16_t>(last[0].value(c).toInt());
            }
        }
        const QList<QVariantList> freq = m_historyDb.rows(
            QStringLiteral("SELECT [gailv],[Glnum] FROM [%1] ORDER BY rowid LIMIT ?1").arg(v.frequencyTable),
            {v.frequencyRows});
        for (int k = 0; k < freq.size(); ++k) {
            v.stats->percent[k + 1] = freq[k].value(0).toDouble();
            v.stats->frequency[k + 1] = static_cast<int16_t>(freq[k].value(1).toInt());
            // Glsum is not stored: it is the numbers counted, which the counts add up to.
            v.stats->total += v.stats->frequency[k + 1];
        }
    }
}
