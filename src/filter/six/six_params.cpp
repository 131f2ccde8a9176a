#include "filter/six/six_params.h"

#include "filter/param/param_catalogue.h"
#include "filter/param/range_query.h"

#include <algorithm>
#include <cmath>

namespace six_params {

namespace {

using P = SixParam;

const std::array<SixParamInfo, kSixParamCount> kInfos{{
    {P::Sum, "Option23", QStringLiteral("各位数和："), "Text2", 0, 999, "sum", "sh", 0, "Znum"},
    {P::SumLastDigit, "Option3", QStringLiteral("各位和个位："), "Text3", 0, 9, "sum-last-digit", "shgw", 0, "Sumgwnum"},
    {P::ConsecutiveCount, "Option2", QStringLiteral("连号个数："), "Text4", 0, 9, "consecutive", "lsh", 0, "Lxnum"},
    {P::EvenCount, "Option4", QStringLiteral("偶数个数："), "Text5", 0, 9, "even", "os", 0, "Onum"},
    {P::BigCount, "Option5", QStringLiteral("大数个数："), "Text6", 0, 9, "big", "ds", 0, "Mornum"},
    {P::BigLastDigitCount, "Option8", QStringLiteral("个位大数："), "Text7", 0, 9, "big-last-digit", "Gwds", 0, "Bignum"},
    {P::Range1To10, "Option9", QStringLiteral("1~10区间："), "Text8", 0, 9, "range-1-10", "1to10", 0, "Qnum0"},
    {P::Range11To20, "Option10", QStringLiteral("11~20区间："), "Text9", 0, 9, "range-11-20", "11to20", 0, "Qnum1"},
    {P::Range21Up, "Option11", QStringLiteral("21以上："), "Text10", 0, 9, "range-21-up", "21up", 0, "Qnum2"},
    {P::Position1, "Option13", QStringLiteral("第1位："), "Text12", 0, 99, "position-1", "1z", 1, "fig1"},
    {P::Position2, "Option14", QStringLiteral("第2位："), "Text13", 0, 99, "position-2", "2z", 2, "fig2"},
    {P::Position3, "Option15", QStringLiteral("第3位："), "Text14", 0, 99, "position-3", "3z", 3, "fig3"},
    {P::Position4, "Option16", QStringLiteral("第4位："), "Text15", 0, 99, "position-4", "4z", 4, "fig4"},
    {P::Position5, "Option17", QStringLiteral("第5位："), "Text16", 0, 99, "position-5", "5z", 5, "fig5"},
    {P::Position6, "Option18", QStringLiteral("第6位："), "Text17", 0, 99, "position-6", "6z", 6, ""},
    {P::LargestGap, "Option6", QStringLiteral("最大差值"), "Text19", 0, 99, "largest-gap", "zdzj", 0, "Mxzounum"},
    {P::LastMinusFirst, "Option7", QStringLiteral("首尾差值"), "Text20", 0, 99, "last-minus-first", "czzj", 0, "Apzounum"},
    {P::RepeatsOfPrevious, "Option20", QStringLiteral("重上期个数："), "Text21", 0, 99, "repeats", "csq", 0, "Cnum"},
    {P::Complexity, "Option24", QStringLiteral("数字复杂度："), "Text22", 0, 99, "complexity", "fzd", 0, "Fcodp"},
}};

template <typename Pred>
int countOf(const std::array<uint8_t, 6>& row, Pred pred) {
    return static_cast<int>(std::count_if(row.begin(), row.end(), pred));
}

// The fifteen differences of the row's pairs; each one equal to an earlier one takes one off 10.
int complexity(const std::array<uint8_t, 6>& row) {
    std::array<int, 15> seen{};
    int count = 0, value = 15 - 5;
    for (size_t i = 0; i < row.size(); ++i)
        for (size_t j = i + 1; j < row.size(); ++j) {
            const int d = row[j] - row[i];
            if (std::find(seen.begin(), seen.begin() + count, d) != seen.begin() + count) --value;
            seen[static_cast<size_t>(count++)] = d;
        }
    return value;
}

}  // namespace

std::span<const SixParamInfo> all() { return kInfos; }

const SixParamInfo& info(SixParam id) { return kInfos[static_cast<size_t>(id)]; }

std::optional<SixParam> byEnglish(const QString& name) {
    for (const SixParamInfo& i : kInfos)
        if (name.compare(QLatin1String(i.english), Qt::CaseInsensitive) == 0) return i.id;
    return std::nullopt;
}

int value(SixParam id, const std::array<uint8_t, 6>& row, const Context& ctx) {
    int sum = 0, consecutive = 0, gap = 0;
    for (size_t i = 0; i < row.size(); ++i) {
        sum += row[i];
        if (i == 0) continue;
        const int d = row[i] - row[i - 1];
        consecutive += d == 1;
        gap = std::max(gap, d);
    }
    switch (id) {
        case P::Sum: return sum;
        case P::SumLastDigit: return sum % 10;
        case P::ConsecutiveCount: return consecutive;
        case P::EvenCount: return countOf(row, [](int n) { return n % 2 == 0; });
        // Bitnum / 2 is a real number (17.5): a number is big when twice it exceeds Bitnum.
        case P::BigCount: return countOf(row, [&](int n) { return 2 * n > ctx.frontSize; });
        case P::BigLastDigitCount: return countOf(row, [](int n) { return n % 10 > 4; });
        case P::Range1To10: return countOf(row, [](int n) { return n <= 10; });
        case P::Range11To20: return countOf(row, [](int n) { return n > 10 && n <= 20; });
        case P::Range21Up: return countOf(row, [](int n) { return n > 20; });
        case P::LargestGap: return gap;
        case P::LastMinusFirst: return row[5] - row[0];
        case P::RepeatsOfPrevious:
            return countOf(row, [&](int n) { return n < kNumberSlots && ctx.lastDrawFront[static_cast<size_t>(n)]; });
        case P::Complexity: return complexity(row);
        default: return row[static_cast<size_t>(info(id).position - 1)];
    }
}

std::optional<std::pair<int, int>> historyRange(SixParam id, const DrawHistory& h, int spanData) {
    const QString column = QLatin1String(info(id).drawColumn);
    if (column.isEmpty()) return std::nullopt;
    const auto values =
        range_query::columnValues(h, ZoneScope::Front, column, range_query::start(h.drawCount(), spanData));
    if (!values || values->empty()) return std::nullopt;
    const auto [lo, hi] = std::ranges::minmax(*values);
    return std::make_pair(static_cast<int>(lo), static_cast<int>(hi));
}

Bounds bounds(const QString& lo, const QString& hi) {
    // The statement compares whole values with the boxes' real numbers.
    constexpr double kFar = 1e6;
    return {static_cast<int>(std::ceil(std::clamp(param_catalogue::leadingNumber(lo), -kFar, kFar))),
            static_cast<int>(std::floor(std::clamp(param_catalogue::leadingNumber(hi), -kFar, kFar)))};
}

namespace {

std::array<uint8_t, 6> rowAt(const CandidateTable& table, uint64_t r) {
    std::array<uint8_t, 6> row{};
    for (size_t k = 0; k < 6; ++k) row[k] = table.numberColumn(static_cast<int>(k) + 1)[r];
    return row;
}

}  // namespace

void computeValues(CandidateTable& table, SixParam id, const Context& ctx) {
    if (info(id).position) return;
    // Every row's canshu, dead or live, as the UPDATE without a WHERE writes it.
    const std::span<int16_t> values = table.paramValues();
    const CandidateTable& t = table;
    for (uint64_t r = 0; r < t.rowCount(); ++r) values[r] = static_cast<int16_t>(value(id, rowAt(t, r), ctx));
}

int filterValue(const CandidateTable& table, SixParam id, uint64_t r) {
    const int position = info(id).position;
    return position ? table.numberColumn(position)[r] : table.paramValueAt(r);
}

Result run(CandidateTable& table, SixParam id, const QString& lo, const QString& hi, bool keep, const Context& ctx) {
    const Bounds range = bounds(lo, hi);
    computeValues(table, id, ctx);
    table.previousFilteredOut() = table.filteredOut();
    BitVector& out = table.filteredOut();
    Result result;
    for (uint64_t r = 0; r < table.rowCount(); ++r) {
        if (out.test(r)) continue;
        if (keep == range.contains(filterValue(table, id, r))) continue;
        out.set(r);
        ++result.killed;
    }
    result.heading = info(id).caption;
    result.heading.remove(QStringLiteral("："));
    return result;
}

}  // namespace six_params
