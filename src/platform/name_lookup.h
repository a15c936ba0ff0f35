#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/host_names.h"
#include "platform/host_path.h"

namespace velkor {

// Names of folders' entries ignoring letter case: each folder is listed once, when it is first
// asked about, and known as it was then until all is forgotten. Several threads may ask.
class FolderNames {
 public:
  // None too when there are several: which one is meant, nobody but the user can say.
  std::optional<std::string> Find(const HostPath& folder, const std::string& component,
                                  const HostNames& names);
  void Forget();

 private:
  struct Listing {
    std::vector<std::string> entries;
    std::unordered_multimap<uint32_t, uint32_t> byHash;  // places in entries
  };

  static Listing List(const HostPath& folder, const HostNames& names);
  std::shared_ptr<const Listing> ListingOf(const HostPath& folder, const HostNames& names);

  std::mutex mutex_;
  std::unordered_map<std::string, std::shared_ptr<const Listing>> listings_;  // by folder
};

// The components of a text below a folder (empty: the current one), exactly as spelt.
HostPath JoinBelow(HostPath folder, const std::vector<std::string>& components,
                   const HostNames& names);
// The same, but a component that is not there as spelt is looked for among the names of its folder,
// ignoring letter case; from the first that is not there at all, or of which several are there,
// the rest stays as spelt.
HostPath FindBelow(HostPath folder, const std::vector<std::string>& components,
                   const HostNames& names, FolderNames& folders);

}  // namespace velkor
