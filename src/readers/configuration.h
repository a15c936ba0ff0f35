#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velkor {

// What a velkor.toml states, as it stands there: paths are relative to its folder, texts UTF-8. A
// value.
struct Configuration {
  // Bytes, or what the program says: an object, a symbol, the difference of two.
  using Size = std::variant<uint32_t, std::string>;

  struct Stack {
    std::string name;
    std::vector<std::string> entries;
    std::optional<Size> size;
    uint32_t reserve = 0;
    std::optional<uint32_t> frame;
    std::optional<uint32_t> contextSwitch;
    uint32_t line = 0;
  };
  struct Interrupts {
    std::string stack;  // empty: every stack carries them
    std::vector<std::vector<std::string>> levels;
    std::optional<uint32_t> nesting;
    std::vector<std::string> ignore;
    uint32_t line = 0;
  };
  struct Call {
    std::string function;
    std::string table;              // empty: not stated
    std::optional<uint32_t> total;  // it and all below it
    uint32_t line = 0;
  };
  struct Gate {
    std::optional<std::variant<uint32_t, std::string>> headroom;  // bytes or "10%"
    std::optional<uint32_t> growth;
  };

  std::vector<std::string> input;
  std::vector<std::string> exclude;
  std::string elf;                // empty: none
  std::vector<std::string> load;  // files, and tables of statements that velkor brings
  std::string target;             // empty: left out
  std::string rtos;               // likewise
  std::string vectors;            // likewise
  std::optional<uint32_t> frame;
  std::optional<uint32_t> contextSwitch;
  std::vector<Stack> stacks;  // in the order of their lines
  std::optional<Interrupts> interrupts;
  std::vector<Call> calls;
  Gate gate;
};

struct ConfigurationFault {
  uint32_t line = 0;
  std::string text;  // a phrase
};

struct ReadConfigurationResult {
  std::optional<Configuration> configuration;  // none: there are faults
  std::vector<ConfigurationFault> faults;      // ordered by line
};

// Any bytes may be given. A key that is not known is a fault, with the nearest known one.
ReadConfigurationResult ReadConfiguration(std::string_view text);

}  // namespace velkor
