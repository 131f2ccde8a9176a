#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

// The interned texts of the reason column `Fliter`. A row holds an id; id 0 is the null that
// an expansion leaves, id 1 the empty text that the resets write. A prefix in front of a null
// reads as the prefix alone, as the concatenation of the stored statements does.
class ReasonTable {
public:
    using Id = uint32_t;
    static constexpr Id kNull = 0;
    static constexpr Id kEmpty = 1;

    ReasonTable() { clear(); }

    void clear();
    Id intern(const QString& text);
    // The id of a text interned before, without interning it.
    std::optional<Id> find(const QString& text) const;
    // The id the next new text will take.
    Id nextId() const { return static_cast<Id>(m_texts.size()); }
    const QString& text(Id id) const { return m_texts[id]; }
    bool isNull(Id id) const { return id == kNull; }
    size_t size() const { return m_texts.size(); }
    // The entries from `from` on (at least 2: the null and the empty text are always there), in
    // the form the record keeps them.
    QByteArray image(Id from = 2) const;
    // Appends the entries of an image(from) to a table that holds exactly `from` entries; false,
    // with the table unchanged, when the bytes are not such an image.
    bool appendImage(const QByteArray& bytes, Id from = 2);
    // The id of prefix + text(id), memoised per prefix by the caller's remap (see PrefixMap).
    Id prefixed(const QString& prefix, Id id) { return intern(prefix + m_texts[id]); }

private:
    std::vector<QString> m_texts;
    QHash<QString, Id> m_ids;
};

// Maps reason ids to the ids of one prefix put in front of them, interning each text once.
class PrefixMap {
public:
    static constexpr ReasonTable::Id kUnset = UINT32_MAX;

    PrefixMap(ReasonTable& table, QString prefix) : m_table(table), m_prefix(std::move(prefix)) {
        m_map.assign(table.size(), kUnset);
    }
    ReasonTable::Id operator()(ReasonTable::Id id) {
        ReasonTable::Id m = m_map[id];
        if (m != kUnset) return m;
        m = m_table.prefixed(m_prefix, id);
        m_map[id] = m;
        // Interning may grow the table; ids made here are never looked up again in one pass.
        return m;
    }

private:
    ReasonTable& m_table;
    QString m_prefix;
    std::vector<ReasonTable::Id> m_map;
};
