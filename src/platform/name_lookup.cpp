#include "platform/name_lookup.h"

#include <algorithm>
#include <utility>

#include "platform/host_folder.h"

namespace velkor {
namespace {

std::optional<HostPath> FindComponent(const HostPath& folder, const std::string& component,
                                      const HostNames& names, FolderNames& folders) {
  HostPath path = folder.Below(names.Name(component));
  if (IsThere(path)) {
    return path;
  }
  HostPath asStated = folder.Below(component);
  if (asStated.Bytes() != path.Bytes() && IsThere(asStated)) {
    return asStated;
  }
  const std::optional<std::string> found = folders.Find(folder, component, names);
  return found ? std::optional(folder.Below(*found)) : std::nullopt;
}

std::vector<std::string> First(const std::vector<std::string>& components, size_t count) {
  return {components.begin(), components.begin() + static_cast<std::ptrdiff_t>(count)};
}

// How many of the components, of which not all are, are there as they are spelt. Often all but the
// last: looking from the end asks for the fewest.
size_t CountAsSpelt(const HostPath& folder, const std::vector<std::string>& components,
                    const HostNames& names) {
  size_t count = components.size() - std::min<size_t>(components.size(), 1);
  while (count != 0 && !IsThere(JoinBelow(folder, First(components, count), names))) {
    --count;
  }
  return count;
}

}  // namespace

std::optional<std::string> FolderNames::Find(const HostPath& folder, const std::string& component,
                                             const HostNames& names) {
  const std::shared_ptr<const Listing> listing = ListingOf(folder, names);
  const std::string* found = nullptr;
  for (const uint32_t hash : names.HashesOfComponent(component)) {
    const auto [first, end] = listing->byHash.equal_range(hash);
    for (auto place = first; place != end; ++place) {
      const std::string& entry = listing->entries[place->second];
      if (&entry == found || !names.IsSpelling(entry, component)) {
        continue;
      }
      if (found != nullptr) {
        return std::nullopt;
      }
      found = &entry;
    }
  }
  return found != nullptr ? std::optional(*found) : std::nullopt;
}

void FolderNames::Forget() {
  const std::lock_guard lock(mutex_);
  listings_.clear();
}

std::shared_ptr<const FolderNames::Listing> FolderNames::ListingOf(const HostPath& folder,
                                                                   const HostNames& names) {
  const std::lock_guard lock(mutex_);
  std::shared_ptr<const Listing>& listing = listings_[folder.Bytes()];
  if (listing == nullptr) {
    listing = std::make_shared<const Listing>(List(folder, names));
  }
  return listing;
}

FolderNames::Listing FolderNames::List(const HostPath& folder, const HostNames& names) {
  Listing listing;
  for (FolderEntry& entry :
       ListHostFolder(folder.Bytes().empty() ? HostPath(".") : folder).entries) {
    const auto place = static_cast<uint32_t>(listing.entries.size());
    HostNames::Hashes hashes = names.HashesOfFound(entry.name);
    std::ranges::sort(hashes);
    const auto repeated = std::unique(hashes.begin(), hashes.end());
    for (auto hash = hashes.begin(); hash != repeated; ++hash) {
      listing.byHash.emplace(*hash, place);
    }
    listing.entries.push_back(std::move(entry.name));
  }
  return listing;
}

HostPath JoinBelow(HostPath folder, const std::vector<std::string>& components,
                   const HostNames& names) {
  for (const std::string& component : components) {
    folder = folder.Below(names.Name(component));
  }
  return folder;
}

HostPath FindBelow(HostPath folder, const std::vector<std::string>& components,
                   const HostNames& names, FolderNames& folders) {
  HostPath asSpelt = JoinBelow(folder, components, names);
  if (IsThere(asSpelt)) {
    return asSpelt;
  }
  const size_t asSpeltCount = CountAsSpelt(folder, components, names);
  folder = JoinBelow(std::move(folder), First(components, asSpeltCount), names);
  for (size_t i = asSpeltCount; i < components.size(); ++i) {
    std::optional<HostPath> found = FindComponent(folder, components[i], names, folders);
    if (!found) {
      const auto rest = components.begin() + static_cast<std::ptrdiff_t>(i);
      return JoinBelow(std::move(folder), {rest, components.end()}, names);
    }
    folder = *std::move(found);
  }
  return folder;
}

}  // namespace velkor
