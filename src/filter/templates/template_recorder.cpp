#include "filter/templates/template_recorder.h"

#include "workspace/sqlite_db.h"

namespace {

using filter_snapshot::column;

int intOf(const QVariantMap& row, const char* name) {
    const QVariant v = column(row, QString::fromLatin1(name));
    return v.isNull() ? 0 : static_cast<int>(v.toLongLong());
}

QString zoneWord(int zoneScope) {
    switch (zoneScope) {
        case 1:
            return QStringLiteral("前区");
        case 2:
            return QStringLiteral("后区");
        case 3:
            return QStringLiteral("全区");
        default:
            return {};
    }
}

QString joinNumbers(const SuperInputs& in, int64_t from, int64_t count) {
    QStringList parts;
    for (int64_t i = from; i < from + count && i < static_cast<int64_t>(in.superNumbers.size()); ++i)
        parts << QString::number(in.superNumbers[static_cast<size_t>(i)]);
    return parts.join(QStringLiteral("，"));
}

}  // namespace

TemplateRecorder::TemplateRecorder(FilterWorkspace& workspace, SuperFilter& super, SqliteDb& filterDb,
                                   ParamContext context)
    : m_ws(workspace), m_super(super), m_store(filterDb), m_context(std::move(context)) {}

int TemplateRecorder::stepScrollMax() const {
    const int n = m_store.count();
    return n > 0 ? n : 1;
}

TemplateRecorder::RecordOutcome TemplateRecorder::popupClosed(bool addStepPicked, RecordSource source,
                                                              const ParamWindowState& state,
                                                              const SuperInputs& in) {
    RecordOutcome out;
    // The record of the table is written on its own connection: it is stopped while moban
    // changes and written again after.
    const FilterWorkspace::Edit paused = m_ws.pauseWrite();
    QVariantMap values;
    switch (source.kind) {
        case RecordSource::Kind::Invert:
            break;  // nothing to store
        case RecordSource::Kind::Integrated:
            values = filter_snapshot::snapshotValues(state);
            values.insert(QStringLiteral("intCmdnb"), m_ws.stepCode());
            break;
        case RecordSource::Kind::Super:
            values = filter_snapshot::superValues(super_filter::stepCode(source.button), in);
            break;
    }
    // A new step is written with its values at once; otherwise the values go to the last step.
    if (addStepPicked)
        out.added = m_store.addStep(m_ws.stepCode(), m_ws.zoneScope, values);
    else if (!values.isEmpty())
        m_store.writeLast(values);
    out.stepScrollMax = addStepPicked ? m_store.count() : stepScrollMax();
    return out;
}

TemplateRecorder::ReplayOutcome TemplateRecorder::replay(ParamWindowState& state, SuperInputs& in,
                                                         ZoneScope tab, EngineProgress* progress,
                                                         const StepObserver& afterStep, int firstStep) {
    ReplayOutcome out;
    if (!m_ws.isOpen()) return out;
    int step = 0;
    for (const QVariantMap& row : m_store.rows()) {
        if (++step < firstStep) continue;
        if (progress && progress->cancelled()) break;
        ++out.steps;
        const int code = intOf(row, "intCmdnb");
        const int scope = intOf(row, "intQianHou");
        m_ws.setStepCode(static_cast<int16_t>(code));
        m_ws.zoneScope = static_cast<int16_t>(scope);
        out.ran = true;
        switch (code) {
            case 0: {
                out.effects = filter_snapshot::applySnapshot(row, state);
                out.boxesChanged = true;
                state.scope = super_filter::scopeOf(scope);
                m_used.insert(QStringLiteral("Option29"));
                const param_filter::IntegratedResult r =
                    param_filter::runIntegrated(m_ws.edit().table(), state, m_context);
                m_ws.keepSense = r.keepSense;
                break;
            }
            case 1:
                m_ws.invertLast();
                break;
            case 2:
                m_ws.invertAll();
                break;
            default: {
                filter_snapshot::applySuper(row, code, in);
                const auto button = super_filter::byStepCode(code);
                // 10..12 and every code without a button of its own run Option25up(code - 10).
                if (!button || code == 10 || code == 11 || code == 12) {
                    if (button) m_used.insert(super_filter::objectName(*button));
                    m_super.runRelation(code - 10, in);
                    break;
                }
                const SuperFilter::Outcome o = m_super.runWorker(*button, in, tab, progress);
                out.resetGridColumns = out.resetGridColumns || o.resetGridColumns;
                m_used.insert(super_filter::objectName(*button));
                break;
            }
        }
        if (afterStep) afterStep(step);
    }
    return out;
}

QString TemplateRecorder::stepText(const QVariantMap& row, const SuperInputs& in, ZoneScope tab,
                                   bool& known) const {
    known = true;
    const int code = intOf(row, "intCmdnb");
    const QString zone = m_ws.traits().templateNamesZone ? zoneWord(intOf(row, "intQianHou")) : QString();
    const QString head = zone + QStringLiteral("模板过滤第") + column(row, QStringLiteral("Idx")).toString() +
                         QStringLiteral("步，使用“");
    const auto single = [&](SuperButton b) {
        return head + super_filter::caption(b, tab) + QStringLiteral("”单选按钮功能");
    };
    switch (code) {
        case 0:
            return zone + QStringLiteral("模板过滤第") + column(row, QStringLiteral("Idx")).toString() +
                   QStringLiteral("步，使用“多参数整合过滤”功能，参数设置详见参数设置列表");
        case 1:
            return head + filter_source::kInvertLast + QStringLiteral("”按钮功能");
        case 2:
            return head + filter_source::kInvertAll + QStringLiteral("”按钮功能");
        case 4:
        case 5:
        case 6:
            return single(*super_filter::byStepCode(code)) + QStringLiteral("，检索期数为：") + in.superCount;
        case 13:
        case 14: {
            const int64_t n = super_filter::passes(in.superCount);
            return single(*super_filter::byStepCode(code)) + QStringLiteral("，总个数为：") + in.superCount +
                   QStringLiteral("，分别为：") + joinNumbers(in, 1, n) + QStringLiteral("。分为：") +
                   QString::number(in.groupSize) + QStringLiteral("个一组");
        }
        case 15:
            return single(SuperButton::SameAsTemplate);
        case 10:
        case 11:
        case 12: {
            const int64_t n = super_filter::passes(in.superCount);
            return single(*super_filter::byStepCode(code)) + QStringLiteral("，总个数为：") + in.superCount +
                   QStringLiteral("，分别为：") + joinNumbers(in, 0, n) + QStringLiteral("。");
        }
        default:
            // Option25 has no member of that index: the text cannot be made and Label3 keeps its own.
            known = false;
            return {};
    }
}

TemplateRecorder::BrowseOutcome TemplateRecorder::browse(qint64 v, ParamWindowState& state, SuperInputs& in,
                                                         ZoneScope tab) {
    BrowseOutcome out;
    const auto row = m_store.byIdx(v);
    if (!row) return out;
    out.found = true;
    const int code = intOf(*row, "intCmdnb");
    m_ws.setStepCode(static_cast<int16_t>(code));
    // Only the window that names the zone of a step reads its scope.
    if (m_ws.traits().templateNamesZone) m_ws.zoneScope = static_cast<int16_t>(intOf(*row, "intQianHou"));
    if (code == 0) {
        out.effects = filter_snapshot::applySnapshot(*row, state);
        out.boxesChanged = true;
    } else if (code != 1 && code != 2) {
        filter_snapshot::applySuper(*row, code, in);
    }
    bool known = false;
    const QString text = stepText(*row, in, tab, known);
    if (known) out.stepLabel = text;
    return out;
}

int TemplateRecorder::deleteLast() {
    const FilterWorkspace::Edit paused = m_ws.pauseWrite();
    if (m_store.count() > 0) m_store.deleteLast();
    return m_store.count();
}

int TemplateRecorder::clear() {
    const FilterWorkspace::Edit paused = m_ws.pauseWrite();
    m_store.clear();
    return 1;
}
