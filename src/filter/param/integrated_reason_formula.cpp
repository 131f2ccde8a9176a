#include "filter/param/integrated_reason_formula.h"

#include <QDataStream>
#include <QIODevice>

#include <array>
#include <optional>

namespace {

const QByteArray kKind = QByteArrayLiteral("integrated-filter");
constexpr quint8 kVersion = 1;

[[maybe_unused]] const bool kRegistered = [] {
    row_formula::registerLoader(kKind, &IntegratedReasonFormula::load);
    return true;
}();

template <typename T, size_t N>
void putAll(QDataStream& out, const std::array<T, N>& values) {
    for (const T& v : values) out << v;
}

template <typename T, size_t N>
void getAll(QDataStream& in, std::array<T, N>& values) {
    for (T& v : values) in >> v;
}

void putState(QDataStream& out, const ParamWindowState& s) {
    out << static_cast<qint32>(s.scope);
    putAll(out, s.numberTicks);
    for (const auto& box : s.boxes) putAll(out, box);
    putAll(out, s.parityTicks);
    out << s.keep << s.listMode << s.logicAnd;
    putAll(out, s.integratedBox);
    out << s.useTolerance << s.txtRc0 << s.txtRc1 << s.txtZdqj;
}

bool getState(QDataStream& in, ParamWindowState& s) {
    qint32 scope = 0;
    in >> scope;
    if (scope < static_cast<int>(ZoneScope::Front) || scope > static_cast<int>(ZoneScope::Both)) return false;
    s.scope = static_cast<ZoneScope>(scope);
    getAll(in, s.numberTicks);
    for (auto& box : s.boxes) getAll(in, box);
    getAll(in, s.parityTicks);
    in >> s.keep >> s.listMode >> s.logicAnd;
    getAll(in, s.integratedBox);
    in >> s.useTolerance >> s.txtRc0 >> s.txtRc1 >> s.txtZdqj;
    return true;
}

void putContext(QDataStream& out, const ParamContext& c) {
    out << static_cast<qint32>(c.maxQian) << static_cast<qint32>(c.maxHou);
    putAll(out, c.lastDrawFront);
    putAll(out, c.omissionFront);
    putAll(out, c.omissionBack);
}

bool getContext(QDataStream& in, ParamContext& c) {
    qint32 front = 0, back = 0;
    in >> front >> back;
    if (front < 1 || front >= kNumberSlots || back < 1 || back >= kNumberSlots) return false;
    c.maxQian = front;
    c.maxHou = back;
    getAll(in, c.lastDrawFront);
    getAll(in, c.omissionFront);
    getAll(in, c.omissionBack);
    return true;
}

}  // namespace

IntegratedReasonFormula::IntegratedReasonFormula(CandidateTable::Kind kind, const ParamWindowState& state,
                                                 const ParamContext& ctx, bool keepSense)
    : m_kind(kind), m_state(state), m_ctx(ctx), m_keepSense(keepSense) {}

const std::vector<FilterStep>& IntegratedReasonFormula::steps() const {
    std::call_once(m_compiled, [this] { m_steps = param_filter::integratedSteps(m_state, m_ctx, m_keepSense); });
    return m_steps;
}

QString IntegratedReasonFormula::text(std::span<const uint8_t> numbers, bool live) const {
    // One row of scratch per thread and kind: a text is read row by row, often many in a row.
    thread_local std::array<std::optional<CandidateTable>, 5> scratch;
    std::optional<CandidateTable>& slot = scratch[static_cast<size_t>(m_kind)];
    if (!slot) slot.emplace(m_kind, 1);
    CandidateTable& row = *slot;
    const size_t count = std::min(numbers.size(), static_cast<size_t>(row.numberCount()));
    for (size_t k = 0; k < count; ++k) row.numberColumn(static_cast<int>(k) + 1)[0] = numbers[k];
    // Some computations give dead rows a value of their own.
    row.filteredOut().set(0, !live);
    std::span<int16_t> paramValues = row.paramValues();
    QString out;
    for (const FilterStep& s : steps()) {
        param_kernels::computeRows(s.compute, row, paramValues, 0, 1);
        const int16_t v = s.valueColumn < 0 ? paramValues[0] : row.numberColumn(s.valueColumn + 1)[0];
        if ((live || !s.liveOnly) && s.hits(v)) out += s.reason(v);
    }
    return out;
}

// A bound from the window's texts, without compiling the steps: a step's text is its caption,
// the texts of its boxes (or numbers read from them) and its value.
qsizetype IntegratedReasonFormula::maxTextLength() const {
    constexpr qsizetype kFixedPart = 128;  // caption, "大小:", the sense, two numbers, the value
    qsizetype length = 0;
    for (const auto& box : m_state.boxes) {
        length += kFixedPart + m_state.txtZdqj.size();
        for (const QString& text : box) length += 2 * text.size();
    }
    return length;
}

QByteArray IntegratedReasonFormula::kind() const { return kKind; }

QByteArray IntegratedReasonFormula::payload() const {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << kVersion << static_cast<qint32>(m_kind) << m_keepSense;
    putContext(out, m_ctx);
    putState(out, m_state);
    return bytes;
}

std::shared_ptr<const RowFormula> IntegratedReasonFormula::load(const QByteArray& payload) {
    QDataStream in(payload);
    in.setVersion(QDataStream::Qt_6_0);
    quint8 version = 0;
    qint32 kind = -1;
    bool keepSense = true;
    in >> version >> kind >> keepSense;
    if (version != kVersion || kind < 0 || kind > static_cast<int>(CandidateTable::Kind::SixNumbers)) return nullptr;
    ParamContext ctx;
    ParamWindowState state;
    if (!getContext(in, ctx) || !getState(in, state)) return nullptr;
    if (in.status() != QDataStream::Ok || !in.atEnd()) return nullptr;
    return std::make_shared<IntegratedReasonFormula>(static_cast<CandidateTable::Kind>(kind), state, ctx, keepSense);
}
