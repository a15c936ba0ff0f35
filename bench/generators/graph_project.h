#pragma once

#include <cstdint>
#include <string>

#include "bench/generators/call_graph.h"
#include "bench/generators/project_folder.h"

namespace velkor::bench {

// The C name of a function of a call graph.
std::string GraphFunctionName(uint32_t function);

// Writes the modules of a program that has this call graph, with as little code as there can be.
void WriteGraphModules(const CallGraph& graph, ProjectFolder& project);

}  // namespace velkor::bench
