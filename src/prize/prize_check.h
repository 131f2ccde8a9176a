#pragma once

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"
#include "prize/prize_rules.h"
#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <span>

// The draw a check compares with: the newest of the history in memory.
struct CheckDraw {
    int32_t issue = 0;
    std::array<int, 7> numbers{};  // five front, two back

    static CheckDraw newest(const DrawHistory& history);
};

// The hits and prize slots of the rows of a candidate table for one draw and one rule table:
// the scratch columns jiben, tebie, jiang and jing of the check. A row's hits are one byte,
// code = jiben * 3 + tebie; jiang and jing follow from the code through the rules. The opening
// pass counts the codes of kept and thrown rows without storing them; a row's code is worked
// out again from its numbers when a list shows or sorts it, which costs less than writing and
// keeping a column. The check reads the table, which must outlive it, and never changes it
// (not unslt, not Fliter).
//
// Hits count the draw's numbers that occur in the ticket's zone, as a LIKE "*07*" over the
// two-digit texts joined by blanks does: 07 matches 07 and never 17. The numbers of one zone
// of a ticket are distinct, so this equals the sum over the ticket's numbers of how often the
// draw holds each, which the kernel counts with byte compares sixteen rows at a time.
class PrizeCheck {
public:
    // GAganDj counts both zones and prices them; GAganfDj counts the front zone of zuhef only.
    enum class Zones : uint8_t { FrontAndBack, FrontOnly };
    static constexpr int kBackHitsSpan = prize_rules::kBackMax + 1;
    static constexpr int kCodes = (prize_rules::kFrontMax + 1) * kBackHitsSpan;

    PrizeCheck() = default;
    // Runs the check over the whole table (kept and thrown rows alike).
    static PrizeCheck run(const CandidateTable& table, const CheckDraw& draw, const PrizeRules& rules,
                          EngineProgress* progress = nullptr);

    Zones zones() const { return m_zones; }
    const PrizeRules& rules() const { return m_rules; }
    uint64_t rowCount() const { return m_rows; }

    uint8_t code(uint64_t row) const;
    // The codes of rows [begin, begin + n) into out, sixteen rows at a time.
    void codes(uint64_t begin, uint64_t n, uint8_t* out) const;
    int frontHits(uint64_t row) const { return code(row) / kBackHitsSpan; }
    int backHits(uint64_t row) const { return code(row) % kBackHitsSpan; }
    // The slot that the row matched, 0 for none (jiang and jing are Null then).
    int slot(uint64_t row) const { return m_slotOfCode[code(row)]; }
    std::optional<QString> prizeLevel(uint64_t row) const;
    std::optional<int32_t> prizeAmount(uint64_t row) const;

    uint64_t keptCount() const { return m_kept; }
    uint64_t thrownCount() const { return m_rows - m_kept; }
    // Rows of a slot among the kept (thrown = false) or thrown rows.
    uint64_t countInSlot(bool thrown, int slot) const {
        return m_slotCount[thrown ? 1 : 0][static_cast<size_t>(slot)];
    }
    // SELECT COUNT(*) ... WHERE [unslt] = thrown AND [jiang] = name: every slot of that name.
    uint64_t countOfLevel(bool thrown, const QString& name) const;
    // SELECT SUM([jing]) ... WHERE [unslt] = FALSE: Null when no kept row has a prize slot.
    std::optional<int64_t> keptPrizeSum() const;
    // Hits of each code among the kept or thrown rows.
    uint64_t countOfCode(bool thrown, int code) const {
        return m_codeCount[thrown ? 1 : 0][static_cast<size_t>(code)];
    }

    // The columns and draw numbers the codes are made from.
    struct Source {
        std::array<const uint8_t*, 6> front{};  // fig1..fig5, or fig1..fig6 of zuhef
        std::array<const uint8_t*, 2> back{};   // fig6, fig7
        std::array<uint8_t, prize_rules::kFrontMax> frontDraw{};
        std::array<uint8_t, prize_rules::kBackMax> backDraw{};
        std::span<const BitVector::Word> filteredOut;
    };

private:
    Zones m_zones = Zones::FrontAndBack;
    Source m_source;
    PrizeRules m_rules;
    uint64_t m_rows = 0;
    uint64_t m_kept = 0;
    std::array<uint8_t, kCodes> m_slotOfCode{};
    std::array<std::array<uint64_t, kCodes>, 2> m_codeCount{};
    std::array<std::array<uint64_t, prize_rules::kSlots + 1>, 2> m_slotCount{};
};
