#include "platform/resources.h"

namespace velkor {

namespace embedded {
extern const std::string_view standardLibraryTable;
extern const std::string_view runtimeHelperTable;
}  // namespace embedded

std::optional<std::string_view> BuiltInResources::Find(std::string_view type, uint32_t id) const {
  constexpr uint32_t kStandardLibraryTable = 131;
  constexpr uint32_t kRuntimeHelperTable = 132;
  if (type != "LIBSIZE") {
    return std::nullopt;
  }
  switch (id) {
    case kStandardLibraryTable:
      return embedded::standardLibraryTable;
    case kRuntimeHelperTable:
      return embedded::runtimeHelperTable;
    default:
      return std::nullopt;
  }
}

}  // namespace velkor
