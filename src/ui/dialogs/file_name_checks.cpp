#include "ui/dialogs/file_name_checks.h"

#include "files/paths.h"

namespace velkor::ui {

namespace {

// A name with characters that the code page lacks would become that of another file.
std::optional<std::string> CheckedName(const QString& path, UiContext& context,
                                       MessageKey notUsable) {
  const std::string shown = context.Encoded(path);
  if (shown.size() > kMaxPathLength) {
    context.reporter.ShowWarning(MessageKey::kW9407, {MessageFile{shown}});
    return std::nullopt;
  }
  std::optional<std::string> name = context.host.codePage.FromUtf8(path.toStdString());
  if (!name) {
    context.reporter.ShowWarning(notUsable, {MessageFile{shown}});
  }
  return name;
}

}  // namespace

std::optional<std::string> NameToOpen(const QString& path, UiContext& context) {
  return CheckedName(path, context, MessageKey::kW9401);
}

std::optional<std::string> NameToSave(const QString& path, UiContext& context) {
  std::optional<std::string> name = CheckedName(path, context, MessageKey::kW9402);
  if (name && context.host.files.Exists(*name) &&
      !context.reporter.AskYesNo(MessageKey::kI9501, {})) {
    return std::nullopt;
  }
  return name;
}

}  // namespace velkor::ui
