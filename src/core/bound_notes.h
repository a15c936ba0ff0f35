#pragma once

#include <vector>

#include "core/bounds.h"
#include "messages/catalogue.h"
#include "messages/note.h"

namespace velkor {

// What the bounds say of the statements in force, in table order:
//   nested-depths     several functions of one group state a depth of 2 or more: they multiply
//   empty-adjustment  a function is adjusted, and so counts as settled in its total, but the
//                     adjustment leaves out something of what its bound misses
std::vector<StkNote> BoundNotes(const StkFunctionTable& table, const StkBounds& bounds,
                                const StkMessages& messages);

}  // namespace velkor
