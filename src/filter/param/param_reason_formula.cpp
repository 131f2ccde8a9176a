#include "filter/param/param_reason_formula.h"

#include <QDataStream>
#include <QIODevice>

#include <array>
#include <optional>

namespace {

const QByteArray kKind = QByteArrayLiteral("param-filter");
constexpr quint8 kVersion = 1;

[[maybe_unused]] const bool kRegistered = [] {
    row_formula::registerLoader(kKind, &ParamReasonFormula::load);
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

ParamReasonFormula::ParamReasonFormula(CandidateTable::Kind kind, const ParamWindowState& state,
                                       const ParamContext& ctx, bool keepSense, std::optional<Single> single)
    : m_kind(kind), m_state(state), m_ctx(ctx), m_keepSense(keepSense), m_single(single) {}

std::shared_ptr<ParamReasonFormula> ParamReasonFormula::integrated(CandidateTable::Kind kind,
                                                                   const ParamWindowState& state,
                                                                   const ParamContext& ctx, bool keepSense) {
    return std::shared_ptr<ParamReasonFormula>(new ParamReasonFormula(kind, state, ctx, keepSense, std::nullopt));
}

std::shared_ptr<ParamReasonFormula> ParamReasonFormula::singleStep(CandidateTable::Kind kind,
                                                                   const ParamWindowState& state,
                                                                   const ParamContext& ctx, ParamId id,
                                                                   bool keepSense, int step) {
    return std::shared_ptr<ParamReasonFormula>(
        new ParamReasonFormula(kind, state, ctx, keepSense, Single{id, step}));
}

const std::vector<FilterStep>& ParamReasonFormula::steps() const {
    std::call_once(m_compiled, [this] {
        m_steps = m_single ? param_filter::buildSteps(m_single->id, m_state, m_ctx, m_keepSense, false)
                           : param_filter::integratedSteps(m_state, m_ctx, m_keepSense);
    });
    return m_steps;
}

QString ParamReasonFormula::text(std::span<const uint8_t> numbers, bool live) const {
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
    const auto valueOf = [&](const FilterStep& s) {
        param_kernels::computeRows(s.compute, row, paramValues, 0, 1);
        return s.valueColumn < 0 ? paramValues[0] : int16_t{row.numberColumn(s.valueColumn + 1)[0]};
    };
    const std::vector<FilterStep>& all = steps();
    if (m_single) {
        const auto at = static_cast<size_t>(m_single->step);
        return at < all.size() ? all[at].reason(valueOf(all[at])) : QString();
    }
    QString out;
    for (const FilterStep& s : all) {
        const int16_t v = valueOf(s);
        if ((live || !s.liveOnly) && s.hits(v)) out += s.reason(v);
    }
    return out;
}

// A bound from the window's texts, without compiling the steps: a step's text is its caption,
// the texts of its boxes (or numbers read from them) and its value.
qsizetype ParamReasonFormula::maxTextLength() const {
    constexpr qsizetype kFixedPart = 128;  // caption, "大小:", the sense, two numbers, the value
    qsizetype length = 0;
    for (const auto& box : m_state.boxes) {
        length += kFixedPart + m_state.txtZdqj.size();
        for (const QString& text : box) length += 2 * text.size();
    }
    return length;
}

QByteArray ParamReasonFormula::kind() const { return kKind; }

QByteArray ParamReasonFormula::payload() const {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << kVersion << static_cast<qint32>(m_kind) << m_keepSense;
    out << static_cast<qint32>(m_single ? static_cast<int>(m_single->id) : -1)
        << static_cast<qint32>(m_single ? m_single->step : 0);
    putContext(out, m_ctx);
    putState(out, m_state);
    return bytes;
}

std::shared_ptr<const RowFormula> ParamReasonFormula::load(const QByteArray& payload) {
    QDataStream in(payload);
    in.setVersion(QDataStream::Qt_6_0);
    quint8 version = 0;
    qint32 kind = -1;
    bool keepSense = true;
    qint32 single = -1, step = 0;
    in >> version >> kind >> keepSense >> single >> step;
    if (version != kVersion || kind < 0 || kind > static_cast<int>(CandidateTable::Kind::SixNumbers)) return nullptr;
    if (single < -1 || single >= kParamCount || step < 0 || step > 1) return nullptr;
    ParamContext ctx;
    ParamWindowState state;
    if (!getContext(in, ctx) || !getState(in, state)) return nullptr;
    if (in.status() != QDataStream::Ok || !in.atEnd()) return nullptr;
    const auto k = static_cast<CandidateTable::Kind>(kind);
    if (single < 0) return integrated(k, state, ctx, keepSense);
    return singleStep(k, state, ctx, static_cast<ParamId>(single), keepSense, step);
}
