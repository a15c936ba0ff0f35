#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velkor {

// Where something stands in a text, from 1; 0: nowhere.
struct TextPlace {
  uint32_t line = 0;
  uint32_t column = 0;

  auto operator<=>(const TextPlace&) const = default;  // NOLINT(modernize-use-nullptr): none
};

// What a velkor.toml states, as it stands there: paths are relative to its folder, texts UTF-8. A
// value.
struct Configuration {
  // Bytes, or what the program says: an object, a symbol, the difference of two. "?": to be filled
  // in.
  using Size = std::variant<uint32_t, std::string>;

  // The name of a function, as specification files name it.
  struct Name {
    std::string text;
    TextPlace place;
  };
  struct Stack {
    std::string name;
    std::vector<Name> entries;
    std::optional<Size> size;
    uint32_t reserve = 0;
    std::optional<uint32_t> frame;
    std::optional<uint32_t> contextSwitch;
    TextPlace place;
  };
  struct Interrupts {
    std::string stack;  // the name of one of the stacks; empty: every stack carries them
    std::optional<std::vector<std::vector<Name>>> levels;
    std::optional<uint32_t> nesting;
    std::vector<Name> ignore;
  };
  struct Call {
    Name function;
    std::string table;              // empty: not stated
    std::optional<uint32_t> total;  // it and all below it
  };
  struct Headroom {
    uint32_t amount = 0;
    bool isPercent = false;  // of the size; else bytes
  };
  struct Gate {
    std::optional<Headroom> headroom;
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
  std::map<std::string, TextPlace, std::less<>> places;  // of keys: "elf", "stack.rx.size"

  // Of a key that is stated.
  TextPlace PlaceOf(std::string_view key) const {
    const auto found = places.find(key);
    return found == places.end() ? TextPlace() : found->second;
  }
};

struct ConfigurationFault {
  TextPlace place;
  std::string text;  // a phrase
};

struct ReadConfigurationResult {
  std::optional<Configuration> configuration;  // none: there are faults
  std::vector<ConfigurationFault> faults;      // in the order of their places
};

// Any bytes may be given. A key that is not known is a fault, with the nearest known one.
ReadConfigurationResult ReadConfiguration(std::string_view text);

}  // namespace velkor
