#include "reports/gate/stack_size.h"

#include <optional>

namespace velkor::reports {
namespace {

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  return first == text.npos ? std::string_view()
                            : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string InQuotes(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

StackSize Lacking(std::string_view name, const ProgramFacts& facts) {
  return InQuotes(name) + (facts.hasProgram ? " is no object or symbol of the program"
                                            : " is looked up in the program, which \"elf\" names");
}

// The value of a symbol without a size is one only where it is a number: not a place, and no
// address at which the linker put a label.
StackSize SizeOfSymbol(std::string_view name, const ProgramFacts& facts) {
  const ProgramFacts::Symbol* symbol = facts.Find(name);
  if (symbol == nullptr) {
    return Lacking(name, facts);
  }
  if (symbol->size != 0) {
    return symbol->size;
  }
  const bool isAddress = !symbol->isAbsolute || (facts.firstWritable && *facts.firstWritable != 0 &&
                                                 symbol->value >= *facts.firstWritable);
  if (isAddress) {
    return InQuotes(name) + " has no size, and its value is an address";
  }
  if (symbol->value == 0) {
    return InQuotes(name) + " has no size, and its value is 0";
  }
  return symbol->value;
}

StackSize DistanceOfSymbols(std::string_view from, std::string_view to, const ProgramFacts& facts) {
  const ProgramFacts::Symbol* low = facts.Find(from);
  const ProgramFacts::Symbol* high = facts.Find(to);
  if (low == nullptr || high == nullptr) {
    return Lacking(high == nullptr ? to : from, facts);
  }
  if (high->value <= low->value) {
    return InQuotes(to) + " does not lie behind " + InQuotes(from);
  }
  return high->value - low->value;
}

}  // namespace

StackSize SizeOf(const Configuration::Size& stated, const ProgramFacts& facts) {
  if (const uint32_t* bytes = std::get_if<uint32_t>(&stated)) {
    return *bytes != 0 ? StackSize(uint64_t{*bytes}) : StackSize("the size is 0");
  }
  const std::string_view text = std::get<std::string>(stated);
  const size_t minus = text.find(" - ");
  if (minus == text.npos) {
    return SizeOfSymbol(Trimmed(text), facts);
  }
  return DistanceOfSymbols(Trimmed(text.substr(minus + 3)), Trimmed(text.substr(0, minus)), facts);
}

}  // namespace velkor::reports
