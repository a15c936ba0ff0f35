#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "readers/gcc/elf_file.h"
#include "readers/gcc/object_facts.h"

namespace velkor {

// A function's code takes an address that is, or may be, that of another function, other than to
// call it right there.
struct AddressUse {
  uint32_t user = 0;                            // in the functions of the object
  std::string_view name;                        // of what is meant
  uint32_t function = ObjectCall::kNoFunction;  // where the object holds it
};

// Of an object. What is meant in another one may be no function. Views into the bytes of the file.
std::vector<AddressUse> AddressUsesOf(const ElfFile& elf, const ObjectFacts& facts);

// The function of an RTOS that makes a task of a function that it is handed.
bool IsTaskCreator(std::string_view symbol);

}  // namespace velkor
