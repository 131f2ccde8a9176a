// Filter templates: recording through the popup (with the overwrite of a dismissed popup),
// replay on the current flags, browsing with the Label3 texts, the deletes, and the snapshot
// through moban and back.
#include "filter/templates/saved_setting_store.h"
#include "super_fixture.h"

namespace {

class Moban : public SuperWindowTest {
protected:
    // Right button on Option29 and the popup closed with or without mnuAdf.
    TemplateRecorder::RecordOutcome recordOption29(bool pick = true) {
        return recorder->popupClosed(pick, RecordSource::integrated(), state, in);
    }
    TemplateRecorder::RecordOutcome recordSuper(SuperButton b, const QStringList& answers, bool pick = true,
                                                ZoneScope tab = ZoneScope::Front) {
        for (const QString& a : answers) prompter.answer(a);
        EXPECT_TRUE(right(b, tab).popupRecordMenu);
        return recorder->popupClosed(pick, RecordSource::super(b), state, in);
    }
    std::vector<QVariantMap> rows() { return TemplateStore(filterDb).rows(); }
    QVariant col(const QVariantMap& row, const char* name) {
        return filter_snapshot::column(row, QString::fromLatin1(name));
    }
};

TEST_F(Moban, Option29RecordsCodeZeroInAFreshWindowAndTheLastCodeAfterCommand3) {
    open({{1, 2, 3, 4, 5, 6, 7}, {8, 9, 10, 11, 12, 1, 2}});
    EXPECT_EQ(recorder->stepScrollMax(), 1) << "an empty template";
    state.integratedBox[0] = true;
    state.box(ParamId::NumberSum) = {QStringLiteral("0"), QStringLiteral("20"), QStringLiteral("18"),
                                     QString()};
    auto r = recordOption29();
    EXPECT_TRUE(r.added);
    EXPECT_EQ(r.stepScrollMax, 1);
    // Right button on Command3: code 1, and nothing to store.
    EXPECT_TRUE(
        ws->release(FilterWorkspace::Button::InvertLast, FilterWorkspace::Mouse::Right).popupRecordMenu);
    recorder->popupClosed(true, RecordSource::invert(), state, in);
    // Option29 now records code 1 with a snapshot.
    r = recordOption29();
    EXPECT_EQ(r.stepScrollMax, 3);
    const auto all = rows();
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(col(all[0], "Idx").toInt(), 1);
    EXPECT_EQ(col(all[0], "intCmdnb").toInt(), 0);
    EXPECT_EQ(col(all[0], "sh_2").toString(), QStringLiteral("20"));
    EXPECT_EQ(col(all[0], "chk0").toInt(), 1);
    EXPECT_EQ(col(all[0], "baoliu").toInt(), 1);
    EXPECT_EQ(col(all[1], "intCmdnb").toInt(), 1);
    // An inversion stores no input: its columns keep what the new row had.
    EXPECT_TRUE(col(all[1], "sknum").isNull());
    EXPECT_EQ(col(all[1], "sh_2").toInt(), 0);
    EXPECT_EQ(col(all[2], "intCmdnb").toInt(), 1);
    EXPECT_EQ(col(all[2], "sh_2").toString(), QStringLiteral("20"));
    EXPECT_EQ(col(all[2], "intQianHou").toInt(), 1);

    // Replay: the integrated filter (sum 1+2+3+4+5 = 15 keeps, 50 dies), then the third step
    // replays as an inversion, not as a snapshot: invert last twice. The first swaps both rows;
    // the second takes the state after the filter as its reference and swaps row 0 back.
    SuperInputs fresh;
    const auto out = recorder->replay(state, fresh, ZoneScope::Front);
    EXPECT_EQ(out.steps, 3);
    EXPECT_TRUE(out.boxesChanged);
    EXPECT_EQ(bits(table().filteredOut()), (std::vector<bool>{false, false}));
    EXPECT_EQ(reason(0), QStringLiteral("上次反选-上次反选-"));
    EXPECT_EQ(reason(1), QStringLiteral("上次反选-各位数和大小:50 保留0~20"));
    EXPECT_EQ(ws->stepCode(), 1);
    EXPECT_EQ(recorder->usedButtons().count(QStringLiteral("Option29")), 1u);
}

TEST_F(Moban, ADismissedPopupOverwritesTheInputOfTheLastStep) {
    open({{1, 2, 3, 4, 5, 6, 7}});
    recordSuper(SuperButton::HistoryLow, {"5"});
    auto all = rows();
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(col(all[0], "intCmdnb").toInt(), 6);
    EXPECT_EQ(col(all[0], "sknum").toString(), QStringLiteral("5"));
    // Right button again with another count, popup dismissed: no row, the last one changes.
    const auto r = recordSuper(SuperButton::HistoryLow, {"9"}, false);
    EXPECT_FALSE(r.added);
    EXPECT_EQ(r.stepScrollMax, 1);
    all = rows();
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(col(all[0], "sknum").toString(), QStringLiteral("9"));
    // Even another filter's input lands on it: a relation writes sknum and sk0..sk4.
    recordSuper(SuperButton::RelationConflicting, {"2", "4", "9"}, false);
    all = rows();
    EXPECT_EQ(col(all[0], "intCmdnb").toInt(), 6) << "the code stays";
    EXPECT_EQ(col(all[0], "sknum").toString(), QStringLiteral("2"));
    EXPECT_EQ(col(all[0], "sk1").toString(), QStringLiteral("9"));
    // Dismissed over an empty template: nothing is written anywhere.
    TemplateStore(filterDb).clear();
    recordSuper(SuperButton::HistoryMiddle, {"3"}, false);
    EXPECT_TRUE(rows().empty());
}

TEST_F(Moban, ReplayOfABackTabStepWhileTheFrontTabShows) {
    history = historyEndingWith({{1, 2, 3, 4, 5, 6, 9}});
    open({{9, 10, 11, 12, 13, 1, 2}, {1, 2, 3, 4, 5, 7, 8}});
    // Recorded: a relation step (it leaves Numstring with all numbers), then in the back tab
    // 历史同1号滤 over one draw.
    recordSuper(SuperButton::RelationConflicting, {"1", "30"});
    ws->zoneScope = 2;
    recordSuper(SuperButton::HistoryLow, {"1"}, true, ZoneScope::Back);
    EXPECT_EQ(col(rows()[1], "intQianHou").toInt(), 2);
    // Shown: the front tab. The step computes in the back scope (threshold 1) and its reason
    // takes the caption the button shows.
    ws->zoneScope = 1;
    SuperInputs other;
    const auto out = recorder->replay(state, other, ZoneScope::Front);
    EXPECT_EQ(out.steps, 2);
    EXPECT_EQ(ws->zoneScope, 2) << "the scope of the last step stays";
    EXPECT_TRUE(dead(0));
    EXPECT_EQ(reason(0), QStringLiteral("历史同3号滤 检索前 1 期2026010期 有1码相同"));
    EXPECT_FALSE(dead(1));
}

TEST_F(Moban, Step13ReplaysInAFreshWindowWithoutBankers) {
    open({{3, 8, 20, 30, 31, 1, 2}, {3, 9, 11, 30, 31, 1, 2}});
    recordSuper(SuperButton::InclusionKill, {"2", "2", "3", "8", "1", "20"});
    const auto all = rows();
    EXPECT_EQ(col(all[0], "skzu").toString(), QStringLiteral("2"));
    EXPECT_EQ(col(all[0], "sk2").toString(), QStringLiteral("8"));
    // A fresh window: no banker was ever asked there.
    open({{3, 8, 20, 30, 31, 1, 2}, {3, 9, 11, 30, 31, 1, 2}});
    const auto out = recorder->replay(state, in, ZoneScope::Front);
    EXPECT_EQ(out.steps, 1);
    EXPECT_EQ(bits(table().filteredOut()), (std::vector<bool>{true, false}));
    EXPECT_EQ(reason(0), QStringLiteral("相克号包含过滤03 08  2个一组"));
}

TEST_F(Moban, BrowseShowsEachStepInLabel3AndSetsTheControls) {
    open({{1, 2, 3, 4, 5, 6, 7}});
    state.listMode = true;
    state.box(ParamId::EvenCount)[3] = QStringLiteral("1 2 3");
    state.txtZdqj = QStringLiteral("5 7");
    recordOption29();                                              // 1: code 0
    ws->release(FilterWorkspace::Button::InvertAll, FilterWorkspace::Mouse::Right);
    recorder->popupClosed(true, RecordSource::invert(), state, in);  // 2: code 2
    ws->zoneScope = 2;
    recordSuper(SuperButton::HistoryMiddle, {"30"}, true, ZoneScope::Back);  // 3: code 5, back
    ws->zoneScope = 3;
    recordSuper(SuperButton::InclusionKeep, {"3", "2", "5", "12", "33", "1", "4"});  // 4: code 14
    recordSuper(SuperButton::RelationSupporting, {"2", "5", "12"});                  // 5: code 11
    recordSuper(SuperButton::SameAsTemplate, {});                                    // 6: code 15
    // A code without a button of its own.
    TemplateStore(filterDb).addStep(17, 1);

    ParamWindowState shown = ParamWindowState::defaults();
    SuperInputs controls;
    const auto label = [&](qint64 v) {
        return recorder->browse(v, shown, controls, ZoneScope::Front).stepLabel.value_or("<kept>");
    };
    EXPECT_EQ(label(1), QStringLiteral("前区模板过滤第1步，使用“多参数整合过滤”功能，参数设置详见参数设置列表"));
    EXPECT_TRUE(shown.listMode);
    EXPECT_EQ(shown.box(ParamId::EvenCount)[3], QStringLiteral("1 2 3"));
    EXPECT_EQ(shown.txtZdqj, QStringLiteral("5 7"));
    EXPECT_EQ(label(2), QStringLiteral("前区模板过滤第2步，使用“全部组号反选(&U)”按钮功能"));
    EXPECT_EQ(label(3), QStringLiteral("后区模板过滤第3步，使用“历史同4号滤”单选按钮功能，检索期数为：30"));
    EXPECT_EQ(ws->zoneScope, 2);
    EXPECT_EQ(ws->stepCode(), 5);
    EXPECT_EQ(label(4), QStringLiteral("全区模板过滤第4步，使用“保留号包含过滤”单选按钮功能，总个数为：3，分别为：5，12，33。分为：2个一组"));
    EXPECT_EQ(controls.superNumbers[3], 33);
    EXPECT_EQ(label(5), QStringLiteral("全区模板过滤第5步，使用“相生号过滤”单选按钮功能，总个数为：2，分别为：5，12。"));
    EXPECT_EQ(label(6), QStringLiteral("全区模板过滤第6步，使用“组合模版同号滤”单选按钮功能"));
    EXPECT_EQ(label(7), QStringLiteral("<kept>"));
    EXPECT_FALSE(recorder->browse(99, shown, controls, ZoneScope::Front).found);
    EXPECT_EQ(table().liveCount(), 1u) << "browsing runs nothing";

    // The other instances name no zone and keep their scope.
    open({{1, 2, 3, 4, 5, 6, 7}}, FilterSource::StoredExpansion);
    EXPECT_EQ(label(3), QStringLiteral("模板过滤第3步，使用“历史同4号滤”单选按钮功能，检索期数为：30"));
    EXPECT_EQ(ws->zoneScope, 1);
}

TEST_F(Moban, DeletesKeepTheStepsNumberedAndReplayOfAnEmptyTemplateDoesNothing) {
    open({{1, 2, 3, 4, 5, 6, 7}});
    for (int i = 0; i < 3; ++i) recordOption29();
    EXPECT_EQ(recorder->deleteLast(), 2);
    recordOption29();
    auto all = rows();
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(col(all[2], "Idx").toInt(), 3) << "the new last step takes the freed number";
    EXPECT_EQ(recorder->clear(), 1);
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(recorder->deleteLast(), 0);
    const auto out = recorder->replay(state, in, ZoneScope::Front);
    EXPECT_EQ(out.steps, 0);
    EXPECT_FALSE(out.ran);
    recordOption29();
    EXPECT_EQ(col(rows()[0], "Idx").toInt(), 1);
}

TEST_F(Moban, SnapshotsGoThroughTheFileAndBackInBothModes) {
    open({{1, 2, 3, 4, 5, 6, 7}});
    ParamWindowState s = ParamWindowState::defaults();
    int n = 0;
    for (const ParamInfo& p : param_catalogue::all()) {
        auto& box = s.box(p.id);
        box = {QString::number(n), QString::number(n + 40), QString::number(n % 7), QStringLiteral("%1 %2").arg(n).arg(n + 1)};
        ++n;
    }
    s.txtZdqj = QStringLiteral("3 13 23");
    s.txtRc0 = QStringLiteral("2.5");
    s.txtRc1 = QStringLiteral("15");
    s.keep = false;
    s.logicAnd = false;
    for (int i = 0; i < kIntegratedBoxCount; i += 3) s.integratedBox[static_cast<size_t>(i)] = true;
    for (bool list : {false, true}) {
        s.listMode = list;
        state = s;
        recorder->clear();
        recordOption29();
        ParamWindowState back = ParamWindowState::defaults();
        SuperInputs none;
        const auto b = recorder->browse(1, back, none, ZoneScope::Front);
        EXPECT_EQ(b.effects.hideListFrame, !list);
        EXPECT_EQ(back.listMode, list);
        EXPECT_EQ(back.txtRc0, s.txtRc0);
        EXPECT_EQ(back.txtRc1, s.txtRc1);
        EXPECT_EQ(back.keep, s.keep);
        EXPECT_EQ(back.logicAnd, s.logicAnd);
        EXPECT_EQ(back.integratedBox, s.integratedBox);
        const ParamWindowState defaults = ParamWindowState::defaults();
        for (const ParamInfo& p : param_catalogue::all()) {
            const auto& got = back.box(p.id);
            const auto& want = s.box(p.id);
            SCOPED_TRACE(p.button);
            if (p.id == ParamId::CustomRange) {
                // 自定区间: range Text66(2), (3); the count limits Text66(0), (1) in both modes;
                // the list is TxtZdqj.
                EXPECT_EQ(got[0], want[0]);
                EXPECT_EQ(got[1], want[1]);
                EXPECT_EQ(got[2], list ? defaults.box(p.id)[2] : want[2]);
                EXPECT_EQ(got[3], list ? defaults.box(p.id)[3] : want[3]);
                if (list) {
                    EXPECT_EQ(back.txtZdqj, s.txtZdqj);
                }
                continue;
            }
            // One mode's columns are filled, the others stay null and the boxes keep their text.
            EXPECT_EQ(got[0], list ? defaults.box(p.id)[0] : want[0]);
            EXPECT_EQ(got[1], list ? defaults.box(p.id)[1] : want[1]);
            EXPECT_EQ(got[3], list ? want[3] : defaults.box(p.id)[3]);
        }
    }
}

}  // namespace
