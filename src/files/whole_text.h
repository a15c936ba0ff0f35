#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace velkor {

// The bytes of a file. None where it cannot be read, or is larger than that.
std::optional<std::string> ReadWholeText(FileSystem& files, std::string_view path, uint64_t most);

}  // namespace velkor
