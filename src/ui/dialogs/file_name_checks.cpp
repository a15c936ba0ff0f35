#include "ui/dialogs/file_name_checks.h"

#include <QFile>

#include "platform/limits.h"

namespace velkor::ui {

namespace {

std::optional<std::string> CheckedName(const QString& path, UiContext& context) {
  std::string name = context.host.paths.GivenPath(QFile::encodeName(path).toStdString());
  if (name.size() > kMaxPathLength) {
    context.reporter.ShowWarning(MessageKey::kW9407, {MessageFile{name}});
    return std::nullopt;
  }
  return name;
}

}  // namespace

std::optional<std::string> NameToOpen(const QString& path, UiContext& context) {
  return CheckedName(path, context);
}

std::optional<std::string> NameToSave(const QString& path, UiContext& context) {
  std::optional<std::string> name = CheckedName(path, context);
  if (name && context.host.files.Exists(*name) &&
      !context.reporter.AskYesNo(MessageKey::kI9501, {})) {
    return std::nullopt;
  }
  return name;
}

}  // namespace velkor::ui
