#include "support/temp_home.h"
#include "workspace/schema.h"
#include "workspace/session.h"
#include "workspace/workspace_list.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

EnteredWorkspace makeWorkspace(TempHome& home, const QString& name) {
    WorkspaceList list(home.settings, home.root);
    list.load();
    const int row = list.create(name, {});
    EnteredWorkspace w;
    w.index = row + 1;
    w.name = name;
    return w;
}

// Every table and column a template must hold, checked against the file.
void expectSchema(const QString& file, TemplateKind kind) {
    SqliteDb db;
    ASSERT_TRUE(db.open(file)) << file.toStdString();
    for (const TableDef& t : schema::templateTables(kind)) {
        EXPECT_TRUE(db.tableExists(t.name)) << t.name.toStdString();
        EXPECT_EQ(db.columns(t.name), t.columnNames()) << t.name.toStdString();
    }
}

}  // namespace

TEST(Schema, NewWorkspaceHoldsEveryTableAndColumn) {
    TempHome home;
    makeWorkspace(home, QStringLiteral("ws"));
    const WorkspacePaths ws(home.root, QStringLiteral("ws"));
    expectSchema(ws.historyDb(), TemplateKind::History);
    expectSchema(ws.filterDb(), TemplateKind::FilterDb);
    expectSchema(ws.savedPicksDb(), TemplateKind::SavedPicks);

    SqliteDb db;
    ASSERT_TRUE(db.open(ws.historyDb()));
    // The frequency tables start with one zero row per number; the history is empty.
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT count(*) FROM Gailv")).toInt(), 36);
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT count(*) FROM GailvHou")).toInt(), 24);
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT count(*) FROM GailvQuan")).toInt(), 36);
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT sum(gailv) + sum(Glnum) FROM Gailv")).toInt(), 0);
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT count(*) FROM fig")).toInt(), 0);
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT count(*) FROM Ylqs")).toInt(), 0);
    // A column that a writer leaves out reads as 0.
    ASSERT_TRUE(db.exec(QStringLiteral("INSERT INTO fig(Idx,fig0,fig1,fig2,fig3,fig4,fig5) VALUES (1,2007001,1,2,3,4,5)")));
    EXPECT_EQ(db.scalar(QStringLiteral("SELECT Qnum3 FROM fig")).toInt(), 0);
    EXPECT_FALSE(db.scalar(QStringLiteral("SELECT Qnum3 FROM fig")).isNull());

    // The data root holds the templates, the text folders and the real history.
    for (const QString& f :
         {home.root.historyTemplate(), home.root.filterTemplate(), home.root.filnumRTemplate(),
          home.root.savedPicksTemplate(), home.root.gailvTemplate()})
        EXPECT_TRUE(QFile::exists(f)) << f.toStdString();
    EXPECT_TRUE(QDir(home.root.otherHistoryTextFolder()).exists());
    QFile bundled(QDir(home.root.historyTextFolder()).filePath(QStringLiteral("大乐透历史开奖号码.txt")));
    ASSERT_TRUE(bundled.open(QIODevice::ReadOnly));
    EXPECT_TRUE(bundled.readLine().startsWith("2007001 22 24 29 31 35 04 11"));
}

TEST(Schema, CandidateTablesFollowTheirCreateStatements) {
    const TableDef zuhe = schema::candidate(schema::CandidateKind::Combinations);
    EXPECT_EQ(zuhe.columnNames().join(','),
              QStringLiteral("idx,fig1,fig2,fig3,fig4,fig5,fig6,fig7,canshu,Numstring,NumstringHou,SKnum,JSqihao,"
                             "fliter,unslt,preunslt,tmpunslt,Gpslt,Errnum"));
    const TableDef read = schema::candidate(schema::CandidateKind::Imported);
    EXPECT_EQ(read.columnNames().indexOf(QStringLiteral("fliter")), 9);
    const TableDef six = schema::candidate(schema::CandidateKind::SixNumbers);
    EXPECT_EQ(six.columnNames().join(','), QStringLiteral("idx,fig1,fig2,fig3,fig4,fig5,fig6,canshu,Numstring,"
                                                          "fliter,unslt,preunslt,tmpunslt,Gpslt"));
}

TEST(Session, WorkspaceWhoseFilesWereDeletedReopensEmpty) {
    TempHome home;
    const EnteredWorkspace w = makeWorkspace(home, QStringLiteral("repair"));
    const WorkspacePaths ws(home.root, w.name);
    {
        Session s(home.root, home.settings);
        ASSERT_TRUE(s.open(w));
        ASSERT_TRUE(s.historyDb().exec(
            QStringLiteral("INSERT INTO fig(Idx,fig0,fig1,fig2,fig3,fig4,fig5) VALUES (1,7,1,2,3,4,5)")));
    }
    // The whole folder goes.
    ASSERT_TRUE(QDir(ws.folder()).removeRecursively());
    Session s(home.root, home.settings);
    QString error;
    ASSERT_TRUE(s.open(w, &error)) << error.toStdString();
    EXPECT_EQ(s.drawCount(), 0);
    EXPECT_TRUE(QFile::exists(ws.historyDb()));
    EXPECT_TRUE(QFile::exists(ws.savedPicksDb()));
    EXPECT_TRUE(QFile::exists(ws.filterDb()));
    expectSchema(ws.historyDb(), TemplateKind::History);
}

TEST(Session, RepairKeepsWhatIsStillThere) {
    TempHome home;
    const EnteredWorkspace w = makeWorkspace(home, QStringLiteral("partial"));
    const WorkspacePaths ws(home.root, w.name);
    {
        Session s(home.root, home.settings);
        ASSERT_TRUE(s.open(w));
        ASSERT_TRUE(s.historyDb().exec(
            QStringLiteral("INSERT INTO fig(Idx,fig0,fig1,fig2,fig3,fig4,fig5) VALUES (1,7,1,2,3,4,5)")));
        ASSERT_TRUE(s.historyDb().exec(QStringLiteral("DROP TABLE GailvHou")));
    }
    // numsave.db gone and a table missing: the history stays, the rest is rebuilt.
    ASSERT_TRUE(QFile::remove(ws.savedPicksDb()));
    Session s(home.root, home.settings);
    ASSERT_TRUE(s.open(w));
    EXPECT_EQ(s.drawCount(), 1);
    EXPECT_EQ(s.history().numbers[1][0], 7);
    EXPECT_TRUE(s.historyDb().tableExists(QStringLiteral("GailvHou")));
    EXPECT_EQ(s.historyDb().scalar(QStringLiteral("SELECT count(*) FROM GailvHou")).toInt(), 24);
    expectSchema(ws.savedPicksDb(), TemplateKind::SavedPicks);
}

TEST(Session, UnreadableFilesAreNamedAndLeftAsTheyAre) {
    TempHome home;
    const EnteredWorkspace w = makeWorkspace(home, QStringLiteral("garbled"));
    const WorkspacePaths ws(home.root, w.name);
    for (const QString& path : {ws.historyDb(), ws.filterDb(), ws.savedPicksDb()}) {
        SCOPED_TRACE(qPrintable(path));
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::ReadWrite));
        const QByteArray kept = f.readAll();
        ASSERT_TRUE(f.resize(0));
        f.write(QByteArray(4096, 'x'));
        f.close();
        Session s(home.root, home.settings);
        QString error;
        EXPECT_FALSE(s.open(w, &error));
        EXPECT_TRUE(error.contains(path)) << qPrintable(error);
        ASSERT_TRUE(f.open(QIODevice::ReadWrite));
        EXPECT_EQ(f.readAll(), QByteArray(4096, 'x'));
        ASSERT_TRUE(f.resize(0));
        f.write(kept);
        f.close();
        EXPECT_TRUE(QDir(ws.folder()).entryList({QStringLiteral("*.unreadable-*")}).isEmpty());
    }
    // A history file with other tables is not taken for one and gets none added.
    {
        ASSERT_TRUE(QFile::remove(ws.historyDb()));
        SqliteDb other;
        ASSERT_TRUE(other.open(ws.historyDb(), true));
        ASSERT_TRUE(other.exec(QStringLiteral("CREATE TABLE notes(id INTEGER)")));
    }
    Session s(home.root, home.settings);
    QString error;
    EXPECT_FALSE(s.open(w, &error));
    EXPECT_EQ(error, Session::notHistoryText(ws.historyDb()));
    SqliteDb other;
    ASSERT_TRUE(other.open(ws.historyDb()));
    EXPECT_FALSE(other.tableExists(QStringLiteral("fig")));
}

TEST(Session, AnEmptyHistoryFileIsFilledFromTheTemplate) {
    TempHome home;
    const EnteredWorkspace w = makeWorkspace(home, QStringLiteral("empty"));
    const WorkspacePaths ws(home.root, w.name);
    QFile f(ws.historyDb());
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.close();
    Session s(home.root, home.settings);
    QString error;
    ASSERT_TRUE(s.open(w, &error));
    EXPECT_TRUE(error.isEmpty()) << qPrintable(error);
    EXPECT_EQ(s.drawCount(), 0);
    EXPECT_TRUE(s.historyDb().tableExists(QStringLiteral("fighou")));
}

TEST(Session, RepairThatCannotWriteIsFatal) {
    TempHome home;
    const EnteredWorkspace w = makeWorkspace(home, QStringLiteral("blocked"));
    const WorkspacePaths ws(home.root, w.name);
    ASSERT_TRUE(QDir(ws.folder()).removeRecursively());
    // A plain file where the folder should be: the folder cannot be made again.
    QFile blocker(ws.folder());
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    Session s(home.root, home.settings);
    QString error;
    EXPECT_FALSE(s.open(w, &error));
    EXPECT_EQ(error, Session::kFatalText);
}

TEST(Settings, DefaultsAtEveryRead) {
    TempHome home;
    const QString ws = QStringLiteral("任意");
    EXPECT_EQ(home.settings.readInt(setting_keys::WorkspaceCount), 0);
    EXPECT_EQ(home.settings.readInt(setting_keys::FrontSize, ws), 35);
    EXPECT_EQ(home.settings.readInt(setting_keys::BackSize, ws), 12);
    EXPECT_EQ(home.settings.readInt(setting_keys::StabilityAtLoad, ws), 30000);
    EXPECT_EQ(home.settings.readInt(setting_keys::StabilityForPlayModes, ws), 8000);
    EXPECT_EQ(home.settings.readInt(setting_keys::TicketsPerLine, ws), 4);
    EXPECT_EQ(home.settings.read(setting_keys::FortuneBirth), QStringLiteral("1970-01-01"));
    EXPECT_EQ(home.settings.readInt(setting_keys::FortuneOption), 4);
    // One INI file per application name.
    home.settings.write(setting_keys::FrontSize, 30, ws);
    home.settings.write(setting_keys::FortuneOption, 2);
    EXPECT_TRUE(QFile::exists(home.settings.fileFor(QStringLiteral("任意QY"))));
    EXPECT_TRUE(QFile::exists(home.settings.fileFor(QStringLiteral("SLSS"))));
    EXPECT_EQ(Settings(home.root.settingsDir()).readInt(setting_keys::FrontSize, ws), 30);
    // A value that is no number falls back to the default.
    home.settings.write(setting_keys::TicketsPerLine, QStringLiteral("abc"), ws);
    EXPECT_EQ(home.settings.readInt(setting_keys::TicketsPerLine, ws), 4);
}

TEST(GameRules, StabilityItemsAndFitbase) {
    EXPECT_EQ(game_rules::stabilityItemCheckedAtLoad(30000), 8);
    EXPECT_EQ(game_rules::stabilityItemCheckedAtLoad(8000), 0);
    EXPECT_EQ(game_rules::stabilityItemCheckedAtLoad(100), 2);
    EXPECT_EQ(game_rules::stabilityItemCheckedAtLoad(1500), 9);
    const game_rules::PositionCentres f = game_rules::positionCentres(35, 12);
    const double expected[] = {0, 3.5, 10.5, 17.5, 24.5, 31.5, 3, 9};
    for (int i = 1; i <= 7; ++i) EXPECT_DOUBLE_EQ(f[i], expected[i]) << i;
}
