#pragma once

#include "engine/candidate_table.h"
#include "engine/row_formula.h"
#include "filter/param/param_filter.h"

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

// The reason a parameter filter gives a row whose values are a function of its numbers, made
// again for that row when it is read. For the integrated filter: the texts of the steps that
// catch the row, each with the row's value, in the order of the steps (in the both-zones scope
// nearly every row fails with values of its own). For one button: the text of one of its steps
// with the row's value (the rows it kills share one entry instead of one per value).
class ParamReasonFormula : public RowFormula {
public:
    // The integrated filter of the ticked boxes.
    static std::shared_ptr<ParamReasonFormula> integrated(CandidateTable::Kind kind, const ParamWindowState& state,
                                                          const ParamContext& ctx, bool keepSense);
    // Step `step` of button `id` in a single run.
    static std::shared_ptr<ParamReasonFormula> singleStep(CandidateTable::Kind kind, const ParamWindowState& state,
                                                          const ParamContext& ctx, ParamId id, bool keepSense,
                                                          int step);

    // The steps whose texts it makes, compiled when first asked for: a table keeps every formula
    // it was given, and most are never read.
    const std::vector<FilterStep>& steps() const;

    QString text(std::span<const uint8_t> numbers, bool live) const override;
    qsizetype maxTextLength() const override;
    QByteArray kind() const override;
    QByteArray payload() const override;

    // The formula of a payload; null when the bytes are not one.
    static std::shared_ptr<const RowFormula> load(const QByteArray& payload);

private:
    // The button and step of a single run; none for the integrated filter.
    struct Single {
        ParamId id;
        int step;
    };
    ParamReasonFormula(CandidateTable::Kind kind, const ParamWindowState& state, const ParamContext& ctx,
                       bool keepSense, std::optional<Single> single);

    CandidateTable::Kind m_kind;
    ParamWindowState m_state;
    ParamContext m_ctx;
    bool m_keepSense;
    std::optional<Single> m_single;
    mutable std::once_flag m_compiled;
    mutable std::vector<FilterStep> m_steps;
};
