#include "messages/product_version.h"

namespace velkor {

std::string_view ProductVersion() {
  return VELKOR_VERSION;
}

std::string_view ProductDate() {
  return VELKOR_RELEASE_DATE;
}

std::string ProductNameAndVersion() {
  return "velkor " + std::string(ProductVersion());
}

std::string VersionLine(std::string_view commit) {
  return ProductNameAndVersion() + (commit.empty() ? "" : " (" + std::string(commit) + ")");
}

}  // namespace velkor
