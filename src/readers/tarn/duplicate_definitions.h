#pragma once

#include <vector>

#include "core/function_table.h"
#include "messages/catalogue.h"
#include "messages/note.h"

namespace velkor {

// Appends a note duplicate-definition for each global function that another one of its name comes
// before, in table order.
void NoteDuplicateDefinitions(const StkFunctionTable& functions, const StkMessages& messages,
                              std::vector<StkNote>& notes);

}  // namespace velkor
