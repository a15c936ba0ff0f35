#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>

#include "ui/ui_context.h"

namespace velkor::ui {

// A program and its arguments.
using CommandLine = QStringList;

// The command with its words for the file ("{file}") and the line ("{line}", 1 where none is known)
// replaced; the file comes last where it is not named. Words are separated by blanks; one in
// double quotes may hold some.
CommandLine EditorCommandLine(const QString& command, const QString& file, uint32_t line);

// Opens the file of the analysis, a path of the project or of this host, with the command; an empty
// one: with what the desktop has for it. False when there is no such file, or nothing opens it.
bool OpenSource(UiContext& context, const QString& command, const std::string& path, uint32_t line);

}  // namespace velkor::ui
