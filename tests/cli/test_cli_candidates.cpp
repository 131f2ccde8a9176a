// expand, candidates and filter run as processes: a sequence of calls behaves like a sequence of
// clicks, and a call killed while it writes leaves the record of the call before.
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace {

struct CliRun {
    int exitCode = -1;
    QString out;
    QString err;
    QStringList lines() const { return out.split(QLatin1Char('\n'), Qt::SkipEmptyParts); }
};

class CliCandidates : public ::testing::Test {
protected:
    QTemporaryDir home;

    QStringList withHome(const QStringList& args) const { return QStringList{QStringLiteral("--home"), home.path()} + args; }

    CliRun run(const QStringList& args) {
        QProcess p;
        p.start(QStringLiteral(SHUANGQU_CLI), withHome(args));
        EXPECT_TRUE(p.waitForFinished(120000)) << args.join(' ').toStdString();
        return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
    }
    QString one(const QStringList& args) {
        const CliRun r = run(args);
        EXPECT_EQ(r.exitCode, 0) << args.join(' ').toStdString() << ": " << r.err.toStdString();
        return r.out.trimmed();
    }
    QString filnumPath() const {
        QDirIterator it(home.path(), {QStringLiteral("filnum.db")}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            if (path.contains(QStringLiteral("/w1/"))) return path;
        }
        return {};
    }
    void SetUp() override { ASSERT_EQ(one({"workspace", "create", "w1"}), QStringLiteral("1")); }
};

TEST_F(CliCandidates, ASequenceOfCallsActsLikeASequenceOfClicks) {
    EXPECT_EQ(one({"expand", "--front", "30,1,9,17,22,3", "--back", "11,4"}), QStringLiteral("6"));
    CliRun show = run({"candidates", "show", "--all"});
    ASSERT_EQ(show.exitCode, 0);
    ASSERT_EQ(show.lines().size(), 7);
    EXPECT_EQ(show.lines()[0], QStringLiteral("idx\tfig1\tfig2\tfig3\tfig4\tfig5\tfig6\tfig7\tcanshu\tunslt\tfliter"));
    EXPECT_EQ(show.lines()[1], QStringLiteral("1\t1\t3\t9\t17\t22\t4\t11\t0\t0\t"));

    EXPECT_EQ(one({"filter", "invert-all"}), QStringLiteral("0"));
    EXPECT_EQ(one({"candidates", "count"}), QStringLiteral("0"));
    EXPECT_EQ(run({"candidates", "show"}).lines().size(), 1) << "the live view holds the header only";
    EXPECT_EQ(one({"filter", "reset-last"}), QStringLiteral("6"));
    EXPECT_EQ(one({"filter", "invert-last"}), QStringLiteral("0"));
    show = run({"candidates", "show", "--all"});
    EXPECT_TRUE(show.lines()[6].endsWith(QStringLiteral("\t1\t上次反选-"))) << show.lines()[6].toStdString();
    // The first press made the state before it the reference: the second swaps back.
    EXPECT_EQ(one({"filter", "invert-last"}), QStringLiteral("6"));
    show = run({"candidates", "show", "--all"});
    EXPECT_TRUE(show.lines()[6].endsWith(QStringLiteral("\t0\t上次反选-上次反选-"))) << show.lines()[6].toStdString();
    EXPECT_EQ(one({"filter", "invert-all"}), QStringLiteral("0"));
    EXPECT_EQ(one({"filter", "reset-all"}), QStringLiteral("6"));
    EXPECT_TRUE(run({"candidates", "show"}).lines()[3].endsWith(QStringLiteral("\t0\t")));

    // Bankers: mnuDtlst, 168 rows with both bankers in every row.
    EXPECT_EQ(one({"expand", "--front", "1,5,12,20,25,28,31,35", "--back", "2,6,9", "--front-bankers", "30,3"}),
              QStringLiteral("168"));
    EXPECT_EQ(one({"candidates", "count"}), QStringLiteral("168"));
    EXPECT_TRUE(run({"candidates", "show"}).lines()[1].startsWith(QStringLiteral("1\t1\t3\t5\t12\t30\t2\t6\t")));
    // Six-number rows go to zuhef and leave zuhe alone.
    EXPECT_EQ(one({"expand", "--front", "2,4,6,8,10,12,14", "--back", "1,2", "--six"}), QStringLiteral("7"));
    EXPECT_EQ(one({"candidates", "count", "--table", "zuhef"}), QStringLiteral("7"));
    EXPECT_EQ(one({"filter", "invert-all", "--table", "zuhef"}), QStringLiteral("0"));
    EXPECT_EQ(one({"candidates", "count"}), QStringLiteral("168"));
}

TEST_F(CliCandidates, DisabledEntriesAndBadInputFail) {
    CliRun r = run({"expand", "--front", "1,2,3,4,5", "--back", "1,2"});
    EXPECT_NE(r.exitCode, 0);
    EXPECT_TRUE(r.err.contains(QStringLiteral("mnuLst"))) << r.err.toStdString();
    r = run({"expand", "--front", "1,2,3,4,5,36", "--back", "1,2"});
    EXPECT_NE(r.exitCode, 0) << "36 lies outside the 35 numbers of the default game";
    r = run({"candidates", "count", "--table", "zuheRote"});
    EXPECT_NE(r.exitCode, 0) << "no wheel table yet";
    r = run({"candidates", "show", "--page", "0"});
    EXPECT_NE(r.exitCode, 0);
}

TEST_F(CliCandidates, PagesOfTenThousand) {
    // C(10, 5) * C(12, 2) = 252 * 66 = 16632 rows: two pages.
    EXPECT_EQ(one({"expand", "--front", "1,2,3,4,5,6,7,8,9,10", "--back", "1,2,3,4,5,6,7,8,9,10,11,12"}),
              QStringLiteral("16632"));
    const CliRun page2 = run({"candidates", "show", "--page", "2"});
    ASSERT_EQ(page2.lines().size(), 1 + 6632);
    EXPECT_TRUE(page2.lines()[1].startsWith(QStringLiteral("10001\t")));
}

TEST_F(CliCandidates, AWriteKilledHalfWayLeavesTheEarlierState) {
    EXPECT_EQ(one({"expand", "--front", "1,2,3,4,5,6", "--back", "1,2"}), QStringLiteral("6"));
    EXPECT_EQ(one({"filter", "invert-all"}), QStringLiteral("0"));
    const QString before = run({"candidates", "show", "--all"}).out;
    const QString db = filnumPath();
    ASSERT_FALSE(db.isEmpty());

    // All of 35/12 takes a second or more to write; it is killed inside its write transaction.
    QProcess big;
    big.start(QStringLiteral(SHUANGQU_CLI),
              withHome({"expand", "--front", "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,"
                                              "29,30,31,32,33,34,35",
                        "--back", "1,2,3,4,5,6,7,8,9,10,11,12"}));
    ASSERT_TRUE(big.waitForStarted());
    bool writing = false;
    for (int i = 0; i < 3000 && !writing; ++i) {
        QThread::msleep(10);
        writing = QFileInfo::exists(db + QStringLiteral("-journal"));
        ASSERT_EQ(big.state(), QProcess::Running) << "the write ended before it could be killed";
    }
    ASSERT_TRUE(writing);
    big.kill();  // SIGKILL
    big.waitForFinished();
    EXPECT_EQ(big.exitStatus(), QProcess::CrashExit);

    EXPECT_EQ(one({"candidates", "count"}), QStringLiteral("0"));
    EXPECT_EQ(run({"candidates", "show", "--all"}).out, before);
    EXPECT_EQ(one({"filter", "reset-last"}), QStringLiteral("6"));
}

}  // namespace
