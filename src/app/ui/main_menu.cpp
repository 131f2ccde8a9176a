#include "app/ui/main_menu.h"

#include "workspace/game_rules.h"

#include <QMenu>
#include <QMenuBar>

namespace {
QString u(const char* s) { return QString::fromUtf8(s); }
}  // namespace

QMenu* MainMenu::addMenu(QMenuBar* bar, const char* name, const QString& caption) {
    QMenu* m = bar->addMenu(caption);
    m->setObjectName(QString::fromLatin1(name));
    m->menuAction()->setObjectName(QString::fromLatin1(name));
    m_menus.insert(m->objectName(), m);
    return m;
}

QMenu* MainMenu::addSubmenu(QMenu* parent, const char* name, const QString& caption) {
    QMenu* m = parent->addMenu(caption);
    m->setObjectName(QString::fromLatin1(name));
    m->menuAction()->setObjectName(QString::fromLatin1(name));
    m_menus.insert(m->objectName(), m);
    return m;
}

QAction* MainMenu::addItem(QMenu* menu, const QString& name, const QString& caption) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(name);
    a->setEnabled(isBuilt(name));
    m_actions.insert(name, a);
    return a;
}

// Items name(from)..name(to); a caption of the table, else the pattern with the index.
void MainMenu::addFamily(QMenu* menu, const char* name, int from, int to, const QHash<int, QString>& captions,
                         const QString& pattern) {
    for (int i = from; i <= to; ++i) {
        const QString caption = captions.contains(i) ? captions.value(i) : pattern.arg(i);
        addItem(menu, QStringLiteral("%1(%2)").arg(QString::fromLatin1(name)).arg(i), caption);
    }
}

bool MainMenu::isBuilt(const QString& name) {
    static const QStringList built{
        QStringLiteral("meuExt"),   QStringLiteral("mnuName"),   QStringLiteral("mnuPtset"),
        QStringLiteral("meuAbt"),   QStringLiteral("mnuNew"),    QStringLiteral("mnuNewol"),
        QStringLiteral("mnuLsApp"), QStringLiteral("mnuRed"),    QStringLiteral("mnuRead"),
        QStringLiteral("mnuEdit"),  QStringLiteral("mnuDelast"), QStringLiteral("meuCln"),
        QStringLiteral("mnuLst"),   QStringLiteral("mnuDtlst"),  QStringLiteral("mnuCallfd"),
        QStringLiteral("meuPlc"),   QStringLiteral("meuRepot")};
    if (built.contains(name)) return true;
    return name.startsWith(QLatin1String("meuSpd")) || name.startsWith(QLatin1String("meuS(")) ||
           name.startsWith(QLatin1String("meuSHou("));
}

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
    QMenu* select = addMenu(bar, "mnuSelect", u("选号管理(&T)"));
    addItem(select, QStringLiteral("mnuCall"), u("调用历史选号号码(&C)"));
    addItem(select, QStringLiteral("mnuSave"), u("保存该次选号号码(&S)"));
    addItem(select, QStringLiteral("mnuCallAdd"), u("添加历史选号号码(&A)"));
    const char* picks[] = {"选择多个高频号码(&H)", "选择多个低频号码(&L)", "选择遗漏高次号码(&I)",
                           "选择遗漏低次号码(&W)"};
    QMenu* qupc = addSubmenu(select, "mnuQupc", u("前区频次选号(&Q)"));
    const char* front[] = {"mnuHihg", "mnuLow", "mnuYHigh", "mnuYLow"};
    for (int i = 0; i < 4; ++i) addItem(qupc, QString::fromLatin1(front[i]), u(picks[i]));
    QMenu* hupc = addSubmenu(select, "mnuHupc", u("后区频次选号(&H)"));
    const char* back[] = {"mnuHihgHou", "mnuLowHou", "mnuYHighHou", "mnuYLowHou"};
    for (int i = 0; i < 4; ++i) addItem(hupc, QString::fromLatin1(back[i]), u(picks[i]));
    addItem(select, QStringLiteral("mnusltmoban"), u("选号模板设置功能(&M)"));
}

// 摇奖控制: the spin simulator: start, pause, reset, its stability and leaving the program.
void MainMenu::addSpinMenu(QMenuBar* bar) {
    QMenu* col = addMenu(bar, "meuCol", u("摇奖控制(&O)"));
    addItem(col, QStringLiteral("meuSta"), u("开始(&S)"));
    addItem(col, QStringLiteral("meuSup"), u("暂停(&P)"));
    addItem(col, QStringLiteral("meuRst"), u("重置(&T)"));
    QMenu* spd = addSubmenu(col, "meuSpd", u("稳定系数(&T)"));
    for (const game_rules::StabilityItem& it : game_rules::stabilityItems()) {
        QAction* a = addItem(spd, QStringLiteral("meuSpd%1").arg(it.index), u(it.caption));
        a->setCheckable(true);
    }
    addItem(col, QStringLiteral("meuExt"), u("退出软件(&Q)"));
}

// 历史管理: the draw history: download, typed entry, imports, editing and clearing.
void MainMenu::addHistoryMenu(QMenuBar* bar) {
    QMenu* hol = addMenu(bar, "mnuHolmag", u("历史管理(&H)"));
    const char* history[][2] = {
        {"mnuNew", "历史号码文本下载更新(&N)"},   {"mnuNewol", "历史号码网上在线更新(&L)"},
        {"mnuLsApp", "手工追加最新历史号码(&A)"}, {"mnuRed", "整体读取历史号码文本(&R)"},
        {"mnuRead", "追加读取历史号码文本(&D)"},  {"mnuEdit", "选择修改历史号码文本(&E)"},
        {"mnuDelast", "删除上次历史号码(&D)"},    {"meuCln", "清空历史号码列表(&C)"}};
    for (const auto& h : history) addItem(hol, QString::fromLatin1(h[0]), u(h[1]));
}

// 功能窗口: the windows: history analysis, reports, prize checks and the filter windows of earlier tables.
void MainMenu::addWindowsMenu(QMenuBar* bar) {
    QMenu* wid = addMenu(bar, "meuWid", u("功能窗口(&D)"));
    const char* windows[][2] = {{"mnuSy", "前后历史分析(&S)"},
                                {"mnuSyQian", "前区历史分析(&F)"},
                                {"mnuSyHou", "后区历史分析(&B)"},
                                {"meuRepot", "盈亏报告(&R)"},
                                {"meuAgarr", "摇奖排列组合(&A)"},
                                {"mnuzhInq", "组合中奖查询(&I)"},
                                {"mnuRtInq", "旋转组合查询(&O)"},
                                {"mnuTxInq", "文本组合查询(&X)"},
                                {"mnuMbInq", "模板中奖查询(&M)"},
                                {"mnufsInq", "前区复式中奖查询(&Q)"},
                                {"mnuCallfd", "调用上次复选/胆拖 单式组合排列"},
                                {"mnuCallRote", "调用上次旋转矩阵      组合排列"},
                                {"mnuCallfd6", "调用上次前区复选/胆拖6复式组合排列"},
                                {"mnuCallZhmb", "调用组号模板功能"},
                                {"mnuRdtxt", "读取组号文本过滤(&E)"},
                                {"mnuCatxt", "调用已读文本过滤(&A)"}};
    for (const auto& w : windows) addItem(wid, QString::fromLatin1(w[0]), u(w[1]));
}

// 组号方式: the play modes, the wheels and the expansions into candidate tables.
void MainMenu::addPlayModesMenu(QMenuBar* bar) {
    QMenu* sl = addMenu(bar, "mnuSl", u("组号方式(&M)"));
    QMenu* agn = addSubmenu(sl, "meuAgn", u("前区摇奖复选选择(&M)"));
    addItem(agn, QStringLiteral("mnuMilt"), u("多注单选摇奖设置(&M)"));
    addFamily(agn, "meuDanxuan", 5, 16,
              {{5, u("5数单选(&V)")}, {6, u("6数复选(&X)")}, {16, u("16数复选(&I)")}}, u("%1数复选"));
    QMenu* dantuo = addSubmenu(sl, "mnuDantuo", u("前区摇奖胆拖选择(&T)"));
    addFamily(dantuo, "mnuDtuo", 1, 16, {{1, u("1拖(&O)")}, {16, u("16拖(&Q)")}}, u("%1拖"));
    QMenu* agnHou = addSubmenu(sl, "meuAgnHou", u("后区摇奖复选选择(&B)"));
    addFamily(agnHou, "meuDanxuanHou", 2, 8,
              {{2, u("2数单选(&W)")}, {3, u("3数复选(&T)")}, {8, u("8数复选(&E)")}}, u("%1数复选"));
    QMenu* dantuoHou = addSubmenu(sl, "mnuDantuoHou", u("后区摇奖胆拖选择(&H)"));
    addFamily(dantuoHou, "mnuDtuoHou", 1, 8, {{1, u("1拖(&O)")}, {8, u("8拖(&I)")}}, u("%1拖"));
    for (QMenu* m : {agn, dantuo, agnHou, dantuoHou})
        for (QAction* a : m->actions()) a->setCheckable(a->objectName() != QLatin1String("mnuMilt"));
    QMenu* rt = addSubmenu(sl, "mnuRt", u("基本旋转矩阵(&R)"));
    addFamily(rt, "meuRt", 9, 22, {{9, u(" 9数选4中3(&P)")}, {22, u("22数选4中3(&H)")}}, u("%1数选4中3"));
    QMenu* qnjz = addSubmenu(sl, "mnuQnjz", u("超级旋转矩阵(&A)"));
    const char* super[][2] = {{"mnuRt22", "中2保2(&W)"}, {"mnuRt33", "中3保3(&T)"},
                              {"mnuRt43", "中4保3(&R)"}, {"mnuRt44", "中4保4(&U)"},
                              {"mnuRt53", "中5保3(&V)"}, {"mnuRt54", "中5保4(&F)"}};
    for (const auto& s : super) addItem(qnjz, QString::fromLatin1(s[0]), u(s[1]));
    QMenu* dtxj = addSubmenu(sl, "mnuDtxj", u("胆拖旋转矩阵(&D)"));
    addFamily(dtxj, "mnuZb", 3, 5, {{3, u("中4保4(&U)")}, {4, u("中5保4(&F)")}, {5, u("中5保5(&V)")}}, {});
    QMenu* fuxj = addSubmenu(sl, "mnuFuxj", u("复式旋转矩阵(&F)"));
    const char* f6[][2] = {{"F6RT44", "中4保4(&U)"}, {"F6RT54", "中5保4(&O)"}, {"F6RT55", "中5保5(&V)"},
                           {"F6RT64", "中6保4(&R)"}, {"F6RT65", "中6保5(&I)"}, {"F6RT76", "中7保6(&S)"}};
    for (const auto& f : f6) addItem(fuxj, QString::fromLatin1(f[0]), u(f[1]));
    const char* lists[][2] = {{"mnuLst", "复选组合排列(&L)"},
                              {"mnuDtlst", "胆拖组合排列(&S)"},
                              {"mnu8Lst", "前区复选6复式排列(&I)"},
                              {"mnuDt8lst", "前区胆拖6复式排列(&X)"}};
    for (const auto& l : lists) addItem(sl, QString::fromLatin1(l[0]), u(l[1]));
}

// 用户设置: the workspace name, the zone sizes, the prize rules and the print setting.
void MainMenu::addSettingsMenu(QMenuBar* bar) {
    QMenu* user = addMenu(bar, "mnuUserset", u("用户设置(&S)"));
    addItem(user, QStringLiteral("mnuName"), u("用户名设置(&N)"));
    QMenu* bit = addSubmenu(user, "meuBit", u("彩票规则(&G)"));
    QMenu* qian = addSubmenu(bit, "mnuQianqu", u("前区(&F)"));
    for (int n = game_rules::kFrontMin; n <= game_rules::kFrontMax; ++n)
        addItem(qian, QStringLiteral("meuS(%1)").arg(n), game_rules::frontRuleCaption(n))->setCheckable(true);
    QMenu* hou = addSubmenu(bit, "mnuHouqu", u("后区(&B)"));
    for (int n = game_rules::kBackMin; n <= game_rules::kBackMax; ++n)
        addItem(hou, QStringLiteral("meuSHou(%1)").arg(n), game_rules::backRuleCaption(n))
            ->setCheckable(true);
    addItem(user, QStringLiteral("meuPlc"), u("中奖规则(&P)"));
    addItem(user, QStringLiteral("mnuPtset"), u("打印设置(&R)"));
}

// 附赠工具, 帮助: the fortune calculator and help.
void MainMenu::addToolsAndHelpMenus(QMenuBar* bar) {
    QMenu* boun = addMenu(bar, "mnuBoun", u("附赠工具(&B)"));
    addItem(boun, QStringLiteral("mnuYsfx"), u("运势分析(&S)"));
    QMenu* hlp = addMenu(bar, "meuHlp", u("帮助(&H)"));
    addItem(hlp, QStringLiteral("meuHelp"), u("帮助文档(&H)"));
    addItem(hlp, QStringLiteral("meuDtl"), u("使用说明(&T)"));
    addItem(hlp, QStringLiteral("meuAbt"), u("关于软件(&B)"));
}
