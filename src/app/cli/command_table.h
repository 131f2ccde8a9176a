#pragma once

// Every command of shuangqu-cli, in the order `help` lists them.

#include "app/cli/command.h"

#include <memory>
#include <vector>

namespace command_table {

const std::vector<std::unique_ptr<Command>>& all();

// The command whose name the words begin with; with several, the one of the most words.
// `words` tells how many of them its name took.
const Command* find(const QStringList& words, int* taken);

// The commands whose names begin with these words ("filter" gives filter param, ...).
std::vector<const Command*> under(const QStringList& words);

// The text of `help`: the usage, then every command with its synopsis and description.
QString overview();
// The commands under a group, as `shuangqu-cli filter --help` shows them.
QString groupHelp(const QStringList& words);

}  // namespace command_table
