#pragma once

#include <string>
#include <string_view>

#include "platform/code_page.h"

namespace velkor {

// A name beside the path, ending in ".tmp", that no other program and no other save uses at the
// same time: for a file that is to take the path's place once it is complete.
std::string SiblingPath(std::string_view path, const CodePage& codePage);

}  // namespace velkor
