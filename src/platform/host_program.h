#pragma once

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "platform/host_path.h"

namespace velkor {

// The running program as its host knows it. Texts are bytes in the host's encoding (see
// CharacterSetOfHost).

// What the caller gave, the program's name first. argc, argv: those of main.
std::vector<std::string> ProgramArguments(int argc, const char* const* argv);
// Empty when it is not set. Only while there is one thread.
std::string EnvironmentVariable(const char* name);
// Where the program's file is, symbolic links resolved; empty when that is not known.
HostPath ExecutableOfProgram();
std::optional<HostPath> CurrentFolder();
// How many threads the host runs at once for this program; at least 1.
size_t ProcessorsOfProgram();
// As std::fopen; a path as the caller gave it.
std::FILE* OpenStdioFile(const std::string& path, const char* mode);

}  // namespace velkor
