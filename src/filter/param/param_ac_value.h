#pragma once

// The AC value (复杂度) of a ticket: the count of distinct differences between its numbers
// minus (count - 1), over the ticked positions of the scope.

#include "filter/param/param_operations.h"

namespace param_ac_value {

// The operation of the AC value; nothing runs in the back tab.
CompiledCompute compile(const param_operations::CompileArgs& a);

}  // namespace param_ac_value
