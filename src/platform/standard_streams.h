#pragma once

#include <memory>
#include <string_view>

#include "platform/file_system.h"

namespace velkor {

// The program's own input and output under their names as files, so that they stand wherever a file
// may be named.
constexpr std::string_view kStandardInput = "/dev/stdin";
constexpr std::string_view kStandardOutput = "/dev/stdout";

// All that comes, which is read now; none where it cannot be read or has no end that the memory
// holds.
std::unique_ptr<InputFile> OpenStandardInput();

// What is there already stays before what is written. A reader that closes the pipe has seen
// enough: nothing fails by that.
std::unique_ptr<OutputFile> OpenStandardOutput();

}  // namespace velkor
