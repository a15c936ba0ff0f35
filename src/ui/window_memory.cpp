#include "ui/window_memory.h"

#include <QSplitter>
#include <algorithm>
#include <optional>
#include <span>

namespace velkor::ui {

namespace {

constexpr const char* kGeometry = "window/geometry";
constexpr const char* kState = "window/state";
constexpr const char* kSplitter = "window/splitter/";
constexpr const char* kListColumns = "window/listColumns";
constexpr const char* kAllColumns = "window/allColumns";
constexpr const char* kCallerColumns = "window/callerColumns";
constexpr const char* kLogShows = "window/logShows";

struct KeptMark {
  Command command;
  const char* key;
};
constexpr KeptMark kTreeMarks[] = {{Command::kShowTotals, "window/treeTotals"},
                                   {Command::kTreeBySize, "window/treeBySize"}};
constexpr KeptMark kListMarks[] = {{Command::kShowBoundColumn, "window/listBounds"},
                                   {Command::kShowMarkColumn, "window/listMarks"}};

bool IsMarked(CommandTarget& target, Command command) {
  const std::optional<CommandState> state = target.StateOf(command);
  return state && state->radioMark;
}

void RestoreMarks(CommandTarget& target, std::span<const KeptMark> marks,
                  const WindowSettings& settings) {
  for (const KeptMark& mark : marks) {
    const QVariant kept = settings.Value(mark.key);
    if (kept.isValid() && kept.toBool() != IsMarked(target, mark.command)) {
      target.Execute(mark.command);
    }
  }
}

void RememberMarks(CommandTarget& target, std::span<const KeptMark> marks,
                   WindowSettings& settings) {
  for (const KeptMark& mark : marks) {
    settings.SetValue(mark.key, IsMarked(target, mark.command));
  }
}

QList<QSplitter*> NamedSplitters(QMainWindow& window) {
  QList<QSplitter*> splitters = window.findChildren<QSplitter*>();
  splitters.removeIf([](const QSplitter* splitter) { return splitter->objectName().isEmpty(); });
  return splitters;
}

}  // namespace

void RestoreWindow(const RememberedWindow& remembered, const WindowSettings& settings) {
  const auto bytes = [&settings](const QString& key) { return settings.Value(key).toByteArray(); };
  remembered.window.restoreGeometry(bytes(kGeometry));
  remembered.window.restoreState(bytes(kState));
  for (QSplitter* splitter : NamedSplitters(remembered.window)) {
    splitter->restoreState(bytes(kSplitter + splitter->objectName()));
  }
  remembered.list.Columns().SetOwn(bytes(kListColumns));
  RestoreMarks(remembered.list, kListMarks, settings);
  RestoreMarks(remembered.tree, kTreeMarks, settings);
  remembered.all.Columns().SetOwn(bytes(kAllColumns));
  remembered.callers.Columns().SetOwn(bytes(kCallerColumns));
  const int least = settings.Value(kLogShows).toInt();
  remembered.log.ShowFrom(static_cast<LogLevel>(
      std::clamp(least, static_cast<int>(LogLevel::kLine), static_cast<int>(LogLevel::kWarning))));
}

void RememberWindow(const RememberedWindow& remembered, WindowSettings& settings) {
  settings.SetValue(kGeometry, remembered.window.saveGeometry());
  settings.SetValue(kState, remembered.window.saveState());
  for (const QSplitter* splitter : NamedSplitters(remembered.window)) {
    settings.SetValue(kSplitter + splitter->objectName(), splitter->saveState());
  }
  settings.SetValue(kListColumns, remembered.list.Columns().Own());
  RememberMarks(remembered.list, kListMarks, settings);
  RememberMarks(remembered.tree, kTreeMarks, settings);
  settings.SetValue(kAllColumns, remembered.all.Columns().Own());
  settings.SetValue(kCallerColumns, remembered.callers.Columns().Own());
  settings.SetValue(kLogShows, static_cast<int>(remembered.log.Least()));
}

}  // namespace velkor::ui
