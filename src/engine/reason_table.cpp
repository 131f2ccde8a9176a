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

// The texts one after another, each closed by a NUL (a reason never holds one).
QByteArray ReasonTable::image(Id from) const {
    QByteArray out;
    for (size_t id = from; id < m_texts.size(); ++id) {
        out += m_texts[id].toUtf8();
        out += '\0';
    }
    return out;
}

bool ReasonTable::appendImage(const QByteArray& bytes, Id from) {
    if (from < 2 || from != m_texts.size() || (!bytes.isEmpty() && !bytes.endsWith('\0'))) return false;
    QList<QByteArray> texts = bytes.split('\0');
    texts.removeLast();  // the piece after the last terminator
    for (qsizetype i = 0; i < texts.size(); ++i) {
        const QString text = QString::fromUtf8(texts[i]);
        // Every text of a table is distinct; a repeat means the bytes are not an image.
        if (m_ids.contains(text)) {
            while (m_texts.size() > from) {
                m_ids.remove(m_texts.back());
                m_texts.pop_back();
            }
            return false;
        }
        intern(text);
    }
    return true;
}
