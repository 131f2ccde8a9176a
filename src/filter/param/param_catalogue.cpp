#include "filter/param/param_catalogue.h"

#include <cmath>

namespace param_catalogue {

namespace {

using P = ParamId;

const std::array<ParamInfo, kParamCount>& table() {
    static const std::array<ParamInfo, kParamCount> t{{
        {P::NumberSum, "Option23", QStringLiteral("各位数和"), "Text2", "Znum", 0, "999", "18", "sh", "sh",
         0},
        {P::SumLastDigit, "Option3", QStringLiteral("各位和个位"), "Text3", "Sumgwnum", 1, "9", "3", "shgw",
         "shg", 0},
        {P::ConsecutiveCount, "Option2", QStringLiteral("连号个数"), "Text4", "Lxnum", 2, "9", "2", "lsh",
         "lhg", 0},
        {P::EvenCount, "Option4", QStringLiteral("偶数个数"), "Text5", "Onum", 3, "9", "2", "os", "osg", 0},
        {P::BigCount, "Option5", QStringLiteral("大数个数"), "Text6", "Mornum", 4, "9", "2", "ds", "dsg", 0},
        {P::BigLastDigitCount, "Option8", QStringLiteral("个位大数"), "Text7", "Bignum", 5, "9", "2", "Gwds",
         "Gwd", 0},
        {P::Range1To10, "Option9", QStringLiteral("1~10区间"), "Text8", "Qnum0", 6, "9", "2", "1to10", "qj1",
         0},
        {P::Range11To20, "Option10", QStringLiteral("11~20区间"), "Text9", "Qnum1", 7, "9", "2", "11to20",
         "qj2", 0},
        {P::Range21Up, "Option11", QStringLiteral("21以上"), "Text10", "Qnum2", 8, "9", "2", "21up", "qj3",
         0},
        {P::Position1, "Option13", QStringLiteral("第1位"), "Text12", "fig1", 9, "99", "3", "1z", "1w", 1},
        {P::Position2, "Option14", QStringLiteral("第2位"), "Text13", "fig2", 10, "99", "3", "2z", "2w", 2},
        {P::Position3, "Option15", QStringLiteral("第3位"), "Text14", "fig3", 11, "99", "3", "3z", "3w", 3},
        {P::Position4, "Option16", QStringLiteral("第4位"), "Text15", "fig4", 12, "99", "3", "4z", "4w", 4},
        {P::Position5, "Option17", QStringLiteral("第5位"), "Text16", "fig5", 13, "99", "3", "5z", "5w", 5},
        {P::LargestGap, "Option6", QStringLiteral("最大差值"), "Text19", "Mxzounum", 14, "99", "3", "zdzj",
         "zdc", 0},
        {P::LastMinusFirst, "Option7", QStringLiteral("首尾差值"), "Text20", "Apzounum", 15, "99", "5",
         "czzj", "swc", 0},
        {P::RepeatsOfPrevious, "Option20", QStringLiteral("重上期个数"), "Text21", "Cnum", 16, "99", "2",
         "csq", "csq", 0},
        {P::AcComplexity, "Option24", QStringLiteral("复杂度(AC值)"), "Text22", "Fcodp", 17, "99", "5", "fzd",
         "fzd", 0},
        {P::OddSum, "Option32", QStringLiteral("奇数之和"), "Text23", "Zjnum", 22, "99", "5", "Jsh", "Jsh",
         0},
        {P::EvenSum, "Option33", QStringLiteral("偶数之和"), "Text24", "Zonum", 23, "99", "5", "Osh", "Osh",
         0},
        {P::LastDigitSum, "Option34", QStringLiteral("个位数和"), "Text25", "Zgnum", 24, "99", "3", "Gwh",
         "Gwh", 0},
        {P::OmissionSum, "Option35", QStringLiteral("遗漏数和"), "Text26", "Zynum", 25, "99", "5", "Ylh",
         "Ylh", 0},
        {P::OmissionSpread, "Option12", QStringLiteral("遗漏极差"), "Text27", "intyljz", 18, "99", "5", "Ylc",
         "Ylc", 0},
        {P::SmallSum, "Option39", QStringLiteral("小数之和"), "Text28", "Xznum", 19, "99", "5", "Xsh", "Xsh",
         0},
        {P::BigSum, "Option40", QStringLiteral("大数之和"), "Text29", "DZnum", 20, "99", "5", "Dsh", "Dsh",
         0},
        {P::SameLastDigitCount, "Option41", QStringLiteral("同尾个数"), "Text30", "Modenum", 26, "99", "5",
         "Tws", "Tws", 0},
        {P::CustomRange, "Option66", QStringLiteral("自定区间"), "Text66", "", 21, "9", "9", "Zdqj", "Zdqj",
         0},
    }};
    return t;
}

constexpr std::array<RunStep, 25> kIntegrated{{
    {0, P::NumberSum},       {1, P::SumLastDigit},       {2, P::ConsecutiveCount},
    {3, P::EvenCount},       {4, P::BigCount},           {5, P::BigLastDigitCount},
    {6, P::Range1To10},      {7, P::Range11To20},        {8, P::Range21Up},
    {9, P::Position1},       {10, P::Position2},         {11, P::Position3},
    {12, P::Position4},      {13, P::Position5},         {14, P::LargestGap},
    {15, P::LastMinusFirst}, {16, P::RepeatsOfPrevious}, {17, P::AcComplexity},
    {18, P::OmissionSpread}, {21, P::CustomRange},       {22, P::OddSum},
    {23, P::EvenSum},        {24, P::LastDigitSum},      {25, P::OmissionSum},
    {15, P::SmallSum},
}};
// The run ends with 16 again (大数之和) and 26; kept apart so the array above reads as the list.
constexpr std::array<RunStep, 27> kIntegratedFull = [] {
    std::array<RunStep, 27> a{};
    for (size_t i = 0; i < kIntegrated.size(); ++i) a[i] = kIntegrated[i];
    a[25] = {16, P::BigSum};
    a[26] = {26, P::SameLastDigitCount};
    return a;
}();

constexpr std::array<RunStep, 22> kExport = [] {
    std::array<RunStep, 22> a{};
    size_t n = 0;
    for (const RunStep& s : kIntegratedFull)
        if (s.box < 9 || s.box > 13) a[n++] = s;
    return a;
}();

const QString kIntegratedBoxCaptions[kIntegratedBoxCount] = {
    QStringLiteral("各位数和"), QStringLiteral("各位和个位"), QStringLiteral("连号个数"),
    QStringLiteral("偶数个数"), QStringLiteral("大数个数"),   QStringLiteral("个位大数"),
    QStringLiteral("1~10区间"), QStringLiteral("11~20区间"),  QStringLiteral("21以上"),
    QStringLiteral("第1位"),    QStringLiteral("第2位"),      QStringLiteral("第3位"),
    QStringLiteral("第4位"),    QStringLiteral("第5位"),      QStringLiteral("最大差值"),
    QStringLiteral("首尾差值"), QStringLiteral("重上期个数"), QStringLiteral("复杂度AC值"),
    QStringLiteral("遗漏极差"), QStringLiteral("小数之和"),   QStringLiteral("大数之和"),
    QStringLiteral("自定区间"), QStringLiteral("奇数之和"),   QStringLiteral("偶数之和"),
    QStringLiteral("个位数和"), QStringLiteral("遗漏数和"),   QStringLiteral("同尾个数"),
};

const QString kBothZonesSame = QStringLiteral("前后区同号");
const QString kListModeCaption = QStringLiteral("指定号码");

}  // namespace

const ParamInfo& info(ParamId id) { return table()[static_cast<size_t>(id)]; }
std::span<const ParamInfo> all() { return table(); }

std::optional<ParamId> byButton(const QString& name) {
    for (const ParamInfo& p : table())
        if (name.compare(QLatin1String(p.button), Qt::CaseInsensitive) == 0) return p.id;
    return std::nullopt;
}

std::optional<ParamId> byDrawColumn(const QString& name) {
    for (const ParamInfo& p : table())
        if (*p.drawColumn && name.compare(QLatin1String(p.drawColumn), Qt::CaseInsensitive) == 0) return p.id;
    // 自定区间 has no draw column; its saved-settings name stands in.
    if (name.compare(QLatin1String("Zdqj"), Qt::CaseInsensitive) == 0) return P::CustomRange;
    return std::nullopt;
}

QString caption(ParamId id, ZoneScope scope, bool listMode) {
    if (id == P::LastMinusFirst && scope == ZoneScope::Both) return kBothZonesSame;
    if (id == P::CustomRange && listMode) return kListModeCaption;
    return info(id).caption;
}

QString integratedBoxCaption(int box, ZoneScope scope) {
    if (box < 0 || box >= kIntegratedBoxCount) return {};
    if (box == 15 && scope == ZoneScope::Both) return kBothZonesSame;
    return kIntegratedBoxCaptions[box];
}

QString exportTitle(ParamId id, bool listMode) {
    if (id == P::AcComplexity) return QStringLiteral("数字复杂度");
    return caption(id, ZoneScope::Front, listMode);
}

bool enabledIn(ParamId id, ZoneScope scope) {
    switch (scope) {
        case ZoneScope::Front:
            return true;
        case ZoneScope::Back:
            switch (id) {
                case P::Range1To10:
                case P::Range11To20:
                case P::Range21Up:
                case P::LargestGap:
                case P::AcComplexity:
                case P::OddSum:
                case P::EvenSum:
                case P::SmallSum:
                case P::BigSum:
                case P::CustomRange:
                case P::Position3:
                case P::Position4:
                case P::Position5:
                    return false;
                default:
                    return true;
            }
        case ZoneScope::Both:
            // The five position buttons are hidden in this tab.
            return id != P::LargestGap && info(id).position == 0;
    }
    return true;
}

std::span<const RunStep> integratedOrder() { return kIntegratedFull; }

int runBox(ParamId id) {
    if (id == P::SmallSum) return 15;
    if (id == P::BigSum) return 16;
    return info(id).integratedBox;
}
std::span<const RunStep> exportOrder() { return kExport; }

std::array<QString, 4> boxDefaults(ParamId id) {
    if (id == P::CustomRange)
        return {QStringLiteral("0"), QStringLiteral("9"), QStringLiteral("9"), QStringLiteral("0")};
    const ParamInfo& p = info(id);
    return {QStringLiteral("0"), p.upperDefault, p.countDefault, QString()};
}

bool boxAcceptsKey(QChar c) { return c.isDigit() || c == QLatin1Char('.') || c == QLatin1Char(' '); }
bool pageBoxAcceptsKey(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

double leadingNumber(const QString& text) {
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && text[i] == QLatin1Char(' ')) ++i;
    const qsizetype start = i;
    if (i < n && (text[i] == QLatin1Char('-') || text[i] == QLatin1Char('+'))) ++i;
    bool digits = false, dot = false;
    for (; i < n; ++i) {
        const QChar c = text[i];
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            digits = true;
        else if (c == QLatin1Char('.') && !dot)
            dot = true;
        else
            break;
    }
    if (!digits) return 0;
    bool ok = false;
    const double v = text.mid(start, i - start).toDouble(&ok);
    return ok ? v : 0;
}

QString formatNumber(double value) {
    if (std::isfinite(value) && value == std::trunc(value) && std::fabs(value) < 1e15)
        return QString::number(static_cast<qint64>(value));
    return QString::number(value, 'g', 15);
}

}  // namespace param_catalogue
