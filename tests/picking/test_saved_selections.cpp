// Saved selections, the selection template and the board kept between sessions.
#include "picking/board_store.h"
#include "picking/saved_selections.h"
#include "picking/selection_template.h"
#include "picking_fixture.h"

#include <QFile>

#include <set>

namespace {

std::vector<int> listOf(const std::array<int16_t, kNumberSlots>& list, int count) {
    return {list.begin() + 1, list.begin() + 1 + count};
}
std::vector<int> picks(const ZoneBoardState& s) { return listOf(s.pickList, s.pickCount); }
std::vector<int> bankers(const ZoneBoardState& s) { return listOf(s.bankerList, s.bankerCount); }

class SavedSelectionsTest : public ::testing::Test {
protected:
    PickingWorkspace ws{false};
    SqliteDb& db() { return ws.session->savedPicksDb(); }
    SavedSelections saved{ws.session->savedPicksDb()};
    BoardState state;
    NumberBoard board{state, 35, 12};

    void banker(Zone z, int n) {
        board.zone(z).state().activeNum = static_cast<int16_t>(n);
        board.toggleBanker(z);
    }
    QList<QVariantList> rowsOf(const QString& table) {
        return db().rows(QStringLiteral("SELECT [Idx],[Name],[Bit],[f1],[f2] FROM [%1] ORDER BY rowid").arg(table));
    }
};

TEST_F(SavedSelectionsTest, AnEmptyBoardWritesFourRowsWithNoNumbers) {
    ASSERT_TRUE(saved.save(QStringLiteral("空"), state));
    for (const char* table : {"SAVE", "SAVEHOU", "SAVEdan", "SAVEHOUdan"}) {
        const QList<QVariantList> rows = rowsOf(QString::fromLatin1(table));
        ASSERT_EQ(rows.size(), 1) << table;
        EXPECT_EQ(rows[0][0].toInt(), 1);
        EXPECT_EQ(rows[0][1].toString(), QStringLiteral("空"));
        EXPECT_EQ(rows[0][2].toInt(), 0);
        EXPECT_EQ(rows[0][3].toInt(), 0);
    }
}

TEST_F(SavedSelectionsTest, LoadingReplacesTheBoardWithPicksAndBankersInOrder) {
    for (int n : {9, 3, 27}) board.programClick(Zone::Front, n);
    banker(Zone::Front, 14);
    for (int n : {11, 2}) board.programClick(Zone::Back, n);
    banker(Zone::Back, 7);
    ASSERT_TRUE(saved.save(QStringLiteral("一"), state));
    EXPECT_EQ(rowsOf(QStringLiteral("SAVE"))[0][3].toInt(), 9);

    BoardState other;
    NumberBoard second{other, 35, 12};
    second.programClick(Zone::Front, 1);
    second.programClick(Zone::Back, 5);
    saved.load(second, 1, true);
    EXPECT_EQ(picks(other.front), (std::vector<int>{9, 3, 27}));
    EXPECT_EQ(bankers(other.front), (std::vector<int>{14}));
    EXPECT_EQ(picks(other.back), (std::vector<int>{11, 2}));
    EXPECT_EQ(bankers(other.back), (std::vector<int>{7}));
    // Without the reset (a template step) the numbers add to the picks there.
    second.reselect(Zone::Front);
    second.programClick(Zone::Front, 1);
    saved.load(second, 1, false);
    EXPECT_EQ(picks(other.front), (std::vector<int>{1, 9, 3, 27}));
    // The clicks are clicks: on the back zone, still holding the selection, they take it off.
    EXPECT_EQ(other.back.pickCount, 0);
    EXPECT_EQ(other.back.bankerCount, 0);
}

TEST_F(SavedSelectionsTest, DeletingTouchesTheFrontPicksOnlyAndIdxIsNeverRenumbered) {
    board.programClick(Zone::Front, 4);
    board.programClick(Zone::Back, 6);
    ASSERT_TRUE(saved.save(QStringLiteral("甲"), state));
    board.reselect(Zone::Front);
    board.reselect(Zone::Back);
    board.programClick(Zone::Front, 8);
    board.programClick(Zone::Back, 10);
    ASSERT_TRUE(saved.save(QStringLiteral("乙"), state));

    ASSERT_TRUE(saved.remove(QStringLiteral("甲")));
    const QList<SavedSelectionRow> shown = saved.list();
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown[0].idx, 2);
    EXPECT_EQ(rowsOf(QStringLiteral("SAVEHOU")).size(), 2);

    // The list's first row is 乙, but row 1 loads Idx 1: only 甲's back picks remain of it.
    BoardState other;
    NumberBoard second{other, 35, 12};
    saved.load(second, 1, true);
    EXPECT_EQ(other.front.pickCount, 0);
    EXPECT_EQ(picks(other.back), (std::vector<int>{6}));

    // A new SAVE row takes count + 1 = 2 again; the other tables take 3.
    ASSERT_TRUE(saved.save(QStringLiteral("丙"), state));
    EXPECT_EQ(rowsOf(QStringLiteral("SAVE")).last()[0].toInt(), 2);
    EXPECT_EQ(rowsOf(QStringLiteral("SAVEHOU")).last()[0].toInt(), 3);
}

TEST_F(SavedSelectionsTest, NamesWithDoubleQuotesChangeNothing) {
    ASSERT_TRUE(saved.save(QStringLiteral("say \"hi\""), state));
    ASSERT_TRUE(saved.save(QStringLiteral("plain"), state));
    EXPECT_FALSE(saved.remove(QStringLiteral("say \"hi\"")));
    EXPECT_FALSE(saved.rename(QStringLiteral("plain"), QStringLiteral("new \"name\"")));
    EXPECT_FALSE(saved.rename(QStringLiteral("say \"hi\""), QStringLiteral("ok")));
    QStringList names;
    for (const SavedSelectionRow& r : saved.list()) names << r.name;
    EXPECT_EQ(names, (QStringList{QStringLiteral("say \"hi\""), QStringLiteral("plain")}));
    // Other names go through: a quote of the other kind as well.
    EXPECT_TRUE(saved.rename(QStringLiteral("plain"), QStringLiteral("it's")));
    EXPECT_EQ(saved.list().last().name, QStringLiteral("it's"));
}

TEST(SavedSelectionNames, StampTheDateAndTimeWithoutLeadingZeros) {
    const QDateTime at(QDate(2026, 3, 4), QTime(7, 5, 9));
    EXPECT_EQ(SavedSelections::saveProposal(at), QStringLiteral("选号保存于26-3-4日7.5.9秒"));
    EXPECT_EQ(SavedSelections::renameProposal(at), QStringLiteral("选号名字修改于26-3-4日7.5.9秒"));
}

class SelectionTemplateTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { workspace = new PickingWorkspace(true); }
    static void TearDownTestSuite() {
        delete workspace;
        workspace = nullptr;
    }
    void SetUp() override {
        ASSERT_EQ(selection_template::open(session().filterDb(), session().paths().filterDb(),
                                           session().root().filterTemplate()),
                  selection_template::Opened::Ready);
        session().filterDb().exec(QStringLiteral("DELETE FROM [Xhmb]"));
    }
    static Session& session() { return *workspace->session; }
    SelectionTemplate steps{session().filterDb()};
    SavedSelections saved{session().savedPicksDb()};
    BoardState state;
    NumberBoard board{state, 35, 12};
    SelectionTemplate::Sources sources() { return {session().stats(), saved}; }

    static inline PickingWorkspace* workspace = nullptr;
};

TEST_F(SelectionTemplateTest, NoStepsLeaveTheBoardAsItIs) {
    board.programClick(Zone::Front, 5);
    const BoardState before = state;
    steps.run(board, sources());
    EXPECT_EQ(picks(state.front), picks(before.front));
    EXPECT_EQ(state.back.pickCount, 0);
}

TEST_F(SelectionTemplateTest, StepsRunInTableOrderAddingToTheBoard) {
    // A saved selection with a front pick, a front banker and a back pick.
    BoardState savedState;
    NumberBoard savedBoard{savedState, 35, 12};
    savedBoard.programClick(Zone::Back, 12);
    savedBoard.zone(Zone::Front).state().activeNum = 35;
    savedBoard.toggleBanker(Zone::Front);
    session().savedPicksDb().exec(QStringLiteral("DELETE FROM [SAVE]; DELETE FROM [SAVEHOU]; DELETE FROM [SAVEdan]; "
                                                 "DELETE FROM [SAVEHOUdan]"));
    ASSERT_TRUE(saved.save(QStringLiteral("存"), savedState));

    ASSERT_TRUE(steps.add(0, 4));
    ASSERT_TRUE(steps.add(2, 20));
    ASSERT_TRUE(steps.add(8, 1));
    const QList<TemplateStep> listed = steps.steps();
    ASSERT_EQ(listed.size(), 3);
    EXPECT_EQ(listed[2].idx, 3);

    // Expected from the tables: the four most frequent, then omissions of 20 and more.
    std::set<int> expected;
    for (const QVariantList& r : session().historyDb().rows(
             QStringLiteral("SELECT [Number] FROM [Gailv] WHERE [Number] <= 35 ORDER BY [gailv] DESC, [Number] LIMIT 4")))
        expected.insert(r[0].toInt());
    const QList<QVariantList> last =
        session().historyDb().rows(QStringLiteral("SELECT * FROM [Ylqs] ORDER BY rowid DESC LIMIT 1"));
    const QStringList cols = session().historyDb().columns(QStringLiteral("Ylqs"));
    for (int n = 1; n <= 35; ++n)
        if (last[0][cols.indexOf(QStringLiteral("ylqs%1").arg(n))].toInt() >= 20) expected.insert(n);
    expected.erase(35);  // the saved selection makes it a banker

    steps.run(board, sources());
    const std::vector<int> front = picks(state.front);
    EXPECT_EQ(std::set<int>(front.begin(), front.end()), expected);
    EXPECT_EQ(bankers(state.front), (std::vector<int>{35}));
    EXPECT_EQ(picks(state.back), (std::vector<int>{12}));
}

TEST_F(SelectionTemplateTest, NewStepsFollowTheLastRowAndDeleteByIdx) {
    ASSERT_TRUE(steps.add(1, 10));
    ASSERT_TRUE(steps.add(5, 3));
    ASSERT_TRUE(steps.remove(1));
    ASSERT_TRUE(steps.add(7, 3));
    const QList<TemplateStep> listed = steps.steps();
    ASSERT_EQ(listed.size(), 2);
    EXPECT_EQ(listed[0].idx, 2);
    EXPECT_EQ(listed[1].idx, 3);
    EXPECT_EQ(listed[1].cmd, 7);
    EXPECT_EQ(selection_template::stepText(7), QStringLiteral("后区选择遗漏低次号码"));
    EXPECT_EQ(selection_template::stepProposal(4), QStringLiteral("3"));
    EXPECT_EQ(selection_template::stepPrompt(4).title, QStringLiteral("高频选号"));
    EXPECT_EQ(selection_template::stepText(9), QString());
}

TEST(SelectionTemplateOpen, AnOlderFileIsReplacedByTheProgramsCopy) {
    PickingWorkspace ws(false);
    Session& s = *ws.session;
    ASSERT_TRUE(s.filterDb().exec(QStringLiteral("DROP TABLE [Xhmb]")));
    EXPECT_EQ(selection_template::open(s.filterDb(), s.paths().filterDb(), s.root().filterTemplate()),
              selection_template::Opened::Restored);
    EXPECT_TRUE(s.filterDb().tableExists(QStringLiteral("Xhmb")));
    // Without a usable copy the opening fails.
    s.filterDb().exec(QStringLiteral("DROP TABLE [Xhmb]"));
    EXPECT_EQ(selection_template::open(s.filterDb(), s.paths().filterDb(), s.root().path(QStringLiteral("none.db"))),
              selection_template::Opened::Failed);
}

TEST(BoardStore, TheBoardComesBackThroughTheBoardsOwnRules) {
    PickingWorkspace ws(false);
    BoardState state;
    NumberBoard board{state, 35, 12};
    for (int n : {30, 2, 17}) board.programClick(Zone::Front, n);
    board.zone(Zone::Front).state().activeNum = 9;
    board.toggleBanker(Zone::Front);
    board.programClick(Zone::Back, 12);
    ASSERT_TRUE(board_store::save(ws.home.settings, QStringLiteral("选号"), state));

    // A smaller front zone leaves 30 out.
    BoardState restored;
    NumberBoard second{restored, 20, 12};
    second.programClick(Zone::Front, 1);
    board_store::load(ws.home.settings, QStringLiteral("选号"), second);
    EXPECT_EQ(picks(restored.front), (std::vector<int>{2, 17}));
    EXPECT_EQ(bankers(restored.front), (std::vector<int>{9}));
    EXPECT_EQ(picks(restored.back), (std::vector<int>{12}));
    EXPECT_TRUE(restored.front.bankerFlag[9]);
}

// Twelve front and two back picks come back counted as the player left them: 792 tickets, and
// not the count of the back zone's two numbers taken for both zones.
TEST(BoardStore, TheRestoredBoardCountsBothZones) {
    PickingWorkspace ws(false);
    BoardState state;
    NumberBoard board{state, 35, 12};
    for (int n : {1, 2, 4, 6, 7, 9, 11, 12, 15, 17, 19, 21}) board.leftClick(Zone::Front, n);
    for (int n : {1, 2}) board.leftClick(Zone::Back, n);
    ASSERT_EQ(state.ticketCount, 792);
    ASSERT_TRUE(board_store::save(ws.home.settings, QStringLiteral("选号"), state));
    BoardState restored;
    NumberBoard second{restored, 35, 12};
    board_store::load(ws.home.settings, QStringLiteral("选号"), second);
    EXPECT_EQ(restored.ticketCount, 792);
    EXPECT_EQ(second.statusText, board.statusText);
}

}  // namespace
