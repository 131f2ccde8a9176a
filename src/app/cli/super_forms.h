#pragma once

// The super filters as the command line gives them (relation, history, inclusion,
// same-as-template): their arguments, and the button and prompt answers those make. Both
// `filter FORM` and `moban add FORM` take them.

#include "app/cli/command_args.h"
#include "filter/super/super_filter.h"

#include <optional>
#include <vector>

class CliContext;

// The button and the answers of its prompts. `direct` is set for an inclusion without
// bankers: its prompt refuses a banker count of 0, so the input goes to the worker as a replay
// gives it.
struct SuperCall {
    SuperButton button = SuperButton::RelationConflicting;
    QStringList answers;
    std::optional<SuperInputs> direct;
};

struct SuperForm {
    QString name;      // "relation"
    QString synopsis;  // its arguments
    QString description;
    std::vector<PositionalDeclaration> positionals;
    std::vector<OptionDeclaration> options;
    QString (*check)(const Args& args);
    // Nullopt after printing a refusal.
    std::optional<SuperCall> (*call)(CliContext& ctx, const Args& args);
};

namespace super_forms {

const SuperForm& relation();
const SuperForm& history();
const SuperForm& inclusion();
const SuperForm& sameAsTemplate();

// The history button that needs `same` numbers in common in the zone tab `scope`.
std::optional<SuperButton> historyButton(int same, ZoneScope scope);

}  // namespace super_forms
