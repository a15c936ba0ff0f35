#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velkor {

// The data that the program carries in itself, found by type and number. Read-only, for the
// whole run, from any thread.
class ResourceStore {
 public:
  virtual ~ResourceStore() = default;
  virtual std::optional<std::string_view> Find(std::string_view type, uint32_t id) const = 0;
};

// Type "LIBSIZE": 131 is the standard library table, 132 the runtime helper table.
class BuiltInResources : public ResourceStore {
 public:
  std::optional<std::string_view> Find(std::string_view type, uint32_t id) const override;
};

}  // namespace velkor
