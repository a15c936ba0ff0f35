#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace velkor::reports {

// The text of many functions, made of a few thousand of them at a time by several threads, 0 for
// as many as run at once, and taken in the order of the functions.
struct FunctionParts {
  size_t functions = 0;
  size_t threads = 1;
  // Appends the text of first up to the one before end. In any of the threads.
  std::function<void(uint32_t first, uint32_t end, std::string& text)> make;
  // In the caller's thread.
  std::function<void(std::string_view text)> take;

  void Run() const;
};

}  // namespace velkor::reports
