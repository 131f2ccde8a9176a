#pragma once

// The catalogue of parameter operations behind param_kernels::compile. Each parameter has one
// row: its id and the operation that compiles it for a run. An operation is a small struct
// that knows how to fill the per-position tables and lists of a CompiledCompute and which row
// kernel computes a row's value from them; a new parameter is one such struct (or a new term
// of a sum) and one row.

#include "filter/param/param_kernels.h"

namespace param_operations {

// What an operation compiles from: the parameter, the effective zone scope (the front scope
// for the export's companions), the window's inputs and the session's context.
struct CompileArgs {
    ParamId id;
    ZoneScope scope;
    const ComputeInputs& in;
    const ParamContext& ctx;
};

using Compile = CompiledCompute (*)(const CompileArgs& args);

// The operation of `id`.
Compile compilerOf(ParamId id);

// The visited columns of the scope: those whose ChkBt box is ticked.
std::vector<int> tickedColumns(ZoneScope scope, const std::array<bool, 7>& ticks);

// The parity step of a position: fig mod 2 of the 0-based column `col`.
CompiledCompute figureParity(int col);

}  // namespace param_operations
