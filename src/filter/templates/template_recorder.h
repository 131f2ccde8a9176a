#pragma once

// The template frames of the filter window: recording a step by the right button through the
// popup mnuAdm/mnuAdf, replay (Command9), browsing (HScroll1 with Label3), and the deletes
// (Command5, Command4). The window keeps its controls; each call takes them as the plain
// ParamWindowState and SuperInputs and hands back what the window must show.

#include "filter/filter_workspace.h"
#include "filter/param/param_filter.h"
#include "filter/param/param_kernels.h"
#include "filter/super/super_filter.h"
#include "filter/templates/filter_snapshot.h"
#include "filter/templates/template_store.h"

#include <QString>

#include <functional>
#include <optional>
#include <set>

class SqliteDb;

// Which control's right button opened the popup: it decides what the popup's closing writes.
struct RecordSource {
    enum class Kind { Integrated, Invert, Super };
    Kind kind = Kind::Integrated;
    SuperButton button = SuperButton::RelationConflicting;  // for Kind::Super

    static RecordSource integrated() { return {}; }
    static RecordSource invert() { return {Kind::Invert, SuperButton::RelationConflicting}; }
    static RecordSource super(SuperButton b) { return {Kind::Super, b}; }
};

class TemplateRecorder {
public:
    TemplateRecorder(FilterWorkspace& workspace, SuperFilter& super, SqliteDb& filterDb,
                     ParamContext context);

    const ParamContext& context() const { return m_context; }
    void setContext(ParamContext context) { m_context = std::move(context); }

    // The maximum of HScroll1: the row count, 1 for an empty template.
    int stepScrollMax() const;

    // The popup has closed, with mnuAdf picked or not. A pick adds a row with the step code and
    // scope the workspace holds; then the last row takes the input of `source` whether or not a
    // row was added. Returns the new maximum of HScroll1.
    struct RecordOutcome {
        bool added = false;
        int stepScrollMax = 1;
    };
    RecordOutcome popupClosed(bool addStepPicked, RecordSource source, const ParamWindowState& state,
                              const SuperInputs& in);

    // Command9: every step in order on the current flags, with no question.
    struct ReplayOutcome {
        int steps = 0;
        bool ran = false;                          // refresh grid and caption
        bool boxesChanged = false;                 // a snapshot step set the window's boxes
        filter_snapshot::SnapshotEffects effects;  // of the last snapshot step
        bool resetGridColumns = false;             // a same-as-template step ran
    };
    // `afterStep` hears the number (from 1) of each step that has run. Steps before `firstStep`
    // are passed over (their work is already in the table and in `state` and `in`).
    using StepObserver = std::function<void(int step)>;
    ReplayOutcome replay(ParamWindowState& state, SuperInputs& in, ZoneScope tab,
                         EngineProgress* progress = nullptr, const StepObserver& afterStep = {},
                         int firstStep = 1);

    // HScroll1 moved to v: the step with that Idx set into the controls as replay would, without
    // running it, and its text for Label3 (none when the step has no text: Label3 keeps its own).
    struct BrowseOutcome {
        bool found = false;
        std::optional<QString> stepLabel;
        bool boxesChanged = false;
        filter_snapshot::SnapshotEffects effects;
    };
    BrowseOutcome browse(qint64 v, ParamWindowState& state, SuperInputs& in, ZoneScope tab);

    // Command5 and Command4; each returns the new maximum of HScroll1.
    int deleteLast();
    int clear();

    // Buttons whose text has turned blue by a replay ("Option29", "Option25(0)", ...).
    const std::set<QString>& usedButtons() const { return m_used; }

    // The Label3 text of a step row.
    QString stepText(const QVariantMap& row, const SuperInputs& in, ZoneScope tab, bool& known) const;

private:
    FilterWorkspace& m_ws;
    SuperFilter& m_super;
    TemplateStore m_store;
    ParamContext m_context;
    std::set<QString> m_used;
};
