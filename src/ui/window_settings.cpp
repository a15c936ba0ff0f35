#include "ui/window_settings.h"

namespace velkor::ui {

namespace {

// The key of one input's settings: a path has separators of its own.
QString KeyOfProject(const QString& path, const QString& name) {
  return "projects/" + QString::fromLatin1(path.toUtf8().toPercentEncoding()) + '/' + name;
}

}  // namespace

WindowSettings WindowSettings::OfUser() {
  WindowSettings settings;
  settings.kept_ = std::make_unique<QSettings>("Orvane Tools", "velkor");
  return settings;
}

QVariant WindowSettings::Value(const QString& key) const {
  return kept_ ? kept_->value(key) : values_.value(key);
}

void WindowSettings::SetValue(const QString& key, const QVariant& value) {
  if (kept_) {
    kept_->setValue(key, value);
  } else {
    values_.insert(key, value);
  }
}

QStringList WindowSettings::Recent() const {
  return Value("recent").toStringList();
}

void WindowSettings::AddRecent(const QString& path) {
  QStringList recent = Recent();
  recent.removeAll(path);
  recent.prepend(path);
  SetValue("recent", QStringList(recent.mid(0, kMostRecent)));
}

void WindowSettings::ClearRecent() {
  SetValue("recent", QStringList());
}

ProjectSettings WindowSettings::Project(const QString& path) const {
  return {Value(KeyOfProject(path, "codePage")).toString(),
          Value(KeyOfProject(path, "map")).toStringList()};
}

void WindowSettings::SetProject(const QString& path, const ProjectSettings& settings) {
  SetValue(KeyOfProject(path, "codePage"), settings.codePage);
  SetValue(KeyOfProject(path, "map"), settings.mappings);
}

}  // namespace velkor::ui
