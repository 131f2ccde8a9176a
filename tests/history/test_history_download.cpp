// Both downloads against a small HTTP server on 127.0.0.1 that the test starts and that stops
// by itself after a few requests.
#include "history/history_actions.h"
#include "history/history_download.h"
#include "history/history_texts.h"
#include "history_fixture.h"
#include "support/tiny_http_server.h"

#include <QHash>
#include <QTemporaryDir>
#include <QUrl>

using Outcome = HistoryActionResult::Outcome;

namespace {

const QString kGame = QStringLiteral("安徽风采15选5");
const QString kTextPath = QStringLiteral("/download/lshm/TXT/安徽风采15选5历史开奖号码.Txt");
const QString kDbPath = QStringLiteral("/download/lshm/中国体彩大乐透.mdb");
constexpr int kTimeoutMs = 5000;

// A database as the service sends it: a fig table with the issue and all seven numbers.
QByteArray serviceDatabase(const QList<QVariantList>& rows) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("service.db"));
    {
        SqliteDb db;
        EXPECT_TRUE(db.open(path, true));
        EXPECT_TRUE(
            db.exec(QStringLiteral("CREATE TABLE fig(Idx integer, fig0 integer, fig1 integer, fig2 integer, "
                                   "fig3 integer, fig4 integer, fig5 integer, fig6 integer, fig7 integer)")));
        for (const QVariantList& r : rows)
            EXPECT_TRUE(db.exec(QStringLiteral("INSERT INTO fig VALUES (?1,?2,?3,?4,?5,?6,?7,?8,?9)"), r));
    }
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return f.readAll();
}

}  // namespace

using HistoryDownloadTest = HistoryFixture;

TEST_F(HistoryDownloadTest, TextListReplacesTheGamesFile) {
    const QByteArray text = "2004001 01 05 09 12 15 03 07\r\n2004002 02 06 08 11 14 01 09\r\n";
    TinyHttpServer server({{kTextPath, text}});
    home.settings.write(setting_keys::DownloadHost, server.host());
    const QString target = QDir(home.root.otherHistoryTextFolder()).filePath(kGame + QStringLiteral(".Txt"));
    QFile old(target);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();

    QStringList shown;
    const HistoryActionResult r = HistoryDownload(*session, prompter, kTimeoutMs).downloadText([&] {
        shown = HistoryDownload::downloadableGames();
        return kGame;
    });
    ASSERT_TRUE(r.done()) << prompter.messages().join('\n').toStdString();
    EXPECT_EQ(r.path, target);
    EXPECT_EQ(server.requested(), QStringList{kTextPath});
    QFile f(target);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), text);
    EXPECT_FALSE(
        QFile::exists(QDir(home.root.otherHistoryTextFolder()).filePath(kGame + QStringLiteral(".tmp"))));
    EXPECT_EQ(prompter.asked().first().title, history_texts::kDownloadTitle);
    EXPECT_EQ(prompter.asked().first().text, history_texts::kDownloadTextQuestion);
    EXPECT_EQ(shown.size(), 44);
    EXPECT_EQ(shown.first(), QStringLiteral("安徽风采15选5"));
    EXPECT_EQ(shown.last(), QStringLiteral("重庆体育15选5"));
    // The file is ready for the import.
    ASSERT_TRUE(HistoryImport(*session, prompter).importFile(HistoryImport::Mode::Whole, target).done());
    EXPECT_EQ(session->drawCount(), 2);
}

TEST_F(HistoryDownloadTest, FailuresShowOneMessageAndChangeNothing) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11"}).done());
    const QStringList before = dump();
    TinyHttpServer server({});
    HistoryDownload download(*session, prompter, kTimeoutMs);
    download.setHost(server.host());
    // Closing frmLstUrl, or saying no, asks nothing of the service.
    EXPECT_EQ(download.downloadText([] { return QString(); }).outcome, Outcome::Cancelled);
    prompter.answer(false);
    EXPECT_EQ(download.downloadDatabase().outcome, Outcome::Cancelled);
    EXPECT_TRUE(server.requested().isEmpty());
    // A name outside the list is never asked for.
    EXPECT_EQ(download.downloadText([] { return QStringLiteral("../../etc"); }).outcome, Outcome::Failed);
    EXPECT_TRUE(server.requested().isEmpty());
    // The service has neither file.
    prompter.clear();
    EXPECT_EQ(download.downloadText([] { return kGame; }).outcome, Outcome::Failed);
    EXPECT_EQ(download.downloadDatabase().outcome, Outcome::Failed);
    EXPECT_EQ(server.requested(), (QStringList{kTextPath, kDbPath}));
    EXPECT_EQ(prompter.messages(),
              (QStringList{history_texts::kDownloadFailed, history_texts::kDownloadFailed}));
    EXPECT_FALSE(
        QFile::exists(QDir(home.root.otherHistoryTextFolder()).filePath(kGame + QStringLiteral(".Txt"))));
    // Nobody listens at all.
    prompter.clear();
    download.setHost(QStringLiteral("http://127.0.0.1:1"));
    EXPECT_EQ(download.downloadDatabase().outcome, Outcome::Failed);
    EXPECT_EQ(prompter.messages(), QStringList{history_texts::kDownloadFailed});
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(session->drawCount(), 1);
}

TEST_F(HistoryDownloadTest, DatabaseReplacesTheHistory) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11", "2007002 15 22 31 34 35 05 12"}).done());
    // The reduced fig of filnum.db keeps a 16-bit issue: the copy stops at the first that does not fit.
    TinyHttpServer server({{kDbPath, serviceDatabase({{1, 101, 1, 2, 3, 4, 5, 1, 2},
                                                      {2, 102, 6, 7, 8, 9, 10, 3, 4},
                                                      {3, 2007003, 11, 12, 13, 14, 15, 5, 6}})}});
    home.settings.write(setting_keys::DownloadHost, server.host());
    const HistoryActionResult r = HistoryDownload(*session, prompter, kTimeoutMs).downloadDatabase();
    ASSERT_TRUE(r.done()) << prompter.messages().join('\n').toStdString();
    EXPECT_EQ(r.grid, GridAction::Rebuild);
    ASSERT_EQ(prompter.asked().size(), 2);
    EXPECT_EQ(prompter.asked()[1].kind, QStringLiteral("yesNo"));
    EXPECT_TRUE(
        prompter.asked()[1].text.startsWith(QStringLiteral("您下载的是：中国体彩大乐透历史号码 截至 ")));
    EXPECT_TRUE(
        prompter.asked()[1].text.endsWith(QStringLiteral(" 101 至 2007003期，是否确认为当前历史号码？")));

    EXPECT_EQ(session->drawCount(), 3);
    EXPECT_EQ(session->history().numbers[3], (DrawNumbers{2007003, 11, 12, 13, 14, 15, 5, 6}));
    for (const char* t : {"fig", "fighou", "figquan", "Ylqs", "YlqsHou", "YlqsQuan"})
        EXPECT_EQ(count(t), 3) << t;
    EXPECT_EQ(cell("fig", "Znum", 2).toInt(), 40);
    EXPECT_EQ(cell("fighou", "fig2", 3).toInt(), 6);
    EXPECT_EQ(session->stats().front.total, 15);
    EXPECT_EQ(session->stats().front.omission[1], 2);
    EXPECT_EQ(session->filterDb().rows("SELECT idx, fig0, fig7 FROM fig"),
              (QList<QVariantList>{{1, 101, 2}, {2, 102, 4}}));
    EXPECT_EQ(session->filterDb().columns("fig").size(), 9);
    EXPECT_EQ(history_actions::nextIssueText(*session), QStringLiteral("在右输入2007004 期历史号码:"));
    QFile text(history_actions::historyTextPath(*session));
    ASSERT_TRUE(text.open(QIODevice::ReadOnly));
    EXPECT_EQ(text.readAll(), QByteArray("01 02 03 04 05 01 02\r\n06 07 08 09 10 03 04\r\n"
                                         "2007003 11 12 13 14 15 05 06\r\n"));
    EXPECT_FALSE(
        QFile::exists(QDir(session->paths().folder()).filePath(HistoryDownload::downloadedDbName())));
}

TEST_F(HistoryDownloadTest, DatabaseDeclinedOrBrokenKeepsTheHistory) {
    ASSERT_TRUE(importLines({"2007001 22 24 29 31 35 04 11"}).done());
    const QStringList before = dump();
    const QByteArray good = serviceDatabase({{1, 2008001, 1, 2, 3, 4, 5, 1, 2}});
    TinyHttpServer server(
        {{kDbPath, good},
         {QStringLiteral("/broken/download/lshm/中国体彩大乐透.mdb"), QByteArray("no database")},
         {QStringLiteral("/beyond/download/lshm/中国体彩大乐透.mdb"),
          serviceDatabase({{1, 2008001, 1, 2, 3, 4, 37, 1, 2}})}});
    HistoryDownload download(*session, prompter, kTimeoutMs);
    download.setHost(server.host());
    // OK to download, No to the confirmation.
    prompter.answer(true).answer(false);
    EXPECT_EQ(download.downloadDatabase().outcome, Outcome::Cancelled);
    for (const char* prefix : {"/broken", "/beyond"}) {
        prompter.clear();
        download.setHost(server.host() + QLatin1String(prefix));
        EXPECT_EQ(download.downloadDatabase().outcome, Outcome::Failed) << prefix;
        EXPECT_EQ(prompter.messages(), QStringList{history_texts::kDownloadFailed});
    }
    EXPECT_EQ(server.requested().size(), 3);
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(session->drawCount(), 1);
    EXPECT_EQ(session->filterDb().columns("fig").size(), 7);
}
