#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkor {

// What a linked program tells of its stacks and of what interrupts it, beside its functions and
// their calls. Functions are indices in their table. A value; empty where there is no program.
struct ProgramFacts {
  // Something with a name that is no function.
  struct Symbol {
    std::string name;
    uint64_t value = 0;
    uint64_t size = 0;        // 0: not told
    bool isAbsolute = false;  // a number or an address of the linker's, in no section
  };
  // What the vector table names, once for each function.
  struct Handler {
    uint32_t function = 0;
    std::vector<std::string> names;  // of the table's words, by symbol, aliases included
  };
  // A function that is handed to what creates tasks, or that a static task names.
  struct Task {
    uint32_t function = 0;
    std::string stack;    // the object that is its stack; empty: not told
    std::string creator;  // the function that creates it, or the object that describes it
  };

  bool hasProgram = false;
  bool hasVectors = false;
  std::string target;           // see TargetOf; empty: not told
  std::vector<Symbol> symbols;  // by name, each name once
  // Where data begins that the program may write: no size of a stack is larger.
  std::optional<uint64_t> firstWritable;
  std::optional<uint32_t> entry;  // where the program begins
  std::vector<Handler> handlers;  // in the order of the table
  std::vector<Task> tasks;        // by function

  // None: there is no such symbol.
  const Symbol* Find(std::string_view name) const;
};

}  // namespace velkor
