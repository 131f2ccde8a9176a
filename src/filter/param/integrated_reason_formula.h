#pragma once

#include "engine/candidate_table.h"
#include "engine/row_formula.h"
#include "filter/param/param_filter.h"

#include <memory>
#include <mutex>
#include <vector>

// The reason the integrated filter gives a row whose values are a function of its numbers: the
// texts of the steps that catch the row, each with the row's value, in the order of the steps.
// In the both-zones scope nearly every row fails with values of its own; one formula stands for
// all those texts, and a row's text is computed again, for that row alone, when it is read.
class IntegratedReasonFormula : public RowFormula {
public:
    IntegratedReasonFormula(CandidateTable::Kind kind, const ParamWindowState& state, const ParamContext& ctx,
                            bool keepSense);

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
    CandidateTable::Kind m_kind;
    ParamWindowState m_state;
    ParamContext m_ctx;
    bool m_keepSense;
    mutable std::once_flag m_compiled;
    mutable std::vector<FilterStep> m_steps;
};
