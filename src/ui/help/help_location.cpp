#include "ui/help/help_location.h"

#include <optional>

#include "files/paths.h"

namespace velkor::ui {

namespace {

constexpr std::string_view kBaseKey = "Software\\Orvane Tools\\ORVDEV";
constexpr std::string_view kVersionsKey = "Tarn.VK";
constexpr std::string_view kSettingsFile = "help.ini";
constexpr std::string_view kFileScheme = "file:";
// Of the buffer that takes a value.
constexpr size_t kValueSize = 520;
constexpr size_t kVersionKeyLength = 6;

std::string Below(std::string_view key, std::string_view subkey) {
  return std::string(key) + "\\" + std::string(subkey);
}

std::string_view UpToBar(std::string_view text) {
  return text.substr(0, text.find('|'));
}

// Whether a key of that name stands for the wanted one, and how well. 0: it does not.
int VersionRank(const std::string& candidate, std::string_view wanted) {
  const auto last = static_cast<signed char>(candidate.back());
  return candidate.starts_with(wanted) && last > 0 ? last : 0;
}

// The key, or in its place the best of those beside it that are named alike: any first character,
// then the wanted name, then one character more.
std::optional<SettingsTree::Key> OpenVersionKey(const SettingsTree& settings,
                                                const std::string& path) {
  if (const std::optional<SettingsTree::Key> key = settings.Open(path)) {
    return key;
  }
  const size_t separator = path.rfind('\\');
  const std::string parentPath = path.substr(0, separator);
  const std::optional<SettingsTree::Key> parent = settings.Open(parentPath);
  if (!parent) {
    return std::nullopt;
  }
  std::string best;
  int bestRank = 0;
  for (std::string name : settings.Subkeys(*parent)) {
    if (name.size() != kVersionKeyLength) {
      continue;
    }
    name.front() = 'V';
    const int rank = VersionRank(name, std::string_view(path).substr(separator + 1));
    if (rank > bestRank) {
      bestRank = rank;
      best = name;
    }
  }
  return bestRank > 0 ? settings.Open(Below(parentPath, best)) : std::nullopt;
}

void ReadTopics(const SettingsTree& settings, SettingsTree::Key key, HelpLocation& location) {
  for (size_t i = 0; i < location.topics.size(); ++i) {
    auto topic = settings.Value(key, "HelpTopic" + std::to_string(i + 1), kValueSize);
    if (!topic) {
      return;
    }
    location.topics[i] = *std::move(topic);
  }
}

// What Help1 refers to; empty when that is missing.
std::string ReadElsewhere(const SettingsTree& settings, std::string_view help) {
  const auto key = OpenVersionKey(settings, Below(kBaseKey, UpToBar(help)));
  if (!key) {
    return "";
  }
  const std::string_view name = help.substr(help.rfind('|') + 1);
  return std::string(UpToBar(settings.Value(*key, name, kValueSize).value_or("")));
}

}  // namespace

std::string HelpLocation::Page(int topic) const {
  return file + topics[static_cast<size_t>(topic - 1)];
}

HelpLocation FindHelp(const SettingsTree& settings, std::string_view versionWordSource) {
  HelpLocation location;
  const size_t blank = versionWordSource.find(' ');
  const std::string_view versionWord =
      blank == std::string_view::npos ? "" : versionWordSource.substr(0, blank);
  const auto key = settings.Open(Below(Below(kBaseKey, kVersionsKey), versionWord));
  if (!key) {
    return location;
  }
  ReadTopics(settings, *key, location);
  const std::optional<std::string> help = settings.Value(*key, "Help1", kValueSize);
  if (!help) {
    return location;
  }
  const bool isPath = help->find(':') != std::string::npos;
  location.file = isPath ? std::string(UpToBar(*help)) : ReadElsewhere(settings, *help);
  return location;
}

std::string HelpPath(std::string_view page, const Host& host) {
  if (page.starts_with(kFileScheme)) {
    page.remove_prefix(kFileScheme.size());
  }
  return IsAbsolute(page, host.codePage) ? std::string(page) : ProgramDataPath(page, host);
}

SettingsTree InstallationSettings(const Host& host) {
  const OpenResult<InputFile> opened = host.files.OpenForRead(InstalledPath(kSettingsFile, host));
  return opened.file ? SettingsTree(host.codePage, *opened.file) : SettingsTree(host.codePage);
}

}  // namespace velkor::ui
