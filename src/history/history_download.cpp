#include "history/history_download.h"

#include "history/history_actions.h"
#include "history/history_texts.h"
#include "history/history_writer.h"
#include "workspace/prompter.h"
#include "workspace/saved_file.h"
#include "workspace/session.h"

#include <QDate>
#include <QDir>
#include <QScopeGuard>
#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSaveFile>

#include <limits>
#include <memory>

namespace {

using Outcome = HistoryActionResult::Outcome;

const QString kTextPath = QStringLiteral("/download/lshm/TXT/");
const QString kTextSuffix = QStringLiteral("历史开奖号码.Txt");
const QString kDbPath = QStringLiteral("/download/lshm/中国体彩大乐透.mdb");
constexpr int kHttpOk = 200;

bool writeBytes(const QString& path, const QByteArray& bytes) {
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    return f.write(bytes) == bytes.size() && saved_file::commit(f);
}

// The draws of the downloaded database's fig, in row order; empty when it has none or one
// of them cannot be held by the arrays.
std::optional<std::vector<std::pair<int, DrawNumbers>>> readDraws(SqliteDb& db) {
    SqliteStatement st(db,
                       QStringLiteral("SELECT [Idx],[fig0],[fig1],[fig2],[fig3],[fig4],[fig5],[fig6],[fig7] "
                                      "FROM [fig] ORDER BY rowid"));
    if (!st.ok()) return std::nullopt;
    std::vector<std::pair<int, DrawNumbers>> out;
    while (st.next()) {
        DrawNumbers d{};
        const qint64 issue = st.int64(1);
        if (issue < 0 || issue > std::numeric_limits<int32_t>::max()) return std::nullopt;
        d[0] = static_cast<int32_t>(issue);
        for (int i = 1; i <= 7; ++i) d[static_cast<size_t>(i)] = static_cast<int32_t>(st.int64(1 + i));
        if (!fitsArrays(d)) return std::nullopt;
        out.emplace_back(st.integer(0), d);
        if (static_cast<int>(out.size()) > game_rules::kMaxDraws) return std::nullopt;
    }
    if (out.empty()) return std::nullopt;
    return out;
}

// The reduced fig of filnum.db made anew from the downloaded rows. Its fig0 is a 16-bit
// column in the original layout, so the copy stops at the first issue that does not fit.
bool replaceReducedFig(SqliteDb& filterDb, const std::vector<std::pair<int, DrawNumbers>>& draws) {
    filterDb.exec(QStringLiteral("DROP TABLE [fig]"));
    if (!filterDb.exec(
            QStringLiteral("CREATE TABLE [fig]([idx] integer,[fig0] integer,[fig1] integer,[fig2] integer,"
                           "[fig3] integer,[fig4] integer,[fig5] integer,[fig6] integer,[fig7] integer)")))
        return false;
    SqliteStatement ins(filterDb,
                        QStringLiteral("INSERT INTO [fig]([idx],[fig0],[fig1],[fig2],[fig3],[fig4],[fig5],"
                                       "[fig6],[fig7]) VALUES (?1,?2,?3,?4,?5,?6,?7,?8,?9)"));
    if (!ins.ok()) return false;
    for (const auto& [idx, d] : draws) {
        if (d[0] > std::numeric_limits<int16_t>::max()) break;
        ins.bind(1, static_cast<qint64>(idx));
        for (int i = 0; i <= 7; ++i) ins.bind(i + 2, static_cast<qint64>(d[static_cast<size_t>(i)]));
        if (!ins.run()) return false;
    }
    return true;
}

}  // namespace

const QStringList& HistoryDownload::downloadableGames() {
    static const QStringList games = QStringLiteral(
                                         "安徽风采15选5,安徽风采25选5,安徽体育21选5,楚天风采22选5,"
                                         "福建风采20选5,福建体育22选5,广西风采21选5,"
                                         "广西体育20选5,贵州体育21选5,河北体育20选5,河南体育21选5,"
                                         "湖北体育21选5,湖南风采22选5,湖南体育21选5,"
                                         "黄河风采20选5,吉林风采21选5,吉林体育21选5,江苏风采15选5,"
                                         "江苏体育22选5,江西风采21选5,江西体育20选5,"
                                         "辽宁风采25选4,龙江风采22选5,龙江体育21选5,内蒙风采22选5,"
                                         "南粤风采26选5,齐鲁风采23选5,区域体育联网22选5,"
                                         "三晋风采21选5,山东体育21选5,陕西风采21选5,上海体育22选5,"
                                         "天津风采15选5,天津风采25选5,天津体育21选5,"
                                         "西北体育22选5,燕赵风采20选5,云贵川天天乐22选5,云南体育21选5,"
                                         "浙江风采15选5,浙江体育20选5,中原风采22选5,"
                                         "重庆风采20选5,重庆体育15选5")
                                         .split(QLatin1Char(','));
    return games;
}

QString HistoryDownload::downloadedDbName() { return QStringLiteral("中国体彩大乐透.db"); }

QUrl HistoryDownload::endpoint(const QString& path) const {
    QString host =
        (m_host.isEmpty() ? m_session.settings().read(setting_keys::DownloadHost) : m_host).trimmed();
    if (!host.contains(QStringLiteral("://"))) host.prepend(QStringLiteral("http://"));
    QUrl url(host);
    QString base = url.path();
    while (base.endsWith(QLatin1Char('/'))) base.chop(1);
    url.setPath(base + path);
    return url;
}

std::optional<QByteArray> HistoryDownload::get(const QUrl& url) const {
    if (!url.isValid()) return std::nullopt;
    QNetworkAccessManager manager;
    QNetworkRequest request(url);
    request.setTransferTimeout(m_timeoutMs);
    std::unique_ptr<QNetworkReply> reply(manager.get(request));
    if (!reply->isFinished()) {
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
    }
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() != QNetworkReply::NoError || status != kHttpOk) return std::nullopt;
    return reply->readAll();
}

HistoryActionResult HistoryDownload::failed() {
    m_prompter.inform(history_texts::kDownloadTitle, history_texts::kDownloadFailed,
                      Prompter::Icon::Critical);
    HistoryActionResult r;
    r.outcome = Outcome::Failed;
    return r;
}

HistoryActionResult HistoryDownload::downloadText(const GameChooser& chooseGame) {
    if (!m_prompter.okCancel(history_texts::kDownloadTitle, history_texts::kDownloadTextQuestion)) return {};
    const QString name = chooseGame ? chooseGame() : QString();
    if (name.isEmpty()) return {};
    // Only the games of the list: the name becomes part of a path.
    if (!downloadableGames().contains(name)) return failed();
    const std::optional<QByteArray> bytes = get(endpoint(kTextPath + name + kTextSuffix));
    if (!bytes) return failed();
    const QDir folder(m_session.root().otherHistoryTextFolder());
    QDir().mkpath(folder.path());
    const QString tmp = folder.filePath(name + QStringLiteral(".tmp"));
    const QString target = folder.filePath(name + QStringLiteral(".Txt"));
    if (!writeBytes(tmp, *bytes)) return failed();
    QFile::remove(target);
    if (!QFile::rename(tmp, target)) return failed();
    HistoryActionResult r;
    r.outcome = Outcome::Done;
    r.path = target;
    return r;
}

HistoryActionResult HistoryDownload::downloadDatabase(const HistoryProgress* progress) {
    if (!m_prompter.okCancel(history_texts::kDownloadTitle, history_texts::kDownloadDbQuestion)) return {};
    const std::optional<QByteArray> bytes = get(endpoint(kDbPath));
    if (!bytes) return failed();
    const QString file = QDir(m_session.paths().folder()).filePath(downloadedDbName());
    // The fetched file is read once, whatever comes of it: none is left in the workspace.
    const auto removeFetched = qScopeGuard([&file] { QFile::remove(file); });
    if (!writeBytes(file, *bytes)) return failed();

    std::optional<std::vector<std::pair<int, DrawNumbers>>> draws;
    {
        SqliteDb downloaded;
        if (!downloaded.open(file)) return failed();
        draws = readDraws(downloaded);
    }
    if (!draws) return failed();
    const QString today = QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd"));
    if (!m_prompter.yesNo(
            history_texts::kDownloadTitle,
            history_texts::downloadDbConfirm(today, draws->front().second[0], draws->back().second[0])))
        return {};

    // The downloaded draws become the history, every view computed as a whole import does.
    HistoryState state;
    for (const auto& entry : *draws) state.history.numbers.push_back(entry.second);
    SqliteDb& historyDb = m_session.historyDb();
    SqliteDb& filterDb = m_session.filterDb();
    SqliteTransaction historyTx(historyDb);
    SqliteTransaction filterTx(filterDb);
    if (!historyTx.active() || !filterTx.active()) return failed();
    const WriteStatus written = replaceAllViews(historyDb, state, ZoneShape::of(m_session), progress);
    if (written == WriteStatus::Cancelled) return {};
    if (written != WriteStatus::Ok) return failed();
    if (!replaceReducedFig(filterDb, *draws)) return failed();
    if (!historyTx.commit()) return failed();
    filterTx.commit();

    // The main window's initialisation and load, then the history text.
    m_session.loadStatistics();
    m_session.loadHistory();
    m_session.trendGridsBuilt = false;
    history_actions::writeText(m_session);
    HistoryActionResult r;
    r.outcome = Outcome::Done;
    r.grid = GridAction::Rebuild;
    r.rowsAdded = static_cast<int>(draws->size());
    return r;
}
