#include "analysis/param_lists.h"

#include "workspace/sqlite_db.h"

#include <QStringList>

namespace param_lists {
namespace {

ListColumn col(const char* column, const char* head) { return {QString::fromLatin1(column), QString::fromUtf8(head)}; }

// The issue and the numbers of the table: fig0, fig1..figN.
std::vector<ListColumn> numberColumns(int count) {
    std::vector<ListColumn> out{col("fig0", "开奖期号")};
    for (int i = 1; i <= count; ++i) out.push_back({QStringLiteral("fig%1").arg(i), QStringLiteral("第%1位").arg(i)});
    return out;
}

// The front list's parameter columns, in order; the other scopes leave some out.
std::vector<ListColumn> frontParameters() {
    return {col("Qnum0", "1~10区间"),    col("Qnum1", "11~20区间"),   col("Qnum2", "21以上区间"),
            col("Znum", "各位数字和"),   col("Jnum", "奇数个数"),     col("Onum", "偶数个数"),
            col("Smlnum", "小数个数"),   col("Bignum", "大数个数"),   col("Ltlnum", "个位小数"),
            col("Mornum", "个位大数"),   col("Cnum", "重上期个数"),   col("Lnum", "连号个数"),
            col("Lxnum", "连号最大阶"),  col("Modenum", "同尾个数"),  col("Fcodp", "复杂度(AC)"),
            col("Mxzounum", "最大差值"), col("Apzounum", "首尾差值"), col("Zjnum", "奇数之和"),
            col("Zonum", "偶数之和"),    col("Xznum", "小数之和"),    col("Dznum", "大数之和"),
            col("Zgnum", "个位数之和"),  col("Zynum", "遗漏次数之和"), col("intyljz", "遗漏极差"),
            col("sumgwnum", "数和个位"), col("R", "拟和直线度"),      col("A", "拟和轴截距")};
}

std::vector<ListColumn> without(const QStringList& left, const QString& positionHead, int positions,
                                int numbers) {
    std::vector<ListColumn> out = numberColumns(numbers);
    for (const ListColumn& c : frontParameters())
        if (!left.contains(c.column, Qt::CaseInsensitive)) out.push_back(c);
    for (int p = 1; p <= positions; ++p)
        out.push_back({QStringLiteral("Lcz%1").arg(p), positionHead.arg(p)});
    return out;
}

}  // namespace

const std::vector<ListColumn>& columns(HistoryView scope) {
    static const std::vector<ListColumn> front = without({}, QStringLiteral("第%1位标准差"), 5, 5);
    static const std::vector<ListColumn> back =
        without({QStringLiteral("Qnum0"), QStringLiteral("Qnum1"), QStringLiteral("Qnum2"), QStringLiteral("Lxnum"),
                 QStringLiteral("Fcodp"), QStringLiteral("Mxzounum"), QStringLiteral("Zjnum"), QStringLiteral("Zonum"),
                 QStringLiteral("Xznum"), QStringLiteral("Dznum"), QStringLiteral("R"), QStringLiteral("A")},
                QStringLiteral("后%1位标准差"), 2, 2);
    static const std::vector<ListColumn> both =
        without({QStringLiteral("Lnum"), QStringLiteral("Lxnum"), QStringLiteral("Mxzounum"), QStringLiteral("R"),
                 QStringLiteral("A")},
                {}, 0, 7);
    return scope == HistoryView::Front ? front : scope == HistoryView::Back ? back : both;
}

QList<QVariantList> rows(SqliteDb& db, HistoryView scope, std::optional<int> sortColumn) {
    QStringList names;
    for (const ListColumn& c : columns(scope)) names << QStringLiteral("[%1]").arg(c.column);
    QString sql = QStringLiteral("SELECT %1 FROM [%2]").arg(names.join(QLatin1Char(',')), viewInfo(scope).drawTable);
    // By the stored value: numbers sort as numbers, whatever their text looks like.
    if (sortColumn) sql += QStringLiteral(" ORDER BY %1,1").arg(*sortColumn + 1);
    const SqliteReadTransaction read(db);
    return db.rows(sql);
}

}  // namespace param_lists
