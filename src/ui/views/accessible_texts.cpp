#include "ui/views/accessible_texts.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kKindDescriptionKey = kDialogTextKey * 500 + 1010;

}  // namespace

KindDescriptions KindsFrom(const UiContext& context) {
  KindDescriptions kinds;
  for (size_t kind = 0; kind < kinds.size(); ++kind) {
    kinds[kind] = context.Text(kKindDescriptionKey + static_cast<uint32_t>(kind));
  }
  return kinds;
}

}  // namespace velkor::ui
