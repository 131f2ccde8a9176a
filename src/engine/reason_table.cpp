#include "engine/reason_table.h"

void ReasonTable::clear() {
    m_texts.clear();
    m_ids.clear();
    m_texts.emplace_back();             // kNull
    m_texts.emplace_back(QString(""));  // kEmpty
    m_ids.insert(QString(""), kEmpty);
}

ReasonTable::Id ReasonTable::intern(const QString& text) {
    const auto it = m_ids.constFind(text);
    if (it != m_ids.constEnd()) return it.value();
    const Id id = static_cast<Id>(m_texts.size());
    m_texts.push_back(text);
    m_ids.insert(text, id);
    return id;
}

std::optional<ReasonTable::Id> ReasonTable::find(const QString& text) const {
    const auto it = m_ids.constFind(text);
    if (it == m_ids.constEnd()) return std::nullopt;
    return it.value();
}
