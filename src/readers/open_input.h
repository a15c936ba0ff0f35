#pragma once

#include <memory>
#include <string_view>

#include "messages/reporter.h"
#include "platform/host.h"
#include "readers/program_input.h"

namespace velkor {

// The input at a path, of the kind that the path tells. None after a message has been shown.
// User-interface thread; host and reporter outlive it.
std::unique_ptr<ProgramInput> OpenInput(std::string_view path, Host& host, StkReporter& reporter);

}  // namespace velkor
