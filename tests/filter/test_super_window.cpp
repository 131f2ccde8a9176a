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
    const auto o = left(SuperButton::Option25_0);
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
    EXPECT_EQ(in.skPattern, QStringLiteral("*12**05*"));
    EXPECT_EQ(table().liveCount(), 2u) << "numbers in descending order cannot match";
    EXPECT_EQ(table().numstring(0), QStringLiteral("01 05 12 20 30 03 04"));

    // In ascending order the ticket holding both dies with caption and pattern.
    prompter.answer("2").answer("5").answer("12");
    left(SuperButton::Option25_0);
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
    left(SuperButton::Option25_1);
    EXPECT_EQ(bits(table().unslt()), (std::vector<bool>{false, false, true, false, true}));
    EXPECT_EQ(reason(2), QStringLiteral("相生号过滤*05**12*"));
    // 保留号过滤 keeps only the tickets with all of them (in order).
    ws->resetAll();
    prompter.answer("2").answer("5").answer("12");
    left(SuperButton::Option25_2);
    EXPECT_EQ(bits(table().unslt()), (std::vector<bool>{false, true, true, false, true}));
    EXPECT_EQ(reason(1), QStringLiteral("保留号过滤*05**12*"));
}

TEST_F(SW, HistoryWithOneDrawKillsThreeFrontMatchesWithItsReason) {
    history = historyEndingWith({{3, 8, 15, 22, 29, 4, 9}});
    open({{3, 8, 15, 30, 31, 1, 2},   // three front numbers of the newest draw
          {3, 8, 16, 30, 31, 4, 9},   // two, and both back numbers (not counted in front)
          {1, 2, 4, 5, 6, 7, 10}});
    // The default is the number of draws; a wrong answer is asked again.
    prompter.answer("abc").answer(true).answer("-2").answer(true).answer("1");
    left(SuperButton::Option26);
    const QStringList a = asked();
    ASSERT_EQ(a.size(), 5);
    EXPECT_TRUE(a[0].startsWith(QStringLiteral("askText|历史过滤|请输入过滤检索历史号码的期数")));
    EXPECT_TRUE(a[0].endsWith(QStringLiteral("花费的时间可能较长，请您稍等！")));
    EXPECT_EQ(a[1], QStringLiteral("okCancel|输入错误|请输入数字"));
    EXPECT_EQ(a[3], QStringLiteral("okCancel|输入错误|请输入一个正数"));
    EXPECT_TRUE(dead(0));
    EXPECT_EQ(reason(0), QStringLiteral("历史同3号滤 检索前 1 期2026010期 有3码相同"));
    EXPECT_EQ(table().jsqihaoAt(0), 2026010);
    EXPECT_FALSE(dead(1));
    EXPECT_EQ(table().canshuAt(1), 2);
    EXPECT_EQ(table().canshuAt(2), 0);
    EXPECT_EQ(table().sknumAt(0), 3) << "SKnum holds the match with the oldest draw searched";

    // With the default (all ten draws) the same; a ticket equal to an older draw dies too.
    open({{31, 32, 33, 34, 35, 1, 2}, {1, 2, 4, 5, 6, 7, 10}});
    left(SuperButton::Option26);
    EXPECT_TRUE(dead(0));
    EXPECT_EQ(reason(0), QStringLiteral("历史同3号滤 检索前 10 期2026009期 有5码相同")) << "the newest draw that matched best";
}

TEST_F(SW, HistoryFiltersInTheBothZonesTabKillNothing) {
    history = historyEndingWith({{3, 8, 15, 22, 29, 4, 9}});
    open({{3, 8, 15, 22, 29, 4, 9}, {4, 9, 15, 22, 29, 4, 9}});
    ws->intQianHou = 3;
    for (SuperButton b : {SuperButton::Option26, SuperButton::Option28, SuperButton::Option27}) {
        prompter.answer("10");
        EXPECT_TRUE(left(b, ZoneScope::Both).ran);
        EXPECT_EQ(table().liveCount(), 2u) << super_filter::objectName(b).toStdString();
    }
    // The back count overwrites the front one: at most 2, below every threshold of the tab.
    EXPECT_EQ(table().canshuAt(0), 1);
    EXPECT_EQ(table().canshuAt(1), 2) << "fig7 (9) of the draw is found among the front numbers 04 09 ...";
    EXPECT_EQ(super_filter::caption(SuperButton::Option27, ZoneScope::Both), QStringLiteral("历史同6号滤"));
}

TEST_F(SW, HistoryInTheBackTabReadsNumstringAsAnEarlierFilterLeftIt) {
    history = historyEndingWith({{1, 2, 3, 4, 5, 6, 9}});
    open({{9, 10, 11, 12, 13, 1, 2}, {1, 2, 3, 4, 5, 7, 8}});
    ws->intQianHou = 2;
    // Numstring was never built: the second term is null and nothing counts.
    prompter.answer("1");
    left(SuperButton::Option26, ZoneScope::Back);
    EXPECT_EQ(table().liveCount(), 2u);
    EXPECT_EQ(table().canshuAt(0), 0);
    // After a relation filter Numstring holds all numbers: 09 of the draw's fig7 is found in
    // the first ticket's front numbers.
    ws->intQianHou = 1;
    prompter.answer("1").answer("30");
    left(SuperButton::Option25_0);
    ws->intQianHou = 2;
    prompter.answer("1");
    left(SuperButton::Option26, ZoneScope::Back);
    EXPECT_TRUE(dead(0));
    EXPECT_EQ(reason(0), QStringLiteral("历史同1号滤 检索前 1 期2026010期 有1码相同"));
    EXPECT_FALSE(dead(1));
    // Option27 is disabled in the back tab: a click asks nothing.
    prompter.clear();
    EXPECT_FALSE(left(SuperButton::Option27, ZoneScope::Back).ran);
    EXPECT_TRUE(prompter.asked().isEmpty());
}

TEST_F(SW, HistoryMessageOfTheBankerWindow) {
    open({{1, 2, 3, 4, 5, 6, 7}}, FilterInstance::Gdanagan);
    prompter.answer("x").answer(false);
    EXPECT_FALSE(left(SuperButton::Option28).ran);
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
        t.unslt().set(2);
        t.fliter()[2] = t.reasons().intern(QStringLiteral("手工删除"));
    }
    prompter.answer("2").answer("2")           // two numbers, groups of two
        .answer("3").answer("8")               // sk(1), sk(2)
        .answer("0").answer(true)              // no banker: refused by the 1..9 check
        .answer("1").answer("20");             // one banker
    left(SuperButton::Option31);
    const QStringList a = asked();
    EXPECT_EQ(a[0], QStringLiteral("askText|相克号码总个数|请输入相克数字的总数目，大小必须在1~9之间。"));
    EXPECT_EQ(a[1], QStringLiteral("askText|相克号码组个数|请输入保留数字的出现最高数目，大小必须在1~2之间。\n"
                                   "若组合的号码中含有设置个数以上的号码与相克数字中的相同，那么该组号码将被过滤掉"));
    EXPECT_EQ(a[2], QStringLiteral("askText|相克数输入|请输入第1个相克数"));
    EXPECT_TRUE(a[4].startsWith(QStringLiteral("askText|相克号码总个数|请输入保留数字的总胆数目")));
    EXPECT_EQ(a[5], QStringLiteral("okCancel|输入错误|请输入1~9之间的数字"));
    EXPECT_EQ(a[7], QStringLiteral("askText|保留胆输入|请输入第1个保留胆"));
    EXPECT_EQ(bits(table().unslt()), (std::vector<bool>{true, false, false, false}));
    EXPECT_EQ(reason(0), QStringLiteral("相克号包含过滤03 08  2个一组"));
    EXPECT_EQ(reason(2), QStringLiteral(" "));
    EXPECT_EQ(reason(3), QStringLiteral(" "));
    EXPECT_EQ(table().sknumAt(3), 2);
    EXPECT_EQ(table().sknumAt(2), 0) << "dead rows are not counted";
}

TEST_F(SW, InclusionKeepKeepsRowsWithEnoughNumbersAndMarksDeadRowsWithoutTheBanker) {
    open({{3, 8, 20, 30, 31, 1, 2}, {3, 9, 11, 30, 31, 1, 2}, {1, 2, 4, 5, 6, 1, 2}});
    in.sknum = QStringLiteral("2");
    in.skzu = 2;
    in.sk = {0, 3, 8};
    in.dannum = QStringLiteral("1");
    in.dan = {0, 20};
    super->runWorker(SuperButton::Option30, in, ZoneScope::Front);
    EXPECT_EQ(bits(table().unslt()), (std::vector<bool>{false, true, true}));
    EXPECT_EQ(reason(0), QString());
    EXPECT_EQ(reason(1), QStringLiteral("保留号包含过滤03 08  胆"));
    EXPECT_EQ(table().numstring(0), QStringLiteral("03 08 20 30 31"));
    // The back tab counts the back numbers only.
    ws->resetAll();
    ws->intQianHou = 2;
    in.sknum = QStringLiteral("1");
    in.skzu = 1;
    in.sk = {0, 2};
    in.dannum.clear();
    super->runWorker(SuperButton::Option30, in, ZoneScope::Back);
    EXPECT_EQ(table().liveCount(), 3u);
    EXPECT_EQ(table().numstring(1), QStringLiteral("01 02"));
}

TEST_F(SW, CancelAnywhereLeavesTheTableUntouched) {
    open({{3, 8, 20, 30, 31, 1, 2}, {1, 2, 4, 5, 6, 1, 2}});
    const auto before = bits(table().unslt());
    const auto pre = bits(table().preunslt());
    prompter.answer("2").answer("3").cancel();
    EXPECT_FALSE(left(SuperButton::Option25_0).ran);
    prompter.answer("3").answer("2").answer("1").answer("2").answer("3").cancel();
    EXPECT_FALSE(left(SuperButton::Option31).ran);
    prompter.answer("");  // empty ends
    EXPECT_FALSE(left(SuperButton::Option26).ran);
    prompter.answer("x").answer(false);  // Cancel on the message
    EXPECT_FALSE(left(SuperButton::Option25_1).ran);
    prompter.answer("2").answer("0");  // a number 0 ends
    EXPECT_FALSE(left(SuperButton::Option25_1).ran);
    EXPECT_EQ(bits(table().unslt()), before);
    EXPECT_EQ(bits(table().preunslt()), pre);
    EXPECT_EQ(table().numstringMode(), CandidateTable::NumstringMode::Null);
}

TEST_F(SW, RightButtonAsksTheInputSetsTheStepCodeAndRunsNothing) {
    open({{3, 8, 20, 30, 31, 1, 2}});
    const struct {
        SuperButton b;
        int code;
        QStringList answers;
    } cases[] = {{SuperButton::Option25_2, 12, {"1", "1"}},
                 {SuperButton::Option27, 4, {"3"}},
                 {SuperButton::Option31, 13, {"1", "1", "3", "1", "5"}},
                 {SuperButton::Option43, 15, {}}};
    for (const auto& c : cases) {
        for (const QString& a : c.answers) prompter.answer(a);
        in.sknum = QStringLiteral("7");
        const auto o = right(c.b);
        EXPECT_EQ(prompter.pending(), 0);
        EXPECT_TRUE(o.popupMnuAdm);
        EXPECT_FALSE(o.ran);
        EXPECT_EQ(ws->intCmdnb(), c.code);
        if (c.b == SuperButton::Option43) {
            EXPECT_EQ(in.sknum, QString()) << "Option43 records an empty sknum";
        }
    }
    EXPECT_EQ(in.sk[1], 3);
    EXPECT_EQ(in.dan[1], 5);
    EXPECT_EQ(table().liveCount(), 1u);
    EXPECT_TRUE(super->usedButtons().empty());
}

TEST_F(SW, SameAsTemplateKillsTicketsOfTheTemplateWithoutReasonOrUndo) {
    open({{1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 8}, {2, 3, 4, 5, 6, 7, 8}});
    ASSERT_TRUE(fildb.exec(schema::candidate(schema::CandidateKind::ZuheMoban).createStatement()));
    ASSERT_TRUE(fildb.exec(QStringLiteral("INSERT INTO zuheMoban(idx,fig1,fig2,fig3,fig4,fig5,fig6,fig7) "
                                          "VALUES(1,1,2,3,4,5,6,8),(2,2,3,4,5,6,7,8)")));
    {
        const FilterWorkspace::Edit edit = ws->edit();
        CandidateTable& t = edit.table();
        t.unslt().set(2);
        t.fliter()[2] = t.reasons().intern(QStringLiteral("手工删除"));
    }
    const auto pre = bits(table().preunslt());
    const auto o = left(SuperButton::Option43);
    EXPECT_TRUE(o.resetGridColumns);
    EXPECT_EQ(o.killed, 1u);
    EXPECT_EQ(bits(table().unslt()), (std::vector<bool>{false, true, true}));
    EXPECT_EQ(reason(1), QString()) << "no reason is written";
    EXPECT_EQ(reason(2), QStringLiteral("手工删除"));
    EXPECT_EQ(bits(table().preunslt()), pre);
    EXPECT_EQ(table().numstring(0), QStringLiteral("(1!2@3#4$5%6^7)"));
    EXPECT_EQ(fildb.scalar(QStringLiteral("SELECT Numstring FROM zuheMoban WHERE idx=2")).toString(),
              QStringLiteral("(2!3@4#5$6%7^8)"));
    // The window that filters the template itself has no Option43.
    open({{1, 2, 3, 4, 5, 6, 7}}, FilterInstance::GAganZhMb);
    EXPECT_FALSE(left(SuperButton::Option43).ran);
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
