#pragma once

#include "engine/candidate_table.h"
#include "prize/prize_check.h"
#include "prize/ticket_list.h"

#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>

// The texts of the check windows.
namespace prize_view {
inline const QString kCaptionCheck = QStringLiteral(
    "排列组合中奖查询（最后一次复选/"
    "胆拖组合结果与最后一次历史号码对奖，可以在“用户设置”中对中奖规则进行设置）");
inline const QString kCaptionSixCheck = QStringLiteral(
    "排列组合中奖查询（最后一次复选/"
    "胆拖复6结果与最后一次历史号码对奖，可以在“用户设置”中对中奖规则进行设置）");
inline const QString kKeptHeading = QStringLiteral("投注组合情况排列总表");
inline const QString kThrownHeading = QStringLiteral("被过滤滤掉组合情况排列总表");
inline const QString kSixHeading = QStringLiteral("复选组合情况排列总表（每页至多显示10000注）：");
inline const QString kRequired = QStringLiteral("所需金额:");
inline const QString kIncome = QStringLiteral("收入金额:");
inline const QString kResult = QStringLiteral("盈亏金额:");
inline const QString kYuan = QStringLiteral("元");
inline const QString kSort = QStringLiteral("中奖排序(&A)");
inline const QString kPage = QStringLiteral("翻页(&U)");
inline const QString kAddToReport = QStringLiteral("添加到盈亏报告并返回(&E)");
inline const QString kBack = QStringLiteral("返回(&E)");
inline const QString kSummaryLevel = QStringLiteral("奖级");
inline const QString kSummaryCount = QStringLiteral("中注");
inline const QString kSummaryThrown = QStringLiteral("被滤");
// "投注组合情况排列总表(合计：n注)", the heading the thrown list gets on opening.
QString countedHeading(uint64_t n);
}  // namespace prize_view

// The columns of a ticket list in the check windows.
enum class PrizeColumn { Idx, Number, FrontHits, BackHits, PrizeLevel, PrizeAmount, Reason };

struct PrizeListColumn {
    PrizeColumn what;
    int numberColumn = 0;  // 1..7 for Fig
    QString header;
    int widthTwips = 0;
};

// The logic of GAganDj (zuhe, zuheRote, zuheRead, zuheMoban) and GAganfDj (zuhef): the check
// on opening, the two lists with their headers, the level summary, the money, the sorting and
// the pagings, and the recordset opened last, which the report lists.
class PrizeView {
public:
    using Kind = schema::CandidateKind;
    static constexpr int kPageSpan = 10000;
    // Rows of the summary grid: the head, up to twelve kept levels, the second head at row 14,
    // and up to twelve thrown levels from row 15.
    static constexpr int kSummaryThrownHead = 14;
    static constexpr int kSummaryRows = kSummaryThrownHead + 1 + prize_rules::kSlots;
    // The six-number view's grid has visited this many rows when it prices them.
    static constexpr uint64_t kSixVisitedRows = 10000;

    // `table` is null when the table is missing: the lists stay empty and the sums 0.
    PrizeView(Kind kind, std::unique_ptr<CandidateTable> table, const CheckDraw& draw,
              const PrizeRules& rules);
    // The lists point into the view's own table.
    PrizeView(const PrizeView&) = delete;
    PrizeView& operator=(const PrizeView&) = delete;

    Kind kind() const { return m_kind; }
    bool sixNumbers() const { return m_kind == Kind::SixNumbers; }
    QString caption() const;
    const CheckDraw& draw() const { return m_draw; }
    const PrizeRules& rules() const { return m_check.rules(); }
    bool hasTable() const { return m_table != nullptr; }
    const CandidateTable* table() const { return m_table.get(); }
    const PrizeCheck& check() const { return m_check; }

    // The upper list (kept) and the lower list (thrown; GAganDj only).
    const TicketList& kept() const { return m_kept; }
    const TicketList& thrown() const { return m_thrown; }
    QList<PrizeListColumn> keptColumns() const;
    QList<PrizeListColumn> thrownColumns() const;
    QString thrownHeading() const { return m_thrownHeading; }
    // The row set the report lists: the one opened last.
    const TicketList& lastOpened() const { return m_lastKept ? m_kept : m_thrown; }

    // Command1: both lists reopened by hits, the thrown one first.
    void sortByHits();
    // Command111 / Command2 with the page text of Text1 / Text2; false when it is no number.
    bool pageKept(const QString& pageText);
    bool pageThrown(const QString& pageText);

    // The level summary MSFlexGrid2: kSummaryRows rows of two cells.
    QString summaryCell(int row, int col) const;
    // The hit counts by running row number of the kept levels (index 0 unused), which the
    // report reads by slot number.
    const std::array<int64_t, prize_rules::kSlots + 1>& hitCounts() const { return m_hitCounts; }

    int32_t required() const { return m_required; }
    int32_t income() const { return m_income; }
    int32_t result() const { return m_income - m_required; }
    bool resultIsGain() const { return result() > 0; }
    QString requiredText() const { return QString::number(m_required) + prize_view::kYuan; }
    QString incomeText() const { return QString::number(m_income) + prize_view::kYuan; }
    QString resultText() const { return QString::number(result()) + prize_view::kYuan; }

private:
    void buildSummary();
    static std::optional<int64_t> pageNumber(const QString& text);

    Kind m_kind;
    std::unique_ptr<CandidateTable> m_table;
    CandidateTable m_empty;
    CheckDraw m_draw;
    PrizeCheck m_check;
    TicketList m_kept;
    TicketList m_thrown;
    bool m_lastKept = true;
    bool m_sortedHeaders = false;
    QString m_thrownHeading = prize_view::kThrownHeading;
    std::array<std::array<QString, 2>, kSummaryRows> m_summary;
    std::array<int64_t, prize_rules::kSlots + 1> m_hitCounts{};
    int32_t m_required = 0;
    int32_t m_income = 0;
};
