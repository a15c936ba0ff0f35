#include "ui/shown_text.h"

#include "core/function_text.h"

namespace velkor::ui {

namespace {

constexpr size_t kMaxRowLength = 259;
constexpr size_t kCutRowLength = 256;

}  // namespace

std::string RowName(const StkFunction& function, const CodePage& codePage) {
  return CutToRow(FunctionDisplayName(function, codePage), codePage);
}

std::string CutToRow(std::string text, const CodePage& codePage) {
  if (text.size() > kMaxRowLength) {
    text.resize(codePage.CutLength(text, kCutRowLength));
    text += "...";
  }
  return text;
}

QString ForScreen(std::string_view bytes, const CodePage& codePage) {
  const std::string utf8 = codePage.ToUtf8(bytes);
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace velkor::ui
