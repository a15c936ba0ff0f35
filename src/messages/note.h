#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velkor {

// What velkor adds to the stated messages about an input: stands after the results, never among the
// lines of the log. Texts are bytes of the run's code page.
struct StkNote {
  std::string_view rule;  // a word in kebab-case that programs know it by; lives as long as the run
  std::string text;       // a sentence
  std::string file;       // empty: none
  uint32_t line = 0;      // of the file, from 1; 0: none
  uint32_t column = 0;    // likewise
  std::optional<uint32_t> function;  // index in the function table
  bool incomplete = false;           // not everything was read: the status of a command says so
};

}  // namespace velkor
