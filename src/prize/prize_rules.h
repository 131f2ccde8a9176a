#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <optional>

class Settings;

// One slot of the prize rules: the hits it requires and what it pays.
struct PrizeSlot {
    int16_t front = 0;  // front-zone hits, 0..5
    int16_t back = 0;   // back-zone hits, 0..2
    int32_t money = 0;  // yuan for one ticket
    QString rank;       // Prizerank: the level's name
};

// The texts that belong to a slot's tab in frmPrize and its defaults. The tab texts are fixed:
// they do not follow edits of the slot.
struct PrizeSlotDefault {
    int16_t front;
    int16_t back;
    int32_t money;
    const char* rank;
    const char* tabCaption;
    const char* tabKey;
    const char* tabTip;
};

namespace prize_rules {
inline constexpr int kSlots = 12;
inline constexpr int kFrontMax = 5;
inline constexpr int kBackMax = 2;
// One ticket of seven numbers costs 2 yuan, a six-number row six such tickets.
inline constexpr int32_t kTicketCost = 2;
inline constexpr int32_t kSixRowCost = 12;

// Slot n's defaults at index n - 1.
extern const std::array<PrizeSlotDefault, kSlots> kDefaults;
}  // namespace prize_rules

// The twelve slots, 1..12. Slot 0 exists and stays empty, so slot 1 compares with an empty
// level name.
class PrizeRules {
public:
    static PrizeRules defaults();

    const PrizeSlot& slot(int n) const { return m_slots[static_cast<size_t>(n)]; }
    PrizeSlot& slot(int n) { return m_slots[static_cast<size_t>(n)]; }

    // A slot forms a row of the level summary (and of the report) when its level is not empty
    // and differs from that of the slot before it.
    bool formsLevelRow(int n) const { return !slot(n).rank.isEmpty() && slot(n).rank != slot(n - 1).rank; }
    // The slot whose pattern a ticket with these hits matches: applied from 12 down to 1, so
    // the lowest slot with that pattern; 0 for none.
    int slotFor(int front, int back) const;

private:
    std::array<PrizeSlot, prize_rules::kSlots + 1> m_slots{};
};

// The rules in the settings store of a workspace: application "<workspace>QY", sections
// "<n>prize" with keys 0, 1, Money, and section Prizerank with key n.
class PrizeSettings {
public:
    PrizeSettings(Settings& settings, QString workspace);

    struct ReadResult {
        PrizeRules rules;
        // Values that are no number: the slot keeps its default there and the text says where.
        QStringList problems;
    };
    ReadResult read() const;

    // Each write is saved at once; false when the store could not be saved.
    bool writeFront(int n, int front);
    bool writeBack(int n, int back);
    bool writeMoney(int n, int32_t money);
    bool writeRank(int n, const QString& rank);
    // Several fields of slot n saved together: all of them or none.
    struct SlotChange {
        std::optional<int> front, back;
        std::optional<int32_t> money;
        std::optional<QString> rank;
    };
    bool writeSlot(int n, const SlotChange& change);
    // The message for a write that was not saved, naming the file.
    QString saveFailedText() const;

private:
    QString app() const;
    Settings& m_settings;
    QString m_workspace;
};
