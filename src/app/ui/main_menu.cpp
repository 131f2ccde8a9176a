#include "app/ui/main_menu.h"

#include "workspace/game_rules.h"

#include <QMenu>
#include <QMenuBar>

// The menu table: each row pairs a member of MenuActions with its given name and caption.

namespace {
QString u(const char* s) { return QString::fromUtf8(s); }
}  // namespace

struct MainMenu::ItemRow {
    QAction* MenuActions::*member;
    const char* english;
    const char* given;
    const char* caption;
    bool built;  // its window exists
};

// A family of items given(i) for the indices; captions by index.
struct MainMenu::FamilyRow {
    MenuActions::Family MenuActions::*member;
    const char* english;
    const char* given;  // a pattern with %1 for the index
    std::vector<int> indices;
    std::function<QString(int)> caption;
    bool checkable;
    bool built;
};

namespace {
// Built and not yet built, for the rows of the table.
constexpr bool kBuilt = true;
constexpr bool kLater = false;

std::vector<int> range(int from, int to) {
    std::vector<int> v;
    for (int i = from; i <= to; ++i) v.push_back(i);
    return v;
}

// Captions "%1数复选" and the like, with the listed exceptions.
std::function<QString(int)> captions(const char* pattern, std::vector<std::pair<int, const char*>> special) {
    return [pattern, special](int i) {
        for (const auto& [index, caption] : special)
            if (index == i) return u(caption);
        return u(pattern).arg(i);
    };
}
}  // namespace

#define SQ_ITEM(member, given, caption, built) \
    ItemRow { &MenuActions::member, #member, given, caption, built }
#define SQ_FAMILY(member, given, indices, caption, checkable, built) \
    FamilyRow { &MenuActions::member, #member, given, indices, caption, checkable, built }

QMenu* MainMenu::addMenu(QMenuBar* bar, QMenu* MenuActions::*member, const char* english, const char* given,
                         const char* caption) {
    return named(bar->addMenu(u(caption)), member, english, given);
}

QMenu* MainMenu::addSubmenu(QMenu* parent, QMenu* MenuActions::*member, const char* english, const char* given,
                            const char* caption) {
    return named(parent->addMenu(u(caption)), member, english, given);
}

// Gives a new menu its name, and its entry in the parent menu the same one.
QMenu* MainMenu::named(QMenu* m, QMenu* MenuActions::*member, const char* english, const char* given) {
    m->setObjectName(QString::fromLatin1(given));
    m->menuAction()->setObjectName(QString::fromLatin1(given));
    if (member) m_actions.*member = m;
    m_names.append({QString::fromLatin1(english), m->objectName(), m->title()});
    return m;
}

QAction* MainMenu::addItem(QMenu* menu, const QString& name, const QString& caption, bool built) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(name);
    if (built) m_built.insert(a);
    a->setEnabled(built);
    return a;
}

void MainMenu::addItems(QMenu* menu, std::initializer_list<ItemRow> rows) {
    for (const ItemRow& r : rows) {
        m_actions.*r.member = addItem(menu, QString::fromLatin1(r.given), u(r.caption), r.built);
        m_names.append({QString::fromLatin1(r.english), QString::fromLatin1(r.given), u(r.caption)});
    }
}

void MainMenu::addFamily(QMenu* menu, const FamilyRow& row) {
    const QString pattern = QString::fromLatin1(row.given);
    for (int i : row.indices) {
        QAction* a = addItem(menu, pattern.arg(i), row.caption(i), row.built);
        a->setCheckable(row.checkable);
        (m_actions.*row.member)[i] = a;
    }
    // The family's name with its index shown as "(i)", or "<i>" where the index is no argument.
    const QString index =
        pattern.contains(QLatin1String("(%1)")) ? QStringLiteral("i") : QStringLiteral("<i>");
    m_names.append({QString::fromLatin1(row.english), pattern.arg(index), row.caption(row.indices.front())});
}

void MainMenu::enable(QAction* item, bool on) const { item->setEnabled(on && isBuilt(item)); }

void MainMenu::enable(QMenu* menu, bool on) { menu->menuAction()->setEnabled(on); }

MainMenu::MainMenu(QMenuBar* bar) {
    addPickingMenu(bar);
    addSpinMenu(bar);
    addHistoryMenu(bar);
    addWindowsMenu(bar);
    addPlayModesMenu(bar);
    addSettingsMenu(bar);
    addToolsAndHelpMenus(bar);
}

// 选号管理: the picking aids: saved picks, picks by frequency and omission, the picking templates.
void MainMenu::addPickingMenu(QMenuBar* bar) {
    QMenu* select = addMenu(bar, nullptr, "pickingMenu", "mnuSelect", "选号管理(&T)");
    addItems(select, {SQ_ITEM(recallPicks, "mnuCall", "调用历史选号号码(&C)", kBuilt),
                      SQ_ITEM(savePicks, "mnuSave", "保存该次选号号码(&S)", kBuilt),
                      SQ_ITEM(addRecalledPicks, "mnuCallAdd", "添加历史选号号码(&A)", kBuilt)});
    QMenu* front = addSubmenu(select, nullptr, "frontFrequencyMenu", "mnuQupc", "前区频次选号(&Q)");
    addItems(front, {SQ_ITEM(frontFrequentPicks, "mnuHihg", "选择多个高频号码(&H)", kBuilt),
                     SQ_ITEM(frontRarePicks, "mnuLow", "选择多个低频号码(&L)", kBuilt),
                     SQ_ITEM(frontLongOmissionPicks, "mnuYHigh", "选择遗漏高次号码(&I)", kBuilt),
                     SQ_ITEM(frontShortOmissionPicks, "mnuYLow", "选择遗漏低次号码(&W)", kBuilt)});
    QMenu* back = addSubmenu(select, nullptr, "backFrequencyMenu", "mnuHupc", "后区频次选号(&H)");
    addItems(back, {SQ_ITEM(backFrequentPicks, "mnuHihgHou", "选择多个高频号码(&H)", kBuilt),
                    SQ_ITEM(backRarePicks, "mnuLowHou", "选择多个低频号码(&L)", kBuilt),
                    SQ_ITEM(backLongOmissionPicks, "mnuYHighHou", "选择遗漏高次号码(&I)", kBuilt),
                    SQ_ITEM(backShortOmissionPicks, "mnuYLowHou", "选择遗漏低次号码(&W)", kBuilt)});
    addItems(select, {SQ_ITEM(pickingTemplates, "mnusltmoban", "选号模板设置功能(&M)", kBuilt)});
}

// 摇奖控制: the spin simulator: start, pause, reset, its stability and leaving the program.
void MainMenu::addSpinMenu(QMenuBar* bar) {
    QMenu* col = addMenu(bar, nullptr, "spinMenu", "meuCol", "摇奖控制(&O)");
    addItems(col, {SQ_ITEM(spinStart, "meuSta", "开始(&S)", kBuilt),
                   SQ_ITEM(spinPause, "meuSup", "暂停(&P)", kBuilt),
                   SQ_ITEM(spinReset, "meuRst", "重置(&T)", kBuilt)});
    QMenu* spd = addSubmenu(col, nullptr, "stabilityMenu", "meuSpd", "稳定系数(&T)");
    std::vector<int> indices;
    for (const game_rules::StabilityItem& it : game_rules::stabilityItems()) indices.push_back(it.index);
    addFamily(spd, SQ_FAMILY(
                       stability, "meuSpd%1", indices,
                       [](int i) {
                           for (const game_rules::StabilityItem& it : game_rules::stabilityItems())
                               if (it.index == i) return u(it.caption);
                           return QString();
                       },
                       true, kBuilt));
    addItems(col, {SQ_ITEM(quit, "meuExt", "退出软件(&Q)", kBuilt)});
}

// 历史管理: the draw history: download, typed entry, imports, editing and clearing.
void MainMenu::addHistoryMenu(QMenuBar* bar) {
    QMenu* hol = addMenu(bar, nullptr, "historyMenu", "mnuHolmag", "历史管理(&H)");
    addItems(hol, {SQ_ITEM(downloadHistoryText, "mnuNew", "历史号码文本下载更新(&N)", kBuilt),
                   SQ_ITEM(updateHistoryOnline, "mnuNewol", "历史号码网上在线更新(&L)", kBuilt),
                   SQ_ITEM(typeNewestDraw, "mnuLsApp", "手工追加最新历史号码(&A)", kBuilt),
                   SQ_ITEM(importWholeHistory, "mnuRed", "整体读取历史号码文本(&R)", kBuilt),
                   SQ_ITEM(importNewDraws, "mnuRead", "追加读取历史号码文本(&D)", kBuilt),
                   SQ_ITEM(editHistoryText, "mnuEdit", "选择修改历史号码文本(&E)", kBuilt),
                   SQ_ITEM(deleteLastDraw, "mnuDelast", "删除上次历史号码(&D)", kBuilt),
                   SQ_ITEM(clearHistory, "meuCln", "清空历史号码列表(&C)", kBuilt)});
}

// 功能窗口: the windows: history analysis, reports, prize checks and the filter windows of earlier tables.
void MainMenu::addWindowsMenu(QMenuBar* bar) {
    QMenu* wid = addMenu(bar, &MenuActions::windowsMenu, "windowsMenu", "meuWid", "功能窗口(&D)");
    addItems(wid,
             {SQ_ITEM(analyseBothZones, "mnuSy", "前后历史分析(&S)", kBuilt),
              SQ_ITEM(analyseFrontZone, "mnuSyQian", "前区历史分析(&F)", kBuilt),
              SQ_ITEM(analyseBackZone, "mnuSyHou", "后区历史分析(&B)", kBuilt),
              SQ_ITEM(profitLossReport, "meuRepot", "盈亏报告(&R)", kBuilt),
              SQ_ITEM(backtest, "mnuBacktest", "过滤回测(&T)", kBuilt),
              SQ_ITEM(spinArrangement, "meuAgarr", "摇奖排列组合(&A)", kBuilt),
              SQ_ITEM(checkCombinations, "mnuzhInq", "组合中奖查询(&I)", kBuilt),
              SQ_ITEM(checkWheel, "mnuRtInq", "旋转组合查询(&O)", kBuilt),
              SQ_ITEM(checkTextTickets, "mnuTxInq", "文本组合查询(&X)", kBuilt),
              SQ_ITEM(checkTemplateTickets, "mnuMbInq", "模板中奖查询(&M)", kBuilt),
              SQ_ITEM(checkSixFrontTickets, "mnufsInq", "前区复式中奖查询(&Q)", kBuilt),
              SQ_ITEM(recallExpansion, "mnuCallfd", "调用上次复选/胆拖 单式组合排列", kBuilt),
              SQ_ITEM(recallWheel, "mnuCallRote", "调用上次旋转矩阵      组合排列", kBuilt),
              SQ_ITEM(recallSixFrontExpansion, "mnuCallfd6", "调用上次前区复选/胆拖6复式组合排列", kBuilt),
              SQ_ITEM(recallCombinationTemplate, "mnuCallZhmb", "调用组号模板功能", kBuilt),
              SQ_ITEM(readTicketText, "mnuRdtxt", "读取组号文本过滤(&E)", kBuilt),
              SQ_ITEM(recallTicketText, "mnuCatxt", "调用已读文本过滤(&A)", kBuilt)});
}

// 组号方式: the play modes, the wheels and the expansions into candidate tables.
void MainMenu::addPlayModesMenu(QMenuBar* bar) {
    QMenu* sl = addMenu(bar, &MenuActions::playModesMenu, "playModesMenu", "mnuSl", "组号方式(&M)");
    QMenu* agn =
        addSubmenu(sl, &MenuActions::frontMultiMenu, "frontMultiMenu", "meuAgn", "前区摇奖复选选择(&M)");
    addItems(agn, {SQ_ITEM(multiSpinSettings, "mnuMilt", "多注单选摇奖设置(&M)", kBuilt)});
    addFamily(agn,
              SQ_FAMILY(frontMulti, "meuDanxuan(%1)", range(5, 16),
                        captions("%1数复选", {{5, "5数单选(&V)"}, {6, "6数复选(&X)"}, {16, "16数复选(&I)"}}),
                        true, kLater));
    QMenu* dantuo =
        addSubmenu(sl, &MenuActions::frontBankerMenu, "frontBankerMenu", "mnuDantuo", "前区摇奖胆拖选择(&T)");
    addFamily(dantuo, SQ_FAMILY(frontBanker, "mnuDtuo(%1)", range(1, 16),
                                captions("%1拖", {{1, "1拖(&O)"}, {16, "16拖(&Q)"}}), true, kLater));
    QMenu* agnHou =
        addSubmenu(sl, &MenuActions::backMultiMenu, "backMultiMenu", "meuAgnHou", "后区摇奖复选选择(&B)");
    addFamily(agnHou,
              SQ_FAMILY(backMulti, "meuDanxuanHou(%1)", range(2, 8),
                        captions("%1数复选", {{2, "2数单选(&W)"}, {3, "3数复选(&T)"}, {8, "8数复选(&E)"}}),
                        true, kLater));
    QMenu* dantuoHou = addSubmenu(sl, &MenuActions::backBankerMenu, "backBankerMenu", "mnuDantuoHou",
                                  "后区摇奖胆拖选择(&H)");
    addFamily(dantuoHou, SQ_FAMILY(backBanker, "mnuDtuoHou(%1)", range(1, 8),
                                   captions("%1拖", {{1, "1拖(&O)"}, {8, "8拖(&I)"}}), true, kLater));
    addWheelMenus(sl);
    addItems(sl, {SQ_ITEM(multiExpansion, "mnuLst", "复选组合排列(&L)", kBuilt),
                  SQ_ITEM(bankerExpansion, "mnuDtlst", "胆拖组合排列(&S)", kBuilt),
                  SQ_ITEM(sixFrontMultiExpansion, "mnu8Lst", "前区复选6复式排列(&I)", kBuilt),
                  SQ_ITEM(sixFrontBankerExpansion, "mnuDt8lst", "前区胆拖6复式排列(&X)", kBuilt)});
}

// The wheels of 组号方式: basic, super, banker and six-number wheels.
void MainMenu::addWheelMenus(QMenu* sl) {
    QMenu* rt = addSubmenu(sl, &MenuActions::basicWheelMenu, "basicWheelMenu", "mnuRt", "基本旋转矩阵(&R)");
    addFamily(rt, SQ_FAMILY(basicWheel, "meuRt(%1)", range(9, 22),
                            captions("%1数选4中3", {{9, " 9数选4中3(&P)"}, {22, "22数选4中3(&H)"}}), false,
                            kBuilt));
    QMenu* qnjz = addSubmenu(sl, &MenuActions::superWheelMenu, "superWheelMenu", "mnuQnjz", "超级旋转矩阵(&A)");
    addFamily(qnjz, SQ_FAMILY(superWheel, "mnuRt%1", (std::vector<int>{22, 33, 43, 44, 53, 54}),
                              captions("", {{22, "中2保2(&W)"},
                                            {33, "中3保3(&T)"},
                                            {43, "中4保3(&R)"},
                                            {44, "中4保4(&U)"},
                                            {53, "中5保3(&V)"},
                                            {54, "中5保4(&F)"}}),
                              false, kBuilt));
    QMenu* dtxj =
        addSubmenu(sl, &MenuActions::bankerWheelMenu, "bankerWheelMenu", "mnuDtxj", "胆拖旋转矩阵(&D)");
    addFamily(dtxj, SQ_FAMILY(bankerWheel, "mnuZb(%1)", range(3, 5),
                              captions("", {{3, "中4保4(&U)"}, {4, "中5保4(&F)"}, {5, "中5保5(&V)"}}), false,
                              kBuilt));
    QMenu* fuxj = addSubmenu(sl, &MenuActions::sixFrontWheelMenu, "sixFrontWheelMenu", "mnuFuxj", "复式旋转矩阵(&F)");
    addFamily(fuxj, SQ_FAMILY(sixFrontWheel, "F6RT%1", (std::vector<int>{44, 54, 55, 64, 65, 76}),
                              captions("", {{44, "中4保4(&U)"},
                                            {54, "中5保4(&O)"},
                                            {55, "中5保5(&V)"},
                                            {64, "中6保4(&R)"},
                                            {65, "中6保5(&I)"},
                                            {76, "中7保6(&S)"}}),
                              false, kBuilt));
}

// 用户设置: the workspace name, the zone sizes, the prize rules and the print setting.
void MainMenu::addSettingsMenu(QMenuBar* bar) {
    QMenu* user = addMenu(bar, nullptr, "settingsMenu", "mnuUserset", "用户设置(&S)");
    addItems(user, {SQ_ITEM(renameWorkspace, "mnuName", "用户名设置(&N)", kBuilt)});
    QMenu* bit = addSubmenu(user, nullptr, "rulesMenu", "meuBit", "彩票规则(&G)");
    QMenu* qian = addSubmenu(bit, nullptr, "frontRuleMenu", "mnuQianqu", "前区(&F)");
    addFamily(qian, SQ_FAMILY(frontRule, "meuS(%1)", range(game_rules::kFrontMin, game_rules::kFrontMax),
                              game_rules::frontRuleCaption, true, kBuilt));
    QMenu* hou = addSubmenu(bit, nullptr, "backRuleMenu", "mnuHouqu", "后区(&B)");
    addFamily(hou, SQ_FAMILY(backRule, "meuSHou(%1)", range(game_rules::kBackMin, game_rules::kBackMax),
                             game_rules::backRuleCaption, true, kBuilt));
    addItems(user, {SQ_ITEM(prizeRules, "meuPlc", "中奖规则(&P)", kBuilt),
                    SQ_ITEM(printSetting, "mnuPtset", "打印设置(&R)", kBuilt)});
}

// 附赠工具, 帮助: the fortune calculator and help.
void MainMenu::addToolsAndHelpMenus(QMenuBar* bar) {
    QMenu* boun = addMenu(bar, nullptr, "toolsMenu", "mnuBoun", "附赠工具(&B)");
    addItems(boun, {SQ_ITEM(fortune, "mnuYsfx", "运势分析(&S)", kBuilt)});
    QMenu* hlp = addMenu(bar, nullptr, "helpMenu", "meuHlp", "帮助(&H)");
    addItems(hlp, {SQ_ITEM(helpDocument, "meuHelp", "帮助文档(&H)", kLater),
                   SQ_ITEM(instructions, "meuDtl", "使用说明(&T)", kLater),
                   SQ_ITEM(about, "meuAbt", "关于软件(&B)", kBuilt)});
}
