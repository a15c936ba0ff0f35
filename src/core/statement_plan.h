#pragma once

#include <cstdint>
#include <vector>

#include "core/bounds.h"
#include "core/function_table.h"

namespace velkor {

// What one line of a specification file has to state of a function: something for each of the
// reasons, a depth for kRecursion.
struct WantedStatement {
  uint32_t function = 0;
  ReasonSet settles;
};

// Statements that take one cause away: one of them, or a depth for each function of a small set
// that every way round a group of recursion passes.
struct PlannedStep {
  std::vector<WantedStatement> statements;  // ascending by function
  // Top-level functions that miss nothing any more once this step and all before it are stated.
  uint32_t frees = 0;
};

// What a user would have to state so that every top-level function has a bound. Not what is true:
// no value is in it, and what is stated of a call can bring in a function that misses something.
struct StatementPlan {
  std::vector<PlannedStep> steps;
  uint32_t unbounded = 0;  // top-level functions without a bound: what all steps free together
};

// What the search for the best order may look at, functions, calls and causes together.
struct PlanningEffort {
  uint64_t sets = 20'000'000;      // for what each function misses
  uint64_t kept = 5'000'000;       // for how many functions a cause keeps from a bound
  uint64_t oneByOne = 10'000'000;  // for one choice after another
};

// One step for each cause that anything misses. First come those that free the most top-level
// functions for the number of statements that they take, as far as the effort finds them; their
// numbers are exact in any case. Of a table and its up-to-date bounds. But for the effort and a
// logarithm linear in functions and calls; nothing recurses.
StatementPlan PlanStatements(const StkFunctionTable& table, const StkBounds& bounds,
                             PlanningEffort effort = {});

// The same, as if the function were the only top-level one: what it misses, and nothing else.
StatementPlan PlanStatementsFor(const StkFunctionTable& table, const StkBounds& bounds,
                                uint32_t function, PlanningEffort effort = {});

}  // namespace velkor
