#include "ui/shown_text.h"

#include "core/function_text.h"

namespace velkor::ui {

std::string RowName(const StkFunction& function, const CodePage& codePage) {
  std::string name = FunctionDisplayName(function, codePage);
  if (name.size() > kMaxNameLength) {
    name.resize(codePage.CutLength(name, kCutNameLength));
    name += "...";
  }
  return name;
}

QString ForScreen(std::string_view bytes, const CodePage& codePage) {
  const std::string utf8 = codePage.ToUtf8(bytes);
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

KindDescriptions KindsFrom(const UiContext& context) {
  KindDescriptions kinds;
  for (size_t kind = 0; kind < kinds.size(); ++kind) {
    kinds[kind] = context.Text(kKindDescriptionKey + static_cast<uint32_t>(kind));
  }
  return kinds;
}

}  // namespace velkor::ui
