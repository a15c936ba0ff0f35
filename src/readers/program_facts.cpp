#include "readers/program_facts.h"

#include <algorithm>

namespace velkor {

const ProgramFacts::Symbol* ProgramFacts::Find(std::string_view name) const {
  const auto found = std::ranges::lower_bound(symbols, name, {}, &Symbol::name);
  return found == symbols.end() || found->name != name ? nullptr : &*found;
}

}  // namespace velkor
