#pragma once

#include "core/bounds.h"
#include "core/function_table.h"
#include "core/statement_plan.h"
#include "reports/result_output.h"

namespace velkor::reports {

// What to state so that more top-level functions have a bound, in the order of the plan, as a stack
// size specification file: it can be loaded as it is, since every line is a comment. Where a user
// fills in a value and takes the mark of the comment away, the line states it; what is in force for
// the function already stands in it too. A line that a file could not hold is described instead,
// and so is what goes beyond the lines of a file.
//
// In bytes of the table's code page, like every such file; lines end with a line feed.
void WriteTodo(const StkFunctionTable& functions, const StkBounds& bounds,
               const StatementPlan& plan, ResultOutput& output);

}  // namespace velkor::reports
