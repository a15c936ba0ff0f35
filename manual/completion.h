#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace velkor::manual {

// What the completion for bash must know of each command, as the functions of bash that its
// template names: words of options and choices, what a value or an argument is.
std::string CompletionTables(const CLI::App& app);

}  // namespace velkor::manual
