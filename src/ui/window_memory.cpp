#include "ui/window_memory.h"

#include <QHeaderView>
#include <QSplitter>
#include <algorithm>

namespace velkor::ui {

namespace {

constexpr const char* kGeometry = "window/geometry";
constexpr const char* kState = "window/state";
constexpr const char* kSplitter = "window/splitter/";
constexpr const char* kListColumns = "window/listColumns";
constexpr const char* kAllColumns = "window/allColumns";
constexpr const char* kLogShows = "window/logShows";

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
  remembered.list.SetOwnColumns(bytes(kListColumns));
  remembered.all.Table().horizontalHeader()->restoreState(bytes(kAllColumns));
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
  settings.SetValue(kListColumns, remembered.list.OwnColumns());
  settings.SetValue(kAllColumns, remembered.all.Table().horizontalHeader()->saveState());
  settings.SetValue(kLogShows, static_cast<int>(remembered.log.Least()));
}

}  // namespace velkor::ui
