#include "analysis/ui/trend_menus.h"

#include <QMenu>
#include <QMenuBar>

#include <vector>

namespace trend_menus {

namespace {

// The members that carry a row.
enum Members : unsigned { Both = 1, Front = 2, Back = 4, All = Both | Front | Back };

struct Item {
    const char* given;                  // with "(%1)" for a family indexed from 0
    std::vector<const char*> captions;  // one per index; one caption for a single item
    unsigned members = All;
    const char* submenu = nullptr;  // the submenu's given name and caption, when the item is one
    const char* submenuCaption = nullptr;
};

struct Menu {
    const char* given;
    const char* caption;
    std::vector<Item> items;
    unsigned members = All;
};

// The menu table.
const std::vector<Menu>& table() {
    static const std::vector<Menu> menus{
        {"mnuCxbt",
         "参数查询和概率(&R)",
         {{"mnuCcha", {"参数查询(&Q)"}},
          {"mnuXg", {"相关统计(&O)"}},
          {"mnuFljp(%1)", {"跟随统计(&F)", "跳变统计(&J)"}},
          {"mnuGl", {"高级概率参数(&G)"}}}},
        {"mnuSyl",
         "历史走势分析(&S)",
         {{"mnuZshi", {"各位走势分析(&T)"}},
          {"mnu3D", {" 3D 走势分析(&D)"}},
          {"mnuBzhun", {"位标准差走势(&B)"}},
          {"mnuLsheshu", {"和数历史走势(&M)"}},
          {"mnuCsheshu", {"和数参数走势(&I)"}},
          {"mnuFenbu", {"历史分布走势(&F)"}},
          {"mnuZou", {"差值参数走势(&Z)"}},
          {"mnuBcan", {"标准参数走势(&S)"}},
          {"mnuGcan", {"高级参数走势(&A)"}},
          {"mnugwhs", {"个位和值参数走势"}},
          {"mnujshs", {"奇数和值参数走势"}},
          {"mnuoshs", {"偶数和值参数走势"}},
          {"mnuxshs", {"小数和值参数走势"}},
          {"mnudshs", {"大数和值参数走势"}},
          {"mnuylhs", {"遗漏和值参数走势"}},
          {"mnuYlZf", {"遗漏极差走势(&Q)"}}}},
        {"mnuTongji",
         "参数分布统计分析(&T)",
         {{"mnuTjwei(%1)",
           {"前一位统计(&E)", "前二位统计", "前三位统计", "前四位统计", "前五位统计(&V)", "后一位统计(&N)",
            "后二位统计(&O)"},
           All,
           "mnuTjhaoma",
           "各位号码统计(&T)"},
          {"mnuTjheshu", {"各位和数统计(&S)"}},
          {"mnuTjqujian", {"区间分布统计(&Q)"}},
          {"mnuTjchonghao", {"历史重上统计(&C)"}},
          {"mnuTjoushu", {"历史偶数统计(&O)"}},
          {"mnuTjdashu", {"历史大数统计(&B)"}},
          {"mnuTjshunhao", {"历史连号统计(&S)"}},
          {"mnuTjgaolian", {"历史连阶统计(&N)"}},
          {"mnuTjchuizhou", {"前后同号统计(&U)"}},
          {"mnuTjac", {"历史AC值统计(&F)"}},
          {"mnuTjgetong", {"个位同号统计(&G)"}},
          {"mnuzsgwh", {"个位和值参数统计"}},
          {"mnuzsjsh", {"奇数和值参数统计"}},
          {"mnuzsosh", {"偶数和值参数统计"}},
          {"mnuzsxsh", {"小数和值参数统计"}},
          {"mnuzsdsh", {"大数和值参数统计"}},
          {"mnuzsylh", {"遗漏和值参数统计"}},
          {"mnuYlZfT", {"遗漏极差统计(&Q)"}},
          {"mnuTjzuizhou", {"最大差值统计(&Z)"}, Front}}},
        {"mnuTable",
         "表格走势分析(&T)",
         {{"mnu5qu", {"5区间表格走势(&U)"}},
          {"mnuBianBz", {"边号表格走势(&B)"}},
          {"mnuChongBz", {"重号表格走势(&C)"}},
          {"mnuWeiBz", {"尾号表格走势(&W)"}},
          {"mnuJodx(%1)", {"奇数表格走势(&I)", "偶数表格走势(&O)", "大数表格走势(&D)", "小数表格走势(&X)"}},
          {"mnuYlbg", {"遗漏表格走势(&R)"}},
          {"mnu10Bg", {"10期出现次数表格走势(&V)"}},
          {"mnuLianBz", {"连号表格走势(&L)"}, Front},
          {"mnuJoLianBz", {"奇偶连号表格走势(&J)"}, Front}}},
        {"mnuGaiv", "概率统计(&G)", {{"mnuBt", {"概率饼图(&C)"}}, {"mnuNihe", {"拟和直线(&N)"}}}, Front},
        {"mnuSelect",
         "选号管理(&M)",
         {{"mnuHihg", {"选择多个高频号码(&H)"}},
          {"mnuLow", {"选择多个低频号码(&L)"}},
          {"mnuYHigh", {"选择遗漏高次号码(&I)"}},
          {"mnuYLow", {"选择遗漏低次号码(&W)"}}},
         Front}};
    return menus;
}

unsigned bitOf(TrendMember m) {
    switch (m) {
        case TrendMember::BothZones:
            return Both;
        case TrendMember::FrontZone:
            return Front;
        case TrendMember::BackZone:
            return Back;
    }
    return Both;
}

QString u(const char* s) { return QString::fromUtf8(s); }

QMenu* namedMenu(QMenu* m, const QString& given, QList<Name>& names) {
    m->setObjectName(given);
    m->menuAction()->setObjectName(given);
    names.append({given, m->title()});
    return m;
}

void addItem(QMenu* menu, const Item& item, QList<Name>& names) {
    const QString pattern = QString::fromLatin1(item.given);
    const bool family = pattern.contains(QLatin1String("%1"));
    QMenu* target = item.submenu ? namedMenu(menu->addMenu(u(item.submenuCaption)),
                                             QString::fromLatin1(item.submenu), names)
                                 : menu;
    for (size_t i = 0; i < item.captions.size(); ++i) {
        const QString given = family ? pattern.arg(i) : pattern;
        QAction* a = target->addAction(u(item.captions[i]));
        a->setObjectName(given);
        a->setEnabled(false);  // until a view is registered for it
        names.append({given, a->text()});
    }
}

}  // namespace

QList<Name> build(QMenuBar* bar, TrendMember member) {
    QList<Name> names;
    const unsigned bit = bitOf(member);
    for (const Menu& m : table()) {
        if (!(m.members & bit)) continue;
        QMenu* menu = namedMenu(bar->addMenu(u(m.caption)), QString::fromLatin1(m.given), names);
        for (const Item& item : m.items)
            if (item.members & bit) addItem(menu, item, names);
    }
    return names;
}

}  // namespace trend_menus
