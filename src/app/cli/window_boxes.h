#pragma once

// The options that fill the boxes and choices of the filter window's parameter side, shared by
// the parameter filters, the integrated filter, template steps and saved settings.

#include "app/cli/command_args.h"
#include "filter/param/param_filter.h"

class CliContext;

namespace window_boxes {

// --scope front|back|both: the zone tab (intQianHou), front when absent.
OptionDeclaration scopeOption();
ZoneScope scope(const Args& args);

// --scope, --positions, --odd and --even.
std::vector<OptionDeclaration> commonOptions();
// False after printing a refusal (a position out of range).
bool readCommon(CliContext& ctx, const Args& args, ParamWindowState& s);

// --keep and --exclude (Option1).
std::vector<OptionDeclaration> senseOptions();
// A usage error unless exactly one of them is given (or, with `required` false, at most one).
QString checkSense(const Args& args, bool required);
// Keep unless --exclude is given.
void readSense(const Args& args, ParamWindowState& s);

// --interval LO HI: the limits of 自定区间 (the lower one excluded).
OptionDeclaration intervalOption();
void readInterval(const Args& args, ParamWindowState& s);

// The boxes of a run over many parameters: --params, --range NAME LO HI and --list NAME "V V"
// (repeatable), --interval, --and/--or and --tolerance N.
// With `sixNames` the names of the six-number window's parameters pass as well.
std::vector<OptionDeclaration> runOptions(bool sixNames = false);
// Which Check1 box a parameter of --params ticks: the one whose tick runs it, or its own entry
// (小数之和 and 大数之和 differ).
enum class Tick { RunBox, OwnBox };
void readRun(const Args& args, ParamWindowState& s, Tick tick);

}  // namespace window_boxes
