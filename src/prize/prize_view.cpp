#include "prize/prize_view.h"

#include <limits>

QString prize_view::countedHeading(uint64_t n) {
    return QStringLiteral("投注组合情况排列总表(合计：%1注)").arg(n);
}

PrizeView::PrizeView(Kind kind, std::unique_ptr<CandidateTable> table, const CheckDraw& draw,
                     const PrizeRules& rules)
    : m_kind(kind), m_table(std::move(table)), m_empty(kind, 0), m_draw(draw) {
    const CandidateTable& t = m_table ? *m_table : m_empty;
    m_check = PrizeCheck::run(t, draw, rules);
    if (sixNumbers()) {
        m_kept = TicketList::whole(t, false);
        m_required = static_cast<int32_t>(std::min<uint64_t>(m_kept.size(), kSixVisitedRows)) *
                     prize_rules::kSixRowCost;
        return;
    }
    // The thrown list is opened first, then the kept one: the kept set is the one opened last.
    m_thrown = TicketList::whole(t, true);
    m_thrownHeading = prize_view::countedHeading(m_thrown.size());
    m_kept = TicketList::whole(t, false);
    buildSummary();
    m_required = static_cast<int32_t>(m_kept.size() * prize_rules::kTicketCost);
    // A Null sum (no kept ticket won) or one beyond 32 bits fails to convert and leaves 0.
    const std::optional<int64_t> sum = m_check.keptPrizeSum();
    if (sum && *sum <= std::numeric_limits<int32_t>::max() && *sum >= std::numeric_limits<int32_t>::min())
        m_income = static_cast<int32_t>(*sum);
}

QString PrizeView::caption() const {
    return sixNumbers() ? prize_view::kCaptionSixCheck : prize_view::kCaptionCheck;
}

QList<PrizeListColumn> PrizeView::keptColumns() const {
    QList<PrizeListColumn> cols;
    if (sixNumbers()) {
        constexpr int kIdxWidth = 1000, kWidth = 800;
        cols.append({PrizeColumn::Idx, 0, QStringLiteral("号码索引"), kIdxWidth});
        const QStringList heads{QStringLiteral("1位"), QStringLiteral("2位"), QStringLiteral("3位"),
                                QStringLiteral("4位"), QStringLiteral("5位"), QStringLiteral("第六位")};
        for (int k = 1; k <= 6; ++k) cols.append({PrizeColumn::Number, k, heads[k - 1], kWidth});
        cols.append({PrizeColumn::FrontHits, 0, QStringLiteral("中基号"), kWidth});
        return cols;
    }
    constexpr int kWide = 500, kNarrow = 400;
    cols.append({PrizeColumn::Idx, 0, QStringLiteral("号码索引"), kWide});
    for (int k = 1; k <= 5; ++k)
        cols.append({PrizeColumn::Number, k, QStringLiteral("前%1").arg(k), kNarrow});
    for (int k = 6; k <= 7; ++k)
        cols.append({PrizeColumn::Number, k, QStringLiteral("后%1").arg(k - 5), kNarrow});
    cols.append({PrizeColumn::FrontHits, 0, QStringLiteral("中前"), kWide});
    cols.append({PrizeColumn::BackHits, 0, QStringLiteral("中后"), kWide});
    cols.append({PrizeColumn::PrizeLevel, 0, QStringLiteral("奖级"), kWide});
    cols.append({PrizeColumn::PrizeAmount, 0, QStringLiteral("奖金"), kWide});
    return cols;
}

QList<PrizeListColumn> PrizeView::thrownColumns() const {
    if (sixNumbers()) return {};
    QList<PrizeListColumn> cols = keptColumns();
    constexpr int kReasonWidth = 4800;
    cols.append({PrizeColumn::Reason, 0, QStringLiteral("过滤缘故"), kReasonWidth});
    if (!m_sortedHeaders) return cols;
    // After sorting the lower list is headed in other words than the upper one.
    const QStringList sorted{QStringLiteral("号码索引"), QStringLiteral("红1"),  QStringLiteral("红2"),
                             QStringLiteral("红3"),      QStringLiteral("红4"),  QStringLiteral("红5"),
                             QStringLiteral("红6"),      QStringLiteral("蓝球"), QStringLiteral("中红"),
                             QStringLiteral("中蓝"),     QStringLiteral("奖级"), QStringLiteral("奖金"),
                             QStringLiteral("过滤缘故")};
    for (int i = 0; i < cols.size(); ++i) cols[i].header = sorted[i];
    return cols;
}

void PrizeView::sortByHits() {
    const CandidateTable& t = m_table ? *m_table : m_empty;
    if (!sixNumbers()) {
        m_thrown = TicketList::byHits(t, m_check, true);
        m_sortedHeaders = true;
    }
    m_kept = TicketList::byHits(t, m_check, false);
    m_lastKept = true;
}

std::optional<int64_t> PrizeView::pageNumber(const QString& text) {
    bool ok = false;
    const qlonglong p = text.trimmed().toLongLong(&ok);
    // Far pages only give empty sets; the bound keeps the idx arithmetic in range.
    constexpr qlonglong kFarthest = 1'000'000'000;
    if (!ok || p < -kFarthest || p > kFarthest) return std::nullopt;
    return p;
}

bool PrizeView::pageKept(const QString& pageText) {
    const std::optional<int64_t> p = pageNumber(pageText);
    if (!p) return false;
    const CandidateTable& t = m_table ? *m_table : m_empty;
    // GAganDj's pages span twice the page size and overlap by one page; zuhef's are true pages.
    const int64_t last = sixNumbers() ? *p * kPageSpan : (*p + 1) * kPageSpan;
    m_kept = TicketList::idxRange(t, false, (*p - 1) * kPageSpan + 1, last);
    m_lastKept = true;
    return true;
}

bool PrizeView::pageThrown(const QString& pageText) {
    const std::optional<int64_t> p = pageNumber(pageText);
    if (!p || sixNumbers()) return false;
    const CandidateTable& t = m_table ? *m_table : m_empty;
    m_thrown = TicketList::idxRange(t, true, (*p - 1) * kPageSpan + 1, (*p + 1) * kPageSpan);
    m_lastKept = false;
    return true;
}

void PrizeView::buildSummary() {
    m_summary[0] = {prize_view::kSummaryLevel, prize_view::kSummaryCount};
    m_summary[kSummaryThrownHead][0] = prize_view::kSummaryThrown;
    const PrizeRules& rules = m_check.rules();
    for (int side = 0; side < 2; ++side) {
        const bool thrown = side == 1;
        int row = thrown ? kSummaryThrownHead : 0;
        int running = 0;
        for (int n = 1; n <= prize_rules::kSlots; ++n) {
            if (!rules.formsLevelRow(n)) continue;
            ++row;
            ++running;
            const QString& name = rules.slot(n).rank;
            const uint64_t count = m_check.countOfLevel(thrown, name);
            if (!thrown) m_hitCounts[static_cast<size_t>(running)] = static_cast<int64_t>(count);
            m_summary[static_cast<size_t>(row)] = {name, QString::number(count)};
        }
    }
}

QString PrizeView::summaryCell(int row, int col) const {
    if (row < 0 || row >= kSummaryRows || col < 0 || col > 1) return {};
    return m_summary[static_cast<size_t>(row)][static_cast<size_t>(col)];
}
