#include "ui/version_texts.h"

#include "messages/product_version.h"

namespace velkor::ui {

VersionTexts ProgramVersion() {
  return {"velkor", std::string(ProductVersion()) + " (" + std::string(ProductDate()) + ")"};
}

}  // namespace velkor::ui
