#include "readers/gcc/symbol_name.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>

#include "readers/gcc/text_ends.h"

namespace velkor {
namespace {

constexpr size_t kLongestSymbol = 1024;
constexpr size_t kLongestName = 4096;
// Each may double the text.
constexpr size_t kMostReferences = 24;

// "S_", "S1A_", "T_", "T0_": what stands for an earlier part of the symbol.
size_t ReferenceCount(std::string_view symbol) {
  size_t count = 0;
  for (size_t i = 0; i + 1 < symbol.size(); ++i) {
    if (symbol[i] != 'S' && symbol[i] != 'T') {
      continue;
    }
    size_t end = i + 1;
    while (end < symbol.size() && ((symbol[end] >= '0' && symbol[end] <= '9') ||
                                   (symbol[end] >= 'A' && symbol[end] <= 'Z'))) {
      ++end;
    }
    count += end < symbol.size() && symbol[end] == '_' ? 1U : 0U;
  }
  return count;
}

// "8_" or "n8_".
bool TakeOffset(std::string_view& text) {
  TakePrefix(text, "n");
  const size_t digits = text.find_first_not_of("0123456789");
  if (digits == 0 || digits == std::string_view::npos || text[digits] != '_') {
    return false;
  }
  text.remove_prefix(digits + 1);
  return true;
}

// ".isra.0" from its end, unless nothing stands before it.
bool TakeCloneMark(std::string_view& symbol) {
  std::string_view rest = symbol;
  while (!rest.empty() && rest.back() >= '0' && rest.back() <= '9') {
    rest.remove_suffix(1);
  }
  if (rest.size() == symbol.size() || !rest.ends_with('.')) {
    return false;
  }
  for (const std::string_view mark : {".part.", ".isra.", ".constprop.", ".lto_priv."}) {
    if (rest.size() > mark.size() && TakeSuffix(rest, mark)) {
      symbol = rest;
      return true;
    }
  }
  return false;
}

}  // namespace

std::string DemangledName(std::string_view symbol) {
  if (!symbol.starts_with("_Z") || symbol.size() > kLongestSymbol ||
      ReferenceCount(symbol) > kMostReferences) {
    return {};
  }
  int status = -1;
  const std::unique_ptr<char, decltype(&std::free)> text(
      abi::__cxa_demangle(std::string(symbol).c_str(), nullptr, nullptr, &status), &std::free);
  std::string name = status == 0 && text != nullptr ? std::string(text.get()) : std::string();
  return name.size() <= kLongestName ? name : std::string();
}

std::string ThunkTarget(std::string_view symbol) {
  const bool once = symbol.starts_with("_ZTh");
  if (!once && !symbol.starts_with("_ZTv")) {
    return {};
  }
  symbol.remove_prefix(4);
  if (!TakeOffset(symbol) || (!once && !TakeOffset(symbol))) {
    return {};
  }
  return "_Z" + std::string(symbol);
}

std::string_view CloneBase(std::string_view symbol) {
  std::string_view base = symbol;
  while (TakeCloneMark(base)) {
  }
  return base.size() == symbol.size() ? std::string_view() : base;
}

}  // namespace velkor
