#pragma once

#include <QHash>
#include <QSettings>
#include <QStringList>
#include <QVariant>
#include <memory>

namespace velkor::ui {

// How files of one input are to be read, as the user has said in a dialog.
struct ProjectSettings {
  QString codePage;      // empty: that of the locale
  QStringList mappings;  // 'C:\work=/home/me/work'

  bool IsEmpty() const { return codePage.isEmpty() && mappings.isEmpty(); }
  bool operator==(const ProjectSettings&) const = default;
};

// What the window remembers of one run for the next, in the place where the platform keeps the
// settings of the user; or, for a run that is to change nothing there, only until its end.
// User-interface thread.
class WindowSettings {
 public:
  static constexpr int kMostRecent = 9;

  // Of a run that keeps nothing.
  WindowSettings() = default;
  static WindowSettings OfUser();

  QVariant Value(const QString& key) const;
  void SetValue(const QString& key, const QVariant& value);

  // Inputs by their paths, the newest first.
  QStringList Recent() const;
  void AddRecent(const QString& path);
  void ClearRecent();

  ProjectSettings Project(const QString& path) const;
  void SetProject(const QString& path, const ProjectSettings& settings);

  // The command that opens a file at a line; empty: what the desktop opens it with.
  QString Editor() const { return Value("editor").toString(); }
  void SetEditor(const QString& command) { SetValue("editor", command); }

 private:
  std::unique_ptr<QSettings> kept_;  // none: nothing is kept
  QHash<QString, QVariant> values_;  // where nothing is kept
};

}  // namespace velkor::ui
