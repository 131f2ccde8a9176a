#include "analysis/trend_search.h"

#include "workspace/prompter.h"

#include <cmath>

namespace trend_search {

namespace {
std::optional<double> numberOf(const QString& answer) {
    bool ok = false;
    const double v = answer.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v)) return std::nullopt;
    return v;
}

void complain(Prompter& prompter, const QString& text) {
    prompter.inform(kErrorTitle, text, Prompter::Icon::Warning);
}
}  // namespace

std::optional<int> askCountStart(Prompter& prompter, int drawCount) {
    while (true) {
        const QString answer = prompter.askText(kTitle, kCountPrompt, QString::number(drawCount));
        if (answer.isEmpty()) return std::nullopt;
        const std::optional<double> m = numberOf(answer);
        if (!m) {
            complain(prompter, kNotNumber);
            continue;
        }
        if (*m < 1) {
            complain(prompter, kNotPositive);
            continue;
        }
        if (*m > 0 && *m < drawCount - 1) return static_cast<int>(std::floor(drawCount - *m));
        return 0;
    }
}

std::optional<int32_t> askIssue(Prompter& prompter, int drawCount,
                                const std::function<bool(int32_t)>& accept) {
    while (true) {
        const QString answer = prompter.askText(kTitle, kIssuePrompt, QString::number(drawCount));
        if (answer.isEmpty() || answer == QLatin1String("0")) return std::nullopt;
        const std::optional<double> v = numberOf(answer);
        if (!v) {
            complain(prompter, kNotNumber);
            continue;
        }
        const bool whole = *v >= 1 && *v <= INT32_MAX && std::floor(*v) == *v;
        if (!whole || !accept(static_cast<int32_t>(*v))) {
            complain(prompter, kNotPositive);
            continue;
        }
        return static_cast<int32_t>(*v);
    }
}

}  // namespace trend_search
