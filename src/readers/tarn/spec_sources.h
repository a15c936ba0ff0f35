#pragma once

#include <memory>
#include <vector>

#include "files/spec_reader.h"
#include "messages/reporter.h"
#include "platform/host.h"
#include "readers/tarn/accepted_compiler.h"
#include "readers/tarn/project.h"

namespace velkor {

// What is read after the modules of a project: the tables that apply to its compiler and options,
// then always the stk system file.
std::vector<std::unique_ptr<StkSpecReader>> SpecSourcesOf(const StkProject& project,
                                                          const AcceptedCompiler& compiler,
                                                          Host& host, StkReporter& reporter);

}  // namespace velkor
