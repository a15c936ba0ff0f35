#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/function_table.h"
#include "core/root_list.h"
#include "platform/code_page.h"

namespace velkor::testing {

// What must hold of an analysis, whatever its input was. Each ends the program with the broken
// rule (Require). None shares code with what it checks.

// Once all calls are resolved: the records and their flags, the counts against a recount, lists
// sorted and without duplicates, callers that mirror callees.
void CheckDatabase(const StkFunctionTable& table);

// After a computation, in addition: nothing is pending, extra callers mirror extra callees,
// recursion marks and top-level functions are as the call graph has them, every total is the sum
// that its rule states or over the limit. What needs the graph's closure is left out for tables of
// more than a few hundred functions.
void CheckResults(const StkFunctionTable& table, const StkRootList& roots);

// Callees, then extra callees.
StkFunctionList AllCallees(const StkFunction& function);

// Texts as a user gets them: not over the limit, representable, and made of whole characters where
// the inputs were.
void CheckMessages(const std::vector<std::string>& texts, const CodePage& codePage,
                   bool wholeInputs);
// No byte of the text stands outside a character of the code page.
bool IsWhole(std::string_view text, const CodePage& codePage);

}  // namespace velkor::testing
