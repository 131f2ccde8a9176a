#pragma once

#include "engine/row_formula.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

// The interned reasons of the reason column `Fliter`. A row holds an id; id 0 is the null that
// an expansion leaves, id 1 the empty text that the resets write. An entry is either a text or
// the joining of two earlier entries (head, tail), whose text is text(head) + text(tail): a
// filter that appends a piece to the reasons of many rows makes one entry per distinct pair,
// never a text per row. Equal texts share an id, and so do equal pairs; a joined entry is made
// into text only when text() is asked for it. A null or empty side of a joining reads as
// nothing, as the concatenation of the stored statements does, so join(a, kNull) is a.
// An entry may also be a formula (see RowFormula): its text, and the text of every joining
// that holds it, depends on the numbers of the row asked about.
class ReasonTable {
public:
    using Id = uint32_t;
    static constexpr Id kNull = 0;
    static constexpr Id kEmpty = 1;

    ReasonTable() { clear(); }
    ReasonTable(const ReasonTable& other);
    ReasonTable& operator=(const ReasonTable& other);
    ReasonTable(ReasonTable&& other) noexcept;
    ReasonTable& operator=(ReasonTable&& other) noexcept;

    void clear();
    Id intern(const QString& text);
    // The id of a text interned before as a text, without interning it.
    std::optional<Id> find(const QString& text) const;
    // The entry whose text is text(head) + text(tail).
    Id join(Id head, Id tail);
    // The id of join(head, tail) when the pair is an entry already.
    std::optional<Id> findJoined(Id head, Id tail) const;
    // The id the next new entry will take.
    Id nextId() const { return static_cast<Id>(m_entries.size()); }
    // The entry made for `formula` given to rows that were live, or not; every call makes a new
    // entry, so that the entries of one run follow each other.
    Id formula(std::shared_ptr<const RowFormula> formula, bool live);
    // The text of the entry for a row with these numbers (a formula without numbers reads as
    // nothing).
    QString text(Id id, std::span<const uint8_t> rowNumbers = {}) const;
    // Whether the text of the entry depends on the row's numbers.
    bool dependsOnRow(Id id) const { return m_dependsOnRow[id] != 0; }
    bool isNull(Id id) const { return id == kNull; }
    bool isJoined(Id id) const { return m_entries[id].head < kFormulaMark; }
    size_t size() const { return m_entries.size(); }
    // The entries from `from` on (at least 2: the null and the empty text are always there), in
    // the form the record keeps them: their count, then each text or pair.
    QByteArray image(Id from = 2) const;
    // Appends the entries of an image(from) to a table that holds exactly `from` entries; false,
    // with the table unchanged, when the bytes are not such an image.
    bool appendImage(const QByteArray& bytes, Id from = 2);
    // The id of prefix + text(id).
    Id prefixed(const QString& prefix, Id id) { return join(intern(prefix), id); }

private:
    static constexpr Id kTextMark = UINT32_MAX;
    static constexpr Id kFormulaMark = UINT32_MAX - 1;
    // A text (head kTextMark, tail the index of the text), a formula (head kFormulaMark, tail
    // the index of the formula) or a joining.
    struct Entry {
        Id head;
        Id tail;
    };
    // One slot of the index of the joinings: empty while id is kTextMark.
    struct Slot {
        Id head = kTextMark;
        Id tail = 0;
        Id id = kTextMark;
    };

    static uint64_t hashOf(Id head, Id tail);
    bool isBlank(Id id) const { return id == kNull || id == kEmpty; }
    size_t slotOf(Id head, Id tail) const;
    void addJoined(Id head, Id tail, Id id);
    void rebuildIndex();
    void truncate(Id count);
    bool appendEntry(const QByteArray& bytes, qsizetype& at, Id id);
    bool appendFormula(const QByteArray& bytes, qsizetype& at);
    void pushEntry(Entry e, bool dependsOnRow);
    // The length of the entry's text, or the longest it can be for a formula.
    qsizetype longestText(Id id) const;
    // Calls fn(leaf) for the texts and formulas the entry joins, from left to right; a joining's
    // tail waits on a stack while its head is walked.
    template <typename Fn>
    void forEachLeaf(Id id, Fn&& fn) const {
        std::vector<Id> pending{id};
        while (!pending.empty()) {
            Id at = pending.back();
            pending.pop_back();
            while (isJoined(at)) {
                pending.push_back(m_entries[at].tail);
                at = m_entries[at].head;
            }
            fn(m_entries[at]);
        }
    }

    struct Formula {
        std::shared_ptr<const RowFormula> formula;
        bool live = true;
    };

    std::vector<Entry> m_entries;
    std::vector<uint8_t> m_dependsOnRow;  // per entry
    std::vector<Formula> m_formulas;
    std::vector<QString> m_texts;
    QHash<QString, Id> m_textIds;
    std::vector<Slot> m_slots;  // open addressing, a power of two long
    size_t m_joined = 0;

    // A few joined texts made lately: a grid repaints the same rows, a writer meets runs of
    // equal ids. Guarded, as readers on other threads may share the table.
    struct CachedText {
        Id id = kNull;
        QString text;
    };
    static constexpr size_t kCacheSlots = 64;
    mutable std::mutex m_cacheMutex;
    mutable std::vector<CachedText> m_cache;
};

// Maps reason ids to the ids of one prefix put in front of them, joining each id once.
class PrefixMap {
public:
    static constexpr ReasonTable::Id kUnset = UINT32_MAX;

    PrefixMap(ReasonTable& table, const QString& prefix) : m_table(table), m_prefix(table.intern(prefix)) {
        m_map.assign(table.size(), kUnset);
    }
    ReasonTable::Id operator()(ReasonTable::Id id) {
        ReasonTable::Id m = m_map[id];
        if (m != kUnset) return m;
        m = m_table.join(m_prefix, id);
        m_map[id] = m;
        // Joining may grow the table; ids made here are never looked up again in one pass.
        return m;
    }

private:
    ReasonTable& m_table;
    ReasonTable::Id m_prefix;
    std::vector<ReasonTable::Id> m_map;
};
