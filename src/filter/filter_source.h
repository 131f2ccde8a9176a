#pragma once

#include "workspace/schema.h"

#include <QString>

// The instances of the filter windows: which table each holds, how it obtains it on opening,
// and the texts in which they differ. The first seven are the filter window's (5 + 2 numbers),
// the last three the six-number window's (zuhef).
enum class FilterSource {
    Expansion,
    BankerExpansion,
    Wheel,
    StoredExpansion,
    Imported,
    StoredWheel,
    CombinationTemplate,
    SixExpansion,
    SixBankerExpansion,
    StoredSixExpansion,
};

// How an instance obtains its table when it opens.
enum class OpeningMode {
    ExpandPicks,    // drops and makes the table, full expansion of the picks
    ExpandBankers,  // drops and makes the table, expansion with bankers
    ExpandSixPicks,    // the same for six-number rows
    ExpandSixBankers,
    FillFromWheel,  // makes the table from a wheel
    Keep,           // works on the table as it stands
};

// The grid's first view.
enum class FirstView {
    IdxRange,  // WHERE [idx] >=1 AND [idx] <=10000
    Ordered,   // every row ORDER BY idx,fig1,fig2,fig3,fig4,fig5
    Live,      // WHERE [unslt] = false
};

struct FilterSourceTraits {
    FilterSource instance;
    const char* className;
    schema::CandidateKind table;
    OpeningMode opening;
    FirstView firstView;
    // What the history filters say when their input is wrong.
    QString historyInputMessage;
    // The template browser names the zone of a step and reads intQianHou from it.
    bool templateNamesZone;
    // Export file in the workspace folder; empty for the instances whose export the grid Part names.
    QString exportFile;
    // GAganZhMb: no Option43 and no same-as-template filter; cmdAdmb clears the template.
    bool filtersTemplateItself;
};

const FilterSourceTraits& filterSourceTraits(FilterSource instance);

namespace filter_source {
inline const QString kCaptionHead =
    QStringLiteral("复选组合情况排列总表（每页至多显示10000注，双击任意注可删除）   合计：");
inline const QString kCaptionTail = QStringLiteral("注");
inline const QString kAskNumbers = QStringLiteral("请输入数字");
inline const QString kAskNumbersInOrder = QStringLiteral("请按照号码排列依次输入数字");
inline const QString kAddTemplateCaption = QStringLiteral("添加到组号模板(&A)");
inline const QString kClearTemplateCaption = QStringLiteral("清空组号模板(&A)");
inline const QString kClearTemplateTitle = QStringLiteral("清空组号模板");
inline const QString kClearTemplateText =
    QStringLiteral("是否把目前组号模板清空？清空后可以重新添加新的组号模板。)");
// The four actions: captions and tooltips.
inline const QString kResetAll = QStringLiteral("全部复位(&S)");
inline const QString kResetAllTip = QStringLiteral("回收所有被滤掉的组合");
inline const QString kResetLast = QStringLiteral("过滤复位(&T)");
inline const QString kResetLastTip = QStringLiteral("回收上次过滤被滤掉的组合");
inline const QString kInvertAll = QStringLiteral("全部组号反选(&U)");
inline const QString kInvertAllTip = QStringLiteral("反选所有被滤掉的组合");
inline const QString kInvertLast = QStringLiteral("上次过滤反选(&R)");
inline const QString kInvertLastTip = QStringLiteral("反选上次被滤掉的组合");

// "复选组合情况排列总表（…）   合计：" + count + "注"
QString caption(qint64 count);
}  // namespace filter_source
