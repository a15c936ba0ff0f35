#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velkor {

// The names that functions call, from the reading of their modules to the resolution of the calls:
// for each function the numbers of its names (in a NameTable), in the order in which they came and
// without duplicates. Functions are known by their index.
//
// The names of one function stand together. Names usually come function by function; a function
// that gets a name after another one did is copied to the end first.
class CallNameLists {
 public:
  // Nothing happens when the function has the name already. Constant time, unless the names of
  // several functions come by turns.
  void Add(uint32_t function, uint32_t name);
  std::span<const uint32_t> Of(uint32_t function) const;
  // An element of such a list, and those that stand behind it, at most so many together: mostly
  // the names of the same function and of the next ones.
  std::span<const uint32_t> From(const uint32_t& name, size_t most) const {
    const auto position = static_cast<size_t>(&name - names_.data());
    return {&name, std::min(most, names_.size() - position)};
  }
  // Of all functions together, at most.
  size_t Count() const { return names_.size(); }
  void Clear();

 private:
  struct Run {
    uint32_t first = 0;
    uint32_t count = 0;
  };

  static constexpr uint32_t kNone = 0xFFFFFFFF;
  // So many names of one function are looked through, which no cache lacks.
  static constexpr uint32_t kFew = 16;

  void MoveToEnd(uint32_t function);
  // Whether the run at the end has it.
  bool HasLast(uint32_t name) const;
  void Append(uint32_t name);
  void Mark(uint32_t name);

  std::vector<Run> runs_;  // in names_, by function
  std::vector<uint32_t> names_;
  uint32_t last_ = kNone;            // the function whose names stand at the end
  // By name: where the latest run of more than a few names that has it begins.
  std::vector<uint32_t> latestRun_;
};

}  // namespace velkor
