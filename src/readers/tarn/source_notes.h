#pragma once

#include <cstdint>
#include <vector>

#include "messages/catalogue.h"
#include "messages/note.h"
#include "readers/tarn/module_location.h"

namespace velkor {

// The notes source-left-out of a project file, in the order of its lines: one for each source that
// it names and that is not read, headers left out. firstUnread: the number of the first source that
// was not asked for, the one before being the last of the project.
std::vector<StkNote> SourceNotes(const StkProjectFile& projectFile, uint32_t firstUnread,
                                 const StkMessages& messages);

}  // namespace velkor
