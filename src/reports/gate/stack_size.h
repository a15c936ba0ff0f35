#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "readers/configuration.h"
#include "readers/program_facts.h"

namespace velkor::reports {

// Bytes, or why there are none: a phrase.
using StackSize = std::variant<uint64_t, std::string>;

// A size as a velkor.toml states it: bytes; the name of an object, whose size it is, or of a number
// of the linker's; "a - b", the distance of two symbols. Never 0.
StackSize SizeOf(const Configuration::Size& stated, const ProgramFacts& facts);

}  // namespace velkor::reports
