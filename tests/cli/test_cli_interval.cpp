// The integrated filter's --interval: the command line sets 自定区间's limits as the filter
// window's boxes Text66(3) and Text66(2) hold them, so a run gives what the window's logic gives
// with the same boxes.
#include "engine/candidate_store.h"
#include "filter/param/param_window.h"
#include "workspace/scripted_prompter.h"
#include "workspace/sqlite_db.h"

#include "cli/cli_fixture.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QStringList kBoxes{"filter", "integrated", "--params", "Zdqj,Onum", "--keep", "--and", "--range",
                         "Zdqj",   "2",          "4",        "--range",   "Onum",   "2",     "3"};

// The tickets of --front 1..10 --back 1,2,3 that keep 2 to 4 front numbers above `lo` up to
// `hi`, and with `evensToo` also 2 or 3 even front numbers.
int bruteForceCount(int lo, int hi, bool evensToo = true) {
    int n = 0;
    for (int mask = 0; mask < 1 << 10; ++mask) {
        if (__builtin_popcount(static_cast<unsigned>(mask)) != 5) continue;
        int evens = 0, inside = 0;
        for (int f = 1; f <= 10; ++f) {
            if (!(mask >> (f - 1) & 1)) continue;
            evens += f % 2 == 0;
            inside += f > lo && f <= hi;
        }
        if ((!evensToo || (evens >= 2 && evens <= 3)) && inside >= 2 && inside <= 4)
            n += 3;  // three back pairs each
    }
    return n;
}

// What `candidates show --all` prints for every row of a table.
QStringList shownRows(const CandidateTable& t) {
    QStringList rows;
    for (uint64_t r = 0; r < t.rowCount(); ++r) {
        QStringList cells{QString::number(t.idxAt(r))};
        for (int k = 1; k <= t.numberCount(); ++k) cells << QString::number(t.numberColumn(k)[r]);
        cells << QString::number(t.paramValueAt(r)) << QString::number(t.filteredOut().test(r) ? 1 : 0)
              << t.reasonText(r);
        rows << cells.join('\t');
    }
    return rows;
}

class CliInterval : public CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(one({"workspace", "create", "w"}), QStringLiteral("1"));
        ASSERT_EQ(one({"expand", "--front", "1,2,3,4,5,6,7,8,9,10", "--back", "1,2,3"}),
                  QStringLiteral("756"));
    }
    // The stored zuhe, as the window would reopen it.
    std::unique_ptr<CandidateTable> storedTable() {
        SqliteDb db;
        EXPECT_TRUE(db.open(QDir(cli.home()).filePath(QStringLiteral("w/filnum.db"))));
        return std::move(candidate_store::load(db, schema::CandidateKind::Combinations).table);
    }
};

TEST_F(CliInterval, GivesWhatTheWindowGivesWithTheSameBoxes) {
    std::unique_ptr<CandidateTable> table = storedTable();
    ASSERT_TRUE(table);
    const uint64_t rows = table->rowCount();

    // The window's logic with the boxes the command line is given: 自定区间 3..7 ticked with its
    // count 2..4, 偶数个数 2..3, keep and logical and.
    QTemporaryDir dir;
    FilterWorkspace workspace(FilterSource::StoredExpansion,
                              QDir(dir.path()).filePath(QStringLiteral("filnum.db")));
    workspace.openMade(std::move(table), rows);
    ParamWindow window(workspace, ParamContext{}, dir.path());
    ParamWindowState s = ParamWindowState::defaults();
    for (ParamId id : {ParamId::CustomRange, ParamId::EvenCount}) {
        s.integratedBox[static_cast<size_t>(param_catalogue::runBox(id))] = true;
        s.box(id)[0] = QStringLiteral("2");
    }
    s.box(ParamId::CustomRange)[1] = QStringLiteral("4");
    s.box(ParamId::EvenCount)[1] = QStringLiteral("3");
    s.box(ParamId::CustomRange)[3] = QStringLiteral("3");  // Text66(3), the lower limit
    s.box(ParamId::CustomRange)[2] = QStringLiteral("7");  // Text66(2), the upper limit
    ScriptedPrompter prompter;
    window.clickIntegrated(s, prompter);
    workspace.waitForWrite();
    const CandidateTable& expected = workspace.table();
    ASSERT_EQ(expected.liveCount(), static_cast<uint64_t>(bruteForceCount(3, 7)));

    const QString live = one(kBoxes + QStringList{"--interval", "3", "7"});
    EXPECT_EQ(live, QString::number(expected.liveCount()));
    const CliRun all = cli.run({"candidates", "show", "--all"});
    const QStringList shown = all.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(shown.size(), static_cast<qsizetype>(rows) + 1);
    const QStringList want = shownRows(expected);
    for (qsizetype r = 0; r < want.size(); ++r) ASSERT_EQ(shown[r + 1], want[r]) << "row " << r;
    // A ticket that failed both carries both reasons in the order of the run, the interval
    // written into 自定区间's.
    EXPECT_TRUE(all.out.contains(QStringLiteral("\t1\t偶数个数大小:1 保留2~3自定区间3~7大小:1 保留2~4\n")));
}

TEST_F(CliInterval, TheIntervalChangesTheResult) {
    // The boxes' defaults 0..9 count the numbers 1 to 9.
    EXPECT_EQ(one(kBoxes), QString::number(bruteForceCount(0, 9)));
    EXPECT_EQ(one({"filter", "reset-all"}), QStringLiteral("756"));
    EXPECT_EQ(one(kBoxes + QStringList{"--interval", "3", "7"}), QString::number(bruteForceCount(3, 7)));
    EXPECT_EQ(one({"filter", "reset-all"}), QStringLiteral("756"));
    EXPECT_EQ(one(kBoxes + QStringList{"--interval", "5,10"}), QString::number(bruteForceCount(5, 10)));
    EXPECT_NE(bruteForceCount(0, 9), bruteForceCount(3, 7));

    // The single filter and a saved setting read the same two boxes.
    EXPECT_EQ(one({"filter", "reset-all"}), QStringLiteral("756"));
    EXPECT_EQ(one({"filter", "param", "Zdqj", "--keep", "--range", "2", "4", "--interval", "3", "7"}),
              QString::number(bruteForceCount(3, 7, false)));
    one({"setting", "save", "区间", "--params", "Zdqj", "--interval", "3", "7"});
    EXPECT_TRUE(one({"setting", "load", "区间"}).contains(QStringLiteral("\nOption66\t0\t9\t7\t")));
}

}  // namespace
