#include "readers/name_set.h"

namespace velkor {

uint32_t StkNameSet::Insert(std::string_view name) {
  const uint32_t hash = HashExactText(name);
  if (const std::optional<uint32_t> found = Find(name, hash)) {
    return *found;
  }
  const uint32_t number = size();
  places_.push_back({bytes_.size(), static_cast<uint32_t>(name.size()), hash});
  bytes_ += name;
  index_.Insert(number, [this](uint32_t i) { return places_[i].hash; });
  return number;
}

std::optional<uint32_t> StkNameSet::Find(std::string_view name) const {
  return Find(name, HashExactText(name));
}

std::optional<uint32_t> StkNameSet::Find(std::string_view name, uint32_t hash) const {
  const uint32_t* found =
      index_.Find(hash, [&](uint32_t i) { return places_[i].hash == hash && Name(i) == name; });
  return found == nullptr ? std::nullopt : std::optional(*found);
}

void StkNameSet::Clear() {
  bytes_.clear();
  places_.clear();
  index_.Clear();
}

}  // namespace velkor
