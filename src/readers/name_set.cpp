#include "readers/name_set.h"

namespace velkor {

bool StkNameSet::Insert(std::string_view name) {
  if (Contains(name)) {
    return false;
  }
  names_.emplace(name);
  return true;
}

bool StkNameSet::Contains(std::string_view name) const {
  return names_.find(name) != names_.end();
}

}  // namespace velkor
