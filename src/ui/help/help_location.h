#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/host.h"
#include "platform/settings_tree.h"

namespace velkor::ui {

// The help topics, by the window in which help is asked for.
constexpr int kMainWindowHelp = 1;
constexpr int kFunctionListsHelp = 2;
constexpr int kAdjustHelp = 3;
constexpr int kHelpTopicCount = 3;

// Where the help pages are, as the installation's settings say. All texts are bytes of the run's
// code page and may be empty.
struct HelpLocation {
  std::string file;
  std::array<std::string, kHelpTopicCount> topics;

  // What is shown for a topic (1 to 3): the file path and the topic, with nothing between them. So
  // a location of several pages is a folder with its separator, and its topics are file names.
  std::string Page(int topic) const;
};

// Looks the location up below "Software\Orvane Tools\ORVDEV": in the key of this version, which
// holds HelpTopic1 to HelpTopic3 and Help1. A Help1 with ":" is the file path itself; any other
// names a further key and its value, "subkey|value", where the subkey may be of an older or newer
// revision. What cannot be found stays empty, and nothing is reported.
//
// A path on this host seldom holds a ":". An installation that wants to state it in Help1 writes
// "file:/usr/share/velkor/help/"; behind a further key any path will do, also one relative to the
// program's own folder (see HelpPath).
//
// versionWordSource: the version word, a blank, and more.
HelpLocation FindHelp(const SettingsTree& settings, std::string_view versionWordSource);

// A page as HelpLocation names it, as a path for the host's files: without "file:", and resolved
// against the folder of the program when it is relative.
std::string HelpPath(std::string_view page, const Host& host);

// The settings file of this installation, help.ini among its data; no keys when it cannot be read.
SettingsTree InstallationSettings(const Host& host);

}  // namespace velkor::ui
