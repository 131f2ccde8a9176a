#include "filter/super/super_filter.h"

#include "engine/candidate_store.h"
#include "filter/super/history_kernel.h"
#include "workspace/prompter.h"
#include "workspace/sqlite_db.h"

#include <QRegularExpression>

#include <cfenv>
#include <climits>
#include <cmath>

namespace super_filter {

namespace {

struct ButtonInfo {
    SuperButton button;
    const char* name;
    int code;
};

constexpr ButtonInfo kButtons[] = {
    {SuperButton::RelationConflicting, "Option25(0)", 10},
    {SuperButton::RelationSupporting, "Option25(1)", 11},
    {SuperButton::RelationKeeping, "Option25(2)", 12},
    {SuperButton::HistoryHigh, "Option27", 4},
    {SuperButton::HistoryMiddle, "Option28", 5},
    {SuperButton::HistoryLow, "Option26", 6},
    {SuperButton::InclusionKill, "Option31", 13},
    {SuperButton::InclusionKeep, "Option30", 14},
    {SuperButton::SameAsTemplate, "Option43", 15},
};

const ButtonInfo& info(SuperButton b) { return kButtons[static_cast<size_t>(b)]; }

// Captions of Option27, Option28, Option26 by tab; Option27 keeps its front caption while
// disabled in the back tab.
const char* const kHistoryCaptions[3][3] = {{"历史同5号滤", "历史同4号滤", "历史同3号滤"},
                                            {"历史同5号滤", "历史同2号滤", "历史同1号滤"},
                                            {"历史同6号滤", "历史同5号滤", "历史同4号滤"}};
constexpr int kThresholds[3][3] = {{5, 4, 3}, {0, 2, 1}, {6, 5, 4}};

int tabIndex(ZoneScope s) { return static_cast<int>(s) - 1; }

}  // namespace

QString objectName(SuperButton b) { return QString::fromLatin1(info(b).name); }

std::optional<SuperButton> byObjectName(const QString& name) {
    for (const ButtonInfo& i : kButtons)
        if (name.compare(QLatin1String(i.name), Qt::CaseInsensitive) == 0) return i.button;
    return std::nullopt;
}

QString caption(SuperButton b, ZoneScope tab) {
    switch (b) {
        case SuperButton::RelationConflicting:
            return QStringLiteral("相克号过滤");
        case SuperButton::RelationSupporting:
            return QStringLiteral("相生号过滤");
        case SuperButton::RelationKeeping:
            return QStringLiteral("保留号过滤");
        case SuperButton::HistoryHigh:
            return QString::fromUtf8(kHistoryCaptions[tabIndex(tab)][0]);
        case SuperButton::HistoryMiddle:
            return QString::fromUtf8(kHistoryCaptions[tabIndex(tab)][1]);
        case SuperButton::HistoryLow:
            return QString::fromUtf8(kHistoryCaptions[tabIndex(tab)][2]);
        case SuperButton::InclusionKill:
            return QStringLiteral("相克号包含过滤");
        case SuperButton::InclusionKeep:
            return QStringLiteral("保留号包含过滤");
        case SuperButton::SameAsTemplate:
            return QStringLiteral("组合模版同号滤");
    }
    return {};
}

bool enabled(SuperButton b, ZoneScope tab, const FilterSourceTraits& traits) {
    if (b == SuperButton::HistoryHigh) return tab != ZoneScope::Back;
    if (b == SuperButton::SameAsTemplate) return !traits.filtersTemplateItself;
    return true;
}

int stepCode(SuperButton b) { return info(b).code; }

std::optional<SuperButton> byStepCode(int code) {
    for (const ButtonInfo& i : kButtons)
        if (i.code == code) return i.button;
    return std::nullopt;
}

int threshold(SuperButton b, ZoneScope scope) {
    const int s = tabIndex(scope);
    switch (b) {
        case SuperButton::HistoryHigh:
            return kThresholds[s][0];
        case SuperButton::HistoryMiddle:
            return kThresholds[s][1];
        case SuperButton::HistoryLow:
            return kThresholds[s][2];
        default:
            return 0;
    }
}

ZoneScope scopeOf(int zoneScope) {
    if (zoneScope == 2) return ZoneScope::Back;
    if (zoneScope == 3) return ZoneScope::Both;
    return ZoneScope::Front;
}

std::optional<double> numeric(const QString& text) {
    static const QRegularExpression re(
        QStringLiteral("^\\s*[+-]?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?\\s*$"));
    if (!re.match(text).hasMatch()) return std::nullopt;
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v)) return std::nullopt;
    return v;
}

int64_t passes(const QString& text) {
    const auto v = numeric(text);
    if (!v || *v < 1) return 0;
    return *v >= static_cast<double>(INT64_MAX / 2) ? INT64_MAX / 2 : static_cast<int64_t>(std::floor(*v));
}

int16_t toInt16(double v) {
    const double r = std::nearbyint(v);  // the default rounding mode: half to even
    return static_cast<int16_t>(std::clamp(r, double{INT16_MIN}, double{INT16_MAX}));
}

}  // namespace super_filter

using namespace super_filter;

namespace {

const QString kRelationTitle = QStringLiteral("相生/相克个数");
const QString kRelationPrompt = QStringLiteral(
    "相生表示所选的若干个号码单独出现的时候全部过滤掉，只有全部出现的时候才保留；相克表示所选号码全部同时出现"
    "的时候将过滤掉。"
    "请输入相生/相克数字的数目，大小必须在1~7之间。");
const QString kNumberTitle = QStringLiteral("相克数输入");
const QString kHistoryTitle = QStringLiteral("历史过滤");
const QString kHistoryPrompt = QStringLiteral(
    "请输入过滤检索历史号码的期数，所填数字表示最近前若干期，缺省将检索所有期，所检索到的历史开出号码将被滤除"
    "。"
    "花费的时间可能较长，请您稍等！");
const QString kCountTitle = QStringLiteral("相克号码总个数");
const QString kGroupTitle = QStringLiteral("相克号码组个数");
const QString kBankerTitle = QStringLiteral("保留胆输入");

// Asks a count until it is acceptable. `check` returns the error text, empty when the value
// is good. Returns false when the action ends; `target` takes every answer (a cancel as "").
template <typename Check>
bool askValue(Prompter& p, const QString& title, const QString& prompt, const QString& proposal,
              bool emptyEnds, QString& target, Check&& check) {
    for (int tries = 0; tries <= kMaxRetries; ++tries) {
        const std::optional<QString> a = p.askTextOrCancel(title, prompt, proposal);
        target = a.value_or(QString());
        if (!a || (emptyEnds && a->isEmpty())) return false;
        const QString error = check(numeric(*a));
        if (error.isEmpty()) return true;
        if (!p.okCancel(kInputError, error)) return false;
    }
    return false;
}

}  // namespace

SuperFilter::SuperFilter(FilterWorkspace& workspace, DrawHistoryView history, int maxQian,
                         SqliteDb& filterDb)
    : m_ws(workspace), m_history(history), m_maxQian(maxQian), m_filterDb(filterDb) {}

bool SuperFilter::askNumber(Prompter& p, const QString& prompt, int16_t& slot) const {
    for (int tries = 0; tries <= kMaxRetries; ++tries) {
        const std::optional<QString> a = p.askTextOrCancel(kNumberTitle, prompt);
        if (!a) return false;
        const auto v = numeric(*a);
        QString error;
        if (!v) {
            error = kInOrder;
        } else if (*v == 0) {
            return false;
        } else if (*v > m_maxQian || *v < 1) {
            error = QStringLiteral("请输入1~%1之间的数字").arg(m_maxQian);
        } else {
            slot = toInt16(*v);
            return true;
        }
        if (!p.okCancel(kInputError, error)) return false;
    }
    return false;
}

bool SuperFilter::askRelation(SuperInputs& in, Prompter& p) const {
    const bool ok = askValue(p, kRelationTitle, kRelationPrompt, QStringLiteral("2"), true, in.superCount,
                             [](std::optional<double> v) -> QString {
                                 if (!v) return kInOrder;
                                 if (*v < 1 || *v > 5) return QStringLiteral("请输入1~5的数字");
                                 return {};
                             });
    if (!ok) return false;
    const int64_t n = passes(in.superCount);
    for (int64_t i = 0; i < n; ++i)
        if (!askNumber(p, QStringLiteral("请输入第%1个相克数").arg(i + 1),
                       in.superNumbers[static_cast<size_t>(i)]))
            return false;
    return true;
}

bool SuperFilter::askHistory(SuperInputs& in, Prompter& p) const {
    const QString notNumber = m_ws.traits().historyInputMessage;
    return askValue(p, kHistoryTitle, kHistoryPrompt, QString::number(m_history.drawCount()), true,
                    in.superCount, [&](std::optional<double> v) -> QString {
                        if (!v) return notNumber;
                        if (*v <= 0) return QStringLiteral("请输入一个正数");
                        return {};
                    });
}

bool SuperFilter::askInclusion(SuperInputs& in, Prompter& p) const {
    const auto oneToNine = [](std::optional<double> v) -> QString {
        if (!v) return kAskNumber;
        if (*v < 1 || *v > 9) return QStringLiteral("请输入1~9之间的数字");
        return {};
    };
    if (!askValue(p, kCountTitle, QStringLiteral("请输入相克数字的总数目，大小必须在1~9之间。"),
                  QStringLiteral("4"), true, in.superCount, oneToNine))
        return false;
    const double total = *numeric(in.superCount);
    QString group;
    const QString groupPrompt =
        QStringLiteral(
            "请输入保留数字的出现最高数目，大小必须在1~%1之间。\n"
            "若组合的号码中含有设置个数以上的号码与相克数字中的相同，那么该组号码将被过滤掉")
            .arg(in.superCount);
    if (!askValue(p, kGroupTitle, groupPrompt, QStringLiteral("2"), false, group,
                  [&](std::optional<double> v) -> QString {
                      if (!v) return kAskNumber;
                      if (*v < 1 || *v > total)
                          return QStringLiteral("请输入1~%1之间的数字").arg(in.superCount);
                      return {};
                  }))
        return false;
    in.groupSize = toInt16(*numeric(group));
    const int64_t n = passes(in.superCount);
    for (int64_t i = 1; i <= n; ++i)
        if (!askNumber(p, QStringLiteral("请输入第%1个相克数").arg(i),
                       in.superNumbers[static_cast<size_t>(i)]))
            return false;
    const QString danPrompt = QStringLiteral(
        "请输入保留数字的总胆数目（每一组生克号中都必须出现的数字个数），大小必须在0~"
        "6之间。如果没有胆则此处填0。");
    // The count is checked against 1..9, so a 0 is refused with that message.
    if (!askValue(p, kCountTitle, danPrompt, QStringLiteral("0"), true, in.bankerCount, oneToNine))
        return false;
    const int64_t m = passes(in.bankerCount);
    for (int64_t i = 1; i <= m; ++i) {
        QString answer;
        if (!askValue(p, kBankerTitle, QStringLiteral("请输入第%1个保留胆").arg(i), QString(), false, answer,
                      [](std::optional<double> v) -> QString { return v ? QString() : kAskNumber; }))
            return false;
        in.bankers[static_cast<size_t>(i)] = toInt16(*numeric(answer));
    }
    return true;
}

SuperFilter::Outcome SuperFilter::click(SuperButton b, FilterWorkspace::Mouse mouse, SuperInputs& in,
                                        ZoneScope tab, Prompter& prompter, EngineProgress* progress) {
    // Recording needs no table: only the left button filters.
    if (!enabled(b, tab, m_ws.traits())) return {};
    if (mouse == FilterWorkspace::Mouse::Left && !m_ws.isOpen()) return {};
    bool asked = true;
    switch (b) {
        case SuperButton::RelationConflicting:
        case SuperButton::RelationSupporting:
        case SuperButton::RelationKeeping:
            asked = askRelation(in, prompter);
            break;
        case SuperButton::HistoryLow:
        case SuperButton::HistoryHigh:
        case SuperButton::HistoryMiddle:
            asked = askHistory(in, prompter);
            break;
        case SuperButton::InclusionKeep:
        case SuperButton::InclusionKill:
            asked = askInclusion(in, prompter);
            break;
        case SuperButton::SameAsTemplate:
            // No input: the right button records an empty sknum.
            if (mouse == FilterWorkspace::Mouse::Right) in.superCount.clear();
            break;
    }
    if (!asked) return {};
    if (mouse == FilterWorkspace::Mouse::Right) {
        m_ws.setStepCode(static_cast<int16_t>(stepCode(b)));
        Outcome o;
        o.popupRecordMenu = true;
        return o;
    }
    return runWorker(b, in, tab, progress);
}

SuperFilter::Outcome SuperFilter::runWorker(SuperButton b, SuperInputs& in, ZoneScope tab,
                                            EngineProgress* progress) {
    if (!m_ws.isOpen()) return {};
    m_used.insert(objectName(b));
    switch (b) {
        case SuperButton::RelationConflicting:
            return runRelation(0, in);
        case SuperButton::RelationSupporting:
            return runRelation(1, in);
        case SuperButton::RelationKeeping:
            return runRelation(2, in);
        case SuperButton::HistoryLow:
        case SuperButton::HistoryHigh:
        case SuperButton::HistoryMiddle:
            return runHistory(b, in, tab, progress);
        case SuperButton::InclusionKeep:
        case SuperButton::InclusionKill:
            return runInclusion(b, in);
        case SuperButton::SameAsTemplate:
            return runTemplate();
    }
    return {};
}

SuperFilter::Outcome SuperFilter::runRelation(int index, SuperInputs& in) {
    if (!m_ws.isOpen()) return {};
    // For i = 0 To sknum - 1 over sk(0..9): entries past the array are passed over.
    const auto n = static_cast<size_t>(
        std::min<int64_t>(passes(in.superCount), static_cast<int64_t>(in.superNumbers.size())));
    const std::span<const int16_t> numbers(in.superNumbers.data(), n);
    in.patternText = super_kernels::relationPattern(numbers);
    const FilterWorkspace::Edit edit = m_ws.edit();
    CandidateTable& t = edit.table();
    Outcome o;
    o.ran = true;
    if (index >= 0 && index <= 2) {
        const auto kind = static_cast<super_kernels::Relation>(index);
        const SuperButton b = index == 0   ? SuperButton::RelationConflicting
                              : index == 1 ? SuperButton::RelationSupporting
                                           : SuperButton::RelationKeeping;
        o.killed = super_kernels::relation(t, kind, numbers, caption(b, ZoneScope::Front));
    } else {
        // No member of that index: only the copy of the flags and the text of the numbers.
        super_kernels::relationPrologue(t);
    }
    return o;
}

SuperFilter::Outcome SuperFilter::runHistory(SuperButton b, const SuperInputs& in, ZoneScope tab,
                                             EngineProgress* progress) {
    history_kernel::HistoryRun run;
    run.scope = scopeOf(m_ws.zoneScope);
    run.threshold = threshold(b, run.scope);
    run.caption = caption(b, tab);
    run.nText = in.superCount;
    run.passes = passes(in.superCount);
    Outcome o;
    o.ran = true;
    o.killed = history_kernel::history(m_ws.edit().table(), run, m_history, progress);
    return o;
}

SuperFilter::Outcome SuperFilter::runInclusion(SuperButton b, const SuperInputs& in) {
    super_kernels::InclusionRun run;
    run.scope = scopeOf(m_ws.zoneScope);
    // For i = 1 To sknum over sk(0..9), and the bankers dan(1..dannum).
    const int64_t n = std::min<int64_t>(passes(in.superCount), 9);
    const int64_t m = std::min<int64_t>(passes(in.bankerCount), 9);
    for (int64_t i = 1; i <= n; ++i) run.numbers.push_back(in.superNumbers[static_cast<size_t>(i)]);
    for (int64_t i = 1; i <= m; ++i) run.bankers.push_back(in.bankers[static_cast<size_t>(i)]);
    run.groupSize = in.groupSize;
    run.caption = caption(b, ZoneScope::Front);
    const FilterWorkspace::Edit edit = m_ws.edit();
    Outcome o;
    o.ran = true;
    o.killed = b == SuperButton::InclusionKill ? super_kernels::inclusionKill(edit.table(), run)
                                               : super_kernels::inclusionKeep(edit.table(), run);
    return o;
}

SuperFilter::Outcome SuperFilter::runTemplate() {
    // The record is written by its own connection: stop it before the template is touched.
    const FilterWorkspace::Edit edit = m_ws.edit();
    std::unordered_set<uint64_t> keys;
    const QString tmpl = QStringLiteral("zuheMoban");
    // The template is read with SQL: the relational table must be current first.
    candidate_store::ensureRelational(m_filterDb, schema::CandidateKind::Template);
    if (m_filterDb.tableExists(tmpl)) {
        // The template takes the marked form too; its rows give the keys.
        SqliteTransaction tx(m_filterDb);
        m_filterDb.exec(
            QStringLiteral("UPDATE [zuheMoban] SET [Numstring]='(' || ifnull([fig1],'') || '!' || "
                           "ifnull([fig2],'') || '@' || "
                           "ifnull([fig3],'') || '#' || ifnull([fig4],'') || '$' || ifnull([fig5],'') || '%' "
                           "|| ifnull([fig6],'') || "
                           "'^' || ifnull([fig7],'') || ')'"));
        tx.commit();
        SqliteStatement q(m_filterDb,
                          QStringLiteral("SELECT fig1,fig2,fig3,fig4,fig5,fig6,fig7 FROM [zuheMoban]"));
        while (q.ok() && q.next()) {
            std::array<qint64, 7> k{};
            bool complete = true;
            for (int c = 0; c < 7; ++c) {
                const QVariant v = q.value(c);
                complete = complete && (v.typeId() == QMetaType::LongLong || v.typeId() == QMetaType::Int);
                k[static_cast<size_t>(c)] = v.toLongLong();
            }
            if (!complete) continue;
            if (const auto key = super_kernels::ticketKey(k)) keys.insert(*key);
        }
    }
    Outcome o;
    o.ran = true;
    o.resetGridColumns = true;
    o.killed = super_kernels::sameAsTemplate(edit.table(), keys);
    return o;
}
