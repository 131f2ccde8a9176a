// The super filters as the window runs them: prompt chains with their titles, defaults, checks
// and messages, the left and right buttons, and the cases the filters are known by.
#include "super_fixture.h"

namespace {

using SW = SuperWindowTest;

TEST_F(SW, RelationPromptChainChecksCountAndNumbersAndDescendingNumbersKillNothing) {
    open({{1, 5, 12, 20, 30, 3, 4}, {2, 6, 7, 8, 9, 1, 2}});
    prompter.answer("x").answer(true)             // not numeric: OK asks again
        .answer("9").answer(true)                 // above 5
        .answer("2")                              // two numbers
        .answer("36").answer(true)                // above the front maximum
        .answer("abc").answer(true)               // not numeric
        .answer("12").answer("5");               // descending: the pattern *12**05* matches nothing
    const auto o = left(SuperButton::RelationConflicting);
    EXPECT_TRUE(o.ran);
    EXPECT_EQ(prompter.pending(), 0);
    const QStringList a = asked();
    ASSERT_EQ(a.size(), 11);
    EXPECT_TRUE(a[0].startsWith(QStringLiteral("askText|相生/相克个数|相生表示所选的若干个号码单独出现的时候全部过滤掉")));
    EXPECT_TRUE(a[0].endsWith(QStringLiteral("大小必须在1~7之间。")));
    EXPECT_EQ(a[1], QStringLiteral("okCancel|输入错误|请按照号码排列依次输入数字"));
    EXPECT_EQ(a[3], QStringLiteral("okCancel|输入错误|请输入1~5的数字"));
    EXPECT_EQ(a[5], QStringLiteral("askText|相克数输入|请输入第1个相克数"));
    EXPECT_EQ(a[6], QStringLiteral("okCancel|输入错误|请输入1~35之间的数字"));
    EXPECT_EQ(a[8], QStringLiteral("okCancel|输入错误|请按照号码排列依次输入数字"));
    EXPECT_EQ(a[10], QStringLiteral("askText|相克数输入|请输入第2个相克数"));
    EXPECT_EQ(in.patternText, QStringLiteral("*12**05*"));
    EXPECT_EQ(table().liveCount(), 2u) << "numbers in descending order cannot match";
    EXPECT_EQ(table().numberText(0), QStringLiteral("01 05 12 20 30 03 04"));

    // In ascending order the ticket holding both dies with caption and pattern.
    prompter.answer("2").answer("5").answer("12");
    left(SuperButton::RelationConflicting);
    EXPECT_TRUE(dead(0));
    EXPECT_EQ(reason(0), QStringLiteral("相克号过滤*05**12*"));
    EXPECT_FALSE(dead(1));
}

TEST_F(SW, XiangshengWith05And12KillsTicketsWithJustOneOfThem) {
    open({{1, 5, 12, 20, 30, 3, 4},    // both in front: stays
          {2, 6, 7, 8, 9, 1, 3},       // neither: stays
          {5, 7, 9, 11, 13, 1, 2},     // just 05: dies
          {1, 2, 3, 4, 6, 5, 12},      // both in the back zone: stays
          {1, 2, 3, 4, 12, 5, 6}});    // 12 in front, 05 behind it: the pattern needs 05 first, so it dies
    prompter.answer("2").answer("5").answer("12");
    left(SuperButton::RelationSupporting);
    EXPECT_EQ(bits(table().filteredOut()), (std::vector<bool>{false, false, true, false, true}));
    EXPECT_EQ(reason(2), QStringLiteral("相生号过滤*05**12*"));
    // 保留号过滤 keeps only the tickets with all of them (in order).
    ws->resetAll();
    prompter.answer("2").answer("5").answer("12");
    left(SuperButton::RelationKeeping);
    EXPECT_EQ(bits(table().filteredOut()), (std::vector<bool>{false, true, true, false, true}));
    EXPECT_EQ(reason(1), QStringLiteral("保留号过滤*05**12*"));
}

TEST_F(SW, HistoryWithOneDrawKillsThreeFrontMatchesWithItsReason) {
    history = historyEndingWith({{3, 8, 15, 22, 29, 4, 9}});
    open({{3, 8, 15, 30, 31, 1, 2},   // three front numbers of the newest draw
          {3, 8, 16, 30, 31, 4, 9},   // two, and both back numbers (not counted in front)
          {1, 2, 4, 5, 6, 7, 10}});
    // The default is the number of draws; a wrong answer is asked again.
    prompter.answer("abc").answer(true).answer("-2").answer(true).answer("1");
    left(SuperButton::HistoryLow);
    const QStringList a = asked();
    ASSERT_EQ(a.size(), 5);
    EXPECT_TRUE(a[0].startsWith(QStringLiteral("askText|历史过滤|请输入过滤检索历史号码的期数")));
    EXPECT_TRUE(a[0].endsWith(QStringLiteral("花费的时间可能较长，请您稍等！")));
    EXPECT_EQ(a[1], QStringLiteral("okCancel|输入错误|请输入数字"));
    EXPECT_EQ(a[3], QStringLiteral("okCancel|输入错误|请输入一个正数"));
    EXPECT_TRUE(dead(0));
    EXPECT_EQ(reason(0), QStringLiteral("历史同3号滤 检索前 1 期2026010期 有3码相同"));
    EXPECT_EQ(table().matchIssueAt(0), 2026010);
    EXPECT_FALSE(dead(1));
    EXPECT_EQ(table().paramValueAt(1), 2);
    EXPECT_EQ(table().paramValueAt(2), 0);
    EXPECT_EQ(table().superCountAt(0), 3) << "SKnum holds the match with the oldest draw searched";

    // With the default (all ten draws) the same; a ticket equal to an older draw dies too.
    open({{31, 32, 33, 34, 35, 1, 2}, {1, 2, 4, 5, 6, 7, 10}});
    left(SuperButton::HistoryLow);
    EXPECT_TRUE(dead(0));
    EXPECT_EQ(reason(0), QStringLiteral("历史同3号滤 检索前 10 期2026009期 有5码相同")) << "the newest draw that matched best";
}

TEST_F(SW, HistoryFiltersInTheBothZonesTabKillNothing) {
    history = historyEndingWith({{3, 8, 15, 22, 29, 4, 9}});
    open({{3, 8, 15, 22, 29, 4, 9}, {4, 9, 15, 22, 29, 4, 9}});
    ws->zoneScope = 3;
    for (SuperButton b : {SuperButton::HistoryLow, SuperButton::HistoryMiddle, SuperButton::HistoryHigh}) {
        prompter.answer("10");
        EXPECT_TRUE(left(b, ZoneScope::Both).ran);
        EXPECT_EQ(table().liveCount(), 2u) << super_filter::objectName(b).toStdString();
    }
    // The back count overwrites the front one: at most 2, below every threshold of the tab.
    EXPECT_EQ(table().paramValueAt(0), 1);
    EXPECT_EQ(table().paramValueAt(1), 2)
        << "fig7 (9) of the draw is found among the front numbers 04 09 ...";
    EXPECT_EQ(super_filter::caption(SuperButton::HistoryHigh, ZoneScope::Both),
              QStringLiteral("历史同6号滤"));
}

TEST_F(SW, HistoryInTheBackTabReadsNumstringAsAnEarlierFilterLeftIt) {
    history = historyEndingWith({{1, 2, 3, 4, 5, 6, 9}});
    open({{9, 10, 11, 12, 13, 1, 2}, {1, 2, 3, 4, 5, 7, 8}});
    ws->zoneScope = 2;
    // Numstring was never built: the second term is null and nothing counts.
    prompter.answer("1");
    left(SuperButton::HistoryLow, ZoneScope::Back);
    EXPECT_EQ(table().liveCount(), 2u);
    EXPECT_EQ(table().paramValueAt(0), 0);
    // After a relation filter Numstring holds all numbers: 09 of the draw's fig7 is found in
    // the first ticket's front numbers.
    ws->zoneScope = 1;
    prompter.answer("1").answer("30");
    left(SuperButton::RelationConflicting);
    ws->zoneScope = 2;
    prompter.answer("1");
    left(SuperButton::HistoryLow, ZoneScope::Back);
    EXPECT_TRUE(dead(0));
    EXPECT_EQ(reason(0), QStringLiteral("历史同1号滤 检索前 1 期2026010期 有1码相同"));
    EXPECT_FALSE(dead(1));
    // Option27 is disabled in the back tab: a click asks nothing.
    prompter.clear();
    EXPECT_FALSE(left(SuperButton::HistoryHigh, ZoneScope::Back).ran);
    EXPECT_TRUE(prompter.asked().isEmpty());
}

TEST_F(SW, HistoryMessageOfTheBankerWindow) {
    open({{1, 2, 3, 4, 5, 6, 7}}, FilterSource::BankerExpansion);
    prompter.answer("x").answer(false);
    EXPECT_FALSE(left(SuperButton::HistoryMiddle).ran);
    EXPECT_EQ(asked().value(1), QStringLiteral("okCancel|输入错误|请按照号码排列依次输入数字"));
}

TEST_F(SW, InclusionKillWithABankerRevivesADeadRowWithABlankReason) {
    open({{3, 8, 20, 30, 31, 1, 2},    // 03 and 08: dies, holds the banker 20: stays dead
          {3, 9, 11, 30, 31, 1, 2},    // one of them: lives
          {1, 2, 4, 5, 6, 1, 2},       // dead by an earlier filter, no banker: comes back
          {3, 8, 11, 12, 13, 1, 2}});  // dies, lacks the banker: comes back at once
    {
        const FilterWorkspace::Edit edit = ws->edit();
        CandidateTable& t = edit.table();
        t.filteredOut().set(2);
        t.rowReasons()[2] = t.reasons().intern(QStringLiteral("手工删除"));
    }
    prompter.answer("2").answer("2")           // two numbers, groups of two
        .answer("3").answer("8")               // sk(1), sk(2)
        .answer("0").answer(true)              // no banker: refused by the 1..9 check
        .answer("1").answer("20");             // one banker
    left(SuperButton::InclusionKill);
    const QStringList a = asked();
    EXPECT_EQ(a[0], QStringLiteral("askText|相克号码总个数|请输入相克数字的总数目，大小必须在1~9之间。"));
    EXPECT_EQ(a[1], QStringLiteral("askText|相克号码组个数|请输入保留数字的出现最高数目，大小必须在1~2之间。\n"
                                   "若组合的号码中含有设置个数以上的号码与相克数字中的相同，那么该组号码将被过滤掉"));
    EXPECT_EQ(a[2], QStringLiteral("askText|相克数输入|请输入第1个相克数"));
    EXPECT_TRUE(a[4].startsWith(QStringLiteral("askText|相克号码总个数|请输入保留数字的总胆数目")));
    EXPECT_EQ(a[5], QStringLiteral("okCancel|输入错误|请输入1~9之间的数字"));
    EXPECT_EQ(a[7], QStringLiteral("askText|保留胆输入|请输入第1个保留胆"));
    EXPECT_EQ(bits(table().filteredOut()), (std::vector<bool>{true, false, false, false}));
    EXPECT_EQ(reason(0), QStringLiteral("相克号包含过滤03 08  2个一组"));
    EXPECT_EQ(reason(2), QStringLiteral(" "));
    EXPECT_EQ(reason(3), QStringLiteral(" "));
    EXPECT_EQ(table().superCountAt(3), 2);
    EXPECT_EQ(table().superCountAt(2), 0) << "dead rows are not counted";
}

TEST_F(SW, InclusionKeepKeepsRowsWithEnoughNumbersAndMarksDeadRowsWithoutTheBanker) {
    open({{3, 8, 20, 30, 31, 1, 2}, {3, 9, 11, 30, 31, 1, 2}, {1, 2, 4, 5, 6, 1, 2}});
    in.superCount = QStringLiteral("2");
    in.groupSize = 2;
    in.superNumbers = {0, 3, 8};
    in.bankerCount = QStringLiteral("1");
    in.bankers = {0, 20};
    super->runWorker(SuperButton::InclusionKeep, in, ZoneScope::Front);
    EXPECT_EQ(bits(table().filteredOut()), (std::vector<bool>{false, true, true}));
    EXPECT_EQ(reason(0), QString());
    EXPECT_EQ(reason(1), QStringLiteral("保留号包含过滤03 08  胆"));
    EXPECT_EQ(table().numberText(0), QStringLiteral("03 08 20 30 31"));
    // The back tab counts the back numbers only.
    ws->resetAll();
    ws->zoneScope = 2;
    in.superCount = QStringLiteral("1");
    in.groupSize = 1;
    in.superNumbers = {0, 2};
    in.bankerCount.clear();
    super->runWorker(SuperButton::InclusionKeep, in, ZoneScope::Back);
    EXPECT_EQ(table().liveCount(), 3u);
    EXPECT_EQ(table().numberText(1), QStringLiteral("01 02"));
}

TEST_F(SW, CancelAnywhereLeavesTheTableUntouched) {
    open({{3, 8, 20, 30, 31, 1, 2}, {1, 2, 4, 5, 6, 1, 2}});
    const auto before = bits(table().filteredOut());
    const auto pre = bits(table().previousFilteredOut());
    prompter.answer("2").answer("3").cancel();
    EXPECT_FALSE(left(SuperButton::RelationConflicting).ran);
    prompter.answer("3").answer("2").answer("1").answer("2").answer("3").cancel();
    EXPECT_FALSE(left(SuperButton::InclusionKill).ran);
    prompter.answer("");  // empty ends
    EXPECT_FALSE(left(SuperButton::HistoryLow).ran);
    prompter.answer("x").answer(false);  // Cancel on the message
    EXPECT_FALSE(left(SuperButton::RelationSupporting).ran);
    prompter.answer("2").answer("0");  // a number 0 ends
    EXPECT_FALSE(left(SuperButton::RelationSupporting).ran);
    EXPECT_EQ(bits(table().filteredOut()), before);
    EXPECT_EQ(bits(table().previousFilteredOut()), pre);
    EXPECT_EQ(table().numberTextMode(), CandidateTable::NumberTextMode::Null);
}

TEST_F(SW, RightButtonAsksTheInputSetsTheStepCodeAndRunsNothing) {
    open({{3, 8, 20, 30, 31, 1, 2}});
    const struct {
        SuperButton b;
        int code;
        QStringList answers;
    } cases[] = {{SuperButton::RelationKeeping, 12, {"1", "1"}},
                 {SuperButton::HistoryHigh, 4, {"3"}},
                 {SuperButton::InclusionKill, 13, {"1", "1", "3", "1", "5"}},
                 {SuperButton::SameAsTemplate, 15, {}}};
    for (const auto& c : cases) {
        for (const QString& a : c.answers) prompter.answer(a);
        in.superCount = QStringLiteral("7");
        const auto o = right(c.b);
        EXPECT_EQ(prompter.pending(), 0);
        EXPECT_TRUE(o.popupRecordMenu);
        EXPECT_FALSE(o.ran);
        EXPECT_EQ(ws->stepCode(), c.code);
        if (c.b == SuperButton::SameAsTemplate) {
            EXPECT_EQ(in.superCount, QString()) << "Option43 records an empty sknum";
        }
    }
    EXPECT_EQ(in.superNumbers[1], 3);
    EXPECT_EQ(in.bankers[1], 5);
    EXPECT_EQ(table().liveCount(), 1u);
    EXPECT_TRUE(super->usedButtons().empty());
}

TEST_F(SW, SameAsTemplateKillsTicketsOfTheTemplateWithoutReasonOrUndo) {
    open({{1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 8}, {2, 3, 4, 5, 6, 7, 8}});
    ASSERT_TRUE(filterDb.exec(schema::candidate(schema::CandidateKind::Template).createStatement()));
    ASSERT_TRUE(
        filterDb.exec(QStringLiteral("INSERT INTO zuheMoban(idx,fig1,fig2,fig3,fig4,fig5,fig6,fig7) "
                                     "VALUES(1,1,2,3,4,5,6,8),(2,2,3,4,5,6,7,8)")));
    {
        const FilterWorkspace::Edit edit = ws->edit();
        CandidateTable& t = edit.table();
        t.filteredOut().set(2);
        t.rowReasons()[2] = t.reasons().intern(QStringLiteral("手工删除"));
    }
    const auto pre = bits(table().previousFilteredOut());
    const auto o = left(SuperButton::SameAsTemplate);
    EXPECT_TRUE(o.resetGridColumns);
    EXPECT_EQ(o.killed, 1u);
    EXPECT_EQ(bits(table().filteredOut()), (std::vector<bool>{false, true, true}));
    EXPECT_EQ(reason(1), QString()) << "no reason is written";
    EXPECT_EQ(reason(2), QStringLiteral("手工删除"));
    EXPECT_EQ(bits(table().previousFilteredOut()), pre);
    EXPECT_EQ(table().numberText(0), QStringLiteral("(1!2@3#4$5%6^7)"));
    EXPECT_EQ(filterDb.scalar(QStringLiteral("SELECT Numstring FROM zuheMoban WHERE idx=2")).toString(),
              QStringLiteral("(2!3@4#5$6%7^8)"));
    // The window that filters the template itself has no Option43.
    open({{1, 2, 3, 4, 5, 6, 7}}, FilterSource::CombinationTemplate);
    EXPECT_FALSE(left(SuperButton::SameAsTemplate).ran);
}

TEST_F(SW, NumbersAndPassesReadTextsAsTheLanguageDoes) {
    using super_filter::numeric;
    using super_filter::passes;
    EXPECT_EQ(numeric(QStringLiteral(" 12 ")), 12.0);
    EXPECT_EQ(numeric(QStringLiteral("1e1")), 10.0);
    EXPECT_FALSE(numeric(QStringLiteral("")));
    EXPECT_FALSE(numeric(QStringLiteral("1 2")));
    EXPECT_FALSE(numeric(QStringLiteral("inf")));
    EXPECT_EQ(passes(QStringLiteral("2.5")), 2);
    EXPECT_EQ(passes(QStringLiteral("0.5")), 0);
    EXPECT_EQ(passes(QStringLiteral("abc")), 0);
    EXPECT_EQ(super_filter::toInt16(2.5), 2);
    EXPECT_EQ(super_filter::toInt16(3.5), 4);
}

}  // namespace
