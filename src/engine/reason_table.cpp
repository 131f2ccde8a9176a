#include "engine/reason_table.h"

#include <cstring>

namespace {

// The tags of the entries of an image.
constexpr char kTextTag = 'T';    // the text in UTF-8, closed by a NUL (a reason never holds one)
constexpr char kJoinedTag = 'J';  // head and tail, four bytes each, lowest byte first
// A formula: 1 for live rows or 0, the length of the saved formula in four bytes, its bytes.
constexpr char kFormulaTag = 'F';
// The longest text an image may make: a stored table whose joinings add up to more is damaged.
constexpr qsizetype kMaxTextLength = qsizetype{1} << 20;

void putId(QByteArray& out, uint32_t id) {
    for (int shift = 0; shift < 32; shift += 8) out += static_cast<char>((id >> shift) & 0xFFu);
}

uint32_t getId(const char* p) {
    uint32_t id = 0;
    for (int i = 0; i < 4; ++i) id |= uint32_t{static_cast<uint8_t>(p[i])} << (8 * i);
    return id;
}

}  // namespace

ReasonTable::ReasonTable(const ReasonTable& other)
    : m_entries(other.m_entries),
      m_dependsOnRow(other.m_dependsOnRow),
      m_formulas(other.m_formulas),
      m_texts(other.m_texts),
      m_textIds(other.m_textIds),
      m_slots(other.m_slots),
      m_joined(other.m_joined) {}

ReasonTable& ReasonTable::operator=(const ReasonTable& other) {
    if (this == &other) return *this;
    m_entries = other.m_entries;
    m_dependsOnRow = other.m_dependsOnRow;
    m_formulas = other.m_formulas;
    m_texts = other.m_texts;
    m_textIds = other.m_textIds;
    m_slots = other.m_slots;
    m_joined = other.m_joined;
    const std::lock_guard lock(m_cacheMutex);
    m_cache.clear();
    return *this;
}

ReasonTable::ReasonTable(ReasonTable&& other) noexcept
    : m_entries(std::move(other.m_entries)),
      m_dependsOnRow(std::move(other.m_dependsOnRow)),
      m_formulas(std::move(other.m_formulas)),
      m_texts(std::move(other.m_texts)),
      m_textIds(std::move(other.m_textIds)),
      m_slots(std::move(other.m_slots)),
      m_joined(other.m_joined) {
    other.clear();
}

ReasonTable& ReasonTable::operator=(ReasonTable&& other) noexcept {
    if (this == &other) return *this;
    m_entries = std::move(other.m_entries);
    m_dependsOnRow = std::move(other.m_dependsOnRow);
    m_formulas = std::move(other.m_formulas);
    m_texts = std::move(other.m_texts);
    m_textIds = std::move(other.m_textIds);
    m_slots = std::move(other.m_slots);
    m_joined = other.m_joined;
    {
        const std::lock_guard lock(m_cacheMutex);
        m_cache.clear();
    }
    other.clear();
    return *this;
}

void ReasonTable::clear() {
    m_entries.clear();
    m_dependsOnRow.clear();
    m_formulas.clear();
    m_texts.clear();
    m_textIds.clear();
    m_slots.assign(1024, Slot{});
    m_joined = 0;
    m_texts.emplace_back();             // kNull
    m_texts.emplace_back(QString(""));  // kEmpty
    pushEntry({kTextMark, 0}, false);
    pushEntry({kTextMark, 1}, false);
    m_textIds.insert(QString(""), kEmpty);
    const std::lock_guard lock(m_cacheMutex);
    m_cache.clear();
}

ReasonTable::Id ReasonTable::intern(const QString& text) {
    const auto it = m_textIds.constFind(text);
    if (it != m_textIds.constEnd()) return it.value();
    const Id id = nextId();
    pushEntry({kTextMark, static_cast<Id>(m_texts.size())}, false);
    m_texts.push_back(text);
    m_textIds.insert(text, id);
    return id;
}

void ReasonTable::pushEntry(Entry e, bool dependsOnRow) {
    m_entries.push_back(e);
    m_dependsOnRow.push_back(dependsOnRow ? 1 : 0);
}

ReasonTable::Id ReasonTable::formula(std::shared_ptr<const RowFormula> formula, bool live) {
    const Id id = nextId();
    pushEntry({kFormulaMark, static_cast<Id>(m_formulas.size())}, true);
    m_formulas.push_back({std::move(formula), live});
    return id;
}

std::optional<ReasonTable::Id> ReasonTable::find(const QString& text) const {
    const auto it = m_textIds.constFind(text);
    if (it == m_textIds.constEnd()) return std::nullopt;
    return it.value();
}

uint64_t ReasonTable::hashOf(Id head, Id tail) {
    uint64_t h = (uint64_t{head} << 32 | tail) * 0x9E3779B97F4A7C15ull;
    h ^= h >> 29;
    h *= 0xBF58476D1CE4E5B9ull;
    return h ^ (h >> 32);
}

// The slot of the pair, or the empty slot where it would go.
size_t ReasonTable::slotOf(Id head, Id tail) const {
    const size_t mask = m_slots.size() - 1;
    size_t i = hashOf(head, tail) & mask;
    while (true) {
        const Slot& s = m_slots[i];
        if (s.id == kTextMark || (s.head == head && s.tail == tail)) return i;
        i = (i + 1) & mask;
    }
}

void ReasonTable::addJoined(Id head, Id tail, Id id) {
    // At most half full, so that a probe stays short.
    if ((m_joined + 1) * 2 > m_slots.size()) {
        m_slots.assign(m_slots.size() * 2, Slot{});
        rebuildIndex();
    }
    m_slots[slotOf(head, tail)] = {head, tail, id};
    ++m_joined;
}

void ReasonTable::rebuildIndex() {
    std::fill(m_slots.begin(), m_slots.end(), Slot{});
    m_joined = 0;
    for (Id id = 0; id < m_entries.size(); ++id) {
        const Entry& e = m_entries[id];
        if (!isJoined(id)) continue;
        m_slots[slotOf(e.head, e.tail)] = {e.head, e.tail, id};
        ++m_joined;
    }
}

ReasonTable::Id ReasonTable::join(Id head, Id tail) {
    if (isBlank(tail)) return head == kNull ? tail : head;
    if (isBlank(head)) return tail;
    const Slot& s = m_slots[slotOf(head, tail)];
    if (s.id != kTextMark) return s.id;
    const Id id = nextId();
    pushEntry({head, tail}, dependsOnRow(head) || dependsOnRow(tail));
    addJoined(head, tail, id);
    return id;
}

std::optional<ReasonTable::Id> ReasonTable::findJoined(Id head, Id tail) const {
    if (isBlank(tail)) return head == kNull ? tail : head;
    if (isBlank(head)) return tail;
    const Slot& s = m_slots[slotOf(head, tail)];
    if (s.id == kTextMark) return std::nullopt;
    return s.id;
}

QString ReasonTable::text(Id id, std::span<const uint8_t> rowNumbers) const {
    const Entry& top = m_entries[id];
    if (top.head == kTextMark) return m_texts[top.tail];
    const bool cached = !dependsOnRow(id);
    if (cached) {
        const std::lock_guard lock(m_cacheMutex);
        if (!m_cache.empty() && m_cache[id % kCacheSlots].id == id) return m_cache[id % kCacheSlots].text;
    }
    QString out;
    forEachLeaf(id, [&](const Entry& leaf) {
        if (leaf.head == kTextMark) {
            out += m_texts[leaf.tail];
        } else if (!rowNumbers.empty()) {
            const Formula& f = m_formulas[leaf.tail];
            out += f.formula->text(rowNumbers, f.live);
        }
    });
    if (!cached) return out;
    const std::lock_guard lock(m_cacheMutex);
    if (m_cache.empty()) m_cache.resize(kCacheSlots);
    m_cache[id % kCacheSlots] = {id, out};
    return out;
}

qsizetype ReasonTable::longestText(Id id) const {
    qsizetype length = 0;
    forEachLeaf(id, [&](const Entry& leaf) {
        length += leaf.head == kTextMark ? m_texts[leaf.tail].size() : m_formulas[leaf.tail].formula->maxTextLength();
    });
    return length;
}

// The count of the entries, then each entry: its tag and its text or its pair.
QByteArray ReasonTable::image(Id from) const {
    QByteArray out;
    putId(out, static_cast<uint32_t>(m_entries.size() > from ? m_entries.size() - from : 0));
    for (size_t id = from; id < m_entries.size(); ++id) {
        const Entry& e = m_entries[id];
        if (e.head == kTextMark) {
            out += kTextTag;
            out += m_texts[e.tail].toUtf8();
            out += '\0';
        } else if (e.head == kFormulaMark) {
            const Formula& f = m_formulas[e.tail];
            const QByteArray saved = row_formula::save(*f.formula);
            out += kFormulaTag;
            out += f.live ? '\1' : '\0';
            putId(out, static_cast<uint32_t>(saved.size()));
            out += saved;
        } else {
            out += kJoinedTag;
            putId(out, e.head);
            putId(out, e.tail);
        }
    }
    return out;
}

// Reads the entry `id` at bytes[at..]; false when it is not one that the table could hold.
bool ReasonTable::appendEntry(const QByteArray& bytes, qsizetype& at, Id id) {
    const char tag = bytes[at++];
    if (tag == kTextTag) {
        const qsizetype end = bytes.indexOf('\0', at);
        if (end < 0) return false;
        const QString text = QString::fromUtf8(bytes.constData() + at, end - at);
        at = end + 1;
        // Every text of a table is distinct; a repeat means the bytes are not an image.
        if (m_textIds.contains(text)) return false;
        intern(text);
        return true;
    }
    if (tag == kFormulaTag) return appendFormula(bytes, at);
    if (tag != kJoinedTag || bytes.size() - at < 8) return false;
    const Id head = getId(bytes.constData() + at);
    const Id tail = getId(bytes.constData() + at + 4);
    at += 8;
    // A joining names earlier entries only, never a blank side, and never a pair twice.
    if (head >= id || tail >= id || isBlank(head) || isBlank(tail) || findJoined(head, tail)) return false;
    pushEntry({head, tail}, dependsOnRow(head) || dependsOnRow(tail));
    addJoined(head, tail, id);
    return true;
}

// A formula whose kind has no loader, or whose loader refuses it, is not one the table could
// hold.
bool ReasonTable::appendFormula(const QByteArray& bytes, qsizetype& at) {
    if (bytes.size() - at < 5) return false;
    const char live = bytes[at];
    const uint32_t size = getId(bytes.constData() + at + 1);
    at += 5;
    if ((live != 0 && live != 1) || size > static_cast<uint64_t>(bytes.size() - at)) return false;
    std::shared_ptr<const RowFormula> f = row_formula::load(bytes.mid(at, size));
    at += size;
    if (!f) return false;
    formula(std::move(f), live == 1);
    return true;
}

bool ReasonTable::appendImage(const QByteArray& bytes, Id from) {
    if (from < 2 || from != m_entries.size() || bytes.size() < 4) return false;
    const uint32_t count = getId(bytes.constData());
    // Every entry takes at least two bytes: a cut image or one with bytes past its last entry
    // is refused.
    if (count > (bytes.size() - 4) / 2) return false;
    // The length of every text read, so that joinings that double a text again and again (a
    // few hundred bytes standing for terabytes) are refused before any text is made.
    std::vector<qsizetype> lengths;  // of the entries from `from` on
    QHash<Id, qsizetype> earlier;
    const auto lengthOf = [&](Id id) {
        if (id >= from) return lengths[id - from];
        auto it = earlier.constFind(id);
        if (it == earlier.constEnd()) it = earlier.insert(id, longestText(id));
        return *it;
    };
    qsizetype at = 4;
    for (uint32_t i = 0; i < count; ++i) {
        if (at >= bytes.size() || !appendEntry(bytes, at, nextId())) {
            truncate(from);
            return false;
        }
        const Entry& e = m_entries.back();
        if (e.head == kTextMark)
            lengths.push_back(m_texts[e.tail].size());
        else if (e.head == kFormulaMark)
            lengths.push_back(m_formulas[e.tail].formula->maxTextLength());
        else
            lengths.push_back(lengthOf(e.head) + lengthOf(e.tail));
        if (lengths.back() > kMaxTextLength) {
            truncate(from);
            return false;
        }
    }
    if (at != bytes.size()) {
        truncate(from);
        return false;
    }
    return true;
}

// Drops the entries from `count` on.
void ReasonTable::truncate(Id count) {
    bool joinedDropped = false;
    while (m_entries.size() > count) {
        const Entry e = m_entries.back();
        m_entries.pop_back();
        m_dependsOnRow.pop_back();
        if (e.head == kFormulaMark) {
            m_formulas.pop_back();
            continue;
        }
        if (e.head != kTextMark) {
            joinedDropped = true;
            continue;
        }
        m_textIds.remove(m_texts.back());
        m_texts.pop_back();
    }
    if (joinedDropped) rebuildIndex();
    const std::lock_guard lock(m_cacheMutex);
    m_cache.clear();
}
